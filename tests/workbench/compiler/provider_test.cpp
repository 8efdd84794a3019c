/// The compiled samples, as the plug-in that reads a repository tells them.

#include <toolprocess.h>
#include <workbench/compiler/compile.h>

#include <configtools/helper.h>
#include <configtools/metadata.h>
#include <configtools/metadataprovider.h>
#include <configtools/metadataproviderfactory.h>
#include <configtools/zyncontext.h>
#include <support/framework_errors.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <memory>

namespace workbench::compiler::test {

namespace {

using namespace VrexZynConfigTools;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using zynconfig::test::CTempFolder;
using zynconfig::test::RunTool;

std::vector<std::string> SampleFiles(const std::string & folder)
{
    std::vector<std::string> paths;
    for (const auto & entry : std::filesystem::directory_iterator(SOURCE_DIR "/samples/pottersong" + folder))
        if (entry.path().extension() == ".toml")
            paths.push_back(entry.path().string());
    std::sort(paths.begin(), paths.end());
    return paths;
}

class CompiledSamples : public testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        sFolder = std::make_unique<CTempFolder>();
        const Compilation compilation = CompileSources(SampleFiles("/metadata"));
        ASSERT_TRUE(compilation.mRepository);
        CFindingList findings;
        ASSERT_TRUE(WriteRepository(*compilation.mRepository, Repository(), findings));
        CMetadataProviderFactory::Ref().Load(PLUGIN_DIR);
        sProvider.reset(CMetadataProviderFactory::Ref().Create("sqlitemetadata", Repository()));
        ASSERT_NE(sProvider, nullptr);
        sContext.SetChip("trindle7");
    }

    static void TearDownTestSuite()
    {
        sProvider.reset();
        sFolder.reset();
    }

    static std::string Repository() { return sFolder->File("system.zmd"); }
    static const IMetadata & Record(const std::string & name)
    {
        return sProvider->MetadataByName(name, sContext);
    }

    static std::vector<std::pair<std::string, std::pair<int, int>>> BitsOf(const std::string & name)
    {
        std::vector<std::pair<std::string, std::pair<int, int>>> bits;
        for (const CStructField * field : *Record(name).Details()->GetStructFields())
            bits.push_back({ field->Metadata()->Name(), { field->ElemLsbBitPos(), field->ElemBitWidth() } });
        return bits;
    }

    /// The value of a key that no file sets, as the tool prints it.
    static std::string DefaultOf(const std::string & key)
    {
        const auto result = RunTool({ { "--metadata", Repository(), "get", key, SampleFiles("").front() } });
        return result.mExitCode == 0 ? result.mOut.substr(0, result.mOut.find('\n')) : result.mErr;
    }

    static inline std::unique_ptr<CTempFolder> sFolder;
    static inline std::unique_ptr<IMetadataProvider> sProvider;
    static inline CZynContext sContext;
    support::FrameworkErrors mErrors;
};

}   // namespace

TEST_F(CompiledSamples, name_the_system_and_its_chips)
{
    EXPECT_THAT(sProvider->Systems(), ElementsAre("pottersong"));
    std::vector<std::vector<std::string>> chips;
    for (const IChipInfo * chip : sProvider->Chips(sContext))
        chips.push_back({ chip->ChipName(), chip->ChipId(), chip->RomName(), chip->RomVersion(),
            chip->EfuseHash(), chip->SystemVersionLabel(), chip->SystemDescription(), chip->SystemVersion(),
            chip->BuildDate() });
    EXPECT_THAT(chips, ElementsAre(ElementsAre("trindle7", "13335", "kestrel", "2.0", "165", "trindle7",
                                       "Kitchen speaker, first edition", "7.2", "2024-06-11"),
                           ElementsAre("trindle7", "13335", "kestrel", "1.3", "", "trindle7-early",
                               "Kitchen speaker, samples of the first hundred", "7.0", "2023-11-30"),
                           ElementsAre("trindle9", "13593", "merlin", "1.0", "multiple_efuses", "trindle9",
                               "Kitchen speaker, first edition", "7.2", "2024-06-11")));
}

