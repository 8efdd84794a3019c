// What becomes of the file under the target's name: it is the old one or the new one, whole, whatever happens.

#include "toml_support.h"

#include <support/scripted_reader.h>

#include <gmock/gmock.h>

#include <functional>
#include <random>

#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using namespace VrexZynConfigTools;
using namespace VrexZynConfigTools::support;
using ::testing::ElementsAre;

constexpr char OLD[] = "# the old file\n";
const std::string EMPTY = "chip = \"\"\n";   // what an empty configuration is written as

class TargetFile : public TomlTest
{
protected:
    std::string Out() const { return mFolder / "out.toml"; }

    // The error of writing an empty configuration; empty for none.
    std::string Write(const std::string & path)
    {
        ReadChip chip;
        const bool isWritten = chip.Write(path);
        std::string error = mErrors.Text();
        mErrors.Clear();
        EXPECT_EQ(isWritten, error.empty());
        return error;
    }

    static mode_t ModeOf(const std::string & path)
    {
        struct stat facts = {};
        EXPECT_EQ(::lstat(path.c_str(), &facts), 0);
        return facts.st_mode & 07777;
    }
};

// Runs `action` in a process of its own, which ends with its result, and waits for it.
int InChild(const std::function<int()> & action)
{
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit(action());
    int status = 0;
    ::waitpid(child, &status, 0);
    return status;
}

// As `InChild`, without the superuser's rights.
int AsOrdinaryUser(const std::function<int()> & action)
{
    return InChild([&] {
        constexpr uid_t NOBODY = 65534;
        if (::geteuid() == 0 && (::setgid(NOBODY) != 0 || ::setuid(NOBODY) != 0))
            return 99;
        return action();
    });
}

TEST_F(TargetFile, takes_the_place_of_the_old_one_and_leaves_nothing_beside_it)
{
    PutContent(Out(), OLD);
    EXPECT_EQ(Write(Out()), "");
    EXPECT_EQ(ContentOf(Out()), EMPTY);
    EXPECT_THAT(mFolder.Names(), ElementsAre("out.toml"));
}

TEST_F(TargetFile, shows_nothing_under_its_name_before_the_end_of_the_write)
{
    PutContent(Out(), OLD);
    const auto writer = MakeWriter(Out());
    CZynContext context;
    writer->StartWrite(context);
    writer->StartSubsystem(context);
    writer->EndSubsystem(context);
    EXPECT_EQ(ContentOf(Out()), OLD);
    EXPECT_EQ(mFolder.Names().size(), 2u);
    writer->EndWrite(context);
    EXPECT_EQ(mFolder.Names().size(), 1u);
    EXPECT_NE(ContentOf(Out()), OLD);
}

TEST_F(TargetFile, is_dropped_by_a_writer_that_is_never_ended)
{
    CZynContext context;
    MakeWriter(Out())->StartWrite(context);
    EXPECT_TRUE(mFolder.Names().empty());
}

TEST_F(TargetFile, may_have_the_longest_name)
{
    const std::string longest(255, 'x');
    EXPECT_EQ(Write(mFolder / longest), "");
    EXPECT_THAT(mFolder.Names(), ElementsAre(longest));
    EXPECT_EQ(Write(mFolder / (longest + 'x')),
        mFolder / (longest + "x: unable to write to the file (File name too long)"));
    EXPECT_EQ(mFolder.Names().size(), 1u);
}

TEST_F(TargetFile, may_be_in_the_working_folder)
{
    const auto former = std::filesystem::current_path();
    std::filesystem::current_path(mFolder.Path());
    EXPECT_EQ(Write("plain.toml"), "");
    std::filesystem::current_path(former);
    EXPECT_THAT(mFolder.Names(), ElementsAre("plain.toml"));
}

TEST_F(TargetFile, may_be_written_by_two_at_a_time)
{
    CZynContext first;
    CZynContext second;
    second.SetChip("second");
    const auto writer = MakeWriter(Out());
    const auto other = MakeWriter(Out());
    writer->StartWrite(first);
    other->StartWrite(second);
    writer->EndWrite(first);
    EXPECT_EQ(ContentOf(Out()), EMPTY);
    other->EndWrite(second);
    EXPECT_EQ(ContentOf(Out()), "chip = \"second\"\n");
    EXPECT_THAT(mFolder.Names(), ElementsAre("out.toml"));
}

// Errors.

TEST_F(TargetFile, stays_as_it_was_if_somebody_sets_an_error_before_the_end)
{
    PutContent(Out(), OLD);
    const auto writer = MakeWriter(Out());
    CZynContext context;
    writer->StartWrite(context);
    mErrors.Set("somebody else's");
    writer->EndWrite(context);
    EXPECT_EQ(mErrors.Text(), "somebody else's");
    EXPECT_EQ(ContentOf(Out()), OLD);
    EXPECT_THAT(mFolder.Names(), ElementsAre("out.toml"));
}

