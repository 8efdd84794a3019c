#include "repositorywriter.h"

#include "database.h"
#include "records.h"

#include <kit/metadataschema/schema.h>

namespace workbench::compiler {

namespace {

constexpr std::int64_t SYSTEM_ID = 1;

/// "INSERT INTO table VALUES (?, ...)" with a place for each column.
class CInsertion : public CStatement
{
public:
    CInsertion(CDatabase & database, const std::string & table, const std::string & columns)
        : CStatement(
              database, "INSERT INTO " + table + " (" + columns + ") VALUES (" + PlacesFor(columns) + ')')
    {}

private:
    static std::string PlacesFor(const std::string & columns)
    {
        std::string places = "?";
        for (const char character : columns)
            places += character == ',' ? ", ?" : "";
        return places;
    }
};

constexpr char RECORD_COLUMNS[] =
    "subsystem_id, uid, psid, name, label, category, is_internal, format, min, max, oid, internal_type, units, "
    "is_array, array_min_length, array_max_length, table_name, description, description_internal, "
    "source_reference, source_default, access_rights, temporality, hash, num_indices, metadata_type";

class CRepositoryWriter
{
public:
    CRepositoryWriter(CDatabase & database, const Defaults & defaults)
        : mDatabase(database)
        , mDefaults(defaults)
        , mRecords(database, "records", RECORD_COLUMNS)
        , mEnumerators(database, "enumerators", "record_id, name, value")
        , mStructs(database, "structs", "record_id, is_little_endian, is_octets_in_bin")
        , mFields(database, "struct_fields", "struct_id, position, record_id, lsb_position, bit_width")
        , mIndices(database, "table_indices", "key_id, position, name, min, max, index_type")
        , mIndexEnumerators(database, "index_enumerators", "key_id, position, name, value")
        , mRows(database, "default_rows", "key_id")
        , mRowIndices(database, "default_indices", "row_id, position, value")
        , mItems(database, "default_items", "row_id, position, value")
    {}

    void WriteSystem(const Source & source)
    {
        const System & system = source.mSystems.front();
        CInsertion(mDatabase, "systems", "id, name, description")
            .Bind(SYSTEM_ID)
            .Bind(system.mName.mValue)
            .Bind(system.mDescription)
            .Run();
        CInsertion chips(mDatabase, "chips",
            "system_id, chip_name, chip_id, rom_name, rom_version, efuse_hash, system_version_label, "
            "system_description, system_version, build_date");
        const auto orOf = [](const Placed<std::string> & own, const std::string & usual) {
            return own.mIsGiven ? own.mValue : usual;
        };
        for (const Chip & chip : source.mChips)
            chips.Bind(SYSTEM_ID)
                .Bind(chip.mName.mValue)
                .Bind(std::to_string(chip.mId.mValue))
                .Bind(chip.mRomName)
                .Bind(chip.mRomVersion)
                .Bind(chip.mFuses)
                .Bind(chip.mLabel.mValue)
                .Bind(orOf(chip.mDescription, system.mDescription))
                .Bind(orOf(chip.mVersion, system.mVersion))
                .Bind(orOf(chip.mBuildDate, system.mBuildDate))
                .Run();
    }

    void WriteSubsystems(const Source & source)
    {
        CInsertion subsystems(mDatabase, "subsystems",
            "system_id, name, version, alias, layer, description, build_date, variant");
        for (const Subsystem & subsystem : source.mSubsystems) {
            subsystems.Bind(SYSTEM_ID)
                .Bind(subsystem.mName.mValue)
                .Bind(subsystem.mVersion)
                .Bind(subsystem.mAlias.mValue)
                .Bind(subsystem.mLayer)
                .Bind(subsystem.mDescription)
                .Bind(subsystem.mBuildDate)
                .Bind(subsystem.mVariant)
                .Run();
            const std::int64_t id = mDatabase.LastRowId();
            for (const Key & key : subsystem.mKeys)
                WriteKey(id, key);
        }
    }

private:
    void WriteKey(std::int64_t subsystem, const Key & key)
    {
        mRecords.Bind(subsystem);
        const std::int64_t id = WriteRecord(key, key.mId.mValue, key.mIndices.size(), key.mOctets.mValue);
        std::int64_t position = 0;
        for (const Index & index : key.mIndices)
            WriteIndex(id, ++position, index);
        if (const auto rows = mDefaults.find(&key); rows != mDefaults.end())
            for (const DefaultRow & row : rows->second)
                WriteRow(id, row);
    }

