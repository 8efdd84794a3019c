// Keys that hold numbers: what is asked, what is built, what is checked.

#include "factory_fixture.h"

#include <cstdint>
#include <limits>
#include <string>

namespace VrexZynConfigTools {
namespace {

using support::ARecord;
using support::Calls;
using support::RecordOf;
using support::TreeOf;
using support::WithDetail;

class Numbers : public support::FactoryTest
{};

constexpr std::int64_t MIN64 = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t MAX64 = std::numeric_limits<std::int64_t>::max();

ARecord Volume(const std::string & type)
{
    return ARecord(100).Named("volume").OfType(type).Within(MIN64, MAX64);
}

TEST_F(Numbers, a_key_takes_every_value_and_keeps_the_one_delivered_with_the_answer_false)
{
    const auto key = WithDetail(Volume("uint8"));
    mSource.Number(1).Number(2).Number(3).Last().Number(4);
    const auto element = Read(*key);

    EXPECT_EQ(TreeOf(element), "uint8=1 uint8=2 uint8=3");
    EXPECT_EQ(mSource.Calls(), (Calls{ "NextInt uint8", "NextInt uint8", "NextInt uint8" }));
    EXPECT_EQ(mSource.NumbersPassedIn(), (std::vector<std::uint64_t>{ 0, 0, 0 }));
    EXPECT_FALSE(mFactory.InspectDetailAgain());
    EXPECT_FALSE(mErrors.IsSet());
}

TEST_F(Numbers, an_array_key_is_read_in_one_call)
{
    const auto key = WithDetail(Volume("int16").Array());
    mSource.Number(1).Number(0xFFFF).Last().Number(4);

    EXPECT_EQ(TreeOf(Read(*key)), "int16=1 int16=-1");
    EXPECT_EQ(mSource.Left(), 1U);
}

TEST_F(Numbers, the_element_is_a_changed_numeric_array_with_the_record_on_all_of_it)
{
    const auto key = WithDetail(Volume("uint32"));
    mSource.Number(7).Number(8).Last();
    const auto element = Read(*key);

    const auto * const array = dynamic_cast<CElementNumericArray *>(element.get());
    ASSERT_NE(array, nullptr);
    EXPECT_EQ(array->Type(), NUMERIC_UINT32);
    EXPECT_EQ(array->PsId(), 100U);
    EXPECT_EQ(array->Name(), "volume");
    EXPECT_TRUE(array->HasChanged());
    EXPECT_EQ(element->Metadata(), key.get());
    for (IPayload * const payload : element->GetPayloadCopy(false))
        EXPECT_EQ(RecordOf(payload), key.get());
}

TEST_F(Numbers, a_source_without_any_value_gives_one_zero)
{
    const auto key = WithDetail(Volume("uint8"));

    EXPECT_EQ(TreeOf(Read(*key)), "uint8=0");
    EXPECT_EQ(mSource.Calls(), Calls{ "NextInt uint8" });
}

TEST_F(Numbers, the_zero_of_a_source_without_any_value_is_checked_like_any_other)
{
    const auto key = WithDetail(Volume("uint8").Within(1, 5));

    EXPECT_EQ(Read(*key), nullptr);
    EXPECT_EQ(mErrors.Text(), "Read value 0 is out of range [1,5]");
}

TEST_F(Numbers, the_payloads_are_of_the_key_s_own_type)
{
    mContext.SetTag("nodatacheck", "true");
    const std::pair<const char *, const char *> types[] = { { "int8", "int8=-1" }, { "int16", "int16=255" },
        { "int32", "int32=255" }, { "int64", "int64=255" }, { "uint8", "uint8=255" },
        { "uint16", "uint16=255" }, { "uint32", "uint32=255" }, { "uint64", "uint64=255" },
        { "integer", "int64=255" } };
    for (const auto & [type, tree] : types) {
        mSource.Number(255).Last();
        EXPECT_EQ(TreeOf(Read(*WithDetail(Volume(type)))), tree);
        EXPECT_EQ(mSource.Calls().back(), std::string("NextInt ") + type);
    }
}

TEST_F(Numbers, a_type_that_is_no_number_is_asked_for_and_gives_an_element_without_a_value)
{
    const auto key = WithDetail(Volume("uint7"));
    mSource.Number(1).Last();
    const auto element = Read(*key);

    ASSERT_NE(element, nullptr);
    EXPECT_EQ(TreeOf(element), "");
    EXPECT_EQ(mSource.Calls(), Calls{ "NextInt uint7" });
    EXPECT_FALSE(mErrors.IsSet());
}

struct RangeCase
{
    const char * mType;
    std::uint64_t mRaw;
    std::int64_t mMin;
    std::int64_t mMax;
    const char * mPrinted;   // null where the value passes
};

constexpr std::uint64_t HIGH_BITS = 0xABCD000000000000U;

constexpr RangeCase RANGE_CASES[] = {
    // Both ends are allowed.
    { "int8", 0x80, -128, 5, nullptr },
    { "int8", 5, -128, 5, nullptr },
    { "int8", 6, -128, 5, "6" },
    { "int8", 0x80, -127, 5, "-128" },
    { "int8", HIGH_BITS | 0xFF, -1, -1, nullptr },
    { "int16", 0xFFFF, -1, 7, nullptr },
    { "int16", 0xFFFE, -1, 7, "-2" },
    { "int16", HIGH_BITS | 8, -1, 7, "8" },
    { "int32", 0xFFFFFFFF, -1, 7, nullptr },
    { "int32", 0x80000000, -1, 7, "-2147483648" },
    { "int32", HIGH_BITS | 8, -1, 7, "8" },
    { "int64", 0xFFFFFFFFFFFFFFFF, -1, 7, nullptr },
    { "int64", 0xFFFFFFFFFFFFFFFE, -1, 7, "-2" },
    { "int64", 8, -1, 7, "8" },
    // The low bits alone count, and as an unsigned number.
    { "uint8", 300, 0, 44, nullptr },
    { "uint8", 300, 0, 43, "44" },
    { "uint8", 0xFF, -1, 254, "255" },
    { "uint8", 0, 1, 254, "0" },
    { "uint16", 0xFFFF, 0, 0xFFFF, nullptr },
    { "uint16", 0xFFFF, -1, 7, "65535" },
    { "uint16", HIGH_BITS, 1, 7, "0" },
    { "uint32", 0xFFFFFFFF, 0, 0xFFFFFFFF, nullptr },
    { "uint32", 0xFFFFFFFF, -1, 7, "4294967295" },
    { "uint32", HIGH_BITS, 1, 7, "0" },
    // Limits are unsigned here, too; what is printed is signed.
    { "uint64", 0xFFFFFFFFFFFFFFFF, 0, -1, nullptr },
    { "uint64", 0, -1, 7, "0" },
    { "uint64", 0x8000000000000000, 0, MAX64, "-9223372036854775808" },
    { "uint64", 7, 0, 7, nullptr },
    { "uint64", 8, 0, 7, "8" },
    { "uint64", 3, 4, 7, "3" },
    // Any other type passes without a check.
    { "integer", 1000, 0, 7, nullptr },
    { "uint7", 1000, 0, 7, nullptr },
    { "UINT8", 1000, 0, 7, nullptr },
};

TEST_F(Numbers, each_type_is_checked_in_its_own_way)
{
    for (const RangeCase & row : RANGE_CASES) {
        support::ScriptedSource source;
        source.Number(row.mRaw).Last();
        CElementFactory factory(&source, mContext, nullptr);
        WithDetail(Volume(row.mType).Within(row.mMin, row.mMax))->Inspect(factory);
        const std::unique_ptr<CElement> element(factory.Collect());

        const std::string range = "[" + std::to_string(row.mMin) + "," + std::to_string(row.mMax) + "]";
        const std::string error = row.mPrinted == nullptr
                                      ? std::string()
                                      : "Read value " + std::string(row.mPrinted) + " is out of range " + range;
        EXPECT_EQ(mErrors.Text(), error) << row.mType << " " << row.mRaw << " " << range;
        EXPECT_EQ(element != nullptr, row.mPrinted == nullptr) << row.mType << " " << row.mRaw << " " << range;
    }
}

TEST_F(Numbers, a_value_out_of_range_ends_the_reading_and_discards_the_others)
{
    const auto key = WithDetail(Volume("uint8").Within(0, 5).Array());
    mSource.Number(1).Number(6).Number(2).Last();

    EXPECT_EQ(Read(*key), nullptr);
    EXPECT_EQ(mErrors.Text(), "Read value 6 is out of range [0,5]");
    EXPECT_EQ(mErrors.Code(), 0);
    EXPECT_EQ(mSource.Left(), 1U);
    EXPECT_FALSE(mFactory.InspectDetailAgain());
}

TEST_F(Numbers, an_error_is_completed_where_the_reader_keeps_its_own)
{
    const auto key = WithDetail(Volume("uint8").Within(0, 5));
    mSource.Number(6).Last();
    mReaderErrors.Set("line 3");
    Read(*key);

    EXPECT_EQ(mReaderErrors.Text(), "line 3: Element with PsId = 100, Name = volume");
    EXPECT_EQ(mErrors.Text(), "Read value 6 is out of range [0,5]");
}

TEST_F(Numbers, an_error_is_not_completed_where_the_reader_has_none)
{
    const auto key = WithDetail(Volume("uint8").Within(0, 5));
    mSource.Number(6).Last();
    Read(*key);

    EXPECT_FALSE(mReaderErrors.IsSet());
}

TEST_F(Numbers, an_error_of_the_source_counts_as_well)
{
    const auto key = WithDetail(Volume("uint8"));
    mSource.Number(6).Failing(GROUP_FRAMEWORK, "no number").Last();
    mReaderErrors.Set("line 3");

    EXPECT_EQ(Read(*key), nullptr);
    EXPECT_EQ(mErrors.Text(), "no number");
    EXPECT_EQ(mReaderErrors.Text(), "line 3: Element with PsId = 100, Name = volume");
}

TEST_F(Numbers, an_error_that_the_reader_keeps_elsewhere_does_not_count)
{
    const auto key = WithDetail(Volume("uint8"));
    mSource.Number(6).Failing(GROUP_OUTER_READER, "line 3").Last();

    EXPECT_EQ(TreeOf(Read(*key)), "uint8=6");
    EXPECT_EQ(mReaderErrors.Text(), "line 3");
}

TEST_F(Numbers, an_error_of_the_source_does_not_end_the_reading)
{
    const auto key = WithDetail(Volume("uint8"));
    mSource.Number(6).Failing(GROUP_FRAMEWORK, "no number").Number(7).Last();
    Read(*key);

    EXPECT_EQ(mSource.Left(), 0U);
}

TEST_F(Numbers, without_data_checks_the_values_come_as_they_are)
{
    const auto key = WithDetail(Volume("uint8").Within(0, 5));
    mContext.SetTag("nodatacheck", "true");
    mSource.Number(200).Number(300).Last();

    EXPECT_EQ(TreeOf(Read(*key)), "uint8=200 uint8=44");
    EXPECT_FALSE(mErrors.IsSet());
}

TEST_F(Numbers, only_true_switches_the_data_checks_off)
{
    const auto key = WithDetail(Volume("uint8").Within(0, 5));
    for (const char * const value : { "false", "1", "yes", "truee" }) {
        mContext.SetTag("nodatacheck", std::string(value));
        mSource.Number(6).Last();
        EXPECT_EQ(Read(*key), nullptr) << value;
        EXPECT_TRUE(mErrors.IsSet()) << value;
    }
}

TEST_F(Numbers, without_data_checks_an_error_of_the_source_still_counts)
{
    const auto key = WithDetail(Volume("uint8"));
    mContext.SetTag("nodatacheck", "true");
    mSource.Number(6).Failing(GROUP_FRAMEWORK, "no number").Last();

    EXPECT_EQ(Read(*key), nullptr);
}

TEST_F(Numbers, are_named_after_the_record_given)
{
    mSource.Number(6).Last();
    mFactory.Int(*Volume("uint8").Build());
    const auto element = Collect();

    ASSERT_NE(element, nullptr);
    EXPECT_EQ(element->PsId(), 100U);
    EXPECT_EQ(element->Name(), "volume");
}

TEST_F(Numbers, a_second_plain_value_is_refused_and_the_first_stays)
{
    const auto key = WithDetail(Volume("uint8"));
    mFactory.StartElement(*key);
    mSource.Number(1).Last().Number(2).Last();
    mReaderErrors.Set("line 3");
    mFactory.Int(*key);
    mFactory.Int(*key);

    EXPECT_EQ(TreeOf(Collect()), "uint8=1");
    EXPECT_EQ(mErrors.Text(), "an unexpected error occurred");
    EXPECT_EQ(mReaderErrors.Text(), "line 3: Element with PsId = 100, Name = volume");
}

}   // namespace
}   // namespace VrexZynConfigTools
