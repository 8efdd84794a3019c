/// Structs packed by the library's codec in the form in which it loses least, and what comes back of them.

#ifndef KIT_LAYOUT_PACKING_H
#define KIT_LAYOUT_PACKING_H

#include "change.h"
#include "fields.h"

#include <memory>
#include <string>
#include <vector>

namespace VrexZynConfigTools {
class CComplexPayload;
class CMetadataDetailStruct;
}   // namespace VrexZynConfigTools

namespace kit::layout {

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

}   // namespace kit::layout

#endif
