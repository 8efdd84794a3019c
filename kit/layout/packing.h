/// Structs packed by the library's codec in the form in which it loses least, and what comes back of them.

#ifndef KIT_LAYOUT_PACKING_H
#define KIT_LAYOUT_PACKING_H

#include "fields.h"

#include <memory>
#include <string>
#include <vector>

namespace VrexZynConfigTools {
class CComplexPayload;
class CMetadataDetailStruct;
class IPayload;
}   // namespace VrexZynConfigTools

namespace kit::layout {

/// A value that doesn't come back as it was.
struct Change
{
    std::string mField;   // "Bands[1].Gain"
    std::string mPath;    // "Bands[].Gain", as in `Field`
    std::string mValue;   // as text, of an array all items
    std::string mBack;
    Loss mLoss;            // `TOO_WIDE` for a number with more bits than there are for it
    std::uint32_t mBits;   // of the field, or of an item

    /// "the value 5 comes back as 0, as a field of exactly 64 bits is unpacked as 0".
    std::string Text() const;
};

/// The words of a struct, each with its low octet first, or its octets if it says so.
struct Packed
{
    std::string mOctets;
    std::vector<Change> mChanges;   // in the order of the fields
    std::string mError;             // why nothing was packed; empty if all went well
};

/// Packs one struct, which may have either form of `CodecTree`, unpacks it again and compares.
///
/// The codec gets the values in the form in which it loses least: a number of a field or item of 16 bits as one of 16
/// bits, as the codec passes over wider ones; any other without bits above its field, which would end up in the fields
/// beside it; an array with all items that its width holds, the missing ones 0, as the codec shares its width among those
/// there are; a text as the number or the words that its bytes make.
///
/// Missing items and structs come back as 0, which is no change. An error of the library is taken from the message
/// channel; none may be set before.
Packed PackStruct(
    VrexZynConfigTools::CComplexPayload & instance, VrexZynConfigTools::CMetadataDetailStruct & layout);

/// The struct that is packed so, as `CodecTree` makes it; missing octets are 0. Null if the library reports an error.
std::unique_ptr<VrexZynConfigTools::CComplexPayload> UnpackStruct(
    const std::string & octets, VrexZynConfigTools::CMetadataDetailStruct & layout);

/// Values that show what is lost: one for each field that doesn't come back, as far as simple values show it.
std::vector<Change> ExamplesOf(const CFields & fields, VrexZynConfigTools::CMetadataDetailStruct & layout);

/// "-3", "RED", "[1, 2]"; a text printable and without quotes.
std::string ValueText(VrexZynConfigTools::IPayload & payload);

}   // namespace kit::layout

#endif
