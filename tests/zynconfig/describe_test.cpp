/// `zynconfig describe`: facts, indices, enumerators, and the bit map of a struct.

#include <metadatarun.h>

namespace zynconfig::test {

namespace {

using testing::AllOf;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsSupersetOf;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;

class Describe : public MetadataRun
{
protected:
    std::string Text(const std::string & key, const std::string & columns = "")
    {
        const ToolResult result = Run({ "describe", key }, "system.zmd", columns);
        EXPECT_EQ(result.mExitCode, 0) << result.mErr;
        return result.mOut;
    }

    /// The lines of a bit map, heading included.
    std::vector<std::string> Map(const std::string & key, const std::string & columns = "")
    {
        std::vector<std::string> map;
        for (const std::string & line : LinesOf(Text(key, columns))) {
            if (line.find(" |") != std::string::npos || StartsWithBit15(line))
                map.push_back(line);
        }
        return map;
    }

private:
    static bool StartsWithBit15(const std::string & line)
    {
        const auto begin = line.find_first_not_of(' ');
        return begin != std::string::npos && line.compare(begin, 2, "15") == 0;
    }
};

}   // namespace

TEST_F(Describe, tells_the_facts_of_a_key)
{
    EXPECT_EQ(Text("crystaltrim"), "CrystalTrim\n\n"
                                   "  key         258 (0x102) of bt\n"
                                   "  type        int8\n"
                                   "  range       -8 to 7\n"
                                   "  default     5\n");
    EXPECT_THAT(LinesOf(Text("TxPowerSteps")), IsSupersetOf({ "  type        int16 array",
                                                   "  array       1 to 5 items", "  range       -200 to 80" }));
    EXPECT_THAT(LinesOf(Text("BtAddress")), Contains("  length      6 octets"));
    EXPECT_THAT(LinesOf(Text("Wide")), Contains("  range       0 to 18446744073709551615"));
}

TEST_F(Describe, finds_a_key_by_name_number_and_subsystem)
{
    const std::string expected = Text("bt:258");
    for (const char * key : { "CRYSTALTRIM", "bt:0x102", "BT:0402", "Bluetooth:CrystalTrim", "bluetooth:258" })
        EXPECT_EQ(Text(key), expected) << key;
    EXPECT_THAT(Text("4000000000"), StartsWith("Huge\n"));
}

TEST_F(Describe, a_key_of_several_subsystems_has_to_be_told)
{
    ExpectError(
        { "describe", "258" }, "several subsystems have a key \"258\": tell which one, of bt:258, wlan:258");
    EXPECT_THAT(Text("wlan:258"), StartsWith("Country\n"));
}

TEST_F(Describe, an_unknown_key_is_an_error_with_the_nearest_name)
{
    ExpectError({ "describe", "Countri" }, "the metadata has no key \"Countri\"; did you mean \"Country\"?");
    ExpectError({ "describe", "wlan:CrystalTrim" },
        "the metadata has no key \"CrystalTrim\" in wlan; did you mean \"Country\"?");
    ExpectError({ "describe", "77" }, "the metadata has no key \"77\"");
    ExpectError({ "describe", "xxx:77" }, "the metadata has no subsystem \"xxx\"; there are bt, wlan, audio");
}

TEST_F(Describe, a_text_that_is_no_key_is_refused)
{
    for (const char * key : { "", ":", "bt:", ":A", "A.", "A..1", "bt:.1" }) {
        const ToolResult result = Run({ "describe", key });
        EXPECT_EQ(result.mExitCode, 2) << key;
        EXPECT_THAT(result.mErr, HasSubstr("is no key: [SUBSYSTEM:]NAME or [SUBSYSTEM:]NUMBER")) << key;
    }
}

TEST_F(Describe, tells_indices_and_the_defaults_of_rows)
{
    EXPECT_THAT(Text("GainTrim"), HasSubstr("\n  INDEX  NAME   VALUES\n"
                                            "  1      Band   0 LOW, 1 HIGH\n"
                                            "  2      Chain  0 to 3\n"
                                            "\n  ROW      DEFAULT\n"
                                            "  514.1.3  7\n"));
    EXPECT_THAT(Text("GainTrim.high.3"), HasSubstr("514.1.3  7\n"));
    EXPECT_THAT(Text("GainTrim.LOW.0"), Not(HasSubstr("DEFAULT")));
}

TEST_F(Describe, an_index_that_the_key_does_not_have_is_an_error)
{
    const std::string key = "key 514 (GainTrim) of wlan";
    ExpectError({ "describe", "GainTrim.1" }, key + " has 2 indices, and 1 is given");
    ExpectError({ "describe", "CrystalTrim.1" }, "key 258 (CrystalTrim) of bt has 0 indices, and 1 is given");
    ExpectError(
        { "describe", "GainTrim.1.4" }, key + ": \"4\" is no value of index 2 (Chain), which has 0 to 3");
    ExpectError({ "describe", "GainTrim.MID.0" },
        key + ": \"MID\" is no value of index 1 (Band), which has HIGH (1), LOW (0)");
    ExpectError({ "describe", "GainTrim.-1.0" },
        key + ": \"-1\" is no value of index 1 (Band), which has HIGH (1), LOW (0)");
}

TEST_F(Describe, tells_enumerators)
{
    EXPECT_THAT(
        Text("RadioClass"), HasSubstr("\n  NUMBER  ENUMERATOR\n  1       CLASS_1\n  2       CLASS_2\n"));
}

TEST_F(Describe, draws_a_little_endian_struct_with_a_straddling_field)
{
    EXPECT_THAT(Map("Little"),
        ElementsAre("        15   14   13   12   11   10   9    8    7    6    5    4    3    2    1    0",
            "    0 |              Charlie 7:0              |         Bravo          |    Alpha     |",
            "    1 | -  |              Delta               |             Charlie 15:8              |",
            "    2 |                                   Echo 15:0                                   |",
            "    3 |                                  Echo 31:16                                   |",
            "    4 |                                 Foxtrot 15:0                                  |",
            "    5 |                                 Foxtrot 31:16                                 |",
            "    6 |                   -                   |             Foxtrot 39:32             |"));
    EXPECT_THAT(
        Text("Little"), HasSubstr("104 bits in 7 words of 16 bits; the low word of a number comes first."));
    EXPECT_THAT(Text("Little"), HasSubstr("  Delta    24   7      enum    0 OFF, 1 ON\n"));
}

TEST_F(Describe, draws_a_struct_whose_high_words_come_first)
{
    const std::vector<std::string> map = Map("Big");
    ASSERT_THAT(map, SizeIs(5));
    EXPECT_THAT(map[2], HasSubstr(" Hotel 31:16 "));
    EXPECT_THAT(map[3], HasSubstr(" Hotel 15:0 "));
    EXPECT_EQ(
        map[4], "    3 |                           Kilo                            |      Juliett      |");
    EXPECT_THAT(
        Text("Big"), HasSubstr("64 bits in 4 words of 16 bits; the high word of a number comes first."));
}

TEST_F(Describe, draws_structs_and_arrays_within_a_struct)
{
    const std::vector<std::string> map = Map("Nested");
    ASSERT_THAT(map, SizeIs(9));
    EXPECT_EQ(
        map[1], "    0 |                   -                   |                 Count                 |");
    EXPECT_EQ(
        map[3], "    2 |            Bands[1].Shape             |             Bands[1].Gain             |");
    EXPECT_EQ(
        map[4], "    3 |               Steps[1]                |               Steps[0]                |");
    EXPECT_THAT(LinesOf(Text("Nested")), Contains("  Bands[].Gain   16    8      int8         0 to 255"));
}

TEST_F(Describe, marks_a_field_that_the_device_does_not_give_back)
{
    EXPECT_THAT(
        Text("Nested"), HasSubstr("  Lost           64 *  64     uint16       0 to 255\n"
                                  "* The device does not give back every value of this field unchanged.\n"));
    EXPECT_THAT(Text("Little"), Not(HasSubstr("*")));
}

TEST_F(Describe, takes_letters_where_a_name_has_no_room)
{
    EXPECT_THAT(Map("Little", "60")[1], "    0 |      Charlie 7:0      |    Bravo     | Alpha  |");
    EXPECT_EQ(Map("Little", "48")[1], "    0 |  Charlie 7:0  |  Bravo  |Alpha|");
    const std::string narrow = Text("Little", "40");
    EXPECT_THAT(LinesOf(narrow), Contains("    0 |  Charlie 7:0  |  Bravo  |Alpha|"));
    EXPECT_THAT(LinesOf(Text("audio:785", "41")), Contains("    3 |         Kilo          |Juliett|"));
}

TEST_F(Describe, no_line_is_wider_than_the_terminal)
{
    for (const int columns : { 20, 39, 40, 55, 56, 72, 100, 300 }) {
        for (const char * key : { "Little", "Big", "Nested", "GainTrim", "CrystalTrim" }) {
            for (const std::string & line : LinesOf(Text(key, std::to_string(columns))))
                EXPECT_LE(line.size(), static_cast<std::size_t>(columns) + 2)
                    << line;   // an ellipsis has 3 bytes
        }
    }
    EXPECT_THAT(Map("Little", "39"), SizeIs(0));   // the legend alone
    EXPECT_THAT(Text("Little", "39"), HasSubstr("Foxtrot  64   40"));
}

TEST_F(Describe, is_coloured_on_a_terminal_only)
{
    ToolRun run = { .mArguments = { "--plugin-dir", FAKE_PLUGIN_DIR, "--metadata", "m", "describe", "Little" },
        .mOutput = Output::Terminal,
        .mTerminalColumns = 80 };
    EXPECT_THAT(RunTool(run).mOut, HasSubstr("\033[1mLittle\033[0m"));
    run.mEnvironment = { { "NO_COLOR", "1" } };
    EXPECT_THAT(RunTool(run).mOut, Not(HasSubstr("\033")));
}

TEST_F(Describe, a_boundless_struct_of_bad_metadata_is_cut_off)
{
    const ToolResult result = Run({ "describe", "Wild" }, "boundless");
    EXPECT_EQ(result.mExitCode, 0) << result.mErr;
    const std::vector<std::string> lines = LinesOf(result.mOut);
    EXPECT_THAT(lines, Contains("There is more, which is left out here."));
    EXPECT_THAT(lines, Contains(HasSubstr("         !         ")));   // two fields share bits
    EXPECT_LT(lines.size(), 400U);
}

TEST_F(Describe, json_tells_all_of_it)
{
    const Json table = RunJson({ "describe", "GainTrim" });
    EXPECT_EQ(table["format"], 1);
    EXPECT_EQ(table["subsystem"], "wlan");
    EXPECT_EQ(table["id"], 514);
    EXPECT_EQ(table["type"], "int8");
    EXPECT_EQ(table["range"], (Json{ { "min", -9 }, { "max", 9 } }));
    EXPECT_EQ(table["indices"][0]["enumerators"][1], (Json{ { "name", "HIGH" }, { "number", 1 } }));
    EXPECT_EQ(table["indices"][1]["range"], (Json{ { "min", 0 }, { "max", 3 } }));
    EXPECT_EQ(table["defaults"], Json::parse(R"([{"indices": [1, 3], "value": 7, "text": "7"}])"));
    EXPECT_TRUE(table["struct"].is_null());
    EXPECT_EQ(RunJson({ "describe", "Wide" })["range"]["max"], 18446744073709551615U);
}

TEST_F(Describe, json_tells_the_layout)
{
    const Json layout = RunJson({ "describe", "Little" })["struct"];
    EXPECT_EQ(layout["bits"], 104);
    EXPECT_EQ(layout["little_endian"], true);
    EXPECT_EQ(layout["fields"][2]["name"], "Charlie");
    EXPECT_EQ(layout["fields"][2]["position"], 8);
    EXPECT_EQ(layout["fields"][3]["enumerators"][1]["name"], "ON");
    EXPECT_EQ(layout["map"][2],
        Json::parse(R"({"word": 0, "low": 8, "count": 8, "field": "Charlie", "value_bit": 0})"));
    EXPECT_EQ(layout["map"][3],
        Json::parse(R"({"word": 1, "low": 0, "count": 8, "field": "Charlie", "value_bit": 8})"));
}

}   // namespace zynconfig::test
