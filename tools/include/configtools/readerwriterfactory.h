/// @file
/// Where tools get readers, writers and store managers: from plug-in modules, by plug-in name.
///
/// @code
/// #include <configtools/readerwriter.h>
///
/// #include <memory>
///
/// bool ReadFile(const std::string & path, VrexZynConfigTools::IConfigReaderObserver & chip,
///     VrexZynConfigTools::IConfigContext & context)
/// {
///     using namespace VrexZynConfigTools;
///     CReaderWriterFactory & factory = CReaderWriterFactory::Ref();
///     factory.Load("plugins");
///     const std::unique_ptr<IConfigReader> reader(factory.CreateReader("tomlconfig", path, nullptr));
///     if (reader == nullptr)
///         return false;   // no such module, or it makes no readers
///     reader->SetObserver(chip);
///     reader->Read(context);
///     return true;   // an error in GROUP_FRAMEWORK says whether the read itself failed
/// }
/// @endcode

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

/// Loads the plug-in modules ("*.zpm") of one directory and asks them for objects. There is one object, for the life of
/// the process; its modules are unloaded when the library is.
///
/// None of the operations sets an error: a null pointer, `Count` and `Exists` are the only reports, and a file that
/// isn't a module is skipped. Debug output gives the reason for each file. Objects belong to the caller and contain
/// code of their module, so they must be deleted before the library is unloaded.
class CONFIGTOOLS_EXPORT CReaderWriterFactory
{
public:
    /// The one object.
    static CReaderWriterFactory & Ref() { return mInstance; }

    /// Loads all plug-ins of `directory`, not of its subdirectories, in the order in which the system lists them. Of
    /// two modules with one plug-in name the later one is used.
    ///
    /// Works once in the life of a process: a further call does nothing, also with another directory, and also if the
    /// first found no plug-in. Intended: objects of the modules may be anywhere, and this factory can't release them.
    void Load(const std::string & directory);

    /// The number of modules accepted, of any role: those with a plug-in name and no wrong signature.
    std::uint64_t Count();

    /// A new reader of the module with this plug-in name, which is what its `GetPlugInName` returns, case included,
    /// and not the name of its file. Both arguments are handed to the module untouched; `argument` is the path for a
    /// reader of files, and `pointer` may be null. The result belongs to the caller. Null if there is no such module,
    /// if it has no such entry point, or if that returned null or threw.
    IConfigReader * CreateReader(const std::string & plugInName, const std::string & argument, void * pointer);

    /// A new writer; otherwise as `CreateReader`.
    IConfigWriter * CreateWriter(const std::string & plugInName, const std::string & argument, void * pointer);

    /// A new store manager; otherwise as `CreateReader`.
    IStoreManager * CreateStoreManager(
        const std::string & plugInName, const std::string & argument, void * pointer);

    /// Whether an accepted module has exactly this plug-in name, case included. It may be of any role.
    bool Exists(const std::string & plugInName);

    /// Copies the members bit for bit, so that two objects would share one manager: part of the contract, and never
    /// called, since there is one object.
    CReaderWriterFactory & operator=(const CReaderWriterFactory & other) = default;
    CReaderWriterFactory(const CReaderWriterFactory &) = delete;

    /// Unloads the modules, when the library ends.
    ~CReaderWriterFactory();

private:
    CReaderWriterFactory();

    plugin::CPluginManager * mPluginManager;   // owned
    bool mLoaded;
    static CReaderWriterFactory mInstance;
};

}   // namespace VrexZynConfigTools

#endif
