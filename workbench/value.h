/// A key's value, free of the library's classes: what the table and the JSON text are made of.

#ifndef WORKBENCH_VALUE_H
#define WORKBENCH_VALUE_H

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace VrexZynConfigTools {
class CElement;
class IMetadata;
class IPayload;
}   // namespace VrexZynConfigTools

namespace workbench {

struct Value
{
    struct Enumerator
    {
        std::string mName;
        std::int32_t mNumber;
    };
    struct Text
    {
        std::string mBytes;
    };
    struct Octets
    {
        std::string mBytes;
    };
    struct List
    {
        std::vector<Value> mItems;
    };
    struct Struct
    {
        std::vector<Value> mFields;
    };

    /// A keyword such as "uint8", "string" or "octet_string"; "enum", "struct", "raw"; for a list that of its items.
    /// Empty where the reader told none.
    std::string mType;
    std::variant<std::int64_t, std::uint64_t, Text, Octets, Enumerator, List, Struct> mContent;
};

/// What `element` holds. An element of several payloads, of none, or whose metadata calls it an array is a list.
Value ValueOf(VrexZynConfigTools::CElement & element);

/// What payloads hold that are the value of a key; `metadata` is the key's record.
Value ValueOf(const std::vector<VrexZynConfigTools::IPayload *> & payloads,
    const VrexZynConfigTools::IMetadata & metadata);

/// On one line and fit for a terminal: 5, [1, 2], {1, {2, "x"}}, "text", 0a 1b (octets), NAME (3).
std::string ToText(const Value & value);

}   // namespace workbench

#endif
