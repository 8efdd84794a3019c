// Writes of keys that a provider's records describe: in the words of these records, the same for both forms in which the
// library holds a struct, and by types where the words don't do.

#include "described_support.h"

#include <support/recording_writer.h>
#include <support/scripted_source.h>

#include <configtools/structcodec.h>
#include <kit/layout/packing.h>
#include <kit/layout/scalars.h>

#include <gmock/gmock.h>

#include <memory>

namespace {

using namespace VrexZynConfigTools;
using namespace VrexZynConfigTools::support;
using ::testing::HasSubstr;

class DescribedWriting : public DescribedTest
{
protected:
    std::string Out() const { return mFolder / "out.toml"; }

    // What a subsystem with these elements becomes, behind its head; the elements are taken.
    std::string Written(const std::vector<CElement *> & elements, int subsystem = SUBSYSTEM_BT)
    {
        const auto writer = MakeWriter(Out());
        CZynContext context;
        context.Parse("chip=abc;device=15;store=1");
        context.SetTag("subsystemtype", subsystem);
        writer->StartWrite(context);
        writer->StartSubsystem(context);
        for (CElement * element : elements) {
            const std::unique_ptr<CElement> owned(element);
            element->Write(*writer, context);
        }
        writer->EndSubsystem(context);
        writer->EndWrite(context);
        const std::string text = ContentOf(Out());
        return mErrors.IsSet() ? mErrors.Text()
                               : text.substr(std::min(text.size(), text.find("store = 1\n") + 10));
    }

    // The text that the fields of a key become when they are read and written; that is read and written once more.
    std::string Rewritten(const std::string & fields, const std::string & tags = "")
    {
        ReadChip chip;
        chip.Use(&mProvider);
        EXPECT_TRUE(chip.Read(Put(ADescribedKey(fields)), tags)) << mErrors.Text();
        EXPECT_TRUE(chip.Write(Out())) << mErrors.Text();
        const std::string text = ContentOf(Out());
        ReadChip back;
        back.Use(&mProvider);
        EXPECT_TRUE(back.Read(Out(), tags)) << mErrors.Text() << text;
        ExpectEqual(chip.Chip(), back.Chip());
        EXPECT_TRUE(back.Write(mFolder / "again.toml"));
        EXPECT_EQ(ContentOf(mFolder / "again.toml"), text);
        return text.substr(std::min(text.size(), HEAD.size()));
    }

    const IMetadata & Record(std::uint32_t psId)
    {
        CZynContext context;
        return mProvider.MetadataById(psId, context);
    }

    template <typename ElementT, typename... ArgumentsT>
    CElement * Described(std::uint32_t psId, const ArgumentsT &... arguments)
    {
        auto element = std::make_unique<ElementT>(psId, Record(psId).Name(), arguments..., true);
        element->Use(Record(psId));
        return element.release();
    }

    CElement * DescribedNumbers(
        std::uint32_t psId, NumericTypeEnum type, const std::vector<std::int64_t> & values)
    {
        auto element = std::make_unique<CElementNumericArray>(type, psId, "", true);
        element->SetValue(values);
        element->Use(Record(psId));
        return element.release();
    }

