/// Keys that a metadata provider describes: the file gives a name or a number, and the value in the key's own words.

#ifndef TOMLCONFIG_DESCRIBEDKEY_H
#define TOMLCONFIG_DESCRIBEDKEY_H

#include "keylookup.h"

#include <configtools/context.h>
#include <kit/reading/filereader.h>

#include <optional>

namespace tomlconfig {

/// The key that `table` gives a value to, built and checked by the library's element factory. Nothing, with findings,
/// for one that isn't understood, and with a warning for one that is left out, as without checks an enumerator is that
/// nobody knows. The context is that of the subsystem; the factory leaves its tags in it, but none of a table row.
std::optional<kit::reading::Key> ReadDescribedKey(
    const toml::table & table, CKeyLookup & lookup, CFindings & findings, IConfigContext & context);

}   // namespace tomlconfig

#endif
