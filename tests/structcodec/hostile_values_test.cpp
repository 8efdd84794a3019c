#include "layouts.h"

#include <configtools/structcodec.h>
#include <support/foreign_payload.h>
#include <support/framework_errors.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>

// Records and values that don't fit together.

namespace VrexZynConfigTools {
namespace {

using namespace support;
using testing::Each;
using testing::ElementsAre;

class HostileValues : public testing::Test
{
protected:
    FrameworkErrors mErrors;
};

Layout AnInnerByte(const ARecord & record)
{
    Layout inner(LITTLE_ENDIAN_TARGET, false, record);
    inner.Field(0, 8, ANumber("uint8"));
    return inner;
}

TEST_F(HostileValues, more_values_than_fields_are_an_error_and_dropped)
{
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Field(0, 8);
    CStructCodec codec;
    codec.Encode(*ATree(new CUint8Payload(7), new CUint8Payload(8), new CUint8Payload(9)), layout.Detail());
    EXPECT_EQ(mErrors.Text(), "a struct of 1 fields was given 3 values");
    mErrors.Clear();
    EXPECT_THAT(WordsOf(codec), ElementsAre(7));
}

TEST_F(HostileValues, more_values_than_fields_are_dropped_in_nested_structs_too)
{
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Struct(0, 8, AnInnerByte(ARecord(0))).Field(8, 8);
    CStructCodec codec;
    codec.Encode(
        *ATree(ABranch(new CUint8Payload(7), new CUint8Payload(8)), new CUint8Payload(9)), layout.Detail());
    EXPECT_EQ(mErrors.Text(), "a struct of 1 fields was given 2 values");
    mErrors.Clear();
    EXPECT_THAT(WordsOf(codec), ElementsAre(0x0907));
}

TEST_F(HostileValues, more_structs_than_an_array_has_room_for_are_dropped)
{
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Struct(0, 16, AnInnerByte(ARecord(0).Array()));
    EXPECT_THAT(Encoded(layout, ATree(ABranch(ABranch(new CUint8Payload(1)), ABranch(new CUint8Payload(2)),
                                    ABranch(new CUint8Payload(3)), ABranch(new CUint8Payload(4))))),
        ElementsAre(0x0201));
}

TEST_F(HostileValues, a_field_without_a_record_is_an_error_and_0)
{
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Detail().AddField("none", nullptr, 0, 8);
    layout.Field(8, 8, ANumber("uint8"));
    CStructCodec codec;
    codec.Encode(*ATree(new CUint8Payload(7), new CUint8Payload(8)), layout.Detail());
    EXPECT_EQ(mErrors.Text(), "a struct field has no metadata");
    mErrors.Clear();
    EXPECT_THAT(WordsOf(codec), ElementsAre(0x0800));

    const Decoded decoded = Decode(layout, { 0x0907 });
    EXPECT_TRUE(decoded.mResult);
    EXPECT_EQ(TextOf(*decoded.mOut), "9:(3:0 4:9)") << "values and fields stay in step";
    EXPECT_EQ(mErrors.Text(), "a struct field has no metadata");
}

TEST_F(HostileValues, an_enum_without_enumerators_is_an_error_and_has_no_name)
{
    for (const bool hasWrongDetail : { false, true }) {
        mErrors.Clear();
        Layout layout(LITTLE_ENDIAN_TARGET);
        layout.Field(0, 8, ANumber("uint8").Named("mode").Shaped(METADATA_ENUM)).Field(8, 8, ANumber("uint8"));
        if (hasWrongDetail)
            layout.FieldRecord(0).SetDetails(*new CMetadataDetailSimple(layout.FieldRecord(0)));
        const Decoded decoded = Decode(layout, { 0x0907 });
        EXPECT_TRUE(decoded.mResult);
        EXPECT_EQ(TextOf(*decoded.mOut), "9:(10: 4:9)");
        EXPECT_EQ(mErrors.Text(), "the enum field mode has no enumerators in the metadata");
    }
}

TEST_F(HostileValues, a_struct_field_without_fields_of_its_own_is_an_error_and_empty)
{
    for (const bool isArray : { false, true }) {
        for (const bool hasWrongDetail : { false, true }) {
            mErrors.Clear();
            const ARecord record = ARecord(0).Named("inner").Shaped(METADATA_STRUCT);
            Layout layout(LITTLE_ENDIAN_TARGET);
            layout.Field(0, 8, isArray ? ARecord(record).Array() : record).Field(8, 8, ANumber("uint8"));
            if (hasWrongDetail)
                layout.FieldRecord(0).SetDetails(*new CMetadataDetailEnum(layout.FieldRecord(0)));
            EXPECT_EQ(DecodedText(layout, { 0x0907 }), "9:(9:() 4:9)");
            EXPECT_EQ(mErrors.Text(), "the struct field inner has no fields of its own in the metadata");

            mErrors.Clear();
            CStructCodec codec;
            codec.Encode(*ATree(ABranch(new CUint8Payload(1)), new CUint8Payload(9)), layout.Detail());
            EXPECT_EQ(mErrors.Text(), "the struct field inner has no fields of its own in the metadata");
            mErrors.Clear();
            EXPECT_THAT(WordsOf(codec), ElementsAre(0x0900));
        }
    }
}

TEST_F(HostileValues, a_plain_value_for_a_struct_is_an_error_and_dropped)
{
    for (const bool isArray : { false, true }) {
        Layout layout(LITTLE_ENDIAN_TARGET);
        const ARecord record = ARecord(0).Named("inner");
        layout.Struct(0, 8, AnInnerByte(isArray ? ARecord(record).Array() : record)).Field(8, 8);
        CStructCodec codec;
        codec.Encode(*ATree(new CUint8Payload(7), new CUint8Payload(9)), layout.Detail());
        EXPECT_EQ(mErrors.Text(), "the struct field inner was given a plain value");
        mErrors.Clear();
        EXPECT_THAT(WordsOf(codec), ElementsAre(0x0900));
    }
}

TEST_F(HostileValues, a_plain_value_in_an_array_of_structs_is_an_error_and_keeps_its_place)
{
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Struct(0, 32, AnInnerByte(ARecord(0).Named("inner").Array()));
    CStructCodec codec;
    codec.Encode(
        *ATree(ABranch(ABranch(new CUint8Payload(1)), new CUint8Payload(2), ABranch(new CUint8Payload(3)))),
        layout.Detail());
    EXPECT_EQ(mErrors.Text(), "the array of structs inner was given a plain value");
    mErrors.Clear();
    EXPECT_THAT(WordsOf(codec), ElementsAre(1, 3));
}

TEST_F(HostileValues, a_plain_value_for_a_field_over_64_bits_is_an_error_and_dropped)
{
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Field(0, 80).Field(80, 16);
    CStructCodec codec;
    codec.Encode(*ATree(new CUint64Payload(7), new CUint16Payload(9)), layout.Detail());
    EXPECT_EQ(mErrors.Text(), "a field of more than 64 bits was given a plain value");
    mErrors.Clear();
    EXPECT_THAT(WordsOf(codec), ElementsAre(0, 0, 0, 0, 0, 9));
}

TEST_F(HostileValues, null_values_keep_their_places)
{
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Field(0, 16, ANumber("uint8").Array())
        .Struct(16, 16, AnInnerByte(ARecord(0).Array()))
        .Field(32, 80)
        .Struct(112, 8, AnInnerByte(ARecord(0)));
    const auto withNull = [](IPayload * last) { return ATreeOf({ nullptr, last }).release(); };
    EXPECT_THAT(Encoded(layout, ATree(withNull(new CUint8Payload(1)), withNull(ABranch(new CUint8Payload(2))),
                                    withNull(new CUint16Payload(3)), ATreeOf({ nullptr }).release())),
        ElementsAre(0x0100, 0x0200, 0, 3, 0, 0, 0, 0));
    EXPECT_THAT(Encoded(layout, ATreeOf({ nullptr, nullptr, nullptr, nullptr })), Each(0));
    EXPECT_EQ(mErrors.Text(), "");
}

TEST_F(HostileValues, a_record_of_no_known_shape_is_a_number)
{
    for (const int shape : { 3, 77, -1 }) {
        Layout layout(LITTLE_ENDIAN_TARGET);
        layout.Field(0, 8, ANumber("uint8").Shaped(static_cast<MetadataTypeEnum>(shape)));
        EXPECT_THAT(Encoded(layout, ATree(new CUint8Payload(7))), ElementsAre(7));
        EXPECT_EQ(DecodedText(layout, { 7 }), "9:(4:7)") << shape;
    }
}

TEST_F(HostileValues, payloads_of_plug_ins_are_given_no_more_room_than_there_is)
{
    for (const int width : { 8, 16, 32, 64 }) {
        Layout layout(LITTLE_ENDIAN_TARGET);
        layout.Field(0, width);
        auto * const foreign = new ForeignPayload("ABCDEFGHIJKLMNOPQ");
        const auto tree = ATree(foreign);
        CStructCodec codec;
        codec.Encode(*tree, layout.Detail());
        EXPECT_THAT(foreign->Maxima(), Each(width == 16 ? 2 : 8)) << width;
        EXPECT_EQ(WordsOf(codec).front() & 0xFF, 'A');
    }
}

}   // namespace
}   // namespace VrexZynConfigTools
