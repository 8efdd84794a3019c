/// The tool beside a plug-in that leaves errors everywhere, and files that hold what the library drops without a word.

#include <toolprocess.h>

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace zynconfig::test {

namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

constexpr int WRONG_DATA = 1;
constexpr char ONE_KEY[] = "chip demo\nsubsystem 1 1 1\nkey 5 K number 6\n";

class Hostile : public testing::Test
{
protected:
    ToolResult Show(const std::vector<std::string> & files, const std::vector<std::string> & more = {})
    {
        return RunWith("show", files, more);
    }

    ToolResult Convert(const std::vector<std::string> & files, const std::vector<std::string> & more = {})
    {
        std::vector<std::string> options = more;
        options.insert(options.end(), { "-o", mFolder.File("out.toml") });
        return RunWith("convert", files, options);
    }

    std::string File(const std::string & name, const std::string & orders)
    {
        return mFolder.File(name, orders);
    }
    bool IsWritten() const { return std::filesystem::exists(mFolder.Path() / "out.toml"); }
    std::string Written() const { return ContentOf(mFolder.Path() / "out.toml"); }

    CTempFolder mFolder;

private:
    static ToolResult RunWith(const std::string & command, const std::vector<std::string> & files,
        const std::vector<std::string> & more)
    {
        std::vector<std::string> arguments = { command, "--plugin-dir", FAKE_PLUGIN_DIR };
        arguments.insert(arguments.end(), files.begin(), files.end());
        arguments.insert(arguments.end(), more.begin(), more.end());
        return RunTool({ arguments });
    }
};

}   // namespace

TEST_F(Hostile, an_error_of_every_group_is_shown_and_fails)
{
    for (const char * group : { "5", "103", "120", "121" }) {
        const auto result =
            Show({ File("a.toml", std::string(ONE_KEY) + "error " + group + " first%0Asecond\n") });
        EXPECT_EQ(result.mExitCode, WRONG_DATA) << group;
        EXPECT_THAT(result.mOut, IsEmpty());
        EXPECT_THAT(LinesOf(result.mErr), ElementsAre("zynconfig: error: first", "zynconfig: error: second"));
    }
}

TEST_F(Hostile, an_error_without_a_text_is_told)
{
    const auto result = Show({ File("a.toml", "error 120 %0A\n") });
    EXPECT_EQ(result.mExitCode, WRONG_DATA);
    EXPECT_THAT(result.mErr, StartsWith("zynconfig: error: "));
}

TEST_F(Hostile, an_error_fits_the_terminal)
{
    EXPECT_EQ(Show({ File("a.toml", "error 120 %1b[2J\n") }).mErr, "zynconfig: error: \\x1b[2J\n");
}

TEST_F(Hostile, every_file_is_read_before_the_tool_gives_up)
{
    const auto result = Show({ File("a.toml", "error 120 one\n"), File("b.toml", "error 120 two\n") });
    EXPECT_THAT(LinesOf(result.mErr), ElementsAre("zynconfig: error: one", "zynconfig: error: two"));
}

TEST_F(Hostile, nothing_is_written_when_a_read_failed)
{
    for (const char * filter : { "", "3" }) {
        const std::vector<std::string> more =
            *filter == '\0' ? std::vector<std::string>{} : std::vector<std::string>{ "--layer-filter", filter };
        const auto result = Convert({ File("a.toml", ONE_KEY), File("b.toml", "error 120 bad\n") }, more);
        EXPECT_EQ(result.mExitCode, WRONG_DATA);
        EXPECT_FALSE(IsWritten());
    }
}

TEST_F(Hostile, a_warning_is_shown_and_fails_nothing)
{
    const auto result = Show({ File("a.toml", std::string("status look%20out\n") + ONE_KEY) });
    EXPECT_EQ(result.mExitCode, 0);
    EXPECT_EQ(result.mErr, "zynconfig: warning: look out\n");
}

TEST_F(Hostile, what_a_plugin_throws_is_an_error)
{
    const auto result = Show({ File("a.toml", "throw\n") });
    EXPECT_EQ(result.mExitCode, WRONG_DATA);
    EXPECT_EQ(result.mErr, "zynconfig: error: thrown by a plug-in\n");
}

