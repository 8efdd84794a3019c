/// The compiler on default values: what is wrong is found at its place, and a right neighbour passes without a word.

#include "rule.h"

namespace workbench::compiler::test {

namespace {

const std::vector<Rule> RULES = {
    Rule{ "the_last_word_of_a_wide_field", Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "integer", position = 0, width = 70 }
], default = { x = [65535, 1, 2, 3, 64] } })"),
        { "1.toml:11:44: warning: the device format doesn't carry \"x\" back unchanged: "
          "[65535, 65535, 65535, 65535, 63] comes back as [65535, 65535, 65535, 65535]",
            "1.toml:12:37: error: \"x\": 64 is out of range; expected 0 to 63" },
        Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "integer", position = 0, width = 80 }
], default = { x = [65535, 1, 2, 3, 65535] } })") },
    Rule{ "a_value_that_does_not_come_back",
        Keys(
            R"({ id = 1, name = "A", type = "struct", default = { x = [{ y = 0 }, { y = 5 }], z = "B" }, field = [
{ name = "x", type = "struct", array = 2, position = 0, field = [{ name = "y", type = "uint64", position = 0 }] },
{ name = "z", type = "enum", position = 128, width = 16, values = { A = 0, B = 1 } }
] })"),
        { "1.toml:10:74: error: \"x[1].y\": the value 5 comes back as 0, as a field of exactly 64 bits is "
          "unpacked as 0",
            "1.toml:11:108: warning: the device format doesn't carry \"y\" back unchanged: "
            "18446744073709551615 comes back as 0" },
        Keys(
            R"({ id = 1, name = "A", type = "struct", default = { x = [{ y = 0 }, { y = 5 }], z = "B" }, field = [
{ name = "x", type = "struct", array = 2, position = 0, field = [{ name = "y", type = "uint32", position = 0 }] },
{ name = "z", type = "enum", position = 128, width = 16, values = { A = 0, B = 1 } }
] })") },
    Rule{ "a_number_out_of_range",
        Keys(R"({ id = 1, name = "A", type = "uint8", range = [0, 9], default = 10 })"),
        { "1.toml:10:65: error: \"A\": 10 is out of range; expected 0 to 9" },
        Keys(R"({ id = 1, name = "A", type = "uint8", range = [0, 9], default = 9 })") },
    Rule{ "a_text_for_a_number", Keys(R"({ id = 1, name = "A", type = "uint8", default = "x" })"),
        { "1.toml:10:49: error: \"A\": expected a whole number, found a text" },
        Keys(R"({ id = 1, name = "A", type = "uint8", default = 1 })") },
    Rule{ "an_array_for_a_number", Keys(R"({ id = 1, name = "A", type = "uint8", default = [1] })"),
        { "1.toml:10:49: error: \"A\": expected a whole number, found an array" },
        Keys(R"({ id = 1, name = "A", type = "uint8", array = 1, default = [1] })") },
    Rule{ "a_number_for_an_array", Keys(R"({ id = 1, name = "A", type = "uint8", array = 1, default = 1 })"),
        { "1.toml:10:60: error: \"default\": expected an array, found a whole number" },
        Keys(R"({ id = 1, name = "A", type = "uint8", default = 1 })") },
    Rule{ "too_few_items", Keys(R"({ id = 1, name = "A", type = "uint8", array = [2, 3], default = [1] })"),
        { "1.toml:10:65: error: \"default\": 1 items; expected 2 to 3" },
        Keys(R"({ id = 1, name = "A", type = "uint8", array = [2, 3], default = [1, 2] })") },
    Rule{ "a_text_that_is_too_long",
        Keys(R"({ id = 1, name = "A", type = "string", length = [0, 3], default = "Käse" })"),
        { "1.toml:10:67: error: \"A\": a length of 5 bytes is out of range; expected 0 to 3" },
        Keys(R"({ id = 1, name = "A", type = "string", length = [0, 5], default = "Käse" })") },
    Rule{ "octets_that_are_none",
        Keys(R"({ id = 1, name = "A", type = "octet_string", length = 2, default = "02 4" })"),
        { "1.toml:10:68: error: \"A\": \"02 4\" is no row of hexadecimal pairs" },
        Keys(R"({ id = 1, name = "A", type = "octet_string", length = 2, default = "02 4e" })") },
    Rule{ "an_unknown_enumerator",
        Keys(R"({ id = 1, name = "A", type = "enum", values = { ON = 1, OFF = 0 }, default = "OF" })"),
        { "1.toml:10:78: error: unknown enumerator \"OF\"; did you mean \"ON\"?" },
        Keys(R"({ id = 1, name = "A", type = "enum", values = { ON = 1, OFF = 0 }, default = "OFF" })") },
    Rule{ "a_number_that_no_enumerator_has",
        Keys(R"({ id = 1, name = "A", type = "enum", values = { ON = 1, OFF = 0 }, default = 2 })"),
        { "1.toml:10:78: error: \"A\": no enumerator has the number 2; expected \"ON\" or \"OFF\"" },
        Keys(R"({ id = 1, name = "A", type = "enum", values = { ON = 1, OFF = 0 }, default = 1 })") },
    Rule{ "a_field_without_a_value",
        Keys(R"({ id = 1, name = "A", type = "struct", default = { x = 1 }, field = [
{ name = "x", type = "uint8", position = 0 },
{ name = "y", type = "uint8", position = 8 }
] })"),
        { "1.toml:10:50: error: the field \"y\" has no value" },
        Keys(R"({ id = 1, name = "A", type = "struct", default = { y = 2, x = 1 }, field = [
{ name = "x", type = "uint8", position = 0 },
{ name = "y", type = "uint8", position = 8 }
] })") },
    Rule{ "an_unknown_field",
        Keys(R"({ id = 1, name = "A", type = "struct", default = { level = 1, levle = 2 }, field = [
{ name = "level", type = "uint8", position = 0 }
] })"),
        { "1.toml:10:63: error: unknown field \"levle\"; did you mean \"level\"?" },
        Keys(R"({ id = 1, name = "A", type = "struct", default = { level = 1 }, field = [
{ name = "level", type = "uint8", position = 0 }
] })") },
    Rule{ "a_field_out_of_range",
        Keys(R"({ id = 1, name = "A", type = "struct", default = { x = { y = 10 } }, field = [
{ name = "x", type = "struct", position = 0, field = [{ name = "y", type = "uint8", position = 0, range = [0, 9] }] }
] })"),
        { "1.toml:10:62: error: \"y\": 10 is out of range; expected 0 to 9" },
        Keys(R"({ id = 1, name = "A", type = "struct", default = { x = { y = 9 } }, field = [
{ name = "x", type = "struct", position = 0, field = [{ name = "y", type = "uint8", position = 0, range = [0, 9] }] }
] })") },
    Rule{ "a_row_with_too_few_indices",
        Keys(
            R"({ id = 1, name = "A", type = "uint8", index = [{ name = "I", range = [1, 2] }, { name = "J", values = { L = 0, R = 1 } }], default = [{ index = 1, value = 1 }] })"),
        { "1.toml:10:145: error: \"index\": expected as many indices as the key has, 2, found 1" },
        Keys(
            R"({ id = 1, name = "A", type = "uint8", index = [{ name = "I", range = [1, 2] }, { name = "J", values = { L = 0, R = 1 } }], default = [{ index = [1, "L"], value = 1 }] })") },
    Rule{ "a_row_with_an_index_out_of_range",
        Keys(
            R"({ id = 1, name = "A", type = "uint8", index = [{ name = "I", range = [1, 2] }, { name = "J", values = { L = 0, R = 1 } }], default = [{ index = [3, "L"], value = 1 }] })"),
        { "1.toml:10:146: error: \"I\": 3 is out of range; expected 1 to 2" },
        Keys(
            R"({ id = 1, name = "A", type = "uint8", index = [{ name = "I", range = [1, 2] }, { name = "J", values = { L = 0, R = 1 } }], default = [{ index = [2, "R"], value = 1 }] })") },
    Rule{ "a_row_with_an_unknown_enumerator",
        Keys(
            R"({ id = 1, name = "A", type = "uint8", index = [{ name = "I", range = [1, 2] }, { name = "J", values = { L = 0, R = 1 } }], default = [{ index = [1, "LL"], value = 1 }] })"),
        { "1.toml:10:149: error: unknown enumerator \"LL\"; did you mean \"L\"?" },
        Keys(
            R"({ id = 1, name = "A", type = "uint8", index = [{ name = "I", range = [1, 2] }, { name = "J", values = { L = 0, R = 1 } }], default = [{ index = [1, 1], value = 1 }] })") },
    Rule{ "a_row_without_a_value",
        Keys(
            R"({ id = 1, name = "A", type = "uint8", index = [{ name = "I", range = [1, 2] }, { name = "J", values = { L = 0, R = 1 } }], default = [{ index = [1, "L"] }] })"),
        { "1.toml:10:135: error: \"value\" is missing: a row has a value" },
        Keys(
            R"({ id = 1, name = "A", type = "uint8", index = [{ name = "I", range = [1, 2] }, { name = "J", values = { L = 0, R = 1 } }], default = [{ value = 1, index = [1, "L"] }] })") },
    Rule{ "a_table_without_rows",
        Keys(
            R"({ id = 1, name = "A", type = "uint8", index = [{ name = "I", range = [1, 2] }], default = 1 })"),
        { "1.toml:10:91: error: \"default\": expected an array of rows, { index = ..., value = ... }, found a "
          "whole number" },
        Keys(
            R"({ id = 1, name = "A", type = "uint8", index = [{ name = "I", range = [1, 2] }], default = [{ index = 1, value = 1 }] })") },
    Rule{ "a_word_out_of_range_of_a_field_above_64_bits",
        Keys(R"({ id = 1, name = "A", type = "struct", default = { x = [0, 0, 0, 0, 65536] }, field = [
{ name = "x", type = "integer", position = 0, width = 80 }
] })"),
        { "1.toml:10:69: error: \"x\": 65536 is out of range; expected 0 to 65535" },
        Keys(R"({ id = 1, name = "A", type = "struct", default = { x = [0, 0, 0, 0, 65535] }, field = [
{ name = "x", type = "integer", position = 0, width = 80 }
] })") },
    Rule{ "a_wrong_number_of_structs",
        Keys(R"({ id = 1, name = "A", type = "struct", default = { x = [{ y = 1 }] }, field = [
{ name = "x", type = "struct", array = 2, position = 0, field = [{ name = "y", type = "uint8", position = 0 }] }
] })"),
        { "1.toml:10:56: error: \"default\": 1 items; expected 2" },
        Keys(R"({ id = 1, name = "A", type = "struct", default = { x = [{ y = 1 }, { y = 2 }] }, field = [
{ name = "x", type = "struct", array = 2, position = 0, field = [{ name = "y", type = "uint8", position = 0 }] }
] })") },
};

class Defaults : public RuleTest
{};

}   // namespace

TEST_P(Defaults, is_found_at_its_place)
{
    ExpectFound();
}

TEST_P(Defaults, has_a_right_neighbour_that_passes)
{
    ExpectNeighbourPasses();
}

INSTANTIATE_TEST_SUITE_P(Compiler, Defaults, testing::ValuesIn(RULES), &NameOf);

}   // namespace workbench::compiler::test
