// What is written is read back as it was: every class of element, every type, every byte; and a second write of what
// was read gives the same file, byte for byte.

#include "toml_support.h"

#include <support/grouping_locale.h>
#include <support/metadata_builder.h>
#include <support/scripted_reader.h>

#include <gmock/gmock.h>

#include <functional>
#include <limits>
#include <random>

namespace {

using namespace VrexZynConfigTools;
using namespace VrexZynConfigTools::support;

class RoundTrip : public TomlTest
{
protected:
    // Writes `chip`, reads that and writes it again.
    void ExpectRoundTrip(CChipConfig & chip)
    {
        CZynContext context;
        ASSERT_TRUE(chip.Write(*MakeWriter(mFolder / "first.toml"), context)) << mErrors.Text();
        ReadChip back;
        ASSERT_TRUE(back.Read(mFolder / "first.toml")) << mErrors.Text() << ContentOf(mFolder / "first.toml");
        ExpectEqual(chip, back.Chip());
        ASSERT_TRUE(back.Write(mFolder / "second.toml")) << mErrors.Text();
        EXPECT_EQ(ContentOf(mFolder / "first.toml"), ContentOf(mFolder / "second.toml"));
    }

    // A chip with these elements.
    void ExpectRoundTrip(std::vector<std::unique_ptr<CElement>> elements)
    {
        CChipConfig chip;
        ScriptedReader reader;
        ASubsystem subsystem(1);
        for (auto & element : elements)
            std::move(subsystem).Holding(element.release());
        reader.Delivers(std::move(subsystem).In(15, 1).Tagged("chip=abc"));
        reader.ReadInto(chip);
        ASSERT_EQ(chip.Subsystems().begin()->second->Elements().size(), elements.size());
        ExpectRoundTrip(chip);
    }

    void ExpectRoundTrip(std::unique_ptr<CElement> element)
    {
        std::vector<std::unique_ptr<CElement>> elements;
        elements.push_back(std::move(element));
        ExpectRoundTrip(std::move(elements));
    }

    // A name reaches a file by the record alone.
    template <typename ElementT>
    std::unique_ptr<CElement> Recorded(std::unique_ptr<ElementT> element, const ARecord & record)
    {
        mRecords.push_back(record.Build());
        element->Use(*mRecords.back());
        return element;
    }

