// What a read delivers besides elements with metadata: raw ones, contexts, the provider's questions.

#include "records.h"

namespace VrexZynConfigTools::support {
namespace {

/// Notes the calls of a read with the tags that matter, and keeps no element.
class CallLog : public IConfigReaderObserver, public IConfigReaderElementObserver
{
public:
    void OnReadStarted(IConfigReader &, IConfigContext & context) override { Note("start", context); }
    void OnSubsystemFound(IConfigReader & reader, IConfigContext & context) override
    {
        reader.SetElementObserver(*this);
        Note("found", context);
    }
    void OnSubsystemCompleted(IConfigReader &, IConfigContext & context) override
    {
        Note("completed", context);
    }
    void OnReadEnded(IConfigReader &, IConfigContext & context) override { Note("end", context); }
    bool OnElementFound(CElement * element, IConfigContext & context) override
    {
        const std::unique_ptr<CElement> owned(element);
        Note("key " + std::to_string(element->PsId()), context);
        return true;
    }

    Lines mCalls;

private:
    void Note(const std::string & call, IConfigContext & context)
    {
        mCalls.push_back(call);
        for (const char * const tag : { "chip", "subsystemtype", "device", "store", "layernumber",
                 "num_indices", "index1", "index2", "mark" })
            mCalls.back() += ' ' + context.GetTag(tag);
    }
};

class ImageReading : public EveryShapeTest
{
protected:
    Lines CallsOf(const std::string & bytes, const std::string & tags, IMetadataProvider * provider = nullptr)
    {
        PutContent(mPath, bytes);
        CZynContext context;
        context.Parse(tags);
        CallLog log;
        const auto reader = MakeReader(mPath);
        reader->SetObserver(log);
        if (provider != nullptr)
            reader->SetMetadataProvider(*provider);
        reader->Read(context);
        return log.mCalls;
    }

    Lines LinesOf(const std::string & bytes, const std::string & tags, IMetadataProvider * provider)
    {
        PutContent(mPath, bytes);
        CChipConfig chip;
        EXPECT_TRUE(Read(chip, mPath, provider, tags)) << TakeError();
        return Describe(chip);
    }