TEST_F(CompiledSamples, name_the_subsystems_in_the_order_of_their_sources)
{
    std::vector<std::pair<std::string, std::string>> subsystems;
    for (const ISubsystemInfo * subsystem : sProvider->Subsystems(sContext))
        subsystems.push_back({ subsystem->Name(), subsystem->Alias() });
    EXPECT_THAT(subsystems, ElementsAre(Pair("curator", ""), Pair("bt", "bluetooth"), Pair("wlan", "wifi"),
                                Pair("audio", "sound"), Pair("app", "application")));
    const ISubsystemInfo & bt = *sProvider->Subsystems(sContext)[1];
    EXPECT_EQ(bt.Version() + bt.Layer() + bt.Variant() + bt.Description() + bt.BuildDate(),
        "5.30audioShort-range radio2024-06-01");
}

TEST_F(CompiledSamples, hold_76_keys)
{
    EXPECT_EQ(sProvider->AllMetadata(sContext).size(), 76u);
    EXPECT_EQ(mErrors.Text(), "");
}

TEST_F(CompiledSamples, tell_all_that_a_source_says_of_a_number)
{
    const IMetadata & record = Record("CrystalTrim");
    EXPECT_EQ(record.PsId(), 0x0102u);
    EXPECT_EQ(record.MetadataType(), METADATA_SIMPLE);
    EXPECT_EQ(record.InternalType(), "int8");
    EXPECT_EQ(record.Format(), "signed_decimal");
    EXPECT_EQ(record.Min(), -32);
    EXPECT_EQ(record.Max(), 31);
    EXPECT_EQ(record.Units(), "ppm");
    EXPECT_EQ(record.SourceDefault(), "0");
    EXPECT_EQ(record.AccessRights(), "read_write");
    EXPECT_EQ(
        record.Description(), "Correction of the crystal, measured at the end of the module maker's line.");
    EXPECT_FALSE(record.IsArray() || record.IsInternal());
}

TEST_F(CompiledSamples, keep_a_range_of_unsigned_64_bits)
{
    EXPECT_EQ(Record("SerialNumber").Min(), 1);
    EXPECT_EQ(static_cast<std::uint64_t>(Record("SerialNumber").Max()), 18446744073709551615u);
}

TEST_F(CompiledSamples, tell_the_lengths_of_arrays_and_texts)
{
    EXPECT_TRUE(Record("TxPowerSteps").IsArray());
    EXPECT_EQ(Record("TxPowerSteps").ArrayMinLength(), 1);
    EXPECT_EQ(Record("TxPowerSteps").ArrayMaxLength(), 8);
    EXPECT_EQ(Record("BtAddress").Min(), 6);
    EXPECT_EQ(Record("BtAddress").Max(), 6);
}

TEST_F(CompiledSamples, hold_the_enumerators_of_keys)
{
    EXPECT_THAT(*Record("RadioClass").Details()->GetEnums(),
        ElementsAre(Pair("CLASS_1", 1), Pair("CLASS_2", 2), Pair("CLASS_3", 3)));
}

TEST_F(CompiledSamples, hold_the_indices_of_tables)
{
    const IMetadata & record = Record("RateLimit");
    ASSERT_EQ(record.NumIndices(), 2u);
    EXPECT_EQ(record.TableIndex(1)->Name(), "Mode");
    EXPECT_EQ(record.TableIndex(1)->Type(), CTableIndex::INDEX_ENUM);
    EXPECT_THAT(
        record.TableIndex(1)->Enums(), ElementsAre(Pair("FAST", 2), Pair("LEGACY", 0), Pair("MIXED", 1)));
    EXPECT_EQ(record.TableIndex(1)->Max(), 2);
    EXPECT_EQ(record.TableIndex(2)->Name(), "Chain");
    EXPECT_EQ(record.TableIndex(2)->Type(), CTableIndex::INDEX_INTEGER);
    EXPECT_EQ(record.TableIndex(2)->Max(), 1);
}

