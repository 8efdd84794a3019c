/// The framework's debug sentry for functions with a result: its exit line shows the value that is returned.

#ifndef CONFIGTOOLS_DEBUGSENTRY_H
#define CONFIGTOOLS_DEBUGSENTRY_H

#include <messages/messages.h>

#include <cstddef>
#include <string>
#include <type_traits>

namespace VrexZynConfigTools {

/// Marks the extent of a function that returns a T. T is bool, `unsigned short`, `int`, an enumeration, an unsigned
/// 32-bit or a 64-bit integer, or `std::string`. Declare the result variable before the sentry, so that it
/// outlives it, and return that variable.
template <typename T>
class CDebugSentryWithReturn final : public CDebugSentry
{
public:
    /// `result` is read when the exit line is written; it stays the caller's.
    CDebugSentryWithReturn(CMessageHandler * handler, std::uint32_t line, const char * file,
        const char * function, const T * result)
    {
        if (CTheMsgHnd::DebugActivated()) {
            mResult = result;
            Enter(handler, line, file, function);
        }
    }
    ~CDebugSentryWithReturn() override { CheckPrintExit(); }

    /// Writes the exit line with the value that the result holds now, at level 0; at most once.
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
