/// The samples with the real plug-ins: compiled metadata, text, images, and the ways between them.

#include <toolprocess.h>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

namespace zynconfig::test {

namespace fs = std::filesystem;

namespace {

using Json = nlohmann::json;
using testing::AllOf;
using testing::Each;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

std::vector<std::string> FilesOf(const std::string & folder)
{
    std::vector<std::string> files;
    for (const auto & entry : fs::directory_iterator(fs::path(SOURCE_DIR) / "samples/pottersong" / folder)) {
        if (entry.path().extension() == ".toml")
            files.push_back(entry.path().string());
    }
    std::sort(files.begin(), files.end());
    return files;
}

class Samples : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_EQ(Run({ "metadata", "compile" }, FilesOf("metadata"), { "-o", mMetadata }).mErr, "");
        ASSERT_THAT(mTyped, SizeIs(4));
        ASSERT_THAT(mDescribed, SizeIs(5));
    }

    ToolResult Run(std::vector<std::string> arguments, const std::vector<std::string> & files = {},
        const std::vector<std::string> & more = {})
    {
        arguments.insert(arguments.end(), files.begin(), files.end());
        arguments.insert(arguments.end(), more.begin(), more.end());
        return RunTool({ .mArguments = arguments, .mEnvironment = { { "ZYNCONFIG_METADATA", mMetadata } } });
    }

    /// What a run that has to succeed without a word on standard error prints.
    std::string Out(std::vector<std::string> arguments, const std::vector<std::string> & files = {},
        const std::vector<std::string> & more = {})
    {
        const ToolResult result = Run(std::move(arguments), files, more);
        EXPECT_EQ(result.mExitCode, 0);
        EXPECT_EQ(result.mErr, "");
        return result.mOut;
    }

    /// Converts, and gives the path of the output.
    std::string Converted(const std::vector<std::string> & files, const std::string & name)
    {
        const std::string path = mFolder.File(name);
        Out({ "convert" }, files, { "-o", path });
        return path;
    }

    CTempFolder mFolder;
    const std::string mMetadata = mFolder.File("system.zmd");
    const std::vector<std::string> mTyped = FilesOf("");
    const std::vector<std::string> mDescribed = FilesOf("described");
};

}   // namespace

TEST_F(Samples, are_sound)
{
    EXPECT_EQ(Out({ "check" }, mTyped), "Nothing is wrong: 63 values of the chip trindle7.\n");
    EXPECT_EQ(Out({ "check" }, mDescribed), "Nothing is wrong: 71 values of the chip trindle7.\n");
}

TEST_F(Samples, say_the_same_with_types_and_in_the_words_of_the_metadata)
{
    const std::vector<std::string> first(mDescribed.begin(), mDescribed.begin() + 4);
    EXPECT_EQ(Out({ "show" }, first), Out({ "show" }, mTyped));
}

TEST_F(Samples, show_the_same_from_text_and_from_an_image)
{
    const std::string image = Converted(mDescribed, "all.zimg");
    EXPECT_EQ(Out({ "show", image }), Out({ "show" }, mDescribed));
    EXPECT_EQ(Out({ "show", image, "--json" }), Out({ "show", "--json" }, mDescribed));
}

TEST_F(Samples, come_back_from_an_image_byte_for_byte)
{
    const std::string text = ContentOf(Converted(mDescribed, "text.toml"));
    const std::string image = Converted(mDescribed, "all.zimg");
    const std::string again = Converted({ image }, "again.toml");
    EXPECT_THAT(text, AllOf(HasSubstr("SniffMode"), HasSubstr("Regulation")));
    EXPECT_EQ(ContentOf(again), text);
    EXPECT_EQ(ContentOf(Converted({ again }, "again.zimg")), ContentOf(image));
}

