#include "key.h"

#include <configtools/keywords.h>
#include <kit/reading/devices.h>
#include <kit/text/utf8.h>

#include <cstdlib>

namespace workbench {

using namespace VrexZynConfigTools;
using kit::text::Printable;

namespace {

int NumberTag(IConfigContext & context, const char * tag)
{
    const std::string text = context.GetTag(tag);
    return text.empty() ? NO_NUMBER : std::atoi(text.c_str());
}

std::uint32_t IndexFromTag(const std::string & text)
{
    return static_cast<std::uint32_t>(std::strtoll(text.c_str(), nullptr, 10));
}

}   // namespace

int SubsystemOf(IConfigContext & context)
{
    return NumberTag(context, keywords::TAG_SUBSYSTEM_TYPE);
}

Store StoreOf(IConfigContext & context)
{
    return { NumberTag(context, keywords::TAG_DEVICE), NumberTag(context, keywords::TAG_STORE) };
}

int LayerOf(IConfigContext & context)
{
    const int layer = NumberTag(context, keywords::TAG_LAYER_NUMBER);
    return layer == NO_NUMBER ? 0 : layer;
}

Key KeyOf(const CElement & element, int subsystem)
{
    const auto * const row = dynamic_cast<const CIndexedElement *>(&element);
    Key key = { subsystem, element.PsId(), row != nullptr, {} };
    for (std::uint32_t i = 0; row != nullptr && i < row->NumIndices(); ++i)
        key.mIndices.push_back(row->Index(i));
    return key;
}

Key KeyOf(const CElement & element, IConfigContext & context)
{
    Key key = KeyOf(element, SubsystemOf(context));
    if (context.TagMatches(keywords::TAG_NUM_INDICES, keywords::EMPTY))
        return key;

    std::vector<std::uint32_t> indices;
    for (const std::string & text : context.GetTags(keywords::TAG_INDEX))
        indices.push_back(IndexFromTag(text));
    if (!indices.empty()) {
        key.mIsRow = true;
        key.mIndices = std::move(indices);
    }
    return key;
}

std::string DeviceName(int device)
{
    if (device == NO_NUMBER)
        return "no device";
    return kit::reading::DeviceName(device);
}

std::string NameOf(const Store & store)
{
    const std::string device = DeviceName(store.mDevice);
    return store.mNumber == NO_NUMBER ? device : device + '.' + std::to_string(store.mNumber);
}

std::string SubsystemName(int subsystem)
{
    if (subsystem == NO_NUMBER)
        return "no type";
    return kit::reading::SubsystemName(subsystem);
}

std::string LookupText(const Key & key)
{
    std::string text = std::to_string(key.mId);
    for (const std::uint32_t index : key.mIndices)
        text += '.' + std::to_string(index);
    return text;
}

std::string NumberText(const Key & key)
{
    return LookupText(key) + (key.mIsRow && key.mIndices.empty() ? "." : "");
}

std::string TitleOf(const Key & key, const std::string & name)
{
    const std::string called = name.empty() ? "" : " (" + Printable(name) + ')';
    return "key " + NumberText(key) + called + " of " + SubsystemName(key.mSubsystem);
}

std::string TitleOf(const StoredKey & key, const std::string & name)
{
    return TitleOf(key.mKey, name) + " in " + NameOf(key.mStore);
}

Finding FindingAbout(const StoredKey & key, const std::string & code, const std::string & text)
{
    Finding finding = FindingAbout(key.mKey, code, text);
    finding.mStore = NameOf(key.mStore);
    return finding;
}

Finding FindingAbout(const Key & key, const std::string & code, const std::string & text)
{
    Finding finding = kit::reporting::MakeFinding(code, text);
    finding.mSubsystem = SubsystemName(key.mSubsystem);
    finding.mKey = NumberText(key);
    return finding;
}

}   // namespace workbench
