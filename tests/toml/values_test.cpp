// What values become: every type word, the ends of every range, and what lies just outside of them.

#include "toml_support.h"

#include <gmock/gmock.h>

namespace {

using namespace VrexZynConfigTools;
using namespace VrexZynConfigTools::support;

class Values : public TomlTest
{
protected:
    // The element of a file with this one key, described; or the error.
    std::string Read(const std::string & typeWord, const std::string & value, const std::string & more = "")
    {
        ReadChip chip;
        const std::string path = Put(AFile(typeWord, value) + more);
        if (!chip.Read(path)) {
            const std::string error = mErrors.Text();
            mErrors.Clear();
            return error.substr(path.size() + 1);
        }
        const std::string text = Describe(*chip.Elements().at(0));
        const std::string place = " 100 " + Hex("Key") + ' ';
        const std::size_t found = text.find(place);
        return text.substr(0, found) + ' ' + text.substr(found + place.size());
    }
};

struct IntegerCase
{
    std::string mWord;
    int mNumericType;   // and the type code of the payload
    std::string mMin;
    std::string mMax;
    std::string mBelow;
    std::string mAbove;
};

std::ostream & operator<<(std::ostream & stream, const IntegerCase & type)
{
    return stream << type.mWord;
}

class IntegerValues : public Values, public ::testing::WithParamInterface<IntegerCase>
{
protected:
    std::string Element(const std::string & number) const
    {
        const std::string type = std::to_string(GetParam().mNumericType);
        return "numbers" + type + ' ' + type + ':' + number;
    }
    std::string OutOfRange(const std::string & number) const
    {
        return "12:9: \"value\": " + number + " is out of range for " + GetParam().mWord + "; expected " +
               GetParam().mMin + " to " + GetParam().mMax;
    }
};

TEST_P(IntegerValues, reach_from_the_lowest_to_the_highest)
{
    EXPECT_EQ(Read(GetParam().mWord, GetParam().mMin), Element(GetParam().mMin));
    EXPECT_EQ(Read(GetParam().mWord, GetParam().mMax), Element(GetParam().mMax));
    EXPECT_EQ(Read(GetParam().mWord, "1"), Element("1"));
}

TEST_P(IntegerValues, are_refused_just_outside)
{
    if (!GetParam().mBelow.empty()) {
        EXPECT_EQ(Read(GetParam().mWord, GetParam().mBelow), OutOfRange(GetParam().mBelow));
    }
    if (!GetParam().mAbove.empty()) {
        EXPECT_EQ(Read(GetParam().mWord, GetParam().mAbove), OutOfRange(GetParam().mAbove));
    }
}

TEST_P(IntegerValues, stand_in_arrays)
{
    const std::string type = std::to_string(GetParam().mNumericType);
    EXPECT_EQ(Read(GetParam().mWord, "[1, 2, 1]"),
        "numbers" + type + ' ' + type + ":1 " + type + ":2 " + type + ":1");
    EXPECT_EQ(Read(GetParam().mWord, "[7]"), Element("7"));
}

TEST_P(IntegerValues, are_fields_of_a_structure)
{
    const std::string type = std::to_string(GetParam().mNumericType);
    EXPECT_EQ(Read("struct", "[{ " + GetParam().mWord + " = " + GetParam().mMin + " }]"),
        "struct " + type + ':' + GetParam().mMin);
}

INSTANTIATE_TEST_SUITE_P(OfEachType, IntegerValues,
    ::testing::Values(IntegerCase{ "int8", 0, "-128", "127", "-129", "128" },
        IntegerCase{ "int16", 1, "-32768", "32767", "-32769", "32768" },
        IntegerCase{ "int32", 2, "-2147483648", "2147483647", "-2147483649", "2147483648" },
        IntegerCase{ "int64", 3, "-9223372036854775808", "9223372036854775807", "", "" },
        IntegerCase{ "integer", 3, "-9223372036854775808", "9223372036854775807", "", "" },
        IntegerCase{ "uint8", 4, "0", "255", "-1", "256" },
        IntegerCase{ "uint16", 5, "0", "65535", "-1", "65536" },
        IntegerCase{ "uint32", 6, "0", "4294967295", "-1", "4294967296" },
        IntegerCase{ "uint64", 7, "0", "9223372036854775807", "", "" }),
    [](const auto & tested) { return tested.param.mWord; });

TEST_F(Values, of_uint64_above_the_signed_range_are_texts)
{
    EXPECT_EQ(Read("uint64", "\"18446744073709551615\""), "numbers7 7:18446744073709551615");
    EXPECT_EQ(Read("uint64", "\"0xFFFFFFFFFFFFFFFF\""), "numbers7 7:18446744073709551615");
    EXPECT_EQ(Read("uint64", "\"9223372036854775808\""), "numbers7 7:9223372036854775808");
    EXPECT_EQ(Read("uint64", "[1, \"18446744073709551615\"]"), "numbers7 7:1 7:18446744073709551615");
    EXPECT_EQ(Read("uint64", "-1"),
        "12:9: \"value\": -1 is out of range for uint64; expected 0 to 18446744073709551615");
}

TEST_F(Values, of_uint64_as_texts_must_be_numbers_in_range)
{
    for (const std::string junk :
        { "", "-1", "18446744073709551616", "1.0", "0x", "0xg", " 1", "1 ", "+1", "ff" })
        EXPECT_EQ(Read("uint64", '"' + junk + '"'),
            "12:9: \"value\": expected a number of the type uint64, found \"" + junk + '"');
}

TEST_F(Values, of_other_integers_are_no_texts)
{
    EXPECT_EQ(
        Read("int64", "\"1\""), "12:9: \"value\": expected a whole number of the type int64, found a text");
}

TEST_F(Values, may_be_written_with_any_base)
{
    EXPECT_EQ(Read("uint32", "0xDEAD_beef"), "numbers6 6:3735928559");
    EXPECT_EQ(Read("uint8", "0b1111_0000"), "numbers4 4:240");
    EXPECT_EQ(Read("uint16", "0o777"), "numbers5 5:511");
    EXPECT_EQ(Read("int32", "-1_000_000"), "numbers2 2:-1000000");
}

TEST_F(Values, of_texts_are_taken_as_they_are)
{
    EXPECT_EQ(Read("string", "\"\""), "text 8:text:");
    EXPECT_EQ(Read("string", "\"h\xC3\xA9\""), "text 8:text:68c3a9");
    EXPECT_EQ(Read("string", "\"a\\nb\\u0000\""), "text 8:text:610a6200");
    EXPECT_EQ(Read("string", "'''\nx\ny'''"), "text 8:text:780a79");
    EXPECT_EQ(Read("string", "{ hex = \"00 Ff\" }"), "text 8:text:00ff");
    EXPECT_EQ(Read("string", "{ hex = \"\" }"), "text 8:text:");
}

TEST_F(Values, of_octet_strings_are_pairs_of_digits)
{
    EXPECT_EQ(Read("octet_string", "\"00fF\""), "octets 8:octets:00ff");
    EXPECT_EQ(Read("octet_string", "\" 01\t02\\n03 \""), "octets 8:octets:010203");
    EXPECT_EQ(Read("octet_string", "\"\""), "octets 8:octets:");
    EXPECT_EQ(
        Read("octet_string", "\"0\""), "12:9: \"value\": expected pairs of hexadecimal digits, found \"0\"");
    for (const std::string junk : { "0 0", "0g", "g0", "00:11", "0x00", "000" })
        EXPECT_EQ(Read("octet_string", '"' + junk + '"'),
            "12:9: \"value\": expected pairs of hexadecimal digits, found \"" + junk + '"');
}

TEST_F(Values, of_enumerators_are_name_and_number)
{
    EXPECT_EQ(Read("enum", "{ name = \"ON\", number = -2147483648 }"), "enum 10:4f4e=-2147483648");
    EXPECT_EQ(Read("enum", "{ number = 2147483647, name = { hex = \"00\" } }"), "enum 10:00=2147483647");
    EXPECT_EQ(
        Read("enum", "[{ name = \"A\", number = 1 }, { name = \"\", number = 0 }]"), "enum 10:41=1 10:=0");
}

TEST_F(Values, of_structures_are_fields_in_order)
{
    EXPECT_EQ(Read("struct", "[{ uint8 = 1 }, { string = \"a\" }, { octet_string = \"ff\" }, "
                             "{ enum = { name = \"E\", number = 3 } }, { string = { hex = \"00\" } }]"),
        "struct 4:1 8:text:61 8:octets:ff 10:45=3 8:text:00");
}

TEST_F(Values, of_structures_may_nest)
{
    EXPECT_EQ(
        Read("struct", "[[], [{ int8 = -1 }, [{ raw = [{ uint8 = 1 }, []] }]], { struct = [{ uint8 = 2 }] }]"),
        "struct 9:() 9:(0:-1 9:(11:(4:1 9:() ) ) ) 9:(4:2 )");
}

TEST_F(Values, may_be_raw)
{
    EXPECT_EQ(Read("raw", "[{ uint16 = 1 }, [{ uint16 = 2 }]]"), "raw 5:1 9:(5:2 )");
}

TEST_F(Values, of_rows_may_be_several_texts)
{
    EXPECT_EQ(Read("string", "[\"a\", { hex = \"00\" }]", "index = 1\n"), "row[1] 8:text:61 8:text:00");
    EXPECT_EQ(Read("octet_string", "[\"00\", \"\"]", "index = 1\n"), "row[1] 8:octets:00 8:octets:");
}

TEST_F(Values, of_every_shape_make_rows)
{
    EXPECT_EQ(Read("uint8", "1", "index = 4294967295\n"), "row[4294967295] 4:1");
    EXPECT_EQ(Read("uint8", "[1, 2]", "index = [1, 2, 3]\n"), "row[1.2.3] 4:1 4:2");
    EXPECT_EQ(Read("octet_string", "\"ff\"", "index = 0\n"), "row[0] 8:octets:ff");
    EXPECT_EQ(Read("enum", "{ name = \"E\", number = 3 }", "index = [7]\n"), "row[7] 10:45=3");
    EXPECT_EQ(Read("struct", "[[{ uint8 = 1 }]]", "index = 1\n"), "row[1] 9:(4:1 )");
    EXPECT_EQ(Read("raw", "[{ uint8 = 1 }]", "index = 1\n"), "row[1] 4:1");
    EXPECT_EQ(Read("uint8", "1", "index = []\n"), "row[] 4:1");
}

TEST_F(Values, of_structures_may_be_empty_if_the_key_has_no_name)
{
    ReadChip chip;
    ASSERT_TRUE(chip.Read(Put(HEAD + "key = [{ id = 1, type = \"struct\", value = [] }, "
                                     "{ id = 2, type = \"raw\", value = [] }]\n")))
        << mErrors.Text();
    EXPECT_EQ(Describe(*chip.Elements().at(0)), "struct 1 ");
    EXPECT_EQ(Describe(*chip.Elements().at(1)), "raw 2 ");
}

// The head of a key.

TEST_F(Values, stand_under_numbers_of_32_bits)
{
    ReadChip chip;
    ASSERT_TRUE(chip.Read(Put(HEAD + "key = [{ id = 1, type = \"uint8\", value = 1 }, "
                                     "{ id = 0xFFFF_FFFF, type = \"uint8\", value = 1 }]\n")));
    EXPECT_EQ(chip.Elements().at(0)->PsId(), 1u);
    EXPECT_EQ(chip.Elements().at(1)->PsId(), 4294967295u);
    EXPECT_EQ(chip.Elements().at(0)->Name(), "");
}

TEST_F(Values, may_have_names_of_any_bytes)
{
    ReadChip chip;
    ASSERT_TRUE(
        chip.Read(Put(HEAD + "key = [{ id = 1, name = { hex = \"00 ff\" }, type = \"uint8\", value = 1 }]\n")));
    EXPECT_EQ(chip.Elements().at(0)->Name(), std::string("\0\xFF", 2));
}

TEST_F(Values, are_marked_as_not_yet_written)
{
    ReadChip chip;
    ASSERT_TRUE(chip.Read(Put(AFile("uint8", "1"))));
    EXPECT_TRUE(chip.Elements().at(0)->HasChanged());
}

TEST_F(Values, of_types_and_devices_may_be_keywords_numbers_or_empty)
{
    const auto tags = [this](const std::string & type, const std::string & device, const std::string & store) {
        ReadChip chip;
        chip.Read(
            Put("chip = ''\n[[subsystem]]\ntype = " + type + "\ndevice = " + device + "\nstore = " + store));
        if (chip.Chip().Subsystems().empty())
            return mErrors.Text();
        CBaseContext & context = chip.Chip().Subsystems().begin()->second->Context();
        return context.GetTag("subsystemtype") + '/' + context.GetTag("device") + '/' + context.GetTag("store");
    };
    EXPECT_EQ(tags("'curator'", "'rom'", "1"), "0/0/1");
    EXPECT_EQ(tags("'psaudio'", "'fw_cfg'", "65535"), "10/14/65535");
    EXPECT_EQ(tags("'ble'", "'none'", "0"), "8/-1/0");
    EXPECT_EQ(tags("'wlan'", "'user_ps_audio'", "3"), "2/11/3");
    EXPECT_EQ(tags("77", "3", "1"), "77/3/1");
    EXPECT_EQ(tags("-1", "-1", "1"), "-1/-1/1");
    EXPECT_EQ(tags("65535", "65535", "1"), "65535/65535/1");
    EXPECT_EQ(tags("''", "''", "''"), "//");
}

}   // namespace
