/// @file
/// The entry points of a plug-in module, declared once: a module that includes this header and defines one of them with
/// a wrong signature does not compile.
///
/// A module is a shared object named "*.zpm". It defines `GetPlugInName` and the entry points of its role, and should
/// define `GetPlugInSignature` to return `PLUGIN_SIGNATURE`: a module without that entry point is accepted, one that
/// returns another text is rejected. A module may have several roles, each with its own entry point.
///
/// All entry points:
///  - have C linkage and are called on the thread of the caller;
///  - must not let an exception out;
///  - are called only while the module is loaded. Objects that a creator returns belong to the caller, who deletes them
///    through their virtual destructor before the module is unloaded.
///
/// Build a module with the same standard library as `libconfigtools`, since strings cross the boundary. With g++ add
/// -fno-gnu-unique (`configtools_add_module` of the CMake package does): a module with unique symbols stays mapped
/// after it was unloaded.
///
/// @code
/// const char * GetPlugInName() { return "example"; }
/// const char * GetPlugInSignature() { return VrexZynConfigTools::PLUGIN_SIGNATURE; }
/// @endcode

#ifndef CONFIGTOOLS_PLUGIN_H
#define CONFIGTOOLS_PLUGIN_H

#include <string>

namespace VrexZynConfigTools {

class IConfigReader;
class IConfigWriter;
class IMetadataProvider;
class IStoreManager;

/// What `GetPlugInSignature` returns. It is compared exactly, case included.
inline constexpr char PLUGIN_SIGNATURE[] = "ZynConfigTool";

}   // namespace VrexZynConfigTools

/// Exports an entry point from a module, whatever the module's default visibility is.
#if defined(_WIN32)
#define CONFIGTOOLS_PLUGIN_EXPORT __declspec(dllexport)
#else
#define CONFIGTOOLS_PLUGIN_EXPORT __attribute__((visibility("default")))
#endif

extern "C" {

/// The plug-in's name, by which tools ask for it. Required of every module; the name of the file plays no part. The
/// text stays the module's and must exist as long as the module is loaded. Of two modules with one name the one
/// loaded last is used. A null pointer rejects the module.
CONFIGTOOLS_PLUGIN_EXPORT const char * GetPlugInName();

/// `PLUGIN_SIGNATURE`. Any other text, and a null pointer, reject the module; it stays mapped until the process ends,
/// but is not used. The text stays the module's.
CONFIGTOOLS_PLUGIN_EXPORT const char * GetPlugInSignature();

/// Makes a reader of one configuration; see `CReaderWriterFactory::CreateReader`. The reader belongs to the caller.
/// Null on failure; an error in `GROUP_FRAMEWORK` may give the reason.
///
/// What `argument` and `pointer` mean is between a tool and its plug-ins, for this creator and the next two: both are
/// passed on untouched. A reader of files expects the path of the file in `argument`; `pointer` may be null.
CONFIGTOOLS_PLUGIN_EXPORT VrexZynConfigTools::IConfigReader * CreateConfigReader(
    const std::string & argument, void * pointer);

/// Makes a writer; see `CReaderWriterFactory::CreateWriter`. As `CreateConfigReader` otherwise.
CONFIGTOOLS_PLUGIN_EXPORT VrexZynConfigTools::IConfigWriter * CreateConfigWriter(
    const std::string & argument, void * pointer);

/// Makes a store manager; see `CReaderWriterFactory::CreateStoreManager`. As `CreateConfigReader` otherwise.
CONFIGTOOLS_PLUGIN_EXPORT VrexZynConfigTools::IStoreManager * CreateStoreManager(
    const std::string & argument, void * pointer);

/// Makes a metadata provider; see `CMetadataProviderFactory::Create`. Most expect the path of a repository in
/// `argument`. The provider belongs to the caller; null on failure.
CONFIGTOOLS_PLUGIN_EXPORT VrexZynConfigTools::IMetadataProvider * CreateMetadataProvider(
    const std::string & argument);
}

#endif
