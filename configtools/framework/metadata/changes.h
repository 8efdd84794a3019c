/// What was worked out from records and details and is kept, and how it is known to hold still. Internal.

#ifndef CONFIGTOOLS_METADATA_CHANGES_H
#define CONFIGTOOLS_METADATA_CHANGES_H

#include <atomic>
#include <cstdint>

namespace VrexZynConfigTools {

/// Something worked out from a detail and owned by it. The detail deletes it without knowing what it is.
class CKeptWork
{
public:
    CKeptWork() = default;
    CKeptWork(const CKeptWork &) = delete;
    CKeptWork & operator=(const CKeptWork &) = delete;
    virtual ~CKeptWork() = default;
};

/// How often something marked has changed or ended, in the whole process. Relaxed: whoever changes a record has to
/// keep other threads from reading it, and so orders this too. It begins above 0, which stands for never.
extern constinit std::atomic<std::uint64_t> metadataChanges;

}   // namespace VrexZynConfigTools

#endif
