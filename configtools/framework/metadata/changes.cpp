#include "changes.h"

#include <configtools/metadata.h>

namespace VrexZynConfigTools {

constinit std::atomic<std::uint64_t> metadataChanges = 1;

void CChangeMark::CountChange() noexcept
{
    metadataChanges.fetch_add(1, std::memory_order_relaxed);
    // Nothing that is kept holds any more, so further changes need not count until this is read again.
    mIsMarked.store(false, std::memory_order_relaxed);
}

}   // namespace VrexZynConfigTools
