/// A metadata repository: what the chip's keys mean.

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
    /// Opens the repository with a plug-in of the folder. False if it can't be used; the sink gets the reason.
    bool Open(const std::string & file, const std::string & plugInFolder, IFindingSink & sink);

    /// Null before a successful `Open`.
    VrexZynConfigTools::IMetadataProvider * Provider() const { return mProvider.get(); }

private:
    // Code of a module, which stays loaded as long as the process lives: what the library remembers of default values
    // is older than any provider and ends later.
    std::unique_ptr<VrexZynConfigTools::IMetadataProvider> mProvider;
};

}   // namespace workbench

#endif
