/// Bytes as hexadecimal digits.
///
///     HexOf("\x01\xab", " ");    // 01 ab
///     BytesOfHex("01 AB");       // the same two bytes; nothing for "1" or "0x01"

#ifndef KIT_TEXT_HEX_H
#define KIT_TEXT_HEX_H

#include <optional>
#include <string>
#include <string_view>

namespace kit::text {

/// A pair of lower-case digits for each byte, joined by `separator`.
std::string HexOf(std::string_view bytes, std::string_view separator = "");

/// The bytes that pairs of digits of either case name. Blanks, tabs and line ends between the pairs are skipped; nothing
/// for any other character, or an odd one.
std::optional<std::string> BytesOfHex(std::string_view text);

}   // namespace kit::text

#endif