    const std::string mRow = AKey(13, Bytes(7, 2), 0, { 5, 1 });
};

TEST_F(ImageReading, delivers_contexts_made_of_the_callers)
{
    const std::string image = AnImage(2, AStore(2) + AChunk(1, mRow) + AChunk(2, AKey(5, Bytes(1, 2))) +
                                             AStore(1, 1, 2) + AChunk(1, Bytes(2, 4)));
    EXPECT_EQ(CallsOf(image, "mark=x;index7=1;num_indices=1", &mProvider),
        (Lines{ "start abc        x", "found abc 1 15 1     x", "key 13 abc 1 15 1  2 5 1 x",
            "key 5 abc 1 15 1     x", "completed abc 1 15 1     x", "found abc 2 1 2     x",
            "completed abc 2 1 2     x", "end abc        x" }));
    EXPECT_FALSE(mErrors.IsSet()) << mErrors.Text();
}

TEST_F(ImageReading, tells_the_layers_of_the_stores_that_the_caller_lists)
{
    const std::string image =
        AnImage(2, AStore(1) + AChunk(1, Bytes(1, 4)) + AStore(1, 1, 2) + AChunk(1, Bytes(2, 4)));
    EXPECT_EQ(CallsOf(image, "storelayers=15.1:3;layernumber=9"),
        (Lines{ "start abc    9    ", "found abc 1 15 1 3    ", "completed abc 1 15 1 3    ",
            "found abc 2 1 2     ", "completed abc 2 1 2     ", "end abc    9    " }));
}

TEST_F(ImageReading, opens_a_subsystem_for_each_run_of_its_keys)
{
    const std::string other = Bytes(2, 4);
    const std::string image =
        AnImage(1, AStore(3) + AChunk(1, AKey(5, "ab")) + AChunk(2, other) + AChunk(3, AKey(6, "cd")));
    EXPECT_EQ(LinesOf(image, "", nullptr), (Lines{ "abc| |1|1 device 15 store 1", "raw 5  5:25185",
                                               "raw 6  5:25699", "abc| |2|1 device 15 store 1" }));
}

TEST_F(ImageReading, without_metadata_gives_words_and_octets_as_they_are)
{
    const std::string image = AnImage(1, AStore(4) + AChunk(1, AKey(5, "abcd")) + AChunk(2, AKey(6, "odd", 1)) +
                                             AChunk(3, AKey(7, "")) + AChunk(4, mRow));
    EXPECT_EQ(LinesOf(image, "", nullptr), (Lines{ "abc| |1|1 device 15 store 1", "raw 5  5:25185 5:25699",
                                               "raw 6  8:octets:6f6464", "raw 7 ", "row 13 .5.1 5:7" }));
}

TEST_F(ImageReading, gives_keys_raw_that_the_metadata_do_not_know_and_says_so)
{
    const StatusLog log;
    EXPECT_EQ(LinesOf(AnImage(1, AStore(2) + AChunk(1, AKey(99, "ab")) + AChunk(2, AKey(5, Bytes(1, 2)))), "",
                  &mProvider),
        (Lines{ "abc| |1|1 device 15 store 1", "raw 99  5:25185", "numbers 5 Nuint8 4:1" }));
    EXPECT_EQ(log.mTexts,
        (Lines{ mPath + ": the metadata don't know 1 key, which comes raw: store 1 of eeprom, key 99" }));
}

// In the gap behind a field of 3 bits, or in a field of 64 bits, which is unpacked to 0.
TEST_F(ImageReading, warns_of_bits_that_a_struct_does_not_keep)
{
    auto & layout = mProvider.Struct(BT, ARecord(40).Named("Gap").Array());
    layout.AddField("", &mProvider.NumberField(ARecord(0).Named("Low").OfType("uint8").Within(0, 255)), 0, 3);
    layout.AddField(
        "", &mProvider.NumberField(ARecord(0).Named("Long").OfType("uint64").Within(0, -1)), 16, 64);
    const auto warnings = [this](std::uint64_t first, std::uint64_t last, const std::string & tags) {
        const StatusLog log;
        const std::string value = Bytes(7, 10) + Bytes(first, 2) + Bytes(last, 8);
        EXPECT_EQ(LinesOf(AnImage(1, AStore(1) + AChunk(1, AKey(40, value))), tags, &mProvider).size(), 2U);
        return log.mTexts;
    };
    const Lines lost{ mPath + ": bits of 1 key are lost, as no field holds them or can give them back: "
                              "store 1 of eeprom, key 40 (Gap)" };
    EXPECT_EQ(warnings(7, 0, ""), Lines());
    EXPECT_EQ(warnings(15, 0, ""), lost);
    EXPECT_EQ(warnings(7, 1, ""), lost);
    EXPECT_EQ(warnings(15, 0, "nodatacheck=true"), lost);
}

TEST_F(ImageReading, warns_of_keys_there_twice_where_only_one_of_them_counts)
{
    const std::string key = AKey(5, Bytes(1, 2));
    const std::string image = AnImage(2, AStore(3) + AChunk(1, key) + AChunk(2, AKey(6, "ab")) +
                                             AChunk(3, key) + AStore(1, 1, 2) + AChunk(1, key));
    const StatusLog log;
    EXPECT_EQ(LinesOf(image, "", &mProvider).size(), 6U);
    EXPECT_EQ(log.mTexts, Lines());
    for (const std::string mode : { "new", "overwrite" })
        EXPECT_EQ(LinesOf(image, "insertmode=" + mode, &mProvider).size(), 5U);
    EXPECT_EQ(log.mTexts, Lines(2, mPath + ": of keys that are there more than once only one counts: "
                                           "store 1 of eeprom, key 5 (Nuint8)"));
}

TEST_F(ImageReading, asks_for_records_in_the_subsystem_of_the_key)
{
    const std::string image = AnImage(1, AStore(1) + AChunk(1, Bytes(2, 4) + Bytes(5, 4) + Bytes(0, 2) + "ab"));
    EXPECT_EQ(LinesOf(image, "subsystemtype=1", &mProvider),
        (Lines{ "abc| |2|1 device 15 store 1", "raw 5  5:25185" }));
}

TEST_F(ImageReading, of_an_unknown_enumerator_is_an_error_but_without_checks_its_words_are_kept)
{
    const std::string image = AnImage(1, AStore(1) + AChunk(1, AKey(12, Bytes(5, 4))));
    EXPECT_EQ(ErrorOf(image), "store 1 of eeprom, key 12 (Colour): Value 5 for element with psid = 12, Name = "
                              "Colour doesn't match a valid enum");
    EXPECT_EQ(LinesOf(image, "nodatacheck=true", &mProvider),
        (Lines{ "abc| |1|1 device 15 store 1", "raw 12  5:5 5:0" }));
}

TEST_F(ImageReading, checks_values_unless_told_otherwise)
{
    mProvider.Number(BT, ARecord(30).Named("Volume").OfType("uint8").Within(1, 9));
    const std::string image =
        AnImage(1, AStore(1) + AChunk(1, AKey(30, Bytes(1, 2) + Bytes(10, 2) + Bytes(2, 2))));
    EXPECT_EQ(ErrorOf(image), "store 1 of eeprom, key 30 (Volume): Read value 10 is out of range [1,9]");
    EXPECT_EQ(LinesOf(image, "nodatacheck=true", &mProvider),
        (Lines{ "abc| |1|1 device 15 store 1", "numbers 30 Volume 4:1 4:10 4:2" }));
}

TEST_F(ImageReading, keeps_the_errors_that_stood_before)
{
    mErrors.Set("an older one");
    PutContent(mPath, AnImage(1, AStore(1) + AChunk(1, AKey(5, Bytes(1, 2)))));
    CChipConfig chip;
    Read(chip, mPath, &mProvider);
    EXPECT_EQ(mErrors.Text(), "an older one");
    EXPECT_EQ(Describe(chip).size(), 2U);
    PutContent(mPath, "junk");
    Read(chip, mPath, &mProvider);
    EXPECT_EQ(
        mErrors.Text(), "an older one\n" + mPath + ": this is no store image: it doesn't begin with \"ZIMG\"");
}

TEST_F(ImageReading, gives_on_the_errors_of_the_provider)
{
    mProvider.FailWith("the repository is gone");
    EXPECT_EQ(ErrorOf(AnImage(1, AStore(1) + AChunk(1, AKey(5, "ab")))),
        "store 1 of eeprom, key 5: the repository is gone");
}

TEST_F(ImageReading, without_an_observer_is_an_error)
{
    PutContent(mPath, AnImage(0, ""));
    CZynContext context;
    MakeReader(mPath)->Read(context);
    EXPECT_EQ(TakeError(), "invalid operation (a read without an observer)");
}

TEST_F(ImageReading, needs_a_tag_of_layers_that_can_be_read)
{
    EXPECT_EQ(ErrorOf(AnImage(0, ""), "storelayers=junk"),
        "the context tag \"storelayers\" reads \"junk\"; expected DEVICE.STORE:LAYER,... in decimal, such as "
        "\"1.1:1,15.1:2\"");
}

TEST_F(ImageReading, needs_the_chip_that_the_caller_names)
{
    EXPECT_EQ(ErrorOf(AnImage(0, ""), "chip=xyz"), "the image is for the chip \"abc\"; expected \"xyz\"");
    EXPECT_EQ(ErrorOf(AnImage(0, ""), "chip=abc"), "");
}

TEST_F(ImageReading, makes_a_filtered_read_by_the_layers_listed)
{
    PutContent(mPath, AnImage(2, AStore(1, 15, 1) + AChunk(1, AKey(5, Bytes(1, 2))) + AStore(1, 15, 2) +
                                     AChunk(1, AKey(5, Bytes(2, 2)))));
    CChipConfig chip;
    ASSERT_TRUE(Read(chip, mPath, &mProvider, "layerfilter=1;storelayers=15.1:1,15.2:2"));
    CZynContext context;
    context.Parse("layerfilter=1;chip=abc;subsystemtype=1");
    EXPECT_EQ(chip.Element(5, context).ToString(), "1");
}

}   // namespace
}   // namespace VrexZynConfigTools::support
