// Table rows, names in other scripts, and the memory that finding takes.

#include "comparison.h"
#include "generatedchip.h"
#include "table.h"

#include <configtools/keywords.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <list>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include <malloc.h>

using namespace VrexZynConfigTools;

namespace bench {

namespace {

constexpr std::uint32_t TABLE_ID = 100;
constexpr char TABLE_NAME[] = "RADIO_TX_POWER_TABLE";
constexpr std::size_t FEWEST_OPERATIONS = 20'000;   // in one turn

/// A subsystem outside a chip, filled from outside.
class Subsystem
{
public:
    explicit Subsystem(const std::string & insertMode = "")
    {
        mContext.SetTag(keywords::TAG_INSERT_MODE, insertMode);
        mSubsystem = std::make_unique<CSubsystemConfig>(mContext, nullptr);
    }
    void Take(std::unique_ptr<CElement> element)
    {
        IConfigReaderElementObserver & observer = *mSubsystem;
        observer.OnElementFound(element.release(), mContext);
    }
    CSubsystemConfig & operator*() { return *mSubsystem; }

private:
    CZynContext mContext;
    std::unique_ptr<CSubsystemConfig> mSubsystem;
};

/// The plain keys that rows are compared with, and rows of one table in the same number.
struct PlainKeys
{
    explicit PlainKeys(std::size_t count)
        : mKeys(MakeKeys(count))
    {}
    std::size_t Count() const { return mKeys.size(); }
    std::unique_ptr<CElement> Make(std::size_t at) const { return MakeElement(mKeys[at]); }
    std::string Text(std::size_t at) const { return mKeys[at].mName; }
    void Remove(CSubsystemConfig & subsystem, std::size_t at) const
    {
        subsystem.RemoveElement(mKeys[at].mId, nullptr);
    }

    Keys mKeys;
};

struct TableRows
{
    explicit TableRows(std::size_t count)
        : mCount(count)
    {}
    std::size_t Count() const { return mCount; }
    static std::vector<std::uint32_t> Indices(std::size_t at)
    {
        return { static_cast<std::uint32_t>(at / 100), static_cast<std::uint32_t>(at % 100) };
    }
    std::unique_ptr<CElement> Make(std::size_t at) const
    {
        auto payload = std::make_unique<CUint8Payload>(static_cast<std::uint8_t>(at));
        auto row = std::make_unique<CIndexedElement>(
            TABLE_ID, TABLE_NAME, Indices(at), std::vector<IPayload *>{ payload.get() }, true);
        payload.release();   // the row owns it now
        return row;
    }
    std::string Text(std::size_t at) const
    {
        return std::string(TABLE_NAME) + "." + std::to_string(at / 100) + "." + std::to_string(at % 100);
    }
    void Remove(CSubsystemConfig & subsystem, std::size_t at) const
    {
        const auto indices = Indices(at);
        subsystem.RemoveElement(TABLE_ID, &indices);
    }

