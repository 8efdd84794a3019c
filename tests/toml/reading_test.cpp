// The course of a read: who is called, in what order, with what contexts; and what a file's keys become.

#include "toml_support.h"

#include <configtools/metadata.h>
#include <configtools/stores.h>

#include <gmock/gmock.h>

#include <map>

namespace {

using namespace VrexZynConfigTools;
using namespace VrexZynConfigTools::support;
using ::testing::ElementsAre;

using Tags = std::map<std::string, std::string>;

constexpr char TWO_STORES[] = R"(
chip = "abc"

[[subsystem]]
type = "bt"
device = "otp"
store = 1
[[subsystem.key]]
id = 7
type = "uint8"
value = 1
[[subsystem.key]]
id = 8
type = "uint8"
index = [3, 4]
value = 2

[[subsystem]]
type = "wlan"
device = "eeprom"
store = 2
[[subsystem.key]]
id = 9
type = "uint8"
value = 3
)";

// Takes the elements, as a subsystem does, and notes them with the tags of their contexts.
class ElementTaker : public IConfigReaderElementObserver
{
public:
    bool OnElementFound(CElement * element, IConfigContext & context) override
    {
        mElements.emplace_back(element);
        mTags.push_back(dynamic_cast<CBaseContext &>(context).Tags());
        mIndices.push_back(context.GetTags("index"));
        return true;
    }

    std::vector<std::unique_ptr<CElement>> mElements;
    std::vector<Tags> mTags;
    std::vector<std::list<std::string>> mIndices;
};

// Notes the calls, and gives each subsystem an element observer of its own.
class CourseRecorder : public IConfigReaderObserver
{
public:
    void OnReadStarted(IConfigReader &, IConfigContext & context) override { Note("started", context); }
    void OnSubsystemFound(IConfigReader & reader, IConfigContext & context) override
    {
        Note("found", context);
        mTakers.push_back(std::make_unique<ElementTaker>());
        if (mGivesTakers)
            reader.SetElementObserver(*mTakers.back());
    }
    void OnSubsystemCompleted(IConfigReader &, IConfigContext & context) override
    {
        Note("completed after " + std::to_string(mTakers.back()->mElements.size()), context);
    }
    void OnReadEnded(IConfigReader &, IConfigContext & context) override { Note("ended", context); }

    void Note(const std::string & call, IConfigContext & context)
    {
        mCalls.push_back(call);
        auto * base = dynamic_cast<CBaseContext *>(&context);
        mTags.push_back(base != nullptr ? base->Tags() : Tags());
    }

    bool mGivesTakers = true;
    std::vector<std::string> mCalls;
    std::vector<Tags> mTags;
    std::vector<std::unique_ptr<ElementTaker>> mTakers;
};

class CTomlReader : public TomlTest
{
protected:
    // Reads `text` into mRecorder; the reader lives as long as the test.
    void Read(const std::string & text, IConfigContext & context)
    {
        mReader = MakeReader(Put(text));
        mReader->SetObserver(mRecorder);
        mReader->Read(context);
    }

    void Read(const std::string & text, const std::string & tags)
    {
        CZynContext context;
        context.Parse(tags);
        Read(text, context);
    }

    std::unique_ptr<IConfigReader> mReader;
    CourseRecorder mRecorder;
};

TEST_F(CTomlReader, calls_its_observers_in_the_order_of_a_read)
{
    Read(TWO_STORES, "");
    EXPECT_EQ(mErrors.Text(), "");
    EXPECT_THAT(mRecorder.mCalls,
        ElementsAre("started", "found", "completed after 2", "found", "completed after 1", "ended"));
}

TEST_F(CTomlReader, describes_each_subsystem_in_its_context)
{
    Read(TWO_STORES, "");
    const Tags chip{ { "chip", "abc" } };
    const Tags bt{ { "chip", "abc" }, { "subsystemtype", "1" }, { "device", "1" }, { "store", "1" } };
    const Tags wlan{ { "chip", "abc" }, { "subsystemtype", "2" }, { "device", "15" }, { "store", "2" } };
    EXPECT_THAT(mRecorder.mTags, ElementsAre(chip, bt, bt, wlan, wlan, chip));
}

