/// The value of a key that applies: the one in the highest layer that has it, or the default of the metadata.

#ifndef WORKBENCH_LOOKUP_H
#define WORKBENCH_LOOKUP_H

#include "catalog.h"
#include "session.h"
#include "value.h"

#include <optional>
#include <string>

namespace workbench {

struct ApplicableValue
{
    Key mKey;
    std::string mName;
    int mLayer;   // 0: no layer has the key, the value is the default
    Value mValue;
};

/// The catalogue has selected the chip of the session. None, with a finding, if no layer has the key and it has no
/// default.
std::optional<ApplicableValue> FindApplicable(
    CSession & session, const CCatalog & catalog, const Record & record, const Key & key);

}   // namespace workbench

#endif
