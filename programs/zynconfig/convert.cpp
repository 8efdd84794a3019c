#include "commands.h"

#include <workbench/conversion.h>

namespace zynconfig {

bool ConvertFiles(Invocation & invocation)
{
    const Options & options = invocation.mOptions;
    return ReadFiles(invocation) &&
           workbench::Convert(invocation.mSession, { options.mOutput, options.mTo }, options.mLayerFilter);
}

}   // namespace zynconfig
