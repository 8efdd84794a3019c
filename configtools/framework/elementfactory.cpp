#include <configtools/elementfactory.h>

#include "elements/payloadlist.h"
#include <configtools/context.h>
#include <configtools/elements.h>
#include <configtools/keywords.h>
#include <configtools/readerwriter.h>
#include <configtools/structcodec.h>
#include <messages/trace.h>
#include <misc/keepforever.h>
#include <misc/stringutil.h>

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>

namespace VrexZynConfigTools {

namespace {

constexpr GroupEnum MESSAGE_GROUP = GROUP_FRAMEWORK;
constexpr std::uint32_t DECISIONS = 3;

/// What a tag of the index holds in characters; longer ones are cut off, intended.
constexpr std::size_t INDEX_TEXT_SIZE = 8;

CMessageHandler & Handler()
{
    return ZYN_HANDLER("VrexZynConfigTools::CElementFactory");
}

bool IsErrorSet()
{
    return Handler().IsErrorSet(GROUP_FRAMEWORK, true);
}

std::string IndexText(const std::string & stem, unsigned number)
{
    return (stem + std::to_string(number)).substr(0, INDEX_TEXT_SIZE);
}

/// The end of the last field, in bits; at least 8. For an array whose own type has no width.
std::uint32_t BitsOfFields(const IMetadata & metadata)
{
    int bits = 8;
    IMetadataDetail * const details = metadata.Details();
    if (details == nullptr || details->GetStructFields() == nullptr)
        return static_cast<std::uint32_t>(bits);
    for (const CStructField * const field : *details->GetStructFields()) {
        if (field == nullptr)
            continue;
        const std::int64_t end = std::int64_t{ field->ElemLsbBitPos() } + field->ElemBitWidth();
        bits = std::max(bits, static_cast<int>(end));
    }
    return static_cast<std::uint32_t>(bits);
}

bool IsUnsignedFormat(const IMetadata & metadata)
{
    const std::string format = metadata.Format();
    return format == keywords::FORMAT_UNSIGNED_DECIMAL || format == keywords::FORMAT_HEXADECIMAL;
}

template <typename T>
bool IsWithin(T value, std::int64_t min, std::int64_t max)
{
    if constexpr (std::is_same_v<T, std::uint64_t>)   // the limits as unsigned numbers too, intended
        return value >= static_cast<std::uint64_t>(min) && value <= static_cast<std::uint64_t>(max);
    else
        return std::int64_t{ value } >= min && std::int64_t{ value } <= max;
}

/// A type with the test of its range; as signed 64 bits the value is printed.
struct RangeTest
{
    std::string_view mType;
    bool (*mIsWithin)(const NumericVariable & value, std::int64_t min, std::int64_t max);
    std::int64_t (*mPrinted)(const NumericVariable & value);
};
template <auto Member>
constexpr RangeTest RangeTestOf(std::string_view type)
{
    return { type,
        [](const NumericVariable & value, std::int64_t min, std::int64_t max) {
            return IsWithin(value.*Member, min, max);
        },
        [](const NumericVariable & value) { return static_cast<std::int64_t>(value.*Member); } };
}
constexpr RangeTest RANGE_TESTS[] = { RangeTestOf<&NumericVariable::mInt8>(keywords::TYPE_INT8),
    RangeTestOf<&NumericVariable::mInt16>(keywords::TYPE_INT16),
    RangeTestOf<&NumericVariable::mInt32>(keywords::TYPE_INT32),
    RangeTestOf<&NumericVariable::mInt64>(keywords::TYPE_INT64),
    RangeTestOf<&NumericVariable::mUint8>(keywords::TYPE_UINT8),
    RangeTestOf<&NumericVariable::mUint16>(keywords::TYPE_UINT16),
    RangeTestOf<&NumericVariable::mUint32>(keywords::TYPE_UINT32),
    RangeTestOf<&NumericVariable::mUint64>(keywords::TYPE_UINT64) };

/// The first name, in name order, with this number; empty for none. `EnumName` would give the last.
std::string FirstEnumName(const IMetadata & metadata, std::int32_t number)
{
    auto * const detail = dynamic_cast<CMetadataDetailEnum *>(metadata.Details());
    if (detail == nullptr || detail->GetEnums() == nullptr)
        return std::string();
    for (const auto & [name, value] : *detail->GetEnums())
        if (value == number)
            return name;
    return std::string();
}

/// The payloads of an element, each owned by itself until it has found its struct.
std::vector<std::unique_ptr<IPayload>> TakePayloads(CElement & element)
{
    std::vector<std::unique_ptr<IPayload>> owned;
    owned.reserve(element.GetPayloadCopy(false).size());   // what may fail comes first
    for (IPayload * const payload : element.TransferPayload())
        owned.emplace_back(payload);
    return owned;
}

}   // namespace

/// How the numbers of one callback are read.
struct CElementFactory::NumberShape
{
    std::string type;
    std::uint32_t count;   // 1 and less: as many as there are, or one within a struct
};

CElementFactory::CElementFactory(IElementFactorySource * source, IConfigContext & context, CStructCodec * codec)
    : mPsId(0)
    , mIndexCount(0)
    , mStructDepth(0)
    , mMetadataType(METADATA_NONE)
    , mSource(source)
    , mLayoutObserver(dynamic_cast<IMetadataLayoutInspectorObserver *>(source))
    , mContext(context)
    , mElement(nullptr)
    , mInspectAgain(false)
    , mCodec(codec)
    , mDecoded(false)
{
    ZYN_SENTRY("VrexZynConfigTools::CElementFactory::CElementFactory");
}

CElementFactory::CElementFactory(const CElementFactory & other) = default;

CElementFactory::~CElementFactory()
{
    ZYN_SENTRY("VrexZynConfigTools::CElementFactory::~CElementFactory");

    delete mElement;
}

void CElementFactory::StartElement(const IMetadata & metadata)
{
    ZYN_SENTRY("VrexZynConfigTools::CElementFactory::StartElement");

    ZYN_HANDLER(zynFunction).ClearError(GROUP_FRAMEWORK);   // so that the checks speak of this key alone
    if (mLayoutObserver != nullptr)
        mLayoutObserver->StartElement(metadata);
    if (metadata.NumIndices() != 0)
        mContext.SetTag(keywords::TAG_NUM_INDICES, IndexText("", metadata.NumIndices()));
    mInternalType = metadata.InternalType();
    mMetadataType = metadata.MetadataType();
    mPsId = metadata.PsId();
    mName = metadata.Name();
    if (mElement == nullptr || mMetadataType == METADATA_STRUCT)
        mStructDepth = 0;   // structs that a walk left open when it broke off are no part of the new element
    if (mMetadataType == METADATA_STRUCT) {
        // An element left over from an earlier key is lost, intended: readers collect or clear between keys.
        KeepForEver(mElement);
        mElement = nullptr;
        mElement = new CElementStruct(mPsId, mName, true);
        payloadlist::HandOn(*mElement, &metadata);
    }
}

void CElementFactory::EndElement()
{
    ZYN_SENTRY("VrexZynConfigTools::CElementFactory::EndElement");

    if (mLayoutObserver != nullptr)
        mLayoutObserver->EndElement();
    mDecoded = false;
}

void CElementFactory::StartStruct(const IMetadata & metadata)
{
    ZYN_SENTRY("VrexZynConfigTools::CElementFactory::StartStruct");

    if (mStructDepth == 0)
        mFieldStack.clear();   // left over from a walk that broke off
    ++mStructDepth;
    if (mLayoutObserver != nullptr)
        mLayoutObserver->StartStruct(metadata);
    if (mCodec != nullptr && !mDecoded)
        DecodeStruct();
    if (!mDecoded)
        OpenStruct(metadata);
}

void CElementFactory::DecodeStruct()
{
    auto * const element = dynamic_cast<CElementStruct *>(mElement);
    const IMetadata * const metadata = element != nullptr ? element->Metadata() : nullptr;
    auto * const layout =
        metadata != nullptr ? dynamic_cast<CMetadataDetailStruct *>(metadata->Details()) : nullptr;
    mDecoded = true;
    if (layout == nullptr) {
        Handler().SetErrorMsg(0, keywords::ERROR_UNEXPECTED);
        mInspectAgain = false;
        return;
    }
    auto complex = std::make_unique<CComplexPayload>(PAYLOAD_COMPLEX);
    CComplexPayload & payload = *complex;
    element->AddField(complex.release());                         // which hands it the key's record
    mCodec->Decode(*mSource, *layout, &payload, mInspectAgain);   // its errors stand in the channel
}

void CElementFactory::OpenStruct(const IMetadata & metadata)
{
    auto complex = std::make_unique<CComplexPayload>(PAYLOAD_COMPLEX);
    payloadlist::HandOn(*complex, &metadata);
    CComplexPayload * const payload = complex.get();
    CComplexPayload * const owner = OpenPayload();
    auto * const element = dynamic_cast<CElementStruct *>(mElement);
    if (owner == nullptr && element == nullptr) {
        Handler().SetErrorMsg(0, keywords::ERROR_UNEXPECTED);
        return;
    }
    if (owner != nullptr)
        owner->AddField(complex.release());
    else
        element->AddField(complex.release());
    mFieldStack.push_back(payload);   // last, so that nothing here is open that no element owns
}

void CElementFactory::EndStruct()
{
    ZYN_SENTRY("VrexZynConfigTools::CElementFactory::EndStruct");

    if (mLayoutObserver != nullptr)
        mLayoutObserver->EndStruct();
    if (!mDecoded && !mFieldStack.empty())
        mFieldStack.pop_back();
    if (mStructDepth > 0)
        --mStructDepth;
    if (mStructDepth == 0)
        mDecoded = false;
}

void CElementFactory::StartArrayItem()
{
    // The items are told apart by what they call back.
}

void CElementFactory::EndArrayItem()
{
    // As above.
}

void CElementFactory::IntIndex(const CTableIndex & /*index*/)
{
    ZYN_SENTRY("VrexZynConfigTools::CElementFactory::IntIndex");

    std::uint64_t value = 0;
    mInspectAgain = mSource->NextInt(keywords::TYPE_UINT32, value, &mIndexCount);
    ++mIndexCount;
    mContext.SetTag(
        IndexText(keywords::TAG_INDEX, mIndexCount), IndexText("", static_cast<std::uint32_t>(value)));
}

void CElementFactory::EnumIndex(const CTableIndex & index)
{
    ZYN_SENTRY("VrexZynConfigTools::CElementFactory::EnumIndex");

    IntIndex(index);
}

void CElementFactory::Int(const IMetadata & metadata)
{
    ZYN_SENTRY("VrexZynConfigTools::CElementFactory::Int");

    if (mDecoded)
        return;
    const NumberShape shape = ShapeOf(metadata);
    const std::vector<NumericVariable> values = ReadNumbers(metadata, shape);
    if (!IsErrorSet()) {
        auto element =
            std::make_unique<CElementNumericArray>(shape.type, metadata.PsId(), metadata.Name(), true);
        element->SetValue(values);
        Place(element.release(), metadata);
    }
    // Whatever error stands by now, of the source, the checks or the placing, is completed where the reader keeps
    // its own; where none stands there, nothing is made, intended.
    if (IsErrorSet())
        ZYN_HANDLER(zynFunction)
            .ModifyErrorMsg(0,
                "Element with PsId = " + std::to_string(metadata.PsId()) + ", Name = " + metadata.Name(),
                GROUP_OUTER_READER);
}

CElementFactory::NumberShape CElementFactory::ShapeOf(const IMetadata & metadata)
{
    NumberShape shape{ metadata.InternalType(), 1 };
    const std::string width = mContext.GetTag(keywords::TAG_ELEM_BIT_WIDTH);
    if (width.empty())
        return shape;   // no field of a struct
    std::uint32_t bits = CStructCodec::BitsForInternalType(shape.type);
    if (metadata.IsArray()) {
        if (bits == 0)
            bits = BitsOfFields(metadata);
        shape.count = (static_cast<std::uint32_t>(stringutil::DecimalToInt(width)) - 1 + bits) / bits;
    } else if (bits == 0) {
        const std::string fitting = CStructCodec::GetIntTypeFromBitWidth(width, IsUnsignedFormat(metadata));
        if (!fitting.empty())
            shape.type = fitting;
    }
    return shape;
}

std::vector<NumericVariable> CElementFactory::ReadNumbers(const IMetadata & metadata, const NumberShape & shape)
{
    std::vector<NumericVariable> values;
    if (shape.count >= 2) {
        for (std::uint32_t left = shape.count; left > 0; --left) {
            values.emplace_back();
            if (!ReadNumber(metadata, shape.type, values.back()))
                break;
        }
        mInspectAgain = false;   // the field is read, all of it
        return values;
    }
    do {
        values.emplace_back();
    } while (ReadNumber(metadata, shape.type, values.back()) && mMetadataType != METADATA_STRUCT);
    return values;
}

bool CElementFactory::ReadNumber(const IMetadata & metadata, const std::string & type, NumericVariable & value)
{
    // The value delivered with the answer false counts too.
    mInspectAgain = mSource->NextInt(type, value.mUint64, nullptr);
    if (ChecksData() && !ValidateRange(type, value, metadata.Min(), metadata.Max()))
        mInspectAgain = false;
    return mInspectAgain;
}

bool CElementFactory::ValidateRange(
    const std::string & type, const NumericVariable & value, std::int64_t min, std::int64_t max)
{
    bool result = true;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CElementFactory::ValidateRange", result);

    const auto test = std::find_if(std::begin(RANGE_TESTS), std::end(RANGE_TESTS),
        [&type](const RangeTest & entry) { return entry.mType == type; });
    if (test == std::end(RANGE_TESTS) || test->mIsWithin(value, min, max))
        return result = true;
    // As a signed number whatever the type, intended: an unsigned one of 2^63 and above prints as negative.
    ZYN_HANDLER(zynFunction)
        .SetErrorMsg(0, "Read value " + std::to_string(test->mPrinted(value)) + " is out of range [" +
                            std::to_string(min) + "," + std::to_string(max) + "]");
    return result = false;
}

void CElementFactory::String(const IMetadata & metadata)
{
    ZYN_SENTRY("VrexZynConfigTools::CElementFactory::String");

    if (mDecoded)
        return;
    const bool isOctet = metadata.InternalType() == keywords::TYPE_OCTET_STRING;
    std::string value;
    // One text for all items, intended: of an array of texts the last one stays.
    do {
        mInspectAgain = mSource->NextString(value, nullptr);
        TrimPadding(metadata, isOctet, value);
    } while (mInspectAgain && mMetadataType != METADATA_STRUCT);
    if (ChecksData())
        CheckLength(metadata, value.size());
    // Delivered also with a wrong length, intended, unlike numbers and enumerators.
    Place(new CElementString(metadata.PsId(), metadata.Name(), value, isOctet, true), metadata);
}

void CElementFactory::TrimPadding(const IMetadata & metadata, bool isOctet, std::string & value)
{
    // An octet string of this subsystem travels in 16-bit words, so it may end in a pad byte.
    const bool mayBePadded =
        isOctet && value.size() % 2 == 0 && value.size() > static_cast<std::uint64_t>(metadata.Min());
    if (mayBePadded && value.back() == '\0' && mContext.TagMatches(keywords::TAG_SUBSYSTEM_TYPE, SUBSYSTEM_BT))
        value.pop_back();
}

void CElementFactory::CheckLength(const IMetadata & metadata, std::size_t length)
{
    // The limits of a text are lengths in bytes.
    if (IsWithin(std::uint64_t{ length }, metadata.Min(), metadata.Max()))
        return;
    Handler().SetErrorMsg(
        0, "String value's length for element with psid = " + std::to_string(metadata.PsId()) +
               ", Name = " + metadata.Name() + " is out of range [" + std::to_string(metadata.Min()) + "," +
               std::to_string(metadata.Max()) + "], got " + std::to_string(length));
}

void CElementFactory::Enum(const IMetadata & metadata)
{
    ZYN_SENTRY("VrexZynConfigTools::CElementFactory::Enum");

    if (mDecoded)
        return;
    std::uint64_t value = 0;
    mInspectAgain = mSource->NextEnum(value, nullptr);
    const auto number = static_cast<std::int32_t>(value);
    const std::string name = FirstEnumName(metadata, number);
    if (!name.empty()) {
        auto element = std::make_unique<CElementEnum>(mPsId, mName, true);
        element->AddEnum(name, number);
        Place(element.release(), metadata);
    } else if (ChecksData()) {
        ZYN_HANDLER(zynFunction)
            .SetErrorMsg(0, "Value " + std::to_string(number) +
                                " for element with psid = " + std::to_string(metadata.PsId()) +
                                ", Name = " + metadata.Name() + " doesn't match a valid enum");
    }
}

bool CElementFactory::InspectDetailAgain()
{
    return mInspectAgain;
}

void CElementFactory::SetContextInfo(const std::string & key, int value)
{
    mContext.SetTag(key, value);
}

void CElementFactory::SetContextInfo(const std::string & key, const std::string & value)
{
    mContext.SetTag(key, value);
}

void CElementFactory::Clear()
{
    ZYN_SENTRY("VrexZynConfigTools::CElementFactory::Clear");

    mContext.SetTag(keywords::TAG_NUM_INDICES, keywords::EMPTY);
    mContext.SetTags(keywords::TAG_INDEX, keywords::EMPTY);
    mPsId = 0;
    mIndexCount = 0;
    mStructDepth = 0;
    mName.clear();
    mInternalType.clear();
    mMetadataType = METADATA_NONE;
    delete mElement;
    mElement = nullptr;
    mDecoded = false;
}

CElement * CElementFactory::Collect()
{
    ZYN_SENTRY("VrexZynConfigTools::CElementFactory::Collect");

    CElement * const element = mElement;
    mElement = nullptr;
    return element;
}

void CElementFactory::Place(CElement * element, const IMetadata & metadata)
{
    std::unique_ptr<CElement> owned(element);
    payloadlist::HandOn(*owned, &metadata);
    if (mElement == nullptr)
        mElement = owned.release();
    else
        AddStructField(owned.get());
}

void CElementFactory::AddStructField(CElement * element)
{
    ZYN_SENTRY("VrexZynConfigTools::CElementFactory::AddStructField");

    auto * const key = dynamic_cast<CElementStruct *>(mElement);
    if (key == nullptr) {
        ZYN_TRACE(DECISIONS, "Unexpected CElement at this point");
        ZYN_HANDLER(zynFunction).SetErrorMsg(0, keywords::ERROR_UNEXPECTED);
        return;
    }
    CComplexPayload * const owner = OpenPayload();
    std::vector<std::unique_ptr<IPayload>> payloads = TakePayloads(*element);
    for (std::unique_ptr<IPayload> & payload : payloads) {
        if (owner != nullptr)
            owner->AddField(payload.release());
        else
            key->AddField(payload.release());
    }
}

CComplexPayload * CElementFactory::OpenPayload() const
{
    // An element that was collected took its open structs along.
    const bool isStruct = dynamic_cast<CElementStruct *>(mElement) != nullptr;
    if (!isStruct || mStructDepth == 0 || mFieldStack.empty())
        return nullptr;
    return dynamic_cast<CComplexPayload *>(mFieldStack.back());
}

bool CElementFactory::ChecksData() const
{
    return !mContext.TagMatches(keywords::TAG_NO_DATA_CHECK, std::string(keywords::VALUE_TRUE));
}

}   // namespace VrexZynConfigTools
