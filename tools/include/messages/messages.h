/// @file
/// The message channel: how the library, its plug-ins and tools report errors, status and debug lines.
///
/// An error is a text and a code in a message group, where it remains until somebody clears it. It is process-wide:
/// every handler finds the error of every group. Nothing is written to a console or a file: a tool reads errors with
/// `GetErrorMsg` or `ErrorRecords`, and installs an `IMessageSink` for status messages and debug lines. An operation
/// that copies the text of an error passes `std::bad_alloc` on, and has changed nothing then; nothing else here
/// throws.
///
/// The channel is constant-initialised and never torn down: it works before any other static object is constructed and
/// after the last one is destroyed. It takes no locks; use it from one thread at a time.
///
/// @code
/// std::string ErrorOf(bool (*operation)())
/// {
///     using namespace VrexZynConfigTools;
///     CMessageHandler & handler = CTheMsgHnd::GetAppropriateHandler(GROUP_FRAMEWORK, "ErrorOf", false);
///     handler.ClearError(GROUP_FRAMEWORK);
///     std::string text;
///     short code = 0;
///     operation();
///     handler.GetErrorMsg(GROUP_FRAMEWORK, code, text);
///     return text;   // empty where the operation left no error
/// }
/// @endcode

#ifndef MESSAGES_MESSAGES_H
#define MESSAGES_MESSAGES_H

#include <configtools/export.h>

#include <cstdint>
#include <string>
#include <vector>

/// Lets the compiler check the arguments of a function that takes those of `printf`.
#if defined(__GNUC__)
#define CONFIGTOOLS_PRINTF_FORMAT(formatIndex, firstArgument)                                                  \
    __attribute__((format(printf, formatIndex, firstArgument)))
#else
#define CONFIGTOOLS_PRINTF_FORMAT(formatIndex, firstArgument)
#endif

namespace VrexZynConfigTools {

/// The origin of a message. Each group has at most one error at a time. Tools and plug-ins may use any other number
/// from 0 to 255 for their own.
enum GroupEnum : std::uint8_t
{
    /// `CHelper`, the base contexts, the layered store.
    GROUP_CORE_CLASSES = 5,
    /// `CZynContext`.
    GROUP_CHIP_CONTEXT = 100,
    /// Texts and files.
    GROUP_UTILITIES = 103,
    /// The rest of the library. Readers and writers leave their errors here too, and every `Write` tests it.
    GROUP_FRAMEWORK = 120,
    /// The source of an element factory: an error here ends the words of a struct.
    GROUP_OUTER_READER = 121
};

/// The severity of a status message.
enum StatusLevels : int
{
    /// Worth a look, but no error.
    STATUS_WARNING = 2
};

/// Whether a finding makes a result unusable.
enum SeverityEnum : int
{
    /// The result is not to be used.
    SEVERITY_ERROR = 0,
    /// The result can be used, and a person should look at it.
    SEVERITY_WARNING = 1
};

/// One finding as a program reads it, beside the text that people read. Whatever doesn't apply is empty or 0.
///
/// It is plain data: who reports fills in what is known, and who handles it never needs to parse a text.
struct ErrorRecord
{
    /// A short stable identifier such as "unknown-key"; empty for an error that has none.
    std::string mCode;
    /// Whether the finding makes the result unusable.
    SeverityEnum mSeverity = SEVERITY_ERROR;
    /// The path as the caller gave it.
    std::string mFile;
    /// From 1; 0 for no line.
    std::uint32_t mLine = 0;
    /// From 1; 0 for no column.
    std::uint32_t mColumn = 0;
    /// The store, such as "store 1 of eeprom".
    std::string mStore;
    /// The subsystem, such as "wlan".
    std::string mSubsystem;
    /// A key's name or number, with its indices: "gain.1.2".
    std::string mKey;
    /// A field of a struct, or of the file's own format.
    std::string mField;
    /// The message for people, without file, line and column.
    std::string mText;
    /// What would have been accepted, such as "0 to 100".
    std::string mExpected;
    /// The known name that is most like the one that was found.
    std::string mNearest;
};

/// One line of debug output as a sink gets it. All pointers are valid during the call only.
struct DebugLine
{
    /// The group of the handler that writes the line.
    GroupEnum mGroup;
    /// 0 for entry and exit lines, 1 for arguments, 2 for accessors, 3 for decisions.
    std::uint32_t mLevel;
    /// Whether this is the exit line of a function.
    bool mIsExit;
    /// The function's full name with its namespace.
    const char * mFunction;
    /// The source file, relative to the root of the sources.
    const char * mFile;
    /// The line in that file.
    std::uint32_t mLine;
    /// The text, without a line end.
    const char * mText;
};

/// The receiver of debug lines and status messages; a tool implements it. What a sink throws is caught, and the line is
/// lost. A sink may call the library; the lines and messages that this causes are not passed to it. The order of the
/// virtual operations is a binary contract.
class CONFIGTOOLS_EXPORT IMessageSink
{
public:
    /// Receives one line, if debug output is on for its level.
    virtual void OnDebugLine(const DebugLine & line) = 0;

