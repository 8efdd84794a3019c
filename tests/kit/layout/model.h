/// Generated structs, and what the library's codec makes of values: with no use of the kit's own ideas of either.

#ifndef TESTS_KIT_LAYOUT_MODEL_H
#define TESTS_KIT_LAYOUT_MODEL_H

#include "trees.h"

#include <configtools/structlayout.h>

#include <support/memory_provider.h>
#include <support/random_source.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace VrexZynConfigTools::support {

// Generated structs.

inline std::int64_t AnyNumber(RandomSource & random, int bits)
{
    const auto number = (static_cast<std::uint64_t>(random.Below(1U << 31)) << 33 ^
                         random.Below(1U << 31) << 16 ^ random.Below(1U << 16));
    return static_cast<std::int64_t>(bits >= 64 ? number : number & ((std::uint64_t{ 1 } << bits) - 1));
}

/// A range: all of the bits, a part of them, or a single number, with or without negative ones.
inline ARecord & WithARange(ARecord & record, RandomSource & random, int width, bool isSigned)
{
    const int bits = std::clamp(width, 1, 63);
    const std::int64_t all = bits >= 63 ? INT64_MAX : (std::int64_t{ 1 } << bits) - 1;
    if (random.Chance(50))
        return isSigned ? record.Within(-(all / 2) - 1, all / 2) : record.Within(0, all);
    const std::int64_t one = AnyNumber(random, random.Chance(80) ? bits : 63);
    const std::int64_t other = random.Chance(30) ? one : AnyNumber(random, bits);
    const std::int64_t shift = isSigned ? all / 2 : 0;
    return record.Within(std::min(one, other) - shift, std::max(one, other) - shift);
}

inline const std::vector<std::string> & Types()
{
    static const std::vector<std::string> TYPES{ "uint8", "int8", "uint16", "int16", "uint32", "int32",
        "uint64", "int64", "integer" };
    return TYPES;
}

inline const IMetadata & ANumber(
    RandomSource & random, MemoryProvider & provider, const std::string & name, int width, bool isArray)
{
    static const std::vector<std::string> FORMATS{ "", "signed_decimal", "unsigned_decimal", "hexadecimal" };
    const std::string & type = random.Of(Types());
    ARecord record = ARecord(0).Named(name).OfType(type).Formatted(random.Of(FORMATS));
    const int typeBits = static_cast<int>(CStructCodec::BitsForInternalType(type));
    const int bits = isArray && typeBits != 0 ? typeBits : std::min(width, typeBits != 0 ? typeBits : 64);
    WithARange(record, random, bits, type.front() == 'i');
    return provider.NumberField(isArray ? record.Array(2, 2) : record);
}

inline const IMetadata & AText(
    RandomSource & random, MemoryProvider & provider, const std::string & name, int width)
{
    const int held = std::max(width > 64 ? width / 16 * 2 : width / 8, 0);
    const int max = random.Chance(10) ? held + 1 : random.Chance(70) ? held : static_cast<int>(random.Below(9));
    const int min = random.Chance(50) ? max : 0;
    return provider.NumberField(
        ARecord(0).Named(name).OfType(random.Chance(50) ? "string" : "octet_string").Within(min, max));
}

inline const IMetadata & AnEnumeration(
    RandomSource & random, MemoryProvider & provider, const std::string & name, int width)
{
    MemoryProvider::Enumerators enumerators{ { "A", 0 } };
    for (const char * const each : { "B", "C" })
        enumerators.emplace_back(
            each, static_cast<int>(AnyNumber(random, std::clamp(width, 1, 31))) * (random.Chance(15) ? -1 : 1));
    return provider.EnumField(ARecord(0).Named(name).OfType("uint8"), enumerators);
}

inline void FillLayout(
    RandomSource & random, MemoryProvider & provider, CMetadataDetailStruct & layout, int depth);

inline std::uint64_t BitsOf(CMetadataDetailStruct & layout)
{
    return StructSizeInBits(layout);
}

/// A struct within a struct, and its width.
inline std::pair<const IMetadata *, int> AnInnerStruct(
    RandomSource & random, MemoryProvider & provider, const std::string & name, int depth)
{
    ARecord record = ARecord(0).Named(name);
    const bool isArray = random.Chance(60);
    CMetadata & inner = provider.StructField(isArray ? record.Array(1, 3) : record, random.Chance(50));
    auto & layout = dynamic_cast<CMetadataDetailStruct &>(*inner.Details());
    FillLayout(random, provider, layout, depth + 1);
    const int size = static_cast<int>(BitsOf(layout));
    return { &inner, size * (isArray ? 1 + static_cast<int>(random.Below(3)) : 1) };
}

