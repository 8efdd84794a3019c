#include "layouts.h"

#include <configtools/structcodec.h>
#include <support/framework_errors.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

// How the words and octets are fetched, what the source's answers and errors lead to, and what the caller is told.

namespace VrexZynConfigTools {
namespace {

using namespace support;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

using Statuses = std::vector<std::pair<StatusLevels, std::string>>;

/// Keeps status messages, and the texts of the debug lines.
class StatusCapture : public IMessageSink
{
public:
    StatusCapture()
        : mGuard(this)
    {
        CTheMsgHnd::SetDebugLevel(3);
    }
    ~StatusCapture() override { CTheMsgHnd::SwitchDebugOff(); }
    StatusCapture(const StatusCapture &) = delete;
    StatusCapture & operator=(const StatusCapture &) = delete;

    void OnDebugLine(const DebugLine & line) override { mDebug.emplace_back(line.mText); }
    void OnStatus(GroupEnum group, StatusLevels level, const std::string & text) override
    {
        EXPECT_EQ(group, GROUP_FRAMEWORK);
        mStatuses.emplace_back(level, text);
    }

    Statuses mStatuses;
    std::vector<std::string> mDebug;

private:
    CMessageSinkGuard mGuard;
};

CMessageHandler & OuterReader()
{
    return CTheMsgHnd::GetAppropriateHandler(GROUP_OUTER_READER, "test", false);
}

class DecodeSource : public testing::Test
{
protected:
    DecodeSource() { OuterReader().ClearError(GROUP_OUTER_READER); }
    ~DecodeSource() override { OuterReader().ClearError(GROUP_OUTER_READER); }

    bool Run() { return mCodec.Decode(mSource, mLayout.Detail(), mOut.get(), mMore); }

    bool IsOuterErrorSet() const { return OuterReader().IsErrorSet(GROUP_OUTER_READER, true); }