    // Behind the subsystem, which is bound already.
    std::int64_t WriteRecord(const Item & item, std::int64_t psId, std::size_t indexCount, bool isOctets)
    {
        const auto record = MakeRecord(item, ++mUid, static_cast<std::uint32_t>(psId), indexCount);
        mRecords.Bind(record->Uid())
            .Bind(record->PsId())
            .Bind(record->Name())
            .Bind(record->Label())
            .Bind(record->Category())
            .Bind(record->IsInternal())
            .Bind(record->Format())
            .Bind(record->Min())
            .Bind(record->Max())
            .Bind(record->Oid())
            .Bind(record->InternalType())
            .Bind(record->Units())
            .Bind(record->IsArray())
            .Bind(record->ArrayMinLength())
            .Bind(record->ArrayMaxLength())
            .Bind(record->TableName())
            .Bind(record->Description())
            .Bind(record->DescriptionInternal())
            .Bind(record->SourceReference())
            .Bind(record->SourceDefault())
            .Bind(record->AccessRights())
            .Bind(record->Temporality())
            .Bind(record->Hash())
            .Bind(record->NumIndices())
            .Bind(record->MetadataType())
            .Run();
        const std::int64_t id = mDatabase.LastRowId();
        if (item.KindOf() == Kind::Structure)
            WriteStruct(id, *item.mLayout, isOctets);
        else if (item.KindOf() == Kind::Enumeration)
            for (const Enumerator & each : item.mValues.mValue)
                mEnumerators.Bind(id).Bind(each.mName).Bind(each.mNumber).Run();
        return id;
    }

    // A shared struct is written out where it is used: each of its fields has a record for each use.
    void WriteStruct(std::int64_t id, const Layout & layout, bool isOctets)
    {
        mStructs.Bind(id).Bind(layout.mLittleEndian.mValue).Bind(isOctets).Run();
        std::int64_t position = 0;
        for (const Field & field : layout.mFields) {
            mRecords.BindNull();
            const std::int64_t record = WriteRecord(field, 0, 0, false);
            mFields.Bind(id)
                .Bind(position++)
                .Bind(record)
                .Bind(field.mPosition.mValue)
                .Bind(field.mWidth.mValue)
                .Run();
        }
    }

    void WriteIndex(std::int64_t key, std::int64_t position, const Index & index)
    {
        NumberRange range = index.mRange.mValue;
        const Enumerators & enumerators = index.mValues.mValue;
        if (index.mValues.mIsGiven)
            range = { enumerators.front().mNumber, enumerators.front().mNumber };
        for (const Enumerator & each : enumerators) {
            range.mMin = std::min(range.mMin, CNumber(each.mNumber));
            range.mMax = std::max(range.mMax, CNumber(each.mNumber));
        }
        mIndices.Bind(key)
            .Bind(position)
            .Bind(index.mName.mValue)
            .Bind(range.mMin.SignedBits())
            .Bind(range.mMax.SignedBits())
            .Bind(index.mValues.mIsGiven)
            .Run();
        for (const Enumerator & each : enumerators)
            mIndexEnumerators.Bind(key).Bind(position).Bind(each.mName).Bind(each.mNumber).Run();
    }

    void WriteRow(std::int64_t key, const DefaultRow & row)
    {
        mRows.Bind(key).Run();
        const std::int64_t id = mDatabase.LastRowId();
        std::int64_t position = 0;
        for (const std::int64_t index : row.mIndices)
            mRowIndices.Bind(id).Bind(++position).Bind(index).Run();
        position = 0;
        for (const DefaultItem & item : row.mItems) {
            mItems.Bind(id).Bind(position++);
            if (const auto * number = std::get_if<std::int64_t>(&item))
                mItems.Bind(*number);
            else if (const auto * text = std::get_if<std::string>(&item))
                mItems.Bind(*text);
            else
                mItems.BindOctets(std::get<Octets>(item).mBytes);
            mItems.Run();
        }
    }

    CDatabase & mDatabase;
    const Defaults & mDefaults;
    CInsertion mRecords;
    CInsertion mEnumerators;
    CInsertion mStructs;
    CInsertion mFields;
    CInsertion mIndices;
    CInsertion mIndexEnumerators;
    CInsertion mRows;
    CInsertion mRowIndices;
    CInsertion mItems;
    int mUid = 0;
};

}   // namespace

std::string MakeRepository(const Source & source, const Defaults & defaults)
{
    CDatabase database;
    database.Execute(kit::metadataschema::SCHEMA_SQL);
    database.Execute("PRAGMA foreign_keys = ON; BEGIN");
    {
        CRepositoryWriter writer(database, defaults);
        writer.WriteSystem(source);
        writer.WriteSubsystems(source);
    }
    database.Execute("COMMIT");
    return database.Content();
}

}   // namespace workbench::compiler
