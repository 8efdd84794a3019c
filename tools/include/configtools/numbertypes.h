/// @file
/// The types of numbers: one table of everything that follows from a type, and a way to get from a type that is known
/// at run time to the C++ types behind it.
///
/// @code
/// #include <configtools/payloads.h>
///
/// #include <memory>
///
/// std::unique_ptr<VrexZynConfigTools::IPayload> MakeNumber(
///     std::string_view keyword, VrexZynConfigTools::NumericVariable value)
/// {
///     using namespace VrexZynConfigTools;
///     std::unique_ptr<IPayload> payload;
///     if (const NumberType * const type = FindNumberType(keyword))   // "uint16": 16 bits, 0 to 65535
///         VisitNumberType(type->mType, [&](auto number) {
///             payload = std::make_unique<typename decltype(number)::Payload>(value.*number.MEMBER);
///         });
///     return payload;
/// }
/// @endcode
///
/// A new type of numbers needs its enumerator, its keyword, its member of `NumericVariable`, its payload class and a
/// row here; what else depends on it either follows from the table or doesn't compile until it is handled.

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

/// What belongs together for one type of numbers, as types: the value, the payload class (see `payloads.h`, which
/// whoever uses it includes) and the member of `NumericVariable` that carries a value.
template <NumericTypeEnum TypeV, const char * KeywordV, auto MemberV, typename PayloadT>
struct NumberClass
{
    /// The C++ type of a value.
    using Value = std::decay_t<decltype(std::declval<NumericVariable &>().*MemberV)>;
    /// The payload class.
    using Payload = PayloadT;

    /// The enumerator.
    static constexpr NumericTypeEnum TYPE = TypeV;
    /// The type keyword, which is the internal type in metadata.
    static constexpr const char * KEYWORD = KeywordV;
    /// The member of `NumericVariable`.
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
    /// The type keyword, which is the internal type in metadata.
    const char * mKeyword;
    /// The enumerator.
    NumericTypeEnum mType;
    /// The type code of a payload with one value.
    PayloadTypeEnum mPayload;
    /// 8, 16, 32 or 64.
    std::uint32_t mBits;
    /// Whether there are negative values.
    bool mIsSigned;
    /// The lowest value.
    std::int64_t mMin;
    /// The highest value.
    std::uint64_t mMax;

    /// The size of a value in bytes.
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

/// The row of this type; null for `NUMERIC_NONE` and for a number that is no enumerator.
constexpr const NumberType * FindNumberType(NumericTypeEnum type)
{
    return type >= 0 && type < NUMERIC_NONE ? &NUMBER_TYPES[static_cast<std::size_t>(type)] : nullptr;
}

/// The row of the number in a payload with this type code; null if such a payload isn't a number.
constexpr const NumberType * FindNumberType(PayloadTypeEnum type)
{
    return FindNumberType(type >= 0 && type < static_cast<int>(NUMERIC_NONE)
                              ? static_cast<NumericTypeEnum>(static_cast<int>(type))
                              : NUMERIC_NONE);
}

/// The row with this keyword, compared with regard to case; "integer" is the widest signed type. Null for any other
/// text.
constexpr const NumberType * FindNumberType(std::string_view keyword)
{
    if (keyword == keywords::TYPE_INTEGER)
        return FindNumberType(NUMERIC_INT64);
    for (const NumberType & type : NUMBER_TYPES)
        if (keyword == type.mKeyword)
            return &type;
    return nullptr;
}

/// Calls `visitor` with the `NumberClass` of `type`. False, without a call, for `NUMERIC_NONE` and for a number that
/// is no enumerator.
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
