#include "commands.h"

#include "plugindir.h"

#include <algorithm>

namespace zynconfig {

using namespace workbench;

// Each stands in the source of its name.
bool ShowFiles(Invocation & invocation);
bool ConvertFiles(Invocation & invocation);
bool ListKeys(Invocation & invocation);
bool DescribeKey(Invocation & invocation);
bool GetValue(Invocation & invocation);
bool CheckFiles(Invocation & invocation);
bool ShowInfo(Invocation & invocation);
bool CompileMetadata(Invocation & invocation);

using enum Argument;
const std::array<Command, 8> COMMANDS = { {
    { "show", "Show the layers, and of each key every layer's value and which one holds", { Files, Json },
        Needs::PlugIns, &ShowFiles },
    { "convert", "Write all that the files hold, or with a filter what wins", { Files, Output, LayerFilter },
        Needs::PlugIns, &ConvertFiles },
    { "keys", "List the keys that the metadata knows", { Pattern, Chip, Json }, Needs::Metadata, &ListKeys },
    { "describe", "Tell all that the metadata knows about a key", { Key, Chip, Json }, Needs::Metadata,
        &DescribeKey },
    { "get", "Print the value of a key that holds, or its default", { Key, Files, Json }, Needs::Metadata,
        &GetValue },
    { "check", "Hold the files against the metadata and tell what is wrong", { Files, Json }, Needs::Metadata,
        &CheckFiles },
    { "info", "Tell chips and subsystems, and the stores of files", { OptionalFiles, Chip, Json },
        Needs::MetadataOrFiles, &ShowInfo },
    { "metadata compile", "Check sources, and compile them to a repository", { Sources, Repository },
        Needs::Nothing, &CompileMetadata },
} };

const std::array<CommandGroup, 1> COMMAND_GROUPS = {
    { { "metadata", "Make the description of a chip system" } }
};

namespace {

ConfigFile OutputOf(const Options & options)
{
    return { options.mOutput, options.mTo };
}

std::vector<ConfigFile> FilesOf(const Options & options)
{
    std::vector<ConfigFile> files;
    for (const std::string & path : options.mFiles)
        files.push_back({ path, options.mFrom });
    return files;
}

// The first missing plug-in is reported also where another one could not be loaded.
bool Load(Invocation & invocation)
{
    const Options & options = invocation.mOptions;
    CSession & session = invocation.mSession;
    const std::string folder = options.mPlugInFolder.empty() ? FindPlugInFolder() : options.mPlugInFolder;
    if (folder.empty()) {
        invocation.mConsole.Error("unable to find the plug-ins: please tell their folder with --plugin-dir");
        return false;
    }
    const bool isLoaded = session.LoadPlugIns(folder);
    const std::vector<ConfigFile> files = FilesOf(options);
    const bool hasAll = std::all_of(files.begin(), files.end(), [&](const ConfigFile & file) {
        return session.HasPlugIn(file);
    }) && (options.mOutput.empty() || session.HasPlugIn(OutputOf(options)));
    session.SetTags(options.mContext);
    return hasAll && isLoaded && (options.mMetadata.empty() || session.OpenMetadata(options.mMetadata));
}

}   // namespace

bool Command::Takes(Argument argument) const
{
    return std::find(mArguments.begin(), mArguments.end(), argument) != mArguments.end();
}

bool ReadFiles(Invocation & invocation)
{
    return invocation.mSession.Read(FilesOf(invocation.mOptions));
}

bool RunCommand(Invocation & invocation)
{
    const Command & command = *invocation.mOptions.mCommand;
    return (command.mNeeds == Needs::Nothing || Load(invocation)) && command.mRun(invocation);
}

}   // namespace zynconfig