TEST_F(Samples, keep_the_sizes_of_stores_from_image_to_image)
{
    const std::string image = mFolder.File("sized.zimg");
    Out({ "convert" }, mDescribed, { "-o", image, "--context", "storesizes=15.1:512,1.1:65536" });
    EXPECT_EQ(ContentOf(Converted({ image }, "again.zimg")), ContentOf(image));
    EXPECT_THAT(Out({ "info", image }), HasSubstr("eeprom.1  512"));
    const std::string other = mFolder.File("other.zimg");
    Out({ "convert", image, "-o", other, "--context", "storesizes=15.1:600" });
    EXPECT_THAT(Out({ "info", other }), HasSubstr("eeprom.1  600"));
}

TEST_F(Samples, give_the_same_winners_from_text_and_from_an_image)
{
    const std::string image = Converted(mDescribed, "all.zimg");
    for (const char * filter : { "15", "2", "-15" }) {
        Out({ "convert" }, mDescribed, { "-o", mFolder.File("text.toml"), "--layer-filter", filter });
        Out({ "convert", image, "-o", mFolder.File("image.toml"), "--layer-filter", filter });
        EXPECT_EQ(ContentOf(mFolder.File("image.toml")), ContentOf(mFolder.File("text.toml"))) << filter;
    }
}

TEST_F(Samples, a_format_by_name_stands_in_for_the_extension)
{
    const std::string image = Converted(mDescribed, "all.zimg");
    const std::string other = mFolder.File("all.bin");
    Out({ "convert" }, mDescribed, { "-o", other, "--to", "image" });
    EXPECT_EQ(ContentOf(other), ContentOf(image));
    EXPECT_EQ(Out({ "show", other, "--from", "image" }), Out({ "show", image }));
}

TEST_F(Samples, an_image_has_no_place_for_what_a_filter_leaves)
{
    const ToolResult result =
        Run({ "convert" }, mDescribed, { "-o", mFolder.File("x.zimg"), "--layer-filter", "15" });
    EXPECT_EQ(result.mExitCode, 1);
    EXPECT_THAT(result.mErr, HasSubstr("x.zimg: "));
    EXPECT_FALSE(fs::exists(mFolder.File("x.zimg")));
}

TEST_F(Samples, an_image_tells_the_sizes_of_its_stores)
{
    const std::string image = Converted(mDescribed, "all.zimg");
    const Json stores = Json::parse(Out({ "info", image, "--json" }))["stores"];
    ASSERT_THAT(stores, SizeIs(5));
    for (const Json & store : stores) {
        EXPECT_GT(store["size"], 0);
        EXPECT_LT(store["free"], store["size"]);
    }
}

TEST_F(Samples, every_key_can_be_described)
{
    const Json keys = Json::parse(Out({ "keys", "--json" }))["keys"];
    EXPECT_GT(keys.size(), 70U);
    for (const Json & key : keys) {
        const std::string text = key["subsystem"].get<std::string>() + ':' + key["name"].get<std::string>();
        const Json description = Json::parse(Out({ "describe", text, "--json" }));
        EXPECT_EQ(description["id"], key["id"]);
        EXPECT_EQ(description["struct"].is_null(), key["type"] != "struct");
        if (key["type"] == "struct") {
            EXPECT_THAT(Out({ "describe", text }), HasSubstr("\n    0 |"));
        }
    }
}

TEST_F(Samples, a_field_of_more_than_64_bits_has_no_range)
{
    EXPECT_THAT(Out({ "describe", "ChannelMap" }), HasSubstr("\n  Map      0    80     integer  any\n"));
    const Json fields = Json::parse(Out({ "describe", "ChannelMap", "--json" }))["struct"]["fields"];
    EXPECT_EQ(fields.at(0)["range"], nullptr);
    EXPECT_EQ(fields.at(1)["range"]["max"], 79);
}

TEST_F(Samples, a_value_comes_from_the_top_layer_or_is_the_default)
{
    EXPECT_EQ(Out({ "get", "CrystalTrim" }, mTyped), "6\n");
    EXPECT_EQ(Out({ "get", "wifi:Country" }, mTyped), "\"XB\"\n");
    EXPECT_EQ(Out({ "get", "RateLimit.fast.0" }, mTyped), "8667\n");
    EXPECT_EQ(Out({ "get", "GainControl" }, mTyped), "{-5, -60, 300, 42}\n");
    EXPECT_EQ(Out({ "get", "GainControl" }, mDescribed), "{-8, -1100, 640, 21}\n");
}

