/// What the first bytes of a file tell, before SQLite sees it.

#ifndef SQLITEMETADATA_FILEHEADER_H
#define SQLITEMETADATA_FILEHEADER_H

#include <string>

namespace sqlitemetadata {

/// Why the file can't be a metadata repository that this plug-in reads; empty if it may be one. Nothing is created, and
/// only regular files are opened.
std::string WhyNoRepository(const std::string & path);

}   // namespace sqlitemetadata

#endif
