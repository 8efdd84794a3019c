/// `zynconfig get`, `check` and `info` beside plug-ins that stand in for the real ones.

#include <metadatarun.h>

namespace zynconfig::test {

namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr char TWO_LAYERS[] = "chip trindle7\n"
                              "subsystem 1 1 1\nkey 258 CrystalTrim number 3\nkey 261 RadioClass number 2\n"
                              "subsystem 1 15 1\nkey 258 CrystalTrim number 4\n"
                              "subsystem 2 15 1\nkey 514 GainTrim number 6 1 2\nkey 258 Country text DE\n";

class Values : public MetadataRun
{
protected:
    std::string ValueOf(const std::string & key)
    {
        const ToolResult result = Run({ "get", key, mFile });
        EXPECT_EQ(result.mExitCode, 0) << result.mErr;
        return result.mOut;
    }

    const std::string mFile = File("a.toml", TWO_LAYERS);
};

using Get = Values;
using Check = Values;
using Info = Values;

}   // namespace

TEST_F(Get, prints_the_value_of_the_highest_layer_alone)
{
    EXPECT_EQ(ValueOf("CrystalTrim"), "4\n");
    EXPECT_EQ(ValueOf("bt:261"), "2\n");
    EXPECT_EQ(ValueOf("wlan:258"), "\"DE\"\n");
    EXPECT_EQ(ValueOf("GainTrim.HIGH.2"), "6\n");
    EXPECT_EQ(ValueOf("wlan:514.1.2"), "6\n");
}

TEST_F(Get, falls_back_on_the_default)
{
    EXPECT_EQ(ValueOf("GainTrim.HIGH.3"), "7\n");
    EXPECT_EQ(ValueOf("4000000000"), "9\n");   // too large for a number in a question to the library
    const std::string other = File("b.toml", "chip trindle7\nsubsystem 1 1 1\nkey 5 K number 3\n");
    EXPECT_EQ(Run({ "get", "CrystalTrim", other }).mOut, "5\n");
}

TEST_F(Get, no_value_at_all_is_an_error)
{
    ExpectError(
        { "get", "Unset", mFile }, "key 263 (Unset) of bt has no value, neither in the files nor by default");
    ExpectError({ "get", "GainTrim.LOW.0", mFile },
        "key 514.0.0 (GainTrim) of wlan has no value, neither in the files nor by default");
    ExpectError(
        { "get", "GainTrim.HIGH.3", mFile }, "The metadata provider cannot behave like a data reader", "plain");
}

TEST_F(Get, a_table_needs_all_indices)
{
    ExpectError({ "get", "GainTrim", mFile }, "key 514 (GainTrim) of wlan has 2 indices, and 0 are given");
}

TEST_F(Get, the_chip_of_the_files_selects_the_system)
{
    const std::string foreign =
        File("b.toml", "chip elsewhere\nsubsystem 1 1 1\nkey 258 CrystalTrim number 3\n");
    ExpectError({ "get", "CrystalTrim", foreign }, "no chip has the label \"elsewhere\"; there are trindle7");
    const std::string upper = File("c.toml", "chip TRINDLE7\nsubsystem 1 1 1\nkey 258 CrystalTrim number 3\n");
    ExpectError({ "get", "CrystalTrim", upper },
        "the label of the chip is \"trindle7\", which the files spell \"TRINDLE7\"");
}

TEST_F(Get, a_file_that_cannot_be_read_is_an_error)
{
    ExpectError({ "get", "CrystalTrim", File("b.toml", "error 120 bad\n") }, "bad");
}

TEST_F(Get, json_tells_where_the_value_is_from)
{
    EXPECT_EQ(RunJson({ "get", "CrystalTrim", mFile }),
        Json::parse(R"({"format": 1, "chip": "trindle7", "subsystem": "bt", "id": 258, "indices": null,
            "name": "CrystalTrim", "layer": 2, "default": false, "type": "uint32", "value": 4, "text": "4"})"));
    const Json row = RunJson({ "get", "GainTrim.1.3", mFile });
    EXPECT_EQ(row["indices"], Json::parse("[1, 3]"));
    EXPECT_TRUE(row["layer"].is_null());
    EXPECT_EQ(row["default"], true);
}

