#include <configtools/stores.h>

#include <configtools/keywords.h>
#include <messages/trace.h>
#include <misc/keepforever.h>

#include <algorithm>
#include <cstring>
#include <memory>

namespace VrexZynConfigTools {

namespace {

constexpr GroupEnum MESSAGE_GROUP = GROUP_CORE_CLASSES;

struct DeviceName
{
    IStoreManager::DEVICE mDevice;
    const char * mName;
};

constexpr DeviceName DEVICE_NAMES[] = {
    { IStoreManager::DEVICE_NONE, keywords::DEVICE_NONE },
    { IStoreManager::DEVICE_ROM, keywords::DEVICE_ROM },
    { IStoreManager::DEVICE_OTP, keywords::DEVICE_OTP },
    { IStoreManager::DEVICE_SMEM, keywords::DEVICE_SMEM },
    { IStoreManager::DEVICE_MTP, keywords::DEVICE_MTP },
    { IStoreManager::DEVICE_USER_PS_AUDIO, keywords::DEVICE_USER_PS_AUDIO },
    { IStoreManager::DEVICE_USER_PS_APPS, keywords::DEVICE_USER_PS_APPS },
    { IStoreManager::DEVICE_CUR_CFG, keywords::DEVICE_CUR_CFG },
    { IStoreManager::DEVICE_FW_CFG, keywords::DEVICE_FW_CFG },
    { IStoreManager::DEVICE_EEPROM, keywords::DEVICE_EEPROM },
};

constexpr ChunkItem NO_CHUNK = { 0, 0, nullptr };

using Bytes = std::unique_ptr<std::uint8_t[]>;

/// Null data gives zeros.
Bytes CopyOf(const void * data, std::uint16_t length)
{
    auto bytes = std::make_unique<std::uint8_t[]>(length);
    if (data != nullptr && length != 0)
        std::memcpy(bytes.get(), data, length);
    return bytes;
}

void FreeBytes(const ChunkItem & chunk)
{
    delete[] static_cast<std::uint8_t *>(chunk.mData);
}

}   // namespace

const char * IStoreManager::GetDeviceName(DEVICE device)
{
    ZYN_SENTRY("VrexZynConfigTools::IStoreManager::GetDeviceName");

    const auto * const found = std::find_if(std::begin(DEVICE_NAMES), std::end(DEVICE_NAMES),
        [device](const DeviceName & entry) { return entry.mDevice == device; });
    return found != std::end(DEVICE_NAMES) ? found->mName : "UNKNOWN";
}

const std::int32_t CStoreInfo::INVALID_STORE_SIZE;

// No value is promised to the caller; these keep a reader of a forgotten field from reading what was never written.
CStoreInfo::CStoreInfo()
    : CStoreInfo(IStoreManager::DEVICE_NONE, 0, 0xFFFFFFFF, INVALID_STORE_SIZE, 0, 0, false)
{}

CStoreInfo::CStoreInfo(IStoreManager::DEVICE device, std::uint16_t storeId, std::uint32_t storeSize,
    std::int32_t storeSizeFree, std::uint16_t linkedStoreId, std::uint16_t order, bool paired)
    : mDevice(device)
    , mStoreId(storeId)
    , mStoreSize(storeSize)
    , mStoreSizeFree(storeSizeFree)
    , mLinkedStoreId(linkedStoreId)
    , mOrder(order)
    , mPaired(paired)
{
    ZYN_CONSTRUCTOR(GROUP_CORE_CLASSES, "VrexZynConfigTools::CStoreInfo::CStoreInfo");
}

IStoreManager::DEVICE CStoreInfo::DeviceId() const
{
    return mDevice;
}

void CStoreInfo::SetDeviceId(IStoreManager::DEVICE device)
{
    mDevice = device;
}

std::uint16_t CStoreInfo::StoreId() const
{
    return mStoreId;
}

void CStoreInfo::SetStoreId(std::uint16_t storeId)
{
    mStoreId = storeId;
}

std::uint32_t CStoreInfo::StoreSize() const
{
    return mStoreSize;
}

void CStoreInfo::SetStoreSize(std::uint32_t size)
{
    mStoreSize = size;
}

std::int32_t CStoreInfo::StoreSizeFree() const
{
    return mStoreSizeFree;
}

void CStoreInfo::SetStoreSizeFree(std::int32_t size)
{
    mStoreSizeFree = size;
}

std::uint16_t CStoreInfo::LinkedStoreId() const
{
    return mLinkedStoreId;
}

void CStoreInfo::SetLinkedStoreId(std::uint16_t storeId)
{
    mLinkedStoreId = storeId;
}

std::uint16_t CStoreInfo::Order() const
{
    return mOrder;
}

void CStoreInfo::SetOrder(std::uint16_t order)
{
    mOrder = order;
}

bool CStoreInfo::Paired() const
{
    return mPaired;
}

void CStoreInfo::SetPaired(bool paired)
{
    mPaired = paired;
}

void ClearStoreList(std::list<CStoreInfo *> & stores)
{
    ZYN_SENTRY("VrexZynConfigTools::ClearStoreList");

    for (const CStoreInfo * const store : stores)
        delete store;
    stores.clear();
}

CChunkCollection::CChunkCollection()
    : mTotalSize(0)
{
    ZYN_CONSTRUCTOR(GROUP_CORE_CLASSES, "VrexZynConfigTools::CChunkCollection::CChunkCollection");
}

CChunkCollection::CChunkCollection(const CChunkCollection & other)
    : mChunks(other.mChunks)
    , mIndex(other.mIndex)
    , mTotalSize(other.mTotalSize)
{
    ZYN_CONSTRUCTOR(GROUP_CORE_CLASSES, "VrexZynConfigTools::CChunkCollection::CChunkCollection");
}

CChunkCollection & CChunkCollection::operator=(const CChunkCollection & other)
{
    ZYN_SENTRY("VrexZynConfigTools::CChunkCollection::operator=");

    std::vector<ChunkItem> chunks(other.mChunks);
    std::map<std::uint16_t, std::uint16_t> index(other.mIndex);
    // The buffers held so far are forgotten without being freed, intended: another copy may share them.
    for (const ChunkItem & chunk : mChunks)
        KeepForEver(chunk.mData);
    mChunks.swap(chunks);
    mIndex.swap(index);
    mTotalSize = other.mTotalSize;
    return *this;
}

CChunkCollection::~CChunkCollection()
{
    ZYN_SENTRY("VrexZynConfigTools::CChunkCollection::~CChunkCollection");

    Clear();
}

void CChunkCollection::Insert(std::uint16_t id, void * data, std::uint16_t length)
{
    ZYN_SENTRY("VrexZynConfigTools::CChunkCollection::Insert");

    Bytes bytes = CopyOf(data, length);
    mChunks.push_back({ id, length, bytes.get() });
    try {
        // Positions have 16 bits, intended: beyond 65536 chunks they wrap, and an earlier chunk answers for the id.
        mIndex[id] = static_cast<std::uint16_t>(mChunks.size() - 1);
    } catch (...) {
        mChunks.pop_back();
        throw;
    }
    static_cast<void>(bytes.release());   // mChunks owns it now
    mTotalSize = static_cast<std::uint16_t>(mTotalSize + length);
}

void CChunkCollection::Replace(std::uint16_t id, void * data, std::uint16_t length)
{
    ZYN_SENTRY("VrexZynConfigTools::CChunkCollection::Replace");

    if (mChunks.empty())
        return;

    Bytes bytes = CopyOf(data, length);        // ahead of freeing the old bytes, which `data` may point at
    ChunkItem & chunk = mChunks[mIndex[id]];   // an unknown id is added for the first chunk, intended
    FreeBytes(chunk);
    mTotalSize = static_cast<std::uint16_t>(mTotalSize - chunk.mLength + length);
    chunk.mData = bytes.release();   // mChunks owns it now
    chunk.mLength = length;
}

void CChunkCollection::Add(std::uint16_t id, void * data, std::uint16_t length)
{
    ZYN_SENTRY("VrexZynConfigTools::CChunkCollection::Add");

    if (Exists(id))
        Replace(id, data, length);
    else
        Insert(id, data, length);
}

bool CChunkCollection::Exists(std::uint16_t id) const
{
    bool result = false;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CChunkCollection::Exists", result);

    return result = mIndex.contains(id);
}

std::uint16_t CChunkCollection::Size() const
{
    return mTotalSize;
}

void CChunkCollection::Clear()
{
    ZYN_SENTRY("VrexZynConfigTools::CChunkCollection::Clear");

    for (const ChunkItem & chunk : mChunks)
        FreeBytes(chunk);
    mChunks.clear();
    mIndex.clear();
    mTotalSize = 0;
}

const std::vector<ChunkItem> & CChunkCollection::Chunks() const
{
    return mChunks;
}

const ChunkItem & CChunkCollection::Chunk(std::uint16_t id)
{
    ZYN_SENTRY("VrexZynConfigTools::CChunkCollection::Chunk");

    if (mChunks.empty())
        return NO_CHUNK;
    return mChunks[mIndex[id]];   // an unknown id is added for the first chunk, intended
}

}   // namespace VrexZynConfigTools
