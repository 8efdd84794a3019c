// Struct keys that are read field by field.

#include "factory_fixture.h"

#include <string>

namespace VrexZynConfigTools {
namespace {

using support::ARecord;
using support::ByteField;
using support::Calls;
using support::EnumRecord;
using support::FieldOf;
using support::RecordOf;
using support::StructRecord;
using support::TreeOf;
using support::WithDetail;

class FieldByField : public support::FactoryTest
{};

TEST_F(FieldByField, a_key_becomes_a_changed_struct_element_with_one_structure)
{
    StructRecord key(ARecord(100).Named("radio"));
    const auto low = ByteField("low");
    const auto high = ByteField("high");
    key.Add(*low, 0, 8);
    key.Add(*high, 8, 8);
    mSource.Number(1).Number(2).Number(3);
    const auto element = Read(*key.mRecord);

    ASSERT_NE(dynamic_cast<CElementStruct *>(element.get()), nullptr);
    EXPECT_EQ(TreeOf(element), "{uint8=1 uint8=2}");
    EXPECT_EQ(element->PsId(), 100U);
    EXPECT_EQ(element->Name(), "radio");
    EXPECT_TRUE(element->HasChanged());
    EXPECT_EQ(mSource.Calls(), (Calls{ "NextInt uint8", "NextInt uint8" }));
    EXPECT_FALSE(mErrors.IsSet());
}

TEST_F(FieldByField, each_payload_carries_the_record_that_it_was_made_from)
{
    StructRecord key(ARecord(100).Named("radio"));
    StructRecord inner(ARecord(0).Named("inner"));
    const auto outer = ByteField("outer");
    const auto leaf = ByteField("leaf");
    inner.Add(*leaf, 0, 8);
    key.Add(*outer, 0, 8);
    key.Add(*inner.mRecord, 8, 8);
    mSource.Number(1).Number(2);
    const auto element = Read(*key.mRecord);

    ASSERT_EQ(TreeOf(element), "{uint8=1 {uint8=2}}");
    IPayload * const top = element->GetPayloadCopy(false).front();
    EXPECT_EQ(element->Metadata(), key.mRecord.get());
    EXPECT_EQ(RecordOf(top), key.mRecord.get());
    EXPECT_EQ(RecordOf(FieldOf(top, 0)), outer.get());
    EXPECT_EQ(RecordOf(FieldOf(top, 1)), inner.mRecord.get());
    EXPECT_EQ(RecordOf(FieldOf(FieldOf(top, 1), 0)), leaf.get());
}

TEST_F(FieldByField, fields_of_every_shape_are_asked_for_in_order)
{
    StructRecord key(ARecord(100).Named("radio"));
    const auto number = WithDetail(ARecord(0).OfType("integer").Formatted("hexadecimal").Within(0, 4095));
    const auto mode = EnumRecord(ARecord(0).Named("mode"), { { "on", "1" } });
    const auto title = WithDetail(ARecord(0).OfType("string").Within(0, 9));
    key.Add(*number, 0, 12);
    key.Add(*mode, 12, 4);
    key.Add(*title, 16, 32);
    mSource.Number(0xABC).Number(1).Text("abc").Text("more");

    EXPECT_EQ(TreeOf(Read(*key.mRecord)), "{uint16=2748 enum=on(1) string=abc}");
    EXPECT_EQ(mSource.Calls(), (Calls{ "NextInt uint16", "NextEnum", "NextString" }));
    EXPECT_EQ(mContext.GetTag("elembitwidth"), "");
}

TEST_F(FieldByField, structures_nest_as_the_records_do)
{
    StructRecord key(ARecord(100));
    StructRecord middle(ARecord(0));
    StructRecord innermost(ARecord(0));
    const auto field = ByteField("field");
    innermost.Add(*field, 0, 8);
    middle.Add(*innermost.mRecord, 0, 8);
    middle.Add(*field, 8, 8);
    key.Add(*middle.mRecord, 0, 16);
    key.Add(*field, 16, 8);
    mSource.Numbers({ 1, 2, 3, 4 });

    EXPECT_EQ(TreeOf(Read(*key.mRecord)), "{{{uint8=1} uint8=2} uint8=3}");
}

TEST_F(FieldByField, an_array_field_adds_its_items_to_the_list_of_its_struct)
{
    StructRecord key(ARecord(100));
    const auto before = ByteField("before");
    const auto array = WithDetail(ARecord(0).OfType("uint8").Within(0, 255).Array());
    key.Add(*before, 0, 8);
    key.Add(*array, 8, 24);
    key.Add(*before, 32, 8);
    mSource.Numbers({ 1, 2, 3, 4, 5, 6 });
    const auto element = Read(*key.mRecord);

    EXPECT_EQ(TreeOf(element), "{uint8=1 uint8=2 uint8=3 uint8=4 uint8=5}");
    IPayload * const top = element->GetPayloadCopy(false).front();
    EXPECT_EQ(RecordOf(FieldOf(top, 3)), array.get());
}

TEST_F(FieldByField, an_array_field_of_one_item_is_walked_again_as_long_as_the_source_has_more)
{
    StructRecord key(ARecord(100));
    const auto array = WithDetail(ARecord(0).OfType("uint32").Within(0, 255).Array());
    key.Add(*array, 0, 16);
    mSource.Number(1).Number(2).Number(3).Last().Number(4);

    EXPECT_EQ(TreeOf(Read(*key.mRecord)), "{uint32=1 uint32=2 uint32=3}");
}

TEST_F(FieldByField, an_array_of_structs_has_an_instance_each_time_the_source_has_more)
{
    StructRecord key(ARecord(100).Array());
    const auto field = ByteField("field");
    key.Add(*field, 0, 8);
    key.Add(*field, 8, 8);
    mSource.Numbers({ 1, 2, 3, 4 }).Last().Number(5);
    const auto element = Read(*key.mRecord);

    EXPECT_EQ(TreeOf(element), "{uint8=1 uint8=2} {uint8=3 uint8=4}");
    for (IPayload * const instance : element->GetPayloadCopy(false))
        EXPECT_EQ(RecordOf(instance), key.mRecord.get());
}

TEST_F(FieldByField, an_array_of_structs_that_end_in_an_array_has_one_instance)
{
    StructRecord key(ARecord(100).Array());
    const auto array = WithDetail(ARecord(0).OfType("uint8").Within(0, 255).Array());
    key.Add(*array, 0, 16);
    mSource.Numbers({ 1, 2, 3, 4 });

    EXPECT_EQ(TreeOf(Read(*key.mRecord)), "{uint8=1 uint8=2}");
    EXPECT_EQ(mSource.Left(), 2U);
}

TEST_F(FieldByField, a_field_that_is_an_array_of_structs_has_one_instance)
{
    StructRecord key(ARecord(100));
    StructRecord inner(ARecord(0).Array());
    const auto field = ByteField("field");
    inner.Add(*field, 0, 8);
    key.Add(*inner.mRecord, 0, 16);
    mSource.Numbers({ 1, 2, 3 });

    EXPECT_EQ(TreeOf(Read(*key.mRecord)), "{{uint8=1}}");
}

TEST_F(FieldByField, a_struct_without_fields_is_empty)
{
    StructRecord key(ARecord(100));
    EXPECT_EQ(TreeOf(Read(*key.mRecord)), "{}");
    EXPECT_EQ(mSource.Calls(), Calls{});
}

TEST_F(FieldByField, after_a_value_out_of_range_no_number_of_the_key_is_built_any_more)
{
    StructRecord key(ARecord(100).Named("radio"));
    const auto field = ByteField("field");
    const auto small = WithDetail(ARecord(0).Named("small").OfType("uint8").Within(0, 5));
    const auto mode = EnumRecord(ARecord(0), { { "on", "1" } });
    for (const IMetadata * const record : { field.get(), small.get(), field.get(), mode.get() })
        key.Add(*record, 0, 8);
    mSource.Numbers({ 1, 6, 3, 1 });
    mReaderErrors.Set("line 3");

    EXPECT_EQ(TreeOf(Read(*key.mRecord)), "{uint8=1 enum=on(1)}");
    EXPECT_EQ(mErrors.Text(), "Read value 6 is out of range [0,5]");
    EXPECT_EQ(mReaderErrors.Text(), "line 3: Element with PsId = 0, Name = small: "
                                    "Element with PsId = 0, Name = field");
}

TEST_F(FieldByField, an_unknown_enumerator_leaves_its_place_out)
{
    StructRecord key(ARecord(100));
    const auto field = ByteField("field");
    const auto mode = EnumRecord(ARecord(0), { { "on", "1" } });
    key.Add(*mode, 0, 8);
    key.Add(*field, 8, 8);
    mContext.SetTag("nodatacheck", "true");
    mSource.Numbers({ 9, 2 });

    EXPECT_EQ(TreeOf(Read(*key.mRecord)), "{uint8=2}");
}

TEST_F(FieldByField, values_outside_any_structure_go_to_the_element_and_get_its_record)
{
    StructRecord key(ARecord(100));
    const auto field = ByteField("field");
    mFactory.StartElement(*key.mRecord);
    mSource.Number(1);
    mFactory.Int(*field);
    const auto element = Collect();

    EXPECT_EQ(TreeOf(element), "uint8=1");
    EXPECT_EQ(RecordOf(element->GetPayloadCopy(false).front()), key.mRecord.get());
}

TEST_F(FieldByField, the_answer_of_the_last_field_is_the_answer_to_the_walk)
{
    StructRecord key(ARecord(100));
    const auto field = ByteField("field");
    key.Add(*field, 0, 8);
    mSource.Number(1);
    Read(*key.mRecord);
    EXPECT_TRUE(mFactory.InspectDetailAgain());
    mSource.Number(1).Last();
    Read(*key.mRecord);
    EXPECT_FALSE(mFactory.InspectDetailAgain());
}

}   // namespace
}   // namespace VrexZynConfigTools
