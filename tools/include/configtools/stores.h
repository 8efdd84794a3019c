/// Device stores: their description, the interface by which a plug-in reports them, and a container of numbered
/// binary blocks in which plug-ins carry a store's content.

#ifndef CONFIGTOOLS_STORES_H
#define CONFIGTOOLS_STORES_H

#include <configtools/export.h>

#include <cstdint>
#include <list>
#include <map>
#include <string>
#include <vector>

namespace VrexZynConfigTools {

class CChunkCollection;
class CStoreInfo;
class IConfigContext;

/// Moves the content of one store between a medium and a chunk collection; implemented and called by plug-ins and
/// tools only. Both return false on failure, with the reason as an error in `GROUP_FRAMEWORK`.
class CONFIGTOOLS_EXPORT IChunkInOut
{
public:
    /// Adds the chunks of the store that the context names ("device", "store") to `chunks`.
    virtual bool ReadChunks(CChunkCollection & chunks, IConfigContext & context) = 0;

    /// Makes `chunks` the content of the store that the context names.
    virtual bool WriteChunks(const CChunkCollection & chunks, IConfigContext & context) = 0;

    virtual ~IChunkInOut() = default;
};

/// Reports the stores of a chip. A store-manager plug-in implements it, and a reader may do so too: a chip
/// configuration asks each reader for it at the end of a read. The order of the virtual operations is a binary contract.
class CONFIGTOOLS_EXPORT IStoreManager
{
public:
    /// The device that holds a store. The values travel in the tag "device".
    enum DEVICE : int
    {
        DEVICE_NONE = -1,
        DEVICE_ROM = 0,
        DEVICE_OTP = 1,
        DEVICE_SMEM = 2,
        DEVICE_MTP = 4,
        DEVICE_USER_PS_AUDIO = 11,
        DEVICE_USER_PS_APPS = 12,
        DEVICE_CUR_CFG = 13,
        DEVICE_FW_CFG = 14,
        DEVICE_EEPROM = 15
    };

    /// Prepares the stores that the context names for access, such as by opening a file or device. False on failure,
    /// with the reason as an error in `GROUP_FRAMEWORK`. Not called by the framework.
    virtual bool Open(IConfigContext & context) = 0;

    /// The way to the content of one store; stays the manager's. Null if there is no such store or its content can't
    /// be reached. Not called by the framework.
    virtual IChunkInOut * ChunkAccess(DEVICE device, std::uint16_t storeId, IConfigContext & context) = 0;

    /// The stores; list and entries stay the manager's.
    virtual const std::list<CStoreInfo *> & Stores(IConfigContext & context) = 0;

    virtual ~IStoreManager() = default;

    /// The keyword of a device, such as "eeprom"; "UNKNOWN" for a value that is none. A literal.
    static const char * GetDeviceName(DEVICE device);
};

/// One store of a device. Two stores are the same store when device and store id are equal.
class CONFIGTOOLS_EXPORT CStoreInfo
{
public:
    static const std::int32_t INVALID_STORE_SIZE = -1;   // a free size that isn't known

    /// Leaves the fields without a defined value, intended: set them all.
    CStoreInfo();

    /// Sizes are in bytes; 0xFFFFFFFF is a size that isn't known.
    CStoreInfo(IStoreManager::DEVICE device, std::uint16_t storeId, std::uint32_t storeSize,
        std::int32_t storeSizeFree, std::uint16_t linkedStoreId, std::uint16_t order, bool paired);

    IStoreManager::DEVICE DeviceId() const;
    void SetDeviceId(IStoreManager::DEVICE device);
    std::uint16_t StoreId() const;   // the store's number on the device
    void SetStoreId(std::uint16_t storeId);
    std::uint32_t StoreSize() const;
    void SetStoreSize(std::uint32_t size);
    std::int32_t StoreSizeFree() const;
    void SetStoreSizeFree(std::int32_t size);
    std::uint16_t LinkedStoreId() const;   // 0 for none
    void SetLinkedStoreId(std::uint16_t storeId);
    std::uint16_t Order() const;   // place in the order of discovery
    void SetOrder(std::uint16_t order);
    bool Paired() const;
    void SetPaired(bool paired);

private:
    IStoreManager::DEVICE mDevice;
    std::uint16_t mStoreId;
    std::uint32_t mStoreSize;
    std::int32_t mStoreSizeFree;
    std::uint16_t mLinkedStoreId;
    std::uint16_t mOrder;
    bool mPaired;
};

/// Deletes the entries and empties the list.
CONFIGTOOLS_EXPORT void ClearStoreList(std::list<CStoreInfo *> & stores);

/// One numbered block of bytes.
struct ChunkItem
{
    std::uint16_t mId;
    std::uint16_t mLength;   // in bytes
    void * mData;            // owned by the collection that holds it
};

/// Numbered blocks in the order of their first insertion.
///
/// A copy points at the very buffers of its source, and each frees them when cleared: use a copy for reading only,
/// and clear or destroy only one of the two. What a collection held before it is assigned to is forgotten without
/// being freed, because another copy may share it. Positions have 16 bits: of more than 65536 chunks, which takes
/// repeated ids, a later one answers with the chunk 65536 places ahead of it, intended.
class CONFIGTOOLS_EXPORT CChunkCollection
{
public:
    CChunkCollection();
    CChunkCollection(const CChunkCollection & other);
    CChunkCollection & operator=(const CChunkCollection & other);
    virtual ~CChunkCollection();

    /// Appends a chunk with a copy of `length` bytes, zeros if `data` is null. `data` is only read. An id that exists
    /// already gets a second chunk, and the later one answers for it.
    void Insert(std::uint16_t id, void * data, std::uint16_t length);

    /// Gives the chunk of `id` new content in its old place, copied as `Insert` does. Only for an id that exists: any
    /// other overwrites the first chunk and exists from then on, intended; an empty collection stays empty.
    void Replace(std::uint16_t id, void * data, std::uint16_t length);

    /// `Replace` if the id exists, else `Insert`.
    void Add(std::uint16_t id, void * data, std::uint16_t length);

    bool Exists(std::uint16_t id) const;

    /// The sum of all lengths in bytes, modulo 65536.
    std::uint16_t Size() const;

    /// Frees all chunks.
    void Clear();

    const std::vector<ChunkItem> & Chunks() const;

    /// The chunk of `id`, valid until the next change. An id that doesn't exist answers with the first chunk, and
    /// exists from then on, intended; an empty collection answers with an empty chunk that isn't part of it. Ask
    /// `Exists` first.
    const ChunkItem & Chunk(std::uint16_t id);

private:
    std::vector<ChunkItem> mChunks;
    std::map<std::uint16_t, std::uint16_t> mIndex;   // id to position
    std::uint16_t mTotalSize;
};

}   // namespace VrexZynConfigTools

#endif
