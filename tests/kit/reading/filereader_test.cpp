// The course of a read, the same for all formats.

#include <configtools/chipconfig.h>
#include <configtools/zyncontext.h>
#include <kit/reading/filereader.h>
#include <kit/reporting/channel.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace kit::reading {
namespace {

using namespace VrexZynConfigTools;
using testing::ElementsAre;
using testing::IsEmpty;

/// Records the calls of a read; an element observer of its own for each subsystem.
class Recorder : public IConfigReaderObserver
{
public:
    void OnReadStarted(IConfigReader &, IConfigContext & context) override { Note("started", context); }
    void OnSubsystemFound(IConfigReader & reader, IConfigContext & context) override
    {
        Note("found", context);
        mSubsystems.push_back(std::make_unique<ElementRecorder>(*this, mSubsystems.size() + 1));
        reader.SetElementObserver(*mSubsystems.back());
    }
    void OnSubsystemCompleted(IConfigReader &, IConfigContext & context) override
    {
        Note("completed", context);
    }
    void OnReadEnded(IConfigReader &, IConfigContext & context) override { Note("ended", context); }

    void Note(const std::string & call, IConfigContext & context)
    {
        mCalls.push_back(call + ' ' + context.GetTag("chip") + '/' + context.GetTag("device") + '.' +
                         context.GetTag("store") + '/' + context.GetTag("layernumber"));
    }

    std::vector<std::string> mCalls;

private:
    class ElementRecorder : public IConfigReaderElementObserver
    {
    public:
        ElementRecorder(Recorder & recorder, std::size_t number)
            : mRecorder(recorder)
            , mNumber(number)
        {}
        bool OnElementFound(CElement * element, IConfigContext & context) override
        {
            const std::unique_ptr<CElement> owned(element);
            mRecorder.mCalls.push_back(std::to_string(mNumber) + " key " + std::to_string(owned->PsId()) + '#' +
                                       context.GetTag("num_indices"));
            return true;
        }

    private:
        Recorder & mRecorder;
        std::size_t mNumber;
    };

    std::vector<std::unique_ptr<ElementRecorder>> mSubsystems;
};

class TestReader : public CFileReader
{
public:
    TestReader()
        : CFileReader("a.file")
    {}
    std::function<std::optional<FileContent>()> mContent;

protected:
    std::optional<FileContent> ReadContent(IConfigContext &) override { return mContent(); }
};

Key AKey(std::uint32_t id, std::vector<std::uint32_t> indices = {}, std::uint32_t line = 0)
{
    return { std::make_unique<CElementString>(id, "", "x", false, true), std::move(indices), line, 1 };
}

FileContent TwoSubsystems()
{
    FileContent content{ "abc", {} };
    content.mSubsystems.push_back({ { SUBSYSTEM_BT, 15, 1 }, {} });
    content.mSubsystems.back().mKeys.push_back(AKey(5));
    content.mSubsystems.back().mKeys.push_back(AKey(6, { 1, 2 }));
    content.mSubsystems.push_back({ { SUBSYSTEM_WLAN, std::nullopt, std::nullopt, 0 }, {} });
    content.mSubsystems.back().mKeys.push_back(AKey(7));
    return content;
}

class FileReader : public testing::Test
{
protected:
    FileReader()
    {
        reporting::TakeError();
        mReader.mContent = TwoSubsystems;
    }
    ~FileReader() override { reporting::TakeError(); }

    std::string Read(const std::string & tags = "")
    {
        CZynContext context;
        context.Parse(tags);
        mReader.SetObserver(mRecorder);
        mReader.Read(context);
        return reporting::TakeError().value_or("");
    }

    TestReader mReader;
    Recorder mRecorder;
};

TEST_F(FileReader, calls_the_observers_in_order_and_the_element_observer_of_each_subsystem)
{
    EXPECT_EQ(Read(), "");
    EXPECT_THAT(mRecorder.mCalls,
        ElementsAre("started abc/./", "found abc/15.1/", "1 key 5#", "1 key 6#2", "completed abc/15.1/",
            "found abc/./0", "2 key 7#", "completed abc/./0", "ended abc/./"));
}

TEST_F(FileReader, sets_the_layers_that_the_caller_lists)
{
    EXPECT_EQ(Read("storelayers=15.1:9"), "");
    EXPECT_EQ(mRecorder.mCalls.at(1), "found abc/15.1/9");
}

TEST_F(FileReader, calls_nobody_after_an_error)
{
    mReader.mContent = [] {
        reporting::ReportError("code", "a.file", "broken");
        return std::nullopt;
    };
    EXPECT_EQ(Read(), "a.file: broken");
    EXPECT_THAT(
        Read("storelayers=junk"), testing::StartsWith("a.file: the context tag \"storelayers\" reads "));
    EXPECT_THAT(mRecorder.mCalls, IsEmpty());
}

TEST_F(FileReader, needs_an_observer)
{
    CZynContext context;
    mReader.Read(context);
    EXPECT_EQ(reporting::TakeError(), "a.file: invalid operation (a read without an observer)");
}

TEST_F(FileReader, reports_an_exception_of_a_format)
{
    mReader.mContent = []() -> std::optional<FileContent> { throw std::runtime_error("oh"); };
    EXPECT_EQ(Read(), "a.file: an unexpected error occurred (oh)");
}

TEST(RepeatedKeys, are_those_of_one_subsystem_store_and_row)
{
    FileContent content = TwoSubsystems();
    content.mSubsystems[1].mPlace = content.mSubsystems[0].mPlace;
    content.mSubsystems[1].mKeys.push_back(AKey(5, {}, 9));
    content.mSubsystems[1].mKeys.push_back(AKey(6, { 1, 3 }));
    content.mSubsystems[1].mKeys.push_back(AKey(6, { 1, 2 }));
    content.mSubsystems.push_back({ { SUBSYSTEM_BT, 15, 2 }, {} });
    content.mSubsystems.back().mKeys.push_back(AKey(5));

    const auto repeated = RepeatedKeys(content.mSubsystems);
    ASSERT_EQ(repeated.size(), 2U);
    EXPECT_EQ(repeated[0].mKey->mLine, 9U);
    EXPECT_EQ(repeated[0].mFirst, &content.mSubsystems[0].mKeys[0]);
    EXPECT_EQ(repeated[0].mSubsystem, &content.mSubsystems[1]);
    EXPECT_EQ(repeated[1].mFirst, &content.mSubsystems[0].mKeys[1]);
}

TEST(OnlyOneOfTwoCounts, with_an_insert_mode_that_replaces)
{
    CZynContext context;
    EXPECT_FALSE(OnlyOneOfTwoCounts(context));
    for (const char * mode : { "insertmode=overwrite", "insertmode=new" }) {
        context.Parse(mode);
        EXPECT_TRUE(OnlyOneOfTwoCounts(context)) << mode;
    }
}

TEST(WhyNotForChip, compares_labels_where_both_are_known)
{
    CZynContext context;
    EXPECT_EQ(WhyNotForChip("file", "abc", context), "");
    context.SetTag("chip", "xyz");
    EXPECT_EQ(WhyNotForChip("file", "", context), "");
    EXPECT_EQ(WhyNotForChip("file", "xyz", context), "");
    EXPECT_EQ(WhyNotForChip("file", "abc", context), "the file is for the chip \"abc\"; expected \"xyz\"");
}

}   // namespace
}   // namespace kit::reading
