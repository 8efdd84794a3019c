/// What the codec has to do for a struct, worked out once from its metadata and kept with it. Internal.
///
/// Records answer through virtual operations that compose texts, and most of a field's fate depends on them alone. A
/// plan holds the answers. It is made only where every record and detail of the struct, nested ones included, is of
/// exactly the library's classes, and where nothing is wrong with them: then no code of others can run and no error
/// arises while it is followed. For all else the codec asks the metadata field by field, which is called the literal
/// road here; both have the very same results.

#ifndef CONFIGTOOLS_STRUCTCODEC_PLAN_H
#define CONFIGTOOLS_STRUCTCODEC_PLAN_H

#include "../metadata/changes.h"
#include "words.h"
#include <configtools/metadata.h>
#include <configtools/payloads.h>
#include <configtools/types.h>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace VrexZynConfigTools {

namespace structcodec {

enum class FieldKind : std::uint8_t
{
    NUMBER,
    ENUM,
    WIDE,    // a number of more than 64 bits
    ARRAY,   // of numbers
    STRUCT,
    STRUCTS   // an array of structs
};

struct FieldPlan
{
    FieldKind mKind = FieldKind::NUMBER;
    bool mIsSigned = false;                 // its highest bit is a sign, when unpacked
    NumericTypeEnum mType = NUMERIC_NONE;   // of the payload that is unpacked
    std::uint32_t mPosition = 0;            // from the start of the struct
    std::uint32_t mWidth = 0;               // 0 also for a negative one
    std::uint32_t mItems = 0;               // how many are unpacked: words, numbers or structs
    std::uint32_t mStride = 0;              // from one of them to the next
    std::uint32_t mInner = 0;               // of a struct its layout, of an enumeration its names
    std::uint64_t mWordsMask = 0;           // of four words those that a number reaches into
    std::uint64_t mMask = 0;                // its own bits
    const IMetadata * mRecord = nullptr;    // the provider's
};

/// The fields of one struct, in the order of their payloads.
struct LayoutPlan
{
    bool mIsLittleEndian = false;
    std::vector<FieldPlan> mFields;
};

/// The names of an enumeration by number and name, ascending. The texts belong to the detail.
using NamesPlan = std::vector<std::pair<std::int32_t, const std::string *>>;

/// Sums over a struct with all that is nested in it, as it is unpacked.
struct PlanSize
{
    std::uint64_t mFields = 0;     // planned; those of a struct in an array once
    std::uint64_t mPayloads = 0;   // unpacked
};

}   // namespace structcodec

class CStructPlan
{
public:
    /// The plan of a struct, as its metadata is now; null for the literal road. It stays the detail's, and holds until
    /// the metadata changes.
    static const CStructPlan * Of(CMetadataDetailStruct & detail)
    {
        if (detail.mPlanChanges != metadataChanges)
            Renew(detail);
        return detail.mPlan->mIsLiteral ? nullptr : detail.mPlan.get();
    }

    std::uint64_t Bits() const { return mBits; }
    const structcodec::LayoutPlan & Top() const { return mLayouts.front(); }
    const structcodec::LayoutPlan & Inner(const structcodec::FieldPlan & field) const
    {
        return mLayouts[field.mInner];
    }

    /// The name that an enumeration gives a number; null for none.
    const std::string * NameOf(const structcodec::FieldPlan & field, std::int32_t number) const;

private:
    static void Renew(CMetadataDetailStruct & detail);

    explicit CStructPlan(CMetadataDetailStruct & detail);

    // Each is false if the literal road has to be taken.
    bool PlanLayout(CMetadataDetailStruct & detail, std::uint32_t depth, structcodec::PlanSize & size,
        std::uint32_t & index);
    bool PlanField(const CStructField & field, std::uint32_t depth, structcodec::PlanSize & size,
        structcodec::FieldPlan & plan);
    bool PlanStruct(const CMetadata & record, std::uint32_t depth, structcodec::PlanSize & size,
        structcodec::FieldPlan & plan);
    bool PlanNames(const CMetadata & record, structcodec::FieldPlan & plan);
    void PlanArray(const CMetadata & record, structcodec::PlanSize & size, structcodec::FieldPlan & plan);

    bool mIsLiteral = true;
    std::uint64_t mBits = 0;
    std::vector<structcodec::LayoutPlan> mLayouts;   // the whole struct's comes first
    std::vector<structcodec::NamesPlan> mNames;
};

namespace structcodec {

/// Packs by a plan. False, with words half written, if a payload isn't what the plan says or not of exactly the
/// library's classes; nothing but the words has changed then.
bool Pack(const CStructPlan & plan, CComplexPayload & payload, CWords words);

/// Unpacks by a plan and adds the fields to `out`.
void Unpack(const CStructPlan & plan, CWords words, CComplexPayload & out);

}   // namespace structcodec

}   // namespace VrexZynConfigTools

#endif
