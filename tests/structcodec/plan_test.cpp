#include "layouts.h"

#include <configtools/framework/structcodec/plan.h>
#include <configtools/keywords.h>
#include <support/debug_capture.h>
#include <support/framework_errors.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <thread>
#include <vector>

// What the codec keeps of a struct's metadata, and that it sees each change of it. Each test unpacks once before the
// change, so that there is something to be dropped.

namespace VrexZynConfigTools {
namespace {

using namespace support;
bool IsStored(CMetadataDetailStruct & detail)
{
    CStructPlan::Of(detail);
    return CStructPlan::Stored(detail) != nullptr;
}
bool IsStored(Layout & layout)
{
    return IsStored(layout.Detail());
}

ARecord AByte(const std::string & format = "")
{
    return ANumber("uint8", format);
}

TEST(StructPlan, is_made_once)
{
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Field(0, 8, AByte());
    const auto plan = CStructPlan::Of(layout.Detail());
    EXPECT_EQ(plan->Top().mBits, 8U);
    EXPECT_EQ(CStructPlan::Of(layout.Detail()), plan);
    EXPECT_EQ(CStructPlan::Stored(layout.Detail()), plan.get());
}

TEST(StructPlan, is_followed_while_debug_output_is_on_too)
{
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Field(0, 8, AByte());
    const auto plan = CStructPlan::Of(layout.Detail());
    const DebugCapture capture;
    EXPECT_EQ(DecodedText(layout, { 1 }), "9:(4:1)");
    EXPECT_EQ(CStructPlan::Of(layout.Detail()), plan);
}

TEST(StructPlan, has_each_struct_once_even_if_it_holds_itself)
{
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Detail().AddField("", &layout.Record(), 0, 8);
    layout.Detail().AddField("", &layout.Record(), 8, 8);
    const auto plan = CStructPlan::Of(layout.Detail());
    EXPECT_EQ(plan->Inner(plan->Top().mFields[0]), &plan->Top());
    EXPECT_EQ(plan->Inner(plan->Top().mFields[1]), &plan->Top());
}

TEST(StructPlan, sees_an_added_field)
{
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Field(0, 8, AByte());
    EXPECT_EQ(DecodedText(layout, { 0x0201 }), "9:(4:1)");
    layout.Field(8, 8, AByte());
    EXPECT_EQ(DecodedText(layout, { 0x0201 }), "9:(4:1 4:2)");
}

TEST(StructPlan, sees_a_new_order_of_fields)
{
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Field(8, 8, AByte()).Field(0, 8, AByte());
    EXPECT_EQ(DecodedText(layout, { 0x0201 }), "9:(4:2 4:1)");
    layout.Detail().SortByAscendingBitPosition();
    EXPECT_EQ(DecodedText(layout, { 0x0201 }), "9:(4:1 4:2)");
}

TEST(StructPlan, sees_the_order_of_the_target)
{
    Layout layout(BIG_ENDIAN_TARGET);
    layout.Field(0, 8, AByte()).Field(8, 8, AByte());
    EXPECT_EQ(DecodedText(layout, { 0x0201 }), "9:(4:1 4:2)");
    layout.Detail().OrderFieldsForTargetArchitecture();
    EXPECT_EQ(DecodedText(layout, { 0x0201 }), "9:(4:2 4:1)");
}

TEST(StructPlan, sees_a_field_added_to_a_nested_struct)
{
    Layout nested(LITTLE_ENDIAN_TARGET, false, ARecord(0).Array());
    CMetadataDetailStruct & detail = nested.Detail();
    nested.Field(0, 8, AByte());
    CMetadata & record = nested.FieldRecord(0);
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Struct(0, 16, std::move(nested));
    EXPECT_EQ(DecodedText(layout, { 0x0201 }), "9:(9:(9:(4:1) 9:(4:2)))");
    detail.AddField("", &record, 8, 8);
    EXPECT_EQ(DecodedText(layout, { 0x0201 }), "9:(9:(9:(4:1 4:2)))");
}

TEST(StructPlan, sees_new_details_of_a_nested_struct)
{
    Layout nested(LITTLE_ENDIAN_TARGET);
    CMetadata & record = nested.Record();
    nested.Field(0, 8, AByte());
    CMetadata & field = nested.FieldRecord(0);
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Struct(0, 16, std::move(nested));
    EXPECT_EQ(DecodedText(layout, { 0x0201 }), "9:(9:(4:1))");
    auto * const detail = new CMetadataDetailStruct(record, true, false);
    detail->AddField("", &field, 8, 8);
    record.SetDetails(*detail);
    EXPECT_EQ(DecodedText(layout, { 0x0201 }), "9:(9:(4:2))");
}

class StructPlanOfAnEnum : public testing::Test
{
protected:
    StructPlanOfAnEnum() { mLayout.Enum(0, 8, { { "one", "1" } }); }

