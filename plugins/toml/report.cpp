#include "report.h"

#include <configtools/keywords.h>

#include <messages/messages.h>

namespace tomlconfig {

using namespace VrexZynConfigTools;

namespace {

CMessageHandler & Handler()
{
    return CTheMsgHnd::GetAppropriateHandler(GROUP_FRAMEWORK, "tomlconfig", false);
}

}   // namespace

bool IsErrorStanding()
{
    return Handler().IsErrorSet(GROUP_FRAMEWORK, true);
}

void ReportError(const std::string & text)
{
    short code = 0;
    std::string standing;
    const bool stands = Handler().GetErrorMsg(GROUP_FRAMEWORK, code, standing);
    Handler().SetErrorMsg(0, stands ? standing + '\n' + text : text);
}

void ReportWarning(const std::string & text)
{
    Handler().NotifyStatus(STATUS_WARNING, text);
}

void ReportException(const std::string & path, const char * what)
{
    ReportError(path + ": " + keywords::ERROR_UNEXPECTED + " (" + what + ')');
}

}   // namespace tomlconfig
