/// The library's objects for a layout of the model: of its own classes, or of classes as a plug-in derives them, which
/// answer otherwise than their bases would.

#ifndef TESTS_STRUCTCODEC_BUILT_LAYOUT_H
#define TESTS_STRUCTCODEC_BUILT_LAYOUT_H

#include "codec_model.h"

#include <configtools/metadata.h>
#include <configtools/payloads.h>
#include <support/metadata_builder.h>

#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace VrexZynConfigTools::support {

enum Origin
{
    OF_THE_LIBRARY,
    OF_A_PLUG_IN
};

/// Knows nothing itself and hands on what another record says.
class HandingOnRecord : public CMetadata
{
public:
    explicit HandingOnRecord(std::unique_ptr<CMetadata> record)
        : mRecord(std::move(record))
    {}

    std::uint32_t PsId() const override { return mRecord->PsId(); }
    std::string Name() const override { return mRecord->Name(); }
    std::string Format() const override { return mRecord->Format(); }
    std::string InternalType() const override { return mRecord->InternalType(); }
    bool IsArray() const override { return mRecord->IsArray(); }
    MetadataTypeEnum MetadataType() const override { return mRecord->MetadataType(); }

private:
    std::unique_ptr<CMetadata> mRecord;
};

/// Has no fields in its base, and tells of others.
class TellingStruct : public CMetadataDetailStruct
{
public:
    TellingStruct(const IMetadata & record, bool isLittleEndian, bool isOctetsInBin)
        : CMetadataDetailStruct(record, isLittleEndian, isOctetsInBin)
        , mTold(record, isLittleEndian, isOctetsInBin)
    {}

    const std::vector<const CStructField *> * GetStructFields() override { return mTold.GetStructFields(); }
    CMetadataDetailStruct & Told() { return mTold; }

private:
    CMetadataDetailStruct mTold;
};

class DerivedEnum : public CMetadataDetailEnum
{
    using CMetadataDetailEnum::CMetadataDetailEnum;
};

/// Holds 0 in its base, and writes another number.
template <typename BaseT, typename NumberT>
class WritingNumber : public BaseT
{
public:
    explicit WritingNumber(NumberT number)
        : BaseT(0)
        , mNumber(number)
    {}

    std::uint64_t WriteToMem(void * destination, std::uint64_t maximum) override
    {
        if (maximum < sizeof mNumber)
            return 0;
        std::memcpy(destination, &mNumber, sizeof mNumber);
        return sizeof mNumber;
    }

private:
    NumberT mNumber;
};

class BuiltLayout
{
public:
    BuiltLayout(const ModelStruct & layout, Origin origin)
        : mOrigin(origin)
        , mDetail(Build(layout, ARecord(0)))
    {}

    CMetadataDetailStruct & Detail() { return *mDetail; }

    /// Any record of the layout, for those who want to damage it.
    std::vector<std::unique_ptr<CMetadata>> & Records() { return mRecords; }

private:
    CMetadata & Own(const ARecord & record)
    {
        mRecords.push_back(
            mOrigin == OF_THE_LIBRARY ? record.Build() : std::make_unique<HandingOnRecord>(record.Build()));
        return *mRecords.back();
    }

    CMetadataDetailStruct * Build(const ModelStruct & layout, const ARecord & record)
    {
        CMetadata & owner = Own(ARecord(record).Shaped(METADATA_STRUCT));
        if (mOrigin == OF_THE_LIBRARY) {
            auto * const detail = new CMetadataDetailStruct(owner, layout.mIsLittleEndian, layout.mIsOctets);
            owner.SetDetails(*detail);
            AddFields(layout, *detail);
            return detail;
        }
        auto * const detail = new TellingStruct(owner, layout.mIsLittleEndian, layout.mIsOctets);
        owner.SetDetails(*detail);
        AddFields(layout, detail->Told());
        return detail;
    }

    void AddFields(const ModelStruct & layout, CMetadataDetailStruct & detail)
    {
        for (const ModelField & field : layout.mFields)
            detail.AddField("ignored", &RecordOf(field), field.mPosition, field.mWidth);
    }

    const CMetadata & RecordOf(const ModelField & field)
    {
        ARecord record = ARecord(0).OfType(field.mType).Formatted(field.mFormat);
        if (field.mIsArray)
            record.Array();
        if (field.mKind == ModelField::STRUCT) {
            const std::size_t place = mRecords.size();
            Build(*field.mNested, record);
            return *mRecords[place];
        }
        if (field.mKind == ModelField::NUMBER)
            return Own(record);
        CMetadata & result = Own(record.Shaped(METADATA_ENUM));
        auto * const detail =
            mOrigin == OF_THE_LIBRARY ? new CMetadataDetailEnum(result) : new DerivedEnum(result);
        result.SetDetails(*detail);
        for (const auto & [name, number] : field.mEnumerators)
            detail->AddEnum(name, std::to_string(number));
        return result;
    }

    Origin mOrigin;
    std::vector<std::unique_ptr<CMetadata>> mRecords;
    CMetadataDetailStruct * mDetail;   // owned by the first record
};

template <typename PayloadT, typename NumberT>
IPayload * NewNumber(std::uint64_t number, Origin origin)
{
    const auto value = static_cast<NumberT>(number);
    if (origin == OF_THE_LIBRARY)
        return new PayloadT(value);
    return new WritingNumber<PayloadT, NumberT>(value);
}

/// The payload for a value of the model.
inline IPayload * NewPayload(const ModelValue & value, Origin origin)
{
    switch (value.mType) {
    case 0:
        return NewNumber<CInt8Payload, std::int8_t>(value.mNumber, origin);
    case 1:
        return NewNumber<CInt16Payload, std::int16_t>(value.mNumber, origin);
    case 2:
        return NewNumber<CInt32Payload, std::int32_t>(value.mNumber, origin);
    case 3:
        return NewNumber<CInt64Payload, std::int64_t>(value.mNumber, origin);
    case 4:
        return NewNumber<CUint8Payload, std::uint8_t>(value.mNumber, origin);
    case 5:
        return NewNumber<CUint16Payload, std::uint16_t>(value.mNumber, origin);
    case 6:
        return NewNumber<CUint32Payload, std::uint32_t>(value.mNumber, origin);
    case 7:
        return NewNumber<CUint64Payload, std::uint64_t>(value.mNumber, origin);
    case 10:
        return new CEnumPayload(value.mName, static_cast<std::int32_t>(value.mNumber));
    default:
        auto tree = std::make_unique<CComplexPayload>(PAYLOAD_COMPLEX);
        for (const ModelValue & part : value.mParts)
            tree->AddField(NewPayload(part, origin));
        return tree.release();
    }
}

}   // namespace VrexZynConfigTools::support

#endif
