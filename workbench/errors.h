/// What goes wrong, on standard error: one line each, which begins with "zynconfig: error: ".

#ifndef WORKBENCH_ERRORS_H
#define WORKBENCH_ERRORS_H

#include <messages/messages.h>

#include <string>
#include <vector>

namespace workbench {

/// Prints the text; one of several lines gives several.
void ReportError(const std::string & text);

/// Prints every text; true if there was any.
bool ReportErrors(const std::vector<std::string> & texts);

/// Prints and clears the errors that stand in the library's message groups; true if there was any.
bool ReportChannel();

/// Keeps every line that is reported as an error during its life. One at a time.
class CErrorKeeper
{
public:
    CErrorKeeper();
    ~CErrorKeeper();
    CErrorKeeper(const CErrorKeeper &) = delete;
    CErrorKeeper & operator=(const CErrorKeeper &) = delete;

    const std::vector<std::string> & Lines() const { return mLines; }

private:
    friend void ReportError(const std::string & text);

    std::vector<std::string> mLines;
};

/// Writes `text` to standard output. False, with the reason reported, if not all of it could be written.
bool WriteOutput(const std::string & text);

/// Shows the library's status messages on standard error, and its debug lines where debug output is on.
class CErrorStreamSink : public VrexZynConfigTools::IMessageSink
{
public:
    void OnDebugLine(const VrexZynConfigTools::DebugLine & line) override;
    void OnStatus(VrexZynConfigTools::GroupEnum group, VrexZynConfigTools::StatusLevels level,
        const std::string & text) override;
};

}   // namespace workbench

#endif
