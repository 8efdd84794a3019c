#include <support/debug_capture.h>
#include <support/element_builder.h>
#include <support/foreign_payload.h>
#include <support/framework_errors.h>
#include <support/lives.h>
#include <support/metadata_builder.h>
#include <support/null_metadata_reference.h>
#include <support/recording_writer.h>
#include <support/slots.h>

#include <configtools/context.h>
#include <configtools/elements.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <typeinfo>
#include <vector>

namespace VrexZynConfigTools {
namespace {

using support::AListOf;
using support::ARecord;
using support::DebugCapture;
using support::ForeignPayload;
using support::FrameworkErrors;
using support::Lives;
using support::RecordingWriter;
using support::SlotAfter;
using support::SlotOf;
using support::TracedPayload;
using support::UseNothing;
using support::UsingPayload;
using testing::ElementsAre;
using testing::IsEmpty;

/// The base with nothing of its own, as a plug-in might derive it.
class PlainElement : public CElement
{
public:
    using CElement::CElement;

    std::string ToString() const override { return "plain"; }
    std::uint64_t Size() const override { return 0; }

    bool FieldsAreInOrder() const
    {
        const void * const name = &mName;
        const void * const psId = &mPsId;
        const void * const changed = &mChanged;
        const void * const metadata = &mMetadata;
        const void * const payload = &mPayload;
        return name < psId && psId < changed && changed < metadata && metadata < payload;
    }
};

/// The same, with payloads.
PlainElement Plain(const std::vector<IPayload *> & payload)
{
    return PlainElement(100, "name", payload, false);
}

TEST(CElement, has_neither_payloads_nor_metadata_at_first)
{
    PlainElement element(100, "name", false);
    EXPECT_EQ(element.PsId(), 100U);
    EXPECT_EQ(element.Name(), "name");
    EXPECT_EQ(element.KeyString(), "name");
    EXPECT_EQ(element.Metadata(), nullptr);
    EXPECT_EQ(element.PayloadCollectionSize(), 0U);
    EXPECT_THAT(element.GetPayloadCopy(false), IsEmpty());
    EXPECT_TRUE(element.IsValid());
}

TEST(CElement, keeps_the_whole_range_of_key_numbers)
{
    EXPECT_EQ(PlainElement(4294967295U, "", false).PsId(), 4294967295U);
    EXPECT_EQ(PlainElement(0, "", false).PsId(), 0U);
}

TEST(CElement, is_changed_as_its_maker_says)
{
    EXPECT_TRUE(PlainElement(1, "", true).HasChanged());
    EXPECT_FALSE(PlainElement(1, "", false).HasChanged());
    EXPECT_TRUE(PlainElement(1, "", {}, true).HasChanged());
    EXPECT_FALSE(PlainElement(1, "", {}, false).HasChanged());
}

TEST(CElement, takes_over_the_payloads_in_order_and_passes_them_no_metadata)
{
    auto * first = new UsingPayload("a");
    auto * second = new CUint16Payload(2);
    PlainElement element(100, "name", AListOf(first, second), false);
    EXPECT_THAT(element.GetPayloadCopy(false), ElementsAre(first, second));
    EXPECT_THAT(first->Used(), IsEmpty());
    EXPECT_EQ(element.Metadata(), nullptr);
}

TEST(CElement, copies_the_list_and_not_the_payloads)
{
    Lives lives;
    std::vector<IPayload *> payloads = AListOf(new TracedPayload(lives, 1));
    const PlainElement element(100, "name", payloads, false);
    payloads.clear();
    EXPECT_EQ(element.PayloadCollectionSize(), 1U);
    EXPECT_TRUE(lives.Has(1));
}

TEST(CElement, holds_its_fields_in_this_order)
{
    EXPECT_TRUE(PlainElement(1, "", false).FieldsAreInOrder());
}

TEST(CElement, cant_be_copied)
{
    static_assert(!std::is_copy_constructible_v<PlainElement> && !std::is_copy_assignable_v<PlainElement>);
    static_assert(!std::is_move_constructible_v<PlainElement> && !std::is_move_assignable_v<PlainElement>);
    SUCCEED();
}

TEST(CElement, keeps_its_slots)
{
    EXPECT_EQ(SlotOf(&CElement::Write), 0);
    EXPECT_EQ(SlotOf(&CElement::operator==), 3);   // the destructor takes two
    EXPECT_EQ(SlotOf(&CElement::operator!=), 4);
    EXPECT_EQ(SlotOf(&CElement::KeyString), 5);
    EXPECT_EQ(SlotOf(&CElement::ToString), 6);
    EXPECT_EQ(SlotOf(&CElement::Size), 7);
    EXPECT_EQ(SlotOf(&CElement::IsValid), 8);
    EXPECT_EQ(SlotOf(&CElement::HasChanged), 9);
    EXPECT_EQ(SlotOf(&CElement::ClearPayload), 10);
    EXPECT_EQ(SlotOf(&CElement::Same), 11);
}

TEST(CElement, adds_no_other_slot)
{
    // Those of the second base stand at the end of the table, too.
    EXPECT_EQ(SlotAfter<CElement>(), 14);
    EXPECT_EQ(SlotOf(&CElement::Name), -1);
    EXPECT_EQ(SlotOf(&CElement::PsId), -1);
    EXPECT_EQ(SlotOf(&CElement::GetPayloadCopy), -1);
    EXPECT_EQ(SlotOf(&CElement::TransferPayload), -1);
    EXPECT_EQ(SlotOf(&CElement::PayloadCollectionSize), -1);
}

// --- Payloads --------------------------------------------------------------------------------------------------

TEST(CElement, deletes_its_payloads_when_it_dies)
{
    Lives lives;
    std::unique_ptr<CElement> element = std::make_unique<PlainElement>(
        1, "", AListOf(new TracedPayload(lives, 1), new TracedPayload(lives, 2)), false);
    EXPECT_EQ(lives.Count(), 2U);
    element.reset();
    EXPECT_EQ(lives.Count(), 0U);
}

TEST(CElement, clear_payload_deletes_the_payloads_and_empties_the_list)
{
    Lives lives;
    PlainElement element(1, "", AListOf(new TracedPayload(lives, 1), new TracedPayload(lives, 2)), true);
    element.ClearPayload();
    EXPECT_EQ(lives.Count(), 0U);
    EXPECT_THAT(element.GetPayloadCopy(false), IsEmpty());
    EXPECT_TRUE(element.HasChanged()) << "the flag stays as it was";
    element.ClearPayload();
}

TEST(CElement, its_destructor_calls_no_override_of_clear_payload)
{
    struct Counting : PlainElement
    {
        explicit Counting(int & calls)
            : PlainElement(1, "", AListOf(new CUint8Payload(1)), false)
            , mCalls(calls)
        {}
        void ClearPayload() override { ++mCalls; }
        int & mCalls;
    };
    int calls = 0;
    std::make_unique<Counting>(calls).reset();
    EXPECT_EQ(calls, 0);
}

TEST(CElement, transfer_leaves_the_payloads_to_the_caller_alone)
{
    Lives lives;
    auto * first = new TracedPayload(lives, 1);
    auto * second = new TracedPayload(lives, 2);
    auto element = std::make_unique<PlainElement>(1, "", AListOf(first, second), true);

    const auto payloads = element->TransferPayload();
    EXPECT_THAT(payloads, ElementsAre(first, second));
    EXPECT_THAT(element->GetPayloadCopy(false), IsEmpty());
    EXPECT_EQ(element->PayloadCollectionSize(), 0U);
    EXPECT_TRUE(element->HasChanged());
    element.reset();
    EXPECT_EQ(lives.Count(), 2U) << "the element has deleted none";
    delete first;
    delete second;
}

TEST(CElement, transfer_leaves_the_changed_flag_alone)
{
    PlainElement element(1, "", AListOf(new CUint8Payload(1)), false);
    for (IPayload * payload : element.GetPayloadCopy(true))
        delete payload;
    EXPECT_FALSE(element.HasChanged());
}

TEST(CElement, a_payload_copy_holds_the_same_pointers_and_leaves_them)
{
    Lives lives;
    auto * payload = new TracedPayload(lives, 1);
    PlainElement element(1, "", AListOf(payload), false);
    const auto first = element.GetPayloadCopy(false);
    EXPECT_THAT(first, ElementsAre(payload));
    EXPECT_THAT(element.GetPayloadCopy(false), ElementsAre(payload));
    element.ClearPayload();
    EXPECT_FALSE(lives.Has(1)) << "what the caller has is dangling now";
}

TEST(CElement, payload_collection_size_is_the_sum_of_the_lengths)
{
    EXPECT_EQ(Plain(AListOf(new CUint8Payload(1), new CUint32Payload(2), new CStringPayload("abcdef", false),
                        new ForeignPayload("xy")))
                  .PayloadCollectionSize(),
        1U + 4U + 6U + 2U);
}

// --- Metadata --------------------------------------------------------------------------------------------------

TEST(CElement, passes_metadata_on_to_every_payload_that_can_use_it)
{
    const auto record = ARecord(1).Build();
    auto * number = new CUint8Payload(1);
    auto * text = new CStringPayload("abc", false);
    auto * enumerator = new CEnumPayload("one", 1);
    auto * complex = new CComplexPayload(PAYLOAD_COMPLEX);
    auto element = Plain(AListOf(number, text, new ForeignPayload("no metadata user"), enumerator, complex));

    element.Use(*record);
    EXPECT_EQ(element.Metadata(), record.get());
    EXPECT_EQ(number->Metadata(), record.get());
    EXPECT_EQ(text->Metadata(), record.get());
    EXPECT_EQ(enumerator->Metadata(), record.get());
    EXPECT_EQ(complex->Metadata(), record.get());
}

TEST(CElement, passes_the_same_metadata_on_each_time)
{
    const auto record = ARecord(1).Build();
    auto * payload = new UsingPayload("a");
    auto element = Plain(AListOf(payload));
    element.Use(*record);
    element.Use(*record);
    EXPECT_THAT(payload->Used(), ElementsAre(record.get(), record.get()));
}

TEST(CElement, a_null_address_passes_through_to_the_payloads)
{
    const auto record = ARecord(1).Build();
    auto * number = new CUint8Payload(1);
    auto * foreign = new UsingPayload("a");
    auto * field = new CUint8Payload(2);
    auto * complex = new CComplexPayload(PAYLOAD_COMPLEX);
    complex->AddField(field);
    auto element = Plain(AListOf(number, foreign, complex));

    element.Use(*record);
    UseNothing(element);
    EXPECT_EQ(element.Metadata(), nullptr);
    EXPECT_EQ(number->Metadata(), nullptr);
    EXPECT_EQ(complex->Metadata(), nullptr);
    EXPECT_EQ(field->Metadata(), nullptr);
    EXPECT_THAT(foreign->Used(), ElementsAre(record.get(), nullptr));
}

TEST(CPayload, a_null_address_is_a_plain_store)
{
    const auto record = ARecord(1).Build();
    CUint8Payload number(1);
    CStringPayload text("abc", false);
    number.Use(*record);
    text.Use(*record);
    UseNothing(number);
    UseNothing(text);
    EXPECT_EQ(number.Metadata(), nullptr);
    EXPECT_EQ(text.Metadata(), nullptr);
}

TEST(CComplexPayload, a_null_address_on_a_fresh_payload_reaches_no_field)
{
    auto * field = new UsingPayload("a");
    CComplexPayload payload(PAYLOAD_COMPLEX);
    payload.AddField(field);
    UseNothing(payload);   // the address stored already
    EXPECT_THAT(field->Used(), IsEmpty());
}

// --- Same and equal --------------------------------------------------------------------------------------------

TEST(CElement, is_the_same_by_its_key_number_alone)
{
    PlainElement element(100, "name", false);
    PlainElement otherName(100, "other", true);
    PlainElement otherNumber(101, "name", false);
    EXPECT_TRUE(element.Same(element));
    EXPECT_TRUE(element.Same(otherName));
    EXPECT_FALSE(element.Same(otherNumber));
}

TEST(CElement, with_the_same_number_and_another_name_is_the_same_and_not_equal)
{
    PlainElement element(100, "name", false);
    PlainElement other(100, "Name", false);
    EXPECT_TRUE(element.Same(other));
    EXPECT_FALSE(element == other);
    EXPECT_TRUE(element != other);
}

TEST(CElement, without_payloads_equals_one_of_the_same_number_and_name)
{
    const PlainElement element(100, "name", false);
    EXPECT_TRUE(element == PlainElement(100, "name", false));
    EXPECT_FALSE(element != PlainElement(100, "name", false));
    EXPECT_FALSE(element == PlainElement(101, "name", false));
    EXPECT_FALSE(element == PlainElement(100, "nam", false));
    EXPECT_FALSE(element == PlainElement(100, std::string("name\0", 5), false));
}

TEST(CElement, compares_changed_flag_and_metadata_never)
{
    const auto record = ARecord(1).Build();
    PlainElement element(100, "name", true);
    element.Use(*record);
    EXPECT_TRUE(element == PlainElement(100, "name", false));
}

TEST(CElement, compares_its_payloads_in_order)
{
    const auto element = Plain(AListOf(new CUint8Payload(1), new CUint8Payload(2)));
    EXPECT_TRUE(element == Plain(AListOf(new CUint8Payload(1), new CUint8Payload(2))));
    EXPECT_FALSE(element == Plain(AListOf(new CUint8Payload(2), new CUint8Payload(1))));
    EXPECT_FALSE(element == Plain(AListOf(new CUint8Payload(1))));
    EXPECT_FALSE(element == Plain(AListOf(new CUint8Payload(1), new CUint8Payload(2), new CUint8Payload(3))));
    EXPECT_FALSE(element == Plain(AListOf(new CUint8Payload(1), new CInt8Payload(2))));
}

TEST(CElement, the_left_payload_compares)
{
    struct EqualToAll : ForeignPayload
    {
        EqualToAll()
            : ForeignPayload("")
        {}
        bool operator==(IPayload const &) const override { return true; }
    };
    const auto left = Plain(AListOf(new EqualToAll));
    const auto right = Plain(AListOf(new CUint8Payload(1)));
    EXPECT_TRUE(left == right);
    EXPECT_FALSE(right == left);
}

TEST(CElement, stops_at_the_first_difference)
{
    const DebugCapture debug;
    EXPECT_FALSE(Plain(AListOf(new CUint8Payload(1), new CUint8Payload(2))) ==
                 Plain(AListOf(new CUint8Payload(3), new CUint8Payload(4))));
    EXPECT_EQ(debug.TextsOf("VrexZynConfigTools::CPayload::operator==").size(), 1U);
}

TEST(CElement, equals_elements_of_other_classes)
{
    const CElementString text(100, "name", AListOf(new CUint8Payload(1)), false);
    const CElementNumericArray array(100, "name", AListOf(new CUint8Payload(1)), false);
    const CElementEnum enumeration(100, "name", AListOf(new CUint8Payload(1)), false);
    const CElementRaw raw(100, "name", AListOf(new CUint8Payload(1)), false);
    const CIndexedElement row(100, "name", { 1, 2 }, AListOf(new CUint8Payload(1)), false);
    CElementStruct structure(100, "name", false);
    structure.AddField(new CUint8Payload(1));

    const std::vector<const CElement *> elements{ &text, &array, &enumeration, &raw, &row, &structure };
    for (const CElement * left : elements) {
        for (const CElement * right : elements) {
            EXPECT_TRUE(*left == *right) << typeid(*left).name() << typeid(*right).name();
            EXPECT_FALSE(*left != *right) << typeid(*left).name() << typeid(*right).name();
        }
    }
}

TEST(CElement, inequality_goes_through_the_virtual_equality)
{
    struct Unequal : PlainElement
    {
        using PlainElement::PlainElement;
        bool operator==(const CElement &) const override { return false; }
    };
    const Unequal element(1, "", false);
    const CElement & base = element;
    EXPECT_TRUE(base.operator!=(element));
}

// --- Writing ---------------------------------------------------------------------------------------------------

TEST(CElement, without_payloads_writes_start_key_number_and_end)
{
    const FrameworkErrors errors;
    RecordingWriter writer({ "watched" });
    CBaseContext context("test");
    context.SetTag("watched", "yes");
    PlainElement element(100, "name", true);
    EXPECT_TRUE(element.Write(writer, context));
    EXPECT_THAT(writer.Calls(),
        ElementsAre("StartElement watched=yes", "WriteKeyId 100 watched=yes", "EndElement watched=yes"));
}

TEST(CElement, writes_every_payload_in_order)
{
    const FrameworkErrors errors;
    RecordingWriter writer;
    auto element = Plain(AListOf(new CUint8Payload(1), new CStringPayload("abc", false)));
    EXPECT_TRUE(element.Write(writer, CNullContext::Ref()));
    EXPECT_THAT(writer.Calls(),
        ElementsAre("StartElement", "WriteKeyId 100", "WritePayload 4:1", "WritePayload 8:abc", "EndElement"));
}

TEST(CElement, a_failing_payload_doesnt_end_the_write)
{
    const FrameworkErrors errors;
    RecordingWriter writer;
    auto * foreign = new ForeignPayload("a");
    foreign->Fail();
    auto element = Plain(AListOf(foreign, new CUint8Payload(1)));
    EXPECT_TRUE(element.Write(writer, CNullContext::Ref())) << "no error stands";
    EXPECT_THAT(writer.Calls(), ElementsAre("StartElement", "WriteKeyId 100", "WritePayload 11:foreign",
                                    "WritePayload 4:1", "EndElement"));
}

TEST(CElement, write_clears_the_changed_flag_also_when_it_fails)
{
    const FrameworkErrors errors;
    RecordingWriter writer;
    writer.FailsIn("StartElement", "no space left");
    PlainElement element(100, "name", AListOf(new CUint8Payload(1)), true);
    EXPECT_FALSE(element.Write(writer, CNullContext::Ref()));
    EXPECT_FALSE(element.HasChanged());
    EXPECT_EQ(writer.Calls().size(), 4U) << "an error ends nothing";
}

TEST(CElement, write_is_false_when_an_error_stood_before)
{
    FrameworkErrors errors;
    errors.Set("earlier");
    RecordingWriter writer;
    PlainElement element(100, "name", true);
    EXPECT_FALSE(element.Write(writer, CNullContext::Ref()));
    EXPECT_FALSE(element.HasChanged());
    EXPECT_EQ(errors.Text(), "earlier");
}

// --- Null payloads ---------------------------------------------------------------------------------------------

TEST(CElement, passes_over_null_payloads)
{
    const FrameworkErrors errors;
    const auto record = ARecord(1).Build();
    RecordingWriter writer;
    auto * payload = new CUint16Payload(7);
    auto element = Plain({ nullptr, payload, nullptr });

    element.Use(*record);
    EXPECT_EQ(payload->Metadata(), record.get());
    EXPECT_EQ(element.PayloadCollectionSize(), 2U);
    EXPECT_TRUE(element.Write(writer, CNullContext::Ref()));
    EXPECT_THAT(
        writer.Calls(), ElementsAre("StartElement", "WriteKeyId 100", "WritePayload 5:7", "EndElement"));
    EXPECT_EQ(element.GetPayloadCopy(false).size(), 3U);
    element.ClearPayload();
    EXPECT_THAT(element.GetPayloadCopy(false), IsEmpty());
}

TEST(CElement, a_null_payload_equals_a_null_payload_only)
{
    EXPECT_TRUE(Plain({ nullptr }) == Plain({ nullptr }));
    EXPECT_FALSE(Plain({ nullptr }) == Plain({}));
    EXPECT_FALSE(Plain({ nullptr }) == Plain(AListOf(new CUint8Payload(0))));
    EXPECT_FALSE(Plain(AListOf(new CUint8Payload(0))) == Plain({ nullptr }));
}

// --- Diagnostics -----------------------------------------------------------------------------------------------

TEST(CElement, ps_id_traces_its_value)
{
    const DebugCapture debug;
    EXPECT_EQ(PlainElement(100, "", false).PsId(), 100U);
    EXPECT_THAT(debug.TextsOf("VrexZynConfigTools::CElement::PsId", 2),
        ElementsAre("-> CElement::PsId <-returning 100"));
}

TEST(CElement, exit_lines_show_the_results)
{
    const FrameworkErrors errors;
    RecordingWriter writer;
    auto element = Plain(AListOf(new CUint8Payload(65)));
    const DebugCapture debug;
    element.Write(writer, CNullContext::Ref());
    EXPECT_EQ(element.KeyString(), "name");
    EXPECT_EQ(element.PayloadCollectionSize(), 1U);
    EXPECT_EQ(debug.Count("<- VrexZynConfigTools::CElement::Write [returning true]"), 1U);
    EXPECT_EQ(debug.Count("<- VrexZynConfigTools::CElement::KeyString [returning \"name\"]"), 1U);
    EXPECT_EQ(debug.Count("<- VrexZynConfigTools::CElement::PayloadCollectionSize [returning 1]"), 1U);
    EXPECT_EQ(CUint32Payload(1234567).ToString(), "1234567");
    EXPECT_EQ(debug.Count("<- VrexZynConfigTools::CUint8Payload::ToString [returning \"65\"]"), 1U);
    EXPECT_EQ(debug.Count("<- VrexZynConfigTools::CPayload::ToString [returning \"1234567\"]"), 1U);
    for (const auto & line : debug.Lines())
        EXPECT_EQ(line.mGroup, GROUP_FRAMEWORK) << line.mText;
}

// --- The null element ------------------------------------------------------------------------------------------

TEST(CNullElement, is_one_object_that_is_not_valid)
{
    EXPECT_EQ(&CNullElement::Ref(), &CNullElement::Ref());
    EXPECT_FALSE(CNullElement::Ref().IsValid());
    EXPECT_TRUE(PlainElement(0, "", true).IsValid()) << "the number 0 makes no null element";
}

TEST(CNullElement, has_the_number_0_no_name_and_is_changed)
{
    EXPECT_EQ(CNullElement::Ref().PsId(), 0U);
    EXPECT_EQ(CNullElement::Ref().Name(), "");
    EXPECT_EQ(CNullElement::Ref().KeyString(), "");
    EXPECT_TRUE(CNullElement::Ref().HasChanged());
    EXPECT_EQ(CNullElement::Ref().ToString(), "invalid");
    EXPECT_EQ(CNullElement::Ref().Size(), 0U);
    EXPECT_EQ(CNullElement::Ref().PayloadCollectionSize(), 0U);
    EXPECT_THAT(CNullElement::Ref().GetPayloadCopy(true), IsEmpty());
}

TEST(CNullElement, write_is_false_and_leaves_the_writer_alone)
{
    const FrameworkErrors errors;
    RecordingWriter writer;
    EXPECT_FALSE(CNullElement::Ref().Write(writer, CNullContext::Ref()));
    EXPECT_THAT(writer.Calls(), IsEmpty());
    EXPECT_TRUE(CNullElement::Ref().HasChanged());
    EXPECT_FALSE(errors.IsSet());
}

TEST(CNullElement, compares_by_number_0_and_empty_name)
{
    PlainElement zero(0, "", false);
    PlainElement one(1, "", false);
    EXPECT_TRUE(CNullElement::Ref().Same(zero));
    EXPECT_TRUE(zero.Same(CNullElement::Ref()));
    EXPECT_FALSE(CNullElement::Ref().Same(one));
    EXPECT_TRUE(CNullElement::Ref() == zero);
    EXPECT_FALSE(CNullElement::Ref() == one);
}

TEST(CNullElement, use_changes_the_shared_object)
{
    const auto record = ARecord(1).Build();
    EXPECT_EQ(CNullElement::Ref().Metadata(), nullptr);
    CNullElement::Ref().Use(*record);
    EXPECT_EQ(CNullElement::Ref().Metadata(), record.get());
    UseNothing(CNullElement::Ref());
    CNullElement::Ref().ClearPayload();
}

TEST(CNullElement, cant_be_made_by_others)
{
    static_assert(
        !std::is_default_constructible_v<CNullElement> && !std::is_copy_constructible_v<CNullElement>);
    static_assert(sizeof(CNullElement) == sizeof(CElement), "adds no field");
    EXPECT_EQ(SlotAfter<CNullElement>(), SlotAfter<CElement>());
}

}   // namespace
}   // namespace VrexZynConfigTools