inline void FillLayout(
    RandomSource & random, MemoryProvider & provider, CMetadataDetailStruct & layout, int depth)
{
    static const std::vector<int> WIDTHS{ 1, 2, 3, 5, 7, 8, 8, 9, 12, 15, 16, 16, 16, 17, 20, 24, 31, 32, 32,
        33, 40, 48, 63, 64, 65, 72, 80, 96 };
    int next = random.Chance(70) ? 0 : static_cast<int>(random.Below(20));
    for (std::size_t left = 1 + random.Below(depth == 0 ? 5 : 3); left > 0; --left) {
        const std::string name = "F" + std::to_string(left);
        int width = random.Of(WIDTHS);
        const IMetadata * record = nullptr;
        bool reachesDown = false;
        if (depth < 2 && random.Chance(20)) {
            std::tie(record, width) = AnInnerStruct(random, provider, name, depth);
        } else if (random.Chance(15)) {
            width = random.Chance(80)
                        ? (1 + static_cast<int>(random.Below(4))) * 8 * (1 + static_cast<int>(random.Below(4)))
                        : width;
            record = &ANumber(random, provider, name, width, true);
            reachesDown = !layout.IsLittleEndian();
        } else {
            record = random.Chance(15)   ? &AText(random, provider, name, width)
                     : random.Chance(20) ? &AnEnumeration(random, provider, name, std::min(width, 64))
                                         : &ANumber(random, provider, name, width, false);
            if (record->MetadataType() == METADATA_ENUM)
                width = std::min(width, 64);
            reachesDown = !layout.IsLittleEndian() && width > 16 && width <= 64;
        }
        const int align = random.Chance(60) ? 16 : random.Chance(60) ? 8 : 1;
        int position = random.Chance(15) ? static_cast<int>(random.Below(static_cast<std::size_t>(next) + 1))
                                         : (next + align - 1) / align * align;
        if (reachesDown && random.Chance(95))
            position += (width - 1) / 16 * 16;
        layout.AddField("", record, position, width);
        next = std::max(next, position + width);
    }
    if (random.Chance(20))
        layout.OrderFieldsForTargetArchitecture();
}

inline CMetadataDetailStruct & AGeneratedLayout(RandomSource & random, MemoryProvider & provider)
{
    CMetadata & key = provider.StructField(ARecord(7).Named("Key"));
    auto & layout = *new CMetadataDetailStruct(key, random.Chance(60), random.Chance(20));
    key.SetDetails(layout);
    FillLayout(random, provider, layout, 0);
    return layout;
}

inline std::string Text(CMetadataDetailStruct & layout, const std::string & indent = "")
{
    std::string text =
        indent + (layout.IsLittleEndian() ? "little" : "big") + (layout.IsOctetsInBin() ? " octets\n" : "\n");
    for (const CStructField * const field : *layout.GetStructFields()) {
        const IMetadata & record = *field->Metadata();
        text += indent + record.Name() + " @" + std::to_string(field->ElemLsbBitPos()) + " w" +
                std::to_string(field->ElemBitWidth()) + ' ' + record.InternalType() +
                (record.IsArray() ? "[] " : " ") + record.Format() + " [" + std::to_string(record.Min()) +
                ", " + std::to_string(record.Max()) + "] type " + std::to_string(record.MetadataType()) + '\n';
        if (record.MetadataType() == METADATA_STRUCT)
            text += Text(dynamic_cast<CMetadataDetailStruct &>(*record.Details()), indent + "    ");
        if (record.MetadataType() == METADATA_ENUM)
            text += indent + "    " + testing::PrintToString(*record.Details()->GetEnums()) + '\n';
    }
    return text;
}

// Values, and what comes back.

inline std::uint64_t Low(std::uint64_t value, int bits)
{
    return bits >= 64 ? value : value & ((std::uint64_t{ 1 } << std::max(bits, 0)) - 1);
}

