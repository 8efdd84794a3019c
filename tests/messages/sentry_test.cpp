#include "recordingsink.h"

#include <configtools/debugsentry.h>
#include <configtools/metadata.h>
#include <configtools/types.h>
#include <support/slots.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <stdexcept>
#include <string>

namespace VrexZynConfigTools {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Sentries : public testing::Test
{
protected:
    RecordingSink mSink;
    const CMessageSinkGuard mGuard{ &mSink };
    const DebugOn mDebug;
};
using CDebugSentryTest = Sentries;
using CDebugSentryWithReturnTest = Sentries;

/// The exit line of a function that returns `value`.
template <typename T>
std::string ExitLine(const T & value)
{
    RecordingSink sink;
    const CMessageSinkGuard guard(&sink);
    {
        const CDebugSentryWithReturn<T> sentry(&Handler(GROUP_FRAMEWORK), 1, "file", "ns::f", &value);
    }
    return sink.mLines.size() == 2 ? sink.mLines[1].mText : "not one exit line";
}

TEST(CDebugSentry, has_the_exit_line_behind_the_destructor)
{
    EXPECT_EQ(support::SlotOf(&CDebugSentry::PrintExit), 2);
    EXPECT_EQ(support::SlotAfter<CDebugSentry>(), 3);
}

TEST_F(CDebugSentryTest, writes_a_line_at_entry_and_one_at_exit)
{
    {
        const CDebugSentry sentry(&Handler(GROUP_UTILITIES), 12, "a.cpp", "ns::f");
        EXPECT_THAT(mSink.Texts(), ElementsAre("-> ns::f"));
    }
    EXPECT_THAT(mSink.Texts(), ElementsAre("-> ns::f", "<- ns::f"));
    for (const RecordingSink::Line & line : mSink.mLines) {
        EXPECT_EQ(line.mGroup, GROUP_UTILITIES);
        EXPECT_EQ(line.mLevel, 0U);
        EXPECT_EQ(line.mIsExit, line.mText == "<- ns::f");
        EXPECT_EQ(line.mFunction, "ns::f");
        EXPECT_EQ(line.mFile, "a.cpp");
        EXPECT_EQ(line.mLine, 12U);
    }
}

TEST_F(CDebugSentryTest, takes_a_name_with_a_percent_sign_as_it_is)
{
    {
        const CDebugSentry sentry(&Handler(GROUP_UTILITIES), 1, "a.cpp", "operator%s%n");
    }
    EXPECT_THAT(mSink.Texts(), ElementsAre("-> operator%s%n", "<- operator%s%n"));
}

TEST_F(CDebugSentryTest, writes_nothing_without_a_handler)
{
    {
        const CDebugSentry sentry(nullptr, 1, "a.cpp", "ns::f");
        const int result = 1;
        const CDebugSentryWithReturn<int> withResult(nullptr, 1, "a.cpp", "ns::f", &result);
    }
    EXPECT_THAT(mSink.mLines, IsEmpty());
}

TEST_F(CDebugSentryTest, writes_neither_line_when_made_with_debug_output_off)
{
    CTheMsgHnd::SwitchDebugOff();
    {
        CDebugSentry sentry(&Handler(GROUP_FRAMEWORK), 1, "a.cpp", "ns::f");
        const int result = 1;
        CDebugSentryWithReturn<int> withResult(&Handler(GROUP_FRAMEWORK), 1, "a.cpp", "ns::f", &result);
        CTheMsgHnd::SetDebugLevel(3);
        sentry.PrintExit();
        withResult.PrintExit();
    }
    EXPECT_THAT(mSink.mLines, IsEmpty());
}

TEST_F(CDebugSentryTest, writes_its_exit_line_once)
{
    {
        CDebugSentry sentry(&Handler(GROUP_FRAMEWORK), 1, "a.cpp", "ns::f");
        sentry.PrintExit();
        sentry.PrintExit();
    }
    EXPECT_THAT(mSink.Texts(), ElementsAre("-> ns::f", "<- ns::f"));
}

class ThrowingSentry : public CDebugSentry
{
public:
    ThrowingSentry(CMessageHandler * handler, int & calls)
        : CDebugSentry(handler, 1, "a.cpp", "ns::f")
        , mCalls(calls)
    {}
    ~ThrowingSentry() override { CheckPrintExit(); }
    void PrintExit() override
    {
        ++mCalls;
        throw std::runtime_error("no line");
    }

private:
    int & mCalls;
};

TEST_F(CDebugSentryTest, lets_nothing_escape_from_an_exit_line_and_does_not_try_again)
{
    int calls = 0;
    {
        const ThrowingSentry sentry(&Handler(GROUP_FRAMEWORK), calls);
    }
    EXPECT_EQ(calls, 1);
    EXPECT_THAT(mSink.Texts(), ElementsAre("-> ns::f"));
}

TEST_F(CDebugSentryWithReturnTest, writes_its_exit_line_once_with_the_value_at_the_end)
{
    {
        bool result = false;
        CDebugSentryWithReturn<bool> sentry(&Handler(GROUP_FRAMEWORK), 34, "a.cpp", "ns::f", &result);
        result = true;
    }
    ASSERT_THAT(mSink.Texts(), ElementsAre("-> ns::f", "<- ns::f [returning true]"));
    EXPECT_EQ(mSink.mLines[1].mLevel, 0U);
    EXPECT_TRUE(mSink.mLines[1].mIsExit);
    EXPECT_FALSE(mSink.mLines[0].mIsExit);
    EXPECT_EQ(mSink.mLines[1].mLine, 34U);
    EXPECT_EQ(mSink.mLines[1].mFunction, "ns::f");
}

TEST_F(CDebugSentryWithReturnTest, writes_its_exit_line_once_also_when_asked_before)
{
    {
        bool result = false;
        CDebugSentryWithReturn<bool> sentry(&Handler(GROUP_FRAMEWORK), 1, "a.cpp", "ns::f", &result);
        sentry.PrintExit();
        result = true;
        sentry.PrintExit();
    }
    EXPECT_THAT(mSink.Texts(), ElementsAre("-> ns::f", "<- ns::f [returning false]"));
}

bool Leaves(bool through)
{
    bool result = false;
    const CDebugSentryWithReturn<bool> sentry(&Handler(GROUP_FRAMEWORK), 1, "a.cpp", "ns::f", &result);
    if (through)
        throw std::runtime_error("left");
    return result = true;
}

TEST_F(CDebugSentryWithReturnTest, writes_its_exit_line_also_when_the_function_is_left_through_an_exception)
{
    EXPECT_THROW(Leaves(true), std::runtime_error);
    EXPECT_THAT(mSink.Texts(), ElementsAre("-> ns::f", "<- ns::f [returning false]"));
}

TEST_F(CDebugSentryWithReturnTest, writes_the_value_that_is_returned)
{
    EXPECT_TRUE(Leaves(false));
    EXPECT_THAT(mSink.Texts(), ElementsAre("-> ns::f", "<- ns::f [returning true]"));
}

class ThrowingSink : public IMessageSink
{
public:
    void OnDebugLine(const DebugLine & /*line*/) override { throw std::runtime_error("full"); }
    void OnStatus(GroupEnum /*group*/, StatusLevels /*level*/, const std::string & /*text*/) override {}
};

TEST_F(CDebugSentryWithReturnTest, stands_a_throwing_sink_while_an_exception_passes)
{
    ThrowingSink sink;
    const CMessageSinkGuard guard(&sink);
    EXPECT_THROW(Leaves(true), std::runtime_error);
}

TEST_F(CDebugSentryWithReturnTest, writes_small_integers_as_int)
{
    EXPECT_EQ(ExitLine<unsigned short>(65535), "<- ns::f [returning 65535]");
    EXPECT_EQ(ExitLine<int>(std::numeric_limits<int>::min()), "<- ns::f [returning -2147483648]");
    EXPECT_EQ(ExitLine<int>(std::numeric_limits<int>::max()), "<- ns::f [returning 2147483647]");
}

TEST_F(CDebugSentryWithReturnTest, writes_enumerations_as_int)
{
    EXPECT_EQ(ExitLine(NUMERIC_NONE), "<- ns::f [returning 8]");
    EXPECT_EQ(ExitLine(PAYLOAD_RAW), "<- ns::f [returning 11]");
    EXPECT_EQ(ExitLine(SUBSYSTEM_UNKNOWN), "<- ns::f [returning -1]");
    EXPECT_EQ(ExitLine(METADATA_NONE), "<- ns::f [returning 3]");
    EXPECT_EQ(ExitLine(CTableIndex::IndexTypeEnum{}), "<- ns::f [returning 0]");
}

TEST_F(CDebugSentryWithReturnTest, writes_wide_integers_in_full)
{
    EXPECT_EQ(ExitLine<std::uint32_t>(4294967295U), "<- ns::f [returning 4294967295]");
    EXPECT_EQ(ExitLine<std::uint64_t>(18446744073709551615U), "<- ns::f [returning 18446744073709551615]");
    EXPECT_EQ(ExitLine<std::int64_t>(std::numeric_limits<std::int64_t>::min()),
        "<- ns::f [returning -9223372036854775808]");
    EXPECT_EQ(ExitLine<long long>(-1), "<- ns::f [returning -1]");
    EXPECT_EQ(ExitLine<unsigned long long>(1), "<- ns::f [returning 1]");
}

TEST_F(CDebugSentryWithReturnTest, writes_bool_as_a_word)
{
    EXPECT_EQ(ExitLine(true), "<- ns::f [returning true]");
    EXPECT_EQ(ExitLine(false), "<- ns::f [returning false]");
}

TEST_F(CDebugSentryWithReturnTest, writes_a_text_in_quotes)
{
    EXPECT_EQ(ExitLine<std::string>(""), "<- ns::f [returning \"\"]");
    EXPECT_EQ(ExitLine<std::string>("100%s"), "<- ns::f [returning \"100%s\"]");
    const std::string text(5000, 'x');
    EXPECT_EQ(ExitLine(text), "<- ns::f [returning \"" + text + "\"]");
}

}   // namespace
}   // namespace VrexZynConfigTools
