// The debug lines by which the layering tells what it decided, and that debug output changes nothing.

#include "chip_fixture.h"

#include <support/debug_capture.h>

#include <cinttypes>
#include <cstdio>

using namespace VrexZynConfigTools;
using namespace VrexZynConfigTools::support;

namespace {

class CChipConfigDebugLines : public ChipTest
{
protected:
    /// What the chip decided, as far as the lines begin with `start`.
    Texts Decisions(const std::string & start) const
    {
        return mDebug.DecisionsOf("VrexZynConfigTools::CChipConfig", start);
    }

    DebugCapture mDebug;
};

TEST_F(CChipConfigDebugLines, tell_that_a_subsystem_was_found)
{
    CSubsystemConfig & subsystem = Create("subsystemtype=1;device=15;store=3");
    EXPECT_TRUE(Decisions("device ").empty());
    Create("subsystemtype=1;device=15;store=3");

    char expected[200];
    std::snprintf(expected, sizeof(expected),
        "device 15 / store 3 found in mSubsystems, so using the subsystem at 0x%08x",
        static_cast<unsigned>(reinterpret_cast<std::uintptr_t>(&subsystem)));
    EXPECT_EQ(Decisions("device "), Texts{ expected });
}

TEST_F(CChipConfigDebugLines, show_no_other_subsystem_asked_when_one_is_found_or_made)
{
    const auto linesOfStore = [this](int store) {
        mDebug.Forget();
        Create("subsystemtype=1;device=15;store=" + std::to_string(store));
        return mDebug.Lines().size();
    };
    const std::size_t ofFirst = linesOfStore(100);
    const std::size_t ofFirstAgain = linesOfStore(100);
    for (int store = 101; store < 200; ++store)
        EXPECT_EQ(linesOfStore(store), ofFirst);
    EXPECT_EQ(linesOfStore(199), ofFirstAgain);
}

TEST_F(CChipConfigDebugLines, tell_of_a_reader_that_reports_no_stores)
{
    Read("");
    EXPECT_EQ(mDebug.Count("The IConfigReader object does not implement IStoreManager"), 1U);

    mDebug.Forget();
    StoreReportingReader reader;
    reader.ReadInto(mChip);
    EXPECT_EQ(mDebug.Count("The IConfigReader object does not implement IStoreManager"), 0U);
}

TEST_F(CChipConfigDebugLines, show_the_merging_of_each_store)
{
    StoreReportingReader reader;
    reader.Reports(EEPROM, 1).Reports(OTP, 1).ReadInto(mChip);
    EXPECT_EQ(mDebug.Count("-> VrexZynConfigTools::CChipConfig::MergeStoreInfo"), 2U);
    EXPECT_EQ(mDebug.Count("<- VrexZynConfigTools::CChipConfig::MergeStoreInfo"), 2U);
}

TEST_F(CChipConfigDebugLines, tell_each_layer_number)
{
    Read("", ASubsystem(1).In(EEPROM, 26), ASubsystem(2).In(EEPROM, 26), ASubsystem(1).In(OTP, 1));

    EXPECT_EQ(Decisions("Device"), (Texts{ "Device 0x1 / Store 0x1 assigned layer number 1",
                                       "Device 0xf / Store 0x1a assigned layer number 2",
                                       "Device 0xf / Store 0x1a assigned layer number 2" }));
}

TEST_F(CChipConfigDebugLines, tell_of_too_many_layers)
{
    StoreReportingReader reader;
    for (std::uint16_t store = 1; store <= 16; ++store)
        reader.Reports(EEPROM, store);
    reader.ReadInto(mChip);

    EXPECT_EQ(Decisions("Max"), Texts{ "Maximum number of layers exceeded" });
}

TEST_F(CChipConfigDebugLines, tell_the_course_of_a_contest)
{
    const auto read = [this](int uid, int layer, const char * filter) {
        Read(std::string("layerfilter=") + filter, ASubsystem(1)
                                                       .In(EEPROM, layer)
                                                       .Tagged(Numbered("layernumber=", layer))
                                                       .Holding(Traced(uid, 100, "k")));
        const Texts entries = Decisions("Entry");
        const Texts keys = Decisions("Key");
        mDebug.Forget();
        EXPECT_TRUE(entries.empty() || keys.empty());
        return entries.empty() ? keys : entries;
    };
    EXPECT_EQ(read(1, 2, "3"), Texts{ "Entry for key \"1|k\" not found, so storing entry for layer 2" });
    EXPECT_EQ(read(2, 3, "3"), Texts{ "Entry for key \"1|k\" found with layer 2, but replacing with layer 3" });
    EXPECT_EQ(read(3, 4, "3"), Texts{});   // ignored silently
    EXPECT_EQ(read(4, 1, "3"),
        Texts{ "Key \"1|k\" not being added because it did not match the criteria: found=3, lfv=3, elv=1" });
    EXPECT_EQ(read(5, 1, "-2"),
        Texts{ "Key \"1|k\" not being added because it did not match the criteria: found=3, lfv=-2, elv=1" });
    EXPECT_EQ(
        read(6, 1, "-3"), Texts{ "Entry for key \"1|k\" found with layer 3, but replacing with layer 1" });
}

TEST_F(CChipConfigDebugLines, take_the_text_of_a_key_for_no_format)
{
    Read("layerfilter=5",
        ASubsystem(1).In(EEPROM, 1).Tagged("layernumber=1").Holding(Traced(1, 100, "100%s%n%d")));

    EXPECT_EQ(
        Decisions("Entry"), Texts{ "Entry for key \"1|100%s%n%d\" not found, so storing entry for layer 1" });
}

TEST_F(CChipConfigDebugLines, tell_of_a_lookup_filter_out_of_range)
{
    const std::string line = "layer filter value is out of range";
    for (const char * filter : { "0", "-1", "16", "99", "40000", "abc" }) {
        mDebug.Forget();
        Find(100, std::string("layerfilter=") + filter);
        EXPECT_EQ(mDebug.Count(line), 1U) << filter;
    }
    for (const char * filter : { "1", "15", " 7x", "" }) {
        mDebug.Forget();
        Find(100, std::string("layerfilter=") + filter);
        EXPECT_EQ(mDebug.Count(line), 0U) << filter;
    }
}

TEST_F(CChipConfigDebugLines, tell_each_subsystem_of_a_write)
{
    Read("chip=c", ASubsystem(1).In(OTP, 1), ASubsystem(0).In(OTP, 1));
    Write();

    EXPECT_EQ(mDebug.Count("subsystem = c| |0|1"), 1U);
    EXPECT_EQ(mDebug.Count("subsystem = c| |1|1"), 1U);
}

TEST_F(CChipConfigDebugLines, tell_the_sizes_of_a_filtered_write)
{
    Read("layerfilter=5", ASubsystem(1)
                              .In(OTP, 1)
                              .Tagged("layernumber=1")
                              .Holding(Traced(1, 100, "a"))
                              .Holding(Traced(2, 101, "b")));
    Write("layerfilter=5");
    EXPECT_EQ(mDebug.Count("Filtered dictionary size=2, Post sorted filtered dictionary size=2"), 1U);
}

TEST_F(CChipConfigDebugLines, come_in_the_group_of_the_core_classes)
{
    Read("layerfilter=5", ASubsystem(1).In(OTP, 1).Tagged("layernumber=1").Holding(Traced(1, 100, "a")));
    for (const DebugCapture::Line & line : mDebug.Lines()) {
        const bool isOurs = line.mFunction.rfind("VrexZynConfigTools::CChipConfig::", 0) == 0 ||
                            line.mFunction.rfind("VrexZynConfigTools::CSubsystemConfig::", 0) == 0;
        EXPECT_TRUE(!isOurs || line.mGroup == GROUP_CORE_CLASSES) << line.mFunction;
    }
}

/// A read, lookups and writes of all kinds, as one text.
std::string CourseOfWork()
{
    std::string course;
    Lives lives;
    int lastUid = 0;
    const auto element = [&](std::uint32_t id, const std::string & name) {
        return new CElementNumericArray(id, name, AListOf(new TracedPayload(lives, ++lastUid)), true);
    };
    CChipConfig chip;
    for (const char * tags : { "chip=c;layerfilter=3", "chip=c;insertmode=overwrite", "layerfilter=-2" }) {
        StoreReportingReader reader;
        reader.Reports(SMEM, 1).Reports(CUR_CFG, 4);
        reader.Delivers(ASubsystem(1)
                            .In(EEPROM, 1)
                            .Tagged("layernumber=3")
                            .Holding(element(100, "k"))
                            .Holding(element(200, "t"), "num_indices=1;index1=4"));
        reader.Delivers(ASubsystem(1).In(OTP, 1).Tagged("layernumber=1").Holding(element(100, "K")));
        reader.ReadInto(chip, tags);
        RecordingWriter writer({ "subsystemtype", "layernumber" });
        CZynContext context;
        chip.Write(writer, context);
        context.SetTag("layerfilter", "40000");
        chip.Write(writer, context);
        for (const std::string & call : writer.Calls())
            course += call + "\n";
        context.Parse("chip=c;subsystemtype=1");
        for (const char * key : { "k", "100", "t.4", "0xC8.4", "none", "12abc", "" })
            course += std::to_string(UidOf(chip.Element(key, context))) + " ";
    }
    chip.Subsystems().begin()->second->RemoveElement("k", nullptr);
    return course + std::to_string(chip.HasElements(100, SUBSYSTEM_BT));
}

TEST(CChipConfigDebugOutput, changes_no_result)
{
    const std::string silent = CourseOfWork();
    CTheMsgHnd::SetDebugLevel(3);
    const std::string discarded = CourseOfWork();
    CTheMsgHnd::SwitchDebugOff();
    std::string captured;
    {
        DebugCapture debug;
        captured = CourseOfWork();
        EXPECT_GT(debug.Lines().size(), 500U);
    }
    EXPECT_EQ(discarded, silent);
    EXPECT_EQ(captured, silent);
    EXPECT_GT(silent.size(), 1000U);
}

}   // namespace
