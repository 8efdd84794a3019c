/// The order in which a chip configuration writes its subsystems: by type, then by layer.

#ifndef CONFIGTOOLS_SUBSYSTEMORDER_H
#define CONFIGTOOLS_SUBSYSTEMORDER_H

#include <cstdint>
#include <string>

namespace VrexZynConfigTools {

/// The sort number of a by-layer subsystem key: chip, blank, type, layer. Several "|" in a row count as one. A field
/// that is no number counts as what can be read of it, 0 for a blank. Keys of six fields are served too; others, among
/// them by-store keys, get a number without a meaning.
std::uint32_t SubsysToInt(const std::string & key);

/// Whether `a` is written before `b`.
bool SubsystemComparer(const std::string & a, const std::string & b);

}   // namespace VrexZynConfigTools

#endif
