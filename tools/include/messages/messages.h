/// The message channel: how the library, its plug-ins and tools report errors, status and debug lines.
///
/// An error is a text and a code that stands in a message group until somebody clears it; it is held process-wide,
/// so that any handler sees it. Nothing is written to a console or a file: a tool reads errors with `GetErrorMsg` and
/// installs an `IMessageSink` for status messages and debug lines. What copies an error's text lets the allocator's
/// `std::bad_alloc` out and has then changed nothing; nothing else here throws.
///
/// The channel is constant-initialised and never torn down: it works before any other static object is constructed
/// and after the last one is destroyed. It takes no locks; one thread at a time.

#ifndef MESSAGES_MESSAGES_H
#define MESSAGES_MESSAGES_H

#include <configtools/export.h>

#include <cstdint>
#include <string>
#include <vector>

#if defined(__GNUC__)
#define CONFIGTOOLS_PRINTF_FORMAT(formatIndex, firstArgument)                                                  \
    __attribute__((format(printf, formatIndex, firstArgument)))
#else
#define CONFIGTOOLS_PRINTF_FORMAT(formatIndex, firstArgument)
#endif

namespace VrexZynConfigTools {

/// Who speaks. Errors are held by group. Tools and plug-ins may use any other number from 0 to 255 for their own.
enum GroupEnum : std::uint8_t
{
    GROUP_CORE_CLASSES = 5,
    GROUP_CHIP_CONTEXT = 100,
    GROUP_UTILITIES = 103,
    GROUP_FRAMEWORK = 120,   // readers and writers leave their errors here
    GROUP_OUTER_READER = 121
};

/// Severity of a status message.
enum StatusLevels : int
{
    STATUS_WARNING = 2   // worth a look, but no error
};

/// Whether a finding makes a result unusable.
enum SeverityEnum : int
{
    SEVERITY_ERROR = 0,
    SEVERITY_WARNING = 1
};

/// One finding as a program reads it, beside the text that people read. Whatever doesn't apply is empty or 0.
///
/// It is plain data: who reports fills in what is known, and who handles it never needs to parse a text.
struct ErrorRecord
{
    std::string mCode;   // a short stable identifier such as "unknown-key"; empty for an error that has none
    SeverityEnum mSeverity = SEVERITY_ERROR;
    std::string mFile;           // the path as the caller gave it
    std::uint32_t mLine = 0;     // from 1; 0 for no line
    std::uint32_t mColumn = 0;   // from 1; 0 for no column
    std::string mStore;          // such as "store 1 of eeprom"
    std::string mSubsystem;      // such as "wlan"
    std::string mKey;            // a key's name or number, with its indices: "gain.1.2"
    std::string mField;          // of a struct, or of the file's own format
    std::string mText;           // the message for people, without file, line and column
    std::string mExpected;       // what would have been accepted, such as "0 to 100"
    std::string mNearest;        // the known name that is most like the one that was found
};

/// One line of debug output as a sink gets it. All pointers are valid during the call only.
struct DebugLine
{
    GroupEnum mGroup;
    std::uint32_t mLevel;     // 0 entry and exit lines, 1 arguments, 2 accessors, 3 decisions
    bool mIsExit;             // the exit line of a function
    const char * mFunction;   // full name with its namespace
    const char * mFile;
    std::uint32_t mLine;
    const char * mText;   // without a line end
};

/// Where debug lines and status messages go. What a sink throws is swallowed, and the line is lost. A sink may call
/// the library; the lines and messages that this causes are not told to it.
class CONFIGTOOLS_EXPORT IMessageSink
{
public:
    virtual void OnDebugLine(const DebugLine & line) = 0;
    virtual void OnStatus(GroupEnum group, StatusLevels level, const std::string & text) = 0;
    virtual ~IMessageSink() = default;
};

/// Serves one message group. Handlers are made by the library only; get one from `CTheMsgHnd`.
class CONFIGTOOLS_EXPORT CMessageHandler
{
public:
    CMessageHandler(const CMessageHandler &) = delete;
    CMessageHandler & operator=(const CMessageHandler &) = delete;

    /// Records an error in this handler's group, in place of one that stands there. Always true. Where memory runs
    /// out it throws `std::bad_alloc`, and the former error, or none, still stands.
    bool SetErrorMsg(short code, const std::string & text);

    /// As above, with a record of each finding that `text` describes, in the order of the text. They are cleared with
    /// the error, and replaced with it.
    bool SetErrorMsg(short code, const std::string & text, std::vector<ErrorRecord> records);

    /// Appends ": " and `text` to the error that stands in `group`; its code stays, `code` is not looked at.
    /// False, and nothing changes, where no error stands. The text of the last record, if there is any, is amended too.
    bool ModifyErrorMsg(short code, const std::string & text, GroupEnum group);

    /// Whether an error stands in `group`, whichever handler recorded it. The flag has no meaning here; pass true.
    bool IsErrorSet(GroupEnum group, bool flag) const;

    /// Forgets the error of `group`, if one stands.
    void ClearError(GroupEnum group);

    /// The error that stands in `group`. False, with both arguments untouched, where none stands.
    bool GetErrorMsg(GroupEnum group, short & code, std::string & text) const;

    /// The records of the error that stands in `group`, in the order of its text; empty where none stands. An error
    /// that was recorded without any gives one for each line of its text, with nothing but the text.
    std::vector<ErrorRecord> ErrorRecords(GroupEnum group) const;

