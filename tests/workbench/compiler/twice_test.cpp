/// The compiler on numbers and names that stand twice: what is wrong is found at its place, and a right neighbour passes without a word.

#include "rule.h"

namespace workbench::compiler::test {

namespace {

const std::vector<Rule> RULES = {
    Rule{ "the_number_of_a_key", Keys(R"({ id = 1, name = "A", type = "uint8" },
{ id = 0x1, name = "B", type = "uint8" })"),
        { "1.toml:11:8: error: the number 1 stands in 1.toml:10:8 already" },
        Keys(R"({ id = 1, name = "A", type = "uint8" },
{ id = 2, name = "B", type = "uint8" })") },
    Rule{ "the_name_of_a_key_without_regard_to_case", Keys(R"({ id = 1, name = "Volume", type = "uint8" },
{ id = 2, name = "VOLUME", type = "uint8" })"),
        { "1.toml:11:18: error: the name \"VOLUME\" stands in 1.toml:10:18 already" },
        Keys(R"({ id = 1, name = "Volume", type = "uint8" },
{ id = 2, name = "Volumes", type = "uint8" })") },
    Rule{ "the_name_of_a_field", Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "uint8", position = 0 },
{ name = "x", type = "uint8", position = 8 }
] })"),
        { "1.toml:12:10: error: the field \"x\" stands in 1.toml:11:10 already" },
        Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "uint8", position = 0 },
{ name = "y", type = "uint8", position = 8 }
] })") },
    Rule{ "the_number_of_an_enumerator",
        Keys(R"({ id = 1, name = "A", type = "enum", values = { X = 0, Y = 1, Z = 1 } })"),
        { "1.toml:10:67: error: the number 1 stands in 1.toml:10:60 already" },
        Keys(R"({ id = 1, name = "A", type = "enum", values = { X = 0, Y = 1, Z = 2 } })") },
    Rule{ "the_name_of_an_enumerator",
        Keys(R"({ id = 1, name = "A", type = "enum", values = { On = 0, ON = 1 } })"),
        { "1.toml:10:57: error: the enumerator \"ON\" stands in 1.toml:10:49 already" },
        Keys(R"({ id = 1, name = "A", type = "enum", values = { Off = 0, ON = 1 } })") },
    Rule{ "but_not_what_stands_for_a_wrong_number_of_a_key", Keys(R"({ id = 0, name = "A", type = "uint8" },
{ id = "x", name = "B", type = "uint8" },
{ id = 1, name = "C", type = "uint8" })"),
        { "1.toml:10:8: error: \"id\": 0 is out of range; expected 1 to 4294967295",
            "1.toml:11:8: error: \"id\": expected a whole number, found a text" },
        Keys(R"({ id = 1, name = "A", type = "uint8" })") },
    Rule{ "but_not_what_stands_for_a_wrong_number_of_an_enumerator",
        Keys(R"({ id = 1, name = "A", type = "enum", values = { X = 0, Y = 2147483648, Z = "z" } })"),
        { "1.toml:10:60: error: \"Y\": 2147483648 is out of range; expected -2147483648 to 2147483647",
            "1.toml:10:76: error: \"Z\": expected a whole number, found a text" },
        Keys(R"({ id = 1, name = "A", type = "enum", values = { X = 0, Y = 2147483647 } })") },
    Rule{ "the_label_of_a_chip", Behind(R"([[chip]]
name = "d"
label = "C"
id = 1
)"),
        { "1.toml:11:9: error: the label \"C\" stands in 1.toml:5:9 already" }, Behind(R"([[chip]]
name = "d"
label = "d"
id = 1
)") },
    Rule{ "a_chip_with_the_same_rom", Behind(R"([[chip]]
name = "c"
label = "d"
id = 1
)"),
        { "1.toml:10:8: error: a chip \"c\" with this version of its ROM stands in 1.toml:4:8 already" },
        Behind(R"([[chip]]
name = "c"
label = "d"
id = 1
rom_version = "2"
)") },
    Rule{ "a_subsystem", Behind(R"([[subsystem]]
name = "bt"
)"),
        { "1.toml:10:8: error: the subsystem \"bt\" stands in 1.toml:8:8 already" }, Behind(R"([[subsystem]]
name = "ble"
)") },
    Rule{ "an_alias", Behind(R"(alias = "radio"
[[subsystem]]
name = "ble"
alias = "Radio"
)"),
        { "1.toml:12:9: error: the alias \"Radio\" stands in 1.toml:9:9 already" }, Behind(R"(alias = "radio"
[[subsystem]]
name = "ble"
alias = "small"
)") },
    Rule{ "an_alias_that_is_a_subsystem", Behind(R"(alias = "WLAN"
)"),
        { "1.toml:9:9: error: the alias \"WLAN\" is the name of a subsystem, and so never looked at" },
        Behind(R"(alias = "radio"
)") },
    Rule{ "a_system",
        Sources{ R"([system]
name = "a"
[[chip]]
name = "c"
label = "c"
id = 1
)",
            R"([system]
name = "a"
)" },
        { "2.toml:1:1: error: a system stands in 1.toml:1:1 already" },
        Sources{ R"([system]
name = "a"
[[chip]]
name = "c"
label = "c"
id = 1
)",
            R"([[chip]]
name = "d"
label = "d"
id = 2
)" } },
    Rule{ "an_index",
        Keys(
            R"({ id = 1, name = "A", type = "uint8", index = [{ name = "I", range = [1, 2] }, { name = "i", range = [1, 2] }] })"),
        { "1.toml:10:89: error: the index \"i\" stands in 1.toml:10:57 already" },
        Keys(
            R"({ id = 1, name = "A", type = "uint8", index = [{ name = "I", range = [1, 2] }, { name = "J", range = [1, 2] }] })") },
    Rule{ "the_number_of_an_index_enumerator",
        Keys(R"({ id = 1, name = "A", type = "uint8", index = [{ name = "I", values = { X = 3, Y = 3 } }] })"),
        { "1.toml:10:84: error: the number 3 stands in 1.toml:10:77 already" },
        Keys(
            R"({ id = 1, name = "A", type = "uint8", index = [{ name = "I", values = { X = 3, Y = 4 } }] })") },
    Rule{ "a_shared_struct", Behind(R"([[struct]]
name = "B"
field = [{ name = "x", type = "uint8", position = 0 }]
[[struct]]
name = "B"
field = [{ name = "x", type = "uint8", position = 0 }]
)"),
        { "1.toml:13:8: error: the struct \"B\" stands in 1.toml:10:8 already" }, Behind(R"([[struct]]
name = "B"
field = [{ name = "x", type = "uint8", position = 0 }]
[[struct]]
name = "C"
field = [{ name = "x", type = "uint8", position = 0 }]
)") },
    Rule{ "a_shared_enumeration", Behind(R"([[enum]]
name = "E"
values = { X = 0 }
[[enum]]
name = "E"
values = { X = 0 }
)"),
        { "1.toml:13:8: error: the enumeration \"E\" stands in 1.toml:10:8 already" }, Behind(R"([[enum]]
name = "E"
values = { X = 0 }
[[enum]]
name = "F"
values = { X = 0 }
)") },
    Rule{ "a_row_of_a_table",
        Keys(R"({ id = 1, name = "A", type = "uint8", index = [{ name = "I", range = [1, 2] }], default = [
{ index = 1, value = 1 },
{ index = 1, value = 2 },
] })"),
        { "1.toml:12:11: error: the row 1 stands in 1.toml:11:11 already" },
        Keys(R"({ id = 1, name = "A", type = "uint8", index = [{ name = "I", range = [1, 2] }], default = [
{ index = 1, value = 1 },
{ index = 2, value = 2 },
] })") },
};

class Twice : public RuleTest
{};

}   // namespace

TEST_P(Twice, is_found_at_its_place)
{
    ExpectFound();
}

TEST_P(Twice, has_a_right_neighbour_that_passes)
{
    ExpectNeighbourPasses();
}

INSTANTIATE_TEST_SUITE_P(Compiler, Twice, testing::ValuesIn(RULES), &NameOf);

}   // namespace workbench::compiler::test
