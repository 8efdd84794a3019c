/// Numbers as words of 16 bits, the lowest first.

#ifndef IMAGECONFIG_WORDS_H
#define IMAGECONFIG_WORDS_H

#include <configtools/numbertypes.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace imageconfig {

inline constexpr std::size_t BYTES_OF_WORD = 2;
inline constexpr std::size_t WORDS_OF_ENUM = 2;

/// How many words a number of a type takes: of 8 and 16 bits one, of 32 two, of 64 four.
std::size_t WordsOf(const VrexZynConfigTools::NumberType & type);

/// By a keyword, with "integer" as "int64"; null for any other word.
const VrexZynConfigTools::NumberType * TypeByKeyword(const std::string & keyword);

void AppendWords(std::string & data, std::uint64_t value, std::size_t words);

/// Words as a value of that type, sign-extended; nothing if they hold more than the type does.
std::optional<std::uint64_t> ValueIn(std::string_view words, const VrexZynConfigTools::NumberType & type);

}   // namespace imageconfig

#endif
