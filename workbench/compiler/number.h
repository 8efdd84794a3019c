/// A whole number of signed or unsigned 64 bits.

#ifndef WORKBENCH_COMPILER_NUMBER_H
#define WORKBENCH_COMPILER_NUMBER_H

#include <cstdint>
#include <string>

namespace workbench::compiler {

class CNumber
{
public:
    constexpr CNumber() = default;

    // NOLINTNEXTLINE(google-explicit-constructor): implicit, because every such number is one of these
    constexpr CNumber(std::int64_t value)
        : mIsNegative(value < 0)
        , mBits(static_cast<std::uint64_t>(value))
    {}

    static constexpr CNumber Unsigned(std::uint64_t value)
    {
        CNumber number;
        number.mBits = value;
        return number;
    }

    /// The number as it is kept in 64 bits, signed or unsigned.
    constexpr std::uint64_t Bits() const { return mBits; }
    constexpr std::int64_t SignedBits() const { return static_cast<std::int64_t>(mBits); }

    std::string Text() const { return mIsNegative ? std::to_string(SignedBits()) : std::to_string(mBits); }

    constexpr bool operator==(const CNumber &) const = default;

    constexpr bool operator<(const CNumber & other) const
    {
        return mIsNegative != other.mIsNegative ? mIsNegative : mBits < other.mBits;
    }
    constexpr bool operator>(const CNumber & other) const { return other < *this; }

private:
    bool mIsNegative = false;
    std::uint64_t mBits = 0;   // of a negative number its two's complement
};

/// From `mMin` to `mMax`, both included.
struct NumberRange
{
    CNumber mMin;
    CNumber mMax;

    constexpr bool Holds(const CNumber & number) const { return !(number < mMin) && !(number > mMax); }
    std::string Text() const { return mMin.Text() + " to " + mMax.Text(); }
};

}   // namespace workbench::compiler

#endif
