/// What a randomised test draws from: few numbers, names and tags, chosen so that they collide, and nasty ones.

#ifndef TESTS_SUPPORT_RANDOM_SOURCE_H
#define TESTS_SUPPORT_RANDOM_SOURCE_H

#include <support/walk_model.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdint>
#include <locale>
#include <random>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace VrexZynConfigTools::support {

class RandomSource
{
public:
    explicit RandomSource(std::uint32_t seed)
        : mRandom(seed)
    {}

    std::size_t Below(std::size_t limit) { return mRandom() % limit; }
    bool Chance(std::size_t percent) { return Below(100) < percent; }

    template <typename ContainerT>
    const typename ContainerT::value_type & Of(const ContainerT & container)
    {
        return container[Below(container.size())];
    }

    std::uint32_t Id(std::size_t spread)
    {
        static const std::vector<std::uint32_t> NASTY{ 0, 1, 5, 8, 10, 12, 16, 100, 2147483647U, 2147483648U,
            3000000000U, 4294967295U };
        return Chance(40) ? Of(NASTY) : static_cast<std::uint32_t>(Below(spread));
    }

    /// Names of lengths around a multiple of 8 that differ in one character, and that in few bits: "[" and "{" are no
    /// letters, though they differ as "A" and "a" do.
    std::string TrickyName(std::size_t spread)
    {
        static const std::vector<std::size_t> LENGTHS{ 8, 7, 1, 9, 16, 17, 15, 24, 2, 0 };
        static const std::vector<char> TWINS{ 'i', 'I', '[', '{', '@', '`', '\x80', '\xC9', '\xFF', '\0', ' ' };
        std::string name = std::string("ibcdefghijklmnopqrstuvwx")
                               .substr(0, LENGTHS[Below(std::min<std::size_t>(spread, 10))]);
        if (!name.empty() && Chance(70))
            name[Chance(50) ? 0 : name.size() - 1] = TWINS[Below(TWINS.size())];
        return name;
    }

    std::string Name(std::size_t spread)
    {
        if (Chance(20))
            return Recased(TrickyName(spread));
        static const std::vector<std::string> NASTY{ "", " ", "a", "Ab", "12abc", "12ABC", "0x", "0x10", "16",
            "020", "08", "+5", " 5", "5 ", "-1", "2147483648", "3000000000", "\xC4\xD6", "\xE4\xF6", "a.b", ".",
            std::string("n\0x", 3), std::string("5\0a", 3), std::string("\0", 1), "\x0BZ", "-", "0B",
            "aNameTooLongForTheSmallBufferOfAString", "anametoolongforthesmallbufferofastrinG",
            "\xD0\x9A\xD0\xBB\xD1\x8E\xD1\x87", "\xD0\xBA\xD0\xBB\xD1\x8E\xD1\x87", "\xCE\x9A\xCE\xBB",
            "\xE9\x94\xAE", "\xCB\xCE\xD7", "\xEB\xEE\xF7", "\xEB\xCE\xD7", "P\xDDN", "p\xFDn", "pin" };
        return Recased(Chance(40) ? Of(NASTY) : Numbered("Key", Below(spread)));
    }

    /// Any text that a lookup may be asked with.
    std::string KeyText(std::size_t spread)
    {
        static const std::vector<std::string> PIECES{ "", "0", "1", "2", "3", "-1", "x", " 2", "1x",
            "4294967295", "99999999999", "99999999999999999999" };
        std::string text = Chance(50) ? Name(spread) : Number(spread);
        const std::size_t indices = Chance(60) ? 0 : 1 + Below(3);
        for (std::size_t i = 0; i < indices; ++i)
            text += "." + Of(PIECES);
        return text;
    }

    std::vector<std::uint32_t> Indices()
    {
        std::vector<std::uint32_t> indices;
        for (std::size_t i = Below(4); i > 0; --i)
            indices.push_back(Chance(5) ? 4294967295U : static_cast<std::uint32_t>(Below(3)));
        return indices;
    }

