#include <support/allocations.h>

#include <configtools/payloads.h>

#include <cstddef>
#include <cstdlib>
#include <limits>
#include <memory>
#include <vector>

#include <malloc.h>

namespace {

constexpr std::uint64_t UNLIMITED = std::numeric_limits<std::uint64_t>::max();

std::uint64_t allocationCount = 0;
std::uint64_t allocatedBytes = 0;
std::uint64_t granted = UNLIMITED;
std::uint64_t smallestThatFails = UNLIMITED;

void * Allocate(std::size_t size) noexcept
{
    if (granted == 0 || size >= smallestThatFails)
        return nullptr;
    if (granted != UNLIMITED)
        --granted;
    ++allocationCount;
    void * const memory = std::malloc(size != 0 ? size : 1);
    allocatedBytes += malloc_usable_size(memory);
    return memory;
}

void Free(void * memory) noexcept
{
    allocatedBytes -= malloc_usable_size(memory);
    std::free(memory);
}

void * AllocateOrThrow(std::size_t size)
{
    if (void * const memory = Allocate(size))
        return memory;
    throw std::bad_alloc();
}

/// The library keeps the memory of freed payloads, and what comes from there can't fail. This takes all of it, for as
/// long as the program runs.
template <typename PayloadT, typename... ArgumentT>
void TakeKeptMemory(ArgumentT... argument)
{
    static std::vector<std::unique_ptr<VrexZynConfigTools::IPayload>> taken;
    for (bool isKept = true; isKept;) {
        const std::uint64_t before = allocationCount;
        auto payload = std::make_unique<PayloadT>(argument...);
        isKept = allocationCount == before;
        taken.push_back(std::move(payload));
    }
}

}   // namespace

void * operator new(std::size_t size)
{
    return AllocateOrThrow(size);
}

void * operator new[](std::size_t size)
{
    return AllocateOrThrow(size);
}

void * operator new(std::size_t size, const std::nothrow_t &) noexcept
{
    return Allocate(size);
}

void * operator new[](std::size_t size, const std::nothrow_t &) noexcept
{
    return Allocate(size);
}

void operator delete(void * memory) noexcept
{
    Free(memory);
}

void operator delete[](void * memory) noexcept
{
    Free(memory);
}

void operator delete(void * memory, std::size_t) noexcept
{
    Free(memory);
}

void operator delete[](void * memory, std::size_t) noexcept
{
    Free(memory);
}

void operator delete(void * memory, const std::nothrow_t &) noexcept
{
    Free(memory);
}

void operator delete[](void * memory, const std::nothrow_t &) noexcept
{
    Free(memory);
}

namespace VrexZynConfigTools::support {

std::uint64_t AllocationCount()
{
    return allocationCount;
}

std::uint64_t AllocatedBytes()
{
    return allocatedBytes;
}

void FailAllocationsAfter(std::uint64_t count)
{
    LetAllocationsPass();
    TakeKeptMemory<CUint64Payload>(0U);
    TakeKeptMemory<CComplexPayload>(PAYLOAD_COMPLEX);
    granted = count;
}

void LetAllocationsPass()
{
    granted = UNLIMITED;
    smallestThatFails = UNLIMITED;
}

void FailLargeAllocations(std::uint64_t size)
{
    smallestThatFails = size;
}

}   // namespace VrexZynConfigTools::support
