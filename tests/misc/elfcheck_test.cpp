// Each rule of the check, on a module in which one thing is changed. The module has no section table here, so that no
// other rule sees the change; the rules that compare with that table come last.

#include "module_image.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <limits>

using namespace VrexZynConfigTools;
using support::ModuleImage;
using Address = ModuleImage::Address;
using Segment = ModuleImage::Segment;
using Change = std::function<void(ModuleImage &)>;

namespace {

constexpr Address FAR_AWAY = 0x40000000;

/// Whether the check sees a change.
bool IsSoundWith(const Change & change, const char * module = "many_tables")
{
    ModuleImage image(module);
    image.WithoutSections();
    change(image);
    return image.IsSound();
}

bool IsSoundWithSectionsAnd(const Change & change)
{
    ModuleImage image("many_tables");
    change(image);
    return image.IsSound();
}

bool IsSoundWithSegment(ElfW(Word) type, ElfW(Word) flags, const std::function<void(Segment &)> & change)
{
    return IsSoundWith([&](ModuleImage & image) { image.ChangeSegment(type, flags, change); });
}

bool IsSoundWithDynamic(std::int64_t tag, Address value, const char * module = "many_tables")
{
    return IsSoundWith([&](ModuleImage & image) { image.SetDynamic(tag, value); }, module);
}

/// The word of a table, counted from the table's begin.
template <typename T>
Change SetWord(std::int64_t tag, Address word, T value)
{
    return [=](ModuleImage & image) { image.Set(image.Dynamic(tag) + word * sizeof(T), value); };
}

Change ChangeRelocation(std::int64_t tableTag, const std::function<void(ElfW(Rela) &)> & change)
{
    return [=](ModuleImage & image) {
        const Address at = image.Dynamic(tableTag);
        auto relocation = image.Get<ElfW(Rela)>(at);
        change(relocation);
        image.Set(at, relocation);
    };
}

}   // namespace

TEST(ElfCheck, accepts_whole_modules_with_and_without_sections)
{
    for (const char * const module : { "many_tables", "short_relocations", "storereader", "alpha" }) {
        EXPECT_TRUE(ModuleImage(module).IsSound()) << module;
        EXPECT_TRUE(ModuleImage(module).WithoutSections().IsSound()) << module;
    }
}

TEST(ElfCheck, wants_the_table_of_segments_in_the_file_and_in_its_place)
{
    const auto withHeader = [](const std::function<void(ModuleImage::Header &)> & change) {
        return IsSoundWith([&](ModuleImage & image) {
            auto header = image.GetAt<ModuleImage::Header>(0);
            change(header);
            image.SetAt(0, header);
        });
    };
    EXPECT_TRUE(withHeader([](auto &) {}));
    EXPECT_FALSE(withHeader([](auto & header) { header.e_phoff = FAR_AWAY; }));
    EXPECT_FALSE(withHeader([](auto & header) { header.e_phoff += 4; }));
    EXPECT_FALSE(withHeader([](auto & header) { header.e_phnum = 0; }));
    EXPECT_FALSE(withHeader([](auto & header) { header.e_phnum = 0xFFFF; }));
    EXPECT_FALSE(withHeader([](auto & header) { header.e_phentsize = 1; }));
    EXPECT_FALSE(withHeader([](auto & header) { header.e_type = ET_EXEC; }));
    EXPECT_FALSE(withHeader([](auto & header) { header.e_version = 2; }));
}

TEST(ElfCheck, wants_what_is_loaded_in_the_file)
{
    EXPECT_FALSE(IsSoundWithSegment(PT_LOAD, PF_W, [](Segment & load) { load.p_offset += FAR_AWAY; }));
    EXPECT_FALSE(IsSoundWithSegment(PT_LOAD, PF_W, [](Segment & load) {
        load.p_filesz += FAR_AWAY;
        load.p_memsz += FAR_AWAY;
    }));
    EXPECT_FALSE(IsSoundWithSegment(
        PT_LOAD, PF_W, [](Segment & load) { load.p_offset = std::numeric_limits<Address>::max() - 0xFFF; }));
}

