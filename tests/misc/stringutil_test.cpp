#include <misc/stringutil.h>

#include <messages/messages.h>
#include <support/debug_capture.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <iomanip>
#include <limits>
#include <locale>
#include <sstream>
#include <string>

namespace stringutil {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using VrexZynConfigTools::GROUP_UTILITIES;
using VrexZynConfigTools::support::DebugCapture;

std::string Hex(int number, int digits, bool prefix)
{
    std::ostringstream stream;
    WriteHexNumberToStream(stream, number, digits, prefix);
    return stream.str();
}

struct Converted
{
    bool mIsNumber;
    std::int32_t mValue;

    bool operator==(const Converted & other) const
    {
        return mIsNumber == other.mIsNumber && mValue == other.mValue;
    }
    friend void PrintTo(const Converted & converted, std::ostream * stream)
    {
        *stream << (converted.mIsNumber ? "true, " : "false, ") << converted.mValue;
    }
};

constexpr std::int32_t UNTOUCHED = 77;

Converted Convert(const std::string & text)
{
    std::int32_t value = UNTOUCHED;
    const bool isNumber = StringToInteger(text, value);
    return { isNumber, value };
}

/// A global locale that groups digits by one, for the life of a scope.
class GroupingLocale
{
public:
    GroupingLocale()
        : mFormer(std::locale::global(std::locale(std::locale::classic(), new OneByOne)))
    {}
    ~GroupingLocale() { std::locale::global(mFormer); }
    GroupingLocale(const GroupingLocale &) = delete;
    GroupingLocale & operator=(const GroupingLocale &) = delete;

private:
    class OneByOne : public std::numpunct<char>
    {
    protected:
        char do_thousands_sep() const override { return ','; }
        std::string do_grouping() const override { return "\1"; }
    };

