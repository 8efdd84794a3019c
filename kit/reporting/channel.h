/// How a plug-in reports: by an error in the framework's message group, the only way that readers, writers and providers
/// have. Each error has a record beside its text, so that a tool needs to parse nothing.

#ifndef KIT_REPORTING_CHANNEL_H
#define KIT_REPORTING_CHANNEL_H

#include <kit/reporting/finding.h>
#include <kit/reporting/findings.h>

#include <array>
#include <optional>
#include <string>
#include <vector>

namespace kit::reporting {

/// Whether an error is set in the framework's group.
bool IsErrorSet();

/// Records an error. One that is set already remains, and this one follows on a line of its own.
void ReportError(const Finding & finding);

/// The same for an error about `file` of which nothing else is known. The line has the file even if its name is empty.
void ReportError(const std::string & code, const std::string & file, const std::string & text);

/// Records all errors among the findings, in order; nothing if there are none.
void ReportErrors(const CFindings & findings);

/// Passes all warnings among them on, as `ReportWarning`.
void ReportWarnings(const CFindings & findings);

/// As the one above, unless an error with the same file and text is set already.
void ReportErrorOnce(const std::string & code, const std::string & file, const std::string & text);

/// Passes a status message on, with its record; it is no error.
void ReportWarning(const Finding & finding);

/// The text of the error that is set in the framework's group, or none. Afterwards none is set there, nor in the group of
/// outer readers.
std::optional<std::string> TakeError();

/// Sets the errors of the framework and of outer readers aside for a scope, for calls that clear these groups or stop at
/// an error that isn't theirs. The errors are set again at its end, with their records, in place of any set since.
class CErrorsSetAside
{
public:
    CErrorsSetAside();
    ~CErrorsSetAside();
    CErrorsSetAside(const CErrorsSetAside &) = delete;
    CErrorsSetAside & operator=(const CErrorsSetAside &) = delete;

    /// The texts of the errors set since, joined by ": "; they are cleared. Empty for none.
    std::string Take();

private:
    struct Error
    {
        VrexZynConfigTools::GroupEnum mGroup;
        bool mIsSet = false;
        short mCode = 0;
        std::string mText;
        std::vector<Finding> mRecords;
    };

    std::array<Error, 2> mErrors;
};

}   // namespace kit::reporting

#endif
