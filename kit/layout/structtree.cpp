#include "structtree.h"

#include "scalars.h"
#include "valuelist.h"

#include <configtools/keywords.h>
#include <configtools/metadata.h>
#include <configtools/payloads.h>
#include <configtools/structcodec.h>
#include <configtools/structlayout.h>

#include <algorithm>
#include <vector>

namespace kit::layout {

using namespace VrexZynConfigTools;

namespace {

constexpr std::size_t MAX_NESTING = 64;          // as the codec's
constexpr std::uint64_t MAX_WORDS = 1U << 20U;   // of one tree's wide fields

std::uint64_t WholeWords(const CStructField & field)
{
    return static_cast<std::uint64_t>(field.ElemBitWidth()) / CStructCodec::BITS_IN_UINT16;
}

std::string OctetsOfWords(CComplexPayload & words)
{
    std::string octets;
    for (IPayload * const word : words.GetFields())
        octets += OctetsOf(*word)->mText;
    return octets;
}

void AddWithRecord(std::unique_ptr<IPayload> value, const IMetadata & record, CComplexPayload & to)
{
    if (auto * const user = dynamic_cast<IMetadataUser *>(value.get()))
        user->Use(record);
    to.AddField(value.release());
}

/// Makes the codec's tree of one instance. Every step is false once the error is known.
class CTreeBuilder
{
public:
    bool BuildStruct(CComplexPayload & from, CMetadataDetailStruct & layout, CComplexPayload & to);
    const std::string & Error() const { return mError; }

private:
    bool BuildField(const CStructField & field, CValueList & values, CComplexPayload & to);
    bool BuildNested(const IMetadata & record, CValueList & values, CComplexPayload & to);
    bool BuildStructArray(const CStructField & field, CValueList & values, CComplexPayload & to);
    bool BuildInstances(const std::vector<IPayload *> & instances, CMetadataDetailStruct & layout,
        std::uint64_t held, CComplexPayload & to);
    bool BuildArray(const CStructField & field, CValueList & values, CComplexPayload & to);
    bool BuildWords(const CStructField & field, CValueList & values, CComplexPayload & to);
    bool CopyWords(CComplexPayload & from, const CStructField & field, CComplexPayload & to);
    bool FillWords(const Octets & octets, const CStructField & field, CComplexPayload & to);
    bool BuildScalar(const CStructField & field, CValueList & values, CComplexPayload & to);
    IPayload * TakeOne(const IMetadata & record, CValueList & values);
    CMetadataDetailStruct * LayoutOf(const IMetadata & record);
    bool CountWords(std::uint64_t count);
    bool Fail(const std::string & text);

