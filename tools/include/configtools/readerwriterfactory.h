/// Where tools get readers, writers and store managers: from plug-in modules, by plug-in name.

#ifndef CONFIGTOOLS_READERWRITERFACTORY_H
#define CONFIGTOOLS_READERWRITERFACTORY_H

#include <configtools/export.h>

#include <cstdint>
#include <string>

namespace plugin {
class CPluginManager;
}

namespace VrexZynConfigTools {

class IConfigReader;
class IConfigWriter;
class IStoreManager;

/// Loads the plug-in modules ("*.zpm") of one directory and asks them for objects. None of the operations sets an
/// error: null is the only report. Objects belong to the caller and hold code of their module, so they must be deleted
/// before the library is unloaded.
class CONFIGTOOLS_EXPORT CReaderWriterFactory
{
public:
    static CReaderWriterFactory & Ref() { return mInstance; }

    /// Loads all plug-ins of `directory`, not of its subdirectories. Once in the life of a process: a further call does
    /// nothing, also if the first found no plug-in, intended.
    void Load(const std::string & directory);

    /// Number of modules accepted.
    std::uint64_t Count();

    /// A new object of the module with this plug-in name (what its "GetPlugInName" returns, case included, not the
    /// file name). Both arguments are handed to the module untouched. Null if there is no such module, if it lacks
    /// the entry point, or if that returned null.
    IConfigReader * CreateReader(const std::string & plugInName, const std::string & argument, void * pointer);
    IConfigWriter * CreateWriter(const std::string & plugInName, const std::string & argument, void * pointer);
    IStoreManager * CreateStoreManager(
        const std::string & plugInName, const std::string & argument, void * pointer);

    /// Whether a module has exactly this plug-in name.
    bool Exists(const std::string & plugInName);

    /// Copies the members bit for bit, so that two objects share one manager; kept for the contract, never called.
    CReaderWriterFactory & operator=(const CReaderWriterFactory & other) = default;
    CReaderWriterFactory(const CReaderWriterFactory &) = delete;
    ~CReaderWriterFactory();

private:
    CReaderWriterFactory();

    plugin::CPluginManager * mPluginManager;   // owned
    bool mLoaded;
    static CReaderWriterFactory mInstance;
};

}   // namespace VrexZynConfigTools

#endif
