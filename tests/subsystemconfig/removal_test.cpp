// Removing elements by number, text and indices.

#include "subsystem_fixture.h"

#include <support/foreign_elements.h>

#include <string>
#include <vector>

using namespace VrexZynConfigTools;
using namespace VrexZynConfigTools::support;
using Indices = std::vector<std::uint32_t>;

namespace {

class CSubsystemConfigRemoval : public SubsystemTest
{
protected:
    /// Plain 100 (1), rows 100.1 (2), 100.2 (3), plain 100 again (4), row 100.1 again (5), plain 200 (6).
    void Fill()
    {
        Add(Traced(1, 100, "T"));
        Add(TracedRow(2, 100, { 1 }));
        Add(TracedRow(3, 100, { 2 }));
        Add(Traced(4, 100, "T"));
        Add(TracedRow(5, 100, { 1 }));
        Add(Traced(6, 200, "other"));
    }
};

TEST_F(CSubsystemConfigRemoval, without_indices_takes_plain_elements_and_leaves_rows)
{
    Fill();
    mSubsystem.RemoveElement(100U, nullptr);

    EXPECT_EQ(Uids(), (std::vector<int>{ 2, 3, 5, 6 }));
    EXPECT_EQ(mLives.Count(), 4U);
    EXPECT_EQ(UidOf(mSubsystem.Element(100U)), 5);
    EXPECT_TRUE(IsNull(mSubsystem.Element("100")));
    EXPECT_TRUE(IsNull(mSubsystem.Element("t")));
}

TEST_F(CSubsystemConfigRemoval, with_indices_takes_every_row_and_the_plain_elements)
{
    Fill();
    const Indices indices{ 1 };
    mSubsystem.RemoveElement(100U, &indices);

    EXPECT_EQ(Uids(), (std::vector<int>{ 3, 6 }));
    EXPECT_EQ(mLives.Count(), 2U);
}

TEST_F(CSubsystemConfigRemoval, an_empty_list_of_indices_is_not_none)
{
    Fill();
    Add(TracedRow(7, 100, {}));
    const Indices none;
    mSubsystem.RemoveElement(100U, &none);
    EXPECT_EQ(Uids(), (std::vector<int>{ 2, 3, 5, 6 }));

    Add(TracedRow(8, 100, {}));
    mSubsystem.RemoveElement(100U, nullptr);   // a row without indices counts as plain here
    EXPECT_EQ(Uids(), (std::vector<int>{ 2, 3, 5, 6 }));
}

TEST_F(CSubsystemConfigRemoval, takes_the_indices_of_the_text)
{
    Add(TracedRow(1, 100, { 1 }));
    Add(TracedRow(2, 100, { 1, 0 }));
    Add(TracedRow(3, 100, { 1 }));
    mSubsystem.RemoveElement("100.1", nullptr);
    EXPECT_EQ(Uids(), std::vector<int>{ 2 });

    mSubsystem.RemoveElement("0x64.1.", nullptr);
    EXPECT_TRUE(Uids().empty());
    EXPECT_EQ(mLives.Count(), 0U);
}

TEST_F(CSubsystemConfigRemoval, indices_given_replace_those_of_the_text)
{
    Add(TracedRow(1, 100, { 1 }));
    Add(TracedRow(2, 100, { 2 }));
    const Indices second{ 2 };
    mSubsystem.RemoveElement("100.1", &second);

    EXPECT_EQ(Uids(), std::vector<int>{ 1 });
}

TEST_F(CSubsystemConfigRemoval, by_name_ignores_case_and_number)
{
    Add(Traced(1, 1, "Name"));
    Add(Traced(2, 2, "NAME"));
    Add(Traced(3, 3, "names"));
    mSubsystem.RemoveElement("nAmE", nullptr);

    EXPECT_EQ(Uids(), std::vector<int>{ 3 });
    EXPECT_TRUE(IsNull(mSubsystem.Element(1U)));
    EXPECT_TRUE(IsNull(mSubsystem.Element(2U)));
}

TEST_F(CSubsystemConfigRemoval, of_what_is_not_there_does_nothing)
{
    mSubsystem.RemoveElement(1U, nullptr);
    mSubsystem.RemoveElement("", nullptr);
    Fill();
    const Indices missing{ 9 };
    mSubsystem.RemoveElement(300U, nullptr);
    mSubsystem.RemoveElement("300.1", nullptr);
    mSubsystem.RemoveElement("tt", &missing);

    EXPECT_EQ(Uids(), (std::vector<int>{ 1, 2, 3, 4, 5, 6 }));
}

// The number goes through its text, where it is no number any more and so may be a name. Intended.
TEST_F(CSubsystemConfigRemoval, a_number_above_the_signed_range_is_a_name)
{
    Add(Traced(1, 3000000000U, "big"));
    Add(Traced(2, 1, "3000000000"));
    Add(Traced(3, 2147483647U, "largest"));
    Add(Traced(4, 2147483648U, "beyond"));
    mSubsystem.RemoveElement(3000000000U, nullptr);
    EXPECT_EQ(Uids(), (std::vector<int>{ 1, 3, 4 }));

    mSubsystem.RemoveElement(2147483648U, nullptr);
    mSubsystem.RemoveElement(2147483647U, nullptr);
    EXPECT_EQ(Uids(), (std::vector<int>{ 1, 4 }));
}

TEST_F(CSubsystemConfigRemoval, a_removed_row_gives_way_to_the_one_before_it)
{
    Fill();
    const Indices indices{ 1 };
    mSubsystem.RemoveElement("200", nullptr);
    mSubsystem.RemoveElement("100.1", &indices);

    EXPECT_EQ(UidOf(mSubsystem.Element(100U)), 3);
    EXPECT_EQ(mSubsystem.Elements(100).size(), 1U);
}

TEST_F(CSubsystemConfigRemoval, is_not_told_to_the_observer)
{
    Fill();
    mObserver.Forget();
    mSubsystem.RemoveElement(100U, nullptr);

    EXPECT_TRUE(mObserver.Calls().empty());
}

TEST_F(CSubsystemConfigRemoval, with_indices_asks_the_elements_themselves)
{
    Add((new ForeignRow(100, "T", { 1 }, AListOf(new TracedPayload(mLives, 1)), true))
            ->Ruled([](const CElement &, CElement &) { return false; }));
    Add((new ForeignRaw(100, "T", AListOf(new TracedPayload(mLives, 2)), true))
            ->Ruled([](const CElement &, CElement & other) { return other.KeyString() == "t.9"; }));
    Add(TracedRow(3, 100, { 1 }));

    mSubsystem.RemoveElement("T.1", nullptr);
    EXPECT_EQ(Uids(), (std::vector<int>{ 1, 2, 3 }));   // the row has no name
    mSubsystem.RemoveElement("100.1", nullptr);
    EXPECT_EQ(Uids(), (std::vector<int>{ 1, 2 }));
    mSubsystem.RemoveElement("T.9", nullptr);
    EXPECT_EQ(Uids(), std::vector<int>{ 1 });
}

TEST_F(CSubsystemConfigRemoval, makes_room_for_the_same_again)
{
    for (int uid = 1; uid <= 300; ++uid) {
        Add(Traced(uid, 100, "T"), "insertmode=new");
        ASSERT_EQ(UidOf(mSubsystem.Element("t")), uid);
        mSubsystem.RemoveElement(uid % 2 == 0 ? "t" : "100", nullptr);
        ASSERT_TRUE(IsNull(mSubsystem.Element(100U)));
    }
    EXPECT_EQ(mLives.Count(), 0U);
}

TEST_F(CSubsystemConfigRemoval, from_the_middle_of_many_keeps_the_order)
{
    std::vector<int> expected;
    for (int uid = 0; uid < 1000; ++uid) {
        Add(Traced(uid, static_cast<std::uint32_t>(uid % 10), Numbered("n", uid % 7)));
        if (uid % 7 != 3 && uid % 10 != 4)
            expected.push_back(uid);
    }
    mSubsystem.RemoveElement("N3", nullptr);
    mSubsystem.RemoveElement("04", nullptr);

    EXPECT_EQ(Uids(), expected);
    EXPECT_EQ(mLives.Count(), expected.size());
}

}   // namespace
