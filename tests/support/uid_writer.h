/// A writer that notes the course of a write by the numbers of traced payloads.

#ifndef TESTS_SUPPORT_UID_WRITER_H
#define TESTS_SUPPORT_UID_WRITER_H

#include <configtools/context.h>
#include <configtools/readerwriter.h>
#include <support/lives.h>

#include <string>

namespace VrexZynConfigTools::support {

/// "<" and ">" for the write, "[type/layer/device" and "]" for a subsystem, " 7" for an element.
class UidWriter : public IConfigWriter
{
public:
    const std::string & Course() const { return mCourse; }

    static std::string PlaceOf(const std::string & type, const std::string & layer, const std::string & device)
    {
        std::string place = "[";
        return place.append(type).append("/").append(layer).append("/").append(device);
    }

    void PrepareWriter(IConfigContext & /*context*/) override {}
    void StartWrite(IConfigContext & /*context*/) override { mCourse += "<"; }
    void EndWrite(IConfigContext & /*context*/) override { mCourse += ">"; }
    void StartSubsystem(IConfigContext & context) override
    {
        mCourse +=
            PlaceOf(context.GetTag("subsystemtype"), context.GetTag("layernumber"), context.GetTag("device"));
    }
    void EndSubsystem(IConfigContext & /*context*/) override { mCourse += "]"; }
    void StartElement(IConfigContext & /*context*/) override {}
    void EndElement(IConfigContext & /*context*/) override {}
    void WriteKeyId(std::uint32_t /*psId*/, IConfigContext & /*context*/) override {}
    void WriteNamedData(const std::string & /*name*/, const void * /*data*/, std::uint32_t /*size*/,
        IConfigContext & /*context*/) override
    {}
    void WritePayload(IPayload & payload, IConfigContext & /*context*/) override
    {
        mCourse.append(Numbered(" ", dynamic_cast<TracedPayload &>(payload).Uid()));
    }

private:
    std::string mCourse;
};

}   // namespace VrexZynConfigTools::support

#endif