    std::vector<std::unique_ptr<CMetadata>> mRecords;
};

template <typename T>
std::unique_ptr<CElement> Numbers(NumericTypeEnum type, const std::vector<T> & values)
{
    auto element = std::make_unique<CElementNumericArray>(type, 1, "", true);
    element->SetValue(values);
    return element;
}

template <typename T>
std::vector<T> EdgesOf()
{
    using Limits = std::numeric_limits<T>;
    return { Limits::min(), static_cast<T>(Limits::min() + 1), static_cast<T>(-1), 0, 1,
        static_cast<T>(Limits::max() / 2), static_cast<T>(Limits::max() / 2 + 1),
        static_cast<T>(Limits::max() - 1), Limits::max() };
}

template <typename T>
std::vector<std::unique_ptr<CElement>> EdgeElements(NumericTypeEnum type)
{
    std::vector<std::unique_ptr<CElement>> elements;
    elements.push_back(Numbers(type, EdgesOf<T>()));
    for (const T value : EdgesOf<T>())
        elements.push_back(Numbers(type, std::vector<T>{ value }));
    return elements;
}

TEST_F(RoundTrip, keeps_the_ends_of_every_integer_type)
{
    using Maker = std::vector<std::unique_ptr<CElement>> (*)(NumericTypeEnum);
    static constexpr Maker MAKERS[] = { &EdgeElements<std::int8_t>, &EdgeElements<std::int16_t>,
        &EdgeElements<std::int32_t>, &EdgeElements<std::int64_t>, &EdgeElements<std::uint8_t>,
        &EdgeElements<std::uint16_t>, &EdgeElements<std::uint32_t>, &EdgeElements<std::uint64_t> };
    for (int type = NUMERIC_INT8; type < NUMERIC_NONE; ++type)
        ExpectRoundTrip(MAKERS[type](static_cast<NumericTypeEnum>(type)));
}

TEST_F(RoundTrip, keeps_the_word_integer)
{
    auto element = std::make_unique<CElementNumericArray>("integer", 1, "n", true);
    element->SetValue(std::vector<std::int64_t>{ -5 });
    ExpectRoundTrip(Recorded(std::move(element), ARecord(1).Named("n").OfType("integer")));
    EXPECT_THAT(ContentOf(mFolder / "first.toml"), ::testing::HasSubstr("type = \"integer\"\nvalue = -5\n"));
}

TEST_F(RoundTrip, keeps_long_arrays)
{
    std::vector<std::uint32_t> values;
    for (std::uint32_t i = 0; i < 1000; ++i)
        values.push_back(i * i * i);
    ExpectRoundTrip(Numbers(NUMERIC_UINT32, values));
}

std::string AllBytes()
{
    std::string bytes;
    for (int byte = 0; byte < 256; ++byte)
        bytes += static_cast<char>(byte);
    return bytes;
}

std::vector<std::string> NastyTexts()
{
    std::vector<std::string> texts{ "", " ", "a", "\"", "\\", "'", "'''", "\"\"\"", "\\\"", "#", "\n", "\t",
        "\r\n", std::string(1, '\0'), std::string("a\0b", 3), "\x7F", "\x1B[31m", "true", "1",
        "{ hex = \"00\" }", "= ]", "h\xC3\xA9llo", "\xE2\x82\xAC", "\xF0\x9F\x98\x80", "\xEF\xBB\xBF",
        "\xE2\x80\xA8", "\xE2\x80\xAE", "\xC2\x85", "\xC2\x9B", "\xC2\xA0", "\xC0\x80", "\xC3", "\xE2\x82",
        "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xF8\x88\x80\x80\x80", "\xFF\xFE", "\xEF\xBF\xBF", "\xEE\x80\x80",
        std::string(10000, 'x'), std::string(10000, '\xFF'), AllBytes() };
    for (const char byte : AllBytes())
        texts.emplace_back(1, byte);
    return texts;
}

TEST_F(RoundTrip, keeps_texts_of_any_bytes)
{
    std::vector<std::unique_ptr<CElement>> elements;
    for (const std::string & text : NastyTexts())
        elements.push_back(std::make_unique<CElementString>(1, "", text, false, true));
    ExpectRoundTrip(std::move(elements));
}

TEST_F(RoundTrip, keeps_octet_strings_of_any_bytes_and_length)
{
    std::vector<std::unique_ptr<CElement>> elements;
    for (const std::string & text : NastyTexts())
        elements.push_back(std::make_unique<CElementString>(1, "", text, true, true));
    for (std::size_t length = 0; length < 70; ++length)
        elements.push_back(std::make_unique<CElementString>(1, "", AllBytes().substr(0, length), true, true));
    ExpectRoundTrip(std::move(elements));
}

TEST_F(RoundTrip, keeps_names_of_any_bytes)
{
    std::vector<std::unique_ptr<CElement>> elements;
    for (const std::string & name : NastyTexts())
        elements.push_back(Recorded(std::make_unique<CElementString>(1, name, "x", false, true),
            ARecord(1).Named(name).OfType("string")));
    ExpectRoundTrip(std::move(elements));
}

TEST_F(RoundTrip, keeps_enumerators_of_any_name)
{
    std::vector<std::unique_ptr<CElement>> elements;
    for (const std::string & name : NastyTexts()) {
        auto element = std::make_unique<CElementEnum>(1, "", true);
        element->AddEnum(name, std::numeric_limits<std::int32_t>::min());
        elements.push_back(std::move(element));
    }
    ExpectRoundTrip(std::move(elements));
}

TEST_F(RoundTrip, keeps_several_enumerators)
{
    auto element = std::make_unique<CElementEnum>(1, "e", true);
    for (int number = 0; number < 20; ++number)
        element->AddEnum("ENUMERATOR_" + std::to_string(number), number);
    ExpectRoundTrip(Recorded(std::move(element), ARecord(1).Named("e").Shaped(METADATA_ENUM)));
}

TEST_F(RoundTrip, keeps_one_value_apart_from_an_array_of_one)
{
    ExpectRoundTrip(Recorded(Numbers(NUMERIC_UINT8, std::vector<std::uint8_t>{ 1 }), ARecord(1).Array()));
    EXPECT_THAT(ContentOf(mFolder / "first.toml"), ::testing::HasSubstr("value = [1]\n"));
    ExpectRoundTrip(Recorded(Numbers(NUMERIC_UINT8, std::vector<std::uint8_t>{ 1 }), ARecord(1)));
    EXPECT_THAT(ContentOf(mFolder / "first.toml"), ::testing::HasSubstr("value = 1\n"));
}

// Structures.

std::unique_ptr<CComplexPayload> Structure(std::vector<IPayload *> fields, bool isRaw = false)
{
    std::unique_ptr<CComplexPayload> structure(
        isRaw ? new CRawPayload("") : new CComplexPayload(PAYLOAD_COMPLEX));
    for (IPayload * field : fields)
        structure->AddField(field);
    return structure;
}

std::unique_ptr<CComplexPayload> Nested(int levels)
{
    auto structure = Structure({ new CUint8Payload(1) });
    for (int level = 1; level < levels; ++level)
        structure = Structure({ structure.release() }, level % 3 == 0);
    return structure;
}

TEST_F(RoundTrip, keeps_structures)
{
    auto element = std::make_unique<CElementStruct>(1, "s", true);
    for (IPayload * field :
        std::vector<IPayload *>{ new CInt8Payload(-128), new CUint64Payload(~std::uint64_t{ 0 }),
            new CStringPayload("text", false), new CStringPayload(AllBytes(), true), new CEnumPayload("E", -1),
            Structure({}).release(), Structure({}, true).release(),
            Structure({ new CStringPayload(AllBytes(), false), Structure({ new CInt64Payload(0) }).release() })
                .release(),
            Structure({ new CUint16Payload(1), new CUint16Payload(2) }, true).release() })
        element->AddField(field);
    ExpectRoundTrip(Recorded(std::move(element), ARecord(1).Named("s").Shaped(METADATA_STRUCT)));
}

TEST_F(RoundTrip, keeps_structures_of_one_field_of_any_kind_by_their_record)
{
    for (IPayload * field : std::vector<IPayload *>{ new CInt8Payload(1), new CStringPayload("a", false),
             new CEnumPayload("E", 1), Structure({}).release() })
    {
        auto element = std::make_unique<CElementStruct>(1, "s", true);
        element->AddField(field);
        ExpectRoundTrip(Recorded(std::move(element), ARecord(1).Named("s").Shaped(METADATA_STRUCT)));
    }
}

TEST_F(RoundTrip, keeps_structures_as_deep_as_a_file_holds)
{
    auto element = std::make_unique<CElementStruct>(1, "", true);
    element->AddField(Nested(100).release());
    ExpectRoundTrip(std::move(element));
}

TEST_F(RoundTrip, keeps_raw_elements)
{
    const std::vector<IPayload *> payloads{ new CUint8Payload(1), new CStringPayload("x", true),
        Nested(5).release() };
    ExpectRoundTrip(Recorded(std::make_unique<CElementRaw>(1, "r", payloads, true), ARecord(1).Named("r")));
}

TEST_F(RoundTrip, keeps_elements_without_a_value)
{
    ExpectRoundTrip(std::make_unique<CElementStruct>(1, "", true));
    ExpectRoundTrip(std::make_unique<CElementRaw>(1, "", std::vector<IPayload *>(), true));
    ExpectRoundTrip(std::make_unique<CIndexedElement>(
        1, "", std::vector<std::uint32_t>{ 1 }, std::vector<IPayload *>(), true));
}

// Rows.

TEST_F(RoundTrip, keeps_rows_and_their_indices)
{
    const std::vector<std::vector<std::uint32_t>> indices{ {}, { 0 }, { 4294967295 }, { 2147483648, 1 },
        { 12, 11, 10, 9, 8, 7, 6, 5, 4, 3, 2, 1 } };
    for (const auto & row : indices)
        for (const bool isLong : { false, true }) {
            std::vector<IPayload *> payloads{ new CUint16Payload(7) };
            if (isLong)
                payloads.push_back(new CUint16Payload(8));
            ExpectRoundTrip(Recorded(std::make_unique<CIndexedElement>(1, "row", row, payloads, true),
                ARecord(1).Named("row").OfType("uint16")));
        }
}

TEST_F(RoundTrip, keeps_rows_of_every_shape)
{
    const auto rowOf = [](std::vector<IPayload *> payloads) {
        return std::make_unique<CIndexedElement>(1, "", std::vector<std::uint32_t>{ 3, 7 }, payloads, true);
    };
    ExpectRoundTrip(rowOf({ new CStringPayload("a", false) }));
    ExpectRoundTrip(rowOf({ new CStringPayload("a", false), new CStringPayload("\xFF", false) }));
    ExpectRoundTrip(rowOf({ new CStringPayload(AllBytes(), true), new CStringPayload("", true) }));
    ExpectRoundTrip(rowOf({ new CStringPayload("a", false), new CStringPayload("b", true) }));
    ExpectRoundTrip(rowOf({ new CEnumPayload("E", 1), new CEnumPayload("F", 2) }));
    ExpectRoundTrip(rowOf({ Structure({ new CInt8Payload(1) }).release(), Nested(3).release() }));
    ExpectRoundTrip(rowOf({ new CUint8Payload(1), new CUint16Payload(1) }));
    ExpectRoundTrip(Recorded(rowOf({ new CUint8Payload(1) }), ARecord(1).Named("").OfType("raw")));
}

TEST_F(RoundTrip, keeps_many_rows_of_one_key_in_order)
{
    ScriptedReader reader;
    ASubsystem subsystem(2);
    for (std::uint32_t row = 0; row < 50; ++row)
        subsystem =
            std::move(subsystem).Holding(Numbers(NUMERIC_UINT32, std::vector<std::uint32_t>{ row }).release(),
                "num_indices=2;index1=" + std::to_string(row) + ";index2=" + std::to_string(50 - row));
    reader.Delivers(std::move(subsystem).In(1, 1));
    CChipConfig chip;
    reader.ReadInto(chip);
    ExpectRoundTrip(chip);
}

// Subsystems.

TEST_F(RoundTrip, keeps_subsystems_without_keys_and_those_that_say_little)
{
    ScriptedReader reader;
    reader.Delivers(ASubsystem(0).In(1, 1)).Delivers(ASubsystem(10).In(15, 65535));
    reader.Delivers(ASubsystem(77).In(2, 1).Holding(new CElementStruct(1, "", true)));
    reader.Delivers(ASubsystem().Holding(new CElementStruct(2, "", true)));
    reader.Delivers(ASubsystem(3).Tagged("store=4").Holding(new CElementStruct(3, "", true)));
    CChipConfig chip;
    reader.ReadInto(chip);
    ASSERT_EQ(chip.Subsystems().size(), 5u);
    ExpectRoundTrip(chip);
}

// The stores of one device are layers in the order in which a reader finds them, so a file must keep that order. The
// library writes by type first; taken as it comes, "bt" would put store 2 below store 1 here.
TEST_F(RoundTrip, keeps_the_order_of_the_stores_of_a_device)
{
    ScriptedReader reader;
    reader.Delivers(ASubsystem(2).In(15, 1).Holding(new CElementString(5, "", "below", false, true)));
    reader.Delivers(ASubsystem(1).In(15, 2).Holding(new CElementStruct(5, "", true)));
    reader.Delivers(ASubsystem(2).In(15, 2).Holding(new CElementString(5, "", "above", false, true)));
    CChipConfig chip;
    reader.ReadInto(chip, "chip=abc");
    ASSERT_EQ(chip.Subsystems().count("abc| |1|2"), 1u);
    ExpectRoundTrip(chip);
}

TEST_F(RoundTrip, keeps_duplicates_that_no_insert_mode_forbids)
{
    ScriptedReader reader;
    reader.Delivers(ASubsystem(1)
                        .In(1, 1)
                        .Holding(new CElementString(1, "", "first", false, true))
                        .Holding(new CElementString(1, "", "second", false, true)));
    CChipConfig chip;
    reader.ReadInto(chip);
    ExpectRoundTrip(chip);
}

TEST_F(RoundTrip, keeps_chips_of_any_name)
{
    for (const std::string & name : { std::string(), std::string("\0\xFF", 2), std::string("a \"b\"") }) {
        ScriptedReader reader;
        reader.Delivers(ASubsystem(1).In(1, 1));
        CChipConfig chip;
        CZynContext context;
        context.SetChip(name);
        reader.SetObserver(chip);
        reader.Read(context);
        ExpectRoundTrip(chip);
    }
}

// Configurations of everything at once, by chance.

class RandomChip
{
public:
    explicit RandomChip(std::uint32_t seed)
        : mRandom(seed)
    {}

