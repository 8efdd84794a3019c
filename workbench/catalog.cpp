#include "catalog.h"

#include "errors.h"

#include <configtools/helper.h>
#include <configtools/keywords.h>
#include <kit/text/utf8.h>

#include <algorithm>

namespace workbench {

using namespace VrexZynConfigTools;
using kit::text::Printable;
using kit::text::Quoted;

namespace {

constexpr std::size_t MOST_NAMES = 10;   // in a message

std::string List(const std::vector<std::string> & names)
{
    std::string list;
    for (std::size_t i = 0; i < std::min(names.size(), MOST_NAMES); ++i)
        list.append(list.empty() ? "" : ", ").append(Printable(names[i]));
    return list + (names.size() > MOST_NAMES ? ", ..." : "");
}

char LowerLetter(char character)
{
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

bool EqualsIgnoringCase(const std::string & left, const std::string & right)
{
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
        [](char one, char other) { return LowerLetter(one) == LowerLetter(other); });
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
        if (number ? static_cast<std::uint32_t>(value) == *number : EqualsIgnoringCase(name, text))
            return static_cast<std::uint32_t>(value);
    }
    return std::nullopt;
}

}   // namespace

CCatalog::CCatalog(IMetadataProvider & provider, const CZynContext & context)
    : mProvider(provider)
    , mContext(context)
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
        ReportError("the metadata is about several systems (" + List(systems) +
                    "): tell by --chip LABEL which one; " + Labels());
    else if (!label.empty())
        ReportError("no chip has the label " + Quoted(label) + "; " + Labels());
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
    ReportError("the label of the chip is " + Quoted(mChip) + ", which the files spell " + Quoted(label));
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
    ReportError("the metadata has no subsystem " + Quoted(name) + "; there are " + List(names));
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
    ReportError("several subsystems have a key " + Quoted(text.mKey) + ": tell which one, of " + List(choices));
    return std::nullopt;
}

void CCatalog::ReportUnknown(const KeyText & text, int subsystem) const
{
    CZynContext context = Context(subsystem);
    const std::string near = NumberOf(text.mKey) ? "" : mProvider.NearestName(text.mKey, context);
    ReportError("the metadata has no key " + Quoted(text.mKey) +
                (subsystem == NO_NUMBER ? "" : " in " + SubsystemName(subsystem)) +
                (near.empty() ? "" : "; did you mean " + Quoted(near) + '?'));
}

std::optional<Key> CCatalog::RowOf(const Record & record, const KeyText & text) const
{
    const IMetadata & metadata = *record.mMetadata;
    Key key = { record.mSubsystem, metadata.PsId(), metadata.NumIndices() > 0, {} };
    const std::string name = TitleOf({ record.mSubsystem, metadata.PsId(), false, {} }, metadata.Name());
    if (text.mIndices.size() != metadata.NumIndices()) {
        const std::string count = std::to_string(metadata.NumIndices());
        const std::string given = std::to_string(text.mIndices.size());
        ReportError(name + " has " + count + (count == "1" ? " index, and " : " indices, and ") + given +
                    (given == "1" ? " is given" : " are given"));
        return std::nullopt;
    }
    for (std::size_t i = 0; i < text.mIndices.size(); ++i) {
        const CTableIndex * const index = metadata.TableIndex(static_cast<std::uint16_t>(i + 1));
        const auto value = index == nullptr ? NumberOf(text.mIndices[i]) : IndexValue(*index, text.mIndices[i]);
        if (!value) {
            ReportError(
                name + ": " + Quoted(text.mIndices[i]) + " is no value of " +
                (index == nullptr ? "an index" : IndexName(*index, i + 1) + ", which has " + ValuesOf(*index)));
            return std::nullopt;
        }
        key.mIndices.push_back(*value);
    }
    return key;
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
