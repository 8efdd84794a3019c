/// Records with details, and an observer that writes down how they are walked.

#ifndef TESTS_METADATA_RECORDS_H
#define TESTS_METADATA_RECORDS_H

#include <configtools/metadata.h>
#include <support/metadata_builder.h>

#include <memory>
#include <string>
#include <vector>

namespace VrexZynConfigTools::support {

/// A record with the detail that its shape asks for.
inline std::unique_ptr<CMetadata> WithDetail(const ARecord & builder)
{
    auto record = builder.Build();
    if (record->MetadataType() == METADATA_STRUCT)
        record->SetDetails(*new CMetadataDetailStruct(*record, true, false));
    else if (record->MetadataType() == METADATA_ENUM)
        record->SetDetails(*new CMetadataDetailEnum(*record));
    else
        record->SetDetails(*new CMetadataDetailSimple(*record));
    return record;
}

/// A record of a field or key with a struct detail, and the detail.
struct StructRecord
{
    explicit StructRecord(const ARecord & record, bool isLittleEndian = true)
        : mRecord(ARecord(record).Shaped(METADATA_STRUCT).Build())
        , mDetail(new CMetadataDetailStruct(*mRecord, isLittleEndian, false))
    {
        mRecord->SetDetails(*mDetail);
    }

    void Add(const IMetadata & field, int position = 0, int width = 8)
    {
        mDetail->AddField("ignored", &field, position, width);
    }

    std::vector<int> Positions() const
    {
        std::vector<int> positions;
        for (const CStructField * const field : *mDetail->GetStructFields())
            positions.push_back(field->ElemLsbBitPos());
        return positions;
    }

    std::unique_ptr<CMetadata> mRecord;
    CMetadataDetailStruct * mDetail;   // owned by the record
};

/// Writes down every call, with the name of what it was given.
class WalkRecorder : public IMetadataInspectorObserver
{
public:
    /// Answers `InspectDetailAgain` with true as often as told.
    explicit WalkRecorder(int again = 0)
        : mAgain(again)
    {}

    void StartElement(const IMetadata & metadata) override
    {
        mCalls.push_back("StartElement " + metadata.Name());
    }
    void EndElement() override { mCalls.push_back("EndElement"); }
    void StartStruct(const IMetadata & metadata) override
    {
        mCalls.push_back("StartStruct " + metadata.Name());
    }
    void EndStruct() override { mCalls.push_back("EndStruct"); }
    void StartArrayItem() override { mCalls.push_back("StartArrayItem"); }
    void EndArrayItem() override { mCalls.push_back("EndArrayItem"); }
    void IntIndex(const CTableIndex & index) override { mCalls.push_back("IntIndex " + index.Name()); }
    void EnumIndex(const CTableIndex & index) override { mCalls.push_back("EnumIndex " + index.Name()); }
    void Int(const IMetadata & metadata) override { mCalls.push_back("Int " + metadata.Name()); }
    void String(const IMetadata & metadata) override { mCalls.push_back("String " + metadata.Name()); }
    void Enum(const IMetadata & metadata) override { mCalls.push_back("Enum " + metadata.Name()); }
    bool InspectDetailAgain() override
    {
        ++mAsked;
        return mAgain-- > 0;
    }
    void SetContextInfo(const std::string & key, int value) override
    {
        mCalls.push_back(key + "=" + std::to_string(value));
    }
    void SetContextInfo(const std::string & key, const std::string & value) override
    {
        mCalls.push_back(key + "=\"" + value + "\"");
    }

    const std::vector<std::string> & Calls() const { return mCalls; }
    int TimesAsked() const { return mAsked; }

private:
    std::vector<std::string> mCalls;
    int mAgain;
    int mAsked = 0;
};

using Calls = std::vector<std::string>;

}   // namespace VrexZynConfigTools::support

#endif
