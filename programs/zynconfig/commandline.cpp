#include "commandline.h"

#include "commands.h"

#include <CLI/CLI.hpp>
#include <kit/text/ascii.h>
#include <kit/text/number.h>
#include <kit/text/utf8.h>
#include <workbench/conversion.h>
#include <workbench/formats.h>
#include <workbench/keytext.h>

#include <algorithm>
#include <array>
#include <map>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zynconfig {

using namespace workbench;
using kit::text::Quoted;

namespace {

constexpr char DESCRIPTION[] =
    "Shows, checks and converts the configuration of a chip. The stores that hold it are stacked into "
    "layers,\nand of each key the value in the highest layer holds.\n";
constexpr char FOOTER[] = "Exit codes: 0 done, 1 the data is wrong, 2 the command line is wrong.";
constexpr char COMMON_OPTIONS[] = "All commands have --metadata FILE, --plugin-dir DIR and --trace too, of "
                                  "which zynconfig --help tells more.\n";
constexpr char FILES_HELP[] = "The files to read into one chip, one after the other";
constexpr char CONTEXT_HELP[] = "Tags for plug-ins and library, such as \"insertmode=new\"";
constexpr char CHIP_HELP[] = "The chip, by its label, where the metadata is about several systems";
constexpr char KEY_HELP[] =
    "A key by name or number, of a table perhaps with indices, such as bt:257 or GainTrim.0.1";
constexpr char PATTERN_HELP[] = "Only keys with such a name, such as '*Trim' or 'bt:*'; without regard to case";
constexpr char NO_METADATA[] =
    " needs metadata: tell its file by --metadata FILE or in the variable ZYNCONFIG_METADATA";
constexpr char METADATA_HELP[] = "The metadata: what the chip's keys mean";
constexpr char FROM_HELP[] = "The format of the files, whatever their extension: ";
constexpr char TO_HELP[] = "The format of the output, whatever its extension: ";
constexpr char FILTER_HELP[] =
    "Write each key once: from the highest layer up to N, or with -N from the lowest";

constexpr char REPOSITORY_EXTENSION[] = ".zmd";

/// A tag that --context must not set, because the tool or a reader does.
struct ReservedTag
{
    std::string_view mKey;
    const char * mReason;
};

constexpr std::array RESERVED_TAGS = {
    ReservedTag{ "chip", "the files name the chip" },
    ReservedTag{ "subsystemtype", "the files name the subsystems" },
    ReservedTag{ "device", "the files name the devices" },
    ReservedTag{ "store", "the files name the stores" },
    ReservedTag{ "layernumber", "the library numbers the layers" },
    ReservedTag{ "layerfilter", "use --layer-filter" },
    ReservedTag{ "storelayers", "use --layer-filter" },
    ReservedTag{ "num_indices", "it would make every key a table row" },
    ReservedTag{ "rawmode", "the library sets it for each key that it writes" },
    ReservedTag{ "subsystemkeybystore", "the library computes it" },
    ReservedTag{ "subsystemkeybylayer", "the library computes it" },
};

std::string TagProblem(const std::string & piece)
{
    const auto equals = piece.find('=');
    if (equals == std::string::npos)
        return Quoted(piece) + " is no tag=value";

    const std::string key = kit::text::Lowered(piece.substr(0, equals));
    if (key.empty() || key.front() == ' ' || key.back() == ' ')
        return Quoted(piece) + ": a tag has a name, and no blanks around it";
    if (key.find("index") != std::string::npos)
        return Quoted(piece) + ": every tag with \"index\" in its name would count as an index of a table";
    const auto * const reserved = std::find_if(
        RESERVED_TAGS.begin(), RESERVED_TAGS.end(), [&](const ReservedTag & tag) { return tag.mKey == key; });
    return reserved == RESERVED_TAGS.end() ? "" : Quoted(piece) + " can't be set here: " + reserved->mReason;
}

std::string FormatProblem(const std::string & name)
{
    return !name.empty() && FindFormat({}, name) != nullptr
               ? ""
               : Quoted(name) + " is no format; known are: " + KnownFormats();
}

void RequireKnownFormat(const std::string & path, const std::string & format)
{
    if (FindFormat(path, format) == nullptr)
        throw CLI::ValidationError(Quoted(path) + " has no known extension; known are: " + KnownExtensions());
}

// Another extension would be a slip that costs a file, such as a source.
std::string RepositoryProblem(const std::string & path)
{
    const std::size_t length = sizeof REPOSITORY_EXTENSION - 1;
    const bool isOne =
        path.size() > length && path.compare(path.size() - length, length, REPOSITORY_EXTENSION) == 0;
    return isOne ? ""
                 : Quoted(path) + " has not the extension of a metadata repository: " + REPOSITORY_EXTENSION;
}

// Without a name of its own, so that the help doesn't show one.
CLI::Validator Check(std::string (*problem)(const std::string &))
{
    return CLI::Validator([problem](std::string & text) { return problem(text); }, "");
}

/// The command line as CLI11 takes it; fills an Options object while it parses.
class CCommandLine
{
public:
    explicit CCommandLine(Options & options)
        : mApp(DESCRIPTION, "zynconfig")
        , mOptions(options)
    {
        mApp.footer(std::string(COMMON_OPTIONS) + FOOTER);   // which the commands take over
        mApp.require_subcommand(1);
        mApp.fallthrough();
        mApp.set_version_flag("--version", std::string("zynconfig ") + ZYNCONFIG_VERSION);
        mApp.add_option("--plugin-dir", options.mPlugInFolder, "Take the plug-ins (*.zpm) from here")
            ->type_name("DIR")
            ->check(CLI::ExistingDirectory.description(""));
        mApp.add_option("--metadata", options.mMetadata, METADATA_HELP)
            ->type_name("FILE")
            ->envname("ZYNCONFIG_METADATA");
        mApp.add_flag("--trace", options.mIsTraced, "Show the library's debug output on standard error");
        for (const Command & command : COMMANDS)
            AddCommand(command);
        mApp.footer(FOOTER);
    }

