#include "json.h"

#include <kit/text/hex.h>
#include <kit/text/utf8.h>

namespace zynconfig {

using namespace workbench;
using kit::text::HexOf;
using kit::text::IsUtf8;
using kit::text::Printable;

namespace {

constexpr int INDENT = 2;

Json JsonOf(const std::vector<Value> & values)
{
    Json array = Json::array();
    for (const Value & value : values)
        array.push_back(zynconfig::JsonOf(value));
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
        return Json{ { "name", JsonText(enumerator.mName) }, { "number", enumerator.mNumber } };
    }
    Json operator()(const Value::List & list) const { return JsonOf(list.mItems); }
    Json operator()(const Value::Struct & fields) const { return JsonOf(fields.mFields); }
};

}   // namespace

std::string JsonText(const std::string & bytes)
{
    return IsUtf8(bytes) ? bytes : Printable(bytes);
}

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

Json JsonOfIndices(const Key & key)
{
    return key.mIsRow ? Json(key.mIndices) : Json();
}

std::string TextOf(const Json & document)
{
    return document.dump(INDENT) + '\n';
}

}   // namespace zynconfig
