/// The plug-in "sqlitemetadata": a metadata provider on a metadata repository, an SQLite database of one file.
/// docs/metadata-repository.md tells about it. The argument of the creator is the path of the file.
///
/// A repository that can't be used is no null provider, for which the factory would have another error in place of the
/// reason: the creator returns a provider whose `Check` is false, and the reason stands in the message channel.

#include "provider.h"

#include <configtools/plugin.h>
#include <kit/reporting/guard.h>

const char * GetPlugInName()
{
    return "sqlitemetadata";
}

const char * GetPlugInSignature()
{
    return VrexZynConfigTools::PLUGIN_SIGNATURE;
}

VrexZynConfigTools::IMetadataProvider * CreateMetadataProvider(const std::string & argument)
{
    return kit::reporting::CreateOrNull<sqlitemetadata::CSqliteMetadataProvider>(argument);
}
