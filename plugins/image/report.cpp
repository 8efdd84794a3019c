#include "report.h"

#include <messages/messages.h>

#include <algorithm>

namespace imageconfig {

using namespace VrexZynConfigTools;

namespace {

constexpr std::size_t MAX_FINDINGS = 100;
constexpr std::size_t MAX_LISTED = 10;

CMessageHandler & Handler(GroupEnum group = GROUP_FRAMEWORK)
{
    return CTheMsgHnd::GetAppropriateHandler(group, "imageconfig", false);
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

std::string Listed(const std::vector<std::string> & texts, const std::string & separator)
{
    std::string list;
    for (std::size_t place = 0; place < std::min(texts.size(), MAX_LISTED); ++place)
        list += (place == 0 ? "" : separator) + texts[place];
    return texts.size() > MAX_LISTED ? list + separator + "..." : list;
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
    for (const GroupEnum group : { GROUP_FRAMEWORK, GROUP_OUTER_READER }) {
        Error error{ group, 0, "" };
        if (Handler().GetErrorMsg(group, error.mCode, error.mText))
            mErrors.push_back(error);
    }
    TakeError();
}

CErrorsSetAside::~CErrorsSetAside()
{
    TakeError();
    for (const Error & error : mErrors)
        Handler(static_cast<GroupEnum>(error.mGroup)).SetErrorMsg(error.mCode, error.mText);
}

void CFindings::Add(const std::string & text)
{
    if (mTexts.size() < MAX_FINDINGS)
        mTexts.push_back(text);
    else
        ++mMore;
}

bool CFindings::IsEmpty() const
{
    return mTexts.empty();
}

std::string CFindings::Text(const std::string & path) const
{
    std::string text;
    for (const std::string & finding : mTexts)
        text += (text.empty() ? "" : "\n") + path + ": " + finding;
    return mMore == 0 ? text : text + '\n' + path + ": and " + std::to_string(mMore) + " more";
}

}   // namespace imageconfig
