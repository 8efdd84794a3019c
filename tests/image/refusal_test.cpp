// Images that say what can't be, with a checksum that is right.

#include "records.h"

namespace VrexZynConfigTools::support {
namespace {

class LyingImage : public EveryShapeTest
{
protected:
    std::string ErrorOfKey(const std::string & key) { return ErrorOf(AnImage(1, AStore(1) + AChunk(1, key))); }
};

TEST_F(LyingImage, of_another_kind_or_version_is_refused)
{
    EXPECT_EQ(ErrorOf("ZIMA" + Bytes(0, 40)), "this is no store image: it doesn't begin with \"ZIMG\"");
    EXPECT_EQ(ErrorOf(""), "this is no store image: it doesn't begin with \"ZIMG\"");
    EXPECT_EQ(ErrorOf("ZIMG" + Bytes(2, 2) + Bytes(0, 40)), "the image has the version 2; expected 1");
}

TEST_F(LyingImage, that_is_not_there_or_a_folder_is_refused)
{
    CChipConfig chip;
    Read(chip, mFolder / "missing.zimg", nullptr);
    EXPECT_NE(mErrors.Text().find("unable to open the file (No such file or directory)"), std::string::npos);
    mErrors.Clear();
    Read(chip, mFolder / "", nullptr);
    EXPECT_NE(mErrors.Text().find("(Is a directory)"), std::string::npos) << mErrors.Text();
    mErrors.Clear();
}

TEST_F(LyingImage, about_its_length_is_refused)
{
    EXPECT_EQ(ErrorOf(AnImage(0, "") + "x"), "the image has 22 bytes; it is said to have 21");
    EXPECT_EQ(ErrorOf("ZIMG" + Bytes(1, 2) + Bytes(0, 2) + Bytes(0xFFFFFFFF, 4)),
        "the image is said to have 4294967295 bytes");
    EXPECT_EQ(ErrorOf("ZIMG" + Bytes(1, 2) + Bytes(0, 2) + Bytes(0x0FFFFFFF, 4)),
        "the image has 12 bytes; it is said to have 268435455");
    EXPECT_EQ(ErrorOf(AnImage(0, "behind")), "6 bytes are left behind the last store");
    EXPECT_EQ(ErrorOf(WithChecksum("ZIMG" + Bytes(1, 2) + Bytes(0, 2) + Bytes(18, 4) + Bytes(9, 2))),
        "the image ends within the label of the chip");
}

TEST_F(LyingImage, about_its_checksum_is_refused)
{
    std::string image = AnImage(0, "");
    image.back() = static_cast<char>(image.back() ^ 1);
    EXPECT_EQ(ErrorOf(image), "the image is damaged: its checksum is wrong");
}

TEST_F(LyingImage, about_its_counts_is_refused)
{
    EXPECT_EQ(ErrorOf(AnImage(1, "")), "the image ends within a store");
    EXPECT_EQ(ErrorOf(AnImage(65535, AStore(0))), "the image ends within a store");
    EXPECT_EQ(ErrorOf(AnImage(1, AStore(2) + AChunk(1, Bytes(1, 4)))),
        "store 1 of eeprom: chunk 2 reaches beyond the end; 2 are announced");
    EXPECT_EQ(ErrorOf(AnImage(1, AStore(1) + Bytes(1, 2) + Bytes(65535, 2) + "x")),
        "store 1 of eeprom: chunk 1 reaches beyond the end; 1 are announced");
    EXPECT_EQ(
        ErrorOf(AnImage(1, AStore(0) + AChunk(1, Bytes(1, 4)))), "8 bytes are left behind the last store");
}

TEST_F(LyingImage, about_its_stores_is_refused)
{
    EXPECT_EQ(ErrorOf(AnImage(2, AStore(0) + AStore(0))), "store 1 of eeprom is there twice");
    EXPECT_EQ(ErrorOf(AnImage(1, AStore(0, 15, 65536))),
        "store 65536 of eeprom is out of range; expected numbers up to 65535");
    EXPECT_EQ(ErrorOf(AnImage(1, AStore(0, 0xFFFFFFFE))),
        "store 1 of device -2 is out of range; expected numbers up to 65535");
    EXPECT_EQ(
        ErrorOf(AnImage(1, AStore(1) + AChunk(2, Bytes(1, 4)))), "store 1 of eeprom: chunk 1 has the number 2");
}

TEST_F(LyingImage, about_its_sizes_is_refused)
{
    const std::string chunk = AChunk(1, Bytes(1, 4));
    EXPECT_EQ(ErrorOf(AnImage(1, AStore(1, 15, 1, 7, 0) + chunk)),
        "store 1 of eeprom has 8 bytes used and 0 free, more than its size of 7");
    EXPECT_EQ(ErrorOf(AnImage(1, AStore(1, 15, 1, 9, 2) + chunk)),
        "store 1 of eeprom has 8 bytes used and 2 free, more than its size of 9");
    EXPECT_EQ(ErrorOf(AnImage(1, AStore(1, 15, 1, 9, 0xFFFFFFFE) + chunk)),
        "store 1 of eeprom has a free size of -2");
    EXPECT_EQ(ErrorOf(AnImage(1, AStore(1, 15, 1, 10, 2) + chunk)), "");
    EXPECT_EQ(ErrorOf(AnImage(1, AStore(1, 15, 1, 8, 0xFFFFFFFF) + chunk)), "");
    EXPECT_EQ(ErrorOf(AnImage(1, AStore(1, 15, 1, 0xFFFFFFFF, 5) + chunk)), "");
}

TEST_F(LyingImage, of_more_stores_than_a_chip_has_layers_is_refused)
{
    std::string stores;
    for (std::uint64_t number = 1; number <= 15; ++number)
        stores += AStore(0, number % 2 == 0 ? 15 : 2, number);
    const std::string others = AStore(0, 13, 1) + AStore(0, 15, 0);   // no layers
    EXPECT_EQ(ErrorOf(AnImage(17, stores + others)), "");
    EXPECT_EQ(ErrorOf(AnImage(16, stores + AStore(0, 0, 1))),
        "the image has 16 stores that make layers; a chip has 15");
}

TEST_F(LyingImage, about_a_key_is_refused)
{
    const std::string chunk = "store 1 of eeprom, chunk 1: ";
    EXPECT_EQ(ErrorOfKey(""), chunk + "it is cut off");
    EXPECT_EQ(ErrorOfKey(Bytes(1, 4) + "x"), chunk + "a key is cut off");
    EXPECT_EQ(ErrorOfKey(Bytes(65536, 4)), chunk + "the subsystem type 65536 is out of range");
    EXPECT_EQ(ErrorOfKey(AKey(0, "ab")), chunk + "a key has the number 0");
    EXPECT_EQ(ErrorOfKey(AKey(5, "ab", 2)), chunk + "key 5: a value of the unknown form 2");
    EXPECT_EQ(ErrorOfKey(AKey(5, "abc")), chunk + "key 5: a value of words has an odd number of bytes");
    EXPECT_EQ(ErrorOfKey(Bytes(1, 4) + Bytes(5, 4) + Bytes(0, 1) + Bytes(255, 1)), chunk + "a key is cut off");
}

TEST_F(LyingImage, about_indices_is_refused)
{
    const std::string chunk = "store 1 of eeprom, chunk 1: key 13: ";
    EXPECT_EQ(ErrorOfKey(AKey(13, "ab", 0, { 100000000, 1 })),
        chunk + "the index 100000000 is out of range; expected less than 100000000");
    EXPECT_EQ(ErrorOfKey(AKey(13, "ab", 0, std::vector<std::uint32_t>(10, 1))),
        chunk + "a table row of 10 indices; an image holds 9 at most");
    const std::string key = "store 1 of eeprom, key 13";
    EXPECT_EQ(ErrorOfKey(AKey(13, Bytes(1, 2), 0, { 1 })),
        key + ".1 (Table): the key has 1 index; the metadata describe 2");
    EXPECT_EQ(
        ErrorOfKey(AKey(13, Bytes(1, 2))), key + " (Table): the key has 0 indices; the metadata describe 2");
    EXPECT_EQ(ErrorOfKey(AKey(5, Bytes(1, 2), 0, { 4 })),
        "store 1 of eeprom, key 5.4 (Nuint8): the key has 1 index; the metadata describe 0");
}

TEST_F(LyingImage, about_values_is_refused)
{
    const std::string key = "store 1 of eeprom, key ";
    EXPECT_EQ(
        ErrorOfKey(AKey(5, Bytes(256, 2))), key + "5 (Nuint8): the word 256 is no value of the type \"uint8\"");
    EXPECT_EQ(
        ErrorOfKey(AKey(1, Bytes(0x80, 2))), key + "1 (Nint8): the word 128 is no value of the type \"int8\"");
    EXPECT_EQ(ErrorOfKey(AKey(7, "ab")), key + "7 (Nuint32): the value is cut off");
    EXPECT_EQ(ErrorOfKey(AKey(5, "ab", 1)),
        key + "5 (Nuint8): the value is a string of octets; the metadata describe words");
    EXPECT_EQ(ErrorOfKey(AKey(10, "ab")),
        key + "10 (Text): the value is made of words; the metadata describe a string of octets");
    EXPECT_EQ(ErrorOfKey(AKey(12, Bytes(1, 4) + "ab")), key + "12 (Colour): the value is cut off");
    EXPECT_NE(ErrorOfKey(AKey(10, std::string(41, 'x'), 1)).find("is out of range [0,40], got 41"),
        std::string::npos);
}

// The library takes as many values as there are, and any index.
TEST_F(LyingImage, about_the_number_of_values_is_refused)
{
    const std::string key = "store 1 of eeprom, key ";
    mProvider.Number(BT, ARecord(50).Named("One").OfType("uint8").Within(0, 9));
    mProvider.Number(BT, ARecord(51).Named("Few").OfType("uint32").Within(0, 9).Array(2, 3));
    mProvider.Number(BT, ARecord(52).Named("Any").OfType("uint8").Within(0, 9).Array(0, 0));
    EXPECT_EQ(ErrorOfKey(AKey(50, Bytes(0, 4))), key + "50 (One): found 2 values; expected 1");
    EXPECT_EQ(ErrorOfKey(AKey(50, Bytes(0, 2))), "");
    EXPECT_EQ(ErrorOfKey(AKey(51, Bytes(0, 4))), key + "51 (Few): found 1 value; expected 2 to 3");
    EXPECT_EQ(ErrorOfKey(AKey(51, std::string(12, '\0'))), "");
    EXPECT_EQ(ErrorOfKey(AKey(51, std::string(16, '\0'))), key + "51 (Few): found 4 values; expected 2 to 3");
    EXPECT_EQ(ErrorOfKey(AKey(52, std::string(500, '\0'))), "");
    mProvider.Enum(BT, ARecord(53).Named("Hue"), { { "RED", 0 } });
    EXPECT_EQ(ErrorOfKey(AKey(53, Bytes(0, 8))), key + "53 (Hue): found 2 values; expected 1");
    mProvider.Struct(BT, ARecord(54).Named("Two").Array(2, 2))
        .AddField("", &mProvider.NumberField(ARecord(0).OfType("uint8").Within(0, 255)), 0, 8);
    EXPECT_EQ(ErrorOfKey(AKey(54, Bytes(0, 4))), "");
    EXPECT_EQ(ErrorOfKey(AKey(54, Bytes(0, 6))), key + "54 (Two): found 3 values; expected 2");
}

TEST_F(LyingImage, about_the_rows_of_a_table_is_refused)
{
    const std::string key = "store 1 of eeprom, key 55";
    auto & table =
        mProvider.Number(BT, ARecord(55).Named("Gain").OfType("uint8").Within(0, 9).WithNumIndices(2));
    MemoryProvider::AddIndex(table, "Row", 3, 5);
    MemoryProvider::AddIndex(table, "Side", { { "LEFT", 1 }, { "RIGHT", 7 } });
    EXPECT_EQ(ErrorOfKey(AKey(55, Bytes(1, 2), 0, { 3, 7 })), "");
    EXPECT_EQ(ErrorOfKey(AKey(55, Bytes(1, 2), 0, { 5, 1 })), "");
    EXPECT_EQ(ErrorOfKey(AKey(55, Bytes(1, 2), 0, { 2, 7 })),
        key + ".2.7 (Gain): the index \"Row\" is 2; expected 3 to 5");
    EXPECT_EQ(ErrorOfKey(AKey(55, Bytes(1, 2), 0, { 6, 7 })),
        key + ".6.7 (Gain): the index \"Row\" is 6; expected 3 to 5");
    EXPECT_EQ(ErrorOfKey(AKey(55, Bytes(1, 2), 0, { 3, 2 })),
        key + ".3.2 (Gain): the index \"Side\" is 2, which has no name");
}

TEST_F(LyingImage, about_structs_is_refused)
{
    const std::string fit = "store 1 of eeprom, key 20 (Fit): ";
    EXPECT_EQ(ErrorOfKey(AKey(20, std::string(24, 'x'))),
        fit + "the value has 24 bytes; the struct that the metadata describe has 26");
    EXPECT_EQ(ErrorOfKey(AKey(20, std::string(52, 'x'))),
        fit + "the value has 52 bytes; the struct that the metadata describe has 26");
    EXPECT_EQ(ErrorOfKey(AKey(20, std::string(26, 'x'), 1)),
        fit + "the value is a string of octets; the metadata describe a struct of words");
    EXPECT_EQ(ErrorOfKey(AKey(21, std::string(8, 'x'))), "store 1 of eeprom, key 21 (Pairs): the value has 8 "
                                                         "bytes; the struct that the metadata describe has 6");
}

TEST_F(LyingImage, is_told_key_by_key_in_one_error)
{
    EXPECT_EQ(
        ErrorOf(AnImage(2, AStore(2) + AChunk(1, AKey(5, Bytes(256, 2))) + AChunk(2, AKey(6, Bytes(1, 2))) +
                               AStore(1, 0, 3) + AChunk(1, AKey(7, "ab"))),
            "chip=xyz"),
        "the image is for the chip \"abc\"; expected \"xyz\"\n"
        "store 1 of eeprom, key 5 (Nuint8): the word 256 is no value of the type \"uint8\"\n"
        "store 3 of rom, key 7 (Nuint32): the value is cut off");
}

TEST_F(LyingImage, has_its_first_hundred_faults_told)
{
    std::string chunks;
    for (std::uint64_t id = 1; id <= 103; ++id)
        chunks += AChunk(id, "");
    const std::string error = ErrorOf(AnImage(1, AStore(103) + chunks));
    EXPECT_EQ(std::count(error.begin(), error.end(), '\n'), 100);
    EXPECT_NE(error.find("and 3 more"), std::string::npos);
}

TEST_F(LyingImage, with_metadata_that_make_no_sense_is_refused)
{
    auto & empty = mProvider.Struct(BT, ARecord(40).Named("Empty").Array());
    EXPECT_EQ(ErrorOfKey(AKey(40, "ab")),
        "store 1 of eeprom, key 40 (Empty): the metadata describe a struct of 0 bits");
    empty.AddField("", &mProvider.NumberField(ARecord(0).OfType("uint8")), 0, 0x7FFFFFFF);
    EXPECT_EQ(ErrorOfKey(AKey(40, "ab")),
        "store 1 of eeprom, key 40 (Empty): the metadata describe a struct of 2147483647 bits");
    mProvider.Number(BT, ARecord(41).Named("Odd").OfType("unicode_string"));
    EXPECT_EQ(ErrorOfKey(AKey(41, "ab")),
        "store 1 of eeprom, key 41 (Odd): values of the type \"unicode_string\" have no raw form");
}

}   // namespace
}   // namespace VrexZynConfigTools::support
