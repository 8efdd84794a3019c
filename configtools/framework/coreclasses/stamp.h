/// Numbers by which contexts recognise a chip's set of subsystems.

#ifndef CONFIGTOOLS_STAMP_H
#define CONFIGTOOLS_STAMP_H

#include <atomic>
#include <cstdint>

namespace VrexZynConfigTools {

/// A number that this process has not had yet, and never 0. Atomic: a context that knew the set of one chip would find
/// that chip's elements in another one of the same stamp, and chips may be made on separate threads.
inline std::uint64_t NewStamp()
{
    static constinit std::atomic<std::uint64_t> lastStamp = 0;
    return ++lastStamp;
}

}   // namespace VrexZynConfigTools

#endif
