#include "trees.h"

#include <configtools/metadata.h>
#include <configtools/structlayout.h>
#include <kit/layout/structtree.h>

#include <gtest/gtest.h>

namespace VrexZynConfigTools::support {
namespace {

using kit::layout::CodecTree;

std::unique_ptr<CMetadata> Number(const std::string & name, const std::string & type = "uint8")
{
    return WithDetail(ARecord(0).Named(name).OfType(type));
}

std::unique_ptr<CMetadata> Array(const std::string & name, const std::string & type)
{
    return WithDetail(ARecord(0).Named(name).OfType(type).Array());
}

/// A key with a field of every shape that there is.
class StructTree : public testing::Test
{
protected:
    StructTree()
    {
        auto & colours = dynamic_cast<CMetadataDetailEnum &>(*mColour->Details());
        colours.AddEnum("RED", "1");
        colours.AddEnum("BLUE", "2");
        mInner.Add(*mLevel, 0, 3);
        mInner.Add(*mPair, 16, 32);
        mRow.Add(*mLeft, 0, 8);
        mRow.Add(*mRight, 8, 8);
        mKey.Add(*mColour, 0, 4);
        mKey.Add(*mGains, 8, 24);
        mKey.Add(*mWide, 32, 80);
        mKey.Add(*mInner.mRecord, 112, 48);
        mKey.Add(*mRow.mRecord, 160, 48);
        mKey.Add(*mLast, 208, 8);
    }

    std::string TreeText(const Instance & instance) const
    {
        const auto result = CodecTree(instance.Tree(), *mKey.mDetail);
        return result.mTree != nullptr ? Text(*result.mTree) : result.mError;
    }

    std::unique_ptr<CMetadata> mColour =
        WithDetail(ARecord(0).Named("Colour").OfType("uint8").Shaped(METADATA_ENUM));
    std::unique_ptr<CMetadata> mGains = Array("Gains", "int8");
    std::unique_ptr<CMetadata> mWide = Number("Wide", "uint64");
    std::unique_ptr<CMetadata> mLevel = Number("Level");
    std::unique_ptr<CMetadata> mPair = Array("Pair", "uint16");
    std::unique_ptr<CMetadata> mLeft = Number("Left");
    std::unique_ptr<CMetadata> mRight = Number("Right");
    std::unique_ptr<CMetadata> mLast = Number("Last");
    StructRecord mInner{ ARecord(0).Named("Inner") };
    StructRecord mRow{ ARecord(0).Named("Rows").Array() };
    StructRecord mKey{ ARecord(7).Named("Key") };

