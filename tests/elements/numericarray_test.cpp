#include <support/element_builder.h>
#include <support/foreign_payload.h>
#include <support/framework_errors.h>
#include <support/grouping_locale.h>
#include <support/lives.h>
#include <support/metadata_builder.h>
#include <support/recording_writer.h>

#include <configtools/context.h>
#include <configtools/elements.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <vector>

namespace VrexZynConfigTools {
namespace {

using support::AListOf;
using support::ARecord;
using support::ForeignPayload;
using support::FrameworkErrors;
using support::GroupingLocale;
using support::HexOf;
using support::Lives;
using support::RecordingWriter;
using support::TracedPayload;
using testing::ElementsAre;
using testing::IsEmpty;

/// All 8 bytes are `bits`.
NumericVariable Variable(std::uint64_t bits)
{
    NumericVariable value;
    value.mUint64 = bits;
    return value;
}

std::vector<NumericVariable> Variables(const std::vector<std::uint64_t> & bits)
{
    std::vector<NumericVariable> values;
    for (const std::uint64_t each : bits)
        values.push_back(Variable(each));
    return values;
}

std::vector<std::uint64_t> BitsOf(const CElementNumericArray & element)
{
    std::vector<std::uint64_t> bits;
    for (const NumericVariable & value : element.Value())
        bits.push_back(value.mUint64);
    return bits;
}

// --- Making and showing ------------------------------------------------------------------------------------------

TEST(CElementNumericArray, is_empty_at_first)
{
    CElementNumericArray element(NUMERIC_UINT16, 100, "name", true);
    EXPECT_EQ(element.Type(), NUMERIC_UINT16);
    EXPECT_EQ(element.PsId(), 100U);
    EXPECT_EQ(element.Name(), "name");
    EXPECT_TRUE(element.HasChanged());
    EXPECT_EQ(element.ToString(), "");
    EXPECT_EQ(element.Size(), 2U);
    EXPECT_THAT(element.Value(), IsEmpty());
    EXPECT_FALSE(CElementNumericArray(NUMERIC_UINT16, 100, "name", false).HasChanged());
}

TEST(CElementNumericArray, keeps_a_type_that_is_none)
{
    EXPECT_EQ(CElementNumericArray(static_cast<NumericTypeEnum>(77), 100, "name", true).Type(), 77);
    EXPECT_EQ(CElementNumericArray(static_cast<NumericTypeEnum>(-1), 100, "name", true).Type(), -1);
}

TEST(CElementNumericArray, has_the_type_of_its_keyword)
{
    const std::vector<std::pair<const char *, int>> keywords{ { "uint8", 4 }, { "uint16", 5 }, { "uint32", 6 },
        { "uint64", 7 }, { "int8", 0 }, { "int16", 1 }, { "int32", 2 }, { "int64", 3 }, { "integer", 3 } };
    for (const auto & [keyword, type] : keywords)
        EXPECT_EQ(CElementNumericArray(std::string(keyword), 100, "name", false).Type(), type) << keyword;
}

TEST(CElementNumericArray, has_no_numeric_type_for_any_other_word)
{
    const FrameworkErrors errors;
    for (const char * keyword : { "", "UINT8", "uint", "int", "uint8 ", "uint128", "string", "int8x" })
        EXPECT_EQ(CElementNumericArray(std::string(keyword), 100, "name", false).Type(), 8) << keyword;
    EXPECT_EQ(CElementNumericArray(std::string("uint8\0", 6), 100, "name", false).Type(), 8);
    EXPECT_FALSE(errors.IsSet());
}

TEST(CElementNumericArray, of_the_keyword_integer_holds_8_bytes_a_payload)
{
    CElementNumericArray element(std::string("integer"), 100, "name", false);
    element.SetValue(std::vector<std::int64_t>{ 1, -1 });
    EXPECT_EQ(element.Type(), 3);
    EXPECT_EQ(element.Size(), 2U + 16U);
    for (IPayload * payload : element.GetPayloadCopy(false))
        EXPECT_NE(dynamic_cast<CInt64Payload *>(payload), nullptr);
}

TEST(CElementNumericArray, built_from_payloads_has_no_numeric_type)
{
    const CElementNumericArray element(
        100, "name", AListOf(new CUint8Payload(5), new CInt16Payload(-2), new ForeignPayload("a")), true);
    EXPECT_EQ(element.Type(), 8);
    EXPECT_TRUE(element.HasChanged());
    EXPECT_EQ(element.ToString(), "5 -2 foreign");
    EXPECT_EQ(element.Size(), 2U + 1U + 2U + 1U);
    EXPECT_THAT(BitsOf(element), ElementsAre(0U, 0U, 0U));
}

TEST(CElementNumericArray, passes_over_null_payloads)
{
    const CElementNumericArray element(100, "name", { nullptr, new CUint8Payload(5), nullptr }, true);
    EXPECT_EQ(element.ToString(), "5");
    EXPECT_EQ(element.Size(), 3U);
    EXPECT_THAT(BitsOf(element), ElementsAre(0U, 0U, 0U));
}

TEST(CElementNumericArray, shows_numbers_without_separators_in_any_locale)
{
    CElementNumericArray element(NUMERIC_INT32, 100, "name", false);
    element.SetValue(std::vector<std::int32_t>{ 1234567, -1234567 });
    const GroupingLocale grouping;
    EXPECT_EQ(element.ToString(), "1234567 -1234567");
}

TEST(CElementNumericArray, is_written_payload_by_payload)
{
    const FrameworkErrors errors;
    RecordingWriter writer;
    CElementNumericArray element(NUMERIC_UINT8, 100, "name", false);
    element.SetValue(std::vector<std::uint8_t>{ 1, 2 });
    EXPECT_TRUE(element.HasChanged());
    EXPECT_TRUE(element.Write(writer, CNullContext::Ref()));
    EXPECT_THAT(writer.Calls(),
        ElementsAre("StartElement", "WriteKeyId 100", "WritePayload 4:1", "WritePayload 4:2", "EndElement"));
    EXPECT_FALSE(element.HasChanged());
}

// --- Values of each type -----------------------------------------------------------------------------------------

template <typename ValueT, typename PayloadT, int TYPE_CODE, auto MEMBER>
struct Row
{
    using Value = ValueT;
    using Payload = PayloadT;
    static constexpr NumericTypeEnum TYPE = static_cast<NumericTypeEnum>(TYPE_CODE);
    static ValueT & In(NumericVariable & value) { return value.*MEMBER; }
};
using Rows = testing::Types<Row<std::int8_t, CInt8Payload, 0, &NumericVariable::mInt8>,
    Row<std::int16_t, CInt16Payload, 1, &NumericVariable::mInt16>,
    Row<std::int32_t, CInt32Payload, 2, &NumericVariable::mInt32>,
    Row<std::int64_t, CInt64Payload, 3, &NumericVariable::mInt64>,
    Row<std::uint8_t, CUint8Payload, 4, &NumericVariable::mUint8>,
    Row<std::uint16_t, CUint16Payload, 5, &NumericVariable::mUint16>,
    Row<std::uint32_t, CUint32Payload, 6, &NumericVariable::mUint32>,
    Row<std::uint64_t, CUint64Payload, 7, &NumericVariable::mUint64>>;

template <typename RowT>
class NumericArrayOf : public testing::Test
{
protected:
    using Value = typename RowT::Value;
    static constexpr std::size_t WIDTH = sizeof(Value);
    static constexpr Value LOWEST = std::numeric_limits<Value>::min();
    static constexpr Value HIGHEST = std::numeric_limits<Value>::max();

