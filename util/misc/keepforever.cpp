#include <misc/keepforever.h>

#include <new>

namespace VrexZynConfigTools {

namespace {

struct KeptPointer
{
    const void * mPointer;
    KeptPointer * mNext;
};

constinit KeptPointer * firstKept = nullptr;   // no destructor frees the chain, also not at exit

}   // namespace

void KeepForEver(const void * pointer) noexcept
{
    if (auto * const kept = new (std::nothrow) KeptPointer{ pointer, firstKept })
        firstKept = kept;
}

}   // namespace VrexZynConfigTools
