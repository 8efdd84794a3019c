#include <support/framework_errors.h>
#include <support/grouping_locale.h>
#include <support/metadata_builder.h>
#include <support/recording_writer.h>
#include <support/slots.h>

#include <configtools/context.h>
#include <configtools/payloads.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <limits>

namespace VrexZynConfigTools {
namespace {

using support::ARecord;
using support::FrameworkErrors;
using support::GroupingLocale;
using support::HexOf;
using support::RecordingWriter;
using support::SlotAfter;
using support::SlotOf;
using testing::ElementsAre;

constexpr unsigned char UNTOUCHED = 0xee;

/// Room for a value, every byte of which shows whether it was written.
struct Memory
{
    std::array<unsigned char, 100> mBytes;
    Memory() { mBytes.fill(UNTOUCHED); }

    /// The bytes up to the first `count`, and whether all others are untouched.
    std::string First(std::size_t count) const { return HexOf(mBytes.data(), count); }
    bool UntouchedFrom(std::size_t count) const
    {
        return std::all_of(mBytes.begin() + static_cast<std::ptrdiff_t>(count), mBytes.end(),
            [](unsigned char byte) { return byte == UNTOUCHED; });
    }
};

// --- The eight numeric classes ---------------------------------------------------------------------------------

template <typename PayloadT, typename ValueT, int CODE, std::size_t WIDTH>
struct Row
{
    using Payload = PayloadT;
    using Value = ValueT;
    static constexpr PayloadTypeEnum TYPE = static_cast<PayloadTypeEnum>(CODE);
    static constexpr std::size_t LENGTH = WIDTH;
};
using Rows = testing::Types<Row<CInt8Payload, std::int8_t, 0, 1>, Row<CInt16Payload, std::int16_t, 1, 2>,
    Row<CInt32Payload, std::int32_t, 2, 4>, Row<CInt64Payload, std::int64_t, 3, 8>,
    Row<CUint8Payload, std::uint8_t, 4, 1>, Row<CUint16Payload, std::uint16_t, 5, 2>,
    Row<CUint32Payload, std::uint32_t, 6, 4>, Row<CUint64Payload, std::uint64_t, 7, 8>>;

template <typename RowT>
class NumericPayload : public testing::Test
{
protected:
    using Payload = typename RowT::Payload;
    using Value = typename RowT::Value;

