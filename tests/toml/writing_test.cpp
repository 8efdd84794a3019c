// What a write looks like: the whole text of a file, byte by byte, and how the writer bears calls out of order.

#include "toml_support.h"

#include <support/element_builder.h>
#include <support/foreign_payload.h>
#include <support/metadata_builder.h>
#include <support/scripted_reader.h>

#include <gmock/gmock.h>

#include <functional>
#include <vector>

namespace {

using namespace VrexZynConfigTools;
using namespace VrexZynConfigTools::support;
using ::testing::HasSubstr;

class CTomlWriter : public TomlTest
{
protected:
    std::string Out() const { return mFolder / "out.toml"; }

    // What stands behind the head of a subsystem "bt" once `calls` have been made inside of it; or the error.
    std::string Written(const std::function<void(IConfigWriter &, CZynContext &)> & calls)
    {
        const auto writer = MakeWriter(Out());
        CZynContext context;
        context.Parse("chip=abc;subsystemtype=1;device=15;store=1");
        writer->StartWrite(context);
        writer->StartSubsystem(context);
        calls(*writer, context);
        writer->EndSubsystem(context);
        writer->EndWrite(context);
        return mErrors.IsSet() ? TakeError() : ContentOf(Out()).substr(HEAD.size());
    }

    std::string Written(CElement & element)
    {
        return Written(
            [&](IConfigWriter & writer, IConfigContext & context) { element.Write(writer, context); });
    }

