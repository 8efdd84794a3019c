#include "layeredchip.h"

#include "chipwalk.h"

#include <configtools/keywords.h>
#include <configtools/stores.h>
#include <configtools/zyncontext.h>

#include <algorithm>
#include <map>

namespace workbench {

using namespace VrexZynConfigTools;

namespace {

constexpr int TOP_LAYER = 15;

using EntriesByKey = std::map<Key, std::vector<ChipEntry>>;

std::vector<Layer> MakeLayers(const CChipConfig & chip)
{
    std::vector<Layer> layers;
    for (const CStoreInfo * const store : chip.Stores())
        layers.push_back({ static_cast<int>(layers.size()) + 1, { store->DeviceId(), store->StoreId() }, {} });

    for (const auto & [key, subsystem] : chip.Subsystems()) {
        if (subsystem == nullptr)
            continue;
        const auto number = static_cast<std::size_t>(LayerOf(subsystem->Context()));
        if (number >= 1 && number <= layers.size())
            layers[number - 1].mSubsystems.push_back(SubsystemOf(subsystem->Context()));
    }
    for (Layer & layer : layers)
        std::sort(layer.mSubsystems.begin(), layer.mSubsystems.end());
    return layers;
}

EntriesByKey CollectEntries(const CChipConfig & chip)
{
    EntriesByKey entries;
    ForEachElement(chip, [&](const ChipEntry & entry) { entries[entry.mKey].push_back(entry); });
    for (auto & [key, values] : entries)
        std::stable_sort(values.begin(), values.end(),
            [](const ChipEntry & left, const ChipEntry & right) { return left.mLayer < right.mLayer; });
    return entries;
}

bool IsAmong(const CElement & element, const std::vector<ChipEntry> & entries)
{
    return std::any_of(
        entries.begin(), entries.end(), [&](const ChipEntry & entry) { return entry.mElement == &element; });
}

// The element that answers for the key, which needn't be one of its own; the null element if none does.
const CElement & FindWinner(const CChipConfig & chip, const Key & key, const std::vector<ChipEntry> & entries)
{
    const ChipEntry & top = entries.back();
    CZynContext query;
    query.SetChip(top.mContext->GetTag(keywords::TAG_CHIP));
    query.SetTag(keywords::TAG_SUBSYSTEM_TYPE, top.mContext->GetTag(keywords::TAG_SUBSYSTEM_TYPE));
    query.SetTag(keywords::TAG_LAYER_FILTER, TOP_LAYER);

    // The text finds plain keys and rows apart, where the plain number gives whichever came last.
    const CElement & byText = chip.Element(LookupText(key), query);
    if (byText.IsValid())
        return byText;
    const CElement & byName = chip.Element(top.mElement->KeyString(), query);
    return IsAmong(byName, entries) ? byName : chip.Element(key.mId, query);
}

LayeredKey MakeKey(const CChipConfig & chip, const Key & key, const std::vector<ChipEntry> & entries)
{
    const CElement & winner = FindWinner(chip, key, entries);
    LayeredKey shown = { key, {} };
    for (const ChipEntry & entry : entries)
        shown.mValues.push_back({ entry.mLayer, entry.mStore, entry.mElement->Name(), ValueOf(*entry.mElement),
            entry.mElement == &winner });
    return shown;
}

bool IsHidden(const LayeredKey & key)
{
    return key.mValues.back().mLayer > 0 && std::none_of(key.mValues.begin(), key.mValues.end(),
                                                [](const LayeredValue & value) { return value.mIsWinner; });
}

}   // namespace

LayeredChip LayersAndWinners(const CChipConfig & chip, const std::string & label)
{
    LayeredChip shown = { label, MakeLayers(chip), {}, {} };
    for (const auto & [key, entries] : CollectEntries(chip)) {
        shown.mKeys.push_back(MakeKey(chip, key, entries));
        if (IsHidden(shown.mKeys.back()))
            shown.mHidden.push_back(FindingAbout(key, "no-winner",
                TitleOf(key, entries.back().mElement->Name()) +
                    " has no winner: another key of its number or name answers for it"));
    }
    return shown;
}

}   // namespace workbench
