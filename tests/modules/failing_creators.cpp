// A module whose creators fail, each in its own way.

#include <configtools/plugin.h>
#include <configtools/readerwriter.h>
#include <configtools/stores.h>

#include <new>
#include <stdexcept>

using namespace VrexZynConfigTools;

const char * GetPlugInName()
{
    return "failing creators";
}

const char * GetPlugInSignature()
{
    return PLUGIN_SIGNATURE;
}

IConfigReader * CreateConfigReader(const std::string & argument, void *)
{
    if (argument == "null")
        return nullptr;
    throw std::runtime_error(argument);
}

IConfigWriter * CreateConfigWriter(const std::string &, void *)
{
    throw 5;
}

IStoreManager * CreateStoreManager(const std::string &, void *)
{
    throw std::bad_alloc();
}
