#include <configtools/chipconfig.h>

#include "subsystemorder.h"

#include <configtools/keywords.h>
#include <configtools/subsystemconfig.h>
#include <messages/trace.h>

#include <algorithm>
#include <charconv>
#include <tuple>

namespace VrexZynConfigTools {

namespace {

constexpr GroupEnum MESSAGE_GROUP = GROUP_CORE_CLASSES;

// By which type and layer are turned back into tag text.
constexpr const char * NUMBER_TEXTS[] = { "0", "1", "2", "3", "4", "5", "6", "7", "8", "9", "10", "11", "12",
    "13", "14", "15" };
constexpr int NUMBER_COUNT = 16;
static_assert(std::size(NUMBER_TEXTS) == NUMBER_COUNT);

constexpr std::int8_t NO_NUMBER = -1;

// Type, layer and key text: the order of a filtered write.
using SortedKey = std::tuple<std::int8_t, std::int8_t, std::string>;
using SortedDictionary = std::map<SortedKey, CElement *>;

// The subsystem type ahead of the "|" in a key of the filtered dictionary, or NO_NUMBER if it is none of 0 to 15.
std::int8_t TypeIn(const std::string & key)
{
    int type = NO_NUMBER;
    const char * const end = key.data() + std::min(key.find('|'), key.size());
    const auto parsed = std::from_chars(key.data(), end, type);
    const bool isWhole = parsed.ec == std::errc() && parsed.ptr == end;
    return isWhole && type >= 0 && type < NUMBER_COUNT ? static_cast<std::int8_t>(type) : NO_NUMBER;
}

// The type and the layer of a winner that can't be written, as an error. Always false.
bool RefuseWinner(const std::string & key, int layer)
{
    if (key == "|")
        static_cast<void>(
            key.substr(2));   // neither type nor key: the range exception passes through, intended
    CTheMsgHnd::Instance()
        .GetAppropriateHandler(MESSAGE_GROUP, "VrexZynConfigTools::CChipConfig::WriteFilteredLayers", false)
        .SetErrorMsg(0, "the filtered key \"" + key + "\" in layer " + std::to_string(layer) +
                            " can't be written: subsystem type and layer must be 0 to 15");
    return false;
}

}   // namespace

bool CChipConfig::Write(IConfigWriter & writer, IConfigContext & context)
{
    bool result = false;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CChipConfig::Write", result);

    CMessageHandler & handler = ZYN_HANDLER(zynFunction);
    if (dynamic_cast<CBaseContext *>(&context) == nullptr) {
        handler.SetErrorMsg(0, keywords::ERROR_INVALID_CONTEXT);
        return result;
    }
    writer.StartWrite(context);
    result = !handler.IsErrorSet(GROUP_FRAMEWORK, true);   // a writer refuses by an error
    if (result) {
        result = context.GetTag(keywords::TAG_LAYER_FILTER).empty() ? WriteAllLayers(writer, context)
                                                                    : WriteFilteredLayers(writer, context);
    }
    writer.EndWrite(context);
    return result = result && !handler.IsErrorSet(GROUP_FRAMEWORK, true);
}

bool CChipConfig::WriteAllLayers(IConfigWriter & writer, IConfigContext & context)
{
    bool result = true;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CChipConfig::WriteAllLayers", result);

    auto * base = dynamic_cast<CBaseContext *>(&context);
    if (base == nullptr) {
        ZYN_TRACE(3, "dynamic_cast of context failed");
        return result = mSubsystems.empty();
    }
    std::vector<std::string> keys;
    std::transform(mSubsystems.begin(), mSubsystems.end(), std::back_inserter(keys),
        [](const auto & filed) { return filed.first; });
    std::stable_sort(keys.begin(), keys.end(), SubsystemComparer);
    for (const std::string & key : keys) {
        ZYN_TRACE(3, "subsystem = %s", key.c_str());
        CSubsystemConfig & subsystem = *mSubsystems.at(key);
        // The tags stay in the subsystem's context after the write, intended.
        subsystem.MergeContext(*base, false);
        CBaseContext & own = subsystem.Context();
        writer.StartSubsystem(own);
        result = subsystem.Write(writer, own);
        writer.EndSubsystem(own);
        if (!result)
            break;
    }
    return result;
}

bool CChipConfig::WriteFilteredLayers(IConfigWriter & writer, IConfigContext & context)
{
    bool result = true;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CChipConfig::WriteFilteredLayers", result);

    SortedDictionary sorted;
    for (const auto & [key, winner] : mFilteredDictionary) {
        if (winner.element == nullptr)
            continue;   // its subsystem has lost it
        const std::int8_t type = TypeIn(key);
        if (type == NO_NUMBER || winner.layer < 0 || winner.layer >= NUMBER_COUNT) {
            result = RefuseWinner(key, winner.layer);
            break;
        }
        sorted[{ type, winner.layer, key.substr(key.find('|') + 1) }] = winner.element;
    }
    ZYN_TRACE(3, "Filtered dictionary size=%d, Post sorted filtered dictionary size=%d",
        static_cast<int>(mFilteredDictionary.size()), static_cast<int>(sorted.size()));
    const std::unique_ptr<IConfigContext> copy(context.Clone());
    if (copy == nullptr)
        return result = false;

    std::pair<std::int8_t, std::int8_t> previous(NO_NUMBER, NO_NUMBER);
    for (auto at = sorted.begin(); result && at != sorted.end(); ++at) {
        const std::pair<std::int8_t, std::int8_t> group(std::get<0>(at->first), std::get<1>(at->first));
        if (group != previous) {
            if (previous.first != NO_NUMBER)
                writer.EndSubsystem(*copy);
            copy->SetTag(keywords::TAG_LAYER_NUMBER, NUMBER_TEXTS[group.second]);
            copy->SetTag(keywords::TAG_SUBSYSTEM_TYPE, NUMBER_TEXTS[group.first]);
            writer.StartSubsystem(*copy);
        }
        result = at->second->Write(writer, *copy);
        previous = group;
    }
    writer.EndSubsystem(*copy);   // also after nothing was started, intended: writers bear it
    return result;
}

}   // namespace VrexZynConfigTools