TEST_F(Samples, a_range_that_no_reader_looks_at_is_checked)
{
    const std::string source =
        mFolder.File("s.toml", "[system]\nname = \"s\"\n[[chip]]\nname = \"c\"\nlabel = \"c\"\n"
                               "id = 1\n[[subsystem]]\nname = \"bt\"\nkey = [{ id = 1, name = \"K\", type = "
                               "\"integer\", range = [0, 5] }]\n");
    const std::string repository = mFolder.File("s.zmd");
    ASSERT_EQ(Run({ "metadata", "compile", source, "-o", repository }).mExitCode, 0);
    const std::string head = "chip = \"c\"\n[[subsystem]]\ntype = \"bt\"\ndevice = \"otp\"\nstore = 1\n";
    const std::string good = mFolder.File("good.toml", head + "key = [{ name = \"K\", value = 5 }]\n");
    EXPECT_EQ(Run({ "--metadata", repository, "check", good }).mExitCode, 0);
    const std::string bad = mFolder.File("bad.toml", head + "key = [{ name = \"K\", value = 6 }]\n");
    const ToolResult result = Run({ "--metadata", repository, "check", bad });
    EXPECT_EQ(result.mExitCode, 1);
    EXPECT_EQ(result.mErr, "zynconfig: error: key 1 (K) of bt in otp.1 is 6, and the metadata allows 0 to 5\n");
}

TEST_F(Samples, a_row_without_its_index_is_told_how_many_there_are)
{
    EXPECT_THAT(Run({ "get", "Profile" }, mDescribed).mErr,
        HasSubstr("key 304 (Profile) of bt has 1 index, and 0 are given"));
}

TEST_F(Samples, a_wrong_value_is_told_with_its_place_and_the_range)
{
    const std::string file = mFolder.File("wrong.toml",
        "chip = \"trindle7\"\n[[subsystem]]\ntype = \"bt\"\ndevice = \"otp\"\nstore = 1\n"
        "key = [\n  { name = \"CrystalTrim\", value = 77 },\n  { name = \"CristalTrim\", value = 1 },\n]\n");
    const ToolResult result = Run({ "check", file, "--json" });
    EXPECT_EQ(result.mExitCode, 1);
    const Json findings = Json::parse(result.mOut)["findings"];
    ASSERT_THAT(findings, SizeIs(2));
    EXPECT_EQ(findings[0]["file"], file);
    EXPECT_EQ(findings[0]["line"], 7);
    EXPECT_THAT(
        findings[0]["text"].get<std::string>(), AllOf(HasSubstr("77"), HasSubstr("-32"), HasSubstr("31")));
    EXPECT_EQ(findings[1]["line"], 8);
    EXPECT_THAT(findings[1]["text"].get<std::string>(), HasSubstr("CrystalTrim"));
}

TEST_F(Samples, a_damaged_repository_is_an_error)
{
    const std::string whole = ContentOf(mMetadata);
    for (const std::size_t length : { std::size_t{ 0 }, std::size_t{ 100 }, whole.size() / 2 }) {
        mFolder.File("system.zmd", whole.substr(0, length));
        const ToolResult result = Run({ "keys" });
        EXPECT_EQ(result.mExitCode, 1) << length;
        EXPECT_THAT(result.mOut, IsEmpty());
        EXPECT_THAT(LinesOf(result.mErr), Each(StartsWith("zynconfig: error: ")));
        EXPECT_THAT(result.mErr, HasSubstr("system.zmd"));
    }
    fs::remove(mMetadata);
    EXPECT_THAT(Run({ "keys" }).mErr, HasSubstr("system.zmd"));
    EXPECT_FALSE(fs::exists(mMetadata));
}

}   // namespace zynconfig::test
