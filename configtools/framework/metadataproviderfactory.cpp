#include <configtools/metadataproviderfactory.h>

#include "pluginentry.h"
#include <configtools/keywords.h>
#include <configtools/metadataprovider.h>

#include <iterator>
#include <list>

#include <messages/trace.h>

namespace VrexZynConfigTools {

namespace {

constexpr GroupEnum MESSAGE_GROUP = GROUP_FRAMEWORK;

}   // namespace

CMetadataProviderFactory::CMetadataProviderFactory()
    : mPluginManager(NewPluginManager())
    , mLoaded(false)
{
    ZYN_SENTRY("VrexZynConfigTools::CMetadataProviderFactory::CMetadataProviderFactory");
}

CMetadataProviderFactory::~CMetadataProviderFactory()
{
    ZYN_SENTRY("VrexZynConfigTools::CMetadataProviderFactory::~CMetadataProviderFactory");
    delete mPluginManager;
}

void CMetadataProviderFactory::Load(const std::string & directory)
{
    ZYN_SENTRY("VrexZynConfigTools::CMetadataProviderFactory::Load");

    if (mLoaded)
        return;
    mLoaded =
        true;   // so that a module that calls back from its entry points doesn't begin a load within this one
    try {
        mPluginManager->Load(directory, keywords::PLUGIN_FILE_PATTERN);
    } catch (...) {
        mLoaded = false;
        throw;
    }
    mLoaded = mPluginManager->Count() != 0;
    if (!mLoaded)
        ZYN_HANDLER(zynFunction).SetErrorMsg(0, "no plug-in found in " + directory);
}

IMetadataProvider * CMetadataProviderFactory::Create(
    const std::string & plugInName, const std::string & argument)
{
    ZYN_SENTRY("VrexZynConfigTools::CMetadataProviderFactory::Create");

    auto * const provider = CreateByPlugIn<IMetadataProvider, const std::string &>(
        *mPluginManager, "CreateMetadataProvider", plugInName, argument);
    if (provider == nullptr)
        ZYN_HANDLER(zynFunction).SetErrorMsg(0, plugInName + " not found");
    return provider;
}

void CMetadataProviderFactory::Providers(std::vector<std::string> & names)
{
    ZYN_SENTRY("VrexZynConfigTools::CMetadataProviderFactory::Providers");

    std::list<std::string> modules;
    mPluginManager->ModulesName(modules);
    names.reserve(modules.size());
    // Moved, so that the only thing that may fail is done before anything is changed.
    names.insert(names.end(), std::make_move_iterator(modules.begin()), std::make_move_iterator(modules.end()));
}

void CMetadataProviderFactory::Release()
{
    ZYN_SENTRY("VrexZynConfigTools::CMetadataProviderFactory::Release");

    mPluginManager->UnloadAll();
    mLoaded = false;
}

std::uint64_t CMetadataProviderFactory::Count()
{
    std::uint64_t result = 0;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CMetadataProviderFactory::Count", result);
    return result = mPluginManager->Count();
}

}   // namespace VrexZynConfigTools
