#include "describejson.h"

#include "json.h"

#include <kit/layout/fields.h>
#include <workbench/shape.h>

#include <cstdlib>

namespace zynconfig {

using namespace VrexZynConfigTools;
using namespace workbench;

namespace {

Json JsonOf(const std::vector<NamedNumber> & enumerators)
{
    Json array = Json::array();
    for (const NamedNumber & each : enumerators)
        array.push_back({ { "name", JsonText(each.mName) }, { "number", each.mNumber } });
    return array;
}

Json JsonOfLimits(std::int64_t least, std::int64_t most, bool isUnsigned)
{
    if (isUnsigned)
        return { { "min", static_cast<std::uint64_t>(least) }, { "max", static_cast<std::uint64_t>(most) } };
    return { { "min", least }, { "max", most } };
}

/// What keys and fields have in common.
Json JsonOfShape(const IMetadata & metadata)
{
    const auto enumerators = EnumeratorsOf(metadata);
    return { { "type", JsonText(TypeOf(metadata)) },
        { "array", metadata.IsArray()
                       ? JsonOfLimits(metadata.ArrayMinLength(), metadata.ArrayMaxLength(), false)
                       : Json() },
        { "range", HasRange(metadata) ? JsonOfLimits(metadata.Min(), metadata.Max(), HasUnsignedRange(metadata))
                                      : Json() },
        { "enumerators", enumerators.empty() ? Json() : JsonOf(enumerators) },
        { "units", JsonText(metadata.Units()) }, { "presentation", JsonText(metadata.Format()) },
        { "description", JsonText(metadata.Description()) } };
}

Json JsonOfIndices(const IMetadata & metadata)
{
    Json indices = Json::array();
    for (std::uint32_t i = 1; i <= metadata.NumIndices(); ++i) {
        const CTableIndex * const index = metadata.TableIndex(static_cast<std::uint16_t>(i));
        if (index == nullptr)
            continue;
        const bool isInteger = index->Type() == CTableIndex::INDEX_INTEGER;
        indices.push_back({ { "name", JsonText(index->Name()) },
            { "range", isInteger ? JsonOfLimits(index->Min(), index->Max(), false) : Json() },
            { "enumerators", isInteger ? Json() : JsonOf(EnumeratorsOf(*index)) } });
    }
    return indices;
}

Json JsonOfField(const kit::layout::Field & field)
{
    const StructEntry & entry = *field.mEntry;
    Json json = { { "name", JsonText(field.mPath) },
        { "position", static_cast<std::int32_t>(entry.mPosition) },   // below 0 with bad metadata
        { "width", entry.mWidth }, { "carried_back", field.mLoss == kit::layout::Loss::NONE } };
    json.update(JsonOfShape(*entry.mRecord));
    if (IsRowOfWords(field))
        json["range"] = nullptr;
    return json;
}

Json JsonOfStruct(CMetadataDetailStruct & detail)
{
    const kit::layout::CFields layout(detail);
    Json fields = Json::array();
    for (const kit::layout::Field & field : layout.List())
        fields.push_back(JsonOfField(field));
    Json bits = Json::array();
    bool isCutOff = false;
    for (const kit::layout::Piece & piece : PiecesOf(layout, isCutOff))
        bits.push_back(
            { { "word", piece.mRun.mWord }, { "low", piece.mRun.mBit }, { "count", piece.mRun.mCount },
                { "field", JsonText(piece.mLabel) }, { "value_bit", piece.mRun.mValueBit } });
    return { { "bits", layout.Layout().Bits() }, { "little_endian", detail.IsLittleEndian() },
        { "octets", detail.IsOctetsInBin() }, { "fields", std::move(fields) }, { "map", std::move(bits) } };
}

Json JsonOf(const std::vector<DefaultValue> & defaults)
{
    Json array = Json::array();
    for (const DefaultValue & each : defaults)
        array.push_back({ { "indices", zynconfig::JsonOfIndices(each.mKey) },
            { "value", zynconfig::JsonOf(each.mValue) }, { "text", ToText(each.mValue) } });
    return array;
}

}   // namespace

std::string RenderJson(const Record & record, const std::vector<DefaultValue> & defaults)
{
    const IMetadata & metadata = *record.mMetadata;
    Json json = { { "format", JSON_FORMAT }, { "subsystem", SubsystemName(record.mSubsystem) },
        { "id", metadata.PsId() }, { "name", JsonText(metadata.Name()) },
        { "label", JsonText(metadata.Label()) } };
    json.update(JsonOfShape(metadata));
    json.update(Json{ { "access", JsonText(metadata.AccessRights()) },
        { "temporality", JsonText(metadata.Temporality()) }, { "category", JsonText(metadata.Category()) },
        { "table", JsonText(metadata.TableName()) }, { "oid", JsonText(metadata.Oid()) },
        { "source", JsonText(metadata.SourceReference()) }, { "internal", metadata.IsInternal() },
        { "indices", JsonOfIndices(metadata) }, { "defaults", JsonOf(defaults) } });
    CMetadataDetailStruct * const detail = StructOf(metadata);
    json["struct"] = detail == nullptr ? Json() : JsonOfStruct(*detail);
    return TextOf(json);
}

}   // namespace zynconfig
