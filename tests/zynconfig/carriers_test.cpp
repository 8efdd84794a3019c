/// A value is shown the same whether it came from a text or from an image: its metadata decides what it is.

#include <toolprocess.h>

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace zynconfig::test {

namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr char METADATA[] = R"([system]
name = "shapes"
[[chip]]
name = "c"
label = "c"
id = 5
[[enum]]
name = "Mode"
values = { OFF = 0, SLOW = 1, FAST = 5 }
[[enum]]
name = "Sign"
values = { MINUS = -1, ZERO = 0 }
[[subsystem]]
name = "bt"
key = [
    { id = 1, name = "Int8", type = "int8" },
    { id = 2, name = "Int16", type = "int16" },
    { id = 3, name = "Int32", type = "int32" },
    { id = 4, name = "Int64", type = "int64" },
    { id = 5, name = "Uint8", type = "uint8" },
    { id = 6, name = "Uint64", type = "uint64" },
    { id = 11, name = "Int8s", type = "int8", array = [1, 4] },
    { id = 12, name = "Int16s", type = "int16", array = [1, 4] },
    { id = 13, name = "Int64s", type = "int64", array = [1, 4] },
    { id = 14, name = "Uint32s", type = "uint32", array = [1, 4] },
    { id = 21, name = "Text", type = "string", length = [0, 20] },
    { id = 22, name = "Octets", type = "octet_string", length = [0, 20] },
    { id = 23, name = "Mode", type = "enum", enum = "Mode" },
    { id = 24, name = "Sign", type = "enum", enum = "Sign" },
    { id = 31, name = "Row", type = "int8", index = [ { name = "i", range = [0, 3] } ] },
    { id = 32, name = "StructRow", type = "struct", index = [ { name = "i", range = [0, 3] } ], field = [
        { name = "a", type = "int8", position = 0, width = 8 },
        { name = "b", type = "uint8", position = 8, width = 8 },
    ] },
    { id = 41, name = "Numbers", type = "struct", field = [
        { name = "a", type = "int8", position = 0, width = 8 },
        { name = "b", type = "uint8", position = 8, width = 8 },
        { name = "c", type = "int16", position = 16, width = 16 },
        { name = "d", type = "int32", position = 32, width = 32 },
        { name = "e", type = "enum", enum = "Mode", position = 64, width = 4 },
        { name = "f", type = "int8", position = 72, width = 4 },
    ] },
    { id = 42, name = "Texts", type = "struct", field = [
        { name = "a", type = "string", position = 0, width = 32, length = [0, 4] },
        { name = "b", type = "octet_string", position = 32, width = 16, length = 2 },
        { name = "c", type = "string", position = 48, width = 96, length = [0, 12] },
        { name = "d", type = "octet_string", position = 144, width = 80, length = 10 },
    ] },
    { id = 43, name = "Arrays", type = "struct", field = [
        { name = "a", type = "int8", position = 0, width = 32, array = 4 },
        { name = "b", type = "int16", position = 32, width = 32, array = 2 },
        { name = "c", type = "int32", position = 64, width = 64, array = 2 },
        { name = "d", type = "uint8", position = 128, width = 32, array = 4 },
    ] },
    { id = 44, name = "Structs", type = "struct", array = [1, 3], field = [
        { name = "a", type = "int8", position = 0, width = 8 },
        { name = "b", type = "int8", position = 8, width = 8 },
    ] },
    { id = 45, name = "Nested", type = "struct", field = [
        { name = "a", type = "int16", position = 0, width = 16 },
        { name = "b", type = "struct", position = 16, width = 32, field = [
            { name = "c", type = "int8", position = 0, width = 8 },
            { name = "d", type = "string", position = 16, width = 16, length = [0, 2] },
        ] },
    ] },
    { id = 46, name = "InOctets", type = "struct", octets = true, field = [
        { name = "a", type = "int8", position = 0, width = 8 },
        { name = "b", type = "int16", position = 8, width = 16 },
    ] },
]
)";

