/// An SQLite database in memory, mostly the copy of a file, and the questions put to it.

#ifndef SQLITEMETADATA_DATABASE_H
#define SQLITEMETADATA_DATABASE_H

#include <cstdint>
#include <string>

struct sqlite3;
struct sqlite3_stmt;

namespace sqlitemetadata {

/// The connection. What goes wrong is noted in one place: the first fault stands until it is taken.
class CDatabase
{
public:
    CDatabase() = default;
    CDatabase(const CDatabase &) = delete;
    CDatabase & operator=(const CDatabase &) = delete;
    ~CDatabase();

    /// Takes over the content of an existing file as it stands now: whatever others write is not seen, and nobody is
    /// kept from writing. The file is only read. False with a fault.
    ///
    /// The copy in memory has another reason too: of a database that can only be read, SQLite doesn't check constraints.
    bool Open(const std::string & path);

    /// An empty database in memory with these statements run. False with a fault.
    bool OpenInMemory(const char * statements);

    bool Run(const char * statements);

    void SetFault(const std::string & text);

    /// Puts where it happened before a fault that stands.
    void SetPlace(const std::string & place);
    bool IsFaulty() const { return !mFault.empty(); }

    /// The fault, which is forgotten; empty for none.
    std::string TakeFault();

    sqlite3 * Handle() const { return mHandle; }

private:
    bool OpenHandle(const std::string & path, int flags);
    bool Copy(CDatabase & file);
    bool Harden();

    sqlite3 * mHandle = nullptr;   // owned
    std::string mFault;
};

/// One question, prepared when it is first asked. Its answers come row by row; columns count from 0. While a question
/// is being answered it can't be asked again.
class CQuery
{
public:
    CQuery(CDatabase & database, const char * sql);
    CQuery(const CQuery &) = delete;
    CQuery & operator=(const CQuery &) = delete;
    ~CQuery();

    template <typename... ValuesT>
    CQuery & Ask(const ValuesT &... values)
    {
        Start();
        int position = 0;
        (Bind(++position, values), ...);
        return *this;
    }

    /// Moves on to the next row; false after the last, and on a fault.
    bool Next();

    bool IsInteger(int column) const;
    bool IsBlob(int column) const;
    std::int64_t Number(int column) const;

    /// The octets of a text or a blob; the digits of a number.
    std::string Text(int column) const;

private:
    void Start();
    void Bind(int position, std::int64_t value);
    void Bind(int position, const std::string & value);

    CDatabase & mDatabase;
    const char * mSql;
    sqlite3_stmt * mStatement = nullptr;   // owned
};

}   // namespace sqlitemetadata

#endif
