#include <kit/nearestname/nearestname.h>

#include <gtest/gtest.h>

#include <string>

namespace kit::nearestname {
namespace {

TEST(Nearest, takes_one_insertion_removal_change_or_swap_in_a_short_name)
{
    for (const char * word : { "uint8", "int8", "uiint8", "uinn8", "unit8", "UINT8" })
        EXPECT_EQ(Nearest(word, { "string", "uint8" }), "uint8") << word;
    EXPECT_EQ(Nearest("ab", { "b", "abcd" }), "b");
}

TEST(Nearest, allows_a_third_of_the_letters_to_differ)
{
    EXPECT_EQ(Nearest("abcdefghi", { "abcdefxyz" }), "abcdefxyz");
    EXPECT_EQ(Nearest("abcdefghi", { "abcdewxyz" }), "");
    EXPECT_EQ(Nearest("abcde", { "abcxy" }), "");
}

TEST(Nearest, prefers_the_fewest_differences_and_then_the_first)
{
    EXPECT_EQ(Nearest("abcdef", { "abcdxy", "abcdex" }), "abcdex");
    EXPECT_EQ(Nearest("abcdef", { "abcdex", "abcdey" }), "abcdex");
}

TEST(Nearest, is_empty_without_a_name_or_for_a_very_long_one)
{
    EXPECT_EQ(Nearest("", { "a" }), "");
    EXPECT_EQ(Nearest("a", {}), "");
    EXPECT_EQ(Nearest(std::string(64, 'a'), { std::string(63, 'a') }), std::string(63, 'a'));
    EXPECT_EQ(Nearest(std::string(65, 'a'), { std::string(64, 'a') }), "");
}

TEST(Nearest, counts_a_swap_across_rows_once)
{
    EXPECT_EQ(Nearest("acb", { "abc" }), "abc");
    EXPECT_EQ(Nearest("abcdefgh", { "badcefgh" }), "badcefgh");   // two swaps
}

}   // namespace
}   // namespace kit::nearestname
