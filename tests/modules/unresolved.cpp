// Calls a function that nobody has, so that the loader refuses it.

#include <configtools/plugin.h>

extern "C" const char * NobodyHasThis();

const char * GetPlugInName()
{
    return NobodyHasThis();
}
