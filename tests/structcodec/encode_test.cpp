#include "layouts.h"

#include <configtools/structcodec.h>
#include <support/framework_errors.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>

namespace VrexZynConfigTools {
namespace {

using namespace support;
using testing::ElementsAre;

/// No test of this file leaves an error, apart from those of hostile_test.cpp.
class Encode : public testing::Test
{
protected:
    ~Encode() override { EXPECT_EQ(mErrors.Text(), ""); }

    FrameworkErrors mErrors;
};

using EncodeNarrow = Encode;   // up to 15 bits
using EncodeWord = Encode;     // 16 bits
using EncodeWide = Encode;     // 17 bits and more
using EncodeArray = Encode;

Layout OneField(ByteOrder order, int position, int width, const ARecord & record = ANumber())
{
    Layout layout(order);
    layout.Field(position, width, record);
    return layout;
}

constexpr ByteOrder BOTH_ORDERS[] = { LITTLE_ENDIAN_TARGET, BIG_ENDIAN_TARGET };

TEST_F(EncodeNarrow, a_field_of_up_to_15_bits_lies_at_its_very_bit)
{
    for (const ByteOrder order : BOTH_ORDERS) {
        for (int width = 1; width <= 15; ++width) {
            for (int bit = 0; bit + width <= 16; ++bit) {
                Layout layout = OneField(order, 16 + bit, width);
                const unsigned ones = (1U << width) - 1;
                EXPECT_THAT(Encoded(layout, ATree(new CUint16Payload(0xFFFF))), ElementsAre(0, ones << bit))
                    << width << " at " << bit;
            }
        }
    }
}

TEST_F(EncodeNarrow, two_fields_share_a_word)
{
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Field(0, 8).Field(8, 8);
    EXPECT_THAT(Encoded(layout, ATree(new CUint8Payload(0x34), new CUint8Payload(0x12))), ElementsAre(0x1234));
}

TEST_F(EncodeNarrow, fields_that_overlap_are_merged)
{
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Field(0, 8).Field(4, 8);
    EXPECT_THAT(Encoded(layout, ATree(new CUint8Payload(0x11), new CUint8Payload(0x22))), ElementsAre(0x0231));
}

TEST_F(EncodeNarrow, bits_above_the_width_are_masked)
{
    Layout layout = OneField(LITTLE_ENDIAN_TARGET, 2, 4);
    EXPECT_THAT(Encoded(layout, ATree(new CUint32Payload(0xFFFFFFF5))), ElementsAre(0x14));
}

TEST_F(EncodeNarrow, bits_above_the_word_are_lost)
{
    for (const ByteOrder order : BOTH_ORDERS) {
        Layout layout = OneField(order, 10, 12);
        EXPECT_THAT(Encoded(layout, ATree(new CUint16Payload(0xFED))), ElementsAre(0x2D << 10, 0));
    }
}

TEST_F(EncodeNarrow, a_negative_number_is_zero_extended_from_its_own_width)
{
    Layout layout = OneField(LITTLE_ENDIAN_TARGET, 0, 12);
    EXPECT_THAT(Encoded(layout, ATree(new CInt8Payload(-5))), ElementsAre(0x0FB));
    EXPECT_THAT(Encoded(layout, ATree(new CInt16Payload(-5))), ElementsAre(0xFFB));
}

TEST_F(EncodeNarrow, takes_its_bits_from_every_kind_of_payload)
{
    Layout layout = OneField(LITTLE_ENDIAN_TARGET, 1, 7);
    EXPECT_THAT(Encoded(layout, ATree(new CInt8Payload(0x55))), ElementsAre(0xAA));
    EXPECT_THAT(Encoded(layout, ATree(new CInt16Payload(0x55))), ElementsAre(0xAA));
    EXPECT_THAT(Encoded(layout, ATree(new CInt32Payload(0x55))), ElementsAre(0xAA));
    EXPECT_THAT(Encoded(layout, ATree(new CInt64Payload(0x55))), ElementsAre(0xAA));
    EXPECT_THAT(Encoded(layout, ATree(new CUint8Payload(0x55))), ElementsAre(0xAA));
    EXPECT_THAT(Encoded(layout, ATree(new CUint16Payload(0x55))), ElementsAre(0xAA));
    EXPECT_THAT(Encoded(layout, ATree(new CUint32Payload(0x55))), ElementsAre(0xAA));
    EXPECT_THAT(Encoded(layout, ATree(new CUint64Payload(0x55))), ElementsAre(0xAA));
    EXPECT_THAT(Encoded(layout, ATree(new CEnumPayload("name", 0x55))), ElementsAre(0xAA));
}

TEST_F(EncodeNarrow, a_payload_of_more_than_64_bits_counts_as_0)
{
    Layout layout = OneField(LITTLE_ENDIAN_TARGET, 0, 8);
    EXPECT_THAT(Encoded(layout, ATree(new CStringPayload("text", false))), ElementsAre(0));
}

TEST_F(EncodeNarrow, a_complex_payload_gives_its_bytes_one_after_the_other)
{
    Layout layout = OneField(LITTLE_ENDIAN_TARGET, 0, 15);
    EXPECT_THAT(
        Encoded(layout, ATree(ABranch(new CUint8Payload(0x34), new CUint8Payload(0x12)))), ElementsAre(0x1234));
}

TEST_F(EncodeWord, straddles_two_words_at_bit_8_of_a_little_endian_struct)
{
    Layout layout = OneField(LITTLE_ENDIAN_TARGET, 24, 16);
    EXPECT_THAT(Encoded(layout, ATree(new CUint16Payload(0xBEEF))), ElementsAre(0, 0xEF00, 0x00BE));
}

TEST_F(EncodeWord, is_merged_with_its_neighbours_where_it_straddles)
{
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Field(0, 8).Field(24, 8).Field(8, 16);
    EXPECT_THAT(
        Encoded(layout, ATree(new CUint8Payload(0x11), new CUint8Payload(0x22), new CUint16Payload(0xBEEF))),
        ElementsAre(0xEF11, 0x22BE));
}

TEST_F(EncodeWord, takes_the_low_16_bits_of_any_payload_where_it_straddles)
{
    Layout layout = OneField(LITTLE_ENDIAN_TARGET, 8, 16);
    EXPECT_THAT(Encoded(layout, ATree(new CUint64Payload(0xAABBCCDDEEFF1234))), ElementsAre(0x3400, 0x12));
    EXPECT_THAT(Encoded(layout, ATree(new CInt8Payload(-1))), ElementsAre(0xFF00, 0)) << "zero-extended";
}

TEST_F(EncodeWord, replaces_its_word)
{
    for (const ByteOrder order : BOTH_ORDERS) {
        Layout narrowFirst(order);
        narrowFirst.Field(0, 8).Field(0, 16);
        EXPECT_THAT(Encoded(narrowFirst, ATree(new CUint8Payload(0xFF), new CUint16Payload(0x1200))),
            ElementsAre(0x1200));
        Layout narrowLast(order);
        narrowLast.Field(0, 16).Field(0, 8);
        EXPECT_THAT(Encoded(narrowLast, ATree(new CUint16Payload(0x1200), new CUint8Payload(0xFF))),
            ElementsAre(0x12FF))
            << "the order of the fields matters";
    }
}

TEST_F(EncodeWord, fills_its_word_whatever_bit_its_position_names)
{
    for (int bit = 0; bit < 16; ++bit) {
        Layout layout = OneField(BIG_ENDIAN_TARGET, 16 + bit, 16);
        const Words words = Encoded(layout, ATree(new CUint16Payload(0xBEEF)));
        EXPECT_EQ(words.size(), bit == 0 ? 2U : 3U);
        EXPECT_EQ(words[1], 0xBEEF) << bit << ", 8 included";
    }
    Layout layout = OneField(LITTLE_ENDIAN_TARGET, 7, 16);
    EXPECT_THAT(Encoded(layout, ATree(new CUint16Payload(0xBEEF))), ElementsAre(0xBEEF, 0));
}

TEST_F(EncodeWord, takes_nothing_of_a_wider_payload)
{
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Field(0, 8).Field(0, 16);
    EXPECT_THAT(Encoded(layout, ATree(new CUint8Payload(0x77), new CUint32Payload(1))), ElementsAre(0x77));
    EXPECT_THAT(Encoded(layout, ATree(new CUint8Payload(0x77), new CEnumPayload("on", 1))), ElementsAre(0x77))
        << "an enumerator has 32 bits";
}

TEST_F(EncodeWord, takes_only_the_low_byte_from_a_payload_of_8_bits)
{
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Field(0, 16).Field(0, 16);
    EXPECT_THAT(
        Encoded(layout, ATree(new CUint16Payload(0x1234), new CUint8Payload(0xAB))), ElementsAre(0x12AB));
}

TEST_F(EncodeWide, a_field_of_17_to_32_bits_takes_two_words)
{
    for (int width = 17; width <= 32; ++width) {
        Layout little = OneField(LITTLE_ENDIAN_TARGET, 16, width);
        EXPECT_THAT(Encoded(little, ATree(new CUint32Payload(0x12345678))), ElementsAre(0, 0x5678, 0x1234))
            << width;
        Layout big = OneField(BIG_ENDIAN_TARGET, 32, width);
        EXPECT_THAT(Encoded(big, ATree(new CUint32Payload(0x12345678))), ElementsAre(0, 0x1234, 0x5678))
            << width;
    }
}

TEST_F(EncodeWide, a_field_of_33_to_48_bits_takes_three_words)
{
    for (int width = 33; width <= 48; ++width) {
        Layout little = OneField(LITTLE_ENDIAN_TARGET, 0, width);
        EXPECT_THAT(
            Encoded(little, ATree(new CUint64Payload(0x123456789ABC))), ElementsAre(0x9ABC, 0x5678, 0x1234));
        Layout big = OneField(BIG_ENDIAN_TARGET, 32, width);
        EXPECT_THAT(
            Encoded(big, ATree(new CUint64Payload(0x123456789ABC))), ElementsAre(0x1234, 0x5678, 0x9ABC));
    }
}

TEST_F(EncodeWide, a_field_of_49_to_64_bits_takes_four_words)
{
    for (int width = 49; width <= 64; ++width) {
        Layout little = OneField(LITTLE_ENDIAN_TARGET, 0, width);
        EXPECT_THAT(Encoded(little, ATree(new CUint64Payload(0xFEDCBA9876543210))),
            ElementsAre(0x3210, 0x7654, 0xBA98, 0xFEDC));
        Layout big = OneField(BIG_ENDIAN_TARGET, 48, width);
        EXPECT_THAT(Encoded(big, ATree(new CUint64Payload(0xFEDCBA9876543210))),
            ElementsAre(0xFEDC, 0xBA98, 0x7654, 0x3210));
    }
}

TEST_F(EncodeWide, the_value_isnt_masked_to_the_width)
{
    Layout two = OneField(LITTLE_ENDIAN_TARGET, 0, 17);
    EXPECT_THAT(Encoded(two, ATree(new CUint64Payload(0xFFFFFFFFFFFFFFFF))), ElementsAre(0xFFFF, 0xFFFF));
    Layout three = OneField(LITTLE_ENDIAN_TARGET, 0, 33);
    EXPECT_THAT(
        Encoded(three, ATree(new CUint64Payload(0xFFFFFFFFFFFFFFFF))), ElementsAre(0xFFFF, 0xFFFF, 0xFFFF));
}

TEST_F(EncodeWide, starts_on_a_word_boundary_whatever_bit_its_position_names)
{
    Layout twenty = OneField(LITTLE_ENDIAN_TARGET, 4, 20);
    EXPECT_THAT(Encoded(twenty, ATree(new CUint32Payload(0xABCDE))), ElementsAre(0xBCDE, 0xA));
    Layout forty = OneField(LITTLE_ENDIAN_TARGET, 8, 40);
    EXPECT_THAT(Encoded(forty, ATree(new CUint64Payload(0x123456789A))), ElementsAre(0x789A, 0x3456, 0x12));
}

TEST_F(EncodeWide, is_merged_with_what_is_there)
{
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Field(0, 8).Field(16, 8).Field(0, 32).Field(32, 8).Field(16, 48);
    EXPECT_THAT(
        Encoded(layout, ATree(new CUint8Payload(1), new CUint8Payload(2), new CUint32Payload(0x40004000),
                            new CUint8Payload(4), new CUint64Payload(0x800080008000))),
        ElementsAre(0x4001, 0xC002, 0x8004, 0x8000));
}

TEST_F(EncodeWide, a_negative_number_is_zero_extended)
{
    Layout layout = OneField(LITTLE_ENDIAN_TARGET, 0, 48);
    EXPECT_THAT(Encoded(layout, ATree(new CInt16Payload(-2))), ElementsAre(0xFFFE, 0, 0));
    EXPECT_THAT(Encoded(layout, ATree(new CInt32Payload(-2))), ElementsAre(0xFFFE, 0xFFFF, 0));
    EXPECT_THAT(Encoded(layout, ATree(new CInt64Payload(-2))), ElementsAre(0xFFFE, 0xFFFF, 0xFFFF));
}

TEST_F(EncodeWide, over_64_bits_each_part_of_the_payload_replaces_a_word_upward)
{
    for (const ByteOrder order : BOTH_ORDERS) {
        Layout layout(order);
        layout.Field(16, 8).Field(16, 80);
        EXPECT_THAT(Encoded(layout, ATree(new CUint8Payload(0xFF), AWordBranch({ 1, 2, 3, 4, 5 }))),
            ElementsAre(0, 1, 2, 3, 4, 5));
    }
}

TEST_F(EncodeWide, over_64_bits_starts_on_a_word_boundary_too)
{
    Layout layout = OneField(LITTLE_ENDIAN_TARGET, 8, 65);
    EXPECT_THAT(Encoded(layout, ATree(AWordBranch({ 1, 2, 3, 4, 5 }))), ElementsAre(1, 2, 3, 4, 5));
}

TEST_F(EncodeWide, over_64_bits_the_payload_says_how_many_words_there_are)
{
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Field(0, 72).Field(96, 16);
    EXPECT_THAT(Encoded(layout, ATree(AWordBranch({ 1, 2 }))), ElementsAre(1, 2, 0, 0, 0, 0, 0));
    EXPECT_THAT(Encoded(layout, ATree(AWordBranch({ 1, 2, 3, 4, 5, 6 }))), ElementsAre(1, 2, 3, 4, 5, 6, 0));
}

TEST_F(EncodeWide, over_64_bits_parts_of_other_widths_are_taken_as_a_word_takes_them)
{
    Layout layout = OneField(LITTLE_ENDIAN_TARGET, 0, 80);
    EXPECT_THAT(Encoded(layout, ATree(ABranch(new CUint32Payload(7), new CUint8Payload(0xAB)))),
        ElementsAre(0, 0xAB, 0, 0, 0));
}

TEST_F(EncodeArray, the_width_is_shared_out_among_the_items)
{
    Layout layout = OneField(LITTLE_ENDIAN_TARGET, 0, 32, ANumber("uint8").Array());
    EXPECT_THAT(Encoded(layout, ATree(ABranch(new CUint8Payload(0x11), new CUint8Payload(0x22),
                                    new CUint8Payload(0x33), new CUint8Payload(0x44)))),
        ElementsAre(0x2211, 0x4433));
}

TEST_F(EncodeArray, the_type_of_the_items_plays_no_part)
{
    Layout layout = OneField(LITTLE_ENDIAN_TARGET, 0, 32, ANumber("uint8").Array());
    EXPECT_THAT(Encoded(layout, ATree(AWordBranch({ 0x1234, 0x5678 }))), ElementsAre(0x1234, 0x5678))
        << "two items get 16 bits each";
    EXPECT_THAT(Encoded(layout, ATree(ABranch(new CUint32Payload(0x12345678)))), ElementsAre(0x5678, 0x1234));
}

TEST_F(EncodeArray, the_share_of_an_item_is_rounded_down)
{
    Layout layout = OneField(LITTLE_ENDIAN_TARGET, 0, 16, ANumber("uint8").Array());
    EXPECT_THAT(
        Encoded(layout, ATree(ABranch(new CUint8Payload(0xFF), new CUint8Payload(0), new CUint8Payload(0xFF)))),
        ElementsAre(0x7C1F));
}

TEST_F(EncodeArray, more_items_than_bits_leave_nothing)
{
    Layout layout = OneField(LITTLE_ENDIAN_TARGET, 0, 2, ANumber("uint8").Array());
    EXPECT_THAT(
        Encoded(layout, ATree(ABranch(new CUint8Payload(1), new CUint8Payload(1), new CUint8Payload(1)))),
        ElementsAre(0));
}

TEST_F(EncodeArray, an_empty_array_leaves_zeros)
{
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Field(0, 32, ANumber("uint16").Array()).Field(32, 16);
    EXPECT_THAT(Encoded(layout, ATree(ABranch(), new CUint16Payload(7))), ElementsAre(0, 0, 7));
}

TEST_F(EncodeArray, each_item_follows_the_rules_of_its_share)
{
    Layout straddling = OneField(LITTLE_ENDIAN_TARGET, 8, 32, ANumber("uint16").Array());
    EXPECT_THAT(Encoded(straddling, ATree(AWordBranch({ 0x1234, 0x5678 }))), ElementsAre(0x3400, 0x7812, 0x56));
    Layout big = OneField(BIG_ENDIAN_TARGET, 16, 64, ANumber("uint32").Array());
    EXPECT_THAT(Encoded(big, ATree(ABranch(new CUint32Payload(0x12345678), new CUint32Payload(0x9ABCDEF0)))),
        ElementsAre(0x1234, 0x5678, 0x9ABC, 0xDEF0, 0))
        << "each item's high half lies one word below";
    Layout wide = OneField(LITTLE_ENDIAN_TARGET, 0, 160, ANumber("uint64").Array());
    EXPECT_THAT(Encoded(wide, ATree(ABranch(AWordBranch({ 1, 2, 3, 4, 5 }), AWordBranch({ 6, 7, 8, 9, 10 })))),
        ElementsAre(1, 2, 3, 4, 5, 6, 7, 8, 9, 10));
}

TEST_F(EncodeArray, a_plain_value_is_packed_as_16_bits_whatever_the_width)
{
    for (const int width : { 8, 32, 80 }) {
        Layout layout(LITTLE_ENDIAN_TARGET);
        layout.Field(0, width, ANumber("uint8").Array()).Field(80, 16);
        EXPECT_THAT(Encoded(layout, ATree(new CUint16Payload(0xBEEF))), ElementsAre(0xBEEF, 0, 0, 0, 0, 0))
            << width;
    }
    Layout straddling = OneField(LITTLE_ENDIAN_TARGET, 8, 32, ANumber("uint8").Array());
    EXPECT_THAT(Encoded(straddling, ATree(new CUint16Payload(0xBEEF))), ElementsAre(0xEF00, 0xBE, 0));
}

TEST_F(EncodeArray, an_array_of_enumerators_is_an_array)
{
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Enum(0, 16, { { "on", "1" } }, ANumber("uint8").Array());
    EXPECT_THAT(Encoded(layout, ATree(ABranch(new CEnumPayload("on", 1), new CEnumPayload("other", 2)))),
        ElementsAre(0x0201));
}

}   // namespace
}   // namespace VrexZynConfigTools
