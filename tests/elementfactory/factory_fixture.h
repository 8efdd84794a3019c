/// A factory with a scripted source, used as a reader uses it, and what the elements that it builds look like.

#ifndef TESTS_ELEMENTFACTORY_FACTORY_FIXTURE_H
#define TESTS_ELEMENTFACTORY_FACTORY_FIXTURE_H

#include <configtools/elementfactory.h>
#include <configtools/elements.h>
#include <configtools/metadata.h>
#include <configtools/payloads.h>
#include <configtools/structcodec.h>
#include <configtools/zyncontext.h>

#include <metadata/records.h>
#include <support/framework_errors.h>
#include <support/metadata_builder.h>
#include <support/scripted_source.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <initializer_list>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace VrexZynConfigTools::support {

/// A payload with its class: "uint8=5", "string=abc", "enum=on(1)", "{uint8=1 uint8=2}" for a structure.
inline std::string TreeOf(IPayload * payload)
{
    static const char * const names[] = { "int8", "int16", "int32", "int64", "uint8", "uint16", "uint32",
        "uint64", "string" };
    if (payload == nullptr)
        return "null";
    if (auto * const complex = dynamic_cast<CComplexPayload *>(payload)) {
        std::string text;
        for (IPayload * const field : complex->GetFields())
            text += (text.empty() ? "" : " ") + TreeOf(field);
        return (complex->Type() == PAYLOAD_COMPLEX ? "{" : "?{") + text + "}";
    }
    if (auto * const enumerator = dynamic_cast<CEnumPayload *>(payload))
        return "enum=" + enumerator->GetName() + "(" + std::to_string(enumerator->GetValue()) + ")";
    return std::string(names[payload->Type()]) + "=" + payload->ToString();
}

/// The payloads of an element, parted by blanks; "none" without an element.
inline std::string TreeOf(CElement * element)
{
    if (element == nullptr)
        return "none";
    std::string text;
    for (IPayload * const payload : element->GetPayloadCopy(false))
        text += (text.empty() ? "" : " ") + TreeOf(payload);
    return text;
}

inline std::string TreeOf(const std::unique_ptr<CElement> & element)
{
    return TreeOf(element.get());
}

/// The record that a payload carries.
inline const IMetadata * RecordOf(IPayload * payload)
{
    auto * const user = dynamic_cast<IMetadataUser *>(payload);
    return user != nullptr ? user->Metadata() : nullptr;
}

/// Field number `index` of a structure.
inline IPayload * FieldOf(IPayload * payload, std::size_t index)
{
    return dynamic_cast<CComplexPayload &>(*payload).GetFields().at(index);
}

/// A record with enumerators.
inline std::unique_ptr<CMetadata> EnumRecord(
    const ARecord & builder, std::initializer_list<std::pair<const char *, const char *>> enumerators)
{
    auto record = WithDetail(ARecord(builder).Shaped(METADATA_ENUM));
    auto & detail = dynamic_cast<CMetadataDetailEnum &>(*record->Details());
    for (const auto & [name, value] : enumerators)
        detail.AddEnum(name, value);
    return record;
}

/// A record of the number 0, as struct fields have, that allows any value of an unsigned byte.
inline std::unique_ptr<CMetadata> ByteField(const std::string & name)
{
    return WithDetail(ARecord(0).Named(name).OfType("uint8").Within(0, 255));
}

class FactoryTest : public testing::Test
{
protected:
    /// As a reader reads one key.
    std::unique_ptr<CElement> Read(const IMetadata & record)
    {
        mFactory.Clear();
        return ReadOn(record);
    }

    /// The same without `Clear`.
    std::unique_ptr<CElement> ReadOn(const IMetadata & record)
    {
        record.Inspect(mFactory);
        return Collect();
    }

    std::unique_ptr<CElement> Collect() { return std::unique_ptr<CElement>(mFactory.Collect()); }

    explicit FactoryTest(CStructCodec * codec = nullptr)
        : mFactory(&mSource, mContext, codec)
    {}

    FrameworkErrors mErrors;
    GroupErrors mReaderErrors{ GROUP_OUTER_READER };
    ScriptedSource mSource;
    CZynContext mContext;
    CElementFactory mFactory;
};

}   // namespace VrexZynConfigTools::support

#endif
