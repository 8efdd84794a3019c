// How `CStructCodec` packs payloads into words. The rules for unpacking differ; the device format is so.

#include <configtools/structcodec.h>

#include "plan.h"
#include "words.h"
#include <configtools/metadata.h>
#include <messages/trace.h>
#include <misc/stringutil.h>

#include <sstream>

namespace VrexZynConfigTools {

using namespace structcodec;

namespace {

constexpr GroupEnum MESSAGE_GROUP = GROUP_FRAMEWORK;
constexpr std::uint32_t ARGUMENTS = 1;

/// For debug output.
void AddWord(std::ostream & text, std::uint16_t word)
{
    stringutil::WriteHexNumberToStream(text, word, 4, true);
    text << ' ';
}

}   // namespace

void CStructCodec::Encode(CComplexPayload & payload, CMetadataDetailStruct & detail)
{
    ZYN_SENTRY("VrexZynConfigTools::CStructCodec::Encode");

    if (!Allocate(detail))
        return;
    const auto plan = CStructPlan::Of(detail);
    Walk walk{ *plan, MaxValues(mBitSize) };
    DoEncode(0, payload, plan->Top(), walk);
    if (CTheMsgHnd::DebugActivated()) {
        std::ostringstream text;
        for (std::uint64_t index = 0; index < mNumWords; ++index)
            AddWord(text, mpWords[index]);
        ZYN_TRACE(
            ARGUMENTS, "%sTotal bitsize=%llu", text.str().c_str(), static_cast<unsigned long long>(mBitSize));
    }
}

void CStructCodec::DoEncode(
    std::uint32_t base, CComplexPayload & payload, const LayoutPlan & layout, Walk & walk)
{
    ZYN_SENTRY("VrexZynConfigTools::CStructCodec::DoEncode");

    const Level level(walk);
    if (level.IsTooDeep())
        return SetLayoutError(TOO_DEEP);
    const std::vector<IPayload *> & values = payload.GetFields();
    const std::size_t count = std::min(values.size(), layout.mFields.size());
    for (std::size_t index = 0; index < count; ++index) {
        const FieldPlan & field = layout.mFields[index];
        if (field.mKind == StructEntryKind::ABSENT)
            SetLayoutError(NO_RECORD);
        else if (values[index] != nullptr)
            EncodeAny(base + field.mPosition, field, *values[index], layout.mIsLittleEndian, walk);
    }
    if (values.size() > layout.mFields.size())
        SetLayoutError("a struct of " + std::to_string(layout.mFields.size()) + " fields was given " +
                       std::to_string(values.size()) + " values");
}

void CStructCodec::EncodeAny(
    std::uint32_t position, const FieldPlan & field, IPayload & value, bool littleEndian, Walk & walk)
{
    if (field.mKind == StructEntryKind::STRUCT || field.mKind == StructEntryKind::STRUCTS)
        EncodeStruct(position, field, value, walk);
    else if (field.mKind == StructEntryKind::ARRAY)
        EncodeArray(position, field, value, littleEndian);
    else
        EncodeField(position, field.mWidth, value, littleEndian);
}

void CStructCodec::EncodeArray(
    std::uint64_t position, const FieldPlan & field, IPayload & value, bool littleEndian)
{
    if (field.mWidth == 0)
        return;   // no bits
    auto * const array = dynamic_cast<CComplexPayload *>(&value);
    if (array == nullptr)
        return EncodeField(position, BITS_IN_UINT16, value, littleEndian);   // whatever its width, intended
    const std::vector<IPayload *> & items = array->GetFields();
    if (items.empty())
        return;
    // The field's width is shared out among the items there are; their type plays no part, intended.
    const auto share = static_cast<std::uint32_t>(field.mWidth / items.size());
    for (IPayload * const item : items) {
        if (item != nullptr)
            EncodeField(position, share, *item, littleEndian);
        position += share;
    }
}

void CStructCodec::EncodeStruct(std::uint32_t position, const FieldPlan & field, IPayload & value, Walk & walk)
{
    const LayoutPlan * const layout = walk.mPlan.Inner(field);
    if (layout == nullptr)
        return SetLayoutError(NoFieldsText(*field.mRecord));
    auto * const complex = dynamic_cast<CComplexPayload *>(&value);
    if (complex == nullptr)
        return SetLayoutError("the struct field " + field.mRecord->Name() + " was given a plain value");
    if (field.mKind == StructEntryKind::STRUCT)
        return DoEncode(position, *complex, *layout, walk);
    for (IPayload * const item : complex->GetFields()) {
        if (auto * const instance = dynamic_cast<CComplexPayload *>(item))
            DoEncode(position, *instance, *layout, walk);
        else if (item != nullptr)
            SetLayoutError("the array of structs " + field.mRecord->Name() + " was given a plain value");
        position += static_cast<std::uint32_t>(layout->mBits);
    }
}

void CStructCodec::EncodeField(
    std::uint64_t position, std::uint32_t size, IPayload & payload, bool littleEndian)
{
    ZYN_SENTRY("VrexZynConfigTools::CStructCodec::EncodeField");

    const std::uint64_t index = position / BITS_IN_UINT16;
    if (size > 64)
        return EncodeWords(index, payload);
    if (structcodec::ReplacesWord(position, size, littleEndian)) {
        ReplaceWord(index, payload);
    } else {
        std::uint64_t value =
            0;   // a payload of fewer bytes is extended by zeros, also if it is signed, intended
        payload.WriteToMem(&value, sizeof value);
        Words().Merge(position, size, value, littleEndian);
    }
    if (CTheMsgHnd::DebugActivated()) {
        std::ostringstream text;
        ForEachPackedRun(position, size, littleEndian,
            [&](std::uint64_t word, auto...) { AddWord(text, Words().Word(word)); });
        ZYN_TRACE(ARGUMENTS, "position=%llu, size=%u, words: %s", static_cast<unsigned long long>(position),
            static_cast<unsigned>(size), text.str().c_str());
    }
}

/// A payload of 8 bits replaces the low byte alone, and one of more than 16 nothing, both intended.
void CStructCodec::ReplaceWord(std::uint64_t index, IPayload & payload)
{
    std::uint16_t word = Words().Word(index);
    payload.WriteToMem(&word, sizeof word);
    Words().SetWord(index, word);
}

void CStructCodec::EncodeWords(std::uint64_t index, IPayload & payload)
{
    auto * const words = dynamic_cast<CComplexPayload *>(&payload);
    if (words == nullptr)
        return SetLayoutError("a field of more than 64 bits was given a plain value");
    // Upward in every case, also in a struct that isn't little-endian, intended.
    for (IPayload * const part : words->GetFields()) {
        if (part != nullptr)
            ReplaceWord(index, *part);
        ++index;
    }
}

}   // namespace VrexZynConfigTools
