#include "findings.h"

#include <kit/text/utf8.h>

#include <algorithm>

namespace workbench::compiler {

using kit::text::Printable;

CFindings::CFindings(std::vector<std::string> files)
    : mFiles(std::move(files))
{}

void CFindings::Error(const Place & place, const std::string & text)
{
    mFindings.push_back({ place, "error: " + text });
    ++mErrorCount;
}

void CFindings::Warning(const Place & place, const std::string & text)
{
    mFindings.push_back({ place, "warning: " + text });
}

std::size_t CFindings::ErrorCount() const
{
    return mErrorCount;
}

std::vector<std::string> CFindings::Lines() const
{
    std::vector<Finding> sorted = mFindings;
    std::stable_sort(sorted.begin(), sorted.end());
    sorted.erase(
        std::unique(sorted.begin(), sorted.end()), sorted.end());   // of a struct that several keys share

    std::vector<std::string> lines;
    lines.reserve(sorted.size());
    for (const Finding & finding : sorted)
        lines.push_back(PlaceText(finding.mPlace) + ": " + finding.mText);
    return lines;
}

std::string CFindings::PlaceText(const Place & place) const
{
    return Printable(mFiles.at(place.mFile)) + ':' + std::to_string(place.mLine) + ':' +
           std::to_string(place.mColumn);
}

}   // namespace workbench::compiler