TEST_F(Hostile, no_reader_is_an_error)
{
    const std::string file = File("nothing.toml", "");
    EXPECT_EQ(Show({ file }).mErr, "zynconfig: error: " + file + ": unable to create the reader\n");
    EXPECT_EQ(Show({ File("nothing-because.toml", "") }).mErr, "zynconfig: error: the creator tells why\n");
}

TEST_F(Hostile, no_writer_is_an_error)
{
    const std::string out = mFolder.File("nothing.toml");
    const std::string file = File("a.toml", ONE_KEY);
    const auto result = RunTool({ { "convert", file, "-o", out, "--plugin-dir", FAKE_PLUGIN_DIR } });
    EXPECT_EQ(result.mExitCode, WRONG_DATA);
    EXPECT_EQ(result.mErr, "zynconfig: error: " + out + ": unable to create the writer\n");
}

TEST_F(Hostile, a_writer_fails_at_any_call)
{
    for (const char * call : { "prepare", "start", "end" }) {
        const auto result = Convert({ File("a.toml", ONE_KEY) }, { "--context", std::string("fake=") + call });
        EXPECT_EQ(result.mExitCode, WRONG_DATA) << call;
        EXPECT_EQ(result.mErr, std::string("zynconfig: error: the fake writer fails at ") + call + '\n');
    }
}

TEST_F(Hostile, a_write_that_fails_without_a_word_is_told)
{
    const auto result = Convert({ File("a.toml", ONE_KEY) }, { "--context", "fake=silent" });
    EXPECT_EQ(result.mExitCode, WRONG_DATA);
    EXPECT_EQ(result.mErr, "zynconfig: error: " + mFolder.File("out.toml") + ": unable to write to the file\n");
}

TEST_F(Hostile, the_context_reaches_the_writer_with_the_chip_and_the_filter)
{
    const std::string file = File("a.toml", ONE_KEY);
    EXPECT_EQ(Convert({ file }, { "--context", "extra=more;" }).mExitCode, 0);
    EXPECT_THAT(Written(), AllOf(HasSubstr("start chip=demo filter= extra=more\n"),
                               HasSubstr("prepare chip=demo filter= extra=more\n")));
    EXPECT_EQ(Convert({ file }, { "--layer-filter", "-3" }).mExitCode, 0);
    EXPECT_THAT(Written(), HasSubstr("start chip=demo filter=-3 extra=\n"));
}

TEST_F(Hostile, files_of_different_chips_are_refused)
{
    const std::string a = File("a.toml", ONE_KEY);
    const std::string b = File("b.toml", "chip other\nsubsystem 1 1 1\nkey 5 K number 7\nsubsystem 1 1 2\n");
    const std::string expected =
        "zynconfig: error: " + b + ": is for the chip \"other\", but " + a + " is for \"demo\"\n";
    for (const auto & result :
        { Show({ a, b }), Convert({ a, b }), Convert({ a, b }, { "--layer-filter", "3" }) }) {
        EXPECT_EQ(result.mExitCode, WRONG_DATA);
        EXPECT_EQ(result.mErr, expected);
        EXPECT_THAT(result.mOut, IsEmpty());
    }
    EXPECT_FALSE(IsWritten());
}

TEST_F(Hostile, one_file_for_two_chips_is_refused)
{
    const std::string a = File("a.toml", std::string(ONE_KEY) + "chip other\nsubsystem 2 1 1\n");
    EXPECT_EQ(Show({ a }).mErr,
        "zynconfig: error: " + a + ": is for the chip \"other\", but " + a + " is for \"demo\"\n");
}

TEST_F(Hostile, a_file_without_subsystems_is_of_a_chip_too)
{
    const std::string a = File("a.toml", "started demo\n");
    const std::string b = File("b.toml", "chip other\nsubsystem 1 1 1\nkey 5 K number 7\n");
    EXPECT_THAT(Show({ a, b }).mErr, HasSubstr("is for the chip \"other\""));
    EXPECT_THAT(Show({ a }).mOut, StartsWith("Chip demo\n"));
    EXPECT_EQ(Convert({ a }).mExitCode, 0);
    EXPECT_THAT(Written(), HasSubstr("start chip=demo "));
}