TEST(ElfCheck, wants_memory_for_all_of_the_file_and_zeros_only_where_they_can_be_written)
{
    EXPECT_FALSE(IsSoundWithSegment(PT_LOAD, PF_W, [](Segment & load) { load.p_memsz = load.p_filesz - 1; }));
    EXPECT_FALSE(IsSoundWithSegment(PT_LOAD, PF_X, [](Segment & load) { load.p_filesz -= 1; }));
    EXPECT_FALSE(IsSoundWithSegment(
        PT_LOAD, PF_W, [](Segment & load) { load.p_memsz = std::numeric_limits<Address>::max(); }));
}

TEST(ElfCheck, wants_aligned_loads_that_share_no_page)
{
    EXPECT_FALSE(IsSoundWithSegment(PT_LOAD, PF_X, [](Segment & load) { load.p_align = 0x3000; }));
    EXPECT_FALSE(IsSoundWithSegment(PT_LOAD, PF_X, [](Segment & load) { load.p_align = 16; }));
    EXPECT_FALSE(IsSoundWithSegment(PT_LOAD, PF_X, [](Segment & load) { load.p_align = 0; }));
    EXPECT_FALSE(IsSoundWithSegment(PT_LOAD, PF_X, [](Segment & load) { load.p_vaddr += 8; }));
    EXPECT_FALSE(IsSoundWithSegment(PT_LOAD, PF_X, [](Segment & load) { load.p_vaddr = 0; }));
    EXPECT_FALSE(IsSoundWithSegment(PT_LOAD, PF_X, [](Segment & load) { load.p_flags = 0; }));
}

TEST(ElfCheck, wants_each_other_segment_within_what_is_loaded)
{
    const auto shift = [](Segment & segment) { segment.p_vaddr += FAR_AWAY; };
    for (const ElfW(Word) type :
        std::initializer_list<ElfW(Word)>{ PT_DYNAMIC, PT_GNU_RELRO, PT_GNU_EH_FRAME, PT_NOTE })
        EXPECT_FALSE(IsSoundWithSegment(type, 0, shift)) << type;
    const auto otherPlace = [](Segment & segment) { segment.p_offset += 8; };
    for (const ElfW(Word) type : std::initializer_list<ElfW(Word)>{ PT_DYNAMIC, PT_GNU_EH_FRAME, PT_NOTE })
        EXPECT_FALSE(IsSoundWithSegment(type, 0, otherPlace)) << type;
}

TEST(ElfCheck, wants_one_dynamic_section_that_ends)
{
    EXPECT_FALSE(IsSoundWithSegment(PT_DYNAMIC, 0, [](Segment & segment) { segment.p_type = PT_NULL; }));
    EXPECT_FALSE(IsSoundWithSegment(PT_NOTE, 0, [](Segment & segment) { segment.p_type = PT_DYNAMIC; }));
    EXPECT_FALSE(IsSoundWith([](ModuleImage & image) {
        const auto dynamic = image.GetSegment(PT_DYNAMIC);
        for (Address at = 0; at < dynamic.p_filesz; at += sizeof(ModuleImage::Entry)) {
            if (image.GetAt<std::int64_t>(dynamic.p_offset + at) == DT_NULL)
                image.SetAt<std::int64_t>(dynamic.p_offset + at, 0x60000100 + static_cast<std::int64_t>(at));
        }
    }));
}

TEST(ElfCheck, wants_no_end_amid_the_dynamic_entries_and_no_entry_twice)
{
    EXPECT_FALSE(IsSoundWith([](ModuleImage & image) { image.ReplaceDynamic(DT_FINI, DT_NULL, 0); }));
    EXPECT_FALSE(IsSoundWith(
        [](ModuleImage & image) { image.ReplaceDynamic(DT_FINI, DT_INIT, image.Dynamic(DT_INIT)); }));
}

