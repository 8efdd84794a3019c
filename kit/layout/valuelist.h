/// The values of one struct, which its fields take one after the other.

#ifndef KIT_LAYOUT_VALUELIST_H
#define KIT_LAYOUT_VALUELIST_H

#include <configtools/payloads.h>

#include <cstddef>
#include <cstdint>
#include <map>
#include <vector>

namespace VrexZynConfigTools {
class CMetadataDetailStruct;
class IMetadata;
}   // namespace VrexZynConfigTools

namespace kit::layout {

/// Values that carry the record of one of the struct's fields are that field's; any other record, such as that of the
/// key, which elements hand on, says nothing.
class CValueList
{
public:
    CValueList(
        VrexZynConfigTools::CComplexPayload & instance, VrexZynConfigTools::CMetadataDetailStruct & layout);

    /// The field with this record is next; called for each field, in order.
    void BeginField(const VrexZynConfigTools::IMetadata & record);

    std::size_t Left() const;
    VrexZynConfigTools::IPayload * Next() const;   // null at the end
    VrexZynConfigTools::IPayload * Take();         // null at the end

    /// Whether there is a next value that may be this field's.
    bool IsNextFor(const VrexZynConfigTools::IMetadata & record) const;

    /// Whether the next value carries this very record.
    bool IsNextOwn(const VrexZynConfigTools::IMetadata & record) const;

    /// Whether the next value carries this record, which no later field has.
    bool IsSurplus(const VrexZynConfigTools::IMetadata & record) const;

    /// The items of an array that stand here one by one: `most`, where that isn't 0, and only so many as leave the later
    /// fields one value each where the values don't tell.
    std::vector<VrexZynConfigTools::IPayload *> TakeRun(
        const VrexZynConfigTools::IMetadata & record, std::uint64_t most);

private:
    const VrexZynConfigTools::IMetadata * OwnRecord(VrexZynConfigTools::IPayload & value) const;

    std::vector<VrexZynConfigTools::IPayload *> mValues;
    std::size_t mNext = 0;
    std::map<const VrexZynConfigTools::IMetadata *, std::size_t> mFieldsLeft;   // by record; 0 for those begun
    std::size_t mSinglesLeft = 0;   // later fields of one value each
};

}   // namespace kit::layout

#endif
