#include <kit/reporting/guard.h>

#include <kit/reporting/channel.h>

#include <configtools/keywords.h>

namespace kit::reporting {

void ReportException(const std::string & file, const char * what)
{
    ReportError(
        "exception", file, std::string(VrexZynConfigTools::keywords::ERROR_UNEXPECTED) + " (" + what + ')');
}

}   // namespace kit::reporting
