#include <configtools/elements.h>

#include <utility>

#include "payloadlist.h"
#include <configtools/readerwriter.h>
#include <messages/trace.h>

namespace VrexZynConfigTools {

namespace {

constexpr GroupEnum MESSAGE_GROUP = GROUP_FRAMEWORK;
constexpr std::uint32_t ACCESSORS = 2;

}   // namespace

CElement::CElement(std::uint32_t psId, const std::string & name, bool changed)
    : mName(name)
    , mPsId(psId)
    , mChanged(changed)
    , mMetadata(nullptr)
{
    ZYN_CONSTRUCTOR(GROUP_CORE_CLASSES, "VrexZynConfigTools::CElement::CElement");
}

CElement::CElement(
    std::uint32_t psId, const std::string & name, const std::vector<IPayload *> & payload, bool changed)
    : mName(name)
    , mPsId(psId)
    , mChanged(changed)
    , mMetadata(nullptr)
    , mPayload(payload)
{
    ZYN_CONSTRUCTOR(GROUP_CORE_CLASSES, "VrexZynConfigTools::CElement::CElement");
}

bool CElement::Write(IConfigWriter & writer, IConfigContext & context)
{
    bool result = false;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CElement::Write", result);

    writer.StartElement(context);
    writer.WriteKeyId(mPsId, context);
    payloadlist::WriteEach(mPayload, writer, context);
    writer.EndElement(context);
    mChanged = false;   // also after a failure, intended
    return result = !ZYN_HANDLER(zynFunction).IsErrorSet(GROUP_FRAMEWORK, true);
}

CElement::~CElement()
{
    ZYN_SENTRY("VrexZynConfigTools::CElement::~CElement");

    CElement::ClearPayload();
}

bool CElement::operator==(const CElement & other) const
{
    bool result = false;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CElement::operator==", result);

    if (mPsId != other.mPsId || mName != other.mName)
        return result = false;
    return result = payloadlist::Equal(mPayload, other.mPayload);
}

bool CElement::operator!=(const CElement & other) const
{
    bool result = false;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CElement::operator!=", result);

    return result = !this->operator==(other);
}

std::string CElement::KeyString() const
{
    std::string result;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CElement::KeyString", result);

    result = mName;
    return result;
}

bool CElement::IsValid() const
{
    return true;
}

bool CElement::HasChanged() const
{
    return mChanged;
}

void CElement::ClearPayload()
{
    ZYN_SENTRY("VrexZynConfigTools::CElement::ClearPayload");

    payloadlist::DeleteAll(mPayload);
}

bool CElement::Same(CElement & other) const
{
    bool result = false;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CElement::Same", result);

    return result = mPsId == other.mPsId;
}

void CElement::Use(IMetadata const & metadata)
{
    ZYN_SENTRY("VrexZynConfigTools::CElement::Use");

    mMetadata = &metadata;
    payloadlist::HandOn(mPayload, mMetadata);
}

IMetadata const * CElement::Metadata()
{
    return mMetadata;
}

std::string CElement::Name() const
{
    return mName;
}

std::uint32_t CElement::PsId() const
{
    ZYN_TRACE_IN("VrexZynConfigTools::CElement::PsId", ACCESSORS, "-> CElement::PsId <-returning %d",
        static_cast<int>(mPsId));
    return mPsId;
}

std::vector<IPayload *> CElement::GetPayloadCopy(bool transfer)
{
    ZYN_SENTRY("VrexZynConfigTools::CElement::GetPayloadCopy");

    return transfer ? std::exchange(mPayload, {}) : mPayload;
}

std::vector<IPayload *> CElement::TransferPayload()
{
    ZYN_SENTRY("VrexZynConfigTools::CElement::TransferPayload");

    return GetPayloadCopy(true);
}

std::uint64_t CElement::PayloadCollectionSize() const
{
    std::uint64_t result = 0;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CElement::PayloadCollectionSize", result);

    return result = payloadlist::Length(mPayload);
}

CNullElement::CNullElement()
    : CElement(0, std::string(), true)
{
    ZYN_CONSTRUCTOR(GROUP_CORE_CLASSES, "VrexZynConfigTools::CNullElement::CNullElement");
}

bool CNullElement::Write(IConfigWriter &, IConfigContext &)
{
    return false;
}

std::string CNullElement::ToString() const
{
    return "invalid";
}

std::uint64_t CNullElement::Size() const
{
    return 0;
}

bool CNullElement::IsValid() const
{
    return false;
}

}   // namespace VrexZynConfigTools
