#include "plan.h"

#include "walk.h"
#include <configtools/elements.h>
#include <configtools/keywords.h>
#include <messages/messages.h>

#include <algorithm>
#include <memory>
#include <typeinfo>

namespace VrexZynConfigTools {

using namespace structcodec;

namespace {

/// More than any real struct has. Bad metadata may reach one struct on millions of ways.
constexpr std::uint64_t MAX_PLANNED_FIELDS = 1U << 14;

/// Sums stay here once they have come so far, so that they don't wrap.
constexpr std::uint64_t TOO_MANY_PAYLOADS = std::uint64_t{ 1 } << 31;
static_assert(TOO_MANY_PAYLOADS > MaxPayloads(MAX_STRUCT_BITS));

template <typename ExactT, typename BaseT>
ExactT * Exactly(BaseT * object)
{
    return object != nullptr && typeid(*object) == typeid(ExactT) ? static_cast<ExactT *>(object) : nullptr;
}

/// The type of the payload that a field becomes; of 64 bits if its type has no width.
NumericTypeEnum PayloadType(const CMetadata & record, std::uint32_t size)
{
    return CElementNumericArray(TypeOfField(record, size), 0, std::string(), false).Type();
}

bool IsSigned(const CMetadata & record, std::uint32_t size)
{
    return size > 1 && size < 64 && record.Format() == keywords::FORMAT_SIGNED_DECIMAL;
}

/// Of four words those that a number of `size` bits reaches into, at least the first.
std::uint64_t MaskOfWords(std::uint32_t size)
{
    constexpr std::uint32_t BITS = CStructCodec::BITS_IN_UINT16;
    const std::uint32_t words = std::max((size + BITS - 1) / BITS, 1U);
    return ~std::uint64_t{ 0 } >> (64 - words * BITS);
}

}   // namespace

void CStructPlan::Renew(CMetadataDetailStruct & detail)
{
    const std::uint64_t changes = metadataChanges;
    detail.mPlan.reset(new CStructPlan(detail));
    detail.mPlanChanges = changes;
}

CStructPlan::CStructPlan(CMetadataDetailStruct & detail)
{
    PlanSize size;
    std::uint32_t top = 0;
    const bool isPlanned = PlanLayout(detail, 1, size, top);
    if (isPlanned)
        mBits = SizeInBits(detail);
    mIsLiteral = !isPlanned || mBits > MAX_STRUCT_BITS || size.mPayloads > MaxPayloads(mBits);
    if (mIsLiteral) {
        mLayouts.clear();
        mNames.clear();
    }
}

bool CStructPlan::PlanLayout(
    CMetadataDetailStruct & detail, std::uint32_t depth, PlanSize & size, std::uint32_t & index)
{
    if (Exactly<CMetadataDetailStruct>(&detail) == nullptr || depth > MAX_NESTING)
        return false;
    size.mFields += detail.mFields.size();
    if (size.mFields > MAX_PLANNED_FIELDS)
        return false;

    index = static_cast<std::uint32_t>(mLayouts.size());
    mLayouts.emplace_back();   // its place; the layouts of its fields come behind it
    LayoutPlan layout{ detail.mIsLittleEndian, std::vector<FieldPlan>(detail.mFields.size()) };
    for (std::size_t field = 0; field < detail.mFields.size(); ++field)
        if (!PlanField(*detail.mFields[field], depth, size, layout.mFields[field]))
            return false;
    mLayouts[index] = std::move(layout);
    return true;
}

bool CStructPlan::PlanField(const CStructField & field, std::uint32_t depth, PlanSize & size, FieldPlan & plan)
{
    const auto * const record = Exactly<const CMetadata>(field.Metadata());
    if (record == nullptr)
        return false;
    plan.mRecord = record;
    plan.mPosition = static_cast<std::uint32_t>(field.ElemLsbBitPos());
    plan.mWidth = static_cast<std::uint32_t>(std::max(field.ElemBitWidth(), 0));
    ++size.mPayloads;
    if (record->MetadataType() == METADATA_STRUCT)
        return PlanStruct(*record, depth, size, plan);
    if (record->IsArray()) {
        PlanArray(*record, size, plan);
        return true;
    }
    if (plan.mWidth > 64) {
        plan.mKind = FieldKind::WIDE;
        plan.mItems = plan.mWidth / CStructCodec::BITS_IN_UINT16;
        size.mPayloads += plan.mItems;
        return true;
    }
    plan.mWordsMask = MaskOfWords(plan.mWidth);
    plan.mMask = CWords::Mask(plan.mWidth);
    plan.mIsSigned = IsSigned(*record, plan.mWidth);
    if (record->MetadataType() == METADATA_ENUM)
        return PlanNames(*record, plan);
    plan.mType = PayloadType(*record, plan.mWidth);
    return true;
}

bool CStructPlan::PlanStruct(const CMetadata & record, std::uint32_t depth, PlanSize & size, FieldPlan & plan)
{
    auto * const detail = Exactly<CMetadataDetailStruct>(record.Details());
    PlanSize inner;
    inner.mFields = size.mFields;
    if (detail == nullptr || !PlanLayout(*detail, depth + 1, inner, plan.mInner))
        return false;
    size.mFields = inner.mFields;
    plan.mKind = FieldKind::STRUCT;
    if (record.IsArray()) {
        const std::uint64_t stride = SizeInBits(*detail);
        if (stride == 0)
            return false;   // an error when unpacked
        plan.mKind = FieldKind::STRUCTS;
        plan.mStride = static_cast<std::uint32_t>(stride);
        plan.mItems = static_cast<std::uint32_t>(plan.mWidth / stride);
        // Each struct itself counts too. Bad metadata makes more than a product has room for.
        inner.mPayloads = std::min(inner.mPayloads + 1, TOO_MANY_PAYLOADS) * plan.mItems;
    }
    size.mPayloads = std::min(size.mPayloads + inner.mPayloads, TOO_MANY_PAYLOADS);
    return true;
}

bool CStructPlan::PlanNames(const CMetadata & record, FieldPlan & plan)
{
    auto * const detail = Exactly<CMetadataDetailEnum>(record.Details());
    if (detail == nullptr)
        return false;
    plan.mKind = FieldKind::ENUM;
    plan.mInner = static_cast<std::uint32_t>(mNames.size());
    NamesPlan names;
    names.reserve(detail->GetEnums()->size());
    for (const auto & [name, number] : *detail->GetEnums())
        names.emplace_back(number, &name);
    std::stable_sort(names.begin(), names.end(),
        [](const auto & left, const auto & right) { return left.first < right.first; });
    mNames.push_back(std::move(names));
    return true;
}

void CStructPlan::PlanArray(const CMetadata & record, PlanSize & size, FieldPlan & plan)
{
    plan.mKind = FieldKind::ARRAY;
    plan.mStride = CStructCodec::BitsForInternalType(record.InternalType());
    if (plan.mStride != 0 && plan.mWidth != 0)
        plan.mItems = (plan.mWidth - 1 + plan.mStride) / plan.mStride;
    size.mPayloads += plan.mItems;
}

const CStructPlan * structcodec::PlanFor(CMetadataDetailStruct & detail)
{
    return CTheMsgHnd::DebugActivated() ? nullptr : CStructPlan::Of(detail);
}

const std::string * CStructPlan::NameOf(const FieldPlan & field, std::int32_t number) const
{
    const NamesPlan & names = mNames[field.mInner];
    // Of several names with one number the last in name order, intended.
    const auto behind = std::upper_bound(names.begin(), names.end(), number,
        [](std::int32_t wanted, const auto & name) { return wanted < name.first; });
    return behind != names.begin() && (behind - 1)->first == number ? (behind - 1)->second : nullptr;
}

}   // namespace VrexZynConfigTools
