#include <support/element_builder.h>
#include <support/foreign_payload.h>
#include <support/framework_errors.h>
#include <support/grouping_locale.h>
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
using support::AnElement;
using support::ARecord;
using support::ForeignPayload;
using support::FrameworkErrors;
using support::GroupingLocale;
using support::HexOf;
using support::Lives;
using support::RecordingWriter;
using support::SlotAfter;
using support::TracedPayload;
using support::UsingPayload;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

constexpr std::uint32_t HIGHEST = 4294967295U;

CIndexedElement ARow(const std::vector<std::uint32_t> & indices, const std::vector<IPayload *> & payload = {})
{
    return CIndexedElement(100, "N", indices, payload, true);
}

TEST(CIndexedElement, holds_indices_and_payloads)
{
    Lives lives;
    auto * payload = new TracedPayload(lives, 1);
    CIndexedElement row(100, "N", { 3, HIGHEST }, AListOf(payload), true);
    EXPECT_EQ(row.PsId(), 100U);
    EXPECT_EQ(row.Name(), "N");
    EXPECT_TRUE(row.HasChanged());
    EXPECT_TRUE(row.IsValid());
    EXPECT_EQ(row.Metadata(), nullptr);
    EXPECT_EQ(row.NumIndices(), 2U);
    EXPECT_EQ(row.Index(0), 3U);
    EXPECT_EQ(row.Index(1), HIGHEST);
    EXPECT_THAT(row.Payload(), ElementsAre(payload));
    EXPECT_FALSE(CIndexedElement(100, "N", {}, {}, false).HasChanged());
}

TEST(CIndexedElement, passes_no_metadata_to_the_payloads_it_takes_over)
{
    auto * payload = new UsingPayload("a");
    const CIndexedElement row = ARow({ 1 }, AListOf(payload));
    EXPECT_THAT(payload->Used(), IsEmpty());
}

TEST(CIndexedElement, has_index_0_past_the_end)
{
    const CIndexedElement row = ARow({ 7 });
    EXPECT_EQ(row.Index(1), 0U);
    EXPECT_EQ(row.Index(HIGHEST), 0U);
}

TEST(CIndexedElement, payload_is_the_list_itself)
{
    Lives lives;
    CIndexedElement row = ARow({ 1 }, AListOf(new TracedPayload(lives, 1)));
    const std::vector<IPayload *> & payloads = row.Payload();
    row.ClearPayload();
    EXPECT_THAT(payloads, IsEmpty());
    EXPECT_EQ(lives.Count(), 0U);
}

TEST(CIndexedElement, deletes_its_payloads_when_it_dies)
{
    Lives lives;
    std::unique_ptr<CElement> row = std::make_unique<CIndexedElement>(
        100, "N", std::vector<std::uint32_t>{ 1 }, AListOf(new TracedPayload(lives, 1)), true);
    row.reset();
    EXPECT_EQ(lives.Count(), 0U);
}

TEST(CIndexedElement, adds_no_slot)
{
    EXPECT_EQ(SlotAfter<CIndexedElement>(), SlotAfter<CElement>());
    EXPECT_EQ(support::SlotOf(&CIndexedElement::Indices), -1);
    EXPECT_EQ(support::SlotOf(&CIndexedElement::Payload), -1);
}

// --- Texts and size --------------------------------------------------------------------------------------------

TEST(CIndexedElement, joins_its_indices_by_points)
{
    EXPECT_EQ(ARow({}).Indices(), "");
    EXPECT_EQ(ARow({ 0 }).Indices(), "0");
    EXPECT_EQ(ARow({ 1, 2 }).Indices(), "1.2");
    EXPECT_EQ(ARow({ 0, HIGHEST, 0 }).Indices(), "0.4294967295.0");
}

TEST(CIndexedElement, adds_its_indices_to_the_key_text)
{
    EXPECT_EQ(ARow({ 1, 2 }).KeyString(), "N.1.2");
    EXPECT_EQ(ARow({ 3, 7 }).KeyString(), "N.3.7");
    EXPECT_EQ(ARow({}).KeyString(), "N.");
    EXPECT_EQ(CIndexedElement(100, "", { 3 }, {}, true).KeyString(), ".3");
    EXPECT_EQ(CIndexedElement(100, "", {}, {}, true).KeyString(), ".");
}

TEST(CIndexedElement, has_no_separators_in_its_indices_in_any_locale)
{
    const GroupingLocale grouping;
    EXPECT_EQ(ARow({ 1234567 }).Indices(), "1234567");
    EXPECT_EQ(ARow({ 1234567 }).KeyString(), "N.1234567");
}

