#include "generatedchip.h"

#include <configtools/keywords.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <set>

using namespace VrexZynConfigTools;

namespace bench {

namespace {

constexpr std::uint32_t SEED = 20240611;
constexpr std::size_t SHORTEST_NAME = 12;
constexpr std::size_t LONGEST_NAME = 28;

constexpr std::array AREAS = { "BT", "WLAN", "RADIO", "PCM", "I2S", "UART", "USB", "ADC", "DAC", "ANA", "LC",
    "LM", "DEEP_SLEEP", "HOSTIO", "CLOCK", "COEX" };
constexpr std::array THINGS = { "TX", "RX", "AMUX", "RSSI", "XTAL", "LNA", "PA", "LDO", "IO", "LINK", "BOOT",
    "PIO", "SCAN", "INQUIRY", "BUFFER", "CHANNEL" };
constexpr std::array PROPERTIES = { "POWER", "GAIN", "OFFSET", "TIMEOUT", "ENABLE", "LIMIT", "CONFIG", "TRIM",
    "DELAY", "MASK", "TABLE", "RATE", "LEVEL", "WINDOW", "CALIBRATION", "THRESHOLD" };

template <typename ListT>
std::string OneOf(const ListT & list, std::mt19937 & random)
{
    return list[random() % list.size()];
}

std::string MakeName(std::mt19937 & random)
{
    for (;;) {
        const std::string name = OneOf(AREAS, random) + "_" + OneOf(THINGS, random) + "_" +
                                 OneOf(PROPERTIES, random) + "_" + std::to_string(random() % 1000);
        if (name.size() >= SHORTEST_NAME && name.size() <= LONGEST_NAME)
            return name;
    }
}

/// A reader that is told from outside what to read.
class PuppetReader : public IConfigReader
{
public:
    void SetObserver(IConfigReaderObserver & observer) override { mObserver = &observer; }
    void SetElementObserver(IConfigReaderElementObserver & observer) override { mElementObserver = &observer; }
    void SetMetadataProvider(IMetadataProvider & /*provider*/) override {}
    void Read(IConfigContext & /*context*/) override {}

    IConfigReaderElementObserver & ElementObserver() { return *mElementObserver; }

private:
    IConfigReaderObserver * mObserver = nullptr;
    IConfigReaderElementObserver * mElementObserver = nullptr;
};

Keys RandomPart(Keys keys, std::size_t count, std::mt19937 & random)
{
    std::shuffle(keys.begin(), keys.end(), random);
    keys.resize(std::min(count, keys.size()));
    std::sort(keys.begin(), keys.end(), [](const Key & a, const Key & b) { return a.mId < b.mId; });
    return keys;
}

}   // namespace

Keys MakeKeys(std::size_t count)
{
    std::mt19937 random(SEED);
    std::set<std::string> names;
    Keys keys;
    std::uint32_t id = 0;
    while (keys.size() < count) {
        id += random() % 8 == 0 ? 2 + static_cast<std::uint32_t>(random() % 100) : 1;
        std::string name = MakeName(random);
        if (names.insert(name).second)
            keys.push_back({ id, std::move(name) });
    }
    return keys;
}

std::unique_ptr<CElement> MakeElement(const Key & key)
{
    auto element = std::make_unique<CElementNumericArray>(NUMERIC_UINT8, key.mId, key.mName, true);
    element->SetValue(std::vector<std::uint8_t>{ static_cast<std::uint8_t>(key.mId) });
    return element;
}

Keys DrawKeys(const Keys & keys, std::size_t count, std::mt19937 & random)
{
    Keys drawn;
    drawn.reserve(count + keys.size());
    while (drawn.size() < count) {
        const auto begin = drawn.insert(drawn.end(), keys.begin(), keys.end());
        std::shuffle(begin, drawn.end(), random);
    }
    drawn.resize(count);
    return drawn;
}

GeneratedChip::GeneratedChip(std::size_t keysPerLayer, int layers, const std::string & layerFilter)
    : mLayers(layers)
    , mLayerFilter(layerFilter)
    , mChip(std::make_unique<CChipConfig>())
{
    DistributeKeys(keysPerLayer);
    PuppetReader reader;
    CZynContext context;
    IConfigReaderObserver & chip = *mChip;
    chip.OnReadStarted(reader, context);
    for (int layer = 1; layer <= mLayers; ++layer)
        ReadLayer(reader, layer, mLayerKeys[static_cast<std::size_t>(layer - 1)]);
    chip.OnReadEnded(reader, context);
    mLayerKeys.clear();
}

void GeneratedChip::DistributeKeys(std::size_t keysPerLayer)
{
    std::mt19937 random(SEED + 1);
    const std::size_t ofBottomOnly = keysPerLayer / 10;
    Keys all = MakeKeys(3 * keysPerLayer + ofBottomOnly);
    std::shuffle(all.begin(), all.end(), random);
    const auto take = [&all](std::size_t count) {
        Keys taken(std::make_move_iterator(all.end() - static_cast<std::ptrdiff_t>(count)),
            std::make_move_iterator(all.end()));
        all.resize(all.size() - count);
        return taken;
    };
    mInNoLayer = take(keysPerLayer);
    mInBottomLayerOnly = take(ofBottomOnly);

    std::set<std::uint32_t> used;
    for (int layer = 1; layer <= mLayers; ++layer) {
        Keys keys = RandomPart(all, layer == 1 ? keysPerLayer - ofBottomOnly : keysPerLayer, random);
        for (const Key & key : keys) {
            if (used.insert(key.mId).second)
                mInAnyLayer.push_back(key);
        }
        if (layer == 1) {
            keys.insert(keys.end(), mInBottomLayerOnly.begin(), mInBottomLayerOnly.end());
            keys = RandomPart(keys, keys.size(), random);
        }
        mLayerKeys.push_back(std::move(keys));
    }
    mInTopLayer = mLayerKeys.back();
}

void GeneratedChip::ReadLayer(IConfigReader & reader, int layer, const Keys & keys)
{
    CZynContext context = TopContext();
    context.SetDevice(IStoreManager::DEVICE_EEPROM);
    context.SetStore(layer);
    context.SetLayerNumber(layer);
    context.SetTag(keywords::TAG_LAYER_FILTER, mLayerFilter);
    IConfigReaderObserver & chip = *mChip;
    chip.OnSubsystemFound(reader, context);
    for (const Key & key : keys)
        static_cast<PuppetReader &>(reader).ElementObserver().OnElementFound(
            MakeElement(key).release(), context);
    chip.OnSubsystemCompleted(reader, context);
}

CSubsystemConfig & GeneratedChip::TopSubsystem()
{
    return *mChip->Subsystems().at(TopContext().GetTag(keywords::TAG_SUBSYSTEM_KEY_BY_LAYER));
}

CZynContext GeneratedChip::TopContext() const
{
    CZynContext context;
    context.SetChip("generated");
    context.SetTag(keywords::TAG_SUBSYSTEM_TYPE, static_cast<int>(SUBSYSTEM_BT));
    context.SetLayerNumber(mLayers);
    return context;
}

}   // namespace bench
