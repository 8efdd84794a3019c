/// The default values of a system, as elements.

#ifndef SQLITEMETADATA_DEFAULTS_H
#define SQLITEMETADATA_DEFAULTS_H

#include "catalogue.h"
#include "database.h"
#include "defaultrow.h"

#include <configtools/elements.h>

#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace sqlitemetadata {

class CElementBuilder;
class CFindings;
class CRecords;

struct DefaultElement
{
    std::vector<std::uint32_t> mIndices;   // of a table row
    std::unique_ptr<VrexZynConfigTools::CElement> mElement;
};

struct SubsystemDefaults
{
    VrexZynConfigTools::SubSystemTypeEnum mType = VrexZynConfigTools::SUBSYSTEM_UNKNOWN;
    std::vector<DefaultElement> mElements;   // in ascending order of key numbers
};

/// Builds all of them before any of them is given to anybody, so that what is wrong is known in time.
class CDefaults
{
public:
    CDefaults(CDatabase & database, CRecords & records, CElementBuilder & builder, CFindings & findings);

    /// The subsystems in their order, those without any default value left out. What is wrong is found.
    std::vector<SubsystemDefaults> Of(const System & system);

private:
    struct Place
    {
        std::int64_t mRow;
        std::int64_t mKey;
    };

    std::vector<DefaultElement> Of(const Subsystem & subsystem);
    std::vector<Place> PlacesIn(const Subsystem & subsystem);
    void Add(std::vector<DefaultElement> & elements, const Place & place);
    DefaultRow RowAt(const Place & place);
    void CheckPosition(const Place & place, std::int64_t position, std::int64_t expected, const char * whose);
    bool IsFirst(const Place & place, const DefaultRow & row);

    CDatabase & mDatabase;
    CRecords & mRecords;
    CElementBuilder & mBuilder;
    CFindings & mFindings;
    std::set<std::pair<std::int64_t, std::vector<std::uint32_t>>> mSeen;   // keys with their indices
    CQuery mPlaces;
    CQuery mIndices;
    CQuery mItems;
};

}   // namespace sqlitemetadata

#endif
