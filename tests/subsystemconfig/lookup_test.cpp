// Finding elements by number and by key text.

#include "subsystem_fixture.h"

#include <climits>
#include <string>

using namespace VrexZynConfigTools;
using namespace VrexZynConfigTools::support;
using std::string_literals::operator""s;

namespace {

using CSubsystemConfigLookup = SubsystemTest;

TEST_F(CSubsystemConfigLookup, finds_a_plain_element_by_number_text_and_name)
{
    CElement * element = AddPlain(31, "SomeName");

    EXPECT_EQ(&mSubsystem.Element(31U), element);
    EXPECT_EQ(&mSubsystem.Element("31"), element);
    EXPECT_EQ(&mSubsystem.Element("0x1F"), element);
    EXPECT_EQ(&mSubsystem.Element("0X1f"), element);
    EXPECT_EQ(&mSubsystem.Element("037"), element);
    EXPECT_EQ(&mSubsystem.Element("SOMENAME"), element);
    EXPECT_EQ(&mSubsystem.Element("somename"), element);
}

TEST_F(CSubsystemConfigLookup, answers_a_miss_with_the_null_element)
{
    EXPECT_TRUE(IsNull(mSubsystem.Element(1U)));
    EXPECT_TRUE(IsNull(mSubsystem.Element("1")));
    EXPECT_TRUE(IsNull(mSubsystem.Element("name")));
    EXPECT_TRUE(IsNull(mSubsystem.Element("")));
    AddPlain(1, "name");
    EXPECT_TRUE(IsNull(mSubsystem.Element(2U)));
    EXPECT_TRUE(IsNull(mSubsystem.Element("2")));
    EXPECT_TRUE(IsNull(mSubsystem.Element("nam")));
    EXPECT_TRUE(IsNull(mSubsystem.Element("names")));
    EXPECT_FALSE(mSubsystem.Element("names").IsValid());
}

TEST_F(CSubsystemConfigLookup, gives_the_last_by_number_and_the_first_by_text)
{
    CElement * first = AddPlain(100, "Name");
    AddPlain(100, "NAME");
    CElement * last = AddPlain(100, "name");

    EXPECT_EQ(&mSubsystem.Element(100U), last);
    EXPECT_EQ(&mSubsystem.Element("100"), first);
    EXPECT_EQ(&mSubsystem.Element("name"), first);
}

TEST_F(CSubsystemConfigLookup, finds_a_table_row_by_number_and_by_text_with_indices_only)
{
    CElement * row1 = AddRow(100, "Table", { 1 });
    CElement * row2 = AddRow(100, "Table", { 2 });

    EXPECT_EQ(&mSubsystem.Element(100U), row2);
    EXPECT_TRUE(IsNull(mSubsystem.Element("100")));
    EXPECT_TRUE(IsNull(mSubsystem.Element("table")));
    EXPECT_EQ(&mSubsystem.Element("100.1"), row1);
    EXPECT_EQ(&mSubsystem.Element("0x64.2"), row2);
    EXPECT_EQ(&mSubsystem.Element("TABLE.2"), row2);
    EXPECT_TRUE(IsNull(mSubsystem.Element("100.3")));
    EXPECT_TRUE(IsNull(mSubsystem.Element("100.1.1")));
}

TEST_F(CSubsystemConfigLookup, finds_a_row_that_has_no_indices_as_a_plain_element)
{
    AddRow(100, "Table", { 1 });
    CElement * bare = AddRow(100, "Table", {});
    AddPlain(100, "Table");

    EXPECT_EQ(&mSubsystem.Element("100"), bare);
    EXPECT_EQ(&mSubsystem.Element("table"), bare);
}

TEST_F(CSubsystemConfigLookup, lets_a_plain_element_answer_for_any_indices)
{
    CElement * plain = AddPlain(100, "Table");
    AddRow(100, "Table", { 1 });

    EXPECT_EQ(&mSubsystem.Element("100.1"), plain);
    EXPECT_EQ(&mSubsystem.Element("table.9.9"), plain);
}

TEST_F(CSubsystemConfigLookup, prefers_a_row_that_stands_before_the_plain_element)
{
    CElement * row = AddRow(100, "Table", { 1 });
    CElement * plain = AddPlain(100, "Table");

    EXPECT_EQ(&mSubsystem.Element("100.1"), row);
    EXPECT_EQ(&mSubsystem.Element("100.2"), plain);
    EXPECT_EQ(&mSubsystem.Element("100"), plain);
}

TEST_F(CSubsystemConfigLookup, reads_each_piece_behind_a_dot_as_an_index)
{
    CElement * zero = AddRow(100, "T", { 0 });
    CElement * zeros = AddRow(100, "T", { 0, 0 });
    CElement * mixed = AddRow(100, "T", { 3, 0, 7 });
    CElement * highest = AddRow(100, "T", { 4294967295U });
    CElement * wrapped = AddRow(100, "T", { 1215752191U });   // 99999999999 modulo 2^32

    EXPECT_EQ(&mSubsystem.Element("100."), zero);
    EXPECT_EQ(&mSubsystem.Element("100.junk"), zero);
    EXPECT_EQ(&mSubsystem.Element("100.0x5"), zero);
    EXPECT_EQ(&mSubsystem.Element("100.."), zeros);
    EXPECT_EQ(&mSubsystem.Element("t.0."), zeros);
    EXPECT_EQ(&mSubsystem.Element("100.3..7"), mixed);
    EXPECT_EQ(&mSubsystem.Element("100. 3.x. +7z"), mixed);
    EXPECT_EQ(&mSubsystem.Element("100.4294967295"), highest);
    EXPECT_EQ(&mSubsystem.Element("100.-1"), highest);
    EXPECT_EQ(&mSubsystem.Element("100.99999999999"), wrapped);
}

TEST_F(CSubsystemConfigLookup, takes_the_text_before_the_first_dot_as_the_name)
{
    CElement * nameless = AddRow(7, "", { 5 });
    AddPlain(8, "a.b");

    EXPECT_EQ(&mSubsystem.Element(".5"), nameless);
    EXPECT_TRUE(IsNull(mSubsystem.Element(".")));
    EXPECT_TRUE(IsNull(mSubsystem.Element("a.b")));   // asks for row 0 of "a"
    EXPECT_TRUE(IsNull(mSubsystem.Element("a..b")));
}

TEST_F(CSubsystemConfigLookup, finds_a_nameless_element_by_the_empty_text)
{
    AddPlain(7, "named");
    CElement * nameless = AddPlain(8, "");

    EXPECT_EQ(&mSubsystem.Element(""), nameless);
    EXPECT_EQ(&mSubsystem.Element(".5"), nameless);
}

TEST_F(CSubsystemConfigLookup, detects_the_base_of_a_number)
{
    CElement * eight = AddPlain(8, "eight");
    CElement * sixteen = AddPlain(16, "sixteen");
    AddPlain(20, "twenty");

    EXPECT_EQ(&mSubsystem.Element("0x10"), sixteen);
    EXPECT_EQ(&mSubsystem.Element("16"), sixteen);
    EXPECT_EQ(&mSubsystem.Element("020"), sixteen);
    EXPECT_EQ(&mSubsystem.Element("010"), eight);
    EXPECT_EQ(&mSubsystem.Element("0x8.1"), eight);
}

TEST_F(CSubsystemConfigLookup, takes_leading_white_space_and_signs_for_a_number)
{
    CElement * five = AddPlain(5, "five");

    for (const char * text : { " 5", "\t5", "\n5", "\v5", "\f5", "\r5", "  +5", "+5", " 0x5", "+05" })
        EXPECT_EQ(&mSubsystem.Element(text), five) << text;
    for (const char * text : { "5 ", "+ 5", "++5", "-5", "5\n" })
        EXPECT_TRUE(IsNull(mSubsystem.Element(text))) << text;
}

TEST_F(CSubsystemConfigLookup, prefers_the_number_to_a_name_of_digits)
{
    AddPlain(1, "31");
    CElement * byNumber = AddPlain(31, "other");

    EXPECT_EQ(&mSubsystem.Element("31"), byNumber);
    EXPECT_TRUE(IsNull(mSubsystem.Element("32")));
}

// A text that begins with a number but isn't one leaves the number behind, and its name is then not lowered. Intended.
TEST_F(CSubsystemConfigLookup, does_not_lower_a_name_that_begins_with_a_number)
{
    CElement * element = AddPlain(1, "12ABC");

    EXPECT_EQ(&mSubsystem.Element("12abc"), element);
    EXPECT_TRUE(IsNull(mSubsystem.Element("12ABC")));
    EXPECT_TRUE(IsNull(mSubsystem.Element("12Abc")));
    EXPECT_EQ(&mSubsystem.Element("12abc.7"), element);
    EXPECT_TRUE(IsNull(mSubsystem.Element("12ABC.7")));
    EXPECT_TRUE(IsNull(mSubsystem.Element(12U)));
}

TEST_F(CSubsystemConfigLookup, lowers_a_name_that_begins_with_a_zero)
{
    CElement * zero = AddPlain(1, "0ABC");
    CElement * prefix = AddPlain(2, "0xyz");
    CElement * octal = AddPlain(3, "08Z");
    CElement * dash = AddPlain(4, "-A");

    EXPECT_EQ(&mSubsystem.Element("0abc"), zero);
    EXPECT_EQ(&mSubsystem.Element("0ABC"), zero);
    EXPECT_EQ(&mSubsystem.Element("0XYZ"), prefix);
    EXPECT_EQ(&mSubsystem.Element("08z"), octal);
    EXPECT_EQ(&mSubsystem.Element("-a"), dash);
}

TEST_F(CSubsystemConfigLookup, takes_a_prefix_without_digits_for_a_name)
{
    CElement * zero = AddPlain(0, "zero");
    CElement * named = AddPlain(5, "0X");

    EXPECT_EQ(&mSubsystem.Element("0x"), named);
    EXPECT_EQ(&mSubsystem.Element("0"), zero);
    EXPECT_EQ(&mSubsystem.Element("00"), zero);
    EXPECT_EQ(&mSubsystem.Element("-0"), zero);
}

TEST_F(CSubsystemConfigLookup, compares_every_byte_of_a_name_also_behind_a_nul)
{
    CElement * element = AddPlain(1, "Ab\0Cd"s);
    CElement * digits = AddPlain(2, "5\0xY"s);

    EXPECT_EQ(&mSubsystem.Element("aB\0cD"s), element);
    EXPECT_TRUE(IsNull(mSubsystem.Element("ab")));
    EXPECT_TRUE(IsNull(mSubsystem.Element("ab\0ce"s)));
    EXPECT_EQ(&mSubsystem.Element("5\0xy"s), digits);
    EXPECT_TRUE(IsNull(mSubsystem.Element("5\0XY"s)));   // begins with a number
}

TEST_F(CSubsystemConfigLookup, takes_a_number_with_a_nul_behind_it_for_a_name)
{
    AddPlain(5, "five");
    CElement * named = AddPlain(6, "5\0"s);

    EXPECT_EQ(&mSubsystem.Element("5\0"s), named);
}

TEST_F(CSubsystemConfigLookup, leaves_bytes_above_127_as_they_are)
{
    CElement * element = AddPlain(1, "\xC4z");

    EXPECT_EQ(&mSubsystem.Element("\xC4Z"), element);
    EXPECT_TRUE(IsNull(mSubsystem.Element("\xE4z")));
}

TEST_F(CSubsystemConfigLookup, finds_numbers_above_the_signed_range_by_number_only)
{
    CElement * largest = AddPlain(INT_MAX, "largest");
    CElement * beyond = AddPlain(2147483648U, "beyond");
    CElement * named = AddPlain(1, "2147483648");

    EXPECT_EQ(&mSubsystem.Element("2147483647"), largest);
    EXPECT_EQ(&mSubsystem.Element(2147483648U), beyond);
    EXPECT_EQ(&mSubsystem.Element("2147483648"), named);   // no number any more
    EXPECT_TRUE(IsNull(mSubsystem.Element("99999999999999999999")));
}

TEST_F(CSubsystemConfigLookup, does_not_lower_a_name_that_begins_with_too_large_a_number)
{
    CElement * element = AddPlain(1, "99999999999Z");

    EXPECT_EQ(&mSubsystem.Element("99999999999z"), element);
    EXPECT_TRUE(IsNull(mSubsystem.Element("99999999999Z")));
}

TEST_F(CSubsystemConfigLookup, finds_an_element_with_the_number_0)
{
    CElement * element = AddPlain(0, "zero");

    EXPECT_EQ(&mSubsystem.Element(0U), element);
    EXPECT_TRUE(mSubsystem.Element(0U).IsValid());
    EXPECT_EQ(&mSubsystem.Element("0"), element);
}

TEST_F(CSubsystemConfigLookup, lists_all_elements_of_a_number_in_order)
{
    CElement * plain = AddPlain(100, "a");
    AddPlain(101, "b");
    CElement * row = AddRow(100, "a", { 1 });
    CElement * again = AddPlain(100, "c");

    const auto found = mSubsystem.Elements(100);
    EXPECT_EQ(found, (std::list<CElement *>{ plain, row, again }));
    EXPECT_TRUE(mSubsystem.Elements(99).empty());
    EXPECT_EQ(mSubsystem.Elements().size(), 4U);
}

TEST_F(CSubsystemConfigLookup, keeps_the_order_of_arrival)
{
    std::list<CElement *> expected;
    for (const std::uint32_t id : { 9U, 3U, 9U, 1U, 3U })
        expected.push_back(AddPlain(id, Numbered("n", id)));

    EXPECT_EQ(mSubsystem.Elements(), expected);
}

TEST_F(CSubsystemConfigLookup, finds_each_of_many)
{
    std::vector<CElement *> elements;
    for (std::uint32_t id = 0; id < 5000; ++id)
        elements.push_back(AddPlain(id * 7919, Numbered("Key_", id)));

    for (std::uint32_t id = 0; id < 5000; ++id) {
        ASSERT_EQ(&mSubsystem.Element(id * 7919), elements[id]);
        ASSERT_EQ(&mSubsystem.Element(Numbered("KEY_", id)), elements[id]);
        ASSERT_EQ(&mSubsystem.Element(std::to_string(id * 7919)), elements[id]);
    }
    EXPECT_TRUE(IsNull(mSubsystem.Element("KEY_5000")));
}

}   // namespace
