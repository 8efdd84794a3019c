#include "bitmap.h"
#include "commands.h"
#include "describejson.h"
#include "lines.h"

#include <kit/text/utf8.h>
#include <workbench/catalog.h>
#include <workbench/defaults.h>
#include <workbench/shape.h>

#include <algorithm>

namespace zynconfig {

using namespace VrexZynConfigTools;
using namespace workbench;
using kit::text::Padded;
using kit::text::Printable;

namespace {

std::string Hexadecimal(std::uint32_t number)
{
    constexpr char DIGITS[] = "0123456789abcdef";
    std::string text;
    for (; number != 0 || text.empty(); number >>= 4)
        text.insert(text.begin(), DIGITS[number & 0xF]);
    return "0x" + text;
}

std::string NumberOf(const Record & record)
{
    const std::uint32_t id = record.mMetadata->PsId();
    return std::to_string(id) + " (" + Hexadecimal(id) + ") of " + SubsystemName(record.mSubsystem);
}

// What has no value is left out.
void AddFacts(const Record & record, const std::string & defaultText, CLineMaker & lines)
{
    const IMetadata & metadata = *record.mMetadata;
    const std::vector<Cells> facts = {
        { "key", NumberOf(record) },
        { "label", Printable(metadata.Label()) },
        { "type", TypeText(metadata) },
        { "array", ArrayText(metadata) },
        { IsText(metadata) ? "length" : "range", RangeText(metadata) },
        { "default", defaultText },
        { "units", Printable(metadata.Units()) },
        { "format", Printable(metadata.Format()) },
        { "access", Printable(metadata.AccessRights()) },
        { "temporality", Printable(metadata.Temporality()) },
        { "category", Printable(metadata.Category()) },
        { "table", Printable(metadata.TableName()) },
        { "oid", Printable(metadata.Oid()) },
        { "source", Printable(metadata.SourceReference()) },
        { "internal", metadata.IsInternal() ? "yes" : "" },
    };
    for (const Cells & fact : facts) {
        if (!fact[1].empty())
            lines.AddWrapped("  " + Padded(fact[0], 12) + fact[1], 14);
    }
}

void AddIndices(const IMetadata & metadata, CLineMaker & lines)
{
    std::vector<Cells> rows;
    for (std::uint32_t i = 1; i <= metadata.NumIndices(); ++i) {
        const CTableIndex * const index = metadata.TableIndex(static_cast<std::uint16_t>(i));
        if (index == nullptr)
            continue;
        const bool isInteger = index->Type() == CTableIndex::INDEX_INTEGER;
        rows.push_back({ std::to_string(i), Printable(index->Name()),
            isInteger ? std::to_string(index->Min()) + " to " + std::to_string(index->Max())
                      : ToText(EnumeratorsOf(*index)) });
    }
    if (rows.empty())
        return;
    lines.Add("");
    AddTable({ "INDEX", "NAME", "VALUES" }, rows, lines);
}

void AddEnumerators(const IMetadata & metadata, CLineMaker & lines)
{
    std::vector<Cells> rows;
    for (const NamedNumber & each : EnumeratorsOf(metadata))
        rows.push_back({ std::to_string(each.mNumber), Printable(each.mName) });
    if (rows.empty())
        return;
    lines.Add("");
    AddTable({ "NUMBER", "ENUMERATOR" }, rows, lines);
}

void AddStruct(CMetadataDetailStruct & detail, CLineMaker & lines)
{
    const kit::layout::CFields fields(detail);
    const CStructLayout & layout = fields.Layout();
    const std::string bits = std::to_string(layout.Bits()) + " bits in ";
    const std::string form = detail.IsOctetsInBin() ? std::to_string(layout.Octets()) + " octets"
                                                    : std::to_string(layout.Words()) + " words of 16 bits";
    lines.Add("");
    lines.AddWrapped("The struct packs " + bits + form +
                         (detail.IsLittleEndian() ? "; the low word of a number comes first."
                                                  : "; the high word of a number comes first."),
        0);
    lines.Add("");
    AddBitMap(fields, lines);
}

// Of a key that is no table.
std::string DefaultText(const std::vector<DefaultValue> & defaults)
{
    return defaults.empty() || defaults.front().mKey.mIsRow ? "" : ToText(defaults.front().mValue);
}

void AddDefaultRows(const std::vector<DefaultValue> & defaults, CLineMaker & lines)
{
    std::vector<Cells> rows;
    for (const DefaultValue & each : defaults) {
        if (each.mKey.mIsRow)
            rows.push_back({ NumberText(each.mKey), ToText(each.mValue) });
    }
    if (rows.empty())
        return;
    lines.Add("");
    AddTable({ "ROW", "DEFAULT" }, rows, lines);
}

std::string Render(const Record & record, const std::vector<DefaultValue> & defaults)
{
    const IMetadata & metadata = *record.mMetadata;
    CLineMaker lines(StyleOfOutput());
    lines.Add(Printable(metadata.Name()), BOLD);
    for (const std::string & text : { metadata.Description(), metadata.DescriptionInternal() }) {
        if (!text.empty())
            lines.AddWrapped("  " + Printable(text), 2);
    }
    lines.Add("");
    AddFacts(record, DefaultText(defaults), lines);
    AddIndices(metadata, lines);
    AddEnumerators(metadata, lines);
    AddDefaultRows(defaults, lines);
    if (CMetadataDetailStruct * const detail = StructOf(metadata))
        AddStruct(*detail, lines);
    return lines.Take();
}

// Those of one row, if one was named.
bool SelectRow(
    const CCatalog & catalog, const Record & record, const KeyText & text, std::vector<DefaultValue> & defaults)
{
    if (text.mIndices.empty())
        return true;
    const auto row = catalog.RowOf(record, text);
    if (row)
        defaults.erase(std::remove_if(defaults.begin(), defaults.end(),
                           [&](const DefaultValue & each) { return each.mKey != *row; }),
            defaults.end());
    return row.has_value();
}

}   // namespace

bool DescribeKey(Invocation & invocation)
{
    const CSession & session = invocation.mSession;
    CCatalog catalog(*session.Metadata(), session.ReadContext(), session.Sink());
    const KeyText text = ParseKeyText(invocation.mOptions.mKey);
    const auto record = catalog.Select(invocation.mOptions.mChip) ? catalog.Find(text) : std::nullopt;
    if (!record)
        return false;
    std::vector<DefaultValue> defaults = DefaultsOf(catalog, *record);
    if (!SelectRow(catalog, *record, text, defaults))
        return false;
    return invocation.mConsole.Write(
        invocation.mOptions.mIsJson ? RenderJson(*record, defaults) : Render(*record, defaults));
}

}   // namespace zynconfig