    CMetadataDetailEnum & Names()
    {
        return dynamic_cast<CMetadataDetailEnum &>(*mLayout.FieldRecord(0).Details());
    }
    std::string NameOf(std::uint16_t number) { return DecodedText(mLayout, { number }); }

    Layout mLayout{ LITTLE_ENDIAN_TARGET };
};

TEST_F(StructPlanOfAnEnum, sees_a_name_that_is_added)
{
    EXPECT_EQ(NameOf(2), "9:(10:)");
    Names().AddEnum("two", "2");
    EXPECT_EQ(NameOf(2), "9:(10:two)");
    EXPECT_EQ(NameOf(1), "9:(10:one)");
}

TEST_F(StructPlanOfAnEnum, sees_a_name_that_is_given_another_number)
{
    EXPECT_EQ(NameOf(1), "9:(10:one)");
    Names().AddEnum("one", "3");
    EXPECT_EQ(NameOf(1), "9:(10:)");
    EXPECT_EQ(NameOf(3), "9:(10:one)");
}

TEST_F(StructPlanOfAnEnum, sees_a_name_that_is_added_by_asking_for_it)
{
    EXPECT_EQ(NameOf(0), "9:(10:)");
    Names().EnumValue("zero");
    EXPECT_EQ(NameOf(0), "9:(10:zero)");
}

TEST_F(StructPlanOfAnEnum, sees_names_that_are_assigned)
{
    EXPECT_EQ(NameOf(1), "9:(10:one)");
    CMetadataDetailEnum other(mLayout.FieldRecord(0));
    other.AddEnum("four", "4");
    Names() = other;
    EXPECT_EQ(NameOf(1), "9:(10:)");
    EXPECT_EQ(NameOf(4), "9:(10:four)");
}

TEST_F(StructPlanOfAnEnum, sees_new_details)
{
    EXPECT_EQ(NameOf(1), "9:(10:one)");
    auto * const detail = new CMetadataDetailEnum(mLayout.FieldRecord(0));
    detail->AddEnum("first", "1");
    mLayout.FieldRecord(0).SetDetails(*detail);
    EXPECT_EQ(NameOf(1), "9:(10:first)");
}

TEST_F(StructPlanOfAnEnum, gives_the_last_of_several_names)
{
    Names().AddEnum("a_first", "7");
    Names().AddEnum("z_last", "7");
    Names().AddEnum("minus", "-1");
    ASSERT_TRUE(IsStored(mLayout));
    EXPECT_EQ(NameOf(7), "9:(10:z_last)");
}

TEST(StructPlan, sees_a_record_that_is_assigned)
{
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Field(0, 6, ANumber("int8"));
    EXPECT_EQ(DecodedText(layout, { 0x3B }), "9:(0:59)");
    layout.FieldRecord(0) = *ANumber("int16", keywords::FORMAT_SIGNED_DECIMAL).Build();
    EXPECT_EQ(DecodedText(layout, { 0x3B }), "9:(1:-5)");
}

TEST(StructPlan, sees_another_record_in_the_place_of_one_that_ended)
{
    alignas(CMetadata) unsigned char place[sizeof(CMetadata)];
    auto * record = new (place) CMetadata(*ANumber("uint8").Build());
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Detail().AddField("", record, 0, 6);
    EXPECT_EQ(DecodedText(layout, { 0x3B }), "9:(4:59)");
    record->~CMetadata();
    record = new (place) CMetadata(*ANumber("int8", keywords::FORMAT_SIGNED_DECIMAL).Build());
    EXPECT_EQ(DecodedText(layout, { 0x3B }), "9:(0:-5)");
    record->~CMetadata();
}

TEST(StructPlan, is_dropped_with_its_detail_alone)
{
    Layout kept(LITTLE_ENDIAN_TARGET);
    kept.Field(0, 8, AByte());
    {
        Layout ending(LITTLE_ENDIAN_TARGET);
        ending.Detail().AddField("", &kept.FieldRecord(0), 0, 8);
        EXPECT_EQ(DecodedText(ending, { 1 }), "9:(4:1)");
    }
    EXPECT_EQ(DecodedText(kept, { 2 }), "9:(4:2)");
}

/// What a source changes while the words are read counts.
TEST(StructPlan, sees_a_change_that_the_source_makes)
{
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Field(0, 8, AByte());
    DecodedText(layout, { 1 });
    ScriptedSource source;
    source.Number(0x0201).Doing([&] { layout.Field(8, 8, AByte()); });
    EXPECT_EQ(TextOf(*Decode(layout, source).mOut), "9:(4:1 4:2)");
}

/// A field that the source adds past the words: they are as many as before.
TEST(StructPlan, keeps_to_the_words_that_were_read)
{
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Field(0, 8, AByte());
    DecodedText(layout, { 1 });
    ScriptedSource source;
    source.Number(0x0201).Doing([&] { layout.Field(160, 32, ANumber("uint32")); });
    EXPECT_EQ(TextOf(*Decode(layout, source).mOut), "9:(4:1 6:0)");
}

// Objects of other classes may answer otherwise each time, and are asked each time.

class ChangingRecord : public CMetadata
{
public:
    explicit ChangingRecord(const CMetadata & other)
        : CMetadata(other)
    {}
    std::string InternalType() const override { return mType; }
    std::string mType = "uint8";
};

TEST(StructPlan, isnt_stored_for_a_foreign_record)
{
    ChangingRecord record(*AByte().Build());
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Detail().AddField("", &record, 0, 8);
    EXPECT_FALSE(IsStored(layout));
    EXPECT_EQ(DecodedText(layout, { 1 }), "9:(4:1)");
    record.mType = "int16";
    EXPECT_EQ(DecodedText(layout, { 1 }), "9:(1:1)");
}

class ForeignStruct : public CMetadataDetailStruct
{
public:
    using CMetadataDetailStruct::CMetadataDetailStruct;
    const std::vector<const CStructField *> * GetStructFields() override { return mFields; }
    const std::vector<const CStructField *> * mFields = CMetadataDetailStruct::GetStructFields();
};

TEST(StructPlan, isnt_stored_for_a_foreign_struct)
{
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Field(0, 8, AByte());
    ForeignStruct detail(layout.Record(), true, false);
    detail.mFields = layout.Detail().GetStructFields();
    EXPECT_FALSE(IsStored(detail));
    CStructCodec codec;
    codec.Encode(*ATree(new CUint8Payload(5)), detail);
    EXPECT_THAT(WordsOf(codec), testing::ElementsAre(5));
}

TEST(StructPlan, isnt_stored_around_a_foreign_struct)
{
    Layout nested(LITTLE_ENDIAN_TARGET);
    nested.Field(0, 8, AByte()).Field(8, 8, AByte());
    auto * const detail = new ForeignStruct(nested.Record(), true, false);
    detail->AddField("", &nested.FieldRecord(1), 8, 8);
    nested.Record().SetDetails(*detail);
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Struct(0, 16, std::move(nested));
    EXPECT_FALSE(IsStored(layout));
    EXPECT_EQ(DecodedText(layout, { 0x0201 }), "9:(9:(4:2))");
}

/// Counts one up in what it writes.
class ForeignNumber : public CUint8Payload
{
public:
    using CUint8Payload::CUint8Payload;
    std::uint64_t WriteToMem(void * destination, std::uint64_t /*maximum*/) override
    {
        *static_cast<std::uint8_t *>(destination) = static_cast<std::uint8_t>(mValue + 1);
        return 1;
    }
};

TEST(StructPlan, asks_a_foreign_payload)
{
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Field(0, 8, AByte()).Field(8, 8, AByte());
    ASSERT_TRUE(IsStored(layout));
    EXPECT_EQ(Encoded(layout, ATree(new CUint8Payload(1), new ForeignNumber(2))), (Words{ 0x0301 }));
}

/// Chips on threads of their own, one after the other.
TEST(StructPlan, serves_threads_one_after_the_other)
{
    for (int turn = 0; turn < 20; ++turn)
        std::thread([] {
            Layout layout(LITTLE_ENDIAN_TARGET);
            layout.Field(0, 8, AByte());
            EXPECT_EQ(DecodedText(layout, { 0x0201 }), "9:(4:1)");
            layout.Field(8, 8, AByte());
            EXPECT_EQ(DecodedText(layout, { 0x0201 }), "9:(4:1 4:2)");
        }).join();
}

}   // namespace
}   // namespace VrexZynConfigTools
