#include "comparison.h"
#include "describedlayout.h"
#include "handwritten.h"
#include "table.h"

#include <configtools/context.h>
#include <configtools/elements.h>
#include <configtools/payloads.h>
#include <configtools/readerwriter.h>
#include <configtools/structcodec.h>

#include <memory>
#include <string>
#include <vector>

using namespace VrexZynConfigTools;

namespace bench {

namespace {

constexpr std::size_t STRUCTS = 1'000;   // in one turn

/// Gives the same words again and again.
class WordSource : public IElementFactorySource
{
public:
    explicit WordSource(const std::vector<std::uint16_t> & words)
        : mBegin(words.data())
        , mEnd(words.data() + words.size())
        , mNext(words.data())
    {}

    bool NextInt(const std::string & /*type*/, std::uint64_t & value, std::uint16_t * /*index*/) override
    {
        value = *mNext++;
        if (mNext != mEnd)
            return true;
        mNext = mBegin;
        return false;
    }
    bool NextString(std::string & /*value*/, std::uint16_t * /*index*/) override { return false; }
    bool NextEnum(std::uint64_t & /*value*/, std::uint16_t * /*index*/) override { return false; }

private:
    const std::uint16_t * mBegin;
    const std::uint16_t * mEnd;
    const std::uint16_t * mNext;
};

/// Keeps the words that it is given.
class WordWriter : public IConfigWriter
{
public:
    void PrepareWriter(IConfigContext & /*context*/) override {}
    void StartWrite(IConfigContext & /*context*/) override {}
    void EndWrite(IConfigContext & /*context*/) override {}
    void StartSubsystem(IConfigContext & /*context*/) override {}
    void EndSubsystem(IConfigContext & /*context*/) override {}
    void StartElement(IConfigContext & /*context*/) override {}
    void EndElement(IConfigContext & /*context*/) override {}
    void WriteKeyId(std::uint32_t /*psId*/, IConfigContext & /*context*/) override {}
    void WriteNamedData(const std::string & /*name*/, const void * /*data*/, std::uint32_t /*size*/,
        IConfigContext & /*context*/) override
    {}
    void WritePayload(IPayload & payload, IConfigContext & /*context*/) override
    {
        mWords.push_back(dynamic_cast<CUint16Payload &>(payload).GetValue());
    }

    std::vector<std::uint16_t> mWords;
};

/// Structs to be packed and unpacked: random values, as the hand-written code has them and as the codec has them.
template <typename LayoutT>
class Subject
{
public:
    Subject(const LayoutT & layout, bool isForeign)
        : mDescribed(layout, isForeign)
        , mValues(HandWritten<LayoutT>::Members(RandomValues(layout)))
        , mWords(layout.mWordCount)
        , mTree(PAYLOAD_COMPLEX)
        , mSource(mWords)
    {
        HandWritten<LayoutT>::Encode(mValues, mWords.data());
        FillTree(layout);
    }

    /// Whether the codec packs its tree into the very words of the hand-written code.
    bool IsRight()
    {
        Encode();
        WordWriter writer;
        mCodec.Write(writer, CNullContext::Ref());
        return writer.mWords == mWords;
    }

    void Encode() { mCodec.Encode(mTree, mDescribed.Detail()); }
    void Decode()
    {
        CComplexPayload tree(PAYLOAD_COMPLEX);
        bool more = false;
        mCodec.Decode(mSource, mDescribed.Detail(), &tree, more);
    }
    void EncodeByHand() { HandWritten<LayoutT>::Encode(mValues, mWords.data()); }
    void DecodeByHand() { HandWritten<LayoutT>::Decode(mWords.data(), mValues); }

private:
    void FillTree(const LayoutT & layout)
    {
        const auto numbers = RandomValues(layout);
        auto * const items = layout.mIsArray ? new CComplexPayload(PAYLOAD_COMPLEX) : nullptr;
        for (std::size_t field = 0; field < layout.mFields.size(); ++field) {
            NumericVariable value;
            value.mUint64 = numbers[field];
            const CElementNumericArray element(TypeOf(layout.mFields[field].mWidth), 0, "", true);
            (items != nullptr ? *items : mTree)
                .AddField(CElementNumericArray::GetPayloadByNumericType(element.Type(), value));
        }
        if (items != nullptr)
            mTree.AddField(items);
    }

    Described mDescribed;
    typename HandWritten<LayoutT>::Values mValues;
    std::vector<std::uint16_t> mWords;
    CComplexPayload mTree;
    CStructCodec mCodec;
    WordSource mSource;
};

template <typename ActT>
double TimeOfStructs(ActT act)
{
    return TimeOf([&] {
        for (std::size_t count = 0; count < STRUCTS; ++count) {
            act();
            benchmark::ClobberMemory();
        }
    });
}

template <typename LayoutT>
void RegisterLayout(const std::string & name, const LayoutT & layout)
{
    for (const bool isForeign : { false, true }) {
        const std::string row = (isForeign ? "literal/" : "codec/") + name;
        const std::size_t fields = layout.mFields.size();
        const auto with = [=](auto compare) {
            return [=](benchmark::State & state) {
                Subject<LayoutT> subject(layout, isForeign);
                if (!subject.IsRight())
                    state.SkipWithError("the codec packs other words than the hand-written code");
                compare(state, subject);
            };
        };
        Register(row + "/encode", fields, with([fields](benchmark::State & state, Subject<LayoutT> & subject) {
            Compare(
                state, STRUCTS * fields, [&] { return TimeOfStructs([&] { subject.Encode(); }); },
                [&] { return TimeOfStructs([&] { subject.EncodeByHand(); }); });
        }));
        Register(row + "/decode", fields, with([fields](benchmark::State & state, Subject<LayoutT> & subject) {
            Compare(
                state, STRUCTS * fields, [&] { return TimeOfStructs([&] { subject.Decode(); }); },
                [&] { return TimeOfStructs([&] { subject.DecodeByHand(); }); });
        }));
    }
}

}   // namespace

void RegisterCodec()
{
    RegisterLayout("small8", SMALL8);
    RegisterLayout("mixed40", MIXED40);
    RegisterLayout("array64", ARRAY64);
}

}   // namespace bench
