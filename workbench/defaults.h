/// The default values of the metadata.
///
///     for (const workbench::DefaultValue & each : workbench::DefaultsOf(catalog, record))
///         Show(NumberText(each.mKey), ToText(each.mValue));

#ifndef WORKBENCH_DEFAULTS_H
#define WORKBENCH_DEFAULTS_H

#include "catalog.h"
#include "value.h"

#include <vector>

namespace workbench {

/// What applies where no store has the key.
struct DefaultValue
{
    Key mKey;
    Value mValue;
};

/// Those of a key, sorted: of a table one for each row that has one. Empty for a key without any, and where the
/// metadata can't say. Where the catalogue has selected no chip and the system has several, they are those of the
/// first.
std::vector<DefaultValue> DefaultsOf(const CCatalog & catalog, const Record & record);

}   // namespace workbench

#endif