    void Fill(CChipConfig & chip)
    {
        static constexpr int DEVICES[] = { 1, 2, 4, 14, 15 };
        ScriptedReader reader;
        const std::uint32_t stores = 1 + Below(8);
        for (std::uint32_t store = 1; store <= stores; ++store) {
            ASubsystem subsystem(static_cast<int>(Below(11)));
            const std::uint32_t keys = Below(40);
            for (std::uint32_t key = 0; key < keys; ++key)
                AddKey(subsystem);
            reader.Delivers(std::move(subsystem).In(DEVICES[Below(5)], static_cast<int>(store)));
        }
        reader.ReadInto(chip, "chip=abc");
    }

private:
    std::uint32_t Below(std::uint32_t limit) { return static_cast<std::uint32_t>(mRandom() % limit); }

    std::string Text()
    {
        std::string text;
        const std::uint32_t length = Below(4) == 0 ? Below(200) : Below(12);
        const bool isPlain = Below(2) == 0;
        for (std::uint32_t i = 0; i < length; ++i)
            text += static_cast<char>(isPlain ? ' ' + Below(95) : Below(256));
        return text;
    }

    IPayload * Number(int type)
    {
        NumericVariable variable;
        variable.mUint64 = mRandom() >> Below(64);
        return CElementNumericArray::GetPayloadByNumericType(static_cast<NumericTypeEnum>(type), variable);
    }

