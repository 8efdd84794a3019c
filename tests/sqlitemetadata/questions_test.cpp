// What the provider answers about systems, chips and subsystems, and which records a context selects.

#include "sqlitemetadata_support.h"

#include <configtools/context.h>

#include <gmock/gmock.h>

namespace {

using namespace VrexZynConfigTools;
using namespace VrexZynConfigTools::support;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

constexpr int BT = 1;
constexpr int WLAN = 2;

// Two systems: the first with two chips and the subsystems wlan and bt, in this order; the second with bt alone.
class TwoSystems : public RepositoryTest
{
protected:
    TwoSystems()
    {
        const auto first = mRepository.AddSystem("pottersong", "trindle7");
        const auto second = mRepository.AddSystem("dunlin", "dunlin2");
        mRepository.AddChip(first, "trindle8");
        const auto wlan = mRepository.AddSubsystem(first, "wlan", "Radio");
        const auto bt = mRepository.AddSubsystem(first, "bt");
        const auto other = mRepository.AddSubsystem(second, "bt");
        mRepository.AddKey(wlan, { .psid = 9, .name = "channel", .max = 13 });
        mRepository.AddKey(wlan, { .psid = 2, .name = "country", .max = 1 });
        mRepository.AddKey(bt, { .psid = 2, .name = "volume", .max = 2 });
        mRepository.AddKey(other, { .psid = 2, .name = "Volume", .max = 3 });
        mRepository.AddKey(other, { .psid = 4294967295, .name = "last" });
        mProvider = Provider();
    }

    std::string NameOf(std::uint32_t psId, CZynContext context)
    {
        const IMetadata & record = mProvider->MetadataById(psId, context);
        return record.IsValid() ? record.Name() : "none";
    }

    std::int64_t MaxOf(const std::string & name, CZynContext context)
    {
        const IMetadata & record = mProvider->MetadataByName(name, context);
        return record.IsValid() ? record.Max() : -1;
    }

    std::vector<std::string> NamesOfAll(CZynContext context)
    {
        std::vector<std::string> names;
        for (const IMetadata * record : mProvider->AllMetadata(context))
            names.push_back(record->Name());
        return names;
    }

    std::vector<std::string> Labels(CZynContext context)
    {
        std::vector<std::string> labels;
        for (const IChipInfo * chip : mProvider->Chips(context))
            labels.push_back(chip->SystemVersionLabel());
        return labels;
    }

    std::vector<std::string> SubsystemNames(CZynContext context)
    {
        std::vector<std::string> names;
        for (const ISubsystemInfo * subsystem : mProvider->Subsystems(context))
            names.push_back(subsystem->Name());
        return names;
    }

