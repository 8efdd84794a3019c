/// Default values of structs: a table of fields by name.

#ifndef ZYNCONFIG_METADATA_STRUCTVALUE_H
#define ZYNCONFIG_METADATA_STRUCTVALUE_H

#include "source.h"

#include <optional>
#include <string>

namespace zynconfig::metadata {

/// The packed struct. Nothing, with findings, if the value doesn't fit the key's struct.
std::optional<std::string> PackValue(const Key & key, const Value & value, CFindings & findings);

}   // namespace zynconfig::metadata

#endif