    FrameworkErrors mErrors;
    StatusCapture mCapture;
    Layout mLayout{ LITTLE_ENDIAN_TARGET };
    ScriptedSource mSource;
    CStructCodec mCodec;
    std::unique_ptr<CComplexPayload> mOut = ATree();
    bool mMore = false;
};

/// Three words.
class DecodeWords : public DecodeSource
{
protected:
    DecodeWords()
    {
        for (const int position : { 0, 16, 32 })
            mLayout.Field(position, 16, ANumber("uint16"));
    }
};

TEST_F(DecodeWords, each_is_asked_for_as_an_unsigned_16_bit_number_without_an_index)
{
    mSource.Numbers({ 1, 2, 3 });
    EXPECT_TRUE(Run());
    EXPECT_TRUE(mMore);
    EXPECT_THAT(mSource.Calls(), ElementsAre("NextInt uint16", "NextInt uint16", "NextInt uint16"));
    EXPECT_EQ(TextOf(*mOut), "9:(5:1 5:2 5:3)");
    EXPECT_THAT(mCapture.mStatuses, IsEmpty());
}

TEST_F(DecodeWords, no_more_are_asked_for_than_the_struct_has)
{
    mSource.Numbers({ 1, 2, 3, 4 });
    EXPECT_TRUE(Run());
    EXPECT_EQ(mSource.Left(), 1U);
}

TEST_F(DecodeWords, the_low_16_bits_of_the_answer_count)
{
    mSource.Numbers({ 0x12345, 0xFFFFFFFFFFFF0002, 0x10003 });
    EXPECT_TRUE(Run());
    EXPECT_EQ(TextOf(*mOut), "9:(5:9029 5:2 5:3)");
}

TEST_F(DecodeWords, the_value_is_set_to_0_once_and_not_per_word)
{
    mSource.Number(7).Untouched().Number(9);
    EXPECT_TRUE(Run());
    EXPECT_THAT(mSource.NumbersPassedIn(), ElementsAre(0, 7, 7));
    EXPECT_EQ(TextOf(*mOut), "9:(5:7 5:7 5:9)");
}

TEST_F(DecodeWords, the_answer_false_comes_with_a_word_and_ends_the_reading)
{
    mSource.Number(1).Number(2).Last().Number(3);
    EXPECT_TRUE(Run());
    EXPECT_FALSE(mMore);
    EXPECT_EQ(mSource.Calls().size(), 2U);
    EXPECT_EQ(TextOf(*mOut), "9:(5:1 5:2 5:0)");
}

TEST_F(DecodeWords, the_answer_false_for_the_last_word_is_passed_on)
{
    mSource.Number(1).Number(2).Number(3).Last();
    EXPECT_TRUE(Run());
    EXPECT_FALSE(mMore);
    EXPECT_EQ(TextOf(*mOut), "9:(5:1 5:2 5:3)");
}

TEST_F(DecodeWords, more_is_true_whatever_it_was_before)
{
    mSource.Numbers({ 1, 2, 3 });
    mMore = false;
    Run();
    EXPECT_TRUE(mMore);
}

TEST_F(DecodeWords, an_error_of_the_outer_reader_ends_the_reading_and_its_word_stays_0)
{
    mSource.Number(1).Number(2).Failing(GROUP_OUTER_READER, "no such word").Number(3);
    EXPECT_TRUE(Run());
    EXPECT_FALSE(mMore);
    EXPECT_EQ(mSource.Calls().size(), 2U);
    EXPECT_EQ(TextOf(*mOut), "9:(5:1 5:0 5:0)") << "decoded all the same";
    EXPECT_TRUE(IsOuterErrorSet()) << "left to the caller";
}

TEST_F(DecodeWords, an_error_of_the_outer_reader_that_stood_before_ends_it_at_the_first_word)
{
    OuterReader().SetErrorMsg(0, "earlier");
    mSource.Numbers({ 1, 2, 3 });
    EXPECT_TRUE(Run());
    EXPECT_FALSE(mMore);
    EXPECT_EQ(mSource.Calls().size(), 1U);
    EXPECT_EQ(TextOf(*mOut), "9:(5:0 5:0 5:0)");
}

TEST_F(DecodeWords, an_error_of_the_framework_lets_the_reading_go_on_but_nothing_is_decoded)
{
    mSource.Number(1).Failing(GROUP_FRAMEWORK, "bad").Number(2).Number(3);
    EXPECT_FALSE(Run());
    EXPECT_TRUE(mMore);
    EXPECT_EQ(mSource.Calls().size(), 3U);
    EXPECT_THAT(mOut->GetFields(), IsEmpty());
    EXPECT_EQ(mErrors.Text(), "bad");
}

TEST_F(DecodeWords, an_error_of_the_framework_that_stood_before_counts_too)
{
    mErrors.Set("earlier");
    mSource.Numbers({ 1, 2, 3 });
    EXPECT_FALSE(Run());
    EXPECT_TRUE(mMore);
    EXPECT_EQ(mSource.Calls().size(), 3U);
    EXPECT_THAT(mOut->GetFields(), IsEmpty());
}

TEST_F(DecodeWords, errors_of_both_end_the_reading_and_nothing_is_decoded)
{
    mSource.Number(1).Failing(GROUP_OUTER_READER, "a").Failing(GROUP_FRAMEWORK, "b");
    EXPECT_FALSE(Run());
    EXPECT_FALSE(mMore);
    EXPECT_EQ(mSource.Calls().size(), 1U);
    EXPECT_THAT(mOut->GetFields(), IsEmpty());
}

TEST_F(DecodeWords, errors_of_other_groups_are_not_looked_at)
{
    CMessageHandler & other = CTheMsgHnd::GetAppropriateHandler(GROUP_CORE_CLASSES, "test", false);
    mSource.Number(1).Failing(GROUP_CORE_CLASSES, "other").Number(2).Number(3);
    EXPECT_TRUE(Run());
    EXPECT_TRUE(mMore);
    EXPECT_EQ(TextOf(*mOut), "9:(5:1 5:2 5:3)");
    other.ClearError(GROUP_CORE_CLASSES);
}

TEST_F(DecodeWords, the_tree_is_added_to)
{
    mOut->AddField(new CUint8Payload(9));
    mSource.Numbers({ 1, 2, 3 });
    EXPECT_TRUE(Run());
    EXPECT_EQ(TextOf(*mOut), "9:(4:9 5:1 5:2 5:3)");
}

TEST_F(DecodeWords, without_a_tree_the_words_are_read_all_the_same)
{
    mSource.Numbers({ 1, 2, 3 });
    EXPECT_TRUE(mCodec.Decode(mSource, mLayout.Detail(), nullptr, mMore));
    EXPECT_TRUE(mMore);
    EXPECT_THAT(WordsOf(mCodec), ElementsAre(1, 2, 3));
}

TEST_F(DecodeSource, a_struct_without_fields_asks_for_nothing)
{
    EXPECT_TRUE(Run());
    EXPECT_TRUE(mMore);
    EXPECT_THAT(mSource.Calls(), IsEmpty());
    EXPECT_THAT(mOut->GetFields(), IsEmpty());
    EXPECT_THAT(WordsOf(mCodec), IsEmpty());
}

TEST_F(DecodeSource, octets_without_fields_still_asks_for_its_string)
{
    mLayout = Layout(LITTLE_ENDIAN_TARGET, true);
    mSource.Text("a").Last();
    EXPECT_TRUE(Run());
    EXPECT_FALSE(mMore);
    EXPECT_THAT(mSource.Calls(), ElementsAre("NextString"));
    EXPECT_THAT(mCapture.mStatuses, ElementsAre(std::pair(STATUS_WARNING,
                                        std::string("reading data from binary - expected 0 octets, found 1"))));
}

/// Three octets.
class DecodeOctets : public DecodeSource
{
protected:
    DecodeOctets()
    {
        mLayout = Layout(LITTLE_ENDIAN_TARGET, true);
        for (const int position : { 0, 8, 16 })
            mLayout.Field(position, 8, ANumber("uint8"));
    }

