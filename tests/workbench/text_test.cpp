#include <workbench/text.h>

#include <gtest/gtest.h>

#include <string>

namespace workbench {

TEST(IsUtf8, takes_characters_of_every_length)
{
    EXPECT_TRUE(IsUtf8(""));
    EXPECT_TRUE(IsUtf8("a\u00e4\u20ac\U0001F600"));
    EXPECT_TRUE(IsUtf8(std::string(1, '\0')));
    EXPECT_TRUE(IsUtf8("\xF4\x8F\xBF\xBF"));
}

TEST(IsUtf8, refuses_what_is_none)
{
    for (const char * text : { "\x80", "\xC3", "\xC3(", "\xE2\x82", "\xF0\x9F\x98", "\xC0\xAF", "\xE0\x80\xAF",
             "\xF0\x80\x80\xAF", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xF8\x88\x80\x80\x80", "\xFF", "a\xFFz" })
        EXPECT_FALSE(IsUtf8(text)) << Printable(text);
}

TEST(Printable, leaves_ordinary_text_alone)
{
    EXPECT_EQ(Printable("C:\\x \"a\" \u00e4\u20ac"), "C:\\x \"a\" \u00e4\u20ac");
}

TEST(Printable, shows_what_would_disturb_a_terminal)
{
    EXPECT_EQ(Printable("a\n\r\t\x1b[31m\x7f"), "a\\n\\r\\t\\x1b[31m\\x7f");
    EXPECT_EQ(Printable(std::string("\0z", 2)), "\\x00z");
    EXPECT_EQ(Printable("\u0085\u202e\ufeff\u200b"), "\\u0085\\u202e\\ufeff\\u200b");
    EXPECT_EQ(Printable("\U000E0041"), "\\U000e0041");
    EXPECT_EQ(Printable("\xC3("), "\\xc3(");
}

TEST(Quoted, escapes_quotes_and_backslashes)
{
    EXPECT_EQ(Quoted("a\"b\\c\n"), "\"a\\\"b\\\\c\\n\"");
    EXPECT_EQ(Quoted(""), "\"\"");
}

TEST(Columns, counts_what_a_terminal_shows)
{
    EXPECT_EQ(Columns("abc"), 3U);
    EXPECT_EQ(Columns("\u00e4\u20ac"), 2U);
    EXPECT_EQ(Columns("\u4e2d\u6587"), 4U);
    EXPECT_EQ(Columns("e\u0301"), 1U);
}

TEST(Cut, leaves_alone_what_fits)
{
    EXPECT_EQ(Cut("abc", 3), "abc");
    EXPECT_EQ(Cut("", 0), "");
}

TEST(Cut, ends_with_an_ellipsis_within_the_width)
{
    EXPECT_EQ(Cut("abcd", 3), "ab\u2026");
    EXPECT_EQ(Cut("abcd", 1), "\u2026");
    EXPECT_EQ(Cut("abcd", 0), "");
}

TEST(Cut, never_splits_a_character)
{
    const std::string text = "\u00e4\u00f6\u00fc\u4e2d\u6587\U0001F600e\u0301";
    for (std::size_t columns = 0; columns <= Columns(text); ++columns) {
        EXPECT_TRUE(IsUtf8(Cut(text, columns))) << columns;
        EXPECT_LE(Columns(Cut(text, columns)), columns);
    }
    EXPECT_EQ(Cut("\u4e2d\u6587", 3), "\u4e2d\u2026");
    EXPECT_EQ(Cut("\u4e2d\u6587", 2), "\u2026");   // half a wide character has no place
}

TEST(Padded, counts_columns_and_not_bytes)
{
    EXPECT_EQ(Padded("\u00e4", 3), "\u00e4  ");
    EXPECT_EQ(Padded("\u4e2d", 3), "\u4e2d ");
    EXPECT_EQ(Padded("abcd", 3), "abcd");
}

}   // namespace workbench
