// Subsystems that the end of a read drops: of several with one key all but one, and all if there are too many layers.

#include "chip_fixture.h"

using namespace VrexZynConfigTools;
using namespace VrexZynConfigTools::support;

namespace {

using CChipConfigCollapse = ChipTest;

TEST_F(CChipConfigCollapse, keeps_the_later_of_one_key)
{
    Read("chip=c", ASubsystem(1).In(CUR_CFG, 1).Holding(Traced(1, 100)),
        ASubsystem(1).In(USER_PS_APPS, 1).Holding(Traced(2, 100)));

    // "c| |1|13|1" stood behind "c| |1|12|1".
    EXPECT_EQ(Keys(), Texts{ "c| |1| " });
    EXPECT_EQ(Find(100, "chip=c;subsystemtype=1"), 1);
    EXPECT_EQ(ErrorOf(GROUP_CORE_CLASSES), "");
    EXPECT_FALSE(mErrors.IsSet());
}

TEST_F(CChipConfigCollapse, does_not_free_the_others)
{
    IConfigReaderElementObserver * dropped = nullptr;
    {
        CChipConfig chip;
        ScriptedReader reader;
        reader.Delivers(ASubsystem(1).In(USER_PS_APPS, 1).Holding(Traced(1, 100)))
            .Delivers(ASubsystem(1).In(CUR_CFG, 1).Holding(Traced(2, 100)));
        reader.ReadInto(chip);
        dropped = reader.ElementObservers().front();
        EXPECT_EQ(mLives.Count(), 2U);
    }
    EXPECT_FALSE(mLives.Has(2));
    EXPECT_TRUE(mLives.Has(1));
    CZynContext context;
    context.SetTag("layerfilter", 3);
    EXPECT_TRUE(dropped->OnElementFound(Traced(3, 101), context));   // nobody is told any more
    EXPECT_TRUE(mLives.Has(3));
}

TEST_F(CChipConfigCollapse, takes_all_contexts_that_compute_no_key)
{
    ScriptedReader reader;
    IConfigReaderObserver & observer = mChip;
    CBaseContext context("base", 1);
    for (const char * key : { "a", "b" }) {
        context.SetTag("store", key);
        context.SetTag("subsystemkeybystore", key);
        observer.OnSubsystemFound(reader, context);
    }
    EXPECT_EQ(Keys(), (Texts{ "a", "b" }));
    observer.OnReadEnded(reader, context);

    EXPECT_EQ(Keys(), Texts{ "" });
    EXPECT_EQ(At("").Context().GetTag("store"), "b");
}

class CChipConfigOfTooManyStores : public ChipTest
{
protected:
    /// 16 stores; the element 100 of one of them has the number `uid`.
    void ReadTooMany(CChipConfig & chip, int uid, const std::string & tags = "")
    {
        for (std::uint16_t store = 1; store <= 16; ++store)
            mReader.Reports(EEPROM, store);
        mReader.Delivers(ASubsystem(1).In(EEPROM, 1).Tagged("layernumber=1").Holding(Traced(uid, 100, "key")));
        mReader.ReadInto(chip, tags);
    }

    StoreReportingReader mReader;
};

TEST_F(CChipConfigOfTooManyStores, has_no_configuration_and_no_error)
{
    ReadTooMany(mChip, 1);

    EXPECT_TRUE(mChip.Subsystems().empty());
    EXPECT_EQ(mChip.Stores().size(), 16U);
    EXPECT_EQ(Find(100, "subsystemtype=1;layernumber=1"), NULL_ELEMENT);
    EXPECT_FALSE(mChip.HasElements());
    EXPECT_EQ(ErrorOf(GROUP_CORE_CLASSES), "");
    EXPECT_FALSE(mErrors.IsSet());
    EXPECT_TRUE(mLives.Has(1));
}

TEST_F(CChipConfigOfTooManyStores, stores_of_devices_without_a_layer_do_not_count)
{
    for (std::uint16_t store = 1; store <= 10; ++store)
        mReader.Reports(CUR_CFG, store).Reports(OTP, store);
    mReader.Delivers(ASubsystem(1).In(OTP, 4));
    mReader.ReadInto(mChip, "chip=c");

    EXPECT_EQ(mChip.Stores().size(), 10U);
    EXPECT_EQ(Keys(), Texts{ "c| |1|1" });   // the first that was seen
}

TEST_F(CChipConfigOfTooManyStores, stays_empty_with_each_further_read)
{
    ReadTooMany(mChip, 1);
    Read("chip=c", ASubsystem(1).In(EEPROM, 1).Holding(Traced(2, 100)));
    EXPECT_TRUE(mChip.Subsystems().empty());

    mChip.Clear();
    Read("chip=c", ASubsystem(1).In(EEPROM, 1).Holding(Traced(3, 100)));
    EXPECT_EQ(Keys(), Texts{ "c| |1|1" });
    EXPECT_EQ(Find(100, "chip=c;subsystemtype=1;layernumber=1"), 3);
}

TEST_F(CChipConfigOfTooManyStores, its_subsystems_are_cut_off_when_it_dies)
{
    {
        CChipConfig chip;
        ReadTooMany(chip, 1, "layerfilter=5");
    }
    ASSERT_EQ(mReader.ElementObservers().size(), 1U);
    EXPECT_TRUE(mLives.Has(1));
    CZynContext context;
    context.Parse("layerfilter=5;layernumber=2;subsystemtype=1");
    EXPECT_TRUE(mReader.ElementObservers()[0]->OnElementFound(Traced(2, 100, "key"), context));
    context.SetTag("insertmode", "overwrite");
    EXPECT_TRUE(mReader.ElementObservers()[0]->OnElementFound(Traced(3, 100, "key"), context));
    EXPECT_FALSE(mLives.Has(1));
}

// The winners of a filtered read live as long as the subsystems that can't be reached any more.
TEST_F(CChipConfigOfTooManyStores, a_filtered_write_still_gives_its_winners)
{
    ReadTooMany(mChip, 1, "layerfilter=5");

    EXPECT_EQ(Written("layerfilter=5"), "1/1: 1");
    EXPECT_TRUE(mWritten);
}

}   // namespace
