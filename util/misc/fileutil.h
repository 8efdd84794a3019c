/// Listing of files. Nothing here sets an error: a failure shows in the result only.

#ifndef MISC_FILEUTIL_H
#define MISC_FILEUTIL_H

#include <list>
#include <string>

namespace fileutil {

/// Whether `aPath` exists. `aIsDir` becomes whether it is a directory, and is left unchanged if nothing is there.
bool IsDir(const std::string & aPath, bool & aIsDir);

/// Appends to `files` the paths of what matches `pattern` directly in `aDir` and is no directory, in the byte order
/// of the names. A path is `aDir`, a separator unless `aDir` ends in one or is empty, and the name. In the pattern
/// "*" matches any text and "?" for any one character; an empty pattern means "*".
/// False if `aDir` can't be searched. An empty `aDir` means the current directory, and is false also when nothing
/// in it matches, intended.
bool GetFiles(std::string aDir, std::string pattern, std::list<std::string> & files);

}   // namespace fileutil

#endif