TEST_F(Check, says_that_nothing_is_wrong)
{
    const ToolResult result = Run({ "check", mFile });
    EXPECT_EQ(result.mExitCode, 0) << result.mErr;
    EXPECT_EQ(result.mOut, "Nothing is wrong: 5 values of the chip trindle7.\n");
    EXPECT_THAT(result.mErr, IsEmpty());
    const Json json = RunJson({ "check", mFile });
    EXPECT_EQ(json["keys"], 5);
    EXPECT_THAT(json["findings"], IsEmpty());
}

TEST_F(Check, tells_all_that_is_wrong_in_one_run)
{
    const std::string bad =
        File("bad.toml", "error 120 " + mFolder.File("bad.toml") + ":3:8:%20value%0Asecond\n");
    const std::string unknown = File("unknown.toml",
        "chip trindle7\nsubsystem 1 2 1\nkey 999 What number 3\nkey 5 - number 3 1\nkey 5 - number 3 2\n");
    const std::string lost =
        File("lost.toml", "chip trindle7\nsubsystem 1 11 1\nkey 258 CrystalTrim number 3\n");
    const ToolResult result = Run({ "check", bad, unknown, lost });
    EXPECT_EQ(result.mExitCode, WRONG_DATA);
    EXPECT_THAT(result.mOut, IsEmpty());
    EXPECT_THAT(LinesOf(result.mErr),
        ElementsAre("zynconfig: error: " + bad + ":3:8: value", "zynconfig: error: second",
            HasSubstr("the store user_ps_audio.1 has no layer"),
            "zynconfig: error: key 999 (What) of bt is not in the metadata, in smem.1",
            "zynconfig: error: key 5 of bt is not in the metadata, in smem.1"));
}

TEST_F(Check, json_has_the_place_that_a_plugin_recorded)
{
    const std::string bad = mFolder.File("bad.toml");
    File("bad.toml", TWO_LAYERS + ("finding " + bad + " 3 8 value\n"));
    const ToolResult result = Run({ "check", bad, "--json" });
    EXPECT_EQ(result.mExitCode, WRONG_DATA);
    EXPECT_EQ(result.mErr, "zynconfig: error: " + bad + ":3:8: value\n");
    EXPECT_THAT(Json::parse(result.mOut)["findings"],
        ElementsAre(Json{ { "file", bad }, { "line", 3 }, { "column", 8 }, { "text", "value" } }));
}

TEST_F(Check, json_takes_no_place_from_the_text_of_an_error)
{
    const std::string bad = File("bad.toml",
        std::string(TWO_LAYERS) + "error 120 " + mFolder.File("bad.toml") + ":3:8:%20value%0Asecond\n");
    const Json findings = Json::parse(Run({ "check", bad, "--json" }).mOut)["findings"];
    const auto textOnly = [](const std::string & text) {
        return Json{ { "file", nullptr }, { "line", nullptr }, { "column", nullptr }, { "text", text } };
    };
    EXPECT_THAT(findings, ElementsAre(textOnly(bad + ":3:8: value"), textOnly("second")));
}

TEST_F(Check, holds_values_that_were_read_without_a_record_against_it)
{
    const std::string file = File("b.toml", "chip trindle7\nsubsystem 1 1 1\nkey 258 CrystalTrim number 8\n"
                                            "key 257 BtAddress octets 123456\nsubsystem 2 1 1\n"
                                            "key 258 Country text GER\nkey 514 GainTrim number 10 1 2\n"
                                            "key 514 GainTrim number 9 1 3\n");
    const ToolResult result = Run({ "check", file });
    EXPECT_EQ(result.mExitCode, WRONG_DATA);
    EXPECT_THAT(LinesOf(result.mErr),
        ElementsAre(
            "zynconfig: error: key 258 (CrystalTrim) of bt in otp.1 is 8, and the metadata allows -8 to 7",
            "zynconfig: error: key 258 (Country) of wlan in otp.1 is \"GER\", and the metadata allows 0 to 2 "
            "octets",
            "zynconfig: error: key 514.1.2 (GainTrim) of wlan in otp.1 is 10, and the metadata allows -9 to "
            "9"));
}

