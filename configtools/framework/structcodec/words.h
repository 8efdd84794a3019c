/// The words of a struct as the codec reads and writes them. Internal.

#ifndef CONFIGTOOLS_STRUCTCODEC_WORDS_H
#define CONFIGTOOLS_STRUCTCODEC_WORDS_H

#include <configtools/structcodec.h>

#include <cstdint>
#include <cstring>

namespace VrexZynConfigTools::structcodec {

/// The one way to the words: outside of them 0 is read, and what is written is dropped. Bad metadata leads there.
class CWords
{
public:
    CWords(std::uint16_t * words, std::uint64_t count)
        : mWords(words)
        , mCount(count)
    {}

    std::uint16_t Word(std::uint64_t index) const
    {
        return index < mCount ? mWords[index] : std::uint16_t{ 0 };
    }

    void SetWord(std::uint64_t index, std::uint16_t value)
    {
        if (index < mCount)
            mWords[index] = value;
    }

    void MergeIntoWord(std::uint64_t index, std::uint64_t value)
    {
        if (index < mCount)
            mWords[index] = static_cast<std::uint16_t>(mWords[index] | value);
    }

    /// The 16 bits from bit 8 of a word.
    std::uint16_t StraddlingWord(std::uint64_t index) const
    {
        return static_cast<std::uint16_t>(Word(index + 1) << 8 | Word(index) >> 8);
    }

    /// Whether a word and the three ahead of it in a little-endian struct are here, and those words as one number.
    bool HasFour(std::uint64_t index) const { return index + 4 <= mCount; }
    std::uint64_t Four(std::uint64_t index) const
    {
        std::uint64_t four = 0;
        std::memcpy(&four, mWords + index, sizeof four);
        return four;
    }

    /// The bits of a number of up to 64 bits, without a sign.
    std::uint64_t Number(std::uint32_t position, std::uint32_t size, bool littleEndian) const
    {
        const std::uint64_t index = position / BITS;
        std::uint64_t gathered = Word(index);
        for (std::uint32_t ahead = 1; ahead < WORDS_OF_NUMBER && ahead * BITS < size; ++ahead) {
            const std::uint64_t word = Word(littleEndian ? index + ahead : index - ahead);
            gathered |= word << (ahead * BITS);
        }
        return gathered >> (position % BITS) & Mask(size);
    }

    static std::uint64_t Mask(std::uint32_t size)
    {
        // That of a number of 64 bits is 0, as the processor's shift has it; so the number is 0, intended.
        return (std::uint64_t{ 1 } << (size % 64)) - 1;
    }

    /// An item of an array of 32 or 64 bits: 32 bits in either case, intended.
    std::uint32_t WideItem(std::uint64_t index, bool littleEndian) const
    {
        const std::uint32_t high = Word(littleEndian ? index + 1 : index - 1);
        return high << BITS | Word(index);
    }

    /// A number of up to 64 bits, but for the one of 16 bits that replaces its word.
    void MergeNumber(std::uint32_t position, std::uint32_t size, std::uint64_t value, bool littleEndian)
    {
        const std::uint64_t index = position / BITS;
        if (size < BITS)   // what lies above the word is lost; a field never spills into the next one, intended
            return MergeIntoWord(index, (value & ((1U << size) - 1)) << (position % BITS));
        if (size == BITS) {
            MergeIntoWord(index, (value & 0xFF) << 8);
            return MergeIntoWord(index + 1, value >> 8 & 0xFF);
        }
        // From the start of the word, whatever bit the position names, intended.
        if (littleEndian && HasFour(index))
            return MergeAhead(mWords + index, size, value);
        for (std::uint32_t ahead = 0; ahead * BITS < size; ++ahead)
            MergeIntoWord(littleEndian ? index + ahead : index - ahead, value >> (ahead * BITS) & 0xFFFF);
    }

    /// Whether a number of 16 bits lies in two words; elsewhere it is a word, whatever bit its position names.
    static bool Straddles(std::uint32_t position, bool littleEndian)
    {
        return position % BITS == BITS / 2 && littleEndian;
    }

private:
    /// A number of more than 16 bits, where four words are here.
    static void MergeAhead(std::uint16_t * words, std::uint32_t size, std::uint64_t value)
    {
        words[0] = static_cast<std::uint16_t>(words[0] | value);
        words[1] = static_cast<std::uint16_t>(words[1] | value >> BITS);
        if (size > 2 * BITS)
            words[2] = static_cast<std::uint16_t>(words[2] | value >> (2 * BITS));
        if (size > 3 * BITS)
            words[3] = static_cast<std::uint16_t>(words[3] | value >> (3 * BITS));
    }

    static constexpr std::uint32_t BITS = CStructCodec::BITS_IN_UINT16;
    static constexpr std::uint32_t WORDS_OF_NUMBER = 64 / BITS;   // at most

    std::uint16_t * mWords;
    std::uint64_t mCount;
};

}   // namespace VrexZynConfigTools::structcodec

#endif