TEST_F(CTomlReader, tells_the_chip_and_the_callers_tags_at_start_and_end)
{
    CZynContext context;
    context.SetTag("mode", "7");
    Read("chip = \"abc\"\n", context);
    const Tags told{ { "chip", "abc" }, { "mode", "7" } };
    EXPECT_THAT(mRecorder.mTags, ElementsAre(told, told));
    EXPECT_EQ(context.Tags(), (Tags{ { "mode", "7" } }));   // the caller's own stays as it is
}

TEST_F(CTomlReader, fetches_its_element_observer_anew_for_each_subsystem)
{
    Read(TWO_STORES, "");
    ASSERT_EQ(mRecorder.mTakers.size(), 2u);
    EXPECT_EQ(mRecorder.mTakers[0]->mElements.size(), 2u);
    ASSERT_EQ(mRecorder.mTakers[1]->mElements.size(), 1u);
    EXPECT_EQ(mRecorder.mTakers[1]->mElements[0]->PsId(), 9u);
}

TEST_F(CTomlReader, keeps_the_element_observer_that_it_has_if_it_gets_no_other)
{
    ElementTaker taker;
    mRecorder.mGivesTakers = false;
    mReader = MakeReader(Put(TWO_STORES));
    mReader->SetObserver(mRecorder);
    mReader->SetElementObserver(taker);
    CZynContext context;
    mReader->Read(context);
    EXPECT_EQ(taker.mElements.size(), 3u);
}

TEST_F(CTomlReader, drops_the_elements_if_nobody_takes_them)
{
    mRecorder.mGivesTakers = false;
    Read(TWO_STORES, "");   // a leak checker watches
    EXPECT_EQ(mErrors.Text(), "");
    EXPECT_EQ(mRecorder.mCalls.size(), 6u);
}

TEST_F(CTomlReader, passes_the_options_of_the_read_on_in_every_context)
{
    Read(TWO_STORES, "insertmode=new;layerfilter=-3;mine=Own");
    for (std::size_t call = 1; call + 1 < mRecorder.mTags.size(); ++call) {
        EXPECT_EQ(mRecorder.mTags[call].at("insertmode"), "new");
        EXPECT_EQ(mRecorder.mTags[call].at("layerfilter"), "-3");
        EXPECT_EQ(mRecorder.mTags[call].at("mine"), "Own");
    }
    const Tags element{ { "chip", "abc" }, { "subsystemtype", "2" }, { "device", "15" }, { "store", "2" },
        { "insertmode", "new" }, { "layerfilter", "-3" }, { "mine", "Own" } };
    EXPECT_EQ(mRecorder.mTakers[1]->mTags[0], element);
}

TEST_F(CTomlReader, replaces_what_the_callers_context_says_of_a_store)
{
    Read(TWO_STORES, "subsystemtype=9;device=9;store=9");
    EXPECT_EQ(mRecorder.mTags[1].at("subsystemtype"), "1");
    EXPECT_EQ(mRecorder.mTags[1].at("device"), "1");
    EXPECT_EQ(mRecorder.mTags[1].at("store"), "1");
}

TEST_F(CTomlReader, tells_the_indices_of_a_row_in_the_context_of_its_element)
{
    Read(TWO_STORES, "");
    const Tags & row = mRecorder.mTakers[0]->mTags[1];
    EXPECT_EQ(row.at("num_indices"), "2");
    EXPECT_EQ(row.at("index1"), "3");
    EXPECT_EQ(row.at("index2"), "4");
    EXPECT_EQ(mRecorder.mTakers[0]->mTags[0].count("num_indices"), 0u);
    EXPECT_EQ(mRecorder.mTags[1].count("num_indices"), 0u);
}

