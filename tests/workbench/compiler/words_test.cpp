/// The compiler on words that a source doesn't have, or not there: what is wrong is found at its place, and a right neighbour passes without a word.

#include "rule.h"

namespace workbench::compiler::test {

namespace {

const std::vector<Rule> RULES = {
    Rule{ "an_unknown_field_of_a_key", Keys(R"({ id = 1, name = "A", type = "uint8", unit = "ms" })"),
        { "1.toml:10:39: error: unknown field \"unit\" in a key; did you mean \"units\"?" },
        Keys(R"({ id = 1, name = "A", type = "uint8", units = "ms" })") },
    Rule{ "an_unknown_field_of_a_field", Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "uint8", positon = 8, position = 0 }
] })"),
        { "1.toml:11:31: error: unknown field \"positon\" in a field of a struct; did you mean \"position\"?" },
        Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "uint8", position = 0 }
] })") },
    Rule{ "an_unknown_table_of_a_source", Sources{ R"([[chips]]
name = "c"
[system]
name = "small"
[[chip]]
name = "c"
label = "c"
id = 1
[[subsystem]]
name = "bt"
)" },
        { "1.toml:1:3: error: unknown field \"chips\" in a source; did you mean \"chip\"?" }, Behind(R"()") },
    Rule{ "an_unknown_type", Keys(R"({ id = 1, name = "A", type = "unit8" })"),
        { "1.toml:10:30: error: unknown type \"unit8\"; did you mean \"uint8\"?" },
        Keys(R"({ id = 1, name = "A", type = "uint8" })") },
    Rule{ "an_unknown_format", Keys(R"({ id = 1, name = "A", type = "uint8", format = "hexdecimal" })"),
        { "1.toml:10:48: error: unknown format \"hexdecimal\"; did you mean \"hexadecimal\"?" },
        Keys(R"({ id = 1, name = "A", type = "uint8", format = "hexadecimal" })") },
    Rule{ "an_unknown_access", Keys(R"({ id = 1, name = "A", type = "uint8", access = "readonly" })"),
        { "1.toml:10:48: error: unknown access \"readonly\"; did you mean \"read_only\"?" },
        Keys(R"({ id = 1, name = "A", type = "uint8", access = "read_only" })") },
    Rule{ "an_unknown_subsystem", Sources{ R"([system]
name = "small"
[[chip]]
name = "c"
label = "c"
id = 1
[[subsystem]]
name = "blt"
)" },
        { "1.toml:8:8: error: unknown subsystem \"blt\"; did you mean \"bt\"?" }, Behind(R"()") },
    Rule{ "an_unknown_struct", Behind(R"([[subsystem.key]]
id = 1
name = "A"
type = "struct"
struct = "Bnad"
[[struct]]
name = "Band"
field = [{ name = "x", type = "uint8", position = 0 }]
)"),
        { "1.toml:13:10: error: unknown struct \"Bnad\"; did you mean \"Band\"?" }, Behind(R"([[subsystem.key]]
id = 1
name = "A"
type = "struct"
struct = "Band"
[[struct]]
name = "Band"
field = [{ name = "x", type = "uint8", position = 0 }]
)") },
    Rule{ "an_unknown_enumeration", Behind(R"([[subsystem.key]]
id = 1
name = "A"
type = "enum"
enum = "Sied"
[[enum]]
name = "Side"
values = { L = 0 }
)"),
        { "1.toml:13:8: error: unknown enumeration \"Sied\"; did you mean \"Side\"?" },
        Behind(R"([[subsystem.key]]
id = 1
name = "A"
type = "enum"
enum = "Side"
[[enum]]
name = "Side"
values = { L = 0 }
)") },
    Rule{ "a_field_that_does_not_go_with_the_type",
        Keys(R"({ id = 1, name = "A", type = "uint8", length = 4 })"),
        { "1.toml:10:48: error: \"length\" doesn't go with the type \"uint8\"" },
        Keys(R"({ id = 1, name = "A", type = "string", length = 4 })") },
    Rule{ "a_range_of_a_text", Keys(R"({ id = 1, name = "A", type = "string", length = 4, range = [0, 4] })"),
        { "1.toml:10:60: error: \"range\" doesn't go with the type \"string\"" },
        Keys(R"({ id = 1, name = "A", type = "uint8", range = [0, 4] })") },
    Rule{ "an_array_of_texts", Keys(R"({ id = 1, name = "A", type = "string", length = 4, array = 2 })"),
        { "1.toml:10:60: error: \"array\" doesn't go with the type \"string\"" },
        Keys(
            R"({ id = 1, name = "A", type = "string", length = 4, index = [{ name = "I", range = [1, 2] }] })") },
    Rule{ "a_number_in_place_of_a_text", Keys(R"({ id = 1, name = 5, type = "uint8" })"),
        { "1.toml:10:18: error: \"name\": expected a text, found a whole number" },
        Keys(R"({ id = 1, name = "A", type = "uint8" })") },
    Rule{ "a_name_that_is_none", Keys(R"({ id = 1, name = "A.1", type = "uint8" })"),
        { "1.toml:10:18: error: \"A.1\" is no name; expected a letter and then letters, digits, \"_\" or "
          "\"-\", as names stand in command lines" },
        Keys(R"({ id = 1, name = "A-1", type = "uint8" })") },
    Rule{ "bits_of_a_number", Keys(R"({ id = 1, name = "A", type = "uint8", bits = 8 })"),
        { "1.toml:10:46: error: \"bits\" doesn't go with the type \"uint8\"" },
        Keys(R"({ id = 1, name = "A", type = "struct", bits = 8, field = [
{ name = "x", type = "uint8", position = 0 }
] })") },
    Rule{ "the_order_of_bytes_of_a_number",
        Keys(R"({ id = 1, name = "A", type = "uint8", little_endian = true })"),
        { "1.toml:10:55: error: \"little_endian\" doesn't go with the type \"uint8\"" },
        Keys(R"({ id = 1, name = "A", type = "struct", little_endian = true, field = [
{ name = "x", type = "uint8", position = 0 }
] })") },
    Rule{ "octets_of_a_number", Keys(R"({ id = 1, name = "A", type = "uint8", octets = true })"),
        { "1.toml:10:48: error: \"octets\" doesn't go with the type \"uint8\"" },
        Keys(R"({ id = 1, name = "A", type = "struct", octets = true, field = [
{ name = "x", type = "uint8", position = 0 }
] })") },
    Rule{ "fields_of_a_number",
        Keys(
            R"({ id = 1, name = "A", type = "uint8", field = [{ name = "x", type = "uint8", position = 0 }] })"),
        { "1.toml:10:48: error: \"field\" doesn't go with the type \"uint8\"" },
        Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "uint8", position = 0 }
] })") },
    Rule{ "enumerators_of_a_number", Keys(R"({ id = 1, name = "A", type = "uint8", values = { X = 0 } })"),
        { "1.toml:10:48: error: \"values\" doesn't go with the type \"uint8\"" },
        Keys(R"({ id = 1, name = "A", type = "enum", values = { X = 0 } })") },
    Rule{ "a_position_of_a_key", Keys(R"({ id = 1, name = "A", type = "uint8", position = 0 })"),
        { "1.toml:10:39: error: unknown field \"position\" in a key" },
        Keys(R"({ id = 1, name = "A", type = "uint8" })") },
    Rule{ "a_default_of_a_field", Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "uint8", position = 0, default = 1 }
] })"),
        { "1.toml:11:45: error: unknown field \"default\" in a field of a struct" },
        Keys(R"({ id = 1, name = "A", type = "struct", default = { x = 1 }, field = [
{ name = "x", type = "uint8", position = 0 }
] })") },
    Rule{ "an_unknown_field_of_a_row",
        Keys(
            R"({ id = 1, name = "A", type = "uint8", index = [{ name = "I", range = [1, 2] }], default = [{ index = 1, value = 1, vlaue = 2 }] })"),
        { "1.toml:10:116: error: unknown field \"vlaue\" in a row; did you mean \"value\"?" },
        Keys(
            R"({ id = 1, name = "A", type = "uint8", index = [{ name = "I", range = [1, 2] }], default = [{ index = 1, value = 1 }] })") },
    Rule{ "an_enumerator_of_digits", Keys(R"({ id = 1, name = "A", type = "enum", values = { 5 = 0 } })"),
        { "1.toml:10:49: error: \"5\" is no name; expected letters, digits, \"_\" or \"-\", and not digits "
          "alone" },
        Keys(R"({ id = 1, name = "A", type = "enum", values = { 5GHZ = 0 } })") },
    Rule{ "a_shared_struct_with_a_size_besides", Behind(R"([[subsystem.key]]
id = 1
name = "A"
type = "struct"
struct = "Band"
bits = 8
[[struct]]
name = "Band"
field = [{ name = "x", type = "uint8", position = 0 }]
)"),
        { "1.toml:13:10: error: \"struct\" names a shared struct, which has fields, \"bits\" and "
          "\"little_endian\" of its own" },
        Behind(R"([[subsystem.key]]
id = 1
name = "A"
type = "struct"
struct = "Band"
[[struct]]
name = "Band"
field = [{ name = "x", type = "uint8", position = 0 }]
)") },
};

class Words : public RuleTest
{};

}   // namespace

TEST_P(Words, is_found_at_its_place)
{
    ExpectFound();
}

TEST_P(Words, has_a_right_neighbour_that_passes)
{
    ExpectNeighbourPasses();
}

INSTANTIATE_TEST_SUITE_P(Compiler, Words, testing::ValuesIn(RULES), &NameOf);

}   // namespace workbench::compiler::test
