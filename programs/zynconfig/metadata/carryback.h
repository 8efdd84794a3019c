/// Whether a struct comes back from a device as it went there.

#ifndef ZYNCONFIG_METADATA_CARRYBACK_H
#define ZYNCONFIG_METADATA_CARRYBACK_H

#include "source.h"

namespace zynconfig::metadata {

/// Warns of each field of a sound struct that the device format doesn't carry back unchanged. Nothing is known here of
/// its rules: patterns are packed and unpacked by the library itself, and held against what comes back.
void CheckCarriedBack(const Key & key, CFindings & findings);

}   // namespace zynconfig::metadata

#endif