TEST_F(CTomlReader, keeps_the_order_of_ten_indices_and_more)
{
    Read(HEAD + "[[subsystem.key]]\nid = 1\ntype = \"uint8\"\nvalue = 1\n"
                "index = [11, 10, 9, 8, 7, 6, 5, 4, 3, 2, 1, 4294967295]\n",
        "");
    EXPECT_THAT(mRecorder.mTakers[0]->mIndices[0],
        ElementsAre("11", "10", "9", "8", "7", "6", "5", "4", "3", "2", "1", "4294967295"));
}

TEST_F(CTomlReader, makes_no_row_of_a_stray_index_in_the_callers_context)
{
    Read(TWO_STORES, "num_indices=1;index1=5;myindexfoo=6");
    const Tags & plain = mRecorder.mTakers[0]->mTags[0];
    EXPECT_EQ(plain.count("num_indices") + plain.count("index1") + plain.count("myindexfoo"), 0u);
    EXPECT_THAT(mRecorder.mTakers[0]->mIndices[1], ElementsAre("3", "4"));
}

TEST_F(CTomlReader, reads_with_the_null_context_as_with_an_empty_one)
{
    Read(TWO_STORES, CNullContext::Ref());
    EXPECT_EQ(mErrors.Text(), "");
    EXPECT_EQ(mRecorder.mTags[1].at("subsystemtype"), "1");
    ReadChip chip;
    mReader->SetObserver(chip.Chip());
    mReader->Read(CNullContext::Ref());
    EXPECT_EQ(chip.Chip().Subsystems().size(), 2u);
}

TEST_F(CTomlReader, calls_nobody_if_anything_is_wrong)
{
    Read(std::string(TWO_STORES) + "[[subsystem.key]]\nid = 10\ntype = \"uint8\"\nvalue = 256\n", "");
    EXPECT_NE(mErrors.Text(), "");
    EXPECT_TRUE(mRecorder.mCalls.empty());
    EXPECT_TRUE(mRecorder.mTakers.empty());
}

TEST_F(CTomlReader, needs_an_observer)
{
    const std::string path = Put(TWO_STORES);
    CZynContext context;
    MakeReader(path)->Read(context);
    EXPECT_EQ(mErrors.Text(), path + ": invalid operation (a read without an observer)");
}

TEST_F(CTomlReader, may_read_twice_and_keeps_the_records_of_the_first_time)
{
    Read(TWO_STORES, "");
    CourseRecorder second;
    mReader->SetObserver(second);
    CZynContext context;
    mReader->Read(context);
    CElement & first = *mRecorder.mTakers[0]->mElements[0];
    ASSERT_NE(first.Metadata(), nullptr);
    EXPECT_EQ(first.Metadata()->PsId(), 7u);
    EXPECT_NE(first.Metadata(), second.mTakers[0]->mElements[0]->Metadata());
}

TEST_F(CTomlReader, adds_the_lines_of_its_error_to_one_that_stands)
{
    mErrors.Set("something before");
    Read("chip = 1\n", "");
    EXPECT_THAT(mErrors.Text(), ::testing::StartsWith("something before\n"));
}

TEST_F(CTomlReader, lets_no_exception_of_an_observer_out)
{
    struct Thrower : CourseRecorder
    {
        void OnSubsystemFound(IConfigReader &, IConfigContext &) override { throw std::runtime_error("oh"); }
    } thrower;
    const auto reader = MakeReader(Put(TWO_STORES));
    reader->SetObserver(thrower);
    CZynContext context;
    EXPECT_NO_THROW(reader->Read(context));
    EXPECT_THAT(mErrors.Text(), ::testing::HasSubstr("an unexpected error occurred (oh)"));
}

// The record of a key is how its name and shape reach a writer.

const IMetadata & RecordOf(const CourseRecorder & recorder)
{
    return *recorder.mTakers.at(0)->mElements.at(0)->Metadata();
}

