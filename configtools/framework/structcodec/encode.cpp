// How `CStructCodec` packs payloads into words. The rules for unpacking differ; the device format is so.

#include <configtools/structcodec.h>

#include "plan.h"
#include "walk.h"
#include <configtools/metadata.h>
#include <messages/trace.h>

#include <algorithm>
#include <cstdio>

namespace VrexZynConfigTools {

namespace {

constexpr GroupEnum MESSAGE_GROUP = GROUP_FRAMEWORK;
constexpr std::uint32_t ARGUMENTS = 1;

/// The payload's bytes, zero-extended to 64 bits; 0 for a payload that is wider.
std::uint64_t BitsOf(IPayload & payload)
{
    std::uint64_t value = 0;
    payload.WriteToMem(&value, sizeof value);
    return value;
}

std::string HexText(const std::uint16_t * words, std::uint64_t count)
{
    std::string text;
    for (std::uint64_t index = 0; index < count; ++index) {
        char word[8];
        std::snprintf(word, sizeof word, "%04x ", static_cast<unsigned>(words[index]));
        text += word;
    }
    return text;
}

}   // namespace

void CStructCodec::Encode(CComplexPayload & payload, CMetadataDetailStruct & detail)
{
    ZYN_SENTRY("VrexZynConfigTools::CStructCodec::Encode");

    mWalk = {};
    const CStructPlan * const plan = structcodec::PlanFor(detail);
    if (!Allocate(detail, plan))
        return;
    if (plan == nullptr || !structcodec::Pack(*plan, payload, Words())) {
        std::fill_n(mpWords, mNumWords, std::uint16_t{ 0 });   // what the plan has come to is packed anew
        DoEncode(0, payload, detail);
    }
    ZYN_TRACE(ARGUMENTS, "%sTotal bitsize=%llu", HexText(mpWords, mNumWords).c_str(),
        static_cast<unsigned long long>(mBitSize));
}

void CStructCodec::DoEncode(std::uint32_t base, CComplexPayload & payload, CMetadataDetailStruct & detail)
{
    const Level level(mWalk);
    if (level.IsTooDeep())
        return structcodec::SetLayoutError("the metadata nests structs too deep");

    const std::vector<const CStructField *> & fields = structcodec::FieldsOf(detail);
    const std::vector<IPayload *> & values = payload.GetFields();
    for (std::size_t index = 0; index < std::min(values.size(), fields.size()); ++index) {
        const IMetadata * const metadata = structcodec::RecordOf(fields[index]);
        if (metadata == nullptr || values[index] == nullptr)
            continue;
        const CStructField & field = *fields[index];
        const std::uint32_t position = base + static_cast<std::uint32_t>(field.ElemLsbBitPos());
        if (metadata->MetadataType() == METADATA_STRUCT)
            EncodeStructField(position, field, *values[index]);
        else
            EncodePlainField(position, field, *values[index], detail.IsLittleEndian());
    }
    if (values.size() > fields.size())
        structcodec::SetLayoutError("a struct of " + std::to_string(fields.size()) + " fields was given " +
                                    std::to_string(values.size()) + " values");
}

void CStructCodec::EncodePlainField(
    std::uint32_t position, const CStructField & field, IPayload & value, bool littleEndian)
{
    const int width = field.ElemBitWidth();
    if (width <= 0)
        return;   // no bits
    const auto size = static_cast<std::uint32_t>(width);
    if (!field.Metadata()->IsArray())
        return EncodeField(position, size, value, littleEndian);
    auto * const array = dynamic_cast<CComplexPayload *>(&value);
    if (array == nullptr)
        return EncodeField(position, BITS_IN_UINT16, value, littleEndian);   // whatever its width, intended
    const std::vector<IPayload *> & items = array->GetFields();
    if (items.empty())
        return;
    // The field's width is shared out among the items there are; their type plays no part, intended.
    const auto share = static_cast<std::uint32_t>(size / items.size());
    for (IPayload * const item : items) {
        if (item != nullptr)
            EncodeField(position, share, *item, littleEndian);
        position += share;
    }
}

void CStructCodec::EncodeStructField(std::uint32_t position, const CStructField & field, IPayload & value)
{
    auto * const layout = structcodec::NestedLayout(*field.Metadata());
    if (layout == nullptr)
        return;
    auto * const complex = dynamic_cast<CComplexPayload *>(&value);
    if (complex == nullptr)
        return structcodec::SetLayoutError(
            "the struct field " + field.Metadata()->Name() + " was given a plain value");
    if (!field.Metadata()->IsArray())
        return DoEncode(position, *complex, *layout);
    const auto stride = static_cast<std::uint32_t>(GetStructSizeInBits(*layout));
    for (IPayload * const item : complex->GetFields()) {
        if (auto * const instance = dynamic_cast<CComplexPayload *>(item))
            DoEncode(position, *instance, *layout);
        else if (item != nullptr)
            structcodec::SetLayoutError(
                "the array of structs " + field.Metadata()->Name() + " was given a plain value");
        position += stride;
    }
}

void CStructCodec::EncodeField(
    std::uint32_t position, std::uint32_t size, IPayload & payload, bool littleEndian)
{
    if (size > 64)
        return EncodeWideField(position, payload);

    if (size != BITS_IN_UINT16 || structcodec::CWords::Straddles(position, littleEndian))
        return Words().MergeNumber(position, size, BitsOf(payload), littleEndian);
    // Replaced, with the bit in the word ignored, and nothing of a wider payload; intended.
    ReplaceWord(position / BITS_IN_UINT16, payload);
}

void CStructCodec::ReplaceWord(std::uint64_t index, IPayload & payload)
{
    std::uint16_t word = Words().Word(index);
    payload.WriteToMem(&word, sizeof word);
    Words().SetWord(index, word);
}

void CStructCodec::EncodeWideField(std::uint32_t position, IPayload & payload)
{
    auto * const words = dynamic_cast<CComplexPayload *>(&payload);
    if (words == nullptr)
        return structcodec::SetLayoutError("a field of more than 64 bits was given a plain value");
    // Upward in every case, also in a struct that isn't little-endian, intended.
    std::uint64_t index = position / BITS_IN_UINT16;
    for (IPayload * const part : words->GetFields()) {
        if (part != nullptr)
            ReplaceWord(index, *part);
        ++index;
    }
}

}   // namespace VrexZynConfigTools
