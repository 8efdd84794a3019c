#include "commands.h"
#include "json.h"
#include "session.h"

#include <configtools/helper.h>
#include <configtools/keywords.h>
#include <workbench/catalog.h>
#include <workbench/errors.h>
#include <workbench/losses.h>
#include <workbench/value.h>

#include <limits>

namespace zynconfig {

using namespace VrexZynConfigTools;
using namespace workbench;

namespace {

/// The value of a key that holds.
struct Applicable
{
    Key mKey;
    std::string mName;
    int mLayer;   // 0: of none, it is the default value
    Value mValue;
};

// The library asks for a key by a text, in which a larger number is none; a name is then.
std::string QuestionFor(const Key & key, const std::string & name)
{
    if (key.mId <= static_cast<std::uint32_t>(std::numeric_limits<std::int32_t>::max()))
        return LookupText(key);
    const std::string number = std::to_string(key.mId);
    return name + LookupText(key).substr(number.size());
}

std::optional<Applicable> Retrieve(
    CSession & session, const CCatalog & catalog, const Record & record, const Key & key)
{
    CZynContext context = catalog.Context(record.mSubsystem);
    context.SetChip(session.Watch().Chip());
    const std::string name = record.mMetadata->Name();
    const std::vector<IPayload *> payloads = CHelper::Ref().RetrieveApplicablePayload(
        catalog.Provider(), session.Chip(), context, QuestionFor(key, name));
    if (ReportChannel())
        return std::nullopt;
    if (payloads.empty()) {
        ReportError(TitleOf(key, name) + " has no value, neither in the files nor by default");
        return std::nullopt;
    }
    return Applicable{ key, name, LayerOf(context), ValueOf(payloads, *record.mMetadata) };
}

std::string RenderJson(const Applicable & found, const std::string & chip)
{
    return TextOf(Json{ { "format", JSON_FORMAT }, { "chip", JsonText(chip) },
        { "subsystem", SubsystemName(found.mKey.mSubsystem) }, { "id", found.mKey.mId },
        { "indices", JsonOfIndices(found.mKey) }, { "name", JsonText(found.mName) },
        { "layer", found.mLayer == 0 ? Json() : Json(found.mLayer) }, { "default", found.mLayer == 0 },
        { "type", found.mValue.mType }, { "value", JsonOf(found.mValue) }, { "text", ToText(found.mValue) } });
}

}   // namespace

bool Get(CSession & session)
{
    if (!session.ReadAll())
        return false;
    const bool isLost = ReportErrors(LossesOfRead(session.Chip(), session.Watch()));

    CCatalog catalog(*session.Metadata(), session.ReadContext());
    if (!catalog.SelectChipOfFiles(session.Watch().Chip()))
        return false;
    const KeyText text = ParseKeyText(session.Asked().mKey);
    const auto record = catalog.Find(text);
    const auto key = record ? catalog.RowOf(*record, text) : std::nullopt;
    const auto found = key ? Retrieve(session, catalog, *record, *key) : std::nullopt;
    if (!found)
        return false;
    const std::string output =
        session.Asked().mIsJson ? RenderJson(*found, session.Watch().Chip()) : ToText(found->mValue) + '\n';
    return WriteOutput(output) && !isLost;
}

}   // namespace zynconfig
