// Elements as a reader of text makes them, into an image and back.

#include "records.h"

namespace VrexZynConfigTools::support {
namespace {

class ImageRoundTrip : public EveryShapeTest
{
protected:
    void Expect(CElement * element, const std::string & line, const std::string & tags = "")
    {
        CChipConfig chip;
        ScriptedReader()
            .Delivers(ASubsystem(1).In(15, 1).Tagged("chip=abc").Holding(element, tags))
            .ReadInto(chip);
        ExpectSame(chip, { "abc| |1|1 device 15 store 1", line });
    }
};

TEST_F(ImageRoundTrip, keeps_numbers_of_every_type)
{
    Expect(Element(1, { -128, 0, 127 }), "numbers 1 Nint8 0:-128 0:0 0:127");
    Expect(Element(2, { -32768, 32767 }), "numbers 2 Nint16 1:-32768 1:32767");
    Expect(Element(3, { INT32_MIN, INT32_MAX }), "numbers 3 Nint32 2:-2147483648 2:2147483647");
    Expect(
        Element(4, { INT64_MIN, INT64_MAX }), "numbers 4 Nint64 3:-9223372036854775808 3:9223372036854775807");
    Expect(Element(5, { 0, 255 }), "numbers 5 Nuint8 4:0 4:255");
    Expect(Element(6, { 65535 }), "numbers 6 Nuint16 5:65535");
    Expect(Element(7, { 4294967295 }), "numbers 7 Nuint32 6:4294967295");
    Expect(Element(8, { -1 }), "numbers 8 Ninteger 3:-1");
    Expect(Element(9, { -1 }), "numbers 9 Nuint64 7:18446744073709551615");
}

TEST_F(ImageRoundTrip, keeps_texts_and_octets_of_every_length)
{
    Expect(Element(10, {}, { "" }), "text 10 Text 8:text:");
    Expect(Element(10, {}, { "odd" }), "text 10 Text 8:text:6f6464");
    Expect(Element(11, {}, { "odd" }), "text 11 Octets 8:octets:6f6464");
}

// In this subsystem octet strings travel in words and may end in a pad byte; in an image their length is known.
TEST_F(ImageRoundTrip, takes_no_last_zero_of_a_bt_octet_string_for_a_pad_byte)
{
    using namespace std::string_literals;
    Expect(Element(11, {}, { "abc\0"s }), "text 11 Octets 8:octets:61626300");
    Expect(Element(11, {}, { "\0"s }), "text 11 Octets 8:octets:00");
    Expect(Element(11, {}, { "\0\0"s }), "text 11 Octets 8:octets:0000");
}

TEST_F(ImageRoundTrip, keeps_enumerators_one_or_several)
{
    Expect(Colours({ 1 }), "enum 12 Colour 10:RED=1");
    Expect(Colours({ -2, 70000, 1 }), "enum 12 Colour 10:BLUE=-2 10:FAR=70000 10:RED=1");
}

TEST_F(ImageRoundTrip, keeps_the_indices_of_table_rows)
{
    CElement * const row = new CElementNumericArray(13, "Table", { new CUint8Payload(7) }, true);
    row->Use(Record(13));
    Expect(row, "row 13 Table.99999999.1 4:7", "num_indices=2;index1=99999999;index2=1");
}

// An array, a field over 64 bits, a nested struct, an array of structs, and a 16-bit enumerator, whose payload is wider.
TEST_F(ImageRoundTrip, keeps_a_struct_that_was_read_field_by_field)
{
    Expect(Element(20, { 2, 1, 2, 3, 0x123456789ABC, 5, 600, 700, 11, -12, -7, 0x2AB }),
        "struct 20 Fit 9:(10:OFF=2 9:(4:1 4:2 4:3) 9:(5:39612 5:22136 5:4660 5:0 5:0) "
        "9:(4:5 9:(5:600 5:700)) 9:(9:(4:11 0:-12)) 1:-7 5:683)");
}

TEST_F(ImageRoundTrip, brings_signed_items_of_an_array_back_unsigned)
{
    CChipConfig chip;
    ScriptedReader()
        .Delivers(ASubsystem(1)
                      .In(15, 1)
                      .Tagged("chip=abc")
                      .Holding(Element(20, { 2, -1, 2, 3, 1, 5, 600, 700, 11, 12, 7, 1 })))
        .ReadInto(chip);
    ASSERT_TRUE(Write(chip, mPath));
    CChipConfig copy;
    ASSERT_TRUE(Read(copy, mPath, &mProvider));
    EXPECT_NE(Describe(copy).at(1).find("9:(4:255 4:2 4:3)"), std::string::npos) << Describe(copy).at(1);
}

TEST_F(ImageRoundTrip, fills_the_items_that_a_short_array_lacks_with_zeros)
{
    CElement * const element = Element(20, { 2, 1, 2 });   // the source ends after the second item of three
    Expect(element, "struct 20 Fit 9:(10:OFF=2 9:(4:1 4:2 4:0) 9:(5:0 5:0 5:0 5:0 5:0) 9:(4:0 9:(5:0 5:0)) "
                    "9:(9:(4:0 0:0)) 1:0 5:0)");
}

TEST_F(ImageRoundTrip, keeps_every_struct_of_an_array)
{
    auto * const element = dynamic_cast<CElementStruct *>(Element(21, { 1, 2, -3 }));
    for (const std::int64_t value : { 4, 7 }) {
        const std::unique_ptr<CElement> next(Element(21, { value, value + 1, -value - 2 }));
        element->AddField(next->TransferPayload().at(0));
    }
    Expect(element, "struct 21 Pairs 9:(9:(4:1 4:2) 2:-3) 9:(9:(4:4 4:5) 2:-6) 9:(9:(4:7 4:8) 2:-9)");
}

TEST_F(ImageRoundTrip, keeps_structs_that_are_packed_as_octets)
{
    auto & record = const_cast<CMetadata &>(dynamic_cast<const CMetadata &>(Record(21)));
    auto & octets = *new CMetadataDetailStruct(record, true, true);
    octets.AddField("", &mProvider.NumberField(ARecord(0).Named("A").OfType("uint8").Within(0, 255)), 0, 8);
    octets.AddField("", &mProvider.NumberField(ARecord(0).Named("B").OfType("uint16").Within(0, 65535)), 8, 16);
    record.SetDetails(octets);
    auto * const element = dynamic_cast<CElementStruct *>(Element(21, { 1, 515 }));
    const std::unique_ptr<CElement> next(Element(21, { 4, 1029 }));
    element->AddField(next->TransferPayload().at(0));

    Expect(element, "struct 21 Pairs 9:(4:1 5:515) 9:(4:4 5:1029)");
    EXPECT_NE(ContentOf(mPath).find("\x01\x03\x02\x04\x05\x04"), std::string::npos);
}

TEST_F(ImageRoundTrip, keeps_the_order_of_keys_and_keys_that_are_there_twice)
{
    CChipConfig chip;
    ScriptedReader()
        .Delivers(ASubsystem(1)
                      .In(15, 1)
                      .Tagged("chip=abc")
                      .Holding(Element(6, { 2 }))
                      .Holding(Element(5, { 1 }))
                      .Holding(Element(6, { 3 })))
        .ReadInto(chip);
    ExpectSame(chip, { "abc| |1|1 device 15 store 1", "numbers 6 Nuint16 5:2", "numbers 5 Nuint8 4:1",
                         "numbers 6 Nuint16 5:3" });
}

TEST_F(ImageRoundTrip, keeps_layers_subsystems_and_stores_also_those_without_keys)
{
    CChipConfig chip;
    ScriptedReader()
        .Delivers(ASubsystem(1).In(15, 7).Tagged("chip=abc").Holding(Element(5, { 1 })))
        .Delivers(ASubsystem(2).In(15, 2).Tagged("chip=abc"))
        .Delivers(ASubsystem(1).In(15, 2).Tagged("chip=abc").Holding(Element(5, { 2 })))
        .Delivers(ASubsystem(1).In(4, 1).Tagged("chip=abc").Holding(Element(5, { 3 })))
        .Delivers(ASubsystem(3).In(13, 1).Tagged("chip=abc"))
        .Delivers(ASubsystem().Tagged("chip=abc"))
        .ReadInto(chip);
    const Lines expected{ "abc| | |  device  store ", "abc| |1|1 device 4 store 1", "numbers 5 Nuint8 4:3",
        "abc| |1|2 device 15 store 7", "numbers 5 Nuint8 4:1", "abc| |1|3 device 15 store 2",
        "numbers 5 Nuint8 4:2", "abc| |2|3 device 15 store 2", "abc| |3|  device 13 store 1" };
    EXPECT_EQ(Describe(chip), expected);
    ExpectSame(chip, expected);
}

TEST_F(ImageRoundTrip, keeps_an_empty_chip_and_its_label)
{
    CChipConfig chip;
    ExpectSame(chip, {});
    EXPECT_EQ(ContentOf(mPath), AnImage(0, ""));
}

}   // namespace
}   // namespace VrexZynConfigTools::support
