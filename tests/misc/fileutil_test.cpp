#include <misc/fileutil.h>

#include <support/debug_capture.h>
#include <support/module_folder.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <list>
#include <string>

using namespace VrexZynConfigTools;
using support::DebugCapture;
using support::ModuleFolder;
using testing::ElementsAre;
using testing::IsEmpty;
using Files = std::list<std::string>;

namespace {

/// The plain names that `pattern` finds in a folder.
Files Found(const ModuleFolder & folder, const std::string & pattern)
{
    Files files;
    EXPECT_TRUE(fileutil::GetFiles(folder.Path(), pattern, files));
    for (std::string & file : files) {
        EXPECT_EQ(file.find(folder.Path() + "/"), 0U);
        file.erase(0, folder.Path().size() + 1);
    }
    return files;
}

class ScopedWorkingFolder
{
public:
    explicit ScopedWorkingFolder(const ModuleFolder & folder)
        : mFormer(std::filesystem::current_path())
    {
        std::filesystem::current_path(folder.Path());
    }
    ScopedWorkingFolder(const ScopedWorkingFolder &) = delete;
    ScopedWorkingFolder & operator=(const ScopedWorkingFolder &) = delete;
    ~ScopedWorkingFolder() { std::filesystem::current_path(mFormer); }

private:
    std::filesystem::path mFormer;
};

}   // namespace

TEST(IsDir, tells_a_directory_from_a_file)
{
    ModuleFolder folder;
    folder.WithFile("file", "x").WithFolder("sub");
    bool isDirectory = false;
    EXPECT_TRUE(fileutil::IsDir(folder.PathOf("sub"), isDirectory));
    EXPECT_TRUE(isDirectory);
    EXPECT_TRUE(fileutil::IsDir(folder.PathOf("file"), isDirectory));
    EXPECT_FALSE(isDirectory);
}

TEST(IsDir, leaves_the_answer_alone_where_nothing_is)
{
    ModuleFolder folder;
    for (const bool before : { false, true }) {
        bool isDirectory = before;
        EXPECT_FALSE(fileutil::IsDir(folder.PathOf("missing"), isDirectory));
        EXPECT_EQ(isDirectory, before);
        EXPECT_FALSE(fileutil::IsDir("", isDirectory));
        EXPECT_EQ(isDirectory, before);
    }
}

TEST(IsDir, follows_links)
{
    ModuleFolder folder;
    folder.WithFolder("sub").WithLink("link", "sub").WithLink("dangling", "missing");
    bool isDirectory = false;
    EXPECT_TRUE(fileutil::IsDir(folder.PathOf("link"), isDirectory));
    EXPECT_TRUE(isDirectory);
    EXPECT_FALSE(fileutil::IsDir(folder.PathOf("dangling"), isDirectory));
}

TEST(IsDir, does_not_cut_a_path_at_an_embedded_nul)
{
    ModuleFolder folder;
    bool isDirectory = false;
    EXPECT_FALSE(fileutil::IsDir(folder.Path() + std::string("\0x", 2), isDirectory));
}

TEST(IsDir, writes_argument_and_result_as_debug_lines)
{
    ModuleFolder folder;
    const DebugCapture capture;
    bool isDirectory = false;
    fileutil::IsDir(folder.Path(), isDirectory);
    EXPECT_THAT(
        capture.TextsOf("fileutil::IsDir", 1), ElementsAre("aPath=>" + folder.Path() + "<", "aIsDir=true"));
    for (const auto & line : capture.Lines())
        EXPECT_EQ(line.mGroup, GROUP_UTILITIES);
}

TEST(GetFiles, of_a_folder_without_a_match_succeeds_and_adds_nothing)
{
    ModuleFolder folder;
    folder.WithFile("a.txt", "");
    Files files = { "before" };
    EXPECT_TRUE(fileutil::GetFiles(folder.Path(), "*.zpm", files));
    EXPECT_THAT(files, ElementsAre("before"));
}

TEST(GetFiles, of_an_empty_folder_succeeds)
{
    ModuleFolder folder;
    EXPECT_THAT(Found(folder, "*"), IsEmpty());
}

TEST(GetFiles, of_a_missing_folder_fails)
{
    ModuleFolder folder;
    Files files = { "before" };
    EXPECT_FALSE(fileutil::GetFiles(folder.PathOf("missing"), "*", files));
    EXPECT_THAT(files, ElementsAre("before"));
}

TEST(GetFiles, of_a_file_in_place_of_a_folder_fails)
{
    ModuleFolder folder;
    folder.WithFile("file", "");
    Files files;
    EXPECT_FALSE(fileutil::GetFiles(folder.PathOf("file"), "*", files));
    EXPECT_THAT(files, IsEmpty());
}