    MemoryProvider & Metadata() { return mProvider; }
};

TEST_F(DescribedWriting, names_a_key_and_not_its_type)
{
    EXPECT_EQ(Rewritten("id = 16, value = 0x14"), "\n[[subsystem.key]]\nname = \"Volume\"\nvalue = 20\n");
    EXPECT_EQ(Rewritten("name = 'Serial', value = '0xffffffffffffffff'", "nodatacheck=true"),
        "\n[[subsystem.key]]\nname = \"Serial\"\nvalue = \"18446744073709551615\"\n");
    EXPECT_EQ(Rewritten("name = 'Offset', value = -5"), "\n[[subsystem.key]]\nname = \"Offset\"\nvalue = -5\n");
    EXPECT_EQ(Rewritten("name = 'Title', value = { hex = '00 01' }"),
        "\n[[subsystem.key]]\nname = \"Title\"\nvalue = { hex = \"00 01\" }\n");
    EXPECT_EQ(Rewritten("name = 'Address', value = '00FF'"),
        "\n[[subsystem.key]]\nname = \"Address\"\nvalue = \"00 ff\"\n");
    EXPECT_EQ(Rewritten("name = 'Curve', value = [1, -2]"),
        "\n[[subsystem.key]]\nname = \"Curve\"\nvalue = [1, -2]\n");
}

TEST_F(DescribedWriting, names_enumerators)
{
    EXPECT_EQ(
        Rewritten("name = 'Mode', value = 2"), "\n[[subsystem.key]]\nname = \"Mode\"\nvalue = \"LOUD\"\n");
    EXPECT_EQ(
        Rewritten("name = 'Mode', value = 'STILL'"), "\n[[subsystem.key]]\nname = \"Mode\"\nvalue = \"OFF\"\n");
}

TEST_F(DescribedWriting, names_indices)
{
    EXPECT_EQ(Rewritten("name = 'GainTrim', index = [3, 1], value = -5"),
        "\n[[subsystem.key]]\nname = \"GainTrim\"\nindex = [3, \"HIGH\"]\nvalue = -5\n");
    CMetadata & one = Metadata().Number(
        SUBSYSTEM_BT, ARecord(50).Named("One").OfType("uint8").Within(0, 9).WithNumIndices(1));
    MemoryProvider::AddIndex(one, "i", 0, 99);
    EXPECT_EQ(Rewritten("name = 'One', index = [7], value = 5"),
        "\n[[subsystem.key]]\nname = \"One\"\nindex = 7\nvalue = 5\n");
}

TEST_F(DescribedWriting, gives_the_number_of_a_key_without_a_name)
{
    Metadata().Number(SUBSYSTEM_BT, ARecord(50).OfType("uint8").Within(0, 9));
    EXPECT_EQ(Rewritten("id = 50, value = 5"), "\n[[subsystem.key]]\nid = 50\nvalue = 5\n");
}

TEST_F(DescribedWriting, names_the_fields_of_structures)
{
    EXPECT_EQ(
        Rewritten("name = 'Profiles', value = [{ Steps = [2, 3], Level = 1 }, { Level = 4, Steps = [5, 6] }]"),
        "\n[[subsystem.key]]\nname = \"Profiles\"\nvalue = [\n    { Level = 1, Steps = [2, 3] },\n"
        "    { Level = 4, Steps = [5, 6] },\n]\n");
    EXPECT_EQ(Rewritten("name = 'Label', value = { Tag = 'ab', Id = '00 01 02 03 04 05 06 07 08 09 0a 0b' }"),
        "\n[[subsystem.key]]\nname = \"Label\"\n"
        "value = { Id = \"00 01 02 03 04 05 06 07 08 09 0a 0b\", Tag = \"ab\" }\n");
}

TEST_F(DescribedWriting, gives_each_field_of_a_long_structure_a_line)
{
    EXPECT_EQ(Rewritten("name = 'Fit', value = { " + A_FIT + " }"), R"(
[[subsystem.key]]
name = "Fit"
[subsystem.key.value]
Gain = -8
Kind = "RIGHT"
Bands = [1, -2, 3]
Inner = { Low = 4095, High = -500 }
Points = [{ X = 1, Y = 2 }, { X = 3, Y = 4 }]
)");
}

TEST_F(DescribedWriting, gives_each_long_structure_of_an_array_a_header)
{
    auto & wide = Metadata().Struct(SUBSYSTEM_BT, ARecord(50).Named("Wide").Array());
    const std::string first(60, 'a');
    const std::string second(60, 'b');
    wide.AddField("", &Metadata().NumberField(ARecord(0).Named(first).OfType("uint8").Within(0, 9)), 0, 8);
    wide.AddField("", &Metadata().NumberField(ARecord(0).Named(second).OfType("uint8").Within(0, 9)), 8, 8);
    const std::string item = "{ " + first + " = 1, " + second + " = 2 }";
    const std::string lines = "[[subsystem.key.value]]\n" + first + " = 1\n" + second + " = 2\n";
    EXPECT_EQ(Rewritten("name = 'Wide', value = [" + item + ", " + item + "]"),
        "\n[[subsystem.key]]\nname = \"Wide\"\n" + lines + lines);
}

TEST_F(DescribedWriting, quotes_names_of_fields_that_need_it)
{
    auto & odd = Metadata().Struct(SUBSYSTEM_BT, ARecord(50).Named("Odd \"one\""));
    odd.AddField("", &Metadata().NumberField(ARecord(0).Named("a.b c").OfType("uint8").Within(0, 9)), 0, 8);
    odd.AddField("", &Metadata().NumberField(ARecord(0).Named("").OfType("uint8").Within(0, 9)), 8, 8);
    EXPECT_EQ(Rewritten("id = 50, value = { 'a.b c' = 1, '' = 2 }"),
        "\n[[subsystem.key]]\nname = \"Odd \\\"one\\\"\"\nvalue = { \"a.b c\" = 1, \"\" = 2 }\n");
}

// Packs the only payload of a key and has the library unpack it, as a reader of a binary source does.
class BothForms : public DescribedWriting
{
protected:
    std::unique_ptr<CElementStruct> Unpacked(CElement & element)
    {
        auto & layout = dynamic_cast<CMetadataDetailStruct &>(*element.Metadata()->Details());
        CZynContext context;
        auto unpacked = std::make_unique<CElementStruct>(element.PsId(), element.Name(), true);
        unpacked->Use(*element.Metadata());
        for (IPayload * payload : element.GetPayloadCopy(false)) {
            const kit::layout::Packed packed =
                kit::layout::PackStruct(dynamic_cast<CComplexPayload &>(*payload), layout);
            EXPECT_EQ(packed.mError, "");
            std::vector<std::uint64_t> words;
            for (std::size_t place = 0; place < packed.mOctets.size(); place += 2)
                words.push_back(kit::layout::LowestFirst(packed.mOctets.substr(place, 2)));
            CStructCodec codec;
            ScriptedSource source;
            source.Numbers(words).Last();
            auto * complex = new CComplexPayload(PAYLOAD_COMPLEX);
            unpacked->AddField(complex);
            bool more = false;
            EXPECT_TRUE(codec.Decode(source, layout, complex, more));
        }
        return unpacked;
    }

