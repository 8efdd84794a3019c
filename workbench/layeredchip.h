/// What `zynconfig show` tells, before it becomes a table or JSON text.

#ifndef WORKBENCH_LAYEREDCHIP_H
#define WORKBENCH_LAYEREDCHIP_H

#include "key.h"
#include "value.h"

#include <configtools/chipconfig.h>

#include <string>
#include <vector>

namespace workbench {

struct Layer
{
    int mNumber;
    Store mStore;
    std::vector<int> mSubsystems;   // types, ascending
};

struct LayeredValue
{
    int mLayer;   // 0 for none
    Store mStore;
    std::string mName;   // the key's in this layer
    Value mValue;
    bool mIsWinner;   // the value that holds
};

struct LayeredKey
{
    Key mKey;
    std::vector<LayeredValue> mValues;   // from the bottom layer up
};

struct LayeredChip
{
    std::string mLabel;
    std::vector<Layer> mLayers;      // from the bottom up
    std::vector<LayeredKey> mKeys;   // by subsystem, number and indices

    /// Keys of which no value wins although a layer has them.
    std::vector<Finding> mHidden;
};

/// Takes the chip's picture. Which value wins is the library's answer to a lookup from the topmost layer down, by the
/// text of the key's number and indices; where that finds nothing (a number above 2147483647), by its name, and then by
/// its plain number.
LayeredChip LayersAndWinners(const VrexZynConfigTools::CChipConfig & chip, const std::string & label);

}   // namespace workbench

#endif
