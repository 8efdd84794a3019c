/// The value of a key that applies: the one in the highest layer that has it, or the default of the metadata.
///
///     workbench::CCatalog catalog(*session.Metadata(), session.ReadContext(), session.Sink());
///     const workbench::KeyText text = workbench::ParseKeyText("GainTrim.1.0");
///     if (catalog.SelectChipOfFiles(session.Watch().Chip()))
///         if (const auto record = catalog.Find(text))
///             if (const auto key = catalog.RowOf(*record, text))
///                 if (const auto found = workbench::FindApplicable(session, catalog, *record, *key))
///                     Use(found->mValue);

#ifndef WORKBENCH_LOOKUP_H
#define WORKBENCH_LOOKUP_H

#include "catalog.h"
#include "session.h"
#include "value.h"

#include <optional>
#include <string>

namespace workbench {

/// A value and where it comes from. A copy, valid also after the session.
struct ApplicableValue
{
    Key mKey;
    /// The name in the metadata.
    std::string mName;

    /// 0: no layer has the key, and the value is the default.
    int mLayer;

    Value mValue;
};

/// Asks the library, from the highest layer down, for a key with its indices. The catalogue must have selected the chip
/// of the session. None if no layer has the key and it has no default ("no-value"), or the question fails.
std::optional<ApplicableValue> FindApplicable(
    CSession & session, const CCatalog & catalog, const Record & record, const Key & key);

}   // namespace workbench

#endif
