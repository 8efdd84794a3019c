// Struct keys that a codec reads as a block.

#include "factory_fixture.h"

#include <messages/recordingsink.h>

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

class ByCodec : public support::FactoryTest
{
protected:
    ByCodec()
        : FactoryTest(&mCodec)
    {}

    CStructCodec mCodec;
};

/// "low" and "high", a byte each.
StructRecord TwoBytes(const ARecord & builder, const IMetadata & low, const IMetadata & high)
{
    StructRecord record(builder);
    record.Add(low, 0, 8);
    record.Add(high, 8, 8);
    return record;
}

TEST_F(ByCodec, a_struct_is_read_in_words_and_unpacked)
{
    const auto low = ByteField("low");
    const auto high = ByteField("high");
    const StructRecord key = TwoBytes(ARecord(100).Named("radio"), *low, *high);
    mSource.Number(0x0201).Last();
    const auto element = Read(*key.mRecord);

    ASSERT_NE(dynamic_cast<CElementStruct *>(element.get()), nullptr);
    EXPECT_EQ(TreeOf(element), "{uint8=1 uint8=2}");
    EXPECT_EQ(element->PsId(), 100U);
    EXPECT_EQ(element->Name(), "radio");
    EXPECT_EQ(mSource.Calls(), Calls{ "NextInt uint16" });
    EXPECT_FALSE(mErrors.IsSet());
}

TEST_F(ByCodec, the_structure_carries_the_key_s_record_and_its_fields_their_own)
{
    const auto low = ByteField("low");
    const auto high = ByteField("high");
    const StructRecord key = TwoBytes(ARecord(100), *low, *high);
    mSource.Number(0x0201).Last();
    const auto element = Read(*key.mRecord);

    IPayload * const top = element->GetPayloadCopy(false).front();
    EXPECT_EQ(RecordOf(top), key.mRecord.get());
    EXPECT_EQ(RecordOf(FieldOf(top, 0)), low.get());
    EXPECT_EQ(RecordOf(FieldOf(top, 1)), high.get());
}

TEST_F(ByCodec, the_fields_of_every_shape_ask_for_nothing_by_themselves)
{
    StructRecord key(ARecord(100));
    StructRecord inner(ARecord(0));
    const auto number = ByteField("number");
    const auto mode = EnumRecord(ARecord(0), { { "on", "1" } });
    inner.Add(*number, 0, 8);
    key.Add(*inner.mRecord, 0, 8);
    key.Add(*mode, 8, 8);
    mSource.Number(0x0107).Last();

    EXPECT_EQ(TreeOf(Read(*key.mRecord)), "{{uint8=7} enum=on(1)}");
    EXPECT_EQ(mSource.Calls(), Calls{ "NextInt uint16" });
}

TEST_F(ByCodec, an_array_of_structs_has_an_instance_each_time_the_source_has_more)
{
    const auto low = ByteField("low");
    const auto high = ByteField("high");
    const StructRecord key = TwoBytes(ARecord(100).Array(), *low, *high);
    mSource.Number(0x0201).Number(0x0403).Last().Number(9);
    const auto element = Read(*key.mRecord);

    EXPECT_EQ(TreeOf(element), "{uint8=1 uint8=2} {uint8=3 uint8=4}");
    for (IPayload * const instance : element->GetPayloadCopy(false))
        EXPECT_EQ(RecordOf(instance), key.mRecord.get());
}

TEST_F(ByCodec, the_tree_is_another_than_that_of_single_fields)
{
    StructRecord key(ARecord(100));
    const auto array = WithDetail(ARecord(0).OfType("uint8").Within(0, 255).Array());
    key.Add(*array, 0, 16);
    mSource.Number(0x0201).Last();
    EXPECT_EQ(TreeOf(Read(*key.mRecord)), "{{uint8=1 uint8=2}}");

    support::ScriptedSource source;
    source.Number(1).Number(2).Last();
    CElementFactory singleFields(&source, mContext, nullptr);
    key.mRecord->Inspect(singleFields);
    EXPECT_EQ(TreeOf(std::unique_ptr<CElement>(singleFields.Collect())), "{uint8=1 uint8=2}");
}

TEST_F(ByCodec, values_within_the_struct_are_passed_over_and_the_codec_s_answer_stays)
{
    const auto low = ByteField("low");
    const auto high = ByteField("high");
    const StructRecord key = TwoBytes(ARecord(100), *low, *high);
    const auto title = WithDetail(ARecord(0).OfType("string").Within(5, 9));
    const auto mode = EnumRecord(ARecord(0), {});
    for (const bool more : { true, false }) {
        mFactory.Clear();
        mFactory.StartElement(*key.mRecord);
        mSource.Number(0x0201);
        if (!more)
            mSource.Last();
        mFactory.StartStruct(*key.mRecord);
        mFactory.Int(*low);
        mFactory.String(*title);
        mFactory.Enum(*mode);
        // An array field is walked for ever where this is true: the source has to say false with its last value.
        EXPECT_EQ(mFactory.InspectDetailAgain(), more);
        EXPECT_FALSE(mErrors.IsSet());
        EXPECT_EQ(TreeOf(Collect()), "{uint8=1 uint8=2}");
    }
    EXPECT_EQ(mSource.Calls(), (Calls{ "NextInt uint16", "NextInt uint16" }));
}

