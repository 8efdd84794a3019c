/// The compiler on whole sources: several files of one system, the order of findings, and hostile text.

#include "rule.h"

#include <algorithm>
#include <string>

namespace workbench::compiler::test {

namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

constexpr char SHARED[] = R"([[enum]]
name = "Side"
values = { LEFT = 1, RIGHT = 2 }
[[struct]]
name = "Band"
field = [
    { name = "Gain", type = "uint64", position = 0 },
    { name = "Side", type = "enum", enum = "Side", position = 64, width = 2 },
]
)";

std::string KeyOfBand(int id)
{
    return "[[subsystem.key]]\nid = " + std::to_string(id) + "\nname = \"Key" + std::to_string(id) +
           "\"\ntype = \"struct\"\nstruct = \"Band\"\n";
}

std::string Repeated(const std::string & text, int count)
{
    std::string all;
    for (int done = 0; done < count; ++done)
        all += text;
    return all;
}

/// What stands between "```toml" and "```" in the manual the first time.
std::string FirstSourceOfManual()
{
    const std::string manual = zynconfig::test::ContentOf(SOURCE_DIR "/docs/metadata-source.md");
    const std::string opening = "```toml\n";
    const std::size_t begin = manual.find(opening) + opening.size();
    return manual.substr(begin, manual.find("```", begin) - begin);
}

/// The source of which the manual shows the findings.
constexpr char LIMITER[] = R"([[subsystem]]
name = "audio"

[[subsystem.key]]
id = 0x0331
name = "Limiter"
type = "struct"
field = [
    { name = "Mode", type = "enum", position = 0, width = 4, values = { OFF = 0, SOFT = 1, HARD = 2 } },
    { name = "Threshold", type = "int32", position = 0, range = [-1_000_000, 0], units = "0.0001 dB" },
    { name = "Release", type = "unit16", position = 48, units = "ms" },
]

[[subsystem.key]]
id = 0x0335
name = "Echo"
type = "struct"
field = [
    { name = "Gain", type = "int8", position = 0, units = "dB" },
    { name = "Delay", type = "uint64", position = 16, units = "ps" },
]
)";

}   // namespace

TEST(MetadataManual, shows_a_source_that_compiles)
{
    EXPECT_THAT(FirstSourceOfManual(), StartsWith("[system]\n"));
    EXPECT_THAT(FindingsOf({ FirstSourceOfManual() }), IsEmpty());
}

TEST(MetadataManual, shows_findings_as_they_are)
{
    std::string shown;
    for (std::string finding : FindingsOf({ LIMITER, HEAD })) {
        for (std::size_t at = finding.find("1.toml"); at != std::string::npos;
             at = finding.find("1.toml", at + 12))
            finding.replace(at, 6, "limiter.toml");
        shown += finding + '\n';
    }
    EXPECT_THAT(zynconfig::test::ContentOf(SOURCE_DIR "/docs/metadata-source.md"),
        HasSubstr("```\n" + shown + "```\n"));
}

TEST(MetadataSources, make_one_system_of_several_files)
{
    EXPECT_THAT(FindingsOf({ "[[subsystem]]\nname = \"wlan\"\n", "[system]\nname = \"s\"\n",
                    "[[chip]]\nname = \"c\"\nlabel = \"c\"\nid = 1\n" }),
        IsEmpty());
}

TEST(MetadataSources, share_structs_and_enumerations_whatever_their_order)
{
    std::string right = SHARED;
    right.replace(right.find("uint64"), 6, "uint32");
    EXPECT_THAT(FindingsOf({ HEAD + KeyOfBand(1), right }), IsEmpty());
    EXPECT_THAT(FindingsOf({ right, HEAD + KeyOfBand(1) }), IsEmpty());
}

TEST(MetadataSources, are_told_once_of_what_several_keys_share)
{
    EXPECT_THAT(FindingsOf({ HEAD + KeyOfBand(1) + KeyOfBand(2), SHARED }),
        ElementsAre("2.toml:7:50: warning: the device format doesn't carry \"Gain\" back unchanged: "
                    "18446744073709551615 comes back as 0"));
}

TEST(MetadataSources, share_no_name_in_one_subsystem_with_another_file)
{
    EXPECT_THAT(FindingsOf({ HEAD, "[[subsystem]]\nname = \"bt\"\n" }),
        ElementsAre("2.toml:2:8: error: the subsystem \"bt\" stands in 1.toml:8:8 already"));
}

TEST(MetadataSources, get_all_findings_in_one_run_by_file_line_and_column)
{
    const std::string first = std::string(HEAD) + R"(key = [
{ name = "Late", type = "uint9" },
{ id = 2, name = "Wide", type = "struct", field = [{ name = "x", type = "uint64", position = 0 }] },
{ id = 2, name = "wide", type = "uint8", range = [9, 8], default = 1 },
]
)";
    EXPECT_THAT(FindingsOf({ first, "[[chip]]\nname = \"d\"\nlabel = \"c\"\nid = 1\n" }),
        ElementsAre("1.toml:10:1: error: \"id\" is missing: a key has a number",
            "1.toml:10:25: error: unknown type \"uint9\"; did you mean \"uint8\"?",
            "1.toml:11:94: warning: the device format doesn't carry \"x\" back unchanged: "
            "18446744073709551615 comes back as 0",
            "1.toml:12:8: error: the number 2 stands in 1.toml:11:8 already",
            "1.toml:12:18: error: the name \"wide\" stands in 1.toml:11:18 already",
            "1.toml:12:50: error: \"range\": the minimum 9 is above the maximum 8",
            "2.toml:3:9: error: the label \"c\" stands in 1.toml:5:9 already"));
}

