/// Whole numbers in texts, free of locales.
///
///     ParseWhole<int>("-12");               // -12; nothing for "", "+12", "12 ", "0x12" or what no int can be
///     ParseWholeIn("300", 0, 255);          // nothing: out of range
///     ParseWithPrefix("0xff");              // 255

#ifndef KIT_TEXT_NUMBER_H
#define KIT_TEXT_NUMBER_H

#include <charconv>
#include <cstdint>
#include <optional>
#include <string_view>
#include <system_error>

namespace kit::text {

/// Digits in `base` with an optional "-" for signed types, and nothing else; nothing for a number beyond the type.
template <typename NumberT>
std::optional<NumberT> ParseWhole(std::string_view text, int base = 10)
{
    NumberT number{};
    const char * const last = text.data() + text.size();
    const auto [end, error] = std::from_chars(text.data(), last, number, base);
    return error == std::errc() && end == last ? std::optional(number) : std::nullopt;
}

/// As above in decimal, from `min` to `max`.
template <typename NumberT>
std::optional<NumberT> ParseWholeIn(std::string_view text, NumberT min, NumberT max)
{
    const auto number = ParseWhole<NumberT>(text);
    return number && *number >= min && *number <= max ? number : std::nullopt;
}

/// An unsigned number: decimal, or "0x" with hexadecimal digits.
std::optional<std::uint64_t> ParseWithPrefix(std::string_view text);

}   // namespace kit::text

#endif
