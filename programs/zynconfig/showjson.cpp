#include "showjson.h"

#include "json.h"

namespace zynconfig {

using namespace workbench;

namespace {

Json JsonOf(const Layer & layer)
{
    Json subsystems = Json::array();
    for (const int type : layer.mSubsystems)
        subsystems.push_back(SubsystemName(type));
    return { { "layer", layer.mNumber }, { "device", JsonOfDevice(layer.mStore) },
        { "store", JsonOfNumber(layer.mStore.mNumber) }, { "subsystems", std::move(subsystems) } };
}

Json JsonOf(const LayeredValue & value)
{
    return { { "layer", value.mLayer == 0 ? Json() : Json(value.mLayer) },
        { "device", JsonOfDevice(value.mStore) }, { "store", JsonOfNumber(value.mStore.mNumber) },
        { "name", JsonText(value.mName) }, { "winner", value.mIsWinner }, { "type", value.mValue.mType },
        { "value", zynconfig::JsonOf(value.mValue) }, { "text", ToText(value.mValue) } };
}

Json JsonOf(const LayeredKey & key)
{
    Json values = Json::array();
    for (const LayeredValue & value : key.mValues)
        values.push_back(JsonOf(value));
    return { { "subsystem", SubsystemName(key.mKey.mSubsystem) }, { "id", key.mKey.mId },
        { "indices", JsonOfIndices(key.mKey) }, { "values", std::move(values) } };
}

}   // namespace

std::string RenderJson(const LayeredChip & chip)
{
    Json layers = Json::array();
    for (const Layer & layer : chip.mLayers)
        layers.push_back(JsonOf(layer));
    Json keys = Json::array();
    for (const LayeredKey & key : chip.mKeys)
        keys.push_back(JsonOf(key));
    const Json root = { { "format", JSON_FORMAT }, { "chip", JsonText(chip.mLabel) },
        { "layers", std::move(layers) }, { "keys", std::move(keys) } };
    return TextOf(root);
}

}   // namespace zynconfig
