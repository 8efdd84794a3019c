// Finding an element across subsystems and layers.

#include "layered_chip_fixture.h"

#include <support/foreign_elements.h>
#include <support/grouping_locale.h>

using namespace VrexZynConfigTools;
using namespace VrexZynConfigTools::support;

namespace {

using CChipConfigElement = LayeredChipTest;

TEST_F(CChipConfigElement, without_a_filter_is_that_of_the_layer)
{
    EXPECT_EQ(Find(100, "chip=c;subsystemtype=1;layernumber=1"), 1);
    EXPECT_EQ(Find(100, "chip=c;subsystemtype=1;layernumber=2"), NULL_ELEMENT);
    EXPECT_EQ(Find(100, "chip=c;subsystemtype=1;layernumber=3"), 3);
    EXPECT_EQ(Find(100, "chip=c;subsystemtype=2;layernumber=2"), 22);
    EXPECT_EQ(Find(100, "chip=c;subsystemtype=1;layernumber=4"), NULL_ELEMENT);
    EXPECT_EQ(Find(100, "chip=c;subsystemtype=3;layernumber=1"), NULL_ELEMENT);
}

TEST_F(CChipConfigElement, is_found_by_number_and_by_name)
{
    EXPECT_EQ(Find("MID", "chip=c;subsystemtype=1;layernumber=2"), 2);
    EXPECT_EQ(Find("0x65", "chip=c;subsystemtype=1;layernumber=2"), 2);
    EXPECT_EQ(Find("mid", "chip=c;subsystemtype=1;layerfilter=15"), 2);
    EXPECT_EQ(Find("101", "chip=c;subsystemtype=1;layerfilter=15"), 2);
    EXPECT_EQ(Find("none", "chip=c;subsystemtype=1;layerfilter=15"), NULL_ELEMENT);
}

TEST_F(CChipConfigElement, needs_the_chip_of_the_key)
{
    EXPECT_EQ(Find(100, "subsystemtype=1;layernumber=1"), NULL_ELEMENT);
    EXPECT_EQ(Find(100, "chip=C;subsystemtype=1;layernumber=1"), NULL_ELEMENT);
    EXPECT_EQ(Find(100, "chip=c;subsystemtype=01;layernumber=1"), NULL_ELEMENT);
    EXPECT_EQ(Find(100, "subsystemtype=1;layerfilter=15"), NULL_ELEMENT);
}

TEST_F(CChipConfigElement, with_a_filter_is_the_topmost_from_there_down)
{
    EXPECT_EQ(FindFiltered(100, "15"), 3);
    EXPECT_EQ(FindFiltered(100, "3"), 3);
    EXPECT_EQ(FindFiltered(100, "2"), 1);
    EXPECT_EQ(FindFiltered(100, "1"), 1);
    EXPECT_EQ(FindFiltered(101, "15"), 2);
    EXPECT_EQ(FindFiltered(101, "1"), NULL_ELEMENT);
    EXPECT_EQ(FindFiltered(102, "15"), 11);
    EXPECT_EQ(FindFiltered(103, "15"), NULL_ELEMENT);
}

TEST_F(CChipConfigElement, with_a_filter_of_no_number_is_that_of_layer_1)
{
    for (const char * filter :
        { "abc", "0", "-1", "-3", "-99", "-40000", " ", "x5", "-", "0x5", "-99999999999" }) {
        EXPECT_EQ(FindFiltered(100, filter), 1) << filter;
        EXPECT_EQ(FindFiltered(101, filter), NULL_ELEMENT) << filter;
    }
}

TEST_F(CChipConfigElement, with_a_filter_above_15_starts_at_15)
{
    Read("chip=c", ASubsystem(1).Tagged("layernumber=15").Holding(Traced(15, 100)),
        ASubsystem(1).In(CUR_CFG, 1).Tagged("layernumber=16").Holding(Traced(16, 100)));
    for (const char * filter : { "15", "16", "99", "300", "32767", "32768", "40000", "99999999999" })
        EXPECT_EQ(FindFiltered(100, filter), 15) << filter;
    EXPECT_EQ(FindFiltered(100, "14"), 3);
}

TEST_F(CChipConfigElement, with_a_filter_reads_it_as_a_stream_does)
{
    for (const char * filter : { "2", " 2", "+2", "2x", "02", "2.9", "\t2", "2 3" }) {
        EXPECT_EQ(FindFiltered(101, filter), 2) << filter;
        EXPECT_EQ(FindFiltered(100, filter), 1) << filter;
    }
    EXPECT_EQ(FindFiltered(100, "012"), 3);   // decimal
}

TEST_F(CChipConfigElement, with_a_filter_knows_no_grouping_of_digits)
{
    const GroupingLocale locale;
    EXPECT_EQ(FindFiltered(100, "2,000"), 1);
}

TEST_F(CChipConfigElement, with_a_filter_ignores_the_layer_of_the_context)
{
    EXPECT_EQ(FindFiltered(100, "15", "layernumber=1"), 3);
    EXPECT_EQ(FindFiltered(102, "15", "layernumber=2"), 11);
}

TEST_F(CChipConfigElement, with_a_filter_and_layer_0_looks_in_layer_0_too)
{
    Read("chip=c", ASubsystem(1).Tagged("layernumber=0").Holding(Traced(30, 200)));

    EXPECT_EQ(FindFiltered(200, "15"), NULL_ELEMENT);
    EXPECT_EQ(FindFiltered(200, "15", "layernumber=1"), NULL_ELEMENT);
    EXPECT_EQ(FindFiltered(200, "15", "layernumber=0"), 30);
    EXPECT_EQ(FindFiltered(200, "1", "layernumber=0"), 30);
    EXPECT_EQ(FindFiltered(200, "abc", "layernumber=junk"), 30);   // reads as 0
    EXPECT_EQ(FindFiltered(100, "1", "layernumber=0"), 1);
}

TEST_F(CChipConfigElement, finds_table_rows_by_their_text)
{
    Read("chip=c", ASubsystem(1).In(EEPROM, 1).Holding(TracedRow(31, 300, "table", { 1, 2 })),
        ASubsystem(1).In(OTP, 1).Holding(TracedRow(32, 300, "table", { 1, 2 })));

    EXPECT_EQ(Find("table.1.2", "chip=c;subsystemtype=1;layerfilter=15"), 31);
    EXPECT_EQ(Find("300.1.2", "chip=c;subsystemtype=1;layerfilter=2"), 32);
    EXPECT_EQ(Find("table", "chip=c;subsystemtype=1;layerfilter=15"), NULL_ELEMENT);
    EXPECT_EQ(FindFiltered(300, "15"), 31);
}

TEST_F(CChipConfigElement, by_an_empty_name_is_that_of_number_0)
{
    Read("chip=c", ASubsystem(1).In(EEPROM, 1).Holding(Traced(33, 0, "zero")).Holding(Traced(34, 7, "")));

    EXPECT_EQ(Find("", "chip=c;subsystemtype=1;layernumber=3"), 33);
    EXPECT_EQ(Find("", "chip=c;subsystemtype=1;layerfilter=15"), 33);
}

TEST_F(CChipConfigElement, leaves_the_context_as_it_was)
{
    CZynContext context;
    context.Parse("chip=c;subsystemtype=1;layerfilter=15;layernumber=7");
    const auto before = context.Tags();
    EXPECT_EQ(UidOf(mChip.Element(101U, context)), 2);
    EXPECT_EQ(UidOf(mChip.Element("low", context)), 11);

    EXPECT_EQ(context.Tags(), before);
    EXPECT_EQ(context.GetTag("subsystemkeybylayer"), "c| |1|7");
}

TEST_F(CChipConfigElement, sees_each_change_of_one_context)
{
    CZynContext context;
    context.Parse("chip=c;subsystemtype=1;layernumber=1");
    EXPECT_EQ(UidOf(mChip.Element(100U, context)), 1);
    context.SetLayerNumber(3);
    EXPECT_EQ(UidOf(mChip.Element(100U, context)), 3);
    context.Parse("subsystemtype=2;layernumber=2");
    EXPECT_EQ(UidOf(mChip.Element(100U, context)), 22);
    context.SetTag("layerfilter", 1);
    EXPECT_EQ(UidOf(mChip.Element(100U, context)), NULL_ELEMENT);
    context.SetTags("layer", "");
    EXPECT_EQ(UidOf(mChip.Element(100U, context)), NULL_ELEMENT);
}

// Equal change counts don't mean equal tags.
TEST_F(CChipConfigElement, sees_tags_that_were_copied_or_moved)
{
    CZynContext layer1;
    layer1.Parse("chip=c;subsystemtype=1;layernumber=1");
    CZynContext layer3;
    layer3.Parse("chip=c;subsystemtype=1;layernumber=3");
    CZynContext context;
    context.Parse("chip=c;subsystemtype=1;layernumber=2");

    EXPECT_EQ(UidOf(mChip.Element(100U, context)), NULL_ELEMENT);
    context = layer1;
    EXPECT_EQ(UidOf(mChip.Element(100U, context)), 1);
    EXPECT_EQ(UidOf(mChip.Element(100U, layer3)), 3);
    context = layer3;
    EXPECT_EQ(UidOf(mChip.Element(100U, context)), 3);
    context = std::move(layer1);
    EXPECT_EQ(UidOf(mChip.Element(100U, context)), 1);
    EXPECT_EQ(UidOf(mChip.Element(100U, layer1)), NULL_ELEMENT);
    const std::unique_ptr<IConfigContext> clone(layer3.Clone());
    EXPECT_EQ(UidOf(mChip.Element(100U, *clone)), 3);
    CZynContext copied(context);
    EXPECT_EQ(UidOf(mChip.Element(100U, copied)), 1);
}

TEST_F(CChipConfigElement, sees_a_filter_that_was_assigned_to_the_base_part)
{
    CZynContext filtered;
    filtered.Parse("chip=c;subsystemtype=1;layerfilter=15");
    CZynContext context;
    context.Parse("chip=c;subsystemtype=1;layerfilter=1");
    EXPECT_EQ(UidOf(mChip.Element(100U, context)), 1);

    context.CBaseContext::operator=(filtered);
    EXPECT_EQ(UidOf(mChip.Element(100U, context)), 3);
}

TEST_F(CChipConfigElement, sees_changes_of_the_configuration)
{
    CZynContext context;
    context.Parse("chip=c;subsystemtype=1;layerfilter=15");
    EXPECT_EQ(UidOf(mChip.Element(101U, context)), 2);
    At("c| |1|2").RemoveElement(101U, nullptr);
    EXPECT_EQ(UidOf(mChip.Element(101U, context)), NULL_ELEMENT);
    Read("chip=c", ASubsystem(1).In(MTP, 1).Holding(Traced(40, 101)));
    EXPECT_EQ(UidOf(mChip.Element(101U, context)), 40);
    mChip.Clear();
    EXPECT_EQ(UidOf(mChip.Element(101U, context)), NULL_ELEMENT);
}

TEST_F(CChipConfigElement, of_two_chips_is_told_apart_by_one_context)
{
    CZynContext context;
    context.Parse("chip=c;subsystemtype=1;layerfilter=15");
    for (int uid = 70; uid < 75; ++uid) {
        CChipConfig other;   // at the address of the former one
        EXPECT_EQ(UidOf(other.Element(100U, context)), NULL_ELEMENT);
        ScriptedReader reader;
        reader.Delivers(ASubsystem(1).In(EEPROM, 1).Holding(Traced(uid, 100)));
        reader.ReadInto(other, "chip=c");
        EXPECT_EQ(UidOf(other.Element(100U, context)), uid);
        EXPECT_EQ(UidOf(mChip.Element(100U, context)), 3);
        EXPECT_EQ(UidOf(other.Element(100U, context)), uid);
    }
}

TEST_F(CChipConfigElement, works_through_the_provider_interface)
{
    const IElementProvider & provider = mChip;
    CZynContext context;
    context.Parse("chip=c;subsystemtype=1;layerfilter=15");

    EXPECT_EQ(UidOf(provider.Element(100U, context)), 3);
    EXPECT_EQ(UidOf(provider.Element("low", context)), 11);
}

// A layer without a subsystem leaves what was found above it, even if that isn't valid; one that lacks the element
// doesn't.
TEST_F(CChipConfigElement, that_is_not_valid_is_the_answer_only_if_no_lower_layer_lacks_it)
{
    const auto invalid = [this](int uid, std::uint32_t id) {
        return (new ForeignRaw(id, "x", AListOf(new TracedPayload(mLives, uid)), true))->Invalid();
    };
    Read("chip=c", ASubsystem(1).In(EEPROM, 1).Holding(invalid(60, 500)),
        ASubsystem(3).In(EEPROM, 1).Holding(invalid(61, 500)));

    EXPECT_EQ(FindFiltered(500, "15"), NULL_ELEMENT);
    EXPECT_EQ(Find(500, "chip=c;subsystemtype=3;layerfilter=15"), 61);
    EXPECT_EQ(Find(500, "chip=c;subsystemtype=1;layernumber=3"), 60);
}

}   // namespace
