/// The words of the file format: the names of its fields, the type words with their ranges, and the text forms of
/// numbers and bytes. Reader and writer share them, so that what one writes the other reads.

#ifndef TOMLCONFIG_VOCABULARY_H
#define TOMLCONFIG_VOCABULARY_H

#include <configtools/payloads.h>
#include <configtools/types.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tomlconfig {

using namespace VrexZynConfigTools;

namespace field {

inline constexpr char CHIP[] = "chip";
inline constexpr char LAYER_FILTER[] = "layerfilter";   // marks the result of a filtered write
inline constexpr char SUBSYSTEM[] = "subsystem";
inline constexpr char TYPE[] = "type";
inline constexpr char DEVICE[] = "device";
inline constexpr char STORE[] = "store";
inline constexpr char LAYER[] = "layer";   // in place of device and store in a filtered write
inline constexpr char KEY[] = "key";
inline constexpr char ID[] = "id";
inline constexpr char NAME[] = "name";
inline constexpr char INDEX[] = "index";
inline constexpr char VALUE[] = "value";
inline constexpr char NUMBER[] = "number";   // of an enumerator
inline constexpr char HEX[] = "hex";         // flags a text that is written as hexadecimal bytes

}   // namespace field

namespace word {

// Type words beside those that the library's keywords name.
inline constexpr char ENUM[] = "enum";
inline constexpr char STRUCT[] = "struct";
inline constexpr char RAW[] = "raw";

}   // namespace word

/// How deep structures may nest in a file.
inline constexpr int MAX_DEPTH = 100;

/// One of the type words for integers.
struct NumberType
{
    const char * mWord;
    NumericTypeEnum mType;
    std::int64_t mMin;
    std::uint64_t mMax;
    NumericVariable (*mVariable)(std::uint64_t bits);   // keeps the type's low bits
    std::string (*mText)(const void * value);           // of a value in memory, as it stands in a file
};

/// Null for a word that names no integer type.
const NumberType * FindNumberType(std::string_view typeWord);

/// The type of a numeric payload; null for any other code.
const NumberType * NumberTypeOf(PayloadTypeEnum type);

/// All type words, for messages.
const std::vector<std::string> & TypeWords();

/// A keyword and the number that a context tag holds for it.
struct TagWord
{
    std::string mWord;
    int mNumber;
};

const std::vector<TagWord> & SubsystemWords();
const std::vector<TagWord> & DeviceWords();

/// Decimal digits with an optional "-", and nothing else, within the range.
std::optional<std::int64_t> ParseDecimal(std::string_view text, std::int64_t min, std::int64_t max);

/// An unsigned number, which may lie above what an integer of a file can be: decimal or "0x" with hexadecimal digits.
std::optional<std::uint64_t> ParseUnsigned(std::string_view text);

/// Lower-case pairs of digits, joined by `separator`.
std::string HexText(std::string_view bytes, std::string_view separator);

/// The bytes that pairs of hexadecimal digits name; blanks, tabs and line ends between the pairs are passed over.
std::optional<std::string> BytesOfHex(std::string_view text);

/// Whether `text` can stand in a file as it is: UTF-8 without control characters.
bool IsPlainText(std::string_view text);

}   // namespace tomlconfig

#endif
