#include <configtools/framework/coreclasses/subsystemorder.h>

#include <support/debug_capture.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace VrexZynConfigTools {
namespace {

TEST(SubsysToInt, is_the_type_above_the_layer)
{
    EXPECT_EQ(SubsysToInt("x| |2|3"), 0x02000003U);
    EXPECT_EQ(SubsysToInt("x| |10|15"), 0x0A00000FU);
    EXPECT_EQ(SubsysToInt("| |0|0"), 0U);
}

TEST(SubsysToInt, takes_a_blank_for_zero)
{
    EXPECT_EQ(SubsysToInt("x| |2| "), 0x02000000U);
    EXPECT_EQ(SubsysToInt(" | | | "), 0U);
}

TEST(SubsysToInt, takes_what_can_be_read_of_a_field)
{
    EXPECT_EQ(SubsysToInt("x| |2a|3b"), 0x02000003U);
    EXPECT_EQ(SubsysToInt("x| |0x2|010"), 0x02000008U);
    EXPECT_EQ(SubsysToInt("x| |zz|3"), 3U);
}

TEST(SubsysToInt, counts_unsigned_with_32_bits)
{
    EXPECT_EQ(SubsysToInt("x| |-1|0"), 0xFF000000U);
    EXPECT_EQ(SubsysToInt("x| |1|-1"), 0x00FFFFFFU);
    EXPECT_EQ(SubsysToInt("x| |257|0"), 0x01000000U);
    EXPECT_EQ(SubsysToInt("x| |0|99999999999"), 0x7FFFFFFFU);
}

TEST(SubsysToInt, takes_several_separators_in_a_row_for_one)
{
    EXPECT_EQ(SubsysToInt("x|| |||2||3|"), 0x02000003U);
    EXPECT_EQ(SubsysToInt("|x| |2|3"), 0x02000003U);
}

TEST(SubsysToInt, serves_keys_of_six_fields)
{
    EXPECT_EQ(SubsysToInt("x| |2|3|skipped|4"), (((2U << 4) + 3U) << 20) + (4U << 4));
    EXPECT_EQ(SubsysToInt("x| |1|15| |65535"), 0x01FFFFF0U);
    EXPECT_EQ(SubsysToInt("x| |1|15| |65536"), 0x02000000U);
}

TEST(SubsysToInt, counts_a_missing_field_as_zero)
{
    EXPECT_EQ(SubsysToInt(""), 0U);
    EXPECT_EQ(SubsysToInt("|"), 0U);
    EXPECT_EQ(SubsysToInt("x| "), 0U);
    EXPECT_EQ(SubsysToInt("x| |2"), 0x02000000U);
    EXPECT_EQ(SubsysToInt("x| |2|3|4"), 0x02300000U);
    EXPECT_EQ(SubsysToInt("x| |2|3|4|5|6|7"), 0x02300050U);
    EXPECT_EQ(SubsysToInt(std::string(100000, '|')), 0U);
}

TEST(SubsystemComparer, orders_by_type_first)
{
    EXPECT_TRUE(SubsystemComparer("x| |1|15", "x| |2|1"));
    EXPECT_FALSE(SubsystemComparer("x| |2|1", "x| |1|15"));
}

TEST(SubsystemComparer, orders_by_layer_within_a_type)
{
    EXPECT_TRUE(SubsystemComparer("x| |2|9", "x| |2|10"));
    EXPECT_FALSE(SubsystemComparer("x| |2|10", "x| |2|9"));
    EXPECT_FALSE(SubsystemComparer("x| |2|9", "x| |2|9"));
}

TEST(SubsystemComparer, does_not_look_at_the_chip)
{
    EXPECT_FALSE(SubsystemComparer("a| |2|9", "b| |2|9"));
    EXPECT_FALSE(SubsystemComparer("b| |2|9", "a| |2|9"));
}

TEST(SubsystemComparer, compares_unsigned)
{
    EXPECT_TRUE(SubsystemComparer("x| |10|1", "x| |-1|1"));
}

TEST(SubsystemComparer, is_an_order_that_sorts)
{
    std::vector<std::string> keys = { "x| |10|1", "x| |2|2", "x| | | ", "x| |2|10", "x| |2|1" };
    std::sort(keys.begin(), keys.end(), SubsystemComparer);
    EXPECT_THAT(keys, testing::ElementsAre("x| | | ", "x| |2|1", "x| |2|2", "x| |2|10", "x| |10|1"));
}

TEST(SubsysToInt, traces_its_result)
{
    support::DebugCapture debug;
    SubsysToInt("x| |2|3");
    EXPECT_EQ(debug.Count("<- VrexZynConfigTools::SubsysToInt [returning 33554435]"), 1U);
}

}   // namespace
}   // namespace VrexZynConfigTools