TEST_F(Hostile, tags_that_a_reader_leaves_behind_stay_with_it)
{
    const std::string a = File("a.toml", std::string("dirty insertmode new\n") + ONE_KEY);
    const std::string b = File("b.toml", "chip demo\nsubsystem 1 1 1\nkey 5 K number 7\n");
    EXPECT_THAT(Show({ a, b }).mOut, HasSubstr("* 1 otp.1  7\n"));
}

TEST_F(Hostile, a_store_without_a_layer_is_told)
{
    for (const char * store : { "13 1", "11 1", "0 1", "15 0", "7 1", "- -", "15 65537" }) {
        const std::string file =
            File("a.toml", std::string(ONE_KEY) + "subsystem 1 " + store + "\nkey 9 L number 1\n");
        const auto result = Show({ file });
        EXPECT_EQ(result.mExitCode, WRONG_DATA) << store;
        EXPECT_THAT(result.mErr, HasSubstr(" has no layer: one of at most 15 stores has")) << store;
        EXPECT_THAT(result.mOut, HasSubstr("* 1 otp.1")) << store;   // what there is gets shown
        EXPECT_EQ(Convert({ file }).mExitCode, WRONG_DATA);
        EXPECT_FALSE(IsWritten());
    }
}

TEST_F(Hostile, a_sixteenth_store_is_told)
{
    std::string orders = "chip demo\n";
    for (int store = 1; store <= 16; ++store)
        orders += "subsystem 1 15 " + std::to_string(store) + "\nkey 5 K number 6\n";
    const auto result = Show({ File("a.toml", orders) });
    EXPECT_EQ(result.mExitCode, WRONG_DATA);
    EXPECT_THAT(LinesOf(result.mErr), ElementsAre(HasSubstr("the store eeprom.16 has no layer")));
}

TEST_F(Hostile, more_than_fifteen_reported_stores_leave_nothing)
{
    const auto result = Show({ File("a.toml", std::string("stores 0 15\n") + ONE_KEY) });
    EXPECT_EQ(result.mExitCode, WRONG_DATA);
    EXPECT_EQ(
        result.mErr, "zynconfig: error: the chip has more than 15 stores, so none of its keys has a layer\n");
    EXPECT_EQ(Convert({ File("a.toml", std::string("stores 0 15\n") + ONE_KEY) }).mExitCode, WRONG_DATA);
    EXPECT_FALSE(IsWritten());
}

TEST_F(Hostile, a_plain_key_that_a_row_replaces_is_told)
{
    const std::string file = File("a.toml", std::string(ONE_KEY) + "key 5 K number 7 1\n");
    const auto result = Show({ file });
    EXPECT_EQ(result.mExitCode, WRONG_DATA);
    EXPECT_EQ(result.mErr,
        "zynconfig: error: key 5 (K) of bt in otp.1 is lost: a key of the same number took its place\n");
    EXPECT_EQ(Convert({ file }).mExitCode, WRONG_DATA);
    EXPECT_FALSE(IsWritten());
}

TEST_F(Hostile, a_row_that_the_mode_new_refuses_for_a_plain_key_is_told)
{
    const std::string file = File("a.toml", std::string(ONE_KEY) + "key 5 K number 7 1\n");
    EXPECT_THAT(Show({ file }, { "--context", "insertmode=new" }).mErr,
        HasSubstr("key 5.1 (K) of bt in otp.1 is lost"));
}

