#include <kit/numbertypes/number.h>

#include <cstring>
#include <type_traits>

namespace kit::numbertypes {

using namespace VrexZynConfigTools;

NumericVariable VariableOf(const NumberType & type, std::uint64_t bits)
{
    NumericVariable variable;
    VisitNumberType(type.mType,
        [&](auto number) { variable.*number.MEMBER = static_cast<typename decltype(number)::Value>(bits); });
    return variable;
}

CNumber NumberOf(const NumberType & type, const NumericVariable & variable)
{
    return NumberIn(type, &variable);   // all members of the union begin where it begins
}

CNumber NumberIn(const NumberType & type, const void * memory)
{
    CNumber result;
    VisitNumberType(type.mType, [&](auto number) {
        typename decltype(number)::Value value{};
        std::memcpy(&value, memory, sizeof value);
        if constexpr (std::is_signed_v<decltype(value)>)
            result = CNumber(std::int64_t{ value });
        else
            result = CNumber::Unsigned(value);
    });
    return result;
}

}   // namespace kit::numbertypes
