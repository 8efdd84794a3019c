#include "opencontext.h"

#include <configtools/context.h>
#include <support/debug_capture.h>
#include <support/slots.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <list>
#include <locale>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>

namespace VrexZynConfigTools {
namespace {

using support::DebugCapture;
using support::SlotAfter;
using support::SlotOf;
using testing::ElementsAre;
using testing::IsEmpty;

using Text = const std::string &;

TEST(IConfigContext, has_its_operations_in_the_order_of_the_contract)
{
    EXPECT_EQ(SlotOf(&IConfigContext::Name), 0);
    EXPECT_EQ(SlotOf(&IConfigContext::IsValid), 1);
    EXPECT_EQ(SlotOf<void(Text)>(&IConfigContext::SetTag), 2);
    EXPECT_EQ((SlotOf<void(Text, int)>(&IConfigContext::SetTag)), 3);
    EXPECT_EQ((SlotOf<void(Text, Text)>(&IConfigContext::SetTag)), 4);
    EXPECT_EQ(SlotOf(&IConfigContext::SetTags), 5);
    EXPECT_EQ(SlotOf(&IConfigContext::GetTag), 6);
    EXPECT_EQ(SlotOf(&IConfigContext::GetTags), 7);
    EXPECT_EQ((SlotOf<bool(Text, int)>(&IConfigContext::TagMatches)), 8);
    EXPECT_EQ((SlotOf<bool(Text, Text)>(&IConfigContext::TagMatches)), 9);
    EXPECT_EQ(SlotOf(&IConfigContext::Clone), 10);
    EXPECT_EQ(SlotOf(&IConfigContext::Parse), 11);
    EXPECT_EQ(SlotAfter<IConfigContext>(), 14);   // two of the destructor, the last
}

TEST(IConfigContext, gets_no_further_virtual_operation_in_its_classes)
{
    EXPECT_EQ(SlotAfter<CBaseContext>(), 14);
    EXPECT_EQ(SlotAfter<CZynContext>(), 14);
    EXPECT_EQ(SlotOf(&CBaseContext::Tags), -1);
    EXPECT_EQ(SlotOf(&CBaseContext::SubsystemType), -1);
}

TEST(IConfigContext, has_an_assignment_that_does_nothing)
{
    CBaseContext first("first");
    CBaseContext second("second");
    second.SetTag("a", "1");
    static_cast<IConfigContext &>(first) = second;
    EXPECT_EQ(first.Name(), "first");
    EXPECT_THAT(first.Tags(), IsEmpty());
}

TEST(CBaseContext, begins_with_a_name_and_no_tags)
{
    OpenBaseContext context("test");
    EXPECT_EQ(context.Name(), "test");
    EXPECT_TRUE(context.IsValid());
    EXPECT_THAT(context.Tags(), IsEmpty());
    EXPECT_EQ(context.mChangeCount, 0U);
}

TEST(CBaseContext, takes_a_subsystem_type_at_construction)
{
    OpenBaseContext context("test", 2);
    EXPECT_EQ(context.Tags(), (TagMap{ { "subsystemtype", "2" } }));
    EXPECT_EQ(context.SubsystemType(), 2);
    EXPECT_EQ(context.mChangeCount, 1U);
}

TEST(CBaseContext, reads_its_subsystem_type_as_a_number)
{
    CBaseContext context("test");
    EXPECT_EQ(context.SubsystemType(), 0);
    context.SetSubsystemType(-1);
    EXPECT_EQ(context.GetTag("subsystemtype"), "-1");
    EXPECT_EQ(context.SubsystemType(), -1);
    context.SetTag("subsystemtype", "abc");
    EXPECT_EQ(context.SubsystemType(), 0);
}

TEST(CBaseContext, lowers_keys_on_the_way_in_and_when_asked)
{
    CBaseContext context("test");
    context.SetTag("Device", "3");
    EXPECT_EQ(context.GetTag("DEVICE"), "3");
    EXPECT_EQ(context.Tags(), (TagMap{ { "device", "3" } }));
}

TEST(CBaseContext, keeps_the_case_of_values_and_ignores_it_in_comparisons)
{
    CBaseContext context("test");
    context.SetTag("x", "Abc");
    EXPECT_TRUE(context.TagMatches("x", "aBC"));
    EXPECT_TRUE(context.TagMatches("X", "Abc"));
    EXPECT_FALSE(context.TagMatches("x", "Ab"));
    EXPECT_FALSE(context.TagMatches("x", ""));
    EXPECT_EQ(context.GetTag("x"), "Abc");
}

TEST(CBaseContext, counts_each_write_whatever_comes_of_it)
{
    OpenBaseContext context("test");
    context.SetTag("x", "");
    EXPECT_EQ(context.mChangeCount, 1U);
    EXPECT_THAT(context.Tags(), IsEmpty());
    context.SetTag("x", "1");
    context.SetTag("x", "1");
    EXPECT_EQ(context.mChangeCount, 3U);
    context.SetTag("x", 1);
    EXPECT_EQ(context.mChangeCount, 4U);
    context.SetTag("x");
    EXPECT_EQ(context.mChangeCount, 5U);
    EXPECT_THAT(context.Tags(), IsEmpty());
}

TEST(CBaseContext, wraps_its_change_count)
{
    OpenBaseContext context("test");
    context.mChangeCount = 0xFFFFFFFF;
    context.SetTag("x", "1");
    EXPECT_EQ(context.mChangeCount, 0U);
}

TEST(CBaseContext, does_not_count_reading_and_makes_nothing_by_it)
{
    OpenBaseContext context("test");
    EXPECT_EQ(context.GetTag("x"), "");
    EXPECT_THAT(context.GetTags("x"), IsEmpty());
    EXPECT_FALSE(context.TagMatches("x", "1"));
    EXPECT_FALSE(context.TagMatches("x", 1));
    EXPECT_EQ(context.SubsystemType(), 0);
    EXPECT_THAT(context.Tags(), IsEmpty());
    EXPECT_EQ(context.mChangeCount, 0U);
}

TEST(CBaseContext, deletes_a_tag_by_an_empty_value)
{
    CBaseContext context("test");
    context.SetTag("a", "1");
    context.SetTag("b", "2");
    context.SetTag("A", "");
    EXPECT_EQ(context.Tags(), (TagMap{ { "b", "2" } }));
    context.SetTag("B");
    EXPECT_THAT(context.Tags(), IsEmpty());
}

TEST(CBaseContext, replaces_a_value)
{
    CBaseContext context("test");
    context.SetTag("a", "1");
    context.SetTag("a", "2");
    EXPECT_EQ(context.Tags(), (TagMap{ { "a", "2" } }));
}

TEST(CBaseContext, stores_numbers_in_plain_decimal)
{
    CBaseContext context("test");
    context.SetTag("zero", 0);
    context.SetTag("max", 2147483647);
    context.SetTag("min", -2147483647 - 1);
    EXPECT_EQ(context.GetTag("zero"), "0");
    EXPECT_EQ(context.GetTag("max"), "2147483647");
    EXPECT_EQ(context.GetTag("min"), "-2147483648");
}

TEST(CBaseContext, stores_numbers_ungrouped_whatever_the_global_locale)
{
    class Grouping : public std::numpunct<char>
    {
        char do_thousands_sep() const override { return ','; }
        std::string do_grouping() const override { return "\3"; }
    };
    const std::locale former = std::locale::global(std::locale(std::locale::classic(), new Grouping));
    CBaseContext context("test");
    context.SetTag("n", 1234567);
    EXPECT_EQ(context.GetTag("n"), "1234567");
    EXPECT_TRUE(context.TagMatches("n", 1234567));
    std::locale::global(former);
}

TEST(CBaseContext, keeps_texts_with_embedded_nulls)
{
    const std::string key("A\0B", 3);
    const std::string value("x\0y", 3);
    CBaseContext context("test");
    context.SetTag(key, value);
    EXPECT_EQ(context.GetTag(std::string("a\0b", 3)), value);
    EXPECT_EQ(context.GetTag("a"), "");
    EXPECT_FALSE(context.TagMatches(key, "x"));
    EXPECT_TRUE(context.TagMatches(key, value));
}

TEST(CBaseContext, goes_through_the_virtual_text_form_with_each_write)
{
    RecordingContext<CBaseContext> context("test");
    context.SetTag("A");
    context.SetTag("A", 1);
    context.SetSubsystemType(3);
    context.Parse("B=2");
    EXPECT_THAT(context.mCalls, ElementsAre("set A=", "set A=1", "set subsystemtype=3", "set B=2"));
}

TEST(CBaseContext, constructs_through_its_own_operation)
{
    const RecordingContext<CBaseContext> context("test", 4);
    EXPECT_THAT(context.mCalls, IsEmpty());
    EXPECT_EQ(context.Tags(), (TagMap{ { "subsystemtype", "4" } }));
}

TEST(CBaseContext, reads_its_subsystem_type_through_the_virtual_operation)
{
    RecordingContext<CBaseContext> context("test");
    context.SubsystemType();
    EXPECT_THAT(context.mCalls, ElementsAre("get subsystemtype"));
}

TEST(CBaseContext, does_not_match_what_a_derived_class_computes)
{
    RecordingContext<CBaseContext> context("test");
    EXPECT_EQ(context.GetTag("computed"), "5");
    context.mCalls.clear();
    EXPECT_FALSE(context.TagMatches("computed", "5"));
    EXPECT_FALSE(context.TagMatches("computed", 5));
    EXPECT_TRUE(context.TagMatches("computed", ""));
    EXPECT_THAT(context.mCalls, IsEmpty());
}

TEST(CBaseContext, does_not_write_through_the_virtual_operation_in_SetTags)
{
    RecordingContext<CBaseContext> context("test");
    context.SetTag("a", "1");
    context.mCalls.clear();
    context.SetTags("a", "2");
    context.SetTags("a", "");
    EXPECT_THAT(context.mCalls, IsEmpty());
}

TEST(CBaseContext, is_asked_for_absence_by_an_empty_value)
{
    CBaseContext context("test");
    EXPECT_TRUE(context.TagMatches("absent", ""));
    context.SetTag("absent", "no more");
    EXPECT_FALSE(context.TagMatches("absent", ""));
}

TEST(CBaseContext, does_not_let_an_absent_tag_pass_for_zero)
{
    CBaseContext context("test");
    EXPECT_FALSE(context.TagMatches("x", 0));
    context.SetTag("x", 0);
    EXPECT_TRUE(context.TagMatches("x", 0));
    EXPECT_TRUE(context.TagMatches("x", "0"));
}

TEST(CBaseContext, matches_numbers_as_they_are_read)
{
    CBaseContext context("test");
    context.SetTag("junk", "abc");
    context.SetTag("padded", " 007x");
    context.SetTag("negative", "-3");
    context.SetTag("unsigned", "4294967295");
    EXPECT_TRUE(context.TagMatches("junk", 0));
    EXPECT_FALSE(context.TagMatches("junk", 1));
    EXPECT_TRUE(context.TagMatches("padded", 7));
    EXPECT_TRUE(context.TagMatches("negative", -3));
    EXPECT_FALSE(context.TagMatches("negative", 3));
    EXPECT_TRUE(context.TagMatches("unsigned", -1));
}

class ContextWithIndices : public testing::Test
{
protected:
    ContextWithIndices()
    {
        mContext.SetTag("index1", "5");
        mContext.SetTag("index2", "6");
        mContext.SetTag("num_indices", "2");
        mContext.mChangeCount = 0;
    }

