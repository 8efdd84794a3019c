// Trees that are no form of the struct, and metadata that can't be followed.

#include "trees.h"

#include <configtools/metadata.h>
#include <kit/layout/structtree.h>

#include <gtest/gtest.h>

namespace VrexZynConfigTools::support {
namespace {

/// Owns the payloads given to it.
std::unique_ptr<CComplexPayload> List(std::initializer_list<IPayload *> fields)
{
    auto list = std::make_unique<CComplexPayload>(PAYLOAD_COMPLEX);
    for (IPayload * const field : fields)
        list->AddField(field);
    return list;
}

IPayload * Number(std::uint32_t value)
{
    return new CUint32Payload(value);
}

std::string ErrorOf(CComplexPayload & tree, const StructRecord & key)
{
    const auto result = kit::layout::CodecTree(tree, *key.mDetail);
    EXPECT_EQ(result.mTree == nullptr, !result.mError.empty());
    return result.mError;
}

class MisfitStructTree : public testing::Test
{
protected:
    const std::unique_ptr<CMetadata> mNumber = WithDetail(ARecord(0).Named("Number").OfType("uint8"));
    const std::unique_ptr<CMetadata> mOther = WithDetail(ARecord(0).Named("Other").OfType("uint8"));
    const std::unique_ptr<CMetadata> mArray = WithDetail(ARecord(0).Named("Array").OfType("uint8").Array());
    StructRecord mInner{ ARecord(0).Named("Inner") };
    StructRecord mRows{ ARecord(0).Named("Rows").Array() };
    StructRecord mKey{ ARecord(7).Named("Key") };
};

TEST_F(MisfitStructTree, of_a_field_without_a_value_is_refused)
{
    mKey.Add(*mNumber, 0, 8);
    mKey.Add(*mOther, 8, 8);
    EXPECT_EQ(ErrorOf(*List({ Number(1) }), mKey), "Other: the field has no value");
    EXPECT_EQ(ErrorOf(*List({ nullptr, Number(1) }), mKey), "Other: the field has no value");
}

TEST_F(MisfitStructTree, with_the_value_of_the_next_field_in_its_place_is_refused)
{
    mKey.Add(*mNumber, 0, 8);
    mKey.Add(*mOther, 8, 8);
    auto * const others = new CUint8Payload(1);
    others->Use(*mOther);
    EXPECT_EQ(ErrorOf(*List({ others, Number(2) }), mKey), "Number: the field has no value");
}

TEST_F(MisfitStructTree, with_a_value_too_many_is_refused)
{
    mKey.Add(*mNumber, 0, 8);
    EXPECT_EQ(ErrorOf(*List({ Number(1), Number(2) }), mKey), "the struct has 1 value too many");
    EXPECT_EQ(ErrorOf(*List({ Number(1), Number(2), Number(3) }), mKey), "the struct has 2 values too many");
}

TEST_F(MisfitStructTree, with_a_list_for_a_number_or_a_number_for_a_list_is_refused)
{
    mInner.Add(*mNumber, 0, 8);
    mKey.Add(*mNumber, 0, 8);
    EXPECT_EQ(ErrorOf(*List({ List({ Number(1) }).release() }), mKey),
        "Number: the value is no number, and no text that fits into 8 bits");

    StructRecord nesting{ ARecord(7).Named("Key") };
    nesting.Add(*mInner.mRecord, 0, 8);
    EXPECT_EQ(ErrorOf(*List({ Number(1) }), nesting), "Inner: a struct was given a plain value");

    mRows.Add(*mNumber, 0, 8);
    StructRecord rows{ ARecord(7).Named("Key") };
    rows.Add(*mRows.mRecord, 0, 16);
    EXPECT_EQ(ErrorOf(*List({ Number(1) }), rows), "Rows: an array of structs was given a plain value");
}

TEST_F(MisfitStructTree, names_the_fields_on_the_way)
{
    mInner.Add(*mNumber, 0, 8);
    mKey.Add(*mInner.mRecord, 0, 8);
    EXPECT_EQ(ErrorOf(*List({ List({}).release() }), mKey), "Inner.Number: the field has no value");
}

TEST_F(MisfitStructTree, with_more_items_than_the_width_holds_is_refused)
{
    mKey.Add(*mArray, 0, 16);
    EXPECT_EQ(ErrorOf(*List({ List({ Number(1), Number(2), Number(3) }).release() }), mKey),
        "Array: the array has more items than the 2 that its width holds");

    auto flat = List({ Number(1), Number(2), Number(3) });
    flat->Use(*mArray);   // and so every item
    EXPECT_EQ(ErrorOf(*flat, mKey), "Array: the array has more items than the 2 that its width holds");
}

TEST_F(MisfitStructTree, with_an_item_that_is_no_number_is_refused)
{
    mKey.Add(*mArray, 0, 16);
    EXPECT_EQ(ErrorOf(*List({ List({ new CStringPayload("x", false) }).release() }), mKey),
        "Array: an item of the array is no number");
}

TEST_F(MisfitStructTree, with_more_structs_than_the_width_holds_is_refused)
{
    mRows.Add(*mNumber, 0, 8);
    mKey.Add(*mRows.mRecord, 0, 8);
    IPayload * const two = List({ List({ Number(1) }).release(), List({ Number(2) }).release() }).release();
    EXPECT_EQ(ErrorOf(*List({ two }), mKey), "Rows: the array has 2 structs; its width holds 1");

    auto flat = List({ List({ Number(1) }).release(), List({ Number(2) }).release() });
    for (IPayload * const row : flat->GetFields())
        dynamic_cast<CComplexPayload &>(*row).Use(*mRows.mRecord);
    EXPECT_EQ(ErrorOf(*flat, mKey), "Rows: the array has more structs than its width holds");
}

TEST_F(MisfitStructTree, with_words_that_are_none_is_refused)
{
    mKey.Add(*mNumber, 0, 80);
    const auto words = [](std::uint32_t last, std::size_t count) {
        auto list = List({});
        for (std::size_t place = 1; place < count; ++place)
            list->AddField(new CUint16Payload(1));
        list->AddField(Number(last));
        return List({ list.release() });
    };
    EXPECT_EQ(ErrorOf(*words(0xFFFF, 5), mKey), "");
    EXPECT_EQ(ErrorOf(*words(0x10000, 5), mKey), "Number: the value is no list of words of 16 bits");
    EXPECT_EQ(ErrorOf(*words(1, 6), mKey), "Number: the value has 6 words; the field holds 5");
}

TEST_F(MisfitStructTree, of_structs_without_end_is_refused)
{
    mInner.Add(*mInner.mRecord, 0, 8);
    auto tree = List({});
    for (int depth = 0; depth < 200; ++depth)
        tree = List({ tree.release() });
    EXPECT_NE(ErrorOf(*tree, mInner).find("nests structs too deep"), std::string::npos);
}

TEST_F(MisfitStructTree, of_metadata_without_records_or_details_is_refused)
{
    mKey.mDetail->AddField("x", nullptr, 0, 8);
    EXPECT_EQ(ErrorOf(*List({ Number(1) }), mKey), "a field of the struct has no metadata");

    const auto bare = ARecord(0).Named("Bare").Shaped(METADATA_STRUCT).Build();
    StructRecord key{ ARecord(7).Named("Key") };
    key.Add(*bare, 0, 8);
    EXPECT_EQ(ErrorOf(*List({ List({}).release() }), key), "Bare: the struct has no fields in the metadata");
}

TEST_F(MisfitStructTree, of_absurd_widths_costs_no_memory)
{
    mKey.Add(*mNumber, 0, 0x7FFFFFFF);
    EXPECT_EQ(
        ErrorOf(*List({ Number(1) }), mKey), "Number: the metadata describes a field that is far too wide");

    mRows.Add(*mNumber, 0, 0);
    StructRecord key{ ARecord(7).Named("Key") };
    key.Add(*mRows.mRecord, -5, -8);
    IPayload * const one = List({ List({ Number(1) }).release() }).release();
    EXPECT_EQ(ErrorOf(*List({ one }), key), "Rows: the array has 1 structs; its width holds 0");
}

}   // namespace
}   // namespace VrexZynConfigTools::support