    void Parse(int argumentCount, const char * const * arguments)
    {
        mApp.parse(argumentCount, arguments);
        for (const auto & [app, command] : mCommands) {
            if (app->parsed())
                Take(*command);
        }
    }

    /// What is wrong, in words that name the word that is.
    std::string Reason(const CLI::Error & error) const
    {
        const std::vector<std::string> unknown = mApp.remaining();
        if (mApp.get_subcommands().empty() && !unknown.empty())
            return Quoted(unknown.front()) + " is no command; there are " + CommandNames();
        return error.what();
    }

    std::string HelpOrVersion(const CLI::Success & request) const
    {
        std::ostringstream output;
        mApp.exit(request, output, output);
        return output.str();
    }

private:
    void Take(const Command & command)
    {
        mOptions.mCommand = &command;
        const bool needsMetadata = command.mNeeds == Needs::Metadata ||
                                   (command.mNeeds == Needs::MetadataOrFiles && mOptions.mFiles.empty());
        if (mOptions.mMetadata.empty() && needsMetadata)
            throw CLI::ValidationError(std::string(command.mName) + NO_METADATA);

        // Only now: the argument of an option that a command doesn't have would be taken for a file.
        if (command.Takes(Argument::Files) || command.Takes(Argument::OptionalFiles))
            for (const std::string & file : mOptions.mFiles)
                RequireKnownFormat(file, mOptions.mFrom);
        if (command.Takes(Argument::Output))
            RequireKnownFormat(mOptions.mOutput, mOptions.mTo);
        mOptions.mLayerFilter = kit::text::ParseWhole<int>(mLayerFilter);   // none for an empty text
    }

    std::string CommandNames() const
    {
        std::string names;
        for (const CLI::App * const each : mApp.get_subcommands([](const CLI::App *) { return true; }))
            names.append(names.empty() ? "" : ", ").append(each->get_name());
        return names;
    }

    void AddCommand(const Command & command)
    {
        const auto blank = command.mName.find(' ');
        CLI::App & parent =
            blank == std::string_view::npos ? mApp : Group(std::string(command.mName.substr(0, blank)));
        const std::string name(command.mName.substr(blank == std::string_view::npos ? 0 : blank + 1));
        CLI::App & app = *parent.add_subcommand(name, command.mHelp);
        mCommands.emplace_back(&app, &command);
        for (const Argument argument : command.mArguments)
            AddArgument(app, argument);
    }