TEST(CIndexedElement, shows_the_first_payload)
{
    EXPECT_EQ(ARow({ 1 }).ToString(), "");
    EXPECT_EQ(ARow({ 1 }, AListOf(new CUint8Payload(65), new CUint8Payload(66))).ToString(), "65");
    EXPECT_EQ(ARow({ 1 }, { nullptr, new CUint8Payload(66) }).ToString(), "");
}

TEST(CIndexedElement, has_4_bytes_an_index_and_its_payloads_as_size)
{
    EXPECT_EQ(ARow({}).Size(), 0U);
    EXPECT_EQ(ARow({ 1, 2 }, AListOf(new CUint16Payload(5))).Size(), 10U);
    EXPECT_EQ(ARow({ 1 }, { new CUint16Payload(5), nullptr, new CStringPayload("abc", false) }).Size(), 9U);
}

// --- Same and equal --------------------------------------------------------------------------------------------

TEST(CIndexedElement, is_the_same_by_number_and_indices_whatever_the_payloads)
{
    CIndexedElement row = ARow({ 1, 2 }, AListOf(new CUint8Payload(1)));
    CIndexedElement other(100, "another name", { 1, 2 }, AListOf(new CUint8Payload(2)), false);
    EXPECT_TRUE(row.Same(row));
    EXPECT_TRUE(row.Same(other));
    EXPECT_FALSE(row == other);
}

TEST(CIndexedElement, is_another_row_by_any_index)
{
    CIndexedElement row = ARow({ 1, 2 });
    for (const std::vector<std::uint32_t> & indices :
        std::vector<std::vector<std::uint32_t>>{ { 1, 3 }, { 2, 2 }, { 2, 1 }, { 1 }, { 1, 2, 0 }, {} })
    {
        CIndexedElement other = ARow(indices);
        EXPECT_FALSE(row.Same(other)) << other.Indices();
        EXPECT_FALSE(other.Same(row)) << other.Indices();
    }
}

TEST(CIndexedElement, is_another_row_by_its_number)
{
    CIndexedElement row = ARow({ 1 });
    CIndexedElement other(101, "N", { 1 }, {}, true);
    EXPECT_FALSE(row.Same(other));
}

TEST(CIndexedElement, without_indices_is_the_same_as_another_without)
{
    CIndexedElement row = ARow({});
    CIndexedElement other = ARow({});
    EXPECT_TRUE(row.Same(other));
}

TEST(CIndexedElement, is_not_the_same_as_a_plain_element_but_the_plain_one_is_the_same)
{
    CIndexedElement row = ARow({ 1 });
    CIndexedElement withoutIndices = ARow({});
    const auto plain = AnElement(100).Named("N").Build();
    EXPECT_FALSE(row.Same(*plain));
    EXPECT_FALSE(withoutIndices.Same(*plain));
    EXPECT_TRUE(plain->Same(row));
    EXPECT_TRUE(plain->Same(withoutIndices));
}

TEST(CIndexedElement, equals_a_row_of_other_indices_with_the_same_payloads)
{
    CIndexedElement row = ARow({ 1 }, AListOf(new CUint8Payload(7)));
    CIndexedElement other = ARow({ 2, 3 }, AListOf(new CUint8Payload(7)));
    EXPECT_TRUE(row == other);
    EXPECT_FALSE(row != other);
    EXPECT_FALSE(row.Same(other));
}

// --- Writing ---------------------------------------------------------------------------------------------------

class CIndexedElementWrite : public testing::Test
{
protected:
    /// The calls of writing `row`, with the tag "rawmode" behind each.
    const std::vector<std::string> & CallsOf(CIndexedElement & row)
    {
        mWriter.Forget();
        mResult = row.Write(mWriter, mContext);
        return mWriter.Calls();
    }

    /// Whether `row` goes out in raw mode.
    bool IsRaw(CIndexedElement & row)
    {
        const std::string start = CallsOf(row).front();
        EXPECT_TRUE(start == "StartElement rawmode=true" || start == "StartElement rawmode=") << start;
        return start == "StartElement rawmode=true";
    }

    /// A row with the metadata `record`.
    std::unique_ptr<CIndexedElement> RowOf(const IMetadata & record, const std::vector<IPayload *> & payload)
    {
        auto row = std::make_unique<CIndexedElement>(100, "N", std::vector<std::uint32_t>{ 1 }, payload, true);
        row->Use(record);
        return row;
    }

