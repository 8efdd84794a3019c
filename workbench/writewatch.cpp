#include "writewatch.h"

#include <messages/messages.h>

namespace workbench {

using namespace VrexZynConfigTools;

CWriteWatch::CWriteWatch(IConfigWriter & writer, std::size_t expected, const std::string & output)
    : mWriter(writer)
    , mExpected(expected)
    , mOutput(output)
{}

void CWriteWatch::PrepareWriter(IConfigContext & context)
{
    mWriter.PrepareWriter(context);
}

void CWriteWatch::StartWrite(IConfigContext & context)
{
    mWriter.StartWrite(context);
}

void CWriteWatch::EndWrite(IConfigContext & context)
{
    auto & handler =
        CTheMsgHnd::GetAppropriateHandler(GROUP_FRAMEWORK, "workbench::CWriteWatch::EndWrite", false);
    // An error that stands already tells why something is missing.
    if (mCount != mExpected && !handler.IsErrorSet(GROUP_FRAMEWORK, true))
        handler.SetErrorMsg(0, mOutput + ": " + std::to_string(mCount) + " of " + std::to_string(mExpected) +
                                   " values went out, so nothing is written");
    mWriter.EndWrite(context);
}

void CWriteWatch::StartSubsystem(IConfigContext & context)
{
    mWriter.StartSubsystem(context);
}

void CWriteWatch::EndSubsystem(IConfigContext & context)
{
    mWriter.EndSubsystem(context);
}

void CWriteWatch::StartElement(IConfigContext & context)
{
    ++mCount;
    mWriter.StartElement(context);
}

void CWriteWatch::EndElement(IConfigContext & context)
{
    mWriter.EndElement(context);
}

void CWriteWatch::WriteKeyId(std::uint32_t psId, IConfigContext & context)
{
    mWriter.WriteKeyId(psId, context);
}

void CWriteWatch::WriteNamedData(
    const std::string & name, const void * data, std::uint32_t size, IConfigContext & context)
{
    mWriter.WriteNamedData(name, data, size, context);
}

void CWriteWatch::WritePayload(IPayload & payload, IConfigContext & context)
{
    mWriter.WritePayload(payload, context);
}

}   // namespace workbench
