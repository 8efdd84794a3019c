#include "recordfacts.h"

#include <configtools/keywords.h>

#include <algorithm>
#include <set>

namespace tomlconfig {

bool IsDescribed(const IMetadata & record)
{
    return record.IsValid() && record.Details() != nullptr;
}

std::string TypeWordOf(const IMetadata & record)
{
    switch (record.MetadataType()) {
    case METADATA_ENUM:
        return word::ENUM;
    case METADATA_STRUCT:
        return word::STRUCT;
    default:
        return record.InternalType();
    }
}

std::string KeyText(const IMetadata & record)
{
    const std::string name = record.Name();
    return name.empty() ? std::to_string(record.PsId()) : name;
}

const std::map<std::string, int> & EnumeratorsOf(const IMetadata & record)
{
    static const std::map<std::string, int> none;
    IMetadataDetail * const details = record.Details();
    const auto * const enumerators = details != nullptr ? details->GetEnums() : nullptr;
    return enumerators != nullptr ? *enumerators : none;
}

std::vector<std::string> EnumeratorNames(const IMetadata & record)
{
    std::vector<std::string> names;
    for (const auto & [name, number] : EnumeratorsOf(record))
        if (!name.empty())   // which stands for no name
            names.push_back(name);
    return names;
}

std::string FirstEnumName(const IMetadata & record, std::int32_t number)
{
    const auto & enumerators = EnumeratorsOf(record);
    const auto found = std::find_if(enumerators.begin(), enumerators.end(),
        [number](const auto & enumerator) { return enumerator.second == number; });
    return found != enumerators.end() ? found->first : std::string();
}

std::vector<const CTableIndex *> TableIndicesOf(const IMetadata & record)
{
    std::vector<const CTableIndex *> indices;
    for (std::uint16_t position = 1; position < UINT16_MAX; ++position) {
        const CTableIndex * const index = record.TableIndex(position);
        if (index == nullptr)
            break;
        indices.push_back(index);
    }
    return indices;
}

const std::vector<const CStructField *> & FieldsOf(const IMetadata & record)
{
    static const std::vector<const CStructField *> none;
    IMetadataDetail * const details = record.Details();
    const auto * const fields = details != nullptr ? details->GetStructFields() : nullptr;
    return fields != nullptr ? *fields : none;
}

std::vector<std::string> FieldNames(const IMetadata & record)
{
    std::vector<std::string> names;
    for (const CStructField * const field : FieldsOf(record))
        if (field->Metadata() != nullptr)
            names.push_back(field->Metadata()->Name());
    return names;
}

bool HasFieldNames(const IMetadata & record)
{
    const std::vector<std::string> names = FieldNames(record);
    const std::set<std::string> distinct(names.begin(), names.end());
    return names.size() == FieldsOf(record).size() && distinct.size() == names.size();
}

std::string RangeText(const IMetadata & record, const std::string & typeWord)
{
    const NumberType & type = *FindNumberType(typeWord);
    if (type.mType == NUMERIC_UINT64)   // the checks take both limits as unsigned numbers
        return std::to_string(static_cast<std::uint64_t>(record.Min())) + " to " +
               std::to_string(static_cast<std::uint64_t>(record.Max()));
    const auto typeMax = static_cast<std::int64_t>(type.mMax);
    if (typeWord == keywords::TYPE_INTEGER)   // which isn't checked
        return kit::numbertypes::RangeOf(type).Text();
    return std::to_string(std::max(record.Min(), type.mMin)) + " to " +
           std::to_string(std::min(record.Max(), typeMax));
}

}   // namespace tomlconfig
