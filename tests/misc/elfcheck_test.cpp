// What is judged of a file before the system's loader gets it, on a module in which one thing is changed.

#include <misc/elfcheck.h>

#include <support/module_folder.h>

#include <gtest/gtest.h>

#include <link.h>

#include <cstddef>
#include <cstring>
#include <functional>
#include <initializer_list>
#include <limits>
#include <ostream>
#include <string>

using namespace VrexZynConfigTools;
using platform::LoadFailure;
using support::ContentOf;
using support::ModuleFolder;
using support::TestModule;
using Header = ElfW(Ehdr);
using Segment = ElfW(Phdr);

namespace platform {

void PrintTo(LoadFailure failure, std::ostream * out)
{
    *out << TextOf(failure);
}

}   // namespace platform

namespace {

LoadFailure Check(const std::string & content)
{
    ModuleFolder folder;
    return elfcheck::Check(folder.WithFile("some.zpm", content).PathOf("some.zpm"));
}

template <typename T>
T GetAt(const std::string & content, std::size_t place)
{
    T value;
    std::memcpy(&value, content.data() + place, sizeof value);
    return value;
}

template <typename T>
void SetAt(std::string & content, std::size_t place, const T & value)
{
    std::memcpy(content.data() + place, &value, sizeof value);
}

LoadFailure CheckWithHeader(const std::function<void(Header &)> & change)
{
    std::string content = ContentOf(TestModule("alpha"));
    auto header = GetAt<Header>(content, 0);
    change(header);
    SetAt(content, 0, header);
    return Check(content);
}

/// With a change of the last segment of a type.
LoadFailure CheckWithSegment(ElfW(Word) type, const std::function<void(Segment &, std::size_t)> & change)
{
    std::string content = ContentOf(TestModule("alpha"));
    const auto header = GetAt<Header>(content, 0);
    std::size_t place = 0;
    for (std::size_t i = 0; i < header.e_phnum; ++i) {
        const std::size_t next = header.e_phoff + i * sizeof(Segment);
        if (GetAt<Segment>(content, next).p_type == type)
            place = next;
    }
    EXPECT_NE(place, 0U);
    auto segment = GetAt<Segment>(content, place);
    change(segment, content.size());
    SetAt(content, place, segment);
    return Check(content);
}

constexpr auto MAX = std::numeric_limits<ElfW(Off)>::max();

}   // namespace

TEST(ElfCheck, accepts_whole_modules)
{
    for (const char * const module : { "alpha", "storereader" })
        EXPECT_EQ(elfcheck::Check(TestModule(module)), LoadFailure::None) << module;
}

TEST(ElfCheck, rejects_what_is_no_regular_file)
{
    const ModuleFolder folder;
    EXPECT_EQ(elfcheck::Check(folder.Path()), LoadFailure::NotRegularFile);
    EXPECT_EQ(elfcheck::Check(folder.PathOf("missing")), LoadFailure::NotRegularFile);
    EXPECT_EQ(elfcheck::Check("/dev/null"), LoadFailure::NotRegularFile);
}

TEST(ElfCheck, rejects_what_does_not_begin_as_a_module_does)
{
    EXPECT_EQ(Check(""), LoadFailure::NotElf);
    EXPECT_EQ(Check("text"), LoadFailure::NotElf);
    EXPECT_EQ(Check(std::string(1000, ' ')), LoadFailure::NotElf);
    EXPECT_EQ(Check(ELFMAG), LoadFailure::HeadersOutsideFile);
}

TEST(ElfCheck, rejects_modules_for_other_machines)
{
    EXPECT_EQ(CheckWithHeader([](Header &) {}), LoadFailure::None);
    for (const int place : { EI_CLASS, EI_DATA, EI_VERSION })
        EXPECT_EQ(CheckWithHeader([place](Header & header) { header.e_ident[place] ^= 3; }),
            LoadFailure::OtherMachine);
    EXPECT_EQ(CheckWithHeader([](Header & header) { header.e_machine ^= 1; }), LoadFailure::OtherMachine);
}

TEST(ElfCheck, rejects_what_is_no_shared_module)
{
    for (const ElfW(Half) type : std::initializer_list<ElfW(Half)>{ ET_NONE, ET_REL, ET_EXEC, ET_CORE })
        EXPECT_EQ(CheckWithHeader([type](Header & header) { header.e_type = type; }), LoadFailure::NotShared);
    EXPECT_EQ(CheckWithHeader([](Header & header) { header.e_phentsize -= 1; }), LoadFailure::NotShared);
}

TEST(ElfCheck, rejects_program_headers_beyond_the_end_of_the_file)
{
    const std::size_t size = ContentOf(TestModule("alpha")).size();
    for (const ElfW(Off) place : { ElfW(Off){ size }, ElfW(Off){ size - sizeof(Segment) }, MAX, MAX - 100 })
        EXPECT_EQ(CheckWithHeader([place](Header & header) { header.e_phoff = place; }),
            LoadFailure::HeadersOutsideFile)
            << place;
}

TEST(ElfCheck, rejects_a_loaded_segment_beyond_the_end_of_the_file)
{
    const auto checkWith = [](ElfW(Off) offset, ElfW(Off) size) {
        return CheckWithSegment(PT_LOAD, [=](Segment & segment, std::size_t fileSize) {
            segment.p_offset = fileSize + offset;
            segment.p_filesz = size;
        });
    };
    EXPECT_EQ(checkWith(0, 0), LoadFailure::None);
    EXPECT_EQ(checkWith(0, 1), LoadFailure::SegmentOutsideFile);
    EXPECT_EQ(checkWith(1, 0), LoadFailure::SegmentOutsideFile);
    const ElfW(Off) before = 100;
    EXPECT_EQ(checkWith(0 - before, before), LoadFailure::None);
    EXPECT_EQ(checkWith(0 - before, before + 1), LoadFailure::SegmentOutsideFile);
    EXPECT_EQ(checkWith(0 - before, MAX), LoadFailure::SegmentOutsideFile);
}

TEST(ElfCheck, does_not_judge_segments_that_are_not_loaded)
{
    const auto moveAway = [](Segment & segment, std::size_t size) { segment.p_offset = size; };
    EXPECT_EQ(CheckWithSegment(PT_NOTE, moveAway), LoadFailure::None);
}
