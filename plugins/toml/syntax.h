/// From a file to its tree of tables and values, by toml++.

#ifndef TOMLCONFIG_SYNTAX_H
#define TOMLCONFIG_SYNTAX_H

#include <toml++/toml.h>

#include <optional>
#include <string>
#include <string_view>

namespace tomlconfig {

class CFindings;

/// The content of a file; nothing, with the reason in `error`, if it can't be read.
std::optional<std::string> ReadFile(const std::string & path, std::string & error);

/// The tree. A syntax error is one finding, since nothing behind it can be understood.
std::optional<toml::table> ParseText(std::string_view text, CFindings & findings);

/// Where a key or header has more dots than any sensible one. toml++ would make a table for each part and exhaust
/// the stack when it destroys them.
std::optional<toml::source_position> FindOverlongKey(std::string_view text);

}   // namespace tomlconfig

#endif
