#include "opencontext.h"

#include <configtools/zyncontext.h>
#include <support/debug_capture.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace VrexZynConfigTools {
namespace {

using support::DebugCapture;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr char BY_LAYER[] = "subsystemkeybylayer";
constexpr char BY_STORE[] = "subsystemkeybystore";

TEST(CZynContext, begins_empty_under_its_name)
{
    CZynContext context;
    EXPECT_EQ(context.Name(), "zyncontext");
    EXPECT_TRUE(context.IsValid());
    EXPECT_THAT(context.Tags(), IsEmpty());
    EXPECT_EQ(ChangeCount(context), 0U);
}

TEST(CZynContext, has_typed_accessors_for_its_tags)
{
    CZynContext context;
    context.SetChip("Abc");
    context.SetDevice(15);
    context.SetStore(3);
    context.SetOrder(65535);
    context.SetLayerNumber(-4);
    context.SetFileType(5);
    context.IgnoreHeader(true);
    EXPECT_EQ(
        context.Tags(), (TagMap{ { "chip", "Abc" }, { "device", "15" }, { "store", "3" }, { "order", "65535" },
                            { "layernumber", "-4" }, { "filetype", "5" }, { "ignoreheader", "true" } }));
    EXPECT_EQ(context.Chip(), "Abc");
    EXPECT_EQ(context.Device(), 15);
    EXPECT_EQ(context.Store(), 3);
    EXPECT_EQ(context.Order(), 65535);
    EXPECT_EQ(context.LayerNumber(), -4);
    EXPECT_EQ(context.FileType(), 5);
    EXPECT_TRUE(context.IgnoreHeader());
}

TEST(CZynContext, reads_absent_tags_as_nothing)
{
    CZynContext context;
    EXPECT_EQ(context.Chip(), "");
    EXPECT_EQ(context.SubsysFwVersion(), "");
    EXPECT_EQ(context.Device(), 0);
    EXPECT_EQ(context.Store(), 0);
    EXPECT_EQ(context.Order(), 0);
    EXPECT_EQ(context.LayerNumber(), 0);
    EXPECT_EQ(context.FileType(), 0);
    EXPECT_FALSE(context.IgnoreHeader());
}

TEST(CZynContext, deletes_the_chip_by_an_empty_text)
{
    CZynContext context;
    context.SetChip("abc");
    context.SetChip("");
    EXPECT_THAT(context.Tags(), IsEmpty());
}

TEST(CZynContext, keeps_the_low_16_bits_of_the_order)
{
    CZynContext context;
    context.SetTag("order", "65537");
    EXPECT_EQ(context.Order(), 1);
    context.SetTag("order", "-1");
    EXPECT_EQ(context.Order(), 65535);
    context.SetTag("order", "abc");
    EXPECT_EQ(context.Order(), 0);
}

TEST(CZynContext, reads_the_ignored_header_without_regard_to_case)
{
    CZynContext context;
    context.IgnoreHeader(false);
    EXPECT_EQ(context.GetTag("ignoreheader"), "false");
    EXPECT_FALSE(context.IgnoreHeader());
    context.SetTag("ignoreheader", "TRUE");
    EXPECT_TRUE(context.IgnoreHeader());
    context.SetTag("ignoreheader", "1");
    EXPECT_FALSE(context.IgnoreHeader());
}

TEST(CZynContext, does_not_store_a_firmware_version_by_its_setter)
{
    CZynContext context;
    context.SetSubsysFwVersion("1.2");
    EXPECT_EQ(context.SubsysFwVersion(), "");
    EXPECT_EQ(ChangeCount(context), 0U);

    context.SetTag("subsysfwversion", "1.2");
    EXPECT_EQ(context.SubsysFwVersion(), "1.2");
    context.SetSubsysFwVersion("");
    EXPECT_EQ(context.SubsysFwVersion(), "1.2");
    EXPECT_EQ(context.GetTag(BY_STORE), " | | | | ");
    EXPECT_EQ(context.GetTag(BY_LAYER), " | | | ");
}

TEST(CZynContext, goes_through_the_virtual_operations_in_its_accessors)
{
    RecordingContext<CZynContext> context;
    context.SetChip("a");
    context.SetDevice(1);
    context.SetStore(2);
    context.SetOrder(3);
    context.SetLayerNumber(4);
    context.SetFileType(5);
    context.IgnoreHeader(false);
    context.SetSubsysFwVersion("1.2");
    EXPECT_THAT(context.mCalls, ElementsAre("set chip=a", "set device=1", "set store=2", "set order=3",
                                    "set layernumber=4", "set filetype=5", "set ignoreheader=false"));

    context.mCalls.clear();
    context.Chip();
    context.SubsysFwVersion();
    context.Device();
    context.Store();
    context.Order();
    context.LayerNumber();
    context.FileType();
    context.IgnoreHeader();
    EXPECT_THAT(context.mCalls, ElementsAre("get chip", "get subsysfwversion", "get device", "get store",
                                    "get order", "get layernumber", "get filetype"));
}

TEST(CZynContext, computes_both_subsystem_keys)
{
    CZynContext context;
    EXPECT_EQ(context.GetTag(BY_STORE), " | | | | ");
    EXPECT_EQ(context.GetTag(BY_LAYER), " | | | ");

    context.SetChip("abc");
    context.SetSubsystemType(2);
    context.SetDevice(15);
    context.SetStore(3);
    context.SetLayerNumber(4);
    EXPECT_EQ(context.GetTag(BY_STORE), "abc| |2|15|3");
    EXPECT_EQ(context.GetTag(BY_LAYER), "abc| |2|4");
}

TEST(CZynContext, has_a_blank_for_each_missing_field)
{
    CZynContext context;
    context.SetStore(3);
    EXPECT_EQ(context.GetTag(BY_STORE), " | | | |3");
    context.SetDevice(0);
    EXPECT_EQ(context.GetTag(BY_STORE), " | | |0|3");
    context.SetTag("store");
    context.SetSubsystemType(1);
    EXPECT_EQ(context.GetTag(BY_STORE), " | |1|0| ");
    EXPECT_EQ(context.GetTag(BY_LAYER), " | |1| ");
}

TEST(CZynContext, reads_the_stored_tags_for_its_keys)
{
    RecordingContext<CZynContext> context;
    context.SetChip("abc");
    context.mCalls.clear();
    EXPECT_EQ(context.CZynContext::GetTag(BY_LAYER), "abc| | | ");
    EXPECT_EQ(context.CZynContext::GetTag(BY_STORE), "abc| | | | ");
    EXPECT_THAT(context.mCalls, IsEmpty());
}

TEST(CZynContext, changes_its_by_layer_key_with_its_tags)
{
    CZynContext context;
    context.SetLayerNumber(2);
    EXPECT_EQ(context.GetTag(BY_LAYER), " | | |2");
    EXPECT_EQ(context.GetTag(BY_LAYER), " | | |2");
    context.SetLayerNumber(3);
    EXPECT_EQ(context.GetTag(BY_LAYER), " | | |3");
    context.SetLayerNumber(3);
    EXPECT_EQ(context.GetTag(BY_LAYER), " | | |3");
    context.SetTags("layer", "4");
    EXPECT_EQ(context.GetTag(BY_LAYER), " | | |4");
    context.SetTags("layer", "");
    EXPECT_EQ(context.GetTag(BY_LAYER), " | | | ");
    context.Parse("chip=abc;store=3");
    EXPECT_EQ(context.GetTag(BY_LAYER), "abc| | | ");
    EXPECT_EQ(context.GetTag(BY_STORE), "abc| | | |3");
}

TEST(CZynContext, keeps_its_by_layer_key_until_a_write_is_counted)
{
    OpenZynContext context;
    context.SetLayerNumber(2);
    EXPECT_EQ(context.GetTag(BY_LAYER), " | | |2");
    context.mTags["layernumber"] = "9";   // past the counter
    EXPECT_EQ(context.GetTag(BY_LAYER), " | | |2");
    context.SetTag("other", "1");
    EXPECT_EQ(context.GetTag(BY_LAYER), " | | |9");
}

TEST(CZynContext, builds_its_by_layer_key_anew_while_nothing_was_counted)
{
    OpenZynContext context;
    EXPECT_EQ(context.GetTag(BY_LAYER), " | | | ");
    context.mTags["layernumber"] = "9";
    EXPECT_EQ(context.GetTag(BY_LAYER), " | | |9");
    context.mTags["layernumber"] = "8";
    EXPECT_EQ(context.GetTag(BY_LAYER), " | | |8");
}

TEST(CZynContext, computes_for_the_exact_spelling_only)
{
    CZynContext context;
    context.SetChip("abc");
    EXPECT_EQ(context.GetTag("SubsystemKeyByStore"), "");
    EXPECT_EQ(context.GetTag("SUBSYSTEMKEYBYLAYER"), "");
    context.SetTag(BY_STORE, "stored");
    EXPECT_EQ(context.GetTag("SubsystemKeyByStore"), "stored");
    EXPECT_EQ(context.GetTag(BY_STORE), "abc| | | | ");
}

TEST(CZynContext, does_not_match_or_list_its_computed_tags)
{
    CZynContext context;
    context.SetChip("abc");
    for (const char * key : { BY_STORE, BY_LAYER }) {
        EXPECT_FALSE(context.TagMatches(key, context.GetTag(key)));
        EXPECT_TRUE(context.TagMatches(key, ""));
    }
    EXPECT_THAT(context.GetTags("subsystemkey"), IsEmpty());
    EXPECT_EQ(context.Tags(), (TagMap{ { "chip", "abc" } }));

    context.SetTag(BY_STORE, "abc| | | | ");
    EXPECT_TRUE(context.TagMatches(BY_STORE, "ABC| | | | "));
}

TEST(CZynContext, traces_its_keys)
{
    CZynContext context;
    context.SetChip("abc");
    DebugCapture debug;
    context.GetTag(BY_LAYER);
    EXPECT_EQ(debug.Count("<- VrexZynConfigTools::CZynContext::GetTag [returning \"abc| | | \"]"), 1U);
    EXPECT_EQ(
        debug.Count("<- VrexZynConfigTools::CZynContext::GetSubsystemKeyByLayer [returning \"abc| | | \"]"),
        1U);
    EXPECT_EQ(debug.Lines().front().mGroup, GROUP_FRAMEWORK);
}

}   // namespace
}   // namespace VrexZynConfigTools
