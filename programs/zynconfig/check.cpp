#include "commands.h"
#include "json.h"

#include <kit/text/utf8.h>
#include <workbench/check.h>
#include <workbench/chipwalk.h>

#include <algorithm>
#include <charconv>
#include <cstdint>

namespace zynconfig {

using kit::reporting::LineOf;
using kit::text::Printable;
using namespace workbench;

namespace {

// Takes a number and a colon from the front of `text`; 0 if there is none.
std::uint32_t TakeNumber(std::string & text)
{
    std::uint32_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end == text.data() + text.size() || *end != ':')
        return 0;
    text.erase(0, static_cast<std::size_t>(end - text.data()) + 1);
    return number;
}

// The place of an error that a plug-in recorded by its text alone, as those do that have no records yet.
Finding WithPlace(Finding finding, const std::vector<std::string> & files)
{
    for (const std::string & file : files) {
        if (!finding.mFile.empty() || finding.mText.rfind(file + ':', 0) != 0)
            continue;
        finding.mFile = file;
        finding.mText.erase(0, file.size() + 1);
        finding.mLine = TakeNumber(finding.mText);
        finding.mColumn = finding.mLine == 0 ? 0 : TakeNumber(finding.mText);
        finding.mText.erase(0, finding.mText.find_first_not_of(' '));
    }
    return finding;
}

Json JsonOf(const Finding & finding, const std::vector<std::string> & files)
{
    // A finding about any other file, such as the metadata, has that in its text.
    const bool isOfFile = std::find(files.begin(), files.end(), finding.mFile) != files.end();
    return { { "file", isOfFile ? Json(JsonText(finding.mFile)) : Json() },
        { "line", isOfFile && finding.mLine != 0 ? Json(finding.mLine) : Json() },
        { "column", isOfFile && finding.mColumn != 0 ? Json(finding.mColumn) : Json() },
        { "text", JsonText(isOfFile ? finding.mText : LineOf(finding)) } };
}

std::string RenderJson(const Invocation & invocation, std::size_t keys)
{
    Json findings = Json::array();
    for (const Finding & finding : invocation.mConsole.Errors())
        findings.push_back(JsonOf(WithPlace(finding, invocation.mOptions.mFiles), invocation.mOptions.mFiles));
    return TextOf(Json{ { "format", JSON_FORMAT }, { "chip", JsonText(invocation.mSession.Watch().Chip()) },
        { "keys", keys }, { "findings", std::move(findings) } });
}

}   // namespace

bool CheckFiles(Invocation & invocation)
{
    // What was read is checked also where a read has failed, so that one run finds all.
    const bool isRead = ReadFiles(invocation);
    const bool isSound = workbench::Check(invocation.mSession) && isRead;

    const CSession & session = invocation.mSession;
    std::size_t keys = 0;
    ForEachElement(session.Chip(), [&](const ChipEntry &) { ++keys; });
    if (invocation.mOptions.mIsJson)
        return invocation.mConsole.Write(RenderJson(invocation, keys)) && isSound;
    return isSound &&
           invocation.mConsole.Write("Nothing is wrong: " + std::to_string(keys) + " values of the chip " +
                                     Printable(session.Watch().Chip()) + ".\n");
}

}   // namespace zynconfig
