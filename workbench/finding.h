/// What is wrong, as records: a program counts them, prints them or hands them on, and never parses a text.
///
///     workbench::CFindingList findings;
///     workbench::CSession session(findings);
///     if (!session.LoadPlugIns(folder) || !session.Read({ { "product.toml", "" } }))
///         for (const workbench::Finding & finding : findings.Findings())
///             Show(finding.mFile, finding.mLine, finding.mText);
///
/// Whatever can fail is given a sink. It passes each finding on when it finds it, and says by its result whether it
/// succeeded. The workbench itself prints nothing.

#ifndef WORKBENCH_FINDING_H
#define WORKBENCH_FINDING_H

#include <kit/reporting/finding.h>

#include <string>
#include <vector>

namespace workbench {

/// Code, severity, place, store, key, text, what was expected; whatever doesn't apply is empty or 0.
using Finding = kit::reporting::Finding;

/// Gets the findings in the order in which they are found.
class IFindingSink
{
public:
    /// Called while an operation is under way; the finding is valid during the call only.
    virtual void OnFinding(const Finding & finding) = 0;
    virtual ~IFindingSink() = default;
};

/// Collects them.
class CFindingList : public IFindingSink
{
public:
    /// Copies the finding.
    void OnFinding(const Finding & finding) override { mFindings.push_back(finding); }

    /// In the order in which they were found.
    const std::vector<Finding> & Findings() const { return mFindings; }

private:
    std::vector<Finding> mFindings;
};

/// Passes all of `findings` on; true if there is any.
bool PassOn(const std::vector<Finding> & findings, IFindingSink & sink);

/// Passes on, and clears, the errors that library and plug-ins have left in the message channel; true if there was any.
/// An error that a plug-in recorded by a text alone gives a finding for each line of it, with nothing but the text.
bool PassOnChannel(IFindingSink & sink);

/// For a message sink that is given the status message `text`: what it says, as a warning.
Finding StatusFinding(const std::string & text);

/// A finding about a file as a whole.
Finding FindingIn(const std::string & file, const std::string & code, const std::string & text);

/// That `folder` has no plug-in of this name, without which `file` can't be used.
Finding MissingPlugIn(const std::string & plugIn, const std::string & folder, const std::string & file);

}   // namespace workbench

#endif
