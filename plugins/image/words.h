/// Numbers as words of 16 bits, the lowest first.

#ifndef IMAGECONFIG_WORDS_H
#define IMAGECONFIG_WORDS_H

#include <configtools/payloads.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace imageconfig {

inline constexpr std::size_t BYTES_OF_WORD = 2;
inline constexpr std::size_t WORDS_OF_ENUM = 2;

/// How the numbers of a type are held: of 8 and 16 bits in one word, of 32 in two, of 64 in four.
struct NumberType
{
    VrexZynConfigTools::PayloadTypeEnum mPayload;
    std::size_t mBits;
    bool mIsSigned;

    std::size_t Words() const { return mBits <= 16 ? 1 : mBits / 16; }
};

/// By a keyword, with "integer" as "int64"; nothing for any other word.
std::optional<NumberType> TypeByKeyword(const std::string & keyword);

std::optional<NumberType> TypeByPayload(VrexZynConfigTools::PayloadTypeEnum type);

/// The value of a numeric payload or an enumerator, sign-extended if its class is signed; nothing for any other.
std::optional<std::uint64_t> ValueOf(VrexZynConfigTools::IPayload & payload);

/// Whether a numeric payload or enumerator has a class that is signed, and a value below 0.
bool IsNegative(VrexZynConfigTools::IPayload & payload);

/// Whether the value of a numeric payload or enumerator is one of that type.
bool FitsInto(VrexZynConfigTools::IPayload & payload, const NumberType & type);

/// The lowest `bits` of a value, extended by their topmost if `isSigned`.
std::uint64_t Cut(std::uint64_t value, std::size_t bits, bool isSigned);

void AppendWords(std::string & data, std::uint64_t value, std::size_t words);

/// Words as a value of that type; nothing if they hold more than the type does.
std::optional<std::uint64_t> ValueIn(std::string_view words, const NumberType & type);

}   // namespace imageconfig

#endif
