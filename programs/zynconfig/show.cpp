#include "commands.h"
#include "errors.h"
#include "losses.h"
#include "session.h"
#include "showjson.h"
#include "showmodel.h"
#include "showtable.h"

namespace zynconfig {

bool Show(CSession & session)
{
    if (!session.ReadAll())
        return false;

    // What there is gets shown also where something is lost.
    bool isLost = ReportErrors(LossesOfRead(session.Chip(), session.Watch()));
    const ShownChip shown = MakeShownChip(session.Chip(), session.Watch().Chip());
    isLost = ReportErrors(shown.mHidden) || isLost;
    return WriteOutput(session.Asked().mIsJson ? RenderJson(shown) : RenderTable(shown, StyleOfOutput())) &&
           !isLost;
}

}   // namespace zynconfig
