// A module whose creator of metadata providers fails, in the way that the argument says.

#include <configtools/plugin.h>
#include <messages/messages.h>

#include <new>
#include <stdexcept>

using namespace VrexZynConfigTools;

const char * GetPlugInName()
{
    return "failing providers";
}

const char * GetPlugInSignature()
{
    return PLUGIN_SIGNATURE;
}

IMetadataProvider * CreateMetadataProvider(const std::string & argument)
{
    if (argument == "null")
        return nullptr;
    if (argument == "null and error") {
        CTheMsgHnd::GetAppropriateHandler(GROUP_FRAMEWORK, "CreateMetadataProvider", false)
            .SetErrorMsg(3, "no such file");
        return nullptr;
    }
    if (argument == "number")
        throw 5;
    if (argument == "memory")
        throw std::bad_alloc();
    throw std::runtime_error(argument);
}
