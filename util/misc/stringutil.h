/// The few free text functions that contexts and lookups need. They raise no error: a failure shows in the result.

#ifndef MISC_STRINGUTIL_H
#define MISC_STRINGUTIL_H

#include <cstdint>
#include <iosfwd>
#include <string>
#include <string_view>

namespace stringutil {

/// Writes the number in hexadecimal digits, filled up with zeros to `aNumberOfDigits`: lower-case ones, unless the
/// stream has other flags or a locale that groups digits. A negative number appears in its 32-bit two's-complement
/// form, so more digits than asked for can appear. The fill character is restored. The hexadecimal base flag stays
/// set, intended: the former flags are added, as the manipulator `setiosflags` does, and none is removed.
void WriteHexNumberToStream(std::ostream & aStream, int aNumberToDisplay, int aNumberOfDigits, bool aAddPrefix);

/// A copy in which each byte has gone through the standard `tolower`.
std::string ToLower(std::string aText);

/// Reads hexadecimal digits, with or without "0x", up to the first character that can't belong to the number. 0 if
/// there is no number or it doesn't fit.
std::uint32_t HexStrToInt(const std::string & aText);

/// Reads decimal, "0x" hexadecimal or "0" octal as `strtol` does. True if the whole text is a number of 32 bits. An
/// empty text leaves `aValue` alone; otherwise `aValue` is written on failure too: with what could be read, or with
/// the limit that was passed.
bool StringToInteger(const std::string & aText, std::int32_t & aValue);

/// The number of decimal text, with junk as 0 and junk behind the digits ignored, just as `atoi` has it. What lies
/// outside 32 bits, where `atoi` is undefined, is read with 64 bits, at most their limit, and the low 32 are the result:
/// so "4294967295" survives as an unsigned number.
std::int32_t DecimalToInt(std::string_view aText);

}   // namespace stringutil

#endif
