#include "commands.h"
#include "session.h"
#include "showjson.h"
#include "showtable.h"

#include <workbench/errors.h>
#include <workbench/layeredchip.h>
#include <workbench/losses.h>

namespace zynconfig {

using namespace workbench;

bool Show(CSession & session)
{
    if (!session.ReadAll())
        return false;

    // What there is gets shown also where something is lost.
    bool isLost = ReportErrors(LossesOfRead(session.Chip(), session.Watch()));
    const LayeredChip shown = LayersAndWinners(session.Chip(), session.Watch().Chip());
    isLost = ReportErrors(shown.mHidden) || isLost;
    return WriteOutput(session.Asked().mIsJson ? RenderJson(shown) : RenderTable(shown, StyleOfOutput())) &&
           !isLost;
}

}   // namespace zynconfig
