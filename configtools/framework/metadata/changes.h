/// How it is known that something worked out from records and details still holds. Internal.

#ifndef CONFIGTOOLS_METADATA_CHANGES_H
#define CONFIGTOOLS_METADATA_CHANGES_H

#include <atomic>
#include <cstdint>

namespace VrexZynConfigTools {

/// How often a record or a detail has changed or ended, in the whole process. It begins above 0, which stands for never.
/// Atomic, so that no two changes share a number even if they are made on several threads.
extern std::atomic<std::uint64_t> metadataChanges;

}   // namespace VrexZynConfigTools

#endif
