// The contest of layers in a filtered read: who wins, as a filtered write shows it.

#include "chip_fixture.h"

#include <support/foreign_contexts.h>

using namespace VrexZynConfigTools;
using namespace VrexZynConfigTools::support;

namespace {

class CChipConfigFilteredRead : public ChipTest
{
protected:
    /// Reads key "k" of type 1 from one store after the other, told to be of these layers, with the filter given. The
    /// elements are numbered from 1. Gives what a filtered write gives then.
    std::string Contest(const std::string & filter, const Texts & layers)
    {
        CChipConfig chip;
        ScriptedReader reader;
        int store = 0;
        for (const std::string & layer : layers) {
            ++store;
            reader.Delivers(ASubsystem(1)
                                .In(EEPROM, store)
                                .Tagged("layernumber=" + layer)
                                .Holding(Traced(store, 100, "k")));
        }
        reader.ReadInto(chip, "layerfilter=" + filter);
        RecordingWriter writer({ "layernumber" });
        CZynContext context;
        context.SetTag("layerfilter", 1);
        mWritten = chip.Write(writer, context);
        for (const std::string & call : writer.Calls()) {
            if (call.rfind("WritePayload", 0) == 0)
                return call.substr(call.find(':') + 1);
        }
        return "nothing";
    }
};

TEST_F(CChipConfigFilteredRead, positive_keeps_the_highest_layer_up_to_it)
{
    EXPECT_EQ(Contest("3", { "1", "2", "3", "4" }), "3 layernumber=3");
    EXPECT_EQ(Contest("3", { "4", "3", "2", "1" }), "2 layernumber=3");
    EXPECT_EQ(Contest("3", { "3", "1", "4", "2" }), "1 layernumber=3");
    EXPECT_EQ(Contest("3", { "2", "4", "1" }), "1 layernumber=2");
    EXPECT_EQ(Contest("3", { "4", "5" }), "nothing");
    EXPECT_EQ(Contest("15", { "15", "14" }), "1 layernumber=15");
}

TEST_F(CChipConfigFilteredRead, negative_keeps_the_lowest_layer)
{
    EXPECT_EQ(Contest("-3", { "3", "1", "2" }), "2 layernumber=1");
    EXPECT_EQ(Contest("-3", { "4", "3" }), "2 layernumber=3");
    EXPECT_EQ(Contest("-3", { "4" }), "nothing");
    EXPECT_EQ(Contest("-3", { "2", "3" }), "1 layernumber=2");
}

TEST_F(CChipConfigFilteredRead, a_tie_goes_to_the_newcomer_of_a_positive_filter)
{
    EXPECT_EQ(Contest("3", { "1", "1" }), "2 layernumber=1");
    EXPECT_EQ(Contest("-3", { "1", "1" }), "1 layernumber=1");
}

TEST_F(CChipConfigFilteredRead, a_filter_that_reads_as_0_admits_layer_0)
{
    for (const char * filter : { "0", "abc", "256", "-256", "-0" }) {
        EXPECT_EQ(Contest(filter, { "1" }), "nothing") << filter;
        EXPECT_EQ(Contest(filter, { "0", "1" }), "1 layernumber=0") << filter;
        EXPECT_EQ(Contest(filter, { "0", "0" }), "2 layernumber=0") << filter;
    }
}

TEST_F(CChipConfigFilteredRead, a_layer_that_is_not_told_is_0)
{
    EXPECT_EQ(Contest("3", { "" }), "1 layernumber=0");
    EXPECT_EQ(Contest("3", { "junk", "1" }), "2 layernumber=1");
    EXPECT_EQ(Contest("-3", { "1", "" }), "2 layernumber=0");
}

TEST_F(CChipConfigFilteredRead, filter_and_layer_keep_8_bits)
{
    EXPECT_EQ(Contest("258", { "2", "3" }), "1 layernumber=2");        // 2
    EXPECT_EQ(Contest("300", { "2", "15" }), "2 layernumber=15");      // 44
    EXPECT_EQ(Contest("254", { "2", "1", "3" }), "2 layernumber=1");   // -2
    EXPECT_EQ(Contest("3", { "259", "2" }), "1 layernumber=3");        // 3
    EXPECT_EQ(Contest("3", { "256", "257" }), "2 layernumber=1");      // 0 and 1
    EXPECT_EQ(Contest("99999999999999999999", { "2", "1" }),
        "2 layernumber=1");   // -1: the low bits of the largest number
}

TEST_F(CChipConfigFilteredRead, the_lowest_filter_has_a_magnitude_above_every_layer)
{
    EXPECT_EQ(Contest("128", { "15", "2" }), "2 layernumber=2");   // -128
    EXPECT_EQ(Contest("-128", { "15" }), "1 layernumber=15");
}

TEST_F(CChipConfigFilteredRead, a_filter_is_read_as_decimal_text)
{
    EXPECT_EQ(Contest(" 3x", { "3", "4" }), "1 layernumber=3");
    EXPECT_EQ(Contest("+3", { "3", "4" }), "1 layernumber=3");
    EXPECT_EQ(Contest("0x3", { "1" }), "nothing");
}

// An entry above the filter, from an earlier read, stays: the filter must reach it, too.
TEST_F(CChipConfigFilteredRead, an_entry_above_the_filter_is_not_replaced)
{
    Read("layerfilter=5", ASubsystem(1).In(EEPROM, 1).Tagged("layernumber=4").Holding(Traced(1, 100, "k")));
    Read("layerfilter=3", ASubsystem(1).In(EEPROM, 2).Tagged("layernumber=3").Holding(Traced(2, 100, "k")));
    Read("layerfilter=-3", ASubsystem(1).In(EEPROM, 3).Tagged("layernumber=1").Holding(Traced(3, 100, "k")));
    EXPECT_EQ(Written("layerfilter=1"), "1/4: 1");

    Read("layerfilter=-4", ASubsystem(1).In(EEPROM, 4).Tagged("layernumber=1").Holding(Traced(4, 100, "k")));
    EXPECT_EQ(Written("layerfilter=1"), "1/1: 4");
}

TEST_F(CChipConfigFilteredRead, keys_compete_by_type_and_key_text)
{
    Read("layerfilter=5", ASubsystem(1).In(OTP, 1).Tagged("layernumber=1").Holding(Traced(1, 100, "k")),
        ASubsystem(1).In(SMEM, 1).Tagged("layernumber=2").Holding(Traced(2, 999, "k")),
        ASubsystem(1).In(EEPROM, 1).Tagged("layernumber=3").Holding(Traced(3, 100, "K")),
        ASubsystem(2).In(OTP, 1).Tagged("layernumber=1").Holding(Traced(4, 100, "k")));

    EXPECT_EQ(Written("layerfilter=5"), "1/2: 2 1/3: 3 2/1: 4");
}

TEST_F(CChipConfigFilteredRead, rows_compete_by_their_indices)
{
    Read("layerfilter=5",
        ASubsystem(1)
            .In(OTP, 1)
            .Tagged("layernumber=1")
            .Holding(Traced(1, 100, "t"), "num_indices=1;index1=1")
            .Holding(Traced(2, 100, "t"), "num_indices=1;index1=2"),
        ASubsystem(1).In(EEPROM, 1).Tagged("layernumber=2").Holding(TracedRow(3, 100, "t", { 1 })));

    EXPECT_EQ(Written("layerfilter=5"), "1/1: 2 1/2: 3");
}

TEST_F(CChipConfigFilteredRead, without_a_filter_nothing_competes)
{
    Read("", ASubsystem(1).In(OTP, 1).Tagged("layernumber=1").Holding(Traced(1, 100, "k")));
    EXPECT_EQ(Written("layerfilter=5"), "");
    EXPECT_TRUE(mWritten);
}

TEST_F(CChipConfigFilteredRead, the_element_s_own_context_counts)
{
    Read("", ASubsystem(1)
                 .In(OTP, 1)
                 .Holding(Traced(1, 100, "a"), "layerfilter=5;layernumber=4;subsystemtype=7")
                 .Holding(Traced(2, 100, "b"), "layernumber=4"));

    EXPECT_EQ(Written("layerfilter=5"), "7/4: 1");
}

TEST_F(CChipConfigFilteredRead, asks_a_derived_context_for_each_tag)
{
    ComputingContext<CZynContext> context;
    context.Parse("subsystemtype=1;layernumber=1");
    IConfigReaderElementObserver & reader = Create("subsystemtype=1");
    reader.OnElementFound(Traced(1, 100, "a"), context);
    context.Computes("layerfilter", "5");
    reader.OnElementFound(Traced(2, 100, "b"), context);
    context.Computes("subsystemtype", "7").Computes("layernumber", "3");
    reader.OnElementFound(Traced(3, 100, "c"), context);
    context.Computes("layerfilter", "");
    reader.OnElementFound(Traced(4, 100, "d"), context);

    EXPECT_EQ(Written("layerfilter=5"), "1/1: 2 7/3: 3");
}

TEST_F(CChipConfigFilteredRead, is_false_and_takes_no_ownership)
{
    IConfigReaderElementObserver & observer = mChip;
    const std::unique_ptr<CElement> element(Traced(1, 100, "k"));
    CZynContext context;
    EXPECT_FALSE(observer.OnElementFound(element.get(), context));
    context.Parse("layerfilter=3;subsystemtype=1;layernumber=5");
    EXPECT_FALSE(observer.OnElementFound(element.get(), context));
    EXPECT_FALSE(observer.OnElementFound(nullptr, context));
    context.SetLayerNumber(1);
    EXPECT_FALSE(observer.OnElementFound(nullptr, context));
    EXPECT_TRUE(mLives.Has(1));
}

}   // namespace
