/// From payloads to the text of their values.

#ifndef TOMLCONFIG_VALUETEXT_H
#define TOMLCONFIG_VALUETEXT_H

#include <configtools/payloads.h>

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace tomlconfig {

using namespace VrexZynConfigTools;

/// One payload as text.
struct ValueText
{
    std::string mWord;   // its type word
    std::string mText;   // its value
    bool mIsLeaf;        // false for a structure
};

/// A value with its name in a table, which may stand in quotes.
struct NamedText
{
    std::string mName;
    std::string mText;
};

/// How wide lines grow at most where there is a choice.
inline constexpr std::size_t LINE_WIDTH = 100;

/// A name as the key of a table, in quotes if need be; nothing for one that a file can't hold.
std::optional<std::string> KeyName(const std::string & name);

/// Bytes as pairs of digits between quotes, many of them on several lines if that is wanted.
std::string OctetsText(const std::string & bytes, bool mayWrap);

/// A text between quotes, or { hex = "..." } where it can't stand in a file as it is.
std::string TextValue(const std::string & text);

/// Nothing for a payload that a file can't hold: a class of somebody's own with a code that says nothing of its
/// value, or a structure that nests too deep. Structures begin their lines at `depth` levels of indentation.
std::optional<ValueText> PayloadValue(IPayload & payload, int depth);

/// An array of values on one line, or wrapped to several where that would be long.
std::string ArrayText(const std::vector<ValueText> & items);

/// An array of fields, one on a line.
std::string FieldsText(const std::vector<ValueText> & fields, int depth);

}   // namespace tomlconfig

#endif