    // The key's text, which has to be the same after a way through words.
    std::string Text(const std::string & fields)
    {
        ReadChip chip;
        chip.Use(&mProvider);
        EXPECT_TRUE(chip.Read(Put(ADescribedKey(fields)))) << mErrors.Text();
        auto unpacked = Unpacked(*chip.Elements().front());
        EXPECT_NE(Describe(*unpacked), Describe(*chip.Elements().front()));
        EXPECT_TRUE(chip.Write(Out()));
        const std::string text = ContentOf(Out()).substr(HEAD.size());
        EXPECT_EQ(Written({ unpacked.release() }), text);
        return text;
    }
};

TEST_F(BothForms, have_one_text)
{
    EXPECT_THAT(Text("name = 'Fit', value = { " + A_FIT + " }"), HasSubstr("Bands = [1, -2, 3]\n"));
    EXPECT_THAT(
        Text("name = 'Profiles', value = [{ Level = 1, Steps = [2, 3] }, { Level = 4, Steps = [5, 6] }]"),
        HasSubstr("    { Level = 4, Steps = [5, 6] },\n"));
    EXPECT_THAT(Text("name = 'Label', value = { Tag = 'ab', Id = '00 01 02 03 04 05 06 07 08 09 0a 00' }"),
        HasSubstr("{ Id = \"00 01 02 03 04 05 06 07 08 09 0a 00\", Tag = \"ab\" }\n"));
}

TEST_F(BothForms, name_enumerators_in_arrays_and_print_wide_numbers)
{
    auto & more = Metadata().Struct(SUBSYSTEM_BT, ARecord(50).Named("More"));
    const MemoryProvider::Enumerators enumerators = { { "A", 1 }, { "B", 2 }, { "C", 2 } };
    more.AddField("", &Metadata().EnumField(ARecord(0).Named("E").OfType("uint8").Array(), enumerators), 0, 16);
    more.AddField("", &Metadata().EnumField(ARecord(0).Named("F").OfType("uint8"), enumerators), 16, 8);
    more.AddField("",
        &Metadata().NumberField(
            ARecord(0).Named("N").OfType("int16").Formatted("signed_decimal").Within(-300, 300)),
        32, 96);
    more.AddField("", &Metadata().NumberField(ARecord(0).Named("U").OfType("uint64").Within(0, 300)), 128, 80);
    EXPECT_THAT(Text("id = 50, value = { E = ['B', 1], F = 'C', N = -300, U = 300 }"),
        HasSubstr("value = { E = [\"B\", \"A\"], F = \"B\", N = -300, U = 300 }\n"));
}

class ByTypes : public DescribedWriting
{};

TEST_F(ByTypes, an_enumerator_without_a_name_in_the_metadata_is_told)
{
    auto * unknown = new CElementEnum(17, "Mode", true);
    unknown->AddEnum("", 7);
    unknown->Use(Record(17));
    auto * other = new CElementEnum(17, "Mode", true);
    other->AddEnum("STILL", 0);   // a name that wouldn't come back
    other->Use(Record(17));
    EXPECT_EQ(Written({ unknown, other }),
        "\n[[subsystem.key]]\nid = 17\nname = \"Mode\"\ntype = \"enum\"\nvalue = { name = \"\", number = 7 }\n"
        "\n[[subsystem.key]]\nid = 17\nname = \"Mode\"\ntype = \"enum\"\nvalue = { name = \"STILL\", number = "
        "0 }\n");
}

TEST_F(ByTypes, numbers_of_another_type_or_count_are_told)
{
    EXPECT_EQ(
        Written({ DescribedNumbers(16, NUMERIC_UINT16, { 7 }), DescribedNumbers(16, NUMERIC_UINT8, { 7, 8 }) }),
        "\n[[subsystem.key]]\nid = 16\nname = \"Volume\"\ntype = \"uint16\"\nvalue = 7\n"
        "\n[[subsystem.key]]\nid = 16\nname = \"Volume\"\ntype = \"uint8\"\nvalue = [7, 8]\n");
}

TEST_F(ByTypes, texts_of_another_kind_are_told)
{
    EXPECT_EQ(Written({ Described<CElementString>(18, std::string("a"), true),
                  Described<CElementString>(19, std::string("a"), false) }),
        "\n[[subsystem.key]]\nid = 18\nname = \"Title\"\ntype = \"octet_string\"\nvalue = \"61\"\n"
        "\n[[subsystem.key]]\nid = 19\nname = \"Address\"\ntype = \"string\"\nvalue = \"a\"\n");
}

// The library would cut them off when they are read.
TEST_F(ByTypes, octets_that_look_padded_are_told)
{
    const auto padded = [&] { return Described<CElementString>(19, std::string("a\0b\0", 4), true); };
    EXPECT_EQ(Written({ padded() }),
        "\n[[subsystem.key]]\nid = 19\nname = \"Address\"\ntype = \"octet_string\"\n"
        "value = \"61 00 62 00\"\n");
    EXPECT_EQ(Written({ padded() }, SUBSYSTEM_WLAN),
        "\n[[subsystem.key]]\nname = \"Address\"\nvalue = \"61 00 62 00\"\n");
}

TEST_F(ByTypes, a_tree_that_does_not_fit_is_told)
{
    auto * profiles = new CElementStruct(23, "Profiles", true);
    auto * instance = new CComplexPayload(PAYLOAD_COMPLEX);
    instance->AddField(new CUint8Payload(1));
    instance->AddField(new CUint8Payload(2));   // the array has two
    profiles->AddField(instance);
    profiles->Use(Record(23));
    EXPECT_EQ(Written({ profiles }),
        "\n[[subsystem.key]]\nid = 23\nname = \"Profiles\"\ntype = \"struct\"\nvalue = "
        "[\n    [{ uint8 = 1 }, { uint8 = 2 }],\n]\n");
}

TEST_F(ByTypes, rows_that_are_none_and_keys_that_should_be_are_told)
{
    auto * row = new CIndexedElement(16, "Volume", { 3 }, { new CUint8Payload(1) }, true);
    row->Use(Record(16));
    auto * outside = new CIndexedElement(24, "GainTrim", { 9, 0 }, { new CInt8Payload(1) }, true);
    outside->Use(Record(24));
    auto * nameless = new CIndexedElement(24, "GainTrim", { 1, 7 }, { new CInt8Payload(1) }, true);
    nameless->Use(Record(24));
    EXPECT_EQ(Written({ row, outside, nameless, DescribedNumbers(24, NUMERIC_INT8, { 1 }) }),
        "\n[[subsystem.key]]\nid = 16\nname = \"Volume\"\ntype = \"uint8\"\nindex = 3\nvalue = 1\n"
        "\n[[subsystem.key]]\nid = 24\nname = \"GainTrim\"\ntype = \"int8\"\nindex = [9, 0]\nvalue = 1\n"
        "\n[[subsystem.key]]\nid = 24\nname = \"GainTrim\"\ntype = \"int8\"\nindex = [1, 7]\nvalue = 1\n"
        "\n[[subsystem.key]]\nid = 24\nname = \"GainTrim\"\ntype = \"int8\"\nvalue = 1\n");
}

TEST_F(ByTypes, raw_elements_are_told)
{
    std::vector<IPayload *> payloads{ new CUint8Payload(1) };
    EXPECT_EQ(Written({ Described<CElementRaw>(16, payloads) }),
        "\n[[subsystem.key]]\nid = 16\nname = \"Volume\"\ntype = \"raw\"\nvalue = [\n    { uint8 = 1 },\n]\n");
}

// A read by types doesn't turn into one by metadata when it is written.
TEST_F(ByTypes, keys_that_were_read_so_are_written_so)
{
    EXPECT_EQ(Rewritten("id = 16, name = 'Volume', type = 'uint8', value = 200"),
        "\n[[subsystem.key]]\nid = 16\nname = \"Volume\"\ntype = \"uint8\"\nvalue = 200\n");
}

}   // namespace
