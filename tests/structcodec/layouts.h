/// Struct layouts, trees of payloads, and the way from one to the other in one call each.
///
///     Layout layout(LITTLE_ENDIAN_TARGET);
///     layout.Field(0, 3).Field(3, 5);
///     EXPECT_THAT(Encoded(layout, ATree(new CUint8Payload(5), new CUint8Payload(17))), ElementsAre(0x8D));
///     EXPECT_EQ(TextOf(*Decode(layout, { 0x8D }).mOut), "9:(0:5 0:17)");

#ifndef TESTS_STRUCTCODEC_LAYOUTS_H
#define TESTS_STRUCTCODEC_LAYOUTS_H

#include <configtools/context.h>
#include <configtools/metadata.h>
#include <configtools/payloads.h>
#include <configtools/structcodec.h>
#include <support/metadata_builder.h>
#include <support/recording_writer.h>
#include <support/scripted_source.h>

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace VrexZynConfigTools::support {

enum ByteOrder
{
    BIG_ENDIAN_TARGET,
    LITTLE_ENDIAN_TARGET
};

/// The words of a packed struct, each as the writer got it.
using Words = std::vector<std::uint16_t>;

/// A field's record: a number without a width of its own.
inline ARecord ANumber()
{
    return ARecord(0).OfType("integer");
}
inline ARecord ANumber(const std::string & type, const std::string & format = "")
{
    return ARecord(0).OfType(type).Formatted(format);
}

/// A struct with the records of its fields, which it owns.
class Layout
{
public:
    explicit Layout(ByteOrder order, bool isOctetsInBin = false, const ARecord & record = ARecord(0))
        : mRecord(ARecord(record).Shaped(METADATA_STRUCT).Build())
        , mDetail(new CMetadataDetailStruct(*mRecord, order == LITTLE_ENDIAN_TARGET, isOctetsInBin))
    {
        mRecord->SetDetails(*mDetail);
    }

    Layout & Field(int position, int width, const ARecord & record = ANumber())
    {
        mFields.push_back(record.Build());
        mDetail->AddField("ignored", mFields.back().get(), position, width);
        return *this;
    }

    Layout & Enum(int position, int width, const std::map<std::string, std::string> & enumerators,
        const ARecord & record = ANumber("uint8"))
    {
        Field(position, width, ARecord(record).Shaped(METADATA_ENUM));
        auto * const detail = new CMetadataDetailEnum(*mFields.back());
        mFields.back()->SetDetails(*detail);
        for (const auto & [name, number] : enumerators)
            detail->AddEnum(name, number);
        return *this;
    }

    /// An array of structs if the record of `nested` says so.
    Layout & Struct(int position, int width, Layout nested)
    {
        mDetail->AddField("ignored", nested.mRecord.get(), position, width);
        mNested.push_back(std::make_unique<Layout>(std::move(nested)));
        return *this;
    }

    CMetadataDetailStruct & Detail() { return *mDetail; }
    CMetadata & Record() { return *mRecord; }

    /// The record of a field that isn't a struct, by its number among these.
    CMetadata & FieldRecord(std::size_t number) { return *mFields[number]; }

private:
    std::unique_ptr<CMetadata> mRecord;
    CMetadataDetailStruct * mDetail;   // owned by the record
    std::vector<std::unique_ptr<CMetadata>> mFields;
    std::vector<std::unique_ptr<Layout>> mNested;
};

/// A complex payload of new payloads, which it owns.
inline std::unique_ptr<CComplexPayload> ATreeOf(const std::vector<IPayload *> & fields)
{
    auto tree = std::make_unique<CComplexPayload>(PAYLOAD_COMPLEX);
    for (IPayload * const field : fields)
        tree->AddField(field);
    return tree;
}
template <typename... PayloadT>
std::unique_ptr<CComplexPayload> ATree(PayloadT *... field)
{
    return ATreeOf({ static_cast<IPayload *>(field)... });
}

/// The same as a field of a further tree.
template <typename... PayloadT>
IPayload * ABranch(PayloadT *... field)
{
    return ATree(field...).release();
}

/// A branch with a payload of 16 bits per number.
inline IPayload * AWordBranch(const Words & words)
{
    auto tree = ATree();
    for (const std::uint16_t word : words)
        tree->AddField(new CUint16Payload(word));
    return tree.release();
}

/// Keeps the values that it is given.
class CollectingWriter : public RecordingWriter
{
public:
    void WritePayload(IPayload & payload, IConfigContext & context) override
    {
        RecordingWriter::WritePayload(payload, context);
        if (auto * const word = dynamic_cast<CUint16Payload *>(&payload))
            mWords.push_back(word->GetValue());
        if (auto * const text = dynamic_cast<CStringPayload *>(&payload)) {
            mOctets = text->GetValue();
            mIsOctet = text->IsOctet();
        }
        if (auto * const user = dynamic_cast<IMetadataUser *>(&payload))
            mHasMetadata |= user->Metadata() != nullptr;
    }

    Words mWords;
    std::string mOctets;
    bool mIsOctet = false;
    bool mHasMetadata = false;
};

/// What the codec has in store for a writer.
inline Words WordsOf(CStructCodec & codec)
{
    CollectingWriter writer;
    codec.Write(writer, CNullContext::Ref());
    return writer.mWords;
}
inline std::string OctetsOf(CStructCodec & codec)
{
    CollectingWriter writer;
    codec.Write(writer, CNullContext::Ref());
    return writer.mOctets;
}

inline Words Encoded(Layout & layout, const std::unique_ptr<CComplexPayload> & tree)
{
    CStructCodec codec;
    codec.Encode(*tree, layout.Detail());
    return WordsOf(codec);
}

/// The octets as hexadecimal digits.
inline std::string EncodedOctets(Layout & layout, const std::unique_ptr<CComplexPayload> & tree)
{
    CStructCodec codec;
    codec.Encode(*tree, layout.Detail());
    const std::string octets = OctetsOf(codec);
    return HexOf(octets.data(), octets.size());
}

struct Decoded
{
    bool mResult = false;
    bool mMore = false;
    std::unique_ptr<CComplexPayload> mOut = ATree();
};

inline Decoded Decode(Layout & layout, ScriptedSource & source)
{
    Decoded decoded;
    CStructCodec codec;
    decoded.mResult = codec.Decode(source, layout.Detail(), decoded.mOut.get(), decoded.mMore);
    return decoded;
}

inline Decoded Decode(Layout & layout, const Words & words)
{
    ScriptedSource source;
    for (const std::uint16_t word : words)
        source.Number(word);
    return Decode(layout, source);
}

/// The tree as text: "9:(4:1 5:2)".
inline std::string DecodedText(Layout & layout, const Words & words)
{
    return TextOf(*Decode(layout, words).mOut);
}

}   // namespace VrexZynConfigTools::support

#endif