    const std::string mTooFew = "reading data from binary - expected 3 octets, found 2";
    const std::string mTooMany = "reading data from binary - expected 3 octets, found 4";
};

TEST_F(DecodeOctets, come_as_one_string_without_an_index)
{
    mSource.Text(std::string("A\0C", 3));
    EXPECT_TRUE(Run());
    EXPECT_TRUE(mMore);
    EXPECT_THAT(mSource.Calls(), ElementsAre("NextString"));
    EXPECT_THAT(mSource.TextsPassedIn(), ElementsAre(""));
    EXPECT_EQ(TextOf(*mOut), "9:(4:65 4:0 4:67)");
    EXPECT_THAT(mCapture.mStatuses, IsEmpty()) << "the right number of them needs no word";
    EXPECT_EQ(OctetsOf(mCodec), std::string("A\0C", 3));
}

TEST_F(DecodeOctets, the_answer_is_passed_on_and_nothing_else)
{
    mSource.Text("ABC").Last();
    EXPECT_TRUE(Run());
    EXPECT_FALSE(mMore);
    EXPECT_EQ(TextOf(*mOut), "9:(4:65 4:66 4:67)");
}

TEST_F(DecodeOctets, missing_ones_are_0_and_told_as_a_status)
{
    mSource.Text("AB");
    EXPECT_TRUE(Run());
    EXPECT_EQ(TextOf(*mOut), "9:(4:65 4:66 4:0)");
    EXPECT_THAT(mCapture.mStatuses, ElementsAre(std::pair(STATUS_WARNING, mTooFew)));
    EXPECT_THAT(mCapture.mDebug, Contains(mTooFew));
    EXPECT_FALSE(mErrors.IsSet());
}

TEST_F(DecodeOctets, surplus_ones_are_ignored_and_told_as_a_status)
{
    mSource.Text("ABCD");
    EXPECT_TRUE(Run());
    EXPECT_EQ(TextOf(*mOut), "9:(4:65 4:66 4:67)");
    EXPECT_THAT(mCapture.mStatuses, ElementsAre(std::pair(STATUS_WARNING, mTooMany)));
    EXPECT_EQ(OctetsOf(mCodec), "ABC");
}

TEST_F(DecodeOctets, an_octet_in_the_last_half_word_is_dropped)
{
    Layout wide(LITTLE_ENDIAN_TARGET, true);
    wide.Field(0, 8).Field(8, 16, ANumber("uint16"));   // the second word is used by half
    mLayout = std::move(wide);
    mSource.Text(std::string("\x01\x02\x03\x04", 4));
    EXPECT_TRUE(Run());
    EXPECT_EQ(TextOf(*mOut), "9:(0:1 5:770)");
    EXPECT_EQ(OctetsOf(mCodec), "\x01\x02\x03");
}

TEST_F(DecodeOctets, none_at_all_are_told_too)
{
    EXPECT_TRUE(Run());
    EXPECT_FALSE(mMore);
    EXPECT_EQ(TextOf(*mOut), "9:(4:0 4:0 4:0)");
    EXPECT_THAT(mCapture.mStatuses, SizeIs(1));
}

TEST_F(DecodeOctets, the_status_names_the_key_of_the_tree)
{
    const auto key = ARecord(4711).Build();
    mOut->Use(*key);
    mSource.Text("AB");
    EXPECT_TRUE(Run());
    EXPECT_THAT(mCapture.mStatuses, ElementsAre(std::pair(STATUS_WARNING, mTooFew + " for psid=4711")));
    EXPECT_THAT(mCapture.mDebug, Contains(mTooFew + " for psid=4711"));
}

TEST_F(DecodeOctets, a_key_number_is_never_negative)
{
    const auto key = ARecord(0xFFFFFFFF).Build();
    mOut->Use(*key);
    mSource.Text("AB");
    EXPECT_TRUE(Run());
    EXPECT_THAT(mCapture.mStatuses, ElementsAre(std::pair(STATUS_WARNING, mTooFew + " for psid=4294967295")));
}

TEST_F(DecodeOctets, the_status_names_no_key_0)
{
    const auto field = ARecord(0).Build();
    mOut->Use(*field);
    mSource.Text("AB");
    EXPECT_TRUE(Run());
    EXPECT_THAT(mCapture.mStatuses, ElementsAre(std::pair(STATUS_WARNING, mTooFew)));
}

TEST_F(DecodeOctets, the_status_can_do_without_a_tree)
{
    mSource.Text("AB");
    EXPECT_TRUE(mCodec.Decode(mSource, mLayout.Detail(), nullptr, mMore));
    EXPECT_THAT(mCapture.mStatuses, ElementsAre(std::pair(STATUS_WARNING, mTooFew)));
}

TEST_F(DecodeOctets, an_error_of_the_framework_hides_the_status_but_not_the_debug_line)
{
    mSource.Text("AB").Failing(GROUP_FRAMEWORK, "bad");
    EXPECT_FALSE(Run());
    EXPECT_TRUE(mMore);
    EXPECT_THAT(mCapture.mStatuses, IsEmpty());
    EXPECT_THAT(mCapture.mDebug, Contains(mTooFew));
    EXPECT_THAT(mOut->GetFields(), IsEmpty());
}

TEST_F(DecodeOctets, an_error_of_the_outer_reader_is_not_looked_at)
{
    mSource.Text("ABC").Failing(GROUP_OUTER_READER, "bad");
    EXPECT_TRUE(Run());
    EXPECT_TRUE(mMore);
    EXPECT_EQ(TextOf(*mOut), "9:(4:65 4:66 4:67)");
    EXPECT_TRUE(IsOuterErrorSet());
}

}   // namespace
}   // namespace VrexZynConfigTools
