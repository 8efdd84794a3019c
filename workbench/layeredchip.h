/// Layers and winners: of each key every layer's value, and which of them the library answers with.
///
///     const workbench::LayeredChip chip = workbench::LayersAndWinners(session.Chip(), session.Watch().Chip());
///     for (const workbench::LayeredKey & key : chip.mKeys)
///         Show(key.mKey, key.mValues.back());
///
/// Everything here is a copy: it stays as it is when the session reads again or ends.

#ifndef WORKBENCH_LAYEREDCHIP_H
#define WORKBENCH_LAYEREDCHIP_H

#include "key.h"
#include "value.h"

#include <configtools/chipconfig.h>

#include <string>
#include <vector>

namespace workbench {

/// A store with its place in the stack.
struct Layer
{
    /// From 1 for the bottom layer.
    int mNumber;

    Store mStore;

    /// The types of the subsystems that have keys there, ascending.
    std::vector<int> mSubsystems;
};

/// What one store has for a key.
struct LayeredValue
{
    /// 0 for a store without a layer; nothing wins there.
    int mLayer;

    Store mStore;

    /// The name of the key in this layer, which may differ from that in another.
    std::string mName;

    Value mValue;

    /// Whether this is the value that applies: at most one of a key.
    bool mIsWinner;
};

/// A key with all its values.
struct LayeredKey
{
    Key mKey;

    /// From the bottom layer up, those without a layer first. Never empty.
    std::vector<LayeredValue> mValues;
};

/// All of a chip.
struct LayeredChip
{
    /// The chip's label as the files have it.
    std::string mLabel;

    /// From the bottom up.
    std::vector<Layer> mLayers;

    /// By subsystem, number and indices.
    std::vector<LayeredKey> mKeys;

    /// Keys of which no value wins although a layer has them ("no-winner").
    std::vector<Finding> mHidden;
};

/// Which value wins is the library's answer to a lookup from the topmost layer down, by the text of the key's number
/// and indices; where that finds nothing (a number above 2147483647), by its name, and then by its plain number.
LayeredChip LayersAndWinners(const VrexZynConfigTools::CChipConfig & chip, const std::string & label);

}   // namespace workbench

#endif
