#include <kit/text/ascii.h>

#include <algorithm>

namespace kit::text {

std::string Lowered(std::string_view text)
{
    std::string lowered(text);
    for (char & character : lowered)
        character = Lowered(character);
    return lowered;
}

bool EqualsIgnoringCase(std::string_view left, std::string_view right)
{
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
        [](char one, char other) { return Lowered(one) == Lowered(other); });
}

}   // namespace kit::text