TEST_F(Hostile, a_key_that_stands_twice_in_a_file_is_told)
{
    const std::string file = File("a.toml", std::string(ONE_KEY) + "key 5 K number 7\n");
    const std::string expected = "zynconfig: error: key 5 (K) of bt in otp.1 stands more than once in " + file +
                                 ", and only one of them counts\n";
    EXPECT_EQ(Show({ file }).mErr, expected);
    EXPECT_EQ(Show({ file }, { "--context", "insertmode=new" }).mErr, expected);
    const auto appended = Show({ file }, { "--context", "insertmode=append" });
    EXPECT_EQ(appended.mExitCode, 0) << appended.mErr;
    EXPECT_THAT(appended.mOut, AllOf(HasSubstr("* 1 otp.1  6\n"), HasSubstr("  1 otp.1  7\n")));
}

TEST_F(Hostile, a_file_given_twice_is_no_loss)
{
    const std::string file = File("a.toml", ONE_KEY);
    EXPECT_EQ(Show({ file, file }).mExitCode, 0);
    EXPECT_EQ(Show({ file, file }).mOut, Show({ file }).mOut);
}

TEST_F(Hostile, a_later_file_replaces_values_without_a_word)
{
    const std::string a = File("a.toml", ONE_KEY);
    const std::string b = File("b.toml", "chip demo\nsubsystem 1 1 1\nkey 5 K number 7\n");
    EXPECT_THAT(Show({ a, b }).mOut, AllOf(HasSubstr("* 1 otp.1  7\n"), Not(HasSubstr("otp.1  6"))));
    EXPECT_THAT(Show({ b, a }).mOut, HasSubstr("* 1 otp.1  6\n"));
    EXPECT_THAT(Show({ a, b }, { "--context", "insertmode=new" }).mOut, HasSubstr("* 1 otp.1  6\n"));
    EXPECT_THAT(Show({ a, b }).mErr, IsEmpty());
}

TEST_F(Hostile, a_key_without_a_number_is_shown_but_not_written)
{
    const std::string file = File("a.toml", "chip demo\nsubsystem 1 1 1\nkey 0 ZERO number 7\n");
    EXPECT_THAT(Show({ file }).mOut, HasSubstr("0    ZERO  * 1 otp.1  7\n"));
    const auto full = Convert({ file });
    EXPECT_EQ(full.mExitCode, WRONG_DATA);
    EXPECT_EQ(full.mErr, "zynconfig: error: key 0 (ZERO) of bt in otp.1 can't be written: its number is 0\n");
    EXPECT_FALSE(IsWritten());
    EXPECT_EQ(Convert({ file }, { "--layer-filter", "1" }).mExitCode, 0);
    EXPECT_THAT(Written(), HasSubstr("0 7\n"));
}

TEST_F(Hostile, a_filtered_write_refuses_two_keys_of_one_name)
{
    const std::string file =
        File("a.toml", "chip demo\nsubsystem 1 1 1\nkey 5 K number 6\nsubsystem 1 15 1\nkey 6 K number 7\n");
    EXPECT_EQ(Convert({ file }).mExitCode, 0);
    std::filesystem::remove(mFolder.Path() / "out.toml");
    const auto result = Convert({ file }, { "--layer-filter", "2" });
    EXPECT_EQ(result.mExitCode, WRONG_DATA);
    EXPECT_EQ(result.mErr,
        "zynconfig: error: the keys 5 and 6 of bt are both called \"K\": a filtered output can hold only "
        "one of them\n");
    EXPECT_FALSE(IsWritten());
    EXPECT_EQ(Convert({ file }, { "--layer-filter", "1" }).mExitCode, 0);   // only one of them is in layer 1
}

TEST_F(Hostile, a_filtered_write_refuses_a_row_called_as_a_plain_key)
{
    const std::string file =
        File("a.toml", "chip demo\nsubsystem 1 1 1\nkey 5 K.1 number 6\nkey 6 K number 7 1\n");
    EXPECT_THAT(Convert({ file }, { "--layer-filter", "1" }).mErr,
        HasSubstr("the keys 5 and 6.1 of bt are both called \"K.1\""));
}

TEST_F(Hostile, a_filtered_write_refuses_a_key_of_two_names)
{
    const std::string file =
        File("a.toml", "chip demo\nsubsystem 1 1 1\nkey 5 A number 6\nsubsystem 1 15 1\nkey 5 B number 7\n");
    EXPECT_THAT(
        Convert({ file }, { "--layer-filter", "2" }).mErr, HasSubstr("key 5 of bt is called \"A\" and \"B\""));
    EXPECT_FALSE(IsWritten());
}

