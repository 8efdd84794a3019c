/// The diagnostics of a function in one line each. A source that uses them sets `MESSAGE_GROUP` once.
///
/// With debug output off each costs one test of a flag: nothing is composed, no handler is fetched.

#ifndef MESSAGES_TRACE_H
#define MESSAGES_TRACE_H

#include <configtools/debugsentry.h>
#include <messages/messages.h>

#include <cstdint>
#include <optional>
#include <type_traits>
#include <utility>

namespace VrexZynConfigTools {

/// Makes the sentry of a function; called only while debug output is on. An object with virtual operations costs more
/// instructions to make and destroy than the two tests of a flag that a function pays otherwise.
template <typename SentryT, typename... ResultT>
[[gnu::cold, gnu::noinline]] std::optional<SentryT> NewSentry(GroupEnum group, std::uint32_t line,
    const char * file, const char * function, const ResultT *... result) noexcept
{
    CMessageHandler & handler = CTheMsgHnd::Instance().GetAppropriateHandler(group, function, false);
    return std::optional<SentryT>(std::in_place, &handler, line, file, function, result...);
}

}   // namespace VrexZynConfigTools

/// Opens the sentry of a function without a result. `name` is the full name with its namespace, a literal.
#define ZYN_SENTRY(name) ZYN_SENTRY_OF(::VrexZynConfigTools::CDebugSentry, name)

/// Opens the sentry of a function that returns `result`, a variable declared before this line.
#define ZYN_SENTRY_RESULT(name, result)                                                                        \
    ZYN_SENTRY_OF(                                                                                             \
        ::VrexZynConfigTools::CDebugSentryWithReturn<std::remove_cv_t<decltype(result)>>, name, &(result))

#define ZYN_SENTRY_OF(type, name, ...)                                                                         \
    [[maybe_unused]] constexpr const char * zynFunction = name;                                                \
    const std::optional<type> zynSentry = ::VrexZynConfigTools::CTheMsgHnd::DebugActivated()                   \
                                              ? ::VrexZynConfigTools::NewSentry<type>(MESSAGE_GROUP, __LINE__, \
                                                    __FILE__, name __VA_OPT__(, ) __VA_ARGS__)                 \
                                              : std::optional<type>()

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
            ZYN_HANDLER(name).DebugOutputInHandler(                                                            \
                level, false, false, name, __FILE__, __LINE__, __VA_ARGS__);                                   \
    } while (false)

/// The handler of this file's group.
#define ZYN_HANDLER(name)                                                                                      \
    ::VrexZynConfigTools::CTheMsgHnd::Instance().GetAppropriateHandler(MESSAGE_GROUP, name, false)

#endif
