// Reads without checks, metadata that is wrong, and files that are far too large.

#include "described_support.h"

#include <gmock/gmock.h>

#include <chrono>

namespace {

using namespace VrexZynConfigTools;
using namespace VrexZynConfigTools::support;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

const std::string UNCHECKED = "nodatacheck=true";

using WithoutChecks = DescribedTest;

TEST_F(WithoutChecks, numbers_and_texts_come_as_they_are)
{
    EXPECT_THAT(Read("name = 'Volume', value = 200", UNCHECKED),
        ElementsAre("numbers4 16 " + Hex("Volume") + " 4:200"));
    EXPECT_THAT(
        Read("name = 'Title', value = ''", UNCHECKED), ElementsAre("text 18 " + Hex("Title") + " 8:text:"));
    EXPECT_THAT(
        Read("name = 'Curve', value = 500", UNCHECKED), ElementsAre("numbers1 20 " + Hex("Curve") + " 1:500"));
}

TEST_F(WithoutChecks, a_number_that_does_not_fit_keeps_its_low_bits_with_a_warning)
{
    StatusRecorder status;
    EXPECT_THAT(
        Read("name = 'Volume', value = 300", UNCHECKED), ElementsAre("numbers4 16 " + Hex("Volume") + " 4:44"));
    EXPECT_THAT(status.Texts(),
        ElementsAre(
            HasSubstr("in.toml:7:35: \"Volume\": 300 doesn't fit into uint8; what is left of it is 44")));
}

TEST_F(WithoutChecks, an_unknown_enumerator_leaves_its_key_out_with_a_warning)
{
    StatusRecorder status;
    EXPECT_THAT(Read("name = 'Mode', value = 'NONE'", UNCHECKED), IsEmpty());
    EXPECT_THAT(Read("name = 'Mode', value = 7", UNCHECKED), IsEmpty());
    EXPECT_THAT(status.Texts(),
        ElementsAre(HasSubstr(":7:33: \"Mode\": unknown enumerator \"NONE\"; the key is left out"),
            HasSubstr(":7:33: \"Mode\": no enumerator has the number 7; the key is left out")));
}

// What stands behind the enumerator would move into its place.
TEST_F(WithoutChecks, an_unknown_enumerator_leaves_its_whole_structure_out)
{
    StatusRecorder status;
    std::string fit = A_FIT;
    fit.replace(fit.find("'RIGHT'"), 7, "'ABOVE'");
    EXPECT_THAT(Read("name = 'Fit', value = { " + fit + " }", UNCHECKED), IsEmpty());
    EXPECT_THAT(status.Texts(), ElementsAre(HasSubstr("\"Fit.Kind\": unknown enumerator \"ABOVE\"")));
}

TEST_F(WithoutChecks, indices_may_lie_outside_of_their_range)
{
    EXPECT_THAT(Read("name = 'GainTrim', index = [9, 7], value = 1", UNCHECKED),
        ElementsAre("row[9.7] 24 " + Hex("GainTrim") + " 0:1"));
}

TEST_F(WithoutChecks, what_has_no_value_is_still_a_mistake)
{
    EXPECT_EQ(ErrorOf(ADescribedKey("name = 'Volume', value = 'x'"), UNCHECKED),
        "7:35: \"Volume\": expected a whole number from 0 to 100, found a text");
    EXPECT_EQ(ErrorOf(ADescribedKey("name = 'Profiles', value = { Level = 1 }"), UNCHECKED),
        "7:37: \"Steps\" is missing: a field of \"Profiles\"");
    EXPECT_EQ(ErrorOf(ADescribedKey("name = 'GainTrim', index = [100000000, 0], value = 1"), UNCHECKED),
        "7:38: \"index\": 100000000 is out of range for the index \"channel\"; expected 0 to 99999999");
}

class WrongMetadata : public DescribedTest
{
protected:
    std::string ErrorOfKey(const std::string & fields) { return ErrorOf(ADescribedKey(fields)); }
};

TEST_F(WrongMetadata, a_record_may_say_nothing_of_the_value)
{
    mProvider.Bare(SUBSYSTEM_BT, ARecord(50).Named("Bare").OfType("uint8"));
    EXPECT_EQ(ErrorOfKey("id = 50, value = 1"),
        "7:8: the metadata of \"Bare\" describes no value; give the key a type");
    EXPECT_THAT(Read("id = 50, type = 'int8', value = 1"), ElementsAre("numbers0 50  0:1"));
}

TEST_F(WrongMetadata, a_type_may_be_none_of_numbers)
{
    mProvider.Number(SUBSYSTEM_BT, ARecord(50).Named("Float").OfType("float"));
    EXPECT_EQ(ErrorOfKey("id = 50, value = 1"),
        "7:27: \"Float\": the metadata gives it the type \"float\", which is no type of numbers");
}

TEST_F(WrongMetadata, an_index_may_be_missing)
{
    mProvider.Number(SUBSYSTEM_BT, ARecord(50).Named("Table").OfType("uint8").WithNumIndices(2));
    EXPECT_EQ(ErrorOfKey("id = 50, index = [1, 2], value = 0"),
        "7:8: the metadata of \"Table\" describes 0 of its 2 indices");
}

TEST_F(WrongMetadata, ten_indices_are_too_many_and_nine_are_not)
{
    CMetadata & nine =
        mProvider.Number(SUBSYSTEM_BT, ARecord(50).Named("Nine").OfType("uint8").WithNumIndices(9));
    CMetadata & ten =
        mProvider.Number(SUBSYSTEM_BT, ARecord(51).Named("Ten").OfType("uint8").WithNumIndices(10));
    for (int i = 0; i < 9; ++i)
        MemoryProvider::AddIndex(nine, "i", 0, 99999999);
    for (int i = 0; i < 10; ++i)
        MemoryProvider::AddIndex(ten, "i", 0, 9);
    EXPECT_THAT(Read("id = 50, index = [9, 8, 7, 6, 5, 4, 3, 2, 99999999], value = 0"),
        ElementsAre("row[9.8.7.6.5.4.3.2.99999999] 50 " + Hex("Nine") + " 4:0"));
    EXPECT_EQ(ErrorOfKey("id = 51, index = [9, 8, 7, 6, 5, 4, 3, 2, 1, 0], value = 0"),
        "7:8: \"Ten\" is a table with 10 indices; a file can give 9 at most");
}

TEST_F(WrongMetadata, two_fields_of_one_name_cannot_be_told_apart)
{
    auto & twins = mProvider.Struct(SUBSYSTEM_BT, ARecord(50).Named("Twins"));
    twins.AddField("", &mProvider.NumberField(ARecord(0).Named("a").OfType("uint8")), 0, 8);
    twins.AddField("", &mProvider.NumberField(ARecord(0).Named("a").OfType("uint8")), 8, 8);
    EXPECT_THAT(ErrorOfKey("id = 50, value = { a = 0 }"),
        HasSubstr("7:27: \"Twins\": the metadata gives two of its fields one name, or none"));
    auto & hollow = mProvider.Struct(SUBSYSTEM_BT, ARecord(51).Named("Hollow"));
    hollow.AddField("", nullptr, 0, 8);
    EXPECT_THAT(ErrorOfKey("id = 51, value = { a = 0 }"), HasSubstr("a struct field has no metadata"));
}

TEST_F(WrongMetadata, an_array_in_a_structure_needs_items_of_a_width)
{
    auto & odd = mProvider.Struct(SUBSYSTEM_BT, ARecord(50).Named("Odd"));
    odd.AddField("", &mProvider.NumberField(ARecord(0).Named("a").OfType("string").Array()), 0, 32);
    odd.AddField("", &mProvider.StructField(ARecord(0).Named("b").Array()), 32, 32);
    odd.AddField("", &mProvider.NumberField(ARecord(0).Named("c").OfType("uint8").Array()), 64, -5);
    EXPECT_EQ(ErrorOfKey("id = 50, value = { a = ['x'], b = [{}], c = [1] }"),
        "7:33: \"Odd.a\": the metadata describes an array without room for an item\n"
        "7:44: \"Odd.b\": the metadata describes an array without room for an item\n"
        "7:54: \"Odd.c\": the metadata describes an array without room for an item");
}

TEST_F(WrongMetadata, a_structure_that_holds_itself_ends)
{
    auto & loop = mProvider.Struct(SUBSYSTEM_BT, ARecord(50).Named("Loop"));
    CMetadata & inner = mProvider.StructField(ARecord(0).Named("in"));
    loop.AddField("", &inner, 0, 16);
    dynamic_cast<CMetadataDetailStruct &>(*inner.Details()).AddField("", &inner, 0, 16);
    EXPECT_EQ(ErrorOfKey("id = 50, value = { in = {} }"),
        "7:27: \"Loop\": the metadata nests structs too deep\n7:34: \"in\" is missing: a field of \"Loop.in\"");
}

class LargeFiles : public DescribedTest
{
protected:
    static std::string Items(std::size_t count)
    {
        std::string items = "0";
        for (std::size_t i = 1; i < count; ++i)
            items += ",0";
        return '[' + items + ']';
    }
};

TEST_F(LargeFiles, hold_as_many_items_in_a_key_as_there_may_be)
{
    mProvider.Number(SUBSYSTEM_BT, ARecord(50).Named("Long").OfType("uint8").Array(0, 0));
    ReadChip chip;
    chip.Use(&mProvider);
    ASSERT_TRUE(chip.Read(Put(ADescribedKey("id = 50, value = " + Items(65536))))) << mErrors.Text();
    EXPECT_EQ(chip.Elements().front()->GetPayloadCopy(false).size(), 65536u);
    EXPECT_EQ(ErrorOf(ADescribedKey("id = 50, value = " + Items(65537))),
        "7:27: \"Long\": found 65537 values; expected 65536 at most");
}

TEST_F(LargeFiles, hold_no_million_items)
{
    mProvider.Number(SUBSYSTEM_BT, ARecord(50).Named("Long").OfType("uint8").Array(0, 0));
    EXPECT_EQ(ErrorOf(ADescribedKey("id = 50, value = " + Items(1000000))),
        "7:27: \"Long\": found 1000000 values; expected 65536 at most");
    EXPECT_EQ(ErrorOf(ADescribedKey("name = 'Profiles', value = " + Items(1000000))),
        "7:37: \"Profiles\": found 1000000 values; expected 65536 at most");
}

TEST_F(LargeFiles, may_nest_arrays_deep)
{
    const std::string deep(200, '[');
    EXPECT_EQ(ErrorOf(ADescribedKey("name = 'Curve', value = [1, " + deep + std::string(200, ']') + "]")),
        "7:38: \"Curve\": expected a whole number from -100 to 100, found an array");
}

TEST_F(LargeFiles, get_advice_for_their_first_unknown_keys)
{
    std::string text = HEAD;
    for (int i = 0; i < 200; ++i)
        text += "[[subsystem.key]]\nname = 'V'\nvalue = 1\n";
    const std::string error = ErrorOf(text);
    EXPECT_THAT(
        error, HasSubstr("305:8: unknown key \"V\"; did you mean \"Volume\"?\n308:8: unknown key \"V\"\n"));
    EXPECT_EQ(std::count(error.begin(), error.end(), '\n'), 199);
}

double SecondsToRead(DescribedTest &, MemoryProvider & provider, const std::string & path)
{
    const auto begin = std::chrono::steady_clock::now();
    ReadChip chip;
    chip.Use(&provider);
    EXPECT_TRUE(chip.Read(path));
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

// Ten times as many keys take ten times as long; a quadratic step would take a hundred times.
TEST_F(LargeFiles, are_read_in_a_time_that_grows_with_their_keys)
{
    std::string text = HEAD;
    std::string small;
    for (std::uint32_t id = 1000; id < 11000; ++id) {
        const std::string name = "Key" + std::to_string(id);
        mProvider.Number(SUBSYSTEM_BT, ARecord(id).Named(name).OfType("uint8").Within(0, 9));
        text += "[[subsystem.key]]\nname = '" + name + "'\nvalue = 1\n";
        if (id == 1999)
            small = text;
    }
    PutContent(mFolder / "small.toml", small);
    PutContent(mFolder / "large.toml", text);
    SecondsToRead(*this, mProvider, mFolder / "small.toml");   // warms up
    const double few = SecondsToRead(*this, mProvider, mFolder / "small.toml");
    EXPECT_LT(SecondsToRead(*this, mProvider, mFolder / "large.toml"), few * 40 + 0.2);
}

}   // namespace
