#include <configtools/payloads.h>

#include <cstring>
#include <locale>
#include <sstream>

#include <configtools/readerwriter.h>
#include <messages/trace.h>

namespace VrexZynConfigTools {

namespace {

constexpr GroupEnum MESSAGE_GROUP = GROUP_FRAMEWORK;
constexpr std::uint32_t DECISIONS = 3;

/// As a stream of the classic locale inserts the value: the 8-bit types are characters there.
template <typename T>
std::string TextOf(const T & value)
{
    if constexpr (std::is_same_v<T, std::string>)
        return value;
    else if constexpr (sizeof(T) == 1)
        return std::string(1, static_cast<char>(value));
    else
        return std::to_string(value);
}

template <typename T>
std::string DifferenceText(PayloadTypeEnum leftType, const T & left, PayloadTypeEnum rightType, const T & right)
{
    std::ostringstream text;
    text.imbue(std::locale::classic());
    text << "payloads differs: pLeft->type = " << static_cast<int>(leftType)
         << ", pRight->type = " << static_cast<int>(rightType);

    // Characters and texts stand behind the "0x" as they are, intended: hexadecimal means nothing to them.
    text << std::hex << ", pLeft->value = 0x" << left << ", pRight->value = 0x" << right;
    return text.str();
}

}   // namespace

template <typename T>
CPayload<T>::CPayload(T value, PayloadTypeEnum type)
    : mValue(std::move(value))
    , mType(type)
    , mMetadata(nullptr)
{
    ZYN_CONSTRUCTOR(GROUP_CORE_CLASSES, "VrexZynConfigTools::CPayload::CPayload");
}

template <typename T>
bool CPayload<T>::Write(IConfigWriter & writer, IConfigContext & context)
{
    bool result = false;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CPayload::Write", result);

    writer.WritePayload(*this, context);
    return result = !ZYN_HANDLER(zynFunction).IsErrorSet(GROUP_FRAMEWORK, true);
}

template <typename T>
bool CPayload<T>::operator==(IPayload const & other) const
{
    bool result = false;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CPayload::operator==", result);

    // To the template and not to a concrete class: an enumerator and a number of 32 bits differ by their type codes.
    const auto * right = dynamic_cast<const CPayload<T> *>(&other);
    if (right == nullptr) {
        ZYN_TRACE(DECISIONS, "pPayload is not a CPayload");
        return result = false;
    }
    if (mType == right->mType && mValue == right->mValue)
        return result = true;
    ZYN_TRACE(DECISIONS, "%s", DifferenceText(mType, mValue, right->mType, right->mValue).c_str());
    return result = false;
}

template <typename T>
PayloadTypeEnum CPayload<T>::Type()
{
    return mType;
}

template <typename T>
std::uint64_t CPayload<T>::Length()
{
    return sizeof(T);
}

template <typename T>
const void * CPayload<T>::RawData()
{
    return &mValue;
}

template <typename T>
std::string CPayload<T>::ToString()
{
    std::string result;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CPayload::ToString", result);

    result = TextOf(mValue);
    return result;
}

template <typename T>
std::uint64_t CPayload<T>::WriteToMem(void * destination, std::uint64_t maximum)
{
    std::uint64_t result = 0;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CPayload::WriteToMem", result);

    if (destination == nullptr || maximum < sizeof(T))
        return result = 0;
    // Of a string the object itself is copied, intended: `Length` of the string class counts characters instead.
    std::memcpy(destination, &mValue, sizeof(T));
    return result = sizeof(T);
}

template <typename T>
bool CPayload<T>::operator!=(CPayload<T> const & other) const
{
    bool result = false;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CPayload::operator!=", result);

    return result = !this->operator==(other);
}

template <typename T>
void CPayload<T>::SetValue(T value)
{
    ZYN_SENTRY("VrexZynConfigTools::CPayload::SetValue");

    mValue = std::move(value);
}

template <typename T>
T CPayload<T>::GetValue()
{
    return mValue;
}

template <typename T>
void CPayload<T>::Use(IMetadata const & metadata)
{
    mMetadata = &metadata;
}

template <typename T>
IMetadata const * CPayload<T>::Metadata()
{
    return mMetadata;
}

template class CPayload<std::int8_t>;
template class CPayload<std::int16_t>;
template class CPayload<std::int32_t>;
template class CPayload<std::int64_t>;
template class CPayload<std::uint8_t>;
template class CPayload<std::uint16_t>;
template class CPayload<std::uint32_t>;
template class CPayload<std::uint64_t>;
template class CPayload<std::string>;

CInt8Payload::CInt8Payload(std::int8_t value)
    : CPayload<std::int8_t>(value, PAYLOAD_INT8)
{
    ZYN_CONSTRUCTOR(GROUP_CORE_CLASSES, "VrexZynConfigTools::CInt8Payload::CInt8Payload");
}

std::string CInt8Payload::ToString()
{
    std::string result;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CInt8Payload::ToString", result);

    result = std::to_string(mValue);
    return result;
}

CInt16Payload::CInt16Payload(std::int16_t value)
    : CPayload<std::int16_t>(value, PAYLOAD_INT16)
{
    ZYN_CONSTRUCTOR(GROUP_CORE_CLASSES, "VrexZynConfigTools::CInt16Payload::CInt16Payload");
}

CInt32Payload::CInt32Payload(std::int32_t value)
    : CPayload<std::int32_t>(value, PAYLOAD_INT32)
{
    ZYN_CONSTRUCTOR(GROUP_CORE_CLASSES, "VrexZynConfigTools::CInt32Payload::CInt32Payload");
}

CInt64Payload::CInt64Payload(std::int64_t value)
    : CPayload<std::int64_t>(value, PAYLOAD_INT64)
{
    ZYN_CONSTRUCTOR(GROUP_CORE_CLASSES, "VrexZynConfigTools::CInt64Payload::CInt64Payload");
}

CUint8Payload::CUint8Payload(std::uint8_t value)
    : CPayload<std::uint8_t>(value, PAYLOAD_UINT8)
{
    ZYN_CONSTRUCTOR(GROUP_CORE_CLASSES, "VrexZynConfigTools::CUint8Payload::CUint8Payload");
}

std::string CUint8Payload::ToString()
{
    std::string result;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CUint8Payload::ToString", result);

    result = std::to_string(mValue);
    return result;
}

CUint16Payload::CUint16Payload(std::uint16_t value)
    : CPayload<std::uint16_t>(value, PAYLOAD_UINT16)
{
    ZYN_CONSTRUCTOR(GROUP_CORE_CLASSES, "VrexZynConfigTools::CUint16Payload::CUint16Payload");
}

CUint32Payload::CUint32Payload(std::uint32_t value)
    : CPayload<std::uint32_t>(value, PAYLOAD_UINT32)
{
    ZYN_CONSTRUCTOR(GROUP_CORE_CLASSES, "VrexZynConfigTools::CUint32Payload::CUint32Payload");
}

CUint64Payload::CUint64Payload(std::uint64_t value)
    : CPayload<std::uint64_t>(value, PAYLOAD_UINT64)
{
    ZYN_CONSTRUCTOR(GROUP_CORE_CLASSES, "VrexZynConfigTools::CUint64Payload::CUint64Payload");
}

CStringPayload::CStringPayload(const std::string & value, bool isOctet)
    : CPayload<std::string>(value, PAYLOAD_STRING)
    , mIsOctet(isOctet)
{
    ZYN_CONSTRUCTOR(GROUP_CORE_CLASSES, "VrexZynConfigTools::CStringPayload::CStringPayload");
}

std::uint64_t CStringPayload::Length()
{
    return mValue.size();
}

bool CStringPayload::IsOctet()
{
    return mIsOctet;
}

CEnumPayload::CEnumPayload(const std::string & name, std::int32_t value)
    : CPayload<std::int32_t>(value, PAYLOAD_ENUM)
    , mName(name)
{
    ZYN_CONSTRUCTOR(GROUP_CORE_CLASSES, "VrexZynConfigTools::CEnumPayload::CEnumPayload");
}

bool CEnumPayload::operator==(IPayload const & other) const
{
    bool result = false;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CEnumPayload::operator==", result);

    if (!CPayload<std::int32_t>::operator==(other))
        return result = false;
    const auto * right = dynamic_cast<const CEnumPayload *>(&other);
    return result = right != nullptr && mName == right->mName;
}

std::string CEnumPayload::ToString()
{
    return GetName();
}

bool CEnumPayload::operator!=(CPayload<std::int32_t> const & other) const
{
    return operator!=(static_cast<const IPayload &>(other));
}

bool CEnumPayload::operator!=(IPayload const & other) const
{
    bool result = false;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CEnumPayload::operator!=", result);

    return result = !this->operator==(other);
}

void CEnumPayload::SetValue(const std::string & name, std::int32_t value)
{
    ZYN_SENTRY("VrexZynConfigTools::CEnumPayload::SetValue");

    mName = name;
    mValue = value;
}

std::string CEnumPayload::GetName()
{
    std::string result;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CEnumPayload::GetName", result);

    result = mName;
    return result;
}

}   // namespace VrexZynConfigTools
