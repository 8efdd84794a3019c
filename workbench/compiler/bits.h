/// The bits that the fields of a struct take on a device.

#ifndef WORKBENCH_COMPILER_BITS_H
#define WORKBENCH_COMPILER_BITS_H

#include "source.h"

#include <cstdint>

namespace workbench::compiler {

/// The size of a struct in bits, as the device format counts it: the largest end of a field.
std::int64_t SizeOf(const Layout & layout);

/// Fields that share bits, and fields outside the struct. Fields that aren't sound are left out.
void CheckBits(const Layout & layout, CSourceFindings & findings);

}   // namespace workbench::compiler

#endif
