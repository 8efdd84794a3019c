/// What can be judged of a file before the system's module loader maps it.
///
/// The loader maps segments without asking whether the file has them, and the process ends where it reads beyond the
/// file's end. The tables within the segments aren't judged: whatever the loader accepts must pass here.

#ifndef MISC_ELFCHECK_H
#define MISC_ELFCHECK_H

#include <misc/platform.h>

#include <string>

namespace elfcheck {

/// Why the file at `path` must not be given to the loader; `LoadFailure::None` if it may. Links are followed. What is
/// no regular file is not opened.
platform::LoadFailure Check(const std::string & path);

}   // namespace elfcheck

#endif
