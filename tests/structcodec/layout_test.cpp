#include "built_layout.h"
#include "codec_model.h"
#include "layout_source.h"
#include "layouts.h"

#include <configtools/structlayout.h>
#include <support/framework_errors.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <vector>

// The geometry of structs: spelled out for the odd rules, and followed over thousands of layouts, where it has to give what
// a second codec gives that moves single bits.

namespace VrexZynConfigTools {
namespace {

using namespace support;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr std::uint32_t LAYOUTS = 2500;

/// "word.bit+count=valuebit" for each run.
std::string TextOf(const BitRuns & runs)
{
    std::string text;
    for (const BitRun & run : runs)
        text += (text.empty() ? "" : " ") + std::to_string(run.mWord) + '.' + std::to_string(run.mBit) + '+' +
                std::to_string(run.mCount) + '=' + std::to_string(run.mValueBit);
    return text;
}

/// Of a layout with one field.
StructEntry EntryOf(ByteOrder order, int position, int width, const ARecord & record = ANumber("uint64"))
{
    static std::vector<Layout> living;   // entries point at the records
    Layout & layout = living.emplace_back(order);
    layout.Field(position, width, record);
    return CStructLayout(layout.Detail()).Entries().at(0);
}

TEST(StructLayout, ends_a_narrow_field_with_its_word)
{
    const StructEntry entry = EntryOf(LITTLE_ENDIAN_TARGET, 10, 12);
    EXPECT_EQ(entry.mKind, StructEntryKind::NUMBER);
    EXPECT_EQ(TextOf(entry.mPacked), "0.10+6=0");
    EXPECT_EQ(TextOf(entry.mUnpacked), "0.10+6=0");
    EXPECT_FALSE(entry.mReplaces);
}

TEST(StructLayout, distinguishes_a_straddling_field_from_a_replaced_word)
{
    const StructEntry straddling = EntryOf(LITTLE_ENDIAN_TARGET, 8, 16);
    EXPECT_EQ(TextOf(straddling.mPacked), "0.8+8=0 1.0+8=8");
    EXPECT_EQ(TextOf(straddling.mUnpacked), "0.8+8=0 1.0+8=8");
    EXPECT_FALSE(straddling.mReplaces);

    const StructEntry replacing = EntryOf(BIG_ENDIAN_TARGET, 8, 16);
    EXPECT_EQ(TextOf(replacing.mPacked), "0.0+16=0");
    EXPECT_EQ(TextOf(replacing.mUnpacked), "0.8+8=0");
    EXPECT_TRUE(replacing.mReplaces);
}

TEST(StructLayout, packs_a_wide_field_from_the_word_and_unpacks_it_from_the_bit)
{
    const StructEntry entry = EntryOf(LITTLE_ENDIAN_TARGET, 4, 20);
    EXPECT_EQ(TextOf(entry.mPacked), "0.0+16=0 1.0+16=16") << "also bits above the width";
    EXPECT_EQ(TextOf(entry.mUnpacked), "0.4+12=0 1.0+8=12");
    const StructEntry below = EntryOf(BIG_ENDIAN_TARGET, 32, 40);
    EXPECT_EQ(TextOf(below.mPacked), "2.0+16=0 1.0+16=16 0.0+16=32");
    EXPECT_EQ(TextOf(below.mUnpacked), "2.0+16=0 1.0+16=16 0.0+8=32");
}

TEST(StructLayout, has_nothing_to_unpack_of_64_bits)
{
    const StructEntry entry = EntryOf(LITTLE_ENDIAN_TARGET, 0, 64);
    EXPECT_THAT(entry.mPacked, SizeIs(4));
    EXPECT_THAT(entry.mUnpacked, IsEmpty());
}

TEST(StructLayout, has_signs_and_the_types_that_are_unpacked)
{
    const auto signedByte = ANumber("int8", "signed_decimal");
    EXPECT_TRUE(EntryOf(LITTLE_ENDIAN_TARGET, 4, 6, signedByte).mHasSign);
    EXPECT_FALSE(EntryOf(LITTLE_ENDIAN_TARGET, 4, 1, signedByte).mHasSign);
    EXPECT_FALSE(EntryOf(LITTLE_ENDIAN_TARGET, 8, 16, signedByte).mHasSign) << "it straddles";
    EXPECT_EQ(EntryOf(LITTLE_ENDIAN_TARGET, 4, 6, signedByte).mType, NUMERIC_INT8);
    EXPECT_EQ(EntryOf(LITTLE_ENDIAN_TARGET, 0, 9, ANumber("integer", "hexadecimal")).mType, NUMERIC_UINT16);
}

TEST(StructLayout, has_a_part_for_each_item_of_an_array)
{
    const StructEntry entry = EntryOf(LITTLE_ENDIAN_TARGET, 0, 20, ANumber("int8").Array());
    EXPECT_EQ(entry.mKind, StructEntryKind::ARRAY);
    EXPECT_EQ(entry.mItems, 3U);
    EXPECT_EQ(entry.mStride, 8U);
    ASSERT_THAT(entry.mParts, SizeIs(3));
    EXPECT_EQ(entry.mParts[1].mPosition, 8U);
    EXPECT_EQ(entry.mParts[1].mType, NUMERIC_UINT8);
    EXPECT_EQ(TextOf(entry.mParts[1].mPacked), "0.6+6=0") << "the width is shared out among the items";
    EXPECT_EQ(TextOf(entry.mParts[1].mUnpacked), "0.8+8=0");
    EXPECT_EQ(entry.mParts[1].mRecord, entry.mRecord);
}

TEST(StructLayout, has_a_part_for_each_word_of_a_field_of_more_than_64_bits)
{
    const StructEntry entry = EntryOf(BIG_ENDIAN_TARGET, 8, 72);
    EXPECT_EQ(entry.mKind, StructEntryKind::WORDS);
    EXPECT_EQ(entry.mItems, 4U);
    ASSERT_THAT(entry.mParts, SizeIs(5));
    EXPECT_EQ(TextOf(entry.mParts[1].mPacked), "1.0+16=0");
    EXPECT_EQ(TextOf(entry.mParts[1].mUnpacked), "1.0+16=0");
    EXPECT_TRUE(entry.mParts[1].mReplaces);
    EXPECT_EQ(TextOf(entry.mParts[4].mPacked), "4.0+16=0");
    EXPECT_THAT(entry.mParts[4].mUnpacked, IsEmpty()) << "a last, partial word is packed only";
}

TEST(StructLayout, has_the_sizes_of_the_struct)
{
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Field(0, 16).Field(16, 1);
    const CStructLayout geometry(layout.Detail());
    EXPECT_EQ(geometry.Bits(), 17U);
    EXPECT_EQ(geometry.Octets(), 3U);
    EXPECT_EQ(geometry.Words(), 2U);
    EXPECT_EQ(StructSizeInBits(layout.Detail()), 17U);
    EXPECT_EQ(geometry.Error(), "");
    EXPECT_FALSE(geometry.IsCutOff());
}

class BadStructLayout : public testing::Test
{
protected:
    ~BadStructLayout() override { EXPECT_EQ(mErrors.Text(), "") << "it is returned and not set"; }
    FrameworkErrors mErrors;
};

TEST_F(BadStructLayout, of_a_field_without_a_record_has_its_place)
{
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Detail().AddField("none", nullptr, 0, 8);
    layout.Field(8, 8);
    const CStructLayout geometry(layout.Detail());
    EXPECT_EQ(geometry.Error(), "a struct field has no metadata");
    ASSERT_THAT(geometry.Entries(), SizeIs(2));
    EXPECT_EQ(geometry.Entries()[0].mKind, StructEntryKind::ABSENT);
    EXPECT_EQ(TextOf(geometry.Entries()[1].mPacked), "0.8+8=0");
}

TEST_F(BadStructLayout, of_structs_that_hold_themselves_ends)
{
    Layout once(LITTLE_ENDIAN_TARGET);
    once.Field(0, 8);
    once.Detail().AddField("again", &once.Record(), 0, 8);
    EXPECT_EQ(CStructLayout(once.Detail()).Error(), "the metadata nests structs too deep");
    once.Detail().AddField("again", &once.Record(), 0, 8);
    const CStructLayout twice(once.Detail());
    EXPECT_NE(twice.Error(), "");
    EXPECT_TRUE(twice.IsCutOff());
}

TEST_F(BadStructLayout, of_fields_outside_of_the_struct_names_no_word)
{
    constexpr int MAX = std::numeric_limits<int>::max();
    for (const int position : { -17, -1, 16, 1600, MAX })
        for (const int width : { 8, 16, 32, 64, 80 }) {
            Layout nested(LITTLE_ENDIAN_TARGET);
            nested.Field(position, width, ANumber("uint64"));
            Layout layout(LITTLE_ENDIAN_TARGET);
            layout.Struct(0, 16, std::move(nested));
            const CStructLayout geometry(layout.Detail());
            const StructEntry & entry = geometry.Entries().at(0).mParts.at(0);
            EXPECT_THAT(entry.mPacked, IsEmpty());
            EXPECT_THAT(entry.mUnpacked, IsEmpty());
            for (const StructEntry & word : entry.mParts)
                EXPECT_THAT(word.mPacked, IsEmpty());
        }
}

TEST_F(BadStructLayout, of_a_struct_that_is_far_too_large_is_an_error)
{
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Field(0, -1);
    const CStructLayout geometry(layout.Detail());
    EXPECT_THAT(geometry.Error(), testing::HasSubstr("more than the 134217728 that one can have"));
    EXPECT_THAT(geometry.Entries(), IsEmpty());
    EXPECT_EQ(geometry.Words(), std::uint64_t{ 1 } << 60);
}

TEST_F(BadStructLayout, of_an_array_that_is_far_too_wide_for_its_struct_ends)
{
    Layout nested(LITTLE_ENDIAN_TARGET);
    nested.Field(0, std::numeric_limits<int>::max(), ANumber("uint8").Array());
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Struct(0, 16, std::move(nested));
    const CStructLayout geometry(layout.Detail());
    EXPECT_THAT(geometry.Error(), testing::HasSubstr("16 bits with more than"));
    EXPECT_TRUE(geometry.IsCutOff());
}

TEST(StructLayout, shows_no_more_than_asked_for)
{
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Field(0, 8).Field(8, 8).Field(16, 8);
    const CStructLayout geometry(layout.Detail(), 2);
    EXPECT_TRUE(geometry.IsCutOff());
    EXPECT_EQ(geometry.Error(), "") << "nothing is wrong with the metadata";
    EXPECT_FALSE(CStructLayout(layout.Detail(), 3).IsCutOff());
}

/// Packs and unpacks along the entries, and knows no rule but theirs.
class Follower
{
public:
    explicit Follower(const CStructLayout & layout)
        : mWords(layout.Words())
    {}