TEST(ElfCheck, wants_the_entries_that_the_loader_takes_for_granted)
{
    for (const std::int64_t tag : { DT_STRTAB, DT_STRSZ, DT_SYMTAB, DT_RELASZ, DT_RELAENT, DT_RELA, DT_PLTRELSZ,
             DT_PLTREL, DT_JMPREL, DT_INIT_ARRAY, DT_INIT_ARRAYSZ, DT_FINI_ARRAY, DT_FINI_ARRAYSZ, DT_VERSYM,
             DT_VERNEED, DT_VERNEEDNUM, DT_VERDEF, DT_VERDEFNUM })
        EXPECT_FALSE(IsSoundWith([tag](ModuleImage & image) { image.RemoveDynamic(tag); })) << tag;
    for (const std::int64_t tag : { DT_RELR, DT_RELRSZ, DT_RELRENT }) {
        const auto remove = [tag](ModuleImage & image) { image.RemoveDynamic(tag); };
        EXPECT_FALSE(IsSoundWith(remove, "short_relocations")) << tag;
    }
}

TEST(ElfCheck, does_without_the_entries_that_may_be_missing)
{
    for (const std::int64_t tag :
        { DT_HASH, DT_GNU_HASH, DT_INIT, DT_FINI, DT_RELACOUNT, DT_SYMENT, DT_PLTGOT })
        EXPECT_TRUE(IsSoundWith([tag](ModuleImage & image) { image.RemoveDynamic(tag); })) << tag;
    EXPECT_FALSE(IsSoundWith([](ModuleImage & image) {
        image.RemoveDynamic(DT_HASH);
        image.RemoveDynamic(DT_GNU_HASH);
    }));
}

TEST(ElfCheck, wants_the_sizes_and_kinds_that_the_loader_swears_by)
{
    EXPECT_FALSE(IsSoundWithDynamic(DT_SYMENT, 8));
    EXPECT_FALSE(IsSoundWithDynamic(DT_RELAENT, 8));
    EXPECT_FALSE(IsSoundWithDynamic(DT_PLTREL, 6));
    EXPECT_FALSE(IsSoundWithDynamic(DT_RELRENT, 4, "short_relocations"));
}

TEST(ElfCheck, wants_texts_that_end_within_their_table)
{
    const ModuleImage whole("many_tables");
    EXPECT_FALSE(IsSoundWithDynamic(DT_STRSZ, whole.Dynamic(DT_STRSZ) - 1));
    EXPECT_FALSE(IsSoundWithDynamic(DT_STRSZ, 0));
    EXPECT_FALSE(IsSoundWithDynamic(DT_STRSZ, FAR_AWAY));
    EXPECT_FALSE(IsSoundWithDynamic(DT_STRTAB, FAR_AWAY));
    EXPECT_FALSE(IsSoundWithDynamic(DT_NEEDED, whole.Dynamic(DT_STRSZ)));
    EXPECT_FALSE(IsSoundWith(
        [](ModuleImage & image) { image.ReplaceDynamic(DT_FINI, DT_SONAME, image.Dynamic(DT_STRSZ)); }));
}

TEST(ElfCheck, walks_the_hash_table)
{
    const ModuleImage whole("many_tables");
    const auto bucketCount = whole.Get<ElfW(Word)>(whole.Dynamic(DT_HASH));
    const auto symbolCount = whole.Get<ElfW(Word)>(whole.Dynamic(DT_HASH) + sizeof(ElfW(Word)));
    EXPECT_FALSE(IsSoundWith(SetWord<ElfW(Word)>(DT_HASH, 0, 0)));
    EXPECT_FALSE(IsSoundWith(SetWord<ElfW(Word)>(DT_HASH, 0, 0x7FFFFFFF)));
    EXPECT_FALSE(IsSoundWith(SetWord<ElfW(Word)>(DT_HASH, 1, 0x7FFFFFFF)));
    EXPECT_FALSE(IsSoundWith(SetWord<ElfW(Word)>(DT_HASH, 2, symbolCount)));   // the first bucket
    EXPECT_FALSE(IsSoundWith([&](ModuleImage & image) {
        SetWord<ElfW(Word)>(DT_HASH, 2, 1)(image);
        SetWord<ElfW(Word)>(DT_HASH, 2 + bucketCount + 1, 1)(image);   // after symbol 1 comes symbol 1
    }));
    EXPECT_FALSE(IsSoundWithDynamic(DT_HASH, FAR_AWAY));
}

