/// A module's file in memory, in which a test changes what the loader would read.

#ifndef TESTS_MISC_MODULE_IMAGE_H
#define TESTS_MISC_MODULE_IMAGE_H

#include <misc/elfcheck.h>

#include <support/module_folder.h>

#include <link.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <string>

namespace VrexZynConfigTools::support {

class ModuleImage
{
public:
    using Address = ElfW(Addr);
    using Header = ElfW(Ehdr);
    using Segment = ElfW(Phdr);
    using Entry = ElfW(Dyn);

    /// A module that was built for the tests.
    explicit ModuleImage(const std::string & module)
        : mContent(ContentOf(TestModule(module)))
    {}

    bool IsSound() const
    {
        return elfcheck::IsSound(reinterpret_cast<const unsigned char *>(mContent.data()), mContent.size());
    }

    /// As a linker's option can have it: the loader doesn't need the section table.
    ModuleImage & WithoutSections()
    {
        auto header = GetAt<Header>(0);
        header.e_shoff = 0;
        header.e_shnum = 0;
        SetAt(0, header);
        return *this;
    }

    template <typename T>
    T GetAt(std::size_t place) const
    {
        T value;
        std::memcpy(&value, mContent.data() + place, sizeof value);
        return value;
    }
    template <typename T>
    void SetAt(std::size_t place, const T & value)
    {
        std::memcpy(mContent.data() + place, &value, sizeof value);
    }

    /// The same by address in memory.
    template <typename T>
    T Get(Address address) const
    {
        return GetAt<T>(PlaceOf(address));
    }
    template <typename T>
    void Set(Address address, const T & value)
    {
        SetAt(PlaceOf(address), value);
    }

    /// Where the description of the first segment of a type lies that has these flags.
    std::size_t SegmentPlace(ElfW(Word) type, ElfW(Word) flags = 0) const
    {
        const auto header = GetAt<Header>(0);
        for (std::size_t i = 0; i < header.e_phnum; ++i) {
            const std::size_t place = header.e_phoff + i * sizeof(Segment);
            const auto segment = GetAt<Segment>(place);
            if (segment.p_type == type && (segment.p_flags & flags) == flags)
                return place;
        }
        throw std::out_of_range("no such segment");
    }
    Segment GetSegment(ElfW(Word) type, ElfW(Word) flags = 0) const
    {
        return GetAt<Segment>(SegmentPlace(type, flags));
    }

    /// Changes the description of a segment by `change`.
    template <typename ChangeT>
    void ChangeSegment(ElfW(Word) type, ElfW(Word) flags, ChangeT change)
    {
        const std::size_t place = SegmentPlace(type, flags);
        auto segment = GetAt<Segment>(place);
        change(segment);
        SetAt(place, segment);
    }

    Address Dynamic(std::int64_t tag) const { return GetAt<Entry>(DynamicPlace(tag)).d_un.d_val; }
    void SetDynamic(std::int64_t tag, Address value) { ReplaceDynamic(tag, tag, value); }
    void ReplaceDynamic(std::int64_t tag, std::int64_t newTag, Address value)
    {
        Entry entry = {};
        entry.d_tag = newTag;
        entry.d_un.d_val = value;
        SetAt(DynamicPlace(tag), entry);
    }

    /// Makes it an entry that means nothing to anybody.
    void RemoveDynamic(std::int64_t tag) { ReplaceDynamic(tag, 0x60000010 + (tag & 0xFF), 0); }

    std::size_t PlaceOf(Address address) const
    {
        const auto header = GetAt<Header>(0);
        for (std::size_t i = 0; i < header.e_phnum; ++i) {
            const auto load = GetAt<Segment>(header.e_phoff + i * sizeof(Segment));
            if (load.p_type == PT_LOAD && address - load.p_vaddr < load.p_filesz)
                return load.p_offset + (address - load.p_vaddr);
        }
        throw std::out_of_range("no such address");
    }

private:
    std::size_t DynamicPlace(std::int64_t tag) const
    {
        std::size_t place = GetSegment(PT_DYNAMIC).p_offset;
        while (GetAt<Entry>(place).d_tag != tag) {
            if (GetAt<Entry>(place).d_tag == DT_NULL)
                throw std::out_of_range("no such entry");
            place += sizeof(Entry);
        }
        return place;
    }

    std::string mContent;
};

}   // namespace VrexZynConfigTools::support

#endif
