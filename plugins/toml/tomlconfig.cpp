/// The plug-in "tomlconfig": reads and writes a configuration file that people edit, in TOML. docs/toml-format.md
/// tells the format. The string argument of both creators is the path of the file; the pointer is not used.

#include "reader.h"
#include "writer.h"

#include <configtools/plugin.h>
#include <kit/reporting/guard.h>

const char * GetPlugInName()
{
    return "tomlconfig";
}

const char * GetPlugInSignature()
{
    return VrexZynConfigTools::PLUGIN_SIGNATURE;
}

VrexZynConfigTools::IConfigReader * CreateConfigReader(const std::string & argument, void *)
{
    return kit::reporting::CreateOrNull<tomlconfig::CTomlReader>(argument);
}

VrexZynConfigTools::IConfigWriter * CreateConfigWriter(const std::string & argument, void *)
{
    return kit::reporting::CreateOrNull<tomlconfig::CTomlWriter>(argument);
}
