// What a chip tells of its subsystems as a whole, merging their contexts, and clearing.

#include "chip_fixture.h"

#include <support/foreign_contexts.h>

using namespace VrexZynConfigTools;
using namespace VrexZynConfigTools::support;

namespace {

using CChipConfigHasElements = ChipTest;

TEST_F(CChipConfigHasElements, is_false_for_an_empty_chip)
{
    EXPECT_FALSE(mChip.HasElements());
    EXPECT_FALSE(mChip.HasElements(SUBSYSTEM_BT));
    EXPECT_FALSE(mChip.HasElements(100, SUBSYSTEM_BT));
    EXPECT_FALSE(mChip.HasElements(100, SUBSYSTEM_BT, 1));
}

TEST_F(CChipConfigHasElements, is_false_for_subsystems_without_elements)
{
    Read("", ASubsystem(1).In(EEPROM, 1), ASubsystem(2).In(EEPROM, 1));
    EXPECT_FALSE(mChip.HasElements());
    EXPECT_FALSE(mChip.HasElements(SUBSYSTEM_BT));

    Read("", ASubsystem(2).In(EEPROM, 1).Holding(Traced(1, 100)));
    EXPECT_TRUE(mChip.HasElements());
    EXPECT_FALSE(mChip.HasElements(SUBSYSTEM_BT));
    EXPECT_TRUE(mChip.HasElements(SUBSYSTEM_WLAN));
}

TEST_F(CChipConfigHasElements, counts_an_element_without_payload_unless_its_number_is_asked_for)
{
    Read("", ASubsystem(1).In(EEPROM, 1).Holding(Traced(1, 100, "", 0)));

    EXPECT_TRUE(mChip.HasElements());
    EXPECT_TRUE(mChip.HasElements(SUBSYSTEM_BT));
    EXPECT_FALSE(mChip.HasElements(100, SUBSYSTEM_BT));
    EXPECT_FALSE(mChip.HasElements(100, SUBSYSTEM_BT, 1));
}

TEST_F(CChipConfigHasElements, finds_a_number_in_any_layer_or_in_one)
{
    Read("", ASubsystem(1).In(OTP, 1).Holding(Traced(1, 100)),
        ASubsystem(1).In(EEPROM, 1).Holding(Traced(2, 200)), ASubsystem(2).In(OTP, 1).Holding(Traced(3, 300)));

    EXPECT_TRUE(mChip.HasElements(100, SUBSYSTEM_BT));
    EXPECT_TRUE(mChip.HasElements(200, SUBSYSTEM_BT));
    EXPECT_FALSE(mChip.HasElements(300, SUBSYSTEM_BT));
    EXPECT_TRUE(mChip.HasElements(100, SUBSYSTEM_BT, 1));
    EXPECT_FALSE(mChip.HasElements(100, SUBSYSTEM_BT, 2));
    EXPECT_TRUE(mChip.HasElements(200, SUBSYSTEM_BT, 2));
    EXPECT_FALSE(mChip.HasElements(100, SUBSYSTEM_WLAN, 1));
    EXPECT_TRUE(mChip.HasElements(300, SUBSYSTEM_WLAN, 1));
}

// An absent tag does not pass for 0, so a subsystem without a layer counts. Intended.
TEST_F(CChipConfigHasElements, counts_subsystems_without_a_layer_and_passes_over_layer_0)
{
    Read("", ASubsystem(1).Holding(Traced(1, 100)),
        ASubsystem(2).Tagged("layernumber=0").Holding(Traced(2, 100)),
        ASubsystem(3).Tagged("layernumber=junk").Holding(Traced(3, 100)));

    EXPECT_TRUE(mChip.HasElements(SUBSYSTEM_BT));
    EXPECT_TRUE(mChip.HasElements(100, SUBSYSTEM_BT));
    EXPECT_FALSE(mChip.HasElements(100, SUBSYSTEM_BT, 0));
    EXPECT_FALSE(mChip.HasElements(SUBSYSTEM_WLAN));
    EXPECT_FALSE(mChip.HasElements(100, SUBSYSTEM_WLAN));
    EXPECT_TRUE(mChip.HasElements(100, SUBSYSTEM_WLAN, 0));
    EXPECT_FALSE(mChip.HasElements(SUBSYSTEM_AUDIO));   // junk reads as 0
    EXPECT_TRUE(mChip.HasElements(100, SUBSYSTEM_AUDIO, 0));
    EXPECT_TRUE(mChip.HasElements());
}

TEST_F(CChipConfigHasElements, needs_a_type_that_is_told)
{
    Read("", ASubsystem().In(EEPROM, 1).Holding(Traced(1, 100)));
    EXPECT_FALSE(mChip.HasElements(SUBSYSTEM_CURATOR));
    EXPECT_TRUE(mChip.HasElements());

    Read("", ASubsystem(0).In(EEPROM, 1).Holding(Traced(2, 100)),
        ASubsystem(-1).In(EEPROM, 1).Holding(Traced(3, 100)));
    EXPECT_TRUE(mChip.HasElements(SUBSYSTEM_CURATOR));
    EXPECT_TRUE(mChip.HasElements(100, SUBSYSTEM_UNKNOWN));
}

TEST_F(CChipConfigHasElements, looks_at_every_subsystem)
{
    Read("", ASubsystem(1).In(OTP, 1), ASubsystem(1).In(SMEM, 1).Holding(Traced(1, 100, "", 0)),
        ASubsystem(1).In(EEPROM, 1).Holding(Traced(2, 100)));

    EXPECT_TRUE(mChip.HasElements(100, SUBSYSTEM_BT));
    EXPECT_FALSE(mChip.HasElements(100, SUBSYSTEM_BT, 2));
}

TEST_F(CChipConfigHasElements, works_before_the_read_has_ended)
{
    Create("subsystemtype=1");
    EXPECT_FALSE(mChip.HasElements());
    CZynContext context;
    static_cast<IConfigReaderElementObserver &>(Create("subsystemtype=1"))
        .OnElementFound(Traced(1, 5), context);
    EXPECT_TRUE(mChip.HasElements(5, SUBSYSTEM_BT));
}

using CChipConfigIsHeterogeneous = ChipTest;

TEST_F(CChipConfigIsHeterogeneous, is_false_for_none_and_for_one)
{
    EXPECT_FALSE(mChip.IsHeterogeneous());
    Create("subsystemtype=1");
    EXPECT_FALSE(mChip.IsHeterogeneous());
}

TEST_F(CChipConfigIsHeterogeneous, is_false_for_one_type_in_several_layers)
{
    Read("", ASubsystem(1).In(OTP, 1), ASubsystem(1).In(EEPROM, 1), ASubsystem(1).In(SMEM, 2));
    EXPECT_FALSE(mChip.IsHeterogeneous());
}

TEST_F(CChipConfigIsHeterogeneous, is_true_if_any_type_differs_from_the_first)
{
    Read("", ASubsystem(1).In(OTP, 1), ASubsystem(1).In(EEPROM, 1), ASubsystem(2).In(OTP, 1));
    EXPECT_TRUE(mChip.IsHeterogeneous());
}

TEST_F(CChipConfigIsHeterogeneous, takes_no_type_for_type_0)
{
    Create("store=1");
    Create("subsystemtype=0;store=2");
    Create("subsystemtype=junk;store=3");
    EXPECT_FALSE(mChip.IsHeterogeneous());
}

TEST_F(CChipConfigIsHeterogeneous, looks_at_the_contexts)
{
    Create("subsystemtype=1;store=1");
    Create("subsystemtype=1;store=2").Context().SetSubsystemType(3);
    EXPECT_TRUE(mChip.IsHeterogeneous());
}

using CChipConfigMerge = ChipTest;

TEST_F(CChipConfigMerge, reaches_every_subsystem)
{
    Create("subsystemtype=1;store=1;mode=own");
    Create("subsystemtype=2;store=1");
    CZynContext source;
    source.Parse("mode=merged");

    mChip.MergeSubsystemsContext(source, false);
    EXPECT_EQ(At(" | |1| |1").Context().GetTag("mode"), "own");
    EXPECT_EQ(At(" | |2| |1").Context().GetTag("mode"), "merged");
    source.SetTag("mode", "again");
    mChip.MergeSubsystemsContext(source, true);
    EXPECT_EQ(At(" | |1| |1").Context().GetTag("mode"), "again");
    EXPECT_EQ(At(" | |2| |1").Context().GetTag("mode"), "again");
}

TEST_F(CChipConfigMerge, goes_in_the_order_of_the_keys)
{
    CSubsystemConfig & second = Create("subsystemtype=2");
    CSubsystemConfig & first = Create("subsystemtype=1;mark=first");
    // The source is itself the context of the first: what it has goes on to the second.
    mChip.MergeSubsystemsContext(first.Context(), false);

    EXPECT_EQ(second.Context().GetTag("mark"), "first");
    EXPECT_EQ(second.Context().GetTag("subsystemtype"), "2");
}

TEST_F(CChipConfigMerge, does_not_change_the_keys)
{
    Create("subsystemtype=1;store=1");
    CZynContext source;
    source.Parse("chip=c;device=15");
    mChip.MergeSubsystemsContext(source, false);

    EXPECT_EQ(Keys(), Texts{ " | |1| |1" });
}

using CChipConfigClear = ChipTest;

TEST_F(CChipConfigClear, destroys_subsystems_elements_and_stores)
{
    Read("", ASubsystem(1).In(OTP, 1).Holding(Traced(1, 100)).Holding(TracedRow(2, 100, "", { 1 })),
        ASubsystem(2).In(EEPROM, 1).Holding(Traced(3, 100)));
    mChip.Clear();

    EXPECT_TRUE(mChip.Subsystems().empty());
    EXPECT_TRUE(mChip.Stores().empty());
    EXPECT_EQ(mLives.Count(), 0U);
    mChip.Clear();
    EXPECT_FALSE(mChip.HasElements());
}

TEST_F(CChipConfigClear, lets_the_next_read_start_anew)
{
    Read("chip=a", ASubsystem(1).In(EEPROM, 1), ASubsystem(1).In(OTP, 1));
    mChip.Clear();
    Read("chip=b", ASubsystem(1).In(EEPROM, 1));

    EXPECT_EQ(Keys(), Texts{ "b| |1|1" });
    EXPECT_EQ(mChip.Stores().front()->Order(), 1);
}

TEST_F(CChipConfigClear, happens_at_the_end_of_the_chip)
{
    {
        CChipConfig chip;
        ScriptedReader reader;
        reader.Delivers(ASubsystem(1).In(EEPROM, 1).Holding(Traced(1, 100)));
        reader.Delivers(ASubsystem(2).Holding(Traced(2, 100)));
        reader.ReadInto(chip);
        EXPECT_EQ(mLives.Count(), 2U);
    }
    EXPECT_EQ(mLives.Count(), 0U);
}

TEST_F(CChipConfigClear, takes_contexts_of_any_class_with_it)
{
    ComputingContext<CBaseContext> context("computing");
    context.SetTag("subsystemtype", 1);
    mChip.CreateAndAddSubsystem(context);
    EXPECT_NE(dynamic_cast<ComputingContext<CBaseContext> *>(&At("").Context()), nullptr);
    mChip.Clear();
    EXPECT_TRUE(mChip.Subsystems().empty());
}

}   // namespace
