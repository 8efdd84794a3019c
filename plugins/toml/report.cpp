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

std::optional<std::string> TakeError()
{
    short code = 0;
    std::string text;
    const bool stands = Handler().GetErrorMsg(GROUP_FRAMEWORK, code, text);
    Handler().ClearError(GROUP_FRAMEWORK);
    Handler().ClearError(GROUP_OUTER_READER);
    return stands ? std::optional(text) : std::nullopt;
}

CErrorsSetAside::CErrorsSetAside()
{
    mFramework.mStands = Handler().GetErrorMsg(GROUP_FRAMEWORK, mFramework.mCode, mFramework.mText);
    mOuterReader.mStands = Handler().GetErrorMsg(GROUP_OUTER_READER, mOuterReader.mCode, mOuterReader.mText);
    TakeError();
}

CErrorsSetAside::~CErrorsSetAside()
{
    TakeError();
    if (mFramework.mStands)
        Handler().SetErrorMsg(mFramework.mCode, mFramework.mText);
    if (mOuterReader.mStands)
        CTheMsgHnd::GetAppropriateHandler(GROUP_OUTER_READER, "tomlconfig", false)
            .SetErrorMsg(mOuterReader.mCode, mOuterReader.mText);
}

void ReportException(const std::string & path, const char * what)
{
    ReportError(path + ": " + keywords::ERROR_UNEXPECTED + " (" + what + ')');
}

}   // namespace tomlconfig