TEST_F(ByCodec, a_struct_within_the_struct_is_not_read_again)
{
    const auto low = ByteField("low");
    const auto high = ByteField("high");
    const StructRecord key = TwoBytes(ARecord(100), *low, *high);
    mFactory.StartElement(*key.mRecord);
    mSource.Number(0x0201).Number(0x0403).Number(5);
    mFactory.StartStruct(*key.mRecord);
    mFactory.StartStruct(*key.mRecord);
    mFactory.EndStruct();
    mFactory.Int(*low);   // still within the outer one
    mFactory.EndStruct();
    EXPECT_EQ(mSource.Calls().size(), 1U);

    mFactory.Int(*low);
    EXPECT_EQ(TreeOf(Collect()), "{uint8=1 uint8=2} uint8=3");
}

TEST_F(ByCodec, the_end_of_the_element_ends_the_struct_too)
{
    const auto low = ByteField("low");
    const auto high = ByteField("high");
    const StructRecord key = TwoBytes(ARecord(100), *low, *high);
    mFactory.StartElement(*key.mRecord);
    mSource.Number(0x0201).Number(7);
    mFactory.StartStruct(*key.mRecord);
    mFactory.EndElement();
    mFactory.Int(*low);

    EXPECT_EQ(TreeOf(Collect()), "{uint8=1 uint8=2} uint8=7");
}

TEST_F(ByCodec, clearing_ends_the_struct_too)
{
    const auto low = ByteField("low");
    const auto high = ByteField("high");
    const StructRecord key = TwoBytes(ARecord(100), *low, *high);
    mFactory.StartElement(*key.mRecord);
    mSource.Number(0x0201).Number(7).Last();
    mFactory.StartStruct(*key.mRecord);
    mFactory.Clear();
    mFactory.Int(*low);

    EXPECT_EQ(TreeOf(Collect()), "uint8=7");
}

TEST_F(ByCodec, the_layout_is_the_element_s_and_not_that_of_the_record_given)
{
    const auto low = ByteField("low");
    const auto high = ByteField("high");
    const StructRecord key = TwoBytes(ARecord(100), *low, *high);
    const StructRecord other(ARecord(0));
    mFactory.StartElement(*key.mRecord);
    mSource.Number(0x0201).Last();
    mFactory.StartStruct(*other.mRecord);

    EXPECT_EQ(TreeOf(Collect()), "{uint8=1 uint8=2}");
}

TEST_F(ByCodec, a_failed_read_leaves_an_empty_structure_and_the_error)
{
    const auto low = ByteField("low");
    const auto high = ByteField("high");
    const StructRecord key = TwoBytes(ARecord(100), *low, *high);
    mSource.Number(0x0201).Failing(GROUP_FRAMEWORK, "no word").Last();

    EXPECT_EQ(TreeOf(Read(*key.mRecord)), "{}");
    EXPECT_EQ(mErrors.Text(), "no word");
}

TEST_F(ByCodec, keys_of_other_shapes_are_read_as_without_one)
{
    const auto number = WithDetail(ARecord(100).OfType("uint8").Within(0, 255));
    const auto title = WithDetail(ARecord(101).OfType("string").Within(0, 9));
    const auto mode = EnumRecord(ARecord(102), { { "on", "1" } });
    mSource.Number(7).Last().Text("abc").Last().Number(1).Last();

    EXPECT_EQ(TreeOf(Read(*number)), "uint8=7");
    EXPECT_EQ(TreeOf(Read(*title)), "string=abc");
    EXPECT_EQ(TreeOf(Read(*mode)), "enum=on(1)");
}

TEST_F(ByCodec, serves_one_struct_after_the_other)
{
    const auto low = ByteField("low");
    const auto high = ByteField("high");
    const StructRecord key = TwoBytes(ARecord(100), *low, *high);
    mSource.Number(0x0201).Last().Number(0x0403).Last();

    EXPECT_EQ(TreeOf(Read(*key.mRecord)), "{uint8=1 uint8=2}");
    EXPECT_EQ(TreeOf(Read(*key.mRecord)), "{uint8=3 uint8=4}");
}

TEST_F(ByCodec, a_struct_in_octets_is_one_text_and_a_wrong_count_names_the_key)
{
    const auto low = ByteField("low");
    const auto record = ARecord(100).Shaped(METADATA_STRUCT).Build();
    auto * const detail = new CMetadataDetailStruct(*record, true, true);
    record->SetDetails(*detail);
    detail->AddField("", low.get(), 0, 8);
    detail->AddField("", low.get(), 8, 8);
    mSource.Text("ab").Last().Text("a").Last();

    RecordingSink sink;
    const CMessageSinkGuard guard(&sink);
    EXPECT_EQ(TreeOf(Read(*record)), "{uint8=97 uint8=98}");
    EXPECT_TRUE(sink.mStatuses.empty());
    Read(*record);
    EXPECT_EQ(mSource.Calls(), (Calls{ "NextString", "NextString" }));
    ASSERT_EQ(sink.mStatuses.size(), 1U);
    EXPECT_EQ(
        sink.mStatuses.front().mText, "reading data from binary - expected 2 octets, found 1 for psid=100");
}

TEST_F(ByCodec, an_array_field_in_a_struct_without_bits_ends_the_walk)
{
    const auto items = WithDetail(ARecord(0).Named("items").OfType("uint8").Array());
    const auto record = ARecord(100).Shaped(METADATA_STRUCT).Build();
    auto * const detail = new CMetadataDetailStruct(*record, true, false);
    record->SetDetails(*detail);
    detail->AddField("", items.get(), 0, 0);

    EXPECT_EQ(TreeOf(Read(*record)), "{{}}");
    EXPECT_TRUE(mSource.Calls().empty());
}

}   // namespace
}   // namespace VrexZynConfigTools
