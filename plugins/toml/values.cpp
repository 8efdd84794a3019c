#include "values.h"

#include <configtools/elements.h>
#include <configtools/keywords.h>
#include <configtools/numbertypes.h>
#include <kit/text/hex.h>
#include <kit/text/number.h>
#include <kit/tomlsyntax/tomlsyntax.h>

#include <algorithm>
#include <limits>

namespace tomlconfig {

using kit::numbertypes::NumberRange;

namespace {

constexpr char FIELD_FORM[] = "a field { TYPE = VALUE } or a nested structure [ ... ]";

// A finding about a field of the file's format.
Finding FieldFinding(
    const toml::node & node, const std::string & code, const std::string & name, const std::string & text)
{
    Finding finding = FindingAt(node, code, Quoted(name) + text);
    finding.mField = name;
    return finding;
}

}   // namespace

CValueReader::CValueReader(CFindings & findings)
    : mFindings(findings)
{}

void CValueReader::CheckFields(
    const toml::table & table, const std::string & where, const std::vector<std::string> & known)
{
    for (const auto & [key, node] : table) {
        const std::string name(key.str());
        if (std::find(known.begin(), known.end(), name) == known.end())
            mFindings.Add(WithAdvice(FindingAt(key.source().begin, "unknown-field",
                                         "unknown field " + Quoted(name) + " in " + where),
                name, known));
    }
}

const toml::node * CValueReader::Required(
    const toml::table & table, const char * name, const std::string & what)
{
    const toml::node * node = table.get(name);
    if (node == nullptr)
        mFindings.Add(FieldFinding(table, "missing-field", name, " is missing: " + what));
    return node;
}

void CValueReader::AddMismatch(const toml::node & node, const std::string & name, const std::string & expected)
{
    Finding finding = FieldFinding(
        node, "wrong-kind", name, ": expected " + expected + ", found " + kit::tomlsyntax::KindOf(node));
    finding.mExpected = expected;
    mFindings.Add(std::move(finding));
}

std::optional<std::string> CValueReader::Text(const toml::node & node, const std::string & name)
{
    if (const auto * text = node.as_string())
        return text->get();
    const toml::table * table = node.as_table();
    const toml::node * hex = table != nullptr ? table->get(field::HEX) : nullptr;
    if (hex == nullptr || table->size() != 1) {
        AddMismatch(node, name, "a text or { hex = \"...\" }");
        return std::nullopt;
    }
    return Octets(*hex, field::HEX);
}

std::optional<std::string> CValueReader::Octets(const toml::node & node, const std::string & name)
{
    const auto * text = node.as_string();
    if (text == nullptr) {
        AddMismatch(node, name, "bytes as a text of hexadecimal digits");
        return std::nullopt;
    }
    auto bytes = kit::text::BytesOfHex(text->get());
    if (!bytes)
        mFindings.Add(FieldFinding(
            node, "bad-hex", name, ": expected pairs of hexadecimal digits, found " + Quoted(text->get())));
    return bytes;
}

std::optional<std::string> CValueReader::TextOrOctets(const toml::node & node, bool isOctet)
{
    return isOctet ? Octets(node, field::VALUE) : Text(node, field::VALUE);
}

std::optional<std::int64_t> CValueReader::Integer(
    const toml::node & node, const std::string & name, std::int64_t min, std::int64_t max)
{
    const std::string range = NumberRange{ min, max }.Text();
    const auto * integer = node.as_integer();
    if (integer == nullptr) {
        AddMismatch(node, name, "a whole number from " + range);
        return std::nullopt;
    }
    const std::int64_t number = integer->get();
    if (number < min || number > max) {
        mFindings.Add(WithExpected(
            FieldFinding(node, "out-of-range", name, ": " + std::to_string(number) + " is out of range"),
            range));
        return std::nullopt;
    }
    return number;
}

std::optional<std::uint64_t> CValueReader::Number(const toml::node & node, const std::string & typeWord)
{
    const NumberType & type = *FindNumberType(typeWord);
    const auto * text = node.as_string();
    if (text != nullptr && type.mType == NUMERIC_UINT64) {
        const auto number = kit::text::ParseWithPrefix(text->get());
        if (!number)
            mFindings.Add(FieldFinding(node, "bad-number", field::VALUE,
                ": expected a number of the type uint64, found " + Quoted(text->get())));
        return number;
    }
    const auto * integer = node.as_integer();
    if (integer == nullptr) {
        AddMismatch(node, field::VALUE, "a whole number of the type " + typeWord);
        return std::nullopt;
    }
    const std::int64_t number = integer->get();
    const NumberRange range = kit::numbertypes::RangeOf(type);
    if (!range.Contains(number)) {
        mFindings.Add(WithExpected(FieldFinding(node, "out-of-range", field::VALUE,
                                       ": " + std::to_string(number) + " is out of range for " + typeWord),
            range.Text()));
        return std::nullopt;
    }
    return static_cast<std::uint64_t>(number);
}

std::optional<std::pair<std::string, std::int32_t>> CValueReader::Enumerator(const toml::node & node)
{
    const toml::table * table = node.as_table();
    if (table == nullptr) {
        AddMismatch(node, field::VALUE, "an enumerator { name = \"...\", number = ... }");
        return std::nullopt;
    }
    CheckFields(*table, "an enumerator", { field::NAME, field::NUMBER });
    const toml::node * nameNode = Required(*table, field::NAME, "an enumerator has a name and a number");
    const toml::node * numberNode = Required(*table, field::NUMBER, "an enumerator has a name and a number");
    const auto name = nameNode != nullptr ? Text(*nameNode, field::NAME) : std::nullopt;
    using Limits = std::numeric_limits<std::int32_t>;
    const auto number = numberNode != nullptr
                            ? Integer(*numberNode, field::NUMBER, Limits::min(), Limits::max())
                            : std::nullopt;
    if (!name || !number)
        return std::nullopt;
    return std::pair(*name, static_cast<std::int32_t>(*number));
}

std::unique_ptr<IPayload> CValueReader::Leaf(const toml::node & node, const std::string & typeWord)
{
    if (const NumberType * type = FindNumberType(typeWord)) {
        const auto bits = Number(node, typeWord);
        return std::unique_ptr<IPayload>(bits ? CElementNumericArray::GetPayloadByNumericType(
                                                    type->mType, kit::numbertypes::VariableOf(*type, *bits))
                                              : nullptr);
    }
    if (typeWord == word::ENUM) {
        const auto enumerator = Enumerator(node);
        return enumerator ? std::make_unique<CEnumPayload>(enumerator->first, enumerator->second) : nullptr;
    }
    const bool isOctet = typeWord == keywords::TYPE_OCTET_STRING;
    const auto text = TextOrOctets(node, isOctet);
    return text ? std::make_unique<CStringPayload>(*text, isOctet) : nullptr;
}

PayloadList CValueReader::Fields(const toml::array & array, int depth)
{
    PayloadList fields;
    for (const toml::node & node : array)
        if (auto payload = Field(node, depth))
            fields.push_back(std::move(payload));
    return fields;
}

std::unique_ptr<IPayload> CValueReader::Field(const toml::node & node, int depth)
{
    if (const toml::array * array = node.as_array())
        return Structure(*array, std::make_unique<CComplexPayload>(PAYLOAD_COMPLEX), depth);
    const toml::table * table = node.as_table();
    if (table == nullptr || table->size() != 1) {
        AddMismatch(node, field::VALUE, FIELD_FORM);
        return nullptr;
    }
    return TypedField(*table, depth);
}

std::unique_ptr<IPayload> CValueReader::TypedField(const toml::table & table, int depth)
{
    const auto first = table.begin();
    const auto & [key, node] = *first;
    const std::string typeWord(key.str());
    const bool isKnown = std::find(TypeWords().begin(), TypeWords().end(), typeWord) != TypeWords().end();
    if (!isKnown) {
        mFindings.Add(
            WithAdvice(FindingAt(key.source().begin, "unknown-type", "unknown type " + Quoted(typeWord)),
                typeWord, TypeWords()));
        return nullptr;
    }
    if (typeWord != word::STRUCT && typeWord != word::RAW)
        return Leaf(node, typeWord);
    const toml::array * array = node.as_array();
    if (array == nullptr) {
        AddMismatch(node, typeWord, "an array of fields [ ... ]");
        return nullptr;
    }
    if (typeWord == word::RAW)
        return Structure(*array, std::make_unique<CRawPayload>(""), depth);
    return Structure(*array, std::make_unique<CComplexPayload>(PAYLOAD_COMPLEX), depth);
}

std::unique_ptr<IPayload> CValueReader::Structure(
    const toml::array & array, std::unique_ptr<CComplexPayload> structure, int depth)
{
    if (depth >= MAX_DEPTH) {
        mFindings.Add(WithExpected(FindingAt(array, "nested-too-deep", "structures nest too deep"),
            std::to_string(MAX_DEPTH) + " levels at most"));
        return nullptr;
    }
    for (auto & field : Fields(array, depth + 1)) {
        structure->AddField(field.get());
        field.release();   // the structure owns it now
    }
    return structure;
}

}   // namespace tomlconfig
