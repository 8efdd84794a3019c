#include <kit/text/number.h>

namespace kit::text {

std::optional<std::uint64_t> ParseWithPrefix(std::string_view text)
{
    const bool isHex = text.substr(0, 2) == "0x";
    return ParseWhole<std::uint64_t>(text.substr(isHex ? 2 : 0), isHex ? 16 : 10);
}

}   // namespace kit::text
