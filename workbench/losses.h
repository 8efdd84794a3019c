/// What the library, by contract and without a word, leaves out: found here, so that a program can report it.
///
///     const std::vector<workbench::Finding> lost = workbench::LossesOfRead(session.Chip(), session.Watch());
///
/// Of one kind of loss the first 20 are described, and a last finding ("more-findings") says how many more there are.

#ifndef WORKBENCH_LOSSES_H
#define WORKBENCH_LOSSES_H

#include "finding.h"
#include "readwatch.h"

#include <configtools/chipconfig.h>

#include <cstddef>
#include <optional>
#include <vector>

namespace workbench {

/// What was read and has no layer ("store-without-layer", "too-many-stores"), isn't in the chip any more ("lost-key",
/// "duplicate-key"), or has more indices than the library sorts rightly ("lost-index-order").
std::vector<Finding> LossesOfRead(const VrexZynConfigTools::CChipConfig & chip, const CReadWatch & watch);

/// What a full write passes over: keys of the number 0 ("unwritable-key"), all texts of a string but its first
/// ("several-texts").
std::vector<Finding> LossesOfWrite(const VrexZynConfigTools::CChipConfig & chip);

/// How many values go out in a write that has no such loss: all of them, or with a filter of the layers up to
/// `highest` one for each key. Compared with what a writer was given, it shows a loss that nobody has thought of.
std::size_t CountToWrite(const VrexZynConfigTools::CChipConfig & chip, std::optional<int> highest);

/// What a filtered write of the layers up to `highest` can't distinguish, since it knows a key by its text alone: two
/// keys of one name, one key of two names, a key twice in a store ("ambiguous-in-filter"), and "several-texts".
std::vector<Finding> LossesOfFilteredWrite(const VrexZynConfigTools::CChipConfig & chip, int highest);

}   // namespace workbench

#endif