/// A field of one of the structs, with all its items or words.
struct Leaf
{
    const CStructField * mStructField;
    std::size_t mField;       // its place among those that differ in more than places in arrays
    std::size_t mCount = 1;   // of the numbers that it is packed from
    bool mIsAllowed = true;   // whether its record allows any number
    std::vector<std::uint64_t> mValues = {};     // of one of them, negative ones as two's complement
    std::vector<std::uint64_t> mExtremes = {};   // some of these

    int Width() const { return mStructField->ElemBitWidth(); }
    const IMetadata & Record() const { return *mStructField->Metadata(); }
    bool IsText() const
    {
        return Record().MetadataType() == METADATA_SIMPLE &&
               Record().InternalType().find("string") != std::string::npos;
    }
    bool IsWide() const { return !Record().IsArray() && Width() > 64; }

    /// A last, partial word has fewer bits, and those behind a text have none.
    std::uint64_t Cut(std::uint64_t value, std::size_t item) const
    {
        const std::int64_t bits = IsText() ? std::min<std::int64_t>(8 * Record().Max(), Width()) : Width();
        return IsWide() ? Low(value, static_cast<int>(bits) - 16 * static_cast<int>(item)) : value;
    }

    /// Whether a device can't know how long a text is, as it may be longer than its field, or is of octets and shorter; or
    /// nothing is unpacked, so that nothing is packed here.
    bool HasLostLength() const
    {
        if (mCount == 0)
            return true;
        const std::int64_t held = IsWide() ? Width() / 16 * 2 : Width() / 8;
        const bool isOctets = Record().InternalType() == "octet_string";
        return IsText() && (Record().Max() > held || (isOctets && Record().Min() != held));
    }
};

/// All that the range from `first` to `last` has of interest: its ends, single bits, and numbers with most or fewest ones.
inline void AddRange(Leaf & leaf, std::uint64_t first, std::uint64_t last)
{
    if (first > last)
        return;
    std::uint64_t half = 1;
    while (half < (first ^ last) && (first ^ last) / half > 1)
        half <<= 1;
    const std::uint64_t ahead = first & ~(half * 2 - 1);
    leaf.mExtremes.insert(leaf.mExtremes.end(), { first, last });
    if (first != last)
        leaf.mExtremes.insert(leaf.mExtremes.end(), { ahead | (half - 1), ahead | half });
    leaf.mValues = leaf.mExtremes;
    for (int bit = 0; bit < 64; ++bit)
        for (const std::uint64_t value : { std::uint64_t{ 1 } << bit, ~(std::uint64_t{ 1 } << bit),
                 ahead | std::uint64_t{ 1 } << bit, (ahead | (half - 1)) & ~(std::uint64_t{ 1 } << bit) })
            if (value >= first && value <= last)
                leaf.mValues.push_back(value);
}

inline std::string TypeOfNumber(const CStructField & field)
{
    const std::string type = field.Metadata()->InternalType();
    const std::string format = field.Metadata()->Format();
    return CStructCodec::BitsForInternalType(type) != 0 || field.Metadata()->IsArray()
               ? type
               : CStructCodec::GetIntTypeFromBitWidth(std::to_string(field.ElemBitWidth()),
                     format == "unsigned_decimal" || format == "hexadecimal");
}

inline void AddNumbers(Leaf & leaf)
{
    const IMetadata & record = leaf.Record();
    const std::string type = TypeOfNumber(*leaf.mStructField);
    const int bits = static_cast<int>(CStructCodec::BitsForInternalType(type));
    if (record.InternalType() == "uint64")
        return AddRange(
            leaf, static_cast<std::uint64_t>(record.Min()), static_cast<std::uint64_t>(record.Max()));
    const bool isSigned = type.empty() || type.front() == 'i';
    const std::int64_t most = static_cast<std::int64_t>(Low(INT64_MAX, bits == 0  ? 63
                                                                       : isSigned ? bits - 1
                                                                                  : bits));
    const std::int64_t least = isSigned ? -most - 1 : 0;
    const std::int64_t min = std::max(record.Min(), least);
    const std::int64_t max = std::min(record.Max(), bits == 64 && !isSigned ? INT64_MAX : most);
    if (min <= max && max >= 0)
        AddRange(
            leaf, static_cast<std::uint64_t>(std::max<std::int64_t>(min, 0)), static_cast<std::uint64_t>(max));
    if (min <= max && min < 0)
        AddRange(
            leaf, static_cast<std::uint64_t>(min), static_cast<std::uint64_t>(std::min<std::int64_t>(max, -1)));
}

