/// A walk over everything that a chip configuration holds.
///
///     std::size_t values = 0;
///     workbench::ForEachElement(session.Chip(), [&](const workbench::ChipEntry &) { ++values; });
///
/// The chip must not be changed during the walk.

#ifndef WORKBENCH_CHIPWALK_H
#define WORKBENCH_CHIPWALK_H

#include "key.h"

#include <configtools/chipconfig.h>
#include <configtools/subsystemconfig.h>

namespace workbench {

/// An element and where it is. Valid as long as the chip has the element.
struct ChipEntry
{
    /// The context of the element's subsystem, which the chip owns.
    VrexZynConfigTools::CBaseContext * mContext;

    /// Never null; the chip owns it.
    VrexZynConfigTools::CElement * mElement;

    Store mStore;
    Key mKey;

    /// 0 for a store without a layer.
    int mLayer;
};

/// Calls `visit(const ChipEntry &)` for every element, subsystem by subsystem, in order of arrival. A subsystem is the
/// part of one store that belongs to one subsystem type.
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
