/// A store image: the chip's label, and stores with their chunks. docs/image-format.md tells the bytes.

#ifndef IMAGECONFIG_IMAGE_H
#define IMAGECONFIG_IMAGE_H

#include <configtools/stores.h>

#include <cstdint>
#include <list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace imageconfig {

inline constexpr std::uint32_t SIZE_UNKNOWN = 0xFFFFFFFF;
inline constexpr std::size_t MAX_BYTES_OF_CHUNK = 0xFFFF;
inline constexpr std::size_t MAX_CHUNKS = 0xFFFF;
inline constexpr std::size_t MAX_STORES = 0xFFFF;
inline constexpr std::size_t MAX_BYTES_OF_LABEL = 0xFFFF;
inline constexpr std::size_t MAX_BYTES_OF_IMAGE = 1U << 28U;
inline constexpr std::size_t HEAD_LENGTH = 12;   // up to the length of the whole

/// One store. The device and the number are none where nothing is known of them.
struct Store
{
    std::optional<int> mDevice;
    std::optional<int> mNumber;
    std::uint32_t mSize = SIZE_UNKNOWN;
    std::int32_t mFree = VrexZynConfigTools::CStoreInfo::INVALID_STORE_SIZE;
    std::unique_ptr<VrexZynConfigTools::CChunkCollection> mChunks =
        std::make_unique<VrexZynConfigTools::CChunkCollection>();
};

struct Image
{
    std::string mChip;
    std::vector<Store> mStores;
};

/// The bytes of a chunk.
std::string_view BytesOf(const VrexZynConfigTools::ChunkItem & chunk);

/// Appends a chunk with the next running number. False if the store has no number left or `bytes` are too many.
bool AppendChunk(Store & store, const std::string & bytes);

/// What the chunks take of a store's size.
std::uint64_t BytesUsed(const VrexZynConfigTools::CChunkCollection & chunks);

/// Sets the free size by the size and what the chunks take. False if they don't fit.
bool SettleFreeSize(Store & store);

std::string ComposeImage(const Image & image);

/// The length that an image is said to have, by its first `HEAD_LENGTH` bytes; nothing, with the reason in `error`, if they
/// begin no image of this version.
std::optional<std::size_t> AnnouncedLength(std::string_view head, std::string & error);

/// Nothing, with the reason in `error`, for bytes that are no image, or a damaged one.
std::optional<Image> ParseImage(std::string_view bytes, std::string & error);

/// "store 1 of eeprom".
std::string StoreName(const std::optional<int> & device, const std::optional<int> & number);

/// The stores as a store manager reports them, in a list that the caller clears. Those that make no layer because their
/// device isn't known, or their number is 0 or none, are left out.
void ListStores(const Image & image, std::list<VrexZynConfigTools::CStoreInfo *> & stores);

}   // namespace imageconfig

#endif
