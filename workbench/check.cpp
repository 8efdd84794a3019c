#include "check.h"

#include "catalog.h"
#include "chipwalk.h"
#include "layeredchip.h"
#include "losses.h"
#include "shape.h"
#include "value.h"

#include <configtools/keywords.h>

#include <algorithm>
#include <optional>
#include <set>
#include <string>

namespace workbench {

using namespace VrexZynConfigTools;

namespace {

constexpr char TYPE_RAW[] = "raw";

bool IsWithin(std::int64_t number, const IMetadata & metadata)
{
    return number >= metadata.Min() && number <= metadata.Max();
}

bool IsWithin(std::uint64_t number, const IMetadata & metadata)
{
    if (HasUnsignedRange(metadata))
        return number >= static_cast<std::uint64_t>(metadata.Min()) &&
               number <= static_cast<std::uint64_t>(metadata.Max());
    return number <= static_cast<std::uint64_t>(std::max<std::int64_t>(metadata.Max(), 0)) &&
           (metadata.Min() <= 0 || number >= static_cast<std::uint64_t>(metadata.Min()));
}

/// Whether all numbers of a value are within the range, and all texts of an allowed length.
struct RangeCheck
{
    const IMetadata & mMetadata;

    bool operator()(std::int64_t number) const { return IsWithin(number, mMetadata); }
    bool operator()(std::uint64_t number) const { return IsWithin(number, mMetadata); }
    bool operator()(const Value::Text & text) const
    {
        return IsWithin(std::uint64_t{ text.mBytes.size() }, mMetadata);
    }
    bool operator()(const Value::Octets & octets) const
    {
        return IsWithin(std::uint64_t{ octets.mBytes.size() }, mMetadata);
    }
    bool operator()(const Value::Enumerator &) const { return true; }
    bool operator()(const Value::Struct &) const { return true; }
    bool operator()(const Value::List & list) const
    {
        return std::all_of(list.mItems.begin(), list.mItems.end(),
            [this](const Value & item) { return std::visit(*this, item.mContent); });
    }
};

// What is wrong with a key that has a type of its own, or was read raw: without its record.
std::optional<Finding> Mismatch(const ChipEntry & entry, const IMetadata & record)
{
    const StoredKey key = { entry.mStore, entry.mKey };
    const IMetadata * const own = entry.mElement->Metadata();
    const std::string title = TitleOf(key, entry.mElement->Name());
    const Value value = ValueOf(*entry.mElement);
    if (value.mType == TYPE_RAW)
        return FindingAbout(key, "raw-value", title + " is raw: it doesn't fit its metadata");
    // A table row has lost its record by now, by the library's contract.
    if (own != nullptr && TypeText(*own) != TypeText(record)) {
        Finding finding = FindingAbout(key, "other-type",
            title + " calls its type " + TypeText(*own) + ", and the metadata " + TypeText(record));
        finding.mExpected = TypeText(record);
        return finding;
    }
    if (!HasRange(record) || std::visit(RangeCheck{ record }, value.mContent))
        return std::nullopt;
    Finding finding = FindingAbout(
        key, "out-of-range", title + " is " + ToText(value) + ", and the metadata allows " + RangeText(record));
    finding.mExpected = RangeText(record);
    return finding;
}

// Keys that are read by their record have been checked by then, but for the type whose range no reader looks at.
bool IsUnchecked(const ChipEntry & entry, const IMetadata & record)
{
    return entry.mElement->Metadata() != &record || record.InternalType() == keywords::TYPE_INTEGER;
}

std::vector<Finding> UncheckedKeys(const CChipConfig & chip, const CCatalog & catalog)
{
    std::set<Key> unknown;
    std::vector<Finding> findings;
    ForEachElement(chip, [&](const ChipEntry & entry) {
        const Key plain = { entry.mKey.mSubsystem, entry.mKey.mId, false, {} };
        const StoredKey stored = { entry.mStore, plain };
        const IMetadata * const record = catalog.Find(plain.mSubsystem, plain.mId);
        if (record != nullptr && IsUnchecked(entry, *record)) {
            if (auto mismatch = Mismatch(entry, *record))
                findings.push_back(std::move(*mismatch));
        } else if (record == nullptr && unknown.insert(plain).second) {
            findings.push_back(FindingAbout(stored, "unknown-key",
                TitleOf(plain, entry.mElement->Name()) + " is not in the metadata, in " +
                    NameOf(entry.mStore)));
        }
    });
    return findings;
}

}   // namespace

bool Check(CSession & session)
{
    IFindingSink & sink = session.Sink();
    const CChipConfig & chip = session.Chip();
    bool isAny = PassOn(LossesOfRead(chip, session.Watch()), sink);
    isAny = PassOn(LayersAndWinners(chip, session.Watch().Chip()).mHidden, sink) || isAny;
    if (session.Metadata() != nullptr) {
        CCatalog catalog(*session.Metadata(), session.ReadContext(), sink);
        const bool isChipKnown = catalog.SelectChipOfFiles(session.Watch().Chip());
        isAny = !isChipKnown || PassOn(UncheckedKeys(chip, catalog), sink) || isAny;
    }
    return !PassOnChannel(sink) && !isAny;
}

}   // namespace workbench
