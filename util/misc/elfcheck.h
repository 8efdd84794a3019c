/// Whether a file can be given to the system's module loader.
///
/// That loader checks little of what it maps: a module that was cut short or damaged makes it read or write wild
/// addresses, or call them, and the process dies before anybody can refuse the module. This check walks all tables
/// that the loader walks. It can't tell damage in code and data from the code and data that were meant.

#ifndef MISC_ELFCHECK_H
#define MISC_ELFCHECK_H

#include <cstddef>

namespace elfcheck {

/// Whether the `size` bytes at `content` are a whole module for this machine, with sound tables.
bool IsSound(const unsigned char * content, std::size_t size);

}   // namespace elfcheck

#endif
