/// The count of what goes out, made before a writer is told of the end.

#include <workbench/writewatch.h>

#include <configtools/elements.h>
#include <configtools/zyncontext.h>

#include <messages/messages.h>

#include <support/framework_errors.h>
#include <support/recording_writer.h>

#include <gmock/gmock.h>

#include <string>

namespace workbench::test {

namespace {

using namespace VrexZynConfigTools;

/// Keeps the error that stands when the end comes.
class CEndWriter : public support::RecordingWriter
{
public:
    void EndWrite(IConfigContext & context) override
    {
        short code = 0;
        CTheMsgHnd::GetAppropriateHandler(GROUP_FRAMEWORK, "CEndWriter", false)
            .GetErrorMsg(GROUP_FRAMEWORK, code, mError);
        RecordingWriter::EndWrite(context);
    }

    std::string mError;
};

class WriteWatch : public testing::Test
{
protected:
    /// Writes two rows through a watch that expects `expected` values.
    void Write(std::size_t expected)
    {
        CWriteWatch watch(mWriter, expected, "out.toml");
        WriteTo(watch);
    }

    static void WriteTo(IConfigWriter & writer)
    {
        CZynContext context;
        CIndexedElement row(5, "K", { 1, 2 }, { new CUint8Payload(7) }, true);
        writer.PrepareWriter(context);
        writer.StartWrite(context);
        writer.StartSubsystem(context);
        row.Write(writer, context);
        row.Write(writer, context);
        writer.EndSubsystem(context);
        writer.EndWrite(context);
    }

    support::FrameworkErrors mErrors;
    CEndWriter mWriter;
};

}   // namespace

TEST_F(WriteWatch, hands_on_every_call)
{
    support::RecordingWriter direct;
    WriteTo(direct);
    Write(2);
    EXPECT_EQ(mWriter.Calls(), direct.Calls());
    EXPECT_EQ(mWriter.mError, "");
}

TEST_F(WriteWatch, tells_before_the_end_that_something_is_missing)
{
    Write(3);
    EXPECT_EQ(mWriter.mError, "out.toml: 2 of 3 values went out, so nothing is written");
}

TEST_F(WriteWatch, tells_too_many_as_well)
{
    Write(1);
    EXPECT_EQ(mWriter.mError, "out.toml: 2 of 1 values went out, so nothing is written");
}

TEST_F(WriteWatch, leaves_an_error_that_stands)
{
    mWriter.FailsIn("StartWrite", "disk on fire");
    Write(3);
    EXPECT_EQ(mWriter.mError, "disk on fire");
}

}   // namespace workbench::test
