// Has no entry point of its own; those of its library don't count.

#include <configtools/plugin.h>

extern "C" CONFIGTOOLS_PLUGIN_EXPORT const char * NameOfTheLibrary()
{
    return GetPlugInName();
}
