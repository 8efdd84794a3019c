/// Trees of a struct, as text, and the ways in which they come into being.

#ifndef TESTS_STRUCTTREE_TREES_H
#define TESTS_STRUCTTREE_TREES_H

#include <configtools/elementfactory.h>
#include <configtools/elements.h>
#include <configtools/payloads.h>
#include <configtools/readerwriter.h>
#include <configtools/structcodec.h>
#include <configtools/zyncontext.h>
#include <metadata/records.h>

#include <memory>
#include <string>
#include <vector>

namespace VrexZynConfigTools::support {

/// "(1 RED (1 2))": numbers and enumerators by their text, lists in brackets.
inline std::string Text(IPayload & payload)
{
    auto * const list = dynamic_cast<CComplexPayload *>(&payload);
    if (list == nullptr)
        return payload.ToString();
    std::string text;
    for (IPayload * const field : list->GetFields())
        text += (text.empty() ? "" : " ") + (field != nullptr ? Text(*field) : std::string("null"));
    return '(' + text + ')';
}

/// Delivers numbers and texts one after the other, and answers false with the last.
class ListSource : public IElementFactorySource
{
public:
    explicit ListSource(const std::vector<std::int64_t> & numbers, const std::vector<std::string> & texts = {})
        : mNumbers(numbers)
        , mTexts(texts)
    {}

    bool NextInt(const std::string &, std::uint64_t & value, std::uint16_t *) override
    {
        value = mNext < mNumbers.size() ? static_cast<std::uint64_t>(mNumbers[mNext]) : 0;
        ++mNext;
        return HasMore();
    }
    bool NextEnum(std::uint64_t & value, std::uint16_t *) override { return NextInt("", value, nullptr); }
    bool NextString(std::string & value, std::uint16_t *) override
    {
        value = mNextText < mTexts.size() ? mTexts[mNextText] : std::string();
        ++mNextText;
        return HasMore();
    }

private:
    bool HasMore() const { return mNext < mNumbers.size() || mNextText < mTexts.size(); }

    std::vector<std::int64_t> mNumbers;
    std::vector<std::string> mTexts;
    std::size_t mNext = 0;
    std::size_t mNextText = 0;
};

/// Keeps the words that a codec writes.
class WordCatcher : public IConfigWriter
{
public:
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
        mWords.push_back(dynamic_cast<CUint16Payload &>(payload).GetValue());
    }

    std::vector<std::int64_t> mWords;
};

/// One instance of a struct, with the element that owns it.
struct Instance
{
    std::unique_ptr<CElement> mElement;

    CComplexPayload & Tree() const
    {
        return dynamic_cast<CComplexPayload &>(*mElement->GetPayloadCopy(false).at(0));
    }
};

inline Instance ReadWith(CStructCodec * codec, const IMetadata & record, ListSource source)
{
    CZynContext context;
    context.SetTag("nodatacheck", "true");
    CElementFactory factory(&source, context, codec);
    record.Inspect(factory);
    return Instance{ std::unique_ptr<CElement>(factory.Collect()) };
}

inline Instance ReadFieldByField(const IMetadata & record, const ListSource & source)
{
    return ReadWith(nullptr, record, source);
}

inline Instance ReadAsBlock(const IMetadata & record, const std::vector<std::int64_t> & words)
{
    CStructCodec codec;
    return ReadWith(&codec, record, ListSource(words));
}

inline std::vector<std::int64_t> Pack(CComplexPayload & tree, CMetadataDetailStruct & layout)
{
    CStructCodec codec;
    codec.Encode(tree, layout);
    WordCatcher catcher;
    CZynContext context;
    codec.Write(catcher, context);
    return catcher.mWords;
}

}   // namespace VrexZynConfigTools::support

#endif