    const std::vector<std::int64_t> mValues{ 2, -1, 2, 3, 0x123456789ABCDEF0, 5, 600, 700, 11, 12, 99 };
};

TEST_F(StructTree, of_a_struct_read_field_by_field_has_one_entry_per_field)
{
    const Instance instance = ReadFieldByField(*mKey.mRecord, ListSource(mValues));
    ASSERT_EQ(Text(instance.Tree()), "(BLUE -1 2 3 1311768467463790320 (5 600 700) (11 12) 99)");

    EXPECT_EQ(TreeText(instance), "(BLUE (-1 2 3) (57072 39612 22136 4660 0) (5 (600 700)) ((11 12)) 99)");
}

TEST_F(StructTree, that_the_codec_unpacked_stays_as_it_is)
{
    const std::vector<std::int64_t> words{ 0x0A02, 0x0C0B, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12 };
    const Instance instance = ReadAsBlock(*mKey.mRecord, words);
    ASSERT_EQ(Text(instance.Tree()), "(BLUE (10 11 12) (1 2 3 4 5) (6 (7 8)) ((9 0) (10 0) (11 0)) 12)");

    EXPECT_EQ(TreeText(instance), Text(instance.Tree()));
}

TEST_F(StructTree, packs_and_unpacks_to_the_values_read_field_by_field)
{
    const Instance instance = ReadFieldByField(*mKey.mRecord, ListSource(mValues));

    const auto tree = CodecTree(instance.Tree(), *mKey.mDetail).mTree;
    ASSERT_NE(tree, nullptr);
    const Instance unpacked = ReadAsBlock(*mKey.mRecord, Pack(*tree, *mKey.mDetail));

    EXPECT_EQ(Text(unpacked.Tree()),   // array items come out unsigned, and all structs that the width holds
        "(BLUE (255 2 3) (57072 39612 22136 4660 0) (5 (600 700)) ((11 12) (0 0) (0 0)) 99)");
}

TEST_F(StructTree, carries_the_metadata_that_the_codecs_tree_carries)
{
    const Instance instance = ReadFieldByField(*mKey.mRecord, ListSource(mValues));
    const Instance block = ReadAsBlock(*mKey.mRecord, std::vector<std::int64_t>(14, 1));
    const auto tree = CodecTree(instance.Tree(), *mKey.mDetail).mTree;
    ASSERT_NE(tree, nullptr);

    EXPECT_EQ(tree->Metadata(), mKey.mRecord.get());
    const auto recordOf = [](CComplexPayload & list, std::size_t place) {
        return dynamic_cast<IMetadataUser &>(*list.GetFields().at(place)).Metadata();
    };
    for (std::size_t place = 0; place < 6; ++place)
        EXPECT_EQ(recordOf(*tree, place), recordOf(block.Tree(), place)) << place;
    auto & items = dynamic_cast<CComplexPayload &>(*tree->GetFields().at(1));
    EXPECT_EQ(recordOf(items, 0), nullptr);
}

TEST_F(StructTree, leaves_the_instance_untouched_and_shares_nothing_with_it)
{
    std::unique_ptr<CComplexPayload> tree;
    {
        const Instance instance = ReadFieldByField(*mKey.mRecord, ListSource(mValues));
        const std::string before = Text(instance.Tree());
        tree = CodecTree(instance.Tree(), *mKey.mDetail).mTree;
        EXPECT_EQ(Text(instance.Tree()), before);
    }
    EXPECT_EQ(Text(*tree), "(BLUE (-1 2 3) (57072 39612 22136 4660 0) (5 (600 700)) ((11 12)) 99)");
}

TEST_F(StructTree, keeps_the_items_that_a_short_array_has)
{
    // The source ends within the array, so what comes behind it is read as 0.
    const Instance instance = ReadFieldByField(*mKey.mRecord, ListSource({ 1, 8, 9 }));

    EXPECT_EQ(TreeText(instance), "(RED (8 9) (0 0 0 0 0) (0 (0)) ((0 0)) 0)");
}

TEST_F(StructTree, tells_items_apart_by_the_widths_where_no_value_carries_a_record)
{
    CComplexPayload plain(PAYLOAD_COMPLEX);
    for (const std::uint32_t value : { 1U, 2U, 3U, 4U, 5U })
        plain.AddField(new CUint32Payload(value));
    StructRecord key{ ARecord(7).Named("Key") };
    key.Add(*mLevel, 0, 8);
    key.Add(*mGains, 8, 24);
    key.Add(*mLast, 32, 8);

    EXPECT_EQ(Text(*CodecTree(plain, *key.mDetail).mTree), "(1 (2 3 4) 5)");
}

TEST_F(StructTree, leaves_later_fields_their_values_where_an_array_is_short)
{
    CComplexPayload plain(PAYLOAD_COMPLEX);
    for (const std::uint32_t value : { 1U, 2U, 3U })
        plain.AddField(new CUint32Payload(value));
    StructRecord key{ ARecord(7).Named("Key") };
    key.Add(*mGains, 0, 24);
    key.Add(*mLevel, 24, 8);
    key.Add(*mLast, 32, 8);

    EXPECT_EQ(Text(*CodecTree(plain, *key.mDetail).mTree), "((1) 2 3)");
}

TEST_F(StructTree, counts_the_items_of_fields_that_share_a_record_by_their_widths)
{
    StructRecord key{ ARecord(7).Named("Key") };
    key.Add(*mGains, 0, 16);
    key.Add(*mGains, 16, 24);
    const Instance instance = ReadFieldByField(*key.mRecord, ListSource({ 1, 2, 3, 4, 5 }));

    EXPECT_EQ(Text(*CodecTree(instance.Tree(), *key.mDetail).mTree), "((1 2) (3 4 5))");
}

TEST_F(StructTree, takes_a_single_struct_without_a_record_for_an_array_of_one)
{
    CComplexPayload plain(PAYLOAD_COMPLEX);
    auto * const row = new CComplexPayload(PAYLOAD_COMPLEX);
    row->AddField(new CUint8Payload(1));
    row->AddField(new CUint8Payload(2));
    plain.AddField(row);
    StructRecord key{ ARecord(7).Named("Key") };
    key.Add(*mRow.mRecord, 0, 48);

    EXPECT_EQ(Text(*CodecTree(plain, *key.mDetail).mTree), "(((1 2)))");
}

/// A key of one field.
class StructTreeOfOneField : public testing::Test
{
protected:
    std::string TreeText(const ARecord & field, int width, const ListSource & source)
    {
        const auto record = WithDetail(field);
        StructRecord key{ ARecord(7).Named("Key") };
        key.Add(*record, 0, width);
        const Instance instance = ReadFieldByField(*key.mRecord, source);
        const auto result = CodecTree(instance.Tree(), *key.mDetail);
        return result.mTree != nullptr ? Text(*result.mTree) : result.mError;
    }

