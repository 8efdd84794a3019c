/// UTF-8: what is valid, what may reach a terminal as it is, and how wide it is there.
///
///     Printable("a\x1b[2J");    // a\x1b[2J, with a backslash in place of the escape character
///     Columns("naïve 漢字");    // 10: five narrow letters, a blank and two wide characters
///     Cut("a long text", 6);    // a lon…

#ifndef KIT_TEXT_UTF8_H
#define KIT_TEXT_UTF8_H

#include <cstddef>
#include <string>
#include <string_view>

namespace kit::text {

/// Whether `text` is UTF-8 throughout: nothing overlong, cut off, beyond U+10FFFF, and no surrogate.
bool IsUtf8(std::string_view text);

/// Whether `text` is UTF-8 without control characters, so that a text file may contain it as it is.
bool IsPlain(std::string_view text);

/// `text` fit for a terminal: control characters, marks that turn the direction of writing, and bytes that are no UTF-8
/// appear as "\n", "\x1b" or "\u202e". A backslash remains one.
std::string Printable(std::string_view text);

/// `text` as it is if it is plain, as above. Otherwise each of its bytes that is no printable ASCII as "\x1b": of a text
/// that is damaged or no text at all, no character can be trusted.
std::string Escaped(std::string_view text);

/// Printable and in double quotes; a quote or backslash inside gets a backslash in front.
std::string Quoted(std::string_view text);

/// The first `bytes` bytes of `text` at most, fewer where they would end within a character.
std::string_view Beginning(std::string_view text, std::size_t bytes);

/// The columns that printable text takes on a terminal: 2 for a wide character, 0 for a combining one.
std::size_t Columns(std::string_view text);

/// Printable text, cut to at most `columns` columns; an ellipsis replaces what is cut off.
std::string Cut(std::string_view text, std::size_t columns);

/// Printable text, filled up with blanks to at least `columns` columns.
std::string Padded(std::string_view text, std::size_t columns);

}   // namespace kit::text

#endif
