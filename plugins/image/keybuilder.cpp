#include "keybuilder.h"

#include "bytes.h"
#include "image.h"
#include "shape.h"
#include "words.h"

#include <configtools/context.h>
#include <configtools/elementfactory.h>
#include <configtools/keywords.h>
#include <configtools/metadata.h>
#include <configtools/structcodec.h>
#include <configtools/structlayout.h>
#include <kit/reporting/channel.h>

namespace imageconfig {

using namespace VrexZynConfigTools;

namespace {

/// The words, or the octets as one string, without any meaning.
std::unique_ptr<CElement> RawElement(const RawKey & key)
{
    auto element = std::make_unique<CElementStruct>(key.mId, "", true);   // owns them until they are all there
    if (key.mForm == Form::OCTETS)
        element->AddField(new CStringPayload(key.mData, true));
    for (std::size_t place = 0; key.mForm == Form::WORDS && place < key.mData.size(); place += BYTES_OF_WORD)
        element->AddField(new CUint16Payload(
            static_cast<std::uint16_t>(NumberIn(std::string_view(key.mData).substr(place, BYTES_OF_WORD)))));
    auto raw = std::make_unique<CElementRaw>(key.mId, "", element->GetPayloadCopy(false), true);
    element->TransferPayload();
    return raw;
}

/// A record by which a value can be read: one of a key, with a shape.
bool IsUsable(const IMetadata * record, std::uint32_t id)
{
    return record != nullptr && record->IsValid() && record->PsId() == id && record->Details() != nullptr &&
           record->MetadataType() != METADATA_NONE;
}

void MoveStructs(CElement & from, CElement & to)
{
    auto * const target = dynamic_cast<CElementStruct *>(&to);
    for (IPayload * const instance : from.TransferPayload())
        target->AddField(instance);
}

}   // namespace

CKeyBuilder::CKeyBuilder(IConfigContext & context)
    : mContext(context)
    , mChecks(!context.TagMatches(keywords::TAG_NO_DATA_CHECK, std::string(keywords::VALUE_TRUE)))
{
    // The length of an octet string is in the image, so no pad byte is there to be dropped: without the subsystem a last
    // zero stays.
    mContext.SetTag(keywords::TAG_SUBSYSTEM_TYPE);
}

void CKeyBuilder::Fail(const std::string & text)
{
    if (mError.empty())
        mError = text;
}

std::unique_ptr<CElement> CKeyBuilder::Build(const RawKey & key, const IMetadata * record, std::string & error)
{
    mError.clear();
    ElementOwner element;
    const bool hasNoValue = key.mForm == Form::WORDS && key.mData.empty();
    if (IsUsable(record, key.mId) && !hasNoValue) {
        if (record->MetadataType() == METADATA_STRUCT)
            element = BuildStructs(key, *record);
        else if (record->MetadataType() == METADATA_ENUM)
            element = BuildEnumerators(key, *record);
        else
            element = BuildPart(key, key.mData, *record);
        if (mChecks && element != nullptr && mError.empty())
            mError = ObjectionToShape(key, *record);
    }
    error = mError;
    if (!error.empty())
        return nullptr;
    // Without checks an unknown enumerator makes no element; its words are kept all the same.
    return element != nullptr ? std::move(element) : RawElement(key);
}

std::unique_ptr<CElement> CKeyBuilder::BuildPart(
    const RawKey & key, std::string_view part, const IMetadata & record)
{
    kit::reporting::TakeError();
    CRawSource source(key, part);
    CStructCodec codec;
    CElementFactory factory(&source, mContext, &codec);
    record.Inspect(factory);
    ElementOwner element(factory.Collect());
    factory.Clear();   // takes the indices out of the context
    const auto problem = kit::reporting::TakeError();
    if (!source.Objection().empty())
        Fail(source.Objection());
    else if (problem)
        Fail(*problem);   // such as a value out of range, which ends the reading of those behind it
    else if (!source.Leftover().empty())
        Fail(source.Leftover());
    return element;
}

// Each struct by itself: the source's answer after the last word of a struct has to end the walk over its array fields,
// and would end the array of structs with it.
std::unique_ptr<CElement> CKeyBuilder::BuildStructs(const RawKey & key, const IMetadata & record)
{
    auto * const layout = dynamic_cast<CMetadataDetailStruct *>(record.Details());
    const std::uint64_t bits = layout != nullptr ? StructSizeInBits(*layout) : 0;
    if (bits == 0 || bits > 8 * MAX_BYTES_OF_CHUNK) {
        Fail("the metadata describe a struct of " + std::to_string(bits) + " bits");
        return nullptr;
    }
    if (layout->IsOctetsInBin() != (key.mForm == Form::OCTETS)) {
        Fail(layout->IsOctetsInBin()
                 ? "the value is made of words; the metadata describe a struct of octets"
                 : "the value is a string of octets; the metadata describe a struct of words");
        return nullptr;
    }
    const std::size_t size = layout->IsOctetsInBin() ? (bits + 7) / 8 : (bits + 15) / 16 * BYTES_OF_WORD;
    const std::string_view data = key.mData;
    const bool fits = record.IsArray() ? !data.empty() && data.size() % size == 0 : data.size() == size;
    if (!fits) {
        Fail("the value has " + std::to_string(data.size()) +
             " bytes; the struct that the metadata describe has " + std::to_string(size));
        return nullptr;
    }
    ElementOwner element;
    for (std::size_t place = 0; place < data.size() && mError.empty(); place += size) {
        ElementOwner part = BuildPart(key, data.substr(place, size), record);
        if (element == nullptr)
            element = std::move(part);
        else if (part != nullptr)
            MoveStructs(*part, *element);
    }
    return element;
}

// Each enumerator by itself, since the factory reads one.
std::unique_ptr<CElement> CKeyBuilder::BuildEnumerators(const RawKey & key, const IMetadata & record)
{
    constexpr std::size_t SIZE = WORDS_OF_ENUM * BYTES_OF_WORD;
    auto element = std::make_unique<CElementEnum>(key.mId, record.Name(), true);
    const std::string_view data = key.mData;
    std::size_t count = 0;
    for (std::size_t place = 0; place < data.size() && mError.empty(); place += SIZE) {
        const ElementOwner part = BuildPart(key, data.substr(place, SIZE), record);
        const auto * const enumerator = dynamic_cast<const CElementEnum *>(part.get());
        std::string name;
        std::int32_t number = 0;
        if (enumerator == nullptr || !enumerator->GetEnum(0, name, number))
            return nullptr;
        element->AddEnum(name, number);
        ++count;
    }
    element->Use(record);
    return count != 0 ? std::move(element) : nullptr;
}

}   // namespace imageconfig
