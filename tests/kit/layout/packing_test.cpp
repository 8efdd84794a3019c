// Structs packed and unpacked: what is said to be changed, held against the library's codec.

#include "model.h"

#include <kit/layout/fields.h>
#include <kit/layout/packing.h>

#include <gmock/gmock.h>

#include <set>

namespace VrexZynConfigTools::support {
namespace {

using kit::layout::Change;
using kit::layout::Loss;
using kit::layout::PackStruct;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint32_t LAYOUTS = 500;

std::string TextOfNumbers(const Leaf & leaf, const std::vector<std::uint64_t> & numbers)
{
    std::string bytes;
    for (const std::uint64_t number : numbers)
        for (int place = 0; place < (leaf.IsWide() ? 2 : leaf.Width() / 8); ++place)
            bytes += static_cast<char>(number >> (8 * place) & 0xFF);
    if (leaf.Record().InternalType() == "string")
        bytes.resize(bytes.find_last_not_of('\0') + 1);   // none: to nothing
    return bytes;
}

IPayload * NewTyped(const std::string & type, std::uint64_t number)
{
    NumericVariable value;
    value.mUint64 = number;
    CElementNumericArray element(type, 0, "", true);
    const auto known = element.Type() != NUMERIC_NONE ? element.Type() : NUMERIC_INT64;
    return CElementNumericArray::GetPayloadByNumericType(known, value);
}

/// As a reader of text makes it, in the classes that the records say.
IPayload * NewLeafByRecord(const Leaf & leaf, const std::vector<std::uint64_t> & numbers)
{
    if (leaf.IsText())
        return new CStringPayload(TextOfNumbers(leaf, numbers), leaf.Record().InternalType() != "string");
    if (leaf.Record().MetadataType() == METADATA_ENUM) {
        const auto number = static_cast<std::int32_t>(numbers.at(0));
        auto & enumerators = dynamic_cast<CMetadataDetailEnum &>(*leaf.Record().Details());
        return new CEnumPayload(enumerators.EnumName(number), number);
    }
    if (!leaf.Record().IsArray() && !leaf.IsWide())
        return NewTyped(TypeOfNumber(*leaf.mStructField), numbers.at(0));
    auto * const list = new CComplexPayload(PAYLOAD_COMPLEX);
    for (const std::uint64_t number : numbers)
        list->AddField(NewTyped(leaf.IsWide() ? "uint16" : leaf.Record().InternalType(), number));
    return list;
}

TEST(PackedStructs, of_generated_layouts_change_exactly_what_the_codec_changes)
{
    for (std::uint32_t seed = 0; seed < LAYOUTS && !testing::Test::HasFailure(); ++seed) {
        SCOPED_TRACE(seed);
        RandomSource random(seed);
        MemoryProvider provider({ "x" });
        CMetadataDetailStruct & layout = AGeneratedLayout(random, provider);
        const std::vector<Leaf> leaves = LeavesOf(layout);
        const kit::layout::CFields fields(layout);
        for (int attempt = 0; attempt < 10; ++attempt) {
            LeafNumbers numbers;
            for (const Leaf & leaf : leaves) {
                numbers.emplace_back();
                const int held = leaf.IsText() ? leaf.Width() / 8 * 8 : 64;   // no longer text gets so far
                for (std::size_t item = 0; item < leaf.mCount; ++item)
                    numbers.back().push_back(Low(leaf.Cut(random.Of(leaf.mValues), item), held));
            }
            std::size_t next = 0;
            const auto tree = TreeOf(layout, leaves, numbers, next, &NewLeafByRecord);
            std::set<std::string> expected;
            const LeafNumbers back = ThroughTheCodec(layout, leaves, numbers);
            for (std::size_t place = 0; place < leaves.size(); ++place)
                if (numbers[place] != back[place])
                    expected.insert(fields.List()[leaves[place].mField].mPath);
            const auto packed = PackStruct(*tree, layout);
            EXPECT_EQ(packed.mError, "");
            std::set<std::string> changed;
            for (const Change & change : packed.mChanges)
                changed.insert(change.mPath);
            EXPECT_EQ(changed, expected)
                << Text(layout) << testing::PrintToString(numbers) << " -> " << testing::PrintToString(back);
        }
    }
}

/// A struct of one key, filled field by field.
class PackedStruct : public testing::Test
{
protected:
    std::vector<std::string> ChangesOf(
        std::vector<std::int64_t> values, const std::vector<std::string> & texts = {})
    {
        const Instance instance = ReadFieldByField(mKey, ListSource(std::move(values), texts));
        const auto packed = PackStruct(instance.Tree(), mLayout);
        EXPECT_EQ(packed.mError, "");
        std::vector<std::string> changes;
        for (const Change & change : packed.mChanges)
            changes.push_back(change.mField + ": " + change.Text());
        return changes;
    }

    void Add(const ARecord & record, int position, int width)
    {
        mLayout.AddField("", &mProvider.NumberField(record), position, width);
    }