TEST(ElfCheck, walks_the_other_hash_table)
{
    const ModuleImage whole("many_tables");
    const auto firstSymbol = whole.Get<std::uint32_t>(whole.Dynamic(DT_GNU_HASH) + 4);
    const auto filterCount = whole.Get<std::uint32_t>(whole.Dynamic(DT_GNU_HASH) + 8);
    const Address buckets = 4 + filterCount * (sizeof(Address) / 4);
    EXPECT_FALSE(IsSoundWith(SetWord<std::uint32_t>(DT_GNU_HASH, 0, 0)));
    EXPECT_FALSE(IsSoundWith(SetWord<std::uint32_t>(DT_GNU_HASH, 0, 0x7FFFFFFF)));
    EXPECT_FALSE(IsSoundWith(SetWord<std::uint32_t>(DT_GNU_HASH, 2, 0)));
    EXPECT_FALSE(IsSoundWith(SetWord<std::uint32_t>(DT_GNU_HASH, 2, 3)));
    EXPECT_FALSE(IsSoundWith(SetWord<std::uint32_t>(DT_GNU_HASH, 2, 0x40000000)));
    EXPECT_FALSE(IsSoundWith(SetWord<std::uint32_t>(DT_GNU_HASH, 3, 64)));
    EXPECT_FALSE(IsSoundWith(SetWord<std::uint32_t>(DT_GNU_HASH, buckets, firstSymbol - 1)));
    EXPECT_FALSE(IsSoundWith(SetWord<std::uint32_t>(DT_GNU_HASH, buckets, 0x7FFFFFFF)));
    EXPECT_FALSE(IsSoundWithDynamic(DT_GNU_HASH, FAR_AWAY));
}

TEST(ElfCheck, wants_symbols_with_names_and_sound_values)
{
    const auto withSymbol = [](const std::function<void(ElfW(Sym) &)> & change) {
        return IsSoundWith([&](ModuleImage & image) {
            const Address at = image.Dynamic(DT_SYMTAB) + sizeof(ElfW(Sym));
            auto symbol = image.Get<ElfW(Sym)>(at);
            change(symbol);
            image.Set(at, symbol);
        });
    };
    EXPECT_TRUE(withSymbol([](auto &) {}));
    EXPECT_FALSE(withSymbol([](auto & symbol) { symbol.st_name = FAR_AWAY; }));
    EXPECT_FALSE(withSymbol([](auto & symbol) {
        symbol.st_shndx = 1;
        symbol.st_info = STT_GNU_IFUNC;   // called to learn the address
        symbol.st_value = FAR_AWAY;
    }));
    EXPECT_FALSE(IsSoundWithDynamic(DT_SYMTAB, FAR_AWAY));
}

TEST(ElfCheck, wants_a_part_for_each_thread_where_a_symbol_has_one)
{
    EXPECT_FALSE(IsSoundWith([](ModuleImage & image) {
        const Address at = image.Dynamic(DT_SYMTAB) + sizeof(ElfW(Sym));
        auto symbol = image.Get<ElfW(Sym)>(at);
        symbol.st_shndx = 1;
        symbol.st_info = STT_TLS;
        image.Set(at, symbol);
        image.ChangeSegment(PT_TLS, 0, [](Segment & part) { part.p_type = PT_NULL; });
    }));
}

