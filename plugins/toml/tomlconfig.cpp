/// The plug-in "tomlconfig": reads and writes a configuration file that people edit, in TOML. docs/toml-format.md
/// tells the format. The string argument of both creators is the path of the file; the pointer is not used.

#include "reader.h"
#include "writer.h"

#include <configtools/plugin.h>

namespace {

// No exception may leave an entry point; null says that there is no object.
template <typename ObjectT>
ObjectT * Create(const std::string & path) noexcept
{
    try {
        return new ObjectT(path);
    } catch (...) {
        return nullptr;
    }
}

}   // namespace

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
    return Create<tomlconfig::CTomlReader>(argument);
}

VrexZynConfigTools::IConfigWriter * CreateConfigWriter(const std::string & argument, void *)
{
    return Create<tomlconfig::CTomlWriter>(argument);
}
