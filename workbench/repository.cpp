#include "repository.h"

#include <configtools/metadataproviderfactory.h>

#include <algorithm>
#include <vector>

namespace workbench {

using namespace VrexZynConfigTools;

namespace {

constexpr char PLUG_IN[] = "sqlitemetadata";   // its argument is the path of the repository

}   // namespace

bool CRepository::Open(const std::string & file, const std::string & plugInFolder, IFindingSink & sink)
{
    CMetadataProviderFactory & modules = CMetadataProviderFactory::Ref();
    modules.Load(plugInFolder);
    std::vector<std::string> names;
    modules.Providers(names);
    if (std::find(names.begin(), names.end(), PLUG_IN) == names.end()) {
        PassOnChannel(sink);
        sink.OnFinding(MissingPlugIn(PLUG_IN, plugInFolder, file));
        return false;
    }
    mProvider.reset(modules.Create(PLUG_IN, file));
    const bool isUsable = mProvider != nullptr && mProvider->Check();
    const bool isAnyError = PassOnChannel(sink);
    if (!isUsable && !isAnyError)
        sink.OnFinding(FindingIn(file, "unusable-metadata", "unable to use it as metadata"));
    return isUsable && !isAnyError;
}

}   // namespace workbench
