/// Which plug-in reads and writes a file.

#ifndef WORKBENCH_FORMATS_H
#define WORKBENCH_FORMATS_H

#include <string>

namespace workbench {

struct Format
{
    const char * mName;        // for --from and --to
    const char * mExtension;   // in lower case, with its dot
    const char * mPlugIn;   // as the plug-in calls itself; both its reader and its writer take the file's path
};

/// The format of a file: the one called `name`; without a name by the extension of `path` without regard to case. Null
/// if none is known.
const Format * FindFormat(const std::string & path, const std::string & name = {});

/// ".a, .b"
std::string KnownExtensions();

/// "a, b"
std::string KnownFormats();

}   // namespace workbench

#endif