    MemoryProvider mProvider{ { "x" } };
    CMetadata & mKey = mProvider.StructField(ARecord(7).Named("Key"));
    CMetadataDetailStruct & mLayout = dynamic_cast<CMetadataDetailStruct &>(*mKey.Details());
};

TEST_F(PackedStruct, tells_field_value_and_reason_of_each_change)
{
    Add(ARecord(0).Named("Whole").OfType("uint64").Within(0, 9), 0, 64);
    Add(ARecord(0).Named("Narrow").OfType("uint8").Within(0, 7), 64, 3);
    Add(ARecord(0).Named("Plain").OfType("int8").Within(-4, 3), 67, 3);
    Add(ARecord(0).Named("Right").OfType("uint8").Within(0, 7), 80, 8);
    EXPECT_THAT(ChangesOf({ 5, 8, -1, 7 }),
        ElementsAre("Whole: the value 5 comes back as 0, as a field of exactly 64 bits is unpacked as 0",
            "Narrow: the value 8 doesn't fit into 3 bits",
            "Plain: the value -1 comes back as 7, as it is unpacked without its sign"));
    EXPECT_THAT(ChangesOf({ 0, 7, 3, 7 }), IsEmpty());
}

TEST_F(PackedStruct, gives_a_field_of_16_bits_values_of_any_class)
{
    mLayout.AddField("", &mProvider.EnumField(ARecord(0).Named("E"), { { "A", 0 }, { "B", 1 } }), 0, 16);
    Add(ARecord(0).Named("W").OfType("uint32").Within(0, 65535), 16, 16);
    EXPECT_THAT(ChangesOf({ 1, 65535 }), IsEmpty());
}

TEST_F(PackedStruct, has_no_bits_of_a_negative_number_in_the_fields_beside_it)
{
    Add(ARecord(0).Named("N").OfType("int32").Formatted("signed_decimal").Within(-9, 9), 0, 20);
    Add(ARecord(0).Named("B").OfType("uint8").Within(0, 15), 20, 4);
    EXPECT_THAT(ChangesOf({ -1, 0 }), IsEmpty());
}

TEST_F(PackedStruct, blames_the_field_beside_one_whose_value_is_beyond_its_range)
{
    Add(ARecord(0).Named("A").OfType("uint8").Within(0, 15), 0, 8);
    Add(ARecord(0).Named("B").OfType("uint8").Within(0, 15), 4, 4);
    EXPECT_THAT(ChangesOf({ 16, 0 }),
        ElementsAre("B: the value 0 comes back as 1, as other fields are packed into its bits"));
}

TEST_F(PackedStruct, keeps_texts_but_not_the_length_of_octets)
{
    Add(ARecord(0).Named("T").OfType("string").Within(0, 4), 0, 32);
    Add(ARecord(0).Named("O").OfType("octet_string").Within(0, 2), 32, 16);
    EXPECT_THAT(ChangesOf({}, { "ab", std::string("a\0", 2) }), IsEmpty());
    EXPECT_THAT(ChangesOf({}, { "", "a" }),
        ElementsAre("O: the value a comes back as a\\x00, as the number of octets is not packed"));
}

TEST_F(PackedStruct, names_structs_in_arrays_by_their_places)
{
    CMetadata & rows = mProvider.StructField(ARecord(0).Named("Rows").Array());
    dynamic_cast<CMetadataDetailStruct &>(*rows.Details())
        .AddField("", &mProvider.NumberField(ARecord(0).Named("N").OfType("uint8").Within(0, 9)), 0, 4);
    mLayout.AddField("", &rows, 0, 8);
    CComplexPayload tree(PAYLOAD_COMPLEX);
    auto * const list = new CComplexPayload(PAYLOAD_COMPLEX);
    tree.AddField(list);
    for (const std::uint8_t value : { std::uint8_t{ 3 }, std::uint8_t{ 17 } }) {
        auto * const row = new CComplexPayload(PAYLOAD_COMPLEX);
        row->AddField(new CUint8Payload(value));
        list->AddField(row);
    }
    const auto packed = PackStruct(tree, mLayout);
    ASSERT_EQ(packed.mChanges.size(), 1U);
    EXPECT_EQ(packed.mChanges[0].mField, "Rows[1].N");
    EXPECT_EQ(packed.mChanges[0].mLoss, Loss::TOO_WIDE);
}

TEST_F(PackedStruct, has_an_example_for_each_field_that_does_not_come_back)
{
    Add(ARecord(0).Named("Replaced").OfType("uint8").Within(0, 15), 0, 4);
    Add(ARecord(0).Named("Unaligned").OfType("uint16").Within(0, 65535), 4, 16);
    Add(ARecord(0).Named("Right").OfType("uint8").Within(0, 15), 32, 4);
    const kit::layout::CFields fields(mLayout);
    std::vector<std::string> examples;
    for (const Change & change : ExamplesOf(fields, mLayout))
        examples.push_back(change.mPath + ' ' + change.mValue + ' ' + change.mBack);
    EXPECT_THAT(examples, ElementsAre("Replaced 15 0", "Unaligned 65535 4095"));
}

}   // namespace
}   // namespace VrexZynConfigTools::support
