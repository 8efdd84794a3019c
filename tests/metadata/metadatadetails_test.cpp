#include "records.h"

#include <configtools/metadata.h>
#include <support/allocations.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

namespace VrexZynConfigTools {
namespace {

using support::ARecord;
using support::StructRecord;

constexpr int LOWEST = std::numeric_limits<int>::min();
constexpr int HIGHEST = std::numeric_limits<int>::max();

class Details : public testing::Test
{
protected:
    CMetadata mRecord;
    CMetadataDetailSimple mSimple{ mRecord };
    CMetadataDetailEnum mEnum{ mRecord };
    CMetadataDetailStruct mStruct{ mRecord, true, false };
};

TEST_F(Details, each_class_tells_its_type)
{
    EXPECT_EQ(mSimple.MetadataType(), METADATA_SIMPLE);
    EXPECT_EQ(mEnum.MetadataType(), METADATA_ENUM);
    EXPECT_EQ(mStruct.MetadataType(), METADATA_STRUCT);
}

TEST_F(Details, only_a_struct_has_fields_and_only_an_enumeration_enumerators)
{
    EXPECT_EQ(mSimple.GetStructFields(), nullptr);
    EXPECT_EQ(mEnum.GetStructFields(), nullptr);
    ASSERT_NE(mStruct.GetStructFields(), nullptr);
    EXPECT_TRUE(mStruct.GetStructFields()->empty());

    EXPECT_EQ(mSimple.GetEnums(), nullptr);
    EXPECT_EQ(mStruct.GetEnums(), nullptr);
    ASSERT_NE(mEnum.GetEnums(), nullptr);
    EXPECT_TRUE(mEnum.GetEnums()->empty());
}

TEST_F(Details, no_class_knows_a_field_by_name)
{
    mStruct.AddField("field", &mRecord, 0, 8);

    EXPECT_EQ(mSimple.GetStructField("field"), nullptr);
    EXPECT_EQ(mEnum.GetStructField("field"), nullptr);
    EXPECT_EQ(mStruct.GetStructField("field"), nullptr);
}

TEST_F(Details, only_a_struct_prints_something)
{
    mEnum.AddEnum("a", "1");

    EXPECT_EQ(mSimple.ToString(","), "");
    EXPECT_EQ(mEnum.ToString(","), "");
    EXPECT_EQ(mStruct.ToString(","), ",");
}

TEST_F(Details, a_struct_prints_its_fields_in_order_and_one_separator)
{
    const auto first = ARecord(1).Build();
    const auto second = ARecord(2).Build();
    mStruct.AddField("", second.get(), 0, 8);
    mStruct.AddField("", first.get(), 8, 8);

    EXPECT_EQ(mStruct.ToString(";"), second->ToString(";") + first->ToString(";") + ";");
}

TEST_F(Details, a_struct_stores_its_two_flags)
{
    const CMetadataDetailStruct other(mRecord, false, true);

    EXPECT_TRUE(mStruct.IsLittleEndian());
    EXPECT_FALSE(mStruct.IsOctetsInBin());
    EXPECT_FALSE(other.IsLittleEndian());
    EXPECT_TRUE(other.IsOctetsInBin());
}

TEST_F(Details, a_field_has_its_record_position_and_width)
{
    mStruct.AddField("", &mRecord, 5, 3);
    const CStructField & field = *mStruct.GetStructFields()->at(0);

    EXPECT_EQ(field.Metadata(), &mRecord);
    EXPECT_EQ(field.ElemLsbBitPos(), 5);
    EXPECT_EQ(field.ElemBitWidth(), 3);
}

TEST_F(Details, a_struct_can_not_be_copied_for_it_owns_its_fields)
{
    static_assert(!std::is_copy_constructible_v<CMetadataDetailStruct>);
    static_assert(!std::is_copy_assignable_v<CMetadataDetailStruct>);
}

TEST_F(Details, a_field_that_could_not_be_added_is_not_there)
{
    const auto failures = support::FailEachAllocation([&] { mStruct.AddField("", &mRecord, 0, 8); },
        [&] { EXPECT_TRUE(mStruct.GetStructFields()->empty()); });

    EXPECT_EQ(failures, 2U);
    EXPECT_EQ(mStruct.GetStructFields()->size(), 1U);
}

TEST_F(Details, enumerator_numbers_are_read_as_decimal_text)
{
    mEnum.AddEnum("a", "12x");
    mEnum.AddEnum("b", "x");
    mEnum.AddEnum("c", "-5");
    mEnum.AddEnum("d", "0x10");
    mEnum.AddEnum("e", " 010");
    mEnum.AddEnum("f", "");
    mEnum.AddEnum("g", "4294967295");

    EXPECT_EQ(*mEnum.GetEnums(), (std::map<std::string, int>{ { "a", 12 }, { "b", 0 }, { "c", -5 }, { "d", 0 },
                                     { "e", 10 }, { "f", 0 }, { "g", -1 } }));
}

TEST_F(Details, an_enumerator_given_again_replaces_the_earlier_one)
{
    mEnum.AddEnum("a", "1");
    mEnum.AddEnum("a", "2");

    EXPECT_EQ(mEnum.EnumValue("a"), 2);
    EXPECT_EQ(mEnum.GetEnums()->size(), 1U);
}

TEST_F(Details, asking_for_an_unknown_enumerator_adds_it_as_zero)
{
    mEnum.AddEnum("a", "1");

    EXPECT_EQ(mEnum.EnumValue("unknown"), 0);
    EXPECT_EQ(mEnum.GetEnums()->size(), 2U);
    EXPECT_EQ(mEnum.EnumName(0), "unknown");
}

TEST_F(Details, of_enumerators_with_one_number_the_last_by_name_answers)
{
    mEnum.AddEnum("b", "1");
    mEnum.AddEnum("a", "1");

    EXPECT_EQ(mEnum.EnumName(1), "b");
    EXPECT_EQ(mEnum.EnumName(2), "");
}

TEST(CTableIndex, holds_what_it_was_made_of)
{
    const CTableIndex index("name", std::numeric_limits<std::int64_t>::min(),
        std::numeric_limits<std::int64_t>::max(), CTableIndex::INDEX_ENUM);

    EXPECT_EQ(index.Name(), "name");
    EXPECT_EQ(index.Min(), std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(index.Max(), std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(index.Type(), CTableIndex::INDEX_ENUM);
    EXPECT_EQ(index.EnumCount(), 0U);
    EXPECT_TRUE(index.Enums().empty());
    static_assert(!std::is_polymorphic_v<CTableIndex>);
}

TEST(CTableIndex, an_unknown_enumerator_is_minus_one_and_is_not_added)
{
    CTableIndex index("name", 0, 1, CTableIndex::INDEX_ENUM);
    index.AddEnum("a", 7);

    EXPECT_EQ(index.EnumValue("a"), 7);
    EXPECT_EQ(index.EnumValue("unknown"), -1);
    EXPECT_EQ(index.EnumCount(), 1U);
}

TEST(CTableIndex, an_enumerator_given_again_replaces_the_earlier_one)
{
    CTableIndex index("name", 0, 1, CTableIndex::INDEX_ENUM);
    index.AddEnum("a", 7);
    index.AddEnum("a", 8);

    EXPECT_EQ(index.Enums(), (std::map<std::string, std::int32_t>{ { "a", 8 } }));
}

TEST(CTableIndex, of_enumerators_with_one_number_the_first_by_name_answers)
{
    CTableIndex index("name", 0, 1, CTableIndex::INDEX_ENUM);
    index.AddEnum("b", 1);
    index.AddEnum("a", 1);

    EXPECT_EQ(index.EnumLabel(1), "a");
    EXPECT_EQ(index.EnumLabel(2), "");
}

struct Field
{
    int mPosition;
    int mWidth;
};

/// The positions in the order that the target holds them.
std::vector<int> Ordered(bool isLittleEndian, const std::vector<Field> & fields)
{
    StructRecord key(ARecord(1), isLittleEndian);
    const auto record = ARecord(0).Build();
    for (const Field & field : fields)
        key.Add(*record, field.mPosition, field.mWidth);
    key.mDetail->OrderFieldsForTargetArchitecture();
    return key.Positions();
}

std::vector<int> LittleEndian(const std::vector<Field> & fields)
{
    return Ordered(true, fields);
}

std::vector<int> BigEndian(const std::vector<Field> & fields)
{
    return Ordered(false, fields);
}

using Positions = std::vector<int>;

TEST(FieldOrder, little_endian_fields_ascend)
{
    EXPECT_EQ(LittleEndian({ { 8, 8 }, { 0, 8 } }), (Positions{ 0, 8 }));
    EXPECT_EQ(LittleEndian({ { 24, 8 }, { 16, 8 }, { 8, 8 }, { 0, 8 } }), (Positions{ 0, 8, 16, 24 }));
    EXPECT_EQ(LittleEndian({}), Positions{});
}

TEST(FieldOrder, positions_are_compared_as_signed_numbers)
{
    EXPECT_EQ(LittleEndian({ { HIGHEST, 1 }, { 0, 1 }, { LOWEST, 1 }, { -1, 1 } }),
        (Positions{ LOWEST, -1, 0, HIGHEST }));
}

TEST(FieldOrder, fields_at_one_position_keep_their_order)
{
    StructRecord key(ARecord(1));
    const auto record = ARecord(0).Build();
    for (int width = 0; width < 40; ++width)
        key.Add(*record, width % 2, width);
    key.mDetail->SortByAscendingBitPosition();

    int last = -1;
    for (const CStructField * const field : *key.mDetail->GetStructFields()) {
        if (field->ElemLsbBitPos() == 1 && last == 38)
            last = -1;
        EXPECT_GT(field->ElemBitWidth(), last);
        last = field->ElemBitWidth();
    }
}

TEST(FieldOrder, big_endian_fields_are_reversed_within_each_word)
{
    EXPECT_EQ(BigEndian({ { 0, 8 }, { 8, 8 }, { 16, 8 }, { 24, 8 } }), (Positions{ 8, 0, 24, 16 }));
    EXPECT_EQ(BigEndian({ { 24, 8 }, { 0, 8 }, { 16, 8 }, { 8, 8 } }), (Positions{ 8, 0, 24, 16 }));
    EXPECT_EQ(
        BigEndian({ { 0, 1 }, { 1, 7 }, { 8, 4 }, { 12, 4 }, { 16, 4 } }), (Positions{ 12, 8, 1, 0, 16 }));
}

TEST(FieldOrder, a_last_run_short_of_the_boundary_stays)
{
    EXPECT_EQ(BigEndian({ { 0, 4 }, { 4, 4 } }), (Positions{ 0, 4 }));
    EXPECT_EQ(BigEndian({ { 0, 8 }, { 8, 8 }, { 16, 4 }, { 20, 4 } }), (Positions{ 8, 0, 16, 20 }));
}

TEST(FieldOrder, a_wide_field_closes_the_run_ahead_of_it)
{
    EXPECT_EQ(BigEndian({ { 0, 8 }, { 8, 32 } }), (Positions{ 0, 8 }));
    EXPECT_EQ(
        BigEndian({ { 0, 4 }, { 4, 4 }, { 8, 16 }, { 24, 4 }, { 28, 4 } }), (Positions{ 4, 0, 8, 28, 24 }));
}

TEST(FieldOrder, sixteen_bits_are_wide_and_fifteen_are_not)
{
    EXPECT_EQ(BigEndian({ { 0, 1 }, { 1, 15 }, { 16, 1 } }), (Positions{ 1, 0, 16 }));
    EXPECT_EQ(BigEndian({ { 0, 1 }, { 1, 16 }, { 17, 1 } }), (Positions{ 0, 1, 17 }));
    EXPECT_EQ(BigEndian({ { 0, 1 }, { 1, 17 }, { 18, 14 } }), (Positions{ 0, 1, 18 }));
}

TEST(FieldOrder, a_negative_width_counts_as_wide)
{
    EXPECT_EQ(BigEndian({ { 0, 4 }, { 1, 4 }, { 2, -2 }, { 3, 4 } }), (Positions{ 1, 0, 2, 3 }));
    EXPECT_EQ(BigEndian({ { 0, 4 }, { 1, 4 }, { 2, LOWEST } }), (Positions{ 1, 0, 2 }));
}

TEST(FieldOrder, a_width_of_zero_at_a_boundary_ends_a_run)
{
    EXPECT_EQ(BigEndian({ { -4, 4 }, { 0, 0 }, { 1, 4 } }), (Positions{ -4, 0, 1 }));
    EXPECT_EQ(BigEndian({ { 1, 4 }, { 2, 4 }, { 16, 0 }, { 17, 4 } }), (Positions{ 16, 2, 1, 17 }));
}

TEST(FieldOrder, the_ends_of_the_number_range_do_no_harm)
{
    EXPECT_EQ(BigEndian({ { LOWEST, HIGHEST }, { HIGHEST, LOWEST } }), (Positions{ LOWEST, HIGHEST }));
    EXPECT_EQ(BigEndian({ { HIGHEST - 8, 1 }, { HIGHEST, 1 } }), (Positions{ HIGHEST, HIGHEST - 8 }));
    EXPECT_EQ(BigEndian({ { LOWEST, 8 }, { LOWEST + 8, 8 } }), (Positions{ LOWEST + 8, LOWEST }));
}

TEST(FieldOrder, an_empty_big_endian_struct_stays_empty)
{
    EXPECT_EQ(BigEndian({}), Positions{});
}

TEST(FieldOrder, of_a_struct_that_holds_a_struct_only_the_inner_fields_are_reordered)
{
    StructRecord outer(ARecord(1), false);
    StructRecord inner(ARecord(0), false);
    const auto leaf = ARecord(0).Build();
    inner.Add(*leaf, 0, 8);
    inner.Add(*leaf, 8, 8);
    outer.Add(*leaf, 16, 8);
    outer.Add(*inner.mRecord, 0, 16);
    EXPECT_TRUE(outer.mDetail->IsNested());
    EXPECT_FALSE(inner.mDetail->IsNested());

    outer.mDetail->OrderFieldsForTargetArchitecture();

    EXPECT_EQ(outer.Positions(), (Positions{ 16, 0 }));
    EXPECT_EQ(inner.Positions(), (Positions{ 8, 0 }));
}

TEST(FieldOrder, each_inner_struct_goes_by_its_own_endianness)
{
    StructRecord outer(ARecord(1), false);
    StructRecord big(ARecord(0), false);
    StructRecord little(ARecord(0), true);
    const auto leaf = ARecord(0).Build();
    for (StructRecord * const inner : { &big, &little }) {
        inner->Add(*leaf, 8, 8);
        inner->Add(*leaf, 0, 8);
        outer.Add(*inner->mRecord);
    }
    outer.mDetail->OrderFieldsForTargetArchitecture();

    EXPECT_EQ(big.Positions(), (Positions{ 8, 0 }));
    EXPECT_EQ(little.Positions(), (Positions{ 0, 8 }));
}

TEST(FieldOrder, sorting_alone_looks_at_neither_endianness_nor_nesting)
{
    StructRecord outer(ARecord(1), false);
    StructRecord inner(ARecord(0), false);
    const auto leaf = ARecord(0).Build();
    outer.Add(*inner.mRecord, 8, 8);
    outer.Add(*leaf, 0, 8);
    outer.mDetail->SortByAscendingBitPosition();

    EXPECT_EQ(outer.Positions(), (Positions{ 0, 8 }));
}

}   // namespace
}   // namespace VrexZynConfigTools
