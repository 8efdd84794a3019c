#include <messages/messages.h>

#include <algorithm>
#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <memory>
#include <new>
#include <utility>

namespace VrexZynConfigTools {

/// Made on the heap and reachable from the static table, so that nothing here needs a destructor at exit.
struct CMessageHandler::Error
{
    short mCode;
    std::string mText;
    std::vector<ErrorRecord> mRecords;   // empty for an error that was recorded by its text alone
};

constinit CTheMsgHnd CTheMsgHnd::mInstance;
constinit CMessageHandler CTheMsgHnd::mHandlers[GROUP_COUNT];
constinit std::uint64_t CTheMsgHnd::mDebugLimit = 0;
constinit IMessageSink * CTheMsgHnd::mSink = nullptr;
constinit const ErrorRecord * CTheMsgHnd::mStatusRecord = nullptr;

namespace {

constinit bool sinkIsBusy = false;

/// Calls the sink, if there is one. What it throws is swallowed. It is not called for what it causes by calling the
/// library in its turn: that would never end.
template <typename CallT>
void CallSink(IMessageSink * sink, const CallT & call) noexcept
{
    if (sink == nullptr || sinkIsBusy)
        return;
    sinkIsBusy = true;
    try {
        call(*sink);
    } catch (...) {
        // The message is lost: the function that is being traced must not notice.
    }
    sinkIsBusy = false;
}

/// A text formatted in the manner of vprintf; on the stack, unless it is long.
class CFormattedText
{
public:
    CFormattedText(const char * format, std::va_list arguments) CONFIGTOOLS_PRINTF_FORMAT(2, 0)
    {
        std::va_list again;
        va_copy(again, arguments);
        const int length = std::vsnprintf(mShort, sizeof mShort, format, arguments);
        if (length >= 0 && static_cast<std::size_t>(length) < sizeof mShort)
            mText = mShort;
        else if (length >= 0)
            FormatLong(static_cast<std::size_t>(length) + 1, format, again);
        va_end(again);
    }

    /// Null if the text couldn't be made.
    const char * Get() const { return mText; }

private:
    void FormatLong(std::size_t size, const char * format, std::va_list arguments)
        CONFIGTOOLS_PRINTF_FORMAT(3, 0)
    {
        mLong.reset(new (std::nothrow) char[size]);
        if (mLong != nullptr && std::vsnprintf(mLong.get(), size, format, arguments) >= 0)
            mText = mLong.get();
    }

    char mShort[512];
    std::unique_ptr<char[]> mLong;
    const char * mText = nullptr;
};

// A record for each line of `text`, and one for an empty text.
std::vector<ErrorRecord> RecordsOfText(const std::string & text)
{
    std::vector<ErrorRecord> records;
    std::size_t begin = 0;
    do {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        records.emplace_back();
        records.back().mText = text.substr(begin, end - begin);
        begin = end + 1;
    } while (begin < text.size());
    return records;
}

}   // namespace

bool CMessageHandler::SetErrorMsg(short code, const std::string & text)
{
    return SetErrorMsg(code, text, {});
}

bool CMessageHandler::SetErrorMsg(short code, const std::string & text, std::vector<ErrorRecord> records)
{
    auto error = std::make_unique<Error>(Error{ code, text, std::move(records) });
    const std::unique_ptr<Error> former(std::exchange(mError, error.release()));   // the table owns it now
    return true;
}

bool CMessageHandler::ModifyErrorMsg(short /*code*/, const std::string & text, GroupEnum group)
{
    Error * const error = CTheMsgHnd::mHandlers[group].mError;
    if (error == nullptr)
        return false;
    const std::string addition = ": " + text;
    std::string amended =
        error->mText + addition;   // made first, so that nothing is half done if memory is short
    if (!error->mRecords.empty())
        error->mRecords.back().mText += addition;
    error->mText.swap(amended);
    return true;
}

void CMessageHandler::ClearError(GroupEnum group)
{
    const std::unique_ptr<Error> former(std::exchange(CTheMsgHnd::mHandlers[group].mError, nullptr));
}

bool CMessageHandler::GetErrorMsg(GroupEnum group, short & code, std::string & text) const
{
    const Error * const error = CTheMsgHnd::mHandlers[group].mError;
    if (error == nullptr)
        return false;
    text = error->mText;
    code = error->mCode;
    return true;
}

std::vector<ErrorRecord> CMessageHandler::ErrorRecords(GroupEnum group) const
{
    const Error * const error = CTheMsgHnd::mHandlers[group].mError;
    if (error == nullptr)
        return {};
    return error->mRecords.empty() ? RecordsOfText(error->mText) : error->mRecords;
}

void CMessageHandler::NotifyStatus(StatusLevels level, const std::string & text)
{
    const auto group = static_cast<GroupEnum>(this - CTheMsgHnd::mHandlers);
    CallSink(CTheMsgHnd::mSink, [&](IMessageSink & sink) { sink.OnStatus(group, level, text); });
}

void CMessageHandler::NotifyStatus(StatusLevels level, const std::string & text, const ErrorRecord & record)
{
    // A message that a sink causes is not passed on: it must not replace the record that the sink is reading.
    const ErrorRecord * const former = CTheMsgHnd::mStatusRecord;
    if (former == nullptr)
        CTheMsgHnd::mStatusRecord = &record;
    NotifyStatus(level, text);   // lets no exception out
    CTheMsgHnd::mStatusRecord = former;
}

void CMessageHandler::DebugOutputInHandler(std::uint32_t level, bool /*reserved*/, bool isExit,
    const char * function, const char * file, std::uint32_t line, const char * format, ...)
{
    if (level >= CTheMsgHnd::mDebugLimit || CTheMsgHnd::mSink == nullptr)
        return;

    std::va_list arguments;
    va_start(arguments, format);
    const CFormattedText text(format, arguments);
    va_end(arguments);
    if (text.Get() == nullptr)
        return;

    const auto group = static_cast<GroupEnum>(this - CTheMsgHnd::mHandlers);
    const DebugLine debugLine{ group, level, isExit, function, file, line, text.Get() };
    CallSink(CTheMsgHnd::mSink, [&](IMessageSink & sink) { sink.OnDebugLine(debugLine); });
}

void CTheMsgHnd::SetDebugLevel(std::uint32_t level)
{
    mDebugLimit = std::uint64_t{ level } + 1;
}

void CTheMsgHnd::SwitchDebugOff()
{
    mDebugLimit = 0;
}

IMessageSink * CTheMsgHnd::SetSink(IMessageSink * sink)
{
    return std::exchange(mSink, sink);
}

void CDebugSentry::Enter(
    CMessageHandler * handler, std::uint32_t line, const char * file, const char * function)
{
    if (handler == nullptr)
        return;
    mHandler = handler;
    mLine = line;
    mFile = file;
    mFunction = function;
    handler->DebugOutputInHandler(0, false, false, function, file, line, "-> %s", function);
}

void CDebugSentry::PrintExit()
{
    if (CMessageHandler * const handler = TakeHandler())
        handler->DebugOutputInHandler(0, false, true, mFunction, mFile, mLine, "<- %s", mFunction);
}

void CDebugSentry::PrintExitOnce() noexcept
{
    try {
        PrintExit();
    } catch (...) {
        // The line is lost: the function that is being left must not notice.
    }
    mHandler = nullptr;
}

}   // namespace VrexZynConfigTools
