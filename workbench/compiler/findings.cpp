#include "findings.h"

#include <kit/text/utf8.h>

#include <algorithm>
#include <utility>

namespace workbench::compiler {

using namespace VrexZynConfigTools;

using kit::text::Printable;

namespace {

constexpr char CODE[] = "metadata-source";   // what is wrong with a source

}   // namespace

CSourceFindings::CSourceFindings(std::vector<std::string> files)
    : mFiles(std::move(files))
{}

void CSourceFindings::Error(const Place & place, const std::string & text)
{
    mFindings.push_back({ place, SEVERITY_ERROR, text });
    ++mErrorCount;
}

void CSourceFindings::Warning(const Place & place, const std::string & text)
{
    mFindings.push_back({ place, SEVERITY_WARNING, text });
}

std::size_t CSourceFindings::ErrorCount() const
{
    return mErrorCount;
}

std::vector<Finding> CSourceFindings::InOrder() const
{
    std::vector<PlacedText> sorted = mFindings;
    std::stable_sort(sorted.begin(), sorted.end());
    sorted.erase(
        std::unique(sorted.begin(), sorted.end()), sorted.end());   // of a struct that several keys share

    std::vector<Finding> findings;
    findings.reserve(sorted.size());
    for (const PlacedText & each : sorted) {
        Finding finding = kit::reporting::MakeFinding(CODE, each.mText);
        finding.mSeverity = each.mSeverity;
        findings.push_back(kit::reporting::WithPlace(std::move(finding), mFiles.at(each.mPlace.mFile),
            each.mPlace.mLine, each.mPlace.mColumn));
    }
    return findings;
}

std::string CSourceFindings::PlaceText(const Place & place) const
{
    return Printable(mFiles.at(place.mFile)) + ':' + std::to_string(place.mLine) + ':' +
           std::to_string(place.mColumn);
}

}   // namespace workbench::compiler
