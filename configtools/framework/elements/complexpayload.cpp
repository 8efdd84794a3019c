#include <configtools/payloads.h>

#include <cstddef>

#include "payloadlist.h"
#include <configtools/readerwriter.h>
#include <messages/trace.h>

namespace VrexZynConfigTools {

namespace {

constexpr GroupEnum MESSAGE_GROUP = GROUP_FRAMEWORK;

}   // namespace

CComplexPayload::CComplexPayload(PayloadTypeEnum type)
    : mType(type)
    , mMetadata(nullptr)
{
    ZYN_CONSTRUCTOR(GROUP_CORE_CLASSES, "VrexZynConfigTools::CComplexPayload::CComplexPayload");
}

CComplexPayload::~CComplexPayload()
{
    ZYN_SENTRY("VrexZynConfigTools::CComplexPayload::~CComplexPayload");

    payloadlist::DeleteAll(mFields);
}

void CComplexPayload::AddField(IPayload * field)
{
    ZYN_SENTRY("VrexZynConfigTools::CComplexPayload::AddField");

    payloadlist::Append(mFields, std::unique_ptr<IPayload>(field));
}

const std::vector<IPayload *> & CComplexPayload::GetFields()
{
    return mFields;
}

void CComplexPayload::WriteFields(IConfigWriter & writer, IConfigContext & context)
{
    ZYN_SENTRY("VrexZynConfigTools::CComplexPayload::WriteFields");

    payloadlist::WriteEach(mFields, writer, context);
}

bool CComplexPayload::Write(IConfigWriter & writer, IConfigContext & context)
{
    bool result = false;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CComplexPayload::Write", result);

    writer.WritePayload(*this, context);
    return result = !ZYN_HANDLER(zynFunction).IsErrorSet(GROUP_FRAMEWORK, true);
}

bool CComplexPayload::operator==(IPayload const & other) const
{
    bool result = false;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CComplexPayload::operator==", result);

    const auto * right = dynamic_cast<const CComplexPayload *>(&other);
    if (right == nullptr || mType != right->mType)
        return result = false;
    return result = payloadlist::Equal(mFields, right->mFields);
}

PayloadTypeEnum CComplexPayload::Type()
{
    return mType;
}

std::uint64_t CComplexPayload::Length()
{
    std::uint64_t result = 0;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CComplexPayload::Length", result);

    return result = payloadlist::Length(mFields);
}

const void * CComplexPayload::RawData()
{
    return nullptr;
}

std::string CComplexPayload::ToString()
{
    return {};
}

std::uint64_t CComplexPayload::WriteToMem(void * destination, std::uint64_t maximum)
{
    std::uint64_t result = 0;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CComplexPayload::WriteToMem", result);

    if (destination == nullptr || maximum < Length())
        return result = 0;
    auto * const begin = static_cast<std::byte *>(destination);
    for (IPayload * field : mFields)
        if (field != nullptr)
            result += field->WriteToMem(begin + result, maximum);   // the whole one each time, intended
    return result;
}

void CComplexPayload::Use(IMetadata const & metadata)
{
    ZYN_SENTRY("VrexZynConfigTools::CComplexPayload::Use");

    // Fields added since the same record was attached don't get it, intended; an element passes it on each time.
    if (mMetadata == &metadata)
        return;
    mMetadata = &metadata;
    payloadlist::HandOn(mFields, mMetadata);
}

IMetadata const * CComplexPayload::Metadata()
{
    return mMetadata;
}

CRawPayload::CRawPayload(const std::string &)
    : CComplexPayload(PAYLOAD_RAW)
{
    ZYN_CONSTRUCTOR(GROUP_CORE_CLASSES, "VrexZynConfigTools::CRawPayload::CRawPayload");
}

CRawPayload::~CRawPayload()
{
    ZYN_SENTRY("VrexZynConfigTools::CRawPayload::~CRawPayload");
}

std::uint64_t CRawPayload::Size()
{
    return Length();
}

}   // namespace VrexZynConfigTools
