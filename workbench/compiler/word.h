/// The words of a metadata source.

#ifndef WORKBENCH_COMPILER_WORD_H
#define WORKBENCH_COMPILER_WORD_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace workbench::compiler {

/// What a value is made of.
enum class Kind
{
    Number,
    Text,
    Octets,
    Enumeration,
    Structure,
    Unknown
};

/// A word of the field "type".
struct TypeWord
{
    const char * mWord;
    Kind mKind;
    std::uint32_t mBits;   // 0: the word doesn't say
    bool mIsSigned;
};

/// Null for a word that names no type.
const TypeWord * FindType(std::string_view typeWord);

const std::vector<std::string> & TypeWords();
const std::vector<std::string> & FormatWords();
const std::vector<std::string> & AccessWords();
const std::vector<std::string> & SubsystemWords();

/// The letters A to Z made small, as names are compared.
std::string Lowered(std::string_view text);

/// A letter, then letters, digits, "_" and "-": what can be told from a number and be followed by indices.
bool IsName(std::string_view text);

/// As above, but a digit may come first if not all are digits.
bool IsEnumeratorName(std::string_view text);

/// The number that decimal digits, or "0x" and hexadecimal ones, stand for.
std::optional<std::uint64_t> UnsignedOfText(std::string_view text);

/// The bytes that pairs of hexadecimal digits name; blanks, tabs and line ends between the pairs are passed over.
std::optional<std::string> BytesOfHex(std::string_view text);

/// Lower-case pairs of digits with blanks between them.
std::string HexText(std::string_view bytes);

}   // namespace workbench::compiler

#endif
