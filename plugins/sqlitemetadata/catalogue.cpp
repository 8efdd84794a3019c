#include "catalogue.h"

#include "database.h"

#include <configtools/keywords.h>

#include <algorithm>

namespace sqlitemetadata {

using namespace VrexZynConfigTools;

namespace {

bool HasChip(const System & system, const std::string & label)
{
    return std::any_of(system.mChips.begin(), system.mChips.end(),
        [&label](const auto & chip) { return chip->SystemVersionLabel() == label; });
}

}   // namespace

bool CCatalogue::Load(CDatabase & database)
{
    return LoadSystems(database) && LoadChips(database) && LoadSubsystems(database);
}

bool CCatalogue::LoadSystems(CDatabase & database)
{
    CQuery query(database, "SELECT id, name FROM systems ORDER BY id");
    for (query.Ask(); query.Next();) {
        System & system = mSystems.emplace_back();
        system.mId = query.Number(0);
        system.mName = query.Text(1);
    }
    return !database.IsFaulty();
}

bool CCatalogue::LoadChips(CDatabase & database)
{
    CQuery query(database,
        "SELECT system_id, chip_name, chip_id, rom_name, rom_version, efuse_hash, system_version_label,"
        " system_description, system_version, build_date FROM chips ORDER BY id");
    for (query.Ask(); query.Next();) {
        if (System * const system = SystemWithId(query.Number(0)))
            system->mChips.push_back(std::make_unique<CChipInfo>(query.Text(1), query.Text(2), query.Text(3),
                query.Text(4), query.Text(5), query.Text(6), query.Text(7), query.Text(8), query.Text(9)));
    }
    return !database.IsFaulty();
}

bool CCatalogue::LoadSubsystems(CDatabase & database)
{
    CQuery query(database, "SELECT system_id, id, name, version, alias, layer, variant, description, build_date"
                           " FROM subsystems ORDER BY id");
    for (query.Ask(); query.Next();) {
        System * const system = SystemWithId(query.Number(0));
        if (system == nullptr)
            continue;
        Subsystem & subsystem = system->mSubsystems.emplace_back();
        subsystem.mId = query.Number(1);
        subsystem.mType = CSubsystemInfo::GetSubsystemType(query.Text(2));
        subsystem.mInfo = std::make_unique<CSubsystemInfo>(query.Text(2), query.Text(3), query.Text(4),
            query.Text(5), query.Text(6), query.Text(7), query.Text(8));
    }
    return !database.IsFaulty();
}

System * CCatalogue::SystemWithId(std::int64_t id)
{
    const auto found = std::lower_bound(mSystems.begin(), mSystems.end(), id,
        [](const System & system, std::int64_t wanted) { return system.mId < wanted; });
    return found != mSystems.end() && found->mId == id ? &*found : nullptr;
}

std::vector<const System *> CCatalogue::SelectedSystems(IConfigContext & context) const
{
    const std::string label = context.GetTag(keywords::TAG_CHIP);
    std::vector<const System *> selected;
    for (const System & system : mSystems)
        if (label.empty() || HasChip(system, label))
            selected.push_back(&system);
    return selected;
}

std::vector<const Subsystem *> CCatalogue::SelectedSubsystems(IConfigContext & context) const
{
    const bool isOfAnyType = context.GetTag(keywords::TAG_SUBSYSTEM_TYPE).empty();
    std::vector<const Subsystem *> selected;
    for (const System * const system : SelectedSystems(context))
        for (const Subsystem & subsystem : system->mSubsystems)
            if (isOfAnyType || context.TagMatches(keywords::TAG_SUBSYSTEM_TYPE, int{ subsystem.mType }))
                selected.push_back(&subsystem);
    return selected;
}

}   // namespace sqlitemetadata
