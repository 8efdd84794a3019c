/// The bit map of a struct: a line for each word, from bit 15 on the left to bit 0, and a legend of the fields.

#ifndef ZYNCONFIG_BITMAP_H
#define ZYNCONFIG_BITMAP_H

#include "lines.h"

#include <kit/layout/fields.h>

namespace zynconfig {

/// Draws names where there is room for them, and letters, which the legend tells, where there isn't. A terminal that is
/// too narrow for the map gets the legend alone.
void AddBitMap(const kit::layout::CFields & fields, CLineMaker & lines);

}   // namespace zynconfig

#endif
