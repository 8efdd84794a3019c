#include "plan.h"

#include "../metadata/changes.h"
#include <configtools/keywords.h>
#include <configtools/metadata.h>
#include <configtools/numbertypes.h>
#include <configtools/structcodec.h>

#include <algorithm>
#include <map>
#include <typeinfo>

namespace VrexZynConfigTools {

using namespace structcodec;

namespace {

/// More than any real struct has. A class of a plug-in may answer with a new struct each time.
constexpr std::size_t MAX_LAYOUTS = 1U << 14;

/// In a struct that isn't little-endian a wide plain field's position names its last word; the others lie below.
bool LiesBelowItsPosition(const CStructField & field, bool littleEndian)
{
    const IMetadata * const metadata = field.Metadata();
    return !littleEndian && field.ElemBitWidth() >= 17 && field.ElemBitWidth() <= 64 && metadata != nullptr &&
           metadata->MetadataType() == METADATA_SIMPLE && !metadata->IsArray();
}

/// The type of a number: the record's own if it has a width, else the smallest that the field fits into.
NumericTypeEnum TypeOfField(const IMetadata & record, std::uint32_t size)
{
    std::string type = record.InternalType();
    if (CStructCodec::BitsForInternalType(type) == 0) {
        const std::string format = record.Format();
        const bool isUnsigned =
            format == keywords::FORMAT_UNSIGNED_DECIMAL || format == keywords::FORMAT_HEXADECIMAL;
        type = CStructCodec::GetIntTypeFromBitWidth(std::to_string(size), isUnsigned);
    }
    const NumberType * const number = FindNumberType(type);
    return number != nullptr ? number->mType
                             : NUMERIC_INT64;   // without bits: a zero, which payloads stay in step by
}

/// Unsigned whatever the items' own type says, intended.
NumericTypeEnum TypeOfItem(std::uint32_t bits)
{
    return bits < 16 ? NUMERIC_UINT8 : bits == 16 ? NUMERIC_UINT16 : NUMERIC_UINT32;
}

}   // namespace

/// Goes through the structs breadth first, each once: they may hold each other, and a struct that is reached on a short
/// way must not lack what only a longer way is too deep for.
class CStructPlan::Maker
{
public:
    explicit Maker(CMetadataDetailStruct & top) { IndexOf(&top, 1); }

    std::shared_ptr<const CStructPlan> Make()
    {
        for (std::size_t index = 0; index < mFound.size(); ++index) {
            LayoutPlan layout = PlanLayout(*mFound[index].mDetail, mFound[index].mDepth);
            mPlan->mLayouts.push_back(std::move(layout));
        }
        return mPlan;
    }

private:
    struct Found
    {
        CMetadataDetailStruct * mDetail;
        std::uint32_t mDepth;   // on the shortest way
    };

    std::uint32_t IndexOf(CMetadataDetailStruct * detail, std::uint32_t depth)
    {
        constexpr auto NONE = ~std::uint32_t{ 0 };
        if (detail == nullptr || mFound.size() == MAX_LAYOUTS)
            return NONE;
        const auto next = static_cast<std::uint32_t>(mFound.size());
        const auto [known, isNew] = mIndices.try_emplace(detail, next);
        if (isNew)
            mFound.push_back({ detail, depth });
        return known->second;
    }

    LayoutPlan PlanLayout(CMetadataDetailStruct & detail, std::uint32_t depth)
    {
        LayoutPlan layout;
        layout.mIsLittleEndian = detail.IsLittleEndian();
        layout.mBits = StructSizeInBits(detail);
        mPlan->mIsOfLibrary = mPlan->mIsOfLibrary && typeid(detail) == typeid(CMetadataDetailStruct);
        // A class of a plug-in may have no list of fields, and holes in it. What is too deep is never followed.
        const std::vector<const CStructField *> * const fields = detail.GetStructFields();
        if (fields == nullptr || depth > MAX_NESTING)
            return layout;
        layout.mFields.resize(fields->size());
        for (std::size_t index = 0; index < layout.mFields.size(); ++index) {
            const CStructField * const field = (*fields)[index];
            const IMetadata * const record = field != nullptr ? field->Metadata() : nullptr;
            if (record != nullptr)
                PlanField(*field, *record, depth, layout.mFields[index]);
        }
        return layout;
    }

