/// The workbench as a second program uses it: without the tool's code, by real plug-ins on the samples.

#include <workbench/catalog.h>
#include <workbench/check.h>
#include <workbench/compiler/compile.h>
#include <workbench/conversion.h>
#include <workbench/layeredchip.h>
#include <workbench/lookup.h>
#include <workbench/session.h>
#include <workbench/systeminfo.h>

#include <toolprocess.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace workbench {

namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using zynconfig::test::ContentOf;
using zynconfig::test::CTempFolder;
using zynconfig::test::LinesOf;
using zynconfig::test::RunTool;

std::vector<std::string> Samples(const std::string & folder)
{
    std::vector<std::string> paths;
    for (const auto & entry : std::filesystem::directory_iterator(SOURCE_DIR "/samples/pottersong" + folder))
        if (entry.path().extension() == ".toml")
            paths.push_back(entry.path().string());
    std::sort(paths.begin(), paths.end());
    return paths;
}

std::vector<ConfigFile> FilesOf(const std::vector<std::string> & paths)
{
    std::vector<ConfigFile> files;
    for (const std::string & path : paths)
        files.push_back({ path });
    return files;
}

class Session : public testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        sFolder = std::make_unique<CTempFolder>();
        CFindingList findings;
        const auto compilation = compiler::CompileSources(Samples("/metadata"));
        ASSERT_THAT(compilation.mFindings, IsEmpty());
        ASSERT_TRUE(compiler::WriteRepository(*compilation.mRepository, Repository(), findings));
    }

    static void TearDownTestSuite() { sFolder.reset(); }

    static std::string Repository() { return sFolder->File("system.zmd"); }

    void SetUp() override { ASSERT_TRUE(mSession.LoadPlugIns(PLUGIN_DIR)); }

    void Read(const std::vector<std::string> & paths)
    {
        ASSERT_TRUE(mSession.OpenMetadata(Repository()));
        mIsRead = mSession.Read(FilesOf(paths));
    }

    std::string File(const std::string & name, const std::string & content)
    {
        return mOwnFolder.File(name, content);
    }

    std::vector<std::string> Codes() const
    {
        std::vector<std::string> codes;
        for (const Finding & finding : mFindings.Findings())
            codes.push_back(finding.mCode);
        return codes;
    }

    static std::unique_ptr<CTempFolder> sFolder;
    CTempFolder mOwnFolder;
    CFindingList mFindings;
    CSession mSession{ mFindings };
    bool mIsRead = false;
};

std::unique_ptr<CTempFolder> Session::sFolder;

constexpr char HEAD[] = "chip = \"trindle7\"\n[[subsystem]]\ntype = \"bt\"\ndevice = \"otp\"\nstore = 1\n";
const std::string A_KEY = std::string(HEAD) + "key = [{ name = \"CrystalTrim\", value = 7 }]\n";

}   // namespace

TEST_F(Session, gives_each_key_its_values_by_layer_and_the_winner)
{
    Read(Samples("/described"));
    ASSERT_TRUE(mIsRead);
    const LayeredChip chip = LayersAndWinners(mSession.Chip(), mSession.Watch().Chip());
    EXPECT_EQ(chip.mLabel, "trindle7");
    EXPECT_THAT(chip.mLayers, SizeIs(5));

    const auto trim = std::find_if(chip.mKeys.begin(), chip.mKeys.end(),
        [](const LayeredKey & key) { return key.mValues.front().mName == "CrystalTrim"; });
    ASSERT_NE(trim, chip.mKeys.end());
    std::vector<std::string> values;
    for (const LayeredValue & value : trim->mValues)
        values.push_back(NameOf(value.mStore) + ' ' + ToText(value.mValue) + (value.mIsWinner ? " wins" : ""));
    EXPECT_THAT(values, ElementsAre("otp.1 -3", "mtp.1 5", "smem.1 6 wins"));
    EXPECT_THAT(mFindings.Findings(), IsEmpty());
}

TEST_F(Session, lists_chips_subsystems_stores_and_keys)
{
    Read(Samples("/described"));
    CCatalog catalog(*mSession.Metadata(), mSession.ReadContext(), mFindings);
    ASSERT_TRUE(catalog.SelectChipOfFiles(mSession.Watch().Chip()));
    EXPECT_THAT(ChipsOf(catalog, mSession.ReadContext()), SizeIs(3));
    EXPECT_EQ(SubsystemsOf(catalog)[1].mAlias, "bluetooth");
    EXPECT_THAT(StoresOf(mSession.Chip()), SizeIs(5));
    const auto trims = catalog.RecordsLike("bt:*trim");
    ASSERT_TRUE(trims);
    ASSERT_THAT(*trims, SizeIs(1));
    EXPECT_EQ(trims->front().mMetadata->Name(), "CrystalTrim");
}

TEST_F(Session, finds_a_value_that_applies_or_the_default)
{
    Read({ File("a.toml", A_KEY) });
    CCatalog catalog(*mSession.Metadata(), mSession.ReadContext(), mFindings);
    ASSERT_TRUE(catalog.SelectChipOfFiles("trindle7"));
    const auto found = [&](const char * text) {
        const auto record = catalog.Find(ParseKeyText(text));
        const auto value =
            FindApplicable(mSession, catalog, *record, *catalog.RowOf(*record, ParseKeyText(text)));
        return std::to_string(value->mLayer) + ' ' + ToText(value->mValue);
    };
    EXPECT_EQ(found("CrystalTrim"), "1 7");
    EXPECT_EQ(found("RadioRevision"), "0 512");
    EXPECT_EQ(found("RateLimit.FAST.0"), "0 8667");
}

