#include "recordingsink.h"

#include <messages/messages.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

namespace VrexZynConfigTools {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr GroupEnum EVERY_GROUP[] = { GROUP_CORE_CLASSES, GROUP_CHIP_CONTEXT, GROUP_UTILITIES, GROUP_FRAMEWORK,
    GROUP_OUTER_READER, GroupEnum{ 0 }, GroupEnum{ 255 } };

void ClearAll()
{
    for (const GroupEnum group : EVERY_GROUP)
        Handler(group).ClearError(group);
}

void WriteLine(std::uint32_t level, const char * text)
{
    Handler(GROUP_FRAMEWORK).DebugOutputInHandler(level, false, false, "function", "file", 1, "%s", text);
}

/// Each test begins and ends without errors, sink and debug output.
class MessageChannel : public testing::Test
{
protected:
    MessageChannel() { ClearAll(); }
    ~MessageChannel() override
    {
        ClearAll();
        CTheMsgHnd::SwitchDebugOff();
        CTheMsgHnd::SetSink(nullptr);
    }
};

// Raised before main begins, through a channel that nothing has set up.
const bool raisedEarly = Handler(GroupEnum{ 77 }).SetErrorMsg(7, "early");

// Speaks after main has ended.
struct LateUser
{
    ~LateUser()
    {
        Handler(GroupEnum{ 78 }).SetErrorMsg(0, "late");
        Handler(GroupEnum{ 78 }).NotifyStatus(STATUS_WARNING, "late");
    }
};
const LateUser lateUser;

TEST(CMessageHandler, works_before_main_begins)
{
    short code = 0;
    std::string text;
    EXPECT_TRUE(raisedEarly);
    EXPECT_TRUE(Handler(GROUP_FRAMEWORK).GetErrorMsg(GroupEnum{ 77 }, code, text));
    EXPECT_EQ(code, 7);
    EXPECT_EQ(text, "early");
}

TEST(CMessageHandler, needs_no_destructor_at_exit)
{
    EXPECT_TRUE(std::is_trivially_destructible_v<CMessageHandler>);
    EXPECT_TRUE(std::is_trivially_destructible_v<CTheMsgHnd>);
}

TEST(GroupEnum, has_the_values_of_the_contract)
{
    EXPECT_EQ(GROUP_CORE_CLASSES, 5);
    EXPECT_EQ(GROUP_CHIP_CONTEXT, 100);
    EXPECT_EQ(GROUP_UTILITIES, 103);
    EXPECT_EQ(GROUP_FRAMEWORK, 120);
    EXPECT_EQ(GROUP_OUTER_READER, 121);
    EXPECT_EQ(STATUS_WARNING, 2);
}

TEST_F(MessageChannel, gives_one_handler_for_a_group_whatever_the_function_and_the_flag)
{
    CTheMsgHnd & channel = CTheMsgHnd::Instance();
    EXPECT_EQ(&channel, &CTheMsgHnd::Instance());
    EXPECT_EQ(&channel.GetAppropriateHandler(GROUP_FRAMEWORK, "a", false),
        &channel.GetAppropriateHandler(GROUP_FRAMEWORK, "b", true));
    EXPECT_NE(&Handler(GROUP_FRAMEWORK), &Handler(GROUP_OUTER_READER));
}

TEST_F(MessageChannel, shows_an_error_to_every_handler_until_it_is_cleared)
{
    EXPECT_TRUE(Handler(GROUP_FRAMEWORK).SetErrorMsg(0, "broken"));
    for (const GroupEnum group : EVERY_GROUP)
        EXPECT_TRUE(Handler(group).IsErrorSet(GROUP_FRAMEWORK, true)) << int{ group };

    Handler(GROUP_UTILITIES).ClearError(GROUP_FRAMEWORK);
    for (const GroupEnum group : EVERY_GROUP)
        EXPECT_FALSE(Handler(group).IsErrorSet(GROUP_FRAMEWORK, true)) << int{ group };
}

TEST_F(MessageChannel, holds_errors_by_the_group_of_the_handler)
{
    for (const GroupEnum speaker : EVERY_GROUP) {
        Handler(speaker).SetErrorMsg(0, "broken");
        for (const GroupEnum group : EVERY_GROUP)
            EXPECT_EQ(Handler(GROUP_FRAMEWORK).IsErrorSet(group, true), group == speaker) << int{ group };
        Handler(GROUP_FRAMEWORK).ClearError(speaker);
    }
}

TEST_F(MessageChannel, takes_a_second_error_in_place_of_the_first)
{
    Handler(GROUP_FRAMEWORK).SetErrorMsg(3, "first");
    Handler(GROUP_FRAMEWORK).SetErrorMsg(-4, "second");

    short code = 0;
    std::string text;
    EXPECT_TRUE(Handler(GROUP_CORE_CLASSES).GetErrorMsg(GROUP_FRAMEWORK, code, text));
    EXPECT_EQ(code, -4);
    EXPECT_EQ(text, "second");
}

TEST_F(MessageChannel, takes_an_empty_text_for_an_error_all_the_same)
{
    Handler(GROUP_FRAMEWORK).SetErrorMsg(0, "");
    EXPECT_TRUE(Handler(GROUP_FRAMEWORK).IsErrorSet(GROUP_FRAMEWORK, true));
}

TEST_F(MessageChannel, amends_the_error_that_stands_in_the_named_group)
{
    Handler(GROUP_OUTER_READER).SetErrorMsg(5, "no number");
    EXPECT_TRUE(Handler(GROUP_FRAMEWORK).ModifyErrorMsg(9, "in line 3", GROUP_OUTER_READER));
    EXPECT_TRUE(Handler(GROUP_FRAMEWORK).ModifyErrorMsg(0, "in a.cfg", GROUP_OUTER_READER));

    short code = 0;
    std::string text;
    EXPECT_TRUE(Handler(GROUP_FRAMEWORK).GetErrorMsg(GROUP_OUTER_READER, code, text));
    EXPECT_EQ(code, 5);
    EXPECT_EQ(text, "no number: in line 3: in a.cfg");
    EXPECT_FALSE(Handler(GROUP_FRAMEWORK).IsErrorSet(GROUP_FRAMEWORK, true));
}

TEST_F(MessageChannel, amends_nothing_where_no_error_stands)
{
    EXPECT_FALSE(Handler(GROUP_OUTER_READER).ModifyErrorMsg(0, "text", GROUP_OUTER_READER));
    EXPECT_FALSE(Handler(GROUP_OUTER_READER).IsErrorSet(GROUP_OUTER_READER, true));
}

TEST_F(MessageChannel, leaves_the_arguments_alone_where_no_error_stands)
{
    short code = 42;
    std::string text = "mine";
    EXPECT_FALSE(Handler(GROUP_FRAMEWORK).GetErrorMsg(GROUP_FRAMEWORK, code, text));
    EXPECT_EQ(code, 42);
    EXPECT_EQ(text, "mine");
}

TEST_F(MessageChannel, clears_a_group_without_an_error)
{
    Handler(GROUP_FRAMEWORK).ClearError(GROUP_FRAMEWORK);
    EXPECT_FALSE(Handler(GROUP_FRAMEWORK).IsErrorSet(GROUP_FRAMEWORK, true));
}

TEST_F(MessageChannel, passes_a_status_on_that_is_no_error)
{
    RecordingSink sink;
    const CMessageSinkGuard guard(&sink);
    Handler(GROUP_UTILITIES).NotifyStatus(STATUS_WARNING, "a width of 0");

    ASSERT_EQ(sink.mStatuses.size(), 1U);
    EXPECT_EQ(sink.mStatuses[0].mGroup, GROUP_UTILITIES);
    EXPECT_EQ(sink.mStatuses[0].mLevel, STATUS_WARNING);
    EXPECT_EQ(sink.mStatuses[0].mText, "a width of 0");
    EXPECT_FALSE(Handler(GROUP_UTILITIES).IsErrorSet(GROUP_UTILITIES, true));
}

TEST_F(MessageChannel, discards_lines_and_messages_without_a_sink)
{
    const DebugOn debug;
    Handler(GROUP_FRAMEWORK).NotifyStatus(STATUS_WARNING, "lost");
    WriteLine(0, "lost");
    EXPECT_FALSE(Handler(GROUP_FRAMEWORK).IsErrorSet(GROUP_FRAMEWORK, true));
}

TEST_F(MessageChannel, has_debug_output_off_at_the_start)
{
    RecordingSink sink;
    const CMessageSinkGuard guard(&sink);
    EXPECT_FALSE(CTheMsgHnd::DebugActivated());
    WriteLine(0, "unwanted");
    EXPECT_THAT(sink.mLines, IsEmpty());
}

TEST_F(MessageChannel, switches_debug_output_on_and_off)
{
    CTheMsgHnd::SetDebugLevel(0);
    EXPECT_TRUE(CTheMsgHnd::DebugActivated());
    CTheMsgHnd::SwitchDebugOff();
    EXPECT_FALSE(CTheMsgHnd::DebugActivated());
}

TEST_F(MessageChannel, passes_lines_up_to_the_level_that_is_wanted)
{
    constexpr auto HIGHEST = std::numeric_limits<std::uint32_t>::max();
    for (const std::uint32_t wanted : { 0U, 1U, 2U, 3U, HIGHEST - 1, HIGHEST }) {
        RecordingSink sink;
        const CMessageSinkGuard guard(&sink);
        const DebugOn debug(wanted);
        for (const std::uint32_t level : { 0U, 1U, 2U, 3U, 4U, HIGHEST - 1, HIGHEST }) {
            sink.mLines.clear();
            WriteLine(level, "text");
            EXPECT_EQ(sink.mLines.size(), level <= wanted ? 1U : 0U) << wanted << " " << level;
        }
    }
}

TEST_F(MessageChannel, tells_the_sink_all_of_a_line)
{
    RecordingSink sink;
    const CMessageSinkGuard guard(&sink);
    const DebugOn debug;
    Handler(GROUP_UTILITIES)
        .DebugOutputInHandler(2, false, true, "ns::f", "a.cpp", 4000000000U, "%s has %d of %lu", "x", -1, 7UL);

    ASSERT_EQ(sink.mLines.size(), 1U);
    EXPECT_EQ(sink.mLines[0].mGroup, GROUP_UTILITIES);
    EXPECT_EQ(sink.mLines[0].mLevel, 2U);
    EXPECT_TRUE(sink.mLines[0].mIsExit);
    EXPECT_EQ(sink.mLines[0].mFunction, "ns::f");
    EXPECT_EQ(sink.mLines[0].mFile, "a.cpp");
    EXPECT_EQ(sink.mLines[0].mLine, 4000000000U);
    EXPECT_EQ(sink.mLines[0].mText, "x has -1 of 7");
}

TEST_F(MessageChannel, formats_texts_of_any_length)
{
    RecordingSink sink;
    const CMessageSinkGuard guard(&sink);
    const DebugOn debug;
    for (const std::size_t length : { 0U, 1U, 510U, 511U, 512U, 513U, 100000U }) {
        sink.mLines.clear();
        const std::string text = std::string(length, 'x') + (length != 0 ? "|" : "");
        WriteLine(0, text.c_str());
        EXPECT_THAT(sink.Texts(), ElementsAre(text));
    }
}

class ThrowingSink : public RecordingSink
{
public:
    void OnDebugLine(const DebugLine & line) override
    {
        RecordingSink::OnDebugLine(line);
        throw std::runtime_error("full");
    }
    void OnStatus(GroupEnum group, StatusLevels level, const std::string & text) override
    {
        RecordingSink::OnStatus(group, level, text);
        throw 1;   // need not be an exception class
    }
};

TEST_F(MessageChannel, swallows_what_a_sink_throws_and_goes_on)
{
    ThrowingSink sink;
    const CMessageSinkGuard guard(&sink);
    const DebugOn debug;
    EXPECT_NO_THROW(WriteLine(0, "one"));
    EXPECT_NO_THROW(Handler(GROUP_FRAMEWORK).NotifyStatus(STATUS_WARNING, "two"));
    EXPECT_NO_THROW(WriteLine(0, "three"));
    EXPECT_THAT(sink.Texts(), ElementsAre("one", "three"));
    EXPECT_EQ(sink.mStatuses.size(), 1U);
}

class CallingSink : public RecordingSink
{
public:
    void OnDebugLine(const DebugLine & line) override
    {
        RecordingSink::OnDebugLine(line);
        WriteLine(0, "again");
        Handler(GROUP_FRAMEWORK).NotifyStatus(STATUS_WARNING, "again");
        Handler(GROUP_FRAMEWORK).SetErrorMsg(0, "raised by the sink");
    }
    void OnStatus(GroupEnum group, StatusLevels level, const std::string & text) override
    {
        RecordingSink::OnStatus(group, level, text);
        Handler(GROUP_FRAMEWORK).NotifyStatus(STATUS_WARNING, "again");
    }
};

TEST_F(MessageChannel, does_not_tell_a_sink_what_it_causes_itself)
{
    CallingSink sink;
    const CMessageSinkGuard guard(&sink);
    const DebugOn debug;
    WriteLine(0, "one");
    Handler(GROUP_FRAMEWORK).NotifyStatus(STATUS_WARNING, "two");
    EXPECT_THAT(sink.Texts(), ElementsAre("one"));
    EXPECT_EQ(sink.mStatuses.size(), 1U);
    EXPECT_TRUE(Handler(GROUP_FRAMEWORK).IsErrorSet(GROUP_FRAMEWORK, true));
}

class LeavingSink : public RecordingSink
{
public:
    void OnDebugLine(const DebugLine & line) override
    {
        CTheMsgHnd::SetSink(nullptr);
        RecordingSink::OnDebugLine(line);
    }
};

TEST_F(MessageChannel, lets_a_sink_leave_during_a_call)
{
    LeavingSink sink;
    CTheMsgHnd::SetSink(&sink);
    const DebugOn debug;
    WriteLine(0, "one");
    WriteLine(0, "two");
    EXPECT_THAT(sink.Texts(), ElementsAre("one"));
}

TEST_F(MessageChannel, returns_the_sink_so_far)
{
    RecordingSink sink;
    EXPECT_EQ(CTheMsgHnd::SetSink(&sink), nullptr);
    EXPECT_EQ(CTheMsgHnd::SetSink(nullptr), &sink);
}

ErrorRecord RecordOf(const char * code, const char * text)
{
    ErrorRecord record;
    record.mCode = code;
    record.mText = text;
    return record;
}

std::vector<std::string> TextsOf(const std::vector<ErrorRecord> & records)
{
    std::vector<std::string> texts;
    for (const ErrorRecord & record : records)
        texts.push_back(record.mText);
    return texts;
}

TEST_F(MessageChannel, returns_the_records_of_an_error_through_any_handler_in_order)
{
    ErrorRecord first = RecordOf("out-of-range", "300 is out of range");
    first.mSeverity = SEVERITY_WARNING;
    first.mFile = "a.toml";
    first.mLine = 3;
    first.mColumn = 8;
    first.mKey = "gain.1";
    first.mExpected = "0 to 255";
    Handler(GROUP_FRAMEWORK).SetErrorMsg(0, "two lines", { first, RecordOf("unknown-key", "no such key") });

    const auto records = Handler(GROUP_UTILITIES).ErrorRecords(GROUP_FRAMEWORK);
    ASSERT_THAT(TextsOf(records), ElementsAre("300 is out of range", "no such key"));
    EXPECT_EQ(records[0].mCode, "out-of-range");
    EXPECT_EQ(records[0].mSeverity, SEVERITY_WARNING);
    EXPECT_EQ(records[0].mFile, "a.toml");
    EXPECT_EQ(records[0].mLine, 3U);
    EXPECT_EQ(records[0].mColumn, 8U);
    EXPECT_EQ(records[0].mKey, "gain.1");
    EXPECT_EQ(records[0].mExpected, "0 to 255");
    EXPECT_EQ(records[1].mCode, "unknown-key");
    EXPECT_EQ(records[1].mLine, 0U);
}

TEST_F(MessageChannel, returns_a_record_for_each_line_of_an_error_that_has_none)
{
    Handler(GROUP_FRAMEWORK).SetErrorMsg(0, "first\n\nthird\n");
    EXPECT_THAT(
        TextsOf(Handler(GROUP_FRAMEWORK).ErrorRecords(GROUP_FRAMEWORK)), ElementsAre("first", "", "third"));
    Handler(GROUP_FRAMEWORK).SetErrorMsg(0, "");
    const auto records = Handler(GROUP_FRAMEWORK).ErrorRecords(GROUP_FRAMEWORK);
    EXPECT_THAT(TextsOf(records), ElementsAre(""));
    EXPECT_EQ(records[0].mCode, "");
    EXPECT_EQ(records[0].mSeverity, SEVERITY_ERROR);
}

TEST_F(MessageChannel, returns_no_records_without_an_error)
{
    EXPECT_THAT(Handler(GROUP_FRAMEWORK).ErrorRecords(GROUP_FRAMEWORK), IsEmpty());
    Handler(GROUP_FRAMEWORK).SetErrorMsg(0, "text", { RecordOf("code", "text") });
    EXPECT_THAT(Handler(GROUP_FRAMEWORK).ErrorRecords(GROUP_OUTER_READER), IsEmpty());
    Handler(GROUP_FRAMEWORK).ClearError(GROUP_FRAMEWORK);
    EXPECT_THAT(Handler(GROUP_FRAMEWORK).ErrorRecords(GROUP_FRAMEWORK), IsEmpty());
}

TEST_F(MessageChannel, drops_the_records_of_an_error_that_is_replaced_by_a_text)
{
    Handler(GROUP_FRAMEWORK).SetErrorMsg(0, "text", { RecordOf("code", "text") });
    Handler(GROUP_FRAMEWORK).SetErrorMsg(0, "other");
    const auto records = Handler(GROUP_FRAMEWORK).ErrorRecords(GROUP_FRAMEWORK);
    EXPECT_THAT(TextsOf(records), ElementsAre("other"));
    EXPECT_EQ(records[0].mCode, "");
}

TEST_F(MessageChannel, amends_the_last_record_with_the_text)
{
    Handler(GROUP_FRAMEWORK).SetErrorMsg(0, "one\ntwo", { RecordOf("a", "one"), RecordOf("b", "two") });
    Handler(GROUP_FRAMEWORK).ModifyErrorMsg(0, "in a.cfg", GROUP_FRAMEWORK);
    EXPECT_THAT(
        TextsOf(Handler(GROUP_FRAMEWORK).ErrorRecords(GROUP_FRAMEWORK)), ElementsAre("one", "two: in a.cfg"));
}

/// Asks for the record of each status message, and causes another one in the meantime.
class RecordReadingSink : public RecordingSink
{
public:
    void OnStatus(GroupEnum group, StatusLevels level, const std::string & text) override
    {
        RecordingSink::OnStatus(group, level, text);
        Handler(GROUP_FRAMEWORK).NotifyStatus(STATUS_WARNING, "again", RecordOf("other", ""));
        const ErrorRecord * const record = CTheMsgHnd::StatusRecord();
        mCodes.push_back(record != nullptr ? record->mCode : "none");
    }

