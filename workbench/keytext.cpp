#include "keytext.h"

#include <kit/text/utf8.h>

#include <algorithm>
#include <charconv>

namespace workbench {

using kit::text::Quoted;

namespace {

std::vector<std::string> Split(const std::string & text, char separator)
{
    std::vector<std::string> pieces(1);
    for (const char character : text) {
        if (character == separator)
            pieces.emplace_back();
        else
            pieces.back() += character;
    }
    return pieces;
}

}   // namespace

std::string KeyTextProblem(const std::string & text)
{
    const KeyText key = ParseKeyText(text);
    const bool isWhole = !key.mKey.empty() && text.front() != ':' &&
                         std::none_of(key.mIndices.begin(), key.mIndices.end(),
                             [](const std::string & index) { return index.empty(); });
    return isWhole
               ? ""
               : Quoted(text) + " is no key: [SUBSYSTEM:]NAME or [SUBSYSTEM:]NUMBER, and .INDEX for each index";
}

KeyText ParseKeyText(const std::string & text)
{
    const auto colon = text.find(':');
    KeyText key;
    if (colon != std::string::npos)
        key.mSubsystem = text.substr(0, colon);
    std::vector<std::string> pieces = Split(text.substr(colon == std::string::npos ? 0 : colon + 1), '.');
    key.mKey = pieces.front();
    key.mIndices.assign(pieces.begin() + 1, pieces.end());
    return key;
}

std::optional<std::uint32_t> NumberOf(const std::string & text)
{
    const bool isHexadecimal = text.rfind("0x", 0) == 0 || text.rfind("0X", 0) == 0;
    const bool isOctal = !isHexadecimal && text.size() > 1 && text.front() == '0';
    const char * const begin = text.data() + (isHexadecimal ? 2 : 0);
    const char * const end = text.data() + text.size();
    std::uint32_t number = 0;
    const auto result = std::from_chars(begin, end, number, isHexadecimal ? 16 : isOctal ? 8 : 10);
    return result.ec == std::errc() && result.ptr == end ? std::optional(number) : std::nullopt;
}

}   // namespace workbench
