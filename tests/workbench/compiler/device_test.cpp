/// The compiler on what the device format doesn't carry back unchanged: what is wrong is found at its place, and a right neighbour passes without a word.

#include "rule.h"

namespace workbench::compiler::test {

namespace {

const std::vector<Rule> RULES = {
    Rule{ "a_field_of_64_bits", Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "uint64", position = 0 }
] })"),
        { "1.toml:11:43: warning: the device format doesn't carry \"x\" back unchanged: 18446744073709551615 "
          "comes back as 0" },
        Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "uint64", position = 0, width = 63 }
] })") },
    Rule{ "a_field_across_the_end_of_a_word", Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "uint16", position = 10, width = 12 }
] })"),
        { "1.toml:11:43: warning: the device format doesn't carry \"x\" back unchanged: 4095 comes back as "
          "63" },
        Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "uint16", position = 4, width = 12 }
] })") },
    Rule{ "a_field_of_16_bits_that_does_not_begin_a_word",
        Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "uint16", position = 4 }
] })"),
        { "1.toml:11:43: warning: the device format doesn't carry \"x\" back unchanged: 65535 comes back as "
          "4095" },
        Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "uint16", position = 16 }
] })") },
    Rule{ "a_straddling_field_where_not_little_endian",
        Keys(R"({ id = 1, name = "A", type = "struct", little_endian = false, field = [
{ name = "x", type = "uint16", position = 8 }
] })"),
        { "1.toml:11:43: warning: the device format doesn't carry \"x\" back unchanged: 65535 comes back as "
          "255" },
        Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "uint16", position = 8 }
] })") },
    Rule{ "a_wide_field_that_does_not_begin_a_word", Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "uint32", position = 4, width = 20 }
] })"),
        { "1.toml:11:43: warning: the device format doesn't carry \"x\" back unchanged: 1048575 comes back as "
          "65535" },
        Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "uint32", position = 16, width = 20 }
] })") },
    Rule{ "a_wider_type_in_16_bits_that_do_not_begin_a_word",
        Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "uint32", position = 4, width = 16 }
] })"),
        { "1.toml:11:43: warning: the device format doesn't carry \"x\" back unchanged: 65535 comes back as "
          "4095" },
        Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "uint32", position = 0, width = 16 }
] })") },
    Rule{ "an_enumerator_of_64_bits", Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "enum", position = 0, width = 64, values = { X = 1 } }
] })"),
        { "1.toml:11:41: warning: the device format doesn't carry \"x\" back unchanged: X comes back as 0" },
        Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "enum", position = 0, width = 16, values = { X = 1 } }
] })") },
    Rule{ "a_signed_number_without_the_format_for_it", Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "int8", position = 0, width = 6, format = "hexadecimal" }
] })"),
        { "1.toml:11:41: warning: the device format doesn't carry \"x\" back unchanged: -32 comes back as 32" },
        Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "int8", position = 0, width = 6 }
] })") },
    Rule{ "an_array_of_signed_items_of_64_bits", Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "int64", range = [-1, 0], array = 2, position = 0 }
] })"),
        { "1.toml:11:70: warning: the device format doesn't carry \"x\" back unchanged: [-1, -1] comes back as "
          "[4294967295, 4294967295]" },
        Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "int8", array = 2, position = 0 }
] })") },
    Rule{ "an_array_of_64_bit_items", Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "uint64", array = 2, position = 0 }
] })"),
        { "1.toml:11:54: warning: the device format doesn't carry \"x\" back unchanged: [18446744073709551615, "
          "18446744073709551615] comes back as [4294967295, 4294967295]" },
        Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "uint64", range = [0, 4294967295], array = 2, position = 0 }
] })") },
    Rule{ "octets_of_several_lengths", Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "octet_string", length = [1, 2], position = 0, width = 16 }
] })"),
        { "1.toml:11:66: warning: the device format doesn't carry \"x\" back unchanged: U comes back as "
          "U\\x00" },
        Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "octet_string", length = 2, position = 0, width = 16 },
{ name = "y", type = "string", length = [0, 4], position = 16, width = 32 }
] })") },
    Rule{ "a_partial_last_word_of_a_field_above_64_bits",
        Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "integer", position = 0, width = 72 }
] })"),
        { "1.toml:11:44: warning: the device format doesn't carry \"x\" back unchanged: [65535, 65535, 65535, "
          "65535, 255] comes back as [65535, 65535, 65535, 65535]" },
        Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "integer", position = 0, width = 80 }
] })") },
    Rule{ "structs_in_an_array_that_leave_the_words", Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "struct", array = 2, position = 0, field = [{ name = "y", type = "uint16", position = 0, width = 9 }] }
] })"),
        { "1.toml:11:108: warning: the device format doesn't carry \"y\" back unchanged: 511 comes back as "
          "127" },
        Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "struct", array = 2, position = 0, field = [{ name = "y", type = "uint16", position = 0, width = 8 }] }
] })") },
    Rule{ "a_neighbour_in_a_word_that_is_replaced", Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "a", type = "uint8", position = 0, width = 4 },
{ name = "x", type = "uint16", position = 4 }
] })"),
        { "1.toml:11:42: warning: the device format doesn't carry \"a\" back unchanged: 15 comes back as 0",
            "1.toml:12:43: warning: the device format doesn't carry \"x\" back unchanged: 65535 comes back as "
            "4095" },
        Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "a", type = "uint8", position = 0, width = 4 },
{ name = "x", type = "uint16", position = 16 }
] })") },
    Rule{ "an_unsigned_integer_of_64_bits", Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "integer", format = "unsigned_decimal", position = 0, width = 64 }
] })"),
        { "1.toml:11:73: warning: the device format doesn't carry \"x\" back unchanged: 9223372036854775807 "
          "comes back as 0" },
        Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "integer", format = "unsigned_decimal", position = 0, width = 63 }
] })") },
    Rule{ "a_neighbour_whatever_the_order_in_the_source",
        Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "uint16", position = 4 },
{ name = "a", type = "uint8", position = 0, width = 4 }
] })"),
        { "1.toml:11:43: warning: the device format doesn't carry \"x\" back unchanged: 65535 comes back as "
          "4095",
            "1.toml:12:42: warning: the device format doesn't carry \"a\" back unchanged: 15 comes back as 0" },
        Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "uint16", position = 16 },
{ name = "a", type = "uint8", position = 0, width = 4 }
] })") },
};

class Device : public RuleTest
{};

}   // namespace

TEST_P(Device, is_found_at_its_place)
{
    ExpectFound();
}

TEST_P(Device, has_a_right_neighbour_that_passes)
{
    ExpectNeighbourPasses();
}

INSTANTIATE_TEST_SUITE_P(Compiler, Device, testing::ValuesIn(RULES), &NameOf);

}   // namespace workbench::compiler::test
