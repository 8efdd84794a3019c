#include "structtext.h"

#include "recordfacts.h"
#include "vocabulary.h"

#include <configtools/keywords.h>
#include <configtools/structcodec.h>
#include <configtools/structlayout.h>
#include <kit/layout/structtree.h>

#include <algorithm>
#include <cstring>

namespace tomlconfig {

namespace {

using FieldTexts = std::optional<std::vector<NamedText>>;

bool IsTextual(const IMetadata & record)
{
    return record.InternalType() == keywords::TYPE_STRING ||
           record.InternalType() == keywords::TYPE_OCTET_STRING;
}

// The type by which the library reads and unpacks a number of this field.
const NumberType * NumberTypeOf(const CStructField & field)
{
    const IMetadata & record = *field.Metadata();
    const std::string type = record.InternalType();
    if (CStructCodec::BitsForInternalType(type) != 0 || record.IsArray())
        return FindNumberType(type);
    const std::string format = record.Format();
    const bool isUnsigned =
        format == keywords::FORMAT_UNSIGNED_DECIMAL || format == keywords::FORMAT_HEXADECIMAL;
    const std::string fitting =
        CStructCodec::GetIntTypeFromBitWidth(std::to_string(field.ElemBitWidth()), isUnsigned);
    return FindNumberType(fitting.empty() ? type : fitting);
}

// The bytes of a number or enumerator, the lowest first.
std::optional<std::string> BytesOf(IPayload & payload)
{
    if (auto * const text = dynamic_cast<CStringPayload *>(&payload))
        return text->GetValue();
    const bool isNumber =
        FindNumberType(payload.Type()) != nullptr || dynamic_cast<CEnumPayload *>(&payload) != nullptr;
    char bytes[sizeof(std::uint64_t)] = {};
    const std::uint64_t count = isNumber ? payload.WriteToMem(bytes, sizeof bytes) : 0;
    return count != 0 && count <= sizeof bytes ? std::optional(std::string(bytes, count)) : std::nullopt;
}

std::uint64_t NumberOf(const std::string & bytes)
{
    std::uint64_t number = 0;
    std::memcpy(&number, bytes.data(), std::min(bytes.size(), sizeof number));
    return number;
}

std::string NumberText(std::uint64_t bits, const NumberType & type)
{
    return tomlconfig::NumberText(kit::numbertypes::NumberOf(type, kit::numbertypes::VariableOf(type, bits)));
}

// The octets of a field of more than 64 bits, which is a list of words.
std::optional<std::string> WideBytes(IPayload & payload)
{
    auto * const words = dynamic_cast<CComplexPayload *>(&payload);
    if (words == nullptr)
        return BytesOf(payload);
    std::string bytes;
    for (IPayload * const word : words->GetFields()) {
        const auto pair = word != nullptr ? BytesOf(*word) : std::nullopt;
        if (!pair || pair->size() != 2)
            return std::nullopt;
        bytes += *pair;
    }
    return bytes;
}

std::optional<std::string> EnumText(std::uint64_t bits, const IMetadata & record)
{
    const std::string name = FirstEnumName(record, static_cast<std::int32_t>(bits));
    return name.empty() ? std::nullopt : std::optional(TextValue(name));
}

// A device doesn't know the length of a text: it ends where the zeros begin that fill its field.
std::string TextOfBytes(std::string bytes, const IMetadata & record)
{
    if (record.InternalType() == keywords::TYPE_OCTET_STRING)
        return OctetsText(bytes, false);
    const std::size_t last = bytes.find_last_not_of('\0');
    return TextValue(bytes.substr(0, last == std::string::npos ? 0 : last + 1));
}

// A number that was filled up to more than 64 bits, by zeros or by its sign.
std::optional<std::string> WideNumberText(const std::string & bytes, const CStructField & field)
{
    const NumberType * const type = NumberTypeOf(field);
    if (type == nullptr || bytes.size() < type->Bytes())
        return std::nullopt;
    const std::string number = bytes.substr(0, type->Bytes());
    const bool isSigned = field.Metadata()->Format() == keywords::FORMAT_SIGNED_DECIMAL;
    const char fill = isSigned && (number.back() & 0x80) != 0 ? '\xFF' : '\0';
    const bool isFilled = bytes.find_first_not_of(fill, number.size()) == std::string::npos;
    return isFilled ? std::optional(NumberText(NumberOf(number), *type)) : std::nullopt;
}

std::optional<std::string> PlainText(IPayload & payload, const CStructField & field)
{
    const IMetadata & record = *field.Metadata();
    const bool isWide = field.ElemBitWidth() > 64;
    const auto bytes = isWide ? WideBytes(payload) : BytesOf(payload);
    if (!bytes || field.ElemBitWidth() <= 0)
        return std::nullopt;
    if (record.MetadataType() == METADATA_ENUM)
        return isWide ? std::nullopt : EnumText(NumberOf(*bytes), record);
    if (IsTextual(record)) {
        const auto width = static_cast<std::size_t>(field.ElemBitWidth());
        const std::size_t held = isWide ? width / 16 * 2 : width / 8;
        return TextOfBytes((*bytes + std::string(held, '\0')).substr(0, held), record);
    }
    if (isWide)
        return WideNumberText(*bytes, field);
    const NumberType * const type = NumberTypeOf(field);
    const bool fits = type != nullptr && FindNumberType(payload.Type()) != nullptr &&
                      FindNumberType(payload.Type())->mType == type->mType;
    return fits ? std::optional(NumberText(NumberOf(*bytes), *type)) : std::nullopt;
}

// The codec unpacks the items of an array as unsigned numbers, and those of 64 bits as 32. Their own type tells the sign.
std::optional<std::string> ItemText(IPayload & payload, const IMetadata & record)
{
    const NumberType * const type = FindNumberType(record.InternalType());
    const auto bytes = BytesOf(payload);
    if (type == nullptr || !bytes)
        return std::nullopt;
    if (record.MetadataType() == METADATA_ENUM)
        return EnumText(NumberOf(*bytes), record);
    const bool isCutOff = type->Bytes() == 8 && payload.Type() == PAYLOAD_UINT32;
    const bool fits = bytes->size() == type->Bytes() || isCutOff;
    return fits ? std::optional(NumberText(NumberOf(*bytes), *type)) : std::nullopt;
}

std::optional<std::string> StructText(IPayload & payload, const IMetadata & record);

template <typename TextOfT>
std::optional<std::string> ListText(IPayload & payload, std::uint64_t held, TextOfT textOf)
{
    auto * const list = dynamic_cast<CComplexPayload *>(&payload);
    if (list == nullptr || held == 0 || list->GetFields().size() != held)
        return std::nullopt;   // a file gives all items that the field holds
    std::string text;
    for (IPayload * const item : list->GetFields()) {
        const auto itemText = item != nullptr ? textOf(*item) : std::nullopt;
        if (!itemText)
            return std::nullopt;
        text += (text.empty() ? "[" : ", ") + *itemText;
    }
    return text + ']';
}

std::uint64_t StructsHeld(const CStructField & field)
{
    auto * const layout = dynamic_cast<CMetadataDetailStruct *>(field.Metadata()->Details());
    const std::uint64_t size = layout != nullptr ? StructSizeInBits(*layout) : 0;
    return size != 0 ? static_cast<std::uint64_t>(std::max(field.ElemBitWidth(), 0)) / size : 0;
}

std::optional<std::string> FieldText(IPayload & payload, const CStructField & field)
{
    const IMetadata & record = *field.Metadata();
    const bool isStruct = record.MetadataType() == METADATA_STRUCT;
    if (!record.IsArray())
        return isStruct ? StructText(payload, record) : PlainText(payload, field);
    if (isStruct)
        return ListText(payload, StructsHeld(field), [&](IPayload & item) { return StructText(item, record); });
    return ListText(payload, kit::layout::ItemsHeld(field.ElemBitWidth(), record.InternalType()),
        [&](IPayload & item) { return ItemText(item, record); });
}

// The fields of a tree as the codec makes it.
FieldTexts TreeFields(IPayload & payload, const IMetadata & record)
{
    auto * const tree = dynamic_cast<CComplexPayload *>(&payload);
    const auto & fields = FieldsOf(record);
    if (tree == nullptr || tree->GetFields().size() != fields.size() || !HasFieldNames(record))
        return std::nullopt;
    std::vector<NamedText> texts;
    for (std::size_t position = 0; position < fields.size(); ++position) {
        const auto name = KeyName(fields[position]->Metadata()->Name());
        const auto text = name ? FieldText(*tree->GetFields()[position], *fields[position]) : std::nullopt;
        if (!text)
            return std::nullopt;
        texts.push_back({ *name, *text });
    }
    return texts;
}

std::optional<std::string> StructText(IPayload & payload, const IMetadata & record)
{
    const FieldTexts fields = TreeFields(payload, record);
    return fields ? std::optional(TableText(*fields)) : std::nullopt;
}

}   // namespace

FieldTexts StructFields(CComplexPayload & instance, const IMetadata & record)
{
    auto * const layout = dynamic_cast<CMetadataDetailStruct *>(record.Details());
    if (layout == nullptr || instance.Type() != PAYLOAD_COMPLEX)
        return std::nullopt;
    const kit::layout::Result result = kit::layout::CodecTree(instance, *layout);
    return result.mTree != nullptr ? TreeFields(*result.mTree, record) : std::nullopt;
}

std::string TableText(const std::vector<NamedText> & fields)
{
    std::string text;
    for (const NamedText & field : fields)
        text += (text.empty() ? "{ " : ", ") + field.mName + " = " + field.mText;
    return text.empty() ? "{}" : text + " }";
}

}   // namespace tomlconfig