TEST_F(TargetFile, stays_as_it_was_if_an_error_stood_before_the_start)
{
    PutContent(Out(), OLD);
    mErrors.Set("an old one");
    ReadChip chip;
    EXPECT_FALSE(chip.Write(Out()));
    EXPECT_EQ(ContentOf(Out()), OLD);
    EXPECT_THAT(mFolder.Names(), ElementsAre("out.toml"));
}

TEST_F(TargetFile, stays_as_it_was_if_a_key_cannot_be_told)
{
    PutContent(Out(), OLD);
    ScriptedReader reader;
    auto * deep = new CComplexPayload(static_cast<PayloadTypeEnum>(12));
    auto element = std::make_unique<CElementStruct>(5, "", true);
    element->AddField(deep);
    reader.Delivers(ASubsystem(1).In(1, 1).Holding(element.release()).Holding(new CElementStruct(6, "", true)));
    CChipConfig chip;
    CZynContext context;
    reader.ReadInto(chip);
    EXPECT_FALSE(chip.Write(*MakeWriter(Out()), context));
    EXPECT_EQ(mErrors.Text(), Out() + ": key 5: a payload that a file can't hold");
    EXPECT_EQ(ContentOf(Out()), OLD);
    EXPECT_THAT(mFolder.Names(), ElementsAre("out.toml"));
}

TEST_F(TargetFile, stays_as_it_was_if_a_key_could_not_be_told_and_somebody_clears_the_error)
{
    PutContent(Out(), OLD);
    const auto writer = MakeWriter(Out());
    CZynContext context;
    writer->StartWrite(context);
    writer->StartElement(context);   // outside of a subsystem
    EXPECT_TRUE(mErrors.IsSet());
    mErrors.Clear();
    writer->EndWrite(context);
    EXPECT_EQ(ContentOf(Out()), OLD);
    EXPECT_THAT(mFolder.Names(), ElementsAre("out.toml"));
}

TEST_F(TargetFile, needs_a_folder)
{
    EXPECT_EQ(Write(mFolder / "none/out.toml"),
        mFolder / "none/out.toml: unable to write to the file (No such file or directory)");
    EXPECT_EQ(Write(""), ": unable to write to the file (No such file or directory)");
    EXPECT_EQ(
        Write(mFolder / "none/"), mFolder / "none/: unable to write to the file (No such file or directory)");
}

TEST_F(TargetFile, is_no_folder)
{
    EXPECT_EQ(Write(mFolder.Path()), mFolder.Path() + ": unable to write to the file (Is a directory)");
    PutContent(mFolder / "file", "");
    EXPECT_EQ(Write(mFolder / "file/out.toml"),
        mFolder / "file/out.toml: unable to write to the file (Not a directory)");
}

TEST_F(TargetFile, cannot_be_in_a_write_protected_folder)
{
    PutContent(Out(), OLD);
    ::chmod(Out().c_str(), 0666);
    ::chmod(mFolder.Path().c_str(), 0555);
    Plugins();
    const int status = AsOrdinaryUser(
        [this] { return Write(Out()) == Out() + ": unable to write to the file (Permission denied)" ? 0 : 1; });
    EXPECT_EQ(status, 0);
    EXPECT_EQ(ContentOf(Out()), OLD);
}

TEST_F(TargetFile, is_left_alone_if_it_is_write_protected)
{
    PutContent(Out(), OLD);
    ::chmod(Out().c_str(), 0444);
    ::chmod(mFolder.Path().c_str(), 0777);
    Plugins();
    const int status = AsOrdinaryUser(
        [this] { return Write(Out()) == Out() + ": unable to write to the file (Permission denied)" ? 0 : 1; });
    EXPECT_EQ(status, 0);
    EXPECT_EQ(ContentOf(Out()), OLD);
    EXPECT_THAT(mFolder.Names(), ElementsAre("out.toml"));
}

TEST_F(TargetFile, stays_as_it_was_if_there_is_no_room)
{
    PutContent(Out(), OLD);
    Plugins();
    const int status = InChild([this] {
        ::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{ 4, 4 };   // bytes: not even a part of the text
        if (::setrlimit(RLIMIT_FSIZE, &limit) != 0)
            return 99;
        return Write(Out()) == Out() + ": unable to write to the file (File too large)" ? 0 : 1;
    });
    EXPECT_EQ(status, 0);
    EXPECT_EQ(ContentOf(Out()), OLD);
    EXPECT_THAT(mFolder.Names(), ElementsAre("out.toml"));
}

TEST_F(TargetFile, may_be_a_device)
{
    EXPECT_EQ(Write("/dev/full"), "/dev/full: unable to write to the file (No space left on device)");
    EXPECT_EQ(Write("/dev/null"), "");
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
}

TEST_F(TargetFile, may_be_a_pipe)
{
    ASSERT_EQ(::mkfifo(Out().c_str(), 0600), 0);
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit(ContentOf(Out()) == EMPTY ? 0 : 1);
    EXPECT_EQ(Write(Out()), "");
    int status = 0;
    ::waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    EXPECT_TRUE(std::filesystem::is_fifo(Out()));
}

