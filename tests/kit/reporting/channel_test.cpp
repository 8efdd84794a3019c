#include <kit/reporting/channel.h>
#include <kit/reporting/guard.h>

#include <messages/messages.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <new>
#include <stdexcept>
#include <string>
#include <vector>

namespace kit::reporting {
namespace {

using namespace VrexZynConfigTools;
using testing::ElementsAre;

CMessageHandler & Handler(GroupEnum group)
{
    return CTheMsgHnd::GetAppropriateHandler(group, "test", false);
}

std::string TextOf(GroupEnum group)
{
    short code = 0;
    std::string text = "none";
    Handler(group).GetErrorMsg(group, code, text);
    return text;
}

std::vector<std::string> CodesOf(GroupEnum group)
{
    std::vector<std::string> codes;
    for (const ErrorRecord & record : Handler(group).ErrorRecords(group))
        codes.push_back(record.mCode);
    return codes;
}

class Reporting : public testing::Test
{
protected:
    Reporting() { TakeError(); }
    ~Reporting() override { TakeError(); }
};

TEST_F(Reporting, adds_an_error_on_a_line_of_its_own)
{
    EXPECT_FALSE(IsErrorSet());
    ReportError("bad-a", "a.toml", "first");
    ReportError("bad-b", "", "second");
    EXPECT_TRUE(IsErrorSet());
    EXPECT_EQ(TextOf(GROUP_FRAMEWORK), "a.toml: first\n: second");
    EXPECT_THAT(CodesOf(GROUP_FRAMEWORK), ElementsAre("bad-a", "bad-b"));
}

TEST_F(Reporting, adds_to_an_error_that_has_no_record)
{
    Handler(GROUP_FRAMEWORK).SetErrorMsg(7, "of the library");
    ReportError("bad-a", "a.toml", "first");
    short code = 0;
    std::string text;
    Handler(GROUP_FRAMEWORK).GetErrorMsg(GROUP_FRAMEWORK, code, text);
    EXPECT_EQ(code, 7);
    EXPECT_EQ(text, "of the library\na.toml: first");
    EXPECT_THAT(CodesOf(GROUP_FRAMEWORK), ElementsAre("", "bad-a"));
}

TEST_F(Reporting, reports_a_list_in_its_order)
{
    CFindings findings("f");
    ReportErrors(findings);
    EXPECT_FALSE(IsErrorSet());
    Finding second = MakeFinding("b", "second");
    second.mLine = 2;
    Finding first = MakeFinding("a", "first");
    first.mLine = 1;
    findings.Add(second);
    findings.Add(first);
    ReportErrors(findings);
    EXPECT_EQ(TextOf(GROUP_FRAMEWORK), "f:1: first\nf:2: second");
    EXPECT_THAT(CodesOf(GROUP_FRAMEWORK), ElementsAre("a", "b"));
}

TEST_F(Reporting, reports_the_same_line_once_where_that_is_wanted)
{
    for (const char * text : { "text\nof two lines", "text\nof two lines", "text" })
        ReportErrorOnce("a", "f", text);
    EXPECT_EQ(TextOf(GROUP_FRAMEWORK), "f: text\nof two lines\nf: text");
}

TEST_F(Reporting, takes_the_error_and_clears_both_groups)
{
    EXPECT_EQ(TakeError(), std::nullopt);
    ReportError("a", "f", "text");
    Handler(GROUP_OUTER_READER).SetErrorMsg(0, "outer");
    EXPECT_EQ(TakeError(), "f: text");
    EXPECT_FALSE(IsErrorSet());
    EXPECT_EQ(TextOf(GROUP_OUTER_READER), "none");
}

class RecordSink : public IMessageSink
{
public:
    void OnDebugLine(const DebugLine &) override {}
    void OnStatus(GroupEnum, StatusLevels level, const std::string & text) override
    {
        EXPECT_EQ(level, STATUS_WARNING);
        mText = text;
        mRecord = *CTheMsgHnd::StatusRecord();
    }

