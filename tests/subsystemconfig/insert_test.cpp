// What becomes of an element that a reader hands over.

#include "subsystem_fixture.h"

#include <support/foreign_contexts.h>
#include <support/foreign_elements.h>

#include <list>
#include <memory>
#include <string>
#include <vector>

using namespace VrexZynConfigTools;
using namespace VrexZynConfigTools::support;

namespace {

using CSubsystemConfigInsert = SubsystemTest;

TEST_F(CSubsystemConfigInsert, makes_no_duplicate_test_without_a_mode)
{
    CElement * first = AddPlain(100, "name");
    CElement * second = AddPlain(100, "name");

    EXPECT_EQ(mSubsystem.Elements(), (std::list<CElement *>{ first, second }));
    EXPECT_EQ(&mSubsystem.Element(100U), second);
    EXPECT_EQ(&mSubsystem.Element("100"), first);
}

TEST_F(CSubsystemConfigInsert, appends_with_any_other_mode)
{
    for (const char * mode : { "append", "junk", "new ", "overwritten", "0" })
        AddPlain(100, "name", std::string("insertmode=") + mode);

    EXPECT_EQ(mSubsystem.Elements().size(), 5U);
    EXPECT_EQ(mObserver.Calls().size(), 5U);
}

TEST_F(CSubsystemConfigInsert, new_keeps_what_is_stored_and_deletes_the_newcomer)
{
    Add(Traced(1, 100), "insertmode=new");
    for (const char * mode : { "new", "NEW", "New" }) {
        Add(Traced(2, 100, "other name"), std::string("insertmode=") + mode);
        EXPECT_FALSE(mLives.Has(2)) << mode;
    }
    EXPECT_TRUE(mLives.Has(1));
    EXPECT_EQ(Uids(), std::vector<int>{ 1 });
    EXPECT_EQ(mObserver.Calls().size(), 1U);
}

TEST_F(CSubsystemConfigInsert, overwrite_puts_the_newcomer_in_the_old_place)
{
    for (int uid = 1; uid <= 3; ++uid)
        Add(Traced(uid, 100U + static_cast<unsigned>(uid), Numbered("n", uid)));
    mObserver.Forget();

    Add(Traced(4, 102, "renamed"), "insertmode=overwrite");

    EXPECT_EQ(Uids(), (std::vector<int>{ 1, 4, 3 }));
    EXPECT_FALSE(mLives.Has(2));
    EXPECT_TRUE(mObserver.Calls().empty());
    EXPECT_EQ(UidOf(mSubsystem.Element(102U)), 4);
    EXPECT_EQ(UidOf(mSubsystem.Element("102")), 4);
    EXPECT_EQ(UidOf(mSubsystem.Element("renamed")), 4);
    EXPECT_TRUE(IsNull(mSubsystem.Element("n2")));
}

TEST_F(CSubsystemConfigInsert, overwrite_ignores_case_of_mode_and_tag)
{
    Add(Traced(1, 100));
    Add(Traced(2, 100), "InsertMode=OVERWRITE");

    EXPECT_EQ(Uids(), std::vector<int>{ 2 });
}

TEST_F(CSubsystemConfigInsert, overwrite_and_new_append_what_is_not_there_and_tell_the_observer)
{
    CElement * first = AddPlain(100, "same name", "insertmode=overwrite");
    CElement * second = AddPlain(101, "same name", "insertmode=new");

    EXPECT_EQ(mSubsystem.Elements(), (std::list<CElement *>{ first, second }));
    ASSERT_EQ(mObserver.Calls().size(), 2U);
    EXPECT_EQ(mObserver.Calls()[1].mElement, second);
}

TEST_F(CSubsystemConfigInsert, overwrite_replaces_the_first_of_several)
{
    Add(Traced(1, 100, "a"));
    Add(Traced(2, 100, "b"));
    Add(Traced(3, 100, "c"), "insertmode=overwrite");

    EXPECT_EQ(Uids(), (std::vector<int>{ 3, 2 }));
    EXPECT_EQ(UidOf(mSubsystem.Element(100U)), 2);
    EXPECT_EQ(UidOf(mSubsystem.Element("100")), 3);
}

// A plain element calls a row of its number the same, but not the other way round. Intended.
TEST_F(CSubsystemConfigInsert, a_stored_plain_element_gives_way_to_a_row)
{
    Add(Traced(1, 100, "table"));
    Add(TracedRow(2, 100, { 1 }), "insertmode=overwrite");

    EXPECT_EQ(Uids(), std::vector<int>{ 2 });
    EXPECT_EQ(UidOf(mSubsystem.Element("100.1")), 2);
    EXPECT_TRUE(IsNull(mSubsystem.Element("100")));
}

TEST_F(CSubsystemConfigInsert, a_stored_row_does_not_give_way_to_a_plain_element)
{
    Add(TracedRow(1, 100, { 1 }));
    Add(Traced(2, 100, "table"), "insertmode=overwrite");
    Add(Traced(3, 100, "table"), "insertmode=new");

    EXPECT_EQ(Uids(), (std::vector<int>{ 1, 2 }));
}

TEST_F(CSubsystemConfigInsert, a_stored_row_gives_way_to_one_with_its_indices_only)
{
    Add(TracedRow(1, 100, { 1, 2 }));
    Add(TracedRow(2, 100, { 1, 3 }), "insertmode=overwrite");
    Add(TracedRow(3, 100, { 1 }), "insertmode=overwrite");
    Add(TracedRow(4, 100, { 1, 2 }), "insertmode=overwrite");
    Add(TracedRow(5, 100, { 1, 3 }), "insertmode=new");

    EXPECT_EQ(Uids(), (std::vector<int>{ 4, 2, 3 }));
    EXPECT_FALSE(mLives.Has(5));
}

TEST_F(CSubsystemConfigInsert, tells_the_observer_the_element_and_the_context_after_it_is_stored)
{
    CZynContext context;
    context.SetTag("layerfilter", 3);
    bool wasFound = false;
    mObserver.Then([&](CElement * element, IConfigContext & told) {
        wasFound = &mSubsystem.Element(100U) == element && mSubsystem.Elements().back() == element;
        EXPECT_EQ(told.GetTag("layerfilter"), "3");
    });

    CElement * element = Add(AnElement(100).Release(), context);

    ASSERT_EQ(mObserver.Calls().size(), 1U);
    EXPECT_EQ(mObserver.Calls()[0].mElement, element);
    EXPECT_EQ(mObserver.Calls()[0].mContext, &context);
    EXPECT_TRUE(wasFound);
}

TEST_F(CSubsystemConfigInsert, ignores_what_the_observer_answers)
{
    for (const bool answer : { false, true }) {
        RecordingElementObserver observer(answer);
        CSubsystemConfig subsystem(mOwnContext, &observer);
        CZynContext context;
        IConfigReaderElementObserver & reader = subsystem;
        EXPECT_TRUE(reader.OnElementFound(AnElement(1).Release(), context));
        EXPECT_EQ(subsystem.Elements().size(), 1U);
    }
}

TEST_F(CSubsystemConfigInsert, works_without_an_observer)
{
    CSubsystemConfig subsystem(mOwnContext, nullptr);
    IConfigReaderElementObserver & reader = subsystem;
    CZynContext context;

    EXPECT_TRUE(reader.OnElementFound(Traced(1, 100), context));
    context.SetTag("insertmode", "new");
    EXPECT_TRUE(reader.OnElementFound(Traced(2, 100), context));
    EXPECT_EQ(UidOf(subsystem.Element(100U)), 1);
    EXPECT_FALSE(mLives.Has(2));
}

TEST_F(CSubsystemConfigInsert, bears_an_observer_that_adds_an_element_of_its_own)
{
    mObserver.Then([this](CElement * element, IConfigContext &) {
        if (element->PsId() < 20)
            AddPlain(element->PsId() + 10, "added", "insertmode=overwrite");
    });
    AddPlain(1, "first");
    AddPlain(2, "second");

    std::vector<std::uint32_t> ids;
    for (const CElement * element : mSubsystem.Elements())
        ids.push_back(element->PsId());
    EXPECT_EQ(ids, (std::vector<std::uint32_t>{ 1, 11, 21, 2, 12, 22 }));
    EXPECT_EQ(mSubsystem.Element("added").PsId(), 11U);
    EXPECT_EQ(mSubsystem.Element(22U).PsId(), 22U);
}

TEST_F(CSubsystemConfigInsert, deletes_all_elements_at_its_end)
{
    {
        CSubsystemConfig subsystem(mOwnContext, nullptr);
        CZynContext context;
        IConfigReaderElementObserver & reader = subsystem;
        for (int uid = 0; uid < 10; ++uid)
            reader.OnElementFound(Traced(uid, 5), context);
        EXPECT_EQ(mLives.Count(), 10U);
    }
    EXPECT_EQ(mLives.Count(), 0U);
}

TEST_F(CSubsystemConfigInsert, takes_any_context_class)
{
    MapContext context("insertmode=new");
    Add(Traced(1, 100), context);
    Add(Traced(2, 100), context);
    EXPECT_EQ(Uids(), std::vector<int>{ 1 });

    context.SetTag("insertmode", "overwrite");
    Add(Traced(3, 100), context);
    EXPECT_EQ(Uids(), std::vector<int>{ 3 });

    Add(Traced(4, 100), CNullContext::Ref());   // it matches nothing, so there is no mode and no row
    EXPECT_EQ(Uids(), (std::vector<int>{ 3, 4 }));
    EXPECT_EQ(UidOf(mSubsystem.Element("100")), 3);
}

TEST_F(CSubsystemConfigInsert, asks_a_derived_context_in_its_own_way)
{
    PrefixedContext<CZynContext> context;
    context.Parse("insertmode=overwrite;my.insertmode=new");
    Add(Traced(1, 100), context);
    Add(Traced(2, 100), context);
    EXPECT_EQ(Uids(), std::vector<int>{ 1 });

    // The stored tag is matched, not the computed one: `TagMatches` of the library doesn't ask the derived class.
    ComputingContext<CZynContext> computing;
    computing.Computes("insertmode", "new");
    Add(Traced(3, 100), computing);
    EXPECT_EQ(Uids(), (std::vector<int>{ 1, 3 }));
}

TEST_F(CSubsystemConfigInsert, asks_a_derived_context_anew_each_time)
{
    ChangingContext<CZynContext> context;   // "num_indices" and the indices are the mode, too
    context.mAnswer = "new";
    Add(TracedRow(1, 100, { 7 }), context);
    Add(TracedRow(2, 100, { 7 }), context);
    EXPECT_EQ(Uids(), std::vector<int>{ 1 });
    context.mAnswer = "overwrite";
    Add(TracedRow(3, 100, { 7 }), context);
    EXPECT_EQ(Uids(), std::vector<int>{ 3 });
    context.mAnswer = "append";
    Add(TracedRow(4, 100, { 7 }), context);
    EXPECT_EQ(Uids(), (std::vector<int>{ 3, 4 }));
}

TEST_F(CSubsystemConfigInsert, sees_each_change_of_one_context)
{
    CZynContext context;
    Add(Traced(1, 100), context);
    context.SetTag("insertmode", "new");
    Add(Traced(2, 100), context);
    context.SetTags("insert", "overwrite");
    Add(Traced(3, 100), context);
    context.Parse("insertmode=");
    Add(Traced(4, 100), context);

    EXPECT_EQ(Uids(), (std::vector<int>{ 3, 4 }));
}

// Equal change counts don't mean equal tags.
TEST_F(CSubsystemConfigInsert, sees_tags_that_were_assigned_copied_or_moved)
{
    CZynContext plain;
    plain.SetTag("anything", "1");
    CZynContext keeping;
    keeping.SetTag("insertmode", "new");
    CZynContext replacing;
    replacing.SetTag("insertmode", "overwrite");

    Add(Traced(1, 100), plain);
    plain = keeping;
    Add(Traced(2, 100), plain);
    EXPECT_EQ(Uids(), std::vector<int>{ 1 });

    static_cast<CBaseContext &>(plain).CBaseContext::operator=(replacing);
    Add(Traced(3, 100), plain);
    EXPECT_EQ(Uids(), std::vector<int>{ 3 });

    plain.CBaseContext::operator=(CBaseContext("other"));
    Add(Traced(4, 100), plain);
    EXPECT_EQ(Uids(), (std::vector<int>{ 3, 4 }));

    plain = std::move(keeping);
    Add(Traced(5, 100), plain);
    Add(Traced(6, 100), keeping);   // left without tags
    EXPECT_EQ(Uids(), (std::vector<int>{ 3, 4, 6 }));

    const std::unique_ptr<IConfigContext> clone(replacing.Clone());
    Add(Traced(7, 100), *clone);
    EXPECT_EQ(Uids(), (std::vector<int>{ 7, 4, 6 }));
}

}   // namespace
