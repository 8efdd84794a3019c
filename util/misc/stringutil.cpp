#include <misc/stringutil.h>

#include <messages/trace.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <charconv>
#include <cstdlib>
#include <iomanip>
#include <limits>
#include <locale>
#include <ostream>
#include <sstream>
#include <system_error>
#include <utility>

namespace stringutil {

namespace {

constexpr auto MESSAGE_GROUP = VrexZynConfigTools::GROUP_UTILITIES;

using Int32Limits = std::numeric_limits<std::int32_t>;

/// Limits to the range that `strtol` has where `long` is 32 bits wide, and reports through `errno` as it does there.
std::int32_t ClampTo32Bits(long value)
{
    if (value >= Int32Limits::min() && value <= Int32Limits::max())
        return static_cast<std::int32_t>(value);
    errno = ERANGE;
    return value < 0 ? Int32Limits::min() : Int32Limits::max();
}

}   // namespace

void WriteHexNumberToStream(std::ostream & aStream, int aNumberToDisplay, int aNumberOfDigits, bool aAddPrefix)
{
    ZYN_SENTRY("stringutil::WriteHexNumberToStream");
    ZYN_TRACE(1, "aNumberToDisplay=0x%08x", static_cast<unsigned int>(aNumberToDisplay));
    ZYN_TRACE(1, "aNumberOfDigits=%d", aNumberOfDigits);
    ZYN_TRACE(1, "aAddPrefix=%s", aAddPrefix ? "true" : "false");

    const auto flags = aStream.flags();
    const auto fill = aStream.fill();
    if (aAddPrefix)
        aStream << "0x";
    aStream << std::setfill('0') << std::setw(aNumberOfDigits) << std::hex << aNumberToDisplay;
    // This adds the old flags to the new and doesn't clear the hexadecimal base flag, intended.
    aStream << std::setfill(fill) << std::setiosflags(flags);
}

std::string ToLower(std::string aText)
{
    std::string result = std::move(aText);
    ZYN_SENTRY_RESULT("stringutil::ToLower", result);

    for (char & character : result) {
        // No locale changes any other byte of ASCII, and most texts have no others.
        const auto byte = static_cast<unsigned char>(character);
        if ((byte >= 'A' && byte <= 'Z') || byte > 127)
            character = static_cast<char>(std::tolower(byte));
    }
    return result;
}

std::uint32_t HexStrToInt(const std::string & aText)
{
    std::uint32_t result = 0;
    ZYN_SENTRY_RESULT("stringutil::HexStrToInt", result);

    std::istringstream stream(aText);
    stream.imbue(std::locale::classic());
    std::uint32_t number = 0;
    stream >> std::hex >> number;
    return result = stream.fail() ? 0 : number;
}

bool StringToInteger(const std::string & aText, std::int32_t & aValue)
{
    bool result = false;
    ZYN_SENTRY_RESULT("stringutil::StringToInteger", result);

    if (aText.empty())
        return result = false;

    char * end = nullptr;
    errno = 0;
    aValue = ClampTo32Bits(std::strtol(aText.c_str(), &end, 0));
    if (errno != 0 || end != aText.c_str() + aText.size())
        return result = false;

    ZYN_TRACE(1, "Converted string \"%s\" to integer \"%d\"", aText.c_str(), aValue);
    return result = true;
}

std::int32_t DecimalToInt(std::string_view aText)
{
    aText.remove_prefix(std::min(aText.find_first_not_of(" \t\n\v\f\r"), aText.size()));
    const bool isNegative = aText.substr(0, 1) == "-";
    if (isNegative || aText.substr(0, 1) == "+")
        aText.remove_prefix(1);

    const std::uint64_t limit =
        std::uint64_t{ std::numeric_limits<std::int64_t>::max() } + (isNegative ? 1 : 0);
    std::uint64_t magnitude = 0;   // stays so where there is no digit
    const auto read = std::from_chars(aText.data(), aText.data() + aText.size(), magnitude);
    if (read.ec == std::errc::result_out_of_range || magnitude > limit)
        magnitude = limit;
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(isNegative ? 0 - magnitude : magnitude));
}

}   // namespace stringutil
