/// Default values of structs: a table of fields by name.

#ifndef WORKBENCH_COMPILER_STRUCTVALUE_H
#define WORKBENCH_COMPILER_STRUCTVALUE_H

#include "source.h"

#include <optional>
#include <string>

namespace workbench::compiler {

/// The packed struct. Nothing, with findings, if the value doesn't fit the key's struct.
std::optional<std::string> PackValue(const Key & key, const Value & value, CSourceFindings & findings);

}   // namespace workbench::compiler

#endif
