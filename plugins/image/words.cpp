#include "words.h"

#include "bytes.h"

#include <configtools/keywords.h>
#include <kit/layout/scalars.h>

#include <algorithm>
#include <array>

namespace imageconfig {

using namespace VrexZynConfigTools;

namespace {

struct NamedType
{
    const char * mKeyword;
    NumberType mType;
};

constexpr std::array<NamedType, 9> TYPES{ {
    { keywords::TYPE_INT8, { PAYLOAD_INT8, 8, true } },
    { keywords::TYPE_INT16, { PAYLOAD_INT16, 16, true } },
    { keywords::TYPE_INT32, { PAYLOAD_INT32, 32, true } },
    { keywords::TYPE_INT64, { PAYLOAD_INT64, 64, true } },
    { keywords::TYPE_UINT8, { PAYLOAD_UINT8, 8, false } },
    { keywords::TYPE_UINT16, { PAYLOAD_UINT16, 16, false } },
    { keywords::TYPE_UINT32, { PAYLOAD_UINT32, 32, false } },
    { keywords::TYPE_UINT64, { PAYLOAD_UINT64, 64, false } },
    { keywords::TYPE_INTEGER, { PAYLOAD_INT64, 64, true } },
} };

template <typename PredicateT>
std::optional<NumberType> FirstWith(PredicateT predicate)
{
    const auto found = std::find_if(TYPES.begin(), TYPES.end(), predicate);
    return found != TYPES.end() ? std::optional(found->mType) : std::nullopt;
}

std::optional<NumberType> ClassOf(IPayload & payload)
{
    if (dynamic_cast<CEnumPayload *>(&payload) != nullptr)
        return NumberType{ PAYLOAD_INT32, 32, true };
    return TypeByPayload(payload.Type());
}

}   // namespace

std::optional<NumberType> TypeByKeyword(const std::string & keyword)
{
    return FirstWith([&keyword](const NamedType & type) { return type.mKeyword == keyword; });
}

std::optional<NumberType> TypeByPayload(PayloadTypeEnum payload)
{
    return FirstWith([payload](const NamedType & type) { return type.mType.mPayload == payload; });
}

std::optional<std::uint64_t> ValueOf(IPayload & payload)
{
    const auto type = ClassOf(payload);
    const auto number = kit::layout::NumberOf(payload);
    return type && number ? std::optional(Cut(*number, type->mBits, type->mIsSigned)) : std::nullopt;
}

bool IsNegative(IPayload & payload)
{
    const auto type = ClassOf(payload);
    const auto value = ValueOf(payload);
    return type && value && type->mIsSigned && static_cast<std::int64_t>(*value) < 0;
}

bool FitsInto(IPayload & payload, const NumberType & type)
{
    const auto value = ValueOf(payload);
    if (!value || Cut(*value, type.mBits, type.mIsSigned) != *value)
        return false;
    const bool isBelowZero = type.mIsSigned && static_cast<std::int64_t>(*value) < 0;
    return isBelowZero == IsNegative(payload);   // 64 bits alone don't tell
}

std::uint64_t Cut(std::uint64_t value, std::size_t bits, bool isSigned)
{
    if (bits >= 64)
        return value;
    const std::uint64_t mask = (std::uint64_t{ 1 } << bits) - 1;
    const bool isBelowZero = isSigned && bits > 0 && (value >> (bits - 1) & 1) != 0;
    return isBelowZero ? value | ~mask : value & mask;
}

void AppendWords(std::string & data, std::uint64_t value, std::size_t words)
{
    AppendNumber(data, value, words * BYTES_OF_WORD);
}

std::optional<std::uint64_t> ValueIn(std::string_view words, const NumberType & type)
{
    const std::uint64_t value = NumberIn(words);
    const std::uint64_t cut = Cut(value, type.mBits, type.mIsSigned);
    const bool isWhole = Cut(cut, 8 * words.size(), false) == value;
    return isWhole ? std::optional(cut) : std::nullopt;
}

}   // namespace imageconfig
