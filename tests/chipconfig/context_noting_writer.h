/// A recording writer that also notes the very object it is called with.

#ifndef TESTS_CHIPCONFIG_CONTEXT_NOTING_WRITER_H
#define TESTS_CHIPCONFIG_CONTEXT_NOTING_WRITER_H

#include <support/recording_writer.h>

#include <functional>
#include <vector>

namespace VrexZynConfigTools::support {

class ContextNotingWriter : public RecordingWriter
{
public:
    using RecordingWriter::RecordingWriter;

    void StartWrite(IConfigContext & context) override
    {
        mWrites.push_back(&context);
        RecordingWriter::StartWrite(context);
    }
    void EndWrite(IConfigContext & context) override
    {
        mWrites.push_back(&context);
        RecordingWriter::EndWrite(context);
    }
    void StartSubsystem(IConfigContext & context) override
    {
        mSubsystems.push_back(&context);
        RecordingWriter::StartSubsystem(context);
        if (mAtStart)
            mAtStart(mSubsystems.size());
    }
    void EndSubsystem(IConfigContext & context) override
    {
        mSubsystems.push_back(&context);
        RecordingWriter::EndSubsystem(context);
        if (mAtEnd)
            mAtEnd(mSubsystems.size());
    }
    void StartElement(IConfigContext & context) override
    {
        mElements.push_back(&context);
        RecordingWriter::StartElement(context);
    }

    std::vector<IConfigContext *> mWrites;       // of StartWrite and EndWrite
    std::vector<IConfigContext *> mSubsystems;   // of StartSubsystem and EndSubsystem
    std::vector<IConfigContext *> mElements;     // of StartElement

    /// What is done at the start and the end of a subsystem, with the number of these calls so far.
    std::function<void(std::size_t)> mAtStart;
    std::function<void(std::size_t)> mAtEnd;
};

}   // namespace VrexZynConfigTools::support

#endif
