/// `zynconfig metadata compile` as a process: what it prints, how it ends, which files it leaves.

#include <toolprocess.h>

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace zynconfig::test {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

constexpr char SOUND[] = R"([system]
name = "small"
[[chip]]
name = "c"
label = "c"
id = 1
[[subsystem]]
name = "bt"
[[subsystem.key]]
id = 1
name = "Volume"
type = "uint8"
)";

class MetadataCompile : public testing::Test
{
protected:
    ToolResult Compile(std::vector<std::string> sources, const std::string & output = "system.zmd")
    {
        std::vector<std::string> arguments = { "metadata", "compile" };
        arguments.insert(arguments.end(), sources.begin(), sources.end());
        arguments.insert(arguments.end(), { "-o", mFolder.File(output) });
        return RunTool({ arguments });
    }

    std::string Source(const std::string & more) { return mFolder.File("source.toml", SOUND + more); }

    CTempFolder mFolder;
};

std::vector<std::string> SampleSources()
{
    std::vector<std::string> paths;
    for (const auto & entry : std::filesystem::directory_iterator(SOURCE_DIR "/samples/pottersong/metadata"))
        paths.push_back(entry.path().string());
    std::sort(paths.begin(), paths.end());
    return paths;
}

}   // namespace

TEST_F(MetadataCompile, compiles_the_samples_without_a_word)
{
    const ToolResult result = Compile(SampleSources());
    EXPECT_EQ(result.mExitCode, 0);
    EXPECT_THAT(result.mOut, IsEmpty());
    EXPECT_THAT(result.mErr, IsEmpty());
    EXPECT_THAT(ContentOf(mFolder.File("system.zmd")), StartsWith("SQLite format 3"));
    EXPECT_THAT(mFolder.Names(), ElementsAre("system.zmd"));
}

TEST_F(MetadataCompile, compiles_the_same_sources_to_the_same_bytes)
{
    ASSERT_EQ(Compile(SampleSources(), "one.zmd").mExitCode, 0);
    ASSERT_EQ(Compile(SampleSources(), "other.zmd").mExitCode, 0);
    EXPECT_EQ(ContentOf(mFolder.File("one.zmd")), ContentOf(mFolder.File("other.zmd")));
}

TEST_F(MetadataCompile, leaves_no_repository_behind_on_an_error)
{
    const ToolResult result = Compile({ Source("range = [0, 256]\n") });
    EXPECT_EQ(result.mExitCode, 1);
    EXPECT_THAT(result.mOut, IsEmpty());
    EXPECT_EQ(result.mErr,
        mFolder.File("source.toml") + ":13:9: error: \"range\": 0 to 256 doesn't fit uint8: 0 to 255\n");
    EXPECT_THAT(mFolder.Names(), ElementsAre("source.toml"));
}

TEST_F(MetadataCompile, leaves_an_old_repository_as_it_was_on_an_error)
{
    mFolder.File("system.zmd", "old");
    EXPECT_EQ(Compile({ Source("range = [0, 256]\n") }).mExitCode, 1);
    EXPECT_EQ(ContentOf(mFolder.File("system.zmd")), "old");
}

TEST_F(MetadataCompile, replaces_an_old_repository)
{
    mFolder.File("system.zmd", "old");
    EXPECT_EQ(Compile({ Source("") }).mExitCode, 0);
    EXPECT_THAT(ContentOf(mFolder.File("system.zmd")), StartsWith("SQLite format 3"));
}

TEST_F(MetadataCompile, warns_and_compiles_all_the_same)
{
    const ToolResult result = Compile({ Source(R"([[subsystem.key]]
id = 2
name = "Wide"
type = "struct"
field = [{ name = "All", type = "uint64", position = 0 }]
)") });
    EXPECT_EQ(result.mExitCode, 0);
    EXPECT_EQ(result.mErr, mFolder.File("source.toml") +
                               ":17:54: warning: the device format doesn't carry \"All\" back unchanged: "
                               "18446744073709551615 comes back as 0\n");
    EXPECT_THAT(mFolder.Names(), ElementsAre("source.toml", "system.zmd"));
}

TEST_F(MetadataCompile, tells_of_a_source_that_is_not_there)
{
    const std::string missing = mFolder.File("missing.toml");
    const ToolResult result = Compile({ Source(""), missing });
    EXPECT_EQ(result.mExitCode, 1);
    EXPECT_EQ(result.mErr, missing + ":1:1: error: unable to open the file (No such file or directory)\n");
    EXPECT_THAT(mFolder.Names(), ElementsAre("source.toml"));
}

TEST_F(MetadataCompile, tells_of_a_place_that_it_cannot_write_to)
{
    const std::string output = mFolder.File("no/such/folder.zmd");
    const ToolResult result = RunTool({ { "metadata", "compile", Source(""), "-o", output } });
    EXPECT_EQ(result.mExitCode, 1);
    EXPECT_EQ(
        result.mErr, "zynconfig: error: \"" + output + "\" can't be written: No such file or directory\n");
}

TEST_F(MetadataCompile, refuses_an_output_that_is_no_repository)
{
    const std::string source = Source("");
    const ToolResult result = RunTool({ { "metadata", "compile", source, "-o", source } });
    EXPECT_EQ(result.mExitCode, 2);
    EXPECT_THAT(result.mErr, HasSubstr("has not the extension of a metadata repository: .zmd"));
    EXPECT_EQ(ContentOf(source), SOUND);
}

TEST_F(MetadataCompile, needs_sources_and_an_output)
{
    EXPECT_EQ(RunTool({ { "metadata" } }).mExitCode, 2);
    EXPECT_EQ(RunTool({ { "metadata", "compile", "-o", mFolder.File("system.zmd") } }).mExitCode, 2);
    EXPECT_EQ(RunTool({ { "metadata", "compile", Source("") } }).mExitCode, 2);
}

}   // namespace zynconfig::test