TEST_F(Hostile, a_filtered_write_refuses_a_key_that_stands_twice)
{
    const std::string a = File("a.toml", ONE_KEY);
    const auto result = Convert({ a, a }, { "--layer-filter", "2", "--context", "insertmode=append" });
    EXPECT_THAT(result.mErr, HasSubstr("key 5 (K) of bt stands more than once in otp.1"));
    EXPECT_FALSE(IsWritten());
}

TEST_F(Hostile, of_many_losses_the_first_are_told_and_the_rest_counted)
{
    std::string orders = ONE_KEY;
    for (int i = 0; i < 30; ++i)
        orders += "key 0 Z number 7 " + std::to_string(i) + '\n';
    const auto lines = LinesOf(Convert({ File("a.toml", orders) }).mErr);
    ASSERT_EQ(lines.size(), 21U);
    EXPECT_EQ(lines.back(), "zynconfig: error: ... and 10 more like these");
}

TEST_F(Hostile, a_row_behind_a_plain_key_of_a_higher_layer_has_no_winner)
{
    const std::string file =
        File("a.toml", "chip demo\nsubsystem 1 1 1\nkey 5 K number 6 1\nsubsystem 1 15 1\nkey 5 K number 7\n");
    const auto result = Show({ file });
    EXPECT_EQ(result.mExitCode, WRONG_DATA);
    EXPECT_EQ(result.mErr, "zynconfig: error: key 5.1 (K) of bt has no winner: another key of its number or "
                           "name answers for it\n");
    EXPECT_THAT(
        result.mOut, AllOf(HasSubstr("* 2 eeprom.1  7\n"), HasSubstr("  5.1  K       1 otp.1     6\n")));
}

TEST_F(Hostile, a_row_without_indices_is_a_place_of_its_own)
{
    const std::string file = File("a.toml", "chip demo\nsubsystem 1 1 1\nraw 5 K\nkey 5 K number 6\n");
    const auto result = Show({ file });
    EXPECT_EQ(
        result.mExitCode, WRONG_DATA);   // the text "5" finds the row, so that the plain key has no winner
    EXPECT_THAT(result.mOut,
        AllOf(HasSubstr("  5.   K     * 1 otp.1  []\n"), HasSubstr("  5    K       1 otp.1  6\n")));
}

TEST_F(Hostile, numbers_beyond_the_signed_range_have_winners)
{
    const std::string file = File("a.toml", "chip demo\nsubsystem 1 1 1\nkey 4294967295 BIG number 1\nkey "
                                            "4294967294 ROW number 2 7\nkey 3000000000 - number 3\n"
                                            "subsystem 1 15 1\nkey 4294967295 BIG number 4\nkey 4294967294 ROW "
                                            "number 5 7\nkey 3000000000 - number 6\n");
    const auto result = Show({ file });
    EXPECT_EQ(result.mExitCode, 0) << result.mErr;
    EXPECT_THAT(result.mOut,
        AllOf(HasSubstr("* 2 eeprom.1  4\n"), HasSubstr("* 2 eeprom.1  5\n"), HasSubstr("* 2 eeprom.1  6\n")));
}

TEST_F(Hostile, big_numbers_of_one_name_win_each_by_its_number)
{
    const std::string file = File("a.toml",
        "chip demo\nsubsystem 1 1 1\nkey 4294967295 K number 1\nkey 4294967294 K number 2\nsubsystem 1 15 1\n"
        "key 4294967294 K number 3\n");
    const auto result = Show({ file });
    EXPECT_EQ(result.mExitCode, 0) << result.mErr;
    EXPECT_THAT(result.mOut, AllOf(HasSubstr("* 1 otp.1     1\n"), HasSubstr("* 2 eeprom.1  3\n")));
}

