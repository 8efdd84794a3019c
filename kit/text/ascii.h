/// Letters of ASCII, whatever the locale.

#ifndef KIT_TEXT_ASCII_H
#define KIT_TEXT_ASCII_H

#include <string>
#include <string_view>

namespace kit::text {

/// In lower case; bytes that are no letter of ASCII stay as they are.
constexpr char Lowered(char character)
{
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

std::string Lowered(std::string_view text);

/// Whether both are the same but for the case of letters.
bool EqualsIgnoringCase(std::string_view left, std::string_view right);

}   // namespace kit::text

#endif