TEST(ElfCheck, walks_the_versions_that_are_needed)
{
    const auto withLibrary = [](const std::function<void(ElfW(Verneed) &)> & change) {
        return IsSoundWith([&](ModuleImage & image) {
            const Address at = image.Dynamic(DT_VERNEED);
            auto library = image.Get<ElfW(Verneed)>(at);
            change(library);
            image.Set(at, library);
        });
    };
    EXPECT_TRUE(withLibrary([](auto &) {}));
    EXPECT_FALSE(withLibrary([](auto & library) { library.vn_version = 2; }));
    EXPECT_FALSE(withLibrary([](auto & library) { library.vn_next = 0; }));
    EXPECT_FALSE(withLibrary([](auto & library) { library.vn_next = FAR_AWAY; }));
    EXPECT_FALSE(withLibrary([](auto & library) { library.vn_aux = FAR_AWAY; }));
    EXPECT_FALSE(withLibrary([](auto & library) { library.vn_cnt += 1; }));
    EXPECT_FALSE(withLibrary([](auto & library) { library.vn_file = FAR_AWAY; }));
    EXPECT_FALSE(withLibrary([](auto & library) { library.vn_file += 1; }));   // a library that isn't needed
    EXPECT_FALSE(IsSoundWithDynamic(DT_VERNEEDNUM, 1));
    EXPECT_FALSE(IsSoundWithDynamic(DT_VERNEEDNUM, FAR_AWAY));
}

TEST(ElfCheck, walks_the_versions_of_the_module_itself)
{
    const auto withOwn = [](const std::function<void(ElfW(Verdef) &)> & change) {
        return IsSoundWith([&](ModuleImage & image) {
            const Address at = image.Dynamic(DT_VERDEF);
            auto own = image.Get<ElfW(Verdef)>(at);
            change(own);
            image.Set(at, own);
        });
    };
    EXPECT_TRUE(withOwn([](auto &) {}));
    EXPECT_FALSE(withOwn([](auto & own) { own.vd_version = 2; }));
    EXPECT_FALSE(withOwn([](auto & own) { own.vd_next = 0; }));
    EXPECT_FALSE(withOwn([](auto & own) { own.vd_aux = FAR_AWAY; }));
    EXPECT_FALSE(IsSoundWithDynamic(DT_VERDEFNUM, 1));
}

TEST(ElfCheck, wants_a_known_version_for_each_symbol)
{
    EXPECT_TRUE(IsSoundWith(SetWord<std::uint16_t>(DT_VERSYM, 1, VER_NDX_GLOBAL)));
    EXPECT_FALSE(IsSoundWith(SetWord<std::uint16_t>(DT_VERSYM, 1, 0x7FF)));
    EXPECT_FALSE(IsSoundWithDynamic(DT_VERSYM, FAR_AWAY));
}

TEST(ElfCheck, wants_relocations_of_known_symbols_in_memory_that_can_be_written)
{
    constexpr auto withoutSymbol = [](Address info) { return info & 0xFFFFFFFF; };
    EXPECT_TRUE(IsSoundWith(ChangeRelocation(DT_JMPREL, [](auto &) {})));
    EXPECT_FALSE(IsSoundWith(ChangeRelocation(DT_JMPREL, [](auto & one) { one.r_offset = 0; })));
    EXPECT_FALSE(IsSoundWith(ChangeRelocation(DT_JMPREL, [](auto & one) { one.r_offset = FAR_AWAY; })));
    EXPECT_FALSE(IsSoundWith(ChangeRelocation(
        DT_JMPREL, [&](auto & one) { one.r_info = withoutSymbol(one.r_info) | Address{ 0xFFFF } << 32; })));
    EXPECT_FALSE(IsSoundWithDynamic(DT_RELASZ, 1));
    EXPECT_FALSE(IsSoundWithDynamic(DT_RELASZ, sizeof(ElfW(Rela)) * 0x1000000));
    EXPECT_FALSE(IsSoundWithDynamic(DT_RELA, FAR_AWAY));
    EXPECT_FALSE(IsSoundWithDynamic(DT_JMPREL, FAR_AWAY));
}

TEST(ElfCheck, bears_relocations_in_code_where_they_are_announced)
{
    const Change inCode = [](ModuleImage & image) {
        const Address code = image.GetSegment(PT_LOAD, PF_X).p_vaddr;
        ChangeRelocation(DT_JMPREL, [code](auto & one) { one.r_offset = code; })(image);
    };
    EXPECT_FALSE(IsSoundWith(inCode));
    EXPECT_TRUE(IsSoundWith([&](ModuleImage & image) {
        inCode(image);
        image.ReplaceDynamic(DT_FINI, DT_TEXTREL, 0);
    }));
}

