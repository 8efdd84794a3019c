/// The default values of the metadata.

#ifndef WORKBENCH_DEFAULTS_H
#define WORKBENCH_DEFAULTS_H

#include "catalog.h"
#include "value.h"

#include <vector>

namespace workbench {

struct DefaultValue
{
    Key mKey;
    Value mValue;
};

/// Those of a key: of a table one for each row that has one. Empty for a key without any, and where the metadata can't
/// tell them.
std::vector<DefaultValue> DefaultsOf(const CCatalog & catalog, const Record & record);

}   // namespace workbench

#endif
