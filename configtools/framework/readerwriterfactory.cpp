#include <configtools/readerwriterfactory.h>

#include "pluginentry.h"
#include <configtools/keywords.h>
#include <configtools/readerwriter.h>
#include <configtools/stores.h>

#include <messages/trace.h>

namespace VrexZynConfigTools {

namespace {

constexpr GroupEnum MESSAGE_GROUP = GROUP_FRAMEWORK;

}   // namespace

CReaderWriterFactory::CReaderWriterFactory()
    : mPluginManager(NewPluginManager())
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
    // Whatever is found, intended; and a module that calls back from its entry points finds it so.
    mLoaded = true;
    try {
        mPluginManager->Load(directory, keywords::PLUGIN_FILE_PATTERN);
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
    return CreateByPlugIn<IConfigReader, const std::string &, void *>(
        *mPluginManager, "CreateConfigReader", plugInName, argument, pointer);
}

IConfigWriter * CReaderWriterFactory::CreateWriter(
    const std::string & plugInName, const std::string & argument, void * pointer)
{
    ZYN_SENTRY("VrexZynConfigTools::CReaderWriterFactory::CreateWriter");
    return CreateByPlugIn<IConfigWriter, const std::string &, void *>(
        *mPluginManager, "CreateConfigWriter", plugInName, argument, pointer);
}

IStoreManager * CReaderWriterFactory::CreateStoreManager(
    const std::string & plugInName, const std::string & argument, void * pointer)
{
    ZYN_SENTRY("VrexZynConfigTools::CReaderWriterFactory::CreateStoreManager");
    return CreateByPlugIn<IStoreManager, const std::string &, void *>(
        *mPluginManager, "CreateStoreManager", plugInName, argument, pointer);
}

bool CReaderWriterFactory::Exists(const std::string & plugInName)
{
    bool result = false;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CReaderWriterFactory::Exists", result);
    return result = mPluginManager->ModuleExists(plugInName);
}

}   // namespace VrexZynConfigTools
