/// The plug-in "imageconfig": reads and writes a binary image of a chip's stores, and manages the stores in one.
/// docs/image-format.md tells the format. The string argument of all creators is the path of the file; the pointer is not
/// used.

#include "reader.h"
#include "storeaccess.h"
#include "writer.h"

#include <configtools/plugin.h>
#include <kit/reporting/guard.h>

const char * GetPlugInName()
{
    return "imageconfig";
}

const char * GetPlugInSignature()
{
    return VrexZynConfigTools::PLUGIN_SIGNATURE;
}

VrexZynConfigTools::IConfigReader * CreateConfigReader(const std::string & argument, void *)
{
    return kit::reporting::CreateOrNull<imageconfig::CImageReader>(argument);
}

VrexZynConfigTools::IConfigWriter * CreateConfigWriter(const std::string & argument, void *)
{
    return kit::reporting::CreateOrNull<imageconfig::CImageWriter>(argument);
}

VrexZynConfigTools::IStoreManager * CreateStoreManager(const std::string & argument, void *)
{
    return kit::reporting::CreateOrNull<imageconfig::CImageStoreManager>(argument);
}
