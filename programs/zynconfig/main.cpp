/// zynconfig: shows and converts the configuration of a chip. docs/zynconfig.md is the manual.

#include "commandline.h"
#include "commands.h"
#include "session.h"

#include <messages/messages.h>
#include <workbench/compiler/compile.h>
#include <workbench/errors.h>

#include <csignal>
#include <cstdint>
#include <exception>
#include <fcntl.h>
#include <unistd.h>

namespace {

using namespace workbench;
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

bool Do(Command command, CSession & session)
{
    switch (command) {
    case Command::Show:
        return Show(session);
    case Command::Convert:
        return Convert(session);
    case Command::Keys:
        return Keys(session);
    case Command::Describe:
        return Describe(session);
    case Command::Check:
        return Check(session);
    case Command::Info:
        return Info(session);
    case Command::Get:
        return Get(session);
    case Command::CompileMetadata:
        break;   // needs no session
    }
    return false;
}

int Run(int argumentCount, char ** arguments)
{
    Options options;
    if (const auto exitCode = ParseCommandLine(argumentCount, arguments, options))
        return *exitCode;

    CErrorStreamSink sink;
    const VrexZynConfigTools::CMessageSinkGuard guard(&sink);
    if (options.mIsTraced)
        VrexZynConfigTools::CTheMsgHnd::SetDebugLevel(ALL_DEBUG_LEVELS);

    if (options.mCommand == Command::CompileMetadata)
        return compiler::Compile(options.mFiles, options.mOutput) ? EXIT_DONE : EXIT_WRONG_DATA;

    CSession session(options);
    const bool isDone = session.Load() && Do(options.mCommand, session);
    const bool isAnyError = ReportChannel();   // also what the metadata left there without a question about it
    return isDone && !isAnyError ? EXIT_DONE : EXIT_WRONG_DATA;
}

}   // namespace

int main(int argumentCount, char ** arguments)
{
    KeepStandardStreams();
    std::signal(SIGPIPE, SIG_IGN);   // a reader that has gone shows as a failed write, which is reported
    try {
        return Run(argumentCount, arguments);
    } catch (const std::exception & exception) {
        ReportError(exception.what());
    }
    return EXIT_WRONG_DATA;
}
