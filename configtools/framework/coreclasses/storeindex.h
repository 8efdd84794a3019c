/// Finds the subsystem of a store, type and device as a walk over all subsystems would, without the walk.

#ifndef CONFIGTOOLS_STOREINDEX_H
#define CONFIGTOOLS_STOREINDEX_H

#include <map>
#include <memory>
#include <string>

namespace VrexZynConfigTools {

class CSubsystemConfig;
class IConfigContext;

/// The tags of a subsystem that say where it lies.
struct CPlaceTags
{
    std::string mStore;
    std::string mType;
    std::string mDevice;
};

CPlaceTags PlaceTagsOf(IConfigContext & context);

/// Stands beside a chip's map of subsystems. Numbers are found in the index, and everything else by the walk: texts are
/// compared without case, which is a matter of the locale, and contexts of foreign classes match in ways of their own.
class CStoreIndex
{
public:
    using Subsystems = std::map<std::string, CSubsystemConfig *>;

    /// The first subsystem, in the order of the map, whose context matches these tags; null if there is none.
    CSubsystemConfig * Find(const Subsystems & subsystems, const CPlaceTags & wanted);

    /// Reports that `subsystem` was put into the map.
    void Add(CSubsystemConfig & subsystem);

    /// Reports that the map has changed in any other way.
    void Invalidate() noexcept { *mIsStale = true; }

private:
    void Rebuild(const Subsystems & subsystems);

    std::map<std::string, CSubsystemConfig *>
        mByPlace;               // of several with one place the first in the chip's map
    bool mHasForeign = false;   // there is a context of a foreign class

    // A subsystem's place has changed, or the map, since the index was made. The contexts set it, and those of subsystems
    // that the chip has dropped outlive the chip.
    std::shared_ptr<bool> mIsStale = std::make_shared<bool>(false);
};

}   // namespace VrexZynConfigTools

#endif