    OpenBaseContext mContext{ "test" };
};

TEST_F(ContextWithIndices, gets_the_values_of_the_keys_that_contain_a_part)
{
    EXPECT_THAT(mContext.GetTags("index"), ElementsAre("5", "6"));
    EXPECT_THAT(mContext.GetTags("INDE"), ElementsAre("5", "6"));
    EXPECT_THAT(mContext.GetTags("ind"), ElementsAre("5", "6", "2"));
    EXPECT_THAT(mContext.GetTags(""), ElementsAre("5", "6", "2"));
    EXPECT_THAT(mContext.GetTags("none"), IsEmpty());
    EXPECT_THAT(mContext.GetTags("5"), IsEmpty());   // that is a value
}

TEST_F(ContextWithIndices, gets_them_in_the_byte_order_of_the_keys)
{
    mContext.SetTag("index10", "7");
    mContext.SetTag("my_index", "8");
    EXPECT_THAT(mContext.GetTags("index"), ElementsAre("5", "7", "6", "8"));
}

TEST_F(ContextWithIndices, deletes_all_that_contain_a_part)
{
    mContext.SetTags("Index", "");
    EXPECT_EQ(mContext.Tags(), (TagMap{ { "num_indices", "2" } }));
    EXPECT_EQ(mContext.mChangeCount, 2U);
}

TEST_F(ContextWithIndices, sets_all_that_contain_a_part)
{
    mContext.SetTags("index", "Nine");
    EXPECT_EQ(mContext.Tags(), (TagMap{ { "index1", "Nine" }, { "index2", "Nine" }, { "num_indices", "2" } }));
    EXPECT_EQ(mContext.mChangeCount, 2U);
}

TEST_F(ContextWithIndices, counts_nothing_where_nothing_matches)
{
    mContext.SetTags("none", "1");
    mContext.SetTags("none", "");
    EXPECT_EQ(mContext.mChangeCount, 0U);
    EXPECT_EQ(mContext.Tags().size(), 3U);
}

TEST_F(ContextWithIndices, takes_an_empty_part_for_every_key)
{
    mContext.SetTags("", "1");
    EXPECT_EQ(mContext.Tags(), (TagMap{ { "index1", "1" }, { "index2", "1" }, { "num_indices", "1" } }));
    EXPECT_EQ(mContext.mChangeCount, 3U);
    mContext.SetTags("", "");
    EXPECT_THAT(mContext.Tags(), IsEmpty());
    EXPECT_EQ(mContext.mChangeCount, 6U);
}

TEST_F(ContextWithIndices, wraps_its_change_count_in_SetTags)
{
    mContext.mChangeCount = 0xFFFFFFFF;
    mContext.SetTags("index", "");
    EXPECT_EQ(mContext.mChangeCount, 1U);
}

TEST(CBaseContext, parses_pairs)
{
    CBaseContext context("test");
    context.SetTag("c", "kept");
    context.SetTag("d", "deleted");
    context.Parse("a=1;b=2=3;c;;d=");
    EXPECT_EQ(context.Tags(), (TagMap{ { "a", "1" }, { "b", "2=3" }, { "c", "kept" } }));
}

TEST(CBaseContext, trims_nothing_in_a_parsed_text)
{
    CBaseContext context("test");
    context.Parse("A = 1; b=2 ;\n c=3");
    EXPECT_EQ(context.Tags(), (TagMap{ { "a ", " 1" }, { " b", "2 " }, { "\n c", "3" } }));
}

TEST(CBaseContext, takes_an_empty_key_in_a_parsed_text)
{
    CBaseContext context("test");
    context.Parse("=x");
    EXPECT_EQ(context.Tags(), (TagMap{ { "", "x" } }));
    EXPECT_EQ(context.GetTag(""), "x");
    context.Parse("=");
    EXPECT_THAT(context.Tags(), IsEmpty());
}

TEST(CBaseContext, finds_nothing_in_a_text_without_pairs)
{
    OpenBaseContext context("test");
    for (const char * text : { "", ";", ";;;", "a", "a;b", " " })
        context.Parse(text);
    EXPECT_THAT(context.Tags(), IsEmpty());
    EXPECT_EQ(context.mChangeCount, 0U);
}

TEST(CBaseContext, takes_the_last_of_several_pairs_of_one_key)
{
    CBaseContext context("test");
    context.Parse("a=1;A=2;a==;");
    EXPECT_EQ(context.Tags(), (TagMap{ { "a", "=" } }));
}

TEST(CBaseContext, parses_a_text_with_an_embedded_null)
{
    CBaseContext context("test");
    context.Parse(std::string("a=1\0;b=2", 8));
    EXPECT_EQ(context.Tags(), (TagMap{ { "a", std::string("1\0", 2) }, { "b", "2" } }));
}

TEST(CBaseContext, traces_what_it_sets_and_deletes)
{
    DebugCapture debug;
    CBaseContext context("test");
    context.SetTag("Key", "100%s");
    context.SetTag("KEY", "");
    context.SetTag("key", "");
    EXPECT_THAT(debug.TextsOf("VrexZynConfigTools::CBaseContext::SetTag"),
        ElementsAre("Context key Set \"key\" = \"100%s\"", "Delete Key key"));
    EXPECT_EQ(debug.Lines().front().mGroup, GROUP_CORE_CLASSES);
}

TEST(CBaseContext, traces_the_results_of_reading)
{
    CBaseContext context("test");
    context.SetTag("a", "1");
    DebugCapture debug;
    context.GetTag("a");
    context.TagMatches("a", 1);
    context.SubsystemType();
    EXPECT_EQ(debug.Count("<- VrexZynConfigTools::CBaseContext::GetTag [returning \"1\"]"), 2U);
    EXPECT_EQ(debug.Count("<- VrexZynConfigTools::CBaseContext::TagMatches [returning true]"), 1U);
    EXPECT_EQ(debug.Count("<- VrexZynConfigTools::CBaseContext::SubsystemType [returning 0]"), 1U);
}

TEST(CNullContext, holds_nothing)
{
    CNullContext & context = CNullContext::Ref();
    context.SetTag("x", "1");
    context.SetTag("x", 1);
    context.SetTag("x");
    context.SetTags("", "1");
    context.Parse("x=1");
    EXPECT_EQ(context.Name(), "null");
    EXPECT_FALSE(context.IsValid());
    EXPECT_EQ(context.GetTag("x"), "");
    EXPECT_THAT(context.GetTags(""), IsEmpty());
}

TEST(CNullContext, matches_nothing_also_no_empty_value)
{
    EXPECT_FALSE(CNullContext::Ref().TagMatches("x", ""));
    EXPECT_FALSE(CNullContext::Ref().TagMatches("x", "1"));
    EXPECT_FALSE(CNullContext::Ref().TagMatches("x", 0));
    EXPECT_EQ(CNullContext::Ref().GetTag("x"), "");
}

TEST(CBaseContext, shows_in_the_trace_that_its_tags_are_read)
{
    const CBaseContext context("test");
    DebugCapture debug;
    context.Tags();
    EXPECT_EQ(debug.Count("-> VrexZynConfigTools::CBaseContext::Tags"), 1U);
}

TEST(CNullContext, is_one_object_that_can_be_copied)
{
    EXPECT_EQ(&CNullContext::Ref(), &CNullContext::Ref());
    EXPECT_FALSE(std::is_default_constructible_v<CNullContext>);

    const CNullContext copy(CNullContext::Ref());
    EXPECT_NE(&copy, &CNullContext::Ref());
    const std::unique_ptr<IConfigContext> clone(CNullContext::Ref().Clone());
    EXPECT_NE(clone.get(), &CNullContext::Ref());
    EXPECT_NE(dynamic_cast<CNullContext *>(clone.get()), nullptr);
    EXPECT_EQ(clone->Name(), "null");
    EXPECT_FALSE(clone->IsValid());
}

TEST(CNullContext, keeps_its_name_when_it_is_moved)
{
    CNullContext moved(std::move(CNullContext::Ref()));
    moved = std::move(CNullContext::Ref());
    EXPECT_EQ(moved.Name(), "null");
    EXPECT_EQ(CNullContext::Ref().Name(), "null");
}

}   // namespace
}   // namespace VrexZynConfigTools
