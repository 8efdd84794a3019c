#include <misc/elfcheck.h>

#include <misc/elffile.h>
#include <misc/elfsections.h>

#include <algorithm>
#include <array>
#include <set>
#include <string_view>
#include <type_traits>

namespace elfcheck {

namespace {

using Symbol = ElfW(Sym);

constexpr std::uint32_t NO_TYPE = 0;   // on every machine: the loader skips it
#if defined(__x86_64__)
constexpr bool KNOWS_TYPES = true;
constexpr std::uint32_t RELATIVE_TYPE = R_X86_64_RELATIVE;
constexpr std::uint32_t COPY_TYPE = R_X86_64_COPY;
constexpr std::uint32_t INDIRECT_TYPE = R_X86_64_IRELATIVE;
#elif defined(__aarch64__)
constexpr bool KNOWS_TYPES = true;
constexpr std::uint32_t RELATIVE_TYPE = R_AARCH64_RELATIVE;
constexpr std::uint32_t COPY_TYPE = R_AARCH64_COPY;
constexpr std::uint32_t INDIRECT_TYPE = R_AARCH64_IRELATIVE;
#else
// Numbers that no relocation has: what is told by type goes unchecked on other machines.
constexpr bool KNOWS_TYPES = false;
constexpr std::uint32_t RELATIVE_TYPE = 0xFFFFFFFD;
constexpr std::uint32_t COPY_TYPE = 0xFFFFFFFE;
constexpr std::uint32_t INDIRECT_TYPE = 0xFFFFFFFF;
#endif

constexpr bool IS_64_BIT = sizeof(Address) == 8;

constexpr std::uint32_t SymbolOf(Address info)
{
    return static_cast<std::uint32_t>(IS_64_BIT ? info >> 31 >> 1 : info >> 8);
}
constexpr std::uint32_t TypeOf(Address info)
{
    return static_cast<std::uint32_t>(info & (IS_64_BIT ? 0xFFFFFFFF : 0xFF));
}

/// Some relocations carry what is added to a symbol's address, others find it at their place.
template <typename RelocationT>
std::optional<Address> AddendOf(const RelocationT & relocation)
{
    if constexpr (std::is_same_v<RelocationT, ElfW(Rela)>)
        return static_cast<Address>(relocation.r_addend);
    else
        return std::nullopt;
}

/// Walks the tables of one module, in the order in which each needs what the ones before have shown.
class CCheck
{
public:
    explicit CCheck(const CElfFile & file)
        : mFile(file)
    {}
    bool IsSound();

private:
    bool AreEntriesComplete() const;
    bool ReadStrings();
    bool ReadHashes();
    bool ReadHash(Address at);
    bool ReadGnuHash(Address at);
    bool AreSymbolsSound();
    bool ReadNeededVersions();
    bool ReadOwnVersions();
    bool AreSymbolVersionsSound();
    bool ReadArray(std::int64_t addressTag, std::int64_t sizeTag);
    bool ReadRelocations();
    template <typename RelocationT>
    bool ReadRelocationTable(Address at, Address size, Address relativeCount);
    bool IsRelocationSound(Address place, Address info, std::optional<Address> addend);
    bool IsPlaceSound(Address place) const;
    bool NotePlace(Address place, std::optional<Address> value);
    bool ReadRelativeTable();
    bool IsRelativeSound(Address place);
    bool AreFunctionsSound() const;
    bool AreTablesApart();

    const unsigned char * Table(Address at, Address size);
    bool IsText(Address place) const { return place < mStrings.size(); }
    bool IsNeeded(Address name) const;

