/// Writes what a session has read, completely or what wins.

#ifndef WORKBENCH_CONVERSION_H
#define WORKBENCH_CONVERSION_H

#include "session.h"

#include <optional>

namespace workbench {

/// The highest layer; of a filter also the lowest number, negated.
inline constexpr int TOP_LAYER = 15;

/// Writes the chip of the session to `output`. Without a filter every store with every key; with one each key once:
/// from the highest layer up to N (1 to 15) that has it, or with -N from the lowest.
///
/// Nothing is written unless all of it can be: a value without a layer, a key that a writer passes over and, with a
/// filter, keys that can't be told apart are findings, and the former output remains. A filter needs the layer of each
/// store, which is known only after a read, so the files are read twice then: they can't be pipes.
bool Convert(CSession & session, const ConfigFile & output, std::optional<int> layerFilter = std::nullopt);

}   // namespace workbench

#endif
