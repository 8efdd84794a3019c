#include "contextfacts.h"

#include <configtools/keywords.h>
#include <misc/stringutil.h>

#include <list>
#include <memory>
#include <string>

namespace VrexZynConfigTools {

CContextFacts * CContextFacts::Renew(IConfigContext & context)
{
    const std::type_info & type = typeid(context);
    if (type != typeid(CZynContext) && type != typeid(CBaseContext))
        return nullptr;

    auto & base = static_cast<CBaseContext &>(context);
    if (base.mFacts == nullptr)
        base.mFacts = std::make_unique<CContextFacts>();
    CContextFacts & facts = *base.mFacts;
    if (facts.mVersion != base.mChangeCount) {
        facts.mVersion = base.mChangeCount;
        facts.mHasOptions = false;
        facts.mPathStamp = 0;
    }
    return &facts;
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
        indices.push_back(static_cast<std::uint32_t>(stringutil::DecimalToInt(value)));
    return indices;
}

const CReadOptions & CContextFacts::ReadOptions(IConfigContext & context)
{
    if (!mHasOptions) {
        mOptions.mInsertMode = InsertModeOf(context);
        mOptions.mIndices = IndicesOf(context);
        mOptions.mIsFiltered = !context.GetTag(keywords::TAG_LAYER_FILTER).empty();
        mHasOptions = true;
    }
    return mOptions;
}

const CSearchPath & CContextFacts::KeepSearchPath(const CSearchPath & path, std::uint64_t stamp)
{
    mPath = path;
    mPathStamp = stamp;
    return mPath;
}

}   // namespace VrexZynConfigTools
