#include "toolprocess.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <poll.h>
#include <sstream>
#include <stdexcept>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

extern char ** environ;

namespace zynconfig::test {

namespace {

using Clock = std::chrono::steady_clock;
constexpr auto LONGEST_RUN = std::chrono::seconds(60);

/// A file descriptor with an owner.
class CDescriptor
{
public:
    explicit CDescriptor(int number = -1)
        : mNumber(number)
    {}
    CDescriptor(CDescriptor && other) noexcept
        : mNumber(other.mNumber)
    {
        other.mNumber = -1;
    }
    CDescriptor & operator=(CDescriptor && other) noexcept
    {
        std::swap(mNumber, other.mNumber);
        return *this;
    }
    ~CDescriptor() { Close(); }

    int Number() const { return mNumber; }
    void Close()
    {
        if (mNumber >= 0)
            close(mNumber);
        mNumber = -1;
    }

private:
    int mNumber;
};

/// The two ends of a way from the tool to the test.
struct Channel
{
    CDescriptor mRead;
    CDescriptor mWrite;
};

Channel MakePipe()
{
    std::array<int, 2> ends = {};
    if (pipe2(ends.data(), O_CLOEXEC) != 0)
        throw std::runtime_error("no pipe");
    return { CDescriptor(ends[0]), CDescriptor(ends[1]) };
}

Channel MakeTerminal(unsigned short columns)
{
    CDescriptor master(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC));
    if (grantpt(master.Number()) != 0 || unlockpt(master.Number()) != 0)
        throw std::runtime_error("no terminal");
    CDescriptor slave(open(ptsname(master.Number()), O_RDWR | O_NOCTTY | O_CLOEXEC));
    termios settings = {};
    tcgetattr(slave.Number(), &settings);
    cfmakeraw(&settings);
    tcsetattr(slave.Number(), TCSANOW, &settings);
    winsize size = {};
    size.ws_col = columns;
    ioctl(slave.Number(), TIOCSWINSZ, &size);
    return { std::move(master), std::move(slave) };
}

Channel MakeOutput(const ToolRun & run)
{
    if (run.mOutput == Output::Terminal)
        return MakeTerminal(run.mTerminalColumns);
    Channel channel = MakePipe();
    if (run.mOutput == Output::FullDevice)
        channel.mWrite = CDescriptor(open("/dev/full", O_WRONLY | O_CLOEXEC));
    if (run.mOutput == Output::BrokenPipe)
        channel.mRead.Close();
    if (run.mOutput == Output::Closed)
        channel.mWrite.Close();
    return channel;
}

// Neither the width nor the colours of the terminal that runs the tests may show in them, nor its metadata.
std::vector<std::string> EnvironmentOf(const ToolRun & run)
{
    std::map<std::string, std::string> variables;
    for (char ** each = environ; *each != nullptr; ++each) {
        const std::string variable = *each;
        variables[variable.substr(0, variable.find('='))] = variable.substr(variable.find('=') + 1);
    }
    variables["COLUMNS"] = "";
    variables["NO_COLOR"] = "";
    variables["TERM"] = "xterm";
    variables["ZYNCONFIG_METADATA"] = "";
    for (const auto & [name, value] : run.mEnvironment)
        variables[name] = value;

    std::vector<std::string> environment;
    for (const auto & [name, value] : variables) {
        if (!value.empty())
            environment.push_back(name + '=' + value);
    }
    return environment;
}

std::vector<char *> Pointers(std::vector<std::string> & texts)
{
    std::vector<char *> pointers;
    for (std::string & text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

[[noreturn]] void Become(const std::string & program, char ** arguments, char ** environment, int out, int err)
{
    const int nowhere = open("/dev/null", O_RDONLY);
    dup2(nowhere, STDIN_FILENO);
    if (out < 0)
        close(STDOUT_FILENO);
    else
        dup2(out, STDOUT_FILENO);
    dup2(err, STDERR_FILENO);
    execve(program.c_str(), arguments, environment);
    _exit(127);
}

// Appends what is there; false at the end. The end of a terminal shows as an error.
bool Drain(const CDescriptor & descriptor, std::string & text)
{
    std::array<char, 65536> buffer = {};
    const ssize_t count = read(descriptor.Number(), buffer.data(), buffer.size());
    if (count > 0)
        text.append(buffer.data(), static_cast<std::size_t>(count));
    return count > 0 || (count < 0 && errno == EINTR);
}

// Reads both streams until both have ended or time is up, when the process gets killed.
void Listen(
    pid_t process, Clock::time_point deadline, CDescriptor & out, CDescriptor & err, ToolResult & result)
{
    while (out.Number() >= 0 || err.Number() >= 0) {
        std::array<pollfd, 2> waits = { { { out.Number(), POLLIN, 0 }, { err.Number(), POLLIN, 0 } } };
        const auto left =
            std::chrono::duration_cast<std::chrono::microseconds>(deadline - Clock::now()).count();
        const timespec timeout = { std::max<long>(left, 0) / 1000000,
            std::max<long>(left, 0) % 1000000 * 1000 };
        if (ppoll(waits.data(), waits.size(), &timeout, nullptr) == 0) {
            kill(process, SIGKILL);
            deadline = Clock::now() + LONGEST_RUN;
        }
        if (waits[0].revents != 0 && !Drain(out, result.mOut))
            out.Close();
        if (waits[1].revents != 0 && !Drain(err, result.mErr))
            err.Close();
    }
}

int ExitCodeOf(pid_t process)
{
    int status = 0;
    while (waitpid(process, &status, 0) < 0 && errno == EINTR) {
        // a signal to the test is no answer about the tool
    }
    return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

}   // namespace

ToolResult RunTool(const ToolRun & run)
{
    const std::string program = run.mProgram.empty() ? ZYNCONFIG_TOOL : run.mProgram;
    std::vector<std::string> arguments = run.mArguments;
    arguments.insert(arguments.begin(), "zynconfig");
    std::vector<std::string> environment = EnvironmentOf(run);
    const std::vector<char *> argumentPointers = Pointers(arguments);
    const std::vector<char *> environmentPointers = Pointers(environment);

    Channel out = MakeOutput(run);
    Channel err = MakePipe();
    const auto patience = run.mKillAfterMicroseconds < 0
                              ? std::chrono::microseconds(LONGEST_RUN)
                              : std::chrono::microseconds(run.mKillAfterMicroseconds);
    const pid_t process = fork();
    if (process == 0)
        Become(program, const_cast<char **>(argumentPointers.data()),
            const_cast<char **>(environmentPointers.data()), out.mWrite.Number(), err.mWrite.Number());

    out.mWrite.Close();
    err.mWrite.Close();
    ToolResult result = { 0, "", "" };
    Listen(process, Clock::now() + patience, out.mRead, err.mRead, result);
    result.mExitCode = ExitCodeOf(process);
    return result;
}

CTempFolder::CTempFolder()
{
    std::string name = (std::filesystem::temp_directory_path() / "zynconfig-test-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr)
        throw std::runtime_error("no folder");
    mPath = name;
}

CTempFolder::~CTempFolder()
{
    std::error_code error;
    std::filesystem::remove_all(mPath, error);
}

std::string CTempFolder::File(const std::string & name) const
{
    return (mPath / name).string();
}

std::string CTempFolder::File(const std::string & name, const std::string & content) const
{
    std::ofstream(mPath / name, std::ios::binary) << content;
    return File(name);
}

std::vector<std::string> CTempFolder::Names() const
{
    std::vector<std::string> names;
    for (const auto & entry : std::filesystem::directory_iterator(mPath))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

std::string ContentOf(const std::filesystem::path & path)
{
    std::ifstream file(path, std::ios::binary);
    return { std::istreambuf_iterator<char>(file), {} };
}

std::vector<std::string> LinesOf(const std::string & text)
{
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

}   // namespace zynconfig::test
