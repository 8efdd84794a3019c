/// The table of `zynconfig show`.

#ifndef ZYNCONFIG_SHOWTABLE_H
#define ZYNCONFIG_SHOWTABLE_H

#include "lines.h"

#include <workbench/layeredchip.h>

#include <string>

namespace zynconfig {

std::string RenderTable(const workbench::LayeredChip & chip, const TableStyle & style);

}   // namespace zynconfig

#endif
