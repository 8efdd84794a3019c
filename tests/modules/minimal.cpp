// A module with a life and, as the build says, a name and a signature.

#include <configtools/plugin.h>

#include <stdexcept>

/// A test program may export this; it is told when a module comes ("+file") and goes ("-file").
extern "C" __attribute__((weak)) void OnModuleEvent(const char * event);

namespace {

using namespace VrexZynConfigTools;

class CLife
{
public:
    CLife() { Tell("+" MODULE_FILE); }
    CLife(const CLife &) = delete;
    CLife & operator=(const CLife &) = delete;
    ~CLife() { Tell("-" MODULE_FILE); }

private:
    static void Tell(const char * event)
    {
        if (OnModuleEvent != nullptr)
            OnModuleEvent(event);
    }
};

const CLife life;

[[noreturn, maybe_unused]] const char * Throw()
{
    throw std::runtime_error("thrown by a plug-in");
}

}   // namespace

#ifdef MODULE_NAME
const char * GetPlugInName()
{
    return MODULE_NAME;
}
#endif

#ifdef MODULE_SIGNATURE
const char * GetPlugInSignature()
{
    return MODULE_SIGNATURE;
}
#endif