inline Leaf LeafOf(const CStructField & field, std::size_t place)
{
    Leaf leaf{ &field, place };
    const IMetadata & record = leaf.Record();
    const int width = field.ElemBitWidth();
    const int bits = static_cast<int>(CStructCodec::BitsForInternalType(record.InternalType()));
    if (record.IsArray())
        leaf.mCount = bits != 0 ? static_cast<std::size_t>((width - 1 + bits) / bits) : 0;
    else if (leaf.IsWide())
        leaf.mCount = static_cast<std::size_t>(leaf.IsText() ? width / 16 : (width + 15) / 16);
    if (record.MetadataType() == METADATA_ENUM)
        for (const auto & [name, number] : *record.Details()->GetEnums()) {
            leaf.mExtremes.push_back(static_cast<std::uint64_t>(number));
            leaf.mValues.push_back(static_cast<std::uint64_t>(number));
        }
    else if (leaf.IsWide())
        AddRange(leaf, 0, 0xFFFF);
    else if (leaf.IsText())
        AddRange(leaf, 0, Low(UINT64_MAX, 8 * static_cast<int>(std::min<std::int64_t>(record.Max(), 8))));
    else
        AddNumbers(leaf);
    leaf.mIsAllowed = !leaf.mValues.empty();
    if (!leaf.mIsAllowed)
        leaf.mValues = leaf.mExtremes = { 0 };
    return leaf;
}

inline std::size_t AddLeaves(CMetadataDetailStruct & layout, std::size_t place, std::vector<Leaf> & leaves)
{
    for (const CStructField * const field : *layout.GetStructFields()) {
        if (field->Metadata()->MetadataType() != METADATA_STRUCT) {
            leaves.push_back(LeafOf(*field, place++));
            continue;
        }
        auto & inner = dynamic_cast<CMetadataDetailStruct &>(*field->Metadata()->Details());
        const auto count = field->Metadata()->IsArray()
                               ? static_cast<std::uint64_t>(field->ElemBitWidth()) / BitsOf(inner)
                               : 1;
        std::size_t behind = place;
        for (std::uint64_t instance = 0; instance < count; ++instance)
            behind = AddLeaves(inner, place, leaves);
        place = behind;
    }
    return place;
}

inline std::vector<Leaf> LeavesOf(CMetadataDetailStruct & layout)
{
    std::vector<Leaf> leaves;
    AddLeaves(layout, 0, leaves);
    return leaves;
}

using LeafNumbers = std::vector<std::vector<std::uint64_t>>;   // by leaf

inline IPayload * NewPayload(std::uint64_t value, int bits)
{
    // A field of 16 bits takes no wider payload, and bits above a wider field end up in the fields beside it.
    if (bits == 16)
        return new CUint16Payload(static_cast<std::uint16_t>(value));
    return new CUint64Payload(Low(value, bits));
}

inline IPayload * NewLeaf(const Leaf & leaf, const std::vector<std::uint64_t> & numbers)
{
    if (!leaf.Record().IsArray() && !leaf.IsWide())
        return NewPayload(numbers.at(0), leaf.Width());
    const int share = leaf.IsWide() ? 16 : leaf.Width() / std::max(static_cast<int>(numbers.size()), 1);
    auto * const list = new CComplexPayload(PAYLOAD_COMPLEX);
    for (const std::uint64_t number : numbers)
        list->AddField(NewPayload(number, share));
    return list;
}

/// The codec's tree of one struct; `next` is its first leaf, and then the one behind it.
inline std::unique_ptr<CComplexPayload> TreeOf(CMetadataDetailStruct & layout, const std::vector<Leaf> & leaves,
    const LeafNumbers & numbers, std::size_t & next,
    IPayload * (*newLeaf)(const Leaf &, const std::vector<std::uint64_t> &) = &NewLeaf)
{
    auto tree = std::make_unique<CComplexPayload>(PAYLOAD_COMPLEX);
    for (const CStructField * const field : *layout.GetStructFields()) {
        const IMetadata & record = *field->Metadata();
        if (record.MetadataType() != METADATA_STRUCT) {
            tree->AddField(newLeaf(leaves[next], numbers[next]));
            ++next;
            continue;
        }
        auto & inner = dynamic_cast<CMetadataDetailStruct &>(*record.Details());
        if (!record.IsArray()) {
            tree->AddField(TreeOf(inner, leaves, numbers, next, newLeaf).release());
            continue;
        }
        auto * const instances = new CComplexPayload(PAYLOAD_COMPLEX);
        tree->AddField(instances);
        for (auto left = static_cast<std::uint64_t>(field->ElemBitWidth()) / BitsOf(inner); left > 0; --left)
            instances->AddField(TreeOf(inner, leaves, numbers, next, newLeaf).release());
    }
    return tree;
}