    std::locale mFormer;
};

TEST(WriteHexNumberToStream, fills_up_with_zeros)
{
    EXPECT_EQ(Hex(0x2A, 4, true), "0x002a");
    EXPECT_EQ(Hex(0, 4, true), "0x0000");
    EXPECT_EQ(Hex(0xABCD, 4, true), "0xabcd");
    EXPECT_EQ(Hex(1, 8, true), "0x00000001");
}

TEST(WriteHexNumberToStream, leaves_the_prefix_out_where_none_is_wanted)
{
    EXPECT_EQ(Hex(0x2A, 4, false), "002a");
}

TEST(WriteHexNumberToStream, writes_more_digits_than_asked_for_where_the_number_has_them)
{
    EXPECT_EQ(Hex(0x12345, 4, true), "0x12345");
    EXPECT_EQ(Hex(0x12345, 0, true), "0x12345");
    EXPECT_EQ(Hex(0x12345, -3, true), "0x12345");
}

TEST(WriteHexNumberToStream, writes_negative_numbers_in_twos_complement)
{
    EXPECT_EQ(Hex(-1, 4, true), "0xffffffff");
    EXPECT_EQ(Hex(std::numeric_limits<int>::min(), 4, true), "0x80000000");
}

TEST(WriteHexNumberToStream, writes_a_number_under_the_flags_of_the_stream)
{
    std::ostringstream stream;
    stream << std::uppercase << std::showbase << std::left;
    WriteHexNumberToStream(stream, 0xAB, 6, false);
    EXPECT_EQ(stream.str(), "0XAB00");
}

TEST(WriteHexNumberToStream, groups_digits_as_the_locale_of_the_stream_does)
{
    const GroupingLocale grouping;
    EXPECT_EQ(Hex(0x12345678, 8, true), "0x1,2,3,4,5,6,7,8");
    EXPECT_EQ(Hex(0x2A, 4, true), "0x02,a");
}

TEST(WriteHexNumberToStream, puts_the_fill_character_back)
{
    std::ostringstream stream;
    stream.fill('*');
    WriteHexNumberToStream(stream, 1, 4, true);
    EXPECT_EQ(stream.fill(), '*');
    EXPECT_EQ(stream.width(), 0);
}

TEST(WriteHexNumberToStream, leaves_the_hexadecimal_flag_set_beside_the_old_ones)
{
    std::ostringstream stream;
    stream << std::oct << std::uppercase << std::left;
    const auto before = stream.flags();
    WriteHexNumberToStream(stream, 1, 1, true);
    EXPECT_EQ(stream.flags(), before | std::ios_base::hex);

    std::ostringstream fresh;
    WriteHexNumberToStream(fresh, 1, 1, true);
    EXPECT_EQ(fresh.flags(), std::ios_base::skipws | std::ios_base::dec | std::ios_base::hex);
}

TEST(WriteHexNumberToStream, traces_its_arguments)
{
    DebugCapture debug;
    Hex(0x2A, 4, true);
    Hex(-1, -2, false);
    EXPECT_THAT(debug.TextsOf("stringutil::WriteHexNumberToStream", 1),
        ElementsAre("aNumberToDisplay=0x0000002a", "aNumberOfDigits=4", "aAddPrefix=true",
            "aNumberToDisplay=0xffffffff", "aNumberOfDigits=-2", "aAddPrefix=false"));
    EXPECT_EQ(debug.Lines().front().mGroup, GROUP_UTILITIES);
}

TEST(ToLower, lowers_letters_and_nothing_else)
{
    EXPECT_EQ(ToLower("WLAN"), "wlan");
    EXPECT_EQ(ToLower("Az 09_|@[`{"), "az 09_|@[`{");
    EXPECT_EQ(ToLower(""), "");
}

TEST(ToLower, leaves_its_argument_alone)
{
    const std::string text = "WLAN";
    EXPECT_EQ(ToLower(text), "wlan");
    EXPECT_EQ(text, "WLAN");
}

TEST(ToLower, takes_every_byte)
{
    for (int byte = 0; byte < 256; ++byte) {
        const std::string text = { 'A', static_cast<char>(byte), 'B' };
        const std::string lowered = { 'a', static_cast<char>(std::tolower(byte)), 'b' };
        EXPECT_EQ(ToLower(text), lowered) << byte;
    }
}

TEST(ToLower, traces_its_result)
{
    DebugCapture debug;
    ToLower("WLAN");
    EXPECT_EQ(debug.Count("-> stringutil::ToLower"), 1U);
    EXPECT_EQ(debug.Count("<- stringutil::ToLower [returning \"wlan\"]"), 1U);
}

TEST(HexStrToInt, reads_with_and_without_prefix_in_either_case)
{
    EXPECT_EQ(HexStrToInt("0x1f"), 31U);
    EXPECT_EQ(HexStrToInt("0X1F"), 31U);
    EXPECT_EQ(HexStrToInt("1F"), 31U);
    EXPECT_EQ(HexStrToInt("ffffffff"), 0xFFFFFFFFU);
}

TEST(HexStrToInt, reads_signs_and_leading_blanks_as_a_stream_does)
{
    EXPECT_EQ(HexStrToInt(" \t1f"), 31U);
    EXPECT_EQ(HexStrToInt("+1f"), 31U);
    EXPECT_EQ(HexStrToInt("-1"), 0xFFFFFFFFU);
}

TEST(HexStrToInt, stops_at_what_cannot_belong_to_the_number)
{
    EXPECT_EQ(HexStrToInt("1Fz"), 31U);
    EXPECT_EQ(HexStrToInt("1F 2"), 31U);
    EXPECT_EQ(HexStrToInt("1F,2"), 31U);
    EXPECT_EQ(HexStrToInt(std::string("1F\0002", 4)), 31U);
}

TEST(HexStrToInt, gives_zero_where_there_is_no_number_or_it_does_not_fit)
{
    for (const char * text : { "", "zz", "0x", "0xz", " ", "-", "100000000", "fffffffffffffffffffff" })
        EXPECT_EQ(HexStrToInt(text), 0U) << text;
}

TEST(HexStrToInt, is_not_touched_by_a_grouping_locale)
{
    const GroupingLocale grouping;
    EXPECT_EQ(HexStrToInt("12ab"), 0x12ABU);
    EXPECT_EQ(HexStrToInt("1,2"), 1U);
}

TEST(StringToInteger, reads_decimal_hexadecimal_and_octal)
{
    EXPECT_EQ(Convert("10"), (Converted{ true, 10 }));
    EXPECT_EQ(Convert("0x10"), (Converted{ true, 16 }));
    EXPECT_EQ(Convert("010"), (Converted{ true, 8 }));
    EXPECT_EQ(Convert("-0x10"), (Converted{ true, -16 }));
    EXPECT_EQ(Convert(" +7"), (Converted{ true, 7 }));
    EXPECT_EQ(Convert("0"), (Converted{ true, 0 }));
}

TEST(StringToInteger, leaves_the_value_alone_for_an_empty_text)
{
    EXPECT_EQ(Convert(""), (Converted{ false, UNTOUCHED }));
}

TEST(StringToInteger, writes_what_it_could_read_also_on_failure)
{
    EXPECT_EQ(Convert("12a"), (Converted{ false, 12 }));
    EXPECT_EQ(Convert("12 "), (Converted{ false, 12 }));
    EXPECT_EQ(Convert("abc"), (Converted{ false, 0 }));
    EXPECT_EQ(Convert(" "), (Converted{ false, 0 }));
    EXPECT_EQ(Convert("0x"), (Converted{ false, 0 }));
    EXPECT_EQ(Convert("08"), (Converted{ false, 0 }));
}

TEST(StringToInteger, does_not_end_at_an_embedded_null)
{
    EXPECT_EQ(Convert(std::string("12\0", 3)), (Converted{ false, 12 }));
    EXPECT_EQ(Convert(std::string("\0", 1)), (Converted{ false, 0 }));
}

TEST(StringToInteger, has_the_range_of_32_bits)
{
    constexpr auto MAX = std::numeric_limits<std::int32_t>::max();
    constexpr auto MIN = std::numeric_limits<std::int32_t>::min();
    EXPECT_EQ(Convert("2147483646"), (Converted{ true, MAX - 1 }));
    EXPECT_EQ(Convert("2147483647"), (Converted{ true, MAX }));
    EXPECT_EQ(Convert("2147483648"), (Converted{ false, MAX }));
    EXPECT_EQ(Convert("4294967296"), (Converted{ false, MAX }));
    EXPECT_EQ(Convert("99999999999999999999"), (Converted{ false, MAX }));
    EXPECT_EQ(Convert("0x80000000"), (Converted{ false, MAX }));
    EXPECT_EQ(Convert("-2147483647"), (Converted{ true, MIN + 1 }));
    EXPECT_EQ(Convert("-2147483648"), (Converted{ true, MIN }));
    EXPECT_EQ(Convert("-2147483649"), (Converted{ false, MIN }));
    EXPECT_EQ(Convert("-99999999999999999999"), (Converted{ false, MIN }));
}

TEST(StringToInteger, tells_a_number_out_of_range_by_errno)
{
    for (const char * text : { "2147483648", "-2147483649", "99999999999999999999" }) {
        errno = 0;
        Convert(text);
        EXPECT_EQ(errno, ERANGE) << text;
    }
}

TEST(StringToInteger, is_not_misled_by_an_old_errno)
{
    errno = ERANGE;
    EXPECT_EQ(Convert("5"), (Converted{ true, 5 }));
    EXPECT_EQ(errno, 0);
}

TEST(StringToInteger, traces_a_success_only)
{
    DebugCapture debug;
    Convert("0x10");
    EXPECT_THAT(debug.TextsOf("stringutil::StringToInteger", 1),
        ElementsAre("Converted string \"0x10\" to integer \"16\""));
    EXPECT_EQ(debug.Count("<- stringutil::StringToInteger [returning true]"), 1U);

    debug.Forget();
    Convert("12a");
    Convert("");
    EXPECT_THAT(debug.TextsOf("stringutil::StringToInteger", 1), IsEmpty());
    EXPECT_EQ(debug.Count("<- stringutil::StringToInteger [returning false]"), 2U);
}

TEST(DecimalToInt, reads_as_atoi_does_within_32_bits)
{
    for (const char * text : { "", "0", "7", "-7", "+7", "  42", "\t\n\v\f\r42", "42 ", "42abc", "abc", "-",
             "+", "--1", "+-1", "-+1", "- 1", "010", "0x10", " -0012x", "1.5", "1,234", "2147483647",
             "-2147483648", "00000000000000000000000012" })
        EXPECT_EQ(DecimalToInt(text), std::atoi(text)) << text;
}

TEST(DecimalToInt, keeps_the_low_32_bits_of_what_lies_outside)
{
    EXPECT_EQ(static_cast<std::uint32_t>(DecimalToInt("4294967295")), 4294967295U);
    EXPECT_EQ(DecimalToInt("2147483648"), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(DecimalToInt("-2147483649"), std::numeric_limits<std::int32_t>::max());
    EXPECT_EQ(DecimalToInt("4294967296"), 0);
    EXPECT_EQ(DecimalToInt("4294967301"), 5);
    EXPECT_EQ(DecimalToInt("-4294967301"), -5);
}

TEST(DecimalToInt, stops_at_the_limits_of_64_bits)
{
    EXPECT_EQ(DecimalToInt("9223372036854775806"), -2);
    EXPECT_EQ(DecimalToInt("9223372036854775807"), -1);
    EXPECT_EQ(DecimalToInt("9223372036854775808"), -1);
    EXPECT_EQ(DecimalToInt("18446744073709551615"), -1);
    EXPECT_EQ(DecimalToInt("99999999999999999999999999"), -1);
    EXPECT_EQ(DecimalToInt("-9223372036854775807"), 1);
    EXPECT_EQ(DecimalToInt("-9223372036854775808"), 0);
    EXPECT_EQ(DecimalToInt("-9223372036854775809"), 0);
    EXPECT_EQ(DecimalToInt("-99999999999999999999999999"), 0);
}

TEST(DecimalToInt, looks_at_its_text_alone)
{
    EXPECT_EQ(DecimalToInt(std::string_view("123456", 3)), 123);
    EXPECT_EQ(DecimalToInt(std::string_view("1\0002", 3)), 1);
    EXPECT_EQ(DecimalToInt({}), 0);
}

}   // namespace
}   // namespace stringutil
