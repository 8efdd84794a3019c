/// How the plug-in reports: by an error in the framework's message group, the only way that a reader or a writer has.

#ifndef IMAGECONFIG_REPORT_H
#define IMAGECONFIG_REPORT_H

#include <exception>
#include <new>
#include <optional>
#include <string>
#include <vector>

namespace imageconfig {

bool IsErrorStanding();

/// Records an error; one that stands already is kept, and `text` follows on a line of its own.
void ReportError(const std::string & text);

/// A status message; no error.
void ReportWarning(const std::string & text);

/// The first ten texts, and "..." in place of further ones.
std::string Listed(const std::vector<std::string> & texts, const std::string & separator);

/// The error that stands in the framework's group, or none; afterwards none stands there or in that of outer readers.
std::optional<std::string> TakeError();

/// Sets aside what stands in both groups, for work that clears and judges them key by key, and puts it back at the end.
class CErrorsSetAside
{
public:
    CErrorsSetAside();
    CErrorsSetAside(const CErrorsSetAside &) = delete;
    CErrorsSetAside & operator=(const CErrorsSetAside &) = delete;
    ~CErrorsSetAside();

private:
    struct Error
    {
        int mGroup;
        short mCode;
        std::string mText;
    };

    std::vector<Error> mErrors;
};

/// What is wrong with a file, key by key; one error at the end.
class CFindings
{
public:
    void Add(const std::string & text);
    bool IsEmpty() const;

    /// A line for each finding, each with the path; beyond a hundred they are only counted.
    std::string Text(const std::string & path) const;

private:
    std::vector<std::string> mTexts;
    std::size_t mMore = 0;
};

/// Runs `action` and lets nothing but `std::bad_alloc` out, which no interface of the framework expects from a
/// plug-in. Anything else becomes an error. `onException` is called for every exception, that one included.
template <typename ActionT, typename OnExceptionT>
void Guarded(const std::string & path, ActionT action, OnExceptionT onException)
{
    try {
        action();
    } catch (const std::bad_alloc &) {
        onException();
        throw;
    } catch (const std::exception & error) {
        onException();
        ReportError(path + ": " + error.what());
    } catch (...) {
        onException();
        ReportError(path + ": an unknown exception");
    }
}

}   // namespace imageconfig

#endif
