#include "packing.h"

#include "fitting.h"
#include "structtree.h"

#include <configtools/metadata.h>
#include <configtools/payloads.h>
#include <configtools/readerwriter.h>
#include <configtools/structcodec.h>
#include <configtools/zyncontext.h>
#include <kit/reporting/channel.h>

namespace kit::layout {

using namespace VrexZynConfigTools;

namespace {

/// Takes the words of a packed struct, and gives them back.
class CWordStore : public IConfigWriter, public IElementFactorySource
{
public:
    explicit CWordStore(std::string octets)
        : mOctets(std::move(octets))
    {}

    const std::string & Octets() const { return mOctets; }

    void PrepareWriter(IConfigContext &) override {}
    void StartWrite(IConfigContext &) override {}
    void EndWrite(IConfigContext &) override {}
    void StartSubsystem(IConfigContext &) override {}
    void EndSubsystem(IConfigContext &) override {}
    void StartElement(IConfigContext &) override {}
    void EndElement(IConfigContext &) override {}
    void WriteKeyId(std::uint32_t, IConfigContext &) override {}
    void WriteNamedData(const std::string &, const void *, std::uint32_t, IConfigContext &) override {}

    void WritePayload(IPayload & payload, IConfigContext &) override
    {
        if (auto * const text = dynamic_cast<CStringPayload *>(&payload)) {
            mOctets += text->GetValue();
            return;
        }
        std::uint16_t word = 0;
        payload.WriteToMem(&word, sizeof word);
        mOctets += static_cast<char>(word & 0xFF);
        mOctets += static_cast<char>(word >> 8);
    }

    bool NextInt(const std::string &, std::uint64_t & value, std::uint16_t *) override
    {
        const auto octet = [this](std::size_t place) {
            return std::uint64_t{ place < mOctets.size() ? static_cast<unsigned char>(mOctets[place]) : 0U };
        };
        value = octet(mRead) | octet(mRead + 1) << 8;
        mRead += 2;
        return true;
    }

    bool NextEnum(std::uint64_t & value, std::uint16_t *) override
    {
        value = 0;
        return false;
    }

    bool NextString(std::string & value, std::uint16_t *) override
    {
        value = mOctets;
        return true;
    }

private:
    std::string mOctets;
    std::size_t mRead = 0;
};

// What the codec makes of a tree in the form in which it loses least.
std::string PackTree(CComplexPayload & fitted, CMetadataDetailStruct & layout)
{
    CStructCodec codec;
    CWordStore store("");
    CZynContext context;
    codec.Encode(fitted, layout);
    codec.Write(store, context);
    return store.Octets();
}

}   // namespace

std::string Change::Text() const
{
    return mLoss == Loss::TOO_WIDE
               ? "the value " + mValue + " doesn't fit into " + std::to_string(mBits) + " bits"
               : "the value " + mValue + " comes back as " + mBack + ", as " + WhyText(mLoss);
}

Packed PackStruct(CComplexPayload & instance, CMetadataDetailStruct & layout)
{
    Packed packed;
    const CStructLayout geometry(layout);
    const Result given = CodecTree(instance, layout);
    packed.mError = given.mTree == nullptr ? given.mError : geometry.Error();
    if (!packed.mError.empty())
        return packed;
    packed.mOctets = PackTree(*FittedTree(*given.mTree, geometry.Entries()), layout);
    packed.mError = kit::reporting::TakeError().value_or("");
    const auto back = packed.mError.empty() ? UnpackStruct(packed.mOctets, layout) : nullptr;
    if (back == nullptr)
        return packed;
    packed.mChanges = Differences(*given.mTree, *back, layout, geometry.Entries());
    return packed;
}

std::unique_ptr<CComplexPayload> UnpackStruct(const std::string & octets, CMetadataDetailStruct & layout)
{
    CComplexPayload tree(PAYLOAD_COMPLEX);
    CStructCodec codec;
    CWordStore store(octets);
    bool more = false;
    codec.Decode(store, layout, &tree, more);
    return kit::reporting::TakeError() ? nullptr : CodecTree(tree, layout).mTree;
}

}   // namespace kit::layout
