/// A new database in memory, and statements on it.

#ifndef WORKBENCH_COMPILER_DATABASE_H
#define WORKBENCH_COMPILER_DATABASE_H

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>

struct sqlite3;
struct sqlite3_stmt;

namespace workbench::compiler {

/// What a statement was refused for.
class CDatabaseError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

class CDatabase
{
public:
    CDatabase();

    void Execute(const char * statements);

    /// The bytes of the database as a file.
    std::string Content();

    std::int64_t LastRowId() const;

private:
    friend class CStatement;
    void Require(int result, int expected) const;

    struct Closer
    {
        void operator()(sqlite3 * database) const;
    };

    std::unique_ptr<sqlite3, Closer> mDatabase;
};

/// A statement with places for values, which is run once for each row.
class CStatement
{
public:
    CStatement(CDatabase & database, const std::string & text);

    /// The next place, from left to right.
    CStatement & Bind(std::int64_t number);
    CStatement & Bind(const std::string & text);
    CStatement & BindOctets(const std::string & octets);
    CStatement & BindNull();

    /// Runs with what was bound, and begins anew.
    void Run();

private:
    void Require(int result, int expected);

    struct Finalizer
    {
        void operator()(sqlite3_stmt * statement) const;
    };

    CDatabase & mDatabase;
    std::unique_ptr<sqlite3_stmt, Finalizer> mStatement;
    int mPlace = 0;
};

}   // namespace workbench::compiler

#endif
