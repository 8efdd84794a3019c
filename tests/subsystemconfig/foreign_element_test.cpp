// Element classes of plug-ins, whose `Same` may mean anything, and elements that aren't there.

#include "subsystem_fixture.h"

#include <support/foreign_elements.h>
#include <support/recording_writer.h>

#include <string>
#include <vector>

using namespace VrexZynConfigTools;
using namespace VrexZynConfigTools::support;

namespace {

class CSubsystemConfigForeign : public SubsystemTest
{
protected:
    ForeignRaw * Foreign(int uid, std::uint32_t id, const std::string & name, ForeignRaw::SameRule rule = {})
    {
        return (new ForeignRaw(id, name, AListOf(new TracedPayload(mLives, uid)), true))
            ->Ruled(std::move(rule));
    }
};

TEST_F(CSubsystemConfigForeign, a_stored_element_rules_over_other_numbers)
{
    Add(Traced(1, 1));
    Add(Foreign(2, 2, "any", [](const CElement &, CElement & other) { return other.PsId() == 77; }));
    Add(Traced(3, 3));

    Add(Traced(4, 77), "insertmode=overwrite");

    EXPECT_EQ(Uids(), (std::vector<int>{ 1, 4, 3 }));
    EXPECT_FALSE(mLives.Has(2));
    EXPECT_TRUE(IsNull(mSubsystem.Element(2U)));
    EXPECT_EQ(UidOf(mSubsystem.Element(77U)), 4);
}

TEST_F(CSubsystemConfigForeign, a_stored_element_may_refuse_its_own_number)
{
    Add(Foreign(1, 100, "never", [](const CElement &, CElement &) { return false; }));
    Add(Traced(2, 100), "insertmode=new");
    Add(Traced(3, 100), "insertmode=new");

    EXPECT_EQ(Uids(), (std::vector<int>{ 1, 2 }));
}

TEST_F(CSubsystemConfigForeign, the_stored_element_is_asked_and_not_the_newcomer)
{
    Add(Traced(1, 100));
    Add(Foreign(2, 100, "never", [](const CElement &, CElement &) { return false; }), "insertmode=new");
    EXPECT_EQ(Uids(), std::vector<int>{ 1 });

    Add(Foreign(3, 200, "always", [](const CElement &, CElement &) { return true; }), "insertmode=overwrite");
    EXPECT_EQ(Uids(), (std::vector<int>{ 1, 3 }));
}

TEST_F(CSubsystemConfigForeign, each_stored_element_is_asked_in_order_up_to_the_first_match)
{
    std::vector<int> asked;
    const auto rule = [&asked](int uid, bool answer) {
        return [&asked, uid, answer](const CElement &, CElement &) {
            asked.push_back(uid);
            return answer;
        };
    };
    Add(Foreign(1, 1, "a", rule(1, false)));
    Add(Foreign(2, 2, "b", rule(2, false)));
    Add(Foreign(3, 3, "c", rule(3, true)));
    Add(Foreign(4, 4, "d", rule(4, true)));

    Add(Traced(5, 9), "insertmode=new");
    EXPECT_EQ(asked, (std::vector<int>{ 1, 2, 3 }));
    EXPECT_FALSE(mLives.Has(5));

    asked.clear();
    Add(Traced(6, 9));
    EXPECT_TRUE(asked.empty());
}

TEST_F(CSubsystemConfigForeign, an_earlier_element_of_the_library_wins)
{
    Add(Traced(1, 9));
    Add(Foreign(2, 2, "always", [](const CElement &, CElement &) { return true; }));
    Add(Traced(3, 9), "insertmode=overwrite");

    EXPECT_EQ(Uids(), (std::vector<int>{ 3, 2 }));
}

TEST_F(CSubsystemConfigForeign, a_lookup_with_indices_shows_it_a_row_with_number_name_and_indices)
{
    std::vector<std::string> shown;
    Add(Foreign(1, 100, "Some", [&shown](const CElement &, CElement & other) {
        shown.push_back(std::to_string(other.PsId()) + " " + other.KeyString() + " " +
                        std::to_string(other.HasChanged()) + " " +
                        std::to_string(other.PayloadCollectionSize()));
        return other.KeyString() == "some.2.3";
    }));

    EXPECT_EQ(UidOf(mSubsystem.Element("SOME.2.3")), 1);
    EXPECT_TRUE(IsNull(mSubsystem.Element("100.2.3")));
    EXPECT_EQ(shown, (std::vector<std::string>{ "100 some.2.3 1 0", "100 100.2.3 1 0" }));
}

TEST_F(CSubsystemConfigForeign, a_lookup_without_indices_does_not_ask_it)
{
    Add(Foreign(1, 100, "Some", [](const CElement &, CElement &) { return false; }));

    EXPECT_EQ(UidOf(mSubsystem.Element("some")), 1);
    EXPECT_EQ(UidOf(mSubsystem.Element("100")), 1);
    EXPECT_EQ(UidOf(mSubsystem.Element(100U)), 1);
    EXPECT_TRUE(IsNull(mSubsystem.Element("100.1")));
}

TEST_F(CSubsystemConfigForeign, a_class_derived_from_a_row_is_a_row)
{
    Add(new ForeignRow(100, "T", { 1 }, AListOf(new TracedPayload(mLives, 1)), true));
    Add(new ForeignRow(100, "T", {}, AListOf(new TracedPayload(mLives, 2)), true));

    EXPECT_EQ(UidOf(mSubsystem.Element("100")), 2);
    EXPECT_EQ(UidOf(mSubsystem.Element("t.1")), 1);
    EXPECT_TRUE(IsNull(mSubsystem.Element("t.2")));
}

TEST_F(CSubsystemConfigForeign, one_that_changes_its_name_and_number_is_found_by_the_new_ones)
{
    Add(Traced(1, 1, "one"));
    ForeignRaw * element = Foreign(2, 2, "two");
    Add(element);
    Add(Traced(3, 3, "three"));
    element->Rename("Zwei");
    element->Renumber(22);

    EXPECT_EQ(UidOf(mSubsystem.Element("ZWEI")), 2);
    EXPECT_EQ(UidOf(mSubsystem.Element(22U)), 2);
    EXPECT_TRUE(IsNull(mSubsystem.Element("two")));
    EXPECT_TRUE(IsNull(mSubsystem.Element(2U)));
    EXPECT_EQ(mSubsystem.Elements(22).size(), 1U);

    mSubsystem.RemoveElement("zwei", nullptr);
    EXPECT_EQ(Uids(), (std::vector<int>{ 1, 3 }));
    EXPECT_EQ(UidOf(mSubsystem.Element("three")), 3);
    EXPECT_TRUE(IsNull(mSubsystem.Element(2U)));
    Add(Traced(4, 2, "two"));
    EXPECT_EQ(UidOf(mSubsystem.Element("two")), 4);
}

TEST_F(CSubsystemConfigForeign, the_library_s_own_are_found_again_after_the_last_has_gone)
{
    for (int uid = 1; uid <= 20; ++uid)
        Add(Traced(uid, static_cast<std::uint32_t>(uid), Numbered("n", uid)));
    Add(Foreign(99, 7, "foreign"));
    Add(Traced(21, 7, "n21"), "insertmode=overwrite");
    mSubsystem.RemoveElement("foreign", nullptr);
    mSubsystem.RemoveElement(3U, nullptr);

    EXPECT_FALSE(mLives.Has(99));
    EXPECT_EQ(UidOf(mSubsystem.Element(7U)), 21);
    EXPECT_EQ(UidOf(mSubsystem.Element("N21")), 21);
    EXPECT_TRUE(IsNull(mSubsystem.Element("n7")));
    EXPECT_TRUE(IsNull(mSubsystem.Element("n3")));
    EXPECT_EQ(UidOf(mSubsystem.Element("n20")), 20);
}

TEST_F(CSubsystemConfigForeign, a_null_element_is_borne_by_every_operation)
{
    CZynContext context;
    Add(nullptr, context);
    Add(Traced(1, 100, "name"), "insertmode=overwrite");
    context.Parse("num_indices=1;index1=1;insertmode=new");
    Add(nullptr, context);

    EXPECT_EQ(UidOf(mSubsystem.Element(100U)), 1);
    EXPECT_EQ(UidOf(mSubsystem.Element("name")), 1);
    EXPECT_TRUE(IsNull(mSubsystem.Element(0U)));
    EXPECT_TRUE(IsNull(mSubsystem.Element("")));
    EXPECT_EQ(mSubsystem.Elements(100).size(), 1U);
    EXPECT_TRUE(mSubsystem.ElementsIsEmpty(0));
    EXPECT_FALSE(mSubsystem.ElementsIsEmpty(100));
    EXPECT_EQ(mSubsystem.Size(), 3U);
    RecordingWriter writer;
    EXPECT_TRUE(mSubsystem.Write(writer, context));
    mSubsystem.RemoveElement(0U, nullptr);
    mSubsystem.RemoveElement(100U, nullptr);
    EXPECT_EQ(mLives.Count(), 0U);
}

TEST_F(CSubsystemConfigForeign, the_null_element_is_never_deleted)
{
    for (const char * tags : { "", "insertmode=new", "insertmode=overwrite", "num_indices=1;index1=1" }) {
        Add(&CNullElement::Ref(), tags);
        Add(&CNullElement::Ref(), tags);
        Add(Traced(1, 0), tags);
        mSubsystem.RemoveElement(0U, nullptr);
        mSubsystem.RemoveElement("0.1", nullptr);
    }
    EXPECT_EQ(mLives.Count(), 0U);
    EXPECT_EQ(CNullElement::Ref().ToString(), "invalid");
    EXPECT_TRUE(CNullElement::Ref().KeyString().empty());
    EXPECT_FALSE(CNullElement::Ref().IsValid());
}

}   // namespace
