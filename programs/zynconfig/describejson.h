/// The JSON text of `zynconfig describe --json`; docs/zynconfig.md tells its shape.

#ifndef ZYNCONFIG_DESCRIBEJSON_H
#define ZYNCONFIG_DESCRIBEJSON_H

#include "catalog.h"
#include "defaults.h"

#include <string>
#include <vector>

namespace zynconfig {

std::string RenderJson(const Record & record, const std::vector<DefaultValue> & defaults);

}   // namespace zynconfig

#endif
