/// A subsystem's elements as plain data, and every answer found by walking the list, word for word: what an index
/// beside the list must not change.

#ifndef TESTS_SUPPORT_WALK_MODEL_H
#define TESTS_SUPPORT_WALK_MODEL_H

#include <support/foreign_elements.h>
#include <support/lives.h>
#include <support/model_context.h>

#include <functional>
#include <list>
#include <string>
#include <utility>
#include <vector>

namespace VrexZynConfigTools::support {

/// What an element shows to the `Same` of another.
struct ModelView
{
    std::uint32_t mId;
    std::string mName;
    bool mIsRow;
    std::vector<std::uint32_t> mIndices;
};

/// How an element answers `Same`. All but LIBRARY are classes of a plug-in.
enum class Rule
{
    LIBRARY,
    AS_ITS_BASE,
    BY_NAME,
    NEVER,
    ALWAYS,
    LOWER_NUMBER,   // asymmetric
    FIRST_INDEX,
    COUNT
};

struct ModelElement
{
    int mUid;
    ModelView mView;
    std::uint64_t mLength;
    Rule mRule;

    bool Same(const ModelView & other) const
    {
        switch (mRule) {
        case Rule::BY_NAME:
            return ModelToLower(mView.mName) == ModelToLower(other.mName);
        case Rule::NEVER:
            return false;
        case Rule::ALWAYS:
            return true;
        case Rule::LOWER_NUMBER:
            return mView.mId < other.mId;
        case Rule::FIRST_INDEX:
            return !other.mIndices.empty() && other.mIndices.front() == mView.mId % 3;
        default:
            return mView.mId == other.mId &&
                   (!mView.mIsRow || (other.mIsRow && mView.mIndices == other.mIndices));
        }
    }

    /// A row of the library counts its indices, an enumerator has no size, a text or an array has 2 to spare.
    std::uint64_t Size() const
    {
        if (mView.mIsRow)
            return 4 * mView.mIndices.size() + mLength;
        return mRule == Rule::LIBRARY && mUid % 3 == 0 ? 0 : 2 + mLength;
    }
};

inline ModelView ViewOf(const CElement & element)
{
    ModelView view{ element.PsId(), element.Name(), false, {} };
    if (const auto * row = dynamic_cast<const CIndexedElement *>(&element)) {
        view.mIsRow = true;
        for (std::uint32_t i = 0; i < row->NumIndices(); ++i)
            view.mIndices.push_back(row->Index(i));
    }
    return view;
}

/// The library's twin of a model's element.
inline CElement * MakeTwin(const ModelElement & model, Lives & lives)
{
    const std::uint32_t id = model.mView.mId;
    const std::string & name = model.mView.mName;
    const std::vector<IPayload *> payload{ new TracedPayload(lives, model.mUid, model.mLength) };
    const auto rule = [model](
                          const CElement & /*self*/, CElement & other) { return model.Same(ViewOf(other)); };
    if (model.mRule != Rule::LIBRARY && model.mView.mIsRow)
        return (new ForeignRow(id, name, model.mView.mIndices, payload, true))->Ruled(rule);
    if (model.mRule != Rule::LIBRARY)
        return (new ForeignElement<CElementNumericArray>(id, name, payload, true))->Ruled(rule);
    if (model.mView.mIsRow)
        return new CIndexedElement(id, name, model.mView.mIndices, payload, true);
    switch (model.mUid % 3) {
    case 0:
        return new CElementEnum(id, name, payload, true);
    case 1:
        return new CElementString(id, name, payload, true);
    default:
        return new CElementNumericArray(id, name, payload, true);
    }
}

/// The key text, its number and its indices, as a lookup reads them.
struct ModelKey
{
    std::string mName;
    bool mIsNumber = false;
    std::int32_t mNumber = 0;
    bool mIsIndexed = false;
    std::vector<std::uint32_t> mIndices;

