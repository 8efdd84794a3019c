/// What the library, by contract and without a word, leaves out: found here, so that a program can report it.

#ifndef WORKBENCH_LOSSES_H
#define WORKBENCH_LOSSES_H

#include "finding.h"
#include "readwatch.h"

#include <configtools/chipconfig.h>

#include <cstddef>
#include <optional>
#include <vector>

namespace workbench {

/// What was read and has no layer, or isn't in the chip any more.
std::vector<Finding> LossesOfRead(const VrexZynConfigTools::CChipConfig & chip, const CReadWatch & watch);

/// What a full write passes over.
std::vector<Finding> LossesOfWrite(const VrexZynConfigTools::CChipConfig & chip);

/// How many values a write has to bring out that has no such loss: all of them, or with a filter of the layers up to
/// `highest` one for each key.
std::size_t CountToWrite(const VrexZynConfigTools::CChipConfig & chip, std::optional<int> highest);

/// What a filtered write of the layers up to `highest` can't tell apart: it knows a key by its text alone.
std::vector<Finding> LossesOfFilteredWrite(const VrexZynConfigTools::CChipConfig & chip, int highest);

}   // namespace workbench

#endif
