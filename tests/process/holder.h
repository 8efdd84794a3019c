/// A library of a tool, which keeps a plug-in's reader in a static object.

#ifndef TESTS_PROCESS_HOLDER_H
#define TESTS_PROCESS_HOLDER_H

extern "C" {

/// Loads the plug-ins of a folder and keeps a reader of one of them; the number of modules.
__attribute__((visibility("default"))) unsigned HoldReader(const char * directory);
}

#endif