    /// Receives one status message, whether debug output is on or not. `CTheMsgHnd::StatusRecord` returns its record.
    virtual void OnStatus(GroupEnum group, StatusLevels level, const std::string & text) = 0;
    virtual ~IMessageSink() = default;
};

/// Serves one message group. The library alone makes handlers, one for each group, and they are never deleted;
/// `CTheMsgHnd::GetAppropriateHandler` returns one.
class CONFIGTOOLS_EXPORT CMessageHandler
{
public:
    CMessageHandler(const CMessageHandler &) = delete;
    CMessageHandler & operator=(const CMessageHandler &) = delete;

    /// Records an error in this handler's group, in place of the present one. The code of all errors of the library
    /// is 0; the text is what differs. Always true. If memory runs out, `std::bad_alloc` passes through, and the
    /// former error remains.
    bool SetErrorMsg(short code, const std::string & text);

    /// As above, with a record of each finding that `text` describes, in the order of the text. They are removed with
    /// the error.
    bool SetErrorMsg(short code, const std::string & text, std::vector<ErrorRecord> records);

    /// Appends ": " and `text` to the error of `group`, and to the text of its last record if it has records. Its code
    /// stays; `code` is ignored. False, and nothing changes, if the group has no error.
    bool ModifyErrorMsg(short code, const std::string & text, GroupEnum group);

    /// Whether `group` has an error, whichever handler recorded it. `flag` is ignored; pass true.
    bool IsErrorSet(GroupEnum group, bool flag) const;

    /// Removes the error of `group`, if it has one.
    void ClearError(GroupEnum group);

    /// Sets `code` and `text` to those of the error of `group`. False, with both untouched, if it has none.
    bool GetErrorMsg(GroupEnum group, short & code, std::string & text) const;

    /// The records of the error of `group`, in the order of its text; empty if it has no error. An error that was
    /// recorded without records gives one for each line of its text, with nothing but the text.
    std::vector<ErrorRecord> ErrorRecords(GroupEnum group) const;

    /// Passes a status message on to the sink; without one it is lost. It is no error, and `IsErrorSet` ignores it.
    void NotifyStatus(StatusLevels level, const std::string & text);

    /// As above, with a record of what `text` says, which `CTheMsgHnd::StatusRecord` returns during the call of the
    /// sink.
    void NotifyStatus(StatusLevels level, const std::string & text, const ErrorRecord & record);

    /// Writes one debug line, composed as `printf` does, if debug output is on for `level` and there is a sink;
    /// otherwise nothing. `reserved` is ignored; `isExit` marks the exit line of a function. A line that can't be
    /// composed or that the sink throws at is lost.
    void DebugOutputInHandler(std::uint32_t level, bool reserved, bool isExit, const char * function,
        const char * file, std::uint32_t line, const char * format, ...) CONFIGTOOLS_PRINTF_FORMAT(8, 9);

private:
    friend class CTheMsgHnd;
    struct Error;
    constexpr CMessageHandler() = default;

