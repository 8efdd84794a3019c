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
    const Finding finding = MakeFinding("out-of-range", "300 is out of range");
    EXPECT_EQ(LineOf(finding), "300 is out of range");
    EXPECT_EQ(LineOf(WithPlace(finding, "a.toml")), "a.toml: 300 is out of range");
    EXPECT_EQ(LineOf(WithPlace(finding, "a.toml", 3)), "a.toml:3: 300 is out of range");
    EXPECT_EQ(LineOf(WithPlace(finding, "a.toml", 3, 8)), "a.toml:3:8: 300 is out of range");
    EXPECT_EQ(LineOf(WithPlace(finding, "", 3, 8)), "300 is out of range");
    EXPECT_EQ(finding.mCode, "out-of-range");
    EXPECT_EQ(finding.mSeverity, VrexZynConfigTools::SEVERITY_ERROR);
}

TEST(CFindings, gives_its_file_to_findings_without_one)
{
    CFindings findings("a.toml");
    findings.Add(MakeFinding("code", "first"));
    findings.Add(WithPlace(MakeFinding("code", "second"), "b.toml"));
    EXPECT_EQ(findings.Text(), "a.toml: first\nb.toml: second");
}

TEST(CFindings, gives_store_subsystem_and_key_of_its_scope_to_findings_without_them)
{
    CFindings findings("f");
    findings.Scope().mStore = "eeprom.1";
    findings.Scope().mSubsystem = "wlan";
    findings.Scope().mKey = "gain";
    findings.Add(MakeFinding("code", "first"));
    Finding other = MakeFinding("code", "second");
    other.mKey = "power";
    findings.Add(other);
    findings.Scope().mKey.clear();
    findings.Add(MakeFinding("code", "third"));

    const auto found = findings.InOrder();
    ASSERT_EQ(found.size(), 3U);
    EXPECT_EQ(found[0].mStore, "eeprom.1");
    EXPECT_EQ(found[0].mSubsystem, "wlan");
    EXPECT_EQ(found[0].mKey, "gain");
    EXPECT_EQ(found[1].mKey, "power");
    EXPECT_EQ(found[2].mKey, "");
}

TEST(CFindings, lists_warnings_apart_and_does_not_limit_them)
{
    CFindings findings("f", 0);
    Finding warning = MakeFinding("left-out", "the key is left out");
    warning.mSeverity = VrexZynConfigTools::SEVERITY_WARNING;
    findings.Add(warning);
    EXPECT_TRUE(findings.IsEmpty());
    EXPECT_EQ(findings.Text(), "");
    ASSERT_EQ(findings.Warnings().size(), 1U);
    EXPECT_EQ(LineOf(findings.Warnings()[0]), "f: the key is left out");
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

TEST(WithExpected, appends_what_is_expected)
{
    const Finding finding = WithExpected(MakeFinding("out-of-range", "300 is out of range"), "0 to 255");
    EXPECT_EQ(finding.mText, "300 is out of range; expected 0 to 255");
    EXPECT_EQ(finding.mExpected, "0 to 255");
}

TEST(WithAdvice, names_the_nearest_word)
{
    const Finding finding =
        WithAdvice(MakeFinding("unknown-type", "unknown type \"unit8\""), "unit8", { "uint8", "string" });
    EXPECT_EQ(finding.mText, "unknown type \"unit8\"; did you mean \"uint8\"?");
    EXPECT_EQ(finding.mNearest, "uint8");
    EXPECT_EQ(finding.mExpected, "");
}

TEST(WithAdvice, lists_what_is_known_where_no_word_is_near)
{
    const Finding finding =
        WithAdvice(MakeFinding("unknown-type", "unknown"), "zzzzzz", { "uint8", "enum", "string" });
    EXPECT_EQ(finding.mText, "unknown; expected \"uint8\", \"enum\" or \"string\"");
    EXPECT_EQ(finding.mExpected, "\"uint8\", \"enum\" or \"string\"");
    EXPECT_EQ(finding.mNearest, "");
}

TEST(WithAdvice, adds_nothing_where_nothing_is_known)
{
    EXPECT_EQ(WithAdvice(MakeFinding("unknown-type", "unknown"), "a", {}).mText, "unknown");
}

TEST(WithAlternatives, cuts_a_long_list)
{
    std::string list;
    for (int word = 0; word < 20; ++word)
        list += "\"a\", ";
    EXPECT_EQ(WithAlternatives(MakeFinding("code", "text"), std::vector<std::string>(21, "a")).mText,
        "text; expected " + list + "...");
}

}   // namespace
}   // namespace kit::reporting
