#include "word.h"

#include <configtools/keywords.h>
#include <configtools/metadataprovider.h>

#include <algorithm>
#include <array>
#include <charconv>

namespace workbench::compiler {

namespace {

namespace keywords = VrexZynConfigTools::keywords;

constexpr std::array TYPES = {
    TypeWord{ keywords::TYPE_UINT8, Kind::Number, 8, false },
    TypeWord{ keywords::TYPE_UINT16, Kind::Number, 16, false },
    TypeWord{ keywords::TYPE_UINT32, Kind::Number, 32, false },
    TypeWord{ keywords::TYPE_UINT64, Kind::Number, 64, false },
    TypeWord{ keywords::TYPE_INT8, Kind::Number, 8, true },
    TypeWord{ keywords::TYPE_INT16, Kind::Number, 16, true },
    TypeWord{ keywords::TYPE_INT32, Kind::Number, 32, true },
    TypeWord{ keywords::TYPE_INT64, Kind::Number, 64, true },
    TypeWord{ keywords::TYPE_INTEGER, Kind::Number, 0, true },
    TypeWord{ keywords::TYPE_STRING, Kind::Text, 0, false },
    TypeWord{ keywords::TYPE_OCTET_STRING, Kind::Octets, 0, false },
    TypeWord{ "enum", Kind::Enumeration, 0, false },
    TypeWord{ "struct", Kind::Structure, 0, false },
};

bool IsDigit(char character)
{
    return character >= '0' && character <= '9';
}

bool IsLetter(char character)
{
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
}

bool IsBlank(char character)
{
    return character == ' ' || character == '\t' || character == '\n' || character == '\r';
}

bool IsOfNameCharacters(std::string_view text)
{
    return std::all_of(text.begin(), text.end(),
        [](char each) { return IsLetter(each) || IsDigit(each) || each == '_' || each == '-'; });
}

std::vector<std::string> MakeTypeWords()
{
    std::vector<std::string> words;
    words.reserve(TYPES.size());
    for (const TypeWord & type : TYPES)
        words.emplace_back(type.mWord);
    return words;
}

std::vector<std::string> MakeSubsystemWords()
{
    using namespace VrexZynConfigTools;
    std::vector<std::string> words;
    for (int number = SUBSYSTEM_CURATOR; number <= SUBSYSTEM_PSAUDIO; ++number)
        words.push_back(CSubsystemInfo::GetSubsystemType(static_cast<SubSystemTypeEnum>(number)));
    return words;
}

}   // namespace

const TypeWord * FindType(std::string_view typeWord)
{
    const auto * const found =
        std::find_if(TYPES.begin(), TYPES.end(), [&](const TypeWord & type) { return typeWord == type.mWord; });
    return found != TYPES.end() ? found : nullptr;
}

const std::vector<std::string> & TypeWords()
{
    static const std::vector<std::string> words = MakeTypeWords();
    return words;
}

const std::vector<std::string> & FormatWords()
{
    static const std::vector<std::string> words = { keywords::FORMAT_SIGNED_DECIMAL,
        keywords::FORMAT_UNSIGNED_DECIMAL, keywords::FORMAT_HEXADECIMAL, keywords::FORMAT_MAC_ADDR };
    return words;
}

const std::vector<std::string> & AccessWords()
{
    static const std::vector<std::string> words = { keywords::ACCESS_NOT_ACCESSIBLE, keywords::ACCESS_READ_ONLY,
        keywords::ACCESS_READ_WRITE, keywords::ACCESS_WRITE_ONLY };
    return words;
}

const std::vector<std::string> & SubsystemWords()
{
    static const std::vector<std::string> words = MakeSubsystemWords();
    return words;
}

std::string Lowered(std::string_view text)
{
    std::string lowered(text);
    std::transform(lowered.begin(), lowered.end(), lowered.begin(),
        [](char each) { return each >= 'A' && each <= 'Z' ? static_cast<char>(each - 'A' + 'a') : each; });
    return lowered;
}

bool IsName(std::string_view text)
{
    return !text.empty() && IsLetter(text.front()) && IsOfNameCharacters(text);
}

bool IsEnumeratorName(std::string_view text)
{
    return !text.empty() && (IsLetter(text.front()) || IsDigit(text.front())) && IsOfNameCharacters(text) &&
           !std::all_of(text.begin(), text.end(), IsDigit);
}

std::optional<std::uint64_t> UnsignedOfText(std::string_view text)
{
    const bool isHex = text.substr(0, 2) == "0x";
    if (isHex)
        text.remove_prefix(2);
    std::uint64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, isHex ? 16 : 10);
    const bool isNumber = !text.empty() && error == std::errc() && end == text.data() + text.size();
    return isNumber ? std::optional(number) : std::nullopt;
}

std::optional<std::string> BytesOfHex(std::string_view text)
{
    std::string bytes;
    while (!text.empty()) {
        if (IsBlank(text.front())) {
            text.remove_prefix(1);
            continue;
        }
        unsigned int byte = 0;
        const std::string_view pair = text.substr(0, 2);
        const auto [end, error] = std::from_chars(pair.data(), pair.data() + pair.size(), byte, 16);
        if (pair.size() < 2 || error != std::errc() || end != pair.data() + 2)
            return std::nullopt;
        bytes += static_cast<char>(byte);
        text.remove_prefix(2);
    }
    return bytes;
}

std::string HexText(std::string_view bytes)
{
    static constexpr char DIGITS[] = "0123456789abcdef";
    std::string text;
    for (const char character : bytes) {
        const auto byte = static_cast<unsigned char>(character);
        text += text.empty() ? "" : " ";
        text += DIGITS[byte >> 4];
        text += DIGITS[byte & 0x0F];
    }
    return text;
}

}   // namespace workbench::compiler
