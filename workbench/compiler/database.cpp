#include "database.h"

#include <sqlite3.h>

namespace workbench::compiler {

CDatabase::CDatabase()
{
    sqlite3 * database = nullptr;
    const int result = sqlite3_open(":memory:", &database);
    mDatabase.reset(database);
    if (database == nullptr)
        throw std::bad_alloc();
    Require(result, SQLITE_OK);
}

void CDatabase::Execute(const char * statements)
{
    Require(sqlite3_exec(mDatabase.get(), statements, nullptr, nullptr, nullptr), SQLITE_OK);
}

std::string CDatabase::Content()
{
    sqlite3_int64 size = 0;
    const std::unique_ptr<unsigned char, void (*)(void *)> bytes(
        sqlite3_serialize(mDatabase.get(), "main", &size, 0), &sqlite3_free);
    if (bytes == nullptr)
        throw std::bad_alloc();
    return { reinterpret_cast<const char *>(bytes.get()), static_cast<std::size_t>(size) };
}

std::int64_t CDatabase::LastRowId() const
{
    return sqlite3_last_insert_rowid(mDatabase.get());
}

void CDatabase::Require(int result, int expected) const
{
    if (result != expected)
        throw CDatabaseError(sqlite3_errmsg(mDatabase.get()));
}

void CDatabase::Closer::operator()(sqlite3 * database) const
{
    sqlite3_close(database);
}

CStatement::CStatement(CDatabase & database, const std::string & text)
    : mDatabase(database)
{
    sqlite3_stmt * statement = nullptr;
    Require(sqlite3_prepare_v2(
                database.mDatabase.get(), text.c_str(), static_cast<int>(text.size()), &statement, nullptr),
        SQLITE_OK);
    mStatement.reset(statement);
}

CStatement & CStatement::Bind(std::int64_t number)
{
    Require(sqlite3_bind_int64(mStatement.get(), ++mPlace, number), SQLITE_OK);
    return *this;
}

CStatement & CStatement::Bind(const std::string & text)
{
    Require(sqlite3_bind_text64(
                mStatement.get(), ++mPlace, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8),
        SQLITE_OK);
    return *this;
}

CStatement & CStatement::BindOctets(const std::string & octets)
{
    Require(sqlite3_bind_blob64(mStatement.get(), ++mPlace, octets.data(), octets.size(), SQLITE_TRANSIENT),
        SQLITE_OK);
    return *this;
}

CStatement & CStatement::BindNull()
{
    Require(sqlite3_bind_null(mStatement.get(), ++mPlace), SQLITE_OK);
    return *this;
}

void CStatement::Run()
{
    Require(sqlite3_step(mStatement.get()), SQLITE_DONE);
    Require(sqlite3_reset(mStatement.get()), SQLITE_OK);
    mPlace = 0;
}

void CStatement::Require(int result, int expected)
{
    mDatabase.Require(result, expected);
}

void CStatement::Finalizer::operator()(sqlite3_stmt * statement) const
{
    sqlite3_finalize(statement);
}

}   // namespace workbench::compiler