    /// What arrays with other than all their items need isn't in the entries.
    void Pack(const std::vector<StructEntry> & entries, const ModelValue & values)
    {
        for (std::size_t index = 0; index < values.mParts.size(); ++index)
            Pack(entries[index], values.mParts[index]);
    }

    ModelValue Unpack(const std::vector<StructEntry> & entries, std::size_t count)
    {
        ModelValue values;
        for (std::size_t index = 0; index < count; ++index)
            values.mParts.push_back(Unpack(entries[index]));
        return values;
    }

    Words mWords;

private:
    void Pack(const StructEntry & entry, const ModelValue & value)
    {
        if (value.mType == 9)
            return Pack(entry.mParts, value);
        const int bits = BitsOfType(value.mType);
        if (entry.mReplaces && bits > 16)
            return;
        for (const BitRun & run : entry.mPacked)
            for (std::uint32_t bit = 0; bit < run.mCount; ++bit) {
                const std::uint32_t valueBit = run.mValueBit + bit;
                const bool isSet =
                    valueBit < static_cast<std::uint32_t>(bits) && (value.mNumber >> valueBit & 1) != 0;
                const auto mask = static_cast<std::uint16_t>(1U << (run.mBit + bit));
                std::uint16_t & word = mWords.at(run.mWord);
                if (isSet)
                    word = static_cast<std::uint16_t>(word | mask);
                else if (entry.mReplaces && valueBit < static_cast<std::uint32_t>(bits))
                    word = static_cast<std::uint16_t>(word & ~mask);
            }
    }

