/// Where tools get metadata providers: from plug-in modules, by plug-in name.

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

/// Loads the plug-in modules ("*.zpm") of one directory and asks them for metadata providers. Unlike the factory of
/// readers and writers it reports failures, with the code 0 in `GROUP_FRAMEWORK`, and can release its modules.
class CONFIGTOOLS_EXPORT CMetadataProviderFactory
{
public:
    static CMetadataProviderFactory & Ref() { return mInstance; }

    /// Loads all plug-ins of `directory`, not of its subdirectories. Does nothing while modules are loaded, whatever
    /// the directory. Finding none leaves the error "no plug-in found in " and the directory, and another `Load` works.
    void Load(const std::string & directory);

    /// A new provider of the module with this plug-in name (what its "GetPlugInName" returns, case included). The
    /// argument is handed to the module untouched; most expect the path of a repository. The provider is the caller's,
    /// who deletes it before `Release`. On failure null: the error is the name and " not found", whether there is no
    /// such module, it lacks the entry point, or its creator returned null.
    IMetadataProvider * Create(const std::string & plugInName, const std::string & argument);

    /// Appends the names of all modules accepted, in ascending byte order.
    void Providers(std::vector<std::string> & names);

    /// Unloads all modules, after which another `Load` works. Their providers must be gone. Default values that
    /// `CHelper` has read live to the end of the process: if they are of classes of a module itself, it must stay.
    void Release();

    /// Number of modules accepted.
    std::uint64_t Count();

    /// Copies the members bit for bit, so that two objects share one manager; kept for the contract, never called.
    CMetadataProviderFactory & operator=(const CMetadataProviderFactory & other) = default;
    CMetadataProviderFactory(const CMetadataProviderFactory &) = delete;
    ~CMetadataProviderFactory();

private:
    CMetadataProviderFactory();

    plugin::CPluginManager * mPluginManager;   // owned
    bool mLoaded;                              // whether a Load has found modules
    static CMetadataProviderFactory mInstance;
};

}   // namespace VrexZynConfigTools

#endif
