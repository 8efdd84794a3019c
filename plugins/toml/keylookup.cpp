#include "keylookup.h"

#include "recordfacts.h"
#include "vocabulary.h"

#include <configtools/keywords.h>
#include <kit/reporting/channel.h>
#include <kit/text/ascii.h>

#include <algorithm>
#include <limits>
#include <memory>
#include <vector>

namespace tomlconfig {

using kit::reporting::TakeError;

namespace {

constexpr std::int64_t MAX_UINT32 = std::numeric_limits<std::uint32_t>::max();

}   // namespace

CKeyLookup::CKeyLookup(IMetadataProvider & provider, CFindings & findings)
    : mProvider(provider)
    , mFindings(findings)
    , mValues(findings)
{}

void CKeyLookup::CheckChip(const toml::source_position & place, IConfigContext & context)
{
    const std::string label = context.GetTag(keywords::TAG_CHIP);
    if (label.empty())
        return;   // all systems are meant
    const std::unique_ptr<IConfigContext> anyChip(context.Clone());
    anyChip->SetTag(keywords::TAG_CHIP);
    std::vector<std::string> known;
    for (const IChipInfo * const chip : mProvider.Chips(*anyChip))
        known.push_back(chip->SystemVersionLabel());
    const auto error = TakeError();
    mIsUsable = !error && std::find(known.begin(), known.end(), label) != known.end();
    if (error)
        AddUnreadable(place, *error);
    else if (!mIsUsable && known.empty())
        mFindings.Add(
            FindingAt(place, "unknown-chip", "unknown chip " + Quoted(label) + "; the metadata knows none"));
    else if (!mIsUsable)
        mFindings.Add(
            WithAdvice(FindingAt(place, "unknown-chip", "unknown chip " + Quoted(label)), label, known));
}

void CKeyLookup::AddUnreadable(const toml::source_position & place, const std::string & error)
{
    mFindings.Add(FindingAt(place, "unreadable-metadata", "the metadata can't be read: " + error));
}

template <typename AskT>
const IMetadata * CKeyLookup::Ask(const toml::source_position & place, AskT ask)
{
    if (!mIsUsable)
        return nullptr;
    const IMetadata & record = ask();
    if (const auto error = TakeError()) {
        mIsUsable = false;
        AddUnreadable(place, *error);
        return nullptr;
    }
    return record.IsValid() && record.PsId() != 0 ? &record : nullptr;
}

const IMetadata * CKeyLookup::ById(std::uint32_t psId, const toml::node & place, IConfigContext & context)
{
    return Ask(
        place.source().begin, [&]() -> const IMetadata & { return mProvider.MetadataById(psId, context); });
}

const IMetadata * CKeyLookup::ByName(
    const std::string & name, const toml::node & place, IConfigContext & context)
{
    return Ask(
        place.source().begin, [&]() -> const IMetadata & { return mProvider.MetadataByName(name, context); });
}

const IMetadata * CKeyLookup::KeyOf(const toml::table & table, IConfigContext & context)
{
    const toml::node * const idNode = table.get(field::ID);
    const toml::node * const nameNode = table.get(field::NAME);
    if (idNode == nullptr && nameNode == nullptr) {
        mFindings.Add(FindingAt(table, "missing-field", "\"name\" is missing: a key has a name or a number"));
        return nullptr;
    }
    const std::uint32_t id = idNode != nullptr ? NumberOf(*idNode) : 0;   // 0 for none
    const auto name = nameNode != nullptr ? mValues.Text(*nameNode, field::NAME) : std::nullopt;
    if ((idNode != nullptr && id == 0) || (nameNode != nullptr && !name))
        return nullptr;
    const IMetadata * const record = id != 0 ? ById(id, *idNode, context) : ByName(*name, *nameNode, context);
    if (record != nullptr)
        return id != 0 && name && !Agree(*nameNode, *name, *record) ? nullptr : record;
    if (!mIsUsable)
        return nullptr;
    if (id == 0)
        AddUnknown(*nameNode, *name, context);
    else if (const IMetadata * const named = name ? ByName(*name, *nameNode, context) : nullptr)
        mFindings.Add(FindingAt(*idNode, "unknown-key",
            "unknown key " + std::to_string(id) + "; " + Quoted(named->Name()) + " has the number " +
                std::to_string(named->PsId())));
    else
        mFindings.Add(FindingAt(*idNode, "unknown-key", "unknown key " + std::to_string(id)));
    return nullptr;
}

// 0, with a finding, for what is no key's number.
std::uint32_t CKeyLookup::NumberOf(const toml::node & node)
{
    if (const auto number = mValues.Integer(node, field::ID, 1, MAX_UINT32))
        return static_cast<std::uint32_t>(*number);
    return 0;
}

void CKeyLookup::AddUnknown(const toml::node & node, const std::string & name, IConfigContext & context)
{
    // A provider compares the name with all that it knows, which is too much for each key of a large file that isn't
    // for this chip at all.
    constexpr int MOST = 100;
    const std::string nearest = mAdvised++ < MOST ? mProvider.NearestName(name, context) : "";
    TakeError();   // without a name to advise, the finding is the same
    mFindings.Add(WithNearest(FindingAt(node, "unknown-key", "unknown key " + Quoted(name)), nearest));
}

bool CKeyLookup::Agree(const toml::node & node, const std::string & name, const IMetadata & record)
{
    if (kit::text::EqualsIgnoringCase(name, record.Name()))   // as names of elements are compared
        return true;
    mFindings.Add(FindingAt(node, "wrong-name",
        "\"name\": the key " + std::to_string(record.PsId()) + " is called " + Quoted(record.Name()) +
            ", not " + Quoted(name)));
    return false;
}

}   // namespace tomlconfig