    ModelKey(const std::string & key, const std::vector<std::uint32_t> * indices)
        : mName(key)
    {
        const auto dot = key.find('.');
        if (dot != std::string::npos) {
            mName = key.substr(0, dot);
            std::string rest = key.substr(dot + 1);
            for (auto next = rest.find('.'); next != std::string::npos; next = rest.find('.')) {
                AddIndex(rest.substr(0, next));
                rest.erase(0, next + 1);
            }
            AddIndex(rest);
        }
        mIsIndexed = !mIndices.empty();
        if (indices != nullptr) {
            mIndices = *indices;
            mIsIndexed = true;
        }
        mIsNumber = ModelStringToInteger(mName, mNumber);
        if (mNumber == 0)
            mName = ModelToLower(mName);
    }

private:
    void AddIndex(const std::string & piece)
    {
        mIndices.push_back(static_cast<std::uint32_t>(ModelAtoi(piece)));
    }
};

class WalkModel
{
public:
    using Elements = std::list<ModelElement>;
    using Told = std::function<void(const ModelElement &, const ModelContext &)>;

    Told mOnAdded = [](const ModelElement &, const ModelContext &) {};
    std::function<void(int, int)> mOnReplaced = [](int, int) {};   // the uids of old and new
    std::function<void(int)> mOnRemoved = [](int) {};

    const Elements & All() const { return mElements; }

    /// True if the element was stored.
    bool OnElementFound(ModelElement element, const ModelContext & context)
    {
        std::vector<std::uint32_t> indices;
        if (!context.TagMatches("num_indices", "")) {
            for (const std::string & value : context.GetTags("index"))
                indices.push_back(static_cast<std::uint32_t>(ModelAtoi(value)));
        }
        if (!indices.empty()) {
            element.mView.mIsRow = true;
            element.mView.mIndices = indices;
            element.mRule = Rule::LIBRARY;
        }
        return InsertOrReplace(element, context);
    }

    int Element(std::uint32_t id) const
    {
        for (auto element = mElements.rbegin(); element != mElements.rend(); ++element) {
            if (element->mView.mId == id)
                return element->mUid;
        }
        return NULL_ELEMENT;
    }
    int Element(const std::string & key) const
    {
        const auto found = Find(key, nullptr);
        return found != mElements.end() ? found->mUid : NULL_ELEMENT;
    }
    std::vector<int> ElementsWith(std::uint32_t id) const
    {
        std::vector<int> uids;
        for (const ModelElement & element : mElements) {
            if (element.mView.mId == id)
                uids.push_back(element.mUid);
        }
        return uids;
    }
    bool ElementsIsEmpty(std::uint32_t id) const
    {
        for (const ModelElement & element : mElements) {
            if (element.mView.mId == id)
                return element.mLength == 0;
        }
        return true;
    }
    std::uint64_t Size() const
    {
        std::uint64_t size = 0;
        for (const ModelElement & element : mElements)
            size += element.Size();
        return size;
    }

    void Remove(const std::string & key, const std::vector<std::uint32_t> * indices)
    {
        for (auto found = Find(key, indices); found != mElements.end(); found = Find(key, indices)) {
            mOnRemoved(found->mUid);
            mElements.erase(found);
        }
    }

private:
    bool InsertOrReplace(const ModelElement & element, const ModelContext & context)
    {
        const bool overwrites = context.TagMatches("insertmode", "overwrite");
        if (overwrites || context.TagMatches("insertmode", "new")) {
            for (ModelElement & stored : mElements) {
                if (!stored.Same(element.mView))
                    continue;
                if (overwrites) {
                    mOnReplaced(stored.mUid, element.mUid);
                    stored = element;
                }
                return overwrites;
            }
        }
        mElements.push_back(element);
        mOnAdded(element, context);
        return true;
    }

    Elements::const_iterator Find(const std::string & text, const std::vector<std::uint32_t> * indices) const
    {
        const ModelKey key(text, indices);
        for (auto element = mElements.begin(); element != mElements.end(); ++element) {
            const ModelView & view = element->mView;
            // Both are 32 bits wide, and the comparison is unsigned.
            const bool matches = key.mIsNumber ? view.mId == static_cast<std::uint32_t>(key.mNumber)
                                               : ModelToLower(view.mName) == key.mName;
            if (!matches)
                continue;
            if (key.mIsIndexed ? element->Same({ view.mId, key.mName, true, key.mIndices })
                               : view.mIndices.empty())
                return element;
        }
        return mElements.end();
    }

    Elements mElements;
};

}   // namespace VrexZynConfigTools::support

#endif
