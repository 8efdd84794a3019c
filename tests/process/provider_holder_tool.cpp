// A tool that reads default values through a plug-in and holds the provider in a static object to the end.
// usage: provider_holder_tool PLUGIN_DIR return|exit|delete|release

#include <configtools/chipconfig.h>
#include <configtools/helper.h>
#include <configtools/metadataprovider.h>
#include <configtools/metadataproviderfactory.h>
#include <configtools/payloads.h>
#include <configtools/zyncontext.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

using namespace VrexZynConfigTools;

extern "C" __attribute__((visibility("default"))) void OnModuleEvent(const char * event)
{
    std::puts(event);
}

namespace {

/// The last object of the tool to go.
struct CEarlyBird
{
    CEarlyBird() = default;
    CEarlyBird(const CEarlyBird &) = delete;
    CEarlyBird & operator=(const CEarlyBird &) = delete;
    ~CEarlyBird()
    {
        std::printf(
            "the tool ends with %u modules\n", static_cast<unsigned>(CMetadataProviderFactory::Ref().Count()));
    }
};

const CEarlyBird earlyBird;
std::unique_ptr<IMetadataProvider> provider;
CChipConfig chip;   // without elements, so that every value is a default

void PrintVolume()
{
    CZynContext context;
    for (IPayload * const payload :
        CHelper::Ref().RetrieveApplicablePayload(*provider, chip, context, "volume"))
        std::printf("volume %s\n", payload->ToString().c_str());
}

}   // namespace

int main(int argumentCount, char ** arguments)
{
    if (argumentCount != 3)
        return 2;
    const std::string way = arguments[2];
    auto & factory = CMetadataProviderFactory::Ref();
    factory.Load(arguments[1]);
    provider.reset(factory.Create("defaults provider", way == "release" ? "plain" : ""));
    if (!provider)
        return 3;
    PrintVolume();
    PrintVolume();
    if (way == "delete" || way == "release")
        provider.reset();
    if (way == "release")
        factory.Release();
    if (way == "exit")
        std::exit(0);
    return 0;
}
