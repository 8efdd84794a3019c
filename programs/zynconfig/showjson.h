/// The JSON text of `zynconfig show --json`; docs/zynconfig.md tells its shape.

#ifndef ZYNCONFIG_SHOWJSON_H
#define ZYNCONFIG_SHOWJSON_H

#include <workbench/layeredchip.h>

#include <string>

namespace zynconfig {

std::string RenderJson(const workbench::LayeredChip & chip);

}   // namespace zynconfig

#endif