    /// All bits of the type set, and no others.
    static constexpr std::uint64_t ALL_BITS = ~std::uint64_t{ 0 } >> (64 - 8 * WIDTH);

    CElementNumericArray mElement{ RowT::TYPE, 100, "name", false };
};
TYPED_TEST_SUITE(NumericArrayOf, Rows);

TYPED_TEST(NumericArrayOf, set_value_makes_one_payload_a_value)
{
    this->mElement.SetValue(
        std::vector<typename TestFixture::Value>{ 1, TestFixture::LOWEST, TestFixture::HIGHEST });
    const auto payloads = this->mElement.GetPayloadCopy(false);
    ASSERT_EQ(payloads.size(), 3U);
    std::vector<typename TestFixture::Value> values;
    for (IPayload * each : payloads) {
        auto * payload = dynamic_cast<typename TypeParam::Payload *>(each);
        ASSERT_NE(payload, nullptr);
        values.push_back(payload->GetValue());
    }
    EXPECT_THAT(values, ElementsAre(1, TestFixture::LOWEST, TestFixture::HIGHEST));
    EXPECT_TRUE(this->mElement.HasChanged());
    EXPECT_EQ(this->mElement.Size(), 2U + 3U * TestFixture::WIDTH);
}

TYPED_TEST(NumericArrayOf, value_returns_what_was_set)
{
    this->mElement.SetValue(
        std::vector<typename TestFixture::Value>{ 1, TestFixture::LOWEST, TestFixture::HIGHEST });
    auto values = this->mElement.Value();
    std::vector<typename TestFixture::Value> read;
    for (NumericVariable value : values)
        read.push_back(TypeParam::In(value));
    EXPECT_THAT(read, ElementsAre(1, TestFixture::LOWEST, TestFixture::HIGHEST));
}

TYPED_TEST(NumericArrayOf, value_leaves_the_high_bytes_zero)
{
    this->mElement.SetValue(
        std::vector<typename TestFixture::Value>{ static_cast<typename TestFixture::Value>(-1) });
    EXPECT_THAT(BitsOf(this->mElement), ElementsAre(TestFixture::ALL_BITS));
}

TYPED_TEST(NumericArrayOf, set_value_of_variables_takes_the_low_bytes)
{
    this->mElement.SetValue(Variables({ ~std::uint64_t{ 0 }, 0x8182838485868788 }));
    EXPECT_THAT(
        BitsOf(this->mElement), ElementsAre(TestFixture::ALL_BITS, 0x8182838485868788 & TestFixture::ALL_BITS));
}

TYPED_TEST(NumericArrayOf, set_value_of_identical_values_changes_nothing)
{
    const std::vector<typename TestFixture::Value> values{ 1, TestFixture::LOWEST };
    CBaseContext context("test");
    RecordingWriter writer;
    this->mElement.SetValue(values);
    const auto payloads = this->mElement.GetPayloadCopy(false);
    this->mElement.Write(writer, context);   // clean from here on

    this->mElement.SetValue(values);
    EXPECT_FALSE(this->mElement.HasChanged());
    EXPECT_EQ(this->mElement.GetPayloadCopy(false), payloads) << "the same objects";
}

TYPED_TEST(NumericArrayOf, set_value_compares_the_types_width_only)
{
    this->mElement.SetValue(std::vector<typename TestFixture::Value>{ 5 });
    const auto payloads = this->mElement.GetPayloadCopy(false);
    this->mElement.SetValue(Variables({ 5 | (TestFixture::ALL_BITS ^ ~std::uint64_t{ 0 }) }));
    EXPECT_EQ(this->mElement.GetPayloadCopy(false), payloads);
}

TYPED_TEST(NumericArrayOf, set_value_notices_a_difference_in_any_byte)
{
    for (std::size_t byte = 0; byte < TestFixture::WIDTH; ++byte) {
        CElementNumericArray element(TypeParam::TYPE, 100, "name", false);
        element.SetValue(Variables({ 7, 0 }));
        const std::uint64_t different = std::uint64_t{ 1 } << (8 * byte);
        element.SetValue(Variables({ 7, different }));
        EXPECT_THAT(BitsOf(element), ElementsAre(7U, different));
    }
}

TYPED_TEST(NumericArrayOf, set_value_notices_another_count)
{
    this->mElement.SetValue(Variables({ 1, 2 }));
    this->mElement.SetValue(Variables({ 1 }));
    EXPECT_THAT(BitsOf(this->mElement), ElementsAre(1U));
    this->mElement.SetValue(Variables({ 1, 2, 3 }));
    EXPECT_THAT(BitsOf(this->mElement), ElementsAre(1U, 2U, 3U));
    this->mElement.SetValue(Variables({}));
    EXPECT_THAT(BitsOf(this->mElement), IsEmpty());
    EXPECT_TRUE(this->mElement.HasChanged());
}

TYPED_TEST(NumericArrayOf, the_maker_takes_the_low_bytes)
{
    const std::unique_ptr<IPayload> payload(
        CElementNumericArray::GetPayloadByNumericType(TypeParam::TYPE, Variable(0x8182838485868788)));
    ASSERT_NE(payload, nullptr);
    const IPayload & reference = *payload;
    EXPECT_EQ(typeid(reference), typeid(typename TypeParam::Payload));
    EXPECT_EQ(payload->Type(), static_cast<PayloadTypeEnum>(TypeParam::TYPE));
    const auto low = static_cast<typename TestFixture::Value>(0x8182838485868788);
    EXPECT_EQ(HexOf(payload->RawData(), TestFixture::WIDTH), HexOf(low));
}

TYPED_TEST(NumericArrayOf, every_vector_is_taken_as_zero_extended_bytes)
{
    const auto given = [](auto value) {
        CElementNumericArray element(TypeParam::TYPE, 100, "name", false);
        element.SetValue(std::vector<decltype(value)>{ value });
        return BitsOf(element).at(0);
    };
    EXPECT_EQ(given(std::int8_t{ -1 }), 0xffU & TestFixture::ALL_BITS);
    EXPECT_EQ(given(std::int16_t{ -1 }), 0xffffU & TestFixture::ALL_BITS);
    EXPECT_EQ(given(std::int32_t{ -1 }), 0xffffffffU & TestFixture::ALL_BITS);
    EXPECT_EQ(given(std::int64_t{ -1 }), TestFixture::ALL_BITS);
    EXPECT_EQ(given(std::uint8_t{ 0x81 }), 0x81U & TestFixture::ALL_BITS);
    EXPECT_EQ(given(std::uint16_t{ 0x8182 }), 0x8182U & TestFixture::ALL_BITS);
    EXPECT_EQ(given(std::uint32_t{ 0x81828384 }), 0x81828384U & TestFixture::ALL_BITS);
    EXPECT_EQ(given(std::uint64_t{ 0x8182838485868788 }), 0x8182838485868788U & TestFixture::ALL_BITS);
}

// --- The rest of SetValue ----------------------------------------------------------------------------------------

TEST(CElementNumericArray, of_three_bytes_reads_1_2_3)
{
    CElementNumericArray element(NUMERIC_UINT8, 100, "name", false);
    element.SetValue(std::vector<std::uint8_t>{ 1, 2, 3 });
    EXPECT_EQ(element.ToString(), "1 2 3");
    EXPECT_EQ(element.Size(), 5U);
}

TEST(CElementNumericArray, set_value_of_nothing_on_an_empty_one_changes_nothing)
{
    for (const NumericTypeEnum type : { NUMERIC_UINT8, NUMERIC_NONE }) {
        CElementNumericArray element(type, 100, "name", false);
        element.SetValue(std::vector<NumericVariable>());
        element.SetValue(std::vector<std::uint16_t>());
        EXPECT_FALSE(element.HasChanged());
    }
}

TEST(CElementNumericArray, set_value_gives_the_new_payloads_the_metadata)
{
    const auto record = ARecord(1).Build();
    CElementNumericArray element(NUMERIC_UINT8, 100, "name", false);
    element.SetValue(std::vector<std::uint8_t>{ 1 });
    EXPECT_EQ(dynamic_cast<CUint8Payload &>(*element.GetPayloadCopy(false)[0]).Metadata(), nullptr);

    element.Use(*record);
    element.SetValue(std::vector<std::uint8_t>{ 2, 3 });
    for (IPayload * payload : element.GetPayloadCopy(false))
        EXPECT_EQ(dynamic_cast<CUint8Payload &>(*payload).Metadata(), record.get());
}

/// Notes how many payloads each call of `ClearPayload` found.
struct ClearCounting : CElementNumericArray
{
    using CElementNumericArray::CElementNumericArray;
    void ClearPayload() override
    {
        mFound.push_back(mPayload.size());
        CElementNumericArray::ClearPayload();
    }
    std::vector<std::size_t> mFound;
};

TEST(CElementNumericArray, set_value_clears_once_through_the_virtual_operation_and_only_for_a_difference)
{
    ClearCounting element(NUMERIC_UINT8, 100, "name", false);
    element.SetValue(std::vector<std::uint8_t>{ 1, 2 });
    element.SetValue(std::vector<std::uint8_t>{ 1, 2 });
    element.SetValue(std::vector<std::uint8_t>{ 1, 3 });
    EXPECT_THAT(element.mFound, ElementsAre(0U, 2U));
}

TEST(CElementNumericArray, without_a_numeric_type_compares_nothing)
{
    Lives lives;
    CElementNumericArray element(100, "name", AListOf(new TracedPayload(lives, 1)), false);
    element.SetValue(std::vector<std::uint8_t>{ 77 });
    EXPECT_TRUE(lives.Has(1)) << "a list of the same count counts as equal";
    EXPECT_FALSE(element.HasChanged());
}

TEST(CElementNumericArray, without_a_numeric_type_another_count_leaves_no_payload)
{
    const auto record = ARecord(1).Build();
    Lives lives;
    CElementNumericArray element(100, "name", AListOf(new TracedPayload(lives, 1)), false);
    element.Use(*record);
    element.SetValue(std::vector<std::uint8_t>{ 1, 2 });
    EXPECT_EQ(lives.Count(), 0U);
    EXPECT_THAT(element.GetPayloadCopy(false), IsEmpty());
    EXPECT_TRUE(element.HasChanged());
}

TEST(CElementNumericArray, of_an_unknown_type_behaves_as_one_without)
{
    for (const int type : { -1, 9, 1000 }) {
        CElementNumericArray element(static_cast<NumericTypeEnum>(type), 100, "name", false);
        element.SetValue(std::vector<std::uint8_t>{ 1, 2 });
        EXPECT_THAT(element.GetPayloadCopy(false), IsEmpty());
        EXPECT_TRUE(element.HasChanged());
    }
}

/// Puts payloads into a typed array, as a derived class may.
struct OpenArray : CElementNumericArray
{
    using CElementNumericArray::CElementNumericArray;
    void Push(IPayload * payload) { mPayload.push_back(payload); }
};

TEST(CElementNumericArray, reads_foreign_payloads_by_their_bytes)
{
    OpenArray element(NUMERIC_UINT16, 100, "name", false);
    element.Push(new ForeignPayload("\x01\x01\x01"));
    EXPECT_THAT(BitsOf(element), ElementsAre(0x0101U));
    element.SetValue(std::vector<std::uint16_t>{ 0x0101 });
    EXPECT_EQ(element.ToString(), "foreign") << "nothing differs";
    element.SetValue(std::vector<std::uint16_t>{ 0x0102 });
    EXPECT_EQ(element.ToString(), "258");
}

TEST(CElementNumericArray, takes_payloads_that_are_too_short_for_its_type_for_different)
{
    OpenArray element(NUMERIC_UINT32, 100, "name", false);
    element.Push(new CUint16Payload(0));
    element.Push(nullptr);
    element.Push(new CComplexPayload(PAYLOAD_COMPLEX));
    EXPECT_THAT(BitsOf(element), ElementsAre(0U, 0U, 0U));
    element.SetValue(std::vector<std::uint32_t>{ 0, 0, 0 });
    EXPECT_EQ(element.ToString(), "0 0 0");
    EXPECT_EQ(element.Size(), 2U + 12U);
}

TEST(CElementNumericArray, the_maker_makes_nothing_for_no_numeric_type)
{
    for (const int type : { 8, 9, -1, 77, std::numeric_limits<int>::max(), std::numeric_limits<int>::min() })
        EXPECT_EQ(
            CElementNumericArray::GetPayloadByNumericType(static_cast<NumericTypeEnum>(type), Variable(1)),
            nullptr);
}

}   // namespace
}   // namespace VrexZynConfigTools