    FrameworkErrors mErrors;
    CBaseContext mContext{ "test" };
    RecordingWriter mWriter{ { "rawmode" } };
    bool mResult = false;
};

TEST_F(CIndexedElementWrite, writes_count_and_indices_ahead_of_the_payloads)
{
    const auto record = ARecord(100).Array().Build();
    CIndexedElement row = ARow({ 3, HIGHEST }, AListOf(new CUint8Payload(65), new CUint16Payload(7)));
    row.Use(*record);
    EXPECT_THAT(CallsOf(row), ElementsAre("StartElement rawmode=", "WriteKeyId 100 rawmode=",
                                  "WriteNamedData num_indices " + HexOf(std::uint64_t{ 2 }) + " rawmode=",
                                  "WriteNamedData index " + HexOf(std::uint32_t{ 3 }) + " rawmode=",
                                  "WriteNamedData index ffffffff rawmode=", "WritePayload 4:65 rawmode=",
                                  "WritePayload 5:7 rawmode=", "EndElement rawmode="));
    EXPECT_TRUE(mResult);
    EXPECT_FALSE(row.HasChanged());
}

TEST_F(CIndexedElementWrite, writes_the_count_also_without_indices)
{
    const auto record = ARecord(100).Build();
    CIndexedElement row = ARow({});
    row.Use(*record);
    EXPECT_THAT(
        CallsOf(row), ElementsAre("StartElement rawmode=", "WriteKeyId 100 rawmode=",
                          "WriteNamedData num_indices 0000000000000000 rawmode=", "EndElement rawmode="));
}

TEST_F(CIndexedElementWrite, passes_over_null_payloads)
{
    const auto record = ARecord(100).Array().Shaped(METADATA_STRUCT).Build();
    const auto row = RowOf(*record, { nullptr, new CUint8Payload(5) });
    EXPECT_THAT(CallsOf(*row), Contains("WritePayload 4:5 rawmode="));
    EXPECT_EQ(mWriter.Payloads().size(), 1U);
}

TEST_F(CIndexedElementWrite, a_failing_payload_doesnt_end_it)
{
    const auto record = ARecord(100).Array().Build();
    auto * foreign = new ForeignPayload("a");
    foreign->Fail();
    const auto row = RowOf(*record, AListOf(foreign, new CUint8Payload(5)));
    EXPECT_THAT(CallsOf(*row), Contains("WritePayload 4:5 rawmode="));
    EXPECT_TRUE(mResult) << "no error stands";
}

TEST_F(CIndexedElementWrite, is_false_when_the_writer_leaves_an_error)
{
    const auto record = ARecord(100).Build();
    mWriter.FailsIn("WriteNamedData", "no space left");
    const auto row = RowOf(*record, AListOf(new CUint8Payload(5)));
    EXPECT_EQ(CallsOf(*row).back(), "EndElement rawmode=");
    EXPECT_FALSE(mResult);
    EXPECT_FALSE(row->HasChanged());
}

TEST_F(CIndexedElementWrite, is_false_when_an_error_stood_before)
{
    const auto record = ARecord(100).Build();
    mErrors.Set("earlier");
    const auto row = RowOf(*record, {});
    EXPECT_EQ(CallsOf(*row).size(), 5U);
    EXPECT_FALSE(mResult);
}

// --- Raw mode --------------------------------------------------------------------------------------------------

TEST_F(CIndexedElementWrite, a_number_without_name_and_metadata_goes_raw)
{
    CIndexedElement unknown(100, "", { 1 }, AListOf(new CUint8Payload(1)), true);
    unknown.Use(CNullMetadata::Ref());
    EXPECT_TRUE(IsRaw(unknown));

    CIndexedElement named(100, "N", { 1 }, AListOf(new CUint8Payload(1)), true);
    named.Use(CNullMetadata::Ref());
    EXPECT_FALSE(IsRaw(named));

    CIndexedElement zero(0, "", { 1 }, AListOf(new CUint8Payload(1)), true);
    zero.Use(CNullMetadata::Ref());
    EXPECT_FALSE(IsRaw(zero));

    const auto record = ARecord(100).Build();
    CIndexedElement described(100, "", { 1 }, AListOf(new CUint8Payload(1)), true);
    described.Use(*record);
    EXPECT_FALSE(IsRaw(described));
}

