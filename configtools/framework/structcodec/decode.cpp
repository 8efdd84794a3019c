// How `CStructCodec` unpacks words into payloads. The rules for packing differ; the device format is so.

#include <configtools/structcodec.h>

#include "plan.h"
#include "words.h"
#include <configtools/keywords.h>
#include <configtools/metadata.h>
#include <configtools/numbertypes.h>
#include <configtools/readerwriter.h>
#include <messages/trace.h>

#include <algorithm>
#include <cstring>
#include <memory>

namespace VrexZynConfigTools {

using namespace structcodec;

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

/// A number with the low bytes of `value`; without metadata if `record` is null.
std::unique_ptr<IPayload> NewNumber(NumericTypeEnum type, std::uint64_t value, const IMetadata * record)
{
    std::unique_ptr<IPayload> result;
    VisitNumberType(type, [&](auto number) {
        using Number = decltype(number);
        auto payload = std::make_unique<typename Number::Payload>(static_cast<typename Number::Value>(value));
        if (record != nullptr)
            payload->Use(*record);
        result = std::move(payload);
    });
    return result;
}

/// A number without a name gets the empty name and is no error here, whatever checks are on; intended.
std::unique_ptr<IPayload> NewEnumerator(const FieldPlan & field, std::uint64_t value)
{
    if (field.mEnumerators == nullptr)
        SetLayoutError("the enum field " + field.mRecord->Name() + " has no enumerators in the metadata");
    const auto number = static_cast<std::int32_t>(value);
    auto payload = std::make_unique<CEnumPayload>(
        field.mEnumerators != nullptr ? field.mEnumerators->EnumName(number) : std::string(), number);
    payload->Use(*field.mRecord);
    return payload;
}

}   // namespace

bool CStructCodec::Decode(
    IElementFactorySource & source, CMetadataDetailStruct & detail, CComplexPayload * out, bool & more)
{
    bool result = false;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CStructCodec::Decode", result);

    more = Allocate(detail) && (mOctetsInBin ? ReadOctets(source, out) : ReadWords(source));
    if (ZYN_HANDLER(zynFunction).IsErrorSet(GROUP_FRAMEWORK, true))
        return result = false;
    if (out == nullptr)
        return result = true;
    const auto plan = CStructPlan::Of(detail);   // not earlier: the source may have changed the metadata
    Walk walk{ *plan, MaxValues(mBitSize) };
    if (!DoDecode(0, plan->Top(), *out, walk))
        SetLayoutError(TooManyText(mBitSize));
    return result = true;   // what unpacking itself reports is not looked at, intended
}

bool CStructCodec::ReadWords(IElementFactorySource & source)
{
    const std::string type = keywords::TYPE_UINT16;
    CMessageHandler & handler = ZYN_HANDLER("VrexZynConfigTools::CStructCodec::Decode");
    bool more = true;
    std::uint64_t value = 0;   // once, not per word, intended
    for (std::uint64_t index = 0; index < mNumWords && more; ++index) {
        more = source.NextInt(type, value, nullptr);
        if (handler.IsErrorSet(GROUP_OUTER_READER, true))
            more = false;
        else if (index < mNumWords)   // a source may have used this codec
            mpWords[index] = static_cast<std::uint16_t>(value);
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

bool CStructCodec::DoDecode(std::uint32_t base, const LayoutPlan & layout, CComplexPayload & out, Walk & walk)
{
    bool result = false;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CStructCodec::DoDecode", result);

    const Level level(walk);
    if (level.IsTooDeep())
        SetLayoutError(TOO_DEEP);
    if (level.IsTooDeep() || layout.mFields.empty())
        return result = walk.CountValue();
    for (const FieldPlan & field : layout.mFields)
        if (!DecodeAny(base + field.mPosition, field, out, layout.mIsLittleEndian, walk))
            return result = false;
    return result = true;
}

bool CStructCodec::DecodeAny(
    std::uint32_t position, const FieldPlan & field, CComplexPayload & out, bool littleEndian, Walk & walk)
{
    switch (field.mKind) {
    case StructEntryKind::STRUCT:
    case StructEntryKind::STRUCTS:
        return DecodeStruct(position, field, out, walk);
    case StructEntryKind::ARRAY:
    case StructEntryKind::WORDS:
        return DecodeItems(position, field, out, littleEndian, walk);
    case StructEntryKind::ABSENT:
        SetLayoutError(NO_RECORD);
        break;
    case StructEntryKind::NUMBER:
    case StructEntryKind::ENUMERATOR:
        break;
    }
    if (!walk.CountValue())
        return false;
    if (field.mKind == StructEntryKind::ABSENT)
        out.AddField(new CInt64Payload(0));   // payloads and fields stay in step
    else
        DecodeField(position, field, out, littleEndian);
    return true;
}

bool CStructCodec::DecodeStruct(
    std::uint32_t position, const FieldPlan & field, CComplexPayload & out, Walk & walk)
{
    const LayoutPlan * const layout = walk.mPlan.Inner(field);
    CComplexPayload & complex = AddComplex(out);
    if (layout == nullptr)
        SetLayoutError(NoFieldsText(*field.mRecord));
    else if (field.mKind == StructEntryKind::STRUCT)
        return DoDecode(position, *layout, complex, walk);
    else if (layout->mBits == 0)
        SetLayoutError(NoSizeText(*field.mRecord));
    else
        for (std::uint64_t count = StructsIn(field, *layout); count > 0; --count) {
            if (!DoDecode(position, *layout, AddComplex(complex), walk))
                return false;
            position += static_cast<std::uint32_t>(layout->mBits);
        }
    return !complex.GetFields().empty() || walk.CountValue();
}

bool CStructCodec::DecodeItems(
    std::uint64_t position, const FieldPlan & field, CComplexPayload & out, bool littleEndian, Walk & walk)
{
    if (!walk.CountValue())
        return false;
    CComplexPayload & complex = AddComplex(out);
    complex.Use(*field.mRecord);
    if (field.mKind == StructEntryKind::WORDS)
        position -= position % BITS_IN_WORD;
    for (std::uint32_t count = field.mItems; count > 0; --count) {
        if (!walk.CountValue())
            return false;
        const UnpackedItem item = ItemAt(position, field.mStride, littleEndian);
        const std::uint64_t value = Words().Number(item.mPosition, item.mSize, littleEndian);
        complex.AddField(NewNumber(field.mType, value, nullptr).release());
        position += field.mStride;
    }
    return true;
}

void CStructCodec::DecodeField(
    std::uint64_t position, const FieldPlan & field, CComplexPayload & out, bool littleEndian)
{
    ZYN_SENTRY("VrexZynConfigTools::CStructCodec::DecodeField");

    std::uint64_t value = Words().Number(position, field.mWidth, littleEndian);
    // One that straddles two words has no sign, intended.
    const bool isSigned = field.mIsSigned && !Straddles(position, field.mWidth, littleEndian);
    if (isSigned && (value >> (field.mWidth - 1) & 1) != 0)
        value |= ~std::uint64_t{ 0 } << field.mWidth;
    out.AddField(field.mKind == StructEntryKind::ENUMERATOR
                     ? NewEnumerator(field, value).release()
                     : NewNumber(field.mType, value, field.mRecord).release());
}

}   // namespace VrexZynConfigTools
