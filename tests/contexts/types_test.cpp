#include <configtools/types.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

namespace VrexZynConfigTools {
namespace {

template <typename EnumT, std::size_t size>
void ExpectValuesFrom(int first, const EnumT (&enumerators)[size])
{
    for (const EnumT enumerator : enumerators)
        EXPECT_EQ(int{ enumerator }, first++);
}

TEST(PayloadTypeEnum, has_the_values_of_the_contract)
{
    ExpectValuesFrom(
        0, { PAYLOAD_INT8, PAYLOAD_INT16, PAYLOAD_INT32, PAYLOAD_INT64, PAYLOAD_UINT8, PAYLOAD_UINT16,
               PAYLOAD_UINT32, PAYLOAD_UINT64, PAYLOAD_STRING, PAYLOAD_COMPLEX, PAYLOAD_ENUM, PAYLOAD_RAW });
    EXPECT_EQ(PAYLOAD_RAW, 11);
}

TEST(NumericTypeEnum, has_the_values_of_the_contract)
{
    ExpectValuesFrom(0, { NUMERIC_INT8, NUMERIC_INT16, NUMERIC_INT32, NUMERIC_INT64, NUMERIC_UINT8,
                            NUMERIC_UINT16, NUMERIC_UINT32, NUMERIC_UINT64, NUMERIC_NONE });
    EXPECT_EQ(NUMERIC_NONE, 8);
}

TEST(MetadataTypeEnum, has_the_values_of_the_contract)
{
    ExpectValuesFrom(0, { METADATA_SIMPLE, METADATA_ENUM, METADATA_STRUCT, METADATA_NONE });
    EXPECT_EQ(METADATA_NONE, 3);
}

TEST(SubSystemTypeEnum, has_the_values_of_the_contract)
{
    ExpectValuesFrom(-1, { SUBSYSTEM_UNKNOWN, SUBSYSTEM_CURATOR, SUBSYSTEM_BT, SUBSYSTEM_WLAN, SUBSYSTEM_AUDIO,
                             SUBSYSTEM_GNSS, SUBSYSTEM_NFC, SUBSYSTEM_JANITOR, SUBSYSTEM_APP, SUBSYSTEM_BLE,
                             SUBSYSTEM_PSAPPS, SUBSYSTEM_PSAUDIO });
    EXPECT_EQ(SUBSYSTEM_PSAUDIO, 10);
    EXPECT_TRUE(std::is_signed_v<std::underlying_type_t<SubSystemTypeEnum>>);
}

TEST(NumericVariable, is_8_bytes_and_all_zero_at_first)
{
    NumericVariable variable;
    std::uint64_t bytes = 1;
    static_assert(sizeof variable == sizeof bytes);
    std::memcpy(&bytes, &variable, sizeof bytes);
    EXPECT_EQ(bytes, 0U);
}

TEST(NumericVariable, keeps_the_high_bytes_zero_also_for_a_negative_number)
{
    NumericVariable variable{};
    variable.mInt16 = -1;
    std::uint64_t bytes = 0;
    std::memcpy(&bytes, &variable, sizeof bytes);
    EXPECT_EQ(bytes, 0xFFFFU);
}

TEST(NumericVariable, has_a_member_of_each_numeric_type)
{
    EXPECT_TRUE((std::is_same_v<decltype(NumericVariable::mInt8), std::int8_t>));
    EXPECT_TRUE((std::is_same_v<decltype(NumericVariable::mInt16), std::int16_t>));
    EXPECT_TRUE((std::is_same_v<decltype(NumericVariable::mInt32), std::int32_t>));
    EXPECT_TRUE((std::is_same_v<decltype(NumericVariable::mInt64), std::int64_t>));
    EXPECT_TRUE((std::is_same_v<decltype(NumericVariable::mUint8), std::uint8_t>));
    EXPECT_TRUE((std::is_same_v<decltype(NumericVariable::mUint16), std::uint16_t>));
    EXPECT_TRUE((std::is_same_v<decltype(NumericVariable::mUint32), std::uint32_t>));
    EXPECT_TRUE((std::is_same_v<decltype(NumericVariable::mUint64), std::uint64_t>));
}

}   // namespace
}   // namespace VrexZynConfigTools