    /// Differs in every byte.
    static constexpr Value SAMPLE = static_cast<Value>(0x8182838485868788);
    static constexpr Value OTHER = static_cast<Value>(SAMPLE + 1);
};
TYPED_TEST_SUITE(NumericPayload, Rows);

TYPED_TEST(NumericPayload, has_its_type_code_and_length)
{
    typename TestFixture::Payload payload(TestFixture::SAMPLE);
    EXPECT_EQ(payload.Type(), TypeParam::TYPE);
    EXPECT_EQ(payload.Length(), TypeParam::LENGTH);
}

TYPED_TEST(NumericPayload, derives_from_the_template_of_its_value)
{
    using Base = CPayload<typename TestFixture::Value>;
    static_assert(std::is_base_of_v<Base, typename TestFixture::Payload>);
    static_assert(sizeof(typename TestFixture::Payload) == sizeof(Base), "adds no field");
    static_assert(!std::is_default_constructible_v<typename TestFixture::Payload>);
    EXPECT_EQ(SlotAfter<typename TestFixture::Payload>(), SlotAfter<Base>()) << "adds no virtual operation";
}

TYPED_TEST(NumericPayload, holds_the_value_in_the_machines_byte_order)
{
    typename TestFixture::Payload payload(TestFixture::SAMPLE);
    EXPECT_EQ(HexOf(payload.RawData(), TypeParam::LENGTH), HexOf(TestFixture::SAMPLE));
    EXPECT_EQ(payload.GetValue(), TestFixture::SAMPLE);
}

TYPED_TEST(NumericPayload, raw_data_is_the_stored_value_itself)
{
    typename TestFixture::Payload payload(TestFixture::SAMPLE);
    const void * address = payload.RawData();
    payload.SetValue(TestFixture::OTHER);
    EXPECT_EQ(payload.RawData(), address);
    EXPECT_EQ(HexOf(address, TypeParam::LENGTH), HexOf(TestFixture::OTHER));
}

TYPED_TEST(NumericPayload, writes_nothing_to_memory_that_is_too_small)
{
    typename TestFixture::Payload payload(TestFixture::SAMPLE);
    for (const std::uint64_t maximum : { std::uint64_t{ 0 }, std::uint64_t{ TypeParam::LENGTH - 1 } }) {
        Memory memory;
        EXPECT_EQ(payload.WriteToMem(memory.mBytes.data(), maximum), 0U);
        EXPECT_TRUE(memory.UntouchedFrom(0));
    }
}

TYPED_TEST(NumericPayload, writes_its_bytes_and_no_more)
{
    typename TestFixture::Payload payload(TestFixture::SAMPLE);
    for (const std::uint64_t maximum :
        { std::uint64_t{ TypeParam::LENGTH }, std::uint64_t{ TypeParam::LENGTH + 1 }, std::uint64_t{ 100 } })
    {
        Memory memory;
        EXPECT_EQ(payload.WriteToMem(memory.mBytes.data(), maximum), TypeParam::LENGTH);
        EXPECT_EQ(memory.First(TypeParam::LENGTH), HexOf(TestFixture::SAMPLE));
        EXPECT_TRUE(memory.UntouchedFrom(TypeParam::LENGTH));
    }
}

TYPED_TEST(NumericPayload, writes_nothing_to_a_null_destination)
{
    typename TestFixture::Payload payload(TestFixture::SAMPLE);
    EXPECT_EQ(payload.WriteToMem(nullptr, 100), 0U);
}

TYPED_TEST(NumericPayload, equals_only_the_same_value)
{
    const typename TestFixture::Payload left(TestFixture::SAMPLE);
    const typename TestFixture::Payload same(TestFixture::SAMPLE);
    const typename TestFixture::Payload other(TestFixture::OTHER);
    EXPECT_TRUE(left.operator==(same));
    EXPECT_FALSE(left.operator!=(same));
    EXPECT_FALSE(left.operator==(other));
    EXPECT_TRUE(left.operator!=(other));
}

TYPED_TEST(NumericPayload, has_no_metadata_at_first)
{
    typename TestFixture::Payload payload(TestFixture::SAMPLE);
    EXPECT_EQ(payload.Metadata(), nullptr);
}

TYPED_TEST(NumericPayload, copies_and_moves_take_value_and_metadata)
{
    const auto record = ARecord(1).Build();
    typename TestFixture::Payload source(TestFixture::SAMPLE);
    source.Use(*record);

    auto copied(source);
    auto moved(std::move(source));   // a move copies: the source keeps what it has
    typename TestFixture::Payload assigned(0);
    assigned = source;
    typename TestFixture::Payload moveAssigned(0);
    moveAssigned = std::move(source);

    for (auto * payload : { &copied, &moved, &assigned, &moveAssigned, &source }) {
        EXPECT_EQ(payload->GetValue(), TestFixture::SAMPLE);
        EXPECT_EQ(payload->Metadata(), record.get());
    }
}

TYPED_TEST(NumericPayload, is_written_as_one_payload)
{
    CBaseContext context("test");
    context.SetTag("watched", "yes");
    typename TestFixture::Payload payload(65);
    RecordingWriter writer({ "watched" });
    EXPECT_TRUE(payload.Write(writer, context));
    EXPECT_THAT(
        writer.Calls(), ElementsAre("WritePayload " + std::to_string(TypeParam::TYPE) + ":65 watched=yes"));
    EXPECT_THAT(writer.Payloads(), ElementsAre(&payload));
}

TEST(NumericPayloads, print_every_value_in_decimal)
{
    EXPECT_EQ(CInt8Payload(std::numeric_limits<std::int8_t>::min()).ToString(), "-128");
    EXPECT_EQ(CInt8Payload(127).ToString(), "127");
    EXPECT_EQ(CInt16Payload(std::numeric_limits<std::int16_t>::min()).ToString(), "-32768");
    EXPECT_EQ(CInt16Payload(32767).ToString(), "32767");
    EXPECT_EQ(CInt32Payload(std::numeric_limits<std::int32_t>::min()).ToString(), "-2147483648");
    EXPECT_EQ(CInt32Payload(2147483647).ToString(), "2147483647");
    EXPECT_EQ(CInt64Payload(std::numeric_limits<std::int64_t>::min()).ToString(), "-9223372036854775808");
    EXPECT_EQ(CInt64Payload(std::numeric_limits<std::int64_t>::max()).ToString(), "9223372036854775807");
    EXPECT_EQ(CUint8Payload(255).ToString(), "255");
    EXPECT_EQ(CUint16Payload(65535).ToString(), "65535");
    EXPECT_EQ(CUint32Payload(4294967295U).ToString(), "4294967295");
    EXPECT_EQ(CUint64Payload(std::numeric_limits<std::uint64_t>::max()).ToString(), "18446744073709551615");
    EXPECT_EQ(CUint64Payload(0).ToString(), "0");
}

TEST(NumericPayloads, print_no_thousands_separators_in_any_locale)
{
    const GroupingLocale grouping;
    EXPECT_EQ(CInt16Payload(-12345).ToString(), "-12345");
    EXPECT_EQ(CInt32Payload(-1234567).ToString(), "-1234567");
    EXPECT_EQ(CInt64Payload(1234567).ToString(), "1234567");
    EXPECT_EQ(CUint16Payload(12345).ToString(), "12345");
    EXPECT_EQ(CUint32Payload(1234567).ToString(), "1234567");
    EXPECT_EQ(CUint64Payload(1234567).ToString(), "1234567");
}

TEST(CUint8Payload, prints_a_number_never_a_character)
{
    EXPECT_EQ(CUint8Payload(65).ToString(), "65");
    EXPECT_EQ(CUint8Payload(0).ToString(), "0");
}

TEST(CInt8Payload, prints_a_number_never_a_character)
{
    EXPECT_EQ(CInt8Payload(65).ToString(), "65");
    EXPECT_EQ(CInt8Payload(-1).ToString(), "-1");
}

TEST(CPayload, of_8_bits_prints_a_single_character)
{
    EXPECT_EQ(CPayload<std::uint8_t>(65, PAYLOAD_UINT8).ToString(), "A");
    EXPECT_EQ(CPayload<std::int8_t>(65, PAYLOAD_INT8).ToString(), "A");
    EXPECT_EQ(CPayload<std::int8_t>(-1, PAYLOAD_INT8).ToString(), "\xff");
    EXPECT_EQ(CPayload<std::uint8_t>(0, PAYLOAD_UINT8).ToString(), std::string(1, '\0'));
}

// --- Template and interfaces -----------------------------------------------------------------------------------

TEST(CPayload, takes_any_type_code)
{
    CPayload<std::int16_t> payload(5, PAYLOAD_RAW);
    EXPECT_EQ(payload.Type(), PAYLOAD_RAW);
    EXPECT_EQ(payload.GetValue(), 5);
    EXPECT_EQ(payload.Metadata(), nullptr);
}

TEST(CPayload, assignment_copies_the_type_code_too)
{
    CPayload<std::int32_t> target(1, PAYLOAD_RAW);
    CEnumPayload source("one", 2);
    target = source;
    EXPECT_EQ(target.Type(), PAYLOAD_ENUM);
    EXPECT_EQ(target.GetValue(), 2);
}

/// Looks at the fields as a derived class may.
template <typename T>
struct FieldProbe : CPayload<T>
{
    FieldProbe()
        : CPayload<T>(T(), PAYLOAD_RAW)
    {}
    bool InOrder() const
    {
        const void * const value = &this->mValue;
        const void * const type = &this->mType;
        const void * const metadata = &this->mMetadata;
        return value < type && type < metadata;
    }
};

TEST(CPayload, holds_value_type_code_and_metadata_in_this_order)
{
    EXPECT_TRUE(FieldProbe<std::uint8_t>().InOrder());
    EXPECT_TRUE(FieldProbe<std::uint64_t>().InOrder());
    EXPECT_TRUE(FieldProbe<std::string>().InOrder());
}

TEST(IWritable, keeps_its_slots)
{
    EXPECT_EQ(SlotOf(&IWritable::Write), 0);
    EXPECT_EQ(SlotAfter<IWritable>(), 3);   // the destructor takes two
}

TEST(IPayload, keeps_its_slots)
{
    EXPECT_EQ(SlotOf(&IPayload::operator==), 3);
    EXPECT_EQ(SlotOf(&IPayload::Type), 4);
    EXPECT_EQ(SlotOf(&IPayload::Length), 5);
    EXPECT_EQ(SlotOf(&IPayload::RawData), 6);
    EXPECT_EQ(SlotOf(&IPayload::ToString), 7);
    EXPECT_EQ(SlotOf(&IPayload::WriteToMem), 8);
    EXPECT_EQ(SlotAfter<IPayload>(), 9);
}

TEST(IMetadataUser, keeps_its_slots)
{
    EXPECT_EQ(SlotOf(&IMetadataUser::Use), 0);
    EXPECT_EQ(SlotOf(&IMetadataUser::Metadata), 1);
    EXPECT_EQ(SlotAfter<IMetadataUser>(), 4);
}

TEST(CPayload, keeps_its_slots_behind_those_of_the_interface)
{
    EXPECT_EQ(SlotOf(&CPayload<std::int32_t>::operator!=), SlotAfter<IPayload>());
    EXPECT_EQ(SlotOf(&CPayload<std::int32_t>::SetValue), SlotAfter<IPayload>() + 1);
    EXPECT_EQ(SlotOf(&CPayload<std::int32_t>::GetValue), SlotAfter<IPayload>() + 2);
}

TEST(CEnumPayload, keeps_its_slot_behind_those_of_the_template)
{
    EXPECT_EQ(
        SlotOf<bool(IPayload const &) const>(&CEnumPayload::operator!=), SlotAfter<CPayload<std::int32_t>>());
    EXPECT_EQ((SlotOf<void(const std::string &, std::int32_t)>(&CEnumPayload::SetValue)), -1);
}

TEST(CPayload, derives_from_payload_and_metadata_user_in_this_order)
{
    CUint32Payload payload(1);
    const void * const asPayload = static_cast<IPayload *>(&payload);
    const void * const asUser = static_cast<IMetadataUser *>(&payload);
    EXPECT_EQ(asPayload, &payload);
    EXPECT_GT(asUser, asPayload);
}

TEST(Interfaces, copy_and_assign_nothing)
{
    const auto record = ARecord(1).Build();
    CUint8Payload left(1);
    CUint8Payload right(2);
    right.Use(*record);
    static_cast<IPayload &>(left) = static_cast<const IPayload &>(right);
    static_cast<IWritable &>(left) = static_cast<const IWritable &>(right);
    static_cast<IMetadataUser &>(left) = static_cast<const IMetadataUser &>(right);
    EXPECT_EQ(left.GetValue(), 1);
    EXPECT_EQ(left.Metadata(), nullptr);
    static_assert(
        sizeof(IPayload) == sizeof(void *) && sizeof(IMetadataUser) == sizeof(void *), "they hold no data");
}

// --- Strings ---------------------------------------------------------------------------------------------------

TEST(CStringPayload, has_the_number_of_characters_as_length)
{
    CStringPayload payload("abc", false);
    EXPECT_EQ(payload.Type(), PAYLOAD_STRING);
    EXPECT_EQ(payload.Type(), 8);
    EXPECT_EQ(payload.Length(), 3U);
    EXPECT_EQ(CStringPayload("", false).Length(), 0U);
}

TEST(CPayload, of_a_string_has_the_size_of_the_object_as_length)
{
    EXPECT_EQ(CPayload<std::string>("abc", PAYLOAD_STRING).Length(), sizeof(std::string));
}

TEST(CStringPayload, raw_data_is_the_string_object)
{
    CStringPayload payload("abc", false);
    EXPECT_EQ(*static_cast<const std::string *>(payload.RawData()), "abc");
}

TEST(CStringPayload, doesnt_fit_into_memory_for_its_characters)
{
    CStringPayload payload("abc", false);
    Memory memory;
    EXPECT_EQ(payload.WriteToMem(memory.mBytes.data(), 3), 0U);
    EXPECT_EQ(payload.WriteToMem(memory.mBytes.data(), sizeof(std::string) - 1), 0U);
    EXPECT_TRUE(memory.UntouchedFrom(0));
}

TEST(CStringPayload, writes_the_object_and_not_the_characters)
{
    CStringPayload payload("abc", false);
    Memory memory;
    EXPECT_EQ(payload.WriteToMem(memory.mBytes.data(), 100), sizeof(std::string));
    EXPECT_EQ(memory.First(sizeof(std::string)), HexOf(payload.RawData(), sizeof(std::string)));
    EXPECT_TRUE(memory.UntouchedFrom(sizeof(std::string)));
}

TEST(CStringPayload, prints_its_text_as_it_stands)
{
    const std::string text("a\0b\xff", 4);
    CStringPayload payload(text, false);
    EXPECT_EQ(payload.ToString(), text);
    EXPECT_EQ(payload.GetValue(), text);
    EXPECT_EQ(payload.Length(), 4U);
}

TEST(CStringPayload, set_value_replaces_the_text)
{
    CStringPayload payload("abc", true);
    payload.SetValue("longer than what fits into a small string object");
    EXPECT_EQ(payload.ToString(), "longer than what fits into a small string object");
    EXPECT_EQ(payload.Length(), 48U);
    EXPECT_TRUE(payload.IsOctet());
}

TEST(CStringPayload, get_value_is_a_copy)
{
    CStringPayload payload("abc", true);
    payload.GetValue() += "d";
    EXPECT_EQ(payload.ToString(), "abc");
}

TEST(CStringPayload, the_octet_flag_plays_no_part_in_comparison)
{
    CStringPayload octets("abc", true);
    CStringPayload text("abc", false);
    EXPECT_TRUE(octets.IsOctet());
    EXPECT_FALSE(text.IsOctet());
    EXPECT_TRUE(octets == text);
    EXPECT_FALSE(octets != text);
}

TEST(CStringPayload, compares_length_and_every_byte)
{
    const CStringPayload payload(std::string("ab\0c", 4), false);
    EXPECT_TRUE(payload == CStringPayload(std::string("ab\0c", 4), false));
    EXPECT_FALSE(payload == CStringPayload(std::string("ab\0d", 4), false));
    EXPECT_FALSE(payload == CStringPayload("ab", false));
    EXPECT_FALSE(payload == CStringPayload(std::string("ab\0", 3), false));
}

TEST(CStringPayload, copies_and_moves_keep_text_flag_and_metadata)
{
    const auto record = ARecord(1).Build();
    CStringPayload source("a text that is too long for a small string object", true);
    source.Use(*record);

    CStringPayload copied(source);
    CStringPayload moved(std::move(source));   // a move copies: the source keeps what it has
    CStringPayload assigned("", false);
    assigned = source;
    CStringPayload moveAssigned("", false);
    moveAssigned = std::move(source);

    for (auto * payload : { &copied, &moved, &assigned, &moveAssigned, &source }) {
        EXPECT_EQ(payload->GetValue(), "a text that is too long for a small string object");
        EXPECT_TRUE(payload->IsOctet());
        EXPECT_EQ(payload->Metadata(), record.get());
    }
}

TEST(CStringPayload, is_written_as_one_payload)
{
    RecordingWriter writer;
    CStringPayload payload("abc", false);
    EXPECT_TRUE(payload.Write(writer, CNullContext::Ref()));
    EXPECT_THAT(writer.Calls(), ElementsAre("WritePayload 8:abc"));
}

// --- Enumerators -----------------------------------------------------------------------------------------------

TEST(CEnumPayload, prints_its_name_and_not_its_number)
{
    CEnumPayload payload("left", -7);
    EXPECT_EQ(payload.Type(), PAYLOAD_ENUM);
    EXPECT_EQ(payload.Type(), 10);
    EXPECT_EQ(payload.Length(), 4U);
    EXPECT_EQ(payload.ToString(), "left");
    EXPECT_EQ(payload.GetName(), "left");
    EXPECT_EQ(payload.GetValue(), -7);
    EXPECT_EQ(HexOf(payload.RawData(), 4), HexOf(std::int32_t{ -7 }));
}

TEST(CEnumPayload, set_value_of_a_number_leaves_the_name)
{
    CEnumPayload payload("one", 1);
    payload.SetValue(5);
    EXPECT_EQ(payload.GetValue(), 5);
    EXPECT_EQ(payload.ToString(), "one");
}

TEST(CEnumPayload, set_value_of_name_and_number_replaces_both)
{
    CEnumPayload payload("one", 1);
    payload.SetValue("five", 5);
    EXPECT_EQ(payload.GetValue(), 5);
    EXPECT_EQ(payload.ToString(), "five");
}

TEST(CEnumPayload, compares_number_and_name)
{
    const CEnumPayload payload("one", 1);
    EXPECT_TRUE(payload == CEnumPayload("one", 1));
    EXPECT_FALSE(payload == CEnumPayload("one", 2));
    EXPECT_FALSE(payload == CEnumPayload("uno", 1));
    EXPECT_FALSE(payload == CEnumPayload("One", 1));
    EXPECT_FALSE(payload == CEnumPayload(std::string("one\0", 4), 1));
}

TEST(CEnumPayload, every_form_of_inequality_sees_the_name)
{
    const CEnumPayload one("one", 1);
    const CEnumPayload uno("uno", 1);
    const CPayload<std::int32_t> & base = one;
    EXPECT_TRUE(one != uno);
    EXPECT_TRUE(base.operator!=(uno));
    EXPECT_TRUE(one.operator!=(static_cast<const IPayload &>(uno)));
    EXPECT_FALSE(one.operator!=(static_cast<const IPayload &>(one)));
    EXPECT_FALSE(base.operator!=(one));
}

TEST(CEnumPayload, differs_from_a_number_of_the_same_value)
{
    const CEnumPayload enumerator("one", 1);
    const CInt32Payload number(1);
    EXPECT_FALSE(enumerator == number);
    EXPECT_FALSE(number == enumerator);
}

TEST(CEnumPayload, differs_from_its_base_with_the_same_code_and_number)
{
    const CEnumPayload enumerator("one", 1);
    const CPayload<std::int32_t> base(1, PAYLOAD_ENUM);
    EXPECT_FALSE(enumerator == base);
    EXPECT_TRUE(base == enumerator) << "the base asks for code and number only";
}

TEST(CEnumPayload, copies_and_moves_keep_name_number_and_metadata)
{
    const auto record = ARecord(1).Build();
    CEnumPayload source("a name that is too long for a small string object", 3);
    source.Use(*record);

    CEnumPayload copied(source);
    CEnumPayload moved(std::move(source));   // a move copies: the source keeps what it has
    CEnumPayload assigned("", 0);
    assigned = source;
    CEnumPayload moveAssigned("", 0);
    moveAssigned = std::move(source);

    for (auto * payload : { &copied, &moved, &assigned, &moveAssigned, &source }) {
        EXPECT_EQ(payload->GetName(), "a name that is too long for a small string object");
        EXPECT_EQ(payload->GetValue(), 3);
        EXPECT_EQ(payload->Metadata(), record.get());
    }
}

// --- Writing ---------------------------------------------------------------------------------------------------

TEST(CPayload, write_is_false_when_the_writer_leaves_an_error)
{
    const FrameworkErrors errors;
    RecordingWriter writer;
    writer.FailsIn("WritePayload", "no space left");
    CUint8Payload payload(1);
    EXPECT_FALSE(payload.Write(writer, CNullContext::Ref()));
    EXPECT_EQ(errors.Text(), "no space left");
}

TEST(CPayload, write_is_false_when_an_error_stood_before)
{
    FrameworkErrors errors;
    errors.Set("earlier");
    RecordingWriter writer;
    CUint8Payload payload(1);
    EXPECT_FALSE(payload.Write(writer, CNullContext::Ref()));
    EXPECT_THAT(writer.Calls(), ElementsAre("WritePayload 4:1"));
    EXPECT_EQ(errors.Text(), "earlier");
}

TEST(CPayload, write_doesnt_see_the_errors_of_other_groups)
{
    CMessageHandler & handler = CTheMsgHnd::GetAppropriateHandler(GROUP_OUTER_READER, "test", false);
    handler.SetErrorMsg(0, "elsewhere");
    RecordingWriter writer;
    CUint8Payload payload(1);
    EXPECT_TRUE(payload.Write(writer, CNullContext::Ref()));
    handler.ClearError(GROUP_OUTER_READER);
}

// --- Type information ------------------------------------------------------------------------------------------

TEST(CPayload, is_cast_to_by_those_who_link_the_library)
{
    const CEnumPayload enumerator("one", 1);
    const IPayload & payload = enumerator;
    EXPECT_NE(dynamic_cast<const CPayload<std::int32_t> *>(&payload), nullptr);
    EXPECT_NE(dynamic_cast<const CEnumPayload *>(&payload), nullptr);
    EXPECT_NE(dynamic_cast<const IMetadataUser *>(&payload), nullptr);
    EXPECT_EQ(dynamic_cast<const CInt32Payload *>(&payload), nullptr);
    EXPECT_EQ(dynamic_cast<const CPayload<std::uint32_t> *>(&payload), nullptr);
    EXPECT_EQ(dynamic_cast<const CPayload<std::string> *>(&payload), nullptr);
}

}   // namespace
}   // namespace VrexZynConfigTools
