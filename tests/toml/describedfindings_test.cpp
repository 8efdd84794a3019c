// What is wrong with keys that metadata describe, told with place, key, value and what the metadata allow.

#include "described_support.h"

#include <gmock/gmock.h>

namespace {

using namespace VrexZynConfigTools;
using namespace VrexZynConfigTools::support;

struct FindingCase
{
    std::string mText;
    std::string mError;
};

std::ostream & operator<<(std::ostream & stream, const FindingCase & finding)
{
    return stream << finding.mError.substr(0, finding.mError.find('\n'));
}

FindingCase OfKey(const std::string & fields, const std::string & error)
{
    return { ADescribedKey(fields), error };
}

// The value stands in line 7, column 32.
FindingCase OfFit(const std::string & value, const std::string & error)
{
    return { ADescribedKey("name = 'Fit', value = { " + value + " }"), error };
}

class DescribedFindings : public DescribedTest, public ::testing::WithParamInterface<FindingCase>
{};

TEST_P(DescribedFindings, tell_place_key_value_and_expectation)
{
    EXPECT_EQ(ErrorOf(GetParam().mText), GetParam().mError) << GetParam().mText;
}

INSTANTIATE_TEST_SUITE_P(OfTheChip, DescribedFindings,
    ::testing::Values(FindingCase{ "chip = 'abx'", "1:8: unknown chip \"abx\"; did you mean \"abc\"?" },
        FindingCase{ "chip = 'other chip'", "1:8: unknown chip \"other chip\"; expected \"abc\" or \"abd\"" },
        FindingCase{ // Nothing is said of keys then, for nothing is known of them.
            "chip = 'abx'\n[[subsystem]]\ntype = 'bt'\ndevice = 'otp'\nstore = 1\nkey = [{ id = 7, value = 1 "
            "}]",
            "1:8: unknown chip \"abx\"; did you mean \"abc\"?" }));

INSTANTIATE_TEST_SUITE_P(OfTheKey, DescribedFindings,
    ::testing::Values(OfKey("value = 1", "7:8: \"name\" is missing: a key has a name or a number"),
        OfKey("name = 'Volume'", "7:8: \"value\" is missing: a key has a value"),
        OfKey("name = 'Volme', value = 1", "7:17: unknown key \"Volme\"; did you mean \"Volume\"?"),
        OfKey("name = 'Xyz', value = 1", "7:17: unknown key \"Xyz\""),
        OfKey("name = 'Elsewhere', value = 1", "7:17: unknown key \"Elsewhere\""),
        OfKey("name = 1, value = 1",
            "7:17: \"name\": expected a text or { hex = \"...\" }, found a whole number"),
        OfKey("id = 7, value = 1", "7:15: unknown key 7"),
        OfKey("id = 0, value = 1", "7:15: \"id\": 0 is out of range; expected 1 to 4294967295"),
        OfKey("id = 7, name = 'Volume', value = 1", "7:15: unknown key 7; \"Volume\" has the number 16"),
        OfKey("id = 7, name = 'Xyz', value = 1", "7:15: unknown key 7"),
        OfKey("id = 17, name = 'Volume', value = 1",
            "7:26: \"name\": the key 17 is called \"Mode\", not \"Volume\""),
        OfKey("name = 'Volume', vale = 1", "7:8: \"value\" is missing: a key has a value\n"
                                           "7:27: unknown field \"vale\" in a key; did you mean \"value\"?")));

INSTANTIATE_TEST_SUITE_P(OfNumbers, DescribedFindings,
    ::testing::Values(
        OfKey("name = 'Volume', value = 101", "7:35: \"Volume\": 101 is out of range; expected 0 to 100"),
        OfKey("name = 'Volume', value = 300", "7:35: \"Volume\": 300 is out of range; expected 0 to 100"),
        OfKey("name = 'Volume', value = -1", "7:35: \"Volume\": -1 is out of range; expected 0 to 100"),
        OfKey("id = 16, value = 0x1_0000_0001",
            "7:27: \"Volume\": 4294967297 is out of range; expected 0 to 100"),
        OfKey("name = 'Volume', value = 'x'",
            "7:35: \"Volume\": expected a whole number from 0 to 100, found a text"),
        OfKey("name = 'Volume', value = 1.5",
            "7:35: \"Volume\": expected a whole number from 0 to 100, found a number with a fraction"),
        OfKey("name = 'Volume', value = [1]",
            "7:35: \"Volume\": expected a whole number from 0 to 100, found an array"),
        OfKey("name = 'Serial', value = 4",
            "7:35: \"Serial\": 4 is out of range; expected 5 to 18446744073709551614"),
        OfKey("name = 'Serial', value = '18446744073709551615'",
            "7:35: \"Serial\": 18446744073709551615 is out of range; expected 5 to 18446744073709551614"),
        OfKey("name = 'Serial', value = -1",
            "7:35: \"Serial\": -1 is out of range; expected 5 to 18446744073709551614"),
        OfKey("name = 'Serial', value = '18446744073709551616'",
            "7:35: \"Serial\": expected a whole number from 5 to 18446744073709551614, found "
            "\"18446744073709551616\""),
        OfKey("name = 'Curve', value = [101, 0, -101, 'x']",
            "7:35: \"Curve\": 101 is out of range; expected -100 to 100\n"
            "7:43: \"Curve\": -101 is out of range; expected -100 to 100\n"
            "7:49: \"Curve\": expected a whole number from -100 to 100, found a text"),
        OfKey("name = 'Curve', value = []", "7:34: \"Curve\": found 0 values; expected 2 to 4"),
        OfKey("name = 'Curve', value = 1", "7:34: \"Curve\": found 1 value; expected 2 to 4"),
        OfKey("name = 'Curve', value = [1, 2, 3, 4, 5]", "7:34: \"Curve\": found 5 values; expected 2 to 4"),
        OfKey("name = 'Offset', value = true",
            "7:35: \"Offset\": expected a whole number from -9223372036854775808 to 9223372036854775807, found "
            "a boolean")));

INSTANTIATE_TEST_SUITE_P(OfTextsAndEnumerators, DescribedFindings,
    ::testing::Values(OfKey("name = 'Title', value = ''", "7:34: \"Title\": found 0 bytes; expected 1 to 8"),
        OfKey("name = 'Title', value = 'much too long'", "7:34: \"Title\": found 13 bytes; expected 1 to 8"),
        OfKey("name = 'Title', value = 5",
            "7:34: \"Title\": expected a text or { hex = \"...\" }, found a whole number"),
        OfKey("name = 'Address', value = '01'", "7:36: \"Address\": found 1 byte; expected 2 to 6"),
        OfKey("name = 'Fingerprint', value = '01'", "7:40: \"Fingerprint\": found 1 byte; expected 4"),
        OfKey("name = 'Address', value = 'xyz'",
            "7:36: \"Address\": expected pairs of hexadecimal digits, found \"xyz\""),
        OfKey("name = 'Mode', value = 'LOUT'",
            "7:33: \"Mode\": unknown enumerator \"LOUT\"; did you mean \"LOUD\"?"),
        OfKey("name = 'Mode', value = 'on'", "7:33: \"Mode\": unknown enumerator \"on\"; did you mean \"ON\"?"),
        OfKey("name = 'Mode', value = 'sideways'",
            "7:33: \"Mode\": unknown enumerator \"sideways\"; expected \"LOUD\", \"OFF\", \"ON\" or \"STILL\""),
        OfKey("name = 'Mode', value = ''",
            "7:33: \"Mode\": unknown enumerator \"\"; expected \"LOUD\", \"OFF\", \"ON\" or \"STILL\""),
        OfKey("name = 'Mode', value = 7",
            "7:33: \"Mode\": no enumerator has the number 7; expected \"LOUD\", \"OFF\", \"ON\" or \"STILL\""),
        OfKey("name = 'Mode', value = 9",   // it has one, without a name
            "7:33: \"Mode\": no enumerator has the number 9; expected \"LOUD\", \"OFF\", \"ON\" or \"STILL\""),
        OfKey("name = 'Mode', value = 4294967296", "7:33: \"Mode\": no enumerator has the number 4294967296; "
                                                   "expected \"LOUD\", \"OFF\", \"ON\" or \"STILL\""),
        OfKey("name = 'Mode', value = false",
            "7:33: \"Mode\": expected an enumerator by name or number, found a boolean")));

INSTANTIATE_TEST_SUITE_P(OfStructures, DescribedFindings,
    ::testing::Values(OfKey("name = 'Fit', value = 5",
                          "7:32: \"Fit\": expected a structure { FIELD = VALUE, ... }, found a whole number"),
        OfKey("name = 'Fit', value = [{}]",
            "7:32: \"Fit\": expected a structure { FIELD = VALUE, ... }, found an array"),
        OfFit("Gain = 8, Gian = 1, Kind = 'RIGHTS', Bands = [1, 10], Points = 1",
            "7:32: \"Inner\" is missing: a field of \"Fit\"\n"
            "7:41: \"Fit.Gain\": 8 is out of range; expected -8 to 7\n"
            "7:44: unknown field \"Gian\" in \"Fit\"; did you mean \"Gain\"?\n"
            "7:61: \"Fit.Kind\": unknown enumerator \"RIGHTS\"; did you mean \"RIGHT\"?\n"
            "7:79: \"Fit.Bands\": found 2 values; expected 3\n"
            "7:97: \"Fit.Points\": found 1 value; expected 2"),
        OfFit("Gain = 1, Kind = 'LEFT', Bands = [10, 1, -10], Inner = { Low = 4096, Hgh = 1 }, "
              "Points = [{ X = 10, Y = 1 }, 5]",
            "7:68: \"Fit.Bands\": 10 is out of range; expected -9 to 9\n"
            "7:75: \"Fit.Bands\": -10 is out of range; expected -9 to 9\n"
            "7:89: \"High\" is missing: a field of \"Fit.Inner\"\n"
            "7:97: \"Fit.Inner.Low\": 4096 is out of range; expected 0 to 4095\n"
            "7:103: unknown field \"Hgh\" in \"Fit.Inner\"; did you mean \"High\"?\n"
            "7:130: \"Fit.Points.X\": 10 is out of range; expected 0 to 9\n"
            "7:143: \"Fit.Points\": expected a structure { FIELD = VALUE, ... }, found a whole number"),
        OfKey("name = 'Profiles', value = []", "7:37: \"Profiles\": found 0 values; expected 1 to 3"),
        OfKey("name = 'Profiles', value = [{}, {}, {}, {}]",
            "7:37: \"Profiles\": found 4 values; expected 1 to 3"),
        OfKey("name = 'Profiles', value = [{ Level = 10, Steps = [1, 2] }, { Level = 1, Steps = [1, 2, 3] }]",
            "7:48: \"Profiles.Level\": 10 is out of range; expected 0 to 9\n"
            "7:91: \"Profiles.Steps\": found 3 values; expected 2"),
        OfKey("name = 'Label', value = { Id = '01 02', Tag = 'abcd' }",
            "7:41: \"Label.Id\": expected 12 bytes, found 2"),
        OfKey("name = 'Label', value = { Id = '01 02 03 04 05 06 07 08 09 0a 0b 0c 0d', Tag = 'abcde' }",
            "7:41: \"Label.Id\": found 13 bytes; expected 0 to 12\n"
            "7:89: \"Label.Tag\": found 5 bytes; expected 0 to 4")));

INSTANTIATE_TEST_SUITE_P(OfTableRows, DescribedFindings,
    ::testing::Values(
        OfKey("name = 'GainTrim', value = 1",
            "7:8: \"index\" is missing: \"GainTrim\" is a table with 2 indices, \"channel\", \"band\""),
        OfKey("name = 'GainTrim', value = 1, index = 3",
            "7:48: \"index\": found 1; \"GainTrim\" is a table with 2 indices, \"channel\", \"band\""),
        OfKey("name = 'GainTrim', value = 10, index = [9, 'LO']",
            "7:37: \"GainTrim\": 10 is out of range; expected -9 to 9\n"
            "7:50: \"index\": 9 is out of range for the index \"channel\"; expected 1 to 8\n"
            "7:53: \"index\": unknown band \"LO\"; did you mean \"LOW\"?"),
        OfKey("name = 'GainTrim', value = 1, index = ['x', 2]",
            "7:49: \"index\": expected a whole number for the index \"channel\", found a text\n"
            "7:54: \"index\": no band has the number 2; expected \"HIGH\" or \"LOW\""),
        OfKey("name = 'GainTrim', value = 1, index = [1, true]",
            "7:52: \"index\": expected a name or number for the index \"band\", found a boolean"),
        OfKey("name = 'Volume', value = 1, index = 2", "7:46: \"index\": \"Volume\" is no table")));

INSTANTIATE_TEST_SUITE_P(OfKeysWithAType, DescribedFindings,
    ::testing::Values(
        OfKey("id = 16, type = 'uint16', value = 1", "7:26: the type \"uint16\" contradicts the metadata, by "
                                                     "which \"Volume\" is \"uint8\"; leave the type "
                                                     "out, or correct it"),
        OfKey("name = 'Mode', type = 'uint8', value = 1",
            "7:32: the type \"uint8\" contradicts the metadata, by which \"Mode\" is \"enum\"; leave the type "
            "out, or correct it"),
        OfKey("name = 'Fit', type = 'raw', value = [{ uint8 = 256 }]",
            "7:57: \"value\": 256 is out of range for uint8; expected 0 to 255"),
        OfKey("name = 'Volme', type = 'uint8', value = 1",
            "7:17: unknown key \"Volme\"; did you mean \"Volume\"?")));

TEST_F(DescribedTest, findings_of_several_keys_come_in_the_order_of_the_file)
{
    EXPECT_EQ(ErrorOf(HEAD + "[[subsystem.key]]\nvalue = 101\nname = 'Volume'\n"
                             "[[subsystem.key]]\nvalue = 1\nid = 16\ntype = 'int8'\n"
                             "[[subsystem.key]]\nvalue = 'X'\nname = 'Mode'\n"),
        "8:9: \"Volume\": 101 is out of range; expected 0 to 100\n"
        "13:8: the type \"int8\" contradicts the metadata, by which \"Volume\" is \"uint8\"; leave the type "
        "out, or "
        "correct it\n"
        "15:9: \"Mode\": unknown enumerator \"X\"; expected \"LOUD\", \"OFF\", \"ON\" or \"STILL\"");
}

TEST_F(DescribedTest, nothing_is_delivered_with_one_finding_in_the_last_key)
{
    ReadChip chip;
    chip.Use(&mProvider);
    EXPECT_FALSE(chip.Read(Put(HEAD + "key = [{ id = 16, value = 1 }, { id = 16, value = 101 }]")));
    EXPECT_TRUE(chip.Chip().Subsystems().empty());
}

TEST_F(DescribedTest, a_provider_that_fails_is_one_finding)
{
    mProvider.FailWith("the repository burns");
    EXPECT_EQ(ErrorOf(HEAD + "key = [{ id = 16, value = 1 }, { name = 'Mode', value = 1 }]"),
        "1:8: the metadata can't be read: the repository burns");
    EXPECT_EQ(ErrorOf("chip = ''\n[[subsystem]]\ntype = 'bt'\ndevice = 'otp'\nstore = 1\n"
                      "key = [{ id = 16, value = 1 }, { name = 'Mode', value = 1 }]"),
        "6:15: the metadata can't be read: the repository burns");
}

}   // namespace
