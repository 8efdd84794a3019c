#include <configtools/stores.h>
#include <support/allocations.h>
#include <support/never_destroyed.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <type_traits>
#include <vector>

namespace VrexZynConfigTools {
namespace {

std::string BytesOf(const ChunkItem & chunk)
{
    return std::string(static_cast<const char *>(chunk.mData), chunk.mLength);
}

class CChunkCollectionTest : public testing::Test
{
protected:
    void Insert(std::uint16_t id, std::string bytes)
    {
        mChunks.Insert(id, bytes.data(), static_cast<std::uint16_t>(bytes.size()));
    }
    void Replace(std::uint16_t id, std::string bytes)
    {
        mChunks.Replace(id, bytes.data(), static_cast<std::uint16_t>(bytes.size()));
    }
    void Add(std::uint16_t id, std::string bytes)
    {
        mChunks.Add(id, bytes.data(), static_cast<std::uint16_t>(bytes.size()));
    }

    /// "id=bytes" of each chunk in order.
    std::vector<std::string> All() const
    {
        std::vector<std::string> all;
        for (const ChunkItem & chunk : mChunks.Chunks())
            all.push_back(std::to_string(chunk.mId) + "=" + BytesOf(chunk));
        return all;
    }

    CChunkCollection mChunks;
};

using Strings = std::vector<std::string>;

TEST_F(CChunkCollectionTest, is_empty_at_first)
{
    EXPECT_EQ(mChunks.Size(), 0);
    EXPECT_FALSE(mChunks.Exists(0));
    EXPECT_TRUE(mChunks.Chunks().empty());
}

TEST_F(CChunkCollectionTest, keeps_chunks_in_the_order_of_first_insertion)
{
    Insert(9, "nine");
    Insert(1, "one");
    Add(5, "five");
    Replace(9, "NINE");

    EXPECT_EQ(All(), (Strings{ "9=NINE", "1=one", "5=five" }));
    EXPECT_EQ(mChunks.Size(), 11);
    EXPECT_EQ(BytesOf(mChunks.Chunk(1)), "one");
}

TEST_F(CChunkCollectionTest, holds_a_copy_of_the_bytes)
{
    std::string bytes("abc");
    mChunks.Insert(1, bytes.data(), 3);
    bytes = "xyz";

    EXPECT_EQ(BytesOf(mChunks.Chunk(1)), "abc");
}

TEST_F(CChunkCollectionTest, adding_an_id_again_replaces_its_chunk)
{
    Add(7, "abc");
    Add(7, "abcde");

    EXPECT_EQ(All(), Strings{ "7=abcde" });
    EXPECT_EQ(mChunks.Size(), 5);
}

TEST_F(CChunkCollectionTest, inserting_an_id_again_makes_a_second_chunk_that_answers)
{
    Insert(7, "first");
    Insert(7, "second");

    EXPECT_EQ(All(), (Strings{ "7=first", "7=second" }));
    EXPECT_EQ(BytesOf(mChunks.Chunk(7)), "second");
    EXPECT_EQ(mChunks.Size(), 11);
}

TEST_F(CChunkCollectionTest, clearing_leaves_nothing)
{
    Add(1, "abc");
    Add(2, "abcd");
    mChunks.Clear();

    EXPECT_EQ(mChunks.Size(), 0);
    EXPECT_FALSE(mChunks.Exists(1));
    EXPECT_TRUE(mChunks.Chunks().empty());
}

TEST_F(CChunkCollectionTest, can_be_filled_again_after_clearing)
{
    Add(1, "abc");
    mChunks.Clear();
    Add(1, "de");

    EXPECT_EQ(All(), Strings{ "1=de" });
    EXPECT_EQ(mChunks.Size(), 2);
}

TEST_F(CChunkCollectionTest, an_unknown_id_answers_with_the_first_chunk_and_exists_from_then_on)
{
    Insert(1, "first");
    Insert(2, "second");

    EXPECT_EQ(&mChunks.Chunk(99), &mChunks.Chunks()[0]);
    EXPECT_TRUE(mChunks.Exists(99));
    EXPECT_EQ(mChunks.Chunks().size(), 2U);
}

TEST_F(CChunkCollectionTest, replacing_an_unknown_id_overwrites_the_first_chunk)
{
    Insert(1, "first");
    Insert(2, "second");
    Replace(99, "new");

    EXPECT_EQ(All(), (Strings{ "1=new", "2=second" }));
    EXPECT_TRUE(mChunks.Exists(99));
    EXPECT_EQ(mChunks.Size(), 9);
}

TEST_F(CChunkCollectionTest, an_empty_collection_answers_with_an_empty_chunk_and_stays_empty)
{
    EXPECT_EQ(mChunks.Chunk(3).mData, nullptr);
    EXPECT_EQ(mChunks.Chunk(3).mLength, 0);
    Replace(3, "abc");

    EXPECT_FALSE(mChunks.Exists(3));
    EXPECT_TRUE(mChunks.Chunks().empty());
    EXPECT_EQ(mChunks.Size(), 0);
}

TEST_F(CChunkCollectionTest, the_total_size_wraps_at_65536)
{
    Insert(1, std::string(32768, 'a'));
    Insert(2, std::string(32768, 'b'));
    EXPECT_EQ(mChunks.Size(), 0);

    Insert(3, "c");
    EXPECT_EQ(mChunks.Size(), 1);
    Replace(1, "");
    EXPECT_EQ(mChunks.Size(), 32769);
    Replace(2, std::string(65535, 'd'));
    EXPECT_EQ(mChunks.Size(), 0);
}

TEST_F(CChunkCollectionTest, no_bytes_need_no_data)
{
    mChunks.Insert(1, nullptr, 0);
    Insert(2, "abc");
    mChunks.Replace(2, nullptr, 0);

    EXPECT_EQ(All(), (Strings{ "1=", "2=" }));
    EXPECT_EQ(mChunks.Size(), 0);
}

TEST_F(CChunkCollectionTest, null_data_with_a_length_gives_zeros)
{
    mChunks.Insert(1, nullptr, 3);

    EXPECT_EQ(BytesOf(mChunks.Chunk(1)), std::string(3, '\0'));
    EXPECT_EQ(mChunks.Size(), 3);
}

TEST_F(CChunkCollectionTest, a_chunk_can_be_replaced_by_its_own_bytes)
{
    Insert(1, "abcdef");
    char * const own = static_cast<char *>(mChunks.Chunk(1).mData);
    mChunks.Replace(1, own + 2, 3);

    EXPECT_EQ(BytesOf(mChunks.Chunk(1)), "cde");
}

TEST_F(CChunkCollectionTest, all_ids_find_their_chunks)
{
    for (std::uint32_t id = 0; id < 65536; ++id)
        Insert(static_cast<std::uint16_t>(id), std::to_string(id % 10));

    for (const std::uint16_t id : std::initializer_list<std::uint16_t>{ 0, 1, 32768, 65535 })
        EXPECT_EQ(BytesOf(mChunks.Chunk(id)), std::to_string(id % 10));
    EXPECT_EQ(mChunks.Size(), 0);
}

TEST_F(CChunkCollectionTest, beyond_65536_chunks_positions_wrap)
{
    for (std::uint32_t count = 0; count < 65536; ++count)
        Insert(static_cast<std::uint16_t>(count), "");
    Insert(7, "a");
    Insert(8, "b");

    EXPECT_EQ(mChunks.Chunks().size(), 65538U);
    EXPECT_EQ(&mChunks.Chunk(7), &mChunks.Chunks()[0]);
    EXPECT_EQ(&mChunks.Chunk(8), &mChunks.Chunks()[1]);
    Replace(8, "xyz");
    EXPECT_EQ(BytesOf(mChunks.Chunks()[1]), "xyz");
    EXPECT_EQ(mChunks.Size(), 5);
}

TEST_F(CChunkCollectionTest, a_copy_shares_the_buffers)
{
    Insert(1, "abc");
    const CChunkCollection & copy = support::NeverDestroyed(new CChunkCollection(mChunks));

    ASSERT_EQ(copy.Chunks().size(), 1U);
    EXPECT_EQ(copy.Chunks()[0].mData, mChunks.Chunks()[0].mData);
    EXPECT_TRUE(copy.Exists(1));
    EXPECT_EQ(copy.Size(), 3);
}

TEST_F(CChunkCollectionTest, an_assigned_collection_shares_the_buffers_and_forgets_its_own)
{
    Insert(1, "abc");
    CChunkCollection & copy = support::NeverDestroyed(new CChunkCollection);
    copy.Insert(2, nullptr, 9);
    const auto * const forgotten = static_cast<const char *>(copy.Chunk(2).mData);
    copy = mChunks;

    EXPECT_EQ(copy.Chunks()[0].mData, mChunks.Chunks()[0].mData);
    EXPECT_FALSE(copy.Exists(2));
    EXPECT_EQ(copy.Size(), 3);
    EXPECT_EQ(forgotten[8], '\0');   // never freed
}

TEST_F(CChunkCollectionTest, assignment_to_itself_changes_nothing)
{
    Insert(1, "abc");
    const CChunkCollection & same = mChunks;
    mChunks = same;

    EXPECT_EQ(All(), Strings{ "1=abc" });
    EXPECT_EQ(mChunks.Size(), 3);
}

TEST_F(CChunkCollectionTest, an_insertion_without_memory_changes_nothing)
{
    Insert(1, "abc");
    char bytes[] = "defgh";
    const auto failures = support::FailEachAllocation([&] { mChunks.Insert(2, bytes, 5); },
        [&] {
            EXPECT_EQ(mChunks.Chunks().size(), 1U);
            EXPECT_FALSE(mChunks.Exists(2));
            EXPECT_EQ(mChunks.Size(), 3);
        });

    EXPECT_EQ(failures, 3U);   // the bytes, the room in the vector, the node of the index
    EXPECT_EQ(BytesOf(mChunks.Chunk(2)), "defgh");
}

TEST_F(CChunkCollectionTest, a_replacement_without_memory_changes_nothing)
{
    Insert(1, "abc");
    char bytes[] = "defgh";
    const auto failures = support::FailEachAllocation([&] { mChunks.Replace(2, bytes, 5); },
        [&] {
            EXPECT_EQ(BytesOf(mChunks.Chunks()[0]), "abc");
            EXPECT_FALSE(mChunks.Exists(2));
            EXPECT_EQ(mChunks.Size(), 3);
        });

    EXPECT_EQ(failures, 2U);
    EXPECT_EQ(BytesOf(mChunks.Chunk(1)), "defgh");
}

TEST_F(CChunkCollectionTest, an_assignment_without_memory_changes_nothing)
{
    Insert(1, "abc");
    CChunkCollection & copy = support::NeverDestroyed(new CChunkCollection);
    copy.Insert(2, nullptr, 9);
    support::NeverDestroyed(static_cast<char *>(copy.Chunk(2).mData));   // remembering it may fail, too
    support::FailEachAllocation([&] { copy = mChunks; },
        [&] {
            EXPECT_TRUE(copy.Exists(2));
            EXPECT_FALSE(copy.Exists(1));
            EXPECT_EQ(copy.Size(), 9);
        });

    EXPECT_TRUE(copy.Exists(1));
}

TEST(ChunkItem, is_plain)
{
    static_assert(std::is_trivial_v<ChunkItem> && std::is_standard_layout_v<ChunkItem>);
    static_assert(offsetof(ChunkItem, mId) == 0 && offsetof(ChunkItem, mLength) == 2);
}

}   // namespace
}   // namespace VrexZynConfigTools
