// Modules that were cut short or hit by a stray bit: the loader of the system would end the process.

#include <misc/pluginmanager.h>

#include <support/module_folder.h>

#include <gtest/gtest.h>

#include <dlfcn.h>
#include <link.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

using namespace VrexZynConfigTools;
using plugin::CPluginManager;
using support::ContentOf;
using support::ModuleFolder;
using support::TestModule;

namespace {

constexpr char MODULE[] = "storereader";   // has all that a real module has: classes, exceptions, libraries

/// Runs in a child process; 0 if it came to its end, or 128 and the signal's number.
int CodeOfChild(const std::function<void()> & run)
{
    // In a tool the library is there before its plug-ins.
    static const void * const library = dlopen(LIBRARY, RTLD_NOW | RTLD_LOCAL);
    EXPECT_NE(library, nullptr);
    const pid_t child = fork();
    if (child == 0) {
        alarm(100);
        run();
        _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

/// Loads and unloads what matches in a folder.
std::uint64_t LoadAndUnload(const std::string & folder, const std::string & pattern)
{
    CPluginManager manager("GetPlugInName", "GetPlugInSignature", "ZynConfigTool");
    manager.Load(folder, pattern);
    return manager.Count();
}

struct Part
{
    std::size_t mBegin;
    std::size_t mSize;
};

template <typename T>
T ValueAt(const std::string & content, std::size_t place)
{
    T value;
    std::memcpy(&value, content.data() + place, sizeof value);
    return value;
}

/// The file's header, the table of segments and the dynamic section: what the loader follows.
std::vector<Part> LoaderParts(const std::string & content)
{
    const auto header = ValueAt<ElfW(Ehdr)>(content, 0);
    std::vector<Part> parts = { { 0, sizeof header }, { header.e_phoff, header.e_phnum * sizeof(ElfW(Phdr)) } };
    for (std::size_t i = 0; i < header.e_phnum; ++i) {
        const auto segment = ValueAt<ElfW(Phdr)>(content, header.e_phoff + i * sizeof(ElfW(Phdr)));
        if (segment.p_type == PT_DYNAMIC)
            parts.push_back({ segment.p_offset, segment.p_filesz });
    }
    return parts;
}

/// Every length and every bit of a module of usual size; some of a sanitizer's big one.
std::size_t StepFor(const std::string & content)
{
    return content.size() / 65536 + 1;
}

/// The end of what the segments bring into memory; behind it a file holds nothing that the loader reads.
std::size_t EndOfSegments(const std::string & content)
{
    const auto header = ValueAt<ElfW(Ehdr)>(content, 0);
    std::size_t end = 0;
    for (std::size_t i = 0; i < header.e_phnum; ++i) {
        const auto segment = ValueAt<ElfW(Phdr)>(content, header.e_phoff + i * sizeof(ElfW(Phdr)));
        if (segment.p_type == PT_LOAD)
            end = std::max<std::size_t>(end, segment.p_offset + segment.p_filesz);
    }
    return end;
}

/// Loads the module with each bit of the parts inverted in turn, as long as none of them stays in memory: the loader
/// would take the next ones for it. Returns the number of the first bit not tried.
std::size_t TryBitsFrom(std::size_t first, const std::string & content, const std::vector<std::size_t> & bits,
    const ModuleFolder & folder)
{
    for (std::size_t i = first; i < bits.size(); ++i) {
        const std::string file = "bit" + std::to_string(bits[i]) + ".zpm";
        std::string changed = content;
        changed[bits[i] / 8] = static_cast<char>(changed[bits[i] / 8] ^ (1 << bits[i] % 8));
        std::ofstream(folder.PathOf(file), std::ios::binary) << changed;
        LoadAndUnload(folder.Path(), file);
        const bool stays = dlopen(folder.PathOf(file).c_str(), RTLD_NOLOAD | RTLD_LAZY) != nullptr;
        std::filesystem::remove(folder.PathOf(file));
        if (stays)
            return i + 1;
    }
    return bits.size();
}

}   // namespace

TEST(ADamagedModule, is_left_out_at_every_length_that_lacks_something)
{
    ModuleFolder folder;
    folder.With(MODULE);
    const std::string path = folder.PathOf(std::string(MODULE) + ".zpm");
    const std::string content = ContentOf(path);
    const std::size_t step = StepFor(content);
    const std::size_t end = EndOfSegments(content);
    const int code = CodeOfChild([&] {
        for (std::size_t lack = 1; lack <= end; lack += step) {
            std::filesystem::resize_file(path, end - lack);
            if (LoadAndUnload(folder.Path(), "*.zpm") != 0)
                _exit(1);
        }
    });
    EXPECT_EQ(code, 0);
}

TEST(ADamagedModule, that_lacks_only_what_is_not_loaded_is_a_plug_in_still)
{
    ModuleFolder folder;
    folder.With(MODULE);
    const std::string path = folder.PathOf(std::string(MODULE) + ".zpm");
    const std::size_t whole = std::filesystem::file_size(path);
    const std::size_t end = EndOfSegments(ContentOf(path));
    const int code = CodeOfChild([&] {
        const std::size_t step = (whole - end) / 100 + 1;
        for (std::size_t size = whole; size >= end + step; size -= step) {
            std::filesystem::resize_file(path, size);
            if (LoadAndUnload(folder.Path(), "*.zpm") != 1)
                _exit(1);
        }
    });
    EXPECT_EQ(code, 0);
}

TEST(ADamagedModule, with_one_wrong_bit_before_the_loader_s_eyes_ends_no_process)
{
    const ModuleFolder folder;
    const std::string content = ContentOf(TestModule(MODULE));
    std::vector<std::size_t> bits;
    for (const Part & part : LoaderParts(content)) {
        for (std::size_t bit = part.mBegin * 8; bit < (part.mBegin + part.mSize) * 8; bit += StepFor(content))
            bits.push_back(bit);
    }
    const std::string progress = folder.PathOf("progress");
    std::size_t next = 0;
    while (next < bits.size()) {
        const std::size_t first = next;
        const int code =
            CodeOfChild([&] { std::ofstream(progress) << TryBitsFrom(first, content, bits, folder); });
        ASSERT_EQ(code, 0) << "one of the bits from " << bits[first] << " on";
        std::ifstream(progress) >> next;
        ASSERT_GT(next, first);
    }
}
