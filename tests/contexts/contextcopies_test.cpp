// Copies, moves, assignments and clones of both working contexts.

#include "opencontext.h"

#include <configtools/zyncontext.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <type_traits>
#include <typeinfo>
#include <utility>

namespace VrexZynConfigTools {
namespace {

using testing::IsEmpty;

constexpr char BY_LAYER[] = "subsystemkeybylayer";
constexpr char BY_STORE[] = "subsystemkeybystore";

CBaseContext ABaseContext()
{
    CBaseContext context("source");
    context.SetTag("a", "1");
    context.SetTag("b", "2");
    context.SetTag("b", "");
    return context;
}

void ExpectSource(CBaseContext & context)
{
    EXPECT_EQ(context.Name(), "source");
    EXPECT_EQ(context.Tags(), (TagMap{ { "a", "1" } }));
    EXPECT_EQ(ChangeCount(context), 3U);
}

void ExpectEmpty(CBaseContext & context)
{
    EXPECT_EQ(context.Name(), "");
    EXPECT_THAT(context.Tags(), IsEmpty());
}

TEST(CBaseContext, is_copied_with_name_tags_and_change_count)
{
    CBaseContext source = ABaseContext();
    CBaseContext constructed(source);
    CBaseContext assigned("target");
    assigned.SetTag("old", "1");
    assigned = source;
    ExpectSource(constructed);
    ExpectSource(assigned);
    ExpectSource(source);

    assigned.SetTag("a", "changed");
    ExpectSource(source);
}

TEST(CBaseContext, is_moved_with_name_tags_and_change_count_and_left_empty)
{
    CBaseContext source = ABaseContext();
    CBaseContext constructed(std::move(source));
    ExpectSource(constructed);
    ExpectEmpty(source);

    CBaseContext assigned("target");
    assigned.SetTag("old", "1");
    assigned = std::move(constructed);
    ExpectSource(assigned);
    ExpectEmpty(constructed);

    constructed.SetTag("again", "1");   // what was moved from can be used anew
    EXPECT_EQ(constructed.GetTag("again"), "1");
}

TEST(CBaseContext, moves_without_throwing)
{
    EXPECT_TRUE(std::is_nothrow_move_constructible_v<CBaseContext>);
    EXPECT_TRUE(std::is_nothrow_move_assignable_v<CBaseContext>);
    EXPECT_TRUE(std::is_nothrow_move_constructible_v<CZynContext>);
    EXPECT_TRUE(std::is_nothrow_move_assignable_v<CZynContext>);
}

TEST(CBaseContext, stands_its_own_assignment)
{
    CBaseContext context = ABaseContext();
    CBaseContext & same = context;
    context = same;
    ExpectSource(context);
    context = std::move(same);
    ExpectSource(context);
}

TEST(CBaseContext, is_cloned_with_its_change_count)
{
    CBaseContext source = ABaseContext();
    const std::unique_ptr<IConfigContext> clone(source.Clone());
    auto * const context = dynamic_cast<CBaseContext *>(clone.get());
    ASSERT_NE(context, nullptr);
    EXPECT_EQ(typeid(*context), typeid(CBaseContext));
    ExpectSource(*context);

    context->SetTag("a", "changed");
    ExpectSource(source);
}

CZynContext AZynContext()
{
    CZynContext context;
    context.SetChip("abc");
    context.SetSubsystemType(2);
    context.SetDevice(15);
    context.SetStore(3);
    context.SetLayerNumber(4);
    return context;
}

void ExpectZynSource(CZynContext & context)
{
    EXPECT_EQ(context.Name(), "zyncontext");
    EXPECT_EQ(context.Tags().size(), 5U);
    EXPECT_EQ(ChangeCount(context), 5U);
    EXPECT_EQ(context.GetTag(BY_LAYER), "abc| |2|4");
    EXPECT_EQ(context.GetTag(BY_STORE), "abc| |2|15|3");
}

void ExpectZynEmpty(CZynContext & context)
{
    ExpectEmpty(context);
    EXPECT_EQ(context.GetTag(BY_LAYER), " | | | ");
    EXPECT_EQ(context.GetTag(BY_STORE), " | | | | ");
}

/// With the by-layer key asked for beforehand, so that it is cached, or not.
class CZynContextCopies : public testing::TestWithParam<bool>
{
protected:
    void SetUp() override { Warm(mSource); }

    static void Warm(CZynContext & context)
    {
        if (GetParam())
            context.GetTag(BY_LAYER);
    }

    CZynContext mSource = AZynContext();
};

TEST_P(CZynContextCopies, have_the_keys_of_their_source)
{
    CZynContext constructed(mSource);
    CZynContext assigned;
    assigned.SetLayerNumber(9);
    Warm(assigned);
    assigned = mSource;
    ExpectZynSource(constructed);
    ExpectZynSource(assigned);

    assigned.SetLayerNumber(7);
    EXPECT_EQ(assigned.GetTag(BY_LAYER), "abc| |2|7");
    ExpectZynSource(mSource);
}

TEST_P(CZynContextCopies, have_the_keys_of_their_source_with_an_equal_change_count)
{
    CZynContext target;
    for (int layer = 11; layer < 16; ++layer)
        target.SetLayerNumber(layer);
    target.GetTag(BY_LAYER);
    ASSERT_EQ(ChangeCount(target), ChangeCount(mSource));
    CZynContext moved = target;
    target = mSource;
    moved = CZynContext(mSource);
    ExpectZynSource(target);
    ExpectZynSource(moved);
}

TEST_P(CZynContextCopies, leave_an_empty_source_when_moved)
{
    CZynContext constructed(std::move(mSource));
    ExpectZynSource(constructed);
    ExpectZynEmpty(mSource);

    Warm(constructed);
    CZynContext assigned;
    assigned = std::move(constructed);
    ExpectZynSource(assigned);
    ExpectZynEmpty(constructed);

    constructed.SetLayerNumber(3);
    EXPECT_EQ(constructed.GetTag(BY_LAYER), " | | |3");
}

TEST_P(CZynContextCopies, stand_their_own_assignment)
{
    CZynContext & same = mSource;
    mSource = same;
    ExpectZynSource(mSource);
    mSource = std::move(same);
    ExpectZynSource(mSource);
}

TEST_P(CZynContextCopies, count_anew_when_cloned)
{
    const std::unique_ptr<IConfigContext> clone(mSource.Clone());
    auto * const context = dynamic_cast<CZynContext *>(clone.get());
    ASSERT_NE(context, nullptr);
    EXPECT_EQ(typeid(*context), typeid(CZynContext));
    EXPECT_EQ(ChangeCount(*context), 0U);
    EXPECT_EQ(context->Name(), "zyncontext");
    EXPECT_EQ(context->Tags(), mSource.Tags());
    EXPECT_EQ(context->GetTag(BY_LAYER), "abc| |2|4");
    EXPECT_EQ(context->GetTag(BY_STORE), "abc| |2|15|3");

    context->SetLayerNumber(9);
    EXPECT_EQ(context->GetTag(BY_LAYER), "abc| |2|9");
    ExpectZynSource(mSource);
}

INSTANTIATE_TEST_SUITE_P(WithTheKeyCachedOrNot, CZynContextCopies, testing::Bool());

}   // namespace
}   // namespace VrexZynConfigTools
