/// Single values of a struct's tree.

#ifndef KIT_LAYOUT_SCALARS_H
#define KIT_LAYOUT_SCALARS_H

#include <configtools/payloads.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace VrexZynConfigTools {
class CStructField;
class IMetadata;
struct StructEntry;
}   // namespace VrexZynConfigTools

namespace kit::layout {

/// A whole number of up to 64 bits with its sign.
struct Number
{
    std::uint64_t mBits;   // two's complement
    bool mIsNegative;

    bool operator==(const Number & other) const = default;
};

/// How a type holds numbers.
struct NumberForm
{
    unsigned mBits;
    bool mIsSigned;

    /// Whether the type has this number.
    bool Holds(const Number & number) const;

    /// The lowest bits of a number as this type reads them: extended by the topmost one if signed.
    std::uint64_t Read(std::uint64_t bits) const;
};

std::string TextOf(const Number & number);

/// The lowest `count` bits of a number.
std::uint64_t LowBits(std::uint64_t number, unsigned count);

/// The keyword of the type in which the library reads and unpacks a single number of this field: the record's own, or the
/// smallest that the field fits into where that has no width.
std::string TypeOf(const VrexZynConfigTools::CStructField & field);

/// How the items of an array of this type read, whatever class they are unpacked into: the type tells the sign.
NumberForm FormOfItems(const VrexZynConfigTools::IMetadata & record);

/// How a type of numbers reads; as an enumerator does for none.
NumberForm FormOf(VrexZynConfigTools::NumericTypeEnum type);

/// Whether the record is that of a text or of octets.
bool IsTextual(const VrexZynConfigTools::IMetadata & record);

/// The most bytes that the record allows a text; what it says are unsigned numbers.
std::uint64_t LongestText(const VrexZynConfigTools::IMetadata & record);

/// A number or enumerator as its class reads it; nothing for any other payload.
std::optional<Number> ValueOf(VrexZynConfigTools::IPayload & payload);

/// The bytes of a value, the lowest first.
struct Octets
{
    std::string mText;
    bool mIsNumber;
};

/// A new payload of the same class and value, without metadata; null for what is no number and no enumerator.
std::unique_ptr<VrexZynConfigTools::IPayload> CopyNumber(VrexZynConfigTools::IPayload & payload);

/// An item of an array as a new payload of the array's own type, or the enumerator with that number. The codec unpacks items
/// as unsigned numbers, and those of 64 bits as 32 bits; their type gives the sign. A number that isn't of the type keeps
/// its class; null for what is no number and no enumerator.
std::unique_ptr<VrexZynConfigTools::IPayload> ItemOf(
    VrexZynConfigTools::IPayload & payload, const VrexZynConfigTools::IMetadata & record);

/// The bytes of a packed text as a new payload. A device doesn't know the length: octets have that of their field, and other
/// texts end where the zeros begin that fill it.
std::unique_ptr<VrexZynConfigTools::IPayload> TextOfOctets(
    std::string octets, const VrexZynConfigTools::IMetadata & record);

/// A new payload of a text as this record says it; null for what is no text.
std::unique_ptr<VrexZynConfigTools::IPayload> CopyText(
    VrexZynConfigTools::IPayload & payload, const VrexZynConfigTools::IMetadata & record);

/// The number that the bytes of a text make, in the type that the codec gives a field of that width; null for what is no
/// text, or one that doesn't fit.
std::unique_ptr<VrexZynConfigTools::IPayload> NumberOfText(
    VrexZynConfigTools::IPayload & payload, const VrexZynConfigTools::CStructField & field);

/// How many bytes of a text a field holds: of one of more than 64 bits its whole words.
std::uint64_t BytesHeld(const VrexZynConfigTools::StructEntry & entry);

/// The number that bytes make, the lowest first; those behind the eighth play no part.
std::uint64_t LowestFirst(const std::string & octets);

/// Of a number, an enumerator or a text; nothing for any other payload.
std::optional<Octets> OctetsOf(VrexZynConfigTools::IPayload & payload);

/// The fields that are there: null ones are passed over everywhere.
std::vector<VrexZynConfigTools::IPayload *> WithoutNulls(VrexZynConfigTools::CComplexPayload & list);

/// Whether every field is itself a list; so it is of an empty list.
bool HoldsOnlyLists(VrexZynConfigTools::CComplexPayload & list);

/// Appends an empty list with this record, or without any.
VrexZynConfigTools::CComplexPayload & AddList(
    VrexZynConfigTools::CComplexPayload & owner, const VrexZynConfigTools::IMetadata * record);

}   // namespace kit::layout

#endif