TEST_F(Hostile, keys_of_one_name_win_each_by_its_number)
{
    const std::string file = File("a.toml",
        "chip demo\nsubsystem 1 1 1\nkey 5 K number 1\nkey 6 K number 2\nsubsystem 1 15 1\nkey 6 K number 3\n");
    const auto result = Show({ file });
    EXPECT_EQ(result.mExitCode, 0) << result.mErr;
    EXPECT_THAT(result.mOut, AllOf(HasSubstr("* 1 otp.1     1\n"), HasSubstr("* 2 eeprom.1  3\n")));
}

TEST_F(Hostile, null_elements_and_payloads_are_passed_over)
{
    const auto result = Show(
        { File("a.toml", std::string("chip demo\nsubsystem 1 1 1\nnullelement\nkey 5 K nullpayload -\n")) });
    EXPECT_EQ(result.mExitCode, 0) << result.mErr;
    EXPECT_THAT(result.mOut, HasSubstr("* 1 otp.1  []\n"));
}

TEST_F(Hostile, payloads_of_a_class_of_the_plugin_show_their_text)
{
    const auto result =
        Show({ File("a.toml", std::string("chip demo\nsubsystem 1 1 1\nkey 5 K foreign -\n")) });
    EXPECT_THAT(result.mOut, HasSubstr("* 1 otp.1  \"foreign \\x1b[31m\"\n"));
}

TEST_F(Hostile, texts_that_are_no_utf8_are_shown_and_become_json)
{
    const std::string file =
        File("a.toml", "chip %C3\nsubsystem 1 1 1\nkey 5 %FF%1b text a%FEz\nkey 6 O octets %00%FF\n");
    EXPECT_THAT(Show({ file }).mOut,
        AllOf(HasSubstr("\\xff\\x1b  * 1 otp.1  \"a\\xfez\"\n"), HasSubstr("* 1 otp.1  00 ff\n")));
    const auto json = Show({ file }, { "--json" });
    EXPECT_EQ(json.mExitCode, 0) << json.mErr;
    EXPECT_THAT(json.mOut, AllOf(HasSubstr("\"hex\": \"61fe7a\""), HasSubstr("\"hex\": \"00ff\"")));
}

TEST_F(Hostile, a_filtered_read_that_finds_other_keys_is_refused)
{
    const std::string other = File("other", "subsystem 1 1 1\nkey 9 L number 6\n");
    const auto result =
        Convert({ File("a.toml", "chip demo\nticket " + other + "\nsubsystem 1 1 1\nkey 5 K number 6\n") },
            { "--layer-filter", "2" });
    EXPECT_EQ(result.mExitCode, WRONG_DATA);
    EXPECT_EQ(result.mErr, "zynconfig: error: the files changed while they were read\n");
    EXPECT_FALSE(IsWritten());
}

TEST_F(Hostile, an_error_of_the_second_read_writes_nothing)
{
    const std::string other = File("other", "error 120 late\n");
    const auto result =
        Convert({ File("a.toml", "ticket " + other + '\n' + ONE_KEY) }, { "--layer-filter", "2" });
    EXPECT_EQ(result.mExitCode, WRONG_DATA);
    EXPECT_EQ(result.mErr, "zynconfig: error: late\n");
    EXPECT_FALSE(IsWritten());
}

TEST_F(Hostile, a_filtered_write_gives_the_winners_by_type_and_layer)
{
    const std::string low =
        File("low.toml", "chip demo\nsubsystem 2 1 1\nkey 5 A number 1\nkey 6 B number 2\n");
    const std::string high = File("high.toml", "chip demo\nsubsystem 2 15 1\nkey 5 A number 3\n");
    for (const auto & files : { std::vector{ low, high }, std::vector{ high, low } }) {
        EXPECT_EQ(Convert(files, { "--layer-filter", "15" }).mExitCode, 0);
        EXPECT_THAT(LinesOf(Written()),
            ElementsAre(HasSubstr("prepare"), HasSubstr("start"), "subsystem type=2 chip=demo layer=1", "6 2",
                "subsystem type=2 chip=demo layer=2", "5 3", HasSubstr("end")));
        EXPECT_EQ(Convert(files, { "--layer-filter", "-15" }).mExitCode, 0);
        EXPECT_THAT(
            LinesOf(Written()), ElementsAre(HasSubstr("prepare"), HasSubstr("start"),
                                    "subsystem type=2 chip=demo layer=1", "5 1", "6 2", HasSubstr("end")));
    }
}

