#include "payloadmemory.h"

namespace VrexZynConfigTools::payloadmemory {

constinit thread_local Shelf smallBlocks = { nullptr, 0, 0 };
constinit thread_local Shelf largeBlocks = { nullptr, 0, 0 };

namespace {

/// As many as a large struct has fields, and no more than some tens of kilobytes.
constexpr std::uint32_t SHELF_LENGTH = 1024;

/// The thread ends: what is freed from now on goes to the global operators.
constinit thread_local bool isClosed = false;

void Clear(Shelf & shelf) noexcept
{
    while (void * const block = TakeFromShelf(shelf))
        ::operator delete(block);
    delete[] shelf.mBlocks;
    shelf = { nullptr, 0, 0 };
}

/// Gives back at the end of a thread what it put aside.
struct Closing
{
    ~Closing()
    {
        isClosed = true;
        Clear(smallBlocks);
        Clear(largeBlocks);
    }
};

/// On the first block of its size that this thread frees. Without memory for the places the shelf stays unused.
void Open(Shelf & shelf) noexcept
{
    static thread_local const Closing closing;
    static_cast<void>(&closing);   // made here, so it is destroyed with the thread
    shelf.mBlocks = new (std::nothrow) void *[SHELF_LENGTH];
    shelf.mPlaces = shelf.mBlocks != nullptr ? SHELF_LENGTH : 0;
}

}   // namespace

void PutOnFullShelf(Shelf & shelf, void * memory) noexcept
{
    if (shelf.mBlocks == nullptr && !isClosed)
        Open(shelf);
    if (shelf.mBlocks != nullptr && shelf.mCount < shelf.mPlaces)
        shelf.mBlocks[shelf.mCount++] = memory;
    else
        ::operator delete(memory);
}

}   // namespace VrexZynConfigTools::payloadmemory
