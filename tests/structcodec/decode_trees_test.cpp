#include "layouts.h"

#include <configtools/structcodec.h>
#include <support/framework_errors.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>

// Arrays, structs within structs, and which payloads know their records.

namespace VrexZynConfigTools {
namespace {

using namespace support;

class Decode : public testing::Test
{
protected:
    ~Decode() override { EXPECT_EQ(mErrors.Text(), ""); }

    FrameworkErrors mErrors;
};

using DecodeArray = Decode;
using DecodeStruct = Decode;
using DecodeRecord = Decode;
using DecodeExample = Decode;

constexpr ByteOrder BOTH_ORDERS[] = { LITTLE_ENDIAN_TARGET, BIG_ENDIAN_TARGET };

std::string TextOfArray(int position, int width, const std::string & type, const Words & words,
    ByteOrder order = LITTLE_ENDIAN_TARGET)
{
    Layout layout(order);
    layout.Field(position, width, ANumber(type, "signed_decimal").Array());
    return DecodedText(layout, words);
}

TEST_F(DecodeArray, items_of_8_bits_come_from_their_word_alone)
{
    for (const ByteOrder order : BOTH_ORDERS) {
        EXPECT_EQ(TextOfArray(0, 32, "uint8", { 0x0201, 0x0403 }, order), "9:(9:(4:1 4:2 4:3 4:4))");
        EXPECT_EQ(TextOfArray(4, 16, "uint8", { 0xABC0, 0xFFFF }, order), "9:(9:(4:188 4:10))")
            << "the second has but 4 bits left in its word";
    }
}

TEST_F(DecodeArray, items_of_16_bits_straddle_at_bit_8_of_a_little_endian_struct)
{
    EXPECT_EQ(TextOfArray(8, 32, "uint16", { 0x3400, 0x7812, 0xFF56 }), "9:(9:(5:4660 5:22136))");
}

TEST_F(DecodeArray, other_items_of_16_bits_are_their_words)
{
    for (const ByteOrder order : BOTH_ORDERS) {
        EXPECT_EQ(TextOfArray(16, 32, "uint16", { 9, 1, 2 }, order), "9:(9:(5:1 5:2))");
        EXPECT_EQ(TextOfArray(4, 32, "uint16", { 0xABCD, 2, 3 }, order), "9:(9:(5:43981 5:2))")
            << "whatever the bit";
    }
    EXPECT_EQ(TextOfArray(8, 16, "uint16", { 0xABCD, 2 }, BIG_ENDIAN_TARGET), "9:(9:(5:43981))");
}

TEST_F(DecodeArray, items_of_32_bits_go_on_above_or_below_by_the_byte_order)
{
    EXPECT_EQ(TextOfArray(0, 64, "uint32", { 1, 2, 3, 4 }), "9:(9:(6:131073 6:262147))");
    EXPECT_EQ(TextOfArray(16, 64, "uint32", { 1, 2, 3, 4, 5 }, BIG_ENDIAN_TARGET), "9:(9:(6:65538 6:196612))")
        << "the word below has the high half";
    EXPECT_EQ(TextOfArray(4, 32, "uint32", { 0xABCD, 2, 3 }), "9:(9:(6:175053))") << "whatever the bit";
}

TEST_F(DecodeArray, items_of_64_bits_yield_32_at_a_stride_of_64)
{
    EXPECT_EQ(TextOfArray(0, 128, "uint64", { 1, 2, 3, 4, 5, 6, 7, 8 }), "9:(9:(6:131073 6:393221))");
}

TEST_F(DecodeArray, signed_items_come_out_unsigned)
{
    const Words ones(4, 0xFFFF);
    EXPECT_EQ(TextOfArray(0, 8, "int8", ones), "9:(9:(4:255))");
    EXPECT_EQ(TextOfArray(0, 16, "int16", ones), "9:(9:(5:65535))");
    EXPECT_EQ(TextOfArray(0, 32, "int32", ones), "9:(9:(6:4294967295))");
    EXPECT_EQ(TextOfArray(0, 64, "int64", ones), "9:(9:(6:4294967295))");
}

TEST_F(DecodeArray, the_number_of_items_is_rounded_up)
{
    EXPECT_EQ(TextOfArray(0, 1, "uint8", { 0x0201 }), "9:(9:(4:1))");
    EXPECT_EQ(TextOfArray(0, 9, "uint8", { 0x0201 }), "9:(9:(4:1 4:2))");
    EXPECT_EQ(TextOfArray(0, 17, "uint16", { 1, 2 }), "9:(9:(5:1 5:2))");
    EXPECT_EQ(TextOfArray(0, 65, "uint64", { 1, 2, 3, 4, 5 }), "9:(9:(6:131073 6:5))")
        << "of the second one half lies outside";
}

TEST_F(DecodeArray, items_without_a_width_are_none)
{
    EXPECT_EQ(TextOfArray(0, 32, "integer", { 1, 2 }), "9:(9:())");
    EXPECT_EQ(TextOfArray(0, 32, "string", { 1, 2 }), "9:(9:())");
    EXPECT_EQ(TextOfArray(0, 32, "", { 1, 2 }), "9:(9:())");
}

TEST_F(DecodeArray, of_more_than_64_bits_is_still_an_array)
{
    EXPECT_EQ(TextOfArray(0, 80, "uint16", { 1, 2, 3, 4, 5 }), "9:(9:(5:1 5:2 5:3 5:4 5:5))");
}

TEST_F(DecodeArray, of_enumerators_has_plain_items)
{
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Enum(0, 16, { { "on", "1" } }, ANumber("uint8").Array());
    EXPECT_EQ(DecodedText(layout, { 0x0201 }), "9:(9:(4:1 4:2))");
}

Layout InnerPair(ByteOrder order, const ARecord & record = ARecord(0))
{
    Layout inner(order, false, record);
    inner.Field(0, 8, ANumber("uint8")).Field(8, 8, ANumber("uint8"));
    return inner;
}

TEST_F(DecodeStruct, counts_positions_from_its_own)
{
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Field(0, 16, ANumber("uint16")).Struct(16, 16, InnerPair(LITTLE_ENDIAN_TARGET)).Field(32, 8);
    EXPECT_EQ(DecodedText(layout, { 1, 0x0302, 4 }), "9:(5:1 9:(4:2 4:3) 0:4)");
}

TEST_F(DecodeStruct, each_has_a_byte_order_of_its_own)
{
    const ARecord number = ANumber("uint32");
    Layout little(LITTLE_ENDIAN_TARGET);
    little.Field(0, 32, number).Struct(32, 32, std::move(Layout(BIG_ENDIAN_TARGET).Field(16, 32, number)));
    EXPECT_EQ(DecodedText(little, { 1, 2, 3, 4 }), "9:(6:131073 9:(6:196612))");
    Layout big(BIG_ENDIAN_TARGET);
    big.Field(16, 32, number).Struct(32, 32, std::move(Layout(LITTLE_ENDIAN_TARGET).Field(0, 32, number)));
    EXPECT_EQ(DecodedText(big, { 1, 2, 3, 4 }), "9:(6:65538 9:(6:262147))");
}

TEST_F(DecodeStruct, only_the_outermost_says_whether_it_is_octets)
{
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Struct(0, 8, std::move(Layout(LITTLE_ENDIAN_TARGET, true).Field(0, 8, ANumber("uint8"))));
    EXPECT_EQ(DecodedText(layout, { 7 }), "9:(9:(4:7))");
}

TEST_F(DecodeStruct, the_width_of_its_field_isnt_looked_at)
{
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Struct(0, 1, InnerPair(LITTLE_ENDIAN_TARGET)).Struct(0, 0, InnerPair(LITTLE_ENDIAN_TARGET));
    EXPECT_EQ(DecodedText(layout, { 0x0201 }), "9:(9:(4:1 4:2) 9:(4:1 4:2))");
}

TEST_F(DecodeStruct, an_array_has_as_many_as_fit_whole)
{
    for (const int width : { 32, 40, 47 }) {
        Layout layout(LITTLE_ENDIAN_TARGET);
        layout.Struct(0, width, InnerPair(LITTLE_ENDIAN_TARGET, ARecord(0).Array()));
        EXPECT_EQ(DecodedText(layout, { 0x0201, 0x0403, 0x0605 }), "9:(9:(9:(4:1 4:2) 9:(4:3 4:4)))") << width;
    }
    Layout none(LITTLE_ENDIAN_TARGET);
    none.Struct(0, 15, InnerPair(LITTLE_ENDIAN_TARGET, ARecord(0).Array()));
    EXPECT_EQ(DecodedText(none, { 0x0201 }), "9:(9:())");
}

TEST_F(DecodeStruct, an_array_repeats_at_the_size_of_one)
{
    Layout inner(BIG_ENDIAN_TARGET, false, ARecord(0).Array());
    inner.Field(16, 32, ANumber("uint32"));   // 32 bits: the position names the last word
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Struct(16, 64, std::move(inner));
    EXPECT_EQ(DecodedText(layout, { 9, 1, 2, 3, 4 }), "9:(9:(9:(6:65538) 9:(6:196612)))");
}

TEST_F(DecodeStruct, structs_nest_at_any_depth)
{
    Layout middle(LITTLE_ENDIAN_TARGET, false, ARecord(0).Array());
    middle.Field(0, 8, ANumber("uint8")).Struct(8, 16, InnerPair(LITTLE_ENDIAN_TARGET));
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Struct(0, 48, std::move(middle));
    EXPECT_EQ(
        DecodedText(layout, { 0x0201, 0x0403, 0x0605 }), "9:(9:(9:(4:1 9:(4:2 4:3)) 9:(4:4 9:(4:5 4:6))))");
}

TEST_F(DecodeStruct, values_follow_the_order_of_the_list_and_not_of_the_positions)
{
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Field(16, 16, ANumber("uint16")).Field(0, 16, ANumber("uint16"));
    EXPECT_EQ(DecodedText(layout, { 1, 2 }), "9:(5:2 5:1)");
}

const IMetadata * RecordOf(IPayload * payload)
{
    auto * const user = dynamic_cast<IMetadataUser *>(payload);
    EXPECT_NE(user, nullptr);
    return user != nullptr ? user->Metadata() : nullptr;
}

const std::vector<IPayload *> & FieldsOf(IPayload * payload)
{
    static const std::vector<IPayload *> NONE;
    auto * const complex = dynamic_cast<CComplexPayload *>(payload);
    EXPECT_NE(complex, nullptr);
    return complex != nullptr ? complex->GetFields() : NONE;
}

TEST_F(DecodeRecord, a_scalar_has_that_of_its_field)
{
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Field(0, 8).Field(8, 16).Field(32, 32).Field(64, 64).Enum(128, 8, {});
    const Decoded decoded = support::Decode(layout, Words(9, 1));
    const auto & fields = decoded.mOut->GetFields();
    ASSERT_EQ(fields.size(), 5U);
    for (std::size_t number = 0; number < fields.size(); ++number)
        EXPECT_EQ(RecordOf(fields[number]), &layout.FieldRecord(number)) << number;
}

TEST_F(DecodeRecord, an_array_has_it_and_its_items_have_none)
{
    for (const char * const type : { "uint8", "uint16", "uint32", "uint64" }) {
        Layout layout(LITTLE_ENDIAN_TARGET);
        layout.Field(0, 128, ANumber(type).Array());
        const Decoded decoded = support::Decode(layout, Words(8, 1));
        IPayload * const array = decoded.mOut->GetFields().front();
        EXPECT_EQ(RecordOf(array), &layout.FieldRecord(0));
        ASSERT_FALSE(FieldsOf(array).empty());
        for (IPayload * const item : FieldsOf(array))
            EXPECT_EQ(RecordOf(item), nullptr) << type;
    }
}

TEST_F(DecodeRecord, a_field_over_64_bits_has_it_and_its_words_have_none)
{
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Field(0, 80);
    const Decoded decoded = support::Decode(layout, Words(5, 1));
    IPayload * const wide = decoded.mOut->GetFields().front();
    EXPECT_EQ(RecordOf(wide), &layout.FieldRecord(0));
    for (IPayload * const word : FieldsOf(wide))
        EXPECT_EQ(RecordOf(word), nullptr);
}

TEST_F(DecodeRecord, a_nested_struct_has_none_but_its_fields_have_theirs)
{
    Layout inner = InnerPair(LITTLE_ENDIAN_TARGET);
    const IMetadata * const first = &inner.FieldRecord(0);
    const IMetadata * const second = &inner.FieldRecord(1);
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Struct(0, 16, std::move(inner));
    const Decoded decoded = support::Decode(layout, { 1 });
    IPayload * const nested = decoded.mOut->GetFields().front();
    EXPECT_EQ(RecordOf(nested), nullptr);
    EXPECT_EQ(RecordOf(FieldsOf(nested).at(0)), first);
    EXPECT_EQ(RecordOf(FieldsOf(nested).at(1)), second);
}

TEST_F(DecodeRecord, an_array_of_structs_has_none_and_neither_have_its_structs)
{
    Layout inner = InnerPair(LITTLE_ENDIAN_TARGET, ARecord(0).Array());
    const IMetadata * const first = &inner.FieldRecord(0);
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Struct(0, 32, std::move(inner));
    const Decoded decoded = support::Decode(layout, { 1, 2 });
    IPayload * const array = decoded.mOut->GetFields().front();
    EXPECT_EQ(RecordOf(array), nullptr);
    ASSERT_EQ(FieldsOf(array).size(), 2U);
    for (IPayload * const instance : FieldsOf(array)) {
        EXPECT_EQ(RecordOf(instance), nullptr);
        EXPECT_EQ(RecordOf(FieldsOf(instance).front()), first);
    }
}

TEST_F(DecodeRecord, the_tree_given_keeps_its_own)
{
    Layout layout = InnerPair(LITTLE_ENDIAN_TARGET);
    const auto other = ANumber().Build();
    Decoded decoded;
    decoded.mOut->Use(*other);
    ScriptedSource source;
    source.Number(1);
    CStructCodec codec;
    codec.Decode(source, layout.Detail(), decoded.mOut.get(), decoded.mMore);
    EXPECT_EQ(decoded.mOut->Metadata(), other.get());
    EXPECT_EQ(RecordOf(decoded.mOut->GetFields().front()), &layout.FieldRecord(0));
}

TEST_F(DecodeExample, little_endian)
{
    const Words words = { 0xEF8D, 0x7FBE, 0x5678, 0x1234, 0xCCDD, 0xAABB, 0x0000 };
    Layout layout(LITTLE_ENDIAN_TARGET);
    const auto add = [&layout](int position, int width) {
        layout.Field(position, width, ANumber("integer", "hexadecimal"));
    };
    add(0, 3);
    add(3, 5);
    add(8, 16);
    add(24, 8);
    add(32, 32);
    add(64, 40);
    EXPECT_EQ(DecodedText(layout, words), "9:(4:5 4:17 5:48879 4:127 6:305419896 7:2864434397)");
}

TEST_F(DecodeExample, little_endian_from_octets)
{
    Layout layout(LITTLE_ENDIAN_TARGET, true);
    layout.Field(0, 3).Field(3, 5).Field(8, 16, ANumber("uint16")).Field(24, 8).Field(32, 32).Field(64, 40);
    ScriptedSource source;
    source.Text(std::string("\x8D\xEF\xBE\x7F\x78\x56\x34\x12\xDD\xCC\xBB\xAA\x00", 13));
    const Decoded decoded = support::Decode(layout, source);
    EXPECT_EQ(TextOf(*decoded.mOut), "9:(0:5 0:17 5:48879 0:127 2:305419896 3:2864434397)");
}

TEST_F(DecodeExample, big_endian)
{
    Layout layout(BIG_ENDIAN_TARGET);
    layout.Field(0, 16).Field(32, 32).Field(48, 4).Field(52, 12);
    EXPECT_EQ(DecodedText(layout, { 0x1111, 0x1234, 0x5678, 0xBCDA }), "9:(1:4369 2:305419896 0:10 1:3021)");
}

}   // namespace
}   // namespace VrexZynConfigTools
