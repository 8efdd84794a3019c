// A subsystem's own context, and what it tells of itself.

#include "subsystem_fixture.h"

#include <support/foreign_contexts.h>
#include <support/recording_writer.h>

#include <messages/messages.h>

#include <map>
#include <string>
#include <type_traits>
#include <vector>

using namespace VrexZynConfigTools;
using namespace VrexZynConfigTools::support;
using Tags = std::map<std::string, std::string>;
using Calls = std::vector<std::string>;

namespace {

using CSubsystemConfigContext = SubsystemTest;

static_assert(!std::is_copy_constructible_v<CSubsystemConfig> && !std::is_copy_assignable_v<CSubsystemConfig>);

TEST_F(CSubsystemConfigContext, is_a_copy_of_the_one_given)
{
    CZynContext given;
    given.Parse("chip=abc;device=15");
    CSubsystemConfig subsystem(given, nullptr);
    given.SetChip("changed");

    EXPECT_NE(&subsystem.Context(), &given);
    EXPECT_EQ(subsystem.Context().GetTag("chip"), "abc");
    subsystem.Context().SetTag("store", 7);
    EXPECT_EQ(given.GetTag("store"), "");
}

TEST_F(CSubsystemConfigContext, is_of_the_class_that_was_given)
{
    CZynContext zyn;
    zyn.Parse("chip=abc;subsystemtype=2;layernumber=4");
    CSubsystemConfig ofZyn(zyn, nullptr);
    EXPECT_NE(dynamic_cast<CZynContext *>(&ofZyn.Context()), nullptr);
    EXPECT_EQ(ofZyn.Context().GetTag("subsystemkeybylayer"), "abc| |2|4");

    CBaseContext base("named", 3);
    CSubsystemConfig ofBase(base, nullptr);
    EXPECT_EQ(dynamic_cast<CZynContext *>(&ofBase.Context()), nullptr);
    EXPECT_EQ(ofBase.Context().Name(), "named");
    EXPECT_EQ(ofBase.Type(), 3);
}

TEST_F(CSubsystemConfigContext, type_is_fixed_at_construction)
{
    CZynContext context;
    EXPECT_EQ(CSubsystemConfig(context, nullptr).Type(), 0);
    context.SetSubsystemType(10);
    CSubsystemConfig subsystem(context, nullptr);
    subsystem.Context().SetSubsystemType(4);

    EXPECT_EQ(subsystem.Type(), 10);
}

TEST_F(CSubsystemConfigContext, type_keeps_the_low_16_bits)
{
    CZynContext context;
    context.SetSubsystemType(-1);
    EXPECT_EQ(CSubsystemConfig(context, nullptr).Type(), 65535);
    context.SetSubsystemType(65538);
    EXPECT_EQ(CSubsystemConfig(context, nullptr).Type(), 2);
    context.SetTag("subsystemtype", "junk");
    EXPECT_EQ(CSubsystemConfig(context, nullptr).Type(), 0);
}

TEST_F(CSubsystemConfigContext, type_is_what_a_derived_context_computes)
{
    ComputingContext<CZynContext> context;
    context.SetSubsystemType(1);
    context.Computes("subsystemtype", "6");

    EXPECT_EQ(CSubsystemConfig(context, nullptr).Type(), 6);
}

TEST_F(CSubsystemConfigContext, merge_fills_gaps_and_changes_no_value)
{
    mSubsystem.Context().Parse("chip=abc;device=15");
    CZynContext source;
    source.Parse("chip=xyz;store=3;Extra=Value");
    mSubsystem.MergeContext(source, false);

    EXPECT_EQ(mSubsystem.Context().Tags(),
        (Tags{ { "chip", "abc" }, { "device", "15" }, { "store", "3" }, { "extra", "Value" } }));
}

TEST_F(CSubsystemConfigContext, merge_with_overwrite_takes_every_tag_of_the_source)
{
    mSubsystem.Context().Parse("chip=abc;device=15");
    CZynContext source;
    source.Parse("chip=xyz;store=3");
    mSubsystem.MergeContext(source, true);

    EXPECT_EQ(mSubsystem.Context().Tags(), (Tags{ { "chip", "xyz" }, { "device", "15" }, { "store", "3" } }));
}

TEST_F(CSubsystemConfigContext, merge_bears_an_empty_key_and_itself)
{
    CBaseContext source("source");
    source.Parse("=x;a=b");
    mSubsystem.MergeContext(source, false);
    mSubsystem.MergeContext(mSubsystem.Context(), true);
    mSubsystem.MergeContext(mSubsystem.Context(), false);

    EXPECT_EQ(mSubsystem.Context().Tags(), (Tags{ { "", "x" }, { "a", "b" } }));
}

TEST_F(CSubsystemConfigContext, merge_changes_the_computed_keys)
{
    CZynContext source;
    source.Parse("chip=abc;layernumber=2");
    EXPECT_EQ(mSubsystem.Context().GetTag("subsystemkeybylayer"), " | | | ");
    mSubsystem.MergeContext(source, false);

    EXPECT_EQ(mSubsystem.Context().GetTag("subsystemkeybylayer"), "abc| | |2");
}

using CSubsystemConfigSize = SubsystemTest;

TEST_F(CSubsystemConfigSize, is_the_sum_over_all_elements)
{
    EXPECT_EQ(mSubsystem.Size(), 0U);
    Add(AnElement(1).Number(1).Number(2).Release());                            // 2 and 8
    Add(AnElement(2).Text("abc").Release());                                    // 2 and 3
    Add(AnElement(2).Number(7).Release(), "num_indices=1;index1=1;index2=2");   // 8 and 4
    Add(new CElementEnum(3, "enum", true));                                     // nothing, always
    EXPECT_EQ(mSubsystem.Size(), 10U + 5U + 12U);

    mSubsystem.RemoveElement(1U, nullptr);
    EXPECT_EQ(mSubsystem.Size(), 17U);
}

TEST_F(CSubsystemConfigSize, is_wider_than_32_bits)
{
    Add(Traced(1, 1, "", 0xFFFFFFFFU));
    Add(Traced(2, 2, "", 0xFFFFFFFFU));

    EXPECT_EQ(mSubsystem.Size(), 2 * (std::uint64_t{ 0xFFFFFFFF } + 2));
}

using CSubsystemConfigIsEmpty = SubsystemTest;

TEST_F(CSubsystemConfigIsEmpty, looks_at_the_first_element_with_the_number_only)
{
    Add(Traced(1, 100, "", 0));
    Add(Traced(2, 100, "", 5));
    Add(Traced(3, 200, "", 5));
    Add(Traced(4, 200, "", 0));

    EXPECT_TRUE(mSubsystem.ElementsIsEmpty(100));
    EXPECT_FALSE(mSubsystem.ElementsIsEmpty(200));
    EXPECT_TRUE(mSubsystem.ElementsIsEmpty(300));
}

TEST_F(CSubsystemConfigIsEmpty, looks_at_rows_too)
{
    Add(TracedRow(1, 100, { 1 }));
    EXPECT_FALSE(mSubsystem.ElementsIsEmpty(100));
}

TEST_F(CSubsystemConfigIsEmpty, counts_bytes_and_not_payloads)
{
    Add(AnElement(1).Text("").Release());   // one payload of no bytes
    Add(new CElementStruct(2, "", true));

    EXPECT_TRUE(mSubsystem.ElementsIsEmpty(1));
    EXPECT_TRUE(mSubsystem.ElementsIsEmpty(2));
}

class CSubsystemConfigWrite : public SubsystemTest
{
protected:
    ~CSubsystemConfigWrite() override
    {
        CTheMsgHnd::GetAppropriateHandler(GROUP_FRAMEWORK, "test", false).ClearError(GROUP_FRAMEWORK);
    }
    CZynContext mContext;
    RecordingWriter mWriter;
};

TEST_F(CSubsystemConfigWrite, of_no_elements_is_true_and_calls_nothing)
{
    EXPECT_TRUE(mSubsystem.Write(mWriter, mContext));
    EXPECT_TRUE(mWriter.Calls().empty());
}

TEST_F(CSubsystemConfigWrite, gives_the_elements_in_order_and_passes_over_the_number_0)
{
    AddPlain(7);
    AddPlain(0, "zero");
    AddPlain(3);

    EXPECT_TRUE(mSubsystem.Write(mWriter, mContext));
    EXPECT_EQ(mWriter.Calls(), (Calls{ "StartElement", "WriteKeyId 7", "WritePayload 6:7", "EndElement",
                                   "StartElement", "WriteKeyId 3", "WritePayload 6:3", "EndElement" }));
    EXPECT_FALSE(mSubsystem.Element(7U).HasChanged());
    EXPECT_TRUE(mSubsystem.Element(0U).HasChanged());
}

TEST_F(CSubsystemConfigWrite, uses_the_context_that_it_is_given)
{
    mContext.SetTag("mark", "given");
    mSubsystem.Context().SetTag("mark", "own");
    AddPlain(7);
    RecordingWriter writer({ "mark" });

    mSubsystem.Write(writer, mContext);
    EXPECT_EQ(writer.Calls().at(0), "StartElement mark=given");
}

TEST_F(CSubsystemConfigWrite, stops_after_the_element_that_failed)
{
    AddPlain(7);
    AddPlain(3);
    mWriter.FailsIn("WriteKeyId", "disk full");

    EXPECT_FALSE(mSubsystem.Write(mWriter, mContext));
    EXPECT_EQ(mWriter.Calls(), (Calls{ "StartElement", "WriteKeyId 7", "WritePayload 6:7", "EndElement" }));
    EXPECT_TRUE(mSubsystem.Element(3U).HasChanged());
}

TEST_F(CSubsystemConfigWrite, of_the_number_0_alone_is_true_whatever_error_stands)
{
    AddPlain(0);
    CTheMsgHnd::GetAppropriateHandler(GROUP_FRAMEWORK, "test", false).SetErrorMsg(0, "earlier");

    EXPECT_TRUE(mSubsystem.Write(mWriter, mContext));
    AddPlain(1);
    EXPECT_FALSE(mSubsystem.Write(mWriter, mContext));
}

}   // namespace
