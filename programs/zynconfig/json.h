/// JSON for scripts: what the JSON texts of all commands have in common. docs/zynconfig.md tells their shapes.

#ifndef ZYNCONFIG_JSON_H
#define ZYNCONFIG_JSON_H

#include <nlohmann/json.hpp>
#include <workbench/key.h>
#include <workbench/value.h>

#include <string>

namespace zynconfig {

using Json = nlohmann::ordered_json;

inline constexpr int JSON_FORMAT = 1;   // goes up when a script that reads this form might fail on a later one

/// JSON texts are UTF-8; what isn't is shown as in a table.
std::string JsonText(const std::string & bytes);

Json JsonOf(const workbench::Value & value);

/// Null for NO_NUMBER.
Json JsonOfNumber(int number);

/// The name of the store's device; null where there is none.
Json JsonOfDevice(const workbench::Store & store);

/// The indices of a table row; null for a plain key.
Json JsonOfIndices(const workbench::Key & key);

/// The document as the tool prints it.
std::string TextOf(const Json & document);

}   // namespace zynconfig

#endif
