// How the width of a struct field decides about the type of its numbers and about their count.

#include "factory_fixture.h"

#include <cstdint>
#include <string>

namespace VrexZynConfigTools {
namespace {

using support::ARecord;
using support::Calls;
using support::StructRecord;
using support::TreeOf;
using support::WithDetail;

class FieldWidths : public support::FactoryTest
{
protected:
    /// Tells the factory of a field, outside a struct, as far as its width goes.
    void Int(const IMetadata & field, int width)
    {
        mFactory.Clear();
        mFactory.SetContextInfo("elembitwidth", width);
        mFactory.Int(field);
    }
};

ARecord AField(const std::string & type)
{
    return ARecord(0).Named("field").OfType(type).Within(0, 255);
}

TEST_F(FieldWidths, an_array_takes_as_many_items_as_its_width_holds)
{
    const auto field = WithDetail(AField("uint8").Array());
    mSource.Numbers({ 1, 2, 3, 4 });
    Int(*field, 24);

    EXPECT_EQ(TreeOf(Collect()), "uint8=1 uint8=2 uint8=3");
    EXPECT_EQ(mSource.Calls(), (Calls{ "NextInt uint8", "NextInt uint8", "NextInt uint8" }));
    EXPECT_FALSE(mFactory.InspectDetailAgain()) << "although the source has more";
}

TEST_F(FieldWidths, an_item_that_fits_in_part_is_taken_too)
{
    const auto field = WithDetail(AField("uint8").Array());
    for (const auto & [width, count] : { std::pair{ 9, 2U }, { 16, 2U }, { 17, 3U }, { 24, 3U }, { 25, 4U } }) {
        support::ScriptedSource source;
        source.Numbers({ 1, 2, 3, 4, 5 });
        CElementFactory factory(&source, mContext, nullptr);
        factory.SetContextInfo("elembitwidth", width);
        factory.Int(*field);
        EXPECT_EQ(source.Calls().size(), count) << width;
    }
}

TEST_F(FieldWidths, an_array_ends_early_where_the_source_does)
{
    const auto field = WithDetail(AField("uint8").Array());
    mSource.Number(1).Number(2).Last().Number(3);
    Int(*field, 24);

    EXPECT_EQ(TreeOf(Collect()), "uint8=1 uint8=2");
}

TEST_F(FieldWidths, an_array_ends_early_where_a_value_is_out_of_range)
{
    const auto field = WithDetail(AField("uint16").Array());
    mSource.Numbers({ 1, 256, 3 });
    Int(*field, 48);

    EXPECT_EQ(mSource.Left(), 1U);
    EXPECT_EQ(Collect(), nullptr);
    EXPECT_EQ(mErrors.Text(), "Read value 256 is out of range [0,255]");
}

TEST_F(FieldWidths, an_array_of_one_item_or_none_is_read_until_the_source_ends)
{
    // A struct's field takes one then, and the walk comes again.
    const auto field = WithDetail(AField("uint32").Array());
    for (const int width : { 0, 1, 16, 32 }) {
        support::ScriptedSource source;
        source.Numbers({ 1, 2 }).Number(3).Last().Number(4);
        CElementFactory factory(&source, mContext, nullptr);
        factory.SetContextInfo("elembitwidth", width);
        factory.Int(*field);
        EXPECT_EQ(source.Calls().size(), 3U) << width;
    }
}

TEST_F(FieldWidths, an_array_of_a_negative_width_asks_for_nothing)
{
    const auto field = WithDetail(AField("uint8").Array());
    for (const int width : { -1, -100 }) {
        Int(*field, width);
        EXPECT_EQ(TreeOf(Collect()), "none") << width;
        EXPECT_FALSE(mFactory.InspectDetailAgain()) << width;
    }
    EXPECT_TRUE(mSource.Calls().empty());
    EXPECT_FALSE(mErrors.IsSet());
}

TEST_F(FieldWidths, an_array_of_a_type_without_a_width_has_items_of_8_bits)
{
    const auto field = WithDetail(AField("integer").Array());
    mSource.Numbers({ 1, 2, 3 });
    Int(*field, 16);

    EXPECT_EQ(TreeOf(Collect()), "int64=1 int64=2");
    EXPECT_EQ(mSource.Calls(), (Calls{ "NextInt integer", "NextInt integer" }));
}

TEST_F(FieldWidths, an_array_without_details_has_items_of_8_bits_too)
{
    const auto field = AField("integer").Array().Build();
    mSource.Numbers({ 1, 2, 3 });
    Int(*field, 16);

    EXPECT_EQ(mSource.Calls().size(), 2U);
}

/// The number of items asked for in 48 bits when the record's fields are the given ones.
std::size_t ItemsIn48Bits(const std::vector<std::pair<int, int>> & positionsAndWidths)
{
    StructRecord array(ARecord(0).OfType("integer").Array());
    for (const auto & [position, width] : positionsAndWidths)
        array.Add(CNullMetadata::Ref(), position, width);
    support::ScriptedSource source;
    source.Numbers({ 1, 2, 3, 4, 5, 6, 7, 8 });
    CZynContext context;
    CElementFactory factory(&source, context, nullptr);
    factory.SetContextInfo("elembitwidth", 48);
    factory.Int(*array.mRecord);
    return source.Calls().size();
}

TEST_F(FieldWidths, an_array_with_a_field_list_has_items_as_long_as_its_last_field_reaches)
{
    EXPECT_EQ(ItemsIn48Bits({ { 0, 12 } }), 4U);
    EXPECT_EQ(ItemsIn48Bits({ { 12, 12 }, { 0, 12 } }), 2U);
    EXPECT_EQ(ItemsIn48Bits({ { 0, 20 } }), 3U);
}

TEST_F(FieldWidths, an_array_with_a_field_list_has_items_of_8_bits_at_least)
{
    EXPECT_EQ(ItemsIn48Bits({}), 6U);
    EXPECT_EQ(ItemsIn48Bits({ { 0, 3 } }), 6U);
    EXPECT_EQ(ItemsIn48Bits({ { -100, 3 } }), 6U);   // compared as signed numbers
}

struct TypeCase
{
    int mWidth;
    const char * mFormat;
    const char * mType;
};

TEST_F(FieldWidths, a_type_without_a_width_becomes_the_smallest_that_holds_the_field)
{
    const TypeCase cases[] = { { 12, "hexadecimal", "uint16" }, { 12, "unsigned_decimal", "uint16" },
        { 12, "signed_decimal", "int16" }, { 12, "", "int16" }, { 1, "hexadecimal", "uint8" },
        { 8, "", "int8" }, { 9, "", "int16" }, { 16, "hexadecimal", "uint16" }, { 17, "", "int32" },
        { 32, "hexadecimal", "uint32" }, { 33, "hexadecimal", "uint64" }, { 64, "", "int64" },
        { 12, "Hexadecimal", "int16" } };
    for (const TypeCase & row : cases) {
        support::ScriptedSource source;
        source.Number(5).Last();
        CElementFactory factory(&source, mContext, nullptr);
        factory.SetContextInfo("elembitwidth", row.mWidth);
        factory.Int(*WithDetail(AField("integer").Formatted(row.mFormat)));
        const std::unique_ptr<CElement> element(factory.Collect());
        EXPECT_EQ(source.Calls(), Calls{ std::string("NextInt ") + row.mType }) << row.mWidth;
        EXPECT_EQ(TreeOf(element), std::string(row.mType) + "=5") << row.mWidth;
    }
}

TEST_F(FieldWidths, a_type_without_a_width_stays_where_no_type_holds_the_field)
{
    const auto field = WithDetail(AField("integer").Formatted("hexadecimal"));
    for (const int width : { 0, 65, -1 }) {
        mSource.Number(5).Last();
        Int(*field, width);
        EXPECT_EQ(mSource.Calls().back(), "NextInt integer") << width;
        EXPECT_EQ(TreeOf(Collect()), "int64=5") << width;
    }
}

TEST_F(FieldWidths, the_type_found_is_the_type_checked)
{
    const auto field = WithDetail(AField("integer").Formatted("hexadecimal").Within(0, 5));
    mSource.Number(0x10006).Last();
    Int(*field, 12);

    EXPECT_EQ(mErrors.Text(), "Read value 6 is out of range [0,5]");
}

TEST_F(FieldWidths, a_type_with_a_width_stays_whatever_the_field_s_width)
{
    const auto field = WithDetail(AField("uint32").Formatted("signed_decimal"));
    mSource.Number(5).Last();
    Int(*field, 3);

    EXPECT_EQ(TreeOf(Collect()), "uint32=5");
}

TEST_F(FieldWidths, outside_a_struct_no_width_counts)
{
    const auto key = WithDetail(ARecord(1).OfType("integer").Formatted("hexadecimal").Within(0, 255).Array());
    mSource.Number(5).Number(6).Last();

    EXPECT_EQ(TreeOf(Read(*key)), "int64=5 int64=6");
    EXPECT_EQ(mSource.Calls(), (Calls{ "NextInt integer", "NextInt integer" }));
}

}   // namespace
}   // namespace VrexZynConfigTools
