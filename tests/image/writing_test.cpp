// Elements that no metadata describe, and what a write refuses.

#include "records.h"

namespace VrexZynConfigTools::support {
namespace {

class ImageWriting : public EveryShapeTest
{
protected:
    void Fill(CChipConfig & chip, CElement * element, const std::string & tags = "")
    {
        ScriptedReader()
            .Delivers(ASubsystem(1).In(15, 1).Tagged("chip=abc").Holding(element, tags))
            .ReadInto(chip);
    }

    /// What this element is after a write and a read without metadata; the status texts are kept.
    std::string RawLineOf(CElement * element)
    {
        CChipConfig chip;
        Fill(chip, element);
        const StatusLog log;
        EXPECT_TRUE(Write(chip, mPath)) << TakeError();
        CChipConfig copy;
        EXPECT_TRUE(Read(copy, mPath, nullptr)) << TakeError();
        mStatus = log.mTexts;
        return Describe(copy).at(1);
    }

    /// The error that writing this element leaves; the file that was there stays.
    std::string ErrorOfElement(CElement * element, const std::string & tags = "")
    {
        PutContent(mPath, "old");
        CChipConfig chip;
        Fill(chip, element, tags);
        EXPECT_FALSE(Write(chip, mPath));
        EXPECT_EQ(ContentOf(mPath), "old");
        EXPECT_EQ(mFolder.Count(), 1U);
        return TakeError();
    }

    static CElement * Raw(std::uint32_t id, const std::vector<IPayload *> & payloads)
    {
        return new CElementRaw(id, "", payloads, true);
    }

