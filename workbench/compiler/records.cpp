#include "records.h"

#include "valuetext.h"

namespace workbench::compiler {

using namespace VrexZynConfigTools;

namespace {

MetadataTypeEnum MetadataTypeOf(Kind kind)
{
    if (kind == Kind::Enumeration)
        return METADATA_ENUM;
    return kind == Kind::Structure ? METADATA_STRUCT : METADATA_SIMPLE;
}

NumberRange LimitsOf(const Item & item)
{
    switch (item.KindOf()) {
    case Kind::Number:
        return item.mRange.mValue;
    case Kind::Text:
    case Kind::Octets:
        return item.mLength.mValue;
    default:
        return {};
    }
}

void AddPlainDetails(const Item & item, CMetadata & record)
{
    if (item.KindOf() != Kind::Enumeration)
        return record.SetDetails(*std::make_unique<CMetadataDetailSimple>(record).release());
    auto enums = std::make_unique<CMetadataDetailEnum>(record);
    for (const Enumerator & each : item.mValues.mValue)
        enums->AddEnum(each.mName, std::to_string(each.mNumber));
    record.SetDetails(*enums.release());
}

}   // namespace

std::unique_ptr<CMetadata> MakeRecord(const Item & item, int uid, std::uint32_t psId, std::size_t indexCount)
{
    const NumberRange limits = LimitsOf(item);
    const NumberRange count = item.IsArray() ? item.mArray.mValue : NumberRange{};
    const MetadataTypeEnum type = MetadataTypeOf(item.KindOf());
    return std::make_unique<CMetadata>(uid, psId, item.mName.mValue, item.mLabel, item.mCategory,
        item.mIsInternal, item.mFormat.mValue, limits.mMin.SignedBits(), limits.mMax.SignedBits(), item.mOid,
        type == METADATA_SIMPLE ? item.mType.mValue : "", item.mUnits, item.IsArray(), count.mMin.SignedBits(),
        count.mMax.SignedBits(), item.mTable, item.mDescription, item.mInternalDescription, item.mReference,
        item.mDefault ? TextOf(*item.mDefault) : "", item.mAccess.mValue, item.mTemporality, item.mHash,
        static_cast<std::uint32_t>(indexCount), type);
}

CStructRecords::CStructRecords(const Key & key)
    : mStruct(&AddStruct(*key.mLayout, key.mOctets.mValue, AddRecord(key, key.mId.mValue, key.mIndices.size())))
{
    mStruct->OrderFieldsForTargetArchitecture();
}

CMetadataDetailStruct & CStructRecords::StructOf(const CStructField & field)
{
    return dynamic_cast<CMetadataDetailStruct &>(*field.Metadata()->Details());
}

CMetadataDetailStruct & CStructRecords::AddStruct(const Layout & layout, bool isOctets, CMetadata & record)
{
    auto detail = std::make_unique<CMetadataDetailStruct>(record, layout.mLittleEndian.mValue, isOctets);
    record.SetDetails(*detail);
    CMetadataDetailStruct & added = *detail.release();   // the record owns it now
    for (const Field & field : layout.mFields)
        AddField(field, added);
    return added;
}

CMetadata & CStructRecords::AddRecord(const Item & item, std::int64_t psId, std::size_t indexCount)
{
    mRecords.push_back(MakeRecord(item, 0, static_cast<std::uint32_t>(psId), indexCount));
    return *mRecords.back();
}

void CStructRecords::AddField(const Field & field, CMetadataDetailStruct & detail)
{
    CMetadata & record = AddRecord(field, 0, 0);
    mFields.emplace(&record, &field);
    if (field.KindOf() == Kind::Structure)
        AddStruct(*field.mLayout, false, record);
    else
        AddPlainDetails(field, record);
    detail.AddField(field.mName.mValue, &record, static_cast<int>(field.mPosition.mValue),
        static_cast<int>(field.mWidth.mValue));
}

CLevelRecords::CLevelRecords(const std::vector<const Field *> & fields, bool isLittleEndian, std::int64_t shift)
    : mStruct(std::make_unique<CMetadataDetailStruct>(mKey, isLittleEndian, false).release())
{
    mKey.SetDetails(*mStruct);
    for (const Field * const field : fields) {
        mRecords.push_back(MakeRecord(*field, 0, 0, 0));
        if (field->KindOf() != Kind::Structure)
            AddPlainDetails(*field, *mRecords.back());
        mStruct->AddField(field->mName.mValue, mRecords.back().get(),
            static_cast<int>(field->mPosition.mValue + shift), static_cast<int>(field->mWidth.mValue));
    }
}

}   // namespace workbench::compiler
