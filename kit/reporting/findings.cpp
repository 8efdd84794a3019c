#include <kit/reporting/findings.h>

#include <algorithm>
#include <tuple>
#include <utility>

namespace kit::reporting {

CFindings::CFindings(const std::string & file, std::size_t limit)
    : mScope(WithPlace({}, file))
    , mLimit(limit)
{}

void CFindings::Add(Finding finding)
{
    const bool isError = finding.mSeverity == VrexZynConfigTools::SEVERITY_ERROR;
    if (isError && ++mCount > mLimit)
        return;
    for (const auto member : { &Finding::mFile, &Finding::mStore, &Finding::mSubsystem, &Finding::mKey })
        if ((finding.*member).empty())
            finding.*member = mScope.*member;
    (isError ? mErrors : mWarnings).push_back(std::move(finding));
}

std::vector<Finding> CFindings::InOrder() const
{
    std::vector<Finding> sorted = mErrors;
    std::stable_sort(sorted.begin(), sorted.end(), [](const Finding & left, const Finding & right) {
        return std::tie(left.mLine, left.mColumn) < std::tie(right.mLine, right.mColumn);
    });
    if (mCount > sorted.size())
        sorted.push_back(
            WithPlace(MakeFinding("more-findings", "and " + std::to_string(mCount - sorted.size()) + " more"),
                mScope.mFile));
    return sorted;
}

std::string CFindings::Text() const
{
    return TextOf(InOrder());
}

std::string TextOf(const std::vector<Finding> & findings)
{
    std::string text;
    for (const Finding & finding : findings)
        text.append(text.empty() ? "" : "\n").append(LineOf(finding));
    return text;
}

}   // namespace kit::reporting
