#include <kit/reporting/findings.h>

#include <algorithm>
#include <tuple>
#include <utility>

namespace kit::reporting {

CFindings::CFindings(const std::string & file, std::size_t limit)
    : mFile(file)
    , mLimit(limit)
{}

void CFindings::Add(Finding finding)
{
    ++mCount;
    if (mFindings.size() >= mLimit)
        return;
    if (finding.mFile.empty())
        finding.mFile = mFile;
    mFindings.push_back(std::move(finding));
}

std::vector<Finding> CFindings::InOrder() const
{
    std::vector<Finding> sorted = mFindings;
    std::stable_sort(sorted.begin(), sorted.end(), [](const Finding & left, const Finding & right) {
        return std::tie(left.mLine, left.mColumn) < std::tie(right.mLine, right.mColumn);
    });
    if (mCount > sorted.size()) {
        Finding more = MakeFinding("more-findings", "and " + std::to_string(mCount - sorted.size()) + " more");
        sorted.push_back(At(more, mFile));
    }
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