TEST_F(CIndexedElementWrite, several_payloads_go_raw_unless_the_metadata_is_an_array)
{
    const auto single = ARecord(100).Build();
    const auto array = ARecord(100).Array().Build();
    EXPECT_TRUE(IsRaw(*RowOf(*single, AListOf(new CUint8Payload(1), new CUint8Payload(2)))));
    EXPECT_FALSE(IsRaw(*RowOf(*array, AListOf(new CUint8Payload(1), new CUint8Payload(2)))));
    EXPECT_FALSE(IsRaw(*RowOf(*single, AListOf(new CUint8Payload(1)))));
    EXPECT_FALSE(IsRaw(*RowOf(*single, {})));
}

TEST_F(CIndexedElementWrite, a_value_in_place_of_a_structure_goes_raw)
{
    const auto structure = ARecord(100).Shaped(METADATA_STRUCT).Build();
    EXPECT_TRUE(IsRaw(*RowOf(*structure, AListOf(new CUint8Payload(1)))));
    EXPECT_FALSE(IsRaw(*RowOf(*structure, AListOf(new CComplexPayload(PAYLOAD_COMPLEX)))));
    EXPECT_TRUE(IsRaw(*RowOf(*structure, AListOf(new CRawPayload("")))));
    EXPECT_FALSE(IsRaw(*RowOf(*structure, {})));
    EXPECT_FALSE(IsRaw(*RowOf(*structure, AListOf(new ForeignPayload("a", PAYLOAD_COMPLEX)))))
        << "the code counts";
}

TEST_F(CIndexedElementWrite, a_value_in_place_of_a_structure_goes_raw_also_in_an_array)
{
    const auto structures = ARecord(100).Array().Shaped(METADATA_STRUCT).Build();
    EXPECT_TRUE(
        IsRaw(*RowOf(*structures, AListOf(new CUint8Payload(1), new CComplexPayload(PAYLOAD_COMPLEX)))));
    EXPECT_FALSE(
        IsRaw(*RowOf(*structures, AListOf(new CComplexPayload(PAYLOAD_COMPLEX), new CUint8Payload(1)))))
        << "only the first payload is looked at";
}

TEST_F(CIndexedElementWrite, a_structure_in_place_of_a_value_doesnt_go_raw)
{
    for (const MetadataTypeEnum shape : { METADATA_SIMPLE, METADATA_ENUM, METADATA_NONE }) {
        const auto record = ARecord(100).Shaped(shape).Build();
        EXPECT_FALSE(IsRaw(*RowOf(*record, AListOf(new CComplexPayload(PAYLOAD_COMPLEX)))));
        EXPECT_FALSE(IsRaw(*RowOf(*record, AListOf(new CUint8Payload(1)))));
    }
}

TEST_F(CIndexedElementWrite, without_metadata_it_is_as_with_the_null_record)
{
    CIndexedElement named = ARow({ 1 }, AListOf(new CUint8Payload(1)));
    CIndexedElement several = ARow({ 1 }, AListOf(new CUint8Payload(1), new CUint8Payload(2)));
    CIndexedElement unknown(100, "", { 1 }, AListOf(new CUint8Payload(1)), true);
    CIndexedElement zero(0, "", { 1 }, AListOf(new CUint8Payload(1)), true);
    EXPECT_FALSE(IsRaw(named));
    EXPECT_TRUE(IsRaw(several));
    EXPECT_TRUE(IsRaw(unknown));
    EXPECT_FALSE(IsRaw(zero));
    EXPECT_TRUE(mResult);
    EXPECT_EQ(named.Metadata(), nullptr);
}

TEST_F(CIndexedElementWrite, raw_mode_lasts_from_start_to_end_and_the_tag_is_deleted)
{
    CIndexedElement row = ARow({ 1 }, AListOf(new CUint8Payload(1), new CUint8Payload(2)));
    for (const std::string & call : CallsOf(row))
        EXPECT_THAT(call, testing::EndsWith(" rawmode=true"));
    EXPECT_EQ(mContext.Tags().count("rawmode"), 0U);
    EXPECT_TRUE(mContext.TagMatches("rawmode", ""));
}

TEST_F(CIndexedElementWrite, a_tag_that_is_true_already_is_left_alone)
{
    mContext.SetTag("rawmode", "TRUE");   // matched without regard to case
    CIndexedElement row = ARow({ 1 }, AListOf(new CUint8Payload(1), new CUint8Payload(2)));
    EXPECT_EQ(CallsOf(row).front(), "StartElement rawmode=TRUE");
    EXPECT_EQ(mContext.GetTag("rawmode"), "TRUE");
}

