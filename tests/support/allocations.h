/// Counts what is allocated by `new`, and makes it fail on demand. A test that uses this lists allocations.cpp among
/// its sources, which replaces the operators of the whole program, the library included.

#ifndef TESTS_SUPPORT_ALLOCATIONS_H
#define TESTS_SUPPORT_ALLOCATIONS_H

#include <cstdint>
#include <new>

namespace VrexZynConfigTools::support {

/// All allocations since the program began.
std::uint64_t AllocationCount();

/// The bytes that are allocated now.
std::uint64_t AllocatedBytes();

/// Lets `count` allocations pass and every later one fail, until `LetAllocationsPass`.
void FailAllocationsAfter(std::uint64_t count);
void LetAllocationsPass();

/// Makes each allocation of `size` bytes and more fail, until `LetAllocationsPass`.
void FailLargeAllocations(std::uint64_t size);

/// Calls `act` with 0, 1, 2, ... allocations granted until it succeeds, and `check` after each failure.
/// Returns the number of failures.
template <typename ActT, typename CheckT>
std::uint64_t FailEachAllocation(ActT act, CheckT check)
{
    for (std::uint64_t granted = 0;; ++granted) {
        try {
            FailAllocationsAfter(granted);
            act();
            LetAllocationsPass();
            return granted;
        } catch (const std::bad_alloc &) {
            LetAllocationsPass();
            check();
        }
    }
}

}   // namespace VrexZynConfigTools::support

#endif
