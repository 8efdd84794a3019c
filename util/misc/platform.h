/// Everything that asks the operating system. One source for each family of systems implements it.
///
/// Names and paths are bytes and go through unconverted. Nothing here reports an error but by its result.

#ifndef MISC_PLATFORM_H
#define MISC_PLATFORM_H

#include <array>
#include <string>
#include <vector>

namespace platform {

/// Between the components of a path.
inline constexpr char SEPARATOR = '/';

enum class PathKind
{
    Missing,   // there is nothing, or its attributes can't be read
    Directory,
    Other
};

/// What is at `path`; links are followed.
PathKind KindOf(const std::string & path);

enum class SearchResult
{
    Found,
    NoMatch,   // the directory was searched and has no such entry
    Failed     // the directory can't be searched
};

/// Searches one directory. The last component of `searchPath` is a pattern, in which "*" matches any text and "?"
/// any one character, a leading dot included; case counts. The components before it are the directory, taken
/// literally; without them it is the current one. `names` becomes the plain names of the matching entries of any
/// kind, "." and ".." among them, in ascending byte order.
SearchResult FindEntries(const std::string & searchPath, std::vector<std::string> & names);

using ModuleHandle = void *;   // null is no module
using EntryPoint = void (*)();

/// Why a module can't be loaded. All but the last are found without the system's loader.
enum class LoadFailure
{
    None,
    UnusablePath,     // with a NUL, or with a word that the loader would replace by a folder of its own
    NotRegularFile,   // or there is nothing
    Unreadable,
    NotElf,
    OtherMachine,         // made for another class of machine, byte order or processor
    NotShared,            // not a shared module
    HeadersOutsideFile,   // the program headers reach beyond the end of the file
    SegmentOutsideFile,   // a loaded segment does
    RejectedByLoader
};

/// For debug output: `failure` in words; for `RejectedByLoader` the loader's own, which last until it is called again.
const char * TextOf(LoadFailure failure);

/// Loads the shared module at `path`. A path without a directory means the current one. Null on failure, with the
/// reason in `failure`. Each success needs one `CloseModule`.
ModuleHandle OpenModule(const std::string & path, LoadFailure & failure);

/// The function of this name that the module itself exports; null if it exports none, also when a library that it
/// is linked to does.
EntryPoint FindEntryPoint(ModuleHandle module, const char * name);

void CloseModule(ModuleHandle module);

/// What `tolower` returns for each byte.
using LowerCases = std::array<int, 256>;

/// Updates `known` to the locale in force; true if it differed. No standard function reports that a locale has changed,
/// so everything is compared; where the system's C library shows its table this takes less time than a lookup.
bool UpdateLowerCases(LowerCases & known);

}   // namespace platform

#endif
