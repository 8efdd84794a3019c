/// `zynconfig convert` with the real plug-in: full and filtered writes, and which files it leaves.

#include <toolprocess.h>

#include <gmock/gmock.h>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace zynconfig::test {

namespace fs = std::filesystem;

namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

std::string Subsystem(const std::string & type, const std::string & device, int store)
{
    return "[[subsystem]]\ntype = \"" + type + "\"\ndevice = \"" + device +
           "\"\nstore = " + std::to_string(store) + '\n';
}

std::string Key(int id, const std::string & name, int value)
{
    return "[[subsystem.key]]\nid = " + std::to_string(id) + "\nname = \"" + name +
           "\"\ntype = \"uint32\"\nvalue = " + std::to_string(value) + '\n';
}

std::string Row(int id, const std::string & name, int index, int value)
{
    return Key(id, name, value) + "index = " + std::to_string(index) + '\n';
}

/// Three stores, one file each: every key is in some of them, with the number of its layer as value.
class Convert : public testing::Test
{
protected:
    static constexpr char CHIP[] = "chip = \"demo\"\n";

    ToolResult ConvertFiles(const std::vector<std::string> & files, const std::vector<std::string> & more = {})
    {
        std::vector<std::string> arguments = { "convert" };
        arguments.insert(arguments.end(), files.begin(), files.end());
        arguments.insert(arguments.end(), { "-o", mOut });
        arguments.insert(arguments.end(), more.begin(), more.end());
        return RunTool({ arguments });
    }

    std::string Written() const { return ContentOf(mOut); }

    CTempFolder mFolder;
    const std::string mOut = mFolder.File("out.toml");
    const std::string mOtp = mFolder.File(
        "otp.toml", CHIP + Subsystem("bt", "otp", 1) + Key(1, "ALL", 1) + Key(2, "LOW", 1) + Key(3, "ENDS", 1) +
                        Row(9, "ROW", 1, 1) + Subsystem("wlan", "otp", 1) + Key(1, "ALL", 1));
    const std::string mSmem =
        mFolder.File("smem.toml", CHIP + Subsystem("bt", "smem", 1) + Key(1, "ALL", 2) + Key(4, "MIDDLE", 2) +
                                      Row(9, "ROW", 1, 2) + Row(9, "ROW", 2, 2));
    const std::string mEeprom = mFolder.File("eeprom.toml",
        CHIP + Subsystem("bt", "eeprom", 1) + Key(1, "ALL", 3) + Key(3, "ENDS", 3) + Key(5, "HIGH", 3));
};

/// "type layer name=value" of each key of a filtered file.
std::vector<std::string> Winners(const std::string & text)
{
    std::vector<std::string> winners;
    std::string type;
    std::string layer;
    std::string name;
    const auto takes = [](const std::string & line, const std::string & field, std::string & value) {
        const bool isIt = line.find(field + " = ") != std::string::npos;
        if (isIt)
            value = line.substr(line.find(" = ") + 3);
        return isIt;
    };
    bool isInKey = false;
    for (const std::string & line : LinesOf(text)) {
        std::string value;
        isInKey = (isInKey || line.find("[[subsystem.key]]") != std::string::npos) && line != "[[subsystem]]";
        if (!isInKey) {
            takes(line, "type", type);
            takes(line, "layer", layer);
        } else if (takes(line, "value", value)) {
            winners.push_back(type + ' ' + layer + ' ' + name + '=' + value);
        } else {
            takes(line, "name", name);
        }
    }
    return winners;
}

}   // namespace

TEST_F(Convert, a_full_write_is_stable_and_shows_the_same)
{
    ASSERT_EQ(ConvertFiles({ mOtp, mSmem, mEeprom }).mExitCode, 0);
    const std::string first = Written();
    EXPECT_EQ(RunTool({ { "show", mOut } }).mOut, RunTool({ { "show", mOtp, mSmem, mEeprom } }).mOut);
    ASSERT_EQ(ConvertFiles({ mOut }).mExitCode, 0);   // the output is the input
    EXPECT_EQ(Written(), first);
}

TEST_F(Convert, says_nothing_when_all_is_well)
{
    const ToolResult result = ConvertFiles({ mOtp });
    EXPECT_EQ(result.mExitCode, 0);
    EXPECT_THAT(result.mOut + result.mErr, IsEmpty());
}

