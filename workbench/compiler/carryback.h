/// Whether a struct comes back from a device as it went there.

#ifndef WORKBENCH_COMPILER_CARRYBACK_H
#define WORKBENCH_COMPILER_CARRYBACK_H

#include "source.h"

namespace workbench::compiler {

/// Warns of each field of a sound struct that the device format doesn't carry back unchanged, with an example.
void CheckCarriedBack(const Key & key, CSourceFindings & findings);

}   // namespace workbench::compiler

#endif
