/// The words of a metadata source.

#ifndef WORKBENCH_COMPILER_WORD_H
#define WORKBENCH_COMPILER_WORD_H

#include <cstdint>
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

/// A letter, then letters, digits, "_" and "-": what can be told from a number and be followed by indices.
bool IsName(std::string_view text);

/// As above, but a digit may come first if not all are digits.
bool IsEnumeratorName(std::string_view text);

}   // namespace workbench::compiler

#endif