TEST(GetFiles, appends_to_what_the_list_holds)
{
    ModuleFolder folder;
    folder.WithFile("a.txt", "");
    Files files = { "before" };
    EXPECT_TRUE(fileutil::GetFiles(folder.Path(), "*.txt", files));
    EXPECT_THAT(files, ElementsAre("before", folder.PathOf("a.txt")));
}

TEST(GetFiles, lists_no_folder_and_enters_none)
{
    ModuleFolder folder;
    folder.WithFolder("folder.txt").WithFile("folder.txt/inner.txt", "").WithFile("file.txt", "");
    EXPECT_THAT(Found(folder, "*.txt"), ElementsAre("file.txt"));
    EXPECT_THAT(Found(folder, "*"), ElementsAre("file.txt"));
}

TEST(GetFiles, gives_the_same_paths_with_and_without_a_separator_at_the_end)
{
    ModuleFolder folder;
    folder.WithFile("a.txt", "").WithFile("b.txt", "");
    Files with;
    Files without;
    EXPECT_TRUE(fileutil::GetFiles(folder.Path() + "/", "*.txt", with));
    EXPECT_TRUE(fileutil::GetFiles(folder.Path(), "*.txt", without));
    EXPECT_EQ(with, without);
    EXPECT_EQ(with.size(), 2U);
}

TEST(GetFiles, takes_an_empty_pattern_for_every_name)
{
    ModuleFolder folder;
    folder.WithFile("a.txt", "").WithFile("noextension", "");
    EXPECT_THAT(Found(folder, ""), ElementsAre("a.txt", "noextension"));
}

TEST(GetFiles, sorts_by_the_bytes_of_the_names)
{
    ModuleFolder folder;
    for (const char * const name : { "b", "a", "B", "\xC3\xA4", "a10", "a2", "_" })
        folder.WithFile(name, "");
    EXPECT_THAT(Found(folder, "*"), ElementsAre("B", "_", "a", "a10", "a2", "b", "\xC3\xA4"));
}

TEST(GetFiles, leaves_names_unconverted)
{
    ModuleFolder folder;
    folder.WithFile("\xFF\xFE.txt", "").WithFile("\xC3\xA4.txt", "").WithFile("a\nb.txt", "");
    EXPECT_THAT(Found(folder, "*.txt"), ElementsAre("a\nb.txt", "\xC3\xA4.txt", "\xFF\xFE.txt"));
    EXPECT_THAT(Found(folder, "?.txt"), IsEmpty());   // "?" is one byte
    EXPECT_THAT(Found(folder, "\xC3?.txt"), ElementsAre("\xC3\xA4.txt"));
}

TEST(GetFiles, regards_case)
{
    ModuleFolder folder;
    folder.WithFile("a.zpm", "").WithFile("b.ZPM", "");
    EXPECT_THAT(Found(folder, "*.zpm"), ElementsAre("a.zpm"));
}

TEST(GetFiles, matches_a_leading_dot_like_any_character)
{
    ModuleFolder folder;
    folder.WithFile(".hidden.zpm", "").WithFile(".zpm", "").WithFile("a.zpm", "");
    EXPECT_THAT(Found(folder, "*.zpm"), ElementsAre(".hidden.zpm", ".zpm", "a.zpm"));
    EXPECT_THAT(Found(folder, "?zpm"), ElementsAre(".zpm"));
}

TEST(GetFiles, knows_stars_and_question_marks_only)
{
    ModuleFolder folder;
    folder.WithFile("[ab].txt", "").WithFile("a.txt", "").WithFile("b.txt", "").WithFile("\\a.txt", "");
    EXPECT_THAT(Found(folder, "[ab].txt"), ElementsAre("[ab].txt"));
    EXPECT_THAT(Found(folder, "\\a.txt"), ElementsAre("\\a.txt"));
    EXPECT_THAT(Found(folder, "a.txt"), ElementsAre("a.txt"));
    EXPECT_THAT(Found(folder, "?.txt"), ElementsAre("a.txt", "b.txt"));
}

