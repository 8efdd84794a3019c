/// Lines for a terminal: how wide they may be, and with which colours.

#ifndef ZYNCONFIG_LINES_H
#define ZYNCONFIG_LINES_H

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace zynconfig {

struct TableStyle
{
    std::size_t mColumns;   // no line is wider
    bool mIsColoured;
};

/// The style that fits standard output. The width is that of the variable COLUMNS, else the terminal's, else 100.
/// Colour is for terminals only, and not for one that is called "dumb" or where the variable NO_COLOR has a value.
TableStyle StyleOfOutput();

inline constexpr std::string_view GAP = "  ";   // between columns
inline constexpr std::string_view BOLD = "\033[1m";
inline constexpr std::string_view DIM = "\033[2m";

/// Makes lines that fit, with colour where it is wanted.
class CLineMaker
{
public:
    explicit CLineMaker(const TableStyle & style);

    /// Printable text; what doesn't fit is cut off.
    void Add(std::string_view line, std::string_view colour = {});

    /// Printable text on as many lines as it takes, the further ones below the column `indent`.
    void AddWrapped(std::string_view text, std::size_t indent);

    std::size_t Columns() const { return mStyle.mColumns; }
    std::string Take() { return std::move(mText); }

private:
    TableStyle mStyle;
    std::string mText;
};

using Cells = std::vector<std::string>;

/// Adds rows of printable cells in columns, with a heading unless it is empty. An empty column is left out.
void AddTable(const Cells & heading, const std::vector<Cells> & rows, CLineMaker & lines);

}   // namespace zynconfig

#endif
