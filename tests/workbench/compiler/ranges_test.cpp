/// The compiler on numbers that don't fit: what is wrong is found at its place, and a right neighbour passes without a word.

#include "rule.h"

namespace workbench::compiler::test {

namespace {

const std::vector<Rule> RULES = {
    Rule{ "a_minimum_above_the_maximum", Keys(R"({ id = 1, name = "A", type = "uint8", range = [6, 5] })"),
        { "1.toml:10:47: error: \"range\": the minimum 6 is above the maximum 5" },
        Keys(R"({ id = 1, name = "A", type = "uint8", range = [5, 5] })") },
    Rule{ "a_maximum_beyond_the_type", Keys(R"({ id = 1, name = "A", type = "int8", range = [-128, 128] })"),
        { "1.toml:10:46: error: \"range\": -128 to 128 doesn't fit int8: -128 to 127" },
        Keys(R"({ id = 1, name = "A", type = "int8", range = [-128, 127] })") },
    Rule{ "a_minimum_below_an_unsigned_type",
        Keys(R"({ id = 1, name = "A", type = "uint16", range = [-1, 1] })"),
        { "1.toml:10:48: error: \"range\": -1 to 1 doesn't fit uint16: 0 to 65535" },
        Keys(R"({ id = 1, name = "A", type = "uint16", range = [0, 1] })") },
    Rule{ "a_number_above_signed_64_bits_for_a_signed_type",
        Keys(R"({ id = 1, name = "A", type = "int64", range = [0, "9223372036854775808"] })"),
        { "1.toml:10:47: error: \"range\": 0 to 9223372036854775808 doesn't fit int64: -9223372036854775808 to "
          "9223372036854775807" },
        Keys(R"({ id = 1, name = "A", type = "uint64", range = [0, "9223372036854775808"] })") },
    Rule{ "a_range_beyond_the_width_of_a_field", Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "uint8", position = 0, width = 4, range = [0, 16] }
] })"),
        { "1.toml:11:64: error: \"range\": 0 to 16 doesn't fit 4 bits of uint8: 0 to 15" },
        Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "uint8", position = 0, width = 4, range = [0, 15] }
] })") },
    Rule{ "a_range_beyond_the_width_of_a_signed_field", Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "int8", position = 0, width = 4, range = [-8, 8] }
] })"),
        { "1.toml:11:63: error: \"range\": -8 to 8 doesn't fit 4 bits of int8: -8 to 7" },
        Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "int8", position = 0, width = 4, range = [-8, 7] }
] })") },
    Rule{ "an_enumerator_beyond_the_width", Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "enum", position = 0, width = 2, values = { X = 3, Y = 4 } }
] })"),
        { "1.toml:11:77: error: the enumerator \"Y\", 4, doesn't fit 2 bits: 0 to 3" },
        Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "enum", position = 0, width = 3, values = { X = 3, Y = 4 } }
] })") },
    Rule{ "a_negative_enumerator_without_a_sign", Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "enum", position = 0, width = 2, values = { X = -1 } }
] })"),
        { "1.toml:11:70: error: the enumerator \"X\", -1, doesn't fit 2 bits: 0 to 3" },
        Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "enum", position = 0, width = 2, format = "signed_decimal", values = { X = -1 } }
] })") },
    Rule{ "a_length_beyond_the_width", Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "octet_string", length = 3, position = 0, width = 16 },
{ name = "y", type = "uint8", position = 0 }
] })"),
        { "1.toml:11:47: error: \"length\": 3 bytes don't fit 16 bits" },
        Keys(R"({ id = 1, name = "A", type = "octet_string", length = 3 })") },
    Rule{ "a_length_beyond_16_bits", Keys(R"({ id = 1, name = "A", type = "string", length = [0, 65536] })"),
        { "1.toml:10:49: error: \"length\": 0 to 65536 bytes; expected 0 to 65535" },
        Keys(R"({ id = 1, name = "A", type = "string", length = [0, 65535] })") },
    Rule{ "an_index_beyond_eight_digits",
        Keys(R"({ id = 1, name = "A", type = "uint8", index = [{ name = "I", range = [0, 100_000_000] }] })"),
        { "1.toml:10:70: error: \"range\": 0 to 100000000 doesn't fit an index; expected 0 to 99999999" },
        Keys(R"({ id = 1, name = "A", type = "uint8", index = [{ name = "I", range = [0, 99_999_999] }] })") },
    Rule{ "an_index_enumerator_below_0",
        Keys(R"({ id = 1, name = "A", type = "uint8", index = [{ name = "I", values = { X = -1 } }] })"),
        { "1.toml:10:77: error: \"X\": -1 is out of range; expected 0 to 99999999" },
        Keys(R"({ id = 1, name = "A", type = "uint8", index = [{ name = "I", values = { X = 0 } }] })") },
    Rule{ "a_key_number_of_0", Keys(R"({ id = 0, name = "A", type = "uint8" })"),
        { "1.toml:10:8: error: \"id\": 0 is out of range; expected 1 to 4294967295" },
        Keys(R"({ id = 0xFFFF_FFFF, name = "A", type = "uint8" })") },
    Rule{ "a_chip_number_beyond_16_bits", Sources{ R"([system]
name = "small"
[[chip]]
name = "c"
label = "c"
id = 65536
[[subsystem]]
name = "bt"
)" },
        { "1.toml:6:6: error: \"id\": 65536 is out of range; expected 0 to 65535" }, Sources{ R"([system]
name = "small"
[[chip]]
name = "c"
label = "c"
id = 65535
[[subsystem]]
name = "bt"
)" } },
    Rule{ "fuses_of_more_than_16_bits", Sources{ R"([system]
name = "small"
[[chip]]
name = "c"
label = "c"
id = 1
fuses = 65536
[[subsystem]]
name = "bt"
)" },
        { "1.toml:7:9: error: \"fuses\": 65536 is out of range; expected 0 to 65535" }, Sources{ R"([system]
name = "small"
[[chip]]
name = "c"
label = "c"
id = 1
fuses = 65535
[[subsystem]]
name = "bt"
)" } },
    Rule{ "fuses_in_words", Sources{ R"([system]
name = "small"
[[chip]]
name = "c"
label = "c"
id = 1
fuses = "many"
[[subsystem]]
name = "bt"
)" },
        { "1.toml:7:9: error: \"fuses\": expected a whole number from 0 to 65535, or \"several\", found a "
          "text" },
        Sources{ R"([system]
name = "small"
[[chip]]
name = "c"
label = "c"
id = 1
fuses = "several"
[[subsystem]]
name = "bt"
)" } },
    Rule{ "ten_indices", Keys(R"({ id = 1, name = "A", type = "uint8", index = [
{ name = "I0", range = [0, 1] },
{ name = "I1", range = [0, 1] },
{ name = "I2", range = [0, 1] },
{ name = "I3", range = [0, 1] },
{ name = "I4", range = [0, 1] },
{ name = "I5", range = [0, 1] },
{ name = "I6", range = [0, 1] },
{ name = "I7", range = [0, 1] },
{ name = "I8", range = [0, 1] },
{ name = "I9", range = [0, 1] }] })"),
        { "1.toml:20:1: error: a table has 9 indices at most" },
        Keys(R"({ id = 1, name = "A", type = "uint8", index = [
{ name = "I0", range = [0, 1] },
{ name = "I1", range = [0, 1] },
{ name = "I2", range = [0, 1] },
{ name = "I3", range = [0, 1] },
{ name = "I4", range = [0, 1] },
{ name = "I5", range = [0, 1] },
{ name = "I6", range = [0, 1] },
{ name = "I7", range = [0, 1] },
{ name = "I8", range = [0, 1] }] })") },
    Rule{ "an_array_of_too_many_items", Keys(R"({ id = 1, name = "A", type = "uint8", array = [1, 65537] })"),
        { "1.toml:10:47: error: \"array\": 1 to 65537 items; expected 0 to 65536" },
        Keys(R"({ id = 1, name = "A", type = "uint8", array = [1, 65536] })") },
    Rule{ "an_unsigned_integer_of_64_bits_beyond_what_a_record_keeps",
        Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "integer", format = "unsigned_decimal", position = 0, width = 63, range = [0, "9223372036854775808"] }
] })"),
        { "1.toml:11:96: error: \"range\": 0 to 9223372036854775808 doesn't fit 63 bits of integer: 0 to "
          "9223372036854775807" },
        Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "integer", format = "unsigned_decimal", position = 0, width = 63, range = [0, 9223372036854775807] }
] })") },
    Rule{ "a_range_of_a_field_above_64_bits", Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "integer", position = 0, width = 80, range = [0, 1] }
] })"),
        { "1.toml:11:67: error: \"range\": a field of more than 64 bits has none" },
        Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "integer", position = 0, width = 80 }
] })") },
};

class Ranges : public RuleTest
{};

}   // namespace

TEST_P(Ranges, is_found_at_its_place)
{
    ExpectFound();
}

TEST_P(Ranges, has_a_right_neighbour_that_passes)
{
    ExpectNeighbourPasses();
}

INSTANTIATE_TEST_SUITE_P(Compiler, Ranges, testing::ValuesIn(RULES), &NameOf);

}   // namespace workbench::compiler::test