    std::vector<std::string> mCodes;
};

TEST_F(MessageChannel, shows_a_sink_the_record_of_a_status_message_during_the_call)
{
    RecordReadingSink sink;
    const CMessageSinkGuard guard(&sink);
    Handler(GROUP_FRAMEWORK).NotifyStatus(STATUS_WARNING, "text", RecordOf("left-out", "text"));
    EXPECT_EQ(CTheMsgHnd::StatusRecord(), nullptr);
    Handler(GROUP_FRAMEWORK).NotifyStatus(STATUS_WARNING, "text");
    EXPECT_THAT(sink.mCodes, ElementsAre("left-out", "none"));
}

TEST(CMessageSinkGuard, puts_the_former_sink_back)
{
    RecordingSink outer;
    RecordingSink inner;
    const CMessageSinkGuard outerGuard(&outer);
    {
        const CMessageSinkGuard innerGuard(&inner);
        Handler(GROUP_FRAMEWORK).NotifyStatus(STATUS_WARNING, "inner");
    }
    Handler(GROUP_FRAMEWORK).NotifyStatus(STATUS_WARNING, "outer");
    EXPECT_EQ(inner.mStatuses.size(), 1U);
    ASSERT_EQ(outer.mStatuses.size(), 1U);
    EXPECT_EQ(outer.mStatuses[0].mText, "outer");
}

}   // namespace
}   // namespace VrexZynConfigTools