    ModelValue Unpack(const StructEntry & entry)
    {
        if (entry.mKind == StructEntryKind::STRUCT)
            return Unpack(entry.mParts, entry.mParts.size());
        if (entry.mKind != StructEntryKind::NUMBER && entry.mKind != StructEntryKind::ENUMERATOR)
            return Unpack(entry.mParts, entry.mItems);
        std::uint64_t value = 0;
        for (const BitRun & run : entry.mUnpacked)
            for (std::uint32_t bit = 0; bit < run.mCount; ++bit)
                value |= std::uint64_t{ mWords.at(run.mWord) >> (run.mBit + bit) & 1U }
                         << (run.mValueBit + bit);
        if (entry.mHasSign && (value >> (entry.mWidth - 1) & 1) != 0)
            for (std::uint32_t bit = entry.mWidth; bit < 64; ++bit)
                value |= std::uint64_t{ 1 } << bit;
        return { entry.mKind == StructEntryKind::ENUMERATOR ? 10 : static_cast<int>(entry.mType), value, "",
            {} };
    }
};

/// As the model has it, but without the names of enumerators.
void DropNames(ModelValue & value)
{
    value.mName.clear();
    for (ModelValue & part : value.mParts)
        DropNames(part);
}

/// Whether arrays are given all their items, which alone have the places in the entries.
bool AreWhole(const std::vector<StructEntry> & entries, const ModelValue & values)
{
    for (std::size_t index = 0; index < values.mParts.size(); ++index) {
        const StructEntry & entry = entries[index];
        const ModelValue & value = values.mParts[index];
        if (entry.mKind == StructEntryKind::ARRAY && (value.mType != 9 || value.mParts.size() != entry.mItems))
            return false;
        if (value.mParts.size() > entry.mParts.size() || !AreWhole(entry.mParts, value))
            return false;
    }
    return true;
}

TEST(StructLayoutProperty, packs_as_the_model_does)
{
    CodecModel model;
    std::uint32_t compared = 0;
    for (std::uint32_t seed = 1; seed <= LAYOUTS && !testing::Test::HasFailure(); ++seed) {
        SCOPED_TRACE(seed);
        LayoutSource source(seed);
        const ModelStruct layout = source.Struct();
        const ModelValue values = source.Values(layout);
        for (const Origin origin : { OF_THE_LIBRARY, OF_A_PLUG_IN }) {
            BuiltLayout built(layout, origin);
            const CStructLayout geometry(built.Detail());
            EXPECT_EQ(geometry.Error(), "");
            if (!AreWhole(geometry.Entries(), values))
                continue;
            ++compared;
            Follower follower(geometry);
            follower.Pack(geometry.Entries(), values);
            EXPECT_EQ(follower.mWords, model.Encode(layout, values));
        }
    }
    EXPECT_GT(compared, LAYOUTS / 2);
}

TEST(StructLayoutProperty, unpacks_as_the_model_does)
{
    CodecModel model;
    for (std::uint32_t seed = 1; seed <= LAYOUTS && !testing::Test::HasFailure(); ++seed) {
        SCOPED_TRACE(seed);
        LayoutSource source(seed);
        const ModelStruct layout = source.Struct();
        for (const Origin origin : { OF_THE_LIBRARY, OF_A_PLUG_IN }) {
            BuiltLayout built(layout, origin);
            const CStructLayout geometry(built.Detail());
            Follower follower(geometry);
            follower.mWords = source.Words(geometry.Words());
            ModelValue expected = model.Decode(layout, follower.mWords);
            DropNames(expected);
            const ModelValue unpacked = follower.Unpack(geometry.Entries(), geometry.Entries().size());
            EXPECT_EQ(support::TextOf(unpacked), support::TextOf(expected));
        }
    }
}

}   // namespace
}   // namespace VrexZynConfigTools