    void PlanField(const CStructField & field, const IMetadata & record, std::uint32_t depth, FieldPlan & plan)
    {
        mPlan->mIsOfLibrary = mPlan->mIsOfLibrary && typeid(record) == typeid(CMetadata);
        plan.mRecord = &record;
        plan.mPosition = static_cast<std::uint32_t>(field.ElemLsbBitPos());
        plan.mWidth = static_cast<std::uint32_t>(std::max(field.ElemBitWidth(), 0));
        const MetadataTypeEnum type = record.MetadataType();
        if (type == METADATA_STRUCT) {
            plan.mKind = record.IsArray() ? StructEntryKind::STRUCTS : StructEntryKind::STRUCT;
            plan.mInner = IndexOf(dynamic_cast<CMetadataDetailStruct *>(record.Details()), depth + 1);
        } else if (record.IsArray()) {
            plan.mKind = StructEntryKind::ARRAY;
            plan.mStride = CStructCodec::BitsForInternalType(record.InternalType());
            plan.mType = TypeOfItem(plan.mStride);
            if (plan.mStride != 0 && plan.mWidth != 0)
                plan.mItems = (plan.mWidth - 1 + plan.mStride) / plan.mStride;
        } else if (plan.mWidth > 64) {
            plan.mKind = StructEntryKind::WORDS;
            plan.mStride = CStructCodec::BITS_IN_UINT16;
            plan.mType = NUMERIC_UINT16;
            plan.mItems =
                plan.mWidth / plan.mStride;   // the bits of a last, partial word are dropped, intended
        } else {
            PlanNumber(record, type, plan);
        }
    }

    static void PlanNumber(const IMetadata & record, MetadataTypeEnum type, FieldPlan & plan)
    {
        plan.mIsSigned =
            plan.mWidth > 1 && plan.mWidth < 64 && record.Format() == keywords::FORMAT_SIGNED_DECIMAL;
        plan.mKind = type == METADATA_ENUM ? StructEntryKind::ENUMERATOR : StructEntryKind::NUMBER;
        if (type == METADATA_ENUM)
            plan.mEnumerators = dynamic_cast<const CMetadataDetailEnum *>(record.Details());
        else
            plan.mType = TypeOfField(record, plan.mWidth);
    }

    std::shared_ptr<CStructPlan> mPlan = std::make_shared<CStructPlan>();
    std::vector<Found> mFound;
    std::map<const CMetadataDetailStruct *, std::uint32_t> mIndices;
};

const CStructPlan * CStructPlan::Stored(const CMetadataDetailStruct & detail)
{
    return detail.mPlanChanges == metadataChanges ? detail.mPlan.get() : nullptr;
}

std::shared_ptr<const CStructPlan> CStructPlan::Of(CMetadataDetailStruct & detail)
{
    if (Stored(detail) != nullptr)
        return detail.mPlan;
    const std::uint64_t changes = metadataChanges;
    std::shared_ptr<const CStructPlan> plan = Maker(detail).Make();
    if (plan->mIsOfLibrary) {
        detail.mPlan = plan;
        detail.mPlanChanges = changes;
    }
    return plan;
}

std::uint64_t StructSizeInBits(CMetadataDetailStruct & detail)
{
    if (const CStructPlan * const plan = CStructPlan::Stored(detail))
        return plan->Top().mBits;
    std::uint64_t size = 0;
    const std::vector<const CStructField *> * const fields = detail.GetStructFields();
    if (fields == nullptr)
        return size;
    for (const CStructField * const field : *fields) {
        if (field == nullptr)
            continue;   // a hole in the list of a plug-in's class
        const std::int64_t width = LiesBelowItsPosition(*field, detail.IsLittleEndian())
                                       ? int{ CStructCodec::BITS_IN_UINT16 }
                                       : field->ElemBitWidth();
        // Compared as unsigned numbers, intended: a field that ends below 0 makes a struct that is far too large.
        size = std::max(size, static_cast<std::uint64_t>(field->ElemLsbBitPos() + width));
    }
    return size;
}

}   // namespace VrexZynConfigTools
