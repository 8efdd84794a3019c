#include <kit/numbertypes/number.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

namespace kit::numbertypes {
namespace {

using namespace VrexZynConfigTools;

constexpr std::uint64_t MAX_UINT64 = std::numeric_limits<std::uint64_t>::max();
constexpr std::int64_t MIN_INT64 = std::numeric_limits<std::int64_t>::min();

TEST(CNumber, compares_across_signs)
{
    EXPECT_LT(CNumber(-1), CNumber(0));
    EXPECT_LT(CNumber(-1), CNumber::Unsigned(MAX_UINT64));
    EXPECT_LT(CNumber(MIN_INT64), CNumber(-1));
    EXPECT_GT(CNumber::Unsigned(MAX_UINT64), CNumber(std::numeric_limits<std::int64_t>::max()));
    EXPECT_EQ(CNumber(5), CNumber::Unsigned(5));
    EXPECT_FALSE(CNumber(-1) == CNumber::Unsigned(MAX_UINT64));
}

TEST(CNumber, prints_all_of_its_range)
{
    EXPECT_EQ(CNumber(MIN_INT64).Text(), "-9223372036854775808");
    EXPECT_EQ(CNumber::Unsigned(MAX_UINT64).Text(), "18446744073709551615");
    EXPECT_EQ(CNumber(-1).Bits(), MAX_UINT64);
}

TEST(RangeOf, contains_the_limits_of_each_type_and_nothing_beyond)
{
    for (const NumberType & type : NUMBER_TYPES) {
        const NumberRange range = RangeOf(type);
        EXPECT_TRUE(range.Contains(CNumber(type.mMin))) << type.mKeyword;
        EXPECT_TRUE(range.Contains(CNumber::Unsigned(type.mMax))) << type.mKeyword;
        EXPECT_TRUE(type.mMin == MIN_INT64 || !range.Contains(CNumber(type.mMin - 1))) << type.mKeyword;
        EXPECT_TRUE(type.mMax == MAX_UINT64 || !range.Contains(CNumber::Unsigned(type.mMax + 1)))
            << type.mKeyword;
    }
    EXPECT_EQ(RangeOf(NUMBER_TYPES[NUMERIC_INT8]).Text(), "-128 to 127");
    EXPECT_EQ(RangeOf(NUMBER_TYPES[NUMERIC_UINT64]).Text(), "0 to 18446744073709551615");
}

TEST(VariableOf, takes_the_low_bits_and_leaves_the_others_zero)
{
    const NumericVariable variable = VariableOf(NUMBER_TYPES[NUMERIC_INT8], 0x1C8);
    EXPECT_EQ(variable.mInt8, -56);
    EXPECT_EQ(variable.mUint64, 0xC8U);
    EXPECT_EQ(VariableOf(NUMBER_TYPES[NUMERIC_UINT16], 0x12345).mUint64, 0x2345U);
}

TEST(NumberOf, reads_each_type_with_its_sign)
{
    for (const NumberType & type : NUMBER_TYPES) {
        EXPECT_EQ(NumberOf(type, VariableOf(type, static_cast<std::uint64_t>(type.mMin))), CNumber(type.mMin));
        EXPECT_EQ(NumberOf(type, VariableOf(type, type.mMax)), CNumber::Unsigned(type.mMax)) << type.mKeyword;
        EXPECT_EQ(NumberOf(type, VariableOf(type, MAX_UINT64)),
            type.mIsSigned ? CNumber(-1) : CNumber::Unsigned(type.mMax));
    }
}

}   // namespace
}   // namespace kit::numbertypes
