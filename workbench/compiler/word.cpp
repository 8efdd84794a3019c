#include "word.h"

#include <configtools/keywords.h>
#include <configtools/numbertypes.h>
#include <kit/reading/devices.h>

#include <algorithm>
#include <array>
#include <cstddef>

namespace workbench::compiler {

namespace {

using namespace VrexZynConfigTools;

constexpr std::array OTHER_TYPES = {
    TypeWord{ keywords::TYPE_INTEGER, Kind::Number, 0, true },
    TypeWord{ keywords::TYPE_STRING, Kind::Text, 0, false },
    TypeWord{ keywords::TYPE_OCTET_STRING, Kind::Octets, 0, false },
    TypeWord{ "enum", Kind::Enumeration, 0, false },
    TypeWord{ "struct", Kind::Structure, 0, false },
};

// Unsigned numbers first, as messages list them: most keys are of these.
constexpr auto MakeTypes()
{
    std::array<TypeWord, NUMBER_TYPES.size() + OTHER_TYPES.size()> types{};
    std::size_t count = 0;
    for (const bool isSigned : { false, true })
        for (const NumberType & type : NUMBER_TYPES)
            if (type.mIsSigned == isSigned)
                types[count++] = { type.mKeyword, Kind::Number, type.mBits, isSigned };
    for (const TypeWord & type : OTHER_TYPES)
        types[count++] = type;
    return types;
}

constexpr auto TYPES = MakeTypes();

bool IsDigit(char character)
{
    return character >= '0' && character <= '9';
}

bool IsLetter(char character)
{
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
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
    std::vector<std::string> words;
    for (const kit::reading::TagWord & word : kit::reading::SubsystemWords())
        words.push_back(word.mWord);
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

bool IsName(std::string_view text)
{
    return !text.empty() && IsLetter(text.front()) && IsOfNameCharacters(text);
}

bool IsEnumeratorName(std::string_view text)
{
    return !text.empty() && (IsLetter(text.front()) || IsDigit(text.front())) && IsOfNameCharacters(text) &&
           !std::all_of(text.begin(), text.end(), IsDigit);
}

}   // namespace workbench::compiler
