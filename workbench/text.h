/// Text for terminals: what must not reach one as it is, widths in columns, and cutting.

#ifndef WORKBENCH_TEXT_H
#define WORKBENCH_TEXT_H

#include <cstddef>
#include <string>
#include <string_view>

namespace workbench {

/// Whether `text` is UTF-8 throughout.
bool IsUtf8(std::string_view text);

/// `text` fit for a terminal: control characters, marks that turn the direction of writing, and bytes that are no UTF-8
/// are shown as "\n", "\x1b" or "\u202e". A backslash stays one.
std::string Printable(std::string_view text);

/// As above and in double quotes; a quote or backslash inside gets a backslash in front.
std::string Quoted(std::string_view text);

/// The columns that printable text takes on a terminal: 2 for a wide character, 0 for a combining one.
std::size_t Columns(std::string_view text);

/// Printable text, cut to at most `columns` columns; an ellipsis stands for what is cut off.
std::string Cut(std::string_view text, std::size_t columns);

/// Printable text, filled up with blanks to at least `columns` columns.
std::string Padded(std::string_view text, std::size_t columns);

}   // namespace workbench

#endif
