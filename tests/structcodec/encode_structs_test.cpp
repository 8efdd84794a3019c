#include "layouts.h"

#include <configtools/structcodec.h>
#include <support/debug_capture.h>
#include <support/framework_errors.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>

namespace VrexZynConfigTools {
namespace {

using namespace support;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;

/// No test of this file leaves an error, apart from those of hostile_test.cpp.
class Encode : public testing::Test
{
protected:
    ~Encode() override { EXPECT_EQ(mErrors.Text(), ""); }

    FrameworkErrors mErrors;
};

using EncodeStruct = Encode;   // nested
using EncodeSize = Encode;
using EncodeExample = Encode;

Layout InnerPair(ByteOrder order, const ARecord & record = ARecord(0))
{
    Layout inner(order, false, record);
    inner.Field(0, 8).Field(8, 8);
    return inner;
}

TEST_F(EncodeStruct, a_nested_struct_counts_its_positions_from_its_own)
{
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Field(0, 16).Struct(16, 16, InnerPair(LITTLE_ENDIAN_TARGET)).Field(32, 16);
    EXPECT_THAT(
        Encoded(layout, ATree(new CUint16Payload(1), ABranch(new CUint8Payload(0x34), new CUint8Payload(0x12)),
                            new CUint16Payload(2))),
        ElementsAre(1, 0x1234, 2));
}

TEST_F(EncodeStruct, a_nested_struct_may_start_within_a_word)
{
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Struct(4, 8, std::move(Layout(LITTLE_ENDIAN_TARGET).Field(0, 4).Field(4, 4)));
    EXPECT_THAT(
        Encoded(layout, ATree(ABranch(new CUint8Payload(3), new CUint8Payload(5)))), ElementsAre(0x530));
}

TEST_F(EncodeStruct, each_struct_has_a_byte_order_of_its_own)
{
    Layout little(LITTLE_ENDIAN_TARGET);
    little.Field(0, 32).Struct(32, 32, std::move(Layout(BIG_ENDIAN_TARGET).Field(16, 32)));
    Layout big(BIG_ENDIAN_TARGET);
    big.Field(16, 32).Struct(32, 32, std::move(Layout(LITTLE_ENDIAN_TARGET).Field(0, 32)));
    const auto tree = ATree(new CUint32Payload(0x12345678), ABranch(new CUint32Payload(0x9ABCDEF0)));
    EXPECT_THAT(Encoded(little, tree), ElementsAre(0x5678, 0x1234, 0x9ABC, 0xDEF0));
    EXPECT_THAT(Encoded(big, tree), ElementsAre(0x1234, 0x5678, 0xDEF0, 0x9ABC));
}

TEST_F(EncodeStruct, only_the_outermost_struct_says_whether_it_is_octets)
{
    Layout words(LITTLE_ENDIAN_TARGET);
    words.Struct(0, 8, std::move(Layout(LITTLE_ENDIAN_TARGET, true).Field(0, 8)));
    EXPECT_THAT(Encoded(words, ATree(ABranch(new CUint8Payload(0x41)))), ElementsAre(0x41));
    Layout octets(LITTLE_ENDIAN_TARGET, true);
    octets.Struct(0, 8, std::move(Layout(LITTLE_ENDIAN_TARGET).Field(0, 8)));
    EXPECT_EQ(EncodedOctets(octets, ATree(ABranch(new CUint8Payload(0x41)))), "41");
}

TEST_F(EncodeStruct, structs_nest_at_any_depth)
{
    Layout layout(LITTLE_ENDIAN_TARGET);
    Layout middle(LITTLE_ENDIAN_TARGET);
    middle.Field(0, 8).Struct(8, 16, InnerPair(LITTLE_ENDIAN_TARGET));
    layout.Field(0, 8).Struct(8, 24, std::move(middle));
    EXPECT_THAT(
        Encoded(layout, ATree(new CUint8Payload(1), ABranch(new CUint8Payload(2),
                                                        ABranch(new CUint8Payload(3), new CUint8Payload(4))))),
        ElementsAre(0x0201, 0x0403));
}

TEST_F(EncodeStruct, an_array_of_structs_repeats_at_the_size_of_one)
{
    Layout inner(LITTLE_ENDIAN_TARGET, false, ARecord(0).Array());
    inner.Field(0, 8).Field(16, 4);   // 20 bits each
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Field(0, 8).Struct(8, 60, std::move(inner)).Field(80, 16);
    const auto tree =
        ATree(new CUint8Payload(0xAA), ABranch(ABranch(new CUint8Payload(0x11), new CUint8Payload(0x1)),
                                           ABranch(new CUint8Payload(0x22), new CUint8Payload(0x2)),
                                           ABranch(new CUint8Payload(0x33), new CUint8Payload(0x3))));
    // at 8, 28 and 48; the second one's first field loses what would lie above its word
    EXPECT_THAT(Encoded(layout, tree), ElementsAre(0x11AA, 0x2100, 0x2000, 0x0033, 0x0003, 0));
}

TEST_F(EncodeStruct, the_size_of_one_follows_its_own_byte_order)
{
    Layout inner(BIG_ENDIAN_TARGET, false, ARecord(0).Array());
    inner.Field(16, 32);   // ends at 32: the position names the last word
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Struct(0, 64, std::move(inner));
    EXPECT_THAT(Encoded(layout, ATree(ABranch(ABranch(new CUint32Payload(0x12345678)),
                                    ABranch(new CUint32Payload(0x9ABCDEF0))))),
        ElementsAre(0x1234, 0x5678, 0x9ABC, 0xDEF0));
}

TEST_F(EncodeStruct, short_arrays_and_short_structs_leave_zeros)
{
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Struct(0, 48, InnerPair(LITTLE_ENDIAN_TARGET, ARecord(0).Array())).Field(48, 16);
    EXPECT_THAT(
        Encoded(layout, ATree(ABranch(ABranch(new CUint8Payload(1)), ABranch()))), ElementsAre(1, 0, 0, 0));
}

TEST_F(EncodeStruct, a_short_list_leaves_the_later_fields_zero)
{
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Field(0, 16).Field(16, 16).Field(32, 16);
    EXPECT_THAT(Encoded(layout, ATree(new CUint16Payload(7))), ElementsAre(7, 0, 0));
    EXPECT_THAT(Encoded(layout, ATree()), ElementsAre(0, 0, 0));
}

TEST_F(EncodeStruct, values_follow_the_order_of_the_list_and_not_of_the_positions)
{
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Field(16, 16).Field(0, 16);
    EXPECT_THAT(Encoded(layout, ATree(new CUint16Payload(1), new CUint16Payload(2))), ElementsAre(2, 1));
}

TEST_F(EncodeStruct, a_null_value_leaves_its_field_zero)
{
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Field(0, 16).Field(16, 16);
    EXPECT_THAT(Encoded(layout, ATreeOf({ nullptr, new CUint16Payload(2) })), ElementsAre(0, 2));
}

/// The number of octets of a struct, which is told by its octet form.
std::size_t OctetsOfStruct(Layout & layout)
{
    return EncodedOctets(layout, ATree()).size() / 2;
}

std::size_t OctetsOfField(ByteOrder order, int position, int width, const ARecord & record = ANumber())
{
    Layout layout(order, true);
    layout.Field(position, width, record);
    return OctetsOfStruct(layout);
}

TEST_F(EncodeSize, is_the_largest_end_of_any_field)
{
    Layout layout(LITTLE_ENDIAN_TARGET, true);
    layout.Field(8, 8).Field(40, 9).Field(0, 4);
    EXPECT_EQ(OctetsOfStruct(layout), 7U);
    Layout none(LITTLE_ENDIAN_TARGET, true);
    EXPECT_EQ(OctetsOfStruct(none), 0U);
}

TEST_F(EncodeSize, octets_are_rounded_up)
{
    EXPECT_EQ(OctetsOfField(LITTLE_ENDIAN_TARGET, 0, 8), 1U);
    EXPECT_EQ(OctetsOfField(LITTLE_ENDIAN_TARGET, 0, 9), 2U);
    EXPECT_EQ(OctetsOfField(LITTLE_ENDIAN_TARGET, 15, 1), 2U);
    EXPECT_EQ(OctetsOfField(LITTLE_ENDIAN_TARGET, 16, 1), 3U);
}

TEST_F(EncodeSize, a_big_endian_number_of_17_to_64_bits_ends_16_bits_above_its_position)
{
    EXPECT_EQ(OctetsOfField(BIG_ENDIAN_TARGET, 64, 16), 10U);
    EXPECT_EQ(OctetsOfField(BIG_ENDIAN_TARGET, 64, 17), 10U) << "the position names the last word";
    EXPECT_EQ(OctetsOfField(BIG_ENDIAN_TARGET, 64, 32), 10U);
    EXPECT_EQ(OctetsOfField(BIG_ENDIAN_TARGET, 64, 64), 10U);
    EXPECT_EQ(OctetsOfField(BIG_ENDIAN_TARGET, 64, 65), 17U);
    EXPECT_EQ(OctetsOfField(BIG_ENDIAN_TARGET, 64, 15), 10U);
    EXPECT_EQ(OctetsOfField(BIG_ENDIAN_TARGET, 64, 8), 9U);
}

TEST_F(EncodeSize, only_plain_numbers_of_big_endian_structs_end_so)
{
    EXPECT_EQ(OctetsOfField(LITTLE_ENDIAN_TARGET, 64, 32), 12U);
    EXPECT_EQ(OctetsOfField(BIG_ENDIAN_TARGET, 64, 32, ANumber("uint8").Array()), 12U);
    EXPECT_EQ(OctetsOfField(BIG_ENDIAN_TARGET, 64, 32, ANumber().Shaped(METADATA_NONE)), 12U);

    Layout enumerated(BIG_ENDIAN_TARGET, true);
    enumerated.Enum(64, 32, {});
    EXPECT_EQ(OctetsOfStruct(enumerated), 12U);
    Layout nested(BIG_ENDIAN_TARGET, true);
    nested.Struct(64, 32, InnerPair(BIG_ENDIAN_TARGET));
    EXPECT_EQ(OctetsOfStruct(nested), 12U);
}

TEST_F(EncodeSize, of_a_nested_struct_is_what_its_field_says)
{
    Layout layout(LITTLE_ENDIAN_TARGET, true);
    layout.Struct(0, 40, InnerPair(LITTLE_ENDIAN_TARGET));
    EXPECT_EQ(OctetsOfStruct(layout), 5U);
}

Layout LittleExample(bool isOctetsInBin)
{
    Layout layout(LITTLE_ENDIAN_TARGET, isOctetsInBin);
    layout.Field(0, 3).Field(3, 5).Field(8, 16).Field(24, 8).Field(32, 32).Field(64, 40);
    return layout;
}

std::unique_ptr<CComplexPayload> LittleValues()
{
    return ATree(new CUint8Payload(0x5), new CUint8Payload(0x11), new CUint16Payload(0xBEEF),
        new CUint8Payload(0x7F), new CUint32Payload(0x12345678), new CUint64Payload(0xAABBCCDD));
}

TEST_F(EncodeExample, little_endian_in_words)
{
    Layout layout = LittleExample(false);
    EXPECT_THAT(
        Encoded(layout, LittleValues()), ElementsAre(0xEF8D, 0x7FBE, 0x5678, 0x1234, 0xCCDD, 0xAABB, 0x0000));
}

TEST_F(EncodeExample, little_endian_in_octets)
{
    Layout layout = LittleExample(true);
    EXPECT_EQ(EncodedOctets(layout, LittleValues()), "8defbe7f78563412ddccbbaa00");
}

TEST_F(EncodeExample, big_endian)
{
    Layout layout(BIG_ENDIAN_TARGET);
    layout.Field(0, 16).Field(32, 32).Field(48, 4).Field(52, 12);
    EXPECT_THAT(Encoded(layout, ATree(new CUint16Payload(0x1111), new CUint32Payload(0x12345678),
                                    new CUint8Payload(0xA), new CUint16Payload(0xBCD))),
        ElementsAre(0x1111, 0x1234, 0x5678, 0xBCDA));
}

TEST_F(EncodeExample, a_number_with_a_sign)
{
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Field(4, 6, ANumber("int8", "signed_decimal"));
    EXPECT_THAT(Encoded(layout, ATree(new CInt8Payload(-5))), ElementsAre(0x03B0));
}

TEST_F(EncodeExample, is_traced_with_its_words_and_its_size)
{
    Layout layout = LittleExample(false);
    CStructCodec codec;
    const auto values = LittleValues();
    DebugCapture debug;
    codec.Encode(*values, layout.Detail());
    const auto lines = debug.TextsOf("VrexZynConfigTools::CStructCodec::Encode", 1);
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_THAT(lines.front(),
        AllOf(HasSubstr("0xef8d 0x7fbe 0x5678 0x1234 0xccdd 0xaabb 0x0000"), HasSubstr("Total bitsize=104")));
}

TEST_F(EncodeExample, traces_each_field_with_the_words_that_it_was_packed_into)
{
    Layout layout = LittleExample(false);
    CStructCodec codec;
    const auto values = LittleValues();
    DebugCapture debug;
    codec.Encode(*values, layout.Detail());
    EXPECT_THAT(debug.TextsOf("VrexZynConfigTools::CStructCodec::EncodeField", 1),
        testing::ElementsAre("position=0, size=3, words: 0x0005 ", "position=3, size=5, words: 0x008d ",
            "position=8, size=16, words: 0xef8d 0x00be ", "position=24, size=8, words: 0x7fbe ",
            "position=32, size=32, words: 0x5678 0x1234 ",
            "position=64, size=40, words: 0xccdd 0xaabb 0x0000 "));
}

}   // namespace
}   // namespace VrexZynConfigTools
