#include "describedtext.h"

#include "recordfacts.h"
#include "structtext.h"
#include "vocabulary.h"

#include <configtools/keywords.h>
#include <configtools/numbertypes.h>
#include <kit/text/utf8.h>

#include <algorithm>

namespace tomlconfig {

namespace {

constexpr std::size_t MAX_ITEMS = 65536;   // as many as are read

std::string Line(const char * name, const std::string & value)
{
    return std::string(name) + " = " + value + '\n';
}

std::optional<DescribedValue> NumberValue(IPayload & payload, const IMetadata & record)
{
    const NumberType * const type = FindNumberType(record.InternalType());
    const NumberType * const own = FindNumberType(payload.Type());
    const auto value = type != nullptr && own != nullptr && own->mType == type->mType ? PayloadValue(payload, 1)
                                                                                      : std::nullopt;
    return value ? std::optional(DescribedValue{ value->mText, {} }) : std::nullopt;
}

std::optional<DescribedValue> StringValue(IPayload & payload, const IMetadata & record)
{
    auto * const text = dynamic_cast<CStringPayload *>(&payload);
    const auto value = PayloadValue(payload, 1);
    if (text == nullptr || !value || value->mWord != record.InternalType())
        return std::nullopt;
    const std::string bytes = text->GetValue();
    return DescribedValue{ value->mText, {}, bytes.size(), !bytes.empty() && bytes.back() == '\0' };
}

std::optional<DescribedValue> EnumValue(IPayload & payload, const IMetadata & record)
{
    auto * const enumerator = dynamic_cast<CEnumPayload *>(&payload);
    if (enumerator == nullptr || enumerator->GetName().empty())
        return std::nullopt;
    const std::string name = enumerator->GetName();
    const bool isKnown = FirstEnumName(record, enumerator->GetValue()) == name;
    return isKnown ? std::optional(DescribedValue{ TextValue(name), {} }) : std::nullopt;
}

std::optional<DescribedValue> StructValue(IPayload & payload, const IMetadata & record)
{
    auto * const structure = dynamic_cast<CComplexPayload *>(&payload);
    auto fields = structure != nullptr ? StructFields(*structure, record) : std::nullopt;
    if (!fields)
        return std::nullopt;
    return DescribedValue{ TableText(*fields), std::move(*fields) };
}

bool IsTextual(const IMetadata & record)
{
    return record.InternalType() == keywords::TYPE_STRING ||
           record.InternalType() == keywords::TYPE_OCTET_STRING;
}

// Where only one value can be, there has to be one; a file that has none for an array isn't read either.
bool IsCountGood(const IMetadata & record, std::size_t count)
{
    const bool isAlone = record.MetadataType() == METADATA_ENUM ||
                         (record.MetadataType() == METADATA_SIMPLE && IsTextual(record));
    return count == 1 || (count > 1 && count <= MAX_ITEMS && record.IsArray() && !isAlone);
}

// The library takes a last zero of an even number of octets for one that fills up a word.
bool LooksPadded(const DescribedKey & key, const IMetadata & record)
{
    const DescribedValue & value = key.mValues.front();
    return key.mIsInBt && record.InternalType() == keywords::TYPE_OCTET_STRING && value.mEndsInZero &&
           value.mLength % 2 == 0 && value.mLength > static_cast<std::uint64_t>(record.Min());
}

std::optional<std::string> IndexText(std::uint32_t number, const CTableIndex & index)
{
    if (number > MAX_INDEX)
        return std::nullopt;
    if (index.Type() == CTableIndex::INDEX_INTEGER) {
        const bool isAllowed = number >= index.Min() && number <= index.Max();
        return isAllowed ? std::optional(std::to_string(number)) : std::nullopt;
    }
    const std::string label = index.EnumLabel(static_cast<std::int32_t>(number));
    if (label.empty())
        return std::nullopt;
    return kit::text::IsPlain(label) ? TextValue(label) : std::to_string(number);
}

// Empty for a key that is no row.
std::optional<std::string> IndexLine(const DescribedKey & key, const IMetadata & record)
{
    const auto indices = TableIndicesOf(record);
    const std::size_t count = record.NumIndices();
    if (indices.size() != count || key.mIndices.size() != count || key.mIsRow != (count != 0) ||
        count > MAX_INDICES)
        return std::nullopt;
    std::string text;
    for (std::size_t position = 0; position < count; ++position) {
        const auto index = IndexText(key.mIndices[position], *indices[position]);
        if (!index)
            return std::nullopt;
        text += (text.empty() ? "" : ", ") + *index;
    }
    return count == 0 ? "" : Line(field::INDEX, count == 1 ? text : '[' + text + ']');
}

std::string FieldLines(const DescribedValue & value)
{
    std::string text;
    for (const NamedText & entry : value.mFields)
        text += entry.mName + " = " + entry.mText + '\n';
    return text;
}

// Short structs stand on a line; of longer ones each field does, under a header.
std::string StructLines(const std::vector<DescribedValue> & values, bool isArray)
{
    const bool areShort = std::all_of(values.begin(), values.end(),
        [](const DescribedValue & value) { return value.mText.size() <= LINE_WIDTH; });
    if (areShort && !isArray)
        return Line(field::VALUE, values.front().mText);
    const std::string header = std::string(field::SUBSYSTEM) + '.' + field::KEY + '.' + field::VALUE;
    if (!isArray)
        return '[' + header + "]\n" + FieldLines(values.front());
    std::string text;
    for (const DescribedValue & value : values)
        text += areShort ? "    " + value.mText + ",\n" : "[[" + header + "]]\n" + FieldLines(value);
    return areShort ? Line(field::VALUE, "[\n" + text + ']') : text;
}

std::string ValueLines(const DescribedKey & key, const IMetadata & record)
{
    if (record.MetadataType() == METADATA_STRUCT)
        return StructLines(key.mValues, record.IsArray());
    const bool isAlone = key.mValues.size() == 1 &&
                         (!record.IsArray() || record.MetadataType() == METADATA_ENUM || IsTextual(record));
    if (isAlone)
        return Line(field::VALUE, key.mValues.front().mText);
    std::vector<ValueText> items;
    for (const DescribedValue & value : key.mValues)
        items.push_back({ "", value.mText, true });
    return Line(field::VALUE, ArrayText(items));
}

}   // namespace

std::optional<DescribedValue> ToDescribedValue(IPayload & payload, const IMetadata & record)
{
    switch (record.MetadataType()) {
    case METADATA_SIMPLE:
        return IsTextual(record) ? StringValue(payload, record) : NumberValue(payload, record);
    case METADATA_ENUM:
        return EnumValue(payload, record);
    case METADATA_STRUCT:
        return StructValue(payload, record);
    default:
        return std::nullopt;
    }
}

std::optional<std::string> DescribedLines(const DescribedKey & key, const IMetadata & record)
{
    if (!IsCountGood(record, key.mValues.size()) || LooksPadded(key, record))
        return std::nullopt;
    const auto index = IndexLine(key, record);
    if (!index)
        return std::nullopt;
    const std::string name = record.Name();
    const std::string head =
        name.empty() ? Line(field::ID, std::to_string(record.PsId())) : Line(field::NAME, TextValue(name));
    return head + *index + ValueLines(key, record);
}

}   // namespace tomlconfig
