/// A list of findings: collected in one run, in the order of the file, limited where a bad file would give thousands.
///
///     CFindings findings("radio.img", 100);
///     findings.Add(MakeFinding("out-of-range", "the store 70000 is out of range; expected 0 to 65535"));
///     if (!findings.IsEmpty())
///         return ReportErrors(findings);   // channel.h

#ifndef KIT_REPORTING_FINDINGS_H
#define KIT_REPORTING_FINDINGS_H

#include <kit/reporting/finding.h>

#include <cstddef>
#include <limits>
#include <string>
#include <vector>

namespace kit::reporting {

/// Findings about one file.
class CFindings
{
public:
    static constexpr std::size_t NO_LIMIT = std::numeric_limits<std::size_t>::max();

    /// `file` becomes the place of each finding that names none. Findings after the first `limit` are only counted.
    explicit CFindings(const std::string & file = "", std::size_t limit = NO_LIMIT);

    void Add(Finding finding);

    /// With those beyond the limit.
    std::size_t Count() const { return mCount; }
    bool IsEmpty() const { return mCount == 0; }

    const std::string & File() const { return mFile; }

    /// By line and column; findings of one place, and those without one, as they were added. If some were only counted,
    /// a last one says how many ("more-findings").
    std::vector<Finding> InOrder() const;

    /// A line for each of these, joined by line ends.
    std::string Text() const;

private:
    std::string mFile;
    std::size_t mLimit;
    std::vector<Finding> mFindings;
    std::size_t mCount = 0;
};

/// The lines of `findings`, joined by line ends.
std::string TextOf(const std::vector<Finding> & findings);

}   // namespace kit::reporting

#endif
