/// The table of `zynconfig show`.

#ifndef ZYNCONFIG_SHOWTABLE_H
#define ZYNCONFIG_SHOWTABLE_H

#include "showmodel.h"

#include <cstddef>
#include <string>

namespace zynconfig {

struct TableStyle
{
    std::size_t mColumns;   // no line is wider
    bool mIsColoured;
};

/// The style that fits standard output. The width is that of the variable COLUMNS, else the terminal's, else 100.
/// Colour is for terminals only, and not for one that is called "dumb" or where the variable NO_COLOR has a value.
TableStyle StyleOfOutput();

std::string RenderTable(const ShownChip & chip, const TableStyle & style);

}   // namespace zynconfig

#endif
