// A module that calls the factory of metadata providers while the factory loads it, and while it creates a provider.

#include "empty_provider.h"

#include <configtools/metadataproviderfactory.h>
#include <configtools/plugin.h>

#include <memory>
#include <vector>

using namespace VrexZynConfigTools;

const char * GetPlugInName()
{
    auto & factory = CMetadataProviderFactory::Ref();
    factory.Load("/");   // is ignored
    std::vector<std::string> names;
    factory.Providers(names);
    const std::unique_ptr<IMetadataProvider> early(factory.Create("provider calling back", ""));
    return early != nullptr || names.size() != factory.Count() ? "too early" : "provider calling back";
}

const char * GetPlugInSignature()
{
    return PLUGIN_SIGNATURE;
}

/// The argument names the module that is asked in turn; none makes the provider here.
IMetadataProvider * CreateMetadataProvider(const std::string & argument)
{
    if (argument.empty())
        return std::make_unique<CEmptyProvider>("at last").release();
    CMetadataProviderFactory::Ref().Load("/");   // is ignored
    return CMetadataProviderFactory::Ref().Create(argument, "");
}
