/// @file
/// Device stores: their description, the interface by which a plug-in reports them, and a container of numbered
/// binary blocks in which plug-ins transport the content of a store.
///
/// @code
/// #include <cstdio>
///
/// void PrintStores(VrexZynConfigTools::IStoreManager & manager, VrexZynConfigTools::IConfigContext & context)
/// {
///     using namespace VrexZynConfigTools;
///     for (const CStoreInfo * const store : manager.Stores(context)) {   // list and entries stay the manager's
///         const std::string name = IStoreManager::GetDeviceName(store->DeviceId());   // such as "eeprom"
///         const bool isSizeKnown = store->StoreSizeFree() != CStoreInfo::INVALID_STORE_SIZE;
///         std::puts((name + (isSizeKnown ? ", size known" : ", size unknown")).c_str());
///     }
/// }
/// @endcode

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

/// Moves the content of one store between a medium and a chunk collection. Plug-ins implement it and tools call it; the
/// library does neither. Both operations return false on failure, with the reason as an error in `GROUP_FRAMEWORK`. The
/// order of the virtual operations is a binary contract.
class CONFIGTOOLS_EXPORT IChunkInOut
{
public:
    /// Reads the store that the context names by "device" and "store", and adds its chunks to `chunks`, as
    /// `CChunkCollection::Add` does. After a failure `chunks` may have some of them.
    virtual bool ReadChunks(CChunkCollection & chunks, IConfigContext & context) = 0;

    /// Replaces the content of the store that the context names by `chunks`. What a failure leaves on the medium is the
    /// plug-in's to document.
    virtual bool WriteChunks(const CChunkCollection & chunks, IConfigContext & context) = 0;

    virtual ~IChunkInOut() = default;
};

/// Reports the stores of a chip. A store-manager plug-in implements it, and a reader may do so too: `CChipConfig` looks
/// whether its reader is one at the end of a read, and takes sizes and order of the stores from it. The order of the
/// virtual operations is a binary contract.
class CONFIGTOOLS_EXPORT IStoreManager
{
public:
    /// The device on which a store is. The tag "device" contains the value in decimal. Six devices have layers, here in
    /// the order from bottom to top: "rom", "otp", "mtp", "smem", "fw_cfg", "eeprom"; stores of the others have none.
    enum DEVICE : int
    {
        /// "none": no device.
        DEVICE_NONE = -1,
        /// "rom", the lowest layer.
        DEVICE_ROM = 0,
        /// "otp".
        DEVICE_OTP = 1,
        /// "smem".
        DEVICE_SMEM = 2,
        /// "mtp", below "smem" although its number is higher.
        DEVICE_MTP = 4,
        /// "user_ps_audio"; no layer.
        DEVICE_USER_PS_AUDIO = 11,
        /// "user_ps_apps"; no layer.
        DEVICE_USER_PS_APPS = 12,
        /// "cur_cfg"; no layer.
        DEVICE_CUR_CFG = 13,
        /// "fw_cfg".
        DEVICE_FW_CFG = 14,
        /// "eeprom", the highest layer.
        DEVICE_EEPROM = 15
    };

    /// Prepares the stores that the context names for access, such as by opening a file or device. False on failure,
    /// with the reason as an error in `GROUP_FRAMEWORK`. For tools; the library never calls it.
    virtual bool Open(IConfigContext & context) = 0;

    /// The access to the content of one store; it stays the manager's. Null if there is no such store or its content
    /// can't be read. For tools; the library never calls it.
    virtual IChunkInOut * ChunkAccess(DEVICE device, std::uint16_t storeId, IConfigContext & context) = 0;

    /// The stores that the context selects; list and entries stay the manager's. `CChipConfig` calls it at the end of a
    /// read, with the context of the read, and copies what it uses.
    virtual const std::list<CStoreInfo *> & Stores(IConfigContext & context) = 0;

    virtual ~IStoreManager() = default;

    /// The keyword of a device, such as "eeprom"; "UNKNOWN" for a value that is none of the enumerators, 3 among them.
    /// The result is a literal.
    static const char * GetDeviceName(DEVICE device);
};

/// The devices whose stores make layers, from bottom to top. "mtp" is below "smem" although its value is higher, intended:
/// the chip reads it first.
inline constexpr IStoreManager::DEVICE LAYER_ORDER[] = { IStoreManager::DEVICE_ROM, IStoreManager::DEVICE_OTP,
    IStoreManager::DEVICE_MTP, IStoreManager::DEVICE_SMEM, IStoreManager::DEVICE_FW_CFG,
    IStoreManager::DEVICE_EEPROM };

/// One store of a device: a plain record. Two of them describe the same store if device and store id are equal,
/// whatever the other fields are.
class CONFIGTOOLS_EXPORT CStoreInfo
{
public:
    /// A free size that isn't known.
    static const std::int32_t INVALID_STORE_SIZE = -1;

    /// Leaves the fields without a defined value, intended: it costs nothing in an array that is filled afterwards. Set
    /// them all before the first is read.
    CStoreInfo();