    CLI::App & Group(const std::string & name)
    {
        CLI::App *& app = mGroups[name];
        if (app != nullptr)
            return *app;
        const auto * const group = std::find_if(COMMAND_GROUPS.begin(), COMMAND_GROUPS.end(),
            [&](const CommandGroup & each) { return each.mName == name; });
        app = mApp.add_subcommand(name, group->mHelp);
        app->require_subcommand(1);
        return *app;
    }

    void AddArgument(CLI::App & app, Argument argument)
    {
        switch (argument) {
        case Argument::None:
            return;
        case Argument::Files:
            AddFiles(app).required();
            return;
        case Argument::OptionalFiles:
            AddFiles(app);
            return;
        case Argument::Key:
            app.add_option("key", mOptions.mKey, KEY_HELP)
                ->required()
                ->type_name("KEY")
                ->check(Check(&KeyTextProblem));
            return;
        case Argument::Pattern:
            app.add_option("pattern", mOptions.mKey, PATTERN_HELP)->type_name("PATTERN");
            return;
        case Argument::Chip:
            app.add_option("--chip", mOptions.mChip, CHIP_HELP)->type_name("LABEL");
            return;
        case Argument::Json:
            app.add_flag("--json", mOptions.mIsJson, "Print JSON, for scripts");
            return;
        case Argument::Output:
            app.add_option("-o,--output", mOptions.mOutput, "The file to write")->required()->type_name("OUT");
            AddFormat(app, "--to", mOptions.mTo, TO_HELP);
            return;
        case Argument::LayerFilter:
            app.add_option("--layer-filter", mLayerFilter, FILTER_HELP)
                ->type_name("N")
                ->check(Check(&LayerFilterProblem));
            return;
        case Argument::Sources:
            app.add_option("sources", mOptions.mFiles, "The sources of one system, in TOML")
                ->required()
                ->type_name("SOURCE");
            return;
        case Argument::Repository:
            app.add_option("-o,--output", mOptions.mOutput, "The repository to write (*.zmd)")
                ->required()
                ->type_name("OUT")
                ->check(Check(&RepositoryProblem));
            return;
        }
    }

    CLI::Option & AddFiles(CLI::App & app)
    {
        CLI::Option & files = *app.add_option("files", mOptions.mFiles, FILES_HELP)->type_name("FILE");
        AddFormat(app, "--from", mOptions.mFrom, FROM_HELP);
        app.add_option("--context", mOptions.mContext, CONTEXT_HELP)
            ->type_name("\"TAG=VALUE;...\"")
            ->check(Check(&ContextProblem));
        return files;
    }

    static void AddFormat(CLI::App & app, const char * option, std::string & format, const std::string & help)
    {
        app.add_option(option, format, help + KnownFormats())
            ->type_name("FORMAT")
            ->check(Check(&FormatProblem));
    }

    CLI::App mApp;
    Options & mOptions;
    std::string mLayerFilter;
    std::vector<std::pair<const CLI::App *, const Command *>> mCommands;
    std::map<std::string, CLI::App *> mGroups;   // by name
};

}   // namespace

std::optional<ExitCode> ParseCommandLine(
    int argumentCount, const char * const * arguments, Options & options, CConsole & console)
{
    CCommandLine commandLine(options);
    try {
        commandLine.Parse(argumentCount, arguments);
        return std::nullopt;
    } catch (const CLI::Success & request) {
        return console.Write(commandLine.HelpOrVersion(request)) ? EXIT_DONE : EXIT_WRONG_DATA;
    } catch (const CLI::Error & error) {
        console.Error(commandLine.Reason(error) + " (zynconfig --help tells more)");
        return EXIT_WRONG_COMMAND_LINE;
    }
}

std::string ContextProblem(const std::string & text)
{
    std::istringstream pieces(text);
    for (std::string piece; std::getline(pieces, piece, ';');) {
        std::string problem = piece.empty() ? "" : TagProblem(piece);
        if (!problem.empty())
            return problem;
    }
    return {};
}

std::string LayerFilterProblem(const std::string & text)
{
    const auto layer = kit::text::ParseWholeIn<int>(text, -TOP_LAYER, TOP_LAYER);
    return layer && *layer != 0 ? "" : Quoted(text) + " is no layer: 1 to 15, or -15 to -1";
}

}   // namespace zynconfig
