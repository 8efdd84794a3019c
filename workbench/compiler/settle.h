/// Settles what follows from what the sources tell: types, ranges, widths and sizes. On the way it checks every key and
/// field by itself, and the bits of every struct.

#ifndef WORKBENCH_COMPILER_SETTLE_H
#define WORKBENCH_COMPILER_SETTLE_H

#include "source.h"

namespace workbench::compiler {

void Settle(Source & source, CSourceFindings & findings);

}   // namespace workbench::compiler

#endif