    Lines mStatus;
};

TEST_F(ImageWriting, carries_raw_words_and_octets_byte_for_byte_without_a_word)
{
    EXPECT_EQ(RawLineOf(Raw(5, { new CUint16Payload(1), new CUint16Payload(65535) })), "raw 5  5:1 5:65535");
    EXPECT_EQ(mStatus, Lines());
    EXPECT_EQ(RawLineOf(Raw(5, { new CStringPayload("abc", true) })), "raw 5  8:octets:616263");
    EXPECT_EQ(RawLineOf(Raw(5, {})), "raw 5 ");
    EXPECT_EQ(mStatus, Lines());
}

TEST_F(ImageWriting, writes_what_it_read_without_metadata_as_it_was)
{
    const std::string chunks = AChunk(1, AKey(20, std::string(26, 'x'))) + AChunk(2, AKey(11, "odd", 1)) +
                               AChunk(3, AKey(13, "ab", 0, { 4, 1 })) + AChunk(4, AKey(7, "")) +
                               AChunk(5, AKey(8, "", 1));
    const std::string image = AnImage(1, AStore(5, 15, 1, 4096, 4096 - chunks.size()) + chunks);
    PutContent(mPath, image);
    CChipConfig chip;
    ASSERT_TRUE(Read(chip, mPath, nullptr)) << TakeError();
    ASSERT_TRUE(Write(chip, mPath));
    EXPECT_EQ(Hex(ContentOf(mPath)), Hex(image));
}

TEST_F(ImageWriting, carries_typed_values_without_metadata_and_says_that_name_and_type_are_lost)
{
    const auto lost = [this](const std::string & key) {
        return Lines{ mPath +
                      ": name and type of 1 key are not in the image, as no metadata describe them: " + key };
    };
    EXPECT_EQ(
        RawLineOf(new CElementNumericArray(5, "A", { new CUint32Payload(65537) }, true)), "raw 5  5:1 5:1");
    EXPECT_EQ(mStatus, lost("key 5"));
    EXPECT_EQ(RawLineOf(new CElementNumericArray(5, "A", { new CInt8Payload(-1) }, true)), "raw 5  5:65535");
    EXPECT_EQ(RawLineOf(new CElementString(5, "A", "abc", false, true)), "raw 5  8:octets:616263");
    EXPECT_EQ(mStatus, lost("key 5"));
    auto * const enumerator = new CElementEnum(5, "A", true);
    enumerator->AddEnum("RED", -1);
    EXPECT_EQ(RawLineOf(enumerator), "raw 5  5:65535 5:65535");
    EXPECT_EQ(mStatus, lost("key 5"));
}

TEST_F(ImageWriting, names_ten_keys_whose_name_and_type_are_lost)
{
    CChipConfig chip;
    ASubsystem subsystem(1);
    for (std::uint32_t id = 1; id <= 12; ++id)
        std::move(subsystem).Holding(new CElementNumericArray(id, "A", { new CUint8Payload(1) }, true));
    ScriptedReader().Delivers(std::move(subsystem).In(15, 1).Tagged("chip=abc")).ReadInto(chip);
    const StatusLog log;
    ASSERT_TRUE(Write(chip, mPath));
    ASSERT_EQ(log.mTexts.size(), 1U);
    EXPECT_NE(log.mTexts[0].find("name and type of 12 keys are not in"), std::string::npos);
    EXPECT_NE(log.mTexts[0].find("key 9, key 10, ..."), std::string::npos);
}

// A record that says its own type, as a file without metadata makes it, is no description of the raw form.
TEST_F(ImageWriting, takes_a_record_without_details_for_no_metadata)
{
    const auto record = ARecord(5).Named("Own").OfType("uint8").Build();
    auto * const element = new CElementNumericArray(5, "Own", { new CUint8Payload(1) }, true);
    element->Use(*record);
    EXPECT_EQ(RawLineOf(element), "raw 5  5:1");
    ASSERT_EQ(mStatus.size(), 1U);
    EXPECT_NE(mStatus[0].find(": key 5 (Own)"), std::string::npos);
}

TEST_F(ImageWriting, refuses_what_is_ambiguous_without_metadata)
{
    const std::string key = "store 1 of eeprom, key 5: ";
    EXPECT_EQ(ErrorOfElement(Raw(5, { new CUint16Payload(1), new CUint8Payload(1) })),
        key + "values of several types can't be told apart without metadata, which a key that says its own "
              "type doesn't have");
    EXPECT_EQ(ErrorOfElement(Raw(5, { new CStringPayload("a", true), new CStringPayload("b", true) })),
        key + "several texts can't be told apart in an image");
    EXPECT_EQ(ErrorOfElement(Raw(5, { new CComplexPayload(PAYLOAD_COMPLEX) })),
        key + "the fields of a structure can't be told apart without metadata, which a key that says its own "
              "type doesn't have");
}

TEST_F(ImageWriting, refuses_indices_that_would_not_come_back)
{
    const auto row = [this] {
        auto * const element = new CElementNumericArray(13, "Table", { new CUint8Payload(1) }, true);
        element->Use(Record(13));
        return element;
    };
    EXPECT_EQ(ErrorOfElement(row(), "num_indices=2;index1=1;index2=100000000"),
        "store 1 of eeprom, key 13.1.100000000 (Table): the index 100000000 is out of range; expected less "
        "than "
        "100000000");
    std::string tags = "num_indices=10";
    for (const char * const place : { "01", "02", "03", "04", "05", "06", "07", "08", "09", "10" })
        tags += ";index" + std::string(place) + "=7";
    EXPECT_EQ(ErrorOfElement(row(), tags),
        "store 1 of eeprom, key 13.7.7.7.7.7.7.7.7.7.7 (Table): a table row of 10 "
        "indices; an image holds 9 at most");
}

TEST_F(ImageWriting, refuses_values_that_the_records_type_does_not_hold)
{
    const auto write = [this](std::uint32_t id, IPayload * payload) {
        auto * const element = new CElementNumericArray(id, "x", { payload }, true);
        element->Use(Record(id));
        return ErrorOfElement(element);
    };
    const auto range = [](const std::string & value) {
        return ": the value " + value + " is out of range for the type ";
    };
    EXPECT_EQ(
        write(5, new CUint16Payload(256)), "store 1 of eeprom, key 5 (Nuint8)" + range("256") + "\"uint8\"");
    EXPECT_EQ(write(5, new CInt8Payload(-1)), "store 1 of eeprom, key 5 (Nuint8)" + range("-1") + "\"uint8\"");
    EXPECT_EQ(
        write(9, new CInt64Payload(-1)), "store 1 of eeprom, key 9 (Nuint64)" + range("-1") + "\"uint64\"");
    EXPECT_EQ(write(4, new CUint64Payload(UINT64_MAX)),
        "store 1 of eeprom, key 4 (Nint64)" + range("18446744073709551615") + "\"int64\"");
    EXPECT_EQ(write(5, new CStringPayload("x", false)),
        "store 1 of eeprom, key 5 (Nuint8): a number was given another value");
    EXPECT_EQ(
        write(10, new CUint8Payload(1)), "store 1 of eeprom, key 10 (Text): a text was given another value");
    EXPECT_EQ(write(12, new CUint64Payload(UINT64_MAX)),
        "store 1 of eeprom, key 12 (Colour): an enumeration was given another value");
}

TEST_F(ImageWriting, refuses_field_values_that_would_not_come_back)
{
    const std::string fit = "store 1 of eeprom, key 20 (Fit): ";
    const auto values = [](std::size_t place, std::int64_t value) {
        std::vector<std::int64_t> all{ 2, 1, 2, 3, 4, 5, 600, 700, 11, -12, -7, 0x2AB };
        all[place] = value;
        return all;
    };
    EXPECT_EQ(
        ErrorOfElement(Element(20, values(5, 8))), fit + "Inner.Fuint8: the value 8 doesn't fit into 3 bits");
    EXPECT_EQ(
        ErrorOfElement(Element(20, values(10, 32))), fit + "Fint16: the value 32 doesn't fit into 6 bits");
    EXPECT_EQ(
        ErrorOfElement(Element(20, values(10, -33))), fit + "Fint16: the value -33 doesn't fit into 6 bits");
    EXPECT_EQ(ErrorOfElement(Element(20, values(11, 1024))),
        fit + "Finteger: the value 1024 doesn't fit into 10 bits");
}

TEST_F(ImageWriting, refuses_each_field_value_that_the_format_changes)
{
    auto & key = mProvider.Struct(BT, ARecord(30).Named("Odd"));
    const auto field = [this](const std::string & name) {
        return &mProvider.NumberField(ARecord(0).Named(name).OfType("uint64").Within(0, INT64_MAX));
    };
    key.AddField("", field("Whole"), 0, 64);
    key.AddField("", field("Crossing"), 74, 12);
    key.AddField("", field("Right"), 96, 16);
    const std::string odd = "store 1 of eeprom, key 30 (Odd): ";
    EXPECT_EQ(ErrorOfElement(Element(30, { 5, 4095, 4095 })),
        odd + "Whole: the value 5 comes back as 0, as a field of exactly 64 bits is unpacked as 0\n" + odd +
            "Crossing: the value 4095 comes back as 63, as it does not reach into the next word");
}

TEST_F(ImageWriting, warns_of_values_that_the_format_changes_where_nothing_is_checked)
{
    CChipConfig chip;
    Fill(chip, Element(20, { 2, 1, 2, 3, 4, 8, 600, 700, 11, -12, -7, 0x2AB }));
    const StatusLog log;
    ASSERT_TRUE(Write(chip, mPath, "nodatacheck=true")) << TakeError();
    EXPECT_EQ(
        log.mTexts, Lines{ mPath + ": store 1 of eeprom, key 20 (Fit): Inner.Fuint8: the value 8 doesn't fit "
                                   "into 3 bits" });
    EXPECT_NE(ContentOf(mPath), "");
}

TEST_F(ImageWriting, refuses_a_struct_that_does_not_fit_its_metadata)
{
    auto * const element = new CElementStruct(20, "Fit", true);
    element->Use(Record(20));
    auto * const tree = new CComplexPayload(PAYLOAD_COMPLEX);
    tree->AddField(new CUint8Payload(1));
    element->AddField(tree);
    EXPECT_EQ(ErrorOfElement(element), "store 1 of eeprom, key 20 (Fit): Fuint64: the field has no value");
}

TEST_F(ImageWriting, refuses_a_value_that_no_chunk_holds)
{
    const std::size_t head = AKey(5, "").size();
    EXPECT_EQ(RawLineOf(Raw(5, { new CStringPayload(std::string(65535 - head, 'x'), true) })).size(),
        RawLineOf(Raw(5, { new CStringPayload("", true) })).size() + 2 * (65535 - head));
    EXPECT_EQ(ErrorOfElement(Raw(5, { new CStringPayload(std::string(65536 - head, 'x'), true) })),
        "store 1 of eeprom, key 5: the value takes 65536 bytes; a chunk holds 65535");
}

TEST_F(ImageWriting, refuses_more_keys_than_a_store_has_numbers)
{
    CChipConfig chip;
    ASubsystem subsystem(1);
    for (std::uint32_t id = 1; id <= 65536; ++id)
        std::move(subsystem).Holding(Raw(id, {}));
    ScriptedReader().Delivers(std::move(subsystem).In(15, 1).Tagged("chip=abc")).ReadInto(chip);
    EXPECT_FALSE(Write(chip, mPath));
    EXPECT_EQ(TakeError(),
        "store 1 of eeprom, key 65536: the store has no number left for it; it holds 65535 chunks");
}

TEST_F(ImageWriting, tells_all_that_it_refuses_in_one_error)
{
    CChipConfig chip;
    ScriptedReader()
        .Delivers(ASubsystem(1)
                      .In(15, 1)
                      .Tagged("chip=abc")
                      .Holding(Raw(5, { new CComplexPayload(PAYLOAD_COMPLEX) }))
                      .Holding(Raw(6, { new CUint16Payload(1) })))
        .Delivers(
            ASubsystem(2).In(1, 2).Tagged("chip=abc").Holding(Raw(7, { new CComplexPayload(PAYLOAD_COMPLEX) })))
        .ReadInto(chip);
    EXPECT_FALSE(Write(chip, mPath));
    EXPECT_EQ(TakeError(), "store 1 of eeprom, key 5: the fields of a structure can't be told apart without "
                           "metadata, which a key that says its own type doesn't have\n"
                           "store 2 of otp, key 7: the fields of a structure can't be told apart without "
                           "metadata, which a key that says its own type doesn't have");
    EXPECT_EQ(mFolder.Count(), 0U);
}

TEST_F(ImageWriting, refuses_a_filtered_write)
{
    CChipConfig chip;
    EXPECT_FALSE(Write(chip, mPath, "layerfilter=15"));
    EXPECT_EQ(TakeError(), "a filtered write has layers in place of stores; an image needs stores");
    EXPECT_EQ(mFolder.Count(), 0U);
}

TEST_F(ImageWriting, refuses_two_chips_and_a_place_that_can_not_be_written_to)
{
    CChipConfig chip;
    ScriptedReader()
        .Delivers(ASubsystem(1).In(15, 1).Tagged("chip=a"))
        .Delivers(ASubsystem(2).In(15, 1).Tagged("chip=b"))
        .ReadInto(chip);
    EXPECT_FALSE(Write(chip, mPath));
    EXPECT_EQ(TakeError(), "subsystems of two chips, \"a\" and \"b\"; an image holds those of one");
    EXPECT_FALSE(Write(chip, mFolder / "missing/it.zimg"));
    EXPECT_NE(
        mErrors.Text().find("unable to write to the file (No such file or directory)"), std::string::npos);
    mErrors.Clear();
}

TEST_F(ImageWriting, leaves_the_file_if_an_error_stands_at_the_end)
{
    PutContent(mPath, "old");
    const auto writer = MakeWriter(mPath);
    CZynContext context;
    writer->StartWrite(context);
    mErrors.Set("another's");
    writer->EndWrite(context);
    EXPECT_EQ(ContentOf(mPath), "old");
    mErrors.Clear();
}

TEST_F(ImageWriting, bears_calls_out_of_order)
{
    const auto writer = MakeWriter(mPath);
    CZynContext context;
    CUint8Payload payload(1);
    writer->EndWrite(context);
    writer->EndSubsystem(context);
    writer->EndElement(context);
    writer->WritePayload(payload, context);
    EXPECT_FALSE(mErrors.IsSet());
    writer->StartSubsystem(context);
    EXPECT_EQ(TakeError(), "invalid operation (no write has been started)");
    writer->StartWrite(context);
    writer->WriteKeyId(5, context);
    EXPECT_EQ(TakeError(), "invalid operation (a key outside of a subsystem)");
    EXPECT_EQ(mFolder.Count(), 1U);   // the temporary file of the write that is still open
}

}   // namespace
}   // namespace VrexZynConfigTools::support