TEST_F(Convert, a_positive_filter_takes_the_highest_layer_up_to_it)
{
    ASSERT_EQ(ConvertFiles({ mOtp, mSmem, mEeprom }, { "--layer-filter", "2" }).mExitCode, 0);
    EXPECT_THAT(Winners(Written()),
        ElementsAre("\"bt\" 1 \"ENDS\"=1", "\"bt\" 1 \"LOW\"=1", "\"bt\" 2 \"ALL\"=2", "\"bt\" 2 \"MIDDLE\"=2",
            "\"bt\" 2 \"ROW\"=2", "\"bt\" 2 \"ROW\"=2", "\"wlan\" 1 \"ALL\"=1"));
}

TEST_F(Convert, a_negative_filter_takes_the_lowest_layer_up_to_it)
{
    ASSERT_EQ(ConvertFiles({ mOtp, mSmem, mEeprom }, { "--layer-filter", "-3" }).mExitCode, 0);
    EXPECT_THAT(Winners(Written()),
        ElementsAre("\"bt\" 1 \"ALL\"=1", "\"bt\" 1 \"ENDS\"=1", "\"bt\" 1 \"LOW\"=1", "\"bt\" 1 \"ROW\"=1",
            "\"bt\" 2 \"MIDDLE\"=2", "\"bt\" 2 \"ROW\"=2", "\"bt\" 3 \"HIGH\"=3", "\"wlan\" 1 \"ALL\"=1"));
}

TEST_F(Convert, the_order_of_the_files_changes_no_winner)
{
    for (const char * filter : { "1", "2", "3", "15", "-1", "-2", "-3", "-15" }) {
        ASSERT_EQ(ConvertFiles({ mOtp, mSmem, mEeprom }, { "--layer-filter", filter }).mExitCode, 0);
        const std::string expected = Written();
        EXPECT_THAT(Winners(expected), Not(IsEmpty()));
        for (const auto & files :
            { std::vector{ mEeprom, mSmem, mOtp }, { mSmem, mEeprom, mOtp }, { mSmem, mOtp, mEeprom } })
        {
            ASSERT_EQ(ConvertFiles(files, { "--layer-filter", filter }).mExitCode, 0);
            EXPECT_EQ(Written(), expected) << filter;
        }
    }
}

TEST_F(Convert, stores_within_one_file_are_layers_too)
{
    ASSERT_EQ(ConvertFiles({ mOtp, mSmem, mEeprom }).mExitCode, 0);
    const std::string all = mFolder.File("all.toml");
    fs::rename(mOut, all);
    for (const char * filter : { "2", "-2" }) {
        ASSERT_EQ(ConvertFiles({ all }, { "--layer-filter", filter }).mExitCode, 0);
        const std::string one = Written();
        ASSERT_EQ(ConvertFiles({ mOtp, mSmem, mEeprom }, { "--layer-filter", filter }).mExitCode, 0);
        EXPECT_EQ(Written(), one);
    }
}

TEST_F(Convert, a_value_that_a_later_file_replaces_is_not_written)
{
    const std::string later = mFolder.File("later.toml", CHIP + Subsystem("bt", "otp", 1) + Key(2, "LOW", 77));
    for (const char * filter : { "15", "-15" }) {
        ASSERT_EQ(ConvertFiles({ mOtp, later }, { "--layer-filter", filter }).mExitCode, 0);
        EXPECT_THAT(Winners(Written()), testing::Contains("\"bt\" 1 \"LOW\"=77"));
        ASSERT_EQ(ConvertFiles({ later, mOtp }, { "--layer-filter", filter }).mExitCode, 0);
        EXPECT_THAT(Winners(Written()), testing::Contains("\"bt\" 1 \"LOW\"=1"));
    }
}

TEST_F(Convert, the_winners_are_those_that_show_marks)
{
    ASSERT_EQ(ConvertFiles({ mOtp, mSmem, mEeprom }, { "--layer-filter", "15" }).mExitCode, 0);
    std::size_t marked = 0;
    for (const std::string & line : LinesOf(RunTool({ { "show", mOtp, mSmem, mEeprom } }).mOut))
        marked += line.find(" * ") != std::string::npos ? 1U : 0U;
    EXPECT_EQ(Winners(Written()).size(), marked);
}

TEST_F(Convert, the_output_may_be_one_of_the_inputs)
{
    fs::copy_file(mOtp, mOut);
    ASSERT_EQ(ConvertFiles({ mOut, mSmem }).mExitCode, 0);
    EXPECT_THAT(RunTool({ { "show", mOut } }).mOut, AllOf(HasSubstr("1  otp.1"), HasSubstr("2  smem.1")));
}

