/// @file
/// Where tools get metadata providers: from plug-in modules, by plug-in name.
///
/// @code
/// #include <configtools/metadataprovider.h>
///
/// #include <memory>
///
/// std::unique_ptr<VrexZynConfigTools::IMetadataProvider> OpenRepository(const std::string & path)
/// {
///     using namespace VrexZynConfigTools;
///     CMetadataProviderFactory & factory = CMetadataProviderFactory::Ref();
///     factory.Load("plugins");
///     // On null GROUP_FRAMEWORK has the error "sqlitemetadata not found".
///     return std::unique_ptr<IMetadataProvider>(factory.Create("sqlitemetadata", path));
/// }
/// @endcode

#ifndef CONFIGTOOLS_METADATAPROVIDERFACTORY_H
#define CONFIGTOOLS_METADATAPROVIDERFACTORY_H

#include <configtools/export.h>

#include <cstdint>
#include <string>
#include <vector>

namespace plugin {
class CPluginManager;
}

namespace VrexZynConfigTools {

class IMetadataProvider;

/// Loads the plug-in modules ("*.zpm") of one directory and asks them for metadata providers. There is one object,
/// for the life of the process. Unlike `CReaderWriterFactory` it reports failures, with the code 0 in
/// `GROUP_FRAMEWORK`, and can release its modules. One directory may serve both factories; each loads the modules for
/// itself.
class CONFIGTOOLS_EXPORT CMetadataProviderFactory
{
public:
    /// The one object.
    static CMetadataProviderFactory & Ref() { return mInstance; }

    /// Loads all plug-ins of `directory`, not of its subdirectories. Does nothing while modules are loaded, whatever
    /// the directory. If it finds none, it leaves the error "no plug-in found in " with the directory as given, and
    /// another `Load` works. A file that isn't a module is skipped without an error.
    void Load(const std::string & directory);

    /// A new provider of the module with this plug-in name, which is what its `GetPlugInName` returns, case included.
    /// The argument is handed to the module untouched; most expect the path of a repository. The provider belongs to
    /// the caller, who deletes it before `Release`.
    ///
    /// Null on failure. The error is the name and " not found" then, whether there is no such module, it has no such
    /// entry point, or its creator returned null or threw; it replaces an error that the creator left.
    IMetadataProvider * Create(const std::string & plugInName, const std::string & argument);

    /// Appends the names of all modules accepted, of any role, in ascending byte order; what the vector contains stays
    /// in front.
    void Providers(std::vector<std::string> & names);

    /// Unloads all modules, after which another `Load` works. Delete their providers first, and whatever points at
    /// records of these. Default values that `CHelper` has read exist until the end of the process: do not release a
    /// module that delivered them as objects of its own classes.
    void Release();

    /// The number of modules accepted, of any role; 0 before `Load` and after `Release`.
    std::uint64_t Count();

    /// Copies the members bit for bit, so that two objects would share one manager: part of the contract, and never
    /// called, since there is one object.
    CMetadataProviderFactory & operator=(const CMetadataProviderFactory & other) = default;
    CMetadataProviderFactory(const CMetadataProviderFactory &) = delete;

    /// Unloads the modules, when the library ends.
    ~CMetadataProviderFactory();

private:
    CMetadataProviderFactory();

    plugin::CPluginManager * mPluginManager;   // owned
    bool mLoaded;                              // whether a Load has found modules
    static CMetadataProviderFactory mInstance;
};

}   // namespace VrexZynConfigTools

#endif
