#include "commands.h"
#include "json.h"

#include <workbench/lookup.h>
#include <workbench/losses.h>

namespace zynconfig {

using namespace workbench;

namespace {

std::string RenderJson(const ApplicableValue & found, const std::string & chip)
{
    return TextOf(Json{ { "format", JSON_FORMAT }, { "chip", JsonText(chip) },
        { "subsystem", SubsystemName(found.mKey.mSubsystem) }, { "id", found.mKey.mId },
        { "indices", JsonOfIndices(found.mKey) }, { "name", JsonText(found.mName) },
        { "layer", found.mLayer == 0 ? Json() : Json(found.mLayer) }, { "default", found.mLayer == 0 },
        { "type", found.mValue.mType }, { "value", JsonOf(found.mValue) }, { "text", ToText(found.mValue) } });
}

}   // namespace

bool GetValue(Invocation & invocation)
{
    if (!ReadFiles(invocation))
        return false;
    CSession & session = invocation.mSession;
    const bool isLost = PassOn(LossesOfRead(session.Chip(), session.Watch()), session.Sink());

    CCatalog catalog(*session.Metadata(), session.ReadContext(), session.Sink());
    if (!catalog.SelectChipOfFiles(session.Watch().Chip()))
        return false;
    const KeyText text = ParseKeyText(invocation.mOptions.mKey);
    const auto record = catalog.Find(text);
    const auto key = record ? catalog.RowOf(*record, text) : std::nullopt;
    const auto found = key ? FindApplicable(session, catalog, *record, *key) : std::nullopt;
    if (!found)
        return false;
    const std::string output =
        invocation.mOptions.mIsJson ? RenderJson(*found, session.Watch().Chip()) : ToText(found->mValue) + '\n';
    return invocation.mConsole.Write(output) && !isLost;
}

}   // namespace zynconfig