TEST_F(CTomlReader, gives_each_element_and_its_payloads_a_record)
{
    Read(AFile("uint16", "[1, 2]"), "");
    const IMetadata & record = RecordOf(mRecorder);
    EXPECT_TRUE(record.IsValid());
    EXPECT_EQ(record.PsId(), 100u);
    EXPECT_EQ(record.Name(), "Key");
    EXPECT_EQ(record.InternalType(), "uint16");
    EXPECT_TRUE(record.IsArray());
    EXPECT_EQ(record.MetadataType(), METADATA_SIMPLE);
    for (IPayload * payload : mRecorder.mTakers[0]->mElements[0]->GetPayloadCopy(false))
        EXPECT_EQ(dynamic_cast<IMetadataUser &>(*payload).Metadata(), &record);
}

TEST_F(CTomlReader, tells_in_the_record_that_a_single_value_is_no_array)
{
    Read(AFile("integer", "1"), "");
    EXPECT_FALSE(RecordOf(mRecorder).IsArray());
    EXPECT_EQ(RecordOf(mRecorder).InternalType(), "integer");
}

TEST_F(CTomlReader, tells_in_the_record_that_a_value_is_an_enumerator)
{
    Read(AFile("enum", "{ name = \"ON\", number = 1 }"), "");
    EXPECT_EQ(RecordOf(mRecorder).MetadataType(), METADATA_ENUM);
}

TEST_F(CTomlReader, tells_in_the_record_that_a_value_is_a_structure)
{
    Read(AFile("struct", "[{ uint8 = 1 }]"), "");
    EXPECT_EQ(RecordOf(mRecorder).MetadataType(), METADATA_STRUCT);
    EXPECT_FALSE(RecordOf(mRecorder).IsArray());
}

// What reads add up to in a chip configuration.

TEST_F(CTomlReader, makes_a_row_that_has_the_record_too)
{
    ReadChip chip;
    ASSERT_TRUE(chip.Read(Put(AFile("uint8", "5") + "index = 3\n"))) << mErrors.Text();
    ASSERT_EQ(chip.Elements().size(), 1u);
    EXPECT_EQ(chip.Elements()[0]->KeyString(), "Key.3");
    ASSERT_NE(chip.Elements()[0]->Metadata(), nullptr);
    EXPECT_EQ(chip.Elements()[0]->Metadata()->Name(), "Key");
}

TEST_F(CTomlReader, joins_two_blocks_of_one_subsystem_and_store)
{
    ReadChip chip;
    ASSERT_TRUE(chip.Read(
        Put(AFile("uint8", "1") + AFile("uint8", "2").substr(std::string("chip = \"abc\"\n").size()))));
    EXPECT_EQ(chip.Chip().Subsystems().size(), 1u);
    EXPECT_EQ(chip.Elements().size(), 2u);
}

TEST_F(CTomlReader, reports_the_stores_of_rom_so_that_they_get_a_layer)
{
    ReadChip chip;
    std::string text = TWO_STORES;
    text.replace(text.find("\"otp\""), 5, "\"rom\"");
    ASSERT_TRUE(chip.Read(Put(text))) << mErrors.Text();
    ASSERT_EQ(chip.Chip().Stores().size(), 2u);
    EXPECT_EQ(chip.Chip().Stores().front()->DeviceId(), IStoreManager::DEVICE_ROM);
    EXPECT_EQ(chip.Chip().Subsystems().count("abc| |1|1"), 1u);
    EXPECT_EQ(chip.Chip().Subsystems().count("abc| |2|2"), 1u);
}

TEST_F(CTomlReader, reports_no_store_of_a_former_read_and_none_without_a_number)
{
    Read(TWO_STORES, "");
    CZynContext context;
    EXPECT_TRUE(dynamic_cast<IStoreManager &>(*mReader).Stores(context).empty());
    std::string text = TWO_STORES;
    text.replace(text.find("\"otp\""), 5, "\"rom\"").replace(text.find("store = 1"), 9, "store = 0");
    Put(text);
    mReader->Read(context);
    EXPECT_EQ(mErrors.Text(), "");
    EXPECT_TRUE(dynamic_cast<IStoreManager &>(*mReader).Stores(context).empty());
}

