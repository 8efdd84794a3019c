#include <support/debug_capture.h>
#include <support/element_builder.h>
#include <support/foreign_payload.h>
#include <support/framework_errors.h>
#include <support/lives.h>
#include <support/metadata_builder.h>
#include <support/recording_writer.h>
#include <support/slots.h>

#include <configtools/context.h>
#include <configtools/elements.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace VrexZynConfigTools {
namespace {

using support::AListOf;
using support::ARecord;
using support::ForeignPayload;
using support::FrameworkErrors;
using support::Lives;
using support::RecordingWriter;
using support::SlotAfter;
using support::TracedPayload;
using support::UsingPayload;
using testing::ElementsAre;
using testing::IsEmpty;

/// All 8 bytes are `bits`.
NumericVariable Variable(std::uint64_t bits)
{
    NumericVariable value;
    value.mUint64 = bits;
    return value;
}

TEST(ElementVariants, add_no_slot)
{
    EXPECT_EQ(SlotAfter<CElementString>(), SlotAfter<CElement>());
    EXPECT_EQ(SlotAfter<CElementNumericArray>(), SlotAfter<CElement>());
    EXPECT_EQ(SlotAfter<CElementStruct>(), SlotAfter<CElement>());
    EXPECT_EQ(SlotAfter<CElementEnum>(), SlotAfter<CElement>());
    EXPECT_EQ(SlotAfter<CElementRaw>(), SlotAfter<CElement>());
    static_assert(sizeof(CElementStruct) == sizeof(CElement), "adds no field");
    static_assert(sizeof(CElementEnum) == sizeof(CElement), "adds no field");
    static_assert(sizeof(CElementRaw) == sizeof(CElement), "adds no field");
    static_assert(sizeof(CElementString) > sizeof(CElement), "adds the octet flag");
    static_assert(sizeof(CElementNumericArray) > sizeof(CElement), "adds the type");
}

// --- CElementString --------------------------------------------------------------------------------------------

TEST(CElementString, holds_one_string_payload)
{
    CElementString element(100, "name", "abc", true, true);
    const auto payloads = element.GetPayloadCopy(false);
    ASSERT_EQ(payloads.size(), 1U);
    auto * payload = dynamic_cast<CStringPayload *>(payloads[0]);
    ASSERT_NE(payload, nullptr);
    EXPECT_TRUE(payload->IsOctet());
    EXPECT_EQ(payload->Metadata(), nullptr);
    EXPECT_EQ(element.PsId(), 100U);
    EXPECT_EQ(element.Name(), "name");
    EXPECT_TRUE(element.HasChanged());
    EXPECT_TRUE(element.IsOctet());
    EXPECT_EQ(element.ToString(), "abc");
    EXPECT_EQ(element.Size(), 5U);
}

TEST(CElementString, tells_the_octet_flag_it_was_made_with)
{
    CElementString element(100, "name", "abc", false, false);
    EXPECT_FALSE(element.IsOctet());
    EXPECT_FALSE(static_cast<CStringPayload *>(element.GetPayloadCopy(false)[0])->IsOctet());
    EXPECT_FALSE(element.HasChanged());
}

TEST(CElementString, of_an_empty_value_has_one_payload)
{
    CElementString element(100, "name", "", false, false);
    EXPECT_EQ(element.GetPayloadCopy(false).size(), 1U);
    EXPECT_EQ(element.ToString(), "");
    EXPECT_EQ(element.Size(), 2U);
}

TEST(CElementString, without_payloads_is_an_empty_text_of_size_2)
{
    const CElementString element(100, "name", {}, false);
    EXPECT_EQ(element.ToString(), "");
    EXPECT_EQ(element.Size(), 2U);
    EXPECT_EQ(element.GetValue(0), "");
}

TEST(CElementString, counts_and_shows_the_first_payload_only)
{
    const CElementString element(
        100, "name", AListOf(new CStringPayload("abc", false), new CStringPayload("de", false)), false);
    EXPECT_EQ(element.ToString(), "abc");
    EXPECT_EQ(element.Size(), 5U);
}

TEST(CElementString, built_from_payloads_is_octet_whatever_they_say)
{
    auto * payload = new CStringPayload("abc", false);
    CElementString element(100, "name", AListOf(payload), true);
    EXPECT_TRUE(element.IsOctet());
    EXPECT_FALSE(payload->IsOctet());
    EXPECT_TRUE(element.HasChanged());
    EXPECT_TRUE(CElementString(100, "name", {}, false).IsOctet());
}

TEST(CElementString, get_value_finds_each_payload_by_its_position)
{
    const CElementString element(
        100, "name", AListOf(new CStringPayload("abc", false), new CStringPayload("de", false)), false);
    EXPECT_EQ(element.GetValue(0), "abc");
    EXPECT_EQ(element.GetValue(1), "de");
    EXPECT_EQ(element.GetValue(2), "");
    EXPECT_EQ(element.GetValue(65535), "");
}

TEST(CElementString, get_value_is_empty_for_a_payload_that_is_no_string)
{
    const CElementString element(100, "name",
        { new CUint8Payload(1), new ForeignPayload("abc"), nullptr, new CEnumPayload("one", 1) }, false);
    EXPECT_EQ(element.GetValue(0), "");
    EXPECT_EQ(element.GetValue(1), "");
    EXPECT_EQ(element.GetValue(2), "");
    EXPECT_EQ(element.GetValue(3), "");
    EXPECT_EQ(element.ToString(), "1") << "the text is that of any payload";
}

TEST(CElementString, set_value_replaces_all_payloads_by_one)
{
    Lives lives;
    const auto record = ARecord(1).Build();
    CElementString element(
        100, "name", AListOf(new TracedPayload(lives, 1), new TracedPayload(lives, 2)), false);
    element.Use(*record);

    element.SetValue("new");
    EXPECT_EQ(lives.Count(), 0U);
    const auto payloads = element.GetPayloadCopy(false);
    ASSERT_EQ(payloads.size(), 1U);
    auto * payload = dynamic_cast<CStringPayload *>(payloads[0]);
    ASSERT_NE(payload, nullptr);
    EXPECT_EQ(payload->GetValue(), "new");
    EXPECT_TRUE(payload->IsOctet()) << "the element's flag, which the list constructor set";
    EXPECT_EQ(payload->Metadata(), record.get());
}

TEST(CElementString, set_value_leaves_the_changed_flag_as_it_was)
{
    CElementString clean(100, "name", "abc", false, false);
    clean.SetValue("new");
    EXPECT_FALSE(clean.HasChanged());
    CElementString changed(100, "name", "abc", false, true);
    changed.SetValue("new");
    EXPECT_TRUE(changed.HasChanged());
    EXPECT_FALSE(static_cast<CStringPayload *>(changed.GetPayloadCopy(false)[0])->IsOctet());
}

TEST(CElementString, set_value_makes_no_comparison)
{
    Lives lives;
    CElementString element(100, "name", AListOf(new TracedPayload(lives, 1)), false);
    element.SetValue(element.ToString());
    EXPECT_EQ(lives.Count(), 0U) << "an equal value replaces the payload, too";
}

TEST(CElementString, set_value_without_metadata_passes_null_on)
{
    CElementString element(100, "name", "abc", false, false);
    element.SetValue("new");
    EXPECT_EQ(static_cast<CStringPayload *>(element.GetPayloadCopy(false)[0])->Metadata(), nullptr);
}

/// Notes how many payloads each call of `ClearPayload` found.
struct ClearCounting : CElementString
{
    using CElementString::CElementString;
    void ClearPayload() override
    {
        mFound.push_back(mPayload.size());
        CElementString::ClearPayload();
    }
    std::vector<std::size_t> mFound;
};

TEST(CElementString, set_value_clears_through_the_virtual_operation)
{
    ClearCounting element(100, "name", "abc", false, false);
    element.SetValue("new");
    EXPECT_THAT(element.mFound, ElementsAre(1U));
    EXPECT_EQ(element.ToString(), "new");
}

TEST(CElementString, writes_the_first_payload_only)
{
    const FrameworkErrors errors;
    RecordingWriter writer({ "watched" });
    CBaseContext context("test");
    context.SetTag("watched", "yes");
    CElementString element(
        100, "name", AListOf(new CStringPayload("abc", false), new CStringPayload("de", false)), true);
    EXPECT_TRUE(element.Write(writer, context));
    EXPECT_THAT(writer.Calls(), ElementsAre("StartElement watched=yes", "WriteKeyId 100 watched=yes",
                                    "WritePayload 8:abc watched=yes", "EndElement watched=yes"));
    EXPECT_FALSE(element.HasChanged());
}

TEST(CElementString, gives_its_payload_to_the_writer_directly)
{
    struct NeverWritten : ForeignPayload
    {
        NeverWritten()
            : ForeignPayload("a")
        {}
        bool Write(IConfigWriter &, IConfigContext &) override
        {
            ADD_FAILURE() << "the payload's own Write was called";
            return false;
        }
    };
    const FrameworkErrors errors;
    RecordingWriter writer;
    CElementString element(100, "name", AListOf(new NeverWritten), true);
    EXPECT_TRUE(element.Write(writer, CNullContext::Ref()));
    EXPECT_EQ(writer.Calls().size(), 4U);
}

TEST(CElementString, without_payloads_writes_none)
{
    const FrameworkErrors errors;
    RecordingWriter writer;
    CElementString element(100, "name", {}, true);
    EXPECT_TRUE(element.Write(writer, CNullContext::Ref()));
    EXPECT_THAT(writer.Calls(), ElementsAre("StartElement", "WriteKeyId 100", "EndElement"));
}

TEST(CElementString, write_clears_the_changed_flag_also_when_it_fails)
{
    const FrameworkErrors errors;
    RecordingWriter writer;
    writer.FailsIn("WritePayload", "no space left");
    CElementString element(100, "name", "abc", false, true);
    EXPECT_FALSE(element.Write(writer, CNullContext::Ref()));
    EXPECT_FALSE(element.HasChanged());
    EXPECT_EQ(writer.Calls().back(), "EndElement");
}

TEST(CElementString, with_a_null_payload_is_as_one_without)
{
    const FrameworkErrors errors;
    RecordingWriter writer;
    CElementString element(100, "name", { nullptr, new CStringPayload("abc", false) }, true);
    EXPECT_EQ(element.ToString(), "");
    EXPECT_EQ(element.Size(), 2U);
    EXPECT_EQ(element.GetValue(1), "abc");
    EXPECT_TRUE(element.Write(writer, CNullContext::Ref()));
    EXPECT_THAT(writer.Calls(), ElementsAre("StartElement", "WriteKeyId 100", "EndElement"));
}

// --- CElementStruct --------------------------------------------------------------------------------------------

TEST(ElementVariants, trace_the_size_that_they_return_and_the_transfer_of_payloads)
{
    CElementRaw raw(100, "name", AListOf(new CUint8Payload(1)), true);
    const CElementStruct structure(100, "name", true);
    const support::DebugCapture debug(0);
    raw.Size();
    structure.Size();
    for (IPayload * const payload : raw.TransferPayload())
        delete payload;
    EXPECT_EQ(debug.Count("<- VrexZynConfigTools::CElementRaw::Size [returning 1]"), 1U);
    EXPECT_EQ(debug.Count("<- VrexZynConfigTools::CElementStruct::Size [returning 0]"), 1U);
    EXPECT_EQ(debug.Count("<- VrexZynConfigTools::CElement::TransferPayload"), 1U);
}

TEST(CElementStruct, is_shown_as_struct_and_has_the_size_of_its_payloads)
{
    CElementStruct element(100, "name", false);
    EXPECT_EQ(element.ToString(), "struct");
    EXPECT_EQ(element.Size(), 0U);
    element.AddField(new CUint32Payload(1));
    element.AddField(NUMERIC_UINT16, Variable(2));
    EXPECT_EQ(element.ToString(), "struct");
    EXPECT_EQ(element.Size(), 6U);
    EXPECT_EQ(element.PsId(), 100U);
    EXPECT_EQ(element.Name(), "name");
}

TEST(CElementStruct, a_field_that_is_given_marks_the_element_as_changed)
{
    CElementStruct element(100, "name", false);
    element.AddField(new CUint8Payload(1));
    EXPECT_TRUE(element.HasChanged());
}

TEST(CElementStruct, a_field_that_is_made_leaves_the_changed_flag_as_it_was)
{
    CElementStruct element(100, "name", false);
    element.AddField(NUMERIC_UINT8, Variable(1));
    EXPECT_FALSE(element.HasChanged());
    CElementStruct changed(100, "name", true);
    changed.AddField(NUMERIC_UINT8, Variable(1));
    EXPECT_TRUE(changed.HasChanged());
}

TEST(CElementStruct, gives_its_fields_its_metadata_in_order)
{
    const auto record = ARecord(1).Build();
    auto * early = new UsingPayload("a");
    auto * late = new UsingPayload("b");
    CElementStruct element(100, "name", false);
    element.AddField(early);
    EXPECT_THAT(early->Used(), ElementsAre(nullptr));
    element.Use(*record);
    element.AddField(late);
    element.AddField(NUMERIC_INT16, Variable(0xfffe));

    const auto payloads = element.GetPayloadCopy(false);
    EXPECT_THAT(late->Used(), ElementsAre(record.get()));
    ASSERT_EQ(payloads.size(), 3U);
    EXPECT_EQ(payloads[0], early);
    EXPECT_EQ(payloads[1], late);
    auto & made = dynamic_cast<CInt16Payload &>(*payloads[2]);
    EXPECT_EQ(made.GetValue(), -2);
    EXPECT_EQ(made.Metadata(), record.get());
}

TEST(CElementStruct, takes_a_field_that_uses_no_metadata)
{
    CElementStruct element(100, "name", false);
    element.AddField(new ForeignPayload("abc"));
    EXPECT_EQ(element.Size(), 3U);
    EXPECT_TRUE(element.HasChanged());
}

TEST(CElementStruct, ignores_a_null_field_and_an_unknown_type)
{
    CElementStruct element(100, "name", false);
    element.AddField(nullptr);
    element.AddField(NUMERIC_NONE, Variable(1));
    element.AddField(static_cast<NumericTypeEnum>(-1), Variable(1));
    EXPECT_THAT(element.GetPayloadCopy(false), IsEmpty());
    EXPECT_FALSE(element.HasChanged());
}

TEST(CElementStruct, owns_its_fields)
{
    Lives lives;
    auto element = std::make_unique<CElementStruct>(100, "name", false);
    element->AddField(new TracedPayload(lives, 1));
    element.reset();
    EXPECT_EQ(lives.Count(), 0U);
}

TEST(CElementStruct, is_written_field_by_field)
{
    const FrameworkErrors errors;
    RecordingWriter writer;
    CElementStruct element(100, "name", false);
    auto * nested = new CComplexPayload(PAYLOAD_COMPLEX);
    nested->AddField(new CUint8Payload(2));
    element.AddField(new CUint8Payload(1));
    element.AddField(nested);
    EXPECT_TRUE(element.Write(writer, CNullContext::Ref()));
    EXPECT_THAT(writer.Calls(), ElementsAre("StartElement", "WriteKeyId 100", "WritePayload 4:1",
                                    "WritePayload 9:(4:2)", "EndElement"));
    EXPECT_FALSE(element.HasChanged());
}

// --- CElementEnum ----------------------------------------------------------------------------------------------

TEST(CElementEnum, shows_the_first_name_and_has_size_0)
{
    CElementEnum element(100, "name", false);
    EXPECT_EQ(element.ToString(), "");
    EXPECT_EQ(element.Size(), 0U);
    element.AddEnum("one", 1);
    element.AddEnum("two", 2);
    EXPECT_EQ(element.ToString(), "one");
    EXPECT_EQ(element.Size(), 0U);
    EXPECT_EQ(element.PayloadCollectionSize(), 8U);
}

TEST(CElementEnum, add_enum_leaves_the_changed_flag_as_it_was)
{
    CElementEnum clean(100, "name", false);
    clean.AddEnum("one", 1);
    EXPECT_FALSE(clean.HasChanged());
    CElementEnum changed(100, "name", true);
    changed.AddEnum("one", 1);
    EXPECT_TRUE(changed.HasChanged());
}

TEST(CElementEnum, add_enum_gives_the_enumerator_the_metadata)
{
    const auto record = ARecord(1).Build();
    CElementEnum element(100, "name", false);
    element.AddEnum("one", 1);
    EXPECT_EQ(dynamic_cast<CEnumPayload &>(*element.GetPayloadCopy(false)[0]).Metadata(), nullptr);
    element.Use(*record);
    element.AddEnum("two", 2);
    EXPECT_EQ(dynamic_cast<CEnumPayload &>(*element.GetPayloadCopy(false)[1]).Metadata(), record.get());
}

TEST(CElementEnum, get_enum_finds_each_enumerator_in_the_order_of_the_calls)
{
    CElementEnum element(100, "name", false);
    element.AddEnum("minus", -7);
    element.AddEnum("two", 2);
    std::string name;
    std::int32_t value = 0;
    EXPECT_TRUE(element.GetEnum(0, name, value));
    EXPECT_EQ(name, "minus");
    EXPECT_EQ(value, -7);
    EXPECT_TRUE(element.GetEnum(1, name, value));
    EXPECT_EQ(name, "two");
    EXPECT_EQ(value, 2);
}

TEST(CElementEnum, get_enum_past_the_end_leaves_its_arguments)
{
    CElementEnum element(100, "name", false);
    element.AddEnum("one", 1);
    std::string name = "untouched";
    std::int32_t value = 77;
    EXPECT_FALSE(element.GetEnum(1, name, value));
    EXPECT_FALSE(element.GetEnum(65535, name, value));
    EXPECT_EQ(name, "untouched");
    EXPECT_EQ(value, 77);
}

TEST(CElementEnum, get_enum_is_false_for_a_payload_that_is_no_enumerator)
{
    const CElementEnum element(100, "name",
        { new CInt32Payload(1), nullptr, new ForeignPayload("a"), new CEnumPayload("one", 1) }, true);
    std::string name = "untouched";
    std::int32_t value = 77;
    EXPECT_FALSE(element.GetEnum(0, name, value));
    EXPECT_FALSE(element.GetEnum(1, name, value));
    EXPECT_FALSE(element.GetEnum(2, name, value));
    EXPECT_EQ(name, "untouched");
    EXPECT_EQ(value, 77);
    EXPECT_TRUE(element.GetEnum(3, name, value));
    EXPECT_EQ(name, "one");
}

TEST(CElementEnum, takes_over_payloads)
{
    const CElementEnum element(100, "name", AListOf(new CEnumPayload("one", 1)), true);
    EXPECT_TRUE(element.HasChanged());
    EXPECT_EQ(element.ToString(), "one");
    EXPECT_EQ(element.Size(), 0U);
    EXPECT_EQ(CElementEnum(100, "name", { nullptr }, true).ToString(), "");
}

TEST(CElementEnum, is_written_enumerator_by_enumerator)
{
    const FrameworkErrors errors;
    RecordingWriter writer;
    CElementEnum element(100, "name", true);
    element.AddEnum("one", 1);
    element.AddEnum("two", 2);
    EXPECT_TRUE(element.Write(writer, CNullContext::Ref()));
    EXPECT_THAT(writer.Calls(), ElementsAre("StartElement", "WriteKeyId 100", "WritePayload 10:one",
                                    "WritePayload 10:two", "EndElement"));
}

// --- CElementRaw -----------------------------------------------------------------------------------------------

TEST(CElementRaw, is_shown_as_raw_and_has_the_size_of_its_payloads)
{
    const CElementRaw element(100, "name", AListOf(new CUint8Payload(1), new CUint16Payload(2)), true);
    EXPECT_EQ(element.ToString(), "raw");
    EXPECT_EQ(element.Size(), 3U);
    EXPECT_TRUE(element.HasChanged());
    EXPECT_EQ(CElementRaw(100, "name", { nullptr }, true).Size(), 0U);
}

TEST(CElementRaw, is_written_in_raw_mode_which_reads_false_afterwards)
{
    const FrameworkErrors errors;
    RecordingWriter writer({ "rawmode" });
    CBaseContext context("test");
    CElementRaw element(100, "name", AListOf(new CUint8Payload(1), new CUint8Payload(2)), true);
    EXPECT_TRUE(element.Write(writer, context));
    EXPECT_THAT(writer.Calls(),
        ElementsAre("StartElement rawmode=true", "WriteKeyId 100 rawmode=true", "WritePayload 4:1 rawmode=true",
            "WritePayload 4:2 rawmode=true", "EndElement rawmode=true"));
    EXPECT_EQ(context.GetTag("rawmode"), "false");
    EXPECT_FALSE(element.HasChanged());
}

TEST(CElementRaw, leaves_raw_mode_at_false_whatever_it_was)
{
    const FrameworkErrors errors;
    RecordingWriter writer;
    CBaseContext context("test");
    CElementRaw element(100, "name", {}, true);
    for (const char * before : { "true", "false", "", "other" }) {
        context.SetTag("rawmode", before);
        element.Write(writer, context);
        EXPECT_EQ(context.GetTag("rawmode"), "false") << before;
    }
}

TEST(CElementRaw, leaves_raw_mode_at_false_also_when_it_fails)
{
    const FrameworkErrors errors;
    RecordingWriter writer;
    writer.FailsIn("StartElement", "no space left");
    CBaseContext context("test");
    CElementRaw element(100, "name", {}, true);
    EXPECT_FALSE(element.Write(writer, context));
    EXPECT_EQ(context.GetTag("rawmode"), "false");
    EXPECT_FALSE(element.HasChanged());
}

// --- Type information ------------------------------------------------------------------------------------------

TEST(ElementVariants, are_cast_to_by_those_who_link_the_library)
{
    const std::unique_ptr<CElement> element = support::AnElement(100).Text("abc").Build();
    EXPECT_NE(dynamic_cast<CElementString *>(element.get()), nullptr);
    EXPECT_NE(dynamic_cast<IMetadataUser *>(element.get()), nullptr);
    EXPECT_EQ(dynamic_cast<CElementNumericArray *>(element.get()), nullptr);
    EXPECT_EQ(dynamic_cast<CIndexedElement *>(element.get()), nullptr);
    const CElement & reference = *element;
    EXPECT_EQ(typeid(reference), typeid(CElementString));
    EXPECT_NE(dynamic_cast<CNullElement *>(static_cast<IWritable *>(&CNullElement::Ref())), nullptr);
}

}   // namespace
}   // namespace VrexZynConfigTools
