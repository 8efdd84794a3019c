#include "commands.h"
#include "json.h"
#include "lines.h"
#include "session.h"

#include <kit/text/utf8.h>
#include <workbench/catalog.h>
#include <workbench/errors.h>
#include <workbench/shape.h>

#include <algorithm>
#include <fnmatch.h>

namespace zynconfig {

using namespace VrexZynConfigTools;
using namespace workbench;
using kit::text::Printable;
using kit::text::Quoted;

namespace {

constexpr char ANY[] = "*";

/// Which keys are asked for.
struct Pattern
{
    int mSubsystem;   // NO_NUMBER: all
    std::string mNames;
};

// What stands before a colon is a subsystem. None, with the reason reported, if there is no such one.
std::optional<Pattern> ParsePattern(const std::string & text, const CCatalog & catalog)
{
    const auto colon = text.find(':');
    const std::string names = colon == std::string::npos ? text : text.substr(colon + 1);
    Pattern pattern = { NO_NUMBER, names.empty() ? std::string(ANY) : names };
    if (colon == std::string::npos || text.substr(0, colon) == ANY)
        return pattern;
    const auto subsystem = catalog.SubsystemOf(text.substr(0, colon));
    if (!subsystem)
        return std::nullopt;
    pattern.mSubsystem = *subsystem;
    return pattern;
}

bool Matches(const Record & record, const std::string & pattern)
{
    return fnmatch(pattern.c_str(), record.mMetadata->Name().c_str(), FNM_CASEFOLD) == 0 ||
           pattern == std::to_string(record.mMetadata->PsId());
}

std::string IndexNames(const IMetadata & metadata)
{
    std::string names;
    for (std::uint32_t i = 1; i <= metadata.NumIndices(); ++i) {
        const CTableIndex * const index = metadata.TableIndex(static_cast<std::uint16_t>(i));
        names += '.' + (index == nullptr ? "?" : Printable(index->Name()));
    }
    return names;
}

std::string ValuesText(const IMetadata & metadata)
{
    if (metadata.MetadataType() == METADATA_ENUM)
        return ToText(EnumeratorsOf(metadata));
    return RangeText(metadata);
}

std::string RenderKeys(const std::vector<Record> & records)
{
    CLineMaker lines(StyleOfOutput());
    std::vector<Cells> rows;
    for (const Record & record : records) {
        const IMetadata & metadata = *record.mMetadata;
        rows.push_back({ SubsystemName(record.mSubsystem) + ':' + std::to_string(metadata.PsId()),
            Printable(metadata.Name()) + IndexNames(metadata), TypeText(metadata), ValuesText(metadata) });
    }
    AddTable({ "KEY", "NAME", "TYPE", "VALUES" }, rows, lines);
    return lines.Take();
}

std::string RenderKeysJson(const std::vector<Record> & records, const CCatalog & catalog)
{
    Json keys = Json::array();
    for (const Record & record : records) {
        const IMetadata & metadata = *record.mMetadata;
        keys.push_back({ { "subsystem", SubsystemName(record.mSubsystem) }, { "id", metadata.PsId() },
            { "name", JsonText(metadata.Name()) }, { "type", JsonText(TypeOf(metadata)) },
            { "array", metadata.IsArray() }, { "indices", metadata.NumIndices() },
            { "description", JsonText(metadata.Description()) } });
    }
    return TextOf(
        Json{ { "format", JSON_FORMAT }, { "chip", JsonText(catalog.Chip()) }, { "keys", std::move(keys) } });
}

}   // namespace

bool Keys(CSession & session)
{
    CCatalog catalog(*session.Metadata(), session.ReadContext());
    const auto pattern =
        catalog.Select(session.Asked().mChip) ? ParsePattern(session.Asked().mKey, catalog) : std::nullopt;
    if (!pattern)
        return false;

    std::vector<Record> records = catalog.Records(pattern->mSubsystem);
    records.erase(std::remove_if(records.begin(), records.end(),
                      [&](const Record & record) { return !Matches(record, pattern->mNames); }),
        records.end());
    if (records.empty())
        ReportError("the metadata has no key like " + Quoted(session.Asked().mKey));
    if (session.Asked().mIsJson)
        return WriteOutput(RenderKeysJson(records, catalog)) && !records.empty();
    return !records.empty() && WriteOutput(RenderKeys(records));
}

}   // namespace zynconfig