// Links and permissions.

TEST_F(TargetFile, is_found_behind_symbolic_links_which_stay)
{
    std::filesystem::create_directory(mFolder / "there");
    PutContent(mFolder / "there/real.toml", OLD);
    std::filesystem::create_symlink("real.toml", mFolder / "there/near.toml");
    std::filesystem::create_symlink(mFolder / "there/near.toml", Out());
    EXPECT_EQ(Write(Out()), "");
    EXPECT_TRUE(std::filesystem::is_symlink(Out()));
    EXPECT_TRUE(std::filesystem::is_symlink(mFolder / "there/near.toml"));
    EXPECT_EQ(ContentOf(mFolder / "there/real.toml"), EMPTY);
    EXPECT_THAT(mFolder.Names(), ElementsAre("out.toml", "there"));
}

TEST_F(TargetFile, is_made_where_a_dangling_link_points)
{
    std::filesystem::create_symlink("new.toml", Out());
    EXPECT_EQ(Write(Out()), "");
    EXPECT_TRUE(std::filesystem::is_symlink(Out()));
    EXPECT_EQ(ContentOf(mFolder / "new.toml"), EMPTY);
    EXPECT_THAT(mFolder.Names(), ElementsAre("new.toml", "out.toml"));
}

TEST_F(TargetFile, is_not_found_behind_links_in_a_circle)
{
    std::filesystem::create_symlink("other.toml", Out());
    std::filesystem::create_symlink("out.toml", mFolder / "other.toml");
    EXPECT_EQ(Write(Out()), Out() + ": unable to write to the file (Too many levels of symbolic links)");
    EXPECT_THAT(mFolder.Names(), ElementsAre("other.toml", "out.toml"));
}

TEST_F(TargetFile, keeps_the_permissions_of_the_old_one)
{
    for (const mode_t mode : { 0600u, 0640u, 0664u, 0755u }) {
        PutContent(Out(), OLD);
        ::chmod(Out().c_str(), mode);
        EXPECT_EQ(Write(Out()), "");
        EXPECT_EQ(ModeOf(Out()), mode);
    }
}

TEST_F(TargetFile, has_the_permissions_of_any_new_file)
{
    const mode_t former = ::umask(027);
    EXPECT_EQ(Write(Out()), "");
    ::umask(former);
    EXPECT_EQ(ModeOf(Out()), 0640u);
}

// Kills.

// A chip whose file is long enough to be caught in the middle.
void Fill(CChipConfig & chip, const std::string & text)
{
    ScriptedReader reader;
    ASubsystem subsystem(1);
    for (std::uint32_t id = 1; id <= 2000; ++id)
        std::move(subsystem).Holding(new CElementString(id, "", text, false, true));
    reader.Delivers(std::move(subsystem).In(1, 1));
    reader.ReadInto(chip);
}

// Kills the process in the middle of its `count`th element.
class KillingPayload : public CStringPayload
{
public:
    using CStringPayload::CStringPayload;
    PayloadTypeEnum Type() override
    {
        ::kill(::getpid(), SIGKILL);
        return CStringPayload::Type();
    }
};

TEST_F(TargetFile, stays_as_it_was_if_the_process_is_killed_in_the_middle_of_a_write)
{
    PutContent(Out(), OLD);
    Plugins();
    const int status = InChild([this] {
        CChipConfig chip;
        CZynContext context;
        Fill(chip, "text");
        auto element = std::make_unique<CElementStruct>(5000, "", true);
        element->AddField(new KillingPayload("x", false));
        static_cast<IConfigReaderElementObserver &>(*chip.Subsystems().begin()->second)
            .OnElementFound(element.release(), context);
        chip.Write(*MakeWriter(Out()), context);
        return 0;
    });
    EXPECT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(ContentOf(Out()), OLD);
}

TEST_F(TargetFile, is_one_file_or_the_other_whenever_the_process_is_killed)
{
    const std::string texts[] = { "one", "the other" };
    std::vector<std::string> wholes;
    std::vector<std::unique_ptr<CChipConfig>> chips;
    for (const std::string & text : texts) {
        chips.push_back(std::make_unique<CChipConfig>());
        Fill(*chips.back(), text);
        CZynContext context;
        ASSERT_TRUE(chips.back()->Write(*MakeWriter(Out()), context));
        wholes.push_back(ContentOf(Out()));
    }
    std::mt19937 random(5);
    for (int round = 0; round < 40; ++round) {
        const pid_t child = ::fork();
        if (child == 0) {
            for (std::size_t turn = 0;; ++turn) {
                CZynContext context;
                chips[turn % 2]->Write(*MakeWriter(Out()), context);
            }
        }
        ::usleep(static_cast<useconds_t>(random() % 20000));
        ::kill(child, SIGKILL);
        ::waitpid(child, nullptr, 0);
        EXPECT_THAT(wholes, ::testing::Contains(ContentOf(Out()))) << "round " << round;
    }
}

}   // namespace