    std::string TakeError()
    {
        const std::string error = mErrors.Text();
        mErrors.Clear();
        return error.substr(Out().size() + 2);
    }
};

TEST_F(CTomlWriter, writes_a_file_as_a_person_would)
{
    ReadChip chip;
    ASSERT_TRUE(chip.Read(Put(R"(chip = "abc"
[[subsystem]]
type = "audio"
device = "mtp"
store = 2
key = [
    { id = 0x10, name = "Volume", type = "uint8", value = 20 },
    { id = 0x11, name = "Curve", type = "int16", value = [-1, 0, 1] },
    { id = 0x12, name = "Title", type = "string", value = 'say "hi"' },
    { id = 0x13, name = "Bytes", type = "octet_string", value = "00FF" },
    { id = 0x14, name = "Mode", type = "enum", value = { number = 1, name = "ON" } },
    { id = 0x15, name = "Row", type = "uint8", index = [1, 2], value = 1 },
    { id = 0x15, name = "Row", type = "uint8", index = [3], value = [1] },
    { id = 0x16, name = "Set", type = "struct", value = [{ uint8 = 1 }, [{ int8 = 2 }, { string = "x" }], []] },
    { id = 0x17, type = "raw", value = [{ raw = [[{ uint8 = 1 }]] }] },
    { id = 0x18, type = "uint64", value = [1, "18446744073709551615"] },
    { id = 0x19, type = "string", value = "\n" },
]
[[subsystem]]
type = 99
device = ""
store = ""
)"))) << mErrors.Text();
    ASSERT_TRUE(chip.Write(Out())) << mErrors.Text();
    EXPECT_EQ(ContentOf(Out()), R"(chip = "abc"

[[subsystem]]
type = "audio"
device = "mtp"
store = 2

[[subsystem.key]]
id = 16
name = "Volume"
type = "uint8"
value = 20

[[subsystem.key]]
id = 17
name = "Curve"
type = "int16"
value = [-1, 0, 1]

[[subsystem.key]]
id = 18
name = "Title"
type = "string"
value = "say \"hi\""

[[subsystem.key]]
id = 19
name = "Bytes"
type = "octet_string"
value = "00 ff"

[[subsystem.key]]
id = 20
name = "Mode"
type = "enum"
value = { name = "ON", number = 1 }

[[subsystem.key]]
id = 21
name = "Row"
type = "uint8"
index = [1, 2]
value = 1

[[subsystem.key]]
id = 21
name = "Row"
type = "uint8"
index = 3
value = [1]

[[subsystem.key]]
id = 22
name = "Set"
type = "struct"
value = [
    { uint8 = 1 },
    [{ int8 = 2 }, { string = "x" }],
    [],
]

[[subsystem.key]]
id = 23
type = "raw"
value = [
    { raw = [
        [{ uint8 = 1 }],
    ] },
]

[[subsystem.key]]
id = 24
type = "uint64"
value = [1, "18446744073709551615"]

[[subsystem.key]]
id = 25
type = "string"
value = { hex = "0a" }

[[subsystem]]
type = 99
device = ""
store = ""
)");
}

TEST_F(CTomlWriter, wraps_long_arrays_and_octet_strings)
{
    CElementNumericArray numbers(NUMERIC_UINT32, 1, "", true);
    numbers.SetValue(std::vector<std::uint32_t>(12, 4000000000));
    EXPECT_THAT(Written(numbers),
        HasSubstr("value = [\n"
                  "    4000000000, 4000000000, 4000000000, 4000000000, 4000000000, 4000000000, 4000000000, "
                  "4000000000,\n"
                  "    4000000000, 4000000000, 4000000000, 4000000000,\n]\n"));
    CElementString octets(1, "", std::string(33, '\xAB'), true, true);
    std::string line = "    ";
    for (int i = 0; i < 32; ++i)
        line += i == 0 ? "ab" : " ab";
    EXPECT_THAT(Written(octets), HasSubstr("value = '''\n" + line + "\n    ab'''\n"));
}

// A filtered write is for reading only.

constexpr char FILTERED_HEAD[] =
    "# A filtered write: each key once, from the layer that won. For reading by people and "
    "scripts;\n# a reader needs devices and stores and refuses this file.\n";

TEST_F(CTomlWriter, names_layers_in_place_of_stores_in_a_filtered_write)
{
    ReadChip chip;
    ASSERT_TRUE(chip.Read(Put(AFile("uint8", "1")), "layerfilter=15;storelayers=15.1:7"));
    ASSERT_TRUE(chip.Write(Out(), "layerfilter=15;chip=abc")) << mErrors.Text();
    EXPECT_EQ(ContentOf(Out()), FILTERED_HEAD + std::string("chip = \"abc\"\n"
                                                            "layerfilter = 15\n"
                                                            "\n[[subsystem]]\ntype = \"bt\"\nlayer = 7\n"
                                                            "\n[[subsystem.key]]\nid = 100\nname = \"Key\"\n"
                                                            "type = \"uint8\"\nvalue = 1\n"));
}

TEST_F(CTomlWriter, makes_a_filtered_file_that_the_reader_refuses)
{
    ReadChip chip;
    ASSERT_TRUE(chip.Read(Put(AFile("uint8", "1")), "layerfilter=15;storelayers=15.1:7"));
    ASSERT_TRUE(chip.Write(Out(), "layerfilter=15"));
    EXPECT_FALSE(chip.Read(Out()));
    EXPECT_THAT(mErrors.Text(), HasSubstr("this file holds the result of a filtered write"));
}

TEST_F(CTomlWriter, bears_an_empty_filtered_write)
{
    ReadChip chip;
    ASSERT_TRUE(chip.Read(Put(AFile("uint8", "1"))));
    ASSERT_TRUE(chip.Write(Out(), "layerfilter=-2")) << mErrors.Text();
    EXPECT_EQ(ContentOf(Out()), FILTERED_HEAD + std::string("layerfilter = -2\n"));
    ASSERT_TRUE(chip.Write(Out(), "layerfilter=abc"));
    EXPECT_EQ(ContentOf(Out()), FILTERED_HEAD + std::string("layerfilter = \"abc\"\n"));
}

TEST_F(CTomlWriter, is_filtered_by_the_context_of_the_write_alone)
{
    ReadChip chip;
    ASSERT_TRUE(chip.Read(Put(AFile("uint8", "1")), "layerfilter=15;storelayers=15.1:7"));
    ASSERT_TRUE(chip.Write(Out()));
    EXPECT_EQ(ContentOf(Out()), AFile("uint8", "1"));
}

TEST_F(CTomlWriter, writes_an_empty_configuration)
{
    ReadChip chip;
    ASSERT_TRUE(chip.Write(Out()));
    EXPECT_EQ(ContentOf(Out()), "chip = \"\"\n");
    ASSERT_TRUE(chip.Write(Out(), "chip=abc"));
    EXPECT_EQ(ContentOf(Out()), "chip = \"abc\"\n");
    EXPECT_TRUE(chip.Read(Out()));
}

// Elements of others, whose records are absent or say something else.

TEST_F(CTomlWriter, writes_the_number_alone_where_there_is_no_record)
{
    CElementString text(5, "a name", "x", false, true);
    EXPECT_EQ(Written(text), "\n[[subsystem.key]]\nid = 5\ntype = \"string\"\nvalue = \"x\"\n");
}

TEST_F(CTomlWriter, takes_no_name_from_the_record_of_another_key)
{
    const auto record = ARecord(6).Named("field").Build();
    CElementString text(5, "a name", "x", false, true);
    text.Use(*record);
    EXPECT_EQ(Written(text), "\n[[subsystem.key]]\nid = 5\ntype = \"string\"\nvalue = \"x\"\n");
}

TEST_F(CTomlWriter, takes_no_name_from_the_null_record)
{
    CElementString text(0, "a name", "x", false, true);
    text.Use(CNullMetadata::Ref());
    EXPECT_EQ(Written(text), "\n[[subsystem.key]]\nid = 0\ntype = \"string\"\nvalue = \"x\"\n");
}

TEST_F(CTomlWriter, tells_a_mixture_of_values_as_a_structure)
{
    CElementStruct mixture(5, "", true);
    mixture.AddField(new CUint8Payload(1));
    mixture.AddField(new CUint16Payload(1));
    EXPECT_EQ(Written(mixture),
        "\n[[subsystem.key]]\nid = 5\ntype = \"struct\"\nvalue = [\n    { uint8 = 1 },\n"
        "    { uint16 = 1 },\n]\n");
    CElementStruct texts(5, "", true);
    texts.AddField(new CStringPayload("a", false));
    texts.AddField(new CStringPayload("b", false));
    EXPECT_THAT(Written(texts), HasSubstr("type = \"struct\""));
}

TEST_F(CTomlWriter, writes_a_text_alone_even_if_its_record_is_an_array)
{
    const auto record = ARecord(5).Named("n").OfType("string").Array().Build();
    CElementString text(5, "n", "x", false, true);
    text.Use(*record);
    EXPECT_THAT(Written(text), HasSubstr("value = \"x\"\n"));
}

TEST_F(CTomlWriter, takes_raw_mode_for_a_raw_element_but_not_for_a_row)
{
    CElementRaw raw(5, "", AListOf(new CUint8Payload(1)), true);
    EXPECT_THAT(Written(raw), HasSubstr("type = \"raw\"\nvalue = [\n    { uint8 = 1 },\n]\n"));
    CIndexedElement row(5, "", { 1 }, AListOf(new CUint8Payload(1)), true);   // no record, no name: in raw mode
    EXPECT_THAT(Written(row), HasSubstr("type = \"uint8\"\nindex = 1\nvalue = 1\n"));
}

TEST_F(CTomlWriter, reads_numbers_from_payload_classes_of_others)
{
    CElementStruct element(5, "", true);
    element.AddField(new UsingPayload(std::string("\x07\x00", 2), PAYLOAD_UINT16));
    EXPECT_THAT(Written(element), HasSubstr("type = \"uint16\"\nvalue = 7\n"));
}

TEST_F(CTomlWriter, refuses_payloads_that_say_nothing_of_their_value)
{
    for (const PayloadTypeEnum code : { PAYLOAD_RAW, PAYLOAD_COMPLEX, PAYLOAD_STRING, PAYLOAD_ENUM,
             PAYLOAD_UINT16, static_cast<PayloadTypeEnum>(12), static_cast<PayloadTypeEnum>(-1) })
    {
        CElementStruct element(5, "", true);
        element.AddField(new UsingPayload("xyz", code));
        EXPECT_EQ(Written(element), "key 5: a payload that a file can't hold") << code;
        EXPECT_FALSE(std::filesystem::exists(Out()));
    }
}

TEST_F(CTomlWriter, refuses_structures_that_a_reader_would_refuse)
{
    CElementStruct element(5, "", true);
    auto * inner = new CComplexPayload(PAYLOAD_COMPLEX);
    for (int level = 1; level <= 100; ++level) {
        auto * outer = new CComplexPayload(PAYLOAD_COMPLEX);
        outer->AddField(inner);
        inner = outer;
    }
    element.AddField(inner);
    EXPECT_EQ(Written(element), "key 5: a payload that a file can't hold");
}

TEST_F(CTomlWriter, refuses_named_data_that_is_no_index)
{
    const auto named = [](const std::string & name, const void * data, std::uint32_t size) {
        return [=](IConfigWriter & writer, IConfigContext & context) {
            writer.StartElement(context);
            writer.WriteKeyId(5, context);
            writer.WriteNamedData(name, data, size, context);
            writer.EndElement(context);
        };
    };
    static constexpr std::uint64_t DATA = 1;
    EXPECT_EQ(Written(named("other", &DATA, 4)), "key 5: named data that a file can't hold");
    EXPECT_EQ(Written(named("index", &DATA, 8)), "key 5: named data that a file can't hold");
    EXPECT_EQ(Written(named("index", nullptr, 4)), "key 5: named data that a file can't hold");
    EXPECT_THAT(Written(named("num_indices", nullptr, 0)), HasSubstr("index = []\n"));
}

// Subsystems that a file can't tell.

TEST_F(CTomlWriter, refuses_subsystems_of_two_chips)
{
    EXPECT_EQ(Written([](IConfigWriter & writer, CZynContext & context) {
        context.SetChip("xyz");
        writer.StartSubsystem(context);
    }),
        "subsystems of two chips, \"abc\" and \"xyz\"; a file holds those of one");
}

TEST_F(CTomlWriter, refuses_tags_that_are_no_numbers)
{
    for (const std::string tag : { "subsystemtype", "device", "store" })
        for (const std::string junk : { "abc", "1x", " 1", "65536", "-2", "99999999999999999999" })
            EXPECT_EQ(Written([&](IConfigWriter & writer, CZynContext & context) {
                context.SetTag(tag, junk);
                writer.StartSubsystem(context);
            }),
                "a subsystem whose context tag \"" + tag + "\" reads \"" + junk +
                    "\"; expected a number up to 65535");
}

// Calls out of order.

TEST_F(CTomlWriter, bears_an_end_of_a_subsystem_without_a_start)
{
    const auto writer = MakeWriter(Out());
    CZynContext context;
    writer->EndSubsystem(context);
    writer->StartWrite(context);
    writer->EndSubsystem(context);
    writer->EndWrite(context);
    EXPECT_EQ(mErrors.Text(), "");
    EXPECT_EQ(ContentOf(Out()), "chip = \"\"\n");
}

TEST_F(CTomlWriter, bears_ends_without_starts)
{
    const auto writer = MakeWriter(Out());
    CZynContext context;
    CUint8Payload payload(1);
    writer->EndElement(context);
    writer->EndWrite(context);
    writer->WriteKeyId(1, context);
    writer->WriteNamedData("index", nullptr, 4, context);
    writer->WritePayload(payload, context);
    writer->PrepareWriter(context);
    EXPECT_EQ(mErrors.Text(), "");
    EXPECT_TRUE(mFolder.Names().empty());
}

TEST_F(CTomlWriter, refuses_a_subsystem_before_the_write_was_started)
{
    CZynContext context;
    MakeWriter(Out())->StartSubsystem(context);
    EXPECT_EQ(TakeError(), "invalid operation (no write has been started)");
    MakeWriter(Out())->StartElement(context);
    EXPECT_EQ(TakeError(), "invalid operation (no write has been started)");
}

TEST_F(CTomlWriter, refuses_a_key_outside_of_a_subsystem)
{
    EXPECT_EQ(Written([](IConfigWriter & writer, IConfigContext & context) {
        writer.EndSubsystem(context);
        CElementString(1, "", "x", false, true).Write(writer, context);
    }),
        "invalid operation (a key outside of a subsystem)");
    EXPECT_FALSE(std::filesystem::exists(Out()));
}

TEST_F(CTomlWriter, writes_again_after_a_write_that_failed)
{
    const auto writer = MakeWriter(Out());
    CZynContext context;
    CZynContext junk;
    junk.Parse("store=junk");
    writer->StartWrite(context);
    writer->StartSubsystem(junk);
    writer->EndWrite(context);
    EXPECT_TRUE(mErrors.IsSet());
    EXPECT_TRUE(mFolder.Names().empty());
    mErrors.Clear();
    writer->StartWrite(context);
    writer->EndWrite(context);
    EXPECT_EQ(mErrors.Text(), "");
    EXPECT_EQ(ContentOf(Out()), "chip = \"\"\n");
}

TEST_F(CTomlWriter, starts_afresh_with_each_write)
{
    const auto writer = MakeWriter(Out());
    ReadChip chip;
    CZynContext context;
    ASSERT_TRUE(chip.Read(Put(AFile("uint8", "1"))));
    for (int count = 0; count < 3; ++count) {
        ASSERT_TRUE(chip.Chip().Write(*writer, context));
        EXPECT_EQ(ContentOf(Out()), AFile("uint8", "1"));
    }
    writer->StartWrite(context);   // never ended
    ASSERT_TRUE(chip.Chip().Write(*writer, context));
    EXPECT_EQ(ContentOf(Out()), AFile("uint8", "1"));
    EXPECT_EQ(mFolder.Names().size(), 2u);
}

TEST_F(CTomlWriter, leaves_one_error_although_calls_go_on_after_it)
{
    EXPECT_EQ(Written([](IConfigWriter & writer, CZynContext & context) {
        context.SetTag("store", "junk");
        writer.StartSubsystem(context);
        context.SetTag("device", "junk");
        writer.StartSubsystem(context);
        CElementString(1, "", "x", false, true).Write(writer, context);
    }),
        "a subsystem whose context tag \"store\" reads \"junk\"; expected a number up to 65535");
}

TEST_F(CTomlWriter, lets_no_exception_of_a_payload_out)
{
    struct Thrower : UsingPayload
    {
        using UsingPayload::UsingPayload;
        std::uint64_t Length() override { throw std::runtime_error("oh"); }
    };
    CElementStruct element(5, "", true);
    element.AddField(new Thrower("x", PAYLOAD_UINT8));
    std::string text;
    EXPECT_NO_THROW(text = Written(element));
    EXPECT_EQ(text, "an unexpected error occurred (oh)");
    EXPECT_FALSE(std::filesystem::exists(Out()));
}

}   // namespace
