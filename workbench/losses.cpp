#include "losses.h"

#include "chipwalk.h"

#include <configtools/stores.h>
#include <kit/text/utf8.h>

#include <algorithm>
#include <iterator>
#include <map>
#include <set>
#include <utility>

namespace workbench {

using namespace VrexZynConfigTools;
using kit::text::Quoted;

namespace {

constexpr std::size_t MOST_INDICES = 9;   // whose order lasts

/// Lines of one kind. A file full of losses is told by its first ones.
class CLines
{
public:
    void Add(const std::string & line)
    {
        if (++mCount <= MOST_LINES)
            mLines.push_back(line);
    }

    /// Appends what there is to `lines`.
    void MoveTo(std::vector<std::string> & lines)
    {
        std::move(mLines.begin(), mLines.end(), std::back_inserter(lines));
        if (mCount > MOST_LINES)
            lines.push_back("... and " + std::to_string(mCount - MOST_LINES) + " more like these");
    }

private:
    static constexpr std::size_t MOST_LINES = 20;

    std::vector<std::string> mLines;
    std::size_t mCount = 0;
};

std::set<Store> StoresWithLayer(const CChipConfig & chip)
{
    std::set<Store> stores;
    for (const CStoreInfo * const store : chip.Stores())
        stores.insert({ store->DeviceId(), store->StoreId() });
    return stores;
}

std::map<StoredKey, std::size_t> CountPlaces(const CChipConfig & chip)
{
    std::map<StoredKey, std::size_t> counts;
    ForEachElement(chip, [&](const ChipEntry & entry) { ++counts[{ entry.mStore, entry.mKey }]; });
    return counts;
}

std::vector<std::string> StoresWithoutLayer(const CReadWatch & watch, const std::set<Store> & layered)
{
    std::vector<std::string> lines;
    for (const Store & store : watch.Stores()) {
        if (!layered.contains(store))
            lines.push_back("the store " + NameOf(store) +
                            " has no layer: one of at most 15 stores has, numbered from 1, on rom, otp, mtp, "
                            "smem, fw_cfg or eeprom");
    }
    return lines;
}

// The library sorts the tags of the indices by their text, and so takes "index10" for the second.
std::vector<std::string> RowsOutOfOrder(const CReadWatch & watch)
{
    CLines reordered;
    for (const auto & [place, delivery] : watch.Deliveries()) {
        if (place.mKey.mIndices.size() > MOST_INDICES)
            reordered.Add(TitleOf(place.mKey, delivery.mName) + " in " + NameOf(place.mStore) + " has " +
                          std::to_string(place.mKey.mIndices.size()) + " indices, and the order of more than " +
                          std::to_string(MOST_INDICES) + " is lost");
    }
    std::vector<std::string> lines;
    reordered.MoveTo(lines);
    return lines;
}

// A string is written by its first text, whatever more it holds; a table row is no string.
std::size_t CountOfTexts(const ChipEntry & entry)
{
    auto * const text = dynamic_cast<CElementString *>(entry.mElement);
    return text == nullptr ? 1 : text->GetPayloadCopy(false).size();
}

std::string TextsLost(const ChipEntry & entry)
{
    return TitleOf(entry.mKey, entry.mElement->Name()) + " in " + NameOf(entry.mStore) + " has " +
           std::to_string(CountOfTexts(entry)) + " texts, of which only the first can be written";
}

/// The keys of a filtered write, each by subsystem and text: what isn't one to one there can't be told apart.
class CFilteredNames
{
public:
    void Add(const ChipEntry & entry)
    {
        const std::string text = entry.mElement->KeyString();
        const auto & [byText, isNewText] = mKeys.try_emplace({ entry.mKey.mSubsystem, text }, entry.mKey);
        const auto & [byKey, isNewKey] = mTexts.try_emplace(entry.mKey, text);
        const bool isNewPlace = mPlaces.insert({ entry.mStore, entry.mKey }).second;

        if (byText->second != entry.mKey)
            mConflicts.Add("the keys " + NumberText(byText->second) + " and " + NumberText(entry.mKey) +
                           " of " + SubsystemName(entry.mKey.mSubsystem) + " are both called " + Quoted(text) +
                           ": a filtered output can hold only one of them");
        else if (byKey->second != text)
            mConflicts.Add("key " + NumberText(entry.mKey) + " of " + SubsystemName(entry.mKey.mSubsystem) +
                           " is called " + Quoted(byKey->second) + " and " + Quoted(text) +
                           ": a filtered output would hold it twice");
        else if (!isNewPlace)
            mConflicts.Add(TitleOf(entry.mKey, entry.mElement->Name()) + " stands more than once in " +
                           NameOf(entry.mStore) + ": a filtered output can hold only one of them");
    }

