#include <configtools/elements.h>

#include "payloadlist.h"
#include <configtools/context.h>
#include <configtools/keywords.h>
#include <configtools/readerwriter.h>
#include <messages/trace.h>

namespace VrexZynConfigTools {

namespace {

constexpr GroupEnum MESSAGE_GROUP = GROUP_FRAMEWORK;

/// What a string counts on top of its payload, in bytes.
constexpr std::uint64_t LENGTH_FIELD = 2;

}   // namespace

CElementString::CElementString(
    std::uint32_t psId, const std::string & name, const std::string & value, bool isOctet, bool changed)
    : CElement(psId, name, changed)
    , mIsOctet(isOctet)
{
    ZYN_CONSTRUCTOR(GROUP_CORE_CLASSES, "VrexZynConfigTools::CElementString::CElementString");

    auto payload = std::make_unique<CStringPayload>(value, mIsOctet);
    payloadlist::HandOn(*payload, mMetadata);
    payloadlist::Append(mPayload, std::move(payload));
}

CElementString::CElementString(
    std::uint32_t psId, const std::string & name, const std::vector<IPayload *> & payload, bool changed)
    : CElement(psId, name, payload, changed)
    , mIsOctet(true)   // whatever the payloads say, intended
{
    ZYN_CONSTRUCTOR(GROUP_CORE_CLASSES, "VrexZynConfigTools::CElementString::CElementString");
}

bool CElementString::Write(IConfigWriter & writer, IConfigContext & context)
{
    bool result = false;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CElementString::Write", result);

    writer.StartElement(context);
    writer.WriteKeyId(mPsId, context);
    // The first payload only, and directly, intended: a string has one value.
    if (IPayload * first = payloadlist::First(mPayload))
        writer.WritePayload(*first, context);
    writer.EndElement(context);
    mChanged = false;
    return result = !ZYN_HANDLER(zynFunction).IsErrorSet(GROUP_FRAMEWORK, true);
}

std::string CElementString::ToString() const
{
    std::string result;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CElementString::ToString", result);

    result = payloadlist::TextOfFirst(mPayload);
    return result;
}

std::uint64_t CElementString::Size() const
{
    std::uint64_t result = 0;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CElementString::Size", result);

    IPayload * first = payloadlist::First(mPayload);
    return result = LENGTH_FIELD + (first != nullptr ? first->Length() : 0);
}

bool CElementString::IsOctet() const
{
    return mIsOctet;
}

std::string CElementString::GetValue(std::uint16_t index) const
{
    std::string result;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CElementString::GetValue", result);

    auto * payload = index < mPayload.size() ? dynamic_cast<CStringPayload *>(mPayload[index]) : nullptr;
    if (payload != nullptr)
        result = payload->GetValue();
    return result;
}

void CElementString::SetValue(const std::string & value)
{
    ZYN_SENTRY("VrexZynConfigTools::CElementString::SetValue");

    // Nothing is compared, and the element isn't marked as changed, intended. What may fail comes before the old
    // value goes.
    auto payload = std::make_unique<CStringPayload>(value, mIsOctet);
    mPayload.reserve(1);
    ClearPayload();
    payloadlist::HandOn(*payload, mMetadata);
    payloadlist::Append(mPayload, std::move(payload));
}

CElementStruct::CElementStruct(std::uint32_t psId, const std::string & name, bool changed)
    : CElement(psId, name, changed)
{
    ZYN_CONSTRUCTOR(GROUP_CORE_CLASSES, "VrexZynConfigTools::CElementStruct::CElementStruct");
}

std::string CElementStruct::ToString() const
{
    return "struct";
}

std::uint64_t CElementStruct::Size() const
{
    std::uint64_t result = 0;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CElementStruct::Size", result);

    return result = PayloadCollectionSize();
}

void CElementStruct::AddField(IPayload * field)
{
    ZYN_SENTRY("VrexZynConfigTools::CElementStruct::AddField");

    if (field == nullptr)
        return;
    std::unique_ptr<IPayload> owned(field);
    payloadlist::HandOn(field, mMetadata);
    payloadlist::Append(mPayload, std::move(owned));
    mChanged = true;
}

void CElementStruct::AddField(NumericTypeEnum type, NumericVariable value)
{
    ZYN_SENTRY("VrexZynConfigTools::CElementStruct::AddField");

    std::unique_ptr<IPayload> payload(CElementNumericArray::GetPayloadByNumericType(type, value));
    if (payload == nullptr)
        return;
    payloadlist::HandOn(payload.get(), mMetadata);
    payloadlist::Append(mPayload, std::move(payload));   // the element isn't marked as changed here, intended
}

CElementEnum::CElementEnum(std::uint32_t psId, const std::string & name, bool changed)
    : CElement(psId, name, changed)
{
    ZYN_CONSTRUCTOR(GROUP_CORE_CLASSES, "VrexZynConfigTools::CElementEnum::CElementEnum");
}

CElementEnum::CElementEnum(
    std::uint32_t psId, const std::string & name, const std::vector<IPayload *> & payload, bool changed)
    : CElement(psId, name, payload, changed)
{
    ZYN_CONSTRUCTOR(GROUP_CORE_CLASSES, "VrexZynConfigTools::CElementEnum::CElementEnum");
}

std::string CElementEnum::ToString() const
{
    std::string result;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CElementEnum::ToString", result);

    result = payloadlist::TextOfFirst(mPayload);
    return result;
}

std::uint64_t CElementEnum::Size() const
{
    return 0;   // however many enumerators there are, intended
}

void CElementEnum::AddEnum(const std::string & name, std::int32_t value)
{
    ZYN_SENTRY("VrexZynConfigTools::CElementEnum::AddEnum");

    auto payload = std::make_unique<CEnumPayload>(name, value);
    payloadlist::HandOn(*payload, mMetadata);
    payloadlist::Append(mPayload, std::move(payload));
}

bool CElementEnum::GetEnum(std::uint16_t index, std::string & name, std::int32_t & value) const
{
    bool result = false;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CElementEnum::GetEnum", result);

    auto * payload = index < mPayload.size() ? dynamic_cast<CEnumPayload *>(mPayload[index]) : nullptr;
    if (payload == nullptr)
        return result = false;
    name = payload->GetName();
    value = payload->GetValue();
    return result = true;
}

CElementRaw::CElementRaw(
    std::uint32_t psId, const std::string & name, const std::vector<IPayload *> & payload, bool changed)
    : CElement(psId, name, payload, changed)
{
    ZYN_CONSTRUCTOR(GROUP_CORE_CLASSES, "VrexZynConfigTools::CElementRaw::CElementRaw");
}

bool CElementRaw::Write(IConfigWriter & writer, IConfigContext & context)
{
    bool result = false;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CElementRaw::Write", result);

    context.SetTag(keywords::TAG_RAW_MODE, keywords::VALUE_TRUE);
    result = CElement::Write(writer, context);
    // "false" whatever it was before, intended; a table row deletes the tag instead.
    context.SetTag(keywords::TAG_RAW_MODE, keywords::VALUE_FALSE);
    return result;
}

std::string CElementRaw::ToString() const
{
    return "raw";
}

std::uint64_t CElementRaw::Size() const
{
    std::uint64_t result = 0;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CElementRaw::Size", result);

    return result = PayloadCollectionSize();
}

}   // namespace VrexZynConfigTools
