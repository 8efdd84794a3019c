#include <kit/reading/contexts.h>

#include <kit/reading/storetags.h>

#include <configtools/keywords.h>
#include <configtools/zyncontext.h>

#include <cstddef>
#include <optional>

namespace kit::reading {

using namespace VrexZynConfigTools;

namespace {

void SetNumberTag(IConfigContext & context, const char * tag, const std::optional<int> & number)
{
    if (number)
        context.SetTag(tag, *number);
    else
        context.SetTag(tag);   // deletes what the caller's context may hold
}

void SetLayer(IConfigContext & context, const SubsystemPlace & place, const StoreLayers & layers)
{
    const auto found = layers.find({ place.mDevice.value_or(-1), place.mStore.value_or(-1) });
    const bool isListed = found != layers.end();
    SetNumberTag(context, keywords::TAG_LAYER_NUMBER, isListed ? std::optional(found->second) : std::nullopt);
}

// Index tags are read back in the byte order of their keys: with leading zeros that is the order of the indices.
std::string IndexTag(std::size_t number, std::size_t count)
{
    const std::string digits = std::to_string(number);
    const std::size_t width = std::to_string(count).size();
    return keywords::TAG_INDEX + std::string(width - digits.size(), '0') + digits;
}

}   // namespace

ContextOwner FileContext(IConfigContext & caller, const std::string & chip)
{
    // The null context keeps no tags; an empty one takes its place.
    ContextOwner context(caller.IsValid() ? caller.Clone() : new CZynContext);
    context->SetTags(keywords::TAG_INDEX, "");   // a stray one would make table rows of plain keys
    context->SetTag(keywords::TAG_NUM_INDICES);
    if (!chip.empty())
        context->SetTag(keywords::TAG_CHIP, chip);
    return context;
}

ContextOwner SubsystemContext(IConfigContext & fileContext, const SubsystemPlace & place)
{
    ContextOwner context(fileContext.Clone());
    SetNumberTag(*context, keywords::TAG_SUBSYSTEM_TYPE, place.mType);
    SetNumberTag(*context, keywords::TAG_DEVICE, place.mDevice);
    SetNumberTag(*context, keywords::TAG_STORE, place.mStore);
    const std::string layers = fileContext.GetTag(TAG_STORE_LAYERS);
    if (place.mLayer)
        context->SetTag(keywords::TAG_LAYER_NUMBER, *place.mLayer);
    else if (!layers.empty())
        SetLayer(*context, place, ParseStoreLayers(layers).value_or(StoreLayers()));
    return context;
}

IConfigContext & CKeyContexts::Of(const std::vector<std::uint32_t> & indices)
{
    const std::size_t count = indices.size();
    if (count == 0)
        return mPlain;
    if (count != mIndexCount) {
        mRow.reset(mPlain.Clone());
        mRow->SetTag(keywords::TAG_NUM_INDICES, std::to_string(count));
        mIndexCount = count;
    }
    for (std::size_t position = 0; position < count; ++position)
        mRow->SetTag(IndexTag(position + 1, count), std::to_string(indices[position]));
    return *mRow;
}

}   // namespace kit::reading
