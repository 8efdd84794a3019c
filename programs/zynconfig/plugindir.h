/// Where the plug-ins are. One folder is loaded in the life of a process.

#ifndef ZYNCONFIG_PLUGINDIR_H
#define ZYNCONFIG_PLUGINDIR_H

#include <string>

namespace zynconfig {

/// The tool's own folder if a plug-in stands beside it, as in a build tree; else that of the installed plug-ins, which
/// keeps its place relative to the tool. Empty if the tool can't tell where it stands.
std::string FindPlugInFolder();

}   // namespace zynconfig

#endif
