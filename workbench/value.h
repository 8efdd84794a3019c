/// A key's value, free of the library's classes: what tables, JSON texts and comparisons are made of.
///
///     const workbench::Value value = workbench::ValueOf(element);
///     if (const auto * number = std::get_if<std::int64_t>(&value.mContent))
///         Use(*number);
///     ToText(value);   // "-3"
///
/// A value is the same whether it was read from a text or from an image: where there is metadata, the record of the key
/// or field decides what it is.

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

/// A value is copied as a whole, and refers to nothing.
struct Value
{
    /// A named number.
    struct Enumerator
    {
        std::string mName;
        std::int32_t mNumber;
    };

    /// A text as the file has it. It needn't be UTF-8, and may have zeros.
    struct Text
    {
        std::string mBytes;
    };

    /// Bytes without a meaning as text.
    struct Octets
    {
        std::string mBytes;
    };

    /// The items of an array, or several values of a key that is none.
    struct List
    {
        std::vector<Value> mItems;
    };

    /// The fields of a struct, in the order of the metadata. An array within it is a struct of its items.
    struct Struct
    {
        std::vector<Value> mFields;
    };

    /// A keyword such as "uint8", "string" or "octet_string"; "enum", "struct", "raw"; of a list that of its items.
    /// Empty where the reader gave none.
    std::string mType;

    /// Signed numbers come as the first alternative, unsigned ones as the second, whatever their width.
    std::variant<std::int64_t, std::uint64_t, Text, Octets, Enumerator, List, Struct> mContent;
};

/// What `element` holds. An element of several payloads, of none, or whose metadata calls it an array is a list. The
/// element isn't changed.
Value ValueOf(VrexZynConfigTools::CElement & element);

/// What payloads hold that are the value of a key; `metadata` is the key's record. The payloads remain the caller's.
Value ValueOf(const std::vector<VrexZynConfigTools::IPayload *> & payloads,
    const VrexZynConfigTools::IMetadata & metadata);

/// On one line and fit for a terminal: 5, [1, 2], {1, {2, "x"}}, "text", 0a 1b (octets), NAME (3).
std::string ToText(const Value & value);

}   // namespace workbench

#endif
