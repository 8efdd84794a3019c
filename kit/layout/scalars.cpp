#include "scalars.h"

#include <configtools/elements.h>
#include <configtools/keywords.h>
#include <configtools/metadata.h>
#include <configtools/numbertypes.h>
#include <configtools/structcodec.h>
#include <configtools/structlayout.h>

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

}   // namespace

std::uint64_t LowestFirst(const std::string & octets)
{
    std::uint64_t number = 0;
    std::memcpy(&number, octets.data(), std::min(octets.size(), sizeof number));
    return number;
}

std::uint64_t BytesHeld(const StructEntry & entry)
{
    return entry.mKind == StructEntryKind::WORDS ? 2 * std::uint64_t{ entry.mItems } : entry.mWidth / 8;
}

std::uint64_t NumberForm::Read(std::uint64_t bits) const
{
    const std::uint64_t read = LowBits(bits, mBits);
    const bool isNegative = mIsSigned && mBits != 0 && mBits < 64 && (read >> (mBits - 1) & 1) != 0;
    return isNegative ? read | ~std::uint64_t{ 0 } << mBits : read;
}

bool NumberForm::Holds(const Number & number) const
{
    const std::uint64_t read = Read(number.mBits);
    return read == number.mBits && (mIsSigned && static_cast<std::int64_t>(read) < 0) == number.mIsNegative;
}

std::string TextOf(const Number & number)
{
    return number.mIsNegative ? std::to_string(static_cast<std::int64_t>(number.mBits))
                              : std::to_string(number.mBits);
}

std::uint64_t LowBits(std::uint64_t number, unsigned count)
{
    return count < 64 ? number & ((std::uint64_t{ 1 } << count) - 1) : number;
}

std::string TypeOf(const CStructField & field)
{
    const IMetadata & record = *field.Metadata();
    const std::string type = record.InternalType();
    if (CStructCodec::BitsForInternalType(type) != 0 || record.IsArray())
        return type;
    const std::string format = record.Format();
    const bool isUnsigned =
        format == keywords::FORMAT_UNSIGNED_DECIMAL || format == keywords::FORMAT_HEXADECIMAL;
    std::string fitting =
        CStructCodec::GetIntTypeFromBitWidth(std::to_string(field.ElemBitWidth()), isUnsigned);
    return fitting.empty() ? type : fitting;
}

NumberForm FormOfItems(const IMetadata & record)
{
    if (record.MetadataType() == METADATA_ENUM)
        return FormOf(NUMERIC_NONE);
    const NumberType * const type = FindNumberType(record.InternalType());
    return type != nullptr ? NumberForm{ type->mBits, type->mIsSigned } : NumberForm{ 0, false };
}

NumberForm FormOf(NumericTypeEnum type)
{
    const NumberType * const found = FindNumberType(type);
    return found != nullptr ? NumberForm{ found->mBits, found->mIsSigned } : NumberForm{ 32, true };
}

bool IsTextual(const IMetadata & record)
{
    const std::string type = record.InternalType();
    return record.MetadataType() == METADATA_SIMPLE &&
           (type == keywords::TYPE_STRING || type == keywords::TYPE_OCTET_STRING);
}

std::uint64_t LongestText(const IMetadata & record)
{
    return static_cast<std::uint64_t>(record.Max());
}

std::optional<Number> ValueOf(IPayload & payload)
{
    const std::string octets = NumberOctets(payload);
    if (octets.empty())
        return std::nullopt;
    const bool isSigned = payload.Type() <= PAYLOAD_INT64 || !IsNumeric(payload);   // enumerators are signed
    const NumberForm type{ static_cast<unsigned>(8 * octets.size()), isSigned };
    const std::uint64_t bits = type.Read(LowestFirst(octets));
    return Number{ bits, isSigned && static_cast<std::int64_t>(bits) < 0 };
}

std::unique_ptr<IPayload> CopyNumber(IPayload & payload)
{
    if (auto * const enumerator = dynamic_cast<CEnumPayload *>(&payload))
        return std::make_unique<CEnumPayload>(enumerator->GetName(), enumerator->GetValue());
    const auto number = ValueOf(payload);
    if (!number)
        return nullptr;
    NumericVariable value;
    value.mUint64 = number->mBits;
    const auto type = static_cast<NumericTypeEnum>(payload.Type());   // the same values, by contract
    return std::unique_ptr<IPayload>(CElementNumericArray::GetPayloadByNumericType(type, value));
}

std::unique_ptr<IPayload> ItemOf(IPayload & payload, const IMetadata & record)
{
    const auto given = ValueOf(payload);
    const NumberType * const type = FindNumberType(record.InternalType());
    auto * const enumerators = dynamic_cast<CMetadataDetailEnum *>(record.Details());
    if (given && enumerators != nullptr && dynamic_cast<CEnumPayload *>(&payload) == nullptr) {
        const auto number = static_cast<std::int32_t>(given->mBits);
        return std::make_unique<CEnumPayload>(enumerators->EnumName(number), number);
    }
    if (!given || type == nullptr || enumerators != nullptr)
        return CopyNumber(payload);
    const NumberForm form{ type->mBits, type->mIsSigned };
    const bool isUnsigned = payload.Type() >= PAYLOAD_UINT8 && payload.Type() <= PAYLOAD_UINT64;
    NumericVariable value;
    value.mUint64 = form.Read(given->mBits);
    if (!form.Holds(*given) && !(isUnsigned && 8 * payload.Length() <= type->mBits))
        return CopyNumber(payload);
    return std::unique_ptr<IPayload>(CElementNumericArray::GetPayloadByNumericType(type->mType, value));
}

std::unique_ptr<IPayload> CopyText(IPayload & payload, const IMetadata & record)
{
    auto * const text = dynamic_cast<CStringPayload *>(&payload);
    const bool isOctets = record.InternalType() == keywords::TYPE_OCTET_STRING;
    return text != nullptr ? std::make_unique<CStringPayload>(text->GetValue(), isOctets) : nullptr;
}

std::unique_ptr<IPayload> TextOfOctets(std::string octets, const IMetadata & record)
{
    const bool isOctets = record.InternalType() == keywords::TYPE_OCTET_STRING;
    if (!isOctets)
        octets.resize(octets.find_last_not_of('\0') + 1);   // none: to nothing
    return std::make_unique<CStringPayload>(octets, isOctets);
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
    CElementNumericArray element(TypeOf(field), 0, "", true);
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