    std::unique_ptr<IMetadataProvider> mProvider;
};

TEST_F(TwoSystems, are_listed_in_their_order)
{
    EXPECT_TRUE(mProvider->Check());
    EXPECT_THAT(mProvider->Systems(), ElementsAre("pottersong", "dunlin"));
    EXPECT_FALSE(mErrors.IsSet()) << mErrors.Text();
}

TEST_F(TwoSystems, a_chip_selects_its_system_with_all_of_its_chips)
{
    EXPECT_THAT(Labels(ContextOf("")), ElementsAre("trindle7", "trindle8", "dunlin2"));
    EXPECT_THAT(Labels(ContextOf("trindle8")), ElementsAre("trindle7", "trindle8"));
    EXPECT_THAT(Labels(ContextOf("dunlin2")), ElementsAre("dunlin2"));
}

TEST_F(TwoSystems, a_label_is_compared_exactly_and_an_unknown_one_selects_nothing)
{
    EXPECT_THAT(Labels(ContextOf("Dunlin2")), IsEmpty());
    EXPECT_THAT(SubsystemNames(ContextOf("dunlin")), IsEmpty());
    EXPECT_THAT(NamesOfAll(ContextOf("dunlin")), IsEmpty());
    EXPECT_EQ("none", NameOf(2, ContextOf("dunlin")));
    EXPECT_FALSE(mErrors.IsSet()) << mErrors.Text();
}

TEST_F(TwoSystems, the_subsystem_type_plays_no_part_for_subsystems_and_chips)
{
    EXPECT_THAT(SubsystemNames(ContextOf("trindle7", BT)), ElementsAre("wlan", "bt"));
    EXPECT_THAT(Labels(ContextOf("trindle7", 5)), ElementsAre("trindle7", "trindle8"));
    EXPECT_THAT(SubsystemNames(ContextOf("")), ElementsAre("wlan", "bt", "bt"));
}

TEST_F(TwoSystems, a_record_is_found_by_number_in_the_first_subsystem_selected_that_has_it)
{
    EXPECT_EQ("country", NameOf(2, ContextOf("")));
    EXPECT_EQ("volume", NameOf(2, ContextOf("", BT)));
    EXPECT_EQ("Volume", NameOf(2, ContextOf("dunlin2")));
    EXPECT_EQ("none", NameOf(9, ContextOf("", BT)));
    EXPECT_EQ("last", NameOf(4294967295U, ContextOf("")));
    EXPECT_EQ("none", NameOf(0, ContextOf("")));
}

TEST_F(TwoSystems, a_record_is_found_by_name_without_regard_to_case)
{
    EXPECT_EQ(2, MaxOf("VOLUME", ContextOf("")));
    EXPECT_EQ(3, MaxOf("vOLUME", ContextOf("dunlin2")));
    EXPECT_EQ(-1, MaxOf("volume", ContextOf("", WLAN)));
    EXPECT_EQ(-1, MaxOf("", ContextOf("")));
    EXPECT_EQ(-1, MaxOf("volume ", ContextOf("")));
    EXPECT_EQ(-1, MaxOf(std::string(2 << 20, 'v'), ContextOf("")));
    EXPECT_FALSE(mErrors.IsSet()) << mErrors.Text();
}

TEST_F(TwoSystems, all_records_come_subsystem_by_subsystem_in_ascending_order_of_numbers)
{
    EXPECT_THAT(NamesOfAll(ContextOf("")), ElementsAre("country", "channel", "volume", "Volume", "last"));
    EXPECT_THAT(NamesOfAll(ContextOf("trindle8", WLAN)), ElementsAre("country", "channel"));
    EXPECT_THAT(NamesOfAll(ContextOf("trindle8", 0)), IsEmpty());
}

TEST_F(TwoSystems, the_null_context_selects_everything)
{
    EXPECT_EQ(5U, mProvider->AllMetadata(CNullContext::Ref()).size());
    EXPECT_EQ(3U, mProvider->Chips(CNullContext::Ref()).size());
    EXPECT_EQ("country", mProvider->MetadataById(2, CNullContext::Ref()).Name());
}

TEST_F(TwoSystems, one_record_answers_every_question_for_its_key)
{
    CZynContext context = ContextOf("", BT);
    const IMetadata * const byNumber = &mProvider->MetadataById(2, context);
    EXPECT_EQ(byNumber, &mProvider->MetadataByName("volume", context));
    EXPECT_EQ(byNumber, mProvider->AllMetadata(context).front());
}

TEST_F(TwoSystems, the_nearest_name_allows_for_a_third_of_the_letters)
{
    CZynContext any;
    EXPECT_EQ("volume", mProvider->NearestName("volme", any));      // a letter is missing
    EXPECT_EQ("volume", mProvider->NearestName("vvolume", any));    // one too many
    EXPECT_EQ("volume", mProvider->NearestName("VOLUNE", any));     // another one, and case
    EXPECT_EQ("volume", mProvider->NearestName("ovlmue", any));     // two pairs are swapped
    EXPECT_EQ("channel", mProvider->NearestName("chnanle", any));   // the same
    EXPECT_EQ("", mProvider->NearestName("ovlmeu", any));           // three differences in six letters
    EXPECT_EQ("last", mProvider->NearestName("lost", any));
    EXPECT_EQ("", mProvider->NearestName("loot", any));
    EXPECT_EQ("", mProvider->NearestName("", any));
    EXPECT_EQ("", mProvider->NearestName(std::string(65, 'v'), any));
}

TEST_F(TwoSystems, the_nearest_name_is_one_of_those_selected)
{
    CZynContext wlan = ContextOf("trindle7", WLAN);
    EXPECT_EQ("", mProvider->NearestName("volme", wlan));
    CZynContext other = ContextOf("dunlin2");
    EXPECT_EQ("Volume", mProvider->NearestName("volme", other));
}

TEST_F(RepositoryTest, a_chip_answers_its_nine_texts)
{
    mRepository.AddSystem("pottersong", "trindle7");
    mRepository.Run("UPDATE chips SET chip_name = 'a', chip_id = 'b', rom_name = 'c', rom_version = 'd',"
                    " efuse_hash = 'e', system_version_label = 'f', system_description = 'g',"
                    " system_version = 'h', build_date = 'i'");
    const auto provider = Provider();
    const std::vector<IChipInfo *> & chips = provider->Chips(CNullContext::Ref());
    ASSERT_EQ(1U, chips.size());
    const IChipInfo & chip = *chips.front();
    EXPECT_EQ("abcdefghi", chip.ChipName() + chip.ChipId() + chip.RomName() + chip.RomVersion() +
                               chip.EfuseHash() + chip.SystemVersionLabel() + chip.SystemDescription() +
                               chip.SystemVersion() + chip.BuildDate());
}

TEST_F(RepositoryTest, a_subsystem_answers_its_seven_texts)
{
    mRepository.AddSubsystem(mRepository.AddSystem("pottersong", "trindle7"), "bt");
    mRepository.Run("UPDATE subsystems SET version = 'b', alias = 'c', layer = 'd', description = 'e',"
                    " build_date = 'f', variant = 'g'");
    const auto provider = Provider();
    const std::vector<ISubsystemInfo *> & subsystems = provider->Subsystems(CNullContext::Ref());
    ASSERT_EQ(1U, subsystems.size());
    const ISubsystemInfo & subsystem = *subsystems.front();
    EXPECT_EQ("btbcdefg", subsystem.Name() + subsystem.Version() + subsystem.Alias() + subsystem.Layer() +
                              subsystem.Description() + subsystem.BuildDate() + subsystem.Variant());
}

TEST_F(RepositoryTest, an_empty_repository_is_usable_and_has_nothing)
{
    const auto provider = Provider();
    EXPECT_TRUE(provider->Check());
    EXPECT_THAT(provider->Systems(), IsEmpty());
    EXPECT_THAT(provider->AllMetadata(CNullContext::Ref()), IsEmpty());
    EXPECT_FALSE(mErrors.IsSet()) << mErrors.Text();
}

TEST_F(RepositoryTest, a_file_whose_name_has_a_meaning_for_sqlite_is_a_file)
{
    mRepository.AddSystem("pottersong", "trindle7");
    mRepository.Close();
    MakeProvider(Path());   // which loads the module, whose folder may be told from here
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(std::filesystem::path(Path()).parent_path());
    std::filesystem::rename("system.zmd", ":memory:");
    const auto provider = MakeProvider(":memory:");
    std::filesystem::current_path(before);
    EXPECT_THAT(provider->Systems(), ElementsAre("pottersong")) << mErrors.Text();
}

TEST_F(RepositoryTest, an_unusable_one_gives_the_empty_answer_and_its_reason_to_every_question)
{
    const auto provider = MakeProvider(mFolder / "missing.zmd");
    ASSERT_NE(nullptr, provider);
    EXPECT_FALSE(provider->Check());
    const std::string reason = mErrors.Text();
    EXPECT_THAT(reason, HasSubstr("missing.zmd: unable to open the file (there is no such file)"));
    CZynContext any;
    const auto expectReason = [&](bool isEmpty) {
        EXPECT_TRUE(isEmpty);
        EXPECT_EQ(reason, mErrors.Text());
        mErrors.Clear();
    };
    expectReason(true);
    expectReason(!provider->MetadataById(1, any).IsValid());
    expectReason(!provider->MetadataByName("a", any).IsValid());
    expectReason(provider->AllMetadata(any).empty());
    expectReason(provider->Systems().empty());
    expectReason(provider->Subsystems(any).empty());
    expectReason(provider->Chips(any).empty());
    expectReason(provider->NearestName("a", any).empty());
}

TEST_F(RepositoryTest, an_error_that_stands_is_kept_and_a_reason_is_told_once)
{
    const auto provider = MakeProvider(mFolder / "missing.zmd");
    mErrors.Set("earlier");
    provider->Systems();
    provider->Systems();
    EXPECT_EQ("earlier\n" + (mFolder / "missing.zmd") + ": unable to open the file (there is no such file)",
        mErrors.Text());
}

TEST_F(TwoSystems, answer_anew_after_a_refresh_and_records_handed_out_stay_as_they_are)
{
    CZynContext context = ContextOf("dunlin2");
    const IMetadata & before = mProvider->MetadataByName("volume", context);
    std::filesystem::remove(Path());
    {
        RepositoryBuilder anew(Path());
        const auto bt = anew.AddSubsystem(anew.AddSystem("dunlin", "dunlin2"), "bt");
        anew.AddKey(bt, { .psid = 7, .name = "volume", .max = 77 });
    }
    EXPECT_EQ(3, MaxOf("volume", context));   // nobody has said that there is something new
    mProvider->Refresh();
    EXPECT_EQ(77, MaxOf("volume", context));
    EXPECT_THAT(mProvider->Systems(), ElementsAre("dunlin"));
    EXPECT_EQ(3, before.Max());
    EXPECT_EQ(2U, before.PsId());
    EXPECT_NE(&before, &mProvider->MetadataByName("volume", context));
}

TEST_F(TwoSystems, keep_nobody_from_writing_and_see_nothing_of_it_before_a_refresh)
{
    sqlite3 * writer = nullptr;
    ASSERT_EQ(SQLITE_OK, sqlite3_open(Path().c_str(), &writer));
    EXPECT_EQ(SQLITE_OK, sqlite3_exec(writer, "UPDATE records SET max = 99", nullptr, nullptr, nullptr));
    EXPECT_EQ(SQLITE_OK, sqlite3_close(writer));
    EXPECT_EQ(2, MaxOf("volume", ContextOf("")));
    mProvider->Refresh();
    EXPECT_EQ(99, MaxOf("volume", ContextOf("")));
}

TEST_F(TwoSystems, are_unusable_when_a_refresh_finds_them_gone_and_usable_when_they_are_back)
{
    CZynContext any;
    const IMetadata & before = mProvider->MetadataById(9, any);
    const std::string content = ContentOf(Path());
    std::filesystem::remove(Path());
    mProvider->Refresh();
    EXPECT_FALSE(mProvider->Check());
    EXPECT_THAT(Fault(), HasSubstr("there is no such file"));
    EXPECT_EQ("channel", before.Name());
    mErrors.Clear();
    PutContent(Path(), content);
    mProvider->Refresh();
    EXPECT_TRUE(mProvider->Check());
    EXPECT_EQ("channel", NameOf(9, any));
    EXPECT_FALSE(mErrors.IsSet()) << mErrors.Text();
}

}   // namespace
