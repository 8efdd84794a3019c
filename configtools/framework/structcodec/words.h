/// The words of a struct, and the rules by which they hold values. Internal.
///
/// Positions have 64 bits here, so that what follows a field below the begin isn't taken for the begin. The rules stand
/// here once: packing, unpacking and the public geometry follow the same runs of bits.

#ifndef CONFIGTOOLS_STRUCTCODEC_WORDS_H
#define CONFIGTOOLS_STRUCTCODEC_WORDS_H

#include <configtools/structcodec.h>

#include <algorithm>
#include <cstdint>

namespace VrexZynConfigTools::structcodec {

inline constexpr std::uint32_t BITS_IN_WORD = CStructCodec::BITS_IN_UINT16;

/// Whether a number lies in two words although it has only 16 bits.
constexpr bool Straddles(std::uint64_t position, std::uint32_t size, bool littleEndian)
{
    return size == BITS_IN_WORD && littleEndian && position % BITS_IN_WORD == BITS_IN_WORD / 2;
}

/// Whether a number of up to 64 bits replaces its word when it is packed; all others are merged into theirs.
constexpr bool ReplacesWord(std::uint64_t position, std::uint32_t size, bool littleEndian)
{
    return size == BITS_IN_WORD && !Straddles(position, size, littleEndian);
}

/// The word that continues the one at `index`; in a struct that isn't little-endian it lies below. An index below 0 wraps
/// round and is outside of any struct.
constexpr std::uint64_t WordAhead(std::uint64_t index, std::uint32_t ahead, bool littleEndian)
{
    return littleEndian ? index + ahead : index - ahead;
}

/// Where a number of up to 64 bits is packed: `visit(word, bit, valueBit, count)` for each run of its bits.
template <typename VisitT>
void ForEachPackedRun(std::uint64_t position, std::uint32_t size, bool littleEndian, VisitT visit)
{
    const std::uint64_t index = position / BITS_IN_WORD;
    const auto bit = static_cast<std::uint32_t>(position % BITS_IN_WORD);
    if (size == 0)
        return;
    if (size <
        BITS_IN_WORD)   // what lies above the word is lost; a field never spills into the next one, intended
        return visit(index, bit, 0U, std::min(size, BITS_IN_WORD - bit));
    if (Straddles(position, size, littleEndian)) {
        visit(index, bit, 0U, bit);
        return visit(index + 1, 0U, bit, bit);
    }
    // Whole words, whatever bit the position names and however many bits of the last one the field has, intended.
    for (std::uint32_t ahead = 0; ahead * BITS_IN_WORD < size; ++ahead)
        visit(WordAhead(index, ahead, littleEndian), 0U, ahead * BITS_IN_WORD, BITS_IN_WORD);
}

/// Where a number of up to 64 bits is unpacked from, in the same manner.
template <typename VisitT>
void ForEachUnpackedRun(std::uint64_t position, std::uint32_t size, bool littleEndian, VisitT visit)
{
    const std::uint64_t index = position / BITS_IN_WORD;
    const auto bit = static_cast<std::uint32_t>(position % BITS_IN_WORD);
    if (size == 0 ||
        size == 64)   // the mask of 64 bits is 0, as the processor's shift has it: always 0, intended
        return;
    if (size < BITS_IN_WORD)
        return visit(index, bit, 0U, std::min(size, BITS_IN_WORD - bit));
    if (Straddles(position, size, littleEndian)) {
        visit(index, bit, 0U, bit);
        return visit(index + 1, 0U, bit, bit);
    }
    // As many words as the width alone needs, from the very bit: what lies in one more word is lost, intended.
    visit(index, bit, 0U, BITS_IN_WORD - bit);
    for (std::uint32_t ahead = 1; ahead * BITS_IN_WORD < size; ++ahead) {
        const std::uint32_t valueBit = ahead * BITS_IN_WORD - bit;
        visit(WordAhead(index, ahead, littleEndian), 0U, valueBit, std::min(BITS_IN_WORD, size - valueBit));
    }
}

/// An item of an array is unpacked as a number at another place: of 16 bits and more from the begin of its word, unless
/// it straddles, and 32 bits of an item of 64; both intended.
struct UnpackedItem
{
    std::uint64_t mPosition;
    std::uint32_t mSize;
};
constexpr UnpackedItem ItemAt(std::uint64_t position, std::uint32_t bits, bool littleEndian)
{
    const bool isWithinWord = bits < BITS_IN_WORD || Straddles(position, bits, littleEndian);
    return { isWithinWord ? position : position - position % BITS_IN_WORD, std::min(bits, 2 * BITS_IN_WORD) };
}

/// The one way to the words: outside of them 0 is read, and what is written is dropped. Bad metadata leads there.
class CWords
{
public:
    CWords(std::uint16_t * words, std::uint64_t count)
        : mWords(words)
        , mCount(count)
    {}

    bool Has(std::uint64_t index) const { return index < mCount; }
    std::uint16_t Word(std::uint64_t index) const { return Has(index) ? mWords[index] : std::uint16_t{ 0 }; }

    void SetWord(std::uint64_t index, std::uint16_t value)
    {
        if (Has(index))
            mWords[index] = value;
    }

    /// Packs a number of up to 64 bits, but for one that replaces its word.
    void Merge(std::uint64_t position, std::uint32_t size, std::uint64_t value, bool littleEndian)
    {
        ForEachPackedRun(position, size, littleEndian,
            [&](std::uint64_t word, std::uint32_t bit, std::uint32_t valueBit, std::uint32_t count) {
                SetWord(word, static_cast<std::uint16_t>(Word(word) | Cut(value >> valueBit, count) << bit));
            });
    }

    /// Unpacks a number of up to 64 bits, without its sign.
    std::uint64_t Number(std::uint64_t position, std::uint32_t size, bool littleEndian) const
    {
        std::uint64_t value = 0;
        ForEachUnpackedRun(position, size, littleEndian,
            [&](std::uint64_t word, std::uint32_t bit, std::uint32_t valueBit, std::uint32_t count) {
                value |= Cut(std::uint64_t{ Word(word) } >> bit, count) << valueBit;
            });
        return value;
    }

private:
    static std::uint64_t Cut(std::uint64_t value, std::uint32_t count)
    {
        return value & ((std::uint64_t{ 1 } << count) - 1);
    }

    std::uint16_t * mWords;
    std::uint64_t mCount;
};

}   // namespace VrexZynConfigTools::structcodec

#endif
