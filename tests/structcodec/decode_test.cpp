#include "layouts.h"

#include <configtools/structcodec.h>
#include <support/debug_capture.h>
#include <support/framework_errors.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>

// The values of fields. Trees as text show the type code of each payload: "5:7" is an unsigned 16-bit 7.

namespace VrexZynConfigTools {
namespace {

using namespace support;
using testing::Contains;
using testing::IsEmpty;

class Decode : public testing::Test
{
protected:
    ~Decode() override { EXPECT_EQ(mErrors.Text(), ""); }

    FrameworkErrors mErrors;
};

using DecodeNarrow = Decode;   // up to 15 bits
using DecodeWord = Decode;     // 16 bits
using DecodeWide = Decode;     // 17 bits and more
using DecodeSign = Decode;
using DecodeType = Decode;
using DecodeEnum = Decode;

constexpr ByteOrder BOTH_ORDERS[] = { LITTLE_ENDIAN_TARGET, BIG_ENDIAN_TARGET };

/// The value of a single field that is an unsigned 64-bit number, so that every bit shows.
std::uint64_t ValueOf(ByteOrder order, int position, int width, const Words & words,
    const std::string & format = "", int reach = 96)
{
    Layout layout(order);
    layout.Field(position, width, ANumber("uint64", format)).Field(0, reach, ANumber());
    const Decoded decoded = support::Decode(layout, words);
    auto * const value = dynamic_cast<CUint64Payload *>(decoded.mOut->GetFields().front());
    EXPECT_NE(value, nullptr);
    return value != nullptr ? value->GetValue() : 0;
}

std::string TextOfField(int position, int width, const ARecord & record, const Words & words,
    ByteOrder order = LITTLE_ENDIAN_TARGET)
{
    Layout layout(order);
    layout.Field(position, width, record);
    return DecodedText(layout, words);
}

TEST_F(DecodeNarrow, a_field_of_up_to_15_bits_is_read_from_its_very_bit)
{
    for (const ByteOrder order : BOTH_ORDERS) {
        for (int width = 1; width <= 15; ++width) {
            for (int bit = 0; bit + width <= 16; ++bit) {
                const unsigned mask = (1U << width) - 1;
                EXPECT_EQ(ValueOf(order, 16 + bit, width, { 0xFFFF, 0xA35C, 0xFFFF }), 0xA35CU >> bit & mask);
            }
        }
    }
}

TEST_F(DecodeNarrow, nothing_is_carried_over_from_the_next_word)
{
    for (const ByteOrder order : BOTH_ORDERS)
        EXPECT_EQ(ValueOf(order, 10, 12, { 0xB400, 0xFFFF }), 0x2DU);
}

TEST_F(DecodeNarrow, fields_may_overlap)
{
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Field(0, 8, ANumber("uint8")).Field(4, 8, ANumber("uint8"));
    EXPECT_EQ(DecodedText(layout, { 0x0231 }), "9:(4:49 4:35)");
}

TEST_F(DecodeWord, straddles_two_words_at_bit_8_of_a_little_endian_struct)
{
    EXPECT_EQ(ValueOf(LITTLE_ENDIAN_TARGET, 24, 16, { 0xFFFF, 0xEF11, 0x22BE }), 0xBEEFU);
}

TEST_F(DecodeWord, has_no_sign_where_it_straddles)
{
    EXPECT_EQ(ValueOf(LITTLE_ENDIAN_TARGET, 8, 16, { 0xFF00, 0x00FF }, "signed_decimal"), 0xFFFFU);
    EXPECT_EQ(ValueOf(LITTLE_ENDIAN_TARGET, 0, 16, { 0xFFFF }, "signed_decimal"), 0xFFFFFFFFFFFFFFFFU);
}

TEST_F(DecodeWord, is_its_word_on_a_word_boundary)
{
    for (const ByteOrder order : BOTH_ORDERS)
        EXPECT_EQ(ValueOf(order, 16, 16, { 0xFFFF, 0x8001, 0xFFFF }), 0x8001U);
}

TEST_F(DecodeWord, is_shifted_down_by_any_other_bit_and_misses_what_lies_above)
{
    for (int bit = 1; bit < 16; ++bit) {
        EXPECT_EQ(ValueOf(BIG_ENDIAN_TARGET, 16 + bit, 16, { 0xFFFF, 0xABCD, 0xFFFF }), 0xABCDU >> bit) << bit;
        if (bit != 8) {
            EXPECT_EQ(ValueOf(LITTLE_ENDIAN_TARGET, 16 + bit, 16, { 0xFFFF, 0xABCD, 0xFFFF }), 0xABCDU >> bit)
                << bit;
        }
    }
}

TEST_F(DecodeWide, little_endian_goes_on_in_the_words_above)
{
    const Words words = { 0xFFFF, 0x3210, 0x7654, 0xBA98, 0xFEDC, 0xFFFF };
    for (int width = 17; width <= 63; ++width) {
        const std::uint64_t mask = (std::uint64_t{ 1 } << width) - 1;
        EXPECT_EQ(ValueOf(LITTLE_ENDIAN_TARGET, 16, width, words), 0xFEDCBA9876543210U & mask) << width;
    }
}

TEST_F(DecodeWide, big_endian_goes_on_in_the_words_below)
{
    const Words words = { 0xFFFF, 0xFEDC, 0xBA98, 0x7654, 0x3210, 0xFFFF };
    for (int width = 17; width <= 63; ++width) {
        const std::uint64_t mask = (std::uint64_t{ 1 } << width) - 1;
        EXPECT_EQ(ValueOf(BIG_ENDIAN_TARGET, 64, width, words), 0xFEDCBA9876543210U & mask) << width;
    }
}

TEST_F(DecodeWide, is_read_from_its_very_bit)
{
    EXPECT_EQ(ValueOf(LITTLE_ENDIAN_TARGET, 4, 20, { 0xBCDE, 0xFFFA }), 0xFABCDU & 0xFFFFF);
    EXPECT_EQ(ValueOf(BIG_ENDIAN_TARGET, 20, 20, { 0xFFFA, 0xBCDE }), 0xFABCDU & 0xFFFFF);
}

TEST_F(DecodeWide, loses_the_bits_past_the_words_that_its_width_needs)
{
    EXPECT_EQ(ValueOf(LITTLE_ENDIAN_TARGET, 14, 20, { 0xC000, 0xFFFF, 0xFFFF }), 0x3FFFFU) << "18 of 20 bits";
    EXPECT_EQ(ValueOf(LITTLE_ENDIAN_TARGET, 4, 32, { 0xFFFF, 0xFFFF, 0xFFFF }), 0x0FFFFFFFU);
    EXPECT_EQ(
        ValueOf(LITTLE_ENDIAN_TARGET, 15, 63, { 0xFFFF, 0xFFFF, 0xFFFF, 0xFFFF, 0xFFFF }), 0x0001FFFFFFFFFFFFU);
}

TEST_F(DecodeWide, of_20_bits_at_bit_4_doesnt_come_back_as_it_was_packed)
{
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Field(4, 20, ANumber("uint32"));
    const Words words = Encoded(layout, ATree(new CUint32Payload(0xABCDE)));
    EXPECT_EQ(DecodedText(layout, words), "9:(6:43981)") << "0xABCD: packed at bit 0, read at bit 4";
}

TEST_F(DecodeWide, of_exactly_64_bits_is_always_0)
{
    for (const ByteOrder order : BOTH_ORDERS) {
        for (const char * const format : { "", "signed_decimal", "unsigned_decimal", "hexadecimal" }) {
            for (const int position : { 0, 16, 48, 52 })
                EXPECT_EQ(ValueOf(order, position, 64, Words(9, 0xFFFF), format, 144), 0U) << position;
        }
    }
}

TEST_F(DecodeWide, of_exactly_64_bits_is_0_even_after_packing)
{
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Field(0, 64, ANumber("uint64"));
    const Words words = Encoded(layout, ATree(new CUint64Payload(0xFEDCBA9876543210)));
    EXPECT_EQ(words, (Words{ 0x3210, 0x7654, 0xBA98, 0xFEDC }));
    EXPECT_EQ(DecodedText(layout, words), "9:(7:0)");
}

TEST_F(DecodeWide, over_64_bits_is_a_payload_per_word_upward)
{
    for (const ByteOrder order : BOTH_ORDERS) {
        EXPECT_EQ(TextOfField(16, 80, ANumber(), { 9, 1, 2, 3, 4, 5 }, order), "9:(9:(5:1 5:2 5:3 5:4 5:5))");
    }
}

TEST_F(DecodeWide, over_64_bits_a_partial_word_is_dropped)
{
    EXPECT_EQ(TextOfField(0, 65, ANumber(), { 1, 2, 3, 4, 5 }), "9:(9:(5:1 5:2 5:3 5:4))");
    EXPECT_EQ(TextOfField(0, 72, ANumber(), { 1, 2, 3, 4, 5 }), "9:(9:(5:1 5:2 5:3 5:4))");
    EXPECT_EQ(TextOfField(0, 79, ANumber(), { 1, 2, 3, 4, 5 }), "9:(9:(5:1 5:2 5:3 5:4))");
}

TEST_F(DecodeWide, over_64_bits_starts_on_a_word_boundary_whatever_its_position_and_type)
{
    EXPECT_EQ(TextOfField(24, 72, ANumber("int8", "signed_decimal"), { 9, 0xFF01, 2, 3, 4, 5 }),
        "9:(9:(5:65281 5:2 5:3 5:4))");
    Layout enumerated(LITTLE_ENDIAN_TARGET);
    enumerated.Enum(0, 65, { { "on", "1" } });
    EXPECT_EQ(DecodedText(enumerated, { 1, 0, 0, 0, 0 }), "9:(9:(5:1 5:0 5:0 5:0))");
}

TEST_F(DecodeSign, all_bits_above_the_field_become_its_highest_one)
{
    EXPECT_EQ(ValueOf(LITTLE_ENDIAN_TARGET, 4, 6, { 0x03B0 }, "signed_decimal"), 0xFFFFFFFFFFFFFFFBU);
    EXPECT_EQ(ValueOf(LITTLE_ENDIAN_TARGET, 4, 6, { 0x01B0 }, "signed_decimal"), 0x1BU) << "the bit is clear";
    EXPECT_EQ(TextOfField(4, 6, ANumber("int64", "signed_decimal"), { 0x03B0 }), "9:(3:-5)");
}

TEST_F(DecodeSign, holds_for_widths_of_2_to_63_bits)
{
    for (const ByteOrder order : BOTH_ORDERS) {
        for (int width = 2; width <= 63; ++width)
            EXPECT_EQ(ValueOf(order, 48, width, Words(7, 0xFFFF), "signed_decimal", 112), ~std::uint64_t{ 0 })
                << width;
    }
}

TEST_F(DecodeSign, a_single_bit_has_none)
{
    EXPECT_EQ(ValueOf(LITTLE_ENDIAN_TARGET, 3, 1, { 0xFFFF }, "signed_decimal"), 1U);
}

TEST_F(DecodeSign, no_other_format_has_one)
{
    for (const char * const format :
        { "", "unsigned_decimal", "hexadecimal", "mac_addr", "SIGNED_DECIMAL", "signed_decimal " })
    {
        EXPECT_EQ(ValueOf(LITTLE_ENDIAN_TARGET, 4, 6, { 0xFFFF }, format), 0x3FU) << format;
        EXPECT_EQ(ValueOf(LITTLE_ENDIAN_TARGET, 0, 16, { 0xFFFF }, format), 0xFFFFU) << format;
        EXPECT_EQ(ValueOf(LITTLE_ENDIAN_TARGET, 0, 40, { 0xFFFF, 0xFFFF, 0xFFFF }, format), 0xFFFFFFFFFFU)
            << format;
    }
}

TEST_F(DecodeSign, a_signed_type_alone_gives_none_to_the_bits_above)
{
    EXPECT_EQ(TextOfField(0, 6, ANumber("int8"), { 0x3B }), "9:(0:59)");
    EXPECT_EQ(TextOfField(0, 8, ANumber("int8"), { 0xFB }), "9:(0:-5)") << "the type's own highest bit";
}

TEST_F(DecodeType, a_type_of_its_own_width_is_taken_whatever_the_field_has)
{
    const Words words = { 0x8182 };
    EXPECT_EQ(TextOfField(0, 16, ANumber("int8"), words), "9:(0:-126)");
    EXPECT_EQ(TextOfField(0, 16, ANumber("int16"), words), "9:(1:-32382)");
    EXPECT_EQ(TextOfField(0, 16, ANumber("int32"), words), "9:(2:33154)");
    EXPECT_EQ(TextOfField(0, 16, ANumber("int64"), words), "9:(3:33154)");
    EXPECT_EQ(TextOfField(0, 16, ANumber("uint8"), words), "9:(4:130)");
    EXPECT_EQ(TextOfField(0, 16, ANumber("uint16"), words), "9:(5:33154)");
    EXPECT_EQ(TextOfField(0, 16, ANumber("uint32"), words), "9:(6:33154)");
    EXPECT_EQ(TextOfField(0, 16, ANumber("uint64"), words), "9:(7:33154)");
    EXPECT_EQ(TextOfField(0, 16, ANumber("uint64", "signed_decimal"), words), "9:(7:18446744073709519234)");
    EXPECT_EQ(TextOfField(0, 16, ANumber("uint16", "signed_decimal"), words), "9:(5:33154)");
}

TEST_F(DecodeType, a_type_without_a_width_becomes_the_smallest_that_fits)
{
    const Words words(4, 0);
    for (const char * const type : { "integer", "string", "", "uint", "int" }) {
        const auto typeOf = [&](int width, const char * format) {
            return TextOfField(0, width, ANumber(type, format), words);
        };
        EXPECT_EQ(typeOf(1, ""), "9:(0:0)") << type;
        EXPECT_EQ(typeOf(8, "signed_decimal"), "9:(0:0)");
        EXPECT_EQ(typeOf(9, "mac_addr"), "9:(1:0)");
        EXPECT_EQ(typeOf(17, ""), "9:(2:0)");
        EXPECT_EQ(typeOf(64, ""), "9:(3:0)");
        EXPECT_EQ(typeOf(8, "unsigned_decimal"), "9:(4:0)");
        EXPECT_EQ(typeOf(16, "unsigned_decimal"), "9:(5:0)");
        EXPECT_EQ(typeOf(32, "hexadecimal"), "9:(6:0)");
        EXPECT_EQ(typeOf(33, "hexadecimal"), "9:(7:0)");
        EXPECT_EQ(typeOf(64, "unsigned_decimal"), "9:(7:0)");
    }
}

TEST_F(DecodeType, without_bits_the_records_own_type_is_taken_as_it_stands)
{
    DebugCapture debug;
    EXPECT_EQ(TextOfField(0, 0, ANumber("integer"), {}), "9:(3:0)") << "which means 64 bits";
    EXPECT_THAT(debug.TextsOf("VrexZynConfigTools::CStructCodec::GetIntTypeFromBitWidth"),
        Contains("Unable to return the correct integer type. bitWidth = 0"));
    EXPECT_EQ(TextOfField(0, 0, ANumber("uint8"), {}), "9:(4:0)");
}

TEST_F(DecodeType, without_bits_and_without_any_type_a_zero_keeps_the_fields_in_step)
{
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Field(0, 0, ANumber("string")).Field(0, 8, ANumber("uint8"));
    const Decoded decoded = support::Decode(layout, { 7 });
    EXPECT_EQ(TextOf(*decoded.mOut), "9:(3:0 4:7)");
    auto * const zero = dynamic_cast<IMetadataUser *>(decoded.mOut->GetFields().front());
    EXPECT_EQ(zero->Metadata(), &layout.FieldRecord(0));
}

TEST_F(DecodeEnum, gets_the_name_of_its_number)
{
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Enum(4, 3, { { "off", "0" }, { "on", "1" }, { "auto", "5" } });
    const Decoded decoded = support::Decode(layout, { 0xFFDF });
    EXPECT_EQ(TextOf(*decoded.mOut), "9:(10:auto)");
    auto * const payload = dynamic_cast<CEnumPayload *>(decoded.mOut->GetFields().front());
    ASSERT_NE(payload, nullptr);
    EXPECT_EQ(payload->GetValue(), 5);
    EXPECT_EQ(payload->Metadata(), &layout.FieldRecord(0));
}

TEST_F(DecodeEnum, without_a_name_gets_the_empty_one_and_no_error)
{
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Enum(0, 8, { { "off", "0" } });
    const Decoded decoded = support::Decode(layout, { 77 });
    EXPECT_TRUE(decoded.mResult);
    auto * const payload = dynamic_cast<CEnumPayload *>(decoded.mOut->GetFields().front());
    ASSERT_NE(payload, nullptr);
    EXPECT_EQ(payload->GetName(), "");
    EXPECT_EQ(payload->GetValue(), 77);
}

TEST_F(DecodeEnum, gets_the_last_of_several_names_in_name_order)
{
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Enum(0, 8, { { "b", "1" }, { "a", "1" }, { "c", "2" } });
    EXPECT_EQ(DecodedText(layout, { 1 }), "9:(10:b)");
}

TEST_F(DecodeEnum, may_be_negative)
{
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Enum(0, 4, { { "minus", "-2" }, { "plus", "14" } }, ANumber("int8", "signed_decimal"));
    EXPECT_EQ(DecodedText(layout, { 0xE }), "9:(10:minus)");
}

TEST_F(DecodeEnum, is_cut_down_to_32_bits)
{
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Enum(0, 48, { { "low", "65536" } });
    EXPECT_EQ(DecodedText(layout, { 0, 1, 0xFFFF }), "9:(10:low)");
}

TEST_F(DecodeEnum, of_16_bits_may_straddle)
{
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Enum(8, 16, { { "beef", "48879" } });
    EXPECT_EQ(DecodedText(layout, { 0xEF00, 0xBE }), "9:(10:beef)");
}

TEST_F(DecodeEnum, asks_without_adding_names)
{
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Enum(0, 8, { { "off", "0" } });
    DecodedText(layout, { 9 });
    EXPECT_EQ(layout.FieldRecord(0).Details()->GetEnums()->size(), 1U);
}

}   // namespace
}   // namespace VrexZynConfigTools
