// An allocation that fails anywhere in an operation leaves list and index in step, and nothing leaks: the element handed
// over is the subsystem's in every case.

#include <configtools/subsystemconfig.h>
#include <configtools/zyncontext.h>
#include <support/element_builder.h>
#include <support/element_observers.h>
#include <support/failing_worlds.h>
#include <support/foreign_contexts.h>
#include <support/walk_model.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

using namespace VrexZynConfigTools;
using namespace VrexZynConfigTools::support;

namespace {

constexpr int NEWCOMER = 5000;   // its number in Lives

/// A subsystem with `count` elements: every fifth is a row, every third shares the number of its neighbour.
struct World
{
    World(unsigned count, bool withForeign)
    {
        CZynContext context;
        for (unsigned uid = 0; uid < count; ++uid) {
            ModelElement element{ static_cast<int>(uid),
                { 100 + uid - (uid % 3 == 1 ? 1 : 0), NameOf(uid), false, {} }, 1,
                withForeign && uid == count / 2 ? Rule::AS_ITS_BASE : Rule::LIBRARY };
            if (uid % 5 == 4) {
                element.mView.mIsRow = true;
                element.mView.mIndices = { uid, 7 };
            }
            Reader().OnElementFound(MakeTwin(element, mLives), context);
            mBefore.push_back(element.mUid);
        }
        mObserver.Forget();
    }

    static std::string NameOf(unsigned uid) { return Numbered("A_name_too_long_for_a_small_string_", uid / 2); }

    IConfigReaderElementObserver & Reader() { return mSubsystem; }

    std::vector<int> Uids()
    {
        std::vector<int> uids;
        for (const CElement * element : mSubsystem.Elements())
            uids.push_back(UidOf(*element));
        return uids;
    }

    /// Every lookup finds what a walk of the list finds.
    void ExpectInStep()
    {
        WalkModel model;
        for (const CElement * element : mSubsystem.Elements())
            model.OnElementFound({ UidOf(*element), ViewOf(*element), 1, Rule::LIBRARY }, {});
        const auto count = static_cast<unsigned>(mBefore.size());
        for (unsigned i = 0; i < count + 2; ++i) {
            ASSERT_EQ(UidOf(mSubsystem.Element(100 + i)), model.Element(100 + i));
            for (const std::string & key : { NameOf(i), NameOf(i) + ".7", Numbered("", 100 + i),
                     Numbered("", 100 + i) + "." + std::to_string(i) + ".7" })
                ASSERT_EQ(UidOf(mSubsystem.Element(key)), model.Element(key)) << key;
        }
        for (const std::string key : { "9999", "9999.3", "newcomer", "NEWCOMER.3" })
            ASSERT_EQ(UidOf(mSubsystem.Element(key)), model.Element(key)) << key;
        ASSERT_EQ(mLives.Count(), mSubsystem.Elements().size());
    }

    Lives mLives;
    RecordingElementObserver mObserver;
    CZynContext mOwn;
    std::vector<int> mBefore;
    std::unique_ptr<CElement> mNewcomer;
    std::unique_ptr<IConfigContext> mContext;
    CSubsystemConfig mSubsystem{ mOwn, &mObserver };
};

struct Case
{
    const char * mName;
    unsigned mCount;
    bool mForeign = false;
};

void PrintTo(const Case & filled, std::ostream * stream)
{
    *stream << filled.mName;
}

class CSubsystemConfigOutOfMemory : public testing::TestWithParam<Case>
{
protected:
    /// A world in which an element with this number and name is about to be handed over with these tags.
    static std::unique_ptr<World> Awaiting(std::uint32_t id, const std::string & name, const std::string & tags)
    {
        auto world = std::make_unique<World>(GetParam().mCount, GetParam().mForeign);
        world->mNewcomer = std::make_unique<CElementNumericArray>(
            id, name, AListOf(new TracedPayload(world->mLives, NEWCOMER)), true);
        world->mContext = std::make_unique<CZynContext>();
        world->mContext->Parse(tags);
        return world;
    }

    static void HandOver(World & world)
    {
        world.Reader().OnElementFound(world.mNewcomer.release(), *world.mContext);
    }

