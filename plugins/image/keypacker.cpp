#include "keypacker.h"

#include "image.h"
#include "words.h"

#include <configtools/keywords.h>
#include <configtools/metadata.h>
#include <configtools/structlayout.h>
#include <kit/layout/packing.h>
#include <kit/layout/scalars.h>
#include <kit/reporting/channel.h>

namespace imageconfig {

using namespace VrexZynConfigTools;

namespace {

constexpr char NEEDS_METADATA[] =
    " can't be told apart without metadata, which a key that says its own type doesn't have";

/// The key's own record; null for none. A payload may carry the record of a struct's field as well.
const IMetadata * RecordOf(IPayload & payload, std::uint32_t id)
{
    auto * const user = dynamic_cast<IMetadataUser *>(&payload);
    const IMetadata * const record = user != nullptr ? user->Metadata() : nullptr;
    return record != nullptr && record->IsValid() && record->PsId() == id ? record : nullptr;
}

bool IsText(const std::string & type)
{
    return type == keywords::TYPE_STRING || type == keywords::TYPE_OCTET_STRING;
}

}   // namespace

CKeyPacker::CKeyPacker(std::uint32_t id, bool isRaw)
    : mIsRaw(isRaw)
{
    mKey.mId = id;
    if (id == 0)
        Fail("a key has the number 0");
}

void CKeyPacker::Fail(const std::string & text)
{
    if (mError.empty())
        mError = text;
}

void CKeyPacker::AddIndex(std::uint32_t index)
{
    mKey.mIndices.push_back(index);
}

void CKeyPacker::Add(IPayload & payload)
{
    if (!mError.empty())
        return;
    mIsEmpty = false;
    const IMetadata * const record = RecordOf(payload, mKey.mId);
    if (record != nullptr && mKeyName.empty())
        mKeyName = record->Name();
    // A record without details says of itself what it is, such as in a file that holds its own types.
    if (record != nullptr && record->Details() != nullptr && !mIsRaw)
        AddByRecord(payload, *record);
    else
        AddByType(payload);
}

void CKeyPacker::AddByRecord(IPayload & payload, const IMetadata & record)
{
    if (record.MetadataType() == METADATA_STRUCT)
        AddStruct(payload, record);
    else if (record.MetadataType() == METADATA_ENUM)
        AddEnumerator(payload);
    else if (IsText(record.InternalType()))
        AddText(payload);
    else
        AddNumber(payload, record.InternalType());
}

void CKeyPacker::AddStruct(IPayload & payload, const IMetadata & record)
{
    auto * const instance = dynamic_cast<CComplexPayload *>(&payload);
    auto * const layout = dynamic_cast<CMetadataDetailStruct *>(record.Details());
    if (instance == nullptr || layout == nullptr)
        return Fail(layout == nullptr ? "the metadata have no fields of the struct"
                                      : "a struct was given a plain value");
    constexpr std::uint64_t MAX_BITS = 8 * MAX_BYTES_OF_CHUNK;
    const std::uint64_t bits = StructSizeInBits(*layout);
    if (bits > MAX_BITS)
        return Fail("the metadata describe a struct of " + std::to_string(bits) + " bits; a chunk holds " +
                    std::to_string(MAX_BITS));
    const kit::reporting::CErrorsSetAside aside;   // the codec stops where an error stands, whosever it is
    const kit::layout::Packed packed = kit::layout::PackStruct(*instance, *layout);
    if (!packed.mError.empty())
        return Fail(packed.mError);
    for (const kit::layout::Change & change : packed.mChanges)
        mChanges.push_back(change.mField + ": " + change.Text());
    AppendRaw(layout->IsOctetsInBin() ? Form::OCTETS : Form::WORDS, packed.mOctets);
}

void CKeyPacker::AddNumber(IPayload & payload, const std::string & keyword)
{
    const NumberType * const type = TypeByKeyword(keyword);
    const auto value = kit::layout::ValueOf(payload);
    if (type == nullptr)
        return Fail("values of the type \"" + keyword + "\" have no raw form");
    if (!value)
        return Fail("a number was given another value");
    const kit::layout::NumberForm form{ type->mBits, type->mIsSigned };
    if (!form.Holds(*value))
        mChanges.push_back("the value " + TextOf(*value) + " is out of range for the type \"" + keyword + '"');
    std::string data;
    AppendWords(data, form.Read(value->mBits), WordsOf(*type));
    AppendRaw(Form::WORDS, data);
}

void CKeyPacker::AddEnumerator(IPayload & payload)
{
    const auto value = kit::layout::ValueOf(payload);
    if (!value || !kit::layout::NumberForm{ 32, true }.Holds(*value))
        return Fail("an enumeration was given another value");
    std::string data;
    AppendWords(data, value->mBits, WORDS_OF_ENUM);
    AppendRaw(Form::WORDS, data);
}

void CKeyPacker::AddText(IPayload & payload)
{
    auto * const text = dynamic_cast<CStringPayload *>(&payload);
    if (text == nullptr)
        return Fail("a text was given another value");
    if (mHasText)
        return Fail("several texts can't be told apart in an image");
    mHasText = true;
    AppendRaw(Form::OCTETS, text->GetValue());
}

void CKeyPacker::AddByType(IPayload & payload)
{
    const PayloadTypeEnum type = payload.Type();
    if (mType && *mType != type)
        return Fail(std::string("values of several types") + NEEDS_METADATA);
    mType = type;
    auto * const text = dynamic_cast<CStringPayload *>(&payload);
    mIsPlain = mIsPlain && (type == PAYLOAD_UINT16 || (text != nullptr && text->IsOctet()));
    if (text != nullptr)
        return AddText(payload);
    if (dynamic_cast<CEnumPayload *>(&payload) != nullptr)
        return AddEnumerator(payload);
    const NumberType * const number = FindNumberType(type);
    const auto value = kit::layout::ValueOf(payload);
    if (number == nullptr || !value)
        return Fail(std::string("the fields of a structure") + NEEDS_METADATA);
    std::string data;
    AppendWords(data, value->mBits, WordsOf(*number));
    AppendRaw(Form::WORDS, data);
}

void CKeyPacker::AppendRaw(Form form, const std::string & data)
{
    if (!mKey.mData.empty() && mKey.mForm != form)
        return Fail("words and octets can't be told apart in one value");
    mKey.mForm = form;
    mKey.mData += data;
}

std::optional<RawKey> CKeyPacker::Finish()
{
    const std::string objection = ObjectionTo(mKey.mIndices);
    if (!objection.empty())
        Fail(objection);
    const std::size_t length = ComposeChunk({ std::nullopt, mKey }).size();
    if (length > MAX_BYTES_OF_CHUNK)
        Fail("the value takes " + std::to_string(length) + " bytes; a chunk holds " +
             std::to_string(MAX_BYTES_OF_CHUNK));
    return mError.empty() ? std::optional(mKey) : std::nullopt;
}

std::string CKeyPacker::Name() const
{
    return KeyName(mKey.mId, mKey.mIndices, mKeyName);
}

bool CKeyPacker::LosesNameOrType() const
{
    const bool isByType = mType.has_value() || mIsEmpty;
    return isByType && (!mIsRaw || !mIsPlain || !mKeyName.empty());
}

}   // namespace imageconfig
