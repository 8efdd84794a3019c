/// Where the memory of payloads comes from, and that of small packed structs. Internal.
///
/// Each thread keeps the blocks of payloads that were freed in it, up to a limit, on one shelf for each size that the
/// library's payloads have. A block is an allocation by itself, so it may be made in one thread and freed in another:
/// it changes shelves. Whatever has another size, of classes of plug-ins, goes to the global operators. Under a
/// sanitizer everything does, which would see no fault of a block that is merely put aside.

#ifndef CONFIGTOOLS_ELEMENTS_PAYLOADMEMORY_H
#define CONFIGTOOLS_ELEMENTS_PAYLOADMEMORY_H

#include <cstddef>
#include <cstdint>
#include <new>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define ZYN_PAYLOAD_SHELVES 0
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer) || __has_feature(memory_sanitizer)
#define ZYN_PAYLOAD_SHELVES 0
#endif
#endif
#ifndef ZYN_PAYLOAD_SHELVES
#define ZYN_PAYLOAD_SHELVES 1
#endif

namespace VrexZynConfigTools::payloadmemory {

/// Numbers have 32 or 40 bytes, enumerators and complex payloads 56 or 64.
inline constexpr std::size_t SMALL_BLOCK = 40;
inline constexpr std::size_t LARGE_BLOCK = 64;
inline constexpr std::size_t LEAST_SIZE = 32;

/// Without a destructor, so that payloads may be made and freed until the very end of a thread and of the process.
/// The blocks are noted beside them: taking one doesn't wait for its memory.
struct Shelf
{
    void ** mBlocks;        // places for all that it may hold; null while it isn't in use
    std::uint32_t mCount;   // of the blocks that it holds
    std::uint32_t mPlaces;
};

/// In the part of a thread's data that is reached without a call. It is small enough to fit there also when the
/// library is loaded while the process runs.
extern constinit thread_local Shelf smallBlocks __attribute__((tls_model("initial-exec")));
extern constinit thread_local Shelf largeBlocks __attribute__((tls_model("initial-exec")));

/// What is asked of the global operators, so that a block fits all classes of its shelf.
inline std::size_t BlockSize(std::size_t size)
{
    if (ZYN_PAYLOAD_SHELVES == 0 || size < LEAST_SIZE || size > LARGE_BLOCK)
        return size;
    return size <= SMALL_BLOCK ? SMALL_BLOCK : LARGE_BLOCK;
}

/// The shelf for payloads of `size` bytes; null if they go to the global operators.
inline Shelf * ShelfFor(std::size_t size)
{
    if (ZYN_PAYLOAD_SHELVES == 0 || size < LEAST_SIZE || size > LARGE_BLOCK)
        return nullptr;
    return size <= SMALL_BLOCK ? &smallBlocks : &largeBlocks;
}

/// For a full shelf, and for one that isn't in use yet or any more.
void PutOnFullShelf(Shelf & shelf, void * memory) noexcept;

/// A block from the shelf; null if it is empty.
inline void * TakeFromShelf(Shelf & shelf)
{
    return shelf.mCount != 0 ? shelf.mBlocks[--shelf.mCount] : nullptr;
}

/// With `std::nothrow` as the argument null tells that there is no memory; without one an exception does.
template <typename... TagT>
void * Allocate(std::size_t size, const TagT &... tag)
{
    if (Shelf * const shelf = ShelfFor(size))
        if (void * const block = TakeFromShelf(*shelf))
            return block;
    return ::operator new(BlockSize(size), tag...);
}

inline void Free(void * memory, std::size_t size) noexcept
{
    Shelf * const shelf = memory != nullptr ? ShelfFor(size) : nullptr;
    if (shelf == nullptr)
        return ::operator delete(memory);
    if (shelf->mCount == shelf->mPlaces)
        return PutOnFullShelf(*shelf, memory);
    shelf->mBlocks[shelf->mCount++] = memory;
}

}   // namespace VrexZynConfigTools::payloadmemory

#endif