TEST_F(Convert, the_output_is_the_only_file_left)
{
    const auto before = mFolder.Names();
    ASSERT_EQ(ConvertFiles({ mOtp }).mExitCode, 0);
    auto after = before;
    after.push_back("out.toml");
    std::sort(after.begin(), after.end());
    EXPECT_EQ(mFolder.Names(), after);
}

TEST_F(Convert, a_file_that_cannot_be_read_leaves_everything_as_it_was)
{
    mFolder.File("out.toml", "precious");
    const std::string bad = mFolder.File("bad.toml", "chip = \"demo\"\n[[subsystem]]\n");
    const auto before = mFolder.Names();
    for (const std::vector<std::string> & more : { std::vector<std::string>{}, { "--layer-filter", "3" } }) {
        const ToolResult result = ConvertFiles({ mOtp, bad }, more);
        EXPECT_EQ(result.mExitCode, 1);
        EXPECT_THAT(result.mErr, StartsWith("zynconfig: error: " + bad + ":2:"));
    }
    EXPECT_EQ(Written(), "precious");
    EXPECT_EQ(mFolder.Names(), before);
}

TEST_F(Convert, an_output_that_cannot_be_written_is_an_error)
{
    fs::create_directory(mFolder.Path() / "folder.toml");
    for (const std::string & out :
        { mFolder.File("missing/out.toml"), mFolder.File("folder.toml"), std::string("/proc/out.toml") })
    {
        const auto before = mFolder.Names();
        const ToolResult result = RunTool({ { "convert", mOtp, "-o", out } });
        EXPECT_EQ(result.mExitCode, 1) << out;
        EXPECT_THAT(result.mErr, AllOf(StartsWith("zynconfig: error: "), HasSubstr(out)));
        EXPECT_EQ(mFolder.Names(), before);
    }
}

TEST_F(Convert, insertmode_new_keeps_the_first_of_two_values)
{
    const std::string later = mFolder.File("later.toml", CHIP + Subsystem("bt", "otp", 1) + Key(2, "LOW", 77));
    ASSERT_EQ(ConvertFiles({ mOtp, later }, { "--context", "insertmode=new" }).mExitCode, 0);
    EXPECT_THAT(Written(), Not(HasSubstr("77")));
    ASSERT_EQ(ConvertFiles({ mOtp, later }).mExitCode, 0);
    EXPECT_THAT(Written(), HasSubstr("77"));
}

TEST_F(Convert, a_filtered_output_is_for_people_and_not_read_again)
{
    ASSERT_EQ(ConvertFiles({ mOtp }, { "--layer-filter", "1" }).mExitCode, 0);
    const ToolResult result = RunTool({ { "show", mOut } });
    EXPECT_EQ(result.mExitCode, 1);
    EXPECT_THAT(result.mErr, HasSubstr("filtered"));
}

TEST_F(Convert, a_filter_reads_twice_and_so_takes_no_pipes)
{
    const std::string pipe = mFolder.File("pipe.toml");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const std::string content = ContentOf(mOtp);
    const pid_t feeder = fork();
    if (feeder == 0) {
        std::ofstream(pipe) << content;
        _exit(0);
    }
    const ToolResult result = ConvertFiles({ pipe }, { "--layer-filter", "1" });
    kill(feeder, SIGKILL);
    waitpid(feeder, nullptr, 0);
    EXPECT_EQ(result.mExitCode, 1);
    EXPECT_THAT(result.mErr, HasSubstr(pipe));
    EXPECT_FALSE(fs::exists(mOut));
}

TEST_F(Convert, a_kill_leaves_the_old_file_or_the_new_one)
{
    std::string keys;
    for (int id = 1; id <= 3000; ++id)
        keys += Key(id, "KEY_" + std::to_string(id), id);
    const std::string big = mFolder.File("big.toml", CHIP + Subsystem("bt", "otp", 1) + keys);
    ASSERT_EQ(ConvertFiles({ big }).mExitCode, 0);
    const std::string complete = Written();

    int killed = 0;
    for (int delay = 0; delay < 200000 && killed < 60; delay = delay * 5 / 4 + 300) {
        mFolder.File("out.toml", "old");
        const ToolResult result =
            RunTool({ .mArguments = { "convert", big, "-o", mOut }, .mKillAfterMicroseconds = delay });
        killed += result.mExitCode != 0 ? 1 : 0;
        EXPECT_THAT(Written(), testing::AnyOf("old", complete)) << delay;
    }
    EXPECT_GT(killed, 0);
}

}   // namespace zynconfig::test
