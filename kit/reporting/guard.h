/// The guard at the boundary of a plug-in: the framework expects no exception from one but `std::bad_alloc`.

#ifndef KIT_REPORTING_GUARD_H
#define KIT_REPORTING_GUARD_H

#include <exception>
#include <new>
#include <string>

namespace kit::reporting {

/// Reports the exception with this description as an error about `file`.
void ReportException(const std::string & file, const char * what);

/// Runs `action` and lets nothing but `std::bad_alloc` out; anything else becomes an error about `file`. `onException` is
/// called for every exception, that one included, before it is reported.
template <typename ActionT, typename OnExceptionT>
void Guarded(const std::string & file, ActionT action, OnExceptionT onException)
{
    try {
        action();
    } catch (const std::bad_alloc &) {
        onException();
        throw;
    } catch (const std::exception & error) {
        onException();
        ReportException(file, error.what());
    } catch (...) {
        onException();
        ReportException(file, "unknown");
    }
}

template <typename ActionT>
void Guarded(const std::string & file, ActionT action)
{
    Guarded(file, action, [] {});
}

/// For the creating entry points of a module, which no exception may leave: a new object, or null.
template <typename ResultT, typename... ArgumentsT>
ResultT * CreateOrNull(const ArgumentsT &... arguments) noexcept
{
    try {
        return new ResultT(arguments...);
    } catch (...) {
        return nullptr;
    }
}

}   // namespace kit::reporting

#endif
