#include "value.h"

#include "shape.h"

#include <configtools/elements.h>
#include <configtools/keywords.h>
#include <configtools/metadata.h>
#include <configtools/numbertypes.h>
#include <configtools/payloads.h>
#include <kit/layout/structtree.h>
#include <kit/text/hex.h>
#include <kit/text/utf8.h>

#include <algorithm>
#include <type_traits>

namespace workbench {

using namespace VrexZynConfigTools;
using kit::text::HexOf;
using kit::text::Printable;
using kit::text::Quoted;

namespace {

constexpr char TYPE_ENUM[] = "enum";
constexpr char TYPE_STRUCT[] = "struct";
constexpr char TYPE_RAW[] = "raw";

Value ValueOf(IPayload & payload);

bool TakeNumber(IPayload & payload, const NumberType & type, Value & value)
{
    bool isTaken = false;
    VisitNumberType(type.mType, [&](auto numberClass) {
        using NumberT = typename decltype(numberClass)::Value;
        using WideT = std::conditional_t<std::is_signed_v<NumberT>, std::int64_t, std::uint64_t>;
        auto * const number = dynamic_cast<CPayload<NumberT> *>(&payload);
        isTaken = number != nullptr;
        if (isTaken)
            value = { type.mKeyword, static_cast<WideT>(number->GetValue()) };
    });
    return isTaken;
}

bool TakeEnumerator(IPayload & payload, const char * type, Value & value)
{
    auto * const enumerator = dynamic_cast<CEnumPayload *>(&payload);
    if (enumerator != nullptr)
        value = { type, Value::Enumerator{ enumerator->GetName(), enumerator->GetValue() } };
    return enumerator != nullptr;
}

bool TakeString(IPayload & payload, const char * type, Value & value)
{
    auto * const text = dynamic_cast<CStringPayload *>(&payload);
    if (text == nullptr)
        return false;
    if (text->IsOctet())
        value = { keywords::TYPE_OCTET_STRING, Value::Octets{ text->GetValue() } };
    else
        value = { type, Value::Text{ text->GetValue() } };
    return true;
}

std::vector<Value> ValuesOf(const std::vector<IPayload *> & payloads)
{
    std::vector<Value> values;
    for (IPayload * const payload : payloads) {
        if (payload != nullptr)
            values.push_back(ValueOf(*payload));
    }
    return values;
}

bool TakeFields(IPayload & payload, const char * type, Value & value)
{
    auto * const complex = dynamic_cast<CComplexPayload *>(&payload);
    if (complex != nullptr)
        value = { type, Value::Struct{ ValuesOf(complex->GetFields()) } };
    return complex != nullptr;
}

bool Take(IPayload & payload, Value & value)
{
    if (const NumberType * const type = FindNumberType(payload.Type()))
        return TakeNumber(payload, *type, value);
    switch (payload.Type()) {
    case PAYLOAD_STRING:
        return TakeString(payload, keywords::TYPE_STRING, value);
    case PAYLOAD_COMPLEX:
        return TakeFields(payload, TYPE_STRUCT, value);
    case PAYLOAD_ENUM:
        return TakeEnumerator(payload, TYPE_ENUM, value);
    case PAYLOAD_RAW:
        return TakeFields(payload, TYPE_RAW, value);
    default:
        return false;
    }
}

Value ValueOf(IPayload & payload)
{
    Value value;
    if (Take(payload, value))
        return value;
    return { "", Value::Text{ payload.ToString() } };   // a class of a plug-in, known by its text only
}

// Whether the payloads are the fields of one structure. A row whose only payload is a structure has that as its value.
bool HoldsFields(const IMetadata & metadata, const std::vector<Value> & values)
{
    const bool isWhole = values.size() == 1 && std::holds_alternative<Value::Struct>(values.front().mContent);
    return metadata.MetadataType() == METADATA_STRUCT && !metadata.IsArray() && !isWhole;
}

// A table row has lost its record, by the library's contract, but its payloads haven't.
const IMetadata & RecordOf(CElement & element, const std::vector<IPayload *> & payloads)
{
    if (const IMetadata * const record = element.Metadata())
        return *record;
    auto * const user = payloads.empty() ? nullptr : dynamic_cast<IMetadataUser *>(payloads.front());
    const IMetadata * const record = user == nullptr ? nullptr : user->Metadata();
    const bool isOfKey = record != nullptr && record->PsId() == element.PsId();
    return isOfKey ? *record : CNullMetadata::Ref();
}

// Structs of a provider's record, each in the form that has one entry for each field, whichever way it was read.
std::vector<Value> StructsOf(const std::vector<IPayload *> & payloads, CMetadataDetailStruct & layout)
{
    std::vector<Value> values;
    for (IPayload * const payload : payloads) {
        auto * const instance = dynamic_cast<CComplexPayload *>(payload);
        const auto result =
            instance == nullptr ? kit::layout::Result() : kit::layout::CodecTree(*instance, layout);
        if (payload != nullptr)
            values.push_back(ValueOf(result.mTree == nullptr ? *payload : *result.mTree));
    }
    return values;
}

Value ListOrSingle(std::vector<Value> values, bool isArray)
{
    if (values.size() == 1 && !isArray)
        return std::move(values.front());
    std::string type = values.empty() ? std::string() : values.front().mType;
    return { std::move(type), Value::List{ std::move(values) } };
}

std::string Joined(const std::vector<Value> & values)
{
    std::string text;
    for (const Value & value : values)
        text.append(text.empty() ? "" : ", ").append(ToText(value));
    return text;
}

struct TextMaker
{
    std::string operator()(std::int64_t number) const { return std::to_string(number); }
    std::string operator()(std::uint64_t number) const { return std::to_string(number); }
    std::string operator()(const Value::Text & text) const { return Quoted(text.mBytes); }
    std::string operator()(const Value::Octets & octets) const
    {
        return octets.mBytes.empty() ? "(no octets)" : HexOf(octets.mBytes, " ");
    }
    std::string operator()(const Value::Enumerator & enumerator) const
    {
        return Printable(enumerator.mName) + " (" + std::to_string(enumerator.mNumber) + ')';
    }
    std::string operator()(const Value::List & list) const { return '[' + Joined(list.mItems) + ']'; }
    std::string operator()(const Value::Struct & fields) const { return '{' + Joined(fields.mFields) + '}'; }
};

}   // namespace

Value ValueOf(CElement & element)
{
    const std::vector<IPayload *> payloads = element.GetPayloadCopy(false);
    const IMetadata & metadata = RecordOf(element, payloads);
    const bool isRaw = dynamic_cast<CElementRaw *>(&element) != nullptr;
    // A record with details comes from a provider: the element factory has put the fields into one payload then.
    const bool holdsFields =
        dynamic_cast<CElementStruct *>(&element) != nullptr && metadata.Details() == nullptr;
    if (isRaw || (holdsFields && !metadata.IsArray()))
        return { isRaw ? TYPE_RAW : TYPE_STRUCT, Value::Struct{ ValuesOf(payloads) } };
    return ValueOf(payloads, metadata);
}

Value ValueOf(const std::vector<IPayload *> & payloads, const IMetadata & metadata)
{
    CMetadataDetailStruct * const layout = StructOf(metadata);
    std::vector<Value> values = layout == nullptr ? ValuesOf(payloads) : StructsOf(payloads, *layout);
    if (HoldsFields(metadata, values))
        return { TYPE_STRUCT, Value::Struct{ std::move(values) } };
    return ListOrSingle(std::move(values), metadata.IsArray());
}

std::string ToText(const Value & value)
{
    return std::visit(TextMaker{}, value.mContent);
}

}   // namespace workbench