    /// Hands such an element over. The list must be as before, or as `expected` says.
    static void Sweep(std::uint32_t id, const std::string & name, const std::string & tags,
        const std::function<std::vector<int>(std::vector<int>)> & expected)
    {
        const auto failures = FailInEachWorld([&] { return Awaiting(id, name, tags); }, HandOver,
            [&](World & world, bool failed) {
                const auto after = expected(world.mBefore);
                EXPECT_TRUE(world.Uids() == after || (failed && world.Uids() == world.mBefore));
                world.ExpectInStep();
                world.mContext->Parse("num_indices=;insertmode=");
                world.Reader().OnElementFound(
                    AnElement(9999).Named("Newcomer").Number(1).Release(), *world.mContext);
                EXPECT_EQ(world.mSubsystem.Elements(9999).back(), &world.mSubsystem.Element(9999U));
            });
        EXPECT_GT(failures, 0U);
    }
};

std::vector<int> WithNewcomer(std::vector<int> uids)
{
    uids.push_back(NEWCOMER);
    return uids;
}

TEST_P(CSubsystemConfigOutOfMemory, appending)
{
    Sweep(9999, "Newcomer", "", WithNewcomer);
    Sweep(9999, "Newcomer", "insertmode=new", WithNewcomer);
    Sweep(100, World::NameOf(0), "", WithNewcomer);
}

TEST_P(CSubsystemConfigOutOfMemory, making_a_row)
{
    Sweep(9999, "Newcomer_with_a_long_name_to_copy", "num_indices=1;index1=3;index2=4", WithNewcomer);
    Sweep(9999, "Newcomer", "num_indices=1;index1=3;insertmode=overwrite", WithNewcomer);
}

TEST_P(CSubsystemConfigOutOfMemory, replacing)
{
    if (GetParam().mCount == 0)
        return Sweep(100, "Newcomer", "insertmode=overwrite", WithNewcomer);
    const auto inFirstPlace = [](std::vector<int> uids) {
        uids.front() = NEWCOMER;
        return uids;
    };
    Sweep(100, "A_completely_different_and_very_long_name", "insertmode=overwrite", inFirstPlace);
    Sweep(100, World::NameOf(0), "insertmode=overwrite;num_indices=1;index1=1", inFirstPlace);
}

TEST_P(CSubsystemConfigOutOfMemory, refusing)
{
    if (GetParam().mCount == 0)
        return Sweep(100, "Newcomer", "insertmode=new", WithNewcomer);
    Sweep(100, "any", "insertmode=new", [](const std::vector<int> & uids) { return uids; });
}

TEST_P(CSubsystemConfigOutOfMemory, taking_a_foreign_context)
{
    FailInEachWorld(
        [] {
            auto world = Awaiting(9999, "Newcomer", "");
            world->mContext = std::make_unique<MapContext>("num_indices=1;index1=3");
            return world;
        },
        HandOver, [](World & world, bool) { world.ExpectInStep(); });
}

TEST_P(CSubsystemConfigOutOfMemory, removing)
{
    const std::vector<std::uint32_t> indices{ 4, 7 };
    const std::vector<std::function<void(World &)>> removals{
        [](World & world) { world.mSubsystem.RemoveElement(100U, nullptr); },
        [](World & world) { world.mSubsystem.RemoveElement(World::NameOf(0), nullptr); },
        [](World & world) { world.mSubsystem.RemoveElement(World::NameOf(4) + ".4.7", nullptr); },
        [&](World & world) { world.mSubsystem.RemoveElement(World::NameOf(4), &indices); },
    };
    for (const auto & remove : removals) {
        FailInEachWorld([] { return std::make_unique<World>(GetParam().mCount, GetParam().mForeign); }, remove,
            [](World & world, bool) { world.ExpectInStep(); });
    }
}

TEST_P(CSubsystemConfigOutOfMemory, looking_up)
{
    FailInEachWorld([] { return std::make_unique<World>(GetParam().mCount, GetParam().mForeign); },
        [](World & world) {
            world.mSubsystem.Element(World::NameOf(4) + ".4.7");
            world.mSubsystem.Element("12abc");
            world.mSubsystem.Elements(100);
        },
        [](World & world, bool) {
            EXPECT_EQ(world.Uids(), world.mBefore);
            world.ExpectInStep();
        });
}

// As long as a foreign element is held the list is walked, and a walk copies names.
TEST(CSubsystemConfigOutOfMemory, looking_up_after_the_last_foreign_element_has_gone)
{
    CZynContext overwriting;
    overwriting.SetTag("insertmode", "overwrite");
    for (const bool isRemoved : { true, false }) {
        World world(9, false);
        CZynContext context;
        world.Reader().OnElementFound(new ForeignRaw(500, "foreign", {}, true), context);
        if (isRemoved)
            world.mSubsystem.RemoveElement(500U, nullptr);
        else
            world.Reader().OnElementFound(AnElement(500).Release(), overwriting);
        const std::string name = World::NameOf(0);
        const std::uint64_t before = AllocationCount();
        const bool isThere =
            world.mSubsystem.Element(name).IsValid() && world.mSubsystem.Element(100U).IsValid();
        EXPECT_EQ(AllocationCount(), before) << isRemoved;
        EXPECT_TRUE(isThere);
    }
}

TEST(CSubsystemConfigOutOfMemory, being_made)
{
    const auto make = [] {
        auto context = std::make_unique<CZynContext>();
        context->Parse("chip=a_chip_with_a_name_that_is_too_long_for_a_small_string;subsystemtype=3");
        return context;
    };
    const auto failures = FailInEachWorld(
        make, [](CZynContext & context) { EXPECT_EQ(CSubsystemConfig(context, nullptr).Type(), 3); },
        [](CZynContext & context, bool) { EXPECT_EQ(context.SubsystemType(), 3); });
    EXPECT_GT(failures, 1U);
}

INSTANTIATE_TEST_SUITE_P(Filled, CSubsystemConfigOutOfMemory,
    testing::Values(Case{ "with_0", 0 }, Case{ "with_1", 1 }, Case{ "with_3", 3 }, Case{ "with_6", 6 },
        Case{ "with_7", 7 }, Case{ "with_8", 8 }, Case{ "with_12", 12 }, Case{ "with_15", 15 },
        Case{ "with_16", 16 }, Case{ "with_17", 17 }, Case{ "with_24", 24 }, Case{ "with_32", 32 },
        Case{ "with_64", 64 }, Case{ "with_100", 100 }, Case{ "with_128", 128 },
        Case{ "with_a_foreign_of_9", 9, true }, Case{ "with_a_foreign_of_40", 40, true }),
    [](const testing::TestParamInfo<Case> & filled) { return std::string(filled.param.mName); });

}   // namespace
