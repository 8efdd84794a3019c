#include "catalog.h"

#include <configtools/helper.h>
#include <configtools/keywords.h>
#include <kit/text/ascii.h>
#include <kit/text/utf8.h>
#include <kit/text/words.h>

#include <algorithm>
#include <fnmatch.h>
#include <iterator>

namespace workbench {

using namespace VrexZynConfigTools;
using kit::text::Printable;
using kit::text::Quoted;

namespace {

constexpr std::size_t MOST_NAMES = 10;   // in a message
constexpr char ANY[] = "*";

std::string List(std::vector<std::string> names)
{
    std::transform(
        names.begin(), names.end(), names.begin(), [](const std::string & name) { return Printable(name); });
    return kit::text::Joined(names, ", ", MOST_NAMES);
}

bool Matches(const IMetadata & metadata, const std::string & pattern)
{
    return fnmatch(pattern.c_str(), metadata.Name().c_str(), FNM_CASEFOLD) == 0 ||
           pattern == std::to_string(metadata.PsId());
}

std::string IndexName(const CTableIndex & index, std::size_t position)
{
    const std::string name = index.Name().empty() ? "" : " (" + Printable(index.Name()) + ')';
    return "index " + std::to_string(position) + name;
}

std::string ValuesOf(const CTableIndex & index)
{
    if (index.Type() == CTableIndex::INDEX_INTEGER)
        return std::to_string(index.Min()) + " to " + std::to_string(index.Max());
    std::vector<std::string> names;
    for (const auto & [name, number] : index.Enums())
        names.push_back(name + " (" + std::to_string(number) + ')');
    return List(names);
}

// None if the index has no such value.
std::optional<std::uint32_t> IndexValue(const CTableIndex & index, const std::string & text)
{
    const auto number = NumberOf(text);
    if (index.Type() == CTableIndex::INDEX_INTEGER)
        return number && *number >= index.Min() && *number <= index.Max() ? number : std::nullopt;
    for (const auto & [name, value] : index.Enums()) {
        if (number ? static_cast<std::uint32_t>(value) == *number : kit::text::EqualsIgnoringCase(name, text))
            return static_cast<std::uint32_t>(value);
    }
    return std::nullopt;
}

}   // namespace

CCatalog::CCatalog(IMetadataProvider & provider, const CZynContext & context, IFindingSink & sink)
    : mProvider(provider)
    , mContext(context)
    , mSink(sink)
{}

bool CCatalog::Select(const std::string & label)
{
    std::string spelling = label;
    if (CHelper::Ref().IsSystemLabelVersionValid(mProvider, spelling)) {
        mChip = spelling;
        return true;
    }
    const std::vector<std::string> systems = mProvider.Systems();
    if (label.empty() && systems.size() > 1)
        Report("several-systems", "the metadata is about several systems (" + List(systems) + ")", Labels());
    else if (!label.empty())
        Report("unknown-chip", "no chip has the label " + Quoted(label) + "; " + Labels(), Labels());
    return label.empty() && systems.size() <= 1;
}

bool CCatalog::SelectOnly()
{
    std::string label;
    mChip = CHelper::Ref().IsSystemLabelVersionValid(mProvider, label) ? label : "";
    return true;
}

bool CCatalog::SelectChipOfFiles(const std::string & label)
{
    if (!Select(label))
        return false;
    if (mChip == label || label.empty())
        return true;
    Report("chip-spelling",
        "the label of the chip is " + Quoted(mChip) + ", which the files spell " + Quoted(label), mChip);
    return false;
}

CZynContext CCatalog::Context(int subsystem) const
{
    CZynContext context = mContext;
    context.SetChip(mChip);
    if (subsystem != NO_NUMBER)
        context.SetTag(keywords::TAG_SUBSYSTEM_TYPE, subsystem);
    return context;
}

std::vector<int> CCatalog::Subsystems() const
{
    std::vector<int> types;
    CZynContext context = Context();
    for (const ISubsystemInfo * const subsystem : mProvider.Subsystems(context)) {
        const int type =
            subsystem == nullptr ? SUBSYSTEM_UNKNOWN : CSubsystemInfo::GetSubsystemType(subsystem->Name());
        if (type != SUBSYSTEM_UNKNOWN && std::find(types.begin(), types.end(), type) == types.end())
            types.push_back(type);
    }
    return types;
}

std::optional<int> CCatalog::SubsystemOf(const std::string & name) const
{
    CZynContext context = Context();
    const int type = CHelper::Ref().SubsystemFromString(mProvider, context, name);
    const std::vector<int> types = Subsystems();
    if (std::find(types.begin(), types.end(), type) != types.end())
        return type;
    std::vector<std::string> names;
    std::transform(types.begin(), types.end(), std::back_inserter(names), SubsystemName);
    Report("unknown-subsystem", "the metadata has no subsystem " + Quoted(name) + "; there are " + List(names),
        List(names));
    return std::nullopt;
}

std::vector<Record> CCatalog::Records(int subsystem) const
{
    std::vector<Record> records;
    for (const int type : subsystem == NO_NUMBER ? Subsystems() : std::vector{ subsystem }) {
        CZynContext context = Context(type);
        for (const IMetadata * const metadata : mProvider.AllMetadata(context)) {
            if (metadata != nullptr)
                records.push_back({ type, metadata });
        }
    }
    return records;
}

std::optional<std::vector<Record>> CCatalog::RecordsLike(const std::string & pattern) const
{
    const auto colon = pattern.find(':');
    const std::string subsystem = colon == std::string::npos ? ANY : pattern.substr(0, colon);
    const std::string names = colon == std::string::npos ? pattern : pattern.substr(colon + 1);
    const auto type = subsystem == ANY ? std::optional(NO_NUMBER) : SubsystemOf(subsystem);
    if (!type)
        return std::nullopt;

    std::vector<Record> found;
    for (const Record & record : Records(*type)) {
        if (Matches(*record.mMetadata, names.empty() ? ANY : names))
            found.push_back(record);
    }
    if (found.empty())
        Report("unknown-key", "the metadata has no key like " + Quoted(pattern));
    return found;
}

const IMetadata * CCatalog::Find(int subsystem, std::uint32_t id) const
{
    CZynContext context = Context(subsystem);
    const IMetadata & metadata = mProvider.MetadataById(id, context);
    return metadata.IsValid() ? &metadata : nullptr;
}

std::vector<Record> CCatalog::Candidates(const KeyText & text, const std::vector<int> & subsystems) const
{
    const auto number = NumberOf(text.mKey);
    std::vector<Record> candidates;
    for (const int subsystem : subsystems) {
        CZynContext context = Context(subsystem);
        const IMetadata & metadata =
            number ? mProvider.MetadataById(*number, context) : mProvider.MetadataByName(text.mKey, context);
        if (metadata.IsValid())
            candidates.push_back({ subsystem, &metadata });
    }
    return candidates;
}

std::optional<Record> CCatalog::Find(const KeyText & text) const
{
    const auto subsystem = text.mSubsystem.empty() ? std::optional(NO_NUMBER) : SubsystemOf(text.mSubsystem);
    if (!subsystem)
        return std::nullopt;
    const std::vector<Record> candidates =
        Candidates(text, *subsystem == NO_NUMBER ? Subsystems() : std::vector{ *subsystem });
    if (candidates.size() == 1)
        return candidates.front();
    if (candidates.empty()) {
        ReportUnknown(text, *subsystem);
        return std::nullopt;
    }
    std::vector<std::string> choices;
    for (const Record & record : candidates)
        choices.push_back(SubsystemName(record.mSubsystem) + ':' + text.mKey);
    Report("ambiguous-key",
        "several subsystems have a key " + Quoted(text.mKey) + ": tell which one, of " + List(choices),
        List(choices));
    return std::nullopt;
}

void CCatalog::ReportUnknown(const KeyText & text, int subsystem) const
{
    CZynContext context = Context(subsystem);
    const std::string near = NumberOf(text.mKey) ? "" : mProvider.NearestName(text.mKey, context);
    Report("unknown-key",
        "the metadata has no key " + Quoted(text.mKey) +
            (subsystem == NO_NUMBER ? "" : " in " + SubsystemName(subsystem)) +
            (near.empty() ? "" : "; did you mean " + Quoted(near) + '?'),
        {}, near);
}

std::optional<Key> CCatalog::RowOf(const Record & record, const KeyText & text) const
{
    const IMetadata & metadata = *record.mMetadata;
    Key key = { record.mSubsystem, metadata.PsId(), metadata.NumIndices() > 0, {} };
    const std::string name = TitleOf(Key{ record.mSubsystem, metadata.PsId(), false, {} }, metadata.Name());
    if (text.mIndices.size() != metadata.NumIndices()) {
        const std::string count = std::to_string(metadata.NumIndices());
        const std::string given = std::to_string(text.mIndices.size());
        mSink.OnFinding(FindingAbout(key, "wrong-index-count",
            name + " has " + count + (count == "1" ? " index, and " : " indices, and ") + given +
                (given == "1" ? " is given" : " are given")));
        return std::nullopt;
    }
    for (std::size_t i = 0; i < text.mIndices.size(); ++i) {
        const CTableIndex * const index = metadata.TableIndex(static_cast<std::uint16_t>(i + 1));
        const auto value = index == nullptr ? NumberOf(text.mIndices[i]) : IndexValue(*index, text.mIndices[i]);
        if (!value) {
            mSink.OnFinding(FindingAbout(key, "unknown-index",
                name + ": " + Quoted(text.mIndices[i]) + " is no value of " +
                    (index == nullptr ? "an index"
                                      : IndexName(*index, i + 1) + ", which has " + ValuesOf(*index))));
            return std::nullopt;
        }
        key.mIndices.push_back(*value);
    }
    return key;
}

void CCatalog::Report(const std::string & code, const std::string & text, const std::string & expected,
    const std::string & nearest) const
{
    Finding finding = kit::reporting::MakeFinding(code, text);
    finding.mExpected = expected;
    finding.mNearest = nearest;
    mSink.OnFinding(finding);
}

std::string CCatalog::Labels() const
{
    CZynContext anySystem;
    std::vector<std::string> labels;
    for (const IChipInfo * const chip : mProvider.Chips(anySystem)) {
        if (chip != nullptr)
            labels.push_back(chip->SystemVersionLabel());
    }
    return labels.empty() ? "it knows no chip" : "there are " + List(labels);
}

}   // namespace workbench
