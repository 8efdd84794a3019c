// An allocation that fails anywhere in a chip's operation leaks nothing and leaves nothing half done: what is repeated
// afterwards ends as if nothing had happened.

#include "chip_fixture.h"

#include <support/failing_worlds.h>
#include <support/foreign_contexts.h>
#include <support/uid_writer.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

using namespace VrexZynConfigTools;
using namespace VrexZynConfigTools::support;

namespace {

/// A chip with three subsystems of a first, filtered read; a second read may be under way.
struct World
{
    explicit World(
        const std::string & tags = "chip=a_chip_whose_name_is_too_long_for_a_small_string;layerfilter=9")
    {
        mContext.Parse(tags);
        mReader.Delivers(ASubsystem(1).In(SMEM, 1).Tagged("layernumber=1").Holding(NewElement(1, "a")))
            .Delivers(ASubsystem(1).In(EEPROM, 7).Tagged("layernumber=2").Holding(NewElement(2, "a")))
            .Delivers(ASubsystem(2).In(CUR_CFG, 1).Tagged("layernumber=3").Holding(NewElement(3, "b")));
        mReader.SetObserver(*mChip);
        mReader.Read(mContext);
    }

    CElement * NewElement(int uid, const std::string & name)
    {
        return new CElementNumericArray(
            100, "a_key_with_a_very_long_name_" + name, AListOf(new TracedPayload(mLives, uid)), true);
    }

    IConfigReaderObserver & Observer() { return *mChip; }

    void FindSubsystem(const std::string & tags)
    {
        mContext.Parse(tags);
        Observer().OnSubsystemFound(mReader, mContext);
    }

    std::string State() const
    {
        std::string state;
        for (const auto & [key, subsystem] : mChip->Subsystems()) {
            state += key + ":";
            for (const CElement * element : subsystem->Elements())
                state += Numbered(" ", UidOf(*element));
            state += "\n";
        }
        for (const CStoreInfo * store : mChip->Stores())
            state += std::to_string(store->DeviceId()) + "/" + std::to_string(store->StoreId()) + " ";
        return state;
    }

    std::string Written(const std::string & filter)
    {
        UidWriter writer;
        CZynContext context;
        context.SetTag("layerfilter", filter);
        EXPECT_TRUE(mChip->Write(writer, context));
        return writer.Course();
    }

    /// Nothing but what the chip still shows outlives its subsystems.
    void ExpectEndWithoutLeak()
    {
        std::size_t shown = 0;
        for (const auto & [key, subsystem] : mChip->Subsystems())
            shown += subsystem->Elements().size();
        EXPECT_EQ(mLives.Count(), shown);
        mChip.reset();
        EXPECT_EQ(mLives.Count(), 0U);
    }

    Lives mLives;
    CZynContext mContext;
    StoreReportingReader mReader;
    std::unique_ptr<CChipConfig> mChip = std::make_unique<CChipConfig>();
    std::unique_ptr<CElement> mNewcomer;
};

class CChipConfigOutOfMemory : public testing::Test
{
protected:
    using Action = std::function<void(World &)>;

    /// Prepares a world, lets `act` fail in it, repeats it, and compares with a world in which nothing failed.
    void Sweep(const Action & prepare, const Action & act, std::uint64_t atLeast = 1)
    {
        World untroubled;
        prepare(untroubled);
        act(untroubled);
        const std::string expected = untroubled.State();
        const auto failures = FailInEachWorld(
            [&] {
                auto world = std::make_unique<World>();
                prepare(*world);
                return world;
            },
            act,
            [&](World & world, bool failed) {
                if (failed)
                    act(world);
                EXPECT_EQ(world.State(), expected);
                EXPECT_EQ(world.Written("9"), untroubled.Written("9"));
                world.ExpectEndWithoutLeak();
            });
        EXPECT_GE(failures, atLeast);
    }

    static void Nothing(World & /*world*/) {}

