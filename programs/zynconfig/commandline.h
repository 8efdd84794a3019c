/// The command line of the tool.

#ifndef ZYNCONFIG_COMMANDLINE_H
#define ZYNCONFIG_COMMANDLINE_H

#include <optional>
#include <string>
#include <vector>

namespace zynconfig {

class CConsole;
struct Command;

struct Options
{
    const Command * mCommand = nullptr;
    std::vector<std::string> mFiles;   // each of a known format; of `metadata compile` its sources
    std::string mFrom;                 // the format of all files; empty: by the extension of each
    std::string mOutput;               // of `convert`, of a known format; of `metadata compile`
    std::string mTo;                   // the format of the output; empty: by its extension
    std::string mMetadata;             // the metadata repository; empty: none
    std::string mChip;                 // the label that selects a system; empty: the only one
    std::string mKey;                  // what `describe` and `get` are about, and the pattern of `keys`
    std::optional<int> mLayerFilter;   // 1 to 15 or -15 to -1
    std::string mContext;              // tags as `IConfigContext::Parse` takes them
    std::string mPlugInFolder;         // empty: the usual one
    bool mIsJson = false;
    bool mIsTraced = false;
};

/// What the exit code of the tool says.
enum ExitCode : int
{
    EXIT_DONE = 0,
    EXIT_WRONG_DATA = 1,
    EXIT_WRONG_COMMAND_LINE = 2
};

/// Fills `options`. An exit code if there is nothing more to do: help or version were asked for and have been
/// printed, or the command line is wrong and the reason has been reported.
std::optional<ExitCode> ParseCommandLine(
    int argumentCount, const char * const * arguments, Options & options, CConsole & console);

/// What is wrong with a value of --context, or an empty text.
std::string ContextProblem(const std::string & text);

/// What is wrong with a value of --layer-filter, or an empty text.
std::string LayerFilterProblem(const std::string & text);

}   // namespace zynconfig

#endif