    IPayload * Field(std::uint32_t depth)
    {
        switch (Below(depth < 6 ? 6 : 4)) {
        case 0:
            return new CStringPayload(Text(), Below(2) == 0);
        case 1:
            return new CEnumPayload(Text(), static_cast<std::int32_t>(mRandom()));
        case 4:
        case 5: {
            auto structure = Structure({}, Below(4) == 0);
            for (std::uint32_t count = Below(5); count > 0; --count)
                structure->AddField(Field(depth + 1));
            return structure.release();
        }
        default:
            return Number(static_cast<int>(Below(8)));
        }
    }

    std::unique_ptr<CElement> Plain(std::uint32_t id, const std::string & name, ARecord & record)
    {
        switch (Below(5)) {
        case 0:
            return std::make_unique<CElementString>(id, name, Text(), Below(2) == 0, true);
        case 1: {
            record.Shaped(METADATA_ENUM);
            auto element = std::make_unique<CElementEnum>(id, name, true);
            for (std::uint32_t count = 1 + Below(3); count > 0; --count)
                element->AddEnum(Text(), static_cast<std::int32_t>(mRandom()));
            return element;
        }
        case 2: {
            record.Shaped(METADATA_STRUCT);
            auto element = std::make_unique<CElementStruct>(id, name, true);
            for (std::uint32_t count = 1 + Below(6); count > 0; --count)
                element->AddField(Field(0));
            return element;
        }
        case 3: {
            std::vector<IPayload *> payloads;
            for (std::uint32_t count = 1 + Below(4); count > 0; --count)
                payloads.push_back(Field(3));
            return std::make_unique<CElementRaw>(id, name, payloads, true);
        }
        default:
            return Array(id, name, record);
        }
    }

