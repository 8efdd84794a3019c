/// The JSON text of `zynconfig describe --json`; docs/zynconfig.md tells its shape.

#ifndef ZYNCONFIG_DESCRIBEJSON_H
#define ZYNCONFIG_DESCRIBEJSON_H

#include <workbench/catalog.h>
#include <workbench/defaults.h>

#include <string>
#include <vector>

namespace zynconfig {

std::string RenderJson(const workbench::Record & record, const std::vector<workbench::DefaultValue> & defaults);

}   // namespace zynconfig

#endif
