/// Whether a struct comes back from a device as it went there.

#ifndef WORKBENCH_COMPILER_CARRYBACK_H
#define WORKBENCH_COMPILER_CARRYBACK_H

#include "source.h"

namespace workbench::compiler {

/// Warns of each field of a sound struct that the device format doesn't carry back unchanged. Nothing is known here of
/// its rules: patterns are packed and unpacked by the library itself, and held against what comes back.
void CheckCarriedBack(const Key & key, CSourceFindings & findings);

}   // namespace workbench::compiler

#endif
