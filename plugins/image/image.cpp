#include "image.h"

#include "bytes.h"

#include <kit/reading/storetags.h>
#include <zlib.h>

#include <limits>
#include <set>
#include <utility>

namespace imageconfig {

using namespace VrexZynConfigTools;
using kit::reading::MAX_TAG_NUMBER;

namespace {

constexpr char MAGIC[] = "ZIMG";
constexpr std::size_t MAGIC_LENGTH = 4;
constexpr std::uint32_t VERSION = 1;
constexpr std::size_t LENGTH_AT = 8;   // of the whole file, in 4 bytes
constexpr std::size_t CHECKSUM_LENGTH = 4;
constexpr std::size_t CHUNK_HEAD = 4;   // id and length
constexpr std::int32_t NO_NUMBER = std::numeric_limits<std::int32_t>::min();

std::uint32_t Checksum(std::string_view bytes)
{
    return static_cast<std::uint32_t>(
        crc32_z(crc32_z(0, nullptr, 0), reinterpret_cast<const Bytef *>(bytes.data()), bytes.size()));
}

void AppendOptional(std::string & bytes, const std::optional<int> & number)
{
    AppendNumber(bytes, static_cast<std::uint32_t>(number.value_or(NO_NUMBER)), 4);
}

std::optional<int> OptionalIn(CByteReader & reader)
{
    const auto number = static_cast<std::int32_t>(reader.Number(4));
    return number != NO_NUMBER ? std::optional<int>(number) : std::nullopt;
}

void AppendStore(std::string & bytes, const Store & store)
{
    const std::vector<ChunkItem> & chunks = store.mChunks->Chunks();
    AppendOptional(bytes, store.mDevice);
    AppendOptional(bytes, store.mNumber);
    AppendNumber(bytes, store.mSize, 4);
    AppendNumber(bytes, static_cast<std::uint32_t>(store.mFree), 4);
    AppendNumber(bytes, chunks.size(), 2);
    for (const ChunkItem & chunk : chunks) {
        AppendNumber(bytes, chunk.mId, 2);
        AppendNumber(bytes, chunk.mLength, 2);
        bytes += BytesOf(chunk);
    }
}

/// Takes an image apart. The first fault ends it, since the places of all that follows depend on what is before.
class CImageParser
{
public:
    explicit CImageParser(std::string_view bytes)
        : mReader(bytes)
    {}

    std::optional<Image> Parse(std::string & error);

private:
    bool ParseStore(Image & image);
    bool ParseChunks(Store & store, std::uint32_t count, const std::string & name);
    bool CheckSizes(const Store & store, const std::string & name);
    bool Fail(const std::string & text);

