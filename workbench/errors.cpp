#include "errors.h"

#include <kit/text/utf8.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <sstream>
#include <system_error>

namespace workbench {

using namespace VrexZynConfigTools;
using kit::text::Printable;

namespace {

constexpr std::array CHANNEL_GROUPS = { GROUP_CORE_CLASSES, GROUP_UTILITIES, GROUP_FRAMEWORK,
    GROUP_OUTER_READER };

// Each line goes out in one piece, so that it stays whole beside the output of other processes.
void PrintLines(const char * kind, const std::string & text)
{
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        const std::string output = std::string("zynconfig: ") + kind + ": " + Printable(line) + '\n';
        static_cast<void>(std::fwrite(output.data(), 1, output.size(), stderr));   // nowhere left to complain
    }
}

CErrorKeeper * gKeeper = nullptr;   // the one that lives, if any

const char * OrEmpty(const char * text)
{
    return text == nullptr ? "" : text;
}

}   // namespace

void ReportError(const std::string & text)
{
    const std::string told = text.empty() ? "an error without a text" : text;
    PrintLines("error", told);
    if (gKeeper == nullptr)
        return;
    std::istringstream lines(told);
    for (std::string line; std::getline(lines, line);)
        gKeeper->mLines.push_back(line);
}

CErrorKeeper::CErrorKeeper()
{
    gKeeper = this;
}

CErrorKeeper::~CErrorKeeper()
{
    gKeeper = nullptr;
}

bool ReportErrors(const std::vector<std::string> & texts)
{
    for (const std::string & text : texts)
        ReportError(text);
    return !texts.empty();
}

bool ReportChannel()
{
    bool isAnyError = false;
    for (const GroupEnum group : CHANNEL_GROUPS) {
        auto & handler = CTheMsgHnd::GetAppropriateHandler(group, "zynconfig::ReportChannel", false);
        short code = 0;
        std::string text;
        if (!handler.GetErrorMsg(group, code, text))
            continue;
        ReportError(text);
        handler.ClearError(group);
        isAnyError = true;
    }
    return isAnyError;
}

bool WriteOutput(const std::string & text)
{
    if (std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0)
        return true;
    ReportError("unable to write to the standard output: " + std::generic_category().message(errno));
    return false;
}

void CErrorStreamSink::OnDebugLine(const DebugLine & line)
{
    PrintLines("trace",
        std::string(OrEmpty(line.mFile)) + ':' + std::to_string(line.mLine) + ": " + OrEmpty(line.mText));
}

void CErrorStreamSink::OnStatus(GroupEnum /*group*/, StatusLevels /*level*/, const std::string & text)
{
    PrintLines("warning", text);
}

}   // namespace workbench
