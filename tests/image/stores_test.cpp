// Sizes, and the stores of an image as a store manager reports them.

#include "records.h"

namespace VrexZynConfigTools::support {
namespace {

/// "15.1 4096 4000": device, number, size and free size.
Lines StoresOf(const std::list<CStoreInfo *> & stores)
{
    Lines lines;
    for (const CStoreInfo * const store : stores)
        lines.push_back(std::to_string(store->DeviceId()) + '.' + std::to_string(store->StoreId()) + ' ' +
                        std::to_string(store->StoreSize()) + ' ' + std::to_string(store->StoreSizeFree()));
    return lines;
}

class ImageStores : public EveryShapeTest
{
protected:
    /// Keys that take this many bytes in one store.
    void Fill(CChipConfig & chip, std::size_t bytes)
    {
        const std::size_t head = AChunk(1, AKey(5, "")).size();
        ScriptedReader()
            .Delivers(ASubsystem(1)
                          .In(15, 1)
                          .Tagged("chip=abc")
                          .Holding(new CElementRaw(
                              5, "", { new CStringPayload(std::string(bytes - head, 'x'), true) }, true)))
            .ReadInto(chip);
    }

    Lines SizesAfter(std::size_t bytes, const std::string & tags)
    {
        CChipConfig chip;
        Fill(chip, bytes);
        if (!Write(chip, mPath, tags))
            return { TakeError() };
        CZynContext context;
        const auto manager = MakeStoreManager(mPath);
        EXPECT_TRUE(manager->Open(context)) << TakeError();
        return StoresOf(manager->Stores(context));
    }

    std::unique_ptr<IStoreManager> Opened(const std::string & image)
    {
        PutContent(mPath, image);
        auto manager = MakeStoreManager(mPath);
        CZynContext context;
        EXPECT_TRUE(manager->Open(context)) << TakeError();
        return manager;
    }

