/// What is wrong with metadata sources: every finding with its place, collected in one run.

#ifndef WORKBENCH_COMPILER_FINDINGS_H
#define WORKBENCH_COMPILER_FINDINGS_H

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

class CFindings
{
public:
    explicit CFindings(std::vector<std::string> files);

    void Error(const Place & place, const std::string & text);

    /// What works, but hardly as intended.
    void Warning(const Place & place, const std::string & text);

    std::size_t ErrorCount() const;

    /// "file:line:column: error: text", in the order of files and lines; what was found twice stands once.
    std::vector<std::string> Lines() const;

    /// "file:line:column", for a text that speaks of another place.
    std::string PlaceText(const Place & place) const;

private:
    struct Finding
    {
        Place mPlace;
        std::string mText;

        auto operator<=>(const Finding &) const = default;
    };

    std::vector<std::string> mFiles;
    std::vector<Finding> mFindings;
    std::size_t mErrorCount = 0;
};

}   // namespace workbench::compiler

#endif
