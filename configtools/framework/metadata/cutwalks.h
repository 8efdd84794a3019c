/// What the walks over metadata that nest too deep share. Internal.

#ifndef CONFIGTOOLS_CUTWALKS_H
#define CONFIGTOOLS_CUTWALKS_H

#include <cstdint>

namespace VrexZynConfigTools {

/// How many structs were left out so far because the walk that came to them was cut off.
extern std::uint64_t structsLeftOut;

}   // namespace VrexZynConfigTools

#endif
