#include "repository.h"

#include "errors.h"

#include <configtools/metadataproviderfactory.h>
#include <kit/text/utf8.h>

#include <algorithm>
#include <vector>

namespace workbench {

using namespace VrexZynConfigTools;
using kit::text::Quoted;

namespace {

constexpr char PLUG_IN[] = "sqlitemetadata";   // its argument is the path of the repository

}   // namespace

bool CRepository::Open(const std::string & file, const std::string & plugInFolder)
{
    CMetadataProviderFactory & modules = CMetadataProviderFactory::Ref();
    modules.Load(plugInFolder);
    std::vector<std::string> names;
    modules.Providers(names);
    if (std::find(names.begin(), names.end(), PLUG_IN) == names.end()) {
        ReportChannel();
        ReportError("no plug-in " + Quoted(PLUG_IN) + " in " + Quoted(plugInFolder) + ", which " +
                    Quoted(file) + " needs");
        return false;
    }
    mProvider.reset(modules.Create(PLUG_IN, file));
    const bool isUsable = mProvider != nullptr && mProvider->Check();
    const bool isAnyError = ReportChannel();
    if (!isUsable && !isAnyError)
        ReportError(file + ": unable to use it as metadata");
    return isUsable && !isAnyError;
}

}   // namespace workbench
