/// The default values of a system, as elements.

#ifndef SQLITEMETADATA_DEFAULTS_H
#define SQLITEMETADATA_DEFAULTS_H

#include "catalogue.h"
#include "database.h"
#include "defaultrow.h"

#include <kit/reading/filereader.h>
#include <kit/reporting/findings.h>

#include <cstdint>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace sqlitemetadata {

class CElementBuilder;
class CRecords;

/// Builds all of them before any of them is given to anybody, so that what is wrong is known in time.
class CDefaults
{
public:
    CDefaults(CDatabase & database, CRecords & records, CElementBuilder & builder,
        kit::reporting::CFindings & findings);

    /// The subsystems in their order, in layer 0 of no store, with their keys in ascending order of numbers. Those without
    /// any default value are left out.
    std::vector<kit::reading::Subsystem> Of(const System & system);

private:
    struct Place
    {
        std::int64_t mRow;
        std::int64_t mKey;
    };

    std::vector<kit::reading::Key> Of(const Subsystem & subsystem);
    std::vector<Place> PlacesIn(const Subsystem & subsystem);
    void Add(std::vector<kit::reading::Key> & keys, const Place & place);
    void AddFault();
    DefaultRow RowAt(const Place & place);
    void CheckPosition(const Place & place, std::int64_t position, std::int64_t expected, const char * whose);
    bool IsFirst(const Place & place, const DefaultRow & row);

    CDatabase & mDatabase;
    CRecords & mRecords;
    CElementBuilder & mBuilder;
    kit::reporting::CFindings & mFindings;
    std::set<std::pair<std::int64_t, std::vector<std::uint32_t>>> mSeen;   // keys with their indices
    CQuery mPlaces;
    CQuery mIndices;
    CQuery mItems;
};

}   // namespace sqlitemetadata

#endif
