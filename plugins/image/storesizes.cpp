#include "storesizes.h"

#include <charconv>

namespace imageconfig {

namespace {

constexpr std::uint32_t SMALLEST_SIZE = 4096;

// Takes the number up to `separator` off the front; the last one ends the text.
template <typename NumberT>
std::optional<NumberT> TakeNumber(std::string_view & text, char separator, NumberT max)
{
    const std::size_t end = text.find(separator);
    const std::string_view digits = text.substr(0, end);
    NumberT number = 0;
    const auto [stop, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    const bool isWhole = error == std::errc() && stop == digits.data() + digits.size();
    return isWhole && number >= 0 && number <= max ? std::optional(number) : std::nullopt;
}

}   // namespace

std::optional<StoreSizes> ParseStoreSizes(std::string_view text)
{
    constexpr int MAX_TAG = 65535;
    StoreSizes sizes;
    while (!text.empty()) {
        const std::size_t end = text.find(',');
        std::string_view piece = text.substr(0, end);
        const auto device = TakeNumber<int>(piece, '.', MAX_TAG);
        const auto store = TakeNumber<int>(piece, ':', MAX_TAG);
        const auto size = TakeNumber<std::uint32_t>(piece, '\0', SIZE_UNKNOWN);
        const bool endsInComma = end != std::string_view::npos && end + 1 == text.size();
        if (!device || !store || !size || endsInComma ||
            !sizes.emplace(std::pair(*device, *store), *size).second)
            return std::nullopt;
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
    return sizes;
}

std::uint32_t DefaultSize(std::uint64_t used)
{
    std::uint64_t size = SMALLEST_SIZE;
    while (size < used)
        size *= 2;
    return size < SIZE_UNKNOWN ? static_cast<std::uint32_t>(size) : SIZE_UNKNOWN;
}

}   // namespace imageconfig
