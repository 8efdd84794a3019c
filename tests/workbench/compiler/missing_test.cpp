/// The compiler on what a source has to say: what is wrong is found at its place, and a right neighbour passes without a word.

#include "rule.h"

namespace workbench::compiler::test {

namespace {

const std::vector<Rule> RULES = {
    Rule{ "a_system", Sources{ R"([[chip]]
name = "c"
label = "c"
id = 1
)" },
        { "1.toml:1:1: error: [system] is missing: one of the sources names the system" }, Behind(R"()") },
    Rule{ "a_chip", Sources{ R"([system]
name = "s"
)" },
        { "1.toml:1:1: error: a system has one [[chip]] at least" }, Behind(R"()") },
    Rule{ "the_number_of_a_key", Keys(R"({ name = "A", type = "uint8" })"),
        { "1.toml:10:1: error: \"id\" is missing: a key has a number" },
        Keys(R"({ id = 1, name = "A", type = "uint8" })") },
    Rule{ "the_name_of_a_key", Keys(R"({ id = 1, type = "uint8" })"),
        { "1.toml:10:1: error: \"name\" is missing: a key has a name" },
        Keys(R"({ id = 1, name = "A", type = "uint8" })") },
    Rule{ "the_type_of_a_key", Keys(R"({ id = 1, name = "A" })"),
        { "1.toml:10:1: error: \"type\" is missing: a key has the type of its value" },
        Keys(R"({ id = 1, name = "A", type = "uint8" })") },
    Rule{ "the_label_of_a_chip", Sources{ R"([system]
name = "small"
[[chip]]
name = "c"
id = 1
)" },
        { "1.toml:3:1: error: \"label\" is missing: a chip is selected by its label" }, Sources{ R"([system]
name = "small"
[[chip]]
name = "c"
id = 1
label = "l"
)" } },
    Rule{ "the_length_of_a_text", Keys(R"({ id = 1, name = "A", type = "string" })"),
        { "1.toml:10:1: error: \"length\" is missing: a key of this type has a length in bytes, [min, max]" },
        Keys(R"({ id = 1, name = "A", type = "string", length = [0, 8] })") },
    Rule{ "the_enumerators", Keys(R"({ id = 1, name = "A", type = "enum" })"),
        { "1.toml:10:1: error: a key of this type has either its \"values\" or the name of an \"enum\" that is "
          "shared" },
        Keys(R"({ id = 1, name = "A", type = "enum", values = { X = 0 } })") },
    Rule{ "the_fields_of_a_struct", Keys(R"({ id = 1, name = "A", type = "struct" })"),
        { "1.toml:10:1: error: \"field\" is missing: a struct has one field at least, or is a shared "
          "\"struct\"" },
        Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "uint8", position = 0 }
] })") },
    Rule{ "the_position_of_a_field", Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "uint8" }
] })"),
        { "1.toml:11:1: error: \"position\" is missing: a field has the position of its lowest bit" },
        Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "uint8", position = 0 }
] })") },
    Rule{ "the_width_that_the_type_does_not_say", Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "integer", position = 0 }
] })"),
        { "1.toml:11:1: error: \"width\" is missing: the type \"integer\" doesn't say how many bits a field "
          "has" },
        Keys(R"({ id = 1, name = "A", type = "struct", field = [
{ name = "x", type = "integer", position = 0, width = 4 }
] })") },
    Rule{ "an_index_in_a_list_of_indices", Keys(R"({ id = 1, name = "A", type = "uint8", index = [] })"),
        { "1.toml:10:47: error: \"index\": expected one index at least" },
        Keys(R"({ id = 1, name = "A", type = "uint8", index = [{ name = "I", range = [1, 2] }] })") },
    Rule{ "the_range_of_an_index", Keys(R"({ id = 1, name = "A", type = "uint8", index = [{ name = "I" }] })"),
        { "1.toml:10:48: error: an index has either a \"range\" of numbers or enumerators as \"values\"" },
        Keys(R"({ id = 1, name = "A", type = "uint8", index = [{ name = "I", range = [1, 2] }] })") },
};

class Missing : public RuleTest
{};

}   // namespace

TEST_P(Missing, is_found_at_its_place)
{
    ExpectFound();
}

TEST_P(Missing, has_a_right_neighbour_that_passes)
{
    ExpectNeighbourPasses();
}

INSTANTIATE_TEST_SUITE_P(Compiler, Missing, testing::ValuesIn(RULES), &NameOf);

}   // namespace workbench::compiler::test
