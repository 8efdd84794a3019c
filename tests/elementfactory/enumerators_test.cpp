// Keys that hold an enumerator.

#include "factory_fixture.h"

#include <support/debug_capture.h>

#include <string>

namespace VrexZynConfigTools {
namespace {

using support::ARecord;
using support::Calls;
using support::EnumRecord;
using support::RecordOf;
using support::TreeOf;
using support::WithDetail;

class Enumerators : public support::FactoryTest
{
protected:
    std::string TreeOfNumber(std::uint64_t number, const IMetadata & key)
    {
        mSource.Number(number).Last();
        return TreeOf(Read(key));
    }
};

ARecord Mode()
{
    return ARecord(100).Named("mode");
}

TEST_F(Enumerators, a_key_becomes_a_changed_enum_element_with_the_record_on_all_of_it)
{
    const auto key = EnumRecord(Mode(), { { "off", "0" }, { "on", "1" } });
    mSource.Number(1);
    const auto element = Read(*key);

    ASSERT_NE(dynamic_cast<CElementEnum *>(element.get()), nullptr);
    EXPECT_EQ(TreeOf(element), "enum=on(1)");
    EXPECT_EQ(element->PsId(), 100U);
    EXPECT_EQ(element->Name(), "mode");
    EXPECT_TRUE(element->HasChanged());
    EXPECT_EQ(element->Metadata(), key.get());
    EXPECT_EQ(RecordOf(element->GetPayloadCopy(false).front()), key.get());
    EXPECT_EQ(mSource.Calls(), Calls{ "NextEnum" });
    EXPECT_EQ(mSource.NumbersPassedIn(), std::vector<std::uint64_t>{ 0 });
    EXPECT_TRUE(mFactory.InspectDetailAgain());
    EXPECT_FALSE(mErrors.IsSet());
}

TEST_F(Enumerators, of_two_names_with_one_number_the_alphabetically_first_wins)
{
    const auto key = EnumRecord(Mode(), { { "zebra", "1" }, { "apple", "1" }, { "berry", "1" } });
    EXPECT_EQ(TreeOfNumber(1, *key), "enum=apple(1)");
}

TEST_F(Enumerators, the_low_32_bits_count_as_a_signed_number)
{
    const auto key = EnumRecord(Mode(), { { "five", "5" }, { "less", "-1" } });
    EXPECT_EQ(TreeOfNumber(0x700000005U, *key), "enum=five(5)");
    EXPECT_EQ(TreeOfNumber(0xFFFFFFFFU, *key), "enum=less(-1)");
    EXPECT_EQ(TreeOfNumber(0xFFFFFFFFFFFFFFFFU, *key), "enum=less(-1)");
}

TEST_F(Enumerators, an_unknown_number_is_an_error_and_no_element)
{
    const auto key = EnumRecord(Mode(), { { "off", "0" } });
    mReaderErrors.Set("line 3");

    EXPECT_EQ(TreeOfNumber(0xFFFFFFFE, *key), "none");
    EXPECT_EQ(mErrors.Text(), "Value -2 for element with psid = 100, Name = mode doesn't match a valid enum");
    EXPECT_EQ(mErrors.Code(), 0);
    EXPECT_EQ(mReaderErrors.Text(), "line 3");
}

TEST_F(Enumerators, without_data_checks_an_unknown_number_is_no_error_and_no_element)
{
    const auto key = EnumRecord(Mode(), { { "off", "0" } });
    mContext.SetTag("nodatacheck", "true");

    EXPECT_EQ(TreeOfNumber(7, *key), "none");
    EXPECT_FALSE(mErrors.IsSet());
    EXPECT_EQ(TreeOfNumber(0, *key), "enum=off(0)");
}

TEST_F(Enumerators, a_number_whose_first_name_is_empty_is_unknown)
{
    const auto key = EnumRecord(Mode(), { { "", "1" }, { "on", "1" } });

    EXPECT_EQ(TreeOfNumber(1, *key), "none");
    EXPECT_TRUE(mErrors.IsSet());
}

TEST_F(Enumerators, a_source_without_any_value_gives_the_number_0)
{
    EXPECT_EQ(TreeOf(Read(*EnumRecord(Mode(), { { "off", "0" } }))), "enum=off(0)");
}

TEST_F(Enumerators, a_second_item_of_an_array_is_refused_and_the_first_stays)
{
    const auto key = EnumRecord(Mode().Array(), { { "off", "0" }, { "on", "1" } });
    mSource.Number(1).Number(0).Number(1).Last().Number(0);

    EXPECT_EQ(TreeOf(Read(*key)), "enum=on(1)");
    EXPECT_EQ(mErrors.Text(), "an unexpected error occurred");
    EXPECT_EQ(mErrors.Code(), 0);
    EXPECT_EQ(mSource.Left(), 1U) << "reading stops when the source says so";
}

TEST_F(Enumerators, a_refused_item_is_told_to_debug_output)
{
    const auto key = EnumRecord(Mode().Array(), { { "off", "0" } });
    mSource.Number(0).Number(0).Last();
    const support::DebugCapture capture;
    Read(*key);

    EXPECT_EQ(capture.Count("Unexpected CElement at this point"), 1U);
}

TEST_F(Enumerators, an_error_that_stands_keeps_nothing_back)
{
    const auto key = EnumRecord(Mode(), { { "off", "0" } });
    mSource.Number(0).Failing(GROUP_FRAMEWORK, "no enumerator").Last();

    EXPECT_EQ(TreeOf(Read(*key)), "enum=off(0)");
    EXPECT_EQ(mErrors.Text(), "no enumerator");
}

TEST_F(Enumerators, are_named_after_the_key_and_not_after_the_record_given)
{
    const auto key = EnumRecord(Mode(), { { "off", "0" } });
    const auto other = EnumRecord(ARecord(7).Named("other"), { { "off", "0" } });
    mFactory.StartElement(*key);
    mFactory.Enum(*other);
    const auto element = Collect();

    EXPECT_EQ(element->PsId(), 100U);
    EXPECT_EQ(element->Name(), "mode");
    EXPECT_EQ(element->Metadata(), other.get());
}

TEST_F(Enumerators, an_unknown_number_is_reported_with_the_record_given)
{
    const auto key = EnumRecord(Mode(), { { "off", "0" } });
    const auto other = EnumRecord(ARecord(7).Named("other"), { { "off", "0" } });
    mFactory.StartElement(*key);
    mSource.Number(3);
    mFactory.Enum(*other);

    EXPECT_EQ(mErrors.Text(), "Value 3 for element with psid = 7, Name = other doesn't match a valid enum");
}

TEST_F(Enumerators, a_record_without_enumerators_knows_no_number)
{
    mFactory.Enum(*Mode().Build());
    EXPECT_TRUE(mErrors.IsSet());
    mErrors.Clear();
    mFactory.Enum(*WithDetail(Mode()));
    EXPECT_TRUE(mErrors.IsSet());
    EXPECT_EQ(Collect(), nullptr);
}

}   // namespace
}   // namespace VrexZynConfigTools
