// How `CStructCodec` unpacks words into payloads. The rules for packing differ; the device format is so.

#include <configtools/structcodec.h>

#include "../elements/payloadlist.h"
#include "plan.h"
#include "walk.h"
#include <configtools/elements.h>
#include <configtools/keywords.h>
#include <configtools/metadata.h>
#include <configtools/readerwriter.h>
#include <messages/trace.h>

#include <algorithm>
#include <cstring>
#include <memory>

namespace VrexZynConfigTools {

namespace {

constexpr GroupEnum MESSAGE_GROUP = GROUP_FRAMEWORK;
constexpr std::uint32_t DECISIONS = 3;

CComplexPayload & AddComplex(CComplexPayload & owner)
{
    auto complex = std::make_unique<CComplexPayload>(PAYLOAD_COMPLEX);
    CComplexPayload & result = *complex;
    owner.AddField(complex.release());
    return result;
}

std::string OctetCountText(std::uint64_t expected, std::uint64_t found, CComplexPayload * out)
{
    std::string text = "reading data from binary - expected " + std::to_string(expected) + " octets, found " +
                       std::to_string(found);
    const IMetadata * const metadata = out != nullptr ? out->Metadata() : nullptr;
    if (metadata != nullptr && metadata->PsId() != 0)
        text += " for psid=" + std::to_string(metadata->PsId());
    return text;
}

/// All bits above the field become copies of its sign bit, in the one format that has a sign.
std::uint64_t ExtendSign(std::uint64_t value, std::uint32_t size, const IMetadata & metadata)
{
    const bool isSigned = size > 1 && size < 64 && metadata.Format() == keywords::FORMAT_SIGNED_DECIMAL;
    if (isSigned && (value >> (size - 1) & 1) != 0)
        value |= ~std::uint64_t{ 0 } << size;
    return value;
}

/// The payload that an element of the library makes of a value, with the record attached.
std::unique_ptr<IPayload> TakePayload(CElement & element, const IMetadata & metadata)
{
    element.Use(metadata);
    const std::vector<IPayload *> payloads = element.TransferPayload();
    return std::unique_ptr<IPayload>(payloads.empty() ? nullptr : payloads.front());
}

std::unique_ptr<IPayload> NewEnumPayload(const IMetadata & metadata, std::uint64_t value)
{
    const auto * const enumerators = dynamic_cast<const CMetadataDetailEnum *>(metadata.Details());
    if (enumerators == nullptr)
        structcodec::SetLayoutError(
            "the enum field " + metadata.Name() + " has no enumerators in the metadata");
    const auto number = static_cast<std::int32_t>(value);
    CElementEnum element(metadata.PsId(), metadata.Name(), true);
    // A number without a name gets the empty name and is no error here, whatever checks are on; intended.
    element.AddEnum(enumerators != nullptr ? enumerators->EnumName(number) : std::string(), number);
    return TakePayload(element, metadata);
}

std::unique_ptr<IPayload> NewNumericPayload(const IMetadata & metadata, std::uint32_t size, std::uint64_t value)
{
    NumericVariable number;
    number.mUint64 = value;
    CElementNumericArray element(structcodec::TypeOfField(metadata, size), 0, "", true);
    element.SetValue(std::vector<NumericVariable>{ number });
    std::unique_ptr<IPayload> payload = TakePayload(element, metadata);
    if (payload == nullptr) {   // a type without a width: a zero keeps payloads and fields in step
        payload = std::make_unique<CInt64Payload>(0);
        payloadlist::HandOn(payload.get(), &metadata);
    }
    return payload;
}

}   // namespace

std::string structcodec::TypeOfField(const IMetadata & metadata, std::uint32_t size)
{
    std::string type = metadata.InternalType();
    if (CStructCodec::BitsForInternalType(type) != 0)
        return type;
    const std::string format = metadata.Format();
    const bool isUnsigned =
        format == keywords::FORMAT_UNSIGNED_DECIMAL || format == keywords::FORMAT_HEXADECIMAL;
    std::string fitting = CStructCodec::GetIntTypeFromBitWidth(std::to_string(size), isUnsigned);
    return fitting.empty() ? type : fitting;
}

bool CStructCodec::Decode(
    IElementFactorySource & source, CMetadataDetailStruct & detail, CComplexPayload * out, bool & more)
{
    bool result = false;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CStructCodec::Decode", result);

    mWalk = {};
    const bool isAllocated = Allocate(detail, structcodec::PlanFor(detail));
    more = isAllocated && (mOctetsInBin ? ReadOctets(source, out) : ReadWords(source));
    if (ZYN_HANDLER(zynFunction).IsErrorSet(GROUP_FRAMEWORK, true))
        return result = false;
    if (out == nullptr)
        return result = true;
    // Asked for again, since the source may have changed the metadata.
    const CStructPlan * const plan = structcodec::PlanFor(detail);
    if (plan != nullptr && plan->Bits() == mBitSize)
        structcodec::Unpack(*plan, Words(), *out);
    else
        DoDecode(0, detail, out);
    return result = true;   // what unpacking itself reports is not looked at, intended
}

bool CStructCodec::ReadWords(IElementFactorySource & source)
{
    const std::string type = keywords::TYPE_UINT16;
    bool more = true;
    std::uint64_t value = 0;   // once, not per word, intended
    for (std::uint64_t index = 0; index < mNumWords && more; ++index) {
        more = source.NextInt(type, value, nullptr);
        if (ZYN_HANDLER("VrexZynConfigTools::CStructCodec::Decode").IsErrorSet(GROUP_OUTER_READER, true))
            more = false;
        else
            Words().SetWord(index, static_cast<std::uint16_t>(value));   // a source may have used this codec
    }
    return more;
}

bool CStructCodec::ReadOctets(IElementFactorySource & source, CComplexPayload * out)
{
    std::string octets;
    const bool more = source.NextString(octets, nullptr);
    const std::uint64_t count = std::min<std::uint64_t>(mNumOctets, octets.size());
    if (count != 0)
        std::memcpy(mpWords, octets.data(), count);
    if (octets.size() != mNumOctets) {
        // A status and no error: missing octets are 0 and the surplus is dropped.
        const std::string text = OctetCountText(mNumOctets, octets.size(), out);
        CMessageHandler & handler = ZYN_HANDLER("VrexZynConfigTools::CStructCodec::Decode");
        ZYN_TRACE_IN("VrexZynConfigTools::CStructCodec::Decode", DECISIONS, "%s", text.c_str());
        if (!handler.IsErrorSet(GROUP_FRAMEWORK, true))
            handler.NotifyStatus(STATUS_WARNING, text);
    }
    return more;
}

void CStructCodec::DoDecode(std::uint32_t base, CMetadataDetailStruct & detail, CComplexPayload * out)
{
    const Level level(mWalk);
    if (level.IsTooDeep())
        return structcodec::SetLayoutError("the metadata nests structs too deep");

    for (const CStructField * const field : structcodec::FieldsOf(detail)) {
        const IMetadata * const metadata = structcodec::RecordOf(field);
        if (!CountPayload())
            return;
        if (metadata == nullptr) {
            out->AddField(new CInt64Payload(0));   // payloads and fields stay in step
            continue;
        }
        const std::uint32_t position = base + static_cast<std::uint32_t>(field->ElemLsbBitPos());
        if (metadata->MetadataType() == METADATA_STRUCT)
            DecodeStructField(position, *field, *out);
        else if (metadata->IsArray())
            DecodeArrayField(position, *field, *out, detail.IsLittleEndian());
        else if (field->ElemBitWidth() > 64)
            DecodeWideField(position, *field, *out);
        else
            DecodeField(position, static_cast<std::uint32_t>(std::max(field->ElemBitWidth(), 0)), field, *out,
                detail.IsLittleEndian());
    }
}

void CStructCodec::DecodeStructField(std::uint32_t position, const CStructField & field, CComplexPayload & out)
{
    CComplexPayload & complex = AddComplex(out);
    auto * const layout = structcodec::NestedLayout(*field.Metadata());
    if (layout == nullptr)
        return;
    if (!field.Metadata()->IsArray())
        return DoDecode(position, *layout, &complex);
    const std::uint64_t stride = GetStructSizeInBits(*layout);
    if (stride == 0)
        return structcodec::SetLayoutError(
            "the structs of the array " + field.Metadata()->Name() + " have no size in the metadata");
    const auto width = static_cast<std::uint64_t>(std::max(field.ElemBitWidth(), 0));
    for (std::uint64_t count = width / stride; count > 0 && CountPayload(); --count) {
        DoDecode(position, *layout, &AddComplex(complex));
        position += static_cast<std::uint32_t>(stride);
    }
}

void CStructCodec::DecodeWideField(std::uint32_t position, const CStructField & field, CComplexPayload & out)
{
    CComplexPayload & complex = AddComplex(out);
    payloadlist::HandOn(complex, field.Metadata());
    // Upward in every case, and the bits of a last, partial word are dropped; both intended.
    const auto width = static_cast<std::uint32_t>(field.ElemBitWidth());
    std::uint64_t index = position / BITS_IN_UINT16;
    for (std::uint32_t count = width / BITS_IN_UINT16; count > 0 && CountPayload(); --count)
        complex.AddField(new CUint16Payload(Words().Word(index++)));
}

void CStructCodec::DecodeArrayField(
    std::uint32_t position, const CStructField & field, CComplexPayload & out, bool littleEndian)
{
    CComplexPayload & complex = AddComplex(out);
    payloadlist::HandOn(complex, field.Metadata());
    const std::uint32_t bits = BitsForInternalType(field.Metadata()->InternalType());
    if (bits == 0 || field.ElemBitWidth() <= 0)
        return;   // no items
    const auto width = static_cast<std::uint32_t>(field.ElemBitWidth());
    for (std::uint32_t count = (width - 1 + bits) / bits; count > 0 && CountPayload(); --count) {
        complex.AddField(NewArrayItem(position, bits, littleEndian));
        position += bits;
    }
}

IPayload * CStructCodec::NewArrayItem(std::uint32_t position, std::uint32_t bits, bool littleEndian) const
{
    // Unsigned whatever the item's type says, and 32 bits of an item of 64; both intended.
    const std::uint64_t index = position / BITS_IN_UINT16;
    const std::uint32_t bit = position % BITS_IN_UINT16;
    const structcodec::CWords words = Words();
    if (bits < BITS_IN_UINT16)
        return new CUint8Payload(static_cast<std::uint8_t>(std::uint32_t{ words.Word(index) } >> bit));
    if (bits > BITS_IN_UINT16)
        return new CUint32Payload(words.WideItem(index, littleEndian));
    const bool straddles = structcodec::CWords::Straddles(position, littleEndian);
    return new CUint16Payload(straddles ? words.StraddlingWord(index) : words.Word(index));
}

void CStructCodec::DecodeField(std::uint32_t position, std::uint32_t size, const CStructField * field,
    CComplexPayload & out, bool littleEndian)
{
    const IMetadata & metadata = *field->Metadata();
    const structcodec::CWords words = Words();
    const bool straddles = size == BITS_IN_UINT16 && structcodec::CWords::Straddles(position, littleEndian);
    const std::uint64_t value =
        straddles ? words.StraddlingWord(position / BITS_IN_UINT16)   // without a sign, intended
                  : ExtendSign(words.Number(position, size, littleEndian), size, metadata);
    std::unique_ptr<IPayload> payload = metadata.MetadataType() == METADATA_ENUM
                                            ? NewEnumPayload(metadata, value)
                                            : NewNumericPayload(metadata, size, value);
    out.AddField(payload.release());
}

bool CStructCodec::CountPayload()
{
    const std::uint64_t limit = structcodec::MaxPayloads(mBitSize);
    if (mWalk.payloads == limit) {
        structcodec::SetLayoutError("the metadata describes a struct of " + std::to_string(mBitSize) +
                                    " bits with more than " + std::to_string(limit) + " values");
        return false;
    }
    ++mWalk.payloads;
    return true;
}

}   // namespace VrexZynConfigTools
