// The stores that a chip knows: from subsystems, from store managers, prepared ones; and their order.

#include "chip_fixture.h"

using namespace VrexZynConfigTools;
using namespace VrexZynConfigTools::support;

namespace {

class CChipConfigStores : public ChipTest
{
protected:
    /// The start of a subsystem alone.
    void Found(const std::string & tags)
    {
        CZynContext context;
        context.Parse(tags);
        static_cast<IConfigReaderObserver &>(mChip).OnSubsystemFound(mReader, context);
    }

    ScriptedReader mReader;
};

void ExpectStore(const CStoreInfo & store, IStoreManager::DEVICE device, std::uint16_t id, std::uint32_t size,
    std::int32_t free, std::uint16_t linked, std::uint16_t order, bool paired)
{
    EXPECT_EQ(store.DeviceId(), device);
    EXPECT_EQ(store.StoreId(), id);
    EXPECT_EQ(store.StoreSize(), size);
    EXPECT_EQ(store.StoreSizeFree(), free);
    EXPECT_EQ(store.LinkedStoreId(), linked);
    EXPECT_EQ(store.Order(), order);
    EXPECT_EQ(store.Paired(), paired);
}

TEST_F(CChipConfigStores, of_a_subsystem_is_recorded_with_nothing_known)
{
    Found("subsystemtype=1;device=15;store=3");
    Found("subsystemtype=1;device=2;store=1");

    ASSERT_EQ(Stores(), (Texts{ "eeprom/3", "smem/1" }));
    ExpectStore(*mChip.Stores().front(), EEPROM, 3, 0xFFFFFFFF, -1, 0, 1, false);
    ExpectStore(*mChip.Stores().back(), SMEM, 1, 0xFFFFFFFF, -1, 0, 2, false);
}

TEST_F(CChipConfigStores, is_recorded_once_whatever_the_subsystem)
{
    Found("subsystemtype=1;device=15;store=3");
    Found("subsystemtype=2;device=15;store=3");
    Found("subsystemtype=1;device=15;store=3");

    EXPECT_EQ(Stores(), Texts{ "eeprom/3" });
    EXPECT_EQ(mChip.Subsystems().size(), 2U);
}

// Stores of "rom" and of no device reach the list through a store manager only. Intended.
TEST_F(CChipConfigStores, of_rom_or_of_no_device_is_not_recorded)
{
    for (const char * tags : { "store=1", "device=0;store=1", "device=-1;store=1", "device=junk;store=1" })
        Found(tags);
    EXPECT_TRUE(mChip.Stores().empty());
}

TEST_F(CChipConfigStores, with_the_number_0_is_not_recorded)
{
    for (const char * tags :
        { "device=15", "device=15;store=0", "device=15;store=junk", "device=15;store=65536" })
        Found(tags);
    EXPECT_TRUE(mChip.Stores().empty());
}

TEST_F(CChipConfigStores, numbers_keep_their_low_16_bits)
{
    Found("device=15;store=65537");
    Found("device=15;store=-1");

    EXPECT_EQ(Stores(), (Texts{ "eeprom/1", "eeprom/65535" }));
}

TEST_F(CChipConfigStores, of_unknown_devices_is_recorded_until_the_read_ends)
{
    Found("device=99;store=1");
    EXPECT_EQ(Stores(), Texts{ "UNKNOWN/1" });

    CZynContext context;
    static_cast<IConfigReaderObserver &>(mChip).OnReadEnded(mReader, context);
    EXPECT_TRUE(mChip.Stores().empty());
}

TEST_F(CChipConfigStores, are_recorded_up_to_15)
{
    for (int store = 1; store <= 17; ++store)
        Found(Numbered("subsystemtype=1;device=15;store=", store));

    EXPECT_EQ(mChip.Stores().size(), 15U);
    EXPECT_EQ(mChip.Stores().back()->StoreId(), 15);
    EXPECT_EQ(mChip.Stores().back()->Order(), 15);
    EXPECT_EQ(mChip.Subsystems().size(), 17U);
}

TEST_F(CChipConfigStores, the_reader_gets_the_subsystem_as_element_observer)
{
    Found("subsystemtype=1;device=15;store=3");
    Found("subsystemtype=2");
    Found("subsystemtype=1;device=15;store=3");

    ASSERT_EQ(mReader.ElementObservers().size(), 3U);
    EXPECT_EQ(mReader.ElementObservers()[0], &At(" | |1|15|3"));
    EXPECT_EQ(mReader.ElementObservers()[1], &At(" | |2| | "));
    EXPECT_EQ(mReader.ElementObservers()[2], &At(" | |1|15|3"));
}

TEST_F(CChipConfigStores, are_ordered_by_device_and_then_by_first_sight)
{
    Read("", ASubsystem(1).In(EEPROM, 2), ASubsystem(1).In(SMEM, 5), ASubsystem(1).In(EEPROM, 1),
        ASubsystem(1).In(FW_CFG, 9), ASubsystem(1).In(MTP, 1), ASubsystem(1).In(OTP, 3),
        ASubsystem(1).In(SMEM, 4));

    EXPECT_EQ(Stores(), (Texts{ "otp/3", "mtp/1", "smem/5", "smem/4", "fw_cfg/9", "eeprom/2", "eeprom/1" }));
}

TEST_F(CChipConfigStores, of_a_store_manager_join_those_of_the_subsystems)
{
    StoreReportingReader reader;
    reader.Delivers(ASubsystem(1).In(EEPROM, 1));
    reader.ReportsNull().Reports(ROM, 1).Reports(SMEM, 2).ReportsNull().Reports(EEPROM, 1).Reports(OTP, 0);
    reader.ReadInto(mChip);

    EXPECT_EQ(Stores(), (Texts{ "rom/1", "otp/0", "smem/2", "eeprom/1" }));
}

TEST_F(CChipConfigStores, the_manager_is_asked_once_with_the_context_of_the_end)
{
    StoreReportingReader reader;
    CZynContext context;
    static_cast<IConfigReaderObserver &>(mChip).OnReadEnded(reader, context);

    EXPECT_EQ(reader.AskedWith(), std::vector<IConfigContext *>{ &context });
}

TEST_F(CChipConfigStores, of_a_manager_are_copied_with_all_fields)
{
    StoreReportingReader reader;
    reader.Reports(CStoreInfo(MTP, 7, 4096, 100, 3, 12, true));
    reader.ReadInto(mChip);

    ASSERT_EQ(mChip.Stores().size(), 1U);
    EXPECT_NE(mChip.Stores().front(), reader.Stores(CNullContext::Ref()).front());
    ExpectStore(*mChip.Stores().front(), MTP, 7, 4096, 100, 3, 12, true);
}

TEST_F(CChipConfigStores, that_are_known_are_completed_and_keep_order_and_link)
{
    StoreReportingReader reader;
    reader.Delivers(ASubsystem(1).In(OTP, 1)).Delivers(ASubsystem(1).In(EEPROM, 3));
    reader.Reports(CStoreInfo(EEPROM, 3, 8192, 50, 9, 77, true));
    reader.ReadInto(mChip);

    ASSERT_EQ(Stores(), (Texts{ "otp/1", "eeprom/3" }));
    ExpectStore(*mChip.Stores().back(), EEPROM, 3, 8192, 50, 0, 2, true);
}

TEST_F(CChipConfigStores, keep_what_is_known_of_them)
{
    StoreReportingReader reader;
    reader.Reports(CStoreInfo(EEPROM, 3, 8192, 50, 9, 77, true));
    reader.Reports(CStoreInfo(EEPROM, 3, 1, 2, 3, 4, false));
    reader.ReadInto(mChip);

    ASSERT_EQ(mChip.Stores().size(), 1U);
    ExpectStore(*mChip.Stores().front(), EEPROM, 3, 8192, 50, 9, 77, true);
}

TEST_F(CChipConfigStores, are_completed_field_by_field)
{
    StoreReportingReader reader;
    reader.Reports(CStoreInfo(EEPROM, 3, 0xFFFFFFFF, 50, 1, 1, false));
    reader.Reports(CStoreInfo(EEPROM, 3, 8192, 60, 2, 2, false));
    reader.Reports(CStoreInfo(EEPROM, 3, 9999, -1, 3, 3, true));
    reader.ReadInto(mChip);

    ASSERT_EQ(mChip.Stores().size(), 1U);
    ExpectStore(*mChip.Stores().front(), EEPROM, 3, 8192, 50, 1, 1, true);
}

TEST_F(CChipConfigStores, of_one_number_on_two_devices_are_two)
{
    StoreReportingReader reader;
    reader.Reports(EEPROM, 1).Reports(SMEM, 1);
    reader.ReadInto(mChip);

    EXPECT_EQ(Stores(), (Texts{ "smem/1", "eeprom/1" }));
}

TEST_F(CChipConfigStores, of_devices_without_a_layer_vanish)
{
    StoreReportingReader reader;
    reader.Reports(CUR_CFG, 1).Reports(USER_PS_APPS, 1).Reports(OTP, 1).Reports(USER_PS_AUDIO, 1);
    reader.Reports(IStoreManager::DEVICE_NONE, 1).Reports(static_cast<IStoreManager::DEVICE>(3), 1);
    reader.ReadInto(mChip);

    EXPECT_EQ(Stores(), Texts{ "otp/1" });
}

TEST_F(CChipConfigStores, the_reader_s_own_list_stays_its_own)
{
    StoreReportingReader reader;
    reader.Reports(CUR_CFG, 1).Reports(EEPROM, 2).Reports(OTP, 1);
    reader.ReadInto(mChip);

    const auto & own = reader.Stores(CNullContext::Ref());
    ASSERT_EQ(own.size(), 3U);
    EXPECT_EQ(own.front()->DeviceId(), CUR_CFG);
    EXPECT_EQ(own.back()->DeviceId(), OTP);
}

using CChipConfigPrepareForChip = CChipConfigStores;

TEST_F(CChipConfigPrepareForChip, makes_15_stores)
{
    for (const std::uint16_t chip :
        std::initializer_list<std::uint16_t>{ 0x44, 0x00, 0x3600, 0xFFFF, 0x37, 0x35 }) {
        mChip.PrepareForChip(chip);
        ASSERT_EQ(mChip.Stores().size(), 15U) << chip;
    }
    std::uint16_t number = 0;
    for (const CStoreInfo * store : mChip.Stores()) {
        ++number;
        ExpectStore(*store, EEPROM, number, 0xFFFFFFFF, -1, 0, number, false);
    }
}

TEST_F(CChipConfigPrepareForChip, makes_none_for_the_low_byte_0x36)
{
    for (const std::uint16_t chip : std::initializer_list<std::uint16_t>{ 0x0036, 0x0136, 0xFF36 }) {
        mChip.PrepareForChip(0x44);
        mChip.PrepareForChip(chip);
        EXPECT_TRUE(mChip.Stores().empty()) << chip;
    }
}

TEST_F(CChipConfigPrepareForChip, clears_what_was_there)
{
    Read("", ASubsystem(1).In(OTP, 1).Holding(Traced(1, 100)));
    mChip.PrepareForChip(0x44);

    EXPECT_TRUE(mChip.Subsystems().empty());
    EXPECT_EQ(mLives.Count(), 0U);
    EXPECT_EQ(mChip.Stores().size(), 15U);
}

TEST_F(CChipConfigPrepareForChip, gives_each_store_of_a_read_its_prepared_layer)
{
    mChip.PrepareForChip(0x44);
    Read("chip=c", ASubsystem(1).In(EEPROM, 9), ASubsystem(1).In(EEPROM, 2), ASubsystem(1).In(OTP, 1));

    // No further store is recorded beside the 15, so that of "otp" has no layer.
    EXPECT_EQ(Keys(), (Texts{ "c| |1| ", "c| |1|2", "c| |1|9" }));
    EXPECT_EQ(mChip.Stores().size(), 15U);
}

TEST_F(CChipConfigPrepareForChip, leaves_no_room_for_a_store_of_a_manager)
{
    mChip.PrepareForChip(0x44);
    StoreReportingReader reader;
    reader.Reports(OTP, 1).Delivers(ASubsystem(1).In(EEPROM, 9));
    reader.ReadInto(mChip);

    EXPECT_TRUE(mChip.Subsystems().empty());
    EXPECT_EQ(mChip.Stores().size(), 16U);
}

}   // namespace
