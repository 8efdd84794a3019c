#include "report.h"

#include <cstdio>

namespace sqlitemetadata {

using namespace VrexZynConfigTools;

namespace {

constexpr std::size_t QUOTE_LIMIT = 60;   // bytes of foreign text in a message
constexpr std::size_t LINE_LIMIT = 50;    // findings told one by one

CMessageHandler & Handler()
{
    return CTheMsgHnd::GetAppropriateHandler(GROUP_FRAMEWORK, "sqlitemetadata", false);
}

bool HasLine(const std::string & lines, const std::string & line)
{
    return ('\n' + lines + '\n').find('\n' + line + '\n') != std::string::npos;
}

bool IsContinuation(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

}   // namespace

void ReportError(const std::string & text)
{
    short code = 0;
    std::string standing;
    if (!Handler().GetErrorMsg(GROUP_FRAMEWORK, code, standing))
        Handler().SetErrorMsg(0, text);
    else if (!HasLine(standing, text))
        Handler().SetErrorMsg(code, standing + '\n' + text);
}

std::string Quoted(const std::string & text)
{
    std::string quoted = "\"";
    std::size_t length = text.size() > QUOTE_LIMIT ? QUOTE_LIMIT : text.size();
    while (length > 0 && length < text.size() && IsContinuation(text[length]))
        --length;   // no half character
    for (const char character : text.substr(0, length)) {
        const auto byte = static_cast<unsigned char>(character);
        if (byte >= 0x20 && byte != 0x7F) {
            quoted += character;
            continue;
        }
        char escaped[8];
        std::snprintf(escaped, sizeof escaped, "\\x%02X", static_cast<unsigned>(byte));
        quoted += escaped;
    }
    return quoted + (length < text.size() ? "...\"" : "\"");
}

void CFindings::Add(const std::string & text)
{
    ++mCount;
    if (mLines.size() < LINE_LIMIT)
        mLines.push_back(text);
}

std::string CFindings::Text(const std::string & prefix) const
{
    std::string text;
    for (const std::string & line : mLines)
        text.append(text.empty() ? "" : "\n").append(prefix).append(line);
    if (mCount > mLines.size())
        text += '\n' + prefix + "and " + std::to_string(mCount - mLines.size()) + " more";
    return text;
}

CErrorsAside::CErrorsAside()
    : mErrors{ { GROUP_FRAMEWORK, false, 0, {} }, { GROUP_OUTER_READER, false, 0, {} } }
{
    for (Error & error : mErrors) {
        error.mStands = Handler().GetErrorMsg(error.mGroup, error.mCode, error.mText);
        Handler().ClearError(error.mGroup);
    }
}

CErrorsAside::~CErrorsAside()
{
    for (const Error & error : mErrors) {
        Handler().ClearError(error.mGroup);
        if (error.mStands)
            CTheMsgHnd::GetAppropriateHandler(error.mGroup, "sqlitemetadata", false)
                .SetErrorMsg(error.mCode, error.mText);
    }
}

std::string CErrorsAside::Take()
{
    std::string texts;
    for (const Error & error : mErrors) {
        short code = 0;
        std::string text;
        if (Handler().GetErrorMsg(error.mGroup, code, text))
            texts += (texts.empty() ? "" : ": ") + text;
        Handler().ClearError(error.mGroup);
    }
    return texts;
}

}   // namespace sqlitemetadata
