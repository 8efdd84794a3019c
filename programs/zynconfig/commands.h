/// The commands of the tool, one source each. Each is true if all is well; what isn't has been reported then.

#ifndef ZYNCONFIG_COMMANDS_H
#define ZYNCONFIG_COMMANDS_H

namespace zynconfig {

class CSession;

bool Show(CSession & session);
bool Convert(CSession & session);
bool Info(CSession & session);

// These need metadata.
bool Keys(CSession & session);
bool Describe(CSession & session);
bool Check(CSession & session);
bool Get(CSession & session);

}   // namespace zynconfig

#endif
