/// `zynconfig keys` and how the metadata is named and opened.

#include <metadatarun.h>

namespace zynconfig::test {

namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

using Keys = MetadataRun;
using Metadata = MetadataRun;

std::vector<std::string> NamesIn(const nlohmann::json & json)
{
    std::vector<std::string> names;
    for (const auto & key : json["keys"])
        names.push_back(key["subsystem"].get<std::string>() + ':' + key["name"].get<std::string>());
    return names;
}

}   // namespace

TEST_F(Keys, lists_what_the_metadata_knows)
{
    const ToolResult result = Run({ "keys" });
    EXPECT_EQ(result.mExitCode, 0) << result.mErr;
    const std::vector<std::string> lines = LinesOf(result.mOut);
    ASSERT_THAT(lines, SizeIs(13));
    EXPECT_EQ(lines[0], "  KEY            NAME                 TYPE          VALUES");
    EXPECT_EQ(lines[2], "  bt:258         CrystalTrim          int8          -8 to 7");
    EXPECT_EQ(lines[3], "  bt:260         TxPowerSteps         int16 array   -200 to 80");
    EXPECT_EQ(lines[4], "  bt:261         RadioClass           enum          1 CLASS_1, 2 CLASS_2");
    EXPECT_EQ(lines[5], "  bt:262         Wide                 uint64        0 to 18446744073709551615");
    EXPECT_EQ(lines[9], "  wlan:514       GainTrim.Band.Chain  int8          -9 to 9");
    EXPECT_EQ(lines[10], "  audio:784      Little               struct");
}

TEST_F(Keys, a_pattern_selects_by_name_without_regard_to_case)
{
    EXPECT_THAT(NamesIn(RunJson({ "keys", "*TRIM" })), ElementsAre("bt:CrystalTrim", "wlan:GainTrim"));
    EXPECT_THAT(NamesIn(RunJson({ "keys", "b[it]g" })), ElementsAre("audio:Big"));
    EXPECT_THAT(NamesIn(RunJson({ "keys", "crystaltri?" })), ElementsAre("bt:CrystalTrim"));
    EXPECT_THAT(NamesIn(RunJson({ "keys", "258" })), ElementsAre("bt:CrystalTrim", "wlan:Country"));
}

TEST_F(Keys, a_pattern_may_begin_with_a_subsystem_or_its_alias)
{
    EXPECT_THAT(NamesIn(RunJson({ "keys", "bt:*trim" })), ElementsAre("bt:CrystalTrim"));
    EXPECT_THAT(NamesIn(RunJson({ "keys", "BlueTooth:*trim" })), ElementsAre("bt:CrystalTrim"));
    EXPECT_THAT(NamesIn(RunJson({ "keys", "wlan:" })), ElementsAre("wlan:Country", "wlan:GainTrim"));
    EXPECT_THAT(NamesIn(RunJson({ "keys", "*:*trim" })), SizeIs(2));
    ExpectError({ "keys", "nfc:*" }, "the metadata has no subsystem \"nfc\"; there are bt, wlan, audio");
}

TEST_F(Keys, no_match_is_an_error)
{
    ExpectError({ "keys", "nothing\033*" }, "the metadata has no key like \"nothing\\x1b*\"");
    const ToolResult result = Run({ "keys", "x*", "--json" });
    EXPECT_EQ(result.mExitCode, WRONG_DATA);
    EXPECT_THAT(Json::parse(result.mOut)["keys"], IsEmpty());
}

TEST_F(Keys, json_tells_type_shape_and_indices)
{
    const Json json = RunJson({ "keys" });
    EXPECT_EQ(json["format"], 1);
    EXPECT_EQ(json["chip"], "trindle7");
    EXPECT_EQ(json["keys"][2],
        (Json{ { "subsystem", "bt" }, { "id", 260 }, { "name", "TxPowerSteps" }, { "type", "int16" },
            { "array", true }, { "indices", 0 }, { "description", "" } }));
    EXPECT_EQ(json["keys"][8]["indices"], 2);
}

