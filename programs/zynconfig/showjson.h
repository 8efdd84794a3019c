/// The JSON text of `zynconfig show --json`; docs/zynconfig.md tells its shape.

#ifndef ZYNCONFIG_SHOWJSON_H
#define ZYNCONFIG_SHOWJSON_H

#include <workbench/showmodel.h>

#include <string>

namespace zynconfig {

std::string RenderJson(const workbench::ShownChip & chip);

}   // namespace zynconfig

#endif
