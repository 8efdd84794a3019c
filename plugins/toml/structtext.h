/// Structs by the names of their fields.

#ifndef TOMLCONFIG_STRUCTTEXT_H
#define TOMLCONFIG_STRUCTTEXT_H

#include "valuetext.h"

#include <configtools/metadata.h>
#include <configtools/payloads.h>

#include <optional>
#include <vector>

namespace tomlconfig {

/// The fields of one struct in the order of its record, whether it was read field by field or as a block. Nothing for one
/// that doesn't fit its record.
std::optional<std::vector<NamedText>> StructFields(CComplexPayload & instance, const IMetadata & record);

/// "{ A = 1, B = 2 }".
std::string TableText(const std::vector<NamedText> & fields);

}   // namespace tomlconfig

#endif
