/// The commands of the tool. A new one is a source with its function, a line in the table of commands.cpp, and a test.

#ifndef ZYNCONFIG_COMMANDS_H
#define ZYNCONFIG_COMMANDS_H

#include "commandline.h"
#include "console.h"

#include <workbench/session.h>

#include <array>
#include <string_view>

namespace zynconfig {

/// What a command line may have after the command, in the order of the help.
enum class Argument
{
    None,
    Files,           // the files to read, --from and --context
    OptionalFiles,   // the same, and none will do
    Key,
    Pattern,
    Chip,
    Json,
    Output,   // the file to write, and --to
    LayerFilter,
    Sources,      // of metadata
    Repository,   // to write
};

/// What has to be there before a command runs.
enum class Needs
{
    Nothing,
    PlugIns,
    MetadataOrFiles,   // and the plug-ins
    Metadata           // likewise
};

/// What a command works with.
struct Invocation
{
    const Options & mOptions;
    CConsole & mConsole;
    workbench::CSession & mSession;
};

struct Command
{
    std::string_view mName;   // of two words for a command in a group
    const char * mHelp;
    std::array<Argument, 3> mArguments;
    Needs mNeeds;
    bool (*mRun)(Invocation & invocation);   // true if all is well; what isn't has been reported then

    bool Takes(Argument argument) const;
};

/// Commands whose names begin with the same word.
struct CommandGroup
{
    const char * mName;
    const char * mHelp;
};

extern const std::array<Command, 8> COMMANDS;
extern const std::array<CommandGroup, 1> COMMAND_GROUPS;

/// Reads the files of the command line.
bool ReadFiles(Invocation & invocation);

/// Loads plug-ins and metadata for the command, and runs it.
bool RunCommand(Invocation & invocation);

}   // namespace zynconfig

#endif
