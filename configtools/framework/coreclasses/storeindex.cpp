#include "storeindex.h"

#include "contextfacts.h"

#include <configtools/keywords.h>
#include <configtools/subsystemconfig.h>

#include <algorithm>
#include <utility>

namespace VrexZynConfigTools {

namespace {

// No letter of any locale becomes one of these when it is lowered.
bool IsNumber(const std::string & text)
{
    return text.find_first_not_of("0123456789-") == std::string::npos;
}

bool AreNumbers(const CPlaceTags & place)
{
    return IsNumber(place.mStore) && IsNumber(place.mType) && IsNumber(place.mDevice);
}

std::string KeyOf(const CPlaceTags & place)
{
    return place.mStore + '|' + place.mType + '|' + place.mDevice;
}

bool Matches(CBaseContext & context, const CPlaceTags & wanted)
{
    return context.TagMatches(keywords::TAG_STORE, wanted.mStore) &&
           context.TagMatches(keywords::TAG_SUBSYSTEM_TYPE, wanted.mType) &&
           context.TagMatches(keywords::TAG_DEVICE, wanted.mDevice);
}

}   // namespace

CPlaceTags PlaceTagsOf(IConfigContext & context)
{
    return { context.GetTag(keywords::TAG_STORE), context.GetTag(keywords::TAG_SUBSYSTEM_TYPE),
        context.GetTag(keywords::TAG_DEVICE) };
}

CSubsystemConfig * CStoreIndex::Find(const Subsystems & subsystems, const CPlaceTags & wanted)
{
    if (AreNumbers(wanted)) {
        if (*mIsStale)
            Rebuild(subsystems);
        if (!mHasForeign) {
            const auto found = mByPlace.find(KeyOf(wanted));
            return found != mByPlace.end() ? found->second : nullptr;
        }
    }
    const auto found = std::find_if(subsystems.begin(), subsystems.end(),
        [&wanted](const auto & filed) { return Matches(filed.second->Context(), wanted); });
    return found != subsystems.end() ? found->second : nullptr;
}

void CStoreIndex::Add(CSubsystemConfig & subsystem)
{
    const bool wasStale = std::exchange(*mIsStale, true);   // also if memory runs out below
    CBaseContext & context = subsystem.Context();
    CContextFacts * const facts = CContextFacts::Of(context);
    bool isFirst = true;
    if (facts != nullptr) {
        facts->WatchPlace(mIsStale);
        const CPlaceTags place = PlaceTagsOf(context);
        isFirst = !AreNumbers(place) || mByPlace.emplace(KeyOf(place), &subsystem).second;
    } else {
        mHasForeign = true;
    }
    *mIsStale = wasStale || !isFirst;   // of two with one place the map's order decides
}

void CStoreIndex::Rebuild(const Subsystems & subsystems)
{
    mByPlace.clear();
    mHasForeign = false;
    for (const auto & [key, subsystem] : subsystems)
        Add(*subsystem);
    *mIsStale = false;
}

}   // namespace VrexZynConfigTools