    std::unique_ptr<CElement> Array(std::uint32_t id, const std::string & name, ARecord & record)
    {
        const auto type = static_cast<NumericTypeEnum>(Below(8));
        std::vector<NumericVariable> values(1 + Below(30));
        for (NumericVariable & value : values)
            value.mUint64 = mRandom() >> Below(64);
        if (Below(2) == 0)
            record.Array();
        auto element = std::make_unique<CElementNumericArray>(type, id, name, true);
        element->SetValue(values);
        return element;
    }

    void AddKey(ASubsystem & subsystem)
    {
        const std::uint32_t id = Below(10) == 0 ? 4294967295U - Below(5) : 1 + Below(100000);
        const bool isKnown = Below(5) != 0;
        const std::string name = isKnown ? Text() : "";
        ARecord record(id);
        record.Named(name).OfType("");
        auto element = Plain(id, name, record);
        std::string tags;
        if (Below(4) == 0) {
            const std::uint32_t count = 1 + Below(9);
            tags = "num_indices=" + std::to_string(count);
            for (std::uint32_t index = 1; index <= count; ++index)
                tags += ";index" + std::to_string(index) + '=' + std::to_string(Below(4294967295U));
        }
        mRecords.push_back(record.Build());   // classes can't be told without one
        element->Use(*mRecords.back());
        std::move(subsystem).Holding(element.release(), tags);
    }