    CByteReader mReader;
    std::set<std::pair<std::optional<int>, std::optional<int>>> mKnown;   // stores so far
    std::string mError;
};

bool CImageParser::Fail(const std::string & text)
{
    mError = text;
    return false;
}

std::optional<Image> CImageParser::Parse(std::string & error)
{
    Image image;
    mReader.Bytes(MAGIC_LENGTH + 2);   // looked at before, as the length is
    const std::uint32_t stores = mReader.Number(2);
    mReader.Bytes(4);
    image.mChip = mReader.Bytes(mReader.Number(2));
    bool isGood = !mReader.IsCutOff() || Fail("the image ends within the label of the chip");
    for (std::uint32_t number = 0; isGood && number < stores; ++number)
        isGood = ParseStore(image);
    if (isGood && !mReader.Rest().empty())
        isGood = Fail(std::to_string(mReader.Rest().size()) + " bytes are left behind the last store");
    error = mError;
    return isGood ? std::optional(std::move(image)) : std::nullopt;
}

bool CImageParser::ParseStore(Image & image)
{
    Store store;
    store.mDevice = OptionalIn(mReader);
    store.mNumber = OptionalIn(mReader);
    store.mSize = mReader.Number(4);
    store.mFree = static_cast<std::int32_t>(mReader.Number(4));
    const std::uint32_t count = mReader.Number(2);
    if (mReader.IsCutOff())
        return Fail("the image ends within a store");
    const std::string name = StoreName(store.mDevice, store.mNumber);
    if (!mKnown.emplace(store.mDevice, store.mNumber).second)
        return Fail(name + " is there twice");
    if (store.mDevice.value_or(0) < -1 || store.mDevice.value_or(0) > MAX_TAG_NUMBER ||
        store.mNumber.value_or(0) < 0 || store.mNumber.value_or(0) > MAX_TAG_NUMBER)
        return Fail(name + " is out of range; expected numbers up to " + std::to_string(MAX_TAG_NUMBER));
    if (!ParseChunks(store, count, name) || !CheckSizes(store, name))
        return false;
    image.mStores.push_back(std::move(store));
    return true;
}

bool CImageParser::ParseChunks(Store & store, std::uint32_t count, const std::string & name)
{
    for (std::uint32_t number = 1; number <= count; ++number) {
        const std::uint32_t id = mReader.Number(2);
        const std::string bytes(mReader.Bytes(mReader.Number(2)));
        const std::string place = name + ": chunk " + std::to_string(number);
        if (mReader.IsCutOff())
            return Fail(place + " reaches beyond the end; " + std::to_string(count) + " are announced");
        if (id != number)
            return Fail(place + " has the number " + std::to_string(id));
        AppendChunk(store, bytes);
    }
    return true;
}

bool CImageParser::CheckSizes(const Store & store, const std::string & name)
{
    const std::uint64_t used = BytesUsed(*store.mChunks);
    if (store.mFree < CStoreInfo::INVALID_STORE_SIZE)
        return Fail(name + " has a free size of " + std::to_string(store.mFree));
    if (store.mSize == SIZE_UNKNOWN)
        return true;
    const std::uint64_t free = store.mFree > 0 ? static_cast<std::uint64_t>(store.mFree) : 0;
    return used + free <= store.mSize ||
           Fail(name + " has " + std::to_string(used) + " bytes used and " + std::to_string(free) +
                " free, more than its size of " + std::to_string(store.mSize));
}

}   // namespace

std::string_view BytesOf(const ChunkItem & chunk)
{
    return chunk.mLength != 0 ? std::string_view(static_cast<const char *>(chunk.mData), chunk.mLength)
                              : std::string_view();
}

bool AppendChunk(Store & store, const std::string & bytes)
{
    const std::size_t number = store.mChunks->Chunks().size() + 1;
    if (number > MAX_CHUNKS || bytes.size() > MAX_BYTES_OF_CHUNK)
        return false;
    store.mChunks->Insert(static_cast<std::uint16_t>(number), const_cast<char *>(bytes.data()),
        static_cast<std::uint16_t>(bytes.size()));
    return true;
}

std::uint64_t BytesUsed(const CChunkCollection & chunks)
{
    std::uint64_t bytes = 0;   // the collection's own sum ends at 16 bits
    for (const ChunkItem & chunk : chunks.Chunks())
        bytes += CHUNK_HEAD + chunk.mLength;
    return bytes;
}

bool SettleFreeSize(Store & store)
{
    const std::uint64_t used = BytesUsed(*store.mChunks);
    store.mFree = CStoreInfo::INVALID_STORE_SIZE;
    if (store.mSize == SIZE_UNKNOWN)
        return true;
    if (used > store.mSize)
        return false;
    const std::uint64_t free = store.mSize - used;
    if (free <= static_cast<std::uint64_t>(std::numeric_limits<std::int32_t>::max()))
        store.mFree = static_cast<std::int32_t>(free);
    return true;
}

std::string ComposeImage(const Image & image)
{
    std::string bytes(MAGIC);
    AppendNumber(bytes, VERSION, 2);
    AppendNumber(bytes, image.mStores.size(), 2);
    AppendNumber(bytes, 0, 4);   // the length, which isn't known yet
    AppendNumber(bytes, image.mChip.size(), 2);
    bytes += image.mChip;
    for (const Store & store : image.mStores)
        AppendStore(bytes, store);
    std::string length;
    AppendNumber(length, bytes.size() + CHECKSUM_LENGTH, 4);
    bytes.replace(LENGTH_AT, length.size(), length);
    AppendNumber(bytes, Checksum(bytes), CHECKSUM_LENGTH);
    return bytes;
}

std::optional<std::size_t> AnnouncedLength(std::string_view head, std::string & error)
{
    CByteReader reader(head);
    const std::string_view magic = reader.Bytes(MAGIC_LENGTH);
    const std::uint32_t version = reader.Number(2);
    reader.Bytes(2);
    const std::uint32_t length = reader.Number(4);
    if (magic != MAGIC) {
        error = "this is no store image: it doesn't begin with \"" + std::string(MAGIC) + '"';
        return std::nullopt;
    }
    if (!reader.IsCutOff() && version != VERSION) {
        error =
            "the image has the version " + std::to_string(version) + "; expected " + std::to_string(VERSION);
        return std::nullopt;
    }
    if (reader.IsCutOff() || length > MAX_BYTES_OF_IMAGE || length < head.size() + CHECKSUM_LENGTH) {
        error = reader.IsCutOff() ? std::string("the image is cut off")
                                  : "the image is said to have " + std::to_string(length) + " bytes";
        return std::nullopt;
    }
    return length;
}

std::optional<Image> ParseImage(std::string_view bytes, std::string & error)
{
    const auto length = AnnouncedLength(bytes.substr(0, HEAD_LENGTH), error);
    if (!length)
        return std::nullopt;
    if (bytes.size() != *length) {
        error = "the image has " + std::to_string(bytes.size()) + " bytes; it is said to have " +
                std::to_string(*length);
        return std::nullopt;
    }
    const std::string_view content = bytes.substr(0, bytes.size() - CHECKSUM_LENGTH);
    if (NumberIn(bytes.substr(content.size())) != Checksum(content)) {
        error = "the image is damaged: its checksum is wrong";
        return std::nullopt;
    }
    return CImageParser(content).Parse(error);
}

std::string StoreName(const std::optional<int> & device, const std::optional<int> & number)
{
    std::string name = "store " + (number ? std::to_string(*number) : std::string("without a number"));
    if (!device)
        return name + " of no device";
    const std::string word = IStoreManager::GetDeviceName(static_cast<IStoreManager::DEVICE>(*device));
    return name + " of " + (word != "UNKNOWN" ? word : "device " + std::to_string(*device));
}

void ListStores(const Image & image, std::list<CStoreInfo *> & stores)
{
    ClearStoreList(stores);
    for (const Store & store : image.mStores) {
        if (store.mDevice.value_or(-1) < 0 || store.mNumber.value_or(0) == 0)
            continue;
        auto info = std::make_unique<CStoreInfo>(static_cast<IStoreManager::DEVICE>(*store.mDevice),
            static_cast<std::uint16_t>(*store.mNumber), store.mSize, store.mFree, std::uint16_t{ 0 },
            static_cast<std::uint16_t>(stores.size() + 1), false);
        stores.push_back(info.get());
        info.release();   // the list owns it now
    }
}

}   // namespace imageconfig
