/// The diagnostics of a function in one line each. A source that uses them sets `MESSAGE_GROUP` once.
///
/// With debug output off each costs one test of a flag: nothing is composed, no handler is fetched.

#ifndef MESSAGES_TRACE_H
#define MESSAGES_TRACE_H

#include <configtools/debugsentry.h>
#include <messages/messages.h>

/// Opens the sentry of a function without a result. `name` is the full name with its namespace, a literal.
#define ZYN_SENTRY(name)                                                                                       \
    [[maybe_unused]] constexpr const char * zynFunction = name;                                                \
    const ::VrexZynConfigTools::CDebugSentry zynSentry(                                                        \
        ZYN_HANDLER_POINTER(zynFunction), __LINE__, __FILE__, name)

/// Opens the sentry of a function that returns `result`, a variable declared before this line.
#define ZYN_SENTRY_RESULT(name, result)                                                                        \
    [[maybe_unused]] constexpr const char * zynFunction = name;                                                \
    const ::VrexZynConfigTools::CDebugSentryWithReturn<std::remove_cv_t<decltype(result)>> zynSentry(          \
        ZYN_HANDLER_POINTER(zynFunction), __LINE__, __FILE__, name, &(result))

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
