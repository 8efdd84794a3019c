// Winners of a filtered read whose elements go: they are followed to their replacement, or skipped.

#include "chip_fixture.h"

using namespace VrexZynConfigTools;
using namespace VrexZynConfigTools::support;

namespace {

class CChipConfigLostWinner : public ChipTest
{
protected:
    /// Key "k" of type 1: number 1 in layer 1, and number 2, which wins, in layer 2.
    void ReadBoth()
    {
        Read("chip=c;layerfilter=5",
            ASubsystem(1).In(OTP, 1).Tagged("layernumber=1").Holding(Traced(1, 100, "k")),
            ASubsystem(1).In(EEPROM, 1).Tagged("layernumber=2").Holding(Traced(2, 100, "k")));
    }
    void ReadFiltered(int uid, int layer, const std::string & tags = "")
    {
        Read("chip=c;layerfilter=5;" + tags, ASubsystem(1)
                                                 .In(layer == 1 ? OTP : EEPROM, 1)
                                                 .Tagged(Numbered("layernumber=", layer))
                                                 .Holding(Traced(uid, 100, "k")));
    }
};

TEST_F(CChipConfigLostWinner, that_was_overwritten_is_followed_to_its_replacement)
{
    ReadBoth();
    Read("chip=c;insertmode=overwrite", ASubsystem(1).In(EEPROM, 1).Holding(Traced(3, 100, "k")));
    EXPECT_FALSE(mLives.Has(2));
    EXPECT_EQ(Written("layerfilter=5"), "1/2: 3");

    ReadFiltered(4, 2, "insertmode=overwrite");
    EXPECT_EQ(Written("layerfilter=5"), "1/2: 4");
    EXPECT_TRUE(mWritten);
}

TEST_F(CChipConfigLostWinner, that_was_overwritten_by_another_name_keeps_its_place)
{
    ReadBoth();
    Read("chip=c;insertmode=overwrite", ASubsystem(1).In(EEPROM, 1).Holding(Traced(3, 100, "renamed")));
    EXPECT_EQ(Written("layerfilter=5"), "1/2: 3");
}

TEST_F(CChipConfigLostWinner, that_was_overwritten_by_a_row_is_followed)
{
    ReadBoth();
    Read("chip=c;insertmode=overwrite",
        ASubsystem(1).In(EEPROM, 1).Holding(Traced(3, 100, "k"), "num_indices=1;index1=9"));
    EXPECT_EQ(Written("layerfilter=5"), "1/2: 3");
}

TEST_F(CChipConfigLostWinner, whose_rival_was_overwritten_stays)
{
    ReadBoth();
    Read("chip=c;insertmode=overwrite", ASubsystem(1).In(OTP, 1).Holding(Traced(3, 100, "k")));
    EXPECT_EQ(Written("layerfilter=5"), "1/2: 2");
}

TEST_F(CChipConfigLostWinner, that_was_removed_is_skipped)
{
    ReadBoth();
    At("c| |1|2").RemoveElement(100U, nullptr);

    EXPECT_EQ(Written("layerfilter=5"), "");
    EXPECT_TRUE(mWritten);
}

TEST_F(CChipConfigLostWinner, whose_rival_was_removed_stays)
{
    ReadBoth();
    At("c| |1|1").RemoveElement(100U, nullptr);
    EXPECT_EQ(Written("layerfilter=5"), "1/2: 2");
}

TEST_F(CChipConfigLostWinner, goes_on_competing)
{
    ReadBoth();
    At("c| |1|2").RemoveElement(100U, nullptr);

    ReadFiltered(3, 1);
    EXPECT_EQ(Written("layerfilter=5"), "");
    ReadFiltered(4, 2);
    EXPECT_EQ(Written("layerfilter=5"), "1/2: 4");
}

TEST_F(CChipConfigLostWinner, is_not_taken_for_a_new_element_at_its_address)
{
    ReadBoth();
    for (int round = 0; round < 20; ++round) {
        At("c| |1|2").RemoveElement(100U, nullptr);
        Read("chip=c", ASubsystem(1).In(EEPROM, 1).Holding(Traced(100 + round, 100, "k")));
        ASSERT_EQ(Written("layerfilter=5"), "");
    }
    Read("chip=c;insertmode=overwrite", ASubsystem(1).In(EEPROM, 1).Holding(Traced(200, 100, "k")));
    EXPECT_EQ(Written("layerfilter=5"), "");
}

TEST_F(CChipConfigLostWinner, of_Clear_is_skipped_and_goes_on_competing)
{
    ReadBoth();
    mChip.Clear();
    EXPECT_EQ(Written("layerfilter=5"), "");
    EXPECT_TRUE(mWritten);

    ReadFiltered(3, 1);
    EXPECT_EQ(Written("layerfilter=5"), "");
    ReadFiltered(4, 2);
    EXPECT_EQ(Written("layerfilter=5"), "1/2: 4");
    ReadFiltered(5, 1);
    EXPECT_EQ(Written("layerfilter=5"), "1/2: 4");
}

TEST_F(CChipConfigLostWinner, of_PrepareForChip_is_skipped)
{
    ReadBoth();
    mChip.PrepareForChip(0x44);
    EXPECT_EQ(Written("layerfilter=5"), "");

    ReadFiltered(3, 2);
    EXPECT_EQ(Written("layerfilter=5"), "1/2: 3");
}

TEST_F(CChipConfigLostWinner, of_a_subsystem_that_a_tool_made_is_skipped_after_its_end)
{
    CZynContext context;
    context.Parse("layerfilter=5;layernumber=3;subsystemtype=1");
    {
        CSubsystemConfig subsystem(context, &mChip);
        static_cast<IConfigReaderElementObserver &>(subsystem).OnElementFound(Traced(1, 100, "k"), context);
        EXPECT_EQ(Written("layerfilter=5"), "1/3: 1");
    }
    EXPECT_EQ(Written("layerfilter=5"), "");
}

TEST_F(CChipConfigLostWinner, that_won_twice_is_lost_in_both_places)
{
    // One element, told under two types: it is one element all the same.
    Read("chip=c", ASubsystem(1).In(EEPROM, 1).Holding(Traced(1, 100, "k"), "layerfilter=5;layernumber=1"));
    CElement * element = At("c| |1|1").Elements().front();
    CZynContext context;
    context.Parse("layerfilter=5;layernumber=3;subsystemtype=2");
    static_cast<IConfigReaderElementObserver &>(mChip).OnElementFound(element, context);
    EXPECT_EQ(Written("layerfilter=5"), "1/1: 1 2/3: 1");

    Read("chip=c;insertmode=overwrite", ASubsystem(1).In(EEPROM, 1).Holding(Traced(2, 100, "k")));
    EXPECT_EQ(Written("layerfilter=5"), "1/1: 2 2/3: 2");
    At("c| |1|1").RemoveElement("k", nullptr);
    EXPECT_EQ(Written("layerfilter=5"), "");
}

TEST_F(CChipConfigLostWinner, among_many_is_found)
{
    ScriptedReader reader;
    ASubsystem subsystem(1);
    for (int uid = 0; uid < 200; ++uid)
        std::move(subsystem).Holding(Traced(uid, 100U + static_cast<unsigned>(uid % 100),
                                         Numbered("k", static_cast<unsigned>(uid % 100))),
            "layernumber=1");
    reader.Delivers(std::move(subsystem).In(EEPROM, 1));
    reader.ReadInto(mChip, "chip=c;layerfilter=5");
    for (std::uint32_t id = 100; id < 198; ++id)
        At("c| |1|1").RemoveElement(id, nullptr);

    EXPECT_EQ(Written("layerfilter=5"), "1/1: 198 199");
    EXPECT_EQ(mLives.Count(), 4U);
}

}   // namespace
