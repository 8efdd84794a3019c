#include "showjson.h"

#include "text.h"

#include <configtools/stores.h>

#include <nlohmann/json.hpp>

namespace zynconfig {

namespace {

using Json = nlohmann::ordered_json;

constexpr int FORMAT = 1;   // goes up when a script that reads this form might fail on a later one
constexpr int INDENT = 2;

// JSON texts are UTF-8; what isn't is shown as in the table.
std::string TextOf(const std::string & bytes)
{
    return IsUtf8(bytes) ? bytes : Printable(bytes);
}

Json JsonOf(const Value & value);

Json JsonOf(const std::vector<Value> & values)
{
    Json array = Json::array();
    for (const Value & value : values)
        array.push_back(JsonOf(value));
    return array;
}

struct JsonMaker
{
    Json operator()(std::int64_t number) const { return number; }
    Json operator()(std::uint64_t number) const { return number; }
    Json operator()(const Value::Text & text) const
    {
        // A text that can't be one here comes as its bytes, so that nothing is lost.
        return IsUtf8(text.mBytes) ? Json(text.mBytes) : Json{ { "hex", HexOf(text.mBytes, "") } };
    }
    Json operator()(const Value::Octets & octets) const { return Json{ { "hex", HexOf(octets.mBytes, "") } }; }
    Json operator()(const Value::Enumerator & enumerator) const
    {
        return Json{ { "name", TextOf(enumerator.mName) }, { "number", enumerator.mNumber } };
    }
    Json operator()(const Value::List & list) const { return JsonOf(list.mItems); }
    Json operator()(const Value::Struct & fields) const { return JsonOf(fields.mFields); }
};

Json JsonOf(const Value & value)
{
    return std::visit(JsonMaker{}, value.mContent);
}

Json JsonOfNumber(int number)
{
    return number == NO_NUMBER ? Json() : Json(number);
}

Json JsonOfDevice(const Store & store)
{
    return store.mDevice == NO_NUMBER ? Json() : Json(DeviceName(store.mDevice));
}

Json JsonOf(const ShownLayer & layer)
{
    Json subsystems = Json::array();
    for (const int type : layer.mSubsystems)
        subsystems.push_back(SubsystemName(type));
    return { { "layer", layer.mNumber }, { "device", JsonOfDevice(layer.mStore) },
        { "store", JsonOfNumber(layer.mStore.mNumber) }, { "subsystems", std::move(subsystems) } };
}

Json JsonOf(const ShownValue & value)
{
    return { { "layer", value.mLayer == 0 ? Json() : Json(value.mLayer) },
        { "device", JsonOfDevice(value.mStore) }, { "store", JsonOfNumber(value.mStore.mNumber) },
        { "name", TextOf(value.mName) }, { "winner", value.mIsWinner }, { "type", value.mValue.mType },
        { "value", JsonOf(value.mValue) }, { "text", ToText(value.mValue) } };
}

Json JsonOf(const ShownKey & key)
{
    Json values = Json::array();
    for (const ShownValue & value : key.mValues)
        values.push_back(JsonOf(value));
    return { { "subsystem", SubsystemName(key.mKey.mSubsystem) }, { "id", key.mKey.mId },
        { "indices", key.mKey.mIsRow ? Json(key.mKey.mIndices) : Json() }, { "values", std::move(values) } };
}

}   // namespace

std::string RenderJson(const ShownChip & chip)
{
    Json layers = Json::array();
    for (const ShownLayer & layer : chip.mLayers)
        layers.push_back(JsonOf(layer));
    Json keys = Json::array();
    for (const ShownKey & key : chip.mKeys)
        keys.push_back(JsonOf(key));
    const Json root = { { "format", FORMAT }, { "chip", TextOf(chip.mLabel) }, { "layers", std::move(layers) },
        { "keys", std::move(keys) } };
    return root.dump(INDENT) + '\n';
}

}   // namespace zynconfig
