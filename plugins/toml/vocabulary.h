/// The words of the file format: the names of its fields and the type words. Reader and writer share them, so that what
/// one writes the other reads.

#ifndef TOMLCONFIG_VOCABULARY_H
#define TOMLCONFIG_VOCABULARY_H

#include <kit/numbertypes/number.h>

#include <string>
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

/// All type words, for messages.
const std::vector<std::string> & TypeWords();

/// As it is written into a file, whose own integers are signed: a larger number goes between quotes.
std::string NumberText(const kit::numbertypes::CNumber & number);

}   // namespace tomlconfig

#endif