TEST_F(Hostile, output_that_cannot_be_written_is_an_error)
{
    const std::string file = File("a.toml", ONE_KEY);
    for (const Output output : { Output::FullDevice, Output::BrokenPipe, Output::Closed }) {
        for (const char * form : { "--trace", "--json" }) {
            const auto result = RunTool(
                { .mArguments = { "show", file, form, "--plugin-dir", FAKE_PLUGIN_DIR }, .mOutput = output });
            EXPECT_EQ(result.mExitCode, WRONG_DATA);
            EXPECT_THAT(result.mErr, HasSubstr("zynconfig: error: unable to write to the standard output: "));
        }
    }
}

TEST_F(Hostile, a_closed_output_does_not_end_up_in_the_file)
{
    const std::string file = File("a.toml", ONE_KEY);
    const std::string out = mFolder.File("out.toml");
    const auto result = RunTool({ .mArguments = { "convert", file, "-o", out, "--plugin-dir", FAKE_PLUGIN_DIR },
        .mOutput = Output::Closed });
    EXPECT_EQ(result.mExitCode, 0);
    EXPECT_THAT(Written(), StartsWith("prepare "));
}

TEST_F(Hostile, trace_shows_the_debug_output_of_the_library_only_if_asked_for)
{
    const std::string file = File("a.toml", ONE_KEY);
    const auto traced = Show({ file }, { "--trace" });
    EXPECT_EQ(traced.mExitCode, 0);
    EXPECT_THAT(traced.mErr,
        AllOf(HasSubstr("zynconfig: trace: "), HasSubstr("VrexZynConfigTools::CChipConfig::OnSubsystemFound"),
            HasSubstr("assigned layer number 1")));
    EXPECT_THAT(LinesOf(traced.mErr), testing::Each(StartsWith("zynconfig: trace: ")));
    const auto quiet = Show({ file });
    EXPECT_THAT(quiet.mErr, IsEmpty());
    EXPECT_EQ(quiet.mOut, traced.mOut);
}

TEST_F(Hostile, ten_indices_lose_their_order)
{
    const std::string file =
        File("a.toml", "chip demo\nsubsystem 1 1 1\nkey 5 K number 6 1 2 3 4 5 6 7 8 9 10\n"
                       "key 6 K number 6 1 2 3 4 5 6 7 8 9\n");
    const auto result = Show({ file });
    EXPECT_EQ(result.mExitCode, WRONG_DATA);
    EXPECT_EQ(result.mErr,
        "zynconfig: error: key 5.1.10.2.3.4.5.6.7.8.9 (K) of bt in otp.1 has 10 indices, and the "
        "order of more than 9 is lost\n");
    EXPECT_EQ(Convert({ file }).mExitCode, WRONG_DATA);
    EXPECT_FALSE(IsWritten());
}

TEST_F(Hostile, further_texts_of_a_string_cannot_be_written)
{
    const std::string file = File("a.toml", "chip demo\nsubsystem 1 1 1\nkey 5 K texts two\n");
    EXPECT_EQ(Show({ file }).mExitCode, 0);
    for (const std::vector<std::string> & more : { std::vector<std::string>{}, { "--layer-filter", "15" } }) {
        const auto result = Convert({ file }, more);
        EXPECT_EQ(result.mExitCode, WRONG_DATA);
        EXPECT_EQ(result.mErr,
            "zynconfig: error: key 5 (K) of bt in otp.1 has 2 texts, of which only the first can be written\n");
        EXPECT_FALSE(IsWritten());
    }
    // A row is written whole.
    EXPECT_EQ(Convert({ File("b.toml", "chip demo\nsubsystem 1 1 1\nkey 5 K texts two 1\n") }).mExitCode, 0);
    EXPECT_THAT(Written(), HasSubstr("5 two two"));
}

}   // namespace zynconfig::test
