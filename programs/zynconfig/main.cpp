/// zynconfig: shows and converts the configuration of a chip. docs/zynconfig.md is the manual.

#include "commands.h"

#include <messages/messages.h>

#include <csignal>
#include <cstdint>
#include <exception>
#include <fcntl.h>
#include <unistd.h>

namespace {

using namespace zynconfig;

constexpr std::uint32_t ALL_DEBUG_LEVELS = 3;

// A file opened while a standard stream is closed would take its place, and messages would end up in it. What stands
// in instead can't be written to, so that the loss of output still shows.
void KeepStandardStreams()
{
    while (true) {
        const int file = open("/dev/null", O_RDONLY);
        if (file < 0 || file > STDERR_FILENO) {
            close(file);
            return;
        }
    }
}

int Run(int argumentCount, char ** arguments, CConsole & console)
{
    Options options;
    if (const auto exitCode = ParseCommandLine(argumentCount, arguments, options, console))
        return *exitCode;

    const VrexZynConfigTools::CMessageSinkGuard guard(&console);
    if (options.mIsTraced)
        VrexZynConfigTools::CTheMsgHnd::SetDebugLevel(ALL_DEBUG_LEVELS);

    workbench::CSession session(console);
    Invocation invocation = { options, console, session };
    const bool isDone = RunCommand(invocation);
    const bool isAnyError = workbench::PassOnChannel(console);   // also what the metadata left there unasked
    return isDone && !isAnyError ? EXIT_DONE : EXIT_WRONG_DATA;
}

}   // namespace

int main(int argumentCount, char ** arguments)
{
    KeepStandardStreams();
    std::signal(SIGPIPE, SIG_IGN);   // a reader that has gone shows as a failed write, which is reported
    CConsole console;
    try {
        return Run(argumentCount, arguments, console);
    } catch (const std::exception & exception) {
        console.Error(exception.what());
    }
    return EXIT_WRONG_DATA;
}
