/// The diagnostics of a function in one line each. A source that uses them sets `MESSAGE_GROUP` once.
///
/// With debug output off each costs one test of a flag: nothing is composed, no handler is fetched.

#ifndef MESSAGES_TRACE_H
#define MESSAGES_TRACE_H

#include <configtools/debugsentry.h>
#include <messages/messages.h>

#include <cstdint>
#include <new>
#include <type_traits>

namespace VrexZynConfigTools {

/// The place of a sentry on the stack. The sentry is made in it only while debug output is on: an object with virtual
/// operations costs more instructions to make and destroy than the two tests of a flag that are wanted here.
template <typename SentryT>
class CSentryPlace
{
public:
    template <typename... ResultT>
    CSentryPlace(GroupEnum group, std::uint32_t line, const char * file, const char * function,
        const ResultT *... result)
    {
        if (CTheMsgHnd::DebugActivated())
            Make(group, line, file, function, result...);
    }
    ~CSentryPlace()
    {
        if (mIsMade)
            Destroy();
    }
    CSentryPlace(const CSentryPlace &) = delete;
    CSentryPlace & operator=(const CSentryPlace &) = delete;

private:
    template <typename... ResultT>
    [[gnu::cold, gnu::noinline]] void Make(GroupEnum group, std::uint32_t line, const char * file,
        const char * function, const ResultT *... result) noexcept
    {
        CMessageHandler & handler = CTheMsgHnd::Instance().GetAppropriateHandler(group, function, false);
        new (&mSentry) SentryT(&handler, line, file, function, result...);
        mIsMade = true;
    }
    [[gnu::cold, gnu::noinline]] void Destroy() noexcept { mSentry.~SentryT(); }

    bool mIsMade = false;
    union
    {
        SentryT mSentry;
    };
};

}   // namespace VrexZynConfigTools

/// Opens the sentry of a function without a result. `name` is the full name with its namespace, a literal.
#define ZYN_SENTRY(name)                                                                                       \
    [[maybe_unused]] constexpr const char * zynFunction = name;                                                \
    const ::VrexZynConfigTools::CSentryPlace<::VrexZynConfigTools::CDebugSentry> zynSentry(                    \
        MESSAGE_GROUP, __LINE__, __FILE__, name)

/// Opens the sentry of a function that returns `result`, a variable declared before this line.
#define ZYN_SENTRY_RESULT(name, result)                                                                        \
    [[maybe_unused]] constexpr const char * zynFunction = name;                                                \
    const ::VrexZynConfigTools::CSentryPlace<                                                                  \
        ::VrexZynConfigTools::CDebugSentryWithReturn<std::remove_cv_t<decltype(result)>>>                      \
    zynSentry(MESSAGE_GROUP, __LINE__, __FILE__, name, &(result))

/// The head of a constructor: announces it to the channel in `firstGroup`, then opens the sentry.
#define ZYN_CONSTRUCTOR(firstGroup, name)                                                                      \
    static_cast<void>(                                                                                         \
        ::VrexZynConfigTools::CTheMsgHnd::Instance().GetAppropriateHandler(firstGroup, name, true));           \
    ZYN_SENTRY(name)

/// Writes a trace line inside a function that has opened its sentry.
#define ZYN_TRACE(level, ...) ZYN_TRACE_IN(zynFunction, level, __VA_ARGS__)

/// Writes a trace line in a function without a sentry, such as an accessor.
#define ZYN_TRACE_IN(name, level, ...)                                                                         \
    do {                                                                                                       \
        if (::VrexZynConfigTools::CTheMsgHnd::DebugActivated())                                                \
            ZYN_HANDLER_POINTER(name)->DebugOutputInHandler(                                                   \
                level, false, false, name, __FILE__, __LINE__, __VA_ARGS__);                                   \
    } while (false)

/// The handler of this file's group.
#define ZYN_HANDLER(name)                                                                                      \
    ::VrexZynConfigTools::CTheMsgHnd::Instance().GetAppropriateHandler(MESSAGE_GROUP, name, false)
#define ZYN_HANDLER_POINTER(name) (&ZYN_HANDLER(name))

#endif
