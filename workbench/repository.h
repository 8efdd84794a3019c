/// A metadata repository: what the chip's keys mean. A session has one; who only asks about metadata can do with this.
///
///     workbench::CRepository repository;
///     if (repository.Open("system.zmd", folder, findings))
///         workbench::CCatalog catalog(*repository.Provider(), {}, findings);

#ifndef WORKBENCH_REPOSITORY_H
#define WORKBENCH_REPOSITORY_H

#include "finding.h"

#include <configtools/metadataprovider.h>

#include <memory>
#include <string>

namespace workbench {

/// Owns the provider. Its records live as long, so everything that uses them has to end before.
class CRepository
{
public:
    /// Opens the repository with a plug-in of the folder, which is loaded if it isn't. False if it can't be used; the
    /// sink gets the reason, and an earlier repository is gone.
    bool Open(const std::string & file, const std::string & plugInFolder, IFindingSink & sink);

    /// Remains this object's. Null before a successful `Open`.
    VrexZynConfigTools::IMetadataProvider * Provider() const { return mProvider.get(); }

private:
    // Code of a module, which stays loaded as long as the process lives: what the library remembers of default values
    // is older than any provider and ends later.
    std::unique_ptr<VrexZynConfigTools::IMetadataProvider> mProvider;
};

}   // namespace workbench

#endif
