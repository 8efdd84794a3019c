#include "valueset.h"

#include "scalars.h"

#include <configtools/keywords.h>
#include <configtools/metadata.h>
#include <configtools/structlayout.h>

#include <algorithm>

namespace kit::layout {

using namespace VrexZynConfigTools;

namespace {

// The smallest number from `first` on that has these bits where the mask has ones; nothing if there is none.
std::optional<std::uint64_t> FirstMatch(std::uint64_t first, std::uint64_t mask, std::uint64_t bits)
{
    if ((first & mask) == bits)
        return first;
    // A larger number has a 1 where `first` has a 0, and the same bits above; the lower that place, the smaller it is.
    for (unsigned place = 0; place < 64; ++place) {
        const std::uint64_t one = std::uint64_t{ 1 } << place;
        const std::uint64_t above = place == 63 ? 0 : ~std::uint64_t{ 0 } << (place + 1);
        const bool isAllowed = (first & one) == 0 && ((mask & one) == 0 || (bits & one) != 0);
        if (isAllowed && (first & mask & above) == (bits & above))
            return (first & above) | one | (bits & (one - 1));
    }
    return std::nullopt;
}

// The range of a number, as far as its type holds it.
CValueSet NumbersOf(const IMetadata & record, const NumberForm & type)
{
    CValueSet values;
    const auto min = static_cast<std::uint64_t>(record.Min());
    const auto max = static_cast<std::uint64_t>(record.Max());
    if (record.InternalType() == keywords::TYPE_UINT64) {
        values.Add(min, max);
        return values;
    }
    const std::uint64_t highest = LowBits(~std::uint64_t{ 0 }, type.mIsSigned ? type.mBits - 1 : type.mBits);
    if (record.Max() >= 0)
        values.Add(record.Min() > 0 ? min : 0, std::min(max, highest));
    if (type.mIsSigned && record.Min() < 0)
        values.Add(std::max(min, ~highest), record.Max() < 0 ? max : ~std::uint64_t{ 0 });
    return values;
}

}   // namespace

void CValueSet::Add(std::uint64_t first, std::uint64_t last)
{
    if (first > last)
        return;
    mRanges.push_back({ first, last });
    for (unsigned bit = 0; bit < 64; ++bit) {
        const std::uint64_t one = std::uint64_t{ 1 } << bit;
        const auto with = FirstMatch(first, one, one);
        const auto without = FirstMatch(first, one, 0);
        mOnes |= with && *with <= last ? one : 0;
        mZeros |= without && *without <= last ? one : 0;
    }
}

std::optional<std::uint64_t> CValueSet::Find(std::uint64_t mask, std::uint64_t bits) const
{
    for (const Range & range : mRanges)
        if (const auto found = FirstMatch(range.mFirst, mask, bits); found && *found <= range.mLast)
            return found;
    return std::nullopt;
}

bool CValueSet::CanDiffer(unsigned one, unsigned other) const
{
    const std::uint64_t mask = std::uint64_t{ 1 } << one | std::uint64_t{ 1 } << other;
    return one != other && (Find(mask, std::uint64_t{ 1 } << one) || Find(mask, std::uint64_t{ 1 } << other));
}

std::uint64_t CValueSet::Smallest() const
{
    std::int64_t smallest = mRanges.empty() ? 0 : static_cast<std::int64_t>(mRanges.front().mFirst);
    for (const Range & range : mRanges)
        smallest = std::min(smallest, static_cast<std::int64_t>(range.mFirst));
    return static_cast<std::uint64_t>(smallest);
}

std::uint64_t CValueSet::Largest() const
{
    // Above the largest signed number there are negative ones or those of an unsigned type, which has one range alone.
    if (mRanges.size() == 1)
        return mRanges.front().mLast;
    std::int64_t largest = mRanges.empty() ? 0 : static_cast<std::int64_t>(mRanges.front().mLast);
    for (const Range & range : mRanges)
        largest = std::max(largest, static_cast<std::int64_t>(range.mLast));
    return static_cast<std::uint64_t>(largest);
}

CValueSet CValueSet::OfBits(unsigned bits)
{
    CValueSet values;
    values.Add(0, LowBits(~std::uint64_t{ 0 }, bits));
    return values;
}

CValueSet ValuesOf(const StructEntry & entry)
{
    const IMetadata & record = *entry.mRecord;
    if (record.MetadataType() == METADATA_ENUM) {
        CValueSet values;
        if (const auto * const numbers = record.Details() != nullptr ? record.Details()->GetEnums() : nullptr)
            for (const auto & [name, number] : *numbers)
                values.Add(static_cast<std::uint64_t>(number), static_cast<std::uint64_t>(number));
        return values;
    }
    if (IsTextual(record))
        return CValueSet::OfBits(8 * static_cast<unsigned>(std::min<std::uint64_t>(LongestText(record), 8)));
    return NumbersOf(record, record.IsArray() ? FormOfItems(record) : FormOf(entry.mType));
}

}   // namespace kit::layout
