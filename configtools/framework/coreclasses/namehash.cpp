#include "namehash.h"

#include <bit>
#include <chrono>
#include <cstring>
#include <exception>
#include <random>

namespace VrexZynConfigTools {

namespace {

using Word = std::uint64_t;   // eight characters

constexpr Word EACH_BYTE = 0x0101010101010101U;
constexpr Word TOP_BITS = 0x80U * EACH_BYTE;
#ifndef __SIZEOF_INT128__
constexpr Word LOW_HALF = 0xFFFFFFFFU;
#endif

Word WordAt(const char * characters)
{
    Word word = 0;
    std::memcpy(&word, characters, sizeof(word));
    return word;
}

// Fewer than eight characters, with zeros behind them.
Word ShortWord(const char * characters, std::size_t count)
{
    Word word = 0;
    for (std::size_t at = 0; at < count; ++at)
        word |= static_cast<Word>(static_cast<unsigned char>(characters[at])) << (8 * at);
    return word;
}

// The top bit of each byte that is `character`.
constexpr Word Matches(Word word, char character)
{
    const Word difference = word ^ (static_cast<Word>(character) * EACH_BYTE);
    return ~(((difference & ~TOP_BITS) + ~TOP_BITS) | difference | ~TOP_BITS);
}
static_assert(Matches(0x2E00002E00000000U, '.') == 0x8000008000000000U);

// Sets the bit 0x20 of each ASCII byte.
constexpr Word FoldAscii(Word word)
{
    return word | ((~word & TOP_BITS) >> 2U);
}
static_assert(FoldAscii(0x4142C3844B4C4D5AU) == FoldAscii(0x6162C3846B6C6D7AU));
static_assert(FoldAscii(0xC3C4000000000000U) != FoldAscii(0xC3E4000000000000U));

// All bits of both take part in all bits of the result, which is the whole product with its halves joined. Which of them
// a difference in `left` reaches depends on `right`, so a file can't be made in which differences cancel out.
constexpr Word Mix(Word left, Word right)
{
#ifdef __SIZEOF_INT128__
    __extension__ using Product = unsigned __int128;
    const Product product = static_cast<Product>(left) * right;
    return static_cast<Word>(product) ^ static_cast<Word>(product >> 64U);
#else
    const Word high = (left >> 32U) * (right >> 32U);
    const Word low = (left & LOW_HALF) * (right & LOW_HALF);
    const Word crossed = (left >> 32U) * (right & LOW_HALF);
    const Word crossedToo = (left & LOW_HALF) * (right >> 32U);
    return high ^ std::rotl(crossed, 32) ^ low ^ std::rotl(crossedToo, 32);
#endif
}

constexpr std::uint32_t Halved(Word state)
{
    return static_cast<std::uint32_t>(state ^ (state >> 32U));
}

// Where the system has no source of random numbers the clock and an address, which differ from run to run, must do.
std::uint64_t RandomWord() noexcept
{
    try {
        std::random_device source;
        return (static_cast<Word>(source()) << 32U) | source();
    } catch (const std::exception &) {
        static const char place = 0;
        const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
        return Mix(static_cast<Word>(now) ^ reinterpret_cast<std::uintptr_t>(&place), 0x9E3779B97F4A7C15U);
    }
}

}   // namespace

CCaseFolding::CCaseFolding(const platform::LowerCases & lower)
    : CCaseFolding()
{
    const CCaseFolding identity;
    // Indexed by a lower-case byte: what becomes of all bytes that have it. ASCII bytes decide, as they can't give way.
    std::array<unsigned char, 256> folded{};
    for (std::size_t byte = 0; byte < folded.size(); ++byte)
        folded[byte] = static_cast<unsigned char>(byte < 128 ? byte | 0x20U : byte);
    for (std::size_t byte = 0; byte < 128; ++byte)
        folded[static_cast<unsigned char>(lower[byte])] = static_cast<unsigned char>(byte | 0x20U);
    for (std::size_t byte = 0; byte < mHigh.size(); ++byte)
        mHigh[byte] = folded[static_cast<unsigned char>(lower[byte + 128])];
    mIsIdentity = mHigh == identity.mHigh;
}

std::uint64_t CCaseFolding::Fold(std::uint64_t word) const
{
    Word folded = FoldAscii(word);
    if (mIsIdentity || (word & TOP_BITS) == 0)
        return folded;
    for (unsigned shift = 0; shift < 64; shift += 8) {
        const auto byte = static_cast<unsigned char>(word >> shift);
        if (byte >= 128)
            folded ^= static_cast<Word>(byte ^ mHigh[byte - 128U]) << shift;
    }
    return folded;
}

const HashSecret & ProcessSecret()
{
    // Numbers are spread evenly by a factor near that of the golden section.
    constexpr std::uint32_t GOLDEN = 0x9E3779B1U;
    static const HashSecret secret = { RandomWord(), RandomWord() | 1U,
        GOLDEN ^ static_cast<std::uint32_t>(RandomWord() & 0x1FFFEU) };
    return secret;
}

NameScan ScanName(std::string_view name, const CCaseFolding & folding, const HashSecret & secret)
{
    Word state = secret.mStart ^ name.size();
    Word dots = 0;
    Word bytes = 0;
    const auto add = [&](Word word) {
        dots |= Matches(word, '.');
        bytes |= word;
        state = Mix(state ^ folding.Fold(word), secret.mFactor);
    };
    if (name.size() < sizeof(Word)) {
        add(ShortWord(name.data(), name.size()));
    } else {
        for (std::size_t at = 0; at + sizeof(Word) < name.size(); at += sizeof(Word))
            add(WordAt(name.data() + at));
        add(WordAt(name.data() + name.size() - sizeof(Word)));
    }
    return { Halved(state), dots != 0, (bytes & TOP_BITS) != 0 };
}

std::uint32_t HashOfIndex(std::uint32_t hash, std::uint32_t index, const HashSecret & secret)
{
    return Halved(Mix(secret.mStart ^ ((static_cast<Word>(hash) << 32U) | index), secret.mFactor));
}

}   // namespace VrexZynConfigTools
