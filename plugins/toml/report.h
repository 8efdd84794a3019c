/// How the plug-in reports: by an error in the framework's message group, the only way that a reader or a writer has.

#ifndef TOMLCONFIG_REPORT_H
#define TOMLCONFIG_REPORT_H

#include <exception>
#include <new>
#include <optional>
#include <string>

namespace tomlconfig {

bool IsErrorStanding();

/// Records an error; one that stands already is kept, and `text` follows on a line of its own.
void ReportError(const std::string & text);

/// A status message; no error.
void ReportWarning(const std::string & text);

/// The error that stands in the framework's group, which is cleared by this, as that of outer readers is.
std::optional<std::string> TakeError();

/// Sets aside what stands in the groups of the framework and of outer readers, for whom calls what clears them, and
/// puts it back at the end of the scope, in place of what stands there then.
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
        bool mStands = false;
        short mCode = 0;
        std::string mText;
    };

    Error mFramework;
    Error mOuterReader;
};

/// Why an exception ended an operation on `path`.
void ReportException(const std::string & path, const char * what);

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
        ReportException(path, error.what());
    } catch (...) {
        onException();
        ReportException(path, "unknown");
    }
}

}   // namespace tomlconfig

#endif
