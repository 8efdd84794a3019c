#include "valuetext.h"

#include "vocabulary.h"

#include <toml++/toml.h>

#include <configtools/keywords.h>
#include <configtools/payloads.h>
#include <kit/text/hex.h>
#include <kit/text/utf8.h>

#include <algorithm>
#include <locale>
#include <sstream>

namespace tomlconfig {

namespace {

constexpr std::size_t OCTETS_ON_A_LINE = 32;

std::string Indentation(int depth)
{
    return std::string(static_cast<std::size_t>(depth) * 4, ' ');
}

std::string QuotedText(const std::string & text)
{
    std::ostringstream stream;
    stream.imbue(std::locale::classic());
    const toml::value<std::string> value(text);
    stream << toml::toml_formatter(value, toml::format_flags::allow_unicode_strings);
    return stream.str();
}

}   // namespace

std::string OctetsText(const std::string & bytes, bool mayWrap)
{
    if (bytes.size() <= OCTETS_ON_A_LINE || !mayWrap)
        return '"' + kit::text::HexOf(bytes, " ") + '"';
    std::string text = "'''";
    for (std::size_t position = 0; position < bytes.size(); position += OCTETS_ON_A_LINE)
        text += '\n' + Indentation(1) +
                kit::text::HexOf(std::string_view(bytes).substr(position, OCTETS_ON_A_LINE), " ");
    return text + "'''";
}

namespace {

std::string FieldText(const ValueText & field)
{
    return field.mWord == word::STRUCT ? field.mText : "{ " + field.mWord + " = " + field.mText + " }";
}

std::optional<ValueText> NumberValue(IPayload & payload, const NumberType & type)
{
    const void * value = payload.RawData();
    if (value == nullptr || payload.Length() != type.Bytes())
        return std::nullopt;
    return ValueText{ type.mKeyword, NumberText(kit::numbertypes::NumberIn(type, value)), true };
}

std::optional<ValueText> StringValue(IPayload & payload)
{
    auto * text = dynamic_cast<CPayload<std::string> *>(&payload);
    if (text == nullptr)
        return std::nullopt;
    auto * octets = dynamic_cast<CStringPayload *>(&payload);
    if (octets != nullptr && octets->IsOctet())
        return ValueText{ keywords::TYPE_OCTET_STRING, OctetsText(octets->GetValue(), true), true };
    return ValueText{ keywords::TYPE_STRING, TextValue(text->GetValue()), true };
}

std::optional<ValueText> EnumValue(IPayload & payload)
{
    auto * enumerator = dynamic_cast<CEnumPayload *>(&payload);
    if (enumerator == nullptr)
        return std::nullopt;
    const std::string name = TextValue(enumerator->GetName());
    const std::string number = std::to_string(enumerator->GetValue());
    return ValueText{ word::ENUM, "{ name = " + name + ", number = " + number + " }", true };
}

bool FitsOneLine(const std::vector<ValueText> & fields, int depth)
{
    std::size_t width = Indentation(depth).size() + 2;
    for (const ValueText & field : fields)
        width += FieldText(field).size() + 2;
    const bool areLeaves =
        std::all_of(fields.begin(), fields.end(), [](const ValueText & field) { return field.mIsLeaf; });
    return areLeaves && width <= LINE_WIDTH;
}

std::string OneLine(const std::vector<ValueText> & fields)
{
    std::string text;
    for (const ValueText & field : fields)
        text += (text.empty() ? "[" : ", ") + FieldText(field);
    return text + ']';
}

std::optional<ValueText> StructureValue(IPayload & payload, int depth)
{
    auto * structure = dynamic_cast<CComplexPayload *>(&payload);
    if (structure == nullptr || depth > MAX_DEPTH)
        return std::nullopt;
    std::vector<ValueText> fields;
    for (IPayload * field : structure->GetFields()) {
        if (field == nullptr)
            continue;   // passed over, as everywhere
        auto value = PayloadValue(*field, depth + 1);
        if (!value)
            return std::nullopt;
        fields.push_back(std::move(*value));
    }
    const char * typeWord = payload.Type() == PAYLOAD_RAW ? word::RAW : word::STRUCT;
    const bool isShort = !fields.empty() && FitsOneLine(fields, depth);
    return ValueText{ typeWord, isShort ? OneLine(fields) : FieldsText(fields, depth), false };
}

}   // namespace

std::string TextValue(const std::string & text)
{
    return kit::text::IsPlain(text) ? QuotedText(text) : "{ hex = \"" + kit::text::HexOf(text, " ") + "\" }";
}

std::optional<std::string> KeyName(const std::string & name)
{
    const bool isBare = !name.empty() && std::all_of(name.begin(), name.end(), [](char character) {
        return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
               (character >= '0' && character <= '9') || character == '_' || character == '-';
    });
    if (isBare)
        return name;
    return kit::text::IsPlain(name) ? std::optional(QuotedText(name)) : std::nullopt;
}

std::optional<ValueText> PayloadValue(IPayload & payload, int depth)
{
    const PayloadTypeEnum code = payload.Type();
    if (const NumberType * type = FindNumberType(code))
        return NumberValue(payload, *type);
    switch (code) {
    case PAYLOAD_STRING:
        return StringValue(payload);
    case PAYLOAD_ENUM:
        return EnumValue(payload);
    case PAYLOAD_COMPLEX:
    case PAYLOAD_RAW:
        return StructureValue(payload, depth);
    default:
        return std::nullopt;
    }
}

std::string ArrayText(const std::vector<ValueText> & items)
{
    std::string line = "[";
    for (const ValueText & item : items)
        line += (line.size() > 1 ? ", " : "") + item.mText;
    if (line.size() <= LINE_WIDTH)
        return line + ']';

    std::string text = "[\n";
    line.clear();
    for (const ValueText & item : items) {
        if (!line.empty() && line.size() + item.mText.size() > LINE_WIDTH) {
            text += Indentation(1) + line + '\n';
            line.clear();
        }
        line += (line.empty() ? "" : " ") + item.mText + ',';
    }
    return text + Indentation(1) + line + "\n]";
}

std::string FieldsText(const std::vector<ValueText> & fields, int depth)
{
    if (fields.empty())
        return "[]";
    std::string text = "[\n";
    for (const ValueText & field : fields)
        text += Indentation(depth + 1) + FieldText(field) + ",\n";
    return text + Indentation(depth) + ']';
}

}   // namespace tomlconfig
