#include "vocabulary.h"

#include <configtools/keywords.h>
#include <configtools/numbertypes.h>

#include <array>
#include <cstdint>
#include <limits>

namespace tomlconfig {

namespace {

std::vector<std::string> MakeTypeWords()
{
    constexpr std::array<const char *, 6> OTHERS = { keywords::TYPE_INTEGER, keywords::TYPE_STRING,
        keywords::TYPE_OCTET_STRING, word::ENUM, word::STRUCT, word::RAW };
    std::vector<std::string> words;
    words.reserve(NUMBER_TYPES.size() + OTHERS.size());
    for (const NumberType & type : NUMBER_TYPES)
        words.emplace_back(type.mKeyword);
    words.insert(words.end(), OTHERS.begin(), OTHERS.end());
    return words;
}

}   // namespace

const std::vector<std::string> & TypeWords()
{
    static const std::vector<std::string> words = MakeTypeWords();
    return words;
}

std::string NumberText(const kit::numbertypes::CNumber & number)
{
    const bool isTooLarge = number > kit::numbertypes::CNumber(std::numeric_limits<std::int64_t>::max());
    return isTooLarge ? '"' + number.Text() + '"' : number.Text();
}

}   // namespace tomlconfig
