#include <configtools/chipconfig.h>
#include <configtools/subsystemconfig.h>
#include <configtools/zyncontext.h>
#include <support/allocations.h>
#include <support/element_builder.h>
#include <support/scripted_reader.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <list>
#include <memory>
#include <string>
#include <vector>

namespace VrexZynConfigTools {
namespace {

using support::AllocatedBytes;
using support::AllocationCount;
using support::AnElement;
using support::ASubsystem;

template <typename ActT>
std::uint64_t AllocationsOf(ActT act)
{
    const std::uint64_t before = AllocationCount();
    act();
    return AllocationCount() - before;
}

/// As long as a real chip's, so that a copy of it would be allocated.
std::string NameOf(std::uint32_t id)
{
    return "RADIO_TX_POWER_TRIM_" + std::to_string(id);
}

class Allocations : public testing::Test
{
protected:
    static CZynContext ContextOf(const std::string & insertMode)
    {
        CZynContext context;
        context.SetTag("insertmode", insertMode);
        return context;
    }

    static std::vector<CElement *> NewElements(std::uint32_t count)
    {
        std::vector<CElement *> elements;
        for (std::uint32_t id = 1; id <= count; ++id)
            elements.push_back(AnElement(id).Named(NameOf(id)).Number(id).Release());
        return elements;
    }

    void Add(const std::vector<CElement *> & elements, CZynContext & context)
    {
        IConfigReaderElementObserver & observer = mSubsystem;
        for (CElement * const element : elements)
            observer.OnElementFound(element, context);
    }

    /// Delivers elements and then, with the insert mode, new ones of the same keys; the second delivery counts.
    std::uint64_t AllocationsOfDeliveringAgain(const std::string & insertMode)
    {
        Add(NewElements(1000), mContext);
        CZynContext context = ContextOf(insertMode);
        Add(NewElements(1), context);   // reads the tags of the context
        const std::vector<CElement *> elements = NewElements(1000);
        return AllocationsOf([&] { Add(elements, context); });
    }

