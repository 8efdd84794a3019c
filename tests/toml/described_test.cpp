// Keys that metadata describe: given by name or number, with their values in the words of the record.

#include "described_support.h"

#include <gmock/gmock.h>

namespace {

using namespace VrexZynConfigTools;
using namespace VrexZynConfigTools::support;
using ::testing::ElementsAre;

using DescribedKeys = DescribedTest;

const std::string VOLUME = "numbers4 16 " + Hex("Volume") + " 4:";

TEST_F(DescribedKeys, are_given_by_name_or_number_or_both)
{
    EXPECT_THAT(Read("name = 'Volume', value = 20"), ElementsAre(VOLUME + "20"));
    EXPECT_THAT(Read("name = 'vOLUME', value = 20"), ElementsAre(VOLUME + "20"));
    EXPECT_THAT(Read("name = { hex = '56 6f 6c 75 6d 65' }, value = 20"), ElementsAre(VOLUME + "20"));
    EXPECT_THAT(Read("id = 0x10, value = 20"), ElementsAre(VOLUME + "20"));
    EXPECT_THAT(Read("id = 16, name = 'volume', value = 20"), ElementsAre(VOLUME + "20"));
}

TEST_F(DescribedKeys, take_numbers_in_any_notation)
{
    EXPECT_THAT(Read("name = 'Volume', value = 0x14"), ElementsAre(VOLUME + "20"));
    EXPECT_THAT(Read("name = 'Volume', value = 0b1_0100"), ElementsAre(VOLUME + "20"));
    EXPECT_THAT(Read("name = 'Volume', value = 0o24"), ElementsAre(VOLUME + "20"));
}

TEST_F(DescribedKeys, take_the_ends_of_their_range)
{
    EXPECT_THAT(Read("name = 'Volume', value = 0"), ElementsAre(VOLUME + "0"));
    EXPECT_THAT(Read("name = 'Volume', value = 100"), ElementsAre(VOLUME + "100"));
    EXPECT_THAT(Read("name = 'Curve', value = [-100, 100]"),
        ElementsAre("numbers1 20 " + Hex("Curve") + " 1:-100 1:100"));
}

TEST_F(DescribedKeys, take_large_unsigned_numbers_as_text)
{
    const std::string serial = "numbers7 21 " + Hex("Serial") + " 7:";
    EXPECT_THAT(
        Read("name = 'Serial', value = 9223372036854775807"), ElementsAre(serial + "9223372036854775807"));
    EXPECT_THAT(
        Read("name = 'Serial', value = '18446744073709551614'"), ElementsAre(serial + "18446744073709551614"));
    EXPECT_THAT(
        Read("name = 'Serial', value = '0xfffffffffffffffe'"), ElementsAre(serial + "18446744073709551614"));
}

// The library doesn't check numbers whose type has no width of its own.
TEST_F(DescribedKeys, of_the_type_integer_have_no_range)
{
    EXPECT_THAT(Read("name = 'Offset', value = -5"), ElementsAre("numbers3 25 " + Hex("Offset") + " 3:-5"));
}

TEST_F(DescribedKeys, take_enumerators_by_name_and_by_number)
{
    const std::string mode = "enum 17 " + Hex("Mode") + " 10:";
    EXPECT_THAT(Read("name = 'Mode', value = 'ON'"), ElementsAre(mode + Hex("ON") + "=1"));
    EXPECT_THAT(Read("name = 'Mode', value = { hex = '4f 4e' }"), ElementsAre(mode + Hex("ON") + "=1"));
    EXPECT_THAT(Read("name = 'Mode', value = 2"), ElementsAre(mode + Hex("LOUD") + "=2"));
}

// Of several names with one number the library knows the first.
TEST_F(DescribedKeys, take_the_first_name_of_a_number)
{
    EXPECT_THAT(Read("name = 'Mode', value = 'STILL'"),
        ElementsAre("enum 17 " + Hex("Mode") + " 10:" + Hex("OFF") + "=0"));
}

TEST_F(DescribedKeys, take_texts_and_octets)
{
    EXPECT_THAT(Read("name = 'Title', value = 'hi'"), ElementsAre("text 18 " + Hex("Title") + " 8:text:6869"));
    EXPECT_THAT(Read("name = 'Title', value = { hex = '00 ff' }"),
        ElementsAre("text 18 " + Hex("Title") + " 8:text:00ff"));
    EXPECT_THAT(Read("name = 'Address', value = '02 4e 5a'"),
        ElementsAre("octets 19 " + Hex("Address") + " 8:octets:024e5a"));
}

TEST_F(DescribedKeys, take_arrays)
{
    EXPECT_THAT(Read("name = 'Curve', value = [1, -2, 3]"),
        ElementsAre("numbers1 20 " + Hex("Curve") + " 1:1 1:-2 1:3"));
}

TEST_F(DescribedKeys, take_structures_by_the_names_of_their_fields)
{
    EXPECT_THAT(Read("name = 'Fit', value = { " + A_FIT + " }"),
        ElementsAre("struct 22 " + Hex("Fit") + " 9:(0:-8 10:" + Hex("RIGHT") +
                    "=1 0:1 0:-2 0:3 9:(5:4095 1:-500 ) 9:(4:1 4:2 ) 9:(4:3 4:4 ) )"));
}

TEST_F(DescribedKeys, take_structures_under_headers_of_their_own)
{
    EXPECT_THAT(ReadFile(HEAD + R"(
[[subsystem.key]]
name = "Fit"
[subsystem.key.value]
Kind = "CENTRE"
Bands = [0, 0, 0]
Gain = 1
[subsystem.key.value.Inner]
High = 2
Low = 1
[[subsystem.key.value.Points]]
X = 1
Y = 1
[[subsystem.key.value.Points]]
X = 2
Y = 2
)"),
        ElementsAre("struct 22 " + Hex("Fit") + " 9:(0:1 10:" + Hex("CENTRE") +
                    "=3 0:0 0:0 0:0 9:(5:1 1:2 ) 9:(4:1 4:1 ) 9:(4:2 4:2 ) )"));
}

// The factory would end such an array after its first structure, since the last field holds several items.
TEST_F(DescribedKeys, take_arrays_of_structures_as_arrays_of_tables)
{
    const std::string profiles = "struct 23 " + Hex("Profiles") + " 9:(4:1 4:2 4:3 ) 9:(4:4 4:5 4:6 )";
    EXPECT_THAT(
        Read("name = 'Profiles', value = [{ Level = 1, Steps = [2, 3] }, { Level = 4, Steps = [5, 6] }]"),
        ElementsAre(profiles));
    EXPECT_THAT(ReadFile(HEAD + R"(
[[subsystem.key]]
name = "Profiles"
[[subsystem.key.value]]
Level = 1
Steps = [2, 3]
[[subsystem.key.value]]
Level = 4
Steps = [5, 6]
)"),
        ElementsAre(profiles));
}

TEST_F(DescribedKeys, take_one_structure_of_an_array_without_brackets)
{
    EXPECT_THAT(Read("name = 'Profiles', value = { Level = 1, Steps = [2, 3] }"),
        ElementsAre("struct 23 " + Hex("Profiles") + " 9:(4:1 4:2 4:3 )"));
}

TEST_F(DescribedKeys, take_texts_in_structures)
{
    EXPECT_THAT(Read("name = 'Label', value = { Id = '00 01 02 03 04 05 06 07 08 09 0a 0b', Tag = 'abc' }"),
        ElementsAre("struct 27 " + Hex("Label") + " 9:(8:octets:000102030405060708090a0b 8:text:616263 )"));
}

TEST_F(DescribedKeys, become_rows_by_number_and_by_name)
{
    const std::string row = "row[3.1] 24 " + Hex("GainTrim") + " 0:-5";
    EXPECT_THAT(Read("name = 'GainTrim', index = [3, 'HIGH'], value = -5"), ElementsAre(row));
    EXPECT_THAT(Read("name = 'GainTrim', index = [3, 1], value = -5"), ElementsAre(row));
}

TEST_F(DescribedKeys, do_not_inherit_the_indices_of_the_key_before)
{
    EXPECT_THAT(ReadFile(HEAD + "key = [{ name = 'GainTrim', index = [3, 'LOW'], value = 1 }, "
                                "{ name = 'Volume', value = 2 }]\n"),
        ElementsAre("row[3.0] 24 " + Hex("GainTrim") + " 0:1", VOLUME + "2"));
}

TEST_F(DescribedKeys, stand_beside_keys_with_a_type)
{
    EXPECT_THAT(
        ReadFile(HEAD + "key = [{ id = 16, type = 'uint8', value = 200 }, { name = 'Volume', value = 2 }, "
                        "{ name = 'Volume', type = 'uint8', value = 3 }, "
                        "{ id = 99, name = 'New', type = 'int8', value = 4 }, "
                        "{ id = 25, type = 'int64', value = 5 }, "
                        "{ id = 17, type = 'raw', value = [{ uint8 = 6 }] }]\n"),
        ElementsAre("numbers4 16  4:200", VOLUME + "2", VOLUME + "3", "numbers0 99 " + Hex("New") + " 0:4",
            "numbers3 25  3:5", "raw 17  4:6"));
}

TEST_F(DescribedKeys, carry_the_records_of_the_provider)
{
    ReadChip chip;
    chip.Use(&mProvider);
    ASSERT_TRUE(chip.Read(Put(ADescribedKey("name = 'Fit', value = { " + A_FIT + " }")))) << mErrors.Text();
    CZynContext context;
    const IMetadata & record = mProvider.MetadataById(22, context);
    CElement & element = *chip.Elements().front();
    EXPECT_EQ(element.Metadata(), &record);
    auto * structure = dynamic_cast<CComplexPayload *>(element.GetPayloadCopy(false).front());
    ASSERT_NE(structure, nullptr);
    EXPECT_EQ(structure->Metadata(), &record);
    auto * gain = dynamic_cast<IMetadataUser *>(structure->GetFields().front());
    EXPECT_EQ(gain->Metadata(), record.Details()->GetStructFields()->front()->Metadata());
}

TEST_F(DescribedKeys, are_looked_up_in_their_subsystem)
{
    const std::string wlan = "chip = 'abc'\n[[subsystem]]\ntype = 'wlan'\ndevice = 'otp'\nstore = 1\n";
    EXPECT_THAT(ReadFile(wlan + "key = [{ name = 'Elsewhere', value = 1 }]"),
        ElementsAre("numbers4 26 " + Hex("Elsewhere") + " 4:1"));
    const std::string any = "chip = ''\n[[subsystem]]\ntype = ''\ndevice = 'otp'\nstore = 1\n";
    EXPECT_THAT(ReadFile(any + "key = [{ name = 'Elsewhere', value = 1 }, { id = 16, value = 2 }]"),
        ElementsAre("numbers4 26 " + Hex("Elsewhere") + " 4:1", VOLUME + "2"));
}

// An octet string of this subsystem travels in words, and the library drops what fills up the last one.
TEST_F(DescribedKeys, of_octets_lose_a_pad_byte_with_a_warning)
{
    StatusRecorder status;
    EXPECT_THAT(Read("name = 'Address', value = '01 02 03 00'"),
        ElementsAre("octets 19 " + Hex("Address") + " 8:octets:010203"));
    EXPECT_THAT(status.Texts(), ElementsAre(::testing::HasSubstr(
                                    ":7:36: \"Address\": the last octet, 00, is taken for one that fills up")));
}

TEST_F(DescribedKeys, are_no_fields_whatever_the_context_of_the_caller_says)
{
    EXPECT_THAT(Read("name = 'Curve', value = [1, -2, 3]", "elembitwidth=32"),
        ElementsAre("numbers1 20 " + Hex("Curve") + " 1:1 1:-2 1:3"));
}

TEST_F(DescribedKeys, keep_errors_that_stood_before_the_read)
{
    mErrors.Set("before");
    ReadChip chip;
    chip.Use(&mProvider);
    chip.Read(Put(ADescribedKey("name = 'Volume', value = 2")));
    EXPECT_EQ(mErrors.Text(), "before");
    ASSERT_EQ(chip.Elements().size(), 1u);
    mErrors.Set("before");
    const std::string path = Put(ADescribedKey("name = 'Volume', value = 200"));
    chip.Read(path);
    EXPECT_EQ(mErrors.Text(), "before\n" + path + ":7:35: \"Volume\": 200 is out of range; expected 0 to 100");
}

TEST_F(DescribedKeys, need_metadata)
{
    const std::string path = Put(ADescribedKey("name = 'Volume', value = 2"));
    ReadChip chip;
    chip.Read(path);
    EXPECT_EQ(
        mErrors.Text(), path + ":7:8: \"id\" is missing: a key has a number\n" + path +
                            ":7:8: \"type\" is missing: without metadata a key says the type of its value");
}

}   // namespace