// Duplicates: the insert mode decides what becomes of them, and where one is lost it is told.

class StatusCatcher : public IMessageSink
{
public:
    void OnDebugLine(const DebugLine &) override {}
    void OnStatus(GroupEnum, StatusLevels, const std::string & text) override { mTexts.push_back(text); }
    std::vector<std::string> mTexts;
};

const std::string TWICE = AFile("uint8", "1") + "\n[[subsystem.key]]\nid = 100\ntype = \"uint8\"\nvalue = 2\n";

TEST_F(CTomlReader, stores_a_key_twice_without_an_insert_mode)
{
    StatusCatcher catcher;
    const CMessageSinkGuard guard(&catcher);
    ReadChip chip;
    ASSERT_TRUE(chip.Read(Put(TWICE)));
    EXPECT_EQ(chip.Elements().size(), 2u);
    EXPECT_TRUE(catcher.mTexts.empty());
}

TEST_F(CTomlReader, warns_of_a_key_that_another_one_replaces)
{
    StatusCatcher catcher;
    const CMessageSinkGuard guard(&catcher);
    ReadChip chip;
    const std::string path = Put(TWICE);
    ASSERT_TRUE(chip.Read(path, "insertmode=overwrite"));
    ASSERT_EQ(chip.Elements().size(), 1u);
    EXPECT_EQ(chip.Elements()[0]->ToString(), "2");
    EXPECT_THAT(catcher.mTexts,
        ElementsAre(path + ":14:1: the key 100 stands in line 8 already; only one of the two counts"));
}

TEST_F(CTomlReader, warns_of_a_key_that_is_refused_for_another_one)
{
    StatusCatcher catcher;
    const CMessageSinkGuard guard(&catcher);
    ReadChip chip;
    ASSERT_TRUE(chip.Read(Put(TWICE), "insertmode=New"));
    ASSERT_EQ(chip.Elements().size(), 1u);
    EXPECT_EQ(chip.Elements()[0]->ToString(), "1");
    EXPECT_EQ(catcher.mTexts.size(), 1u);
}

TEST_F(CTomlReader, takes_rows_of_one_key_for_different_places)
{
    StatusCatcher catcher;
    const CMessageSinkGuard guard(&catcher);
    ReadChip chip;
    ASSERT_TRUE(
        chip.Read(Put(AFile("uint8", "1") + "index = 1\n\n[[subsystem.key]]\nid = 100\ntype = \"uint8\"\n"
                                            "index = 2\nvalue = 2\n"),
            "insertmode=overwrite"));
    EXPECT_EQ(chip.Elements().size(), 2u);
    EXPECT_TRUE(catcher.mTexts.empty());
}

// The chip.

TEST_F(CTomlReader, refuses_a_file_for_another_chip_than_the_callers)
{
    EXPECT_EQ(ErrorOf(HEAD, "chip=xyz"), "1:8: the file is for the chip \"abc\"; expected \"xyz\"");
    EXPECT_EQ(ErrorOf(HEAD, "chip=abc"), "");
}

TEST_F(CTomlReader, leaves_the_callers_chip_if_the_file_names_none)
{
    std::string text = HEAD;
    Read(text.replace(text.find("abc"), 3, ""), "chip=xyz");
    EXPECT_EQ(mRecorder.mTags.at(1).at("chip"), "xyz");
}

// Layers that a tool tells.

class StoreLayers : public CTomlReader
{};

TEST_F(StoreLayers, stand_in_the_contexts_of_subsystems_and_elements)
{
    Read(TWO_STORES, "storelayers=1.1:3,15.2:15");
    EXPECT_EQ(mRecorder.mTags[1].at("layernumber"), "3");
    EXPECT_EQ(mRecorder.mTags[2].at("layernumber"), "3");
    EXPECT_EQ(mRecorder.mTags[3].at("layernumber"), "15");
    EXPECT_EQ(mRecorder.mTakers[0]->mTags[1].at("layernumber"), "3");
    EXPECT_EQ(mRecorder.mTakers[1]->mTags[0].at("layernumber"), "15");
    EXPECT_EQ(mRecorder.mTags[0].count("layernumber"), 0u);
}

