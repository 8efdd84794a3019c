// The contexts with which a reader delivers the keys of a subsystem.

#include <configtools/zyncontext.h>
#include <kit/reading/contexts.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <list>
#include <string>
#include <vector>

using namespace VrexZynConfigTools;
using kit::reading::CKeyContexts;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class KeyContexts : public testing::Test
{
protected:
    KeyContexts() { mSubsystem.Parse("chip=abc;store=3;insertmode=new"); }

    CZynContext mSubsystem;
    CKeyContexts mContexts{ mSubsystem };
};

TEST_F(KeyContexts, of_plain_keys_are_that_of_the_subsystem)
{
    EXPECT_EQ(&mContexts.Of({}), &mSubsystem);
    mContexts.Of({ 1 });
    EXPECT_EQ(&mContexts.Of({}), &mSubsystem);
    EXPECT_THAT(mSubsystem.GetTags("index"), IsEmpty());
    EXPECT_EQ(mSubsystem.GetTag("num_indices"), "");
}

TEST_F(KeyContexts, of_rows_have_the_tags_of_the_subsystem_and_their_own_indices)
{
    IConfigContext & first = mContexts.Of({ 3, 4294967295 });
    EXPECT_EQ(first.GetTag("insertmode"), "new");
    EXPECT_EQ(first.GetTag("num_indices"), "2");
    EXPECT_THAT(first.GetTags("index"), ElementsAre("3", "4294967295"));
    EXPECT_THAT(mContexts.Of({ 7, 0 }).GetTags("index"), ElementsAre("7", "0"));
}

TEST_F(KeyContexts, of_rows_lose_the_indices_of_a_longer_row_before)
{
    mContexts.Of({ 12, 11, 10, 9, 8, 7, 6, 5, 4, 3, 2, 1 });
    IConfigContext & row = mContexts.Of({ 5 });
    EXPECT_EQ(row.GetTag("num_indices"), "1");
    EXPECT_THAT(row.GetTags("index"), ElementsAre("5"));
}

TEST_F(KeyContexts, of_rows_have_more_than_nine_indices_in_order)
{
    mContexts.Of({ 5 });
    EXPECT_THAT(mContexts.Of({ 12, 11, 10, 9, 8, 7, 6, 5, 4, 3, 2, 1 }).GetTags("index"),
        ElementsAre("12", "11", "10", "9", "8", "7", "6", "5", "4", "3", "2", "1"));
}

}   // namespace
