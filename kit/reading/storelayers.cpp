#include "storelayers.h"

#include <charconv>

namespace kit::reading {

namespace {

constexpr int MAX_LAYER = 15;
constexpr int MAX_TAG = 65535;

std::optional<int> ParseNumber(std::string_view text, int min, int max)
{
    int number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size() || number < min || number > max)
        return std::nullopt;
    return number;
}

// Takes the text up to `separator` off the front, as a number; all of it where there is no separator.
std::optional<int> TakeNumber(std::string_view & text, char separator, int min, int max)
{
    const std::size_t end = text.find(separator);
    const auto number = ParseNumber(text.substr(0, end), min, max);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    return number;
}

}   // namespace

std::optional<StoreLayers> ParseStoreLayers(std::string_view text)
{
    StoreLayers layers;
    while (!text.empty()) {
        const std::size_t end = text.find(',');
        std::string_view piece = text.substr(0, end);
        const auto device = TakeNumber(piece, '.', -1, MAX_TAG);
        const auto store = TakeNumber(piece, ':', 0, MAX_TAG);
        const auto layer = ParseNumber(piece, 1, MAX_LAYER);
        const bool endsInComma = end != std::string_view::npos && end + 1 == text.size();
        if (!device || !store || !layer || endsInComma)
            return std::nullopt;
        if (!layers.emplace(std::pair(*device, *store), *layer).second)
            return std::nullopt;
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
    return layers;
}

}   // namespace kit::reading
