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
using kit::reporting::MakeFinding;
using kit::text::Quoted;

namespace {

constexpr std::size_t MOST_INDICES = 9;   // whose order lasts

/// Findings of one kind. A file full of losses is described by its first ones.
class CLosses
{
public:
    void Add(Finding finding)
    {
        if (++mCount <= MOST_FINDINGS)
            mFindings.push_back(std::move(finding));
    }

    /// Appends what there is to `findings`.
    void MoveTo(std::vector<Finding> & findings)
    {
        std::move(mFindings.begin(), mFindings.end(), std::back_inserter(findings));
        if (mCount > MOST_FINDINGS)
            findings.push_back(MakeFinding(
                "more-findings", "... and " + std::to_string(mCount - MOST_FINDINGS) + " more like these"));
    }

private:
    static constexpr std::size_t MOST_FINDINGS = 20;

    std::vector<Finding> mFindings;
    std::size_t mCount = 0;
};

std::set<Store> StoresWithLayer(const CChipConfig & chip)
{
    std::set<Store> stores;
    for (const CStoreInfo * const store : chip.Stores())
        stores.insert({ store->DeviceId(), store->StoreId() });
    return stores;
}

std::map<StoredKey, std::size_t> CountStoredKeys(const CChipConfig & chip)
{
    std::map<StoredKey, std::size_t> counts;
    ForEachElement(chip, [&](const ChipEntry & entry) { ++counts[{ entry.mStore, entry.mKey }]; });
    return counts;
}

std::vector<Finding> StoresWithoutLayer(const CReadWatch & watch, const std::set<Store> & layered)
{
    std::vector<Finding> findings;
    for (const Store & store : watch.Stores()) {
        if (layered.contains(store))
            continue;
        Finding finding = MakeFinding("store-without-layer",
            "the store " + NameOf(store) +
                " has no layer: one of at most 15 stores has, numbered from 1, on rom, otp, mtp, "
                "smem, fw_cfg or eeprom");
        finding.mStore = NameOf(store);
        findings.push_back(std::move(finding));
    }
    return findings;
}

// The library sorts the tags of the indices by their text, and so takes "index10" for the second.
std::vector<Finding> RowsOutOfOrder(const CReadWatch & watch)
{
    CLosses reordered;
    for (const auto & [key, delivery] : watch.Deliveries()) {
        if (key.mKey.mIndices.size() > MOST_INDICES)
            reordered.Add(FindingAbout(key, "lost-index-order",
                TitleOf(key, delivery.mName) + " has " + std::to_string(key.mKey.mIndices.size()) +
                    " indices, and the order of more than " + std::to_string(MOST_INDICES) + " is lost"));
    }
    std::vector<Finding> findings;
    reordered.MoveTo(findings);
    return findings;
}

// A string is written by its first text, whatever more it holds; a table row is no string.
std::size_t CountOfTexts(const ChipEntry & entry)
{
    auto * const text = dynamic_cast<CElementString *>(entry.mElement);
    return text == nullptr ? 1 : text->GetPayloadCopy(false).size();
}

Finding TextsLost(const ChipEntry & entry)
{
    return FindingAbout({ entry.mStore, entry.mKey }, "several-texts",
        TitleOf({ entry.mStore, entry.mKey }, entry.mElement->Name()) + " has " +
            std::to_string(CountOfTexts(entry)) + " texts, of which only the first can be written");
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
            AddConflict(entry, "the keys " + NumberText(byText->second) + " and " + NumberText(entry.mKey) +
                                   " of " + SubsystemName(entry.mKey.mSubsystem) + " are both called " +
                                   Quoted(text) + ": a filtered output can hold only one of them");
        else if (byKey->second != text)
            AddConflict(entry, "key " + NumberText(entry.mKey) + " of " + SubsystemName(entry.mKey.mSubsystem) +
                                   " is called " + Quoted(byKey->second) + " and " + Quoted(text) +
                                   ": a filtered output would hold it twice");
        else if (!isNewPlace)
            AddConflict(entry, TitleOf(entry.mKey, entry.mElement->Name()) + " stands more than once in " +
                                   NameOf(entry.mStore) + ": a filtered output can hold only one of them");
    }

    CLosses TakeConflicts() { return std::move(mConflicts); }

private:
    void AddConflict(const ChipEntry & entry, const std::string & text)
    {
        mConflicts.Add(FindingAbout({ entry.mStore, entry.mKey }, "ambiguous-in-filter", text));
    }

    std::map<std::pair<int, std::string>, Key> mKeys;
    std::map<Key, std::string> mTexts;
    std::set<StoredKey> mPlaces;
    CLosses mConflicts;
};

}   // namespace

std::vector<Finding> LossesOfRead(const CChipConfig & chip, const CReadWatch & watch)
{
    if (chip.Subsystems().empty() && !watch.Stores().empty())
        return { MakeFinding(
            "too-many-stores", "the chip has more than 15 stores, so none of its keys has a layer") };

    const std::set<Store> layered = StoresWithLayer(chip);
    std::vector<Finding> findings = StoresWithoutLayer(watch, layered);

    auto present = CountStoredKeys(chip);
    CLosses lost;
    for (const auto & [key, delivery] : watch.Deliveries()) {
        const std::size_t count = present[key];
        const std::string title = TitleOf(key, delivery.mName);
        if (layered.contains(key.mStore) && count == 0)
            lost.Add(
                FindingAbout(key, "lost-key", title + " is lost: a key of the same number took its place"));
        else if (count != 0 && count < delivery.mCount)
            lost.Add(FindingAbout(key, "duplicate-key",
                title + " stands more than once in " + delivery.mFile + ", and only one of them counts"));
    }
    lost.MoveTo(findings);
    std::vector<Finding> reordered = RowsOutOfOrder(watch);
    std::move(reordered.begin(), reordered.end(), std::back_inserter(findings));
    return findings;
}

std::vector<Finding> LossesOfWrite(const CChipConfig & chip)
{
    CLosses passedOver;
    ForEachElement(chip, [&](const ChipEntry & entry) {
        const StoredKey key = { entry.mStore, entry.mKey };
        if (key.mKey.mId == 0)
            passedOver.Add(FindingAbout(key, "unwritable-key",
                TitleOf(key, entry.mElement->Name()) + " can't be written: its number is 0"));
        else if (CountOfTexts(entry) > 1)
            passedOver.Add(TextsLost(entry));
    });
    std::vector<Finding> findings;
    passedOver.MoveTo(findings);
    return findings;
}

std::vector<Finding> LossesOfFilteredWrite(const CChipConfig & chip, int highest)
{
    CFilteredNames names;
    CLosses texts;
    ForEachElement(chip, [&](const ChipEntry & entry) {
        if (entry.mLayer > highest)
            return;
        names.Add(entry);
        if (CountOfTexts(entry) > 1)
            texts.Add(TextsLost(entry));
    });
    std::vector<Finding> findings;
    names.TakeConflicts().MoveTo(findings);
    texts.MoveTo(findings);
    return findings;
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