constexpr char VALUES[] = R"(chip = "c"
[[subsystem]]
type = "bt"
device = "otp"
store = 1
key = [
    { name = "Int8", value = -1 },
    { name = "Int16", value = -2 },
    { name = "Int32", value = -3 },
    { name = "Int64", value = -4 },
    { name = "Uint8", value = 255 },
    { name = "Uint64", value = "18446744073709551615" },
    { name = "Int8s", value = [-1, 5] },
    { name = "Int16s", value = [-1, 5] },
    { name = "Int64s", value = [-1, 5] },
    { name = "Uint32s", value = [4294967295, 5] },
    { name = "Text", value = "abc" },
    { name = "Octets", value = "01 ff" },
    { name = "Mode", value = "SLOW" },
    { name = "Sign", value = "MINUS" },
    { name = "Row", index = 2, value = -7 },
    { name = "StructRow", index = 1, value = { a = -1, b = 200 } },
    { name = "Numbers", value = { a = -1, b = 255, c = -2, d = -3, e = "FAST", f = -2 } },
    { name = "Texts", value = { a = "abcd", b = "01 ff", c = "hello", d = "0a ff 01 02 03 04 05 06 07 80" } },
    { name = "Arrays", value = { a = [-1, 2, -3, 4], b = [-1, 2], c = [-1, 2], d = [255, 1, 2, 3] } },
    { name = "Structs", value = [{ a = -1, b = 2 }, { a = 3, b = -4 }] },
    { name = "Nested", value = { a = -1, b = { c = -5, d = "zq" } } },
    { name = "InOctets", value = { a = -1, b = -2 } },
]
)";

/// One chip as a text and as an image.
class Carriers : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_EQ(
            RunTool({ { "metadata", "compile", mFolder.File("m.toml", METADATA), "-o", mMetadata } }).mExitCode,
            0);
        ASSERT_EQ(Run({ "convert", mText, "-o", mImage }).mExitCode, 0);
    }

    ToolResult Run(std::vector<std::string> arguments) const
    {
        arguments.insert(arguments.begin(), { "--metadata", mMetadata });
        return RunTool({ .mArguments = arguments, .mEnvironment = { { "COLUMNS", "150" } } });
    }

    /// What both carriers give, which has to be the same.
    std::string OutputOfBoth(const std::vector<std::string> & command) const
    {
        std::string outputs[2];
        for (const int i : { 0, 1 }) {
            std::vector<std::string> arguments = command;
            arguments.push_back(i == 0 ? mText : mImage);
            const ToolResult result = Run(arguments);
            EXPECT_EQ(result.mExitCode, 0) << result.mErr;
            outputs[i] = result.mOut;
        }
        EXPECT_EQ(outputs[0], outputs[1]);
        return outputs[0];
    }

    CTempFolder mFolder;
    const std::string mMetadata = mFolder.File("system.zmd");
    const std::string mText = mFolder.File("a.toml", VALUES);
    const std::string mImage = mFolder.File("a.zimg");
};

}   // namespace

TEST_F(Carriers, show_gives_the_same)
{
    EXPECT_THAT(OutputOfBoth({ "show" }), HasSubstr("{{-1, 2, -3, 4}, {-1, 2}, {-1, 2}, {255, 1, 2, 3}}"));
    EXPECT_THAT(OutputOfBoth({ "show", "--json" }), Not(IsEmpty()));
}

TEST_F(Carriers, get_gives_the_same_of_every_shape)
{
    for (const char * key : { "Int8", "Int16", "Int32", "Int64", "Uint8", "Uint64", "Int8s", "Int16s", "Int64s",
             "Uint32s", "Text", "Octets", "Mode", "Sign", "Row.2", "StructRow.1", "Numbers", "Texts", "Arrays",
             "Structs", "Nested", "InOctets" })
    {
        SCOPED_TRACE(key);
        EXPECT_THAT(OutputOfBoth({ "get", key }), Not(IsEmpty()));
        EXPECT_THAT(OutputOfBoth({ "get", "--json", key }), Not(IsEmpty()));
    }
}

TEST_F(Carriers, the_type_of_an_array_gives_the_sign_of_its_items)
{
    EXPECT_EQ(OutputOfBoth({ "get", "Arrays" }), "{{-1, 2, -3, 4}, {-1, 2}, {-1, 2}, {255, 1, 2, 3}}\n");
    EXPECT_EQ(OutputOfBoth({ "get", "Int8s" }), "[-1, 5]\n");
}

TEST_F(Carriers, a_field_of_text_is_a_text)
{
    EXPECT_EQ(
        OutputOfBoth({ "get", "Texts" }), "{\"abcd\", 01 ff, \"hello\", 0a ff 01 02 03 04 05 06 07 80}\n");
    EXPECT_EQ(OutputOfBoth({ "get", "Nested" }), "{-1, {-5, \"zq\"}}\n");
}

}   // namespace zynconfig::test
