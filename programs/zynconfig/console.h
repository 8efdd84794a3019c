/// What the tool prints: results on standard output, findings on standard error, a line each, which begins with
/// "zynconfig: error: " or "zynconfig: warning: ".

#ifndef ZYNCONFIG_CONSOLE_H
#define ZYNCONFIG_CONSOLE_H

#include <messages/messages.h>
#include <workbench/finding.h>

#include <string>
#include <vector>

namespace zynconfig {

/// Prints each finding as soon as it is reported, the library's status messages as warnings, and its debug lines where
/// debug output is on.
class CConsole : public workbench::IFindingSink, public VrexZynConfigTools::IMessageSink
{
public:
    /// One of several lines gives several.
    void OnFinding(const workbench::Finding & finding) override;

    /// An error of which nothing but the text is known.
    void Error(const std::string & text);

    /// Writes `text` to standard output. False, with the reason reported, if not all of it could be written.
    bool Write(const std::string & text);

    /// Writes `line` to standard error as it is.
    static void WriteErrorLine(const std::string & line);

    /// The errors that were reported as findings, in order.
    const std::vector<workbench::Finding> & Errors() const { return mErrors; }

    void OnDebugLine(const VrexZynConfigTools::DebugLine & line) override;
    void OnStatus(VrexZynConfigTools::GroupEnum group, VrexZynConfigTools::StatusLevels level,
        const std::string & text) override;

private:
    std::vector<workbench::Finding> mErrors;
};

}   // namespace zynconfig

#endif
