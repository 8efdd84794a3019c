/* The module that module_ways builds in many ways. It has what linkers and loaders treat specially: relative
   relocations, calls of a library, a start function, data of each thread, zeros that no file brings. */

#include <stdlib.h>

#define EXPORTED __attribute__((visibility("default")))

static const char * const names[] = { "first", "second", "third" };
static __thread int ofThread = 1;
static int zeros[5000];
static int * start = zeros;

__attribute__((constructor)) static void Begin(void)
{
    start = &zeros[abs(-1)];
}

EXPORTED const char * GetPlugInName(void)
{
    *start += ofThread;
    return names[*start % 3];
}

EXPORTED const char * GetPlugInSignature(void)
{
    return "ZynConfigTool";
}

/* Called only where the linker is asked for it. */
#ifdef START_SECTION
__attribute__((section(START_SECTION))) static void Before(void)
{
    *start = 2;
}
__attribute__((section(START_SECTION)))
#endif
EXPORTED void OwnStart(void)
{
    *start = 1;
}

EXPORTED void OwnEnd(void)
{
    *start = 0;
}
