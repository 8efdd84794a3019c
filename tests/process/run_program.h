/// A program as a process of its own: what it prints, how it ends.

#ifndef TESTS_PROCESS_RUN_PROGRAM_H
#define TESTS_PROCESS_RUN_PROGRAM_H

#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <string>
#include <vector>

namespace VrexZynConfigTools::support {

struct ProgramEnd
{
    int mExitCode;         // 128 and the signal's number if a signal ended it
    std::string mOutput;   // standard output and error
};

/// Runs the program to its end; after a minute it is killed.
inline ProgramEnd RunProgram(std::vector<std::string> command)
{
    std::array<int, 2> ends = {};
    if (pipe(ends.data()) != 0)
        return { -1, "no pipe" };
    std::vector<char *> arguments;
    for (std::string & word : command)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);

    const pid_t child = fork();
    if (child == 0) {
        dup2(ends[1], STDOUT_FILENO);
        dup2(ends[1], STDERR_FILENO);
        alarm(60);
        execv(arguments[0], arguments.data());
        _exit(127);
    }
    close(ends[1]);
    ProgramEnd end = { 0, "" };
    std::array<char, 4096> part = {};
    for (ssize_t size = 0; (size = read(ends[0], part.data(), part.size())) > 0;)
        end.mOutput.append(part.data(), static_cast<std::size_t>(size));
    close(ends[0]);
    int status = 0;
    waitpid(child, &status, 0);
    end.mExitCode = WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
    return end;
}

}   // namespace VrexZynConfigTools::support

#endif
