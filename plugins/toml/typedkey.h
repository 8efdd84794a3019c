/// Keys that say themselves what they are: by a number and the type of their value.

#ifndef TOMLCONFIG_TYPEDKEY_H
#define TOMLCONFIG_TYPEDKEY_H

#include "document.h"

#include <optional>

namespace tomlconfig {

/// The key that `table` describes; nothing, with findings, for one that isn't understood. Its record goes to `records`.
std::optional<Key> ReadTypedKey(const toml::table & table, CFindings & findings, RecordList & records);

}   // namespace tomlconfig

#endif
