/// The command line of the tool as a process: what is asked for, and what is wrong with it.

#include <toolprocess.h>

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace zynconfig::test {

namespace {

using testing::AllOf;
using testing::Each;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;

constexpr int WRONG_COMMAND_LINE = 2;

/// Expects one error line with `reason` and nothing else.
void ExpectRefused(const std::vector<std::string> & arguments, const std::string & reason)
{
    const ToolResult result = RunTool({ arguments });
    EXPECT_EQ(result.mExitCode, WRONG_COMMAND_LINE) << reason;
    EXPECT_THAT(result.mOut, IsEmpty());
    EXPECT_THAT(LinesOf(result.mErr), AllOf(SizeIs(1), Each(StartsWith("zynconfig: error: "))));
    EXPECT_THAT(result.mErr, HasSubstr(reason));
}

}   // namespace

TEST(CommandLine, help_tells_the_commands_and_the_exit_codes)
{
    for (const char * option : { "--help", "-h" }) {
        const ToolResult result = RunTool({ { option } });
        EXPECT_EQ(result.mExitCode, 0);
        EXPECT_THAT(result.mErr, IsEmpty());
        EXPECT_THAT(result.mOut, AllOf(HasSubstr("show"), HasSubstr("convert"), HasSubstr("--plugin-dir DIR")));
        EXPECT_THAT(
            result.mOut, HasSubstr("Exit codes: 0 done, 1 the data is wrong, 2 the command line is wrong."));
    }
}

TEST(CommandLine, help_of_a_command_tells_its_options)
{
    EXPECT_THAT(RunTool({ { "show", "--help" } }).mOut, AllOf(HasSubstr("--json"), HasSubstr("FILE")));
    EXPECT_THAT(RunTool({ { "convert", "--help" } }).mOut,
        AllOf(HasSubstr("--layer-filter N"), HasSubstr("--context \"TAG=VALUE;...\""),
            HasSubstr("-o,--output OUT")));
}

TEST(CommandLine, help_of_every_command_tells_how_to_name_the_metadata)
{
    for (const char * command : { "show", "convert", "keys", "describe", "get", "check", "info" }) {
        const std::string help = RunTool({ { command, "--help" } }).mOut;
        EXPECT_THAT(
            help, AllOf(HasSubstr("--metadata FILE"), HasSubstr("--plugin-dir DIR"), HasSubstr("--trace")))
            << command;
        EXPECT_THAT(help, HasSubstr("Exit codes: 0 done, 1 the data is wrong, 2 the command line is wrong."))
            << command;
    }
    EXPECT_THAT(RunTool({ { "--help" } }).mOut, Not(HasSubstr("All commands")));
}

TEST(CommandLine, version_is_one_line)
{
    for (const std::vector<std::string> & arguments :
        { std::vector<std::string>{ "--version" }, { "show", "--version" } })
    {
        const ToolResult result = RunTool({ arguments });
        EXPECT_EQ(result.mExitCode, 0);
        EXPECT_EQ(result.mOut, "zynconfig " EXPECTED_VERSION "\n");
        EXPECT_THAT(result.mErr, IsEmpty());
    }
}

TEST(CommandLine, help_that_cannot_be_written_is_an_error)
{
    for (const Output output : { Output::FullDevice, Output::BrokenPipe, Output::Closed }) {
        const ToolResult result = RunTool({ .mArguments = { "--help" }, .mOutput = output });
        EXPECT_EQ(result.mExitCode, 1);
        EXPECT_THAT(result.mErr, StartsWith("zynconfig: error: unable to write to the standard output: "));
    }
}

TEST(CommandLine, a_command_and_its_files_are_needed)
{
    ExpectRefused({}, "subcommand");
    ExpectRefused({ "frobnicate" }, "\"frobnicate\" is no command; there are show, convert, ");
    ExpectRefused({ "--frobnicate" }, "--frobnicate");
    ExpectRefused({ "show" }, "files");
    ExpectRefused({ "convert", "-o", "b.toml" }, "files");
    ExpectRefused({ "convert", "a.toml" }, "--output");
}

TEST(CommandLine, unknown_options_are_refused)
{
    ExpectRefused({ "show", "a.toml", "--frobnicate" }, "--frobnicate");
    ExpectRefused({ "show", "a.toml", "--layer-filter", "3" }, "--layer-filter");
    ExpectRefused({ "convert", "a.toml", "-o", "b.toml", "--json" }, "--json");
}

TEST(CommandLine, an_option_counts_once)
{
    ExpectRefused({ "convert", "a.toml", "-o", "b.toml", "-o", "c.toml" }, "--output");
    ExpectRefused({ "show", "a.toml", "--context", "a=1", "--context", "b=2" }, "--context");
}

TEST(CommandLine, an_unknown_extension_is_refused_with_those_known)
{
    for (const char * file : { "a.txt", "a", "toml", ".toml", "a.toml.bak", "a.toml/", "-", "" })
        ExpectRefused({ "show", file }, "has no known extension; known are: .toml, .zimg");
    ExpectRefused(
        { "convert", "a.toml", "-o", "b.bin" }, "\"b.bin\" has no known extension; known are: .toml, .zimg");
}

TEST(CommandLine, a_format_stands_in_for_the_extension)
{
    const CTempFolder folder;
    const std::string file = folder.File("a.txt", "chip demo\nsubsystem 1 1 1\nkey 5 K number 6\n");
    const std::string out = folder.File("out.txt");
    for (const std::vector<std::string> & arguments :
        { std::vector<std::string>{ "show", file, "--from", "toml" },
            { "convert", file, "-o", out, "--from", "toml", "--to", "toml" } })
    {
        std::vector<std::string> all = arguments;
        all.insert(all.end(), { "--plugin-dir", FAKE_PLUGIN_DIR });
        EXPECT_EQ(RunTool({ all }).mExitCode, 0);
    }
    EXPECT_THAT(ContentOf(out), HasSubstr("5 6"));
    ExpectRefused({ "convert", "a.toml", "-o", "b.txt" }, "\"b.txt\" has no known extension");
    ExpectRefused({ "convert", "a.txt", "-o", "b.toml" }, "\"a.txt\" has no known extension");
}

TEST(CommandLine, an_unknown_format_is_refused_with_those_known)
{
    ExpectRefused({ "show", "a.toml", "--from", "yaml" }, "\"yaml\" is no format; known are: toml, image");
    ExpectRefused({ "convert", "a.toml", "-o", "b.toml", "--to", "" }, "\"\" is no format");
}

TEST(CommandLine, a_layer_filter_is_a_layer_or_its_negative)
{
    for (const char * layer :
        { "0", "16", "-16", "-0", "+3", "3x", "x", "", " 3", "0x3", "99999999999999999999" })
        ExpectRefused({ "convert", "a.toml", "-o", "b.toml", "--layer-filter", layer },
            "is no layer: 1 to 15, or -15 to -1");
    ExpectRefused({ "convert", "a.toml", "-o", "b.toml", "--layer-filter" }, "--layer-filter");
}

TEST(CommandLine, a_context_is_a_list_of_tags)
{
    ExpectRefused({ "show", "a.toml", "--context", "insertmode" }, "\"insertmode\" is no tag=value");
    ExpectRefused({ "show", "a.toml", "--context", "a=1;b" }, "\"b\" is no tag=value");
    ExpectRefused({ "show", "a.toml", "--context", "=x" }, "a tag has a name");
    ExpectRefused({ "show", "a.toml", "--context", "a=1; b=2" }, "no blanks around it");
    ExpectRefused({ "show", "a.toml", "--context", "a =1" }, "no blanks around it");
}

TEST(CommandLine, a_context_tag_with_index_in_its_name_is_refused)
{
    for (const char * tag : { "index", "index1", "myindexfoo", "MYINDEXFOO" })
        ExpectRefused({ "convert", "a.toml", "-o", "b.toml", "--context", std::string("a=1;") + tag + "=3" },
            "every tag with \"index\" in its name would count as an index of a table");
}

TEST(CommandLine, context_tags_that_the_tool_sets_are_refused)
{
    for (const char * tag :
        { "chip", "subsystemtype", "device", "store", "layernumber", "layerfilter", "LayerFilter",
            "storelayers", "num_indices", "rawmode", "subsystemkeybystore", "subsystemkeybylayer" })
        ExpectRefused({ "show", "a.toml", "--context", std::string(tag) + "=1" }, "can't be set here: ");
}

TEST(CommandLine, a_plugin_folder_must_be_one)
{
    const CTempFolder folder;
    ExpectRefused({ "--plugin-dir", folder.File("missing"), "show", "a.toml" }, "--plugin-dir");
    ExpectRefused({ "--plugin-dir", folder.File("file", "x"), "show", "a.toml" }, "--plugin-dir");
}

TEST(CommandLine, what_it_repeats_of_the_user_is_printable)
{
    const ToolResult result = RunTool({ { "show", "a\033[31m.txt" } });
    EXPECT_THAT(result.mErr, AllOf(HasSubstr("a\\x1b[31m.txt"), Not(HasSubstr("\033"))));
}

TEST(CommandLine, common_options_stand_before_or_behind_the_command)
{
    const CTempFolder folder;
    const std::string file = folder.File("a.toml", "chip demo\nsubsystem 1 1 1\nkey 5 K number 6\n");
    const ToolResult before = RunTool({ { "--plugin-dir", FAKE_PLUGIN_DIR, "show", file } });
    const ToolResult behind = RunTool({ { "show", file, "--plugin-dir", FAKE_PLUGIN_DIR } });
    EXPECT_EQ(before.mExitCode, 0) << before.mErr;
    EXPECT_EQ(before.mOut, behind.mOut);
    EXPECT_EQ(behind.mExitCode, 0);
}

}   // namespace zynconfig::test
