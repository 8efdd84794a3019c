#include "packing.h"

#include <configtools/context.h>
#include <configtools/elements.h>
#include <configtools/keywords.h>
#include <configtools/readerwriter.h>
#include <configtools/structcodec.h>
#include <messages/messages.h>

namespace workbench::compiler {

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
        if (auto * text = dynamic_cast<CStringPayload *>(&payload)) {
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
        const auto octet = [this](std::size_t position) {
            return std::uint64_t{ position < mOctets.size() ? static_cast<unsigned char>(mOctets[position])
                                                            : 0u };
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

std::string TakeError()
{
    auto & handler = CTheMsgHnd::GetAppropriateHandler(GROUP_FRAMEWORK, "workbench::compiler", false);
    short code = 0;
    std::string text;
    if (handler.GetErrorMsg(GROUP_FRAMEWORK, code, text))
        handler.ClearError(GROUP_FRAMEWORK);
    return text;
}

IPayload * NewNumber(const std::string & type, const CNumber & number)
{
    CElementNumericArray element(type, 0, "", true);
    NumericVariable variable{};
    variable.mUint64 = number.Bits();
    element.SetValue({ variable });
    const auto payloads = element.TransferPayload();
    return payloads.empty() ? nullptr : payloads.front();
}

// As the library types the numbers of a struct.
std::string NumericTypeOf(const Field & field)
{
    if (CStructCodec::BitsForInternalType(field.mType.mValue) != 0)
        return field.mType.mValue;
    const bool isUnsigned = field.mFormat.mValue == keywords::FORMAT_UNSIGNED_DECIMAL ||
                            field.mFormat.mValue == keywords::FORMAT_HEXADECIMAL;
    const auto width = field.mWidth.mValue / static_cast<std::int64_t>(field.Count());
    return CStructCodec::GetIntTypeFromBitWidth(std::to_string(width), isUnsigned);
}

IPayload * NewLeaf(const Field & field, const LeafValue & value)
{
    const bool isNumber = field.KindOf() == Kind::Number;
    if (isNumber && (field.IsArray() || field.IsWide())) {
        const std::string type = field.IsWide() ? keywords::TYPE_UINT16 : NumericTypeOf(field);
        auto complex = std::make_unique<CComplexPayload>(PAYLOAD_COMPLEX);
        for (const CNumber & number : value.mNumbers)
            complex->AddField(NewNumber(type, number));
        return complex.release();
    }
    if (isNumber)
        return NewNumber(NumericTypeOf(field), value.mNumbers.at(0));
    if (field.KindOf() == Kind::Enumeration)
        return new CEnumPayload(value.mText, static_cast<std::int32_t>(value.mNumbers.at(0).SignedBits()));
    return new CStringPayload(value.mText, field.KindOf() == Kind::Octets);
}

using NextLeaf = LeafValues::const_iterator;

void FillStruct(
    const CStructRecords & records, CMetadataDetailStruct & detail, CComplexPayload & out, NextLeaf & next)
{
    const auto addStruct = [&](const CStructField & field, CComplexPayload & parent) {
        auto * inner = new CComplexPayload(PAYLOAD_COMPLEX);
        parent.AddField(inner);
        FillStruct(records, CStructRecords::StructOf(field), *inner, next);
    };
    for (const CStructField * each : *detail.GetStructFields()) {
        const Field & field = records.FieldOf(*each);
        if (field.KindOf() != Kind::Structure) {
            out.AddField(NewLeaf(field, *next++));
        } else if (!field.IsArray()) {
            addStruct(*each, out);
        } else {
            auto * instances = new CComplexPayload(PAYLOAD_COMPLEX);
            out.AddField(instances);
            for (std::uint64_t count = field.Count(); count > 0; --count)
                addStruct(*each, *instances);
        }
    }
}

void CollectLeaves(
    const CStructRecords & records, CMetadataDetailStruct & detail, std::vector<const Field *> & leaves)
{
    for (const CStructField * each : *detail.GetStructFields()) {
        const Field & field = records.FieldOf(*each);
        if (field.KindOf() != Kind::Structure)
            leaves.push_back(&field);
        else
            for (std::uint64_t count = field.Count(); count > 0; --count)
                CollectLeaves(records, CStructRecords::StructOf(*each), leaves);
    }
}

// A number, the name of an enumerator, or several of them.
std::string TextOf(IPayload * payload)
{
    auto * complex = dynamic_cast<CComplexPayload *>(payload);
    if (complex == nullptr)
        return payload != nullptr ? payload->ToString() : "nothing";
    std::string text;
    for (IPayload * item : complex->GetFields())
        text += (text.empty() ? "" : ", ") + TextOf(item);
    return '[' + text + ']';
}

const std::vector<IPayload *> & FieldsOf(IPayload * payload)
{
    static const std::vector<IPayload *> none;
    auto * complex = dynamic_cast<CComplexPayload *>(payload);
    return complex != nullptr ? complex->GetFields() : none;
}

// A tree that came back need not have as many entries as there are fields.
void CollectTexts(const CStructRecords & records, CMetadataDetailStruct & detail, IPayload * tree,
    std::vector<std::string> & texts)
{
    const auto & payloads = FieldsOf(tree);
    auto next = payloads.begin();
    for (const CStructField * each : *detail.GetStructFields()) {
        const Field & field = records.FieldOf(*each);
        IPayload * payload = next != payloads.end() ? *next++ : nullptr;
        if (field.KindOf() != Kind::Structure) {
            texts.push_back(TextOf(payload));
        } else if (!field.IsArray()) {
            CollectTexts(records, CStructRecords::StructOf(*each), payload, texts);
        } else {
            const auto & instances = FieldsOf(payload);
            auto instance = instances.begin();
            for (std::uint64_t count = field.Count(); count > 0; --count)
                CollectTexts(records, CStructRecords::StructOf(*each),
                    instance != instances.end() ? *instance++ : nullptr, texts);
        }
    }
}

}   // namespace

std::vector<const Field *> LeavesOf(const CStructRecords & records)
{
    std::vector<const Field *> leaves;
    CollectLeaves(records, records.Struct(), leaves);
    return leaves;
}

std::string Pack(const CStructRecords & records, const LeafValues & values, std::string & error)
{
    CComplexPayload tree(PAYLOAD_COMPLEX);
    auto next = values.begin();
    FillStruct(records, records.Struct(), tree, next);

    CStructCodec codec;
    CWordStore store("");
    codec.Encode(tree, records.Struct());
    error = TakeError();
    if (error.empty()) {
        codec.Write(store, CNullContext::Ref());
        error = TakeError();
    }
    return store.Octets();
}

std::vector<std::string> Unpack(const CStructRecords & records, const std::string & octets, std::string & error)
{
    CComplexPayload tree(PAYLOAD_COMPLEX);
    CStructCodec codec;
    CWordStore store(octets);
    bool more = false;
    codec.Decode(store, records.Struct(), &tree, more);
    error = TakeError();
    std::vector<std::string> texts;
    CollectTexts(records, records.Struct(), &tree, texts);
    return texts;
}

std::vector<std::string> TextsOf(const CStructRecords & records, const LeafValues & values)
{
    CComplexPayload tree(PAYLOAD_COMPLEX);
    auto next = values.begin();
    FillStruct(records, records.Struct(), tree, next);
    std::vector<std::string> texts;
    CollectTexts(records, records.Struct(), &tree, texts);
    return texts;
}

}   // namespace workbench::compiler
