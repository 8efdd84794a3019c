// Hashes of names: what makes them equal and what makes them differ.

#include <configtools/framework/coreclasses/namehash.h>
#include <support/made_locale.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <set>
#include <string>
#include <utility>
#include <vector>

using namespace VrexZynConfigTools;
using namespace VrexZynConfigTools::support;

namespace {

constexpr HashSecret SECRET = { 0x243F6A8885A308D3U, 0x13198A2E03707345U, 0x9E3779B1U };

std::uint32_t HashOf(
    const std::string & name, const CCaseFolding & folding = {}, const HashSecret & secret = SECRET)
{
    return ScanName(name, folding, secret).mHash;
}

std::string InUtf8(unsigned codePoint)
{
    if (codePoint < 0x800)
        return { static_cast<char>(0xC0 | (codePoint >> 6)), static_cast<char>(0x80 | (codePoint & 0x3F)) };
    return { static_cast<char>(0xE0 | (codePoint >> 12)), static_cast<char>(0x80 | ((codePoint >> 6) & 0x3F)),
        static_cast<char>(0x80 | (codePoint & 0x3F)) };
}

/// 10 000 names of one length, of four letters each out of ten in a row.
std::vector<std::string> NamesInScriptOf(unsigned firstLetter)
{
    std::vector<std::string> names;
    for (unsigned number = 0; number < 10'000; ++number) {
        std::string name;
        for (const unsigned digit : { number / 1000, number / 100 % 10, number / 10 % 10, number % 10 })
            name += InUtf8(firstLetter + digit);
        names.push_back(name);
    }
    return names;
}

TEST(ScanName, gives_names_in_any_script_hashes_of_their_own)
{
    constexpr std::array FIRST_LETTERS = { 0x430U, 0x440U, 0x3B1U, 0x5D0U, 0x4E00U, 0x9F00U, 0xAC00U };
    for (const unsigned letter : FIRST_LETTERS) {
        std::set<std::uint32_t> hashes;
        for (const std::string & name : NamesInScriptOf(letter))
            hashes.insert(HashOf(name));
        EXPECT_GE(hashes.size(), 9'990U) << letter;
    }
}

TEST(ScanName, hashes_ASCII_letters_without_their_case)
{
    EXPECT_EQ(HashOf("Radio_Tx_Power"), HashOf("RADIO_TX_POWER"));
    EXPECT_NE(HashOf("Radio_Tx_Power"), HashOf("RADIO_TX_POWES"));
    EXPECT_NE(HashOf("\xC3\x84"), HashOf("\xC3\xA4"));   // no locale with such characters joins their bytes
}

TEST(ScanName, joins_what_tolower_joins)
{
    MadeLocales locales;
    for (const SingleByteLocale & locale : SINGLE_BYTE_LOCALES) {
        locales.Switch(locale.mName);
        platform::LowerCases lower{};
        ASSERT_TRUE(platform::UpdateLowerCases(lower));
        const CCaseFolding folding(lower);
        for (int byte = 0; byte < 256; ++byte) {
            const std::string name = std::string("name_") + static_cast<char>(byte) + "_name";
            const std::string lowered = std::string("name_") + static_cast<char>(std::tolower(byte)) + "_name";
            ASSERT_EQ(HashOf(name, folding), HashOf(lowered, folding)) << locale.mName << " " << byte;
        }
        EXPECT_FALSE(platform::UpdateLowerCases(lower));
    }
}

TEST(ScanName, joins_no_letters_but_those_of_one_case_pair)
{
    MadeLocales locales;
    locales.Switch("KOI8-R");
    platform::LowerCases lower{};
    platform::UpdateLowerCases(lower);
    std::set<std::uint32_t> hashes;
    for (int byte = 128; byte < 256; ++byte)
        hashes.insert(HashOf(std::string(1, static_cast<char>(byte)), CCaseFolding(lower)));
    EXPECT_EQ(hashes.size(), 128U - 33U);   // the Russian letters
}

TEST(ScanName, finds_dots_and_bytes_above_127_at_each_place)
{
    for (std::size_t length = 1; length < 20; ++length) {
        for (std::size_t at = 0; at < length; ++at) {
            std::string name(length, '/');
            EXPECT_FALSE(ScanName(name, {}, SECRET).mHasDot);
            EXPECT_FALSE(ScanName(name, {}, SECRET).mHasHighBytes);
            name[at] = '.';
            EXPECT_TRUE(ScanName(name, {}, SECRET).mHasDot) << length << " " << at;
            name[at] = '\x80';
            EXPECT_TRUE(ScanName(name, {}, SECRET).mHasHighBytes) << length << " " << at;
        }
    }
}

TEST(ScanName, makes_other_collisions_with_another_secret)
{
    // Out of so many names some pairs share a hash. With another secret it is other pairs.
    constexpr unsigned COUNT = 200'000;
    const auto collisionsWith = [](const HashSecret & secret) {
        std::vector<std::pair<std::uint32_t, unsigned>> hashes;
        for (unsigned number = 0; number < COUNT; ++number)
            hashes.emplace_back(HashOf("name_" + std::to_string(number), {}, secret), number);
        std::sort(hashes.begin(), hashes.end());
        std::set<std::pair<unsigned, unsigned>> pairs;
        for (std::size_t at = 1; at < hashes.size(); ++at) {
            if (hashes[at].first == hashes[at - 1].first)
                pairs.emplace(hashes[at - 1].second, hashes[at].second);
        }
        return pairs;
    };
    const auto some = collisionsWith(SECRET);
    EXPECT_FALSE(some.empty());
    EXPECT_LT(some.size(), 40U);   // 5 are to be expected
    const auto others = collisionsWith({ SECRET.mStart, 0x452821E638D01377U, SECRET.mNumberFactor });
    EXPECT_LT(others.size(), 40U);
    EXPECT_NE(some, others);
}

// A difference in the top bit passes through a plain product unchanged, so it could be cancelled by the next word.
TEST(ScanName, cannot_be_cancelled_from_word_to_word)
{
    std::set<std::uint32_t> hashes;
    for (unsigned second = 0; second < 256; ++second) {
        std::string name = "AAAAAAA\xC1"
                           "BBBBBBBBCCCCCCCC";
        for (unsigned bit = 0; bit < 8; ++bit)
            name[8 + bit] = static_cast<char>(name[8 + bit] ^ (second >> bit & 1U ? 0x80 : 0));
        hashes.insert(HashOf(name));
        name[7] = '\x41';
        hashes.insert(HashOf(name));
    }
    EXPECT_EQ(hashes.size(), 512U);
}

TEST(HashOfNumber, is_another_for_each_number)
{
    std::set<std::uint32_t> hashes;
    for (std::uint32_t number = 0; number < 70'000; ++number)
        hashes.insert(HashOfNumber(number * 61'681U, SECRET));
    EXPECT_EQ(hashes.size(), 70'000U);
}

TEST(HashOfIndex, differs_by_index_order_and_number)
{
    std::set<std::uint32_t> hashes;
    for (std::uint32_t first = 0; first < 300; ++first) {
        for (std::uint32_t second = 0; second < 300; ++second)
            hashes.insert(HashOfIndex(HashOfIndex(7, first, SECRET), second, SECRET));
    }
    EXPECT_GE(hashes.size(), 89'980U);
}

TEST(ProcessSecret, stays_the_same)
{
    const HashSecret & secret = ProcessSecret();
    EXPECT_EQ(&secret, &ProcessSecret());
    EXPECT_EQ(secret.mFactor % 2, 1U);
    EXPECT_NE(secret.mFactor >> 32U, 0U);
    EXPECT_EQ(secret.mNumberFactor % 2, 1U);
}

}   // namespace
