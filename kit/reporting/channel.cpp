#include <kit/reporting/channel.h>

#include <algorithm>
#include <iterator>

namespace kit::reporting {

using namespace VrexZynConfigTools;

namespace {

CMessageHandler & Handler(GroupEnum group = GROUP_FRAMEWORK)
{
    return CTheMsgHnd::GetAppropriateHandler(group, "kit::reporting", false);
}

// Appends to the error that is set, whose code remains.
void Append(const std::vector<Finding> & findings, const std::string & lines)
{
    short code = 0;
    std::string text;
    const bool isSet = Handler().GetErrorMsg(GROUP_FRAMEWORK, code, text);
    std::vector<Finding> records = Handler().ErrorRecords(GROUP_FRAMEWORK);
    records.insert(records.end(), findings.begin(), findings.end());
    text.append(isSet ? "\n" : "").append(lines);
    Handler().SetErrorMsg(code, text, std::move(records));
}

}   // namespace

bool IsErrorSet()
{
    return Handler().IsErrorSet(GROUP_FRAMEWORK, true);
}

void ReportError(const Finding & finding)
{
    Append({ finding }, LineOf(finding));
}

void ReportError(const std::string & code, const std::string & file, const std::string & text)
{
    Append({ WithPlace(MakeFinding(code, text), file) }, file + ": " + text);
}

void ReportErrors(const CFindings & findings)
{
    if (!findings.IsEmpty())
        Append(findings.InOrder(), findings.Text());
}

void ReportWarnings(const CFindings & findings)
{
    for (const Finding & warning : findings.Warnings())
        ReportWarning(warning);
}

void ReportErrorOnce(const std::string & code, const std::string & file, const std::string & text)
{
    const auto records = Handler().ErrorRecords(GROUP_FRAMEWORK);
    const bool isKnown = std::any_of(records.begin(), records.end(),
        [&](const Finding & record) { return record.mFile == file && record.mText == text; });
    if (!isKnown)
        ReportError(code, file, text);
}

void ReportWarning(const Finding & finding)
{
    Finding record = finding;
    record.mSeverity = SEVERITY_WARNING;
    Handler().NotifyStatus(STATUS_WARNING, LineOf(record), record);
}

std::optional<std::string> TakeError()
{
    short code = 0;
    std::string text;
    const bool isSet = Handler().GetErrorMsg(GROUP_FRAMEWORK, code, text);
    Handler().ClearError(GROUP_FRAMEWORK);
    Handler().ClearError(GROUP_OUTER_READER);
    return isSet ? std::optional(text) : std::nullopt;
}

CErrorsSetAside::CErrorsSetAside()
    : mErrors{ { { GROUP_FRAMEWORK, false, 0, {}, {} }, { GROUP_OUTER_READER, false, 0, {}, {} } } }
{
    for (Error & error : mErrors) {
        error.mIsSet = Handler().GetErrorMsg(error.mGroup, error.mCode, error.mText);
        error.mRecords = Handler().ErrorRecords(error.mGroup);
    }
    TakeError();
}

CErrorsSetAside::~CErrorsSetAside()
{
    TakeError();
    for (Error & error : mErrors)
        if (error.mIsSet)
            Handler(error.mGroup).SetErrorMsg(error.mCode, error.mText, std::move(error.mRecords));
}

std::string CErrorsSetAside::Take()
{
    std::string texts;
    for (const Error & error : mErrors) {
        short code = 0;
        std::string text;
        if (Handler().GetErrorMsg(error.mGroup, code, text))
            texts.append(texts.empty() ? "" : ": ").append(text);
    }
    TakeError();
    return texts;
}

}   // namespace kit::reporting
