// Walks that break off, begin in the middle, or follow metadata that is no good.

#include "factory_fixture.h"

#include <string>

namespace VrexZynConfigTools {
namespace {

using support::ARecord;
using support::ByteField;
using support::FieldOf;
using support::StructRecord;
using support::TreeOf;
using support::WithDetail;

class BrokenWalks : public support::FactoryTest
{
protected:
    BrokenWalks()
        : mByteKey(ARecord(100).Named("key"))
    {
        mByteKey.Add(*mByte, 0, 8);
    }

    /// Two structures are open, and the outer one has a value.
    void BreakOff()
    {
        mFactory.StartElement(*mByteKey.mRecord);
        mFactory.StartStruct(*mByteKey.mRecord);
        mFactory.StartStruct(*mByteKey.mRecord);
    }

    const std::unique_ptr<CMetadata> mByte = ByteField("byte");
    const std::unique_ptr<CMetadata> mNumber = WithDetail(ARecord(101).OfType("uint8").Within(0, 255));
    StructRecord mByteKey;
};

const std::string UNEXPECTED = "an unexpected error occurred";

TEST_F(BrokenWalks, leave_nothing_behind_when_the_factory_is_cleared)
{
    BreakOff();
    mSource.Number(7);
    EXPECT_EQ(TreeOf(Read(*mByteKey.mRecord)), "{uint8=7}");
}

TEST_F(BrokenWalks, leave_nothing_behind_when_the_element_is_collected)
{
    BreakOff();
    EXPECT_EQ(TreeOf(Collect()), "{{}}");
    mSource.Number(7);
    EXPECT_EQ(TreeOf(ReadOn(*mByteKey.mRecord)), "{uint8=7}");
}

TEST_F(BrokenWalks, leave_nothing_behind_for_a_struct_when_the_reader_forgets_to_clear)
{
    BreakOff();
    mSource.Number(7);
    EXPECT_EQ(TreeOf(ReadOn(*mByteKey.mRecord)), "{uint8=7}");
}

TEST_F(BrokenWalks, leave_nothing_behind_for_a_plain_key)
{
    BreakOff();
    Collect();
    mSource.Number(7).Last();
    EXPECT_EQ(TreeOf(ReadOn(*mNumber)), "uint8=7");
}

TEST_F(BrokenWalks, leave_no_block_behind_that_would_hide_the_next_key)
{
    CStructCodec codec;
    CElementFactory factory(&mSource, mContext, &codec);
    mSource.Number(7).Number(8).Last();
    factory.StartElement(*mByteKey.mRecord);
    factory.StartStruct(*mByteKey.mRecord);
    EXPECT_EQ(TreeOf(std::unique_ptr<CElement>(factory.Collect())), "{uint8=7}");
    mByteKey.mRecord->Inspect(factory);
    EXPECT_EQ(TreeOf(std::unique_ptr<CElement>(factory.Collect())), "{uint8=8}");
}

TEST_F(BrokenWalks, take_no_value_into_a_structure_that_is_gone)
{
    BreakOff();
    mFactory.Clear();
    mFactory.StartElement(*mByteKey.mRecord);
    mSource.Number(7);
    mFactory.Int(*mByte);   // ahead of any structure
    EXPECT_EQ(TreeOf(Collect()), "uint8=7");
}

TEST_F(BrokenWalks, take_no_structure_into_one_that_is_gone)
{
    BreakOff();
    Collect();
    mFactory.StartStruct(*mByteKey.mRecord);
    EXPECT_EQ(mErrors.Text(), UNEXPECTED);

    mErrors.Clear();
    mSource.Number(7).Last();
    mFactory.Int(*mNumber);   // an element again, but no struct
    mFactory.StartStruct(*mByteKey.mRecord);
    EXPECT_EQ(mErrors.Text(), UNEXPECTED);
    EXPECT_EQ(TreeOf(Collect()), "uint8=7");
}

TEST_F(BrokenWalks, may_end_structures_that_never_began)
{
    for (int count = 0; count < 3; ++count)
        mFactory.EndStruct();
    mFactory.EndElement();
    mSource.Number(7);
    EXPECT_EQ(TreeOf(ReadOn(*mByteKey.mRecord)), "{uint8=7}");
}

TEST_F(BrokenWalks, a_structure_that_never_began_does_not_upset_the_next_one)
{
    mFactory.StartElement(*mByteKey.mRecord);
    mFactory.EndStruct();
    mFactory.StartStruct(*mByteKey.mRecord);
    mSource.Number(7);
    mFactory.Int(*mByte);
    EXPECT_EQ(TreeOf(Collect()), "{uint8=7}");
}

TEST_F(BrokenWalks, a_structure_without_a_struct_element_is_an_error)
{
    const StructRecord field(ARecord(0));
    EXPECT_EQ(Read(*field.mRecord), nullptr);   // a field's record has no key around it
    EXPECT_EQ(mErrors.Text(), UNEXPECTED);

    mErrors.Clear();
    mSource.Number(7).Last();
    mNumber->Inspect(mFactory);
    field.mRecord->Inspect(mFactory);
    EXPECT_EQ(mErrors.Text(), UNEXPECTED);
    EXPECT_EQ(TreeOf(Collect()), "uint8=7");
}

TEST_F(BrokenWalks, values_without_a_struct_element_around_them_are_plain)
{
    StructRecord field(ARecord(0));
    field.Add(*mByte, 0, 8);
    mSource.Number(7).Last();
    mFactory.Clear();
    field.mRecord->Inspect(mFactory);

    // The error that stands keeps the number back.
    EXPECT_EQ(Collect(), nullptr);
    EXPECT_EQ(mErrors.Text(), UNEXPECTED);
}

TEST_F(BrokenWalks, a_codec_without_a_struct_element_reads_nothing)
{
    CStructCodec codec;
    CElementFactory factory(&mSource, mContext, &codec);
    StructRecord field(ARecord(0).Array());
    field.Add(*mByte, 0, 8);
    mSource.Number(1).Number(7);
    factory.IntIndex(CTableIndex("index", 0, 1, CTableIndex::INDEX_INTEGER));   // the source has more
    field.mRecord->Inspect(factory);

    EXPECT_EQ(mErrors.Text(), UNEXPECTED);
    EXPECT_EQ(mSource.Left(), 1U);
    EXPECT_FALSE(factory.InspectDetailAgain()) << "so that the array ends";
    EXPECT_EQ(factory.Collect(), nullptr);

    mSource.Last();
    factory.Int(*mNumber);   // the end of the structure is the end of passing over
    EXPECT_EQ(TreeOf(std::unique_ptr<CElement>(factory.Collect())), "none") << "while the error stands";
    EXPECT_EQ(mSource.Left(), 0U);
}

TEST_F(BrokenWalks, a_codec_refuses_a_struct_key_whose_record_has_no_layout)
{
    CStructCodec codec;
    CElementFactory factory(&mSource, mContext, &codec);
    const auto noDetails = ARecord(100).Shaped(METADATA_STRUCT).Build();
    const auto wrongDetails = ARecord(100).Shaped(METADATA_STRUCT).Build();
    wrongDetails->SetDetails(*new CMetadataDetailSimple(*wrongDetails));
    for (const IMetadata * const key : { noDetails.get(), wrongDetails.get() }) {
        factory.Clear();
        factory.StartElement(*key);
        factory.StartStruct(*key);
        factory.EndStruct();
        EXPECT_EQ(mErrors.Text(), UNEXPECTED);
        const std::unique_ptr<CElement> element(factory.Collect());
        EXPECT_NE(dynamic_cast<CElementStruct *>(element.get()), nullptr);
        EXPECT_EQ(TreeOf(element), "");
    }
}

TEST_F(BrokenWalks, a_struct_key_without_details_is_an_empty_struct)
{
    const auto key = ARecord(100).Shaped(METADATA_STRUCT).Build();
    EXPECT_EQ(TreeOf(Read(*key)), "");
    EXPECT_FALSE(mErrors.IsSet());
}

TEST_F(BrokenWalks, a_plain_key_without_details_has_no_element)
{
    EXPECT_EQ(Read(*ARecord(100).Build()), nullptr);
    EXPECT_EQ(Read(CNullMetadata::Ref()), nullptr);
    EXPECT_FALSE(mErrors.IsSet());
}

TEST_F(BrokenWalks, a_key_that_says_struct_and_holds_a_number_is_a_struct_with_that_number)
{
    const auto key = ARecord(100).OfType("uint8").Within(0, 255).Shaped(METADATA_STRUCT).Build();
    key->SetDetails(*new CMetadataDetailSimple(*key));
    mSource.Number(7).Number(8);
    EXPECT_EQ(TreeOf(Read(*key)), "uint8=7");
}

TEST_F(BrokenWalks, a_key_that_says_number_and_holds_a_struct_is_an_error)
{
    const auto key = ARecord(100).OfType("uint8").Build();
    auto * const detail = new CMetadataDetailStruct(*key, true, false);
    key->SetDetails(*detail);
    detail->AddField("", mByte.get(), 0, 8);
    mSource.Number(7).Last();

    EXPECT_EQ(Read(*key), nullptr);
    EXPECT_EQ(mErrors.Text(), UNEXPECTED);
}

TEST_F(BrokenWalks, a_field_that_has_a_number_of_its_own_stays_in_its_structure)
{
    StructRecord key(ARecord(100));
    key.Add(*mByte, 0, 8);
    key.Add(*mNumber, 8, 8);
    mSource.Number(7).Number(8).Number(9).Last();

    EXPECT_EQ(TreeOf(Read(*key.mRecord)), "{uint8=7 uint8=8 uint8=9}");
}

TEST_F(BrokenWalks, a_struct_within_that_has_a_number_of_its_own_begins_anew)
{
    StructRecord key(ARecord(100).Named("key"));
    StructRecord inner(ARecord(102).Named("inner"));
    inner.Add(*mByte, 0, 8);
    key.Add(*mByte, 0, 8);
    key.Add(*inner.mRecord, 8, 8);
    key.Add(*mByte, 16, 8);
    mSource.Numbers({ 7, 8, 9 });
    const auto element = Read(*key.mRecord);

    EXPECT_EQ(element->Name(), "inner");
    EXPECT_EQ(TreeOf(element), "{uint8=8} uint8=9");
}

TEST_F(BrokenWalks, a_field_without_a_record_is_left_out)
{
    StructRecord key(ARecord(100));
    key.mDetail->AddField("", nullptr, 0, 8);
    key.Add(*mByte, 8, 8);
    mSource.Number(7);

    // The error stands when the number is read.
    EXPECT_EQ(TreeOf(Read(*key.mRecord)), "{}");
    EXPECT_EQ(mErrors.Text(), "a struct field has no metadata");
}

TEST_F(BrokenWalks, structures_without_end_are_cut_off)
{
    StructRecord key(ARecord(100));
    StructRecord endless(ARecord(0));
    endless.Add(*endless.mRecord, 0, 8);
    key.Add(*endless.mRecord, 0, 8);
    const auto element = Read(*key.mRecord);

    EXPECT_EQ(mErrors.Text(), "the metadata nests structs too deep");
    ASSERT_NE(element, nullptr);
    int depth = 1;
    IPayload * payload = element->GetPayloadCopy(false).front();
    for (; !dynamic_cast<CComplexPayload &>(*payload).GetFields().empty(); ++depth)
        payload = FieldOf(payload, 0);
    EXPECT_EQ(depth, 64);

    mSource.Number(7);
    EXPECT_EQ(TreeOf(Read(*mByteKey.mRecord)), "{uint8=7}");
}

TEST_F(BrokenWalks, an_array_of_structs_that_take_no_value_ends_with_the_first)
{
    const auto width0 = ByteField("nothing");
    StructRecord empty(ARecord(100).Array());
    StructRecord hollow(ARecord(100).Array());
    hollow.mDetail->AddField("", nullptr, 0, 8);
    StructRecord thin(ARecord(100).Array());
    thin.Add(*width0, 0, 0);
    CStructCodec codec;
    for (CStructCodec * const mode : { static_cast<CStructCodec *>(nullptr), &codec }) {
        for (const StructRecord * const key : { &empty, &hollow, &thin }) {
            support::ScriptedSource source;
            source.Number(1);
            CElementFactory factory(&source, mContext, mode);
            factory.IntIndex(CTableIndex("index", 0, 1, CTableIndex::INDEX_INTEGER));   // there is more
            key->mRecord->Inspect(factory);
            EXPECT_FALSE(factory.InspectDetailAgain());
            const std::unique_ptr<CElement> element(factory.Collect());
            EXPECT_EQ(element->GetPayloadCopy(false).size(), 1U);
        }
    }
}

/// An enumeration of another maker that has no list.
class NoEnumerators : public CMetadataDetailEnum
{
public:
    using CMetadataDetailEnum::CMetadataDetailEnum;
    const std::map<std::string, int> * GetEnums() override { return nullptr; }
};

TEST_F(BrokenWalks, an_enumeration_without_a_list_knows_no_number)
{
    const auto key = ARecord(100).Named("mode").Shaped(METADATA_ENUM).Build();
    key->SetDetails(*new NoEnumerators(*key));
    EXPECT_EQ(Read(*key), nullptr);
    EXPECT_EQ(mErrors.Text(), "Value 0 for element with psid = 100, Name = mode doesn't match a valid enum");
}

/// A struct of another maker with a hole in its list.
class ListWithHole : public CMetadataDetailStruct
{
public:
    explicit ListWithHole(const IMetadata & metadata)
        : CMetadataDetailStruct(metadata, true, false)
    {}
    const std::vector<const CStructField *> * GetStructFields() override { return &mList; }

private:
    const std::vector<const CStructField *> mList{ nullptr };
};

TEST_F(BrokenWalks, a_hole_in_a_list_of_fields_has_no_bits)
{
    const auto field = ARecord(0).OfType("integer").Array().Build();
    field->SetDetails(*new ListWithHole(*field));
    mFactory.SetContextInfo("elembitwidth", 16);
    mSource.Numbers({ 1, 2, 3 });
    mFactory.Int(*field);
    EXPECT_EQ(TreeOf(Collect()), "int64=1 int64=2");
}

}   // namespace
}   // namespace VrexZynConfigTools