    std::size_t mCount;
};

std::vector<std::size_t> ShuffledNumbers(std::size_t count)
{
    std::vector<std::size_t> numbers(count);
    for (std::size_t at = 0; at < count; ++at)
        numbers[at] = at;
    std::shuffle(numbers.begin(), numbers.end(), std::mt19937(1));
    return numbers;
}

template <typename SourceT>
void Fill(Subsystem & subsystem, const SourceT & source)
{
    for (std::size_t at = 0; at < source.Count(); ++at)
        subsystem.Take(source.Make(at));
}

/// `act` with each number below the count in random order, as often as it takes to be measured.
template <typename ActT>
double TimeInRandomOrder(std::size_t count, std::size_t turns, ActT act)
{
    const std::vector<std::size_t> numbers = ShuffledNumbers(count);
    return TimeOf([&] {
        for (std::size_t turn = 0; turn < turns; ++turn) {
            for (const std::size_t at : numbers)
                act(turn, at);
        }
    });
}

std::size_t TurnsFor(std::size_t count)
{
    return std::max<std::size_t>(1, FEWEST_OPERATIONS / count);
}

template <typename SourceT>
double TimeOfLookups(const SourceT & source)
{
    Subsystem subsystem;
    Fill(subsystem, source);
    std::vector<std::string> texts;
    for (std::size_t at = 0; at < source.Count(); ++at)
        texts.push_back(source.Text(at));
    return TimeInRandomOrder(source.Count(), TurnsFor(source.Count()),
        [&](std::size_t, std::size_t at) { benchmark::DoNotOptimize(&(*subsystem).Element(texts[at])); });
}

template <typename SourceT>
double TimeOfRemovals(const SourceT & source)
{
    std::vector<Subsystem> subsystems(TurnsFor(source.Count()));
    for (Subsystem & subsystem : subsystems)
        Fill(subsystem, source);
    return TimeInRandomOrder(source.Count(), subsystems.size(),
        [&](std::size_t turn, std::size_t at) { source.Remove(*subsystems[turn], at); });
}

/// Everything is delivered twice, and the second delivery counts: all of it is refused, replaces or is added.
template <typename SourceT>
double TimeOfSecondDelivery(const SourceT & source, const std::string & insertMode)
{
    Subsystem subsystem(insertMode);
    Fill(subsystem, source);
    double time = 0;
    for (std::size_t turn = 0; turn < TurnsFor(source.Count()); ++turn) {
        std::vector<std::unique_ptr<CElement>> elements;
        for (std::size_t at = 0; at < source.Count(); ++at)
            elements.push_back(source.Make(at));
        time += TimeInRandomOrder(
            source.Count(), 1, [&](std::size_t, std::size_t at) { subsystem.Take(std::move(elements[at])); });
    }
    return time;
}

template <typename TimeT>
void CompareRows(benchmark::State & state, std::size_t count, TimeT timeOf)
{
    const TableRows rows(count);
    const PlainKeys keys(count);
    Compare(
        state, count * TurnsFor(count), [&] { return timeOf(rows); }, [&] { return timeOf(keys); });
}

/// The same names, each letter in another script: UTF-8 with two or three bytes.
Keys InScript(Keys keys, char32_t first)
{
    for (Key & key : keys) {
        std::string name;
        for (const char character : key.mName) {
            const char32_t letter = first + static_cast<unsigned char>(character) - ' ';
            if (letter < 0x800) {
                name += static_cast<char>(0xC0U | (letter >> 6U));
            } else {
                name += static_cast<char>(0xE0U | (letter >> 12U));
                name += static_cast<char>(0x80U | (letter >> 6U & 0x3FU));
            }
            name += static_cast<char>(0x80U | (letter & 0x3FU));
        }
        key.mName = name;
    }
    return keys;
}

void CompareScript(benchmark::State & state, std::size_t count, char32_t first)
{
    PlainKeys subject(count);
    const PlainKeys yardstick(count);
    subject.mKeys = InScript(subject.mKeys, first);
    Compare(
        state, count * TurnsFor(count), [&] { return TimeOfLookups(subject); },
        [&] { return TimeOfLookups(yardstick); });
}

std::size_t HeapInUse()
{
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

/// The bytes that a subsystem with these elements takes, against those of the elements and a list of them.
template <typename SourceT>
void CompareHeap(benchmark::State & state, std::size_t count)
{
    const SourceT source(count);
    const auto inSubsystem = [&] {
        const std::size_t before = HeapInUse();
        Subsystem subsystem;
        Fill(subsystem, source);
        return HeapInUse() - before;
    };
    const auto inList = [&] {
        const std::size_t before = HeapInUse();
        Subsystem subsystem;
        std::list<std::unique_ptr<CElement>> elements;
        for (std::size_t at = 0; at < count; ++at)
            elements.push_back(source.Make(at));
        return HeapInUse() - before;
    };
    // As if a byte were a nanosecond: the table knows nothing else.
    Compare(
        state, count, [&] { return static_cast<double>(inSubsystem()) * 1e-9; },
        [&] { return static_cast<double>(inList()) * 1e-9; });
}

}   // namespace

void RegisterIndex()
{

    for (const std::size_t count : COLUMN_COUNTS) {
        const auto add = [count](const std::string & row, auto function) {
            Register(row, count, [=](benchmark::State & state) { function(state, count); });
        };
        const auto addRows = [&add](const std::string & row, auto timeOf) {
            add(row, [=](benchmark::State & state, std::size_t rows) { CompareRows(state, rows, timeOf); });
        };
        addRows("rows/find", [](const auto & source) { return TimeOfLookups(source); });
        addRows("rows/remove", [](const auto & source) { return TimeOfRemovals(source); });
        for (const std::string mode : { keywords::INSERT_NEW, keywords::INSERT_OVERWRITE })
            addRows("rows/" + mode, [mode](const auto & source) { return TimeOfSecondDelivery(source, mode); });
        add("script/cyrillic",
            [](benchmark::State & state, std::size_t keys) { CompareScript(state, keys, U'\u0410'); });
        add("script/chinese",
            [](benchmark::State & state, std::size_t keys) { CompareScript(state, keys, U'\u4E00'); });
        add("heap/keys", &CompareHeap<PlainKeys>);
        add("heap/rows", &CompareHeap<TableRows>);
    }
}

}   // namespace bench
