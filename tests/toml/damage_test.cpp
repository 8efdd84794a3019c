// Damaged files: cut short at every length, with bytes changed. Each is told or can be read, and none does harm.

#include "toml_support.h"

#include <gmock/gmock.h>

#include <random>

#include <sys/mman.h>
#include <unistd.h>

namespace {

using namespace VrexZynConfigTools;
using namespace VrexZynConfigTools::support;

// A file that no disk holds, for there are very many.
class MemoryFile
{
public:
    MemoryFile()
        : mDescriptor(::memfd_create("damaged", MFD_CLOEXEC))
    {}
    ~MemoryFile() { ::close(mDescriptor); }
    MemoryFile(const MemoryFile &) = delete;
    MemoryFile & operator=(const MemoryFile &) = delete;

    std::string Path() const { return "/proc/self/fd/" + std::to_string(mDescriptor); }

    bool Put(const std::string & text) const
    {
        return ::ftruncate(mDescriptor, 0) == 0 &&
               ::pwrite(mDescriptor, text.data(), text.size(), 0) == static_cast<ssize_t>(text.size());
    }

private:
    int mDescriptor;
};

class DamagedSample : public TomlTest, public ::testing::WithParamInterface<const char *>
{
protected:
    std::string Sample() const { return ContentOf(std::string(SAMPLES_DIR) + '/' + GetParam()); }

    // Either nothing was delivered and each line of the error has its place, or there is a chip.
    void ExpectErrorOrChip(const std::string & text)
    {
        const std::string path = mFile.Path();
        ASSERT_TRUE(mFile.Put(text));
        ReadChip chip;
        if (chip.Read(path, "insertmode=overwrite")) {
            Describe(chip.Chip());
            ++mRead;
            return;
        }
        ++mRefused;
        EXPECT_TRUE(chip.Chip().Subsystems().empty());
        EXPECT_THAT(mErrors.Text(), ::testing::StartsWith(path + ':')) << text;
        EXPECT_THAT(mErrors.Text().substr(path.size()), ::testing::ContainsRegex("^:[0-9]+:[0-9]+: .")) << text;
        mErrors.Clear();
    }

    MemoryFile mFile;
    int mRead = 0;
    int mRefused = 0;
};

TEST_P(DamagedSample, may_be_cut_short_anywhere)
{
    const std::string sample = Sample();
    ASSERT_FALSE(sample.empty());
    for (std::size_t length = 0; length < sample.size(); ++length)
        ExpectErrorOrChip(sample.substr(0, length));
    EXPECT_GT(mRefused, 0);
    EXPECT_GT(mRead, 0);   // cut between two keys
}

TEST_P(DamagedSample, may_have_any_byte_changed)
{
    static constexpr std::string_view BYTES("\"'[]{}=,.#\\\n\r\t 0x-\x7F\xC3\xE2\xFF\0", 24);
    const std::string sample = Sample();
    std::mt19937 random(1);
    for (std::size_t place = 0; place < sample.size(); ++place) {
        std::string text = sample;
        text[place] = BYTES[random() % BYTES.size()];
        ExpectErrorOrChip(text);
        text = sample;
        text[place] = static_cast<char>(text[place] ^ (1 << random() % 8));
        ExpectErrorOrChip(text);
    }
    EXPECT_GT(mRefused, 0);
    EXPECT_GT(mRead, 0);
}

TEST_P(DamagedSample, may_have_its_parts_in_disorder)
{
    const std::string sample = Sample();
    std::mt19937 random(2);
    for (int round = 0; round < 1000; ++round) {
        std::string text = sample;
        for (int count = 0; count < 4; ++count) {
            const std::size_t from = random() % text.size();
            const std::string piece = text.substr(from, random() % 80);
            if (random() % 2 == 0)
                text.erase(from, piece.size());
            text.insert(random() % text.size(), piece);
        }
        ExpectErrorOrChip(text);
    }
}

INSTANTIATE_TEST_SUITE_P(
    OfEach, DamagedSample, ::testing::Values("1-chip.toml", "2-module.toml", "3-start.toml", "4-product.toml"));

}   // namespace
