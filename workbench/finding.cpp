#include "finding.h"

#include <kit/text/utf8.h>
#include <messages/messages.h>

#include <array>

namespace workbench {

using namespace VrexZynConfigTools;
using kit::text::Quoted;

namespace {

constexpr std::array CHANNEL_GROUPS = { GROUP_CORE_CLASSES, GROUP_UTILITIES, GROUP_FRAMEWORK,
    GROUP_OUTER_READER };

}   // namespace

bool PassOn(const std::vector<Finding> & findings, IFindingSink & sink)
{
    for (const Finding & finding : findings)
        sink.OnFinding(finding);
    return !findings.empty();
}

bool PassOnChannel(IFindingSink & sink)
{
    bool isAny = false;
    for (const GroupEnum group : CHANNEL_GROUPS) {
        auto & handler = CTheMsgHnd::GetAppropriateHandler(group, "workbench::PassOnChannel", false);
        const std::vector<Finding> findings = handler.ErrorRecords(group);
        handler.ClearError(group);
        isAny = PassOn(findings, sink) || isAny;
    }
    return isAny;
}

Finding StatusFinding(const std::string & text)
{
    if (const ErrorRecord * const record = CTheMsgHnd::StatusRecord())
        return *record;
    Finding finding = kit::reporting::MakeFinding("", text);
    finding.mSeverity = SEVERITY_WARNING;
    return finding;
}

Finding FindingIn(const std::string & file, const std::string & code, const std::string & text)
{
    Finding finding = kit::reporting::MakeFinding(code, text);
    return kit::reporting::WithPlace(finding, file);
}

Finding MissingPlugIn(const std::string & plugIn, const std::string & folder, const std::string & file)
{
    return kit::reporting::MakeFinding("missing-plug-in",
        "no plug-in " + Quoted(plugIn) + " in " + Quoted(folder) + ", which " + Quoted(file) + " needs");
}

}   // namespace workbench
