// Every static object of the library, in the order of construction. They stand in one source because the order
// across sources would be the linker's.
//
// The factories come first and so are destroyed last: their destructors unload the plug-in modules, and whatever is
// destroyed before that may still hold code of a module. Then the null objects, which nothing outlives but the
// factories. What is built on top of both, the default configuration, goes at the end, so that it is destroyed first,
// while plug-in code is still mapped. The message channel is not here: it is constant-initialised and never destroyed.

#include <configtools/chipconfig.h>
#include <configtools/context.h>
#include <configtools/elements.h>
#include <configtools/helper.h>
#include <configtools/metadata.h>
#include <configtools/metadataproviderfactory.h>
#include <configtools/readerwriterfactory.h>

namespace VrexZynConfigTools {

CReaderWriterFactory CReaderWriterFactory::mInstance;
CMetadataProviderFactory CMetadataProviderFactory::mInstance;

CNullContext CNullContext::mInstance;
CNullElement CNullElement::mInstance;
CNullMetadata CNullMetadata::mInstance;

CHelper CHelper::mInstance;
CChipConfig CHelper::mDefaults;   // its elements may hold code of a module

}   // namespace VrexZynConfigTools
