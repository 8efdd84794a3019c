#include <configtools/elements.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <memory>
#include <string_view>

#include "payloadlist.h"
#include <configtools/numbertypes.h>
#include <messages/trace.h>

namespace VrexZynConfigTools {

namespace {

constexpr GroupEnum MESSAGE_GROUP = GROUP_FRAMEWORK;

/// What an array counts on top of its payloads, in bytes.
constexpr std::uint64_t LENGTH_FIELD = 2;

std::size_t WidthOf(NumericTypeEnum type)
{
    const NumberType * const numberType = FindNumberType(type);
    return numberType != nullptr ? numberType->Bytes() : 0;
}

/// Null for no numeric type.
std::unique_ptr<IPayload> MakeNumericPayload(NumericTypeEnum type, NumericVariable value)
{
    std::unique_ptr<IPayload> payload;
    VisitNumberType(type, [&](auto number) {
        payload = std::make_unique<typename decltype(number)::Payload>(value.*number.MEMBER);
    });
    return payload;
}

NumericTypeEnum TypeOfKeyword(std::string_view keyword)
{
    const NumberType * const numberType = FindNumberType(keyword);
    return numberType != nullptr ? numberType->mType : NUMERIC_NONE;
}

/// The leading `width` bytes of the payload's value; null for a payload that has no value so wide.
const void * LeadingBytes(IPayload * payload, std::size_t width)
{
    return payload != nullptr && payload->Length() >= width ? payload->RawData() : nullptr;
}

/// A negative number isn't sign-extended, intended: the reader takes the member that fits the type.
NumericVariable LowBytes(IPayload * payload, std::size_t width)
{
    NumericVariable value{};
    if (const void * bytes = LeadingBytes(payload, width))
        std::memcpy(&value.mUint64, bytes, width);
    return value;
}

bool Holds(IPayload * payload, std::size_t width, const NumericVariable & value)
{
    if (width == 0)
        return true;   // without a numeric type nothing is compared, intended
    const void * bytes = LeadingBytes(payload, width);
    return bytes != nullptr && std::memcmp(bytes, &value.mUint64, width) == 0;
}

bool HoldAll(
    const std::vector<IPayload *> & payloads, std::size_t width, const std::vector<NumericVariable> & values)
{
    return std::equal(payloads.begin(), payloads.end(), values.begin(), values.end(),
        [width](IPayload * payload, const NumericVariable & value) { return Holds(payload, width, value); });
}

/// The payloads for `values`; none for no numeric type.
std::vector<std::unique_ptr<IPayload>> MakeNumericPayloads(
    NumericTypeEnum type, const std::vector<NumericVariable> & values)
{
    std::vector<std::unique_ptr<IPayload>> payloads;
    if (FindNumberType(type) == nullptr)
        return payloads;
    payloads.reserve(values.size());
    for (const NumericVariable & value : values)
        payloads.push_back(MakeNumericPayload(type, value));
    return payloads;
}

/// The high bytes stay zero, also of a negative number.
template <typename T>
std::vector<NumericVariable> Variables(const std::vector<T> & values, T NumericVariable::*member)
{
    std::vector<NumericVariable> variables(values.size());
    for (std::size_t position = 0; position < values.size(); ++position)
        variables[position].*member = values[position];
    return variables;
}

}   // namespace

CElementNumericArray::CElementNumericArray(
    NumericTypeEnum type, std::uint32_t psId, const std::string & name, bool changed)
    : CElement(psId, name, changed)
    , mNumericType(type)
{
    ZYN_CONSTRUCTOR(GROUP_CORE_CLASSES, "VrexZynConfigTools::CElementNumericArray::CElementNumericArray");
}

CElementNumericArray::CElementNumericArray(
    const std::string & typeName, std::uint32_t psId, const std::string & name, bool changed)
    : CElement(psId, name, changed)
    , mNumericType(TypeOfKeyword(typeName))
{
    ZYN_CONSTRUCTOR(GROUP_CORE_CLASSES, "VrexZynConfigTools::CElementNumericArray::CElementNumericArray");
}

CElementNumericArray::CElementNumericArray(
    std::uint32_t psId, const std::string & name, const std::vector<IPayload *> & payload, bool changed)
    : CElement(psId, name, payload, changed)
    , mNumericType(NUMERIC_NONE)   // not derived from the payloads, intended
{
    ZYN_CONSTRUCTOR(GROUP_CORE_CLASSES, "VrexZynConfigTools::CElementNumericArray::CElementNumericArray");
}

std::string CElementNumericArray::ToString() const
{
    std::string result;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CElementNumericArray::ToString", result);

    const char * separator = "";
    for (IPayload * payload : mPayload) {
        if (payload == nullptr)
            continue;
        result.append(separator).append(payload->ToString());
        separator = " ";
    }
    return result;
}

std::uint64_t CElementNumericArray::Size() const
{
    std::uint64_t result = 0;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CElementNumericArray::Size", result);

    return result = LENGTH_FIELD + PayloadCollectionSize();
}

NumericTypeEnum CElementNumericArray::Type() const
{
    return mNumericType;
}

const std::vector<NumericVariable> CElementNumericArray::Value() const
{
    ZYN_SENTRY("VrexZynConfigTools::CElementNumericArray::Value");

    std::vector<NumericVariable> values;
    values.reserve(mPayload.size());
    for (IPayload * payload : mPayload)
        values.push_back(LowBytes(payload, WidthOf(mNumericType)));
    return values;
}

void CElementNumericArray::SetValue(const std::vector<std::uint8_t> & values)
{
    SetValue(Variables(values, &NumericVariable::mUint8));
}

void CElementNumericArray::SetValue(const std::vector<std::uint16_t> & values)
{
    SetValue(Variables(values, &NumericVariable::mUint16));
}

void CElementNumericArray::SetValue(const std::vector<std::uint32_t> & values)
{
    SetValue(Variables(values, &NumericVariable::mUint32));
}

void CElementNumericArray::SetValue(const std::vector<std::uint64_t> & values)
{
    SetValue(Variables(values, &NumericVariable::mUint64));
}

void CElementNumericArray::SetValue(const std::vector<std::int8_t> & values)
{
    SetValue(Variables(values, &NumericVariable::mInt8));
}

void CElementNumericArray::SetValue(const std::vector<std::int16_t> & values)
{
    SetValue(Variables(values, &NumericVariable::mInt16));
}

void CElementNumericArray::SetValue(const std::vector<std::int32_t> & values)
{
    SetValue(Variables(values, &NumericVariable::mInt32));
}

void CElementNumericArray::SetValue(const std::vector<std::int64_t> & values)
{
    SetValue(Variables(values, &NumericVariable::mInt64));
}

void CElementNumericArray::SetValue(const std::vector<NumericVariable> & values)
{
    ZYN_SENTRY("VrexZynConfigTools::CElementNumericArray::SetValue");

    if (HoldAll(mPayload, WidthOf(mNumericType), values))
        return;   // nothing differs: the payloads stay the same objects, and the element stays clean

    // What may fail comes before the old value goes.
    auto payloads = MakeNumericPayloads(mNumericType, values);
    mPayload.reserve(payloads.size());
    ClearPayload();
    for (auto & payload : payloads) {
        payloadlist::HandOn(payload.get(), mMetadata);
        payloadlist::Append(mPayload, std::move(payload));
    }
    mChanged = true;
}

IPayload * CElementNumericArray::GetPayloadByNumericType(NumericTypeEnum type, NumericVariable value)
{
    ZYN_SENTRY("VrexZynConfigTools::CElementNumericArray::GetPayloadByNumericType");

    return MakeNumericPayload(type, value).release();   // the caller has it now
}

}   // namespace VrexZynConfigTools