    /// Passes a status message on to the sink. It is no error, and `IsErrorSet` doesn't see it.
    void NotifyStatus(StatusLevels level, const std::string & text);

    /// As above, with a record of what `text` says, which a sink asks for with `CTheMsgHnd::StatusRecord`.
    void NotifyStatus(StatusLevels level, const std::string & text, const ErrorRecord & record);

    /// Writes one debug line, in the manner of printf, if debug output is on for `level`; otherwise nothing.
    /// `reserved` is not looked at; `isExit` marks the exit line of a function. A line that can't be written is lost.
    void DebugOutputInHandler(std::uint32_t level, bool reserved, bool isExit, const char * function,
        const char * file, std::uint32_t line, const char * format, ...) CONFIGTOOLS_PRINTF_FORMAT(8, 9);

private:
    friend class CTheMsgHnd;
    struct Error;
    constexpr CMessageHandler() = default;

    Error * mError = nullptr;   // the error that stands in this group; null for none
};

/// The process-wide door to the message channel. Static operations only.
class CONFIGTOOLS_EXPORT CTheMsgHnd
{
public:
    CTheMsgHnd(const CTheMsgHnd &) = delete;
    CTheMsgHnd & operator=(const CTheMsgHnd &) = delete;

    static CTheMsgHnd & Instance() { return mInstance; }

    /// The handler that serves `group`. It is the same for every function and flag, and asking has no side effect.
    static CMessageHandler & GetAppropriateHandler(GroupEnum group, const char * /*function*/, bool /*flag*/)
    {
        return mHandlers[group];
    }

    /// Whether debug output is wanted at all. Test this before composing the text of a debug line.
    static bool DebugActivated() { return mDebugLimit != 0; }

    /// Switches debug output on for the levels 0 to `level`.
    static void SetDebugLevel(std::uint32_t level);

    static void SwitchDebugOff();

    /// Where debug lines and status messages go; null discards them, and so it is at the start. The sink stays the
    /// caller's and must outlive its use. Returns the sink so far.
    static IMessageSink * SetSink(IMessageSink * sink);

    /// For a sink, while it is given a status message: the record of it, valid during the call. Null for a message
    /// without one, and at any other time.
    static const ErrorRecord * StatusRecord() { return mStatusRecord; }

private:
    friend class CMessageHandler;
    constexpr CTheMsgHnd() = default;

    static constexpr std::uint32_t GROUP_COUNT = 256;

    static CTheMsgHnd mInstance;
    static CMessageHandler mHandlers[GROUP_COUNT];
    static std::uint64_t mDebugLimit;   // 0 for off, else the highest level wanted, plus 1
    static IMessageSink * mSink;
    static const ErrorRecord * mStatusRecord;   // the caller's, while a sink is given its message
};

inline bool CMessageHandler::IsErrorSet(GroupEnum group, bool /*flag*/) const
{
    return CTheMsgHnd::mHandlers[group].mError != nullptr;
}

/// Installs a sink for the life of a scope and puts the former one back at its end.
class CMessageSinkGuard
{
public:
    explicit CMessageSinkGuard(IMessageSink * sink)
        : mFormer(CTheMsgHnd::SetSink(sink))
    {}
    ~CMessageSinkGuard() { CTheMsgHnd::SetSink(mFormer); }
    CMessageSinkGuard(const CMessageSinkGuard &) = delete;
    CMessageSinkGuard & operator=(const CMessageSinkGuard &) = delete;

private:
    IMessageSink * mFormer;
};

/// Marks the extent of a function in the debug output: an entry line when made, an exit line when destroyed,
/// also when the function is left through an exception. One that is made while debug output is off writes neither
/// line; it costs one test of a flag at either end.
class CONFIGTOOLS_EXPORT CDebugSentry
{
public:
    /// The texts are not copied and must outlive the sentry; literals do.
    CDebugSentry(CMessageHandler * handler, std::uint32_t line, const char * file, const char * function)
    {
        if (CTheMsgHnd::DebugActivated())
            Enter(handler, line, file, function);
    }
    CDebugSentry(const CDebugSentry &) = delete;
    CDebugSentry & operator=(const CDebugSentry &) = delete;

    virtual ~CDebugSentry() { CheckPrintExit(); }

    /// Writes the exit line, unless it has been written or none is due. Derived classes write theirs with the result.
    virtual void PrintExit();

protected:
    /// For a derived class that sets itself up only while debug output is on, and then calls `Enter`.
    CDebugSentry() = default;

    /// Notes the arguments and writes the entry line.
    void Enter(CMessageHandler * handler, std::uint32_t line, const char * file, const char * function);

    /// For `PrintExit`: the handler to write to, once; null from then on, and when no exit line is due.
    CMessageHandler * TakeHandler()
    {
        CMessageHandler * const handler = mHandler;
        mHandler = nullptr;
        return handler;
    }

    /// Writes the exit line through `PrintExit`, unless it has been written. The destructor of each derived class
    /// calls it, before the base is left. Lets no exception out.
    void CheckPrintExit()
    {
        if (mHandler != nullptr)
            PrintExitOnce();
    }

    CMessageHandler * mHandler = nullptr;   // null when no exit line is due
    std::uint32_t mLine;                    // set with mHandler, as the two below
    const char * mFile;
    const char * mFunction;

private:
    void PrintExitOnce() noexcept;
};

}   // namespace VrexZynConfigTools

#endif
