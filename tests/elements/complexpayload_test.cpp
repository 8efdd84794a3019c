#include <support/debug_capture.h>
#include <support/element_builder.h>
#include <support/foreign_payload.h>
#include <support/framework_errors.h>
#include <support/lives.h>
#include <support/metadata_builder.h>
#include <support/recording_writer.h>
#include <support/slots.h>

#include <configtools/context.h>
#include <configtools/payloads.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <memory>
#include <vector>

namespace VrexZynConfigTools {
namespace {

using support::ARecord;
using support::DebugCapture;
using support::ForeignPayload;
using support::FrameworkErrors;
using support::HexOf;
using support::Lives;
using support::RecordingWriter;
using support::SlotAfter;
using support::TracedPayload;
using support::UsingPayload;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint64_t STRING_OBJECT = sizeof(std::string);

std::unique_ptr<CComplexPayload> AStruct(const std::vector<IPayload *> & fields)
{
    auto payload = std::make_unique<CComplexPayload>(PAYLOAD_COMPLEX);
    for (IPayload * field : fields)
        payload->AddField(field);
    return payload;
}

/// A struct with a struct in it, at whose bottom is `value`.
std::unique_ptr<CComplexPayload> ATree(std::uint16_t value)
{
    auto inner = AStruct({ new CUint16Payload(value), new CStringPayload("abc", false) });
    return AStruct({ new CUint8Payload(1), inner.release() });
}

TEST(CComplexPayload, is_empty_at_first)
{
    CComplexPayload payload(PAYLOAD_COMPLEX);
    EXPECT_EQ(payload.Type(), 9);
    EXPECT_EQ(payload.Length(), 0U);
    EXPECT_EQ(payload.ToString(), "");
    EXPECT_EQ(payload.RawData(), nullptr);
    EXPECT_EQ(payload.Metadata(), nullptr);
    EXPECT_THAT(payload.GetFields(), IsEmpty());
}

TEST(CComplexPayload, has_the_type_code_it_was_made_with)
{
    EXPECT_EQ(CComplexPayload(PAYLOAD_RAW).Type(), PAYLOAD_RAW);
    EXPECT_EQ(CComplexPayload(static_cast<PayloadTypeEnum>(77)).Type(), 77);
}

TEST(CComplexPayload, has_neither_text_nor_raw_data_whatever_its_fields)
{
    const auto payload = ATree(7);
    EXPECT_EQ(payload->ToString(), "");
    EXPECT_EQ(payload->RawData(), nullptr);
}

TEST(CComplexPayload, keeps_the_order_of_its_fields)
{
    CComplexPayload payload(PAYLOAD_COMPLEX);
    auto * first = new CUint8Payload(1);
    auto * second = new CUint8Payload(2);
    payload.AddField(first);
    payload.AddField(second);
    EXPECT_THAT(payload.GetFields(), ElementsAre(first, second));
}

TEST(CComplexPayload, gives_a_new_field_no_metadata)
{
    const auto record = ARecord(1).Build();
    CComplexPayload payload(PAYLOAD_COMPLEX);
    payload.Use(*record);
    auto * field = new UsingPayload("x");
    payload.AddField(field);
    EXPECT_THAT(field->Used(), IsEmpty());
}

TEST(CComplexPayload, adds_no_slot)
{
    struct Interfaces : IPayload, IMetadataUser
    {};
    // The two operations of the second base stand at the end of the first one's table, too.
    EXPECT_EQ(SlotAfter<CComplexPayload>(), SlotAfter<Interfaces>() + 2);
    EXPECT_EQ(SlotAfter<CRawPayload>(), SlotAfter<CComplexPayload>());
    EXPECT_EQ(support::SlotOf(&CComplexPayload::AddField), -1);
    EXPECT_EQ(support::SlotOf(&CComplexPayload::GetFields), -1);
    EXPECT_EQ(support::SlotOf(&CComplexPayload::WriteFields), -1);
    EXPECT_EQ(support::SlotOf(&CRawPayload::Size), -1);
}

// --- Life ------------------------------------------------------------------------------------------------------

TEST(CComplexPayload, deletes_its_fields_down_to_the_bottom_of_the_tree)
{
    Lives lives;
    auto inner = AStruct({ new TracedPayload(lives, 1), new TracedPayload(lives, 2) });
    std::unique_ptr<IPayload> root = AStruct({ inner.release(), new TracedPayload(lives, 3) });
    EXPECT_EQ(lives.Count(), 3U);
    root.reset();
    EXPECT_EQ(lives.Count(), 0U);
}

TEST(CComplexPayload, cant_be_copied)
{
    static_assert(
        !std::is_copy_constructible_v<CComplexPayload> && !std::is_copy_assignable_v<CComplexPayload>);
    static_assert(!std::is_copy_constructible_v<CRawPayload> && !std::is_copy_assignable_v<CRawPayload>);
    SUCCEED();
}

TEST(CComplexPayload, passes_over_null_fields)
{
    const FrameworkErrors errors;
    const auto payload = AStruct({ nullptr, new CUint8Payload(5), nullptr });
    std::array<unsigned char, 4> memory{};
    RecordingWriter writer;
    const auto record = ARecord(1).Build();

    payload->Use(*record);
    payload->WriteFields(writer, CNullContext::Ref());
    EXPECT_EQ(payload->GetFields().size(), 3U);
    EXPECT_EQ(payload->Length(), 1U);
    EXPECT_EQ(payload->WriteToMem(memory.data(), memory.size()), 1U);
    EXPECT_THAT(memory, ElementsAre(5, 0, 0, 0));
    EXPECT_THAT(writer.Calls(), ElementsAre("WritePayload 4:5"));
}

TEST(CComplexPayload, a_null_field_equals_a_null_field_only)
{
    EXPECT_TRUE(*AStruct({ nullptr }) == *AStruct({ nullptr }));
    EXPECT_FALSE(*AStruct({ nullptr }) == *AStruct({ new CUint8Payload(0) }));
    EXPECT_FALSE(*AStruct({ new CUint8Payload(0) }) == *AStruct({ nullptr }));
    EXPECT_FALSE(*AStruct({ nullptr }) == *AStruct({}));
}

// --- Length and memory -----------------------------------------------------------------------------------------

TEST(CComplexPayload, has_the_sum_of_the_lengths)
{
    EXPECT_EQ(AStruct({ new CUint8Payload(1), new CUint16Payload(2) })->Length(), 3U);
    EXPECT_EQ(ATree(7)->Length(), 1U + 2U + 3U);
    EXPECT_EQ(AStruct({ new ForeignPayload("12345") })->Length(), 5U);
}

TEST(CComplexPayload, without_fields_writes_nothing_to_memory)
{
    CComplexPayload payload(PAYLOAD_COMPLEX);
    unsigned char byte = 0xee;
    EXPECT_EQ(payload.WriteToMem(&byte, 0), 0U);
    EXPECT_EQ(payload.WriteToMem(&byte, 1), 0U);
    EXPECT_EQ(payload.WriteToMem(nullptr, 0), 0U);
    EXPECT_EQ(byte, 0xee);
}

TEST(CComplexPayload, writes_nothing_to_memory_that_is_too_small)
{
    const auto payload = AStruct({ new CUint8Payload(1), new CUint16Payload(2) });
    std::array<unsigned char, 4> memory{ 0xee, 0xee, 0xee, 0xee };
    EXPECT_EQ(payload->WriteToMem(memory.data(), 2), 0U);
    EXPECT_EQ(payload->WriteToMem(nullptr, 4), 0U);
    EXPECT_THAT(memory, Each(0xee));
}

TEST(CComplexPayload, packs_its_fields_without_gaps)
{
    const auto payload = AStruct({ new CUint8Payload(0x11), new CUint16Payload(0x2233) });
    for (const std::uint64_t maximum : { 3U, 4U }) {
        std::array<unsigned char, 4> memory{ 0xee, 0xee, 0xee, 0xee };
        EXPECT_EQ(payload->WriteToMem(memory.data(), maximum), 3U);
        EXPECT_EQ(HexOf(memory), "11" + HexOf(std::uint16_t{ 0x2233 }) + "ee");
    }
}

TEST(CComplexPayload, packs_nested_fields_in_order)
{
    auto inner = AStruct({ new CInt16Payload(-2), new CUint8Payload(3) });
    const auto payload = AStruct({ new CUint8Payload(1), inner.release(), new CEnumPayload("four", 4) });
    std::array<unsigned char, 8> memory{};
    EXPECT_EQ(payload->WriteToMem(memory.data(), 8), 8U);
    EXPECT_EQ(HexOf(memory), "01" + HexOf(std::int16_t{ -2 }) + "03" + HexOf(std::int32_t{ 4 }));
}

TEST(CComplexPayload, gives_each_field_the_whole_maximum)
{
    auto * first = new ForeignPayload("ab");
    auto * second = new ForeignPayload("cd");
    const auto payload = AStruct({ first, second, new CUint8Payload(1) });
    // The foreign class copies as much as it has, whatever the maximum.
    std::array<unsigned char, 5> memory{};
    EXPECT_EQ(payload->WriteToMem(memory.data(), memory.size()), 5U);
    EXPECT_THAT(first->Maxima(), ElementsAre(5U));
    EXPECT_THAT(second->Maxima(), ElementsAre(5U));
}

TEST(CComplexPayload, writes_the_object_of_a_string_field_past_its_own_length)
{
    auto * text = new CStringPayload("abc", false);
    const auto payload = AStruct({ new CUint8Payload(1), text });
    std::vector<unsigned char> memory(100);
    ASSERT_EQ(payload->Length(), 4U);
    EXPECT_EQ(payload->WriteToMem(memory.data(), memory.size()), 1U + STRING_OBJECT);
    EXPECT_EQ(HexOf(memory.data() + 1, STRING_OBJECT), HexOf(text->RawData(), STRING_OBJECT));
}

TEST(CComplexPayload, leaves_out_a_string_field_that_the_maximum_is_too_small_for)
{
    const auto payload = AStruct({ new CStringPayload("abc", false), new CUint8Payload(7) });
    std::array<unsigned char, 4> memory{};
    EXPECT_EQ(payload->WriteToMem(memory.data(), memory.size()), 1U);
    EXPECT_THAT(memory, ElementsAre(7, 0, 0, 0));
}

TEST(CComplexPayload, gives_string_fields_the_whole_maximum_too)
{
    const auto payload = AStruct(
        { new CStringPayload("abc", false), new CStringPayload("", false), new CUint16Payload(0x2211) });
    std::vector<unsigned char> memory(2 * STRING_OBJECT + 2);   // the sum, which is the caller's duty
    EXPECT_EQ(payload->WriteToMem(memory.data(), STRING_OBJECT), memory.size());
    EXPECT_EQ(HexOf(memory.data() + 2 * STRING_OBJECT, 2), HexOf(std::uint16_t{ 0x2211 }));
}

TEST(CComplexPayload, writes_no_field_to_a_null_destination)
{
    EXPECT_EQ(AStruct({ new ForeignPayload("abc") })->WriteToMem(nullptr, 100), 0U);
}

// --- Writing ---------------------------------------------------------------------------------------------------

TEST(CComplexPayload, is_written_whole)
{
    const FrameworkErrors errors;
    RecordingWriter writer;
    const auto payload = ATree(7);
    EXPECT_TRUE(payload->Write(writer, CNullContext::Ref()));
    EXPECT_THAT(writer.Calls(), ElementsAre("WritePayload 9:(4:1 9:(5:7 8:abc))"));
    EXPECT_THAT(writer.Payloads(), ElementsAre(payload.get()));
}

TEST(CComplexPayload, arrives_field_by_field_at_a_writer_that_asks)
{
    const FrameworkErrors errors;
    RecordingWriter writer;
    writer.AsksForFields();
    EXPECT_TRUE(ATree(7)->Write(writer, CNullContext::Ref()));
    EXPECT_THAT(writer.Calls(), ElementsAre("WritePayload 9:(4:1 9:(5:7 8:abc))", "WritePayload 4:1",
                                    "WritePayload 9:(5:7 8:abc)", "WritePayload 5:7", "WritePayload 8:abc"));
}

TEST(CComplexPayload, write_is_false_when_an_error_stands)
{
    FrameworkErrors errors;
    errors.Set("earlier");
    RecordingWriter writer;
    EXPECT_FALSE(ATree(7)->Write(writer, CNullContext::Ref()));
    EXPECT_EQ(writer.Calls().size(), 1U);

    errors.Clear();
    writer.FailsIn("WritePayload", "no space left");
    EXPECT_FALSE(ATree(7)->Write(writer, CNullContext::Ref()));
}

TEST(CComplexPayload, write_fields_ignores_the_results)
{
    const FrameworkErrors errors;
    RecordingWriter writer({ "watched" });
    writer.FailsIn("WritePayload", "no space left");
    CBaseContext context("test");
    context.SetTag("watched", "yes");
    auto * foreign = new ForeignPayload("x");
    foreign->Fail();
    const auto payload = AStruct({ foreign, new CUint8Payload(1) });
    payload->WriteFields(writer, context);
    EXPECT_THAT(
        writer.Calls(), ElementsAre("WritePayload 11:foreign watched=yes", "WritePayload 4:1 watched=yes"));
}

// --- Comparison ------------------------------------------------------------------------------------------------

TEST(CComplexPayload, equals_a_tree_of_the_same_shape_and_values)
{
    EXPECT_TRUE(*ATree(7) == *ATree(7));
    EXPECT_FALSE(*ATree(7) != *ATree(7));
    EXPECT_TRUE(CComplexPayload(PAYLOAD_COMPLEX) == CComplexPayload(PAYLOAD_COMPLEX));
}

TEST(CComplexPayload, differs_by_a_value_at_any_depth)
{
    EXPECT_FALSE(*ATree(7) == *ATree(8));
    EXPECT_TRUE(*ATree(7) != *ATree(8));
    EXPECT_FALSE(*AStruct({ new CUint8Payload(1) }) == *AStruct({ new CUint8Payload(2) }));
}

TEST(CComplexPayload, differs_by_order_count_and_class_of_fields)
{
    const auto payload = AStruct({ new CUint8Payload(1), new CUint8Payload(2) });
    EXPECT_FALSE(*payload == *AStruct({ new CUint8Payload(2), new CUint8Payload(1) }));
    EXPECT_FALSE(*payload == *AStruct({ new CUint8Payload(1) }));
    EXPECT_FALSE(*payload == *AStruct({ new CUint8Payload(1), new CUint8Payload(2), new CUint8Payload(3) }));
    EXPECT_FALSE(*payload == *AStruct({ new CUint8Payload(1), new CInt8Payload(2) }));
}

TEST(CComplexPayload, differs_from_other_codes_and_classes)
{
    EXPECT_FALSE(CComplexPayload(PAYLOAD_COMPLEX) == CComplexPayload(PAYLOAD_RAW));
    EXPECT_FALSE(CComplexPayload(PAYLOAD_COMPLEX) == CRawPayload("abc"));
    EXPECT_TRUE(CComplexPayload(PAYLOAD_RAW) == CRawPayload("abc"));
    EXPECT_FALSE(CComplexPayload(PAYLOAD_COMPLEX) == CUint8Payload(1));
    EXPECT_FALSE(CComplexPayload(PAYLOAD_COMPLEX) == ForeignPayload("", PAYLOAD_COMPLEX));
}

TEST(CComplexPayload, compares_foreign_fields_by_their_own_operator)
{
    EXPECT_TRUE(*AStruct({ new ForeignPayload("a") }) == *AStruct({ new ForeignPayload("a") }));
    EXPECT_FALSE(*AStruct({ new ForeignPayload("a") }) == *AStruct({ new ForeignPayload("b") }));
}

TEST(CComplexPayload, compares_metadata_never)
{
    const auto record = ARecord(1).Build();
    const auto left = ATree(7);
    left->Use(*record);
    EXPECT_TRUE(*left == *ATree(7));
}

TEST(CComplexPayload, tells_nothing_itself_when_it_differs)
{
    const DebugCapture debug;
    EXPECT_FALSE(CComplexPayload(PAYLOAD_COMPLEX) == CRawPayload(""));
    EXPECT_FALSE(CComplexPayload(PAYLOAD_COMPLEX) == CUint8Payload(1));
    EXPECT_FALSE(*AStruct({ nullptr }) == *AStruct({}));
    for (const auto & line : debug.Lines())
        EXPECT_LT(line.mLevel, 3U) << line.mText;
}

TEST(CComplexPayload, a_differing_number_in_it_tells_its_own_line)
{
    const DebugCapture debug;
    EXPECT_FALSE(*AStruct({ new CUint8Payload(1), new CUint16Payload(0xab) }) ==
                 *AStruct({ new CUint8Payload(1), new CUint16Payload(0xcd) }));
    EXPECT_EQ(debug.Count("payloads differs: pLeft->type = 5, pRight->type = 5, pLeft->value = 0xab, "
                          "pRight->value = 0xcd"),
        1U);
}

TEST(CComplexPayload, stops_at_the_first_difference)
{
    const DebugCapture debug;
    EXPECT_FALSE(*AStruct({ new CUint8Payload(1), new CUint8Payload(2) }) ==
                 *AStruct({ new CUint8Payload(3), new CUint8Payload(4) }));
    EXPECT_EQ(debug.TextsOf("VrexZynConfigTools::CPayload::operator==").size(), 1U);
}

// --- Metadata --------------------------------------------------------------------------------------------------

TEST(CComplexPayload, passes_metadata_on_down_to_the_bottom_of_the_tree)
{
    const auto record = ARecord(1).Build();
    auto * deep = new CUint8Payload(1);
    auto * direct = new CStringPayload("abc", false);
    auto inner = AStruct({ deep });
    auto * innerAddress = inner.get();
    const auto payload = AStruct({ direct, inner.release(), new ForeignPayload("no metadata user") });

    payload->Use(*record);
    EXPECT_EQ(payload->Metadata(), record.get());
    EXPECT_EQ(direct->Metadata(), record.get());
    EXPECT_EQ(innerAddress->Metadata(), record.get());
    EXPECT_EQ(deep->Metadata(), record.get());
}

TEST(CComplexPayload, the_same_metadata_again_reaches_no_field)
{
    const auto record = ARecord(1).Build();
    const auto other = ARecord(2).Build();
    auto * early = new UsingPayload("early");
    auto * late = new UsingPayload("late");
    const auto payload = AStruct({ early });

    payload->Use(*record);
    payload->AddField(late);
    payload->Use(*record);
    EXPECT_THAT(early->Used(), ElementsAre(record.get()));
    EXPECT_THAT(late->Used(), IsEmpty());

    payload->Use(*other);
    EXPECT_THAT(early->Used(), ElementsAre(record.get(), other.get()));
    EXPECT_THAT(late->Used(), ElementsAre(other.get()));
}

// --- CRawPayload -----------------------------------------------------------------------------------------------

TEST(CRawPayload, ignores_its_text)
{
    CRawPayload payload("abc");
    EXPECT_EQ(payload.Type(), PAYLOAD_RAW);
    EXPECT_EQ(payload.Type(), 11);
    EXPECT_THAT(payload.GetFields(), IsEmpty());
    EXPECT_EQ(payload.Length(), 0U);
    EXPECT_EQ(payload.Size(), 0U);
    EXPECT_EQ(payload.ToString(), "");
}

TEST(CRawPayload, has_the_size_of_its_fields)
{
    CRawPayload payload("abc");
    payload.AddField(new CUint16Payload(1));
    EXPECT_EQ(payload.Size(), 2U);
    static_assert(sizeof(CRawPayload) == sizeof(CComplexPayload), "adds no field");
}

TEST(CRawPayload, deletes_its_fields)
{
    Lives lives;
    std::unique_ptr<IPayload> payload = std::make_unique<CRawPayload>("abc");
    static_cast<CRawPayload &>(*payload).AddField(new TracedPayload(lives, 1));
    payload.reset();
    EXPECT_EQ(lives.Count(), 0U);
}

TEST(CComplexPayload, is_cast_to_by_those_who_link_the_library)
{
    const CRawPayload raw("");
    const IPayload & payload = raw;
    EXPECT_NE(dynamic_cast<const CComplexPayload *>(&payload), nullptr);
    EXPECT_NE(dynamic_cast<const CRawPayload *>(&payload), nullptr);
    EXPECT_NE(dynamic_cast<const IMetadataUser *>(&payload), nullptr);
    EXPECT_EQ(dynamic_cast<const CRawPayload *>(static_cast<const IPayload *>(ATree(1).get())), nullptr);
}

}   // namespace
}   // namespace VrexZynConfigTools
