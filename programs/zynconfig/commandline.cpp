#include "commandline.h"

#include <CLI/CLI.hpp>
#include <kit/text/utf8.h>
#include <workbench/errors.h>
#include <workbench/formats.h>
#include <workbench/keytext.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <sstream>
#include <string_view>

namespace zynconfig {

using namespace workbench;
using kit::text::Quoted;

namespace {

constexpr int TOP_LAYER = 15;

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

struct CommandName
{
    const char * mName;
    Command mCommand;
    bool mNeedsMetadata;
};

constexpr std::array COMMANDS = {
    CommandName{ "show", Command::Show, false },
    CommandName{ "convert", Command::Convert, false },
    CommandName{ "keys", Command::Keys, true },
    CommandName{ "describe", Command::Describe, true },
    CommandName{ "check", Command::Check, true },
    CommandName{ "get", Command::Get, true },
    CommandName{ "info", Command::Info, false },
    CommandName{ "metadata", Command::CompileMetadata, false },
};

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

std::string Lower(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(),
        [](char each) { return each >= 'A' && each <= 'Z' ? static_cast<char>(each - 'A' + 'a') : each; });
    return text;
}

std::string TagProblem(const std::string & piece)
{
    const auto equals = piece.find('=');
    if (equals == std::string::npos)
        return Quoted(piece) + " is no tag=value";

    const std::string key = Lower(piece.substr(0, equals));
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

/// The command line as CLI11 sees it; fills an Options object while it parses.
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
        AddShow();
        AddConvert();
        AddKeyCommands();
        AddCheck();
        AddInfo();
        AddMetadata();
        mApp.footer(FOOTER);
    }

    void Parse(int argumentCount, const char * const * arguments)
    {
        mApp.parse(argumentCount, arguments);
        for (const CommandName & each : COMMANDS) {
            if (mApp.got_subcommand(each.mName))
                Take(each);
        }
        if (mOptions.mCommand == Command::CompileMetadata)
            return;   // its sources are no configurations

        // Only now: the argument of an option that a command doesn't have would be taken for a file.
        for (const std::string & file : mOptions.mFiles)
            RequireKnownFormat(file, mOptions.mFrom);
        if (mOptions.mCommand == Command::Convert)
            RequireKnownFormat(mOptions.mOutput, mOptions.mTo);
        if (!mLayerFilter.empty())
            mOptions.mLayerFilter = std::stoi(mLayerFilter);
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
    void Take(const CommandName & command)
    {
        mOptions.mCommand = command.mCommand;
        const bool isAboutNothing = command.mCommand == Command::Info && mOptions.mFiles.empty();
        if (mOptions.mMetadata.empty() && (command.mNeedsMetadata || isAboutNothing))
            throw CLI::ValidationError(command.mName + std::string(NO_METADATA));
    }

    std::string CommandNames() const
    {
        std::string names;
        for (const CLI::App * const each : mApp.get_subcommands([](const CLI::App *) { return true; }))
            names.append(names.empty() ? "" : ", ").append(each->get_name());
        return names;
    }

    CLI::Option & AddFiles(CLI::App & command)
    {
        CLI::Option & files = *command.add_option("files", mOptions.mFiles, FILES_HELP)->type_name("FILE");
        AddFormat(command, "--from", mOptions.mFrom, FROM_HELP);
        command.add_option("--context", mOptions.mContext, CONTEXT_HELP)
            ->type_name("\"TAG=VALUE;...\"")
            ->check(Check(&ContextProblem));
        return files;
    }

    void AddJson(CLI::App & command)
    {
        command.add_flag("--json", mOptions.mIsJson, "Print JSON, for scripts");
    }

    void AddChip(CLI::App & command)
    {
        command.add_option("--chip", mOptions.mChip, CHIP_HELP)->type_name("LABEL");
    }

    static void AddFormat(
        CLI::App & command, const char * option, std::string & format, const std::string & help)
    {
        command.add_option(option, format, help + KnownFormats())
            ->type_name("FORMAT")
            ->check(Check(&FormatProblem));
    }

    void AddShow()
    {
        CLI::App & show = *mApp.add_subcommand(
            "show", "Show the layers, and of each key every layer's value and which one holds");
        AddFiles(show).required();
        AddJson(show);
    }

    void AddConvert()
    {
        CLI::App & convert =
            *mApp.add_subcommand("convert", "Write all that the files hold, or with a filter what wins");
        AddFiles(convert).required();
        convert.add_option("-o,--output", mOptions.mOutput, "The file to write")->required()->type_name("OUT");
        AddFormat(convert, "--to", mOptions.mTo, TO_HELP);
        convert.add_option("--layer-filter", mLayerFilter, FILTER_HELP)
            ->type_name("N")
            ->check(Check(&LayerFilterProblem));
    }

    void AddKeyCommands()
    {
        CLI::App & keys = *mApp.add_subcommand("keys", "List the keys that the metadata knows");
        keys.add_option("pattern", mOptions.mKey, PATTERN_HELP)->type_name("PATTERN");
        AddChip(keys);
        AddJson(keys);

        CLI::App & describe = *mApp.add_subcommand("describe", "Tell all that the metadata knows about a key");
        AddKey(describe);
        AddChip(describe);
        AddJson(describe);

        CLI::App & get = *mApp.add_subcommand("get", "Print the value of a key that holds, or its default");
        AddKey(get);
        AddFiles(get).required();
        AddJson(get);
    }

    void AddKey(CLI::App & command)
    {
        command.add_option("key", mOptions.mKey, KEY_HELP)
            ->required()
            ->type_name("KEY")
            ->check(Check(&KeyTextProblem));
    }

    void AddCheck()
    {
        CLI::App & check =
            *mApp.add_subcommand("check", "Hold the files against the metadata and tell what is wrong");
        AddFiles(check).required();
        AddJson(check);
    }

    void AddInfo()
    {
        CLI::App & info = *mApp.add_subcommand("info", "Tell chips and subsystems, and the stores of files");
        AddFiles(info);
        AddChip(info);
        AddJson(info);
    }

    void AddMetadata()
    {
        CLI::App & metadata = *mApp.add_subcommand("metadata", "Make the description of a chip system");
        metadata.require_subcommand(1);
        CLI::App & compile =
            *metadata.add_subcommand("compile", "Check sources, and compile them to a repository");
        compile.add_option("sources", mOptions.mFiles, "The sources of one system, in TOML")
            ->required()
            ->type_name("SOURCE");
        compile.add_option("-o,--output", mOptions.mOutput, "The repository to write (*.zmd)")
            ->required()
            ->type_name("OUT")
            ->check(Check(&RepositoryProblem));
    }

    CLI::App mApp;
    Options & mOptions;
    std::string mLayerFilter;
};

}   // namespace

std::optional<ExitCode> ParseCommandLine(int argumentCount, const char * const * arguments, Options & options)
{
    CCommandLine commandLine(options);
    try {
        commandLine.Parse(argumentCount, arguments);
        return std::nullopt;
    } catch (const CLI::Success & request) {
        return WriteOutput(commandLine.HelpOrVersion(request)) ? EXIT_DONE : EXIT_WRONG_DATA;
    } catch (const CLI::Error & error) {
        ReportError(commandLine.Reason(error) + " (zynconfig --help tells more)");
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
    int layer = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), layer);
    const bool isNumber = error == std::errc() && end == text.data() + text.size();
    return isNumber && layer != 0 && layer >= -TOP_LAYER && layer <= TOP_LAYER
               ? ""
               : Quoted(text) + " is no layer: 1 to 15, or -15 to -1";
}

}   // namespace zynconfig
