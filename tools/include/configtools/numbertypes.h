/// The types of numbers: one table of everything that follows from a type, and a way to get from a type that is known
/// at run time to the C++ types behind it.
///
///     if (const NumberType * type = FindNumberType("uint16"))
///         std::cout << type->mBits << " bits, up to " << type->mMax;   // 16 bits, up to 65535
///
///     std::unique_ptr<IPayload> payload;
///     VisitNumberType(NUMERIC_UINT16, [&](auto number) {
///         payload = std::make_unique<typename decltype(number)::Payload>(value.*number.MEMBER);
///     });
///
/// A new type of numbers needs its enumerator, its keyword, its member of `NumericVariable`, its payload class and a row
/// here; what else depends on it either follows from the table or doesn't compile until it is handled.

#ifndef CONFIGTOOLS_NUMBERTYPES_H
#define CONFIGTOOLS_NUMBERTYPES_H

#include <configtools/keywords.h>
#include <configtools/types.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>

namespace VrexZynConfigTools {

class CInt8Payload;
class CInt16Payload;
class CInt32Payload;
class CInt64Payload;
class CUint8Payload;
class CUint16Payload;
class CUint32Payload;
class CUint64Payload;

/// What belongs together for one type of numbers, as types: the value, the payload class (see `payloads.h`, which whoever
/// uses it includes) and the member of `NumericVariable` that carries a value.
template <NumericTypeEnum TypeV, const char * KeywordV, auto MemberV, typename PayloadT>
struct NumberClass
{
    using Value = std::decay_t<decltype(std::declval<NumericVariable &>().*MemberV)>;
    using Payload = PayloadT;

    static constexpr NumericTypeEnum TYPE = TypeV;
    static constexpr const char * KEYWORD = KeywordV;
    static constexpr auto MEMBER = MemberV;
};

/// All types of numbers, in the order of `NumericTypeEnum`.
using NumberClasses =
    std::tuple<NumberClass<NUMERIC_INT8, keywords::TYPE_INT8, &NumericVariable::mInt8, CInt8Payload>,
        NumberClass<NUMERIC_INT16, keywords::TYPE_INT16, &NumericVariable::mInt16, CInt16Payload>,
        NumberClass<NUMERIC_INT32, keywords::TYPE_INT32, &NumericVariable::mInt32, CInt32Payload>,
        NumberClass<NUMERIC_INT64, keywords::TYPE_INT64, &NumericVariable::mInt64, CInt64Payload>,
        NumberClass<NUMERIC_UINT8, keywords::TYPE_UINT8, &NumericVariable::mUint8, CUint8Payload>,
        NumberClass<NUMERIC_UINT16, keywords::TYPE_UINT16, &NumericVariable::mUint16, CUint16Payload>,
        NumberClass<NUMERIC_UINT32, keywords::TYPE_UINT32, &NumericVariable::mUint32, CUint32Payload>,
        NumberClass<NUMERIC_UINT64, keywords::TYPE_UINT64, &NumericVariable::mUint64, CUint64Payload>>;

/// The same facts as values.
struct NumberType
{
    const char * mKeyword;   // the internal type that metadata give
    NumericTypeEnum mType;
    PayloadTypeEnum mPayload;   // of a payload that holds one value
    std::uint32_t mBits;        // 8, 16, 32 or 64
    bool mIsSigned;
    std::int64_t mMin;    // the least value
    std::uint64_t mMax;   // the greatest value

    constexpr std::size_t Bytes() const { return mBits / 8; }
};

namespace detail {

template <typename NumberT>
constexpr NumberType NumberTypeOf()
{
    using Limits = std::numeric_limits<typename NumberT::Value>;
    // The first payload types are those of the numbers, in the same order.
    return { NumberT::KEYWORD, NumberT::TYPE, static_cast<PayloadTypeEnum>(static_cast<int>(NumberT::TYPE)),
        std::uint32_t{ 8 * sizeof(typename NumberT::Value) }, Limits::is_signed, std::int64_t{ Limits::min() },
        static_cast<std::uint64_t>(Limits::max()) };
}

template <std::size_t... PositionV>
constexpr std::array<NumberType, sizeof...(PositionV)> MakeNumberTypes(std::index_sequence<PositionV...>)
{
    return { { NumberTypeOf<std::tuple_element_t<PositionV, NumberClasses>>()... } };
}

template <typename VisitorT, std::size_t... PositionV>
constexpr bool VisitNumberType(NumericTypeEnum type, VisitorT & visitor, std::index_sequence<PositionV...>)
{
    return ((std::tuple_element_t<PositionV, NumberClasses>::TYPE == type
                    ? (static_cast<void>(visitor(std::tuple_element_t<PositionV, NumberClasses>())), true)
                    : false) ||
            ...);
}

using NumberPositions = std::make_index_sequence<std::tuple_size_v<NumberClasses>>;

}   // namespace detail

/// A row for each type, at the position of its `NumericTypeEnum`.
inline constexpr auto NUMBER_TYPES = detail::MakeNumberTypes(detail::NumberPositions());

/// Null for `NUMERIC_NONE` and for a number that is no enumerator.
constexpr const NumberType * FindNumberType(NumericTypeEnum type)
{
    return type >= 0 && type < NUMERIC_NONE ? &NUMBER_TYPES[static_cast<std::size_t>(type)] : nullptr;
}

/// The type of the number in a payload of this type; null if such a payload holds none.
constexpr const NumberType * FindNumberType(PayloadTypeEnum type)
{
    return FindNumberType(type >= 0 && type < static_cast<int>(NUMERIC_NONE)
                              ? static_cast<NumericTypeEnum>(static_cast<int>(type))
                              : NUMERIC_NONE);
}

/// The type with this keyword; "integer" is the widest signed one. Null for any other text; case counts.
constexpr const NumberType * FindNumberType(std::string_view keyword)
{
    if (keyword == keywords::TYPE_INTEGER)
        return FindNumberType(NUMERIC_INT64);
    for (const NumberType & type : NUMBER_TYPES)
        if (keyword == type.mKeyword)
            return &type;
    return nullptr;
}

/// Calls `visitor` with the `NumberClass` of `type`. False, without a call, for `NUMERIC_NONE` and for a number that is no
/// enumerator.
template <typename VisitorT>
constexpr bool VisitNumberType(NumericTypeEnum type, VisitorT && visitor)
{
    return detail::VisitNumberType(type, visitor, detail::NumberPositions());
}

namespace detail {

constexpr bool AreNumberTypesInOrder()
{
    for (std::size_t position = 0; position < NUMBER_TYPES.size(); ++position)
        if (static_cast<std::size_t>(NUMBER_TYPES[position].mType) != position)
            return false;
    return true;
}

}   // namespace detail

static_assert(NUMBER_TYPES.size() == NUMERIC_NONE, "a type of numbers has no row, or a row no enumerator");
static_assert(detail::AreNumberTypesInOrder(), "a row is found by its enumerator");
static_assert(static_cast<int>(PAYLOAD_STRING) == static_cast<int>(NUMERIC_NONE) &&
                  static_cast<int>(PAYLOAD_INT8) == static_cast<int>(NUMERIC_INT8) &&
                  static_cast<int>(PAYLOAD_UINT64) == static_cast<int>(NUMERIC_UINT64),
    "the first payload types are those of the numbers");

}   // namespace VrexZynConfigTools

#endif
