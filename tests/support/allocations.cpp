#include <support/allocations.h>

#include <cstddef>
#include <cstdlib>
#include <limits>

namespace {

constexpr std::uint64_t UNLIMITED = std::numeric_limits<std::uint64_t>::max();

std::uint64_t allocationCount = 0;
std::uint64_t granted = UNLIMITED;
std::uint64_t smallestThatFails = UNLIMITED;

void * Allocate(std::size_t size) noexcept
{
    if (granted == 0 || size >= smallestThatFails)
        return nullptr;
    if (granted != UNLIMITED)
        --granted;
    ++allocationCount;
    return std::malloc(size != 0 ? size : 1);
}

void * AllocateOrThrow(std::size_t size)
{
    if (void * const memory = Allocate(size))
        return memory;
    throw std::bad_alloc();
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
    std::free(memory);
}

void operator delete[](void * memory) noexcept
{
    std::free(memory);
}

void operator delete(void * memory, std::size_t) noexcept
{
    std::free(memory);
}

void operator delete[](void * memory, std::size_t) noexcept
{
    std::free(memory);
}

void operator delete(void * memory, const std::nothrow_t &) noexcept
{
    std::free(memory);
}

void operator delete[](void * memory, const std::nothrow_t &) noexcept
{
    std::free(memory);
}

namespace VrexZynConfigTools::support {

std::uint64_t AllocationCount()
{
    return allocationCount;
}

void FailAllocationsAfter(std::uint64_t count)
{
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
