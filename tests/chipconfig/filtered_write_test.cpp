// Writing the winners of a filtered read: groups, order, contexts, and what a failure leaves out.

#include "chip_fixture.h"
#include "context_noting_writer.h"

#include <support/foreign_contexts.h>

#include <stdexcept>

using namespace VrexZynConfigTools;
using namespace VrexZynConfigTools::support;

namespace {

class CChipConfigFilteredWrite : public ChipTest
{
protected:
    /// Makes an element the winner of its key.
    void Win(int uid, const std::string & name, const std::string & type, const std::string & layer)
    {
        Read("chip=c;layerfilter=100", ASubsystem()
                                           .In(EEPROM, 1)
                                           .Tagged("subsystemtype=" + type + ";layernumber=" + layer)
                                           .Holding(Traced(uid, 100U + static_cast<unsigned>(uid), name)));
    }

    Texts WriteFailingIn(const std::string & operation)
    {
        RecordingWriter writer;
        writer.FailsIn(operation, "no room");
        CZynContext context;
        context.SetTag("layerfilter", 5);
        mWritten = mChip.Write(writer, context);
        return writer.Calls();
    }
};

TEST_F(CChipConfigFilteredWrite, gives_one_group_for_each_type_and_layer)
{
    Win(1, "b", "1", "2");
    Win(2, "a", "1", "2");
    Win(3, "a", "2", "3");

    EXPECT_EQ(Write("layerfilter=5"),
        (Texts{ "StartWrite", "StartSubsystem", "StartElement", "WriteKeyId 102", "WritePayload 4:2",
            "EndElement", "StartElement", "WriteKeyId 101", "WritePayload 4:1", "EndElement", "EndSubsystem",
            "StartSubsystem", "StartElement", "WriteKeyId 103", "WritePayload 4:3", "EndElement",
            "EndSubsystem", "EndWrite" }));
    EXPECT_TRUE(mWritten);
}

TEST_F(CChipConfigFilteredWrite, goes_by_type_and_layer_as_numbers_and_by_name_as_bytes)
{
    Win(1, "a", "10", "1");
    Win(2, "a", "9", "10");
    Win(3, "b", "9", "9");
    Win(4, "c", "0", "15");
    Win(5, "d", "2", "0");
    Win(6, "z", "9", "9");
    Win(7, "Z", "9", "9");
    Win(8, "\xE4", "9", "9");
    Win(9, "10", "9", "9");
    Win(10, "9", "9", "9");
    Win(11, "a", "15", "3");

    EXPECT_EQ(Written("layerfilter=5"), "0/15: 4 2/0: 5 9/9: 9 10 7 3 6 8 9/10: 2 10/1: 1 15/3: 11");
    EXPECT_TRUE(mWritten);
}

TEST_F(CChipConfigFilteredWrite, goes_by_the_key_text_of_rows)
{
    Read("layerfilter=5", ASubsystem(1)
                              .In(EEPROM, 1)
                              .Tagged("layernumber=1")
                              .Holding(TracedRow(1, 100, "t", { 2 }))
                              .Holding(TracedRow(2, 100, "t", { 10 }))
                              .Holding(Traced(3, 100, "t")));

    EXPECT_EQ(Written("layerfilter=5"), "1/1: 3 2 1");
}

TEST_F(CChipConfigFilteredWrite, knows_the_type_psaudio)
{
    Win(1, "gain", "10", "2");
    Win(2, "gain", "1", "2");

    EXPECT_EQ(Written("layerfilter=5"), "1/2: 2 10/2: 1");
}

TEST_F(CChipConfigFilteredWrite, uses_one_copy_of_the_context)
{
    Win(1, "a", "1", "2");
    Win(2, "b", "3", "4");
    ContextNotingWriter writer({ "subsystemtype", "layernumber", "device", "layerfilter" });
    CZynContext context;
    context.Parse("layerfilter=5;device=7;subsystemtype=99;layernumber=88");
    const auto before = context.Tags();
    EXPECT_TRUE(mChip.Write(writer, context));

    EXPECT_EQ(context.Tags(), before);
    EXPECT_EQ(writer.mWrites, (std::vector<IConfigContext *>{ &context, &context }));
    ASSERT_EQ(writer.mSubsystems.size(), 4U);
    IConfigContext * copy = writer.mSubsystems.front();
    EXPECT_NE(copy, &context);
    EXPECT_EQ(writer.mSubsystems, std::vector<IConfigContext *>(4, copy));
    EXPECT_EQ(writer.mElements, std::vector<IConfigContext *>(2, copy));
    const Texts & calls = writer.Calls();
    EXPECT_EQ(calls.at(0), "StartWrite subsystemtype=99 layernumber=88 device=7 layerfilter=5");
    EXPECT_EQ(calls.at(1), "StartSubsystem subsystemtype=1 layernumber=2 device=7 layerfilter=5");
    EXPECT_EQ(calls.at(6), "EndSubsystem subsystemtype=1 layernumber=2 device=7 layerfilter=5");
    EXPECT_EQ(calls.at(7), "StartSubsystem subsystemtype=3 layernumber=4 device=7 layerfilter=5");
    EXPECT_EQ(calls.at(12), "EndSubsystem subsystemtype=3 layernumber=4 device=7 layerfilter=5");
    EXPECT_EQ(calls.at(13), "EndWrite subsystemtype=99 layernumber=88 device=7 layerfilter=5");
}

TEST_F(CChipConfigFilteredWrite, leaves_the_subsystems_contexts_alone)
{
    Win(1, "a", "1", "2");
    const auto before = mChip.Subsystems().begin()->second->Context().Tags();
    Write("layerfilter=5;option=on");

    EXPECT_EQ(mChip.Subsystems().begin()->second->Context().Tags(), before);
}

TEST_F(CChipConfigFilteredWrite, makes_the_copy_by_Clone)
{
    Win(1, "a", "1", "2");
    ComputingContext<CBaseContext> context("computing");
    context.Computes("layerfilter", "5").Computes("option", "on");
    RecordingWriter writer({ "option" });

    EXPECT_TRUE(mChip.Write(writer, context));
    EXPECT_EQ(writer.Calls().size(), 8U);
    EXPECT_EQ(writer.Calls().at(1), "StartSubsystem option=on");
}

TEST_F(CChipConfigFilteredWrite, does_not_read_the_filter)
{
    Win(1, "a", "1", "2");
    for (const char * filter : { "1", "-1", "0", "junk", "99" })
        EXPECT_EQ(Written(std::string("layerfilter=") + filter), "1/2: 1") << filter;
}

TEST_F(CChipConfigFilteredWrite, gives_elements_of_the_number_0)
{
    Read("layerfilter=5", ASubsystem(1).In(EEPROM, 1).Tagged("layernumber=1").Holding(Traced(1, 0, "zero")));

    EXPECT_EQ(Written("layerfilter=5"), "1/1: 1");
    EXPECT_EQ(Written(), "1/1:");
}

TEST_F(CChipConfigFilteredWrite, can_be_repeated)
{
    Win(1, "a", "1", "2");
    Win(2, "b", "1", "3");
    const Texts first = Write("layerfilter=5");

    EXPECT_EQ(Write("layerfilter=5"), first);
    EXPECT_FALSE(At("c| |1|1").Elements().front()->HasChanged());
}

TEST_F(CChipConfigFilteredWrite, needs_no_end_of_the_read)
{
    CZynContext context;
    context.Parse("layerfilter=5;layernumber=2;subsystemtype=1");
    static_cast<IConfigReaderElementObserver &>(Create("subsystemtype=1"))
        .OnElementFound(Traced(1, 100, "a"), context);

    EXPECT_EQ(Written("layerfilter=5"), "1/2: 1");
}

TEST_F(CChipConfigFilteredWrite, of_nothing_ends_a_subsystem_that_was_not_started)
{
    EXPECT_EQ(Write("layerfilter=5"), (Texts{ "StartWrite", "EndSubsystem", "EndWrite" }));
    EXPECT_TRUE(mWritten);
}

TEST_F(CChipConfigFilteredWrite, after_an_unfiltered_read_gives_nothing)
{
    Read("chip=c", ASubsystem(1).In(EEPROM, 1).Holding(Traced(1, 100, "a")));
    EXPECT_EQ(Write("layerfilter=5"), (Texts{ "StartWrite", "EndSubsystem", "EndWrite" }));
    EXPECT_TRUE(mWritten);
}

TEST_F(CChipConfigFilteredWrite, keeps_raw_mode_to_its_copy)
{
    Read("layerfilter=5",
        ASubsystem(1)
            .In(EEPROM, 1)
            .Tagged("layernumber=1")
            .Holding(new CElementRaw(100, "raw", AListOf(new TracedPayload(mLives, 1)), true)));
    RecordingWriter writer({ "rawmode" });
    CZynContext context;
    context.SetTag("layerfilter", 5);
    EXPECT_TRUE(mChip.Write(writer, context));

    EXPECT_EQ(writer.Calls().at(2), "StartElement rawmode=true");
    EXPECT_EQ(context.GetTag("rawmode"), "");
}

using CChipConfigFilteredWriteFailure = CChipConfigFilteredWrite;

TEST_F(CChipConfigFilteredWriteFailure, in_StartWrite_writes_nothing)
{
    Win(1, "a", "1", "2");
    EXPECT_EQ(WriteFailingIn("StartWrite"), (Texts{ "StartWrite", "EndWrite" }));
    EXPECT_FALSE(mWritten);
}

TEST_F(CChipConfigFilteredWriteFailure, of_an_element_leaves_out_the_rest)
{
    Win(1, "a", "1", "2");
    Win(2, "b", "1", "2");
    Win(3, "c", "2", "2");
    EXPECT_EQ(
        WriteFailingIn("WriteKeyId"), (Texts{ "StartWrite", "StartSubsystem", "StartElement", "WriteKeyId 101",
                                          "WritePayload 4:1", "EndElement", "EndSubsystem", "EndWrite" }));
    EXPECT_FALSE(mWritten);
}

TEST_F(CChipConfigFilteredWriteFailure, in_StartSubsystem_is_found_by_the_next_element)
{
    Win(1, "a", "1", "2");
    Win(2, "b", "1", "2");
    EXPECT_EQ(WriteFailingIn("StartSubsystem"),
        (Texts{ "StartWrite", "StartSubsystem", "StartElement", "WriteKeyId 101", "WritePayload 4:1",
            "EndElement", "EndSubsystem", "EndWrite" }));
    EXPECT_FALSE(mWritten);
}

TEST_F(CChipConfigFilteredWriteFailure, in_EndSubsystem_is_found_by_the_next_group)
{
    Win(1, "a", "1", "2");
    Win(2, "b", "2", "2");
    Win(3, "c", "2", "2");
    EXPECT_EQ(WriteFailingIn("EndSubsystem"),
        (Texts{ "StartWrite", "StartSubsystem", "StartElement", "WriteKeyId 101", "WritePayload 4:1",
            "EndElement", "EndSubsystem", "StartSubsystem", "StartElement", "WriteKeyId 102",
            "WritePayload 4:2", "EndElement", "EndSubsystem", "EndWrite" }));
    EXPECT_FALSE(mWritten);
}

TEST_F(CChipConfigFilteredWriteFailure, in_the_last_EndSubsystem_or_in_EndWrite_comes_after_everything)
{
    Win(1, "a", "1", "2");
    const Texts all = Write("layerfilter=5");
    for (const char * operation : { "EndSubsystem", "EndWrite" }) {
        mErrors.Clear();
        EXPECT_EQ(WriteFailingIn(operation), all);
        EXPECT_FALSE(mWritten) << operation;
    }
    EXPECT_EQ(Texts({ all.front(), all.back() }), (Texts{ "StartWrite", "EndWrite" }));
}

TEST_F(CChipConfigFilteredWriteFailure, in_the_EndSubsystem_of_nothing_counts)
{
    EXPECT_EQ(WriteFailingIn("EndSubsystem"), (Texts{ "StartWrite", "EndSubsystem", "EndWrite" }));
    EXPECT_FALSE(mWritten);
}

TEST_F(CChipConfigFilteredWriteFailure, of_a_type_or_layer_outside_0_to_15_names_the_key)
{
    const std::vector<std::pair<std::string, std::string>> places{ { "16", "1" }, { "-1", "1" }, { "100", "1" },
        { "x", "1" }, { "1", "16" }, { "1", "-1" }, { "1", "127" }, { "1", "40" } };
    for (const auto & [type, layer] : places) {
        SCOPED_TRACE(type + "/" + layer);
        CChipConfig chip;
        ScriptedReader reader;
        reader.Delivers(ASubsystem(1).In(EEPROM, 1).Tagged("layernumber=2").Holding(Traced(1, 1, "Fine")));
        reader.Delivers(ASubsystem()
                            .In(EEPROM, 2)
                            .Tagged("subsystemtype=" + type + ";layernumber=" + layer)
                            .Holding(Traced(2, 2, "BadKey")));
        reader.ReadInto(chip, "layerfilter=127");
        RecordingWriter writer;
        CZynContext context;
        context.SetTag("layerfilter", 5);

        EXPECT_FALSE(chip.Write(writer, context));
        EXPECT_EQ(writer.Calls(), (Texts{ "StartWrite", "EndSubsystem", "EndWrite" }));
        const std::string error = ErrorOf(GROUP_CORE_CLASSES) + mErrors.Text();
        EXPECT_NE(error.find("BadKey"), std::string::npos) << error;
        EXPECT_EQ(error.find("Fine"), std::string::npos) << error;
        ClearErrorOf(GROUP_CORE_CLASSES);
        mErrors.Clear();
    }
}

TEST_F(CChipConfigFilteredWriteFailure, of_a_key_without_type_and_name_lets_the_range_exception_pass)
{
    CChipConfig chip;
    ScriptedReader reader;
    reader.Delivers(ASubsystem().In(EEPROM, 1).Tagged("layernumber=1").Holding(Traced(1, 100, "")));
    reader.ReadInto(chip, "layerfilter=5");
    RecordingWriter writer;
    CZynContext context;
    context.SetTag("layerfilter", 5);

    EXPECT_THROW(chip.Write(writer, context), std::out_of_range);
    EXPECT_EQ(writer.Calls(), Texts{ "StartWrite" });
    EXPECT_EQ(UidOf(*chip.Subsystems().begin()->second->Elements().front()), 1);
    context.SetTag("layerfilter");
    EXPECT_TRUE(chip.Write(writer, context));
}

}   // namespace