    std::mt19937_64 mRandom;
    std::vector<std::unique_ptr<CMetadata>> mRecords;
};

class RandomRoundTrip : public RoundTrip, public ::testing::WithParamInterface<std::uint32_t>
{};

TEST_P(RandomRoundTrip, keeps_everything)
{
    std::size_t count = 0;
    for (std::uint32_t round = 0; round < 12; ++round) {
        RandomChip random(GetParam() * 1000 + round);
        CChipConfig chip;
        random.Fill(chip);
        for (const auto & [key, subsystem] : chip.Subsystems())
            count += subsystem->Elements().size();
        ExpectRoundTrip(chip);
        if (HasFailure())
            return;
    }
    EXPECT_GT(count, 500u);
}

INSTANTIATE_TEST_SUITE_P(WithSeeds, RandomRoundTrip, ::testing::Range(1U, 9U));

TEST_F(RoundTrip, does_not_mind_a_locale_that_groups_digits)
{
    const GroupingLocale locale;
    RandomChip random(4711);
    CChipConfig chip;
    random.Fill(chip);
    ExpectRoundTrip(chip);
    ExpectRoundTrip(Numbers(NUMERIC_UINT64, EdgesOf<std::uint64_t>()));
    EXPECT_THAT(ContentOf(mFolder / "first.toml"), ::testing::HasSubstr("9223372036854775807"));
}

}   // namespace