    std::string UnpackedText(const ARecord & field, int width, const std::vector<std::int64_t> & words)
    {
        const auto record = WithDetail(field);
        StructRecord key{ ARecord(7).Named("Key") };
        key.Add(*record, 0, width);
        return Text(*CodecTree(ReadAsBlock(*key.mRecord, words).Tree(), *key.mDetail).mTree);
    }
};

TEST_F(StructTreeOfOneField, fills_a_wide_number_up_with_its_sign_only_if_its_format_is_signed)
{
    const ARecord plain = ARecord(0).Named("W").OfType("int16");
    const ARecord withSign = ARecord(plain).Formatted("signed_decimal");

    EXPECT_EQ(TreeText(withSign, 80, ListSource({ -2 })), "((65534 65535 65535 65535 65535))");
    EXPECT_EQ(TreeText(withSign, 80, ListSource({ 2 })), "((2 0 0 0 0))");
    EXPECT_EQ(TreeText(plain, 80, ListSource({ -2 })), "((65534 0 0 0 0))");
}

TEST_F(StructTreeOfOneField, holds_only_the_whole_words_of_a_wide_field)
{
    EXPECT_EQ(TreeText(ARecord(0).OfType("integer"), 72, ListSource({ -1 })), "((65535 65535 65535 65535))");
}

TEST_F(StructTreeOfOneField, has_texts_as_texts_of_either_carrier)
{
    const ARecord text = ARecord(0).Named("T").OfType("string").Within(0, 20);

    EXPECT_EQ(TreeText(text, 24, ListSource({}, { "AB" })), "(AB)");
    EXPECT_EQ(TreeText(text, 80, ListSource({}, { "ABC" })), "(ABC)");
    EXPECT_EQ(UnpackedText(text, 24, { 16961, 0 }), "(AB)");
    EXPECT_EQ(UnpackedText(text, 64 + 16, { 16961, 67, 0, 0, 0 }), "(ABC)");
    EXPECT_EQ(
        UnpackedText(ARecord(text).OfType("octet_string"), 32, { 0xFF, 0 }), std::string("(\xFF\0\0\0)", 6));
}

TEST_F(StructTreeOfOneField, gives_unpacked_items_the_type_of_their_array)
{
    EXPECT_EQ(UnpackedText(ARecord(0).OfType("int8").Array(), 16, { 0x80FF }), "((-1 -128))");
    EXPECT_EQ(UnpackedText(ARecord(0).OfType("uint8").Array(), 16, { 0x80FF }), "((255 128))");
    EXPECT_EQ(UnpackedText(ARecord(0).OfType("int32").Array(), 32, { 0xFFFE, 0xFFFF }), "((-2))");
}

TEST_F(StructTreeOfOneField, refuses_a_text_that_the_field_does_not_hold)
{
    const ARecord text = ARecord(0).Named("T").OfType("string").Within(0, 20);

    EXPECT_EQ(TreeText(text, 12, ListSource({}, { "AB" })),
        "T: the value is no number, and no text that fits into 12 bits");
    EXPECT_EQ(TreeText(text, 64, ListSource({}, { "123456789" })),
        "T: the value is no number, and no text that fits into 64 bits");
    EXPECT_EQ(TreeText(text, 72, ListSource({}, { "123456789" })),
        "T: the text has more bytes than the 8 of the field's words");
}

TEST(StructTreeSizes, are_those_of_the_codec)
{
    const auto number = Number("N", "uint32");
    for (const bool isLittleEndian : { true, false }) {
        StructRecord key{ ARecord(7).Named("Key"), isLittleEndian };
        key.Add(*number, 32, 32);
        EXPECT_EQ(StructSizeInBits(*key.mDetail), isLittleEndian ? 64U : 48U);
        CComplexPayload nothing(PAYLOAD_COMPLEX);
        EXPECT_EQ(Pack(nothing, *key.mDetail).size(), isLittleEndian ? 4U : 3U);
    }
}

TEST(StructTreeSizes, round_the_items_of_an_array_up)
{
    EXPECT_EQ(kit::layout::ItemsHeld(24, "uint8"), 3U);
    EXPECT_EQ(kit::layout::ItemsHeld(40, "int32"), 2U);
    EXPECT_EQ(kit::layout::ItemsHeld(40, "integer"), 0U);
    EXPECT_EQ(kit::layout::ItemsHeld(-8, "uint8"), 0U);
}

}   // namespace
}   // namespace VrexZynConfigTools::support
