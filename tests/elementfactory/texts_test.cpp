// Keys that hold a text or octets.

#include "factory_fixture.h"

#include <string>

namespace VrexZynConfigTools {
namespace {

using support::ARecord;
using support::Calls;
using support::RecordOf;
using support::TreeOf;
using support::WithDetail;
using namespace std::string_literals;

class Texts : public support::FactoryTest
{
protected:
    /// What becomes of `value`; "none" without an element.
    std::string ValueOf(const std::string & value, const ARecord & builder)
    {
        const auto key = WithDetail(builder);
        mSource.Text(value).Last();
        const auto element = Read(*key);
        return element != nullptr ? element->ToString() : "none";
    }
};

ARecord Title(const std::string & type = "string")
{
    return ARecord(100).Named("title").OfType(type).Within(0, 20);
}

TEST_F(Texts, a_key_becomes_a_changed_string_element_with_the_record_on_all_of_it)
{
    const auto key = WithDetail(Title());
    mSource.Text("abc").Last();
    const auto element = Read(*key);

    const auto * const text = dynamic_cast<CElementString *>(element.get());
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(TreeOf(element), "string=abc");
    EXPECT_EQ(text->PsId(), 100U);
    EXPECT_EQ(text->Name(), "title");
    EXPECT_TRUE(text->HasChanged());
    EXPECT_EQ(element->Metadata(), key.get());
    EXPECT_EQ(RecordOf(element->GetPayloadCopy(false).front()), key.get());
    EXPECT_EQ(mSource.Calls(), Calls{ "NextString" });
    EXPECT_FALSE(mErrors.IsSet());
}

TEST_F(Texts, only_an_octet_string_says_that_it_is_one)
{
    for (const auto & [type, isOctet] : { std::pair{ "string", false }, { "octet_string", true } }) {
        const auto key = WithDetail(Title(type));
        mSource.Text("abc").Last();
        const auto element = Read(*key);
        EXPECT_EQ(dynamic_cast<CElementString &>(*element).IsOctet(), isOctet);
        auto & payload = dynamic_cast<CStringPayload &>(*element->GetPayloadCopy(false).front());
        EXPECT_EQ(payload.IsOctet(), isOctet);
    }
}

TEST_F(Texts, of_an_array_the_last_item_stays_and_each_is_given_the_one_before)
{
    const auto key = WithDetail(Title().Array());
    mSource.Text("first").Text("second").Untouched().Last().Text("fourth");

    EXPECT_EQ(TreeOf(Read(*key)), "string=second");
    EXPECT_EQ(mSource.TextsPassedIn(), (std::vector<std::string>{ "", "first", "second" }));
    EXPECT_EQ(mSource.Left(), 1U);
    EXPECT_FALSE(mErrors.IsSet());
}

TEST_F(Texts, a_source_without_any_value_gives_an_empty_text)
{
    EXPECT_EQ(TreeOf(Read(*WithDetail(Title()))), "string=");
    EXPECT_FALSE(mErrors.IsSet());
}

TEST_F(Texts, of_any_length_within_the_limits_pass)
{
    EXPECT_EQ(ValueOf("ab", Title().Within(2, 4)), "ab");
    EXPECT_EQ(ValueOf("abcd", Title().Within(2, 4)), "abcd");
    EXPECT_FALSE(mErrors.IsSet());
}

TEST_F(Texts, of_a_wrong_length_are_reported_and_delivered_all_the_same)
{
    EXPECT_EQ(ValueOf("a", Title().Within(2, 4)), "a");
    EXPECT_EQ(mErrors.Text(),
        "String value's length for element with psid = 100, Name = title is out of range [2,4], got 1");
    EXPECT_EQ(mErrors.Code(), 0);

    EXPECT_EQ(ValueOf("abcde", Title().Within(2, 4)), "abcde");
    EXPECT_EQ(mErrors.Text(),
        "String value's length for element with psid = 100, Name = title is out of range [2,4], got 5");
}

TEST_F(Texts, of_a_wrong_length_complete_no_error_of_the_reader)
{
    mReaderErrors.Set("line 3");
    ValueOf("a", Title().Within(2, 4));
    EXPECT_EQ(mReaderErrors.Text(), "line 3");
}

TEST_F(Texts, have_limits_that_count_as_unsigned)
{
    ValueOf("a", Title().Within(-1, 4));
    EXPECT_EQ(mErrors.Text(),
        "String value's length for element with psid = 100, Name = title is out of range [-1,4], got 1");
    ValueOf("a", Title().Within(0, -1));
    EXPECT_FALSE(mErrors.IsSet());
}

TEST_F(Texts, without_data_checks_may_have_any_length)
{
    mContext.SetTag("nodatacheck", "true");
    EXPECT_EQ(ValueOf("abcde", Title().Within(2, 4)), "abcde");
    EXPECT_FALSE(mErrors.IsSet());
}

TEST_F(Texts, are_delivered_with_an_error_of_the_source_too)
{
    const auto key = WithDetail(Title());
    mSource.Text("abc").Failing(GROUP_FRAMEWORK, "no text").Last();

    EXPECT_EQ(TreeOf(Read(*key)), "string=abc");
    EXPECT_EQ(mErrors.Text(), "no text");
}

struct PadCase
{
    const char * mType;
    int mSubsystem;
    std::string mValue;
    std::int64_t mMin;
    std::string mExpected;
};

TEST_F(Texts, an_octet_string_of_the_bt_subsystem_loses_one_pad_byte)
{
    const PadCase cases[] = { { "octet_string", SUBSYSTEM_BT, "abc\0"s, 0, "abc" },
        { "octet_string", SUBSYSTEM_BT, "abc\0"s, 3, "abc" },
        { "octet_string", SUBSYSTEM_BT, "abc\0"s, 4, "abc\0"s },   // as short as may be
        { "octet_string", SUBSYSTEM_BT, "ab\0\0"s, 0, "ab\0"s },   // one byte only
        { "octet_string", SUBSYSTEM_BT, "ab\0"s, 0, "ab\0"s },     // of odd length
        { "octet_string", SUBSYSTEM_BT, "abcd", 0, "abcd" },       // not zero
        { "octet_string", SUBSYSTEM_BT, "", 0, "" },
        { "octet_string", SUBSYSTEM_BT, "abc\0"s, -1, "abc\0"s },   // the limit is unsigned
        { "octet_string", SUBSYSTEM_WLAN, "abc\0"s, 0, "abc\0"s },
        { "octet_string", SUBSYSTEM_CURATOR, "abc\0"s, 0, "abc\0"s },
        { "string", SUBSYSTEM_BT, "abc\0"s, 0, "abc\0"s } };
    for (const PadCase & row : cases) {
        mContext.SetSubsystemType(row.mSubsystem);
        EXPECT_EQ(ValueOf(row.mValue, Title(row.mType).Within(row.mMin, 20)), row.mExpected)
            << row.mType << " " << row.mSubsystem << " " << row.mValue << " " << row.mMin;
    }
}

TEST_F(Texts, without_a_subsystem_lose_nothing)
{
    EXPECT_EQ(ValueOf("abc\0"s, Title("octet_string")), "abc\0"s);
}

TEST_F(Texts, lose_the_pad_byte_ahead_of_the_check)
{
    mContext.SetSubsystemType(SUBSYSTEM_BT);
    EXPECT_EQ(ValueOf("abc\0"s, Title("octet_string").Within(0, 3)), "abc");
    EXPECT_FALSE(mErrors.IsSet());
}

TEST_F(Texts, lose_the_pad_byte_item_by_item)
{
    mContext.SetSubsystemType(SUBSYSTEM_BT);
    const auto key = WithDetail(Title("octet_string").Array());
    mSource.Text("abc\0"s).Text("de\0\0"s).Last();

    EXPECT_EQ(TreeOf(Read(*key)), "string=de\0"s);
    EXPECT_EQ(mSource.TextsPassedIn(), (std::vector<std::string>{ "", "abc" }));
}

TEST_F(Texts, a_second_plain_value_is_refused_and_the_first_stays)
{
    const auto key = WithDetail(Title());
    mFactory.StartElement(*key);
    mSource.Text("first").Last().Text("second").Last();
    mFactory.String(*key);
    mFactory.String(*key);

    EXPECT_EQ(TreeOf(Collect()), "string=first");
    EXPECT_EQ(mErrors.Text(), "an unexpected error occurred");
}

TEST_F(Texts, are_named_after_the_record_given)
{
    mSource.Text("abc").Last();
    mFactory.String(*Title().Build());
    const auto element = Collect();

    EXPECT_EQ(element->PsId(), 100U);
    EXPECT_EQ(element->Name(), "title");
}

}   // namespace
}   // namespace VrexZynConfigTools
