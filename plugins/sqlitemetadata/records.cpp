#include "records.h"

#include <kit/reporting/advice.h>

#include <iterator>

namespace sqlitemetadata {

using namespace VrexZynConfigTools;

namespace {

/// How many structs may lie within one another; the library goes no deeper.
constexpr int MAX_NESTING = 64;

}   // namespace

CRecords::CRecords(CDatabase & database, RecordShelf & shelf)
    : mDatabase(database)
    , mShelf(shelf)
    , mIdByNumber(database, "SELECT id FROM records WHERE subsystem_id = ? AND psid = ?")
    , mIdByName(database, "SELECT id FROM records WHERE subsystem_id = ? AND name = ?")
    , mIds(database, "SELECT id FROM records WHERE subsystem_id = ? ORDER BY psid")
    , mNames(database, "SELECT name FROM records WHERE subsystem_id = ? ORDER BY psid")
    , mRecord(database,
          "SELECT uid, psid, name, label, category, is_internal, format, min, max, oid, internal_type, units,"
          " is_array, array_min_length, array_max_length, table_name, description, description_internal,"
          " source_reference, source_default, access_rights, temporality, hash, num_indices, metadata_type"
          " FROM records WHERE id = ?")
    , mEnumerators(database, "SELECT name, value FROM enumerators WHERE record_id = ?")
    , mLayout(database, "SELECT is_little_endian, is_octets_in_bin FROM structs WHERE record_id = ?")
    , mFields(database,
          "SELECT record_id, lsb_position, bit_width FROM struct_fields WHERE struct_id = ? ORDER BY position")
    , mIndices(database,
          "SELECT position, name, min, max, index_type FROM table_indices WHERE key_id = ? ORDER BY position")
    , mIndexEnumerators(database, "SELECT name, value FROM index_enumerators WHERE key_id = ? AND position = ?")
{}

std::optional<std::int64_t> CRecords::IdOf(std::int64_t subsystem, std::uint32_t psId)
{
    if (!mIdByNumber.Ask(subsystem, std::int64_t{ psId }).Next())
        return std::nullopt;
    return mIdByNumber.Number(0);
}

std::optional<std::int64_t> CRecords::IdOf(std::int64_t subsystem, const std::string & name)
{
    if (!mIdByName.Ask(subsystem, name).Next())
        return std::nullopt;
    return mIdByName.Number(0);
}

std::vector<std::int64_t> CRecords::IdsOf(std::int64_t subsystem)
{
    std::vector<std::int64_t> ids;
    for (mIds.Ask(subsystem); mIds.Next();)
        ids.push_back(mIds.Number(0));
    return ids;
}

std::vector<std::string> CRecords::NamesOf(std::int64_t subsystem)
{
    std::vector<std::string> names;
    for (mNames.Ask(subsystem); mNames.Next();)
        names.push_back(mNames.Text(0));
    return names;
}

const CMetadata * CRecords::Key(std::int64_t id)
{
    const auto known = mKeys.find(id);
    if (known != mKeys.end())
        return known->second;
    mParts.clear();   // of a key that could not be built
    CMetadata * const key = Build(id, 0);
    if (key == nullptr)
        return nullptr;
    AddIndices(*key, id);
    // Once, from the outermost struct: the operation looks after the structs within by itself.
    if (auto * const layout = dynamic_cast<CMetadataDetailStruct *>(key->Details()))
        layout->OrderFieldsForTargetArchitecture();
    if (mDatabase.IsFaulty()) {
        mDatabase.SetPlace("key " + std::to_string(key->PsId()) + ' ' + kit::reporting::Quoted(key->Name()));
        return nullptr;
    }
    mShelf.insert(mShelf.end(), std::make_move_iterator(mParts.begin()), std::make_move_iterator(mParts.end()));
    mKeys.emplace(id, key);
    mParts.clear();
    return key;
}

// A record with all that it holds, which mParts owns. Never incomplete but with a fault; then null or unusable.
CMetadata * CRecords::Build(std::int64_t id, int depth)
{
    std::unique_ptr<CMetadata> built = ReadRecord(id);
    if (built == nullptr)
        return nullptr;
    CMetadata & record = *built;
    mParts.push_back(std::move(built));
    AddDetails(record, id, depth);
    return &record;
}

std::unique_ptr<CMetadata> CRecords::ReadRecord(std::int64_t id)
{
    CQuery & row = mRecord.Ask(id);
    if (!row.Next()) {
        mDatabase.SetFault("the record " + std::to_string(id) + " is missing");
        return nullptr;
    }
    return std::make_unique<CMetadata>(static_cast<int>(row.Number(0)),
        static_cast<std::uint32_t>(row.Number(1)), row.Text(2), row.Text(3), row.Text(4), row.Number(5) != 0,
        row.Text(6), row.Number(7), row.Number(8), row.Text(9), row.Text(10), row.Text(11), row.Number(12) != 0,
        row.Number(13), row.Number(14), row.Text(15), row.Text(16), row.Text(17), row.Text(18), row.Text(19),
        row.Text(20), row.Text(21), row.Text(22), static_cast<std::uint32_t>(row.Number(23)),
        static_cast<MetadataTypeEnum>(row.Number(24)));
}

void CRecords::AddDetails(CMetadata & record, std::int64_t id, int depth)
{
    switch (record.MetadataType()) {
    case METADATA_STRUCT:
        return AddStruct(record, id, depth + 1);
    case METADATA_ENUM:
        return AddEnumeration(record, id);
    default:
        record.SetDetails(*new CMetadataDetailSimple(record));
    }
}

void CRecords::AddEnumeration(CMetadata & record, std::int64_t id)
{
    auto * const enumeration = new CMetadataDetailEnum(record);
    record.SetDetails(*enumeration);
    for (mEnumerators.Ask(id); mEnumerators.Next();)
        enumeration->AddEnum(mEnumerators.Text(0), mEnumerators.Text(1));
}

void CRecords::AddStruct(CMetadata & record, std::int64_t id, int depth)
{
    if (depth > MAX_NESTING)
        return mDatabase.SetFault(
            "more than " + std::to_string(MAX_NESTING) + " structs lie within one another");
    if (!mLayout.Ask(id).Next())
        return mDatabase.SetFault("the struct " + kit::reporting::Quoted(record.Name()) + " has no layout");
    auto * const layout = new CMetadataDetailStruct(record, mLayout.Number(0) != 0, mLayout.Number(1) != 0);
    record.SetDetails(*layout);
    for (const Field & field : FieldsOf(id)) {   // all of them first: a field may be a struct and ask the same
        const CMetadata * const part = Build(field.mId, depth);
        if (part == nullptr)
            return;
        layout->AddField(part->Name(), part, field.mPosition, field.mWidth);
    }
}

std::vector<CRecords::Field> CRecords::FieldsOf(std::int64_t id)
{
    std::vector<Field> fields;
    for (mFields.Ask(id); mFields.Next();)
        fields.push_back(
            { mFields.Number(0), static_cast<int>(mFields.Number(1)), static_cast<int>(mFields.Number(2)) });
    return fields;
}

void CRecords::AddIndices(CMetadata & record, std::int64_t id)
{
    for (mIndices.Ask(id); mIndices.Next();) {
        const auto type = static_cast<CTableIndex::IndexTypeEnum>(mIndices.Number(4));
        auto index =
            std::make_unique<CTableIndex>(mIndices.Text(1), mIndices.Number(2), mIndices.Number(3), type);
        AddIndexEnumerators(*index, id, mIndices.Number(0));
        record.AddTableIndex(index.get());
        index.release();   // the record owns it now
    }
}

void CRecords::AddIndexEnumerators(CTableIndex & index, std::int64_t id, std::int64_t position)
{
    for (mIndexEnumerators.Ask(id, position); mIndexEnumerators.Next();)
        index.AddEnum(mIndexEnumerators.Text(0), static_cast<std::int32_t>(mIndexEnumerators.Number(1)));
}

}   // namespace sqlitemetadata