TEST_F(CIndexedElementWrite, a_tag_that_is_false_is_set_and_then_deleted)
{
    mContext.SetTag("rawmode", "false");
    CIndexedElement row = ARow({ 1 }, AListOf(new CUint8Payload(1), new CUint8Payload(2)));
    EXPECT_EQ(CallsOf(row).front(), "StartElement rawmode=true");
    EXPECT_EQ(mContext.GetTag("rawmode"), "");
}

TEST_F(CIndexedElementWrite, a_row_that_isnt_raw_leaves_the_tag_as_it_is)
{
    const auto record = ARecord(100).Build();
    for (const char * before : { "true", "false", "other" }) {
        mContext.SetTag("rawmode", before);
        const auto row = RowOf(*record, AListOf(new CUint8Payload(1)));
        EXPECT_EQ(CallsOf(*row).front(), std::string("StartElement rawmode=") + before);
        EXPECT_EQ(mContext.GetTag("rawmode"), before);
    }
}

TEST_F(CIndexedElementWrite, deletes_the_tag_also_when_it_fails)
{
    mWriter.FailsIn("StartElement", "no space left");
    CIndexedElement row = ARow({ 1 }, AListOf(new CUint8Payload(1), new CUint8Payload(2)));
    CallsOf(row);
    EXPECT_FALSE(mResult);
    EXPECT_EQ(mContext.GetTag("rawmode"), "");
}

/// Counts what a context is asked.
class CountingContext : public CBaseContext
{
public:
    CountingContext()
        : CBaseContext("counting")
    {}
    using CBaseContext::SetTag;
    using CBaseContext::TagMatches;
    void SetTag(const std::string & key) override
    {
        mCalls.push_back("delete " + key);
        CBaseContext::SetTag(key);
    }
    void SetTag(const std::string & key, const std::string & value) override
    {
        mCalls.push_back("set " + key + "=" + value);
        CBaseContext::SetTag(key, value);
    }
    bool TagMatches(const std::string & key, const std::string & value) override
    {
        mCalls.push_back("match " + key + "=" + value);
        return CBaseContext::TagMatches(key, value);
    }
    std::vector<std::string> mCalls;
};

TEST(CIndexedElement, ends_raw_mode_by_the_deleting_form)
{
    const FrameworkErrors errors;
    RecordingWriter writer;
    CountingContext context;
    CIndexedElement row = ARow({ 1 }, AListOf(new CUint8Payload(1), new CUint8Payload(2)));
    row.Write(writer, context);
    ASSERT_FALSE(context.mCalls.empty());
    EXPECT_EQ(context.mCalls[0], "match rawmode=true");
    EXPECT_THAT(context.mCalls, Contains("set rawmode=true"));
    EXPECT_THAT(context.mCalls, Contains("delete rawmode"));
    EXPECT_THAT(context.mCalls, Not(Contains("set rawmode=false")));
}

TEST(CIndexedElement, asks_the_context_nothing_when_it_isnt_raw)
{
    const FrameworkErrors errors;
    const auto record = ARecord(100).Build();
    RecordingWriter writer;
    CountingContext context;
    CIndexedElement row = ARow({ 1 }, AListOf(new CUint8Payload(1)));
    row.Use(*record);
    row.Write(writer, context);
    EXPECT_THAT(context.mCalls, IsEmpty());
}

TEST(CIndexedElement, and_a_raw_element_end_raw_mode_in_different_ways)
{
    const FrameworkErrors errors;
    RecordingWriter writer;
    CBaseContext context("test");
    CIndexedElement row = ARow({ 1 }, AListOf(new CUint8Payload(1), new CUint8Payload(2)));
    CElementRaw raw(100, "N", {}, true);
    row.Write(writer, context);
    EXPECT_EQ(context.GetTag("rawmode"), "");
    raw.Write(writer, context);
    EXPECT_EQ(context.GetTag("rawmode"), "false");
}

TEST(CIndexedElement, is_cast_to_by_those_who_link_the_library)
{
    const auto row = AnElement(100).WithRow(1).Build();
    EXPECT_NE(dynamic_cast<CIndexedElement *>(row.get()), nullptr);
    EXPECT_EQ(dynamic_cast<CElementRaw *>(row.get()), nullptr);
    const CElement & reference = *row;
    EXPECT_EQ(typeid(reference), typeid(CIndexedElement));
}

}   // namespace
}   // namespace VrexZynConfigTools
