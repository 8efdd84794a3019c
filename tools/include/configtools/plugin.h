/// The entry points of a plug-in module, declared once: a module that includes this header and defines one with a
/// wrong signature does not compile.
///
/// A module is a shared object named "*.zpm". It needs `GetPlugInName` and the entry points of its role, should have
/// `GetPlugInSignature` returning `PLUGIN_SIGNATURE` (a module without it is accepted, one with another text is not),
/// and must be built with the same standard library as `libconfigtools`. No exception may leave an entry point.
/// Objects that a creator returns belong to the caller, who deletes them through their virtual destructor.
///
/// With g++ build modules with -fno-gnu-unique: a module with unique symbols stays mapped after it was unloaded.

#ifndef CONFIGTOOLS_PLUGIN_H
#define CONFIGTOOLS_PLUGIN_H

#include <string>

namespace VrexZynConfigTools {

class IConfigReader;
class IConfigWriter;
class IMetadataProvider;
class IStoreManager;

/// What `GetPlugInSignature` returns.
inline constexpr char PLUGIN_SIGNATURE[] = "ZynConfigTool";

}   // namespace VrexZynConfigTools

#if defined(_WIN32)
#define CONFIGTOOLS_PLUGIN_EXPORT __declspec(dllexport)
#else
#define CONFIGTOOLS_PLUGIN_EXPORT __attribute__((visibility("default")))
#endif

extern "C" {

/// The plug-in's name, by which tools ask for it. The text must live as long as the module is loaded.
CONFIGTOOLS_PLUGIN_EXPORT const char * GetPlugInName();
CONFIGTOOLS_PLUGIN_EXPORT const char * GetPlugInSignature();

/// The meaning of the arguments lies between a tool and its plug-ins. Null on failure.
CONFIGTOOLS_PLUGIN_EXPORT VrexZynConfigTools::IConfigReader * CreateConfigReader(
    const std::string & argument, void * pointer);
CONFIGTOOLS_PLUGIN_EXPORT VrexZynConfigTools::IConfigWriter * CreateConfigWriter(
    const std::string & argument, void * pointer);
CONFIGTOOLS_PLUGIN_EXPORT VrexZynConfigTools::IStoreManager * CreateStoreManager(
    const std::string & argument, void * pointer);
CONFIGTOOLS_PLUGIN_EXPORT VrexZynConfigTools::IMetadataProvider * CreateMetadataProvider(
    const std::string & argument);
}

#endif
