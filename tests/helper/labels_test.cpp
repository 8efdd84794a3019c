// Whether a system version label is known, and the number of the chip that it selects.

#include "chip_provider.h"

#include <configtools/helper.h>
#include <configtools/zyncontext.h>

#include <support/framework_errors.h>

#include <gtest/gtest.h>

#include <string>
#include <type_traits>

namespace VrexZynConfigTools {
namespace {

using support::ChipProvider;

static_assert(!std::is_polymorphic_v<CHelper>);
static_assert(std::is_empty_v<CHelper>);
static_assert(!std::is_default_constructible_v<CHelper>);

/// Whether the label is valid, and what becomes of it.
std::string Answer(ChipProvider & provider, std::string label)
{
    const bool isValid = CHelper::Ref().IsSystemLabelVersionValid(provider, label);
    return (isValid ? "valid " : "not valid ") + label;
}

TEST(IsSystemLabelVersionValid, a_known_label_comes_back_in_the_provider_s_spelling)
{
    ChipProvider provider;
    provider.Chip("first", "1").Chip("aBc", "2").Chip("ABC", "3");

    EXPECT_EQ(Answer(provider, "ABC"), "valid aBc");   // the first that is equal but for case
    EXPECT_EQ(Answer(provider, "aBc"), "valid aBc");
    EXPECT_EQ(Answer(provider, "FIRST"), "valid first");
}

TEST(IsSystemLabelVersionValid, an_unknown_label_stays_as_it_is)
{
    ChipProvider provider;
    provider.Chip("first", "1").Chip("abc", "2");

    EXPECT_EQ(Answer(provider, "ABCD"), "not valid ABCD");
    EXPECT_EQ(Answer(provider, "ab"), "not valid ab");
    EXPECT_EQ(Answer(provider, " abc"), "not valid  abc");
}

TEST(IsSystemLabelVersionValid, one_chip_means_that_the_label_can_be_left_out)
{
    ChipProvider provider;
    provider.Chip("aBc", "1");

    EXPECT_EQ(Answer(provider, ""), "valid aBc");
    EXPECT_EQ(Answer(provider, "x"), "not valid x");
}

TEST(IsSystemLabelVersionValid, an_empty_label_is_not_valid_where_there_are_several_chips_or_none)
{
    ChipProvider none;
    EXPECT_EQ(Answer(none, ""), "not valid ");
    EXPECT_EQ(Answer(none, "abc"), "not valid abc");

    ChipProvider two;
    two.Chip("abc", "1").Chip("abc", "2");
    EXPECT_EQ(Answer(two, ""), "not valid ");
}

TEST(IsSystemLabelVersionValid, an_empty_label_may_be_that_of_a_chip)
{
    ChipProvider provider;
    provider.Chip("abc", "1").Chip("", "2");
    EXPECT_EQ(Answer(provider, ""), "valid ");
}

TEST(IsSystemLabelVersionValid, the_provider_is_asked_once_with_an_empty_context_without_a_name)
{
    ChipProvider provider;
    provider.Chip("abc", "1");
    Answer(provider, "abc");

    ASSERT_EQ(provider.AskedForChips().size(), 1U);
    EXPECT_EQ(provider.AskedForChips().front().mName, "");
    EXPECT_TRUE(provider.AskedForChips().front().mTags.empty());
}

TEST(IsSystemLabelVersionValid, a_place_without_a_chip_is_passed_over)
{
    ChipProvider one;
    one.Nothing();
    EXPECT_EQ(Answer(one, ""), "not valid ");
    ChipProvider two;
    two.Nothing().Chip("abc", "1");
    EXPECT_EQ(Answer(two, "abc"), "valid abc");
}

TEST(IsSystemLabelVersionValid, sets_no_error)
{
    const support::FrameworkErrors errors;
    const support::GroupErrors coreErrors(GROUP_CORE_CLASSES);
    ChipProvider none;
    Answer(none, "abc");
    EXPECT_FALSE(errors.IsSet() || coreErrors.IsSet());
}

class GetAssociatedChipId : public testing::Test
{
protected:
    int IdOf(const std::string & label)
    {
        mContext.SetChip(label);
        return CHelper::Ref().GetAssociatedChipId(&mProvider, mContext);
    }

    ChipProvider mProvider;
    CZynContext mContext;
};

TEST_F(GetAssociatedChipId, is_the_low_byte_of_the_selected_chip_s_number)
{
    mProvider.Chip("first", "4660").Chip("second", "255").Chip("third", "256");
    EXPECT_EQ(IdOf("first"), 0x34);
    EXPECT_EQ(IdOf("second"), 255);
    EXPECT_EQ(IdOf("third"), 0);
}

TEST_F(GetAssociatedChipId, without_a_selected_chip_is_that_of_the_first)
{
    mProvider.Chip("first", "4660").Chip("", "2");
    EXPECT_EQ(IdOf(""), 0x34);
}

TEST_F(GetAssociatedChipId, takes_the_first_chip_with_exactly_that_label)
{
    mProvider.Chip("ABC", "1").Chip("abc", "2").Chip("abc", "3");
    EXPECT_EQ(IdOf("abc"), 2);
}

TEST_F(GetAssociatedChipId, is_0_without_such_a_chip_or_any_provider)
{
    EXPECT_EQ(IdOf(""), 0);
    mProvider.Chip("abc", "7");
    EXPECT_EQ(IdOf("ABC"), 0);
    EXPECT_EQ(CHelper::Ref().GetAssociatedChipId(nullptr, mContext), 0);
}

TEST_F(GetAssociatedChipId, reads_the_number_as_far_as_it_is_one)
{
    mProvider.Chip("a", "-1").Chip("b", "0x34").Chip("c", "12abc").Chip("d", "abc").Chip("e", " 7");
    EXPECT_EQ(IdOf("a"), 255);
    EXPECT_EQ(IdOf("b"), 0);
    EXPECT_EQ(IdOf("c"), 12);
    EXPECT_EQ(IdOf("d"), 0);
    EXPECT_EQ(IdOf("e"), 7);
}

TEST_F(GetAssociatedChipId, asks_with_the_caller_s_context)
{
    mProvider.Chip("abc", "7");
    IdOf("abc");
    ASSERT_EQ(mProvider.AskedForChips().size(), 1U);
    EXPECT_EQ(mProvider.AskedForChips().front().mTags, mContext.Tags());
}

TEST_F(GetAssociatedChipId, passes_over_a_place_without_a_chip)
{
    mProvider.Nothing().Chip("abc", "7");
    EXPECT_EQ(IdOf(""), 7);
    EXPECT_EQ(IdOf("abc"), 7);
}

}   // namespace
}   // namespace VrexZynConfigTools
