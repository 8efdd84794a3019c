/// A shared module as it lies in a file: its segments, the dynamic section, and what the file lays at an address.
/// Every read is checked against the file's size; nothing in the file is trusted.

#ifndef MISC_ELFFILE_H
#define MISC_ELFFILE_H

#include <link.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <map>
#include <optional>
#include <string_view>
#include <vector>

namespace elfcheck {

/// In the module's own numbering, where it is not loaded yet.
using Address = ElfW(Addr);
using Segment = ElfW(Phdr);

struct Section
{
    ElfW(Shdr) mHeader;
    std::string_view mName;
};

struct Range
{
    Address mBegin;
    Address mSize;   // in bytes

    bool Holds(Address address, Address size) const
    {
        return address >= mBegin && address - mBegin <= mSize && size <= mSize - (address - mBegin);
    }
};

/// The number of bytes in which the system gives out memory.
Address PageSize();

class CElfFile
{
public:
    /// The content stays the caller's and must outlive this object.
    CElfFile(const unsigned char * content, std::size_t size)
        : mContent(content)
        , mSize(size)
    {}

    /// Reads header, segments and dynamic section. False if the file is no module for this machine, or if one of
    /// them reaches beyond the file or contradicts another. Comes before any other operation.
    bool Read();

    /// What the file lays at an address; null unless one readable segment brings all of it from the file.
    const unsigned char * At(Address address, Address size) const;

    /// The value at an address, of any alignment.
    template <typename T>
    std::optional<T> ValueAt(Address address) const
    {
        const unsigned char * const bytes = At(address, sizeof(T));
        return bytes != nullptr ? std::optional<T>(Decode<T>(bytes)) : std::nullopt;
    }
    template <typename T>
    static T Decode(const unsigned char * bytes)
    {
        T value;
        std::memcpy(&value, bytes, sizeof value);
        return value;
    }

    /// Where in the file lies what is brought to an address; nothing unless one segment brings all of it.
    std::optional<Address> PlaceOf(Address address, Address size) const;

    /// Whether the whole range is memory of one loaded segment that has these flags (PF_W, PF_X; 0 for any).
    bool IsInMemory(Address address, Address size, ElfW(Word) flags) const;
    bool IsCode(Address address) const { return IsInMemory(address, 1, PF_X); }

    /// The first segment of a type (PT_DYNAMIC, ...); null if there is none.
    const Segment * FindSegment(ElfW(Word) type) const;

    /// The section table, which the loader doesn't look at; empty if the module has none, or lost it when it was cut.
    const std::vector<Section> & Sections() const { return mSections; }

    /// The value of a dynamic entry.
    std::optional<Address> Dynamic(std::int64_t tag) const;

    /// The names of the libraries that the module needs, as places in the string table.
    const std::vector<Address> & Needed() const { return mNeeded; }

private:
    bool ReadHeader();
    bool ReadSegments(const ElfW(Ehdr) & header);
    bool ReadSections(const ElfW(Ehdr) & header);
    bool AreLoadsSound() const;
    bool IsLoadSound(const Segment & load) const;
    bool AreOthersSound() const;
    bool IsReadOnlyAfterLoadingSound(const Segment & segment) const;
    bool IsBroughtByLoad(const Segment & segment) const;
    bool ReadDynamic();
    bool AddDynamic(const ElfW(Dyn) & entry);

    const unsigned char * mContent;
    std::size_t mSize;
    std::vector<Segment> mSegments;
    std::vector<Section> mSections;
    std::map<std::int64_t, Address> mDynamic;
    std::vector<Address> mNeeded;
};

}   // namespace elfcheck

#endif
