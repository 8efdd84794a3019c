// How `CElementFactory` asks for the values of a key or field, checks them and makes elements of them.

#include <configtools/elementfactory.h>

#include <configtools/context.h>
#include <configtools/elements.h>
#include <configtools/keywords.h>
#include <configtools/numbertypes.h>
#include <configtools/readerwriter.h>
#include <configtools/structcodec.h>
#include <messages/trace.h>
#include <misc/stringutil.h>

#include <algorithm>
#include <memory>
#include <type_traits>

namespace VrexZynConfigTools {

namespace {

constexpr GroupEnum MESSAGE_GROUP = GROUP_FRAMEWORK;

bool IsErrorSet()
{
    return ZYN_HANDLER("VrexZynConfigTools::CElementFactory::Int").IsErrorSet(GROUP_FRAMEWORK, true);
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

}   // namespace

/// How the numbers of one callback are read.
struct CElementFactory::NumberShape
{
    std::string type;
    std::uint32_t count;   // 1 and less: as many as there are, or one within a struct
};

void CElementFactory::Int(const IMetadata & metadata)
{
    ZYN_SENTRY("VrexZynConfigTools::CElementFactory::Int");

    if (mDecoded)
        return;
    if (metadata.IsArray() && WidthOfField() < 0) {
        mInspectAgain = false;   // as an unsigned number it would ask for hundreds of millions of items
        return;
    }
    const NumberShape shape = ShapeOf(metadata);
    const std::vector<NumericVariable> values = ReadNumbers(metadata, shape);
    if (!IsErrorSet()) {
        auto element =
            std::make_unique<CElementNumericArray>(shape.type, metadata.PsId(), metadata.Name(), true);
        element->SetValue(values);
        Place(element.release(), metadata);
    }
    // Whatever error is set by now, by the source, the checks or the placing, the reader's own error gets this text.
    // Without one nothing is made, intended: the reader reports in its own words or not at all.
    if (IsErrorSet())
        ZYN_HANDLER(zynFunction)
            .ModifyErrorMsg(0,
                "Element with PsId = " + std::to_string(metadata.PsId()) + ", Name = " + metadata.Name(),
                GROUP_OUTER_READER);
}

CElementFactory::NumberShape CElementFactory::ShapeOf(const IMetadata & metadata)
{
    ZYN_SENTRY("VrexZynConfigTools::CElementFactory::ShapeOf");

    NumberShape shape{ metadata.InternalType(), 1 };
    const std::string width = mContext.GetTag(keywords::TAG_ELEM_BIT_WIDTH);
    if (width.empty())
        return shape;   // no field of a struct
    std::uint32_t bits = CStructCodec::BitsForInternalType(shape.type);
    if (metadata.IsArray()) {
        if (bits == 0)
            bits = BitsOfFields(metadata);
        shape.count = (static_cast<std::uint32_t>(WidthOfField()) - 1 + bits) / bits;
    } else if (bits == 0) {
        const std::string fitting = CStructCodec::GetIntTypeFromBitWidth(width, IsUnsignedFormat(metadata));
        if (!fitting.empty())
            shape.type = fitting;
    }
    return shape;
}

std::vector<NumericVariable> CElementFactory::ReadNumbers(const IMetadata & metadata, const NumberShape & shape)
{
    ZYN_SENTRY("VrexZynConfigTools::CElementFactory::ReadNumbers");

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
    bool result = false;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CElementFactory::ReadNumber", result);

    // The value delivered with the answer false counts too.
    mWasAsked = true;
    mInspectAgain = mSource->NextInt(type, value.mUint64, nullptr);
    if (ChecksData() && !ValidateRange(type, value, metadata.Min(), metadata.Max()))
        mInspectAgain = false;
    return result = mInspectAgain;
}

bool CElementFactory::ValidateRange(
    const std::string & type, const NumericVariable & value, std::int64_t min, std::int64_t max)
{
    bool result = true;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CElementFactory::ValidateRange", result);

    const NumberType * const number = FindNumberType(type);
    if (number == nullptr || type == keywords::TYPE_INTEGER)
        return result = true;   // a type without a width has no range to check
    // A signed number whatever the type, intended: tools know an unsigned one of 2^63 and above as a negative number.
    std::int64_t printed = 0;
    VisitNumberType(number->mType, [&](auto numberClass) {
        result = IsWithin(value.*numberClass.MEMBER, min, max);
        printed = static_cast<std::int64_t>(value.*numberClass.MEMBER);
    });
    if (!result)
        ZYN_HANDLER(zynFunction)
            .SetErrorMsg(0, "Read value " + std::to_string(printed) + " is out of range [" +
                                std::to_string(min) + "," + std::to_string(max) + "]");
    return result;
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
        mWasAsked = true;
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
    ZYN_SENTRY("VrexZynConfigTools::CElementFactory::TrimPadding");

    // An octet string of this subsystem travels in 16-bit words, so it may end in a pad byte.
    const bool mayBePadded =
        isOctet && value.size() % 2 == 0 && value.size() > static_cast<std::uint64_t>(metadata.Min());
    if (mayBePadded && value.back() == '\0' && mContext.TagMatches(keywords::TAG_SUBSYSTEM_TYPE, SUBSYSTEM_BT))
        value.pop_back();
}

void CElementFactory::CheckLength(const IMetadata & metadata, std::size_t length)
{
    ZYN_SENTRY("VrexZynConfigTools::CElementFactory::CheckLength");

    // The limits of a text are lengths in bytes.
    if (IsWithin(std::uint64_t{ length }, metadata.Min(), metadata.Max()))
        return;
    ZYN_HANDLER(zynFunction)
        .SetErrorMsg(0, "String value's length for element with psid = " + std::to_string(metadata.PsId()) +
                            ", Name = " + metadata.Name() + " is out of range [" +
                            std::to_string(metadata.Min()) + "," + std::to_string(metadata.Max()) + "], got " +
                            std::to_string(length));
}

void CElementFactory::Enum(const IMetadata & metadata)
{
    ZYN_SENTRY("VrexZynConfigTools::CElementFactory::Enum");

    if (mDecoded)
        return;
    std::uint64_t value = 0;
    mWasAsked = true;
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

std::int32_t CElementFactory::WidthOfField() const
{
    return stringutil::DecimalToInt(mContext.GetTag(keywords::TAG_ELEM_BIT_WIDTH));
}

bool CElementFactory::ChecksData() const
{
    return !mContext.TagMatches(keywords::TAG_NO_DATA_CHECK, std::string(keywords::VALUE_TRUE));
}

}   // namespace VrexZynConfigTools