    Error * mError = nullptr;   // the error that stands in this group; null for none
};

/// The process-wide access to the message channel. All operations but the copies are static.
class CONFIGTOOLS_EXPORT CTheMsgHnd
{
public:
    CTheMsgHnd(const CTheMsgHnd &) = delete;
    CTheMsgHnd & operator=(const CTheMsgHnd &) = delete;

    /// The one object.
    static CTheMsgHnd & Instance() { return mInstance; }

    /// The handler that serves `group`: the same for every function and flag. The call has no side effect.
    static CMessageHandler & GetAppropriateHandler(GroupEnum group, const char * /*function*/, bool /*flag*/)
    {
        return mHandlers[group];
    }

    /// Whether debug output is on at all. Test this before composing the text of a debug line: it is one comparison.
    static bool DebugActivated() { return mDebugLimit != 0; }

    /// Switches debug output on for the levels 0 to `level`; 3 is the highest that the library uses.
    static void SetDebugLevel(std::uint32_t level);

    /// Switches debug output off, as it is at the start of the process.
    static void SwitchDebugOff();

    /// Sets the receiver of debug lines and status messages, and returns the former one. Null discards them, as at the
    /// start of the process. The sink stays the caller's and must exist until another one is set.
    static IMessageSink * SetSink(IMessageSink * sink);

    /// For a sink, during `OnStatus`: the record of the message, valid during the call. Null for a message without one,
    /// and at any other time.
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
    /// Installs `sink`, which may be null and has to outlive the guard.
    explicit CMessageSinkGuard(IMessageSink * sink)
        : mFormer(CTheMsgHnd::SetSink(sink))
    {}

    /// Installs the former sink again.
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
    /// Writes the entry line if debug output is on. `line`, `file` and `function`, the full name, are the place of the
    /// sentry. The texts are not copied and must outlive the sentry; literals do.
    CDebugSentry(CMessageHandler * handler, std::uint32_t line, const char * file, const char * function)
    {
        if (CTheMsgHnd::DebugActivated())
            Enter(handler, line, file, function);
    }
    CDebugSentry(const CDebugSentry &) = delete;
    CDebugSentry & operator=(const CDebugSentry &) = delete;

    /// Writes the exit line, unless it has been written.
    virtual ~CDebugSentry() { CheckPrintExit(); }

    /// Writes the exit line, unless it has been written or no entry line was. Derived classes write theirs, with the
    /// result of the function.
    virtual void PrintExit();

protected:
    /// For a derived class that initialises itself only while debug output is on, and then calls `Enter`.
    CDebugSentry() = default;

    /// Stores the arguments and writes the entry line.
    void Enter(CMessageHandler * handler, std::uint32_t line, const char * file, const char * function);

    /// For `PrintExit`: the handler to write to, once; null from then on, and when no exit line is due.
    CMessageHandler * TakeHandler()
    {
        CMessageHandler * const handler = mHandler;
        mHandler = nullptr;
        return handler;
    }

    /// Writes the exit line through `PrintExit`, unless it has been written. The destructor of each derived class
    /// calls it, because the base can't reach the `PrintExit` of the derived class any more. Throws nothing.
    void CheckPrintExit()
    {
        if (mHandler != nullptr)
            PrintExitOnce();
    }

    /// Null if no exit line is to be written; else the three below are set.
    CMessageHandler * mHandler = nullptr;
    /// The line of the sentry.
    std::uint32_t mLine;
    /// The file of the sentry.
    const char * mFile;
    /// The function's full name.
    const char * mFunction;

private:
    void PrintExitOnce() noexcept;
};

}   // namespace VrexZynConfigTools

#endif
