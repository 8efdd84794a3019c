#include <kit/targetfile/targetfile.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace kit::targetfile {
namespace {

namespace fs = std::filesystem;

/// A folder for each test, and what is in it.
class TargetFile : public testing::Test
{
protected:
    TargetFile()
        : mFolder(fs::path(testing::TempDir()) /
                  ("targetfile_" + std::string(testing::UnitTest::GetInstance()->current_test_info()->name())))
    {
        fs::remove_all(mFolder);
        fs::create_directories(mFolder);
    }
    ~TargetFile() override { fs::remove_all(mFolder); }

    std::string In(const std::string & name) const { return (mFolder / name).string(); }
    static std::string Content(const std::string & path)
    {
        std::ifstream file(path, std::ios::binary);
        return { std::istreambuf_iterator<char>(file), {} };
    }
    static void Put(const std::string & path, const std::string & text) { std::ofstream(path) << text; }
    std::size_t FilesInFolder() const
    {
        return static_cast<std::size_t>(
            std::distance(fs::directory_iterator(mFolder), fs::directory_iterator()));
    }

    fs::path mFolder;
    CTargetFile mFile;
    std::string mReason;
};

TEST_F(TargetFile, appears_with_its_content_at_the_commit)
{
    ASSERT_TRUE(mFile.Open(In("a"), mReason)) << mReason;
    EXPECT_TRUE(mFile.IsOpen());
    EXPECT_FALSE(fs::exists(In("a")));
    const std::string text("one\0two\n", 8);
    EXPECT_TRUE(mFile.Commit(text, mReason)) << mReason;
    EXPECT_FALSE(mFile.IsOpen());
    EXPECT_EQ(Content(In("a")), text);
    EXPECT_EQ(FilesInFolder(), 1U);
}

TEST_F(TargetFile, stays_as_it_was_when_it_is_discarded)
{
    Put(In("a"), "old");
    ASSERT_TRUE(mFile.Open(In("a"), mReason));
    mFile.Discard();
    EXPECT_FALSE(mFile.IsOpen());
    EXPECT_EQ(Content(In("a")), "old");
    EXPECT_EQ(FilesInFolder(), 1U);
}

TEST_F(TargetFile, leaves_nothing_behind_when_it_is_destroyed_while_open)
{
    {
        CTargetFile file;
        ASSERT_TRUE(file.Open(In("a"), mReason));
    }
    EXPECT_EQ(FilesInFolder(), 0U);
}

TEST_F(TargetFile, takes_over_the_permissions_of_the_file_that_it_replaces)
{
    Put(In("a"), "old");
    fs::permissions(In("a"), fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);
    ASSERT_TRUE(mFile.Open(In("a"), mReason));
    ASSERT_TRUE(mFile.Commit("new", mReason));
    EXPECT_EQ(fs::status(In("a")).permissions(),
        fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);
    EXPECT_EQ(Content(In("a")), "new");
}

TEST_F(TargetFile, follows_a_symbolic_link_and_leaves_it_in_place)
{
    fs::create_symlink("b", In("a"));
    ASSERT_TRUE(mFile.Open(In("a"), mReason)) << mReason;
    ASSERT_TRUE(mFile.Commit("new", mReason));
    EXPECT_TRUE(fs::is_symlink(In("a")));
    EXPECT_EQ(Content(In("b")), "new");
}

TEST_F(TargetFile, is_refused_with_a_reason_where_no_file_can_be)
{
    fs::create_symlink("y", In("x"));
    fs::create_symlink("x", In("y"));
    for (const std::string & path : { In("none/a"), In("x"), std::string(), mFolder.string() }) {
        mReason.clear();
        EXPECT_FALSE(mFile.Open(path, mReason)) << path;
        EXPECT_NE(mReason, "") << path;
        EXPECT_FALSE(mFile.IsOpen()) << path;
    }
}

TEST_F(TargetFile, can_have_the_longest_name_of_a_file_system)
{
    const std::string name(255, 'n');
    ASSERT_TRUE(mFile.Open(In(name), mReason)) << mReason;
    EXPECT_TRUE(mFile.Commit("x", mReason)) << mReason;
    EXPECT_EQ(Content(In(name)), "x");
}

TEST_F(TargetFile, that_is_no_plain_file_is_written_to_directly)
{
    ASSERT_TRUE(mFile.Open("/dev/null", mReason)) << mReason;
    EXPECT_TRUE(mFile.Commit("x", mReason)) << mReason;
    EXPECT_TRUE(fs::is_character_file("/dev/null"));
}

}   // namespace
}   // namespace kit::targetfile
