#include "contextfacts.h"

#include <configtools/keywords.h>
#include <misc/stringutil.h>

#include <list>
#include <map>

namespace VrexZynConfigTools {

namespace {

using Tags = std::map<std::string, std::string>;

InsertModeEnum InsertModeIn(const Tags & tags)
{
    const auto found = tags.find(keywords::TAG_INSERT_MODE);
    if (found == tags.end())
        return InsertModeEnum::ADD;
    const std::string mode = stringutil::ToLower(found->second);
    if (mode == keywords::INSERT_OVERWRITE)
        return InsertModeEnum::OVERWRITE;
    return mode == keywords::INSERT_NEW ? InsertModeEnum::KEEP : InsertModeEnum::ADD;
}

std::uint32_t IndexIn(const std::string & value)
{
    return static_cast<std::uint32_t>(stringutil::DecimalToInt(value));
}

std::vector<std::uint32_t> IndicesIn(const Tags & tags)
{
    std::vector<std::uint32_t> indices;
    if (tags.count(keywords::TAG_NUM_INDICES) == 0)
        return indices;
    for (const auto & [key, value] : tags) {
        if (key.find(keywords::TAG_INDEX) != std::string::npos)
            indices.push_back(IndexIn(value));
    }
    return indices;
}

bool IsOfPlace(const std::string & key)
{
    return key == keywords::TAG_STORE || key == keywords::TAG_SUBSYSTEM_TYPE || key == keywords::TAG_DEVICE;
}

}   // namespace

CContextFacts * CContextFacts::Make(IConfigContext & context)
{
    if (!IsChipContext(context) && typeid(context) != typeid(CBaseContext))
        return nullptr;
    auto & follower = static_cast<CBaseContext &>(context).mFollower;
    if (follower == nullptr)
        follower = std::make_unique<CContextFacts>();
    return Known(context);
}

InsertModeEnum CContextFacts::InsertModeOf(IConfigContext & context)
{
    if (context.TagMatches(keywords::TAG_INSERT_MODE, keywords::INSERT_OVERWRITE))
        return InsertModeEnum::OVERWRITE;
    if (context.TagMatches(keywords::TAG_INSERT_MODE, keywords::INSERT_NEW))
        return InsertModeEnum::KEEP;
    return InsertModeEnum::ADD;
}

// Every tag whose key contains "index" counts, also one such as "myindexfoo", and the number in "num_indices" is not
// looked at, only its presence; both intended: readers are free in how they number their index tags.
std::vector<std::uint32_t> CContextFacts::IndicesOf(IConfigContext & context)
{
    std::vector<std::uint32_t> indices;
    if (context.TagMatches(keywords::TAG_NUM_INDICES, keywords::EMPTY))
        return indices;
    for (const std::string & value : context.GetTags(keywords::TAG_INDEX))
        indices.push_back(IndexIn(value));
    return indices;
}

// As above, from the tags themselves.
const CReadOptions & CContextFacts::ReadOptions(IConfigContext & context)
{
    if (!mOptions) {
        const Tags & tags = static_cast<CBaseContext &>(context).mTags;
        mOptions = { InsertModeIn(tags), tags.count(keywords::TAG_LAYER_FILTER) != 0, IndicesIn(tags) };
    }
    return *mOptions;
}

void CContextFacts::OnTagsChanged(const std::string * key) noexcept
{
    mOptions.reset();
    if (mLayers != nullptr)
        mLayers->OnTagsChanged(key);
    if (mIsPlaceChanged != nullptr && (key == nullptr || IsOfPlace(*key)))
        *mIsPlaceChanged = true;
}

}   // namespace VrexZynConfigTools
