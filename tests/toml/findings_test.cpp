// What is wrong with a file, told with its place, what was expected, and all of it in one run.

#include "toml_support.h"

#include <support/grouping_locale.h>

#include <gmock/gmock.h>

namespace {

using namespace VrexZynConfigTools;
using namespace VrexZynConfigTools::support;

struct FindingCase
{
    std::string mText;
    std::string mError;
};

std::ostream & operator<<(std::ostream & stream, const FindingCase & finding)
{
    return stream << finding.mError.substr(0, finding.mError.find('\n'));
}

// A key as an inline table in line 7 of a file.
std::string AKey(const std::string & fields)
{
    return HEAD + "key = [{ " + fields + " }]\n";
}

const std::string TYPES =
    "\"int8\", \"int16\", \"int32\", \"int64\", \"uint8\", \"uint16\", \"uint32\", \"uint64\", "
    "\"integer\", \"string\", \"octet_string\", \"enum\", \"struct\" or \"raw\"";
const std::string SUBSYSTEMS =
    "\"curator\", \"bt\", \"wlan\", \"audio\", \"gnss\", \"nfc\", \"janitor\", \"app\", "
    "\"ble\", \"psapps\" or \"psaudio\"";
const std::string FILTERED =
    "this file holds the result of a filtered write, which names layers in place of devices "
    "and stores; it is for reading by people and scripts only";
const std::string LAYERED =
    "a subsystem with a layer comes from a filtered write, which is for reading by people and "
    "scripts only; expected \"device\" and \"store\"";

class Findings : public TomlTest, public ::testing::WithParamInterface<FindingCase>
{};

TEST_P(Findings, tell_place_and_expectation)
{
    EXPECT_EQ(ErrorOf(GetParam().mText), GetParam().mError) << GetParam().mText;
}

INSTANTIATE_TEST_SUITE_P(OfTheFile, Findings,
    ::testing::Values(FindingCase{ "", "1:1: \"chip\" is missing: the file names the chip that it is for" },
        FindingCase{ "chip = 1", "1:8: \"chip\": expected a text or { hex = \"...\" }, found a whole number" },
        FindingCase{
            "chip = { hax = \"\" }", "1:8: \"chip\": expected a text or { hex = \"...\" }, found a table" },
        FindingCase{ "chip = { hex = \"\", more = 1 }",
            "1:8: \"chip\": expected a text or { hex = \"...\" }, found a table" },
        FindingCase{ "chip = { hex = 1 }",
            "1:16: \"hex\": expected bytes as a text of hexadecimal digits, found a whole number" },
        FindingCase{
            "chip = { hex = \"0\" }", "1:16: \"hex\": expected pairs of hexadecimal digits, found \"0\"" },
        FindingCase{ "chip = ''\nchap = 1", "2:1: unknown field \"chap\" in the file; did you mean \"chip\"?" },
        FindingCase{ "chip = ''\nother = 1",
            "2:1: unknown field \"other\" in the file; expected \"chip\" or \"subsystem\"" },
        FindingCase{ "chip = ''\n\"a\\nb\" = 1",
            "2:1: unknown field \"a\\x0ab\" in the file; expected \"chip\" or \"subsystem\"" },
        FindingCase{ "chip = ''\n[subsystem]\n",
            "2:1: \"subsystem\": expected [[subsystem]] with double brackets, or "
            "an array of tables, found a table" },
        FindingCase{
            "chip = ''\nsubsystem = [1]", "2:14: \"subsystem\": expected a table, found a whole number" },
        FindingCase{ "chip = ''\nlayerfilter = 3", "2:15: " + FILTERED }));

INSTANTIATE_TEST_SUITE_P(OfSubsystems, Findings,
    ::testing::Values(FindingCase{ "chip = ''\n[[subsystem]]\ntype = 'bt'\nlayer = 3", "4:9: " + LAYERED },
        FindingCase{ "chip = ''\n[[subsystem]]\ndevice = 'otp'\nstore = 1",
            "2:1: \"type\" is missing: a subsystem has a type, a device and a store" },
        FindingCase{ "chip = ''\n[[subsystem]]\ntype = 'bt'\nstore = 1",
            "2:1: \"device\" is missing: a subsystem has a type, a device and a store" },
        FindingCase{ "chip = ''\n[[subsystem]]\ntype = 'bt'\ndevice = 'otp'",
            "2:1: \"store\" is missing: a subsystem has a type, a device and a store" },
        FindingCase{ "chip = ''\n[[subsystem]]\ntype = 'vlan'\ndevice = 'otp'\nstore = 1",
            "3:8: unknown type \"vlan\"; did you mean \"wlan\"?" },
        FindingCase{ "chip = ''\n[[subsystem]]\ntype = 'BT'\ndevice = 'otp'\nstore = 1",
            "3:8: unknown type \"BT\"; did you mean \"bt\"?" },
        FindingCase{ "chip = ''\n[[subsystem]]\ntype = 'xyzzy'\ndevice = 'otp'\nstore = 1",
            "3:8: unknown type \"xyzzy\"; expected " + SUBSYSTEMS },
        FindingCase{ "chip = ''\n[[subsystem]]\ntype = 'bt'\ndevice = 'eprom'\nstore = 1",
            "4:10: unknown device \"eprom\"; did you mean \"eeprom\"?" },
        FindingCase{ "chip = ''\n[[subsystem]]\ntype = 'bt'\ndevice = 'floppy'\nstore = 1",
            "4:10: unknown device \"floppy\"; expected \"none\", \"rom\", \"otp\", \"smem\", \"mtp\", "
            "\"user_ps_audio\", \"user_ps_apps\", \"cur_cfg\", \"fw_cfg\" or \"eeprom\"" },
        FindingCase{ "chip = ''\n[[subsystem]]\ntype = 65536\ndevice = -2\nstore = -1",
            "3:8: \"type\": 65536 is out of range; expected -1 to 65535\n"
            "4:10: \"device\": -2 is out of range; expected -1 to 65535\n"
            "5:9: \"store\": -1 is out of range; expected 0 to 65535" },
        FindingCase{ "chip = ''\n[[subsystem]]\ntype = true\ndevice = 1.5\nstore = 'x'",
            "3:8: \"type\": expected a whole number from -1 to 65535, found a boolean\n"
            "4:10: \"device\": expected a whole number from -1 to 65535, found a number with a fraction\n"
            "5:9: \"store\": expected a whole number from 0 to 65535, found a text" },
        FindingCase{ HEAD + "stor = 1", "7:1: unknown field \"stor\" in a subsystem; did you mean \"store\"?" },
        FindingCase{ HEAD + "[subsystem.key]\nid = 1",
            "7:1: \"key\": expected [[subsystem.key]] with double brackets, "
            "or an array of tables, found a table" },
        FindingCase{ HEAD + "key = [2001-01-01]", "7:8: \"key\": expected a table, found a date or time" }));

INSTANTIATE_TEST_SUITE_P(OfKeys, Findings,
    ::testing::Values(
        FindingCase{ AKey("type = 'uint8', value = 1"), "7:8: \"id\" is missing: a key has a number" },
        FindingCase{
            AKey("name = 'n', type = 'uint8', value = 1"), "7:8: \"id\" is missing: a key has a number" },
        FindingCase{ AKey("id = 0, type = 'uint8', value = 1"),
            "7:15: \"id\": 0 is out of range; expected 1 to 4294967295" },
        FindingCase{ AKey("id = 4294967296, type = 'uint8', value = 1"),
            "7:15: \"id\": 4294967296 is out of range; expected 1 to 4294967295" },
        FindingCase{ AKey("id = 'x', type = 'uint8', value = 1"),
            "7:15: \"id\": expected a whole number from 1 to 4294967295, found a text" },
        FindingCase{ AKey("id = 1, name = 2, type = 'uint8', value = 1"),
            "7:25: \"name\": expected a text or { hex = \"...\" }, found a whole number" },
        FindingCase{ AKey("id = 1, value = 1"),
            "7:8: \"type\" is missing: without metadata a key says the type of its value" },
        FindingCase{ AKey("id = 1, type = 8, value = 1"),
            "7:25: \"type\": expected a type word such as \"uint8\", found a whole number" },
        FindingCase{ AKey("id = 1, type = 'unit8', value = 1"),
            "7:25: unknown type \"unit8\"; did you mean \"uint8\"?" },
        FindingCase{ AKey("id = 1, type = 'uint12', value = 1"),
            "7:25: unknown type \"uint12\"; did you mean \"uint16\"?" },
        FindingCase{ AKey("id = 1, type = 'unicode_string', value = 1"),
            "7:25: unknown type \"unicode_string\"; expected " + TYPES },
        FindingCase{
            AKey("id = 1, type = 'banana', value = 1"), "7:25: unknown type \"banana\"; expected " + TYPES },
        FindingCase{ AKey("id = 1, type = 'uint8'"), "7:8: \"value\" is missing: a key has a value" },
        FindingCase{ AKey("id = 1, type = 'uint8', value = 1, vale = 2"),
            "7:45: unknown field \"vale\" in a key; did you mean \"value\"?" },
        FindingCase{ AKey("id = 1, type = 'uint8', value = 1, colour = 2"),
            "7:45: unknown field \"colour\" in a key; expected \"id\", \"name\", \"type\", \"index\" or "
            "\"value\"" },
        FindingCase{ AKey("id = 1, type = 'uint8', value = 1, index = -1"),
            "7:53: \"index\": -1 is out of range; expected 0 to 4294967295" },
        FindingCase{ AKey("id = 1, type = 'uint8', value = 1, index = [1, 4294967296, 'x']"),
            "7:57: \"index\": 4294967296 is out of range; expected 0 to 4294967295\n"
            "7:69: \"index\": expected a whole number from 0 to 4294967295, found a text" }));

INSTANTIATE_TEST_SUITE_P(OfValues, Findings,
    ::testing::Values(
        FindingCase{ AFile("uint8", "1.0"),
            "12:9: \"value\": expected a whole number of the type uint8, found a number with a fraction" },
        FindingCase{ AFile("uint8", "[1, [2]]"),
            "12:13: \"value\": expected a whole number of the type uint8, found an array" },
        FindingCase{
            AFile("uint8", "[]"), "12:9: \"value\": expected one value at least, found an empty array" },
        FindingCase{ AFile("uint8", "[300, 1, -5]"),
            "12:10: \"value\": 300 is out of range for uint8; expected 0 to 255\n"
            "12:18: \"value\": -5 is out of range for uint8; expected 0 to 255" },
        FindingCase{ AFile("string", "1"),
            "12:9: \"value\": expected a text or { hex = \"...\" }, found a whole number" },
        FindingCase{ AFile("string", "[\"a\"]"),
            "12:9: \"value\": expected a text or { hex = \"...\" }, found an array" },
        FindingCase{ AFile("string", "[]") + "index = 1",
            "12:9: \"value\": expected one value at least, found an empty array" },
        FindingCase{ AFile("octet_string", "{ hex = \"00\" }"),
            "12:9: \"value\": expected bytes as a text of hexadecimal digits, found a table" },
        FindingCase{ AFile("enum", "1"),
            "12:9: \"value\": expected an enumerator { name = \"...\", number = ... }, "
            "found a whole number" },
        FindingCase{
            AFile("enum", "[]"), "12:9: \"value\": expected one value at least, found an empty array" },
        FindingCase{ AFile("enum", "{ name = \"A\" }"),
            "12:9: \"number\" is missing: an enumerator has a name and a number" },
        FindingCase{ AFile("enum", "{ nme = \"A\", number = 2147483648 }"),
            "12:9: \"name\" is missing: an enumerator has a name and a number\n"
            "12:11: unknown field \"nme\" in an enumerator; did you mean \"name\"?\n"
            "12:31: \"number\": 2147483648 is out of range; expected -2147483648 to 2147483647" },
        FindingCase{ AFile("struct", "1"),
            "12:9: \"value\": expected an array of fields [ ... ], found a whole number" },
        FindingCase{ AFile("raw", "{ uint8 = 1 }"),
            "12:9: \"value\": expected an array of fields [ ... ], found a table" },
        FindingCase{ AFile("struct", "[]"),
            "12:9: a structure without fields can't keep its name when it is written; "
            "give it a field or leave out the name" },
        FindingCase{ AFile("struct", "[1, {}, { uint8 = 1, int8 = 2 }]"),
            "12:10: \"value\": expected a field { TYPE = VALUE } or a nested structure [ ... ], found a whole "
            "number\n"
            "12:13: \"value\": expected a field { TYPE = VALUE } or a nested structure [ ... ], found a table\n"
            "12:17: \"value\": expected a field { TYPE = VALUE } or a nested structure [ ... ], found a "
            "table" },
        FindingCase{ AFile("struct", "[{ uint9 = 1 }, [{ int8 = 128 }, { raw = 1 }]]"),
            "12:12: unknown type \"uint9\"; did you mean \"uint8\"?\n"
            "12:35: \"value\": 128 is out of range for int8; expected -128 to 127\n"
            "12:50: \"raw\": expected an array of fields [ ... ], found a whole number" }));

// The first syntax error ends the reading: nothing behind it can be understood.
INSTANTIATE_TEST_SUITE_P(OfSyntax, Findings,
    ::testing::Values(FindingCase{ "chip = ''\nchip = ''\nand nonsense",
                          "2:8: Error while parsing key-value pair: cannot redefine existing string 'chip'" },
        FindingCase{ "chip = \"x\ny\"",
            "1:10: Error while parsing string: unescaped control characters other than TAB "
            "(U+0009) are explicitly prohibited" },
        FindingCase{ "e = ''\n[.",
            "2:2: Error while parsing key: expected bare key starting character or string "
            "delimiter, saw '.'" },
        FindingCase{ "[{",
            "1:2: Error while parsing key: expected bare key starting character or string delimiter, "
            "saw '{'" },
        FindingCase{ "v = [{ r = 1 },}", "1:16: Error while parsing value: could not determine value type" },
        FindingCase{ "chip = \"\xFF\"", "1:8: Encountered invalid utf-8 sequence" },
        FindingCase{ AFile("uint64", "18446744073709551615"),
            "12:29: Error while parsing decimal integer: '18446744073709551615' is not representable in 64 "
            "bits; write "
            "an unsigned 64-bit number above 9223372036854775807 as a text, \"18446744073709551615\"" }));

class AllFindings : public TomlTest
{};

TEST_F(AllFindings, come_in_one_error_in_the_order_of_the_file)
{
    const std::string text = "[[subsystem]]\n"
                             "type = 'bt'\n"
                             "device = 'otp'\n"
                             "store = 1\n"
                             "key = [\n"
                             "    { value = 256, type = 'uint8', nam = 'x' },\n"
                             "    { id = 3, type = 'uin8', value = 1 },\n"
                             "    { id = 4, type = 'uint8', value = 1 },\n"
                             "]\n";
    EXPECT_EQ(ErrorOf(text), "1:1: \"chip\" is missing: the file names the chip that it is for\n"
                             "6:5: \"id\" is missing: a key has a number\n"
                             "6:15: \"value\": 256 is out of range for uint8; expected 0 to 255\n"
                             "6:36: unknown field \"nam\" in a key; did you mean \"name\"?\n"
                             "7:22: unknown type \"uin8\"; did you mean \"uint8\"?");
}

TEST_F(AllFindings, name_the_file_in_each_line)
{
    ReadChip chip;
    const std::string path = Put("chap = 1\n");
    EXPECT_FALSE(chip.Read(path));
    EXPECT_EQ(mErrors.Text(), path + ":1:1: unknown field \"chap\" in the file; did you mean \"chip\"?\n" +
                                  path + ":1:1: \"chip\" is missing: the file names the chip that it is for");
}

TEST_F(AllFindings, have_the_code_0)
{
    Put("");
    ErrorOf("");
    ReadChip chip;
    EXPECT_FALSE(chip.Read(Put("")));
    short code = 1;
    std::string text;
    CTheMsgHnd::GetAppropriateHandler(GROUP_FRAMEWORK, "test", false).GetErrorMsg(GROUP_FRAMEWORK, code, text);
    EXPECT_EQ(code, 0);
}

TEST_F(AllFindings, print_numbers_plainly_whatever_the_locale)
{
    const GroupingLocale locale;
    EXPECT_EQ(ErrorOf(std::string(1999, '\n') + AFile("uint16", "1000000")),
        "2011:9: \"value\": 1000000 is out of range for uint16; expected 0 to 65535");
    EXPECT_EQ(ErrorOf(std::string(1999, '\n') + "x"),
        "2000:2: Error while parsing key-value pair: encountered end-of-file");
}

TEST_F(AllFindings, cut_a_long_text_and_show_no_control_characters)
{
    EXPECT_EQ(ErrorOf("chip = ''\n\"" + std::string(100, 'x') + "\" = 1"),
        "2:1: unknown field \"" + std::string(60, 'x') +
            "...\" in the file; expected \"chip\" or \"subsystem\"");
    EXPECT_EQ(ErrorOf("chip = ''\n\"\\u001b\xE2\x82\xAC\" = 1"),
        "2:1: unknown field \"\\x1b\\xe2\\x82\\xac\" in the file; expected \"chip\" or \"subsystem\"");
}

TEST_F(AllFindings, leave_the_chip_empty)
{
    ReadChip chip;
    EXPECT_FALSE(chip.Read(Put(AFile("uint8", "1") + "[[subsystem]]\n")));
    EXPECT_TRUE(chip.Chip().Subsystems().empty());
}

// Files that can't be read at all.

TEST_F(AllFindings, tell_that_there_is_no_file)
{
    ReadChip chip;
    EXPECT_FALSE(chip.Read(mFolder / "none.toml"));
    EXPECT_EQ(mErrors.Text(), mFolder / "none.toml: unable to open the file (No such file or directory)");
    mErrors.Clear();
    EXPECT_FALSE(chip.Read(""));
    EXPECT_EQ(mErrors.Text(), ": unable to open the file (No such file or directory)");
}

TEST_F(AllFindings, tell_that_a_folder_is_no_file)
{
    ReadChip chip;
    EXPECT_FALSE(chip.Read(mFolder.Path()));
    EXPECT_EQ(mErrors.Text(), mFolder.Path() + ": error reading the file (Is a directory)");
}

// Files made to break the reader.

std::string Repeated(const std::string & text, std::size_t count)
{
    std::string all;
    for (std::size_t i = 0; i < count; ++i)
        all += text;
    return all;
}

TEST_F(AllFindings, stop_a_file_without_an_end)
{
    EXPECT_FALSE(ReadChip().Read("/dev/zero"));
    EXPECT_EQ(mErrors.Text(), "/dev/zero: error reading the file (it has more than 64 MiB)");
}

TEST_F(AllFindings, stop_structures_that_nest_too_deep)
{
    const auto nested = [](std::size_t depth) {
        return AFile("struct", '[' + Repeated("[", depth) + Repeated("]", depth) + ']');
    };
    EXPECT_EQ(ErrorOf(nested(100)), "");
    EXPECT_EQ(ErrorOf(nested(101)), "12:110: structures nest too deep; expected 100 levels at most");
    EXPECT_THAT(ErrorOf(nested(100000)), ::testing::HasSubstr("exceeded maximum nested value depth"));
}

TEST_F(AllFindings, stop_keys_of_very_many_parts)
{
    const std::string parts = Repeated(".a", 200000);
    const std::string tooMany = "a key of more than 1000 parts; expected two at most";
    EXPECT_EQ(ErrorOf("chip = ''\na" + parts + " = 1"), "2:1: " + tooMany);
    EXPECT_EQ(ErrorOf("chip = ''\n[a" + parts + "]"), "2:1: " + tooMany);
    EXPECT_EQ(ErrorOf("chip = '''\n'''\nx = { a" + parts + " = 1 }\n !!!"), "3:1: " + tooMany);
    EXPECT_EQ(ErrorOf("x = [{\"a\"" + Repeated(" . \"a.b\"", 2000) + " = 1 }]"), "1:1: " + tooMany);
    EXPECT_EQ(ErrorOf("x = [1, # ]\n a" + parts + " = 1 }]"), "2:1: " + tooMany);
    EXPECT_EQ(ErrorOf("x = \"\"\"\\\"\"\"\"\"\na" + parts + " = 1"), "2:1: " + tooMany);
}

// The tables of a key and of a key in its value nest.
TEST_F(AllFindings, count_the_parts_of_a_key_by_what_it_stands_in)
{
    const std::string parts = Repeated(".a", 600);
    const std::string tooMany = "a key of more than 1000 parts; expected two at most";
    EXPECT_EQ(
        ErrorOf("x = [{ a" + parts + " = { b = [1.5, 2, { c" + parts + " = 1 }] } }]"), "1:1: " + tooMany);
    const std::string siblings = "{ a" + parts + " = 1, b" + parts + " = 1 }";
    EXPECT_THAT(ErrorOf("chip = ''\nx = [" + siblings + ", [" + siblings + "], " + siblings + "]"),
        ::testing::StartsWith("2:1: unknown field \"x\""));
    EXPECT_THAT(ErrorOf("chip = ''\nx = [" + Repeated("{ a.b = 1.5 },\n", 3000) + "]"),
        ::testing::StartsWith("2:1: unknown field \"x\""));
}

TEST_F(AllFindings, do_not_take_dots_in_texts_and_comments_for_keys)
{
    const std::string dots(5000, '.');
    EXPECT_EQ(ErrorOf("chip = \"\\\"" + dots + "\" # " + dots + "\n"), "");
    EXPECT_EQ(ErrorOf("chip = '" + dots + "'\n"), "");
    EXPECT_EQ(ErrorOf("chip = \"\"\"" + dots + "\"" + dots + "\\\"\"\"" + dots + "\"\"\"\"\"\n"), "");
    EXPECT_EQ(ErrorOf("chip = '''" + dots + "\n''" + dots + "'''''\n"), "");
    EXPECT_EQ(ErrorOf("chip = ''\n" + Repeated("# " + dots + "\n", 10)), "");
    std::string many = HEAD;
    for (int id = 1; id <= 2000; ++id)
        many += "[[subsystem.key]]\nid = " + std::to_string(id) + "\ntype = \"uint8\"\nvalue = 1\n";
    EXPECT_EQ(ErrorOf(many), "");
}

}   // namespace