    CLines TakeConflicts() { return std::move(mConflicts); }

private:
    std::map<std::pair<int, std::string>, Key> mKeys;
    std::map<Key, std::string> mTexts;
    std::set<StoredKey> mPlaces;
    CLines mConflicts;
};

}   // namespace

std::vector<std::string> LossesOfRead(const CChipConfig & chip, const CReadWatch & watch)
{
    if (chip.Subsystems().empty() && !watch.Stores().empty())
        return { "the chip has more than 15 stores, so none of its keys has a layer" };

    const std::set<Store> layered = StoresWithLayer(chip);
    std::vector<std::string> lines = StoresWithoutLayer(watch, layered);

    auto present = CountPlaces(chip);
    CLines lost;
    for (const auto & [place, delivery] : watch.Deliveries()) {
        const std::size_t count = present[place];
        const std::string where = TitleOf(place.mKey, delivery.mName) + " in " + NameOf(place.mStore);
        if (layered.contains(place.mStore) && count == 0)
            lost.Add(where + " is lost: a key of the same number took its place");
        else if (count != 0 && count < delivery.mCount)
            lost.Add(where + " stands more than once in " + delivery.mFile + ", and only one of them counts");
    }
    lost.MoveTo(lines);
    std::vector<std::string> reordered = RowsOutOfOrder(watch);
    std::move(reordered.begin(), reordered.end(), std::back_inserter(lines));
    return lines;
}

std::vector<std::string> LossesOfWrite(const CChipConfig & chip)
{
    CLines passedOver;
    ForEachElement(chip, [&](const ChipEntry & entry) {
        if (entry.mKey.mId == 0)
            passedOver.Add(TitleOf(entry.mKey, entry.mElement->Name()) + " in " + NameOf(entry.mStore) +
                           " can't be written: its number is 0");
        else if (CountOfTexts(entry) > 1)
            passedOver.Add(TextsLost(entry));
    });
    std::vector<std::string> lines;
    passedOver.MoveTo(lines);
    return lines;
}

std::vector<std::string> LossesOfFilteredWrite(const CChipConfig & chip, int highest)
{
    CFilteredNames names;
    CLines texts;
    ForEachElement(chip, [&](const ChipEntry & entry) {
        if (entry.mLayer > highest)
            return;
        names.Add(entry);
        if (CountOfTexts(entry) > 1)
            texts.Add(TextsLost(entry));
    });
    std::vector<std::string> lines;
    names.TakeConflicts().MoveTo(lines);
    texts.MoveTo(lines);
    return lines;
}

std::size_t CountToWrite(const CChipConfig & chip, std::optional<int> highest)
{
    std::set<Key> keys;
    std::size_t values = 0;
    ForEachElement(chip, [&](const ChipEntry & entry) {
        values += entry.mKey.mId != 0 ? 1U : 0U;
        if (highest && entry.mLayer <= *highest)
            keys.insert(entry.mKey);
    });
    return highest ? keys.size() : values;
}

}   // namespace workbench
