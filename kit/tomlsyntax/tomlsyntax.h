/// From a file to its tree of tables and values, by toml++.

#ifndef KIT_TOMLSYNTAX_TOMLSYNTAX_H
#define KIT_TOMLSYNTAX_TOMLSYNTAX_H

#include <toml++/toml.h>

#include <optional>
#include <string>
#include <string_view>

namespace kit::tomlsyntax {

/// Why a text is no TOML: a syntax error is the one thing to tell, since nothing behind it can be understood.
struct SyntaxError
{
    toml::source_position mPlace;
    std::string mText;
};

/// The content of a file; nothing, with the reason in `error`, without the path, if it can't be read.
std::optional<std::string> ReadFile(const std::string & path, std::string & error);

/// The tree; nothing, with the reason in `error`, if the text is no TOML.
std::optional<toml::table> ParseText(std::string_view text, SyntaxError & error);

/// Where a key or header has more dots than any sensible one. toml++ would make a table for each part and exhaust
/// the stack when it destroys them.
std::optional<toml::source_position> FindOverlongKey(std::string_view text);

/// What a value is, for messages: "a text", "an array".
const char * KindOf(const toml::node & node);

}   // namespace kit::tomlsyntax

#endif