    /// A tag of those that rule how an element is stored; an empty value deletes it.
    std::pair<std::string, std::string> InsertTag()
    {
        static const std::vector<std::string> MODES{ "", "new", "NEW", "overwrite", "OverWrite", "append",
            "junk", "new " };
        static const std::vector<std::string> COUNTS{ "", "", "", "1", "0", "junk" };
        static const std::vector<std::string> KEYS{ "index1", "index10", "index2", "myIndexfoo", "INDEX3" };
        static const std::vector<std::string> VALUES{ "", "", "0", "1", "2", "junk", "-1", "4294967295", " 2",
            "99999999999999999999" };
        switch (Below(4)) {
        case 0:
            return { "num_indices", Of(COUNTS) };
        case 1:
            return { Of(KEYS), Of(VALUES) };
        default:
            return { Chance(80) ? "insertmode" : "InsertMode", Of(MODES) };
        }
    }

    /// A tag of those that say where an element belongs, or how it is stored and looked up.
    std::pair<std::string, std::string> PlaceTag()
    {
        static const std::vector<std::string> CHIPS{ "", "a", "A", "b" };
        static const std::vector<std::string> TYPES{ "0", "1", "1", "1", "2", "2", "10", "", "02" };
        static const std::vector<std::string> DEVICES{ "1", "2", "4", "15", "15", "14", "0", "12", "13", "",
            "x", "X" };
        static const std::vector<std::string> STORES{ "1", "1", "2", "2", "3", "0", "", "65537" };
        static const std::vector<std::string> LAYERS{ "", "1", "2", "3", "4", "15", "0", "junk", "17", "-1" };
        static const std::vector<std::string> FILTERS{ "", "", "", "1", "2", "3", "15", "-2", "-3", "0", "abc",
            "99", "40000", "300", " 2", "2x" };
        static const std::vector<std::string> KEYS{ "a| |1|1", "a| |1|2", " | |1|1", "a| |1|15|1", "" };
        switch (Below(16)) {
        case 0:
            return { "chip", Of(CHIPS) };
        case 1:
        case 2:
            return { "subsystemtype", Of(TYPES) };
        case 3:
        case 4:
            return { "device", Of(DEVICES) };
        case 5:
        case 6:
            return { "store", Of(STORES) };
        case 7:
        case 8:
        case 9:
            return { "layernumber", Of(LAYERS) };
        case 10:
        case 11:
        case 12:
            return { "layerfilter", Of(FILTERS) };
        case 13:
            return { Chance(50) ? "subsystemkeybystore" : "subsystemkeybylayer", Chance(70) ? "" : Of(KEYS) };
        default:
            return InsertTag();
        }
    }

    ModelElement Element(int uid, std::size_t spread, std::size_t foreignPercent)
    {
        static constexpr std::array<std::uint64_t, 3> LENGTHS{ 0, 1, 5 };
        ModelElement element{ uid, { Id(spread), Name(spread), Chance(20), {} }, Of(LENGTHS), Rule::LIBRARY };
        if (element.mView.mIsRow)
            element.mView.mIndices = Indices();
        if (Chance(foreignPercent))
            element.mRule = static_cast<Rule>(1 + Below(static_cast<std::size_t>(Rule::COUNT) - 1));
        return element;
    }

private:
    std::string Recased(std::string text)
    {
        for (char & c : text) {
            if (Chance(20))
                c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
        }
        return text;
    }

    std::string Number(std::size_t spread)
    {
        static const std::vector<std::string> BLANKS{ "", "", "", "", " ", "\t", "\n\v", "+", "-", " +", "0" };
        std::ostringstream digits;
        digits.imbue(std::locale::classic());
        if (Chance(30))
            digits << std::hex << std::showbase;
        else if (Chance(20))
            digits << std::oct << std::showbase;
        digits << Id(spread);
        return Of(BLANKS) + digits.str() + (Chance(5) ? "z" : "");
    }

    std::mt19937 mRandom;
};

}   // namespace VrexZynConfigTools::support

#endif