TEST(ElfCheck, wants_the_relative_relocations_that_are_counted)
{
    const ModuleImage whole("many_tables");
    const Address all = whole.Dynamic(DT_RELASZ) / sizeof(ElfW(Rela));
    EXPECT_FALSE(IsSoundWithDynamic(DT_RELACOUNT, all));   // not all are relative
    EXPECT_FALSE(IsSoundWithDynamic(DT_RELACOUNT, all + 1));
    EXPECT_TRUE(IsSoundWithDynamic(DT_RELACOUNT, 0));
}

TEST(ElfCheck, walks_relocations_in_the_short_form)
{
    const char * const module = "short_relocations";
    EXPECT_FALSE(IsSoundWith(SetWord<Address>(DT_RELR, 0, FAR_AWAY), module));
    EXPECT_FALSE(IsSoundWith(SetWord<Address>(DT_RELR, 0, 0), module));
    const auto load = ModuleImage(module).GetSegment(PT_LOAD, PF_W);
    const Address lastPlace = (load.p_vaddr + load.p_memsz - sizeof(Address)) & ~Address{ 7 };
    EXPECT_FALSE(IsSoundWith(
        [lastPlace](ModuleImage & image) {
            SetWord<Address>(DT_RELR, 0, lastPlace)(image);
            SetWord<Address>(DT_RELR, 1, 3)(image);   // and the place behind it
        },
        module));
    EXPECT_FALSE(IsSoundWithDynamic(DT_RELRSZ, 7, module));
    EXPECT_FALSE(IsSoundWithDynamic(DT_RELR, FAR_AWAY, module));
}

TEST(ElfCheck, wants_code_in_every_place_that_the_loader_calls)
{
    const ModuleImage whole("many_tables");
    const Address array = whole.Dynamic(DT_INIT_ARRAY);
    const Address data = whole.GetSegment(PT_LOAD, PF_W).p_vaddr;
    EXPECT_FALSE(IsSoundWithDynamic(DT_INIT, data));
    EXPECT_FALSE(IsSoundWithDynamic(DT_FINI, FAR_AWAY));
    EXPECT_FALSE(IsSoundWithDynamic(DT_INIT_ARRAY, FAR_AWAY));
    EXPECT_FALSE(IsSoundWithDynamic(DT_INIT_ARRAY, array + 4));
    EXPECT_FALSE(IsSoundWithDynamic(DT_INIT_ARRAYSZ, 4));
    EXPECT_FALSE(IsSoundWith(ChangeRelocation(DT_RELA, [&](auto & one) {
        ASSERT_EQ(one.r_offset, array);
        one.r_addend = static_cast<std::int64_t>(data);
    })));
    EXPECT_FALSE(IsSoundWith(ChangeRelocation(DT_RELA, [](auto & one) { one.r_info = 0; })));   // left as it is
    EXPECT_FALSE(IsSoundWith(SetWord<Address>(DT_INIT_ARRAY, 0, data), "short_relocations"));
}

TEST(ElfCheck, wants_tables_that_do_not_overlap)
{
    const ModuleImage whole("many_tables");
    EXPECT_FALSE(IsSoundWithDynamic(DT_INIT_ARRAYSZ, whole.Dynamic(DT_INIT_ARRAYSZ) + sizeof(Address)));
    EXPECT_FALSE(IsSoundWithDynamic(DT_FINI_ARRAY, whole.Dynamic(DT_INIT_ARRAY)));
    EXPECT_FALSE(IsSoundWithDynamic(DT_JMPREL, whole.Dynamic(DT_RELA)));
    EXPECT_FALSE(IsSoundWithDynamic(DT_RELASZ, whole.Dynamic(DT_RELASZ) + sizeof(ElfW(Rela))));
}

