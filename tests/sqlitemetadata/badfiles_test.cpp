// Files that are no repository of this version, and repositories that contradict themselves.

#include "sqlitemetadata_support.h"

#include <gmock/gmock.h>

#include <sys/stat.h>
#include <unistd.h>

namespace {

using namespace VrexZynConfigTools;
using namespace VrexZynConfigTools::support;
using ::testing::HasSubstr;
using ::testing::StartsWith;

class BadFiles : public RepositoryTest
{
protected:
    BadFiles()
    {
        mSystem = mRepository.AddSystem("pottersong", "trindle7");
        mBt = mRepository.AddSubsystem(mSystem, "bt");
    }

    // Expects that the file is refused with one error that names it, and that it is left as it was.
    void ExpectRefused(const std::string & reason)
    {
        mRepository.Close();
        const std::string content = ContentOf(Path());
        const std::size_t files = mFolder.Count();
        const auto provider = MakeProvider(Path());
        ASSERT_NE(nullptr, provider);
        EXPECT_FALSE(provider->Check());
        EXPECT_THAT(mErrors.Text(), StartsWith(Path() + ": "));
        EXPECT_THAT(Fault(), HasSubstr(reason));
        EXPECT_EQ(content, ContentOf(Path()));
        EXPECT_EQ(files, mFolder.Count());
    }

    void ExpectContentRefused(const std::string & content, const std::string & reason)
    {
        mRepository.Close();
        PutContent(Path(), content);
        ExpectRefused(reason);
    }

    // Writes what the schema forbids.
    void ExpectLawlessRefused(const std::string & sql, const std::string & reason)
    {
        mRepository.BeLawless();
        mRepository.Run(sql);
        ExpectRefused(reason);
    }

