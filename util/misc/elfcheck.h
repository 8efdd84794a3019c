/// What can be judged of a file before the system's module loader maps it.
///
/// The loader maps segments without asking whether the file has them, and the process ends where it reads beyond the
/// file's end. What the tables within the segments hold isn't judged: whatever the loader accepts must pass here.

#ifndef MISC_ELFCHECK_H
#define MISC_ELFCHECK_H

#include <misc/platform.h>

#include <string>

namespace elfcheck {

/// What keeps the file at `path` from being given to the loader; `LoadFailure::None` for nothing. Links are followed.
/// A file that can be seen to be no regular one is not opened.
platform::LoadFailure Check(const std::string & path);

}   // namespace elfcheck

#endif