TEST(GetFiles, lets_a_star_take_any_text_also_none)
{
    ModuleFolder folder;
    folder.WithFile("aXbXc", "")
        .WithFile("abc", "")
        .WithFile("abcabd", "")
        .WithFile("ab", "")
        .WithFile("xxxy", "");
    EXPECT_THAT(Found(folder, "*xxy"), ElementsAre("xxxy"));   // and the next one begins right behind it
    EXPECT_THAT(Found(folder, "a*b*c"), ElementsAre("aXbXc", "abc"));
    EXPECT_THAT(Found(folder, "*abd"), ElementsAre("abcabd"));   // a first, short try has to be taken back
    EXPECT_THAT(Found(folder, "a*"), ElementsAre("aXbXc", "ab", "abc", "abcabd"));
    EXPECT_THAT(Found(folder, "ab**"), ElementsAre("ab", "abc", "abcabd"));
    EXPECT_THAT(Found(folder, "ab?*"), ElementsAre("abc", "abcabd"));
    EXPECT_THAT(Found(folder, "*b"), ElementsAre("ab"));
}

TEST(GetFiles, takes_wildcards_outside_the_last_component_as_they_stand)
{
    ModuleFolder folder;
    folder.WithFolder("sub").WithFile("sub/a.txt", "").WithFolder("s*").WithFile("s*/b.txt", "");
    Files files;
    EXPECT_TRUE(fileutil::GetFiles(folder.PathOf("s*"), "*.txt", files));
    EXPECT_THAT(files, ElementsAre(folder.PathOf("s*/b.txt")));
    EXPECT_FALSE(fileutil::GetFiles(folder.PathOf("?ub"), "*.txt", files));
}

TEST(GetFiles, searches_where_the_pattern_says_but_names_the_files_beside_it)
{
    ModuleFolder folder;
    folder.WithFolder("sub")
        .WithFile("sub/only_there.txt", "")
        .WithFile("sub/both.txt", "")
        .WithFile("both.txt", "");
    EXPECT_THAT(Found(folder, "sub/*.txt"), ElementsAre("both.txt"));
}

TEST(GetFiles, with_an_empty_folder_name_lists_the_current_folder)
{
    ModuleFolder folder;
    folder.WithFile("a.txt", "");
    const ScopedWorkingFolder inside(folder);
    Files files;
    EXPECT_TRUE(fileutil::GetFiles("", "*.txt", files));
    EXPECT_THAT(files, ElementsAre("a.txt"));
    EXPECT_FALSE(fileutil::GetFiles("", "*.zpm", files));   // the empty name is no folder that exists
}

TEST(GetFiles, lists_the_root_folder_with_one_separator)
{
    Files files;
    bool isDirectory = false;
    EXPECT_TRUE(fileutil::GetFiles("/", "no such name", files));
    EXPECT_TRUE(fileutil::GetFiles("/", "*", files));
    for (const std::string & file : files) {
        EXPECT_TRUE(file.size() < 2 || file[1] != '/') << file;
        EXPECT_TRUE(fileutil::IsDir(file, isDirectory));
    }
}

TEST(GetFiles, lists_what_a_link_leads_to_unless_it_leads_nowhere_or_to_a_folder)
{
    ModuleFolder folder;
    folder.WithFile("file", "").WithFolder("sub");
    folder.WithLink("a.txt", "file").WithLink("b.txt", "missing").WithLink("c.txt", "sub");
    EXPECT_THAT(Found(folder, "*.txt"), ElementsAre("a.txt"));
}

TEST(GetFiles, lists_a_pipe_too)
{
    ModuleFolder folder;
    ASSERT_EQ(mkfifo(folder.PathOf("pipe.txt").c_str(), 0600), 0);
    EXPECT_THAT(Found(folder, "*.txt"), ElementsAre("pipe.txt"));
}

TEST(GetFiles, does_not_cut_its_arguments_at_an_embedded_nul)
{
    ModuleFolder folder;
    folder.WithFile("a.txt", "");
    Files files;
    EXPECT_FALSE(fileutil::GetFiles(folder.Path() + std::string("\0x", 2), "*", files));
    EXPECT_FALSE(fileutil::GetFiles(folder.Path(), std::string("a.txt\0x", 7), files));
    EXPECT_THAT(files, IsEmpty());
}

TEST(GetFiles, writes_the_folder_as_a_debug_line)
{
    ModuleFolder folder;
    const DebugCapture capture;
    Files files;
    fileutil::GetFiles(folder.Path(), "*", files);
    EXPECT_THAT(capture.TextsOf("fileutil::GetFiles", 1), ElementsAre("aDir=>" + folder.Path() + "<"));
}

TEST(GetFiles, sets_no_error)
{
    Files files;
    fileutil::GetFiles("/no such folder", "*", files);
    EXPECT_FALSE(
        CTheMsgHnd::GetAppropriateHandler(GROUP_UTILITIES, "", false).IsErrorSet(GROUP_UTILITIES, true));
    EXPECT_FALSE(
        CTheMsgHnd::GetAppropriateHandler(GROUP_FRAMEWORK, "", false).IsErrorSet(GROUP_FRAMEWORK, true));
}
