#include "commands.h"
#include "json.h"

#include <kit/text/utf8.h>
#include <workbench/check.h>
#include <workbench/chipwalk.h>

#include <algorithm>

namespace zynconfig {

using kit::reporting::LineOf;
using kit::text::Printable;
using namespace workbench;

namespace {

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
        findings.push_back(JsonOf(finding, invocation.mOptions.mFiles));
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