    FrameworkErrors mErrors;
};

TEST_F(CChipConfigOutOfMemory, finding_a_new_subsystem)
{
    Sweep(
        Nothing, [](World & world) { world.FindSubsystem("subsystemtype=3;device=1;store=4"); }, 5);
}

TEST_F(CChipConfigOutOfMemory, finding_a_known_subsystem)
{
    Sweep(Nothing, [](World & world) { world.FindSubsystem("subsystemtype=1;device=15;store=7"); });
}

TEST_F(CChipConfigOutOfMemory, ending_a_read)
{
    const auto prepare = [](World & world) {
        world.FindSubsystem("subsystemtype=1;device=1;store=4;layernumber=");
        world.FindSubsystem("subsystemtype=2;device=1;store=4");
        world.mReader.Reports(OTP, 9).Reports(CUR_CFG, 3).Reports(CStoreInfo(EEPROM, 7, 100, 50, 0, 0, true));
    };
    Sweep(
        prepare, [](World & world) { world.Observer().OnReadEnded(world.mReader, world.mContext); }, 10);
}

TEST_F(CChipConfigOutOfMemory, ending_a_read_with_too_many_stores)
{
    const auto make = [] {
        auto world = std::make_unique<World>();
        for (std::uint16_t store = 1; store <= 16; ++store)
            world->mReader.Reports(OTP, store);
        return world;
    };
    const auto end = [](World & world) { world.Observer().OnReadEnded(world.mReader, world.mContext); };
    FailInEachWorld(make, end, [&](World & world, bool failed) {
        if (failed)
            end(world);
        EXPECT_TRUE(world.mChip->Subsystems().empty());
        EXPECT_EQ(world.mLives.Count(), 3U);   // dropped, and never freed
        world.mChip.reset();
        CZynContext context;
        context.SetTag("layerfilter", 9);
        for (IConfigReaderElementObserver * dropped : world.mReader.ElementObservers())
            EXPECT_TRUE(dropped->OnElementFound(AnElement(1).Release(), context));
    });
}

TEST_F(CChipConfigOutOfMemory, ending_a_read_in_which_keys_collapse)
{
    const auto make = [] {
        auto world = std::make_unique<World>();
        world->FindSubsystem("subsystemtype=5;device=12;store=1;layernumber=");
        world->FindSubsystem("subsystemtype=5;device=13;store=1");
        return world;
    };
    const auto end = [](World & world) { world.Observer().OnReadEnded(world.mReader, world.mContext); };
    FailInEachWorld(make, end, [&](World & world, bool failed) {
        if (failed)
            end(world);
        EXPECT_EQ(world.mChip->Subsystems().size(), 4U);
        world.ExpectEndWithoutLeak();
    });
}

TEST_F(CChipConfigOutOfMemory, delivering_an_element_of_a_filtered_read)
{
    for (const char * tags : { "", "insertmode=overwrite", "insertmode=new", "num_indices=1;index1=4" }) {
        const auto make = [tags] {
            auto world = std::make_unique<World>();
            world->mNewcomer.reset(world->NewElement(4, "a"));
            world->mContext.Parse("subsystemtype=1;layernumber=5");
            world->mContext.Parse(tags);
            return world;
        };
        const auto deliver = [](World & world) {
            world.mReader.ElementObservers()[1]->OnElementFound(world.mNewcomer.release(), world.mContext);
        };
        FailInEachWorld(make, deliver, [](World & world, bool) {
            world.Written("9");
            world.mContext.Parse("num_indices=;insertmode=overwrite");
            world.mReader.ElementObservers()[1]->OnElementFound(world.NewElement(5, "a"), world.mContext);
            world.Written("9");
            world.ExpectEndWithoutLeak();
        });
    }
}

TEST_F(CChipConfigOutOfMemory, looking_up)
{
    for (const char * tags : { "layerfilter=9", "layerfilter=;layernumber=1" }) {
        const auto prepare = [tags](World & world) { world.mContext.Parse(tags); };
        Sweep(prepare, [](World & world) {
            world.mContext.SetTag("subsystemtype", 1);
            const bool isThere =
                world.mChip->Element("A_KEY_WITH_A_VERY_LONG_NAME_A", world.mContext).IsValid();
            const bool isThereByNumber = world.mChip->Element("0x64.1", world.mContext).IsValid();
            EXPECT_TRUE(isThere && isThereByNumber);
        });
    }
}

TEST_F(CChipConfigOutOfMemory, looking_up_with_a_foreign_context)
{
    FailInEachWorld([] { return std::make_unique<World>(); },
        [](World & world) {
            MapContext context("subsystemtype=1;layerfilter=9");
            world.mChip->Element(100U, context);
        },
        [](World & world, bool) {
            EXPECT_EQ(MapContext::Live(), 0);
            world.ExpectEndWithoutLeak();
        });
}

TEST_F(CChipConfigOutOfMemory, writing)
{
    for (const char * filter : { "", "9" }) {
        UidWriter writer;
        Sweep(Nothing, [&](World & world) {
            CZynContext context;
            context.SetTag("layerfilter", filter);
            world.mChip->Write(writer, context);
        });
    }
}

TEST_F(CChipConfigOutOfMemory, refusing_a_context)
{
    FailInEachWorld([] { return std::make_unique<World>(); },
        [](World & world) {
            MapContext context("subsystemtype=7;device=1;store=9");
            world.mChip->CreateAndAddSubsystem(context);
            UidWriter writer;
            EXPECT_FALSE(world.mChip->Write(writer, context));
        },
        [](World & world, bool) {
            EXPECT_EQ(world.mChip->Subsystems().size(), 3U);
            world.ExpectEndWithoutLeak();
            ClearErrorOf(GROUP_CORE_CLASSES);
        });
}

TEST_F(CChipConfigOutOfMemory, preparing_for_a_chip)
{
    const auto prepare = [](World & world) { world.mChip->PrepareForChip(0x44); };
    FailInEachWorld([] { return std::make_unique<World>(); }, prepare,
        [&](World & world, bool failed) {
            EXPECT_EQ(world.mLives.Count(), 0U);
            EXPECT_EQ(world.Written("9"), "<]>");
            if (failed)
                prepare(world);
            EXPECT_EQ(world.mChip->Stores().size(), 15U);
            world.ExpectEndWithoutLeak();
        });
}

TEST_F(CChipConfigOutOfMemory, merging_contexts)
{
    CZynContext source;
    source.Parse("a_tag_that_is_too_long_for_a_small_string=and_so_is_its_value_which_must_be_copied");
    Sweep(Nothing, [&](World & world) { world.mChip->MergeSubsystemsContext(source, true); });
}

// Everything is released without memory to spare.
TEST_F(CChipConfigOutOfMemory, clearing_needs_none)
{
    World world;
    FailAllocationsAfter(0);
    world.mChip->Clear();
    world.mChip.reset();
    LetAllocationsPass();
    EXPECT_EQ(world.mLives.Count(), 0U);
}

TEST_F(CChipConfigOutOfMemory, the_end_of_a_chip_needs_none)
{
    World world;
    World other;
    for (std::uint16_t store = 1; store <= 16; ++store)
        other.mReader.Reports(OTP, store);
    other.Observer().OnReadEnded(other.mReader, other.mContext);
    FailAllocationsAfter(0);
    world.mChip.reset();
    other.mChip.reset();
    LetAllocationsPass();
    EXPECT_EQ(world.mLives.Count(), 0U);
    EXPECT_EQ(other.mLives.Count(), 3U);
}

}   // namespace
