/// What the struct codec is measured against: the layout of a struct as shifts and masks with constants, a statement
/// for each field, as one writes it by hand for a device. The values are the members of a struct, each of the smallest
/// type that it fits into.

#ifndef BENCH_HANDWRITTEN_H
#define BENCH_HANDWRITTEN_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <random>
#include <tuple>
#include <type_traits>
#include <utility>

namespace bench {

struct FieldAt
{
    int mPosition;
    int mWidth;
};

constexpr std::uint64_t Mask(int width)
{
    return ~std::uint64_t{ 0 } >> (64 - width);
}

/// Little-endian. Fields of up to 16 bits lie within a word, wider ones begin at one.
template <std::size_t COUNT>
struct Layout
{
    constexpr Layout(const std::array<int, COUNT> & widths, bool isArray)
        : mIsArray(isArray)
    {
        int position = 0;
        for (std::size_t field = 0; field < COUNT; ++field) {
            const bool fits = position % 16 + widths[field] <= 16;
            position = fits ? position : (position + 15) / 16 * 16;
            mFields[field] = { position, widths[field] };
            position += widths[field];
        }
        mWordCount = static_cast<std::size_t>(position + 15) / 16;
    }

    std::array<FieldAt, COUNT> mFields{};
    std::size_t mWordCount = 0;
    bool mIsArray;   // one field with so many items
};

inline constexpr Layout<8> SMALL8({ 1, 5, 10, 16, 3, 13, 4, 12 }, false);
inline constexpr Layout<40> MIXED40({ 1, 2, 13, 16, 32, 8, 8, 4, 12, 24, 7, 9, 3, 5, 6, 48, 10, 11, 14, 20, 63,
                                        15, 16, 32, 1, 1, 1, 1, 12, 40, 8, 3, 5, 17, 33, 16, 6, 9, 56, 31 },
    false);

template <std::size_t COUNT>
constexpr std::array<int, COUNT> AllOf(int width)
{
    std::array<int, COUNT> widths{};
    for (int & each : widths)
        each = width;
    return widths;
}
inline constexpr Layout<64> ARRAY64(AllOf<64>(16), true);

template <std::size_t COUNT>
constexpr const Layout<COUNT> & TheLayout()
{
    if constexpr (COUNT == 8)
        return SMALL8;
    else if constexpr (COUNT == 40)
        return MIXED40;
    else
        return ARRAY64;
}

template <typename LayoutT>
struct HandWritten;

template <int WIDTH>
using NumberOf = std::conditional_t<WIDTH <= 8, std::uint8_t,
    std::conditional_t<WIDTH <= 16, std::uint16_t,
        std::conditional_t<WIDTH <= 32, std::uint32_t, std::uint64_t>>>;

template <std::size_t COUNT>
struct HandWritten<Layout<COUNT>>
{
private:
    template <std::size_t... FIELD>
    static auto MembersOf(std::index_sequence<FIELD...>)
        -> std::tuple<NumberOf<TheLayout<COUNT>().mFields[FIELD].mWidth>...>;

public:
    using Values = decltype(MembersOf(std::make_index_sequence<COUNT>()));

    [[gnu::noinline]] static void Encode(const Values & values, std::uint16_t * words)
    {
        for (std::size_t word = 0; word < TheLayout<COUNT>().mWordCount; ++word)
            words[word] = 0;
        EncodeEach(values, words, std::make_index_sequence<COUNT>());
    }

    [[gnu::noinline]] static void Decode(const std::uint16_t * words, Values & values)
    {
        DecodeEach(words, values, std::make_index_sequence<COUNT>());
    }

    static Values Members(const std::array<std::uint64_t, COUNT> & numbers)
    {
        Values values;
        FillEach(numbers, values, std::make_index_sequence<COUNT>());
        return values;
    }

private:
    template <std::size_t... FIELD>
    static void EncodeEach(const Values & values, std::uint16_t * words, std::index_sequence<FIELD...>)
    {
        (EncodeField<FIELD>(std::get<FIELD>(values), words), ...);
    }

    template <std::size_t... FIELD>
    static void DecodeEach(const std::uint16_t * words, Values & values, std::index_sequence<FIELD...>)
    {
        ((std::get<FIELD>(values) =
                 static_cast<std::tuple_element_t<FIELD, Values>>(DecodeField<FIELD>(words))),
            ...);
    }

    template <std::size_t... FIELD>
    static void FillEach(
        const std::array<std::uint64_t, COUNT> & numbers, Values & values, std::index_sequence<FIELD...>)
    {
        ((std::get<FIELD>(values) = static_cast<std::tuple_element_t<FIELD, Values>>(numbers[FIELD])), ...);
    }

    template <std::size_t FIELD>
    static constexpr FieldAt At()
    {
        return TheLayout<COUNT>().mFields[FIELD];
    }

    template <std::size_t FIELD>
    static void EncodeField(std::uint64_t value, std::uint16_t * words)
    {
        constexpr int WORD = At<FIELD>().mPosition / 16;
        constexpr int BIT = At<FIELD>().mPosition % 16;
        constexpr int WIDTH = At<FIELD>().mWidth;
        value &= Mask(WIDTH);
        words[WORD] = static_cast<std::uint16_t>(words[WORD] | value << BIT);
        if constexpr (WIDTH > 16)
            words[WORD + 1] = static_cast<std::uint16_t>(words[WORD + 1] | value >> 16);
        if constexpr (WIDTH > 32)
            words[WORD + 2] = static_cast<std::uint16_t>(words[WORD + 2] | value >> 32);
        if constexpr (WIDTH > 48)
            words[WORD + 3] = static_cast<std::uint16_t>(words[WORD + 3] | value >> 48);
    }

    template <std::size_t FIELD>
    static std::uint64_t DecodeField(const std::uint16_t * words)
    {
        constexpr int WORD = At<FIELD>().mPosition / 16;
        constexpr int BIT = At<FIELD>().mPosition % 16;
        constexpr int WIDTH = At<FIELD>().mWidth;
        std::uint64_t value = std::uint64_t{ words[WORD] } >> BIT;
        if constexpr (WIDTH > 16)
            value |= std::uint64_t{ words[WORD + 1] } << 16;
        if constexpr (WIDTH > 32)
            value |= std::uint64_t{ words[WORD + 2] } << 32;
        if constexpr (WIDTH > 48)
            value |= std::uint64_t{ words[WORD + 3] } << 48;
        return value & Mask(WIDTH);
    }
};

/// The same in every run.
template <std::size_t COUNT>
std::array<std::uint64_t, COUNT> RandomValues(const Layout<COUNT> & layout)
{
    std::mt19937_64 random(COUNT);
    std::array<std::uint64_t, COUNT> values{};
    for (std::size_t field = 0; field < COUNT; ++field)
        values[field] = random() & Mask(layout.mFields[field].mWidth);
    return values;
}

}   // namespace bench

#endif
