/// The compiler on the bits of structs: what is wrong is found at its place, and a right neighbour passes without a word.

#include "rule.h"

namespace workbench::compiler::test {

namespace {

/// Shared structs, each within the next.
Sources Chain(int count)
{
    std::string text;
    for (int number = 0; number < count; ++number) {
        const std::string inner =
            number == 0 ? R"("uint8")" : R"("struct", struct = "S)" + std::to_string(number - 1) + '"';
        text += "[[struct]]\nname = \"S" + std::to_string(number) +
                "\"\nfield = [{ name = \"x\", position = 0, type = " + inner + " }]\n";
    }
    return Behind(text);
}

const std::vector<Rule> RULES = {
    Rule{ "fields_that_overlap", Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "uint8", position = 0 },
{ name = "y", type = "uint8", position = 7 }
] })"),
        { "1.toml:12:42: error: \"y\" overlaps \"x\" (1.toml:11:1) in the bit 7" },
        Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "uint8", position = 0 },
{ name = "y", type = "uint8", position = 8 }
] })") },
    Rule{ "a_field_within_another", Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "uint32", position = 0 },
{ name = "y", type = "uint8", position = 8 }
] })"),
        { "1.toml:12:42: error: \"y\" overlaps \"x\" (1.toml:11:1) in the bits 8 to 15" },
        Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "uint32", position = 0 },
{ name = "y", type = "uint8", position = 32 }
] })") },
    Rule{ "an_overlap_in_the_words_below_where_not_little_endian",
        Keys(R"({ id = 1, name = "A", type = "struct", little_endian = false, field = [
{ name = "x", type = "uint16", position = 0 },
{ name = "y", type = "uint32", position = 16 }
] })"),
        { "1.toml:12:43: error: \"y\" overlaps \"x\" (1.toml:11:1) in the bits 0 to 15" },
        Keys(R"({ id = 1, name = "A", type = "struct", little_endian = false, field = [
{ name = "x", type = "uint16", position = 0 },
{ name = "y", type = "uint32", position = 32 }
] })") },
    Rule{ "a_field_that_ends_outside_the_struct",
        Keys(R"({ id = 1, name = "A", type = "struct", bits = 15, field = [
{ name = "x", type = "uint8", position = 8 }
] })"),
        { "1.toml:11:42: error: \"x\" ends at the bit 16, outside the 15 bits of the struct" },
        Keys(R"({ id = 1, name = "A", type = "struct", bits = 16, field = [
{ name = "x", type = "uint8", position = 8 }
] })") },
    Rule{ "a_field_that_begins_before_the_struct",
        Keys(R"({ id = 1, name = "A", type = "struct", little_endian = false, field = [
{ name = "x", type = "uint32", position = 0 }
] })"),
        { "1.toml:11:43: error: \"x\" begins at the bit -16, before the struct: as this isn't little-endian, "
          "the position of a field of 17 to 64 bits names its last word" },
        Keys(R"({ id = 1, name = "A", type = "struct", little_endian = false, field = [
{ name = "x", type = "uint32", position = 16 }
] })") },
    Rule{ "a_negative_position", Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "uint8", position = -8 }
] })"),
        { "1.toml:11:42: error: \"position\": expected 0 or more" },
        Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "uint8", position = 0 }
] })") },
    Rule{ "a_field_beyond_the_largest_struct", Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "uint8", position = 1_048_569 }
] })"),
        { "1.toml:11:42: error: the field ends at the bit 1048577; a struct has 1048576 bits at most" },
        Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "uint8", position = 1_048_568 }
] })") },
    Rule{ "a_width_of_0", Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "uint8", position = 0, width = 0 }
] })"),
        { "1.toml:11:53: error: \"width\": a field has one bit at least" },
        Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "uint8", position = 0, width = 1 }
] })") },
    Rule{ "a_width_above_the_type", Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "uint8", position = 0, width = 9 }
] })"),
        { "1.toml:11:53: error: \"width\": 9 bits are more than the 8 of uint8" },
        Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "uint8", position = 0, width = 8 }
] })") },
    Rule{ "a_width_that_does_not_hold_the_items", Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "uint8", array = 3, position = 0, width = 16 }
] })"),
        { "1.toml:11:64: error: \"width\": 16 bits don't hold 3 items of 8 bits" },
        Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "uint8", array = 3, position = 0, width = 24 }
] })") },
    Rule{ "a_field_with_no_fixed_number_of_items", Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "uint8", array = [1, 3], position = 0 }
] })"),
        { "1.toml:11:39: error: \"array\": the array of a field has a fixed number of items, 1 to 65536" },
        Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "uint8", array = [3, 3], position = 0 }
] })") },
    Rule{ "a_width_below_the_struct_within", Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "struct", position = 0, width = 7, field = [{ name = "y", type = "uint8", position = 0 }] }
] })"),
        { "1.toml:11:54: error: \"width\": the struct has 8 bits" },
        Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "struct", position = 0, width = 8, field = [{ name = "y", type = "uint8", position = 0 }] }
] })") },
    Rule{ "a_width_that_does_not_hold_the_structs_within",
        Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "struct", array = 2, position = 0, width = 32, field = [{ name = "y", type = "uint8", position = 0 }] }
] })"),
        { "1.toml:11:65: error: \"width\": 2 structs of 8 bits have 16 bits" },
        Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "struct", array = 2, position = 0, width = 16, field = [{ name = "y", type = "uint8", position = 0 }] }
] })") },
    Rule{ "a_text_of_no_whole_octets", Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "string", length = 1, position = 0, width = 12 },
{ name = "y", type = "uint8", position = 12, width = 0 }
] })"),
        { "1.toml:11:66: error: \"width\": a text or octets have whole octets of 8 bits",
            "1.toml:12:54: error: \"width\": a field has one bit at least" },
        Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "y", type = "uint8", position = 12, width = 4 }
] })") },
    Rule{ "a_struct_that_holds_itself", Behind(R"([[struct]]
name = "P"
field = [{ name = "q", type = "struct", struct = "Q", position = 0 }]
[[struct]]
name = "Q"
field = [{ name = "p", type = "struct", struct = "P", position = 0 }]
[[struct]]
name = "R"
field = [{ name = "x", type = "uint8", position = 0 }]
)"),
        { "1.toml:14:50: error: the struct \"P\" holds itself" }, Behind(R"([[struct]]
name = "P"
field = [{ name = "q", type = "struct", struct = "Q", position = 0 }]
[[struct]]
name = "Q"
field = [{ name = "p", type = "struct", struct = "R", position = 0 }]
[[struct]]
name = "R"
field = [{ name = "x", type = "uint8", position = 0 }]
)") },
    Rule{ "structs_too_deep_within_one_another", Chain(65),
        { "1.toml:203:64: error: structs nest deeper than 64" }, Chain(64) },
    Rule{ "more_fields_than_the_library_walks", Behind(R"([[struct]]
name = "S"
field = [{ name = "x", type = "uint8", array = 1, position = 0 }]
[[subsystem.key]]
id = 1
name = "A"
type = "struct"
field = [{ name = "s", type = "struct", struct = "S", array = 65536, position = 0 }]
)"),
        { "1.toml:16:50: error: a struct has 65536 fields at most, those of the structs within it included" },
        Behind(R"([[struct]]
name = "S"
field = [{ name = "x", type = "uint8", array = 1, position = 0 }]
[[subsystem.key]]
id = 1
name = "A"
type = "struct"
field = [{ name = "s", type = "struct", struct = "S", array = 100, position = 0 }]
)") },
    Rule{ "an_array_that_begins_before_a_struct_that_is_not_little_endian",
        Keys(R"({ id = 1, name = "A", type = "struct", little_endian = false, field = [
{ name = "x", type = "uint32", array = 2, position = 0 }
] })"),
        { "1.toml:11:54: error: \"x\" begins at the bit -16, before the struct: as this isn't little-endian, "
          "the position of a field of 17 to 64 bits names its last word" },
        Keys(R"({ id = 1, name = "A", type = "struct", little_endian = false, field = [
{ name = "x", type = "uint32", array = 2, position = 16 }
] })") },
    Rule{ "an_array_that_overlaps_the_word_below_where_not_little_endian",
        Keys(R"({ id = 1, name = "A", type = "struct", little_endian = false, field = [
{ name = "x", type = "uint16", position = 0 },
{ name = "y", type = "uint32", array = 2, position = 16 }
] })"),
        { "1.toml:12:54: error: \"y\" overlaps \"x\" (1.toml:11:1) in the bits 0 to 15" },
        Keys(R"({ id = 1, name = "A", type = "struct", little_endian = false, field = [
{ name = "x", type = "uint16", position = 0 },
{ name = "y", type = "uint32", array = 2, position = 32 }
] })") },
};

class Layouts : public RuleTest
{};

}   // namespace

TEST_P(Layouts, is_found_at_its_place)
{
    ExpectFound();
}

TEST_P(Layouts, has_a_right_neighbour_that_passes)
{
    ExpectNeighbourPasses();
}

INSTANTIATE_TEST_SUITE_P(Compiler, Layouts, testing::ValuesIn(RULES), &NameOf);

}   // namespace workbench::compiler::test
