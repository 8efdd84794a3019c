/// Which plug-in reads and writes a file.

#ifndef ZYNCONFIG_FORMATS_H
#define ZYNCONFIG_FORMATS_H

#include <string>

namespace zynconfig {

struct Format
{
    const char * mExtension;   // in lower case, with its dot
    const char * mPlugIn;   // as the plug-in calls itself; both its reader and its writer take the file's path
};

/// The format of a file, by its extension without regard to case; null if none is known for it.
const Format * FindFormat(const std::string & path);

/// ".a, .b"
std::string KnownExtensions();

}   // namespace zynconfig

#endif
