// Finding or making the subsystem that a context describes.

#include "chip_fixture.h"

#include <support/foreign_contexts.h>

#include <type_traits>

using namespace VrexZynConfigTools;
using namespace VrexZynConfigTools::support;

namespace {

static_assert(!std::is_copy_constructible_v<CChipConfig> && !std::is_copy_assignable_v<CChipConfig>);

using CChipConfigCreation = ChipTest;

TEST_F(CChipConfigCreation, starts_empty)
{
    EXPECT_TRUE(mChip.Subsystems().empty());
    EXPECT_TRUE(mChip.Stores().empty());
}

TEST_F(CChipConfigCreation, files_a_new_subsystem_by_store)
{
    CSubsystemConfig & subsystem = Create("chip=abc;subsystemtype=2;device=15;store=3");

    EXPECT_EQ(Keys(), Texts{ "abc| |2|15|3" });
    EXPECT_EQ(&At("abc| |2|15|3"), &subsystem);
    EXPECT_EQ(subsystem.Type(), 2);
    EXPECT_EQ(subsystem.Context().GetTag("chip"), "abc");
    EXPECT_TRUE(mChip.Stores().empty());
}

TEST_F(CChipConfigCreation, finds_a_subsystem_by_store_type_and_device)
{
    CSubsystemConfig & first = Create("chip=abc;subsystemtype=2;device=15;store=3");

    EXPECT_EQ(&Create("chip=abc;subsystemtype=2;device=15;store=3"), &first);
    EXPECT_NE(&Create("chip=abc;subsystemtype=1;device=15;store=3"), &first);
    EXPECT_NE(&Create("chip=abc;subsystemtype=2;device=1;store=3"), &first);
    EXPECT_NE(&Create("chip=abc;subsystemtype=2;device=15;store=4"), &first);
    EXPECT_EQ(mChip.Subsystems().size(), 4U);
}

TEST_F(CChipConfigCreation, does_not_compare_the_chip)
{
    CSubsystemConfig & first = Create("chip=abc;subsystemtype=2;device=15;store=3");

    EXPECT_EQ(&Create("chip=xyz;subsystemtype=2;device=15;store=3"), &first);
    EXPECT_EQ(&Create("subsystemtype=2;device=15;store=3"), &first);
    EXPECT_EQ(Keys(), Texts{ "abc| |2|15|3" });
}

TEST_F(CChipConfigCreation, compares_tags_as_text_without_case)
{
    CSubsystemConfig & first = Create("subsystemtype=Bt;device=Eep;store=A");

    EXPECT_EQ(&Create("subsystemtype=bT;device=EEP;store=a"), &first);
    EXPECT_NE(&Create("subsystemtype=2;device=15;store=3"), &Create("subsystemtype=02;device=15;store=3"));
}

TEST_F(CChipConfigCreation, finds_one_without_tags_by_their_absence)
{
    CSubsystemConfig & bare = Create("");
    CSubsystemConfig & typed = Create("subsystemtype=1");

    EXPECT_EQ(&Create("chip=abc"), &bare);
    EXPECT_EQ(&Create("chip=abc;subsystemtype=1"), &typed);
    EXPECT_EQ(Keys(), (Texts{ " | | | | ", " | |1| | " }));
}

TEST_F(CChipConfigCreation, finds_the_first_in_the_order_of_the_keys)
{
    CSubsystemConfig & b = Create("chip=b;subsystemtype=1;store=1");
    CSubsystemConfig & a = Create("chip=a;subsystemtype=1;store=2");
    b.Context().SetTag("store", 2);   // now both are store 2, and "a..." stands first

    EXPECT_EQ(&Create("chip=b;subsystemtype=1;store=2"), &a);
}

TEST_F(CChipConfigCreation, finds_one_whose_tags_have_changed_by_its_key)
{
    CSubsystemConfig & subsystem = Create("chip=a;subsystemtype=1;device=15;store=1");
    subsystem.Context().SetTag("store", 9);

    EXPECT_EQ(&Create("chip=a;subsystemtype=1;device=15;store=1"), &subsystem);
    EXPECT_EQ(mChip.Subsystems().size(), 1U);
}

TEST_F(CChipConfigCreation, asks_a_derived_context_for_tags_and_key)
{
    ComputingContext<CZynContext> context;
    context.Parse("subsystemtype=1;device=15;store=1");
    context.Computes("subsystemkeybystore", "my key");
    CSubsystemConfig & subsystem = mChip.CreateAndAddSubsystem(context);
    EXPECT_EQ(Keys(), Texts{ "my key" });

    // What the new context computes is compared with what the old one stores.
    ComputingContext<CZynContext> other;
    other.Computes("subsystemtype", "1").Computes("device", "15").Computes("store", "1");
    EXPECT_EQ(&mChip.CreateAndAddSubsystem(other), &subsystem);
}

TEST_F(CChipConfigCreation, a_base_context_computes_no_key)
{
    CBaseContext context("base", 1);
    CSubsystemConfig & first = mChip.CreateAndAddSubsystem(context);
    EXPECT_EQ(Keys(), Texts{ "" });

    context.SetTag("store", 2);
    EXPECT_EQ(&mChip.CreateAndAddSubsystem(context), &first);   // by the empty key
    context.SetTag("subsystemkeybystore", "stored");
    EXPECT_NE(&mChip.CreateAndAddSubsystem(context), &first);
    EXPECT_EQ(Keys(), (Texts{ "", "stored" }));
}

class CChipConfigWithAnInvalidContext : public ChipTest
{
protected:
    MapContext mContext{ "subsystemtype=2;device=15;store=3" };
};

TEST_F(CChipConfigWithAnInvalidContext, leaves_an_error)
{
    mChip.CreateAndAddSubsystem(mContext);

    EXPECT_EQ(ErrorOf(GROUP_CORE_CLASSES), "the passed context is invalid");
    EXPECT_FALSE(mErrors.IsSet());
    EXPECT_TRUE(mChip.Subsystems().empty());
}

TEST_F(CChipConfigWithAnInvalidContext, gives_a_subsystem_that_discards_what_it_gets)
{
    CSubsystemConfig & subsystem = mChip.CreateAndAddSubsystem(mContext);
    CZynContext context;
    context.Parse("layerfilter=5;layernumber=1;subsystemtype=1");
    IConfigReaderElementObserver & reader = subsystem;

    EXPECT_TRUE(reader.OnElementFound(Traced(1, 100, "a"), context));
    EXPECT_TRUE(reader.OnElementFound(TracedRow(2, 100, "a", { 1 }), context));
    context.Parse("num_indices=1;index1=4;insertmode=overwrite");
    EXPECT_TRUE(reader.OnElementFound(Traced(3, 100, "a"), context));
    EXPECT_TRUE(reader.OnElementFound(nullptr, context));
    EXPECT_TRUE(reader.OnElementFound(&CNullElement::Ref(), context));

    EXPECT_EQ(mLives.Count(), 0U);
    EXPECT_TRUE(subsystem.Elements().empty());
    EXPECT_FALSE(subsystem.Element(100U).IsValid());
    EXPECT_EQ(subsystem.Size(), 0U);
    EXPECT_TRUE(mChip.Subsystems().empty());
    EXPECT_EQ(Written("layerfilter=5"), "");   // the chip wasn't told
}

TEST_F(CChipConfigWithAnInvalidContext, gives_a_subsystem_that_outlives_the_chip)
{
    IConfigReaderElementObserver * reader = nullptr;
    {
        CChipConfig chip;
        reader = &chip.CreateAndAddSubsystem(mContext);
    }
    CZynContext context;
    context.Parse("layerfilter=5");
    EXPECT_TRUE(reader->OnElementFound(Traced(1, 100), context));
    EXPECT_EQ(mLives.Count(), 0U);
}

TEST_F(CChipConfigWithAnInvalidContext, finds_what_is_there_without_an_error)
{
    CSubsystemConfig & subsystem = Create("subsystemtype=2;device=15;store=3");

    EXPECT_EQ(&mChip.CreateAndAddSubsystem(mContext), &subsystem);
    EXPECT_EQ(ErrorOf(GROUP_CORE_CLASSES), "");
}

TEST_F(CChipConfigWithAnInvalidContext, finds_by_the_empty_key_without_an_error)
{
    CBaseContext base("base", 1);
    CSubsystemConfig & subsystem = mChip.CreateAndAddSubsystem(base);

    EXPECT_EQ(&mChip.CreateAndAddSubsystem(mContext), &subsystem);
    EXPECT_EQ(ErrorOf(GROUP_CORE_CLASSES), "");
}

TEST_F(CChipConfigWithAnInvalidContext, the_null_context_is_one)
{
    mChip.CreateAndAddSubsystem(CNullContext::Ref());
    EXPECT_EQ(ErrorOf(GROUP_CORE_CLASSES), "the passed context is invalid");

    ClearErrorOf(GROUP_CORE_CLASSES);
    CSubsystemConfig & bare = Create("");   // a null context has no tags either
    EXPECT_EQ(&mChip.CreateAndAddSubsystem(CNullContext::Ref()), &bare);
    EXPECT_EQ(ErrorOf(GROUP_CORE_CLASSES), "");
}

TEST_F(CChipConfigWithAnInvalidContext, a_read_still_records_the_store)
{
    ScriptedReader reader;
    IConfigReaderObserver & observer = mChip;
    observer.OnSubsystemFound(reader, mContext);

    EXPECT_EQ(Stores(), Texts{ "eeprom/3" });
    ASSERT_EQ(reader.ElementObservers().size(), 1U);
    CZynContext context;
    EXPECT_TRUE(reader.ElementObservers()[0]->OnElementFound(Traced(1, 100), context));
    EXPECT_EQ(mLives.Count(), 0U);
    observer.OnReadEnded(reader, mContext);
    EXPECT_TRUE(mChip.Subsystems().empty());
}

}   // namespace
