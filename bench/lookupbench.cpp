#include "comparison.h"
#include "generatedchip.h"
#include "table.h"
#include "yardstick.h"

#include <configtools/keywords.h>

#include <algorithm>
#include <utility>

using namespace VrexZynConfigTools;

namespace bench {

namespace {

constexpr std::size_t SHORTEST_SEQUENCE = 1 << 15;

/// The numbers and names to ask for, in the order of asking.
struct Sequence
{
    explicit Sequence(const Keys & keys)
    {
        std::mt19937 random(1);
        for (Key & key : DrawKeys(keys, std::max(SHORTEST_SEQUENCE, keys.size()), random)) {
            mIds.push_back(key.mId);
            mNames.push_back(std::move(key.mName));
        }
    }

    const std::vector<std::uint32_t> & Wanted(std::uint32_t) const { return mIds; }
    const std::vector<std::string> & Wanted(const std::string &) const { return mNames; }

    std::vector<std::uint32_t> mIds;
    std::vector<std::string> mNames;
};

/// A generated chip with all that the lookups need. One at a time: the largest takes some hundred megabytes.
struct Stage
{
    Stage(std::size_t keysPerLayer, int layers)
        : mChip(keysPerLayer, layers)
        , mTop(mChip.InTopLayer())
        , mAny(mChip.InAnyLayer())
        , mBottomOnly(mChip.InBottomLayerOnly())
        , mNone(mChip.InNoLayer())
        , mContext(mChip.TopContext())
        , mFiltered(mChip.TopContext())
    {
        mFiltered.SetTag(keywords::TAG_LAYER_FILTER, 15);
        for (CElement * element : mChip.TopSubsystem().Elements()) {
            mMaps.mById.emplace(element->PsId(), element);
            mMaps.mByName.emplace(element->Name(), element);
        }
    }

    GeneratedChip mChip;
    Sequence mTop;
    Sequence mAny;
    Sequence mBottomOnly;
    Sequence mNone;
    CZynContext mContext;
    CZynContext mFiltered;
    Maps mMaps;
};

Stage & StageOf(std::size_t keysPerLayer, int layers)
{
    static std::unique_ptr<Stage> stage;
    static std::pair<std::size_t, int> present;
    if (stage == nullptr || present != std::pair(keysPerLayer, layers)) {
        stage.reset();
        stage = std::make_unique<Stage>(keysPerLayer, layers);
        present = { keysPerLayer, layers };
    }
    return *stage;
}

template <typename KeyT, typename LookUpT>
double TimeOfLookups(const std::vector<KeyT> & wanted, LookUpT lookUp)
{
    return TimeOf([&] {
        for (const KeyT & key : wanted)
            benchmark::DoNotOptimize(lookUp(key));
    });
}

/// One subsystem against the maps.
template <typename KeyT>
void OfSubsystem(benchmark::State & state, Stage & stage, Sequence Stage::*sequence)
{
    CSubsystemConfig & subsystem = stage.mChip.TopSubsystem();
    const std::vector<KeyT> & wanted = (stage.*sequence).Wanted(KeyT());
    Compare(
        state, wanted.size(),
        [&] { return TimeOfLookups(wanted, [&](const KeyT & key) { return &subsystem.Element(key); }); },
        [&] { return TimeOfLookups(wanted, [&](const KeyT & key) { return stage.mMaps.Find(key); }); });
}

/// A chip without a filter against the maps of its top layer.
template <typename KeyT>
void OfChip(benchmark::State & state, Stage & stage, Sequence Stage::*sequence)
{
    const CChipConfig & chip = stage.mChip.Chip();
    const std::vector<KeyT> & wanted = (stage.*sequence).Wanted(KeyT());
    Compare(
        state, wanted.size(),
        [&] {
            return TimeOfLookups(wanted, [&](const KeyT & key) { return &chip.Element(key, stage.mContext); });
        },
        [&] { return TimeOfLookups(wanted, [&](const KeyT & key) { return stage.mMaps.Find(key); }); });
}

/// A chip with a filter against the same without.
template <typename KeyT>
void OfFilteredChip(benchmark::State & state, Stage & stage, Sequence Stage::*sequence)
{
    const CChipConfig & chip = stage.mChip.Chip();
    const std::vector<KeyT> & wanted = (stage.*sequence).Wanted(KeyT());
    const auto timeOf = [&](CZynContext & context) {
        return TimeOfLookups(wanted, [&](const KeyT & key) { return &chip.Element(key, context); });
    };
    Compare(
        state, wanted.size(), [&] { return timeOf(stage.mFiltered); }, [&] { return timeOf(stage.mContext); });
}

template <typename KeyT>
void RegisterFor(const std::string & key, std::size_t keysPerLayer, int layers)
{
    const auto add = [=](const std::string & row, auto function, Sequence Stage::*sequence) {
        Register(row, keysPerLayer,
            [=](benchmark::State & state) { function(state, StageOf(keysPerLayer, layers), sequence); });
    };
    if (layers == 1) {
        add("subsystem/" + key + "/hit", &OfSubsystem<KeyT>, &Stage::mTop);
        add("subsystem/" + key + "/miss", &OfSubsystem<KeyT>, &Stage::mNone);
    }
    const std::string chip = "/" + key + "/" + std::to_string(layers);
    add("chip" + chip, &OfChip<KeyT>, &Stage::mTop);
    add("filter/top" + chip, &OfFilteredChip<KeyT>, &Stage::mTop);
    add("filter/any" + chip, &OfFilteredChip<KeyT>, &Stage::mAny);
    add("filter/bottom" + chip, &OfFilteredChip<KeyT>, &Stage::mBottomOnly);
    add("filter/none" + chip, &OfFilteredChip<KeyT>, &Stage::mNone);
}

}   // namespace

void RegisterLookups()
{
    for (const std::size_t keysPerLayer : KEY_COUNTS) {
        for (const int layers : LAYER_COUNTS) {
            RegisterFor<std::uint32_t>("id", keysPerLayer, layers);
            RegisterFor<std::string>("name", keysPerLayer, layers);
        }
    }
}

}   // namespace bench
