/// The records of keys, built out of a repository when they are first asked for.

#ifndef SQLITEMETADATA_RECORDS_H
#define SQLITEMETADATA_RECORDS_H

#include "database.h"

#include <configtools/metadata.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace sqlitemetadata {

/// What owns records, those of struct fields too: they are pointed at, and so never moved, copied or given up.
using RecordShelf = std::vector<std::unique_ptr<VrexZynConfigTools::CMetadata>>;

class CRecords
{
public:
    /// What is built goes to `shelf`, which must outlive its use.
    CRecords(CDatabase & database, RecordShelf & shelf);

    /// The finished record of the key in this row of the table "records"; null with a fault of the database.
    const VrexZynConfigTools::CMetadata * Key(std::int64_t id);

    /// The ids of the rows: of a subsystem's key with a number or a name, and of all of its keys.
    std::optional<std::int64_t> IdOf(std::int64_t subsystem, std::uint32_t psId);
    std::optional<std::int64_t> IdOf(std::int64_t subsystem, const std::string & name);
    std::vector<std::int64_t> IdsOf(std::int64_t subsystem);

    /// Their names, in the same order.
    std::vector<std::string> NamesOf(std::int64_t subsystem);

private:
    struct Field
    {
        std::int64_t mId;
        int mPosition;
        int mWidth;
    };

    VrexZynConfigTools::CMetadata * Build(std::int64_t id, int depth);
    std::unique_ptr<VrexZynConfigTools::CMetadata> ReadRecord(std::int64_t id);
    void AddDetails(VrexZynConfigTools::CMetadata & record, std::int64_t id, int depth);
    void AddEnumeration(VrexZynConfigTools::CMetadata & record, std::int64_t id);
    void AddStruct(VrexZynConfigTools::CMetadata & record, std::int64_t id, int depth);
    std::vector<Field> FieldsOf(std::int64_t id);
    void AddIndices(VrexZynConfigTools::CMetadata & record, std::int64_t id);
    void AddIndexEnumerators(VrexZynConfigTools::CTableIndex & index, std::int64_t id, std::int64_t position);

    CDatabase & mDatabase;
    RecordShelf & mShelf;
    std::unordered_map<std::int64_t, const VrexZynConfigTools::CMetadata *> mKeys;   // built already, by row
    RecordShelf mParts;   // of the key that is being built

    CQuery mIdByNumber;
    CQuery mIdByName;
    CQuery mIds;
    CQuery mNames;
    CQuery mRecord;
    CQuery mEnumerators;
    CQuery mLayout;
    CQuery mFields;
    CQuery mIndices;
    CQuery mIndexEnumerators;
};

}   // namespace sqlitemetadata

#endif
