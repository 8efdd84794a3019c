// Each allocation of an operation fails in turn: what was there before must then be there still.

#include "opencontext.h"

#include <messages/messages.h>
#include <support/allocations.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>

namespace VrexZynConfigTools {
namespace {

using support::FailEachAllocation;

constexpr char BY_LAYER[] = "subsystemkeybylayer";

// Longer than what a text holds without an allocation.
const std::string LONG_KEY = "a key that is much longer than that";
const std::string LONG_VALUE = "a value that is much longer than that";
const std::string LONGER_VALUE = LONG_VALUE + LONG_VALUE;

class ContextOutOfMemory : public testing::Test
{
protected:
    ContextOutOfMemory()
    {
        for (const auto & [key, value] : mTags)
            mContext.SetTag(key, value);
    }

    void ExpectUnchanged()
    {
        EXPECT_EQ(mContext.Tags(), mTags);
        EXPECT_EQ(mContext.Name(), "zyncontext");
        EXPECT_EQ(mContext.GetTag(BY_LAYER), " | | |" + LONG_VALUE);
    }

    /// Returns how many allocations failed.
    template <typename ActT>
    std::uint64_t FailEachIn(ActT act)
    {
        return FailEachAllocation(act, [this] { ExpectUnchanged(); });
    }

    const TagMap mTags = { { "layernumber", LONG_VALUE }, { "other layer", LONG_VALUE },
        { LONG_KEY, LONG_VALUE } };
    OpenZynContext mContext;
};

TEST_F(ContextOutOfMemory, keeps_its_tags_when_a_new_one_fails)
{
    const std::string key = LONG_KEY + "2";
    EXPECT_GE(FailEachIn([&] { mContext.SetTag(key, LONG_VALUE); }), 3U);
    EXPECT_EQ(mContext.GetTag(key), LONG_VALUE);
}

TEST_F(ContextOutOfMemory, keeps_its_tags_when_a_change_fails)
{
    EXPECT_GE(FailEachIn([&] { mContext.SetTag(LONG_KEY, LONGER_VALUE); }), 2U);
    EXPECT_EQ(mContext.GetTag(LONG_KEY), LONGER_VALUE);
}

TEST_F(ContextOutOfMemory, keeps_all_tags_when_one_of_several_changes_fails)
{
    EXPECT_GE(FailEachIn([&] { mContext.SetTags("layer", LONGER_VALUE); }), 3U);
    EXPECT_EQ(mContext.GetTag("other layer"), LONGER_VALUE);
    EXPECT_EQ(mContext.mChangeCount, mTags.size() + 2);   // the failures counted nothing
}

TEST_F(ContextOutOfMemory, keeps_all_when_an_assignment_fails)
{
    OpenZynContext other;
    other.SetTag("chip", LONG_KEY);
    const std::string key = other.GetTag(BY_LAYER);
    EXPECT_GE(FailEachIn([&] { mContext = other; }), 3U);
    EXPECT_EQ(mContext.GetTag(BY_LAYER), key);
}

TEST_F(ContextOutOfMemory, keeps_its_tags_when_reading_or_copying_fails)
{
    const auto act = [this] {
        mContext.GetTag(LONG_KEY);
        mContext.GetTags("layer");
        mContext.TagMatches(LONG_KEY, LONG_VALUE);
        mContext.Tags();
        const std::unique_ptr<IConfigContext> clone(mContext.Clone());
        const OpenZynContext copy(mContext);
    };
    EXPECT_GE(FailEachIn(act), 10U);
}

TEST_F(ContextOutOfMemory, does_not_take_a_key_for_current_that_it_could_not_build)
{
    mContext.SetChip(LONG_KEY);
    mContext.SetLayerNumber(0);
    const auto act = [this] {
        mContext.SetLayerNumber(mContext.LayerNumber() + 1);
        mContext.GetTag(BY_LAYER);
    };
    const auto check = [this] {
        EXPECT_EQ(mContext.GetTag(BY_LAYER), LONG_KEY + "| | |" + std::to_string(mContext.LayerNumber()));
    };
    EXPECT_GE(FailEachAllocation(act, check), 4U);
}

TEST(MessageChannelOutOfMemory, keeps_the_error_that_stands)
{
    constexpr GroupEnum GROUP = GROUP_FRAMEWORK;
    CMessageHandler & handler = CTheMsgHnd::Instance().GetAppropriateHandler(GROUP, "test", false);
    handler.SetErrorMsg(3, LONG_KEY);
    const auto check = [&handler] {
        short code = 0;
        std::string text;
        EXPECT_TRUE(handler.GetErrorMsg(GROUP, code, text));
        EXPECT_EQ(code, 3);
        EXPECT_EQ(text, LONG_KEY);
    };
    EXPECT_GE(FailEachAllocation([&] { handler.ModifyErrorMsg(4, LONG_VALUE, GROUP); }, check), 1U);
    handler.SetErrorMsg(3, LONG_KEY);
    EXPECT_GE(FailEachAllocation([&] { handler.SetErrorMsg(4, LONG_VALUE); }, check), 2U);
    handler.ClearError(GROUP);
}

}   // namespace
}   // namespace VrexZynConfigTools
