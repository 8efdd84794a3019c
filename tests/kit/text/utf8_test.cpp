#include <kit/text/utf8.h>

#include <gtest/gtest.h>

#include <string>

namespace kit::text {
namespace {

// Overlong, cut off, a stray continuation, a surrogate, beyond the last code point, and no lead byte.
const std::string BAD_SEQUENCES[] = { "\xc0\x80", "\xe0\x9f\xbf", "\xf0\x8f\xbf\xbf", "\xc3", "\xe2\x82",
    "\x80", "\xed\xa0\x80", "\xf4\x90\x80\x80", "\xff", "\xf8\x88\x80\x80\x80" };

TEST(IsUtf8, knows_the_first_and_last_character_of_each_length)
{
    EXPECT_TRUE(IsUtf8(""));
    EXPECT_TRUE(IsUtf8(std::string("\0", 1)));
    for (const char * good : { "\x7f", "\xc2\x80", "\xdf\xbf", "\xe0\xa0\x80", "\xef\xbf\xbf",
             "\xf0\x90\x80\x80", "\xf4\x8f\xbf\xbf", "\xed\x9f\xbf", "\xee\x80\x80" })
        EXPECT_TRUE(IsUtf8(good)) << Escaped(good);
    for (const std::string & bad : BAD_SEQUENCES) {
        EXPECT_FALSE(IsUtf8(bad)) << Escaped(bad);
        EXPECT_FALSE(IsUtf8("a" + bad + "b")) << Escaped(bad);
    }
}

TEST(IsPlain, rejects_control_characters_of_both_ranges)
{
    EXPECT_TRUE(IsPlain(""));
    EXPECT_TRUE(IsPlain("a \"b\" \\ na\u00efve \u6f22\u5b57 \u202e"));
    for (const char * bad : { "\n", "\t", "\x1b", "\x7f", "\xc2\x80", "\xc2\x9f", "\xff" })
        EXPECT_FALSE(IsPlain(bad)) << Escaped(bad);
    EXPECT_TRUE(IsPlain("\xc2\xa0"));
}

TEST(Printable, escapes_what_must_not_reach_a_terminal)
{
    EXPECT_EQ(Printable("plain \\ text"), "plain \\ text");
    EXPECT_EQ(Printable("a\nb\rc\td"), "a\\nb\\rc\\td");
    EXPECT_EQ(Printable(std::string("\x1b[2J\0", 5)), "\\x1b[2J\\x00");
    EXPECT_EQ(Printable("\xc2\x85"), "\\u0085");
    EXPECT_EQ(Printable("\u202e\u2066\ufeff"), "\\u202e\\u2066\\ufeff");
    EXPECT_EQ(Printable("\U000e0041"), "\\U000e0041");
    EXPECT_EQ(Printable("\xff\xc3"), "\\xff\\xc3");
    EXPECT_EQ(Printable("na\u00efve \u6f22"), "na\u00efve \u6f22");
}

TEST(Escaped, leaves_plain_text_alone_and_trusts_no_character_of_any_other)
{
    EXPECT_EQ(Escaped("na\u00efve \u202e"), "na\u00efve \u202e");
    EXPECT_EQ(Escaped("a\u00ef\n"), "a\\xc3\\xaf\\x0a");
    EXPECT_EQ(Escaped("\xc2\x85 ~\xff\x7f"), "\\xc2\\x85 ~\\xff\\x7f");
}

TEST(Quoted, escapes_quotes_and_backslashes_too)
{
    EXPECT_EQ(Quoted("a\"b\\c\n"), "\"a\\\"b\\\\c\\n\"");
}

TEST(Beginning, ends_at_a_character)
{
    EXPECT_EQ(Beginning("abc", 3), "abc");
    EXPECT_EQ(Beginning("abc", 2), "ab");
    EXPECT_EQ(Beginning("a\u00efb", 2), "a");
    EXPECT_EQ(Beginning("a\u00efb", 3), "a\u00ef");
    EXPECT_EQ(Beginning("\xff\xff", 1), "\xff");
    EXPECT_EQ(Beginning("abc", 0), "");
}

TEST(Columns, counts_what_a_terminal_advances)
{
    EXPECT_EQ(Columns(""), 0U);
    EXPECT_EQ(Columns("na\u00efve"), 5U);
    EXPECT_EQ(Columns("\u6f22\u5b57"), 4U);
    EXPECT_EQ(Columns("e\u0301"), 1U);
    EXPECT_EQ(Columns("\u0915\u093e"), 2U) << "a spacing mark takes a column of its own";
    EXPECT_EQ(Columns("\xff"), 1U);
}

TEST(Cut, leaves_room_for_the_ellipsis_and_halves_no_wide_character)
{
    EXPECT_EQ(Cut("abc", 3), "abc");
    EXPECT_EQ(Cut("abcd", 3), "ab\u2026");
    EXPECT_EQ(Cut("\u6f22\u5b57", 3), "\u6f22\u2026");
    EXPECT_EQ(Cut("\u6f22\u5b57", 2), "\u2026");
    EXPECT_EQ(Cut("abc", 0), "");
}

TEST(Padded, fills_up_to_the_columns)
{
    EXPECT_EQ(Padded("\u6f22", 4), "\u6f22  ");
    EXPECT_EQ(Padded("abcd", 3), "abcd");
}

}   // namespace
}   // namespace kit::text