TEST_F(StoreLayers, give_no_layer_to_a_store_that_is_not_listed)
{
    Read(TWO_STORES, "storelayers=1.2:3,2.1:4;layernumber=9");
    EXPECT_EQ(mRecorder.mTags[1].count("layernumber"), 0u);
    EXPECT_EQ(mRecorder.mTakers[0]->mTags[0].count("layernumber"), 0u);
}

TEST_F(StoreLayers, leave_the_layer_alone_if_the_tag_is_absent)
{
    Read(TWO_STORES, "layernumber=9");
    EXPECT_EQ(mRecorder.mTags[1].at("layernumber"), "9");
}

TEST_F(StoreLayers, are_an_error_if_they_cannot_be_read)
{
    for (const std::string junk :
        { "1", "1.1", "1.1:", "1:1", ".1:1", "1.:1", "1.1:1,", ",1.1:1", "1.1:1,,2.1:2", "1.1:0", "1.1:16",
            "1.1:-1", "1.70000:1", "-2.1:1", "1.-1:1", "1.1:1x", "x1.1:1", " 1.1:1", "1.1: 1", "1.1:+1",
            "1,1:1", "1.1:1 ,2.1:2", "1.1:1,1.1:1", "0x1.1:1", "1.1:99999999999999999999" })
    {
        EXPECT_EQ(ErrorOf(TWO_STORES, "storelayers=" + junk),
            " the context tag \"storelayers\" reads \"" + junk +
                "\"; expected DEVICE.STORE:LAYER,... in decimal, such as \"1.1:1,15.1:2\"");
    }
}

TEST_F(StoreLayers, let_no_call_out_if_they_are_wrong)
{
    Read(TWO_STORES, "storelayers=junk");
    EXPECT_TRUE(mRecorder.mCalls.empty());
}

// A key of three stores: the winner of a filtered read depends on the layers only, not on the order of files.
constexpr char ONE_STORE[] = "chip = \"abc\"\n[[subsystem]]\ntype = \"bt\"\nstore = 1\n"
                             "key = [{ id = 5, name = \"k\", type = \"uint8\", value = ";

std::string WinnerOf(
    const TemporaryFolder & folder, std::vector<std::string> devices, const std::string & filter)
{
    ReadChip chip;
    for (const std::string & device : devices) {
        PutContent(folder / (device + ".toml"),
            ONE_STORE + std::to_string(device.size()) + " }]\ndevice = \"" + device + "\"\n");
        chip.Read(folder / (device + ".toml"), "storelayers=1.1:1,2.1:2,15.1:3;layerfilter=" + filter);
    }
    chip.Write(folder / "out.toml", "layerfilter=" + filter);
    const std::string text = ContentOf(folder / "out.toml");
    const std::size_t layer = text.find("layer = ");
    return layer == std::string::npos ? "none" : text.substr(layer + 8, 1);
}

TEST_F(StoreLayers, decide_a_filtered_read_whatever_the_order_of_the_files)
{
    const std::vector<std::string> up{ "otp", "smem", "eeprom" };
    const std::vector<std::string> down{ "eeprom", "smem", "otp" };
    const std::map<std::string, std::string> winners{ { "15", "3" }, { "3", "3" }, { "2", "2" }, { "1", "1" },
        { "-3", "1" }, { "-1", "1" }, { "0", "none" } };
    for (const auto & [filter, winner] : winners) {
        EXPECT_EQ(WinnerOf(mFolder, up, filter), winner) << filter;
        EXPECT_EQ(WinnerOf(mFolder, down, filter), winner) << filter;
    }
}

}   // namespace
