#include <kit/text/ascii.h>
#include <kit/text/hex.h>
#include <kit/text/number.h>
#include <kit/text/words.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <optional>
#include <string>

namespace kit::text {
namespace {

TEST(HexOf, writes_lower_case_pairs_between_separators)
{
    EXPECT_EQ(HexOf(""), "");
    EXPECT_EQ(HexOf(std::string("\x00\x0a\xff", 3)), "000aff");
    EXPECT_EQ(HexOf("\x01\xab", " "), "01 ab");
}

TEST(BytesOfHex, reads_pairs_of_either_case_with_blanks_between_them)
{
    EXPECT_EQ(BytesOfHex(""), "");
    EXPECT_EQ(BytesOfHex("01aB"), "\x01\xab");
    EXPECT_EQ(BytesOfHex(" 01\t\n\rff "), "\x01\xff");
}

TEST(BytesOfHex, reads_back_every_byte)
{
    for (int byte = 0; byte < 256; ++byte) {
        const std::string bytes(1, static_cast<char>(byte));
        EXPECT_EQ(BytesOfHex(HexOf(bytes)), bytes) << byte;
    }
}

TEST(BytesOfHex, rejects_half_pairs_and_other_characters)
{
    for (const char * bad : { "1", "1 2", "0x", "0x01", "-1", "+1", "gg", "012", "01 2" })
        EXPECT_EQ(BytesOfHex(bad), std::nullopt) << bad;
}

TEST(ParseWhole, reads_the_whole_range_of_its_type)
{
    EXPECT_EQ(ParseWhole<std::int8_t>("-128"), -128);
    EXPECT_EQ(ParseWhole<std::int8_t>("127"), 127);
    EXPECT_EQ(ParseWhole<std::int8_t>("128"), std::nullopt);
    EXPECT_EQ(ParseWhole<std::int8_t>("-129"), std::nullopt);
    EXPECT_EQ(ParseWhole<std::uint64_t>("18446744073709551615"), std::numeric_limits<std::uint64_t>::max());
    EXPECT_EQ(ParseWhole<std::uint64_t>("18446744073709551616"), std::nullopt);
    EXPECT_EQ(ParseWhole<std::uint32_t>("ff", 16), 255U);
}

TEST(ParseWhole, rejects_whatever_is_more_than_digits)
{
    for (const char * bad : { "", "-", "+1", " 1", "1 ", "1.0", "0x1", "--1", "1e3" })
        EXPECT_EQ(ParseWhole<int>(bad), std::nullopt) << bad;
    EXPECT_EQ(ParseWhole<unsigned>("-1"), std::nullopt);
}

TEST(ParseWholeIn, includes_both_limits)
{
    for (const char * good : { "-1", "0", "15" })
        EXPECT_TRUE(ParseWholeIn(good, -1, 15)) << good;
    for (const char * bad : { "-2", "16", "x" })
        EXPECT_FALSE(ParseWholeIn(bad, -1, 15)) << bad;
}

TEST(ParseWithPrefix, takes_hexadecimal_digits_after_0x)
{
    EXPECT_EQ(ParseWithPrefix("10"), 10U);
    EXPECT_EQ(ParseWithPrefix("010"), 10U);
    EXPECT_EQ(ParseWithPrefix("0xfF"), 255U);
    EXPECT_EQ(ParseWithPrefix("0xffffffffffffffff"), std::numeric_limits<std::uint64_t>::max());
    for (const char * bad : { "", "0x", "0X1", "-1", "0x1ffffffffffffffff", "0x0x1", "ff" })
        EXPECT_EQ(ParseWithPrefix(bad), std::nullopt) << bad;
}

TEST(Lowered, changes_letters_of_ascii_only)
{
    EXPECT_EQ(Lowered("WLan [@`{\xc4"), "wlan [@`{\xc4");
}

TEST(EqualsIgnoringCase, compares_whole_texts)
{
    EXPECT_TRUE(EqualsIgnoringCase("WLAN", "wlan"));
    EXPECT_FALSE(EqualsIgnoringCase("wlan", "wla"));
    EXPECT_FALSE(EqualsIgnoringCase("[", "{"));
}

TEST(Counted, has_one_form_for_one_and_one_for_others)
{
    EXPECT_EQ(Counted(0, "byte"), "0 bytes");
    EXPECT_EQ(Counted(1, "byte"), "1 byte");
    EXPECT_EQ(Counted(std::numeric_limits<std::uint64_t>::max(), "key"), "18446744073709551615 keys");
}

TEST(Joined, cuts_a_long_list)
{
    EXPECT_EQ(Joined({}, ", "), "");
    EXPECT_EQ(Joined({ "a", "b" }, "; ", 2), "a; b");
    EXPECT_EQ(Joined({ "a", "b", "c" }, "; ", 2), "a; b; ...");
}

TEST(Alternatives, has_an_or_before_the_last_word_of_a_whole_list)
{
    EXPECT_EQ(Alternatives({}), "");
    EXPECT_EQ(Alternatives({ "a" }), "a");
    EXPECT_EQ(Alternatives({ "a", "b" }), "a or b");
    EXPECT_EQ(Alternatives({ "a", "b", "c" }, 3), "a, b or c");
    EXPECT_EQ(Alternatives({ "a", "b", "c" }, 2), "a, b, ...");
}

}   // namespace
}   // namespace kit::text