    std::string mText;
    ErrorRecord mRecord;
};

TEST_F(Reporting, passes_a_warning_on_with_its_record)
{
    RecordSink sink;
    const CMessageSinkGuard guard(&sink);
    ReportWarning(WithPlace(MakeFinding("left-out", "the key is left out"), "f", 3, 1));
    EXPECT_FALSE(IsErrorSet());
    EXPECT_EQ(sink.mText, "f:3:1: the key is left out");
    EXPECT_EQ(sink.mRecord.mCode, "left-out");
    EXPECT_EQ(sink.mRecord.mSeverity, SEVERITY_WARNING);
}

TEST_F(Reporting, sets_errors_again_with_code_and_records_at_the_end_of_the_scope)
{
    Handler(GROUP_FRAMEWORK).SetErrorMsg(5, "f: text", { MakeFinding("a", "text") });
    Handler(GROUP_OUTER_READER).SetErrorMsg(6, "outer");
    {
        CErrorsSetAside aside;
        EXPECT_FALSE(IsErrorSet());
        EXPECT_EQ(TextOf(GROUP_OUTER_READER), "none");
        EXPECT_EQ(aside.Take(), "");
        Handler(GROUP_FRAMEWORK).SetErrorMsg(0, "inner");
        Handler(GROUP_OUTER_READER).SetErrorMsg(0, "inner too");
        EXPECT_EQ(aside.Take(), "inner: inner too");
        EXPECT_FALSE(IsErrorSet());
        Handler(GROUP_FRAMEWORK).SetErrorMsg(0, "lost");
    }
    short code = 0;
    std::string text;
    Handler(GROUP_FRAMEWORK).GetErrorMsg(GROUP_FRAMEWORK, code, text);
    EXPECT_EQ(code, 5);
    EXPECT_EQ(text, "f: text");
    EXPECT_THAT(CodesOf(GROUP_FRAMEWORK), ElementsAre("a"));
    Handler(GROUP_OUTER_READER).GetErrorMsg(GROUP_OUTER_READER, code, text);
    EXPECT_EQ(code, 6);
    EXPECT_EQ(text, "outer");
}

TEST_F(Reporting, sets_nothing_again_where_nothing_was_set)
{
    {
        const CErrorsSetAside aside;
        Handler(GROUP_FRAMEWORK).SetErrorMsg(0, "lost");
    }
    EXPECT_FALSE(IsErrorSet());
}

TEST_F(Reporting, turns_exceptions_into_errors_about_the_file)
{
    int ends = 0;
    Guarded(
        "f", [] { throw std::runtime_error("oh"); }, [&] { ++ends; });
    Guarded(
        "f", [] { throw 1; }, [&] { ++ends; });
    EXPECT_EQ(ends, 2);
    EXPECT_EQ(TextOf(GROUP_FRAMEWORK),
        "f: an unexpected error occurred (oh)\nf: an unexpected error occurred (unknown)");
    EXPECT_THAT(CodesOf(GROUP_FRAMEWORK), ElementsAre("exception", "exception"));
}

TEST_F(Reporting, passes_a_lack_of_memory_on)
{
    int ends = 0;
    EXPECT_THROW(Guarded(
                     "f", [] { throw std::bad_alloc(); }, [&] { ++ends; }),
        std::bad_alloc);
    EXPECT_EQ(ends, 1);
    EXPECT_FALSE(IsErrorSet());
}

TEST_F(Reporting, runs_a_good_action_to_its_end)
{
    int runs = 0;
    Guarded("f", [&] { ++runs; });
    EXPECT_EQ(runs, 1);
    EXPECT_FALSE(IsErrorSet());
}

struct Refusing
{
    explicit Refusing(const std::string &) { throw std::runtime_error("no"); }
};

TEST(CreateOrNull, lets_no_exception_out)
{
    EXPECT_EQ(CreateOrNull<Refusing>(std::string()), nullptr);
    const std::unique_ptr<std::string> made(CreateOrNull<std::string>("text"));
    EXPECT_EQ(*made, "text");
}

}   // namespace
}   // namespace kit::reporting
