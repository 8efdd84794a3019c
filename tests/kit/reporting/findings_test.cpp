#include <kit/reporting/advice.h>
#include <kit/reporting/findings.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kit::reporting {
namespace {

Finding FindingAt(const std::string & text, std::uint32_t line, std::uint32_t column)
{
    Finding finding = MakeFinding("code", text);
    finding.mLine = line;
    finding.mColumn = column;
    return finding;
}

TEST(LineOf, has_as_much_of_the_place_as_is_known)
{
    Finding finding = MakeFinding("out-of-range", "300 is out of range");
    EXPECT_EQ(LineOf(finding), "300 is out of range");
    EXPECT_EQ(LineOf(At(finding, "a.toml")), "a.toml: 300 is out of range");
    EXPECT_EQ(LineOf(At(finding, "a.toml", 3)), "a.toml:3: 300 is out of range");
    EXPECT_EQ(LineOf(At(finding, "a.toml", 3, 8)), "a.toml:3:8: 300 is out of range");
    EXPECT_EQ(LineOf(At(finding, "", 3, 8)), "300 is out of range");
    EXPECT_EQ(finding.mCode, "out-of-range");
    EXPECT_EQ(finding.mSeverity, VrexZynConfigTools::SEVERITY_ERROR);
}

TEST(CFindings, gives_its_file_to_findings_without_one)
{
    CFindings findings("a.toml");
    Finding other = MakeFinding("code", "second");
    findings.Add(MakeFinding("code", "first"));
    findings.Add(At(other, "b.toml"));
    EXPECT_EQ(findings.Text(), "a.toml: first\nb.toml: second");
}

TEST(CFindings, sorts_by_place_and_leaves_findings_of_one_place_in_order)
{
    CFindings findings("f");
    findings.Add(FindingAt("d", 10, 1));
    findings.Add(FindingAt("b", 2, 9));
    findings.Add(FindingAt("c", 2, 9));
    findings.Add(FindingAt("a", 2, 1));
    EXPECT_EQ(findings.Text(), "f:2:1: a\nf:2:9: b\nf:2:9: c\nf:10:1: d");
}

TEST(CFindings, only_counts_those_beyond_its_limit)
{
    CFindings findings("f", 2);
    EXPECT_TRUE(findings.IsEmpty());
    for (const char * text : { "a", "b" })
        findings.Add(MakeFinding("code", text));
    EXPECT_EQ(findings.Text(), "f: a\nf: b");
    for (const char * text : { "c", "d", "e" })
        findings.Add(MakeFinding("code", text));
    EXPECT_EQ(findings.Text(), "f: a\nf: b\nf: and 3 more");
    EXPECT_EQ(findings.Count(), 5U);
    EXPECT_EQ(findings.InOrder().back().mCode, "more-findings");
}

TEST(Quoted, escapes_and_cuts_user_text)
{
    EXPECT_EQ(Quoted("na\u00efve"), "\"na\u00efve\"");
    EXPECT_EQ(Quoted("a\x1b\xff"), "\"a\\x1b\\xff\"");
    EXPECT_EQ(Quoted(std::string(60, 'x')), '"' + std::string(60, 'x') + '"');
    EXPECT_EQ(Quoted(std::string(61, 'x')), '"' + std::string(60, 'x') + "...\"");
    EXPECT_EQ(Quoted(std::string(59, 'x') + "\u00ef"), '"' + std::string(59, 'x') + "...\"");
}

TEST(AddAdvice, names_the_nearest_word)
{
    Finding finding = MakeFinding("unknown-type", "unknown type \"unit8\"");
    AddAdvice(finding, "unit8", { "uint8", "string" });
    EXPECT_EQ(finding.mText, "unknown type \"unit8\"; did you mean \"uint8\"?");
    EXPECT_EQ(finding.mNearest, "uint8");
    EXPECT_EQ(finding.mExpected, "");
}

TEST(AddAdvice, lists_what_is_known_where_no_word_is_near)
{
    Finding finding = MakeFinding("unknown-type", "unknown");
    AddAdvice(finding, "zzzzzz", { "uint8", "enum", "string" });
    EXPECT_EQ(finding.mText, "unknown; expected \"uint8\", \"enum\" or \"string\"");
    EXPECT_EQ(finding.mExpected, "\"uint8\", \"enum\" or \"string\"");
    EXPECT_EQ(finding.mNearest, "");
}

TEST(AddAdvice, adds_nothing_where_nothing_is_known)
{
    Finding finding = MakeFinding("unknown-type", "unknown");
    EXPECT_EQ(AddAdvice(finding, "a", {}).mText, "unknown");
}

TEST(AddExpected, cuts_a_long_list)
{
    Finding finding = MakeFinding("code", "text");
    AddExpected(finding, std::vector<std::string>(21, "a"));
    std::string list;
    for (int word = 0; word < 20; ++word)
        list += "\"a\", ";
    EXPECT_EQ(finding.mText, "text; expected " + list + "...");
}

}   // namespace
}   // namespace kit::reporting
