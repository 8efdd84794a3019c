// Modules that were cut short or whose segments lie elsewhere: the loader of the system would end the process.

#include <misc/pluginmanager.h>

#include <support/module_folder.h>

#include <gtest/gtest.h>

#include <dlfcn.h>
#include <link.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
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

template <typename T>
T ValueAt(const std::string & content, std::size_t place)
{
    T value;
    std::memcpy(&value, content.data() + place, sizeof value);
    return value;
}

/// Every length of a module of usual size; some of a sanitizer's big one.
std::size_t StepFor(const std::string & content)
{
    return content.size() / 65536 + 1;
}

/// Where the descriptions of the loaded segments lie in the file.
std::vector<std::size_t> LoadPlaces(const std::string & content)
{
    const auto header = ValueAt<ElfW(Ehdr)>(content, 0);
    std::vector<std::size_t> places;
    for (std::size_t i = 0; i < header.e_phnum; ++i) {
        const std::size_t place = header.e_phoff + i * sizeof(ElfW(Phdr));
        if (ValueAt<ElfW(Phdr)>(content, place).p_type == PT_LOAD)
            places.push_back(place);
    }
    return places;
}

/// The end of what the segments bring into memory; behind it a file holds nothing that the loader reads.
std::size_t EndOfSegments(const std::string & content)
{
    std::size_t end = 0;
    for (const std::size_t place : LoadPlaces(content)) {
        const auto segment = ValueAt<ElfW(Phdr)>(content, place);
        end = std::max<std::size_t>(end, segment.p_offset + segment.p_filesz);
    }
    return end;
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

TEST(ADamagedModule, with_one_wrong_bit_that_puts_a_segment_beyond_the_file_is_left_out)
{
    const ModuleFolder folder;
    const std::string path = folder.PathOf("changed.zpm");
    const std::string content = ContentOf(TestModule(MODULE));
    const int code = CodeOfChild([&] {
        for (const std::size_t place : LoadPlaces(content)) {
            for (const std::size_t word : { offsetof(ElfW(Phdr), p_offset), offsetof(ElfW(Phdr), p_filesz) }) {
                for (std::size_t bit = std::bit_width(content.size()); bit < 8 * sizeof(ElfW(Off)); ++bit) {
                    std::string changed = content;
                    char & byte = changed[place + word + bit / 8];
                    byte = static_cast<char>(byte ^ (1 << bit % 8));
                    std::ofstream(path, std::ios::binary) << changed;
                    if (LoadAndUnload(folder.Path(), "*.zpm") != 0)
                        _exit(1);
                }
            }
        }
    });
    EXPECT_EQ(code, 0);
}