    RepositoryBuilder::Id mSystem = 0;
    RepositoryBuilder::Id mBt = 0;
};

TEST_F(BadFiles, that_are_missing_are_not_made)
{
    const std::size_t files = mFolder.Count();
    for (const std::string & name :
        { std::string("missing.zmd"), std::string(":memory:"), std::string("file:x?mode=rwc") })
    {
        mErrors.Clear();
        const auto provider = MakeProvider(mFolder / name);
        EXPECT_FALSE(provider->Check());
        EXPECT_EQ((mFolder / name) + ": unable to open the file (there is no such file)", mErrors.Text());
    }
    EXPECT_EQ(files, mFolder.Count());
}

TEST_F(BadFiles, without_a_name_are_no_database_in_memory)
{
    EXPECT_FALSE(MakeProvider("")->Check());
    mErrors.Clear();
    EXPECT_FALSE(MakeProvider(":memory:")->Check());
    EXPECT_EQ(":memory:: unable to open the file (there is no such file)", mErrors.Text());
}

TEST_F(BadFiles, that_are_directories_are_refused)
{
    std::filesystem::create_directory(mFolder / "folder.zmd");
    EXPECT_FALSE(MakeProvider(mFolder / "folder.zmd")->Check());
    EXPECT_THAT(mErrors.Text(), HasSubstr("folder.zmd: unable to open the file (it is a directory)"));
}

TEST_F(BadFiles, that_are_pipes_are_refused_rather_than_waited_for)
{
    const std::string pipe = mFolder / "pipe.zmd";
    ASSERT_EQ(0, mkfifo(pipe.c_str(), 0600));
    EXPECT_FALSE(MakeProvider(pipe)->Check());
    EXPECT_THAT(mErrors.Text(), HasSubstr("pipe.zmd: unable to open the file (it is no regular file)"));
}

// The superuser may read everything, so that a test must not be it.
class NobodyInParticular
{
public:
    NobodyInParticular() { mIsChanged = geteuid() == 0 && seteuid(NOBODY) == 0; }
    ~NobodyInParticular() { EXPECT_TRUE(!mIsChanged || seteuid(0) == 0); }
    NobodyInParticular(const NobodyInParticular &) = delete;
    NobodyInParticular & operator=(const NobodyInParticular &) = delete;

private:
    static constexpr uid_t NOBODY = 65534;
    bool mIsChanged;
};

TEST_F(BadFiles, that_may_not_be_read_are_refused)
{
    namespace fs = std::filesystem;
    mRepository.Close();
    EXPECT_TRUE(MakeProvider(Path())->Check());   // which loads the module too
    fs::permissions(Path(), fs::perms::none);
    fs::permissions(fs::path(Path()).parent_path(), fs::perms::others_exec, fs::perm_options::add);
    const NobodyInParticular user;
    EXPECT_FALSE(MakeProvider(Path())->Check());
    EXPECT_EQ("unable to open the file (Permission denied)", Fault());
}

TEST_F(BadFiles, that_hold_nothing_are_refused)
{
    ExpectContentRefused("", "no metadata repository (the file is empty)");
}

TEST_F(BadFiles, that_are_shorter_than_a_header_are_refused)
{
    ExpectContentRefused("SQLite format 3", "no metadata repository (the file has 15 bytes)");
}

TEST_F(BadFiles, that_are_texts_are_refused)
{
    ExpectContentRefused(std::string(500, 'x'), "the file doesn't begin as an SQLite database does");
}

TEST_F(BadFiles, that_are_absurdly_large_are_refused_before_they_are_read)
{
    mRepository.Close();
    std::filesystem::resize_file(Path(), (std::uintmax_t{ 1 } << 28) + 1);
    EXPECT_FALSE(MakeProvider(Path())->Check());
    EXPECT_EQ("the file is too large (268435457 bytes)", Fault());
}

TEST_F(BadFiles, of_another_kind_of_database_are_refused)
{
    mRepository.Run("COMMIT; PRAGMA application_id = 7");
    ExpectRefused("no metadata repository (an SQLite database of another kind: its application_id is 7, not " +
                  std::to_string(kit::metadataschema::APPLICATION_ID) + ")");
}

TEST_F(BadFiles, of_a_newer_schema_are_refused)
{
    mRepository.Run("COMMIT; PRAGMA user_version = 2");
    ExpectRefused("version 2 of the schema; this plug-in reads version 1 (take a newer plug-in");
}

TEST_F(BadFiles, of_an_older_schema_are_refused)
{
    mRepository.Run("COMMIT; PRAGMA user_version = 0");
    ExpectRefused("version 0 of the schema; this plug-in reads version 1 (compile the metadata again)");
}

TEST_F(BadFiles, that_could_only_be_read_with_a_log_beside_them_are_refused)
{
    mRepository.Run("COMMIT; PRAGMA journal_mode = WAL");
    ExpectRefused("write-ahead mode");
}

TEST_F(BadFiles, with_another_table_are_refused)
{
    mRepository.Run("CREATE TABLE more (id INTEGER)");
    ExpectRefused("its tables are not those of version 1");
}

TEST_F(BadFiles, with_a_looser_table_are_refused)
{
    mRepository.Run("DROP TABLE default_items; CREATE TABLE default_items (row_id, position, value)");
    ExpectRefused("its tables are not those of version 1");
}

TEST_F(BadFiles, with_a_view_in_place_of_a_table_are_refused)
{
    mRepository.Run("DROP TABLE default_items; CREATE VIEW default_items AS SELECT 1 AS row_id, 2 AS position, "
                    "randomblob(100) AS value");
    ExpectRefused("its tables are not those of version 1");
}

TEST_F(BadFiles, that_break_a_constraint_are_refused)
{
    ExpectLawlessRefused("INSERT INTO subsystems (system_id, name) VALUES (1, 'coffee')",
        "the repository is damaged (CHECK constraint failed in subsystems)");
}

TEST_F(BadFiles, with_a_shape_that_is_none_are_refused)
{
    mRepository.AddKey(mBt, { .psid = 1, .name = "a" });
    ExpectLawlessRefused("UPDATE records SET metadata_type = 3", "CHECK constraint failed in records");
}

TEST_F(BadFiles, with_dangling_references_are_refused)
{
    ExpectLawlessRefused("INSERT INTO default_rows (key_id) VALUES (77); INSERT INTO chips (system_id, "
                         "system_version_label) VALUES (9, 'x'), (9, 'y')",
        "chips refers to 2 row(s) that systems doesn't have; default_rows refers to 1 row(s) that records");
}

TEST_F(BadFiles, with_a_struct_without_fields_are_refused)
{
    mRepository.AddStructKey(mBt, { .psid = 5, .name = "all" });
    ExpectRefused("the repository contradicts itself:\n  key 5 \"all\" is a struct without fields");
}

TEST_F(BadFiles, with_a_struct_without_a_layout_are_refused)
{
    mRepository.AddKey(mBt, { .psid = 5, .name = "all", .metadataType = 2 });
    ExpectRefused("key 5 \"all\" is a struct without fields");
}

TEST_F(BadFiles, with_a_layout_of_what_is_no_struct_are_refused)
{
    const auto key = mRepository.AddStructKey(mBt, { .psid = 5, .name = "all" });
    mRepository.AddField(key, { .name = "a" }, 0, 8);
    mRepository.Run("UPDATE records SET metadata_type = 0 WHERE psid = 5");
    ExpectRefused("key 5 \"all\" has the layout of a struct, but is none");
}

TEST_F(BadFiles, with_a_key_as_a_field_are_refused)
{
    const auto key = mRepository.AddStructKey(mBt, { .psid = 5, .name = "all" });
    mRepository.PutField(key, mRepository.AddKey(mBt, { .psid = 6, .name = "part" }), 0, 8);
    ExpectRefused("key 6 \"part\" is a key and a field of a struct");
}

TEST_F(BadFiles, with_a_struct_that_holds_itself_are_refused)
{
    const auto key = mRepository.AddStructKey(mBt, { .psid = 5, .name = "all" });
    mRepository.PutField(key, key, 0, 8);
    ExpectRefused("key 5 \"all\" is a key and a field of a struct");
}

TEST_F(BadFiles, with_structs_in_a_circle_that_no_key_holds_are_usable)
{
    const auto one = mRepository.AddStruct("NULL", { .name = "one" }, true);
    const auto other = mRepository.AddStruct("NULL", { .name = "other" }, true);
    mRepository.PutField(one, other, 0, 8);
    mRepository.PutField(other, one, 0, 8);
    EXPECT_TRUE(Provider()->Check()) << mErrors.Text();
}

TEST_F(BadFiles, with_a_field_of_no_struct_are_refused)
{
    mRepository.Insert(
        "records (uid, psid, name, internal_type, metadata_type) VALUES (0, 0, 'lost', 'uint8', 0)");
    ExpectRefused("field \"lost\" is a field of no struct");
}

TEST_F(BadFiles, with_an_enumeration_without_enumerators_are_refused)
{
    mRepository.AddKey(mBt, { .psid = 5, .name = "mode", .metadataType = 1 });
    ExpectRefused("key 5 \"mode\" is an enumeration without enumerators");
}

TEST_F(BadFiles, with_enumerators_of_what_is_no_enumeration_are_refused)
{
    mRepository.AddEnumerators(mRepository.AddKey(mBt, { .psid = 5, .name = "mode" }), { { "on", 1 } });
    ExpectRefused("key 5 \"mode\" has enumerators, but is no enumeration");
}

TEST_F(BadFiles, with_fewer_indices_than_a_key_says_are_refused)
{
    mRepository.AddIntIndex(
        mRepository.AddKey(mBt, { .psid = 5, .name = "gain", .numIndices = 2 }), 1, "i", 0, 1);
    ExpectRefused("key 5 \"gain\" has another number of table indices than it says");
}

TEST_F(BadFiles, with_a_gap_among_the_indices_are_refused)
{
    mRepository.AddIntIndex(
        mRepository.AddKey(mBt, { .psid = 5, .name = "gain", .numIndices = 1 }), 2, "i", 0, 1);
    ExpectRefused("key 5 \"gain\" has another number of table indices than it says");
}

TEST_F(BadFiles, with_an_enumerated_index_without_enumerators_are_refused)
{
    mRepository.AddEnumIndex(
        mRepository.AddKey(mBt, { .psid = 5, .name = "gain", .numIndices = 1 }), 1, "i", {});
    ExpectRefused("key 5 \"gain\" has an enumerated index without enumerators");
}

TEST_F(BadFiles, with_a_default_value_of_a_field_are_refused)
{
    const auto key = mRepository.AddStructKey(mBt, { .psid = 5, .name = "all" });
    mRepository.AddDefault(mRepository.AddField(key, { .name = "part" }, 0, 8), { "1" });
    ExpectRefused("field \"part\" is a field of a struct, but has a default value of its own");
}

TEST_F(BadFiles, tell_all_contradictions_at_once_and_of_each_kind_five)
{
    for (int number = 1; number <= 7; ++number)
        mRepository.AddKey(mBt, { .psid = number, .name = "mode" + std::to_string(number), .metadataType = 1 });
    mRepository.AddStructKey(mBt, { .psid = 8, .name = "all" });
    ExpectRefused("key 8 \"all\" is a struct without fields");
    EXPECT_THAT(Fault(), HasSubstr("key 5 \"mode5\" is an enumeration"));
    EXPECT_THAT(Fault(), ::testing::Not(HasSubstr("mode6")));
}

TEST_F(BadFiles, show_foreign_texts_printable_and_short)
{
    mRepository.AddStructKey(mBt, { .psid = 5, .name = "a\nb\x1b" });
    mRepository.AddStructKey(mBt, { .psid = 6, .name = std::string(59, 'x') + "\xC3\xA4" });
    ExpectRefused("key 5 \"a\\x0ab\\x1b\" is");
    EXPECT_THAT(Fault(), HasSubstr("key 6 \"" + std::string(59, 'x') + "...\" is"));
}

TEST_F(BadFiles, that_another_process_is_writing_are_refused_as_locked)
{
    mRepository.Run("COMMIT; BEGIN EXCLUSIVE");
    EXPECT_FALSE(MakeProvider(Path())->Check());
    EXPECT_EQ("database is locked", Fault());
}

}   // namespace
