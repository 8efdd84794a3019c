#include "commands.h"
#include "json.h"
#include "lines.h"

#include <kit/text/utf8.h>
#include <workbench/catalog.h>
#include <workbench/shape.h>

namespace zynconfig {

using namespace VrexZynConfigTools;
using namespace workbench;
using kit::text::Printable;

namespace {

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

bool ListKeys(Invocation & invocation)
{
    const CSession & session = invocation.mSession;
    CCatalog catalog(*session.Metadata(), session.ReadContext(), session.Sink());
    const auto records = catalog.Select(invocation.mOptions.mChip)
                             ? catalog.RecordsLike(invocation.mOptions.mKey)
                             : std::nullopt;
    if (!records || (records->empty() && !invocation.mOptions.mIsJson))
        return false;
    const std::string output =
        invocation.mOptions.mIsJson ? RenderKeysJson(*records, catalog) : RenderKeys(*records);
    return invocation.mConsole.Write(output) && !records->empty();
}

}   // namespace zynconfig