    const CElfFile & mFile;
    std::string_view mStrings;
    Address mSymbolCount = 0;
    std::set<std::uint16_t> mVersions;   // the numbers that symbols may have
    std::vector<Range> mArrays;          // of the functions called on loading and unloading
    std::set<Address> mFunctionPlaces;   // places in the arrays that are given an address
    std::vector<Range> mTables;          // all that has been walked
};

bool CCheck::IsSound()
{
    return AreEntriesComplete() && ReadStrings() && ReadHashes() && AreSymbolsSound() && ReadNeededVersions() &&
           ReadOwnVersions() && AreSymbolVersionsSound() && ReadArray(DT_INIT_ARRAY, DT_INIT_ARRAYSZ) &&
           ReadArray(DT_FINI_ARRAY, DT_FINI_ARRAYSZ) && ReadRelocations() && ReadRelativeTable() &&
           AreFunctionsSound() && AreTablesApart();
}

/// Notes a table; null unless the file brings all of it.
const unsigned char * CCheck::Table(Address at, Address size)
{
    mTables.push_back({ at, size });
    return mFile.At(at, size);
}

/// The entries that the loader takes for granted, alone or in company.
bool CCheck::AreEntriesComplete() const
{
    using Tags = std::array<std::int64_t, 3>;
    static constexpr Tags GROUPS[] = {
        { DT_RELA, DT_RELASZ, DT_RELAENT },
        { DT_REL, DT_RELSZ, DT_RELENT },
        { DT_JMPREL, DT_PLTRELSZ, DT_PLTREL },
        { DT_RELR, DT_RELRSZ, DT_RELRENT },
        { DT_INIT_ARRAY, DT_INIT_ARRAYSZ, DT_INIT_ARRAYSZ },
        { DT_FINI_ARRAY, DT_FINI_ARRAYSZ, DT_FINI_ARRAYSZ },
        { DT_VERNEED, DT_VERNEEDNUM, DT_VERSYM },
        { DT_VERDEF, DT_VERDEFNUM, DT_VERSYM },
    };
    const auto isThere = [this](std::int64_t tag) { return mFile.Dynamic(tag).has_value(); };
    const auto isWhole = [&](const Tags & group) {
        return isThere(group[0]) == isThere(group[1]) && (!isThere(group[0]) || isThere(group[2]));
    };
    const auto isIfThere = [this](std::int64_t tag, Address value) {
        return mFile.Dynamic(tag).value_or(value) == value;
    };
    return std::all_of(std::begin(GROUPS), std::end(GROUPS), isWhole) && isThere(DT_STRTAB) &&
           isThere(DT_STRSZ) && isThere(DT_SYMTAB) && isIfThere(DT_SYMENT, sizeof(Symbol)) &&
           isIfThere(DT_RELAENT, sizeof(ElfW(Rela))) && isIfThere(DT_RELENT, sizeof(ElfW(Rel))) &&
           isIfThere(DT_RELRENT, sizeof(ElfW(Relr))) &&
           (isIfThere(DT_PLTREL, DT_RELA) || (!IS_64_BIT && isIfThere(DT_PLTREL, DT_REL))) &&
           (!IS_64_BIT || !isThere(DT_REL));
}

bool CCheck::ReadStrings()
{
    const Address size = *mFile.Dynamic(DT_STRSZ);
    const unsigned char * const strings = Table(*mFile.Dynamic(DT_STRTAB), size);
    if (strings == nullptr || size == 0 || strings[size - 1] != '\0')
        return false;
    mStrings = { reinterpret_cast<const char *>(strings), static_cast<std::size_t>(size) };

    const auto & needed = mFile.Needed();
    const std::array<std::int64_t, 5> tags = { DT_SONAME, DT_RPATH, DT_RUNPATH, DT_AUXILIARY, DT_FILTER };
    return std::all_of(needed.begin(), needed.end(), [this](Address name) { return IsText(name); }) &&
           std::all_of(tags.begin(), tags.end(),
               [this](std::int64_t tag) { return IsText(mFile.Dynamic(tag).value_or(0)); });
}

bool CCheck::ReadHashes()
{
    const auto hash = mFile.Dynamic(DT_HASH);
    const auto gnuHash = mFile.Dynamic(DT_GNU_HASH);
    return (hash || gnuHash) && (!hash || ReadHash(*hash)) && (!gnuHash || ReadGnuHash(*gnuHash));
}

/// The number of buckets, the number of symbols, the buckets, and for each symbol the next one of its bucket.
bool CCheck::ReadHash(Address at)
{
    using Word = ElfW(Word);
    const auto bucketCount = mFile.ValueAt<Word>(at);
    const auto symbolCount = mFile.ValueAt<Word>(at + sizeof(Word));
    if (!bucketCount || !symbolCount || *bucketCount == 0)
        return false;
    const Address chains = at + (2 + Address{ *bucketCount }) * sizeof(Word);
    if (Table(at, chains - at + Address{ *symbolCount } * sizeof(Word)) == nullptr)
        return false;

    mSymbolCount = *symbolCount;
    Address steps = 0;   // each symbol has one place in one chain, so a longer way goes in circles
    for (Address bucket = at + 2 * sizeof(Word); bucket < chains; bucket += sizeof(Word)) {
        Word symbol = *mFile.ValueAt<Word>(bucket);
        while (symbol != STN_UNDEF) {
            if (symbol >= mSymbolCount || ++steps > mSymbolCount)
                return false;
            symbol = *mFile.ValueAt<Word>(chains + Address{ symbol } * sizeof(Word));
        }
    }
    return true;
}

/// Four numbers, a filter, the buckets (the first symbol of each), and a word for each symbol from the first that is
/// hashed on; the last of a bucket is odd.
bool CCheck::ReadGnuHash(Address at)
{
    using Word = std::uint32_t;
    const unsigned char * const head = mFile.At(at, 4 * sizeof(Word));
    if (head == nullptr)
        return false;
    const Address bucketCount = CElfFile::Decode<Word>(head);
    const Address firstSymbol = CElfFile::Decode<Word>(head + sizeof(Word));
    const Address filterCount = CElfFile::Decode<Word>(head + 2 * sizeof(Word));
    const Word filterShift = CElfFile::Decode<Word>(head + 3 * sizeof(Word));
    if (bucketCount == 0 || filterCount == 0 || (filterCount & (filterCount - 1)) != 0 || filterShift >= 32)
        return false;

    const Address buckets = at + 4 * sizeof(Word) + filterCount * sizeof(Address);
    const Address chains = buckets + bucketCount * sizeof(Word);
    if (mFile.At(at, chains - at) == nullptr)
        return false;
    Address last = 0;   // the highest first symbol of a bucket, then that bucket's last one
    for (Address bucket = buckets; bucket < chains; bucket += sizeof(Word)) {
        const Address symbol = *mFile.ValueAt<Word>(bucket);
        if (symbol != STN_UNDEF && symbol < firstSymbol)
            return false;
        last = std::max(last, symbol);
    }
    if (last == 0) {
        // Nothing is exported, and nothing tells the number of symbols but the texts that linkers put behind them.
        const Address size = *mFile.Dynamic(DT_STRTAB) - *mFile.Dynamic(DT_SYMTAB);
        mSymbolCount = std::max(mSymbolCount, size / sizeof(Symbol));
        return Table(at, chains - at) != nullptr;
    }
    std::optional<Word> word;
    do {
        word = mFile.ValueAt<Word>(chains + (last - firstSymbol) * sizeof(Word));
        ++last;
    } while (word && (*word & 1) == 0);
    mSymbolCount = std::max(mSymbolCount, last);
    return word && Table(at, chains - at + (last - firstSymbol) * sizeof(Word)) != nullptr;
}

bool CCheck::AreSymbolsSound()
{
    const unsigned char * const symbols = Table(*mFile.Dynamic(DT_SYMTAB), mSymbolCount * sizeof(Symbol));
    if (symbols == nullptr)
        return false;
    for (Address at = 0; at < mSymbolCount * sizeof(Symbol); at += sizeof(Symbol)) {
        const auto symbol = CElfFile::Decode<Symbol>(symbols + at);
        const bool isDefined = symbol.st_shndx != SHN_UNDEF;
        const auto type = symbol.st_info & 0xF;
        // The loader calls an indirect function to learn its address.
        if (!IsText(symbol.st_name) || (isDefined && type == STT_GNU_IFUNC && !mFile.IsCode(symbol.st_value)) ||
            (isDefined && type == STT_TLS && mFile.FindSegment(PT_TLS) == nullptr))
            return false;
    }
    return true;
}

/// A record for each library with versions, each with a chain of the versions that are needed of it.
bool CCheck::ReadNeededVersions()
{
    const Address count = mFile.Dynamic(DT_VERNEEDNUM).value_or(0);
    Address at = mFile.Dynamic(DT_VERNEED).value_or(0);
    for (Address i = 0; i < count; ++i) {
        mTables.push_back({ at, sizeof(ElfW(Verneed)) });
        const auto library = mFile.ValueAt<ElfW(Verneed)>(at);
        if (!library || library->vn_version != VER_NEED_CURRENT || !IsText(library->vn_file) ||
            !IsNeeded(library->vn_file) || (library->vn_next == 0) != (i + 1 == count))
            return false;
        Address versionAt = at + library->vn_aux;
        for (unsigned j = 0; j < library->vn_cnt; ++j) {
            mTables.push_back({ versionAt, sizeof(ElfW(Vernaux)) });
            const auto version = mFile.ValueAt<ElfW(Vernaux)>(versionAt);
            if (!version || !IsText(version->vna_name) ||
                (version->vna_next == 0) != (j + 1 == library->vn_cnt))
                return false;
            mVersions.insert(version->vna_other & 0x7FFF);
            versionAt += version->vna_next;
        }
        at += library->vn_next;
    }
    return true;
}

/// A record for each version that the module defines, each with a chain of names.
bool CCheck::ReadOwnVersions()
{
    const Address count = mFile.Dynamic(DT_VERDEFNUM).value_or(0);
    Address at = mFile.Dynamic(DT_VERDEF).value_or(0);
    for (Address i = 0; i < count; ++i) {
        mTables.push_back({ at, sizeof(ElfW(Verdef)) });
        const auto own = mFile.ValueAt<ElfW(Verdef)>(at);
        if (!own || own->vd_version != VER_DEF_CURRENT || (own->vd_next == 0) != (i + 1 == count))
            return false;
        const auto name = mFile.ValueAt<ElfW(Verdaux)>(at + own->vd_aux);
        if (!name || !IsText(name->vda_name))
            return false;
        mVersions.insert(own->vd_ndx & 0x7FFF);
        at += own->vd_next;
    }
    return true;
}

bool CCheck::AreSymbolVersionsSound()
{
    const auto at = mFile.Dynamic(DT_VERSYM);
    if (!at)
        return true;
    mVersions.insert({ VER_NDX_LOCAL, VER_NDX_GLOBAL });
    const Address size = mSymbolCount * sizeof(std::uint16_t);
    const unsigned char * const numbers = Table(*at, size);
    for (Address i = 0; numbers != nullptr && i < size; i += sizeof(std::uint16_t)) {
        const auto number = CElfFile::Decode<std::uint16_t>(numbers + i);
        if (!mVersions.contains(number & 0x7FFF))
            return false;
    }
    return numbers != nullptr;
}

bool CCheck::ReadArray(std::int64_t addressTag, std::int64_t sizeTag)
{
    const auto at = mFile.Dynamic(addressTag);
    if (!at)
        return true;
    const Address size = *mFile.Dynamic(sizeTag);
    if (*at % sizeof(Address) != 0 || size % sizeof(Address) != 0 || Table(*at, size) == nullptr)
        return false;
    mArrays.push_back({ *at, size });
    return true;
}

bool CCheck::ReadRelocations()
{
    const auto size = [this](std::int64_t tag) { return mFile.Dynamic(tag).value_or(0); };
    const auto rela = mFile.Dynamic(DT_RELA);
    const auto rel = mFile.Dynamic(DT_REL);
    const auto plt = mFile.Dynamic(DT_JMPREL);
    const bool isPltRela = mFile.Dynamic(DT_PLTREL) == Address{ DT_RELA };
    return (!rela || ReadRelocationTable<ElfW(Rela)>(*rela, size(DT_RELASZ), size(DT_RELACOUNT))) &&
           (!rel || ReadRelocationTable<ElfW(Rel)>(*rel, size(DT_RELSZ), size(DT_RELCOUNT))) &&
           (!plt || (isPltRela ? ReadRelocationTable<ElfW(Rela)>(*plt, size(DT_PLTRELSZ), 0)
                               : ReadRelocationTable<ElfW(Rel)>(*plt, size(DT_PLTRELSZ), 0)));
}

/// The first `relativeCount` are relative ones: the loader doesn't look at their type.
template <typename RelocationT>
bool CCheck::ReadRelocationTable(Address at, Address size, Address relativeCount)
{
    const unsigned char * const table = size % sizeof(RelocationT) == 0 ? Table(at, size) : nullptr;
    if (table == nullptr || relativeCount > size / sizeof(RelocationT))
        return false;
    for (Address i = 0; i < size / sizeof(RelocationT); ++i) {
        const auto relocation = CElfFile::Decode<RelocationT>(table + i * sizeof(RelocationT));
        if (KNOWS_TYPES && i < relativeCount && TypeOf(relocation.r_info) != RELATIVE_TYPE)
            return false;
        if (!IsRelocationSound(relocation.r_offset, relocation.r_info, AddendOf(relocation)))
            return false;
    }
    return true;
}

bool CCheck::IsRelocationSound(Address place, Address info, std::optional<Address> addend)
{
    const std::uint32_t type = TypeOf(info);
    if (type == NO_TYPE)
        return true;
    if (SymbolOf(info) >= std::max<Address>(mSymbolCount, 1) || !IsPlaceSound(place) || type == COPY_TYPE)
        return false;
    const auto value = addend ? addend : mFile.ValueAt<Address>(place);
    if (type == INDIRECT_TYPE)
        return value && mFile.IsCode(*value);   // the loader calls it to learn the address
    return NotePlace(place, type == RELATIVE_TYPE ? value : std::nullopt);
}

/// Whether the loader may write an address there.
bool CCheck::IsPlaceSound(Address place) const
{
    const bool changesCode =
        mFile.Dynamic(DT_TEXTREL) || (mFile.Dynamic(DT_FLAGS).value_or(0) & DF_TEXTREL) != 0;
    return mFile.IsInMemory(place, sizeof(Address), changesCode ? 0 : PF_W);
}

/// Notes that a place is given an address. In an array of functions that must be code; without a value it is another
/// module's.
bool CCheck::NotePlace(Address place, std::optional<Address> value)
{
    for (const Range & array : mArrays) {
        if (!array.Holds(place, sizeof(Address)))
            continue;
        mFunctionPlaces.insert(place);
        return !value || mFile.IsCode(*value);
    }
    return true;
}

/// Relative relocations in short: an even word is a place, an odd one a bit for each of the places that follow.
bool CCheck::ReadRelativeTable()
{
    const auto at = mFile.Dynamic(DT_RELR);
    if (!at)
        return true;
    const Address size = *mFile.Dynamic(DT_RELRSZ);
    const unsigned char * const table = size % sizeof(Address) == 0 ? Table(*at, size) : nullptr;
    Address next = 0;   // the place after the latest one
    for (Address i = 0; table != nullptr && i < size; i += sizeof(Address)) {
        const auto word = CElfFile::Decode<Address>(table + i);
        if ((word & 1) == 0) {
            if (!IsRelativeSound(word))
                return false;
            next = word + sizeof(Address);
            continue;
        }
        for (unsigned bit = 1; bit < 8 * sizeof(Address); ++bit) {
            if ((word >> bit & 1) != 0 && !IsRelativeSound(next + (bit - 1) * sizeof(Address)))
                return false;
        }
        next += (8 * sizeof(Address) - 1) * sizeof(Address);
    }
    return table != nullptr;
}

bool CCheck::IsRelativeSound(Address place)
{
    return IsPlaceSound(place) && NotePlace(place, mFile.ValueAt<Address>(place));
}

/// The functions that the loader calls.
bool CCheck::AreFunctionsSound() const
{
    Address count = 0;
    for (const Range & array : mArrays)
        count += array.mSize / sizeof(Address);
    const auto isCodeIfThere = [this](std::int64_t tag) {
        const auto function = mFile.Dynamic(tag);
        return !function || mFile.IsCode(*function);
    };
    return mFunctionPlaces.size() == count && isCodeIfThere(DT_INIT) && isCodeIfThere(DT_FINI);
}

/// A wrong address or size that still lies within the module makes a table cover another one.
bool CCheck::AreTablesApart()
{
    const Segment * const dynamic = mFile.FindSegment(PT_DYNAMIC);
    mTables.push_back({ dynamic->p_vaddr, dynamic->p_filesz });
    std::sort(mTables.begin(), mTables.end(),
        [](const Range & left, const Range & right) { return left.mBegin < right.mBegin; });
    return std::adjacent_find(mTables.begin(), mTables.end(), [](const Range & left, const Range & right) {
        return right.mBegin - left.mBegin < left.mSize;
    }) == mTables.end();
}

bool CCheck::IsNeeded(Address name) const
{
    const auto text = [this](Address place) { return std::string_view(mStrings.data() + place); };
    const auto & needed = mFile.Needed();
    return std::any_of(
        needed.begin(), needed.end(), [&](Address library) { return text(library) == text(name); });
}

}   // namespace

bool IsSound(const unsigned char * content, std::size_t size)
{
    CElfFile file(content, size);
    return file.Read() && CCheck(file).IsSound() && FitsSections(file);
}

}   // namespace elfcheck
