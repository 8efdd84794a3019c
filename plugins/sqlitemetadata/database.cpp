#include "database.h"

#include <sqlite3.h>

#include <filesystem>
#include <utility>

namespace sqlitemetadata {

namespace {

constexpr int WAIT_FOR_WRITER_MS = 1000;

/// The longest text or octet string; no key of a chip comes near it.
constexpr int LONGEST_VALUE = 1 << 20;

}   // namespace

CDatabase::~CDatabase()
{
    sqlite3_close_v2(mHandle);
}

bool CDatabase::Open(const std::string & path)
{
    // An absolute path is never taken for a name with a meaning of its own, such as ":memory:" or "file:...".
    const std::string absolute = std::filesystem::absolute(path).string();
    CDatabase file;
    if (!file.OpenHandle(absolute, SQLITE_OPEN_READONLY | SQLITE_OPEN_PRIVATECACHE)) {
        SetFault(file.TakeFault());
        return false;
    }
    sqlite3_busy_timeout(file.mHandle, WAIT_FOR_WRITER_MS);
    return OpenHandle(":memory:", SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE) && Copy(file) && Harden();
}

bool CDatabase::Copy(CDatabase & file)
{
    constexpr int ALL_PAGES = -1;
    if (sqlite3_backup * const backup = sqlite3_backup_init(mHandle, "main", file.mHandle, "main")) {
        sqlite3_backup_step(backup, ALL_PAGES);
        sqlite3_backup_finish(backup);
    }
    if (sqlite3_errcode(mHandle) != SQLITE_OK)
        SetFault(sqlite3_errmsg(mHandle));
    return !IsFaulty();
}

bool CDatabase::OpenInMemory(const char * statements)
{
    return OpenHandle(":memory:", SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE) && Run(statements);
}

bool CDatabase::OpenHandle(const std::string & path, int flags)
{
    if (sqlite3_open_v2(path.c_str(), &mHandle, flags, nullptr) == SQLITE_OK)
        return true;
    SetFault(mHandle != nullptr ? sqlite3_errmsg(mHandle) : "no memory for the database");
    return false;
}

// The file may have been made to do harm.
bool CDatabase::Harden()
{
    sqlite3_db_config(mHandle, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    sqlite3_db_config(mHandle, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
    sqlite3_db_config(mHandle, SQLITE_DBCONFIG_ENABLE_TRIGGER, 0, nullptr);
    sqlite3_db_config(mHandle, SQLITE_DBCONFIG_ENABLE_VIEW, 0, nullptr);
    sqlite3_limit(mHandle, SQLITE_LIMIT_LENGTH, LONGEST_VALUE);
    return Run("PRAGMA temp_store = MEMORY; PRAGMA cell_size_check = ON");
}

bool CDatabase::Run(const char * statements)
{
    if (sqlite3_exec(mHandle, statements, nullptr, nullptr, nullptr) != SQLITE_OK)
        SetFault(sqlite3_errmsg(mHandle));
    return !IsFaulty();
}

void CDatabase::SetFault(const std::string & text)
{
    if (mFault.empty())
        mFault = text.empty() ? "unknown fault" : text;
}

void CDatabase::SetPlace(const std::string & place)
{
    if (!mFault.empty())
        mFault = place + ": " + mFault;
}

std::string CDatabase::TakeFault()
{
    return std::exchange(mFault, std::string());
}

CQuery::CQuery(CDatabase & database, const char * sql)
    : mDatabase(database)
    , mSql(sql)
{}

CQuery::~CQuery()
{
    sqlite3_finalize(mStatement);
}

void CQuery::Start()
{
    if (mStatement != nullptr)
        sqlite3_reset(mStatement);
    else if (sqlite3_prepare_v3(
                 mDatabase.Handle(), mSql, -1, SQLITE_PREPARE_PERSISTENT, &mStatement, nullptr) != SQLITE_OK)
        mDatabase.SetFault(sqlite3_errmsg(mDatabase.Handle()));
}

void CQuery::Bind(int position, std::int64_t value)
{
    if (mStatement != nullptr && sqlite3_bind_int64(mStatement, position, value) != SQLITE_OK)
        mDatabase.SetFault(sqlite3_errmsg(mDatabase.Handle()));
}

void CQuery::Bind(int position, const std::string & value)
{
    if (mStatement == nullptr)
        return;
    // A text too long to be in the database is bound as null, which nothing equals.
    const int result =
        sqlite3_bind_text64(mStatement, position, value.data(), value.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
    if (result == SQLITE_TOOBIG)
        sqlite3_bind_null(mStatement, position);
    else if (result != SQLITE_OK)
        mDatabase.SetFault(sqlite3_errmsg(mDatabase.Handle()));
}

bool CQuery::Next()
{
    if (mStatement == nullptr || mDatabase.IsFaulty())
        return false;
    const int result = sqlite3_step(mStatement);
    if (result == SQLITE_ROW)
        return true;
    if (result != SQLITE_DONE)
        mDatabase.SetFault(sqlite3_errmsg(mDatabase.Handle()));
    return false;
}

bool CQuery::IsInteger(int column) const
{
    return sqlite3_column_type(mStatement, column) == SQLITE_INTEGER;
}

bool CQuery::IsBlob(int column) const
{
    return sqlite3_column_type(mStatement, column) == SQLITE_BLOB;
}

std::int64_t CQuery::Number(int column) const
{
    return sqlite3_column_int64(mStatement, column);
}

std::string CQuery::Text(int column) const
{
    // The octets have to be asked for before their number.
    const void * const octets =
        IsBlob(column) ? sqlite3_column_blob(mStatement, column) : sqlite3_column_text(mStatement, column);
    const int count = sqlite3_column_bytes(mStatement, column);
    if (octets == nullptr || count <= 0)
        return std::string();
    return { static_cast<const char *>(octets), static_cast<std::size_t>(count) };
}

}   // namespace sqlitemetadata