    /// A record with all its fields; the setters give their meaning.
    CStoreInfo(IStoreManager::DEVICE device, std::uint16_t storeId, std::uint32_t storeSize,
        std::int32_t storeSizeFree, std::uint16_t linkedStoreId, std::uint16_t order, bool paired);

    /// @name The fields
    /// Each pair reads and writes one field; nothing is checked.
    ///@{

    /// The device on which the store is.
    IStoreManager::DEVICE DeviceId() const;
    void SetDeviceId(IStoreManager::DEVICE device);   ///< @copydoc DeviceId

    /// The number of the store on its device.
    std::uint16_t StoreId() const;
    void SetStoreId(std::uint16_t storeId);   ///< @copydoc StoreId

    /// The size in bytes; 0xFFFFFFFF if it isn't known.
    std::uint32_t StoreSize() const;
    void SetStoreSize(std::uint32_t size);   ///< @copydoc StoreSize

    /// The room left, in bytes; `INVALID_STORE_SIZE` if it isn't known.
    std::int32_t StoreSizeFree() const;
    void SetStoreSizeFree(std::int32_t size);   ///< @copydoc StoreSizeFree

    /// The number of a store that is linked to this one; 0 for none.
    std::uint16_t LinkedStoreId() const;
    void SetLinkedStoreId(std::uint16_t storeId);   ///< @copydoc LinkedStoreId

    /// The place in the order in which the stores were found.
    std::uint16_t Order() const;
    void SetOrder(std::uint16_t order);   ///< @copydoc Order

    /// Whether the store is paired with another; the library passes it on.
    bool Paired() const;
    void SetPaired(bool paired);   ///< @copydoc Paired
    ///@}

private:
    IStoreManager::DEVICE mDevice;
    std::uint16_t mStoreId;
    std::uint32_t mStoreSize;
    std::int32_t mStoreSizeFree;
    std::uint16_t mLinkedStoreId;
    std::uint16_t mOrder;
    bool mPaired;
};

/// Deletes all entries, null ones aside, and empties the list: for lists that own their entries.
CONFIGTOOLS_EXPORT void ClearStoreList(std::list<CStoreInfo *> & stores);

/// One numbered block of bytes.
struct ChunkItem
{
    /// The number of the block.
    std::uint16_t mId;
    /// In bytes.
    std::uint16_t mLength;
    /// The bytes, owned by the collection.
    void * mData;
};

/// Numbered blocks of bytes, in the order of their first insertion. No operation sets an error.
///
/// A copy points at the very buffers of its source, and each of the two frees them when it is cleared or destroyed,
/// intended: plug-ins pass collections by value and read them. Use a copy for reading only, and clear or destroy only
/// one of the two. The former buffers of a collection that is assigned to are not freed, because another copy may
/// share them.
///
/// Positions have 16 bits, intended since ids have no more: of more than 65536 chunks, which takes repeated ids, a
/// later one answers with the chunk 65536 places ahead of it.
class CONFIGTOOLS_EXPORT CChunkCollection
{
public:
    /// An empty collection.
    CChunkCollection();

    /// Shares the buffers with `other`; see above.
    CChunkCollection(const CChunkCollection & other);

    /// Shares the buffers with `other`; see above.
    CChunkCollection & operator=(const CChunkCollection & other);

    /// Frees all buffers.
    virtual ~CChunkCollection();

    /// Appends a chunk with a copy of the `length` bytes at `data`, which is only read and may be freed at once;
    /// zeros if `data` is null. An id that exists already gets a second chunk, and the later one answers for it.
    void Insert(std::uint16_t id, void * data, std::uint16_t length);

    /// Gives the chunk of `id` new content in its old position, copied as `Insert` does. Only for an id that exists:
    /// any other overwrites the first chunk and exists from then on, intended, since plug-ins rely on it; an empty
    /// collection stays empty. `Add` is the operation for an id that may not exist.
    void Replace(std::uint16_t id, void * data, std::uint16_t length);

    /// Replaces the chunk of `id` if it exists, and inserts one otherwise.
    void Add(std::uint16_t id, void * data, std::uint16_t length);

    /// Whether there is a chunk with this id.
    bool Exists(std::uint16_t id) const;

    /// The sum of all lengths in bytes, modulo 65536; not the number of chunks.
    std::uint16_t Size() const;

    /// Frees all chunks. Pointers into them, also those of copies, are invalid then.
    void Clear();

    /// All chunks in order; valid until the next change.
    const std::vector<ChunkItem> & Chunks() const;

    /// The chunk of `id`, valid until the next change. An id that doesn't exist returns the first chunk, and exists
    /// from then on, intended as for `Replace`; in an empty collection the result is an empty chunk that isn't part
    /// of it. Call `Exists` first.
    const ChunkItem & Chunk(std::uint16_t id);

private:
    std::vector<ChunkItem> mChunks;
    std::map<std::uint16_t, std::uint16_t> mIndex;   // id to position
    std::uint16_t mTotalSize;
};

}   // namespace VrexZynConfigTools

#endif