    CZynContext mContext;
    CSubsystemConfig mSubsystem{ mContext, nullptr };
};

TEST_F(Allocations, the_counter_counts)
{
    EXPECT_EQ(AllocationsOf([] { delete new std::string; }), 1U);
    EXPECT_EQ(AllocationsOf([this] { mSubsystem.RemoveElement(1, nullptr); }), 0U);
    EXPECT_GT(AllocationsOf([this] { Add({ AnElement(1).Number(1).Release() }, mContext); }), 1U);
}

TEST_F(Allocations, a_lookup_in_a_subsystem_makes_none)
{
    Add(NewElements(1000), mContext);
    const std::string name = NameOf(500);
    const std::string lowered = "radio_tx_power_trim_500";
    const std::string unknown = NameOf(1001);

    EXPECT_EQ(AllocationsOf([&] {
        ASSERT_TRUE(mSubsystem.Element(500).IsValid());
        ASSERT_FALSE(mSubsystem.Element(1001).IsValid());
        ASSERT_TRUE(mSubsystem.Element(name).IsValid());
        ASSERT_TRUE(mSubsystem.Element(lowered).IsValid());
        ASSERT_FALSE(mSubsystem.Element(unknown).IsValid());
    }),
        0U);
}

TEST_F(Allocations, an_element_that_is_stored_costs_one_and_the_growth_of_the_index)
{
    constexpr std::uint32_t COUNT = 10'000;
    const std::vector<CElement *> elements = NewElements(COUNT);
    const std::uint64_t all = AllocationsOf([&] { Add(elements, mContext); });

    // Three tables, each of which grows by a quarter now and then, and what a context keeps of its tags.
    constexpr std::uint64_t GROWTH = 3 * 40 + 3;
    EXPECT_GE(all, COUNT);
    EXPECT_LE(all, COUNT + GROWTH);
}

#ifndef __SANITIZE_ADDRESS__   // a sanitizer's heap rounds sizes in ways of its own

/// The bytes of as many elements in a subsystem, in percent of those in a list beside an empty subsystem.
template <typename MakeT>
std::uint64_t PercentOfHeap(std::uint32_t count, MakeT make)
{
    CZynContext context;
    const auto deliver = [&context](CSubsystemConfig & subsystem, CElement * element) {
        static_cast<IConfigReaderElementObserver &>(subsystem).OnElementFound(element, context);
    };
    // Nothing is freed: of freed memory the library might make elements that seem to take none.
    static std::list<CSubsystemConfig> made;
    deliver(
        made.emplace_back(context, nullptr), make(1));   // now the context has all that it keeps of its tags
    const std::uint64_t before = AllocatedBytes();
    CSubsystemConfig & subsystem = made.emplace_back(context, nullptr);
    std::list<std::unique_ptr<CElement>> elements;
    for (std::uint32_t id = 1; id <= count; ++id)
        elements.emplace_back(make(id));
    const std::uint64_t inList = AllocatedBytes() - before;
    for (std::unique_ptr<CElement> & element : elements)
        deliver(subsystem, element.release());
    elements.clear();
    return (AllocatedBytes() - before) * 100 / inList;
}

TEST_F(Allocations, finding_takes_less_than_a_third_of_the_memory_at_any_number_of_elements)
{
    const auto named = [](std::uint32_t id) { return AnElement(id).Named(NameOf(id)).Number(id).Release(); };
    const auto nameless = [](std::uint32_t id) { return AnElement(id).Number(id).Release(); };
    const auto row = [](std::uint32_t id) -> CElement * {
        return new CIndexedElement(100, "RADIO_TX_POWER_TABLE", { id / 100, id % 100 },
            support::AListOf(new CUint32Payload(id)), true);
    };
    for (std::uint32_t count = 1; count < 10'000; count += 1 + count / 15) {
        const std::uint64_t limit = count < 32 ? 185 : 130;   // the first tables have some room
        EXPECT_LE(PercentOfHeap(count, named), limit) << count;
        EXPECT_LE(PercentOfHeap(count, nameless), limit) << count;
        EXPECT_LE(PercentOfHeap(count, row), limit) << count;
    }
}

#endif

TEST_F(Allocations, an_element_that_finds_room_in_the_index_costs_one)
{
    for (const std::string mode : { "", "new", "overwrite" }) {
        CZynContext context = ContextOf(mode);
        Add(NewElements(100), context);
        for (std::uint32_t id = 1; id <= 100; ++id)
            mSubsystem.RemoveElement(id, nullptr);
        const std::vector<CElement *> elements = NewElements(100);

        EXPECT_EQ(AllocationsOf([&] { Add(elements, context); }), 100U) << mode;
        for (std::uint32_t id = 1; id <= 100; ++id)
            mSubsystem.RemoveElement(id, nullptr);
    }
}

TEST_F(Allocations, an_element_that_is_refused_costs_none)
{
    EXPECT_EQ(AllocationsOfDeliveringAgain("new"), 0U);
    EXPECT_EQ(mSubsystem.Elements().size(), 1000U);
}

TEST_F(Allocations, an_element_that_replaces_another_costs_none)
{
    EXPECT_EQ(AllocationsOfDeliveringAgain("overwrite"), 0U);
    EXPECT_EQ(mSubsystem.Elements().size(), 1000U);
}

/// Fifteen layers. Number 1 is in all of them, 100 plus the layer in that one alone.
class ChipAllocations : public testing::Test
{
protected:
    ChipAllocations()
    {
        support::ScriptedReader reader;
        for (int layer = 1; layer <= 15; ++layer) {
            const auto own = static_cast<std::uint32_t>(100 + layer);
            reader.Delivers(ASubsystem(1)
                                .In(IStoreManager::DEVICE_EEPROM, layer)
                                .Holding(AnElement(1).Named(NameOf(1)).Number(1).Release())
                                .Holding(AnElement(own).Named(NameOf(own)).Number(1).Release()));
        }
        reader.ReadInto(mChip);
    }

    /// Of lookups of numbers and names, found in the topmost layer, in the lowest, and nowhere.
    std::uint64_t AllocationsOfLookups(IConfigContext & context, bool reachesLowest)
    {
        const auto lookUp = [&] {
            ASSERT_TRUE(mChip.Element(1, context).IsValid());
            ASSERT_EQ(mChip.Element(101, context).IsValid(), reachesLowest);
            ASSERT_FALSE(mChip.Element(99, context).IsValid());
            ASSERT_TRUE(mChip.Element(mInAll, context).IsValid());
            ASSERT_EQ(mChip.Element(mInLowest, context).IsValid(), reachesLowest);
            ASSERT_FALSE(mChip.Element(mNowhere, context).IsValid());
        };
        lookUp();   // reads the tags of the context
        return AllocationsOf(lookUp);
    }

    const std::string mInAll = NameOf(1);
    const std::string mInLowest = NameOf(101);
    const std::string mNowhere = NameOf(99);
    CChipConfig mChip;
};

TEST_F(ChipAllocations, a_lookup_in_one_layer_makes_none)
{
    CZynContext context;
    context.Parse("subsystemtype=1;layernumber=15");

    EXPECT_EQ(AllocationsOfLookups(context, false), 0U);
}

TEST_F(ChipAllocations, a_lookup_through_all_layers_makes_none)
{
    CZynContext context;
    context.Parse("subsystemtype=1;layerfilter=15");

    EXPECT_EQ(AllocationsOfLookups(context, true), 0U);
}

}   // namespace
}   // namespace VrexZynConfigTools
