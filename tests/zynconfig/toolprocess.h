/// The tool as a process of its own: what it prints, how it ends, which files it leaves.

#ifndef TESTS_ZYNCONFIG_TOOLPROCESS_H
#define TESTS_ZYNCONFIG_TOOLPROCESS_H

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace zynconfig::test {

struct ToolResult
{
    int mExitCode;   // 128 and the signal's number if a signal ended it
    std::string mOut;
    std::string mErr;
};

/// Where standard output leads.
enum class Output
{
    Caught,       // to mOut
    Closed,       // nowhere: the descriptor isn't open
    FullDevice,   // to a device that is always full
    BrokenPipe,   // to a pipe that nobody reads
    Terminal      // to a terminal; mOut is what appears there
};

struct ToolRun
{
    std::vector<std::string> mArguments;
    std::map<std::string, std::string> mEnvironment = {};   // beside what every run gets; empty values unset
    Output mOutput = Output::Caught;
    unsigned short mTerminalColumns = 0;   // 0: the terminal doesn't know
    int mKillAfterMicroseconds = -1;       // less than 0: never
    std::string mProgram = {};             // empty: the tool of this build
};

/// Runs the tool to its end. One that takes longer than a minute is killed.
ToolResult RunTool(const ToolRun & run);

/// A folder of its own for a test, gone with it.
class CTempFolder
{
public:
    CTempFolder();
    ~CTempFolder();
    CTempFolder(const CTempFolder &) = delete;
    CTempFolder & operator=(const CTempFolder &) = delete;

    std::filesystem::path Path() const { return mPath; }

    /// The path of a file in it as text; with `content` the file is made.
    std::string File(const std::string & name) const;
    std::string File(const std::string & name, const std::string & content) const;

    /// What is in it, by name.
    std::vector<std::string> Names() const;

private:
    std::filesystem::path mPath;
};

/// The content of a file; empty if there is none.
std::string ContentOf(const std::filesystem::path & path);

std::vector<std::string> LinesOf(const std::string & text);

}   // namespace zynconfig::test

#endif
