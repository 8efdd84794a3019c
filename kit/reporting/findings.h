/// A list of findings: collected in one run, in the order of the file, limited where a bad file would give thousands.
///
///     CFindings findings("radio.img", 100);
///     findings.Scope().mStore = "eeprom.1";
///     findings.Add(MakeFinding("unknown-key", "unknown key 17"));
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

/// Findings about one file. Warnings don't count as errors, and are in a list of their own.
class CFindings
{
public:
    static constexpr std::size_t NO_LIMIT = std::numeric_limits<std::size_t>::max();

    /// `file` is that of each finding that names none. Errors after the first `limit` are only counted.
    explicit CFindings(const std::string & file = "", std::size_t limit = NO_LIMIT);

    /// Whatever `finding` says nothing of (file, store, subsystem, key) comes from the scope.
    void Add(Finding finding);

    /// Where the reader of the file is: what applies to the findings that are added from now on.
    Finding & Scope() { return mScope; }

    /// Of errors, with those beyond the limit.
    std::size_t Count() const { return mCount; }
    bool IsEmpty() const { return mCount == 0; }

    /// As they were added.
    const std::vector<Finding> & Warnings() const { return mWarnings; }

    /// The errors by line and column; findings of one place, and those without one, as they were added. If some were only counted,
    /// a last one says how many ("more-findings").
    std::vector<Finding> InOrder() const;

    /// A line for each of these, joined by line ends.
    std::string Text() const;

private:
    Finding mScope;
    std::size_t mLimit;
    std::vector<Finding> mErrors;
    std::vector<Finding> mWarnings;
    std::size_t mCount = 0;
};

/// The lines of `findings`, joined by line ends.
std::string TextOf(const std::vector<Finding> & findings);

}   // namespace kit::reporting

#endif
