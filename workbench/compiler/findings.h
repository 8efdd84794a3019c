/// What is wrong with metadata sources: every finding with its place, collected in one run.

#ifndef WORKBENCH_COMPILER_FINDINGS_H
#define WORKBENCH_COMPILER_FINDINGS_H

#include <workbench/finding.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace workbench::compiler {

/// A place in a source; lines and columns count from 1.
struct Place
{
    std::size_t mFile = 0;   // its number in the order of the command line
    std::uint32_t mLine = 1;
    std::uint32_t mColumn = 1;

    auto operator<=>(const Place &) const = default;
};

class CSourceFindings
{
public:
    explicit CSourceFindings(std::vector<std::string> files);

    void Error(const Place & place, const std::string & text);

    /// What works, but hardly as intended.
    void Warning(const Place & place, const std::string & text);

    std::size_t ErrorCount() const;

    /// In the order of files and lines; what was found twice appears once.
    std::vector<Finding> InOrder() const;

    /// "file:line:column", for a text that speaks of another place.
    std::string PlaceText(const Place & place) const;

private:
    struct PlacedText
    {
        Place mPlace;
        VrexZynConfigTools::SeverityEnum mSeverity;
        std::string mText;

        auto operator<=>(const PlacedText &) const = default;
    };

    std::vector<std::string> mFiles;
    std::vector<PlacedText> mFindings;
    std::size_t mErrorCount = 0;
};

}   // namespace workbench::compiler

#endif
