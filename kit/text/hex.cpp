#include <kit/text/hex.h>

#include <kit/text/number.h>

#include <fmt/format.h>

#include <cstdint>
#include <iterator>

namespace kit::text {

std::string HexOf(std::string_view bytes, std::string_view separator)
{
    std::string text;
    for (const char character : bytes) {
        if (!text.empty())
            text += separator;
        fmt::format_to(std::back_inserter(text), "{:02x}", static_cast<unsigned char>(character));
    }
    return text;
}

std::optional<std::string> BytesOfHex(std::string_view text)
{
    constexpr std::string_view BLANKS = " \t\n\r";
    std::string bytes;
    while (!text.empty()) {
        if (BLANKS.find(text.front()) != std::string_view::npos) {
            text.remove_prefix(1);
            continue;
        }
        const auto byte = ParseWhole<std::uint8_t>(text.substr(0, 2), 16);
        if (!byte || text.size() < 2)
            return std::nullopt;
        bytes += static_cast<char>(*byte);
        text.remove_prefix(2);
    }
    return bytes;
}

}   // namespace kit::text
