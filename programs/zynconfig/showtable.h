/// The table of `zynconfig show`.

#ifndef ZYNCONFIG_SHOWTABLE_H
#define ZYNCONFIG_SHOWTABLE_H

#include "lines.h"

#include <workbench/showmodel.h>

#include <string>

namespace zynconfig {

std::string RenderTable(const workbench::ShownChip & chip, const TableStyle & style);

}   // namespace zynconfig

#endif
