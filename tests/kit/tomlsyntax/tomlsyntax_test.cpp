#include <kit/tomlsyntax/tomlsyntax.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>

namespace kit::tomlsyntax {
namespace {

using testing::HasSubstr;

std::string Dotted(std::size_t dots)
{
    std::string key = "a";
    for (std::size_t count = 0; count < dots; ++count)
        key += ".a";
    return key;
}

std::optional<unsigned> OverlongLine(const std::string & text)
{
    const auto place = FindOverlongKey(text);
    return place ? std::optional<unsigned>(place->line) : std::nullopt;
}

TEST(ReadFile, returns_all_bytes)
{
    const auto path = std::filesystem::path(testing::TempDir()) / "tomlsyntax_bytes";
    const std::string bytes = std::string(40000, 'x') + std::string("\0\xff\r\n", 4);
    std::ofstream(path, std::ios::binary) << bytes;
    std::string error;
    EXPECT_EQ(ReadFile(path.string(), error), bytes);
    std::filesystem::remove(path);
}

TEST(ReadFile, says_why_there_is_no_content)
{
    std::string error;
    EXPECT_EQ(ReadFile("/nonexistent", error), std::nullopt);
    EXPECT_EQ(error, "unable to open the file (No such file or directory)");
    EXPECT_EQ(ReadFile(testing::TempDir(), error), std::nullopt);
    EXPECT_THAT(error, HasSubstr("(Is a directory)"));
}

TEST(ParseText, returns_the_tree)
{
    SyntaxError error;
    const auto root = ParseText("a = 1\n[b]\nc = 'x'\n", error);
    ASSERT_TRUE(root);
    EXPECT_EQ((*root)["a"].value<int>(), 1);
    EXPECT_EQ((*root)["b"]["c"].value<std::string>(), "x");
}

TEST(ParseText, says_where_a_text_is_no_toml)
{
    SyntaxError error;
    EXPECT_FALSE(ParseText("a = 1\nb = = 2\n", error));
    EXPECT_EQ(error.mPlace.line, 2U);
    EXPECT_NE(error.mText, "");
}

TEST(ParseText, explains_how_to_write_a_large_number)
{
    SyntaxError error;
    EXPECT_FALSE(ParseText("a = 18446744073709551615", error));
    EXPECT_THAT(error.mText, HasSubstr("as a text, \"18446744073709551615\""));
}

TEST(ParseText, rejects_a_key_that_would_exhaust_the_stack)
{
    SyntaxError error;
    EXPECT_FALSE(ParseText("x = 1\n" + Dotted(100000) + " = 1", error));
    EXPECT_EQ(error.mPlace.line, 2U);
    EXPECT_EQ(error.mText, "a key of more than 1000 parts; expected two at most");
}

TEST(FindOverlongKey, counts_the_dots_on_the_way_to_a_value)
{
    EXPECT_EQ(OverlongLine(Dotted(1000) + " = 1"), std::nullopt);
    EXPECT_EQ(OverlongLine(Dotted(1001) + " = 1"), 1U);
    EXPECT_EQ(OverlongLine("[" + Dotted(1001) + "]"), 1U);
    EXPECT_EQ(OverlongLine("a = {" + Dotted(600) + " = {" + Dotted(600) + " = 1}}"), 1U);
    EXPECT_EQ(OverlongLine("a = {" + Dotted(600) + " = 1, " + Dotted(600) + " = 1}"), std::nullopt);
}

TEST(FindOverlongKey, counts_no_dots_in_texts_and_comments)
{
    const std::string dots(2000, '.');
    for (const std::string & text : { "a = \"" + dots + "\"", "a = '" + dots + "'", "# " + dots,
             "a = \"\"\"\n" + dots + "\"\"\"\"\"", "a = '''" + dots + "'''", "a = \"\\\"" + dots + "\"" })
        EXPECT_EQ(OverlongLine(text), std::nullopt) << text.substr(0, 10);
    EXPECT_EQ(OverlongLine("a = '" + dots + "'\n" + Dotted(1001)), 2U);
}

TEST(KindOf, names_each_kind_of_value)
{
    SyntaxError error;
    const auto root = ParseText("a = 1\nb = 1.5\nc = true\nd = 'x'\ne = []\nf = {}\ng = 2024-01-01", error);
    ASSERT_TRUE(root);
    const char * const kinds[] = { "a whole number", "a number with a fraction", "a boolean", "a text",
        "an array", "a table", "a date or time" };
    for (char name = 'a'; name <= 'g'; ++name)
        EXPECT_STREQ(KindOf(*root->get(std::string(1, name))), kinds[name - 'a']) << name;
}

}   // namespace
}   // namespace kit::tomlsyntax
