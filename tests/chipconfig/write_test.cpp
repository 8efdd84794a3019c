// Writing every layer: the order of the subsystems, the calls on the writer, and what a failure leaves out.

#include "chip_fixture.h"
#include "context_noting_writer.h"

#include <support/foreign_contexts.h>

using namespace VrexZynConfigTools;
using namespace VrexZynConfigTools::support;

namespace {

using CChipConfigWrite = ChipTest;

std::string Joined(const Texts & calls)
{
    std::string joined;
    for (const std::string & call : calls)
        joined += (joined.empty() ? "" : ", ") + call;
    return joined;
}

/// The calls for an element with a traced payload, to be joined to what stands before.
std::string Element(int uid, std::uint32_t id)
{
    std::string calls = ", StartElement, WriteKeyId ";
    calls += std::to_string(id) + ", WritePayload 4:" + std::to_string(uid) + ", EndElement";
    return calls;
}

TEST_F(CChipConfigWrite, of_nothing_starts_and_ends)
{
    EXPECT_EQ(Write(), (Texts{ "StartWrite", "EndWrite" }));
    EXPECT_TRUE(mWritten);
}

TEST_F(CChipConfigWrite, nests_subsystems_and_elements)
{
    Read("chip=c", ASubsystem(1).In(OTP, 1).Holding(Traced(1, 100)).Holding(Traced(2, 50)),
        ASubsystem(2).In(OTP, 1), ASubsystem(3).In(OTP, 1).Holding(Traced(3, 0)).Holding(Traced(4, 7)));

    EXPECT_EQ(Joined(Write()), "StartWrite, StartSubsystem" + Element(1, 100) + Element(2, 50) +
                                   ", EndSubsystem, StartSubsystem, EndSubsystem, StartSubsystem" +
                                   Element(4, 7) + ", EndSubsystem, EndWrite");
    EXPECT_TRUE(mWritten);
}

TEST_F(CChipConfigWrite, goes_by_type_and_then_by_layer)
{
    Read("chip=c", ASubsystem(1).In(SMEM, 1).Holding(Traced(12, 5)),
        ASubsystem(1).In(OTP, 1).Holding(Traced(11, 5)), ASubsystem(0).In(EEPROM, 1).Holding(Traced(3, 5)));

    EXPECT_EQ(Written(), "0/3: 3 1/1: 11 1/2: 12");
}

TEST_F(CChipConfigWrite, goes_by_number_and_not_by_text)
{
    ScriptedReader reader;
    for (int layer = 1; layer <= 11; ++layer) {
        reader.Delivers(ASubsystem(1).In(EEPROM, layer).Holding(Traced(layer, 5)));
        if (layer % 5 == 0)
            reader.Delivers(ASubsystem(10).In(EEPROM, layer).Holding(Traced(layer + 100, 5)));
    }
    reader.Delivers(ASubsystem(2).In(EEPROM, 3).Holding(Traced(50, 5)));
    reader.ReadInto(mChip, "chip=c");

    EXPECT_EQ(Written(), "1/1: 1 1/2: 2 1/3: 3 1/4: 4 1/5: 5 1/6: 6 1/7: 7 1/8: 8 1/9: 9 1/10: 10 1/11: 11 "
                         "2/3: 50 10/5: 105 10/10: 110");
}

TEST_F(CChipConfigWrite, puts_subsystems_without_a_layer_first)
{
    Read("chip=c", ASubsystem(1).In(OTP, 1).Holding(Traced(1, 5)),
        ASubsystem(1).In(CUR_CFG, 1).Holding(Traced(2, 5)));

    EXPECT_EQ(Written(), "1/: 2 1/1: 1");
}

TEST_F(CChipConfigWrite, keeps_the_order_of_the_keys_where_type_and_layer_are_equal)
{
    Read("", ASubsystem(1).In(CUR_CFG, 1).Tagged("chip=b").Holding(Traced(2, 5)),
        ASubsystem(1).In(USER_PS_APPS, 1).Tagged("chip=c").Holding(Traced(3, 5)),
        ASubsystem(1).In(USER_PS_AUDIO, 1).Tagged("chip=a").Holding(Traced(1, 5)),
        ASubsystem(1).In(USER_PS_AUDIO, 2).Tagged("chip=d;layernumber=junk").Holding(Traced(4, 5)));

    EXPECT_EQ(Keys(), (Texts{ "a| |1| ", "b| |1| ", "c| |1| ", "d| |1|junk" }));
    EXPECT_EQ(Written(), "1/: 1 1/: 2 1/: 3 1/junk: 4");
}

TEST_F(CChipConfigWrite, gives_the_writer_the_subsystem_s_own_context)
{
    Read("chip=c", ASubsystem(1).In(OTP, 1).Holding(Traced(1, 5)));
    ContextNotingWriter writer({ "chip", "device", "store", "layernumber", "option" });
    CZynContext context;
    context.Parse("option=on;device=99");
    EXPECT_TRUE(mChip.Write(writer, context));

    IConfigContext * own = &At("c| |1|1").Context();
    EXPECT_EQ(writer.mWrites, (std::vector<IConfigContext *>{ &context, &context }));
    EXPECT_EQ(writer.mSubsystems, (std::vector<IConfigContext *>{ own, own }));
    EXPECT_EQ(writer.mElements, std::vector<IConfigContext *>{ own });
    EXPECT_EQ(writer.Calls()[0], "StartWrite chip= device=99 store= layernumber= option=on");
    EXPECT_EQ(writer.Calls()[1], "StartSubsystem chip=c device=1 store=1 layernumber=1 option=on");
    EXPECT_EQ(writer.Calls()[6], "EndSubsystem chip=c device=1 store=1 layernumber=1 option=on");
    EXPECT_EQ(writer.Calls()[7], "EndWrite chip= device=99 store= layernumber= option=on");
}

TEST_F(CChipConfigWrite, leaves_the_merged_tags_behind_and_changes_no_key)
{
    Read(
        "", ASubsystem(1).In(OTP, 1).Holding(Traced(1, 5)), ASubsystem(2).In(CUR_CFG, 1).Holding(Traced(2, 5)));
    Write("chip=late;layernumber=9;option=on");

    EXPECT_EQ(Keys(), (Texts{ " | |1|1", " | |2| " }));
    EXPECT_EQ(At(" | |1|1").Context().GetTag("subsystemkeybylayer"), "late| |1|1");
    EXPECT_EQ(At(" | |2| ").Context().GetTag("subsystemkeybylayer"), "late| |2|9");
    EXPECT_EQ(At(" | |1|1").Context().GetTag("option"), "on");

    Read("");   // the next end of a read sees them
    EXPECT_EQ(Keys(), (Texts{ "late| |1|1", "late| |2|9" }));
}

TEST_F(CChipConfigWrite, merges_each_subsystem_at_its_turn)
{
    Read("chip=c", ASubsystem(1).In(OTP, 1), ASubsystem(2).In(OTP, 1));
    ContextNotingWriter writer;
    writer.mAtStart = [this](std::size_t call) {
        EXPECT_EQ(At("c| |2|1").Context().GetTag("option"), call == 1 ? "" : "on");
    };
    CZynContext context;
    context.SetTag("option", "on");
    EXPECT_TRUE(mChip.Write(writer, context));
    EXPECT_EQ(At("c| |2|1").Context().GetTag("option"), "on");
}

TEST_F(CChipConfigWrite, refuses_a_context_that_is_no_base_context)
{
    Read("chip=c", ASubsystem(1).In(OTP, 1).Holding(Traced(1, 5)));
    RecordingWriter writer;
    MapContext context("layerfilter=5");

    EXPECT_FALSE(mChip.Write(writer, context));
    EXPECT_TRUE(writer.Calls().empty());
    EXPECT_EQ(ErrorOf(GROUP_CORE_CLASSES), "the passed context is invalid");
    EXPECT_FALSE(mErrors.IsSet());

    ClearErrorOf(GROUP_CORE_CLASSES);
    EXPECT_FALSE(mChip.Write(writer, CNullContext::Ref()));
    EXPECT_TRUE(writer.Calls().empty());
    EXPECT_EQ(ErrorOf(GROUP_CORE_CLASSES), "the passed context is invalid");
}

TEST_F(CChipConfigWrite, takes_a_base_context)
{
    Read("chip=c", ASubsystem(1).In(OTP, 1).Holding(Traced(1, 5)));
    CBaseContext context("plain");
    context.SetTag("option", "on");
    RecordingWriter writer;

    EXPECT_TRUE(mChip.Write(writer, context));
    EXPECT_EQ(writer.Calls().size(), 8U);
    EXPECT_EQ(At("c| |1|1").Context().GetTag("option"), "on");
}

TEST_F(CChipConfigWrite, gives_a_table_row_and_leaves_no_raw_mode)
{
    Read("chip=c", ASubsystem(1).In(OTP, 1).Holding(Traced(1, 5), "num_indices=1;index1=7"));

    EXPECT_EQ(Write("", { "rawmode" }),
        (Texts{ "StartWrite rawmode=", "StartSubsystem rawmode=", "StartElement rawmode=true",
            "WriteKeyId 5 rawmode=true", "WriteNamedData num_indices 0100000000000000 rawmode=true",
            "WriteNamedData index 07000000 rawmode=true", "WritePayload 4:1 rawmode=true",
            "EndElement rawmode=true", "EndSubsystem rawmode=", "EndWrite rawmode=" }));
}

TEST_F(CChipConfigWrite, before_the_read_has_ended_gives_every_subsystem_all_the_same)
{
    for (const char * tags : { "subsystemtype=2;device=15;store=1", "subsystemtype=1;device=15;store=2", "",
             "chip=a|b|c|d|e|f|g;store=3", "chip=||;store=4" })
        Create(tags);

    EXPECT_EQ(Write().size(), 12U);
    EXPECT_TRUE(mWritten);
}

class CChipConfigWriteFailure : public ChipTest
{
protected:
    CChipConfigWriteFailure()
    {
        Read("chip=c", ASubsystem(1).In(OTP, 1).Holding(Traced(1, 5)).Holding(Traced(2, 6)),
            ASubsystem(2).In(OTP, 1).Holding(Traced(3, 7)));
    }