inline std::uint64_t NumberOf(IPayload & payload)
{
    std::uint64_t bits = 0;
    const auto size = static_cast<int>(8 * payload.WriteToMem(&bits, sizeof bits));
    const bool isSigned = payload.Type() < PAYLOAD_UINT8 || payload.Type() == PAYLOAD_ENUM;
    return isSigned && size < 64 && (bits >> (size - 1) & 1) != 0 ? bits | ~std::uint64_t{ 0 } << size : bits;
}

inline void AddNumbersOf(IPayload & payload, const Leaf & leaf, LeafNumbers & numbers)
{
    numbers.emplace_back();
    auto * const list = dynamic_cast<CComplexPayload *>(&payload);
    if (list == nullptr)
        return numbers.back().push_back(
            leaf.IsText() ? Low(NumberOf(payload), leaf.Width() / 8 * 8) : NumberOf(payload));
    const std::string type = leaf.Record().InternalType();
    const auto bits = static_cast<int>(CStructCodec::BitsForInternalType(type));
    for (IPayload * const item : list->GetFields()) {
        const std::uint64_t number = NumberOf(*item);
        // Items are unpacked as unsigned numbers, whose sign their type tells.
        const bool isNegative =
            leaf.Record().IsArray() && type.front() == 'i' && bits < 64 && (number >> (bits - 1) & 1) != 0;
        numbers.back().push_back(isNegative ? number | ~std::uint64_t{ 0 } << bits : number);
    }
}

inline void AddAllNumbersOf(CComplexPayload & tree, CMetadataDetailStruct & layout,
    const std::vector<Leaf> & leaves, LeafNumbers & numbers)
{
    std::size_t place = 0;
    for (const CStructField * const field : *layout.GetStructFields()) {
        IPayload & payload = *tree.GetFields().at(place++);
        if (field->Metadata()->MetadataType() != METADATA_STRUCT) {
            AddNumbersOf(payload, leaves[numbers.size()], numbers);
            continue;
        }
        auto & inner = dynamic_cast<CMetadataDetailStruct &>(*field->Metadata()->Details());
        auto & list = dynamic_cast<CComplexPayload &>(payload);
        if (!field->Metadata()->IsArray())
            AddAllNumbersOf(list, inner, leaves, numbers);
        else
            for (IPayload * const instance : list.GetFields())
                AddAllNumbersOf(dynamic_cast<CComplexPayload &>(*instance), inner, leaves, numbers);
    }
}

/// Gives back what a codec writes, a word at a time or all octets.
class CWordBox : public IConfigWriter, public IElementFactorySource
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
        if (auto * const octets = dynamic_cast<CStringPayload *>(&payload))
            mOctets = octets->GetValue();
        else
            mWords.push_back(dynamic_cast<CUint16Payload &>(payload).GetValue());
    }

    bool NextInt(const std::string &, std::uint64_t & value, std::uint16_t *) override
    {
        value = mWords.at(mNext++);
        return true;
    }
    bool NextString(std::string & value, std::uint16_t *) override
    {
        value = mOctets;
        return true;
    }
    bool NextEnum(std::uint64_t &, std::uint16_t *) override { return false; }

private:
    std::vector<std::uint16_t> mWords;
    std::string mOctets;
    std::size_t mNext = 0;
};

inline LeafNumbers ThroughTheCodec(
    CMetadataDetailStruct & layout, const std::vector<Leaf> & leaves, const LeafNumbers & numbers)
{
    std::size_t next = 0;
    const auto tree = TreeOf(layout, leaves, numbers, next);
    CStructCodec codec;
    CWordBox box;
    CZynContext context;
    codec.Encode(*tree, layout);
    codec.Write(box, context);
    CComplexPayload back(PAYLOAD_COMPLEX);
    bool more = false;
    EXPECT_TRUE(codec.Decode(box, layout, &back, more));
    LeafNumbers unpacked;
    AddAllNumbersOf(back, layout, leaves, unpacked);
    return unpacked;
}

}   // namespace VrexZynConfigTools::support

#endif
