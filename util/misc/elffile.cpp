#include <misc/elffile.h>

#include <dlfcn.h>
#include <unistd.h>

#include <algorithm>
#include <bit>
#include <limits>

namespace elfcheck {

namespace {

constexpr Address MAX_ALIGNMENT = Address{ 1 } << 30;

/// The header of the very module that holds this code: what is loaded must be of the same make.
const ElfW(Ehdr) * OwnHeader()
{
    Dl_info info = {};
    if (dladdr(reinterpret_cast<const void *>(&OwnHeader), &info) == 0)
        return nullptr;
    return static_cast<const ElfW(Ehdr) *>(info.dli_fbase);
}

bool IsForThisMachine(const ElfW(Ehdr) & header)
{
    const ElfW(Ehdr) * const own = OwnHeader();
    return own != nullptr && std::equal(header.e_ident, header.e_ident + EI_OSABI, own->e_ident) &&
           header.e_machine == own->e_machine && header.e_version == own->e_version && header.e_type == ET_DYN;
}

bool IsSoundAlignment(Address alignment)
{
    return alignment == 0 || (std::has_single_bit(alignment) && alignment <= MAX_ALIGNMENT);
}

}   // namespace

Address PageSize()
{
    return static_cast<Address>(sysconf(_SC_PAGESIZE));
}

bool CElfFile::Read()
{
    return ReadHeader() && AreLoadsSound() && AreOthersSound() && ReadDynamic();
}

bool CElfFile::ReadHeader()
{
    if (mSize < sizeof(ElfW(Ehdr)))
        return false;
    const auto header = Decode<ElfW(Ehdr)>(mContent);
    return IsForThisMachine(header) && ReadSegments(header) && ReadSections(header);
}

bool CElfFile::ReadSegments(const ElfW(Ehdr) & header)
{
    const Address size = Address{ header.e_phnum } * sizeof(Segment);
    if (header.e_phentsize != sizeof(Segment) || header.e_phoff % alignof(Segment) != 0 ||
        !Range{ 0, mSize }.Holds(header.e_phoff, size))
        return false;
    for (Address at = 0; at < size; at += sizeof(Segment))
        mSegments.push_back(Decode<Segment>(mContent + header.e_phoff + at));

    // The loader takes the place of this table in memory from a segment of its own.
    const Segment * const table = FindSegment(PT_PHDR);
    return table == nullptr || (table->p_offset == header.e_phoff && table->p_filesz == size);
}

bool CElfFile::ReadSections(const ElfW(Ehdr) & header)
{
    using Header = ElfW(Shdr);
    const Range file = { 0, mSize };
    const Address size = Address{ header.e_shnum } * sizeof(Header);
    if (header.e_shoff == 0 || size == 0 || !file.Holds(header.e_shoff, size))
        return true;
    if (header.e_shentsize != sizeof(Header) || header.e_shstrndx >= header.e_shnum)
        return false;

    const unsigned char * const table = mContent + header.e_shoff;
    const auto texts = Decode<Header>(table + header.e_shstrndx * sizeof(Header));
    if (!file.Holds(texts.sh_offset, texts.sh_size) || texts.sh_size == 0 ||
        mContent[texts.sh_offset + texts.sh_size - 1] != '\0')
        return false;
    for (Address at = 0; at < size; at += sizeof(Header)) {
        const auto section = Decode<Header>(table + at);
        if (section.sh_name >= texts.sh_size)
            return false;
        mSections.push_back(
            { section, reinterpret_cast<const char *>(mContent + texts.sh_offset + section.sh_name) });
    }
    return true;
}

bool CElfFile::AreLoadsSound() const
{
    Address end = 0;   // of the pages of the load before
    bool isFirst = true;
    for (const Segment & segment : mSegments) {
        if (segment.p_type != PT_LOAD)
            continue;
        const Address pageMask = PageSize() - 1;
        // Loads that share a page, or are out of order, would overwrite each other.
        if (!IsLoadSound(segment) || (!isFirst && (segment.p_vaddr & ~pageMask) < end))
            return false;
        end = (segment.p_vaddr + segment.p_memsz + pageMask) & ~pageMask;
        isFirst = false;
    }
    return !isFirst;
}

bool CElfFile::IsLoadSound(const Segment & load) const
{
    constexpr Address MAX_SIZE = std::numeric_limits<Address>::max() / 4;
    // Only what may be written can begin as zeros that the file doesn't bring.
    const bool hasSoundSizes =
        (load.p_flags & PF_W) != 0 ? load.p_filesz <= load.p_memsz : load.p_filesz == load.p_memsz;
    return hasSoundSizes && Range{ 0, mSize }.Holds(load.p_offset, load.p_filesz) &&
           Range{ 0, MAX_SIZE }.Holds(load.p_vaddr, load.p_memsz) && (load.p_flags & (PF_R | PF_X)) != 0 &&
           load.p_align != 0 && load.p_align % PageSize() == 0 && IsSoundAlignment(load.p_align) &&
           (load.p_vaddr - load.p_offset) % load.p_align == 0;
}

bool CElfFile::AreOthersSound() const
{
    for (const auto type : { PT_DYNAMIC, PT_GNU_EH_FRAME, PT_GNU_RELRO, PT_PHDR, PT_TLS }) {
        const auto count = std::count_if(mSegments.begin(), mSegments.end(),
            [type](const Segment & segment) { return segment.p_type == static_cast<ElfW(Word)>(type); });
        if (count > 1)
            return false;   // the loader would take the last one
    }
    return std::all_of(mSegments.begin(), mSegments.end(), [this](const Segment & segment) {
        switch (segment.p_type) {
        case PT_GNU_RELRO:
            return IsReadOnlyAfterLoadingSound(segment);
        case PT_TLS:
            return IsSoundAlignment(segment.p_align) && segment.p_filesz <= segment.p_memsz &&
                   segment.p_memsz <= MAX_ALIGNMENT && IsBroughtByLoad(segment);
        case PT_DYNAMIC:
        case PT_GNU_EH_FRAME:
        case PT_GNU_PROPERTY:
        case PT_NOTE:
        case PT_PHDR:
            return segment.p_filesz == segment.p_memsz && IsBroughtByLoad(segment);
        default:
            return true;   // looked at by nobody, or no more than a flag
        }
    });
}

/// Some linkers fill the last page up, beyond the end of the load.
bool CElfFile::IsReadOnlyAfterLoadingSound(const Segment & segment) const
{
    const Address pageMask = PageSize() - 1;
    return std::any_of(mSegments.begin(), mSegments.end(), [&](const Segment & load) {
        const Address end = (load.p_vaddr + load.p_memsz + pageMask) & ~pageMask;
        return load.p_type == PT_LOAD && (load.p_flags & PF_W) != 0 &&
               Range{ load.p_vaddr, end - load.p_vaddr }.Holds(segment.p_vaddr, segment.p_memsz);
    });
}

/// Whether the segment's part of the file is the part that a load brings to the segment's address.
bool CElfFile::IsBroughtByLoad(const Segment & segment) const
{
    return segment.p_filesz == 0 || PlaceOf(segment.p_vaddr, segment.p_filesz) == segment.p_offset;
}

bool CElfFile::ReadDynamic()
{
    const Segment * const dynamic = FindSegment(PT_DYNAMIC);
    if (dynamic == nullptr)
        return false;
    bool hasEnded = false;
    for (Address at = 0; dynamic->p_filesz - at >= sizeof(ElfW(Dyn)); at += sizeof(ElfW(Dyn))) {
        const auto entry = Decode<ElfW(Dyn)>(mContent + dynamic->p_offset + at);
        if (entry.d_tag == DT_NULL)
            hasEnded = true;
        else if (hasEnded || !AddDynamic(entry))
            return false;   // an end mark amid the entries, or two entries where there can be one
    }
    return hasEnded;   // the loader reads on until it meets the end mark
}

bool CElfFile::AddDynamic(const ElfW(Dyn) & entry)
{
    if (entry.d_tag == DT_NEEDED) {
        mNeeded.push_back(entry.d_un.d_val);
        return true;
    }
    const bool isNew = mDynamic.insert({ entry.d_tag, entry.d_un.d_val }).second;
    return isNew || entry.d_tag == DT_AUXILIARY || entry.d_tag == DT_FILTER;
}

const unsigned char * CElfFile::At(Address address, Address size) const
{
    const auto place = PlaceOf(address, size);
    return place && IsInMemory(address, size, PF_R) ? mContent + *place : nullptr;
}

std::optional<Address> CElfFile::PlaceOf(Address address, Address size) const
{
    for (const Segment & segment : mSegments) {
        if (segment.p_type == PT_LOAD && Range{ segment.p_vaddr, segment.p_filesz }.Holds(address, size))
            return segment.p_offset + (address - segment.p_vaddr);
    }
    return std::nullopt;
}

bool CElfFile::IsInMemory(Address address, Address size, ElfW(Word) flags) const
{
    return std::any_of(mSegments.begin(), mSegments.end(), [&](const Segment & segment) {
        return segment.p_type == PT_LOAD && (segment.p_flags & flags) == flags &&
               Range{ segment.p_vaddr, segment.p_memsz }.Holds(address, size);
    });
}

const Segment * CElfFile::FindSegment(ElfW(Word) type) const
{
    const auto found = std::find_if(
        mSegments.begin(), mSegments.end(), [type](const Segment & segment) { return segment.p_type == type; });
    return found != mSegments.end() ? &*found : nullptr;
}

std::optional<Address> CElfFile::Dynamic(std::int64_t tag) const
{
    const auto found = mDynamic.find(tag);
    return found != mDynamic.end() ? std::optional<Address>(found->second) : std::nullopt;
}

}   // namespace elfcheck
