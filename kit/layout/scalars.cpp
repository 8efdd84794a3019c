#include "scalars.h"

#include <configtools/elements.h>
#include <configtools/keywords.h>
#include <configtools/metadata.h>
#include <configtools/structcodec.h>

#include <algorithm>
#include <cstring>

namespace kit::layout {

using namespace VrexZynConfigTools;

namespace {

bool IsNumeric(IPayload & payload)
{
    return payload.Type() >= PAYLOAD_INT8 && payload.Type() <= PAYLOAD_UINT64;
}

// The bytes of a number or enumerator; empty for any other payload, whatever a plug-in's class says of itself.
std::string NumberOctets(IPayload & payload)
{
    if (!IsNumeric(payload) && dynamic_cast<CEnumPayload *>(&payload) == nullptr)
        return std::string();
    char octets[sizeof(std::uint64_t)] = {};
    const std::uint64_t count = payload.WriteToMem(octets, sizeof octets);
    return std::string(octets, std::min<std::uint64_t>(count, sizeof octets));
}

std::uint64_t LowestFirst(const std::string & octets)
{
    std::uint64_t number = 0;
    std::memcpy(&number, octets.data(), std::min(octets.size(), sizeof number));
    return number;
}

}   // namespace

std::optional<std::uint64_t> NumberOf(IPayload & payload)
{
    const std::string octets = NumberOctets(payload);
    return octets.empty() ? std::nullopt : std::optional(LowestFirst(octets));
}

std::unique_ptr<IPayload> CopyNumber(IPayload & payload)
{
    if (auto * const enumerator = dynamic_cast<CEnumPayload *>(&payload))
        return std::make_unique<CEnumPayload>(enumerator->GetName(), enumerator->GetValue());
    const auto number = NumberOf(payload);
    if (!number)
        return nullptr;
    NumericVariable value;
    value.mUint64 = *number;
    const auto type = static_cast<NumericTypeEnum>(payload.Type());   // the same values, by contract
    return std::unique_ptr<IPayload>(CElementNumericArray::GetPayloadByNumericType(type, value));
}

std::unique_ptr<IPayload> NumberOfText(IPayload & payload, const CStructField & field)
{
    auto * const text = dynamic_cast<CStringPayload *>(&payload);
    const int width = field.ElemBitWidth();
    if (text == nullptr || width < 1 || width > 64)
        return nullptr;
    const std::string octets = text->GetValue();
    const std::size_t last = octets.find_last_not_of('\0');
    NumericVariable value;
    value.mUint64 = LowestFirst(octets);
    const bool isTooLong = last != std::string::npos && last >= sizeof value;
    if (isTooLong || (width < 64 && value.mUint64 >> width != 0))
        return nullptr;
    const std::string format = field.Metadata()->Format();
    const bool isUnsigned =
        format == keywords::FORMAT_UNSIGNED_DECIMAL || format == keywords::FORMAT_HEXADECIMAL;
    const std::string type = CStructCodec::GetIntTypeFromBitWidth(std::to_string(width), isUnsigned);
    CElementNumericArray element(type, 0, "", true);
    return std::unique_ptr<IPayload>(CElementNumericArray::GetPayloadByNumericType(element.Type(), value));
}

std::optional<Octets> OctetsOf(IPayload & payload)
{
    if (auto * const text = dynamic_cast<CStringPayload *>(&payload))
        return Octets{ text->GetValue(), false };
    std::string octets = NumberOctets(payload);
    return octets.empty() ? std::nullopt : std::optional(Octets{ std::move(octets), true });
}

std::vector<IPayload *> WithoutNulls(CComplexPayload & list)
{
    std::vector<IPayload *> fields = list.GetFields();
    fields.erase(std::remove(fields.begin(), fields.end(), nullptr), fields.end());
    return fields;
}

bool HoldsOnlyLists(CComplexPayload & list)
{
    const std::vector<IPayload *> & fields = list.GetFields();
    return std::all_of(fields.begin(), fields.end(),
        [](IPayload * field) { return field == nullptr || dynamic_cast<CComplexPayload *>(field) != nullptr; });
}

CComplexPayload & AddList(CComplexPayload & owner, const IMetadata * record)
{
    auto list = std::make_unique<CComplexPayload>(PAYLOAD_COMPLEX);
    CComplexPayload & result = *list;
    if (record != nullptr)
        list->Use(*record);
    owner.AddField(list.release());
    return result;
}

}   // namespace kit::layout
