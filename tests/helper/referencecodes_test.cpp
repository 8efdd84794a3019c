// The reference code of the selected chip.

#include "chip_provider.h"

#include <configtools/helper.h>
#include <configtools/zyncontext.h>

#include <messages/recordingsink.h>
#include <support/framework_errors.h>

#include <gtest/gtest.h>

#include <string>

namespace VrexZynConfigTools {
namespace {

using support::ChipProvider;

const std::string WARNING = "The specified eFuse hash must be between 1 and 4 nibbles.";

class ReferenceCode : public testing::Test
{
protected:
    ReferenceCode() { mContext.SetChip("chip"); }

    std::string CodeOf(ChipProvider & provider, bool placeholders)
    {
        return CHelper::Ref().GetRefCodeForSelectedChip(provider, mContext, placeholders);
    }

    /// The code of a single chip.
    std::string CodeOf(
        const std::string & id, const std::string & fuses, bool placeholders, const std::string & selected = "")
    {
        ChipProvider provider;
        provider.Chip("chip", id, fuses);
        mContext.SetTag("efusehash", selected);
        return CodeOf(provider, placeholders);
    }

    RecordingSink mSink;
    const CMessageSinkGuard mGuard{ &mSink };
    const support::FrameworkErrors mErrors;
    const support::GroupErrors mCoreErrors{ GROUP_CORE_CLASSES };
    CZynContext mContext;
};

struct CodeCase
{
    const char * mId;
    const char * mFuses;
    const char * mSelected;
    bool mPlaceholders;
    const char * mCode;
    bool mWarns;
};

TEST_F(ReferenceCode, follows_from_chip_fuses_and_selection)
{
    const CodeCase cases[] = { { "4660", "65535", "", false, "3421FFFF", false },
        { "4660", "65535", "", true, "3421FFFF", false }, { "4660", "65535", "AB", true, "3421FFFF", false },
        { "52", "0", "", false, "34XX0000", false }, { "52", "0", "", true, "34XX0000", false },
        { "4660", "", "", true, "3421XXXX", false }, { "4660", "", "", false, "", false },
        { "4660", "multiple_efuses", "AB", true, "342100AB", false },
        { "4660", "multiple_efuses", "AB", false, "342100AB", false },
        { "4660", "multiple_efuses", "12345", true, "3421XXXX", true },
        { "4660", "multiple_efuses", "12345", false, "", true },
        { "4660", "multiple_efuses", "", true, "3421XXXX", false },
        { "4660", "multiple_efuses", "", false, "", true } };
    for (const CodeCase & row : cases) {
        mSink.mStatuses.clear();
        EXPECT_EQ(CodeOf(row.mId, row.mFuses, row.mPlaceholders, row.mSelected), row.mCode)
            << row.mId << " " << row.mFuses << " " << row.mSelected << " " << row.mPlaceholders;
        EXPECT_EQ(mSink.mStatuses.size(), row.mWarns ? 1U : 0U) << row.mFuses << " " << row.mSelected;
    }
    EXPECT_FALSE(mErrors.IsSet() || mCoreErrors.IsSet());
}

TEST_F(ReferenceCode, warns_in_the_group_of_the_core_classes)
{
    CodeOf("4660", "multiple_efuses", true, "12345");
    ASSERT_EQ(mSink.mStatuses.size(), 1U);
    EXPECT_EQ(mSink.mStatuses.front().mGroup, 5);
    EXPECT_EQ(mSink.mStatuses.front().mLevel, 2);
    EXPECT_EQ(mSink.mStatuses.front().mText, WARNING);
}

TEST_F(ReferenceCode, has_the_chip_s_low_byte_and_the_two_nibbles_above_it_lower_one_first)
{
    EXPECT_EQ(CodeOf("0", "0", false), "00XX0000");
    EXPECT_EQ(CodeOf("5", "0", false), "05XX0000");
    EXPECT_EQ(CodeOf("256", "0", false), "00100000");       // 0x0100
    EXPECT_EQ(CodeOf("4096", "0", false), "00010000");      // 0x1000
    EXPECT_EQ(CodeOf("43981", "0", false), "CDBA0000");     // 0xABCD
    EXPECT_EQ(CodeOf("1191052", "0", false), "8CC20000");   // 0x122C8C: what is above 16 bits doesn't count
    EXPECT_EQ(CodeOf("1114164", "0", false), "34XX0000");   // 0x110034
    EXPECT_EQ(CodeOf("-1", "0", false), "FFFF0000");
    EXPECT_EQ(CodeOf("abc", "0", false), "00XX0000");
}

TEST_F(ReferenceCode, has_the_fuses_in_four_digits_or_more)
{
    EXPECT_EQ(CodeOf("52", "1", false), "34XX0001");
    EXPECT_EQ(CodeOf("52", "4095", false), "34XX0FFF");
    EXPECT_EQ(CodeOf("52", "65536", false), "34XX10000");
    EXPECT_EQ(CodeOf("52", "-1", false), "34XXFFFFFFFF");
    EXPECT_EQ(CodeOf("52", "12abc", false), "34XX000C");
}

TEST_F(ReferenceCode, knows_no_fuses_from_a_text_that_is_no_number)
{
    for (const char * const fuses : { "", "abc", "00", " 0", "0x12", "+0", "multiple" }) {
        EXPECT_EQ(CodeOf("52", fuses, true), "34XXXXXX") << fuses;
        EXPECT_EQ(CodeOf("52", fuses, false), "") << fuses;
    }
    EXPECT_TRUE(mSink.mStatuses.empty());
}

TEST_F(ReferenceCode, takes_a_selection_of_one_to_four_hexadecimal_digits)
{
    EXPECT_EQ(CodeOf("52", "multiple_efuses", false, "a"), "34XX000A");
    EXPECT_EQ(CodeOf("52", "multiple_efuses", false, "BEEF"), "34XXBEEF");
    EXPECT_EQ(CodeOf("52", "MULTIPLE_eFuses", false, "0"), "34XX0000");
    EXPECT_EQ(CodeOf("52", "multiple_efuses", false, "xy"), "34XX0000");
    EXPECT_TRUE(mSink.mStatuses.empty());
}

TEST_F(ReferenceCode, is_that_of_the_chip_with_exactly_the_selected_label)
{
    ChipProvider provider;
    provider.Chip("CHIP", "1", "1").Chip("chip", "2", "2").Chip("chip", "3", "3");
    EXPECT_EQ(CodeOf(provider, false), "02XX0002");
    EXPECT_EQ(provider.AskedForChips().front().mTags, mContext.Tags());
}

TEST_F(ReferenceCode, is_empty_without_such_a_chip)
{
    ChipProvider provider;
    EXPECT_EQ(CodeOf(provider, true), "");
    provider.Chip("Chip", "1", "1");
    EXPECT_EQ(CodeOf(provider, true), "");
}

TEST_F(ReferenceCode, without_a_selected_chip_is_that_of_a_chip_without_a_label)
{
    mContext.SetChip("");
    ChipProvider provider;
    provider.Chip("chip", "1", "1");
    EXPECT_EQ(CodeOf(provider, true), "");
    provider.Chip("", "2", "2");
    EXPECT_EQ(CodeOf(provider, true), "02XX0002");
}

TEST_F(ReferenceCode, is_that_of_the_next_chip_of_the_label_where_one_gives_none)
{
    ChipProvider provider;
    provider.Chip("chip", "1", "unknown").Chip("chip", "2", "2");
    EXPECT_EQ(CodeOf(provider, false), "02XX0002");
    EXPECT_EQ(CodeOf(provider, true), "01XXXXXX");
}

TEST_F(ReferenceCode, passes_over_a_place_without_a_chip)
{
    ChipProvider provider;
    provider.Nothing().Chip("chip", "2", "2");
    EXPECT_EQ(CodeOf(provider, false), "02XX0002");
}

/// Forgets its chips while it is asked for one.
class ForgetfulProvider : public ChipProvider
{
public:
    std::vector<IChipInfo *> & Chips(IConfigContext & /*context*/) override { return mList; }

    std::vector<IChipInfo *> mList;
};

/// Empties the list that it stands in, as a call on the provider may.
class ForgottenChip : public CChipInfo
{
public:
    ForgottenChip(std::vector<IChipInfo *> & list, const std::string & fuses)
        : CChipInfo("", "2", "", "", fuses, "", "", "", "")
        , mList(list)
    {}
    const std::string SystemVersionLabel() const override
    {
        std::vector<IChipInfo *>().swap(mList);
        return "chip";
    }

private:
    std::vector<IChipInfo *> & mList;
};

TEST_F(ReferenceCode, walks_a_list_of_its_own)
{
    ForgetfulProvider provider;
    ForgottenChip first(provider.mList, "unknown");
    ForgottenChip second(provider.mList, "7");
    provider.mList = { &first, &second };
    EXPECT_EQ(CodeOf(provider, false), "02XX0007");
}

}   // namespace
}   // namespace VrexZynConfigTools
