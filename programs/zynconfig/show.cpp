#include "commands.h"
#include "showjson.h"
#include "showtable.h"

#include <workbench/layeredchip.h>
#include <workbench/losses.h>

namespace zynconfig {

using namespace workbench;

bool ShowFiles(Invocation & invocation)
{
    if (!ReadFiles(invocation))
        return false;

    // What there is gets shown also where something is lost.
    const CSession & session = invocation.mSession;
    bool isLost = PassOn(LossesOfRead(session.Chip(), session.Watch()), session.Sink());
    const LayeredChip chip = LayersAndWinners(session.Chip(), session.Watch().Chip());
    isLost = PassOn(chip.mHidden, session.Sink()) || isLost;
    return invocation.mConsole.Write(
               invocation.mOptions.mIsJson ? RenderJson(chip) : RenderTable(chip, StyleOfOutput())) &&
           !isLost;
}

}   // namespace zynconfig
