/// `Use` with a null address, which its contract lets pass.

#ifndef TESTS_SUPPORT_NULL_METADATA_REFERENCE_H
#define TESTS_SUPPORT_NULL_METADATA_REFERENCE_H

#include <configtools/payloads.h>

namespace VrexZynConfigTools::support {

/// The run-time checks of references are off here, because binding a null one is the point.
__attribute__((no_sanitize("null", "object-size"), noinline)) inline void UseNothing(IMetadataUser & user)
{
    const IMetadata * const nothing = nullptr;
    user.Use(*nothing);
}

}   // namespace VrexZynConfigTools::support

#endif
