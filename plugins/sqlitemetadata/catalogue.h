/// The systems of a repository with their chips and subsystems: what a context selects.

#ifndef SQLITEMETADATA_CATALOGUE_H
#define SQLITEMETADATA_CATALOGUE_H

#include <configtools/context.h>
#include <configtools/metadataprovider.h>
#include <configtools/types.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace sqlitemetadata {

class CDatabase;

struct Subsystem
{
    std::int64_t mId = 0;   // of its row
    VrexZynConfigTools::SubSystemTypeEnum mType = VrexZynConfigTools::SUBSYSTEM_UNKNOWN;
    std::unique_ptr<VrexZynConfigTools::CSubsystemInfo> mInfo;
};

struct System
{
    std::int64_t mId = 0;   // of its row
    std::string mName;
    std::vector<std::unique_ptr<VrexZynConfigTools::CChipInfo>> mChips;
    std::vector<Subsystem> mSubsystems;
};

class CCatalogue
{
public:
    /// False with a fault of the database.
    bool Load(CDatabase & database);

    const std::vector<System> & Systems() const { return mSystems; }

    /// The systems that the tag "chip" selects: the one with a chip of this label, or without the tag all.
    std::vector<const System *> SelectedSystems(VrexZynConfigTools::IConfigContext & context) const;

    /// Their subsystems, narrowed by the tag "subsystemtype".
    std::vector<const Subsystem *> SelectedSubsystems(VrexZynConfigTools::IConfigContext & context) const;

private:
    bool LoadSystems(CDatabase & database);
    bool LoadChips(CDatabase & database);
    bool LoadSubsystems(CDatabase & database);
    System * SystemWithId(std::int64_t id);

    std::vector<System> mSystems;   // in ascending order of id, as are the lists in them
};

}   // namespace sqlitemetadata

#endif
