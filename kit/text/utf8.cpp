#include <kit/text/utf8.h>

#include <kit/text/hex.h>

#include <algorithm>
#include <array>
#include <cstdint>

#include <fmt/format.h>
#include <utf8proc.h>

namespace kit::text {

namespace {

constexpr std::string_view ELLIPSIS = "\u2026";

/// One character of a text, or one byte that is no part of any.
struct Character
{
    std::int32_t mCode;
    std::string_view mBytes;
    bool mIsValid;
};

// Takes a character off the front of `text`, which is not empty.
Character TakeCharacter(std::string_view & text)
{
    std::int32_t code = 0;
    const auto length = utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t *>(text.data()),
        static_cast<utf8proc_ssize_t>(std::min<std::size_t>(text.size(), 4)), &code);
    const bool isValid = length > 0;
    const std::string_view bytes = text.substr(0, isValid ? static_cast<std::size_t>(length) : 1);
    text.remove_prefix(bytes.size());
    return { isValid ? code : static_cast<unsigned char>(bytes[0]), bytes, isValid };
}

struct CodeRange
{
    std::int32_t mFirst;
    std::int32_t mLast;
};

// Control characters, line and paragraph ends, and what turns the direction of writing or has no shape at all.
constexpr std::array<CodeRange, 8> DISTURBING = { { { 0x00, 0x1F }, { 0x7F, 0x9F }, { 0x061C, 0x061C },
    { 0x200B, 0x200F }, { 0x2028, 0x202E }, { 0x2060, 0x2069 }, { 0xFEFF, 0xFEFF }, { 0xE0000, 0xE007F } } };

bool IsDisturbing(const Character & character)
{
    return !character.mIsValid ||
           std::any_of(DISTURBING.begin(), DISTURBING.end(), [code = character.mCode](const CodeRange & range) {
               return code >= range.mFirst && code <= range.mLast;
           });
}

bool IsPlain(const Character & character)
{
    return character.mIsValid && utf8proc_category(character.mCode) != UTF8PROC_CATEGORY_CC;
}

std::string EscapedCode(const Character & character)
{
    switch (character.mCode) {
    case '\n':
        return "\\n";
    case '\r':
        return "\\r";
    case '\t':
        return "\\t";
    default:
        break;
    }
    if (!character.mIsValid || character.mCode < 0x80)
        return fmt::format("\\x{:02x}", character.mCode);
    return character.mCode > 0xFFFF ? fmt::format("\\U{:08x}", character.mCode)
                                    : fmt::format("\\u{:04x}", character.mCode);
}

template <typename IsWantedT>
bool AreAll(std::string_view text, IsWantedT isWanted)
{
    while (!text.empty())
        if (!isWanted(TakeCharacter(text)))
            return false;
    return true;
}

// A terminal gives spacing marks a column, and what it doesn't know as well.
std::size_t Width(const Character & character)
{
    if (!character.mIsValid)
        return 1;
    switch (utf8proc_category(character.mCode)) {
    case UTF8PROC_CATEGORY_MC:
    case UTF8PROC_CATEGORY_CC:
    case UTF8PROC_CATEGORY_CF:
    case UTF8PROC_CATEGORY_ZL:
    case UTF8PROC_CATEGORY_ZP:
        return 1;
    default:
        return static_cast<std::size_t>(utf8proc_charwidth(character.mCode));
    }
}

}   // namespace

bool IsUtf8(std::string_view text)
{
    return AreAll(text, [](const Character & character) { return character.mIsValid; });
}

bool IsPlain(std::string_view text)
{
    return AreAll(text, [](const Character & character) { return IsPlain(character); });
}

std::string Printable(std::string_view text)
{
    std::string result;
    while (!text.empty()) {
        const Character character = TakeCharacter(text);
        if (IsDisturbing(character))
            result += EscapedCode(character);
        else
            result += character.mBytes;
    }
    return result;
}

std::string Escaped(std::string_view text)
{
    if (IsPlain(text))
        return std::string(text);
    std::string result;
    for (const char character : text) {
        if (character >= 0x20 && character < 0x7F)
            result += character;
        else
            result += "\\x" + HexOf(std::string_view(&character, 1));
    }
    return result;
}

std::string Quoted(std::string_view text)
{
    std::string escaped;
    for (const char character : text) {
        if (character == '"' || character == '\\')
            escaped += '\\';
        escaped += character;
    }
    return '"' + Printable(escaped) + '"';
}

std::string_view Beginning(std::string_view text, std::size_t bytes)
{
    std::string_view rest = text;
    while (!rest.empty()) {
        const std::size_t begin = text.size() - rest.size();
        TakeCharacter(rest);
        if (text.size() - rest.size() > bytes)
            return text.substr(0, begin);
    }
    return text;
}

std::size_t Columns(std::string_view text)
{
    std::size_t columns = 0;
    while (!text.empty())
        columns += Width(TakeCharacter(text));
    return columns;
}

std::string Cut(std::string_view text, std::size_t columns)
{
    if (Columns(text) <= columns)
        return std::string(text);
    if (columns == 0)
        return {};

    std::size_t used = 1;   // the ellipsis
    std::string result;
    for (std::string_view rest = text; !rest.empty();) {
        const Character character = TakeCharacter(rest);
        used += Width(character);
        if (used > columns)
            break;
        result += character.mBytes;
    }
    return result.append(ELLIPSIS);
}

std::string Padded(std::string_view text, std::size_t columns)
{
    const std::size_t used = Columns(text);
    return std::string(text).append(used < columns ? columns - used : 0, ' ');
}

}   // namespace kit::text