TEST_F(Keys, of_several_systems_one_is_selected_by_a_chip)
{
    ExpectError({ "keys" },
        "the metadata is about several systems (trindle, another): tell by --chip LABEL which one; there are "
        "trindle7, other",
        "several");
    EXPECT_EQ(Run({ "keys", "--chip", "TRINDLE7" }, "several").mExitCode, 0);
    ExpectError(
        { "keys", "--chip", "no" }, "no chip has the label \"no\"; there are trindle7, other", "several");
}

TEST_F(Metadata, is_named_by_option_or_variable)
{
    const ToolResult none = RunTool({ { "--plugin-dir", FAKE_PLUGIN_DIR, "keys" } });
    EXPECT_EQ(none.mExitCode, 2);
    EXPECT_EQ(none.mErr,
        "zynconfig: error: keys needs metadata: tell its file by --metadata FILE or in the variable "
        "ZYNCONFIG_METADATA (zynconfig --help tells more)\n");
    const ToolResult byVariable = RunTool({ .mArguments = { "--plugin-dir", FAKE_PLUGIN_DIR, "keys" },
        .mEnvironment = { { "ZYNCONFIG_METADATA", "system.zmd" } } });
    EXPECT_EQ(byVariable.mExitCode, 0) << byVariable.mErr;
    EXPECT_EQ(byVariable.mOut, Run({ "keys" }).mOut);
    const ToolResult both =
        RunTool({ .mArguments = { "--plugin-dir", FAKE_PLUGIN_DIR, "--metadata", "broken", "keys" },
            .mEnvironment = { { "ZYNCONFIG_METADATA", "system.zmd" } } });
    EXPECT_THAT(both.mErr, HasSubstr("broken: this is no repository"));
}

TEST_F(Metadata, every_command_that_needs_it_says_so)
{
    for (const std::vector<std::string> & arguments : { std::vector<std::string>{ "describe", "A" },
             { "check", "a.toml" }, { "get", "A", "a.toml" }, { "info" } })
    {
        const ToolResult result = RunTool({ arguments });
        EXPECT_EQ(result.mExitCode, 2) << arguments[0];
        EXPECT_THAT(result.mErr, HasSubstr(arguments[0] + " needs metadata: tell its file by --metadata FILE"));
    }
}

TEST_F(Metadata, that_cannot_be_used_is_an_error)
{
    ExpectError({ "keys" }, "broken: this is no repository", "broken");
    ExpectError({ "keys" }, "speechless: unable to use it as metadata", "speechless");
    ExpectError({ "keys" }, "sqlitemetadata not found", "nothing");
}

TEST_F(Metadata, that_fails_at_a_question_is_an_error)
{
    const ToolResult result = Run({ "describe", "bt:CrystalTrim" }, "failing");
    EXPECT_EQ(result.mExitCode, WRONG_DATA);
    EXPECT_THAT(result.mErr, HasSubstr("zynconfig: error: the repository is on strike\n"));
}

TEST_F(Metadata, needs_its_plugin)
{
    const CTempFolder empty;
    const ToolResult result =
        RunTool({ { "--plugin-dir", empty.Path().string(), "--metadata", "system.zmd", "keys" } });
    EXPECT_EQ(result.mExitCode, WRONG_DATA);
    EXPECT_THAT(result.mErr, HasSubstr("no plug-in \"sqlitemetadata\" in "));
}

TEST_F(Metadata, outlives_every_element)
{
    const std::string file = File("a.toml", "chip trindle7\nsubsystem 1 1 1\nkey 5 K watched 6\n");
    for (const std::vector<std::string> & arguments :
        { std::vector<std::string>{ "show", file }, { "convert", file, "-o", mFolder.File("out.toml") } })
    {
        const ToolResult result = Run(arguments, "watched");
        EXPECT_EQ(result.mExitCode, 0);
        EXPECT_THAT(LinesOf(result.mErr), ElementsAre("an element is gone", "the provider is gone"));
    }
}

}   // namespace zynconfig::test
