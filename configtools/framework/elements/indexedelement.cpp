#include <configtools/elements.h>

#include "payloadlist.h"
#include <configtools/context.h>
#include <configtools/keywords.h>
#include <configtools/metadata.h>
#include <configtools/readerwriter.h>
#include <messages/trace.h>

namespace VrexZynConfigTools {

namespace {

constexpr GroupEnum MESSAGE_GROUP = GROUP_FRAMEWORK;

/// The name is missing and so is the description: nothing tells what the payloads are.
bool IsUnknown(const IMetadata & metadata, std::uint32_t psId, const std::string & name)
{
    return psId != 0 && name.empty() && !metadata.IsValid();
}

/// Whether the payloads don't have the shape that the metadata tells.
bool IsMisshapen(const IMetadata & metadata, const std::vector<IPayload *> & payloads)
{
    if (!metadata.IsArray() && payloads.size() > 1)
        return true;
    if (metadata.MetadataType() != METADATA_STRUCT)
        return false;
    IPayload * first = payloadlist::First(payloads);
    return first != nullptr && first->Type() != PAYLOAD_COMPLEX;
}

void WriteIndices(const std::vector<std::uint32_t> & indices, IConfigWriter & writer, IConfigContext & context)
{
    const std::uint64_t count = indices.size();
    writer.WriteNamedData(keywords::TAG_NUM_INDICES, &count, sizeof(count), context);
    for (const std::uint32_t index : indices)
        writer.WriteNamedData(keywords::TAG_INDEX, &index, sizeof(index), context);
}

}   // namespace

CIndexedElement::CIndexedElement(std::uint32_t psId, const std::string & name,
    const std::vector<std::uint32_t> & indices, const std::vector<IPayload *> & payload, bool changed)
    : CElement(psId, name, changed)
    , mIndices(indices)
{
    ZYN_CONSTRUCTOR(GROUP_CORE_CLASSES, "VrexZynConfigTools::CIndexedElement::CIndexedElement");

    mPayload = payload;   // last, since a base that had them already would delete them if a copy failed
}

bool CIndexedElement::Write(IConfigWriter & writer, IConfigContext & context)
{
    bool result = false;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CIndexedElement::Write", result);

    const IMetadata & metadata = mMetadata != nullptr ? *mMetadata : CNullMetadata::Ref();
    const bool isRaw = IsUnknown(metadata, mPsId, mName) || IsMisshapen(metadata, mPayload);
    const bool setsRawMode = isRaw && !context.TagMatches(keywords::TAG_RAW_MODE, keywords::VALUE_TRUE);
    if (setsRawMode)
        context.SetTag(keywords::TAG_RAW_MODE, keywords::VALUE_TRUE);

    writer.StartElement(context);
    writer.WriteKeyId(mPsId, context);
    WriteIndices(mIndices, writer, context);
    payloadlist::WriteEach(mPayload, writer, context);
    writer.EndElement(context);

    // Deleted, and only by the row that set it, intended; a raw element leaves "false" instead.
    if (setsRawMode)
        context.SetTag(keywords::TAG_RAW_MODE);
    mChanged = false;   // also after a failure, intended
    return result = !ZYN_HANDLER(zynFunction).IsErrorSet(GROUP_FRAMEWORK, true);
}

CIndexedElement::~CIndexedElement()
{
    ZYN_SENTRY("VrexZynConfigTools::CIndexedElement::~CIndexedElement");
}

std::string CIndexedElement::KeyString() const
{
    std::string result;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CIndexedElement::KeyString", result);

    result = CElement::KeyString() + "." + Indices();
    return result;
}

std::string CIndexedElement::ToString() const
{
    std::string result;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CIndexedElement::ToString", result);

    result = payloadlist::TextOfFirst(mPayload);
    return result;
}

std::uint64_t CIndexedElement::Size() const
{
    std::uint64_t result = 0;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CIndexedElement::Size", result);

    return result = sizeof(std::uint32_t) * mIndices.size() + PayloadCollectionSize();
}

bool CIndexedElement::Same(CElement & other) const
{
    bool result = false;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CIndexedElement::Same", result);

    if (!CElement::Same(other))
        return result = false;
    const auto * row = dynamic_cast<const CIndexedElement *>(&other);
    return result = row != nullptr && mIndices == row->mIndices;
}

std::uint32_t CIndexedElement::NumIndices() const
{
    return static_cast<std::uint32_t>(mIndices.size());
}

std::uint32_t CIndexedElement::Index(std::uint32_t position) const
{
    return position < mIndices.size() ? mIndices[position] : 0;
}

std::string CIndexedElement::Indices() const
{
    std::string result;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CIndexedElement::Indices", result);

    for (const std::uint32_t index : mIndices) {
        if (!result.empty())
            result += '.';
        result += std::to_string(index);
    }
    return result;
}

const std::vector<IPayload *> & CIndexedElement::Payload() const
{
    return mPayload;
}

}   // namespace VrexZynConfigTools
