#include "shape.h"

#include <configtools/keywords.h>
#include <kit/text/utf8.h>

#include <algorithm>

namespace workbench {

using namespace VrexZynConfigTools;
using kit::text::Printable;

namespace {

std::string Limits(std::int64_t least, std::int64_t most, bool isUnsigned)
{
    const auto text = [isUnsigned](std::int64_t number) {
        return isUnsigned ? std::to_string(static_cast<std::uint64_t>(number)) : std::to_string(number);
    };
    return least == most ? text(least) : text(least) + " to " + text(most);
}

template <typename EnumsT>
std::vector<NamedNumber> Sorted(const EnumsT & enums)
{
    std::vector<NamedNumber> enumerators;
    enumerators.reserve(enums.size());
    for (const auto & [name, number] : enums)
        enumerators.push_back({ name, number });
    std::stable_sort(enumerators.begin(), enumerators.end(),
        [](const NamedNumber & left, const NamedNumber & right) { return left.mNumber < right.mNumber; });
    return enumerators;
}

}   // namespace

std::string TypeOf(const IMetadata & metadata)
{
    if (metadata.MetadataType() == METADATA_STRUCT)
        return "struct";
    return metadata.MetadataType() == METADATA_ENUM ? "enum" : metadata.InternalType();
}

std::string TypeText(const IMetadata & metadata)
{
    return Printable(TypeOf(metadata)) + (metadata.IsArray() ? " array" : "");
}

bool HasRange(const IMetadata & metadata)
{
    return metadata.MetadataType() == METADATA_SIMPLE;
}

bool IsText(const IMetadata & metadata)
{
    return metadata.InternalType() == keywords::TYPE_STRING ||
           metadata.InternalType() == keywords::TYPE_OCTET_STRING;
}

bool HasUnsignedRange(const IMetadata & metadata)
{
    return IsText(metadata) || metadata.InternalType() == keywords::TYPE_UINT64;
}

std::string RangeText(const IMetadata & metadata)
{
    if (!HasRange(metadata))
        return {};
    const std::string limits = Limits(metadata.Min(), metadata.Max(), HasUnsignedRange(metadata));
    return IsText(metadata) ? limits + " octets" : limits;
}

std::string ArrayText(const IMetadata & metadata)
{
    return metadata.IsArray() ? Limits(metadata.ArrayMinLength(), metadata.ArrayMaxLength(), false) + " items"
                              : "";
}

std::vector<NamedNumber> EnumeratorsOf(const IMetadata & metadata)
{
    const auto * const enums = metadata.Details() == nullptr ? nullptr : metadata.Details()->GetEnums();
    return enums == nullptr ? std::vector<NamedNumber>() : Sorted(*enums);
}

std::vector<NamedNumber> EnumeratorsOf(const CTableIndex & index)
{
    return Sorted(index.Enums());
}

std::string ToText(const std::vector<NamedNumber> & enumerators)
{
    std::string text;
    for (const NamedNumber & each : enumerators)
        text.append(text.empty() ? "" : ", ")
            .append(std::to_string(each.mNumber) + ' ' + Printable(each.mName));
    return text;
}

CMetadataDetailStruct * StructOf(const IMetadata & metadata)
{
    return metadata.MetadataType() == METADATA_STRUCT
               ? dynamic_cast<CMetadataDetailStruct *>(metadata.Details())
               : nullptr;
}

}   // namespace workbench
