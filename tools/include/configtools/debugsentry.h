/// @file
/// The debug sentry for functions with a result: its exit line shows the value that is returned.
///
/// The sentry is for plug-ins as well as for the library: with it the lines of a plug-in appear in the same debug
/// output, between the entry and exit lines of the functions that called it.
///
/// @code
/// using namespace VrexZynConfigTools;
///
/// bool IsKnown(std::uint32_t psId)
/// {
///     bool result = false;   // declared ahead of the sentry, which reads it when the function is left
///     CMessageHandler & handler = CTheMsgHnd::GetAppropriateHandler(GROUP_FRAMEWORK, "IsKnown", false);
///     const CDebugSentryWithReturn<bool> sentry(&handler, __LINE__, __FILE__, "IsKnown", &result);
///     return result = psId < 100;   // the exit line reads "<- IsKnown [returning true]"
/// }
/// @endcode

#ifndef CONFIGTOOLS_DEBUGSENTRY_H
#define CONFIGTOOLS_DEBUGSENTRY_H

#include <messages/messages.h>

#include <cstddef>
#include <string>
#include <type_traits>

namespace VrexZynConfigTools {

/// Marks the extent of a function that returns a T: an entry line when it is made, an exit line with the result when it
/// is destroyed, also where an exception leaves the function. While debug output is off it writes neither.
///
/// T is one of these; any other doesn't compile, because no format for its exit line is defined:
///  - `bool`, printed as "true" or "false";
///  - `unsigned short`, `int`, an enumeration, an unsigned 32-bit or a 64-bit integer, printed in decimal;
///  - `std::string`, printed between quotes, up to its first zero byte.
///
/// Declare the result variable before the sentry, so that it outlives it, assign to it in the return statement, and
/// return that variable: a bare `return true;` would print the value that the variable had before.
template <typename T>
class CDebugSentryWithReturn final : public CDebugSentry
{
public:
    /// Writes the entry line if debug output is on.
    ///
    /// `handler` serves the group that the function reports in; `line` and `file` are the place of the sentry, and
    /// `function` is the function's full name with its namespace. The texts are not copied and must outlive the sentry;
    /// literals do. `result` is read when the exit line is written, and stays the caller's.
    CDebugSentryWithReturn(CMessageHandler * handler, std::uint32_t line, const char * file,
        const char * function, const T * result)
    {
        if (CTheMsgHnd::DebugActivated()) {
            mResult = result;
            Enter(handler, line, file, function);
        }
    }

    /// Writes the exit line, unless `PrintExit` has written it. Throws nothing: a line that can't be written is lost.
    ~CDebugSentryWithReturn() override { CheckPrintExit(); }

    /// Writes the exit line with the present value of the result, at debug level 0; at most once for each sentry, and
    /// nothing where debug output was off when the sentry was made.
    void PrintExit() override
    {
        CMessageHandler * const handler = TakeHandler();
        if (handler == nullptr)
            return;
        if constexpr (std::is_same_v<T, std::string>)
            Print(handler, "<- %s [returning \"%s\"]", mResult->c_str());
        else if constexpr (std::is_same_v<T, bool>)
            Print(handler, "<- %s [returning %s]", *mResult ? "true" : "false");
        else if constexpr (std::is_enum_v<T> || std::is_same_v<T, int> || std::is_same_v<T, unsigned short>)
            Print(handler, "<- %s [returning %d]", static_cast<int>(*mResult));
        else if constexpr (IsInteger(4, false))
            Print(handler, "<- %s [returning %lu]", static_cast<unsigned long>(*mResult));
        else if constexpr (IsInteger(8, false))
            Print(handler, "<- %s [returning %llu]", static_cast<unsigned long long>(*mResult));
        else {
            static_assert(IsInteger(8, true), "no exit format is settled for this result type");
            Print(handler, "<- %s [returning %lld]", static_cast<long long>(*mResult));
        }
    }

private:
    static constexpr bool IsInteger(std::size_t bytes, bool isSigned)
    {
        return std::is_integral_v<T> && sizeof(T) == bytes && std::is_signed_v<T> == isSigned;
    }

    template <typename ValueT>
    void Print(CMessageHandler * handler, const char * format, ValueT value)
    {
#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
#pragma GCC diagnostic ignored "-Wformat-security"
#endif
        handler->DebugOutputInHandler(0, false, true, mFunction, mFile, mLine, format, mFunction, value);
#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif
    }

    const T * mResult;   // set while an exit line is due
};

}   // namespace VrexZynConfigTools

#endif
