/// Where the tool finds its plug-ins, and what it says if it doesn't.

#include <toolprocess.h>

#include <gmock/gmock.h>

#include <filesystem>
#include <string>

namespace zynconfig::test {

namespace fs = std::filesystem;

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

/// A tool of its own in a tree like the installed one. The library is found where it was built.
class PlugInFolder : public testing::Test
{
protected:
    PlugInFolder()
    {
        fs::create_directories(mBin);
        fs::create_directories(mInstalled);
        fs::copy_file(TOOL, mBin / "zynconfig");
    }

    ToolResult Show(const std::vector<std::string> & more = {})
    {
        std::vector<std::string> arguments = { "show", mFile };
        arguments.insert(arguments.end(), more.begin(), more.end());
        return RunTool({ .mArguments = arguments, .mProgram = (mBin / "zynconfig").string() });
    }

    const CTempFolder mFolder;
    const fs::path mBin = mFolder.Path() / "bin";
    const fs::path mInstalled = mBin / INSTALLED_PLUGIN_DIR;
    const std::string mFile = mFolder.File("a.toml", "chip = \"demo\"\n");
    const fs::path mFake = fs::path(FAKE_PLUGIN_DIR) / "zynconfig_fakeconfig.zpm";
};

}   // namespace

TEST_F(PlugInFolder, none_is_an_error_that_names_plugin_and_folder)
{
    const ToolResult result = Show();
    EXPECT_EQ(result.mExitCode, 1);
    EXPECT_THAT(result.mOut, IsEmpty());
    EXPECT_EQ(result.mErr, "zynconfig: error: no plug-in \"tomlconfig\" in \"" +
                               mInstalled.lexically_normal().string() + "\", which \"" + mFile + "\" needs\n");
}

TEST_F(PlugInFolder, the_installed_one_serves)
{
    fs::copy_file(REAL_PLUGIN, mInstalled / "tomlconfig.zpm");
    EXPECT_EQ(Show().mOut, "Chip demo\nNo layers\n\nNo keys\n");
}

TEST_F(PlugInFolder, a_plugin_beside_the_tool_goes_first)
{
    fs::copy_file(REAL_PLUGIN, mInstalled / "tomlconfig.zpm");
    fs::copy_file(mFake, mBin / "fake.zpm");
    EXPECT_THAT(Show().mOut, StartsWith("Chip\n"));   // the fake one doesn't understand the file
}

TEST_F(PlugInFolder, the_one_given_goes_first_of_all)
{
    fs::copy_file(mFake, mBin / "fake.zpm");
    const fs::path given = mFolder.Path() / "given";
    fs::create_directory(given);
    fs::copy_file(REAL_PLUGIN, given / "tomlconfig.zpm");
    EXPECT_THAT(Show({ "--plugin-dir", given.string() }).mOut, StartsWith("Chip demo\n"));
}

TEST_F(PlugInFolder, the_one_given_is_the_only_one)
{
    fs::copy_file(REAL_PLUGIN, mBin / "tomlconfig.zpm");
    const fs::path given = mFolder.Path() / "given";
    fs::create_directory(given);
    const ToolResult result = Show({ "--plugin-dir", given.string() });
    EXPECT_EQ(result.mExitCode, 1);
    EXPECT_THAT(result.mErr, HasSubstr("no plug-in \"tomlconfig\" in \"" + given.string() + '"'));
}

TEST_F(PlugInFolder, a_damaged_plugin_is_as_good_as_none)
{
    const std::string module = ContentOf(REAL_PLUGIN);
    ASSERT_GT(module.size(), 100000U);   // so that each of the sizes below ends within what gets loaded
    for (const unsigned size : { 0U, 10U, 4096U, 20000U }) {
        mFolder.File("bin/tomlconfig.zpm", module.substr(0, size));
        const ToolResult result = Show();
        EXPECT_EQ(result.mExitCode, 1) << size;
        EXPECT_THAT(result.mErr, StartsWith("zynconfig: error: no plug-in \"tomlconfig\" in ")) << size;
    }
}

TEST_F(PlugInFolder, a_damaged_neighbour_does_no_harm)
{
    fs::copy_file(REAL_PLUGIN, mBin / "tomlconfig.zpm");
    mFolder.File("bin/aaa.zpm", "no module at all");
    mFolder.File("bin/zzz.zpm", ContentOf(REAL_PLUGIN).substr(0, 5000));
    EXPECT_EQ(Show().mExitCode, 0);
}

TEST_F(PlugInFolder, a_relative_one_serves)
{
    fs::copy_file(REAL_PLUGIN, mBin / "tomlconfig.zpm");
    const std::string relative = fs::relative(mBin).string();
    const ToolResult result = RunTool({ { "show", mFile, "--plugin-dir", relative } });
    EXPECT_EQ(result.mExitCode, 0) << result.mErr;
}

}   // namespace zynconfig::test
