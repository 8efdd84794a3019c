/// A writer that notes each call as one line of text, so that a test compares the whole course of a write.
///
///     StartElement
///     WriteKeyId 100
///     WriteNamedData num_indices 0100000000000000
///     WritePayload 4:65
///     EndElement
///
/// The tags it was asked to watch stand behind each line: "StartElement rawmode=true".

#ifndef TESTS_SUPPORT_RECORDING_WRITER_H
#define TESTS_SUPPORT_RECORDING_WRITER_H

#include <configtools/context.h>
#include <configtools/payloads.h>
#include <configtools/readerwriter.h>
#include <messages/messages.h>

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace VrexZynConfigTools::support {

/// Type code and text of a payload; of a complex one its fields: "9:(4:1 8:abc)".
inline std::string TextOf(IPayload & payload)
{
    std::string text = std::to_string(payload.Type()) + ":";
    auto * complex = dynamic_cast<CComplexPayload *>(&payload);
    if (complex == nullptr)
        return text.append(payload.ToString());
    const char * separator = "(";
    for (IPayload * field : complex->GetFields()) {
        text.append(separator).append(field != nullptr ? TextOf(*field) : "null");
        separator = " ";
    }
    return text.append(complex->GetFields().empty() ? "()" : ")");
}

/// The bytes in memory order, two lower-case hexadecimal digits each.
inline std::string HexOf(const void * data, std::size_t size)
{
    static constexpr char DIGITS[] = "0123456789abcdef";
    std::string text;
    for (std::size_t position = 0; position < size; ++position) {
        const unsigned byte = static_cast<const unsigned char *>(data)[position];
        text += DIGITS[byte / 16];
        text += DIGITS[byte % 16];
    }
    return text;
}

/// The same for a value, as the machine holds it.
template <typename T>
std::string HexOf(const T & value)
{
    return HexOf(&value, sizeof(value));
}

class RecordingWriter : public IConfigWriter
{
public:
    RecordingWriter() = default;
    explicit RecordingWriter(std::vector<std::string> watchedTags)
        : mWatchedTags(std::move(watchedTags))
    {}

    /// The calls so far, in order.
    const std::vector<std::string> & Calls() const { return mCalls; }

    /// The addresses of the payloads that arrived, in order.
    const std::vector<IPayload *> & Payloads() const { return mPayloads; }

    void Forget()
    {
        mCalls.clear();
        mPayloads.clear();
    }

    /// Leaves `error` in the framework's message group when `operation`, such as "StartWrite", is called.
    RecordingWriter & FailsIn(const std::string & operation, const std::string & error)
    {
        mErrors[operation] = error;
        return *this;
    }

    /// A complex payload is asked for its fields, which then arrive as further calls.
    RecordingWriter & AsksForFields()
    {
        mAsksForFields = true;
        return *this;
    }

    void PrepareWriter(IConfigContext & context) override { Note("PrepareWriter", "", context); }
    void StartWrite(IConfigContext & context) override { Note("StartWrite", "", context); }
    void EndWrite(IConfigContext & context) override { Note("EndWrite", "", context); }
    void StartSubsystem(IConfigContext & context) override { Note("StartSubsystem", "", context); }
    void EndSubsystem(IConfigContext & context) override { Note("EndSubsystem", "", context); }
    void StartElement(IConfigContext & context) override { Note("StartElement", "", context); }
    void EndElement(IConfigContext & context) override { Note("EndElement", "", context); }

    void WriteKeyId(std::uint32_t psId, IConfigContext & context) override
    {
        Note("WriteKeyId", std::to_string(psId), context);
    }

    void WriteNamedData(
        const std::string & name, const void * data, std::uint32_t size, IConfigContext & context) override
    {
        Note("WriteNamedData", name + " " + HexOf(data, size), context);
    }

    void WritePayload(IPayload & payload, IConfigContext & context) override
    {
        mPayloads.push_back(&payload);
        Note("WritePayload", TextOf(payload), context);
        auto * complex = dynamic_cast<CComplexPayload *>(&payload);
        if (mAsksForFields && complex != nullptr)
            complex->WriteFields(*this, context);
    }

private:
    void Note(const std::string & operation, const std::string & arguments, IConfigContext & context)
    {
        std::string call = operation;
        if (!arguments.empty())
            call.append(" ").append(arguments);
        for (const std::string & tag : mWatchedTags)
            call.append(" ").append(tag).append("=").append(context.GetTag(tag));
        mCalls.push_back(call);

        const auto error = mErrors.find(operation);
        if (error != mErrors.end())
            CTheMsgHnd::GetAppropriateHandler(
                GROUP_FRAMEWORK, "VrexZynConfigTools::support::RecordingWriter", false)
                .SetErrorMsg(0, error->second);
    }

    std::vector<std::string> mWatchedTags;
    std::vector<std::string> mCalls;
    std::vector<IPayload *> mPayloads;
    std::map<std::string, std::string> mErrors;
    bool mAsksForFields = false;
};

}   // namespace VrexZynConfigTools::support

#endif
