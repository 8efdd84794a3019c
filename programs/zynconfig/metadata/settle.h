/// Settles what follows from what the sources tell: types, ranges, widths and sizes. On the way it checks every key and
/// field by itself, and the bits of every struct.

#ifndef ZYNCONFIG_METADATA_SETTLE_H
#define ZYNCONFIG_METADATA_SETTLE_H

#include "source.h"

namespace zynconfig::metadata {

void Settle(Source & source, CFindings & findings);

}   // namespace zynconfig::metadata

#endif
