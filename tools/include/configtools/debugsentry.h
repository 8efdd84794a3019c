/// The framework's debug sentry for functions with a result: its exit line shows the value that is returned.

#ifndef CONFIGTOOLS_DEBUGSENTRY_H
#define CONFIGTOOLS_DEBUGSENTRY_H

#include <messages/messages.h>

#include <cstdint>
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
        : CDebugSentry(handler, line, file, function)
        , mResult(result)
    {}
    ~CDebugSentryWithReturn() override { CheckPrintExit(); }

    /// Writes the exit line with the result, at level 0.
    void PrintExit() override
    {
        if constexpr (std::is_same_v<T, std::string>)
            Print("<- %s [returning \"%s\"]", mResult->c_str());
        else if constexpr (std::is_same_v<T, bool>)
            Print("<- %s [returning %s]", *mResult ? "true" : "false");
        else if constexpr (std::is_enum_v<T> || std::is_same_v<T, int> || std::is_same_v<T, unsigned short>)
            Print("<- %s [returning %d]", static_cast<int>(*mResult));
        else if constexpr (std::is_same_v<T, std::uint32_t>)
            Print("<- %s [returning %lu]", static_cast<unsigned long>(*mResult));
        else if constexpr (std::is_same_v<T, std::uint64_t>)
            Print("<- %s [returning %llu]", static_cast<unsigned long long>(*mResult));
        else {
            static_assert(std::is_same_v<T, std::int64_t>, "no exit format is settled for this result type");
            Print("<- %s [returning %lld]", static_cast<long long>(*mResult));
        }
    }

private:
    template <typename ValueT>
    void Print(const char * format, ValueT value)
    {
#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
#pragma GCC diagnostic ignored "-Wformat-security"
#endif
        mHandler->DebugOutputInHandler(0, false, true, mFunction, mFile, mLine, format, mFunction, value);
#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif
    }

    const T * mResult;
};

}   // namespace VrexZynConfigTools

#endif
