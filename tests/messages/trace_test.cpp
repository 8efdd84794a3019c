#include "recordingsink.h"

#include <messages/trace.h>
#include <support/allocations.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <stdexcept>
#include <string>

namespace VrexZynConfigTools {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr GroupEnum MESSAGE_GROUP = GROUP_CHIP_CONTEXT;

void WithoutResult()
{
    ZYN_SENTRY("ns::WithoutResult");
}

int WithResult(int value)
{
    int result = 0;
    ZYN_SENTRY_RESULT("ns::WithResult", result);

    if (value < 0)
        throw std::out_of_range("negative");
    return result = value;
}

std::string WithText(const char * text)
{
    std::string result;
    ZYN_SENTRY_RESULT("ns::WithText", result);

    result = text;
    return result;
}

struct Constructed
{
    Constructed() { ZYN_CONSTRUCTOR(GROUP_CORE_CLASSES, "ns::Constructed::Constructed"); }
};

int evaluations = 0;

int Evaluated()
{
    return ++evaluations;
}

void WithLines()
{
    ZYN_SENTRY("ns::WithLines");
    ZYN_TRACE(3, "decided %d", Evaluated());
    ZYN_TRACE(2, "plain");
}

void WithoutSentry()
{
    ZYN_TRACE_IN("ns::WithoutSentry", 2, "-> %s <-", "ns::WithoutSentry");
}

class Trace : public testing::Test
{
protected:
    RecordingSink mSink;
    const CMessageSinkGuard mGuard{ &mSink };
    const DebugOn mDebug;
};

TEST_F(Trace, shows_entry_and_exit_in_the_group_of_the_file)
{
    WithoutResult();
    ASSERT_THAT(mSink.Texts(), ElementsAre("-> ns::WithoutResult", "<- ns::WithoutResult"));
    for (const RecordingSink::Line & line : mSink.mLines) {
        EXPECT_EQ(line.mGroup, GROUP_CHIP_CONTEXT);
        EXPECT_EQ(line.mFunction, "ns::WithoutResult");
        EXPECT_THAT(line.mFile, testing::EndsWith("trace_test.cpp"));
        EXPECT_GT(line.mLine, 0U);
    }
}

TEST_F(Trace, shows_the_result)
{
    EXPECT_EQ(WithResult(7), 7);
    EXPECT_EQ(WithText("abc"), "abc");
    EXPECT_THAT(mSink.Texts(), ElementsAre("-> ns::WithResult", "<- ns::WithResult [returning 7]",
                                   "-> ns::WithText", "<- ns::WithText [returning \"abc\"]"));
}

TEST_F(Trace, shows_the_exit_through_an_exception)
{
    EXPECT_THROW(WithResult(-1), std::out_of_range);
    EXPECT_THAT(mSink.Texts(), ElementsAre("-> ns::WithResult", "<- ns::WithResult [returning 0]"));
}

TEST_F(Trace, shows_a_constructor)
{
    const Constructed constructed;
    EXPECT_THAT(
        mSink.Texts(), ElementsAre("-> ns::Constructed::Constructed", "<- ns::Constructed::Constructed"));
}

TEST_F(Trace, shows_lines_between_entry_and_exit)
{
    WithLines();
    ASSERT_EQ(mSink.mLines.size(), 4U);
    EXPECT_THAT(mSink.mLines[1].mText, testing::StartsWith("decided "));
    EXPECT_EQ(mSink.mLines[1].mLevel, 3U);
    EXPECT_EQ(mSink.mLines[1].mFunction, "ns::WithLines");
    EXPECT_EQ(mSink.mLines[2].mText, "plain");
    EXPECT_EQ(mSink.mLines[2].mLevel, 2U);
}

TEST_F(Trace, shows_a_line_of_a_function_without_a_sentry)
{
    WithoutSentry();
    ASSERT_THAT(mSink.Texts(), ElementsAre("-> ns::WithoutSentry <-"));
    EXPECT_EQ(mSink.mLines[0].mFunction, "ns::WithoutSentry");
    EXPECT_FALSE(mSink.mLines[0].mIsExit);
}

TEST_F(Trace, writes_no_exit_line_without_its_entry_line)
{
    CTheMsgHnd::SwitchDebugOff();
    {
        ZYN_SENTRY("ns::f");
        CTheMsgHnd::SetDebugLevel(3);
    }
    EXPECT_THAT(mSink.mLines, IsEmpty());
}

TEST_F(Trace, composes_and_allocates_nothing_with_debug_output_off)
{
    CTheMsgHnd::SwitchDebugOff();
    evaluations = 0;
    const std::uint64_t before = support::AllocationCount();
    WithoutResult();
    WithResult(7);
    WithText("short");
    WithLines();
    WithoutSentry();
    EXPECT_EQ(support::AllocationCount(), before);
    EXPECT_EQ(evaluations, 0);
    EXPECT_THAT(mSink.mLines, IsEmpty());
}

}   // namespace
}   // namespace VrexZynConfigTools
