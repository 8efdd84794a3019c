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
}

namespace kit::layout {

/// The bytes of a value, the lowest first.
struct Octets
{
    std::string mText;
    bool mIsNumber;
};

/// A number or enumerator, zero-extended; nothing for any other payload.
std::optional<std::uint64_t> NumberOf(VrexZynConfigTools::IPayload & payload);

/// A new payload of the same class and value, without metadata; null for what is no number and no enumerator.
std::unique_ptr<VrexZynConfigTools::IPayload> CopyNumber(VrexZynConfigTools::IPayload & payload);

/// The number that the bytes of a text make, in the type that the codec gives a field of that width; null for what is no
/// text, or one that doesn't fit.
std::unique_ptr<VrexZynConfigTools::IPayload> NumberOfText(
    VrexZynConfigTools::IPayload & payload, const VrexZynConfigTools::CStructField & field);

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
