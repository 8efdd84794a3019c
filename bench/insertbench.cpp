#include "comparison.h"
#include "generatedchip.h"
#include "table.h"
#include "yardstick.h"

#include <configtools/keywords.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

using namespace VrexZynConfigTools;

namespace bench {

namespace {

constexpr std::size_t FEWEST_ELEMENTS = 20'000;   // in one turn

/// Elements and what takes them, as often as it takes to make a turn long enough to be measured.
template <typename TakerT>
struct Round
{
    std::unique_ptr<TakerT> mTaker;
    std::vector<CElement *> mElements;   // owned by the taker in the end
};

template <typename TakerT>
using Rounds = std::vector<Round<TakerT>>;

std::size_t RoundsFor(const Keys & keys)
{
    return std::max<std::size_t>(1, FEWEST_ELEMENTS / keys.size());
}

std::vector<CElement *> MakeElements(const Keys & keys)
{
    std::vector<CElement *> elements;
    elements.reserve(keys.size());
    for (const Key & key : keys)
        elements.push_back(MakeElement(key).release());
    return elements;
}

/// A subsystem and the context that a reader delivers with.
class Subsystem
{
public:
    explicit Subsystem(const std::string & insertMode)
    {
        mContext.SetTag(keywords::TAG_SUBSYSTEM_TYPE, static_cast<int>(SUBSYSTEM_BT));
        mContext.SetTag(keywords::TAG_INSERT_MODE, insertMode);
        mSubsystem = std::make_unique<CSubsystemConfig>(mContext, nullptr);
    }

    void Take(CElement * element)
    {
        IConfigReaderElementObserver & observer = *mSubsystem;
        observer.OnElementFound(element, mContext);
    }

private:
    CZynContext mContext;
    std::unique_ptr<CSubsystemConfig> mSubsystem;
};

/// Two maps that do as the insert mode says: look, refuse or replace, delete.
class MapPair
{
public:
    explicit MapPair(const std::string & insertMode)
        : mReplaces(insertMode == keywords::INSERT_OVERWRITE)
    {}
    MapPair(const MapPair &) = delete;
    MapPair & operator=(const MapPair &) = delete;
    ~MapPair()
    {
        for (const auto & [id, element] : mMaps.mById)
            delete element;
    }

    void Take(CElement * element)
    {
        const auto [place, isNew] = mMaps.mById.emplace(element->PsId(), element);
        if (isNew) {
            mMaps.mByName.emplace(element->Name(), element);
        } else if (mReplaces) {
            delete place->second;
            place->second = element;
            mMaps.mByName[element->Name()] = element;
        } else {
            delete element;
        }
    }

private:
    bool mReplaces;
    Maps mMaps;
};

template <typename TakerT>
Rounds<TakerT> MakeRounds(const Keys & keys, const std::string & insertMode)
{
    Rounds<TakerT> rounds;
    for (std::size_t count = RoundsFor(keys); count != 0; --count)
        rounds.push_back({ std::make_unique<TakerT>(insertMode), MakeElements(keys) });
    return rounds;
}

/// The heap puts off joining what was freed until the next large allocation. That belongs to neither side.
void SettleHeap()
{
    void * const large = std::malloc(std::size_t{ 1 } << 16U);
    benchmark::DoNotOptimize(large);
    std::free(large);
}

template <typename TakerT>
double TimeOfDelivery(Rounds<TakerT> & rounds)
{
    SettleHeap();
    return TimeOf([&rounds] {
        for (Round<TakerT> & round : rounds) {
            for (CElement * const element : round.mElements)
                round.mTaker->Take(element);
        }
    });
}

/// All elements are new to what takes them.
template <typename TakerT>
double TimeOfNewElements(const Keys & keys, const std::string & insertMode)
{
    Rounds<TakerT> rounds = MakeRounds<TakerT>(keys, insertMode);
    return TimeOfDelivery(rounds);
}

/// All elements are there already; one of each two is deleted, and that is part of the time.
template <typename TakerT>
class KnownElements
{
public:
    KnownElements(const Keys & keys, const std::string & insertMode)
        : mKeys(keys)
        , mRounds(MakeRounds<TakerT>(keys, insertMode))
    {
        TimeOfDelivery(mRounds);
    }

    double TimeOfNextDelivery()
    {
        for (Round<TakerT> & round : mRounds)
            round.mElements = MakeElements(mKeys);
        return TimeOfDelivery(mRounds);
    }

private:
    const Keys & mKeys;
    Rounds<TakerT> mRounds;
};

std::size_t OperationsOf(const Keys & keys)
{
    return RoundsFor(keys) * keys.size();
}

void OfNewElements(benchmark::State & state, const Keys & keys, const std::string & insertMode)
{
    Compare(
        state, OperationsOf(keys), [&] { return TimeOfNewElements<Subsystem>(keys, insertMode); },
        [&] { return TimeOfNewElements<MapPair>(keys, insertMode); });
}

void OfKnownElements(benchmark::State & state, const Keys & keys, const std::string & insertMode)
{
    KnownElements<Subsystem> subject(keys, insertMode);
    Compare(
        state, OperationsOf(keys), [&] { return subject.TimeOfNextDelivery(); },
        [&] { return TimeOfNewElements<MapPair>(keys, insertMode); });
}

void OfKnownElementsLikeWithLike(benchmark::State & state, const Keys & keys, const std::string & insertMode)
{
    KnownElements<Subsystem> subject(keys, insertMode);
    KnownElements<MapPair> yardstick(keys, insertMode);
    Compare(
        state, OperationsOf(keys), [&] { return subject.TimeOfNextDelivery(); },
        [&] { return yardstick.TimeOfNextDelivery(); });
}

}   // namespace

void RegisterInserts()
{
    for (const std::size_t keysPerLayer : KEY_COUNTS) {
        const auto add = [keysPerLayer](
                             const std::string & row, auto function, const std::string & insertMode) {
            Register(row, keysPerLayer,
                [=](benchmark::State & state) { function(state, MakeKeys(keysPerLayer), insertMode); });
        };
        add("insert/append", &OfNewElements, keywords::INSERT_APPEND);
        add("insert/new", &OfNewElements, keywords::INSERT_NEW);
        add("insert/overwrite", &OfNewElements, keywords::INSERT_OVERWRITE);
        add("insert/new/refused", &OfKnownElements, keywords::INSERT_NEW);
        add("insert/overwrite/replaced", &OfKnownElements, keywords::INSERT_OVERWRITE);
        add("same/new/refused", &OfKnownElementsLikeWithLike, keywords::INSERT_NEW);
        add("same/overwrite/replaced", &OfKnownElementsLikeWithLike, keywords::INSERT_OVERWRITE);
    }
}

}   // namespace bench
