#include "content.h"

#include "chunk.h"
#include "keybuilder.h"
#include "keypacker.h"

#include <configtools/context.h>
#include <configtools/metadata.h>
#include <configtools/metadataprovider.h>
#include <kit/reading/devices.h>
#include <kit/reporting/channel.h>

namespace imageconfig {

using namespace VrexZynConfigTools;
using kit::reading::Subsystem;
using kit::reporting::CFindings;
using kit::reporting::MakeFinding;
using kit::reporting::TakeError;

namespace {

/// Whether packing a struct again gives another value. Bits that no field describes are in no payload, and some fields
/// don't come back as they were, such as those of exactly 64 bits.
bool LosesBits(CElement & element, const RawKey & key, const IMetadata & record)
{
    if (record.MetadataType() != METADATA_STRUCT || dynamic_cast<CElementRaw *>(&element) != nullptr)
        return false;
    CKeyPacker packer(key.mId, false);
    for (IPayload * const payload : element.GetPayloadCopy(false))
        packer.Add(*payload);
    const auto packed = packer.Finish();
    return !packed || packed->mForm != key.mForm || packed->mData != key.mData;
}

class CContentBuilder
{
public:
    CContentBuilder(IConfigContext & context, IMetadataProvider * provider, CFindings & findings);

    void AddStore(const Store & store);
    Content Take() { return std::move(mContent); }

private:
    void AddChunk(const Store & store, const Chunk & chunk);
    void AddKey(const RawKey & key, const std::string & place);
    Subsystem & SubsystemOf(const Store & store, const Chunk & chunk);
    const IMetadata * RecordOf(const RawKey & key, const std::string & place);

    IConfigContext & mContext;
    IMetadataProvider * mProvider;
    CFindings & mFindings;
    kit::reading::ContextOwner mFactoryContext;
    kit::reading::ContextOwner mSubsystemContext;   // of the subsystem that is being filled
    CKeyBuilder mBuilder;
    const Store * mStore = nullptr;   // the same
    Content mContent;
};

CContentBuilder::CContentBuilder(IConfigContext & context, IMetadataProvider * provider, CFindings & findings)
    : mContext(context)
    , mProvider(provider)
    , mFindings(findings)
    , mFactoryContext(context.Clone())
    , mBuilder(*mFactoryContext)
{}

void CContentBuilder::AddStore(const Store & store)
{
    const std::string name = StoreName(store.mDevice, store.mNumber);
    mFindings.Scope().mStore = kit::reading::StoreName({ std::nullopt, store.mDevice, store.mNumber });
    for (const ChunkItem & item : store.mChunks->Chunks()) {
        std::string error;
        if (const auto chunk = ParseChunk(BytesOf(item), error))
            AddChunk(store, *chunk);
        else
            mFindings.Add(
                MakeFinding("damaged-chunk", name + ", chunk " + std::to_string(item.mId) + ": " + error));
    }
}

void CContentBuilder::AddChunk(const Store & store, const Chunk & chunk)
{
    SubsystemOf(store, chunk);
    if (chunk.mKey)
        AddKey(*chunk.mKey, StoreName(store.mDevice, store.mNumber) + ", ");
}

Subsystem & CContentBuilder::SubsystemOf(const Store & store, const Chunk & chunk)
{
    auto & subsystems = mContent.mSubsystems;
    if (mStore != &store || subsystems.back().mPlace.mType != chunk.mSubsystemType) {
        subsystems.push_back({ { chunk.mSubsystemType, store.mDevice, store.mNumber }, {} });
        mSubsystemContext = kit::reading::SubsystemContext(mContext, subsystems.back().mPlace);
        mStore = &store;
    }
    return subsystems.back();
}

void CContentBuilder::AddKey(const RawKey & key, const std::string & place)
{
    const kit::reading::SubsystemPlace & subsystem = mContent.mSubsystems.back().mPlace;
    mFindings.Scope().mStore = kit::reading::StoreName(subsystem);
    mFindings.Scope().mSubsystem = kit::reading::SubsystemName(subsystem.mType);
    mFindings.Scope().mKey = std::to_string(key.mId) + kit::reading::IndicesText(key.mIndices);
    const IMetadata * const record = RecordOf(key, place);
    std::string error;
    std::unique_ptr<CElement> element = mBuilder.Build(key, record, error);
    const std::string name = KeyName(key.mId, key.mIndices, record != nullptr ? record->Name() : "");
    if (element == nullptr)
        return mFindings.Add(MakeFinding("unfit-value", place + name + ": " + error));
    if (record != nullptr && LosesBits(*element, key, *record))
        mContent.mChangedKeys.push_back(place + name);
    mContent.mSubsystems.back().mKeys.push_back({ std::move(element), key.mIndices });
}

const IMetadata * CContentBuilder::RecordOf(const RawKey & key, const std::string & place)
{
    if (mProvider == nullptr)
        return nullptr;
    TakeError();
    const IMetadata & record = mProvider->MetadataById(key.mId, *mSubsystemContext);
    if (const auto problem = TakeError())
        mFindings.Add(
            MakeFinding("unreadable-metadata", place + KeyName(key.mId, key.mIndices, "") + ": " + *problem));
    if (record.IsValid())
        return &record;
    mContent.mUnknownKeys.push_back(place + KeyName(key.mId, key.mIndices, ""));
    return nullptr;
}

}   // namespace

Content BuildContent(
    const Image & image, IConfigContext & context, IMetadataProvider * provider, CFindings & findings)
{
    const kit::reporting::CErrorsSetAside aside;
    CContentBuilder builder(context, provider, findings);
    for (const Store & store : image.mStores)
        builder.AddStore(store);
    findings.Scope() = kit::reporting::WithPlace({}, findings.Scope().mFile);
    return builder.Take();
}

}   // namespace imageconfig