TEST(MetadataSources, are_read_on_after_one_that_is_no_toml)
{
    const auto findings = FindingsOf({ "[system\n", std::string(HEAD) + "alias = 5\n" });
    ASSERT_THAT(findings, SizeIs(2));
    EXPECT_THAT(findings[0], StartsWith("1.toml:1:8: error: "));
    EXPECT_EQ(findings[1], "2.toml:9:9: error: \"alias\": expected a text, found a whole number");
}

TEST(MetadataSources, that_cannot_be_read_are_not_blamed_on_others)
{
    const std::string key =
        KeyOfBand(1) + "[[subsystem.key]]\nid = 2\nname = \"Two\"\ntype = \"enum\"\nenum = \"Side\"\n";
    EXPECT_THAT(FindingsOf({ HEAD + key, "[[enum]\n" }), ElementsAre(StartsWith("2.toml:1:8: error: ")));
    EXPECT_THAT(FindingsOf({ HEAD + key, "[[enum]]\nname = \"Side\"\nvalues = {}\n" }),
        ElementsAre("1.toml:13:10: error: unknown struct \"Band\"",
            "2.toml:3:10: error: \"values\": expected one enumerator at least"));
}

TEST(MetadataSources, that_are_empty_make_no_system)
{
    EXPECT_THAT(FindingsOf({ "" }),
        ElementsAre("1.toml:1:1: error: [system] is missing: one of the sources names the system"));
}

TEST(MetadataSources, may_nest_as_they_like)
{
    const std::string deepKey = "[" + Repeated("a.", 5000) + "a]\n";
    EXPECT_THAT(FindingsOf({ HEAD, deepKey }), ElementsAre(HasSubstr("2.toml:1:1: error: a key of more than")));

    const std::string deepArray = std::string(HEAD) + "alias = " + std::string(100'000, '[') + '\n';
    EXPECT_THAT(FindingsOf({ deepArray }), ElementsAre(StartsWith("1.toml:9:")));

    const std::string fields =
        std::string(HEAD) + "[[subsystem.key]]\nid = 1\nname = \"A\"\ntype = \"struct\"\n" +
        "field = " + Repeated("[{ name = \"x\", type = \"struct\", position = 0, field = ", 80) +
        "[{ name = \"y\", type = \"uint8\", position = 0 }]" + Repeated(" }]", 80) + '\n';
    const auto findings = FindingsOf({ fields });
    EXPECT_THAT(findings, testing::Contains(EndsWith(": error: structs nest deeper than 64")));
}

TEST(MetadataSources, may_hold_a_struct_that_shared_structs_make_huge)
{
    std::string chain =
        "[[struct]]\nname = \"S0\"\nfield = [{ name = \"x\", type = \"uint8\", position = 0, width = 1 }]\n";
    for (int number = 1; number < 60; ++number)
        chain += "[[struct]]\nname = \"S" + std::to_string(number) +
                 "\"\nfield = [{ name = \"x\", type = \"struct\", struct = \"S" + std::to_string(number - 1) +
                 "\", position = 0, array = 2 }]\n";
    const auto findings = FindingsOf({ HEAD, chain });
    ASSERT_FALSE(findings.empty());
    EXPECT_THAT(findings.front(), HasSubstr("fields at most"));
}

TEST(MetadataSources, that_are_no_utf8_are_refused)
{
    const auto findings = FindingsOf({ std::string(HEAD) + "alias = \"\xff\xfe\"\n" });
    EXPECT_THAT(findings, ElementsAre(StartsWith("1.toml:9:")));
}

TEST(MetadataSources, show_no_control_character_of_theirs)
{
    const auto findings = FindingsOf({ std::string(HEAD) + "\"a\\u001b[2J\" = 5\n" });
    EXPECT_THAT(findings, ElementsAre("1.toml:9:1: error: unknown field \"a\\x1b[2J\" in a subsystem; expected "
                                      "\"name\", \"alias\", \"version\", \"layer\", \"variant\", "
                                      "\"description\", \"build_date\" or \"key\""));
}

TEST(MetadataSources, cut_at_every_byte_are_refused_or_compiled)
{
    const std::string whole = std::string(HEAD) + KeyOfBand(1) + SHARED;
    for (std::size_t length = 0; length < whole.size(); ++length)
        for (const std::string & finding : FindingsOf({ whole.substr(0, length) }))
            EXPECT_THAT(finding, testing::MatchesRegex("1\\.toml:[0-9]+:[0-9]+: (error|warning): .+"));
}

}   // namespace workbench::compiler::test
