/// How the plug-in reports: by an error in the framework's message group, the only way that a provider has.

#ifndef SQLITEMETADATA_REPORT_H
#define SQLITEMETADATA_REPORT_H

#include <messages/messages.h>

#include <cstddef>
#include <exception>
#include <new>
#include <string>
#include <vector>

namespace sqlitemetadata {

/// Records an error. One that stands already is kept, and `text` follows on a line of its own unless it is there.
void ReportError(const std::string & text);

/// `text` between quotes, shortened, and printable: it may come out of a file that was never meant to be read.
std::string Quoted(const std::string & text);

/// Collects what is wrong, to be told in one error.
class CFindings
{
public:
    void Add(const std::string & text);
    bool IsEmpty() const { return mCount == 0; }

    /// A line for each finding, each beginning with `prefix`; of very many, the first ones and how many there are.
    std::string Text(const std::string & prefix) const;

private:
    std::vector<std::string> mLines;
    std::size_t mCount = 0;
};

/// Takes the errors of readers out of the message channel and, at its end, puts them back: what is built meanwhile
/// finds no error but its own.
class CErrorsAside
{
public:
    CErrorsAside();
    ~CErrorsAside();
    CErrorsAside(const CErrorsAside &) = delete;
    CErrorsAside & operator=(const CErrorsAside &) = delete;

    /// The text of the errors set since, which are forgotten; empty for none.
    std::string Take();

private:
    struct Error
    {
        VrexZynConfigTools::GroupEnum mGroup;
        bool mStands = false;
        short mCode = 0;
        std::string mText;
    };
    Error mErrors[2];
};

/// Runs `action` and lets nothing but `std::bad_alloc` out, which no interface of the framework expects from a
/// plug-in. Anything else becomes an error about `path`.
template <typename ActionT>
void Guarded(const std::string & path, ActionT action)
{
    try {
        action();
    } catch (const std::bad_alloc &) {
        throw;
    } catch (const std::exception & error) {
        ReportError(path + ": " + error.what());
    }
}

}   // namespace sqlitemetadata

#endif
