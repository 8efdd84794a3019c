/// Hashes of names, numbers and rows: pure functions of what is hashed, of a locale's rules of case and of a secret.

#ifndef CONFIGTOOLS_NAMEHASH_H
#define CONFIGTOOLS_NAMEHASH_H

#include <misc/platform.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace VrexZynConfigTools {

/// Maps bytes so that those which one locale's `tolower` makes equal become equal.
///
/// Invariant: what becomes of an ASCII byte is the same for every locale: the bit 0x20 is set, which joins the cases of
/// the letters (and some other characters, which costs a collision and nothing more). So names of ASCII bytes alone
/// have one hash for ever. A locale whose ASCII letters are others breaks this, and is none of ISO C.
class CCaseFolding
{
public:
    /// Of a locale that leaves the bytes above 127 alone: "C", and those whose characters have several bytes.
    constexpr CCaseFolding()
    {
        for (std::size_t byte = 0; byte < mHigh.size(); ++byte)
            mHigh[byte] = static_cast<unsigned char>(byte + 128);
    }
    explicit CCaseFolding(const platform::LowerCases & lower);

    /// Folds eight characters.
    std::uint64_t Fold(std::uint64_t word) const;

    bool operator==(const CCaseFolding &) const = default;

private:
    std::array<unsigned char, 128> mHigh{};   // what becomes of the bytes 128 to 255
    bool mIsIdentity = true;                  // that is themselves
};

/// Drawn for each process, so that nobody can make a file whose names all have one hash.
struct HashSecret
{
    std::uint64_t mStart;
    std::uint64_t mFactor;
    std::uint32_t mNumberFactor;   // odd
};

/// The secret of this process.
const HashSecret & ProcessSecret();

struct NameScan
{
    std::uint32_t mHash;
    bool mHasDot;
    bool mHasHighBytes;   // above 127
};

/// Hashes a name without its case.
NameScan ScanName(std::string_view name, const CCaseFolding & folding, const HashSecret & secret);

/// Different numbers have different hashes, and runs of numbers, which are the usual case, have evenly spread ones.
inline std::uint32_t HashOfNumber(std::uint32_t number, const HashSecret & secret)
{
    return number * secret.mNumberFactor;
}

/// Adds one index of a row to the hash of its number or name.
std::uint32_t HashOfIndex(std::uint32_t hash, std::uint32_t index, const HashSecret & secret);

}   // namespace VrexZynConfigTools

#endif
