#include <configtools/readerwriterfactory.h>

#include <configtools/plugin.h>
#include <configtools/readerwriter.h>
#include <configtools/stores.h>
#include <misc/pluginmanager.h>

#include <messages/trace.h>

namespace VrexZynConfigTools {

namespace {

constexpr GroupEnum MESSAGE_GROUP = GROUP_FRAMEWORK;

constexpr char NAME_FUNCTION[] = "GetPlugInName";
constexpr char SIGNATURE_FUNCTION[] = "GetPlugInSignature";
constexpr char FILE_PATTERN[] = "*.zpm";

/// Asks the named module's creator for an object; null if there is none. Plug-in code was built by others: what it
/// throws counts as null.
template <typename T>
T * Create(plugin::CPluginManager & manager, const char * creatorName, const std::string & plugInName,
    const std::string & argument, void * pointer)
{
    if (manager.Count() == 0)
        return nullptr;
    const plugin::Module * const module = manager.GetModule(plugInName);
    const auto entryPoint =
        module != nullptr ? platform::FindEntryPoint(module->mHandle, creatorName) : nullptr;
    if (entryPoint == nullptr)
        return nullptr;
    try {
        return reinterpret_cast<T * (*)(const std::string &, void *)>(entryPoint)(argument, pointer);
    } catch (...) {
        return nullptr;
    }
}

}   // namespace

CReaderWriterFactory::CReaderWriterFactory()
    : mPluginManager(new plugin::CPluginManager(NAME_FUNCTION, SIGNATURE_FUNCTION, PLUGIN_SIGNATURE))
    , mLoaded(false)
{
    ZYN_SENTRY("VrexZynConfigTools::CReaderWriterFactory::CReaderWriterFactory");
}

CReaderWriterFactory::~CReaderWriterFactory()
{
    ZYN_SENTRY("VrexZynConfigTools::CReaderWriterFactory::~CReaderWriterFactory");
    delete mPluginManager;
}

void CReaderWriterFactory::Load(const std::string & directory)
{
    ZYN_SENTRY("VrexZynConfigTools::CReaderWriterFactory::Load");

    if (mLoaded)
        return;
    mLoaded =
        true;   // whatever is found, intended; and a module that calls back from its entry points finds it so
    try {
        mPluginManager->Load(directory, FILE_PATTERN);
    } catch (...) {
        mLoaded = false;
        throw;
    }
}

std::uint64_t CReaderWriterFactory::Count()
{
    std::uint64_t result = 0;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CReaderWriterFactory::Count", result);
    return result = mPluginManager->Count();
}

IConfigReader * CReaderWriterFactory::CreateReader(
    const std::string & plugInName, const std::string & argument, void * pointer)
{
    ZYN_SENTRY("VrexZynConfigTools::CReaderWriterFactory::CreateReader");
    return Create<IConfigReader>(*mPluginManager, "CreateConfigReader", plugInName, argument, pointer);
}

IConfigWriter * CReaderWriterFactory::CreateWriter(
    const std::string & plugInName, const std::string & argument, void * pointer)
{
    ZYN_SENTRY("VrexZynConfigTools::CReaderWriterFactory::CreateWriter");
    return Create<IConfigWriter>(*mPluginManager, "CreateConfigWriter", plugInName, argument, pointer);
}

IStoreManager * CReaderWriterFactory::CreateStoreManager(
    const std::string & plugInName, const std::string & argument, void * pointer)
{
    ZYN_SENTRY("VrexZynConfigTools::CReaderWriterFactory::CreateStoreManager");
    return Create<IStoreManager>(*mPluginManager, "CreateStoreManager", plugInName, argument, pointer);
}

bool CReaderWriterFactory::Exists(const std::string & plugInName)
{
    bool result = false;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CReaderWriterFactory::Exists", result);
    return result = mPluginManager->ModuleExists(plugInName);
}

}   // namespace VrexZynConfigTools
