#include <configtools/chipconfig.h>

#include "contextfacts.h"
#include "elementindex.h"

#include <configtools/keywords.h>
#include <configtools/subsystemconfig.h>
#include <messages/trace.h>

#include <memory>
#include <optional>
#include <vector>

namespace VrexZynConfigTools {

namespace {

constexpr GroupEnum MESSAGE_GROUP = GROUP_CORE_CLASSES;

}   // namespace

/// Finds one key in any subsystem. What a name needs for that is worked out once.
struct CChipConfig::KeySearch
{
    KeySearch(const std::string * name, std::uint32_t id)
        : mName(name)
        , mId(id)
    {
        if (name == nullptr || name->empty())
            mName = nullptr;
        else
            mKey.emplace(CElementIndex::KeyOf(*name));
    }

    CElement & In(CSubsystemConfig & subsystem) const
    {
        if (mName == nullptr)
            return subsystem.Element(mId);
        CElementIndex & index = *subsystem.mIndex;
        if (!mKey->mIsPlainText || !index.IsExact())
            return subsystem.Element(*mName);
        CElement * const found = index.FirstPlainNamed(*mKey);
        return found != nullptr ? *found : CNullElement::Ref();
    }

    const std::string * mName;   // null for a search by number
    std::uint32_t mId;
    std::optional<CElementIndex::NameKey> mKey;
};

const CElement & CChipConfig::Element(const std::string & name, IConfigContext & context) const
{
    ZYN_SENTRY("VrexZynConfigTools::CChipConfig::Element");
    return GetElement(&name, 0, context);
}

const CElement & CChipConfig::Element(std::uint32_t id, IConfigContext & context) const
{
    ZYN_SENTRY("VrexZynConfigTools::CChipConfig::Element");
    return GetElement(nullptr, id, context);
}

// The topmost layer with a valid element answers; without one it is what the last subsystem answered.
const CElement & CChipConfig::GetElement(
    const std::string * name, std::uint32_t id, IConfigContext & context) const
{
    ZYN_SENTRY("VrexZynConfigTools::CChipConfig::GetElement");

    const KeySearch search(name, id);
    const CElement * element = &CNullElement::Ref();
    const auto isAnswer = [&](CSubsystemConfig & subsystem) {
        element = &search.In(subsystem);
        return element->IsValid();
    };
    if (CSelectedLayers * const layers = CContextFacts::LayersOf(context)) {
        layers->Use(mStamp);
        const CLayerRange range = layers->Range(context);
        if (range.mIsClamped)
            ZYN_TRACE(3, "layer filter value is out of range");
        for (int layer = range.mTop; layer >= range.mBottom; --layer) {
            CSubsystemConfig * const subsystem = layers->At(layer, context, mSubsystems);
            if (subsystem != nullptr && isAnswer(*subsystem))
                break;
        }
        return *element;
    }
    VisitSelected(context, isAnswer);
    return *element;
}

// What lookups by name find that are made with the layer numbers 15 to 0 in turn, without writing each of them into the
// context. With a filter the number of the layer has another meaning, so that they must be made.
bool CChipConfig::FindTopmostValue(
    const std::string & name, IConfigContext & context, int & layer, std::vector<IPayload *> & payloads) const
{
    bool result = false;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CChipConfig::FindTopmostValue", result);

    CSelectedLayers * const layers = CContextFacts::LayersOf(context);
    if (layers == nullptr || layers->Range(context).mTop != CSelectedLayers::OWN_LAYER)
        return result;
    layers->Use(mStamp);
    const KeySearch search(&name, 0);
    layer = CSelectedLayers::TOP_LAYER;
    for (; payloads.empty() && layer >= 0; --layer) {
        CSubsystemConfig * const subsystem = layers->At(layer, context, mSubsystems);
        CElement & element = subsystem != nullptr ? search.In(*subsystem) : CNullElement::Ref();
        if (&element != &CNullElement::Ref())
            payloads = element.GetPayloadCopy(false);
    }
    ++layer;
    return result = true;
}

// The literal lookup: a context of a foreign class is asked for one layer after the other, down to the answer.
template <typename VisitT>
void CChipConfig::VisitSelected(IConfigContext & context, VisitT isAnswer) const
{
    ZYN_SENTRY("VrexZynConfigTools::CChipConfig::VisitSelected");

    const auto isIn = [&](IConfigContext & ofLayer) {
        const auto found = mSubsystems.find(ofLayer.GetTag(keywords::TAG_SUBSYSTEM_KEY_BY_LAYER));
        return found != mSubsystems.end() && isAnswer(*found->second);
    };
    const std::string filter = context.GetTag(keywords::TAG_LAYER_FILTER);
    if (filter.empty()) {
        isIn(context);
        return;
    }
    const CLayerRange range = FilteredRange(filter, context);
    if (range.mIsClamped)
        ZYN_TRACE(3, "layer filter value is out of range");
    const std::unique_ptr<IConfigContext> copy(context.Clone());
    for (int layer = range.mTop; copy != nullptr && layer >= range.mBottom; --layer) {
        copy->SetTag(keywords::TAG_LAYER_NUMBER, layer);
        if (isIn(*copy))
            break;
    }
}

}   // namespace VrexZynConfigTools
