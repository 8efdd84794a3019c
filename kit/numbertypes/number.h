/// A whole number of signed or unsigned 64 bits, and what the types of numbers say of one.
///
///     const NumberType & type = *FindNumberType("int8");
///     RangeOf(type).Text();                        // -128 to 127
///     RangeOf(type).Contains(CNumber(200));        // false
///     NumberOf(type, VariableOf(type, 200)).Text();   // -56: the low 8 bits, read as the type does

#ifndef KIT_NUMBERTYPES_NUMBER_H
#define KIT_NUMBERTYPES_NUMBER_H

#include <configtools/numbertypes.h>

#include <cstdint>
#include <string>

namespace kit::numbertypes {

/// Any value that a type of numbers has. Compares as a number: -1 is less than 2^64 - 1.
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

    /// The number in 64 bits, signed or unsigned: of a negative one its two's complement.
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
    std::uint64_t mBits = 0;
};

/// From `mMin` to `mMax`, both included.
struct NumberRange
{
    CNumber mMin;
    CNumber mMax;

    constexpr bool Contains(const CNumber & number) const { return !(number < mMin) && !(number > mMax); }

    /// "0 to 255".
    std::string Text() const { return mMin.Text() + " to " + mMax.Text(); }
};

constexpr NumberRange RangeOf(const VrexZynConfigTools::NumberType & type)
{
    return { CNumber(type.mMin), CNumber::Unsigned(type.mMax) };
}

/// The low bits of `bits` that the type has, in the member of the type.
VrexZynConfigTools::NumericVariable VariableOf(const VrexZynConfigTools::NumberType & type, std::uint64_t bits);

/// The number in the member of the type.
CNumber NumberOf(
    const VrexZynConfigTools::NumberType & type, const VrexZynConfigTools::NumericVariable & variable);

/// The number in memory of `Bytes()` bytes, in the order of the machine, such as the raw data of a payload of the type.
CNumber NumberIn(const VrexZynConfigTools::NumberType & type, const void * memory);

}   // namespace kit::numbertypes

#endif
