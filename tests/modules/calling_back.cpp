// A module that calls the factory while the factory loads it.

#include <configtools/plugin.h>
#include <configtools/readerwriterfactory.h>

using namespace VrexZynConfigTools;

const char * GetPlugInName()
{
    CReaderWriterFactory::Ref().Load("/");   // is ignored
    return CReaderWriterFactory::Ref().Exists("calling back") ? "too early" : "calling back";
}

const char * GetPlugInSignature()
{
    return PLUGIN_SIGNATURE;
}