TEST_F(Check, an_unknown_chip_is_wrong)
{
    ExpectError({ "check", File("b.toml", "chip elsewhere\nsubsystem 1 1 1\nkey 258 K number 3\n") },
        "no chip has the label \"elsewhere\"; there are trindle7");
}

TEST_F(Info, tells_chips_subsystems_and_stores)
{
    const ToolResult result = Run({ "info", mFile });
    EXPECT_EQ(result.mExitCode, 0) << result.mErr;
    EXPECT_EQ(result.mOut, "Chips\n"
                           "     LABEL     NUMBER  CODE      NAME     VERSION  DESCRIPTION\n"
                           "  *  trindle7  52      3421XXXX  Trindle  7        A radio\n"
                           "\n"
                           "Subsystems\n"
                           "  NAME   ALIAS      VERSION  DESCRIPTION\n"
                           "  bt     bluetooth  1.2      Short-range radio\n"
                           "  wlan\n"
                           "  audio  sound\n"
                           "\n"
                           "Stores, from bottom to top, in bytes\n"
                           "  LAYER  STORE     SIZE     FREE\n"
                           "  1      otp.1     unknown  unknown\n"
                           "  2      eeprom.1  unknown  unknown\n");
}

TEST_F(Info, needs_no_files)
{
    const Json json = RunJson({ "info" });
    EXPECT_THAT(json["stores"], IsEmpty());
    EXPECT_EQ(json["chips"][0],
        Json::parse(R"({"label": "trindle7", "number": 52, "reference_code": "3421XXXX", "name": "Trindle",
            "version": "7", "description": "A radio", "selected": true})"));
    EXPECT_EQ(json["subsystems"][0]["alias"], "bluetooth");
}

TEST_F(Info, needs_no_metadata_with_files)
{
    const ToolResult result = RunTool({ { "--plugin-dir", FAKE_PLUGIN_DIR, "info", mFile, "--json" } });
    EXPECT_EQ(result.mExitCode, 0) << result.mErr;
    const Json json = Json::parse(result.mOut);
    EXPECT_THAT(json["chips"], IsEmpty());
    EXPECT_EQ(json["stores"][1],
        Json::parse(R"({"layer": 2, "device": "eeprom", "store": 1, "size": null, "free": null})"));
}

TEST_F(Info, the_fuses_of_a_chip_come_by_the_context)
{
    EXPECT_EQ(RunJson({ "info", "--context", "efusehash=AB" })["chips"][0]["reference_code"], "342100AB");
}

TEST_F(Info, tells_sizes_that_a_store_manager_knows)
{
    const std::string sized =
        File("b.toml", "chip trindle7\nsubsystem 1 1 1\nkey 258 K number 3\nsize 1 1 512 100\n");
    EXPECT_THAT(Run({ "info", sized }).mOut, HasSubstr("  1      otp.1  512   100\n"));
}

TEST_F(Info, tells_all_chips_where_none_is_selected)
{
    const ToolResult result = Run({ "info" }, "several");
    EXPECT_EQ(result.mExitCode, 0) << result.mErr;
    EXPECT_THAT(result.mOut,
        AllOf(HasSubstr("\n  trindle7  52 "), HasSubstr("\n  other     52      34XX0000  Other\n")));
    EXPECT_THAT(Run({ "info", "--chip", "OTHER" }, "several").mOut, HasSubstr("\n  *  other     52"));
    const ToolResult unknown = Run({ "info", "--chip", "x" }, "several");
    EXPECT_EQ(unknown.mExitCode, WRONG_DATA);
    EXPECT_THAT(unknown.mErr, HasSubstr("no chip has the label \"x\""));
}

}   // namespace zynconfig::test
