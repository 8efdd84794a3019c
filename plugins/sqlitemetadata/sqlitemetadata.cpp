/// The plug-in "sqlitemetadata": a metadata provider on a metadata repository, an SQLite database of one file.
/// docs/metadata-repository.md tells about it. The argument of the creator is the path of the file.
///
/// A repository that can't be used is no null provider, for which the factory would have another error in place of the
/// reason: the creator returns a provider whose `Check` is false, and the reason stands in the message channel.

#include "provider.h"

#include <configtools/plugin.h>

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
    // No exception may leave an entry point; null says that there is no object.
    try {
        return new sqlitemetadata::CSqliteMetadataProvider(argument);
    } catch (...) {
        return nullptr;
    }
}
