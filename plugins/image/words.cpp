#include "words.h"

#include "bytes.h"

#include <configtools/keywords.h>
#include <kit/layout/scalars.h>

#include <algorithm>

namespace imageconfig {

using namespace VrexZynConfigTools;

std::size_t WordsOf(const NumberType & type)
{
    return std::max<std::size_t>(type.Bytes() / BYTES_OF_WORD, 1);
}

const NumberType * TypeByKeyword(const std::string & keyword)
{
    return FindNumberType(keyword == keywords::TYPE_INTEGER ? keywords::TYPE_INT64 : keyword);
}

void AppendWords(std::string & data, std::uint64_t value, std::size_t words)
{
    AppendNumber(data, value, words * BYTES_OF_WORD);
}

std::optional<std::uint64_t> ValueIn(std::string_view words, const NumberType & type)
{
    const std::uint64_t value = NumberIn(words);
    const std::uint64_t read = kit::layout::NumberForm{ type.mBits, type.mIsSigned }.Read(value);
    const bool isWhole = kit::layout::LowBits(read, static_cast<unsigned>(8 * words.size())) == value;
    return isWhole ? std::optional(read) : std::nullopt;
}

}   // namespace imageconfig