TEST_F(CompiledSamples, lay_out_structs)
{
    EXPECT_THAT(BitsOf("SniffMode"),
        ElementsAre(Pair("Enabled", Pair(0, 1)), Pair("Attempts", Pair(1, 7)), Pair("Interval", Pair(8, 16)),
            Pair("Timeout", Pair(24, 8)), Pair("MaxLatency", Pair(32, 32))));
    auto & detail = dynamic_cast<CMetadataDetailStruct &>(*Record("SniffMode").Details());
    EXPECT_TRUE(detail.IsLittleEndian());
    EXPECT_FALSE(detail.IsOctetsInBin());
    EXPECT_TRUE(dynamic_cast<CMetadataDetailStruct &>(*Record("LinkKey").Details()).IsOctetsInBin());
}

TEST_F(CompiledSamples, order_the_fields_of_a_struct_that_is_not_little_endian)
{
    EXPECT_FALSE(
        dynamic_cast<CMetadataDetailStruct &>(*Record("CoexistenceWindow").Details()).IsLittleEndian());
    EXPECT_THAT(
        BitsOf("CoexistenceWindow"), ElementsAre(Pair("Offset", Pair(0, 16)), Pair("Slots", Pair(32, 32)),
                                         Pair("Guard", Pair(52, 12)), Pair("Priority", Pair(48, 4))));
}

TEST_F(CompiledSamples, write_out_a_shared_struct_for_each_use)
{
    EXPECT_THAT(BitsOf("Equaliser"), ElementsAre(Pair("Count", Pair(0, 8)), Pair("Low", Pair(16, 40)),
                                         Pair("Middle", Pair(64, 40)), Pair("High", Pair(112, 40))));
    const auto & fields = *Record("Equaliser").Details()->GetStructFields();
    EXPECT_NE(fields[1]->Metadata(), fields[2]->Metadata());
    EXPECT_EQ(fields[2]->Metadata()->Details()->GetStructFields()->at(1)->Metadata()->Name(), "Gain");
}

TEST_F(CompiledSamples, deliver_defaults_of_every_shape)
{
    const std::pair<const char *, const char *> DEFAULTS[] = { { "BootFlags", "9223372036854775809" },
        { "LastError", "-1" }, { "UpdateCheck", "WEEKLY (2)" }, { "HostName", "\"speaker\"" },
        { "LightPattern", "00 40 80 ff 80 40" }, { "BootOrder", "[3, 1, 2, 7]" },
        { "SniffMode", "{ON (1), 4, 800, 12, 100000}" }, { "CoexistenceWindow", "{4369, 305419896, 3021, 10}" },
        { "GainControl", "{-5, -60, 300, 42}" }, { "ChannelMap", "{{65535, 65535, 65535, 65535, 32767}, 20}" },
        { "Equaliser", "{0, {90, 0, 7}, {1200, 0, 10}, {7500, 0, 7}}" },
        { "Compressor", "{OFF (0), {{-60, -40}, {-30, -25}, {-6, -6}, {0, -3}}}" },
        { "FilterTaps", "{4, {32768, 16384, 8192, 4096, 0, 0, 0, 0}, {1, 2, 3, 4}}" },
        { "Regulation", "[{1, 13, 20, OFF (0)}, {36, 64, 23, ON (1)}]" }, { "RateLimit.2.0", "8667" },
        { "Alarm.7", "{540, 15, OFF (0)}" } };
    for (const auto & [key, value] : DEFAULTS)
        EXPECT_EQ(DefaultOf(key), value) << key;
}

TEST_F(CompiledSamples, find_nothing_wrong_with_the_configurations_beside_them)
{
    std::vector<std::string> arguments = { "--metadata", Repository(), "check" };
    for (const std::string & file : SampleFiles(""))
        arguments.push_back(file);
    const auto result = RunTool({ arguments });
    EXPECT_EQ(result.mExitCode, 0) << result.mErr;
    EXPECT_THAT(result.mErr, IsEmpty());
}

}   // namespace workbench::compiler::test
