#include "fitting.h"

#include "scalars.h"

#include <configtools/metadata.h>

#include <algorithm>

namespace kit::layout {

using namespace VrexZynConfigTools;

namespace {

constexpr unsigned WORD_BITS = 16;

// The lowest bits of a value, in a class that the codec packs into a field of so many.
IPayload * NewFitted(std::uint64_t value, unsigned bits)
{
    if (bits == WORD_BITS)
        return new CUint16Payload(static_cast<std::uint16_t>(value));
    return new CUint64Payload(LowBits(value, bits));
}

// A number, an enumerator or a text as bits; 0 for anything else.
std::uint64_t BitsOf(IPayload & value)
{
    if (const auto number = ValueOf(value))
        return number->mBits;
    const auto octets = OctetsOf(value);
    return octets ? LowestFirst(octets->mText) : 0;
}

void FitStruct(IPayload & tree, const std::vector<StructEntry> & entries, CComplexPayload & to);

void FitArray(const std::vector<IPayload *> & items, const StructEntry & entry, CComplexPayload & to)
{
    const std::size_t count = std::max<std::size_t>(items.size(), entry.mItems);
    for (std::size_t place = 0; place < count; ++place)
        to.AddField(NewFitted(
            place < items.size() ? BitsOf(*items[place]) : 0, static_cast<unsigned>(entry.mWidth / count)));
}

void FitWords(IPayload & value, const StructEntry & entry, CComplexPayload & to)
{
    unsigned left = entry.mWidth;   // a last, partial word has no bits of the fields beside it
    for (IPayload * const word : ItemsOf(&value)) {
        to.AddField(NewFitted(LowBits(BitsOf(*word), std::min(left, WORD_BITS)), WORD_BITS));
        left -= std::min(left, WORD_BITS);
    }
    auto octets = OctetsOf(value);
    if (!octets)
        return;
    octets->mText.resize(BytesHeld(entry), '\0');
    for (std::size_t place = 0; place < octets->mText.size(); place += 2)
        to.AddField(NewFitted(LowestFirst(octets->mText.substr(place, 2)), WORD_BITS));
}

void FitField(IPayload & value, const StructEntry & entry, CComplexPayload & to)
{
    const std::vector<IPayload *> & items = ItemsOf(&value);
    if (entry.mKind == StructEntryKind::NUMBER || entry.mKind == StructEntryKind::ENUMERATOR)
        return to.AddField(NewFitted(BitsOf(value), entry.mWidth));
    CComplexPayload & list = AddList(to, nullptr);
    if (entry.mKind == StructEntryKind::ARRAY)
        FitArray(items, entry, list);
    else if (entry.mKind == StructEntryKind::WORDS)
        FitWords(value, entry, list);
    else if (entry.mKind == StructEntryKind::STRUCT)
        FitStruct(value, entry.mParts, list);
    else
        for (std::size_t place = 0; place < items.size(); ++place)
            FitStruct(*items[place], entry.mParts.at(place).mParts, AddList(list, nullptr));
}

// Values and entries are in step: `CodecTree` makes the one, and the library the other, of the same fields.
void FitStruct(IPayload & tree, const std::vector<StructEntry> & entries, CComplexPayload & to)
{
    const std::vector<IPayload *> & values = ItemsOf(&tree);
    for (std::size_t place = 0; place < std::min(values.size(), entries.size()); ++place)
        FitField(*values[place], entries[place], to);
}

}   // namespace

const std::vector<IPayload *> & ItemsOf(IPayload * value)
{
    static const std::vector<IPayload *> NONE;
    auto * const list = dynamic_cast<CComplexPayload *>(value);
    return list != nullptr ? list->GetFields() : NONE;
}

std::unique_ptr<CComplexPayload> FittedTree(CComplexPayload & tree, const std::vector<StructEntry> & entries)
{
    auto fitted = std::make_unique<CComplexPayload>(PAYLOAD_COMPLEX);
    FitStruct(tree, entries, *fitted);
    return fitted;
}

}   // namespace kit::layout
