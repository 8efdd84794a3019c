#include "selectedlayers.h"

#include <configtools/context.h>
#include <configtools/keywords.h>

#include <locale>
#include <memory>
#include <sstream>

namespace VrexZynConfigTools {

namespace {

constexpr std::uint32_t OWN_LAYER_BIT = 1U << CSelectedLayers::OWN_LAYER;

// The layer at which a lookup starts, as the filter says it; a number too large for 16 bits reads as the largest.
int LayerIn(const std::string & filter)
{
    std::istringstream stream(filter);
    stream.imbue(std::locale::classic());
    std::int16_t layer = 0;
    stream >> layer;
    return layer;
}

// The key of each layer but for the layer's number. It comes from a clone, as in the literal lookup: the context itself
// may have a key that it made before its tags were exchanged by an assignment of the base class.
std::string KeyHeadOf(IConfigContext & context)
{
    const std::unique_ptr<IConfigContext> copy(context.Clone());
    copy->SetTag(keywords::TAG_LAYER_NUMBER);
    std::string key = copy->GetTag(keywords::TAG_SUBSYSTEM_KEY_BY_LAYER);
    key.pop_back();   // the blank in place of the layer
    return key;
}

}   // namespace

CLayerRange FilteredRange(const std::string & filter, IConfigContext & context)
{
    const int layer = LayerIn(filter);
    const int lowest = context.TagMatches(keywords::TAG_LAYER_NUMBER, 0) ? 0 : 1;
    if (layer < 1)
        return { 1, lowest, true };
    if (layer > CSelectedLayers::TOP_LAYER)
        return { CSelectedLayers::TOP_LAYER, lowest, true };
    return { layer, lowest, false };
}

CLayerRange CSelectedLayers::FindRange(IConfigContext & context)
{
    const std::string filter = context.GetTag(keywords::TAG_LAYER_FILTER);
    return filter.empty() ? CLayerRange{ OWN_LAYER, OWN_LAYER } : FilteredRange(filter, context);
}

void CSelectedLayers::Find(std::size_t layer, IConfigContext & context, const Subsystems & subsystems)
{
    if (layer != OWN_LAYER && mKeyHead.empty())
        mKeyHead = KeyHeadOf(context);
    const std::string key = layer == OWN_LAYER ? context.GetTag(keywords::TAG_SUBSYSTEM_KEY_BY_LAYER)
                                               : mKeyHead + std::to_string(layer);
    const auto found = subsystems.find(key);
    mSubsystems[layer] = found != subsystems.end() ? found->second : nullptr;
    mKnown |= 1U << layer;
}

void CSelectedLayers::OnTagsChanged(const std::string * key) noexcept
{
    if (key != nullptr && *key == keywords::TAG_LAYER_NUMBER) {
        // The other layers have their numbers by themselves, and without a filter the range is the own layer still.
        mKnown &= ~OWN_LAYER_BIT;
        if (mRange && mRange->mTop == OWN_LAYER)
            return;
    } else {
        mKnown = 0;
        mKeyHead.clear();
    }
    mRange.reset();
}

}   // namespace VrexZynConfigTools
