/// What the factories do alike with plug-in modules. Internal.

#ifndef CONFIGTOOLS_PLUGINENTRY_H
#define CONFIGTOOLS_PLUGINENTRY_H

#include <configtools/plugin.h>
#include <misc/pluginmanager.h>

#include <string>

namespace VrexZynConfigTools {

/// A manager of the modules that this system accepts; the caller's.
inline plugin::CPluginManager * NewPluginManager()
{
    return new plugin::CPluginManager("GetPlugInName", "GetPlugInSignature", PLUGIN_SIGNATURE);
}

/// Asks the named module's creator, a function of these arguments, for an object; null if there is none. Plug-in code
/// was built by others: what it throws counts as null.
template <typename T, typename... ArgumentsT>
T * CreateByPlugIn(plugin::CPluginManager & manager, const char * creatorName, const std::string & plugInName,
    ArgumentsT... arguments)
{
    if (manager.Count() == 0)
        return nullptr;
    const plugin::Module * const module = manager.GetModule(plugInName);
    const auto entryPoint =
        module != nullptr ? platform::FindEntryPoint(module->mHandle, creatorName) : nullptr;
    if (entryPoint == nullptr)
        return nullptr;
    try {
        return reinterpret_cast<T * (*)(ArgumentsT...)>(entryPoint)(arguments...);
    } catch (...) {
        return nullptr;
    }
}

}   // namespace VrexZynConfigTools

#endif