    Texts WriteFailingIn(const std::string & operation)
    {
        RecordingWriter writer;
        writer.FailsIn(operation, "no room");
        CZynContext context;
        mWritten = mChip.Write(writer, context);
        return writer.Calls();
    }
};

TEST_F(CChipConfigWriteFailure, in_StartWrite_writes_no_subsystem)
{
    EXPECT_EQ(WriteFailingIn("StartWrite"), (Texts{ "StartWrite", "EndWrite" }));
    EXPECT_FALSE(mWritten);
    EXPECT_EQ(mErrors.Text(), "no room");
    EXPECT_EQ(At("c| |1|1").Context().GetTag("option"), "");
}

TEST_F(CChipConfigWriteFailure, that_stood_before_counts_too)
{
    mErrors.Set("earlier");
    EXPECT_EQ(Write("option=on"), (Texts{ "StartWrite", "EndWrite" }));
    EXPECT_FALSE(mWritten);
    EXPECT_EQ(At("c| |1|1").Context().GetTag("option"), "");
}

TEST_F(CChipConfigWriteFailure, in_another_group_does_not_count)
{
    CTheMsgHnd::GetAppropriateHandler(GROUP_CORE_CLASSES, "test", false).SetErrorMsg(0, "elsewhere");
    Write();
    EXPECT_TRUE(mWritten);
}

TEST_F(CChipConfigWriteFailure, in_StartSubsystem_is_found_by_the_next_element)
{
    EXPECT_EQ(Joined(WriteFailingIn("StartSubsystem")),
        "StartWrite, StartSubsystem" + Element(1, 5) + ", EndSubsystem, EndWrite");
    EXPECT_FALSE(mWritten);
}

TEST_F(CChipConfigWriteFailure, of_an_element_ends_the_write)
{
    EXPECT_EQ(Joined(WriteFailingIn("WriteKeyId")),
        "StartWrite, StartSubsystem" + Element(1, 5) + ", EndSubsystem, EndWrite");
    EXPECT_FALSE(mWritten);
}

TEST_F(CChipConfigWriteFailure, in_EndSubsystem_is_found_by_the_next_subsystem)
{
    EXPECT_EQ(Joined(WriteFailingIn("EndSubsystem")), "StartWrite, StartSubsystem" + Element(1, 5) +
                                                          Element(2, 6) + ", EndSubsystem, StartSubsystem" +
                                                          Element(3, 7) + ", EndSubsystem, EndWrite");
    EXPECT_FALSE(mWritten);
}

TEST_F(CChipConfigWriteFailure, in_EndSubsystem_of_subsystems_without_elements_is_found_at_the_end)
{
    mChip.Clear();
    Read("chip=c", ASubsystem(1).In(OTP, 1), ASubsystem(2).In(OTP, 1));
    EXPECT_EQ(WriteFailingIn("EndSubsystem"), (Texts{ "StartWrite", "StartSubsystem", "EndSubsystem",
                                                  "StartSubsystem", "EndSubsystem", "EndWrite" }));
    EXPECT_FALSE(mWritten);
}

TEST_F(CChipConfigWriteFailure, in_EndWrite_comes_after_everything)
{
    EXPECT_EQ(WriteFailingIn("EndWrite").size(), 18U);
    EXPECT_FALSE(mWritten);
}

TEST_F(CChipConfigWriteFailure, leaves_the_later_subsystems_unmerged)
{
    RecordingWriter writer;
    writer.FailsIn("WriteKeyId", "no room");
    CZynContext context;
    context.SetTag("option", "on");
    EXPECT_FALSE(mChip.Write(writer, context));

    EXPECT_EQ(At("c| |1|1").Context().GetTag("option"), "on");
    EXPECT_EQ(At("c| |2|1").Context().GetTag("option"), "");
}

}   // namespace
