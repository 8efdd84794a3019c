#include "storeaccess.h"

#include "chunk.h"
#include "imagefile.h"

#include <configtools/context.h>
#include <configtools/keywords.h>
#include <kit/reading/devices.h>
#include <kit/reading/filereader.h>
#include <kit/reporting/channel.h>
#include <kit/reporting/guard.h>

#include <algorithm>

namespace imageconfig {

using namespace kit::reporting;

namespace {

// An absent tag doesn't disagree.
bool Agrees(IConfigContext & context, const char * tag, int number)
{
    return context.GetTag(tag).empty() || context.TagMatches(tag, number);
}

}   // namespace

CStoreAccess::CStoreAccess(const std::string & path, int device, int number)
    : mPath(path)
    , mDevice(device)
    , mNumber(number)
{}

void CStoreAccess::Report(const std::string & text) const
{
    Finding finding = WithPlace(MakeFinding("store-access", text), mPath);
    finding.mStore = kit::reading::StoreName({ std::nullopt, mDevice, mNumber });
    ReportError(finding);
}

Store * CStoreAccess::Find(Image & image, IConfigContext & context, std::string & error) const
{
    const std::string name = StoreName(mDevice, mNumber);
    if (!Agrees(context, keywords::TAG_DEVICE, mDevice) || !Agrees(context, keywords::TAG_STORE, mNumber)) {
        error = name + ": the context names another store";
        return nullptr;
    }
    const auto found = std::find_if(image.mStores.begin(), image.mStores.end(),
        [this](const Store & store) { return store.mDevice == mDevice && store.mNumber == mNumber; });
    if (found == image.mStores.end()) {
        error = name + " is no longer there";
        return nullptr;
    }
    return &*found;
}

bool CStoreAccess::ReadChunks(CChunkCollection & chunks, IConfigContext & context)
{
    bool result = false;
    Guarded(mPath, [&] {
        std::string error;
        auto image = LoadImage(mPath, error);
        const Store * const store = image ? Find(*image, context, error) : nullptr;
        if (store == nullptr)
            return Report(error);
        for (const ChunkItem & chunk : store->mChunks->Chunks())
            chunks.Add(chunk.mId, chunk.mData, chunk.mLength);
        result = true;
    });
    return result;
}

bool CStoreAccess::WriteChunks(const CChunkCollection & chunks, IConfigContext & context)
{
    bool result = false;
    Guarded(mPath, [&] {
        std::string error;
        auto image = LoadImage(mPath, error);
        Store * const store = image ? Find(*image, context, error) : nullptr;
        result = store != nullptr && Replace(*store, chunks, error) && SaveImage(mPath, *image, error);
        if (!result)
            Report(error);
    });
    return result;
}

bool CStoreAccess::Replace(Store & store, const CChunkCollection & chunks, std::string & error) const
{
    const std::string name = StoreName(mDevice, mNumber);
    store.mChunks = std::make_unique<CChunkCollection>();
    for (const ChunkItem & chunk : chunks.Chunks()) {
        const std::size_t number = store.mChunks->Chunks().size() + 1;
        const std::string place = name + ": chunk " + std::to_string(number);
        std::string objection;
        if (chunk.mId != number)
            objection = "it has the number " + std::to_string(chunk.mId);
        else if (ParseChunk(BytesOf(chunk), objection) && AppendChunk(store, std::string(BytesOf(chunk))))
            continue;
        error = place + ": " + (objection.empty() ? std::string("the store has no number left") : objection);
        return false;
    }
    if (SettleFreeSize(store))
        return true;
    error = name + ": the chunks take " + std::to_string(BytesUsed(*store.mChunks)) + " bytes; its size is " +
            std::to_string(store.mSize);
    return false;
}

CStoreShelf::CStoreShelf(const std::string & path)
    : mPath(path)
{}

CStoreShelf::~CStoreShelf()
{
    ClearStoreList(mStores);
}

void CStoreShelf::Keep(const Image & image)
{
    ListStores(image, mStores);
}

IChunkInOut * CStoreShelf::Access(int device, int number)
{
    const bool isThere = std::any_of(mStores.begin(), mStores.end(),
        [&](const CStoreInfo * store) { return store->DeviceId() == device && store->StoreId() == number; });
    if (!isThere)
        return nullptr;
    std::unique_ptr<CStoreAccess> & access = mAccess[{ device, number }];
    if (access == nullptr)
        access = std::make_unique<CStoreAccess>(mPath, device, number);
    return access.get();
}

CImageStoreManager::CImageStoreManager(const std::string & path)
    : mPath(path)
    , mShelf(path)
{}

bool CImageStoreManager::Open(IConfigContext & context)
{
    bool result = false;
    Guarded(mPath, [&] {
        std::string error;
        const auto image = LoadImage(mPath, error);
        if (!image)
            return ReportError("unreadable-image", mPath, error);
        const std::string objection = kit::reading::WhyNotForChip("image", image->mChip, context);
        if (!objection.empty())
            return ReportError("wrong-chip", mPath, objection);
        mShelf.Keep(*image);
        result = true;
    });
    return result;
}

IChunkInOut * CImageStoreManager::ChunkAccess(DEVICE device, std::uint16_t storeId, IConfigContext &)
{
    return mShelf.Access(device, storeId);
}

const std::list<CStoreInfo *> & CImageStoreManager::Stores(IConfigContext &)
{
    return mShelf.Stores();
}

}   // namespace imageconfig
