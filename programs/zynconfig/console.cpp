#include "console.h"

#include <kit/text/utf8.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <sstream>
#include <string_view>
#include <system_error>

namespace zynconfig {

using namespace VrexZynConfigTools;
using kit::reporting::LineOf;
using kit::text::Printable;
using workbench::Finding;

namespace {

/// What a finding means to somebody at a command line.
struct Wording
{
    std::string_view mCode;
    std::string (*mText)(const Finding & finding);
};

constexpr std::array WORDINGS = {
    Wording{ "several-systems",
        [](const Finding & finding) {
            return finding.mText + ": tell by --chip LABEL which one; " + finding.mExpected;
        } },
    Wording{ "not-read-twice",
        [](const Finding &) {
            return std::string("--layer-filter reads a file twice, which needs an ordinary one");
        } },
};

// In the words of the command line, where it has any for this.
Finding Reworded(Finding finding)
{
    const auto * const found = std::find_if(
        WORDINGS.begin(), WORDINGS.end(), [&](const Wording & each) { return each.mCode == finding.mCode; });
    if (found != WORDINGS.end())
        finding.mText = found->mText(finding);
    return finding;
}

// Each line goes out in one piece, so that it remains whole beside the output of other processes.
void PrintLines(const char * kind, const std::string & text)
{
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);)
        CConsole::WriteErrorLine(std::string("zynconfig: ") + kind + ": " + Printable(line));
}

const char * OrEmpty(const char * text)
{
    return text == nullptr ? "" : text;
}

}   // namespace

void CConsole::OnFinding(const Finding & finding)
{
    Finding printed = Reworded(finding);
    const bool isError = printed.mSeverity == SEVERITY_ERROR;
    if (isError && LineOf(printed).empty())
        printed.mText = "an error without a text";
    PrintLines(isError ? "error" : "warning", LineOf(printed));
    if (isError)
        mErrors.push_back(std::move(printed));
}

void CConsole::Error(const std::string & text)
{
    OnFinding(kit::reporting::MakeFinding("", text));
}

bool CConsole::Write(const std::string & text)
{
    if (std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0)
        return true;
    Error("unable to write to the standard output: " + std::generic_category().message(errno));
    return false;
}

void CConsole::WriteErrorLine(const std::string & line)
{
    const std::string output = line + '\n';
    static_cast<void>(std::fwrite(output.data(), 1, output.size(), stderr));   // nowhere left to complain
}

void CConsole::OnDebugLine(const DebugLine & line)
{
    PrintLines("trace",
        std::string(OrEmpty(line.mFile)) + ':' + std::to_string(line.mLine) + ": " + OrEmpty(line.mText));
}

void CConsole::OnStatus(GroupEnum /*group*/, StatusLevels /*level*/, const std::string & text)
{
    OnFinding(workbench::StatusFinding(text));
}

}   // namespace zynconfig
