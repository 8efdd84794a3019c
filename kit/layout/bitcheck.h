/// Which fields come back unchanged, by what is packed into each bit and unpacked from it. Internal.

#ifndef KIT_LAYOUT_BITCHECK_H
#define KIT_LAYOUT_BITCHECK_H

#include "field.h"

#include <vector>

namespace kit::layout {

/// Finds the loss of each field. `isOctets`: a last octet that only fills up a word is not there.
void CheckBits(const VrexZynConfigTools::CStructLayout & layout, bool isOctets, const std::vector<Cell> & cells,
    std::vector<Field> & fields);

}   // namespace kit::layout

#endif
