/// Writes metadata repositories for tests, by plain SQL on the schema.
///
///     RepositoryBuilder repository(path);
///     const auto bt = repository.AddSubsystem(repository.AddSystem("pottersong", "trindle7"), "bt");
///     repository.AddKey(bt, { .psid = 100, .name = "volume", .max = 9 });
///     repository.Close();

#ifndef TESTS_SQLITEMETADATA_REPOSITORY_BUILDER_H
#define TESTS_SQLITEMETADATA_REPOSITORY_BUILDER_H

#include <kit/metadataschema/schema.h>

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace VrexZynConfigTools::support {

/// A row of the table "records".
struct RecordRow
{
    std::int64_t psid = 0;
    std::string name = "unnamed";
    std::string internalType = "uint8";
    std::int64_t min = 0;
    std::int64_t max = 255;
    std::string format = "";
    bool isArray = false;
    std::int64_t arrayMinLength = 0;
    std::int64_t arrayMaxLength = 0;
    int numIndices = 0;
    int metadataType = 0;
};

using Enumerators = std::vector<std::pair<std::string, int>>;

class RepositoryBuilder
{
public:
    using Id = std::int64_t;

    explicit RepositoryBuilder(const std::string & path, int pageSize = 4096)
    {
        EXPECT_EQ(SQLITE_OK, sqlite3_open(path.c_str(), &mDatabase));
        Run("PRAGMA page_size = " + std::to_string(pageSize) +
            "; PRAGMA synchronous = OFF; PRAGMA journal_mode = MEMORY;");
        Run(kit::metadataschema::SCHEMA_SQL);
        Run("BEGIN; PRAGMA foreign_keys = ON");
    }
    ~RepositoryBuilder() { Close(); }
    RepositoryBuilder(const RepositoryBuilder &) = delete;
    RepositoryBuilder & operator=(const RepositoryBuilder &) = delete;

    void Close()
    {
        if (mDatabase == nullptr)
            return;
        if (sqlite3_get_autocommit(mDatabase) == 0)
            Run("COMMIT");
        EXPECT_EQ(SQLITE_OK, sqlite3_close(mDatabase));
        mDatabase = nullptr;
    }

    /// From here on constraints that the schema states are not kept.
    void BeLawless() { Run("COMMIT; PRAGMA foreign_keys = OFF; PRAGMA ignore_check_constraints = ON; BEGIN"); }

    void Run(const std::string & sql)
    {
        char * error = nullptr;
        EXPECT_EQ(SQLITE_OK, sqlite3_exec(mDatabase, sql.c_str(), nullptr, nullptr, &error)) << error << '\n'
                                                                                             << sql;
        sqlite3_free(error);
    }

    Id Insert(const std::string & sql)
    {
        Run("INSERT INTO " + sql);
        return sqlite3_last_insert_rowid(mDatabase);
    }

    Id AddSystem(const std::string & name, const std::string & label)
    {
        const Id system = Insert("systems (name) VALUES (" + Text(name) + ")");
        AddChip(system, label);
        return system;
    }

    Id AddChip(Id system, const std::string & label)
    {
        return Insert("chips (system_id, chip_id, system_version_label) VALUES (" + std::to_string(system) +
                      ", '4660', " + Text(label) + ")");
    }

    Id AddSubsystem(Id system, const std::string & name, const std::string & alias = "")
    {
        return Insert("subsystems (system_id, name, alias) VALUES (" + std::to_string(system) + ", " +
                      Text(name) + ", " + Text(alias) + ")");
    }

    Id AddKey(Id subsystem, const RecordRow & row) { return AddRecord(std::to_string(subsystem), row); }

    /// A key, or with `row.psid` 0 a field, which AddField puts into its struct.
    Id AddStruct(const std::string & subsystem, RecordRow row, bool littleEndian, bool octets = false)
    {
        row.metadataType = 2;
        const Id record = AddRecord(subsystem, row);
        Insert("structs VALUES (" + std::to_string(record) + ", " + std::to_string(littleEndian) + ", " +
               std::to_string(octets) + ")");
        return record;
    }

    Id AddStructKey(Id subsystem, const RecordRow & row, bool littleEndian = true, bool octets = false)
    {
        return AddStruct(std::to_string(subsystem), row, littleEndian, octets);
    }

    Id AddField(Id owner, const RecordRow & row, int position, int width)
    {
        return PutField(owner, AddRecord("NULL", row), position, width);
    }

    Id PutField(Id owner, Id record, int position, int width)
    {
        Insert("struct_fields VALUES (" + std::to_string(owner) + ", " + std::to_string(mFields++) + ", " +
               std::to_string(record) + ", " + std::to_string(position) + ", " + std::to_string(width) + ")");
        return record;
    }

    void AddEnumerators(Id record, const Enumerators & enumerators)
    {
        for (const auto & [name, value] : enumerators)
            Insert("enumerators VALUES (" + std::to_string(record) + ", " + Text(name) + ", " +
                   std::to_string(value) + ")");
    }

    void AddIntIndex(Id key, int position, const std::string & name, int min, int max)
    {
        Insert("table_indices VALUES (" + std::to_string(key) + ", " + std::to_string(position) + ", " +
               Text(name) + ", " + std::to_string(min) + ", " + std::to_string(max) + ", 0)");
    }

    void AddEnumIndex(Id key, int position, const std::string & name, const Enumerators & enumerators)
    {
        const std::string place = std::to_string(key) + ", " + std::to_string(position) + ", ";
        Insert("table_indices VALUES (" + place + Text(name) + ", 0, 0, 1)");
        for (const auto & [label, value] : enumerators)
            Insert("index_enumerators VALUES (" + place + Text(label) + ", " + std::to_string(value) + ")");
    }

    /// The items are SQL literals: "5", "'text'", "x'0102'".
    Id AddDefault(Id key, const std::vector<std::string> & items, const std::vector<int> & indices = {})
    {
        const Id row = Insert("default_rows (key_id) VALUES (" + std::to_string(key) + ")");
        for (std::size_t at = 0; at < indices.size(); ++at)
            Insert("default_indices VALUES (" + std::to_string(row) + ", " + std::to_string(at + 1) + ", " +
                   std::to_string(indices[at]) + ")");
        for (std::size_t at = 0; at < items.size(); ++at)
            Insert("default_items VALUES (" + std::to_string(row) + ", " + std::to_string(at) + ", " +
                   items[at] + ")");
        return row;
    }

    static std::string Text(const std::string & text)
    {
        std::string literal = "'";
        for (const char character : text)
            literal += character == '\'' ? std::string("''") : std::string(1, character);
        return literal + "'";
    }

private:
    Id AddRecord(const std::string & subsystem, const RecordRow & row)
    {
        return Insert("records (subsystem_id, uid, psid, name, internal_type, min, max, format, is_array,"
                      " array_min_length, array_max_length, num_indices, metadata_type) VALUES (" +
                      subsystem + ", 0, " + std::to_string(row.psid) + ", " + Text(row.name) + ", " +
                      Text(row.internalType) + ", " + std::to_string(row.min) + ", " + std::to_string(row.max) +
                      ", " + Text(row.format) + ", " + std::to_string(row.isArray) + ", " +
                      std::to_string(row.arrayMinLength) + ", " + std::to_string(row.arrayMaxLength) + ", " +
                      std::to_string(row.numIndices) + ", " + std::to_string(row.metadataType) + ")");
    }

    sqlite3 * mDatabase = nullptr;
    int mFields = 0;
};

}   // namespace VrexZynConfigTools::support

#endif
