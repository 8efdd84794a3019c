/// @file
/// The geometry of a packed struct: which bits of which words are which bits of each value.
///
/// It is computed from the metadata by the very code that `CStructCodec` packs and unpacks with, so it agrees with
/// the codec also where the rules of the device format are odd. The rules for packing and unpacking differ: a value
/// comes back unchanged only if its runs for both are the same, and if no other value is packed into the same bits.
///
/// @code
/// std::uint32_t PackedBitsOf(const VrexZynConfigTools::StructEntry & field)
/// {
///     std::uint32_t count = 0;   // less than the width of the field if packing loses some
///     for (const VrexZynConfigTools::BitRun & run : field.mPacked)
///         count += run.mCount;   // bits from run.mValueBit on are in word run.mWord, from run.mBit on
///     return count;
/// }
/// @endcode

#ifndef CONFIGTOOLS_STRUCTLAYOUT_H
#define CONFIGTOOLS_STRUCTLAYOUT_H

#include <configtools/export.h>
#include <configtools/types.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace VrexZynConfigTools {

class CMetadataDetailStruct;
class IMetadata;

/// Neighbouring bits of one word, and as many neighbouring bits of a value that are stored there.
struct BitRun
{
    /// The number of the word from the beginning of the struct; always a word that the struct has.
    std::uint32_t mWord = 0;
    /// The lowest bit in the word, 0 to 15.
    std::uint32_t mBit = 0;
    /// The bit of the value that belongs there.
    std::uint32_t mValueBit = 0;
    /// The number of bits, 1 to 16.
    std::uint32_t mCount = 0;
};

/// The runs of one value, from its lowest bit on. Bits of the value that no run names are lost when it is packed, and 0
/// when it is unpacked.
class BitRuns
{
public:
    /// The greatest number of runs: a value has up to 64 bits, in words of 16.
    static constexpr std::size_t MOST = 4;

    /// Appends a run; to be called at most `MOST` times.
    void Add(const BitRun & run) { mRuns[mCount++] = run; }

    /// The runs in order, as a range.
    ///@{
    const BitRun * begin() const { return mRuns.data(); }
    const BitRun * end() const { return mRuns.data() + mCount; }
    std::size_t size() const { return mCount; }
    bool empty() const { return mCount == 0; }
    ///@}

private:
    std::array<BitRun, MOST> mRuns{};
    std::size_t mCount = 0;
};

/// The kind of payload that a field or a part of one has.
enum class StructEntryKind : std::uint8_t
{
    /// A number of up to 64 bits.
    NUMBER,
    /// An enumerator of up to 64 bits, of which unpacking takes 32.
    ENUMERATOR,
    /// A number of more than 64 bits; its parts are words of 16.
    WORDS,
    /// An array; its parts are numbers.
    ARRAY,
    /// A struct; its parts are its fields.
    STRUCT,
    /// An array; its parts are structs.
    STRUCTS,
    /// A field without a record, which is an error: unpacked as 0, and never packed.
    ABSENT
};

/// One payload of the tree that unpacking makes: a field, an item of an array, a word, or a struct.
struct StructEntry
{
    /// The kind of the payload.
    StructEntryKind mKind = StructEntryKind::ABSENT;

    /// The field's record, also in the parts of a field; the provider's. Null for `ABSENT`.
    const IMetadata * mRecord = nullptr;

    /// Where the lowest bit is unpacked from, in bits from the begin of the whole struct; a very large number, modulo
    /// 2^32, for a field below the begin.
    std::uint64_t mPosition = 0;

    /// In bits; 0 also for a negative width.
    std::uint32_t mWidth = 0;
    /// The number of parts that unpacking makes of an array, of words and of an array of structs.
    std::uint32_t mItems = 0;
    /// The distance from one of these parts to the next, in bits.
    std::uint32_t mStride = 0;

    /// Of numbers, enumerators, items and words. The bits are ORed into what the words hold already, unless
    /// `mReplaces`. The runs may name bits of the value above `mWidth`: these are packed too, intended in the device
    /// format.
    ///
    /// An item of an array has the place that it gets if all `mItems` are packed; fewer or more share the width of the
    /// field among them, so that all of them get other places.
    BitRuns mPacked;

    /// The whole word is replaced, so what was packed there before is lost. A value of 8 bits replaces the low byte
    /// alone, and a payload of more than 16 bits, such as any enumerator, packs nothing at all.
    bool mReplaces = false;

    /// Of the same. A field of 64 bits has none, so it always unpacks as 0.
    BitRuns mUnpacked;

    /// The topmost bit, `mWidth - 1`, is copied into all higher ones when the value is unpacked.
    bool mHasSign = false;

    /// The class of the payload that unpacking makes, which the value is cut to; `NUMERIC_NONE` for enumerators, which
    /// are numbers of 32 bits with a sign, and for what has parts.
    NumericTypeEnum mType = NUMERIC_NONE;

    /// In the order of their payloads. Of a field of more than 64 bits the last, partial word is one more than
    /// `mItems`: it is packed, and not unpacked.
    std::vector<StructEntry> mParts;
};

/// The layout of one struct with all that is nested in it.
class CONFIGTOOLS_EXPORT CStructLayout
{
public:
    /// Reads the metadata once; later changes aren't noticed. Bad metadata, which may have fields without records,
    /// structs that hold themselves or arrays far too large, gives what there is up to there, and an error.
    ///
    /// `most` limits the number of entries without parts, for users who show only some; it never raises the codec's own
    /// limit, which grows with the size of the struct.
    explicit CStructLayout(CMetadataDetailStruct & detail, std::size_t most = SIZE_MAX);

    /// An entry for each field, in their order.
    const std::vector<StructEntry> & Entries() const { return mEntries; }

    /// What is wrong first, in the codec's words; empty for sound metadata.
    const std::string & Error() const { return mError; }

    /// Whether entries are missing, because of `most` or of bad metadata.
    bool IsCutOff() const { return mIsCutOff; }

    /// The largest end of any field. A field that ends below 0 makes it a number of nearly 64 bits, intended, and an
    /// error.
    std::uint64_t Bits() const { return mBits; }

    /// `Bits` in words of 16 bits, rounded up.
    std::uint64_t Words() const { return mBits / 16 + (mBits % 16 != 0 ? 1 : 0); }
    /// `Bits` in octets, rounded up.
    std::uint64_t Octets() const { return mBits / 8 + (mBits % 8 != 0 ? 1 : 0); }

private:
    std::vector<StructEntry> mEntries;
    std::string mError;
    bool mIsCutOff = false;
    std::uint64_t mBits = 0;
};

/// The bits that a struct takes, which is also the distance of the structs of an array; as `CStructLayout::Bits`.
CONFIGTOOLS_EXPORT std::uint64_t StructSizeInBits(CMetadataDetailStruct & detail);

}   // namespace VrexZynConfigTools

#endif
