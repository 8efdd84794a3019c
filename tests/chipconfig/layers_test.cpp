// What the end of a read makes of subsystems and stores: layers, and keys by layer.

#include "chip_fixture.h"

using namespace VrexZynConfigTools;
using namespace VrexZynConfigTools::support;

namespace {

class CChipConfigLayers : public ChipTest
{
protected:
    std::string LayerOf(const std::string & key) const { return At(key).Context().GetTag("layernumber"); }
};

TEST_F(CChipConfigLayers, stand_in_the_order_of_the_devices)
{
    Read("chip=c", ASubsystem(1).In(EEPROM, 1).Holding(Traced(6, 1)),
        ASubsystem(1).In(FW_CFG, 1).Holding(Traced(5, 1)), ASubsystem(1).In(SMEM, 1).Holding(Traced(4, 1)),
        ASubsystem(1).In(MTP, 1).Holding(Traced(3, 1)), ASubsystem(1).In(OTP, 1).Holding(Traced(2, 1)));

    EXPECT_EQ(Keys(), (Texts{ "c| |1|1", "c| |1|2", "c| |1|3", "c| |1|4", "c| |1|5" }));
    for (int layer = 1; layer <= 5; ++layer)
        EXPECT_EQ(UidOf(At(Numbered("c| |1|", layer)).Element(1U)), layer + 1);
}

TEST_F(CChipConfigLayers, put_mtp_below_smem)
{
    Read("chip=c", ASubsystem(1).In(SMEM, 1), ASubsystem(2).In(MTP, 1));

    EXPECT_EQ(LayerOf("c| |2|1"), "1");
    EXPECT_EQ(At("c| |1|2").Context().GetTag("device"), "2");
}

TEST_F(CChipConfigLayers, put_rom_at_the_bottom)
{
    StoreReportingReader reader;
    reader.Reports(ROM, 1);
    reader.Delivers(ASubsystem(1).In(OTP, 1)).Delivers(ASubsystem(1).In(ROM, 1));
    reader.ReadInto(mChip, "chip=c");

    EXPECT_EQ(At("c| |1|1").Context().GetTag("device"), "0");
    EXPECT_EQ(At("c| |1|2").Context().GetTag("device"), "1");
}

TEST_F(CChipConfigLayers, follow_the_first_sight_within_a_device)
{
    Read("chip=c", ASubsystem(1).In(EEPROM, 5), ASubsystem(1).In(EEPROM, 2), ASubsystem(1).In(EEPROM, 9));

    EXPECT_EQ(At("c| |1|1").Context().GetTag("store"), "5");
    EXPECT_EQ(At("c| |1|2").Context().GetTag("store"), "2");
    EXPECT_EQ(At("c| |1|3").Context().GetTag("store"), "9");
}

TEST_F(CChipConfigLayers, are_shared_by_the_subsystems_of_a_store)
{
    Read("chip=c", ASubsystem(3).In(EEPROM, 1), ASubsystem(1).In(EEPROM, 1), ASubsystem(1).In(OTP, 1),
        ASubsystem(2).In(EEPROM, 1));

    EXPECT_EQ(Keys(), (Texts{ "c| |1|1", "c| |1|2", "c| |2|2", "c| |3|2" }));
}

TEST_F(CChipConfigLayers, count_stores_without_a_subsystem)
{
    StoreReportingReader reader;
    reader.Delivers(ASubsystem(1).In(EEPROM, 1));
    reader.Reports(OTP, 1).Reports(SMEM, 1).Reports(EEPROM, 7);
    reader.ReadInto(mChip, "chip=c");

    EXPECT_EQ(Keys(), Texts{ "c| |1|3" });
}

TEST_F(CChipConfigLayers, are_found_by_the_numbers_of_device_and_store)
{
    Read("chip=c", ASubsystem(1).Tagged("device=015 x;store= 3"));

    EXPECT_EQ(Stores(), Texts{ "eeprom/3" });
    EXPECT_EQ(Keys(), Texts{ "c| |1|1" });
}

TEST_F(CChipConfigLayers, give_rom_to_a_device_that_is_told_and_reads_0)
{
    StoreReportingReader reader;
    reader.Reports(ROM, 1);
    reader.Delivers(ASubsystem(1).Tagged("device=junk;store=1")).Delivers(ASubsystem(2).Tagged("store=1"));
    reader.ReadInto(mChip, "chip=c");

    EXPECT_EQ(Keys(), (Texts{ "c| |1|1", "c| |2| " }));
}

TEST_F(CChipConfigLayers, are_15_at_most)
{
    ScriptedReader reader;
    for (int store = 1; store <= 15; ++store)
        reader.Delivers(ASubsystem(1).In(EEPROM, store));
    reader.ReadInto(mChip, "chip=c");

    EXPECT_EQ(mChip.Subsystems().size(), 15U);
    EXPECT_EQ(At("c| |1|15").Context().GetTag("store"), "15");
}

TEST_F(CChipConfigLayers, of_15_stores_leave_the_16th_subsystem_without)
{
    ScriptedReader reader;
    for (int store = 1; store <= 16; ++store)
        reader.Delivers(ASubsystem(1).In(EEPROM, store));
    reader.ReadInto(mChip, "chip=c");

    EXPECT_EQ(mChip.Subsystems().size(), 16U);
    EXPECT_EQ(At("c| |1| ").Context().GetTag("store"), "16");
}

TEST_F(CChipConfigLayers, are_not_assigned_without_stores)
{
    Read("chip=c", ASubsystem(1).Holding(Traced(1, 100)));

    EXPECT_TRUE(mChip.Stores().empty());
    EXPECT_EQ(Keys(), Texts{ "c| |1| " });
    EXPECT_EQ(Find(100, "chip=c;subsystemtype=1"), 1);
}

TEST_F(CChipConfigLayers, are_not_assigned_to_devices_without_one)
{
    StoreReportingReader reader;
    reader.Delivers(ASubsystem(1).In(CUR_CFG, 1)).Delivers(ASubsystem(1).In(EEPROM, 1));
    reader.Reports(CUR_CFG, 1);
    reader.ReadInto(mChip, "chip=c");

    EXPECT_EQ(Stores(), Texts{ "eeprom/1" });
    EXPECT_EQ(Keys(), (Texts{ "c| |1| ", "c| |1|1" }));
}

TEST_F(CChipConfigLayers, told_by_the_reader_stay_where_none_is_assigned)
{
    Read("chip=c", ASubsystem(1).In(CUR_CFG, 1).Tagged("layernumber=7"),
        ASubsystem(1).In(EEPROM, 1).Tagged("layernumber=9"), ASubsystem(2).Tagged("layernumber=abc"));

    EXPECT_EQ(Keys(), (Texts{ "c| |1|1", "c| |1|7", "c| |2|abc" }));
}

TEST_F(CChipConfigLayers, of_a_read_of_nothing_are_none)
{
    Read("");
    EXPECT_TRUE(mChip.Subsystems().empty());
    EXPECT_TRUE(mChip.Stores().empty());
}

using CChipConfigSecondRead = CChipConfigLayers;

TEST_F(CChipConfigSecondRead, adds_to_the_subsystems_of_the_first)
{
    Read("chip=c", ASubsystem(1).In(EEPROM, 1).Holding(Traced(1, 100)));
    CSubsystemConfig & subsystem = At("c| |1|1");
    Read("chip=other", ASubsystem(1).In(EEPROM, 1).Holding(Traced(2, 101)));

    EXPECT_EQ(Keys(), Texts{ "c| |1|1" });
    EXPECT_EQ(&At("c| |1|1"), &subsystem);
    EXPECT_EQ(subsystem.Elements().size(), 2U);
    EXPECT_EQ(Stores(), Texts{ "eeprom/1" });
}

TEST_F(CChipConfigSecondRead, numbers_all_layers_anew)
{
    Read("chip=c", ASubsystem(1).In(EEPROM, 1).Holding(Traced(1, 100)));
    CSubsystemConfig & ofEeprom = At("c| |1|1");
    Read("chip=c", ASubsystem(1).In(OTP, 1).Holding(Traced(2, 100)));

    EXPECT_EQ(Keys(), (Texts{ "c| |1|1", "c| |1|2" }));
    EXPECT_EQ(&At("c| |1|2"), &ofEeprom);
    EXPECT_EQ(UidOf(At("c| |1|1").Element(100U)), 2);
    EXPECT_EQ(mChip.Stores().back()->Order(), 1);
    EXPECT_EQ(mChip.Stores().front()->Order(), 2);
}

TEST_F(CChipConfigSecondRead, keeps_the_order_of_first_sight)
{
    Read("chip=c", ASubsystem(1).In(EEPROM, 5));
    Read("chip=c", ASubsystem(1).In(EEPROM, 2), ASubsystem(1).In(EEPROM, 5));

    EXPECT_EQ(Stores(), (Texts{ "eeprom/5", "eeprom/2" }));
    EXPECT_EQ(At("c| |1|2").Context().GetTag("store"), "2");
}

TEST_F(CChipConfigSecondRead, leaves_the_layer_of_a_store_that_has_vanished)
{
    Read("chip=c", ASubsystem(1).In(EEPROM, 1), ASubsystem(1).In(EEPROM, 2));
    At("c| |1|2").Context().SetTag("device", 13);   // now of a device without a layer
    Read("chip=c");

    EXPECT_EQ(Keys(), (Texts{ "c| |1|1", "c| |1|2" }));
}

}   // namespace