    std::vector<std::string> mPath;   // the names of the fields on the way
    std::uint64_t mWords = 0;
    std::string mError;
};

bool CTreeBuilder::Fail(const std::string & text)
{
    if (!mError.empty())
        return false;
    for (const std::string & name : mPath)
        mError += (mError.empty() ? "" : ".") + name;
    mError += (mError.empty() ? "" : ": ") + text;
    return false;
}

bool CTreeBuilder::BuildStruct(CComplexPayload & from, CMetadataDetailStruct & layout, CComplexPayload & to)
{
    if (mPath.size() >= MAX_NESTING)
        return Fail("the metadata nests structs too deep");
    CValueList values(from, layout);
    for (const CStructField * const field : *layout.GetStructFields()) {
        if (field == nullptr || field->Metadata() == nullptr)
            return Fail("a field of the struct has no metadata");
        mPath.push_back(field->Metadata()->Name());
        values.BeginField(*field->Metadata());
        if (!BuildField(*field, values, to))
            return false;
        mPath.pop_back();
    }
    return values.Left() == 0 || Fail("the struct has " + std::to_string(values.Left()) +
                                      (values.Left() == 1 ? " value" : " values") + " too many");
}

bool CTreeBuilder::BuildField(const CStructField & field, CValueList & values, CComplexPayload & to)
{
    const IMetadata & record = *field.Metadata();
    if (record.MetadataType() == METADATA_STRUCT)
        return record.IsArray() ? BuildStructArray(field, values, to) : BuildNested(record, values, to);
    if (record.IsArray())
        return BuildArray(field, values, to);
    return field.ElemBitWidth() > 64 ? BuildWords(field, values, to) : BuildScalar(field, values, to);
}

IPayload * CTreeBuilder::TakeOne(const IMetadata & record, CValueList & values)
{
    IPayload * const value = values.IsNextFor(record) ? values.Take() : nullptr;
    if (value == nullptr)
        Fail("the field has no value");
    return value;
}

CMetadataDetailStruct * CTreeBuilder::LayoutOf(const IMetadata & record)
{
    auto * const layout = dynamic_cast<CMetadataDetailStruct *>(record.Details());
    if (layout == nullptr)
        Fail("the struct has no fields in the metadata");
    return layout;
}

bool CTreeBuilder::BuildNested(const IMetadata & record, CValueList & values, CComplexPayload & to)
{
    CMetadataDetailStruct * const layout = LayoutOf(record);
    IPayload * const value = layout != nullptr ? TakeOne(record, values) : nullptr;
    if (value == nullptr)
        return false;
    auto * const nested = dynamic_cast<CComplexPayload *>(value);
    if (nested == nullptr)
        return Fail("a struct was given a plain value");
    return BuildStruct(*nested, *layout, AddList(to, nullptr));
}

bool CTreeBuilder::BuildStructArray(const CStructField & field, CValueList & values, CComplexPayload & to)
{
    const IMetadata & record = *field.Metadata();
    CMetadataDetailStruct * const layout = LayoutOf(record);
    if (layout == nullptr)
        return false;
    const std::uint64_t size = StructSizeInBits(*layout);
    const auto width = static_cast<std::uint64_t>(std::max(field.ElemBitWidth(), 0));
    const std::uint64_t held = size != 0 ? width / size : 0;
    CComplexPayload & list = AddList(to, nullptr);
    // Read field by field, each struct stands in the list of its owner and knows its record.
    if (values.IsNextOwn(record))
        return BuildInstances(values.TakeRun(record, held), *layout, held, list) &&
               (!values.IsSurplus(record) || Fail("the array has more structs than its width holds"));
    auto * const instances = dynamic_cast<CComplexPayload *>(TakeOne(record, values));
    if (instances == nullptr)
        return Fail("an array of structs was given a plain value");
    if (!HoldsOnlyLists(*instances))
        return BuildInstances({ instances }, *layout, held, list);   // one, without the list around it
    return BuildInstances(WithoutNulls(*instances), *layout, held, list);
}

bool CTreeBuilder::BuildInstances(const std::vector<IPayload *> & instances, CMetadataDetailStruct & layout,
    std::uint64_t held, CComplexPayload & to)
{
    if (instances.size() > held)
        return Fail("the array has " + std::to_string(instances.size()) + " structs; its width holds " +
                    std::to_string(held));
    for (IPayload * const item : instances) {
        auto * const instance = dynamic_cast<CComplexPayload *>(item);
        if (instance == nullptr)
            return Fail("a struct was given a plain value");
        if (!BuildStruct(*instance, layout, AddList(to, nullptr)))
            return false;
    }
    return true;
}

bool CTreeBuilder::BuildArray(const CStructField & field, CValueList & values, CComplexPayload & to)
{
    const IMetadata & record = *field.Metadata();
    const std::uint64_t held = ItemsHeld(field.ElemBitWidth(), record.InternalType());
    CComplexPayload & list = AddList(to, &record);
    auto * const items = values.IsNextFor(record) ? dynamic_cast<CComplexPayload *>(values.Next()) : nullptr;
    const std::vector<IPayload *> found =
        items != nullptr ? WithoutNulls(*items) : values.TakeRun(record, held);
    if (items != nullptr)
        values.Take();
    if ((held != 0 && found.size() > held) || values.IsSurplus(record))
        return Fail("the array has more items than the " + std::to_string(held) + " that its width holds");
    for (IPayload * const item : found) {
        std::unique_ptr<IPayload> copy = ItemOf(*item, record);
        if (copy == nullptr)
            return Fail("an item of the array is no number");
        list.AddField(copy.release());
    }
    return true;
}

bool CTreeBuilder::BuildWords(const CStructField & field, CValueList & values, CComplexPayload & to)
{
    const IMetadata & record = *field.Metadata();
    IPayload * const value = TakeOne(record, values);
    if (value == nullptr)
        return false;
    auto list = std::make_unique<CComplexPayload>(PAYLOAD_COMPLEX);
    list->Use(record);
    auto * const words = dynamic_cast<CComplexPayload *>(value);
    const auto octets = OctetsOf(*value);
    if (words == nullptr && !octets)
        return Fail("the value is no number and no text");
    if (words != nullptr ? !CopyWords(*words, field, *list) : !FillWords(*octets, field, *list))
        return false;
    if (!IsTextual(record))
        to.AddField(list.release());
    else
        AddWithRecord(words == nullptr && !octets->mIsNumber ? CopyText(*value, record)
                                                             : TextOfOctets(OctetsOfWords(*list), record),
            record, to);
    return true;
}

bool CTreeBuilder::CopyWords(CComplexPayload & from, const CStructField & field, CComplexPayload & to)
{
    const std::vector<IPayload *> words = WithoutNulls(from);
    // A last, partial word counts here: the codec packs it, though it doesn't unpack it.
    const std::uint64_t most = ItemsHeld(field.ElemBitWidth(), keywords::TYPE_UINT16);
    if (words.size() > most)
        return Fail("the value has " + std::to_string(words.size()) + " words; the field holds " +
                    std::to_string(most));
    for (IPayload * const word : words) {
        const auto octets = OctetsOf(*word);
        const std::uint64_t number = octets ? LowestFirst(octets->mText) : 0;
        if (!octets || !octets->mIsNumber || number > 0xFFFF)
            return Fail("the value is no list of words of 16 bits");
        to.AddField(new CUint16Payload(static_cast<std::uint16_t>(number)));
    }
    return true;
}

bool CTreeBuilder::FillWords(const Octets & octets, const CStructField & field, CComplexPayload & to)
{
    const std::uint64_t count = WholeWords(field);
    if (!CountWords(count))
        return false;
    const bool isSigned = octets.mIsNumber && field.Metadata()->Format() == keywords::FORMAT_SIGNED_DECIMAL;
    const bool isNegative = isSigned && !octets.mText.empty() && (octets.mText.back() & 0x80) != 0;
    if (octets.mText.find_last_not_of('\0') != std::string::npos &&
        octets.mText.find_last_not_of('\0') >= 2 * count)
        return Fail("the text has more bytes than the " + std::to_string(2 * count) + " of the field's words");
    const auto octet = [&](std::uint64_t place) {
        const unsigned char fill = isNegative ? 0xFF : 0;
        return place < octets.mText.size() ? static_cast<unsigned char>(octets.mText[place]) : fill;
    };
    for (std::uint64_t word = 0; word < count; ++word)
        to.AddField(new CUint16Payload(static_cast<std::uint16_t>(octet(2 * word) | octet(2 * word + 1) << 8)));
    return true;
}

bool CTreeBuilder::CountWords(std::uint64_t count)
{
    mWords += count;
    return mWords <= MAX_WORDS || Fail("the metadata describes a field that is far too wide");
}

bool CTreeBuilder::BuildScalar(const CStructField & field, CValueList & values, CComplexPayload & to)
{
    const IMetadata & record = *field.Metadata();
    IPayload * const value = TakeOne(record, values);
    if (value == nullptr)
        return false;
    std::unique_ptr<IPayload> copy = CopyNumber(*value);
    const bool isText = copy == nullptr;
    if (isText)
        copy = NumberOfText(*value, field);
    if (copy == nullptr)
        return Fail("the value is no number, and no text that fits into " +
                    std::to_string(field.ElemBitWidth()) + " bits");
    if (IsTextual(record)) {
        std::string octets = OctetsOf(*copy)->mText;
        octets.resize(static_cast<std::size_t>(std::clamp(field.ElemBitWidth(), 0, 64)) / 8, '\0');
        copy = isText ? CopyText(*value, record) : TextOfOctets(std::move(octets), record);
    }
    AddWithRecord(std::move(copy), record, to);
    return true;
}

}   // namespace

Result CodecTree(CComplexPayload & instance, CMetadataDetailStruct & layout)
{
    Result result;
    auto tree = std::make_unique<CComplexPayload>(PAYLOAD_COMPLEX);
    if (const IMetadata * const record = instance.Metadata())
        tree->Use(*record);   // while it is empty, so that the fields don't get it
    CTreeBuilder builder;
    if (builder.BuildStruct(instance, layout, *tree))
        result.mTree = std::move(tree);
    else
        result.mError = builder.Error();
    return result;
}

std::uint64_t ItemsHeld(int widthInBits, const std::string & itemType)
{
    const std::uint64_t bits = CStructCodec::BitsForInternalType(itemType);
    if (bits == 0 || widthInBits <= 0)
        return 0;
    return (static_cast<std::uint64_t>(widthInBits) - 1 + bits) / bits;
}

}   // namespace kit::layout
