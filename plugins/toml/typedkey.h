/// Keys that say themselves what they are: by a number and the type of their value.

#ifndef TOMLCONFIG_TYPEDKEY_H
#define TOMLCONFIG_TYPEDKEY_H

#include "keylookup.h"

#include <configtools/context.h>
#include <configtools/metadata.h>
#include <kit/reading/filereader.h>

#include <memory>
#include <optional>
#include <vector>

namespace tomlconfig {

/// The records of such keys. Elements point at theirs, so these must outlive them.
using RecordList = std::vector<std::unique_ptr<CMetadata>>;

/// The key that `table` describes; nothing, with findings, for one that isn't understood. Its record goes to `records`.
///
/// With a lookup, which may be null, a name alone does, and a type that isn't the one in the metadata is a mistake.
std::optional<kit::reading::Key> ReadTypedKey(const toml::table & table, CFindings & findings,
    RecordList & records, CKeyLookup * lookup, IConfigContext & context);

}   // namespace tomlconfig

#endif
