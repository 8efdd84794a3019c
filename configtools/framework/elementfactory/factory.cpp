// How `CElementFactory` follows the walk over a key. What it makes of values is in values.cpp.

#include <configtools/elementfactory.h>

#include "../elements/payloadlist.h"
#include <configtools/context.h>
#include <configtools/elements.h>
#include <configtools/keywords.h>
#include <configtools/readerwriter.h>
#include <configtools/structcodec.h>
#include <messages/trace.h>
#include <misc/keepforever.h>

#include <memory>
#include <string>

namespace VrexZynConfigTools {

namespace {

constexpr GroupEnum MESSAGE_GROUP = GROUP_FRAMEWORK;
constexpr std::uint32_t DECISIONS = 3;

/// The characters of an index tag; longer names and values are cut off, intended: readers of the tags expect it so.
constexpr std::size_t INDEX_TEXT_SIZE = 8;

std::string IndexText(const std::string & stem, unsigned number)
{
    return (stem + std::to_string(number)).substr(0, INDEX_TEXT_SIZE);
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

/// Passes every question on, and knows whether there was one.
class WatchedSource : public IElementFactorySource
{
public:
    explicit WatchedSource(IElementFactorySource & source)
        : mSource(source)
    {}

    bool NextInt(const std::string & typeName, std::uint64_t & value, std::uint16_t * indexNumber) override
    {
        mWasAsked = true;
        return mSource.NextInt(typeName, value, indexNumber);
    }
    bool NextString(std::string & value, std::uint16_t * indexNumber) override
    {
        mWasAsked = true;
        return mSource.NextString(value, indexNumber);
    }
    bool NextEnum(std::uint64_t & value, std::uint16_t * indexNumber) override
    {
        mWasAsked = true;
        return mSource.NextEnum(value, indexNumber);
    }
    bool WasAsked() const { return mWasAsked; }

private:
    IElementFactorySource & mSource;
    bool mWasAsked = false;
};

}   // namespace

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
    , mWasAsked(false)
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
    // Structs that a walk left open when it broke off are no part of the new element.
    if (mElement == nullptr)
        mDecoded = false;
    if (mElement == nullptr || mMetadataType == METADATA_STRUCT)
        mStructDepth = 0;
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

    if (mStructDepth == 0) {
        mFieldStack.clear();   // left over from a walk that broke off
        mWasAsked = false;
    }
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
    ZYN_SENTRY("VrexZynConfigTools::CElementFactory::DecodeStruct");

    auto * const element = dynamic_cast<CElementStruct *>(mElement);
    const IMetadata * const metadata = element != nullptr ? element->Metadata() : nullptr;
    auto * const layout =
        metadata != nullptr ? dynamic_cast<CMetadataDetailStruct *>(metadata->Details()) : nullptr;
    mDecoded = true;
    if (layout == nullptr) {
        ZYN_HANDLER(zynFunction).SetErrorMsg(0, keywords::ERROR_UNEXPECTED);
        mInspectAgain = false;
        return;
    }
    auto complex = std::make_unique<CComplexPayload>(PAYLOAD_COMPLEX);
    CComplexPayload & payload = *complex;
    element->AddField(complex.release());   // which hands it the key's record
    WatchedSource source(*mSource);
    mCodec->Decode(source, *layout, &payload, mInspectAgain);   // which reports its errors itself
    mWasAsked = mWasAsked || source.WasAsked();
    if (!source.WasAsked())
        mInspectAgain = false;   // or an array field of a struct without bits would have no end
}

void CElementFactory::OpenStruct(const IMetadata & metadata)
{
    ZYN_SENTRY("VrexZynConfigTools::CElementFactory::OpenStruct");

    auto complex = std::make_unique<CComplexPayload>(PAYLOAD_COMPLEX);
    payloadlist::HandOn(*complex, &metadata);
    CComplexPayload * const payload = complex.get();
    CComplexPayload * const owner = OpenPayload();
    auto * const element = dynamic_cast<CElementStruct *>(mElement);
    if (owner == nullptr && element == nullptr) {
        ZYN_HANDLER(zynFunction).SetErrorMsg(0, keywords::ERROR_UNEXPECTED);
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
    if (mStructDepth != 0)
        return;
    mDecoded = false;
    if (!mWasAsked)
        mInspectAgain = false;   // or an array of structs that take no value would have no end
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
    ZYN_SENTRY("VrexZynConfigTools::CElementFactory::Place");

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
    ZYN_SENTRY("VrexZynConfigTools::CElementFactory::OpenPayload");

    // An element that was collected took its open structs along.
    const bool isStruct = dynamic_cast<CElementStruct *>(mElement) != nullptr;
    if (!isStruct || mStructDepth == 0 || mFieldStack.empty())
        return nullptr;
    return dynamic_cast<CComplexPayload *>(mFieldStack.back());
}

}   // namespace VrexZynConfigTools
