#include "text.h"

#include <algorithm>
#include <array>
#include <clocale>
#include <cwchar>

namespace workbench {

namespace {

constexpr std::string_view ELLIPSIS = "\u2026";

/// One character of a text, or one byte that is no part of any.
struct Character
{
    char32_t mCode;
    std::size_t mLength;   // in bytes
    bool mIsValid;
};

struct SequenceForm
{
    unsigned char mMask;      // the bits of the first byte that tell the form
    unsigned char mPattern;   // what they read
    std::size_t mLength;
    char32_t mLowest;   // a smaller number must be written in a shorter form
};

constexpr std::array<SequenceForm, 4> SEQUENCE_FORMS = { {
    { 0x80, 0x00, 1, 0 },
    { 0xE0, 0xC0, 2, 0x80 },
    { 0xF0, 0xE0, 3, 0x800 },
    { 0xF8, 0xF0, 4, 0x10000 },
} };

constexpr unsigned char Byte(char character)
{
    return static_cast<unsigned char>(character);
}

constexpr bool IsSurrogate(char32_t code)
{
    return code >= 0xD800 && code <= 0xDFFF;
}

// The character at the head of `text`, which is not empty.
Character FirstCharacter(std::string_view text)
{
    const Character stray = { Byte(text[0]), 1, false };
    const auto * const form = std::find_if(SEQUENCE_FORMS.begin(), SEQUENCE_FORMS.end(),
        [&](const SequenceForm & each) { return (Byte(text[0]) & each.mMask) == each.mPattern; });
    if (form == SEQUENCE_FORMS.end() || text.size() < form->mLength)
        return stray;

    char32_t code = Byte(text[0]) & static_cast<unsigned char>(~form->mMask);
    for (std::size_t i = 1; i < form->mLength; ++i) {
        if ((Byte(text[i]) & 0xC0) != 0x80)
            return stray;
        code = (code << 6) | (Byte(text[i]) & 0x3F);
    }
    if (code < form->mLowest || code > 0x10FFFF || IsSurrogate(code))
        return stray;
    return { code, form->mLength, true };
}

struct CodeRange
{
    char32_t mFirst;
    char32_t mLast;
};

// Control characters, line and paragraph ends, and what turns the direction of writing or can't be seen at all.
constexpr std::array<CodeRange, 8> DISTURBING = { { { 0x00, 0x1F }, { 0x7F, 0x9F }, { 0x061C, 0x061C },
    { 0x200B, 0x200F }, { 0x2028, 0x202E }, { 0x2060, 0x2069 }, { 0xFEFF, 0xFEFF }, { 0xE0000, 0xE007F } } };

bool IsDisturbing(char32_t code)
{
    return std::any_of(DISTURBING.begin(), DISTURBING.end(),
        [=](const CodeRange & range) { return code >= range.mFirst && code <= range.mLast; });
}

std::string Hex(char32_t number, int digits)
{
    std::string text;
    for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4)
        text += "0123456789abcdef"[(number >> shift) & 0xF];
    return text;
}

std::string Escape(const Character & character)
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
        return "\\x" + Hex(character.mCode, 2);
    return character.mCode > 0xFFFF ? "\\U" + Hex(character.mCode, 8) : "\\u" + Hex(character.mCode, 4);
}

// The C library knows the width of a character only under a locale of its encoding; this one takes effect within a
// scope and touches neither other threads nor the process's locale.
class CUtf8Scope
{
public:
    CUtf8Scope()
        : mFormer(uselocale(Utf8Locale()))
    {}
    ~CUtf8Scope() { uselocale(mFormer); }
    CUtf8Scope(const CUtf8Scope &) = delete;
    CUtf8Scope & operator=(const CUtf8Scope &) = delete;

private:
    static locale_t Utf8Locale()
    {
        static const locale_t locale = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
        return locale;   // null where the system has none: then the locale stays as it is
    }

    locale_t mFormer;
};

// Within a CUtf8Scope. A character of unknown width takes one column.
std::size_t Width(const Character & character)
{
    const int width = character.mIsValid ? wcwidth(static_cast<wchar_t>(character.mCode)) : 1;
    return width < 0 ? 1 : static_cast<std::size_t>(width);
}

}   // namespace

bool IsUtf8(std::string_view text)
{
    while (!text.empty()) {
        const Character character = FirstCharacter(text);
        if (!character.mIsValid)
            return false;
        text.remove_prefix(character.mLength);
    }
    return true;
}

std::string Printable(std::string_view text)
{
    std::string result;
    while (!text.empty()) {
        const Character character = FirstCharacter(text);
        if (!character.mIsValid || IsDisturbing(character.mCode))
            result += Escape(character);
        else
            result += text.substr(0, character.mLength);
        text.remove_prefix(character.mLength);
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

std::size_t Columns(std::string_view text)
{
    const CUtf8Scope utf8;
    std::size_t columns = 0;
    while (!text.empty()) {
        const Character character = FirstCharacter(text);
        columns += Width(character);
        text.remove_prefix(character.mLength);
    }
    return columns;
}

std::string Cut(std::string_view text, std::size_t columns)
{
    if (Columns(text) <= columns)
        return std::string(text);
    if (columns == 0)
        return {};

    const CUtf8Scope utf8;
    std::size_t used = 1;   // the ellipsis
    std::size_t end = 0;
    while (end < text.size()) {
        const Character character = FirstCharacter(text.substr(end));
        used += Width(character);
        if (used > columns)
            break;
        end += character.mLength;
    }
    return std::string(text.substr(0, end)).append(ELLIPSIS);
}

std::string Padded(std::string_view text, std::size_t columns)
{
    const std::size_t used = Columns(text);
    return std::string(text).append(used < columns ? columns - used : 0, ' ');
}

}   // namespace workbench