TEST_F(Session, reads_all_files_and_refuses_those_of_another_chip)
{
    const std::string key = "key = [{ id = 5, name = \"A\", type = \"uint8\", value = 1 }]\n";
    const std::string other = File(
        "other.toml", "chip = \"trindle9\"\n[[subsystem]]\ntype = \"bt\"\ndevice = \"otp\"\nstore = 1\n" + key);
    EXPECT_FALSE(mSession.Read(FilesOf({ File("a.toml", HEAD + key), other, File("b.toml", HEAD + key) })));
    EXPECT_THAT(LayersAndWinners(mSession.Chip(), "").mKeys, SizeIs(1));
    ASSERT_THAT(mFindings.Findings(), SizeIs(1));
    EXPECT_THAT(
        kit::reporting::LineOf(mFindings.Findings().front()), AllOf(HasSubstr(other), HasSubstr("trindle9")));
}

TEST_F(Session, finds_by_a_check_what_a_read_accepts)
{
    Read({ File("a.toml", std::string(HEAD) +
                              "key = [\n{ id = 258, name = \"CrystalTrim\", type = \"int8\", value = 99 },\n"
                              "{ id = 999, name = \"New\", type = \"string\", value = \"x\" },\n]\n") });
    ASSERT_TRUE(mIsRead);
    EXPECT_FALSE(Check(mSession));
    ASSERT_THAT(Codes(), ElementsAre("out-of-range", "unknown-key"));
    const Finding & finding = mFindings.Findings().front();
    EXPECT_EQ(finding.mKey, "258");
    EXPECT_EQ(finding.mSubsystem, "bt");
    EXPECT_EQ(finding.mStore, "otp.1");
    EXPECT_EQ(finding.mExpected, "-32 to 31");
    EXPECT_EQ(finding.mSeverity, VrexZynConfigTools::SEVERITY_ERROR);
}

TEST_F(Session, passes_a_check_of_the_samples)
{
    Read(Samples("/described"));
    EXPECT_TRUE(Check(mSession));
    EXPECT_THAT(mFindings.Findings(), IsEmpty());
}

TEST_F(Session, writes_all_that_it_read_or_nothing)
{
    const std::string output = mOwnFolder.File("all.toml");
    ASSERT_TRUE(mSession.Read(FilesOf(Samples(""))));
    ASSERT_TRUE(Convert(mSession, { output }));
    const std::string written = ContentOf(output);
    EXPECT_FALSE(written.empty());

    ASSERT_TRUE(mSession.Read({ { File(
        "alike.toml", std::string(HEAD) + "key = [\n{ id = 5, name = \"A\", type = \"uint8\", value = 1 },\n"
                                          "{ id = 6, name = \"A\", type = \"uint8\", value = 1 },\n]\n") } }));
    EXPECT_FALSE(Convert(mSession, { output }, TOP_LAYER));
    EXPECT_THAT(Codes(), ElementsAre("ambiguous-in-filter"));
    EXPECT_EQ(ContentOf(output), written);
}

TEST_F(Session, writes_the_winners_alone_with_a_filter)
{
    const std::string output = mOwnFolder.File("winners.toml");
    Read(Samples("/described"));
    ASSERT_TRUE(Convert(mSession, { output }, TOP_LAYER));
    EXPECT_THAT(ContentOf(output), HasSubstr("name = \"CrystalTrim\"\nvalue = 6\n"));
}

TEST_F(Session, names_a_format_or_a_plugin_that_is_missing)
{
    EXPECT_FALSE(mSession.Read({ { "a.txt" } }));
    EXPECT_FALSE(mSession.HasPlugIn({ "a.toml", "yaml" }));
    EXPECT_THAT(Codes(), ElementsAre("unknown-format", "unknown-format"));
    EXPECT_EQ(mFindings.Findings().front().mExpected, "toml, image");
    EXPECT_TRUE(mSession.HasPlugIn({ "a.txt", "toml" }));
}

TEST_F(Session, is_empty_before_the_first_read)
{
    EXPECT_THAT(LayersAndWinners(mSession.Chip(), mSession.Watch().Chip()).mKeys, IsEmpty());
    EXPECT_TRUE(Check(mSession));
    EXPECT_EQ(mSession.Metadata(), nullptr);
}

TEST_F(Session, serves_the_example_of_the_manual)
{
    std::vector<std::string> arguments = { PLUGIN_DIR, Repository() };
    const auto samples = Samples("/described");
    arguments.insert(arguments.end(), samples.begin(), samples.end());
    const auto result = RunTool({ .mArguments = arguments, .mProgram = EXAMPLE });
    EXPECT_EQ(result.mExitCode, 0) << result.mErr;
    EXPECT_THAT(result.mOut, HasSubstr("bt CrystalTrim = 6 (smem.1)\n"));
    EXPECT_THAT(result.mErr, IsEmpty());

    arguments.push_back(
        File("bad.toml", std::string(HEAD) + "key = [{ id = 999, name = \"New\", type = \"string\", "
                                             "value = \"x\" }]\n"));
    const auto bad = RunTool({ .mArguments = arguments, .mProgram = EXAMPLE });
    EXPECT_EQ(bad.mExitCode, 1);
    EXPECT_THAT(LinesOf(bad.mErr),
        ElementsAre(" line 0, key 999: key 999 (New) of bt is not in the metadata, in otp.1"));
}

}   // namespace workbench