    const std::string mTwoStores =
        AnImage(2, AStore(2) + AChunk(1, AKey(5, Bytes(1, 2))) + AChunk(2, AKey(6, "cd")) +
                       AStore(1, 0, 3, 64, 20) + AChunk(1, Bytes(1, 4)));
    CZynContext mContext;
};

TEST_F(ImageStores, have_by_default_the_smallest_power_of_two_from_4096_that_holds_the_keys)
{
    EXPECT_EQ(SizesAfter(100, ""), (Lines{ "15.1 4096 3996" }));
    EXPECT_EQ(SizesAfter(4096, ""), (Lines{ "15.1 4096 0" }));
    EXPECT_EQ(SizesAfter(4097, ""), (Lines{ "15.1 8192 4095" }));
}

TEST_F(ImageStores, have_the_size_that_the_tool_tells)
{
    EXPECT_EQ(SizesAfter(100, "storesizes=1.1:7,15.1:512"), (Lines{ "15.1 512 412" }));
    EXPECT_EQ(SizesAfter(100, "storesizes=15.1:100"), (Lines{ "15.1 100 0" }));
    EXPECT_EQ(SizesAfter(100, "storesizes=15.1:4294967294"), (Lines{ "15.1 4294967294 -1" }));
    EXPECT_EQ(SizesAfter(100, "storesizes=15.1:4294967295"), (Lines{ "15.1 4294967295 -1" }));
}

TEST_F(ImageStores, that_are_full_are_an_error)
{
    EXPECT_EQ(SizesAfter(100, "storesizes=15.1:99"),
        (Lines{ "store 1 of eeprom: the keys take 100 bytes; its size is 99" }));
}

TEST_F(ImageStores, need_a_tag_of_sizes_that_can_be_read)
{
    for (const std::string junk : { "junk", "15.1", "15.1:", "15.1:9,", "15.1:9,15.1:8", "15.1:4294967296",
             "-1.1:9", "15.1:9 ", ",", "15:1.9" })
        EXPECT_EQ(SizesAfter(100, "storesizes=" + junk),
            (Lines{ "the context tag \"storesizes\" reads \"" + junk +
                    "\"; expected DEVICE.STORE:SIZE,... in decimal, such as \"1.1:512,15.1:8192\"" }));
}

TEST_F(ImageStores, reach_the_layering_with_their_sizes_also_those_of_rom)
{
    PutContent(mPath, mTwoStores);
    CChipConfig chip;
    ASSERT_TRUE(Read(chip, mPath, &mProvider)) << TakeError();
    EXPECT_EQ(StoresOf(chip.Stores()), (Lines{ "0.3 64 20", "15.1 4096 1000" }));
    EXPECT_EQ(Describe(chip).at(0), "abc| |1|1 device 0 store 3");
    EXPECT_EQ(Describe(chip).at(1), "abc| |1|2 device 15 store 1");
}

TEST_F(ImageStores, without_a_number_or_a_device_are_not_reported)
{
    const auto manager = Opened(
        AnImage(4, AStore(0, 15, 0) + AStore(0, 0xFFFFFFFF) + AStore(0, 0x80000000U) + AStore(0, 13, 2)));
    EXPECT_EQ(StoresOf(manager->Stores(mContext)), (Lines{ "13.2 4096 1000" }));
}

TEST_F(ImageStores, are_none_before_the_image_is_opened_or_if_it_can_not_be)
{
    const auto manager = MakeStoreManager(mPath);
    EXPECT_TRUE(manager->Stores(mContext).empty());
    EXPECT_FALSE(manager->Open(mContext));
    EXPECT_NE(TakeError().find("unable to open the file"), std::string::npos);
    PutContent(mPath, mTwoStores);
    mContext.SetChip("xyz");
    EXPECT_FALSE(manager->Open(mContext));
    EXPECT_EQ(TakeError(), "the image is for the chip \"abc\"; expected \"xyz\"");
    EXPECT_TRUE(manager->Stores(mContext).empty());
}

TEST_F(ImageStores, give_their_chunks)
{
    const auto manager = Opened(mTwoStores);
    IChunkInOut * const access = manager->ChunkAccess(IStoreManager::DEVICE_EEPROM, 1, mContext);
    ASSERT_NE(access, nullptr);
    CChunkCollection chunks;
    ASSERT_TRUE(access->ReadChunks(chunks, mContext)) << TakeError();
    ASSERT_EQ(chunks.Chunks().size(), 2U);
    const ChunkItem & second = chunks.Chunk(2);
    EXPECT_EQ(std::string(static_cast<const char *>(second.mData), second.mLength), AKey(6, "cd"));
    EXPECT_EQ(manager->ChunkAccess(IStoreManager::DEVICE_EEPROM, 1, mContext), access);
    EXPECT_EQ(manager->ChunkAccess(IStoreManager::DEVICE_EEPROM, 2, mContext), nullptr);
    mContext.SetStore(2);
    EXPECT_FALSE(access->ReadChunks(chunks, mContext));
    EXPECT_EQ(TakeError(), "store 1 of eeprom: the context names another store");
}

TEST_F(ImageStores, take_chunks_and_settle_their_free_size)
{
    const auto manager = Opened(mTwoStores);
    IChunkInOut * const access = manager->ChunkAccess(IStoreManager::DEVICE_ROM, 3, mContext);
    ASSERT_NE(access, nullptr);
    CChunkCollection chunks;
    std::string key = AKey(5, "ab");
    chunks.Insert(1, key.data(), static_cast<std::uint16_t>(key.size()));
    ASSERT_TRUE(access->WriteChunks(chunks, mContext)) << TakeError();
    CChipConfig chip;
    ASSERT_TRUE(Read(chip, mPath, nullptr)) << TakeError();
    EXPECT_EQ(Describe(chip).at(1), "raw 5  5:25185");
    EXPECT_EQ(StoresOf(chip.Stores()), (Lines{ "0.3 64 48", "15.1 4096 1000" }));
}

TEST_F(ImageStores, refuse_chunks_that_are_none_of_an_image_and_stay_as_they_are)
{
    const auto manager = Opened(mTwoStores);
    IChunkInOut * const access = manager->ChunkAccess(IStoreManager::DEVICE_ROM, 3, mContext);
    const auto errorOf = [&](std::uint16_t id, std::string bytes) {
        CChunkCollection chunks;
        chunks.Insert(id, bytes.data(), static_cast<std::uint16_t>(bytes.size()));
        EXPECT_FALSE(access->WriteChunks(chunks, mContext));
        EXPECT_EQ(ContentOf(mPath), mTwoStores);
        return TakeError();
    };
    EXPECT_EQ(errorOf(2, AKey(5, "ab")), "store 3 of rom: chunk 1: it has the number 2");
    EXPECT_EQ(errorOf(1, "x"), "store 3 of rom: chunk 1: it is cut off");
    EXPECT_EQ(errorOf(1, AKey(5, std::string(100, 'x'))),
        "store 3 of rom: the chunks take 114 bytes; its size is 64");
    PutContent(mPath, AnImage(0, ""));
    CChunkCollection none;
    EXPECT_FALSE(access->WriteChunks(none, mContext));
    EXPECT_EQ(TakeError(), "store 3 of rom is no longer there");
}

}   // namespace
}   // namespace VrexZynConfigTools::support