TEST(ElfCheck, takes_a_start_or_end_function_one_bit_away_from_its_section_for_damage)
{
    const auto moved = [](std::int64_t tag, Address bits) -> Change {
        return [=](ModuleImage & image) { image.SetDynamic(tag, image.Dynamic(tag) ^ bits); };
    };
    for (const Address bit : std::initializer_list<Address>{ 1, 2, 4, 8, 0x10, 0x20 }) {
        EXPECT_FALSE(IsSoundWithSectionsAnd(moved(DT_INIT, bit)));
        EXPECT_TRUE(IsSoundWith(moved(DT_INIT, bit)));   // nothing tells otherwise without sections
    }
    EXPECT_TRUE(IsSoundWithSectionsAnd(moved(DT_INIT, 0x30)));   // as an author may have chosen
    EXPECT_FALSE(IsSoundWithSectionsAnd(moved(DT_FINI, 0x40)));
}

TEST(ElfCheck, compares_segments_with_sections)
{
    const auto withSegment = [](ElfW(Word) type, ElfW(Word) flags,
                                 const std::function<void(Segment &)> & change) {
        return IsSoundWithSectionsAnd([&](ModuleImage & image) { image.ChangeSegment(type, flags, change); });
    };
    const auto forget = [](Segment & segment) { segment.p_type = PT_NULL; };
    EXPECT_FALSE(withSegment(PT_TLS, 0, forget));
    EXPECT_FALSE(withSegment(PT_GNU_EH_FRAME, 0, forget));
    EXPECT_TRUE(withSegment(PT_GNU_RELRO, 0, forget));
    EXPECT_FALSE(withSegment(PT_TLS, 0, [](Segment & part) { part.p_memsz -= 1; }));
    EXPECT_FALSE(withSegment(PT_TLS, 0, [](Segment & part) { part.p_filesz = part.p_memsz; }));
    EXPECT_FALSE(withSegment(PT_LOAD, PF_W, [](Segment & load) { load.p_filesz = load.p_memsz; }));
    EXPECT_FALSE(withSegment(PT_LOAD, PF_W, [](Segment & load) { load.p_memsz = load.p_filesz; }));
    EXPECT_FALSE(withSegment(PT_GNU_RELRO, 0, [](Segment & locked) { locked.p_memsz += 0x1000; }));
}

TEST(ElfCheck, compares_tables_with_sections)
{
    const auto withDynamic = [](std::int64_t tag, std::int64_t change) {
        return IsSoundWithSectionsAnd([&](ModuleImage & image) {
            image.SetDynamic(tag, image.Dynamic(tag) + static_cast<Address>(change));
        });
    };
    constexpr auto relocation = static_cast<std::int64_t>(sizeof(ElfW(Rela)));
    EXPECT_TRUE(withDynamic(DT_RELASZ, 0));
    EXPECT_FALSE(withDynamic(DT_RELASZ, -relocation));
    EXPECT_FALSE(withDynamic(DT_PLTRELSZ, -relocation));
    EXPECT_FALSE(withDynamic(DT_INIT_ARRAYSZ, -8));
    EXPECT_FALSE(IsSoundWithSectionsAnd([](ModuleImage & image) { image.SetDynamic(DT_INIT_ARRAYSZ, 0); }));
}

TEST(ElfCheck, bears_a_section_table_that_was_cut_off_but_not_a_wrong_one)
{
    const auto withHeader = [](const std::function<void(ModuleImage::Header &)> & change) {
        return IsSoundWithSectionsAnd([&](ModuleImage & image) {
            auto header = image.GetAt<ModuleImage::Header>(0);
            change(header);
            image.SetAt(0, header);
        });
    };
    EXPECT_TRUE(withHeader([](auto & header) { header.e_shoff = FAR_AWAY; }));
    EXPECT_FALSE(withHeader([](auto & header) { header.e_shentsize = 1; }));
    EXPECT_FALSE(withHeader([](auto & header) { header.e_shstrndx = header.e_shnum; }));
    EXPECT_FALSE(withHeader([](auto & header) { header.e_shstrndx = 1; }));
}
