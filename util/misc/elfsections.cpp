#include <misc/elfsections.h>

#include <misc/elffile.h>

#include <algorithm>
#include <array>
#include <bit>

namespace elfcheck {

namespace {

constexpr std::int64_t NO_TAG = DT_NULL;

bool IsLoaded(const Section & section)
{
    return (section.mHeader.sh_flags & SHF_ALLOC) != 0 && section.mHeader.sh_size != 0;
}

/// Whether the part that each thread has of its own is announced, and its zeros are no bytes of the file.
bool IsInThreadPart(const CElfFile & file, const ElfW(Shdr) & header)
{
    const Segment * const part = file.FindSegment(PT_TLS);
    return part != nullptr && Range{ part->p_vaddr, part->p_memsz }.Holds(header.sh_addr, header.sh_size) &&
           Range{ part->p_vaddr, part->p_filesz }.Holds(header.sh_addr, 1) == (header.sh_type != SHT_NOBITS);
}

/// Whether the segments bring the section to its address, with its rights.
bool IsBrought(const CElfFile & file, const Section & section)
{
    const auto & header = section.mHeader;
    const bool isZeros = header.sh_type == SHT_NOBITS;
    const bool isThreads = (header.sh_flags & SHF_TLS) != 0;
    if (isThreads && (isZeros || !IsInThreadPart(file, header)))
        return IsInThreadPart(file, header);   // zeros of a thread have no place in the module's memory

    const ElfW(Word) write = (header.sh_flags & SHF_WRITE) != 0 ? PF_W : 0;
    const ElfW(Word) execute = (header.sh_flags & SHF_EXECINSTR) != 0 ? PF_X : 0;
    if (!file.IsInMemory(header.sh_addr, header.sh_size, write | execute))
        return false;
    return isZeros ? !file.PlaceOf(header.sh_addr, 1)
                   : file.PlaceOf(header.sh_addr, header.sh_size) == header.sh_offset;
}

/// Whether data stays writable when the rest of its segment is locked after loading. The pages that end behind
/// the part to lock stay open.
bool StaysWritable(const CElfFile & file, const Section & section)
{
    const Segment * const locked = file.FindSegment(PT_GNU_RELRO);
    if (locked == nullptr || (section.mName != ".data" && section.mName != ".bss"))
        return true;
    const Address pageMask = PageSize() - 1;
    const Address end = (locked->p_vaddr + locked->p_memsz) & ~pageMask;
    return section.mHeader.sh_addr >= end ||
           section.mHeader.sh_addr + section.mHeader.sh_size <= (locked->p_vaddr & ~pageMask);
}

/// Without its announcement the table by which exceptions find their way is never found.
bool IsUnwindTableAnnounced(const CElfFile & file, const Section & section)
{
    const Segment * const table = file.FindSegment(PT_GNU_EH_FRAME);
    return section.mName != ".eh_frame_hdr" || (table != nullptr && table->p_vaddr == section.mHeader.sh_addr);
}

bool BeginsSection(const CElfFile & file, Address address)
{
    const auto & sections = file.Sections();
    return std::any_of(sections.begin(), sections.end(),
        [address](const Section & section) { return IsLoaded(section) && section.mHeader.sh_addr == address; });
}

bool EndsSection(const CElfFile & file, Address address)
{
    const auto & sections = file.Sections();
    return std::any_of(sections.begin(), sections.end(), [address](const Section & section) {
        return IsLoaded(section) && section.mHeader.sh_addr + section.mHeader.sh_size == address;
    });
}

/// Whether the dynamic table at `addressTag`, of the size at `sizeTag` if that is a tag, begins with a section and
/// ends with one. An empty table has no section.
bool IsTableOfSections(const CElfFile & file, std::int64_t addressTag, std::int64_t sizeTag)
{
    const auto at = file.Dynamic(addressTag);
    if (!at)
        return true;
    if (sizeTag == NO_TAG)
        return BeginsSection(file, *at);
    const Address size = file.Dynamic(sizeTag).value_or(0);
    return BeginsSection(file, *at) == (size != 0) && (size == 0 || EndsSection(file, *at + size));
}

bool AreDynamicTablesSound(const CElfFile & file)
{
    using Tags = std::array<std::int64_t, 2>;
    static constexpr Tags TABLES[] = {
        { DT_HASH, NO_TAG },
        { DT_GNU_HASH, NO_TAG },
        { DT_STRTAB, DT_STRSZ },
        { DT_SYMTAB, NO_TAG },
        { DT_VERSYM, NO_TAG },
        { DT_VERNEED, NO_TAG },
        { DT_VERDEF, NO_TAG },
        { DT_RELA, DT_RELASZ },
        { DT_REL, DT_RELSZ },
        { DT_RELR, DT_RELRSZ },
        { DT_JMPREL, DT_PLTRELSZ },
        { DT_INIT_ARRAY, DT_INIT_ARRAYSZ },
        { DT_FINI_ARRAY, DT_FINI_ARRAYSZ },
    };
    return std::all_of(std::begin(TABLES), std::end(TABLES),
        [&file](const Tags & tags) { return IsTableOfSections(file, tags[0], tags[1]); });
}

/// Every linker puts the function that the loader calls first, or last, into a section of its own. An author can choose
/// another function; but one whose address is a single bit away from that section is damage.
bool IsFunctionSound(const CElfFile & file, std::int64_t tag, std::string_view name)
{
    const auto function = file.Dynamic(tag);
    const auto & sections = file.Sections();
    const auto own = std::find_if(
        sections.begin(), sections.end(), [name](const Section & section) { return section.mName == name; });
    return !function || own == sections.end() || std::popcount(*function ^ own->mHeader.sh_addr) != 1;
}

}   // namespace

bool FitsSections(const CElfFile & file)
{
    const auto & sections = file.Sections();
    if (sections.empty())
        return true;
    const auto fits = [&file](const Section & section) {
        return !IsLoaded(section) || (IsBrought(file, section) && StaysWritable(file, section) &&
                                         IsUnwindTableAnnounced(file, section));
    };
    return std::all_of(sections.begin(), sections.end(), fits) && AreDynamicTablesSound(file) &&
           IsFunctionSound(file, DT_INIT, ".init") && IsFunctionSound(file, DT_FINI, ".fini");
}

}   // namespace elfcheck
