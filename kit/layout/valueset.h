/// The numbers that a field may hold, and questions about single bits of them.

#ifndef KIT_LAYOUT_VALUESET_H
#define KIT_LAYOUT_VALUESET_H

#include <cstdint>
#include <optional>
#include <vector>

namespace VrexZynConfigTools {
struct StructEntry;
}

namespace kit::layout {

/// Whole numbers as 64 bits, negative ones as two's complement.
class CValueSet
{
public:
    /// All numbers of so many bits.
    static CValueSet OfBits(unsigned bits);

    /// Both ends belong to it; nothing is added if `first` is above `last`.
    void Add(std::uint64_t first, std::uint64_t last);

    /// One that has these bits where the mask has ones; nothing if there is none.
    std::optional<std::uint64_t> Find(std::uint64_t mask, std::uint64_t bits) const;

    /// Which bits are 1 in one of the numbers at least, and which are 0 in one at least.
    std::uint64_t Ones() const { return mOnes; }
    std::uint64_t Zeros() const { return mZeros; }

    /// One in which the two bits differ.
    bool CanDiffer(unsigned one, unsigned other) const;

    bool IsEmpty() const { return mRanges.empty(); }

    /// Of an empty set 0.
    std::uint64_t Smallest() const;
    std::uint64_t Largest() const;

private:
    struct Range
    {
        std::uint64_t mFirst;
        std::uint64_t mLast;
    };

    std::vector<Range> mRanges;
    std::uint64_t mOnes = 0;
    std::uint64_t mZeros = 0;
};

/// What the record of a number, an enumerator or an array's item allows it: the enumerators, or the range as far as the
/// type holds it, or the bytes of the longest text as one number.
CValueSet ValuesOf(const VrexZynConfigTools::StructEntry & entry);

}   // namespace kit::layout

#endif
