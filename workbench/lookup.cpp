#include "lookup.h"

#include <configtools/helper.h>

#include <limits>

namespace workbench {

using namespace VrexZynConfigTools;

namespace {

// The library asks for a key by a text, in which a larger number is none; a name is then.
std::string QuestionFor(const Key & key, const std::string & name)
{
    if (key.mId <= static_cast<std::uint32_t>(std::numeric_limits<std::int32_t>::max()))
        return LookupText(key);
    const std::string number = std::to_string(key.mId);
    return name + LookupText(key).substr(number.size());
}

}   // namespace

std::optional<ApplicableValue> FindApplicable(
    CSession & session, const CCatalog & catalog, const Record & record, const Key & key)
{
    CZynContext context = catalog.Context(record.mSubsystem);
    context.SetChip(session.Watch().Chip());
    const std::string name = record.mMetadata->Name();
    const std::vector<IPayload *> payloads = CHelper::Ref().RetrieveApplicablePayload(
        catalog.Provider(), session.Chip(), context, QuestionFor(key, name));
    if (PassOnChannel(session.Sink()))
        return std::nullopt;
    if (payloads.empty()) {
        session.Sink().OnFinding(FindingAbout(
            key, "no-value", TitleOf(key, name) + " has no value, neither in the files nor by default"));
        return std::nullopt;
    }
    return ApplicableValue{ key, name, LayerOf(context), ValueOf(payloads, *record.mMetadata) };
}

}   // namespace workbench
