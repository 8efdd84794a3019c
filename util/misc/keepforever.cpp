#include <misc/keepforever.h>

#include <cstddef>
#include <new>

namespace VrexZynConfigTools {

namespace {

struct KeptPointer
{
    const void * mPointer;
    KeptPointer * mNext;
};

constinit KeptPointer * firstKept = nullptr;   // no destructor frees the chain, also not at exit

// For when memory has run out, which must not make a leak of what is only to be forgotten.
constexpr std::size_t SPARE_COUNT = 256;
constinit KeptPointer sparePlaces[SPARE_COUNT] = {};
constinit std::size_t sparesUsed = 0;

KeptPointer * NewPlace()
{
    if (auto * const place = new (std::nothrow) KeptPointer{})
        return place;
    return sparesUsed < SPARE_COUNT ? &sparePlaces[sparesUsed++] : nullptr;
}

}   // namespace

void KeepForEver(const void * pointer) noexcept
{
    KeptPointer * const place = NewPlace();
    if (place == nullptr)
        return;
    *place = { pointer, firstKept };
    firstKept = place;
}

}   // namespace VrexZynConfigTools
