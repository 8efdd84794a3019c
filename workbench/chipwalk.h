/// A walk over everything that a chip configuration holds.

#ifndef WORKBENCH_CHIPWALK_H
#define WORKBENCH_CHIPWALK_H

#include "key.h"

#include <configtools/chipconfig.h>
#include <configtools/subsystemconfig.h>

namespace workbench {

struct ChipEntry
{
    VrexZynConfigTools::CBaseContext * mContext;   // the subsystem's
    VrexZynConfigTools::CElement * mElement;       // the chip's
    Store mStore;
    Key mKey;
    int mLayer;   // 0 for none
};

/// Calls `visit(const ChipEntry &)` for every element, subsystem by subsystem, in order of arrival.
template <typename VisitorT>
void ForEachElement(const VrexZynConfigTools::CChipConfig & chip, VisitorT visit)
{
    for (const auto & [key, subsystem] : chip.Subsystems()) {
        if (subsystem == nullptr)
            continue;
        auto & context = subsystem->Context();
        const Store store = StoreOf(context);
        const int type = SubsystemOf(context);
        const int layer = LayerOf(context);
        for (auto * const element : subsystem->Elements()) {
            if (element != nullptr)
                visit(ChipEntry{ &context, element, store, KeyOf(*element, type), layer });
        }
    }
}

}   // namespace workbench

#endif
