// A repository cut off at any length or with any bit flipped is refused, or answers; it never does harm.

#include "sqlitemetadata_support.h"

#include <configtools/chipconfig.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <random>

namespace {

using namespace VrexZynConfigTools;
using namespace VrexZynConfigTools::support;
using ::testing::HasSubstr;
using ::testing::StartsWith;

constexpr int PAGE_SIZE = 512;
constexpr int SEED = 20;

class Damage : public ::testing::Test
{
protected:
    Damage()
    {
        {
            RepositoryBuilder repository(mPath, PAGE_SIZE);
            Fill(repository);
        }
        mSound = ContentOf(mPath);
    }

    // Some of everything that a repository can hold.
    static void Fill(RepositoryBuilder & repository)
    {
        const auto bt = repository.AddSubsystem(repository.AddSystem("pottersong", "trindle7"), "bt");
        const auto list = repository.AddKey(bt, { .psid = 1, .name = "list", .isArray = true });
        repository.AddDefault(list, { "1", "2", "3" });
        const auto mode = repository.AddKey(bt, { .psid = 2, .name = "mode", .metadataType = 1 });
        repository.AddEnumerators(mode, { { "off", 0 }, { "on", 1 } });
        repository.AddDefault(mode, { "1" });
        const auto gain = repository.AddKey(bt, { .psid = 3, .name = "gain", .numIndices = 2 });
        repository.AddIntIndex(gain, 1, "antenna", 0, 9);
        repository.AddEnumIndex(gain, 2, "band", { { "low", 1 }, { "high", 2 } });
        repository.AddDefault(gain, { "7" }, { 4, 2 });
        const auto outer = repository.AddStructKey(bt, { .psid = 4, .name = "outer", .isArray = true });
        const auto inner = repository.AddStruct("NULL", { .name = "inner" }, false);
        repository.PutField(outer, inner, 0, 16);
        repository.AddField(inner, { .name = "left" }, 0, 8);
        repository.AddField(inner, { .name = "right" }, 8, 8);
        repository.AddField(outer, { .name = "list", .isArray = true }, 16, 32);
        repository.AddDefault(outer, { "x'010203040506'", "x'0708090A0B0C'" });
        for (int number = 10; number < 30; ++number)
            repository.AddKey(bt, { .psid = number, .name = "filler" + std::to_string(number) });
    }

    // Opens what stands in the file and asks everything. A refusal has to have a reason, which names the file.
    void Exercise(const std::string & content)
    {
        PutContent(mPath, content);
        mErrors.Clear();
        const auto provider = MakeProvider(mPath);
        ASSERT_NE(nullptr, provider);
        if (provider->Check())
            return AskEverything(*provider);
        ASSERT_THAT(mErrors.Text(), StartsWith(mPath + ": "));
        ++mRefused;
    }

    void AskEverything(IMetadataProvider & provider)
    {
        CZynContext context;
        for (const IMetadata * const record : provider.AllMetadata(context))
            record->ToString(",");
        provider.MetadataByName("gain", context);
        provider.NearestName("gian", context);
        provider.Chips(context);
        provider.Subsystems(context);
        CChipConfig chip;
        auto & reader = dynamic_cast<IConfigReader &>(provider);
        reader.SetObserver(chip);
        reader.Read(context);
        ++mAnswered;
    }

    TemporaryFolder mFolder;
    std::string mPath = mFolder / "system.zmd";
    FrameworkErrors mErrors;
    std::string mSound;
    int mRefused = 0;
    int mAnswered = 0;
};

TEST_F(Damage, is_not_found_where_there_is_none)
{
    Exercise(mSound);
    EXPECT_EQ(1, mAnswered);
    EXPECT_FALSE(mErrors.IsSet()) << mErrors.Text();
}

TEST_F(Damage, by_cutting_the_file_at_any_page_is_found)
{
    ASSERT_EQ(0U, mSound.size() % PAGE_SIZE);
    for (std::size_t size = PAGE_SIZE; size < mSound.size(); size += PAGE_SIZE) {
        Exercise(mSound.substr(0, size));
        EXPECT_THAT(mErrors.Text(), HasSubstr("the file is cut off (" + std::to_string(size) + " of " +
                                              std::to_string(mSound.size()) + " bytes)"));
    }
    EXPECT_EQ(0, mAnswered);
}

// Where the header doesn't say how long the file is, SQLite has to find out.
TEST_F(Damage, by_cutting_the_file_is_found_without_the_help_of_the_header)
{
    constexpr std::size_t AT_VERSION_VALID_FOR = 92;
    std::string silent = mSound;
    silent[AT_VERSION_VALID_FOR] = static_cast<char>(~silent[AT_VERSION_VALID_FOR]);
    for (std::size_t size = 1; size < silent.size(); size += 211)
        Exercise(silent.substr(0, size));
    for (std::size_t size = PAGE_SIZE; size < silent.size(); size += PAGE_SIZE)
        Exercise(silent.substr(0, size));
    EXPECT_EQ(0, mAnswered);
}

TEST_F(Damage, of_any_bit_of_the_header_does_no_harm)
{
    for (std::size_t bit = 0; bit < 100 * 8; ++bit) {
        std::string damaged = mSound;
        damaged[bit / 8] = static_cast<char>(damaged[bit / 8] ^ (1 << (bit % 8)));
        Exercise(damaged);
    }
    EXPECT_GT(mRefused, 250);
}

TEST_F(Damage, of_single_bits_does_no_harm)
{
    std::mt19937 random(SEED);
    for (std::size_t byte = 100; byte < mSound.size(); byte += 1 + random() % 16) {
        std::string damaged = mSound;
        damaged[byte] = static_cast<char>(damaged[byte] ^ (1 << (random() % 8)));
        Exercise(damaged);
    }
    EXPECT_GT(mRefused, 1000);
}

TEST_F(Damage, of_whole_runs_of_bytes_does_no_harm)
{
    std::mt19937 random(SEED);
    for (int round = 0; round < 300; ++round) {
        std::string damaged = mSound;
        const std::size_t start = 100 + random() % (damaged.size() - 200);
        const std::size_t length = 1 + random() % 100;
        std::generate_n(damaged.begin() + static_cast<std::ptrdiff_t>(start), length,
            [&random] { return static_cast<char>(random()); });
        Exercise(damaged);
    }
    EXPECT_GT(mRefused, 100);
}

}   // namespace
