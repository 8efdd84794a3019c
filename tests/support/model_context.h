/// A context as plain data: what the contexts of the library must answer, told in the shortest way.

#ifndef TESTS_SUPPORT_MODEL_CONTEXT_H
#define TESTS_SUPPORT_MODEL_CONTEXT_H

#include <cctype>
#include <cerrno>
#include <climits>
#include <cstdint>
#include <cstdlib>
#include <list>
#include <map>
#include <string>

namespace VrexZynConfigTools::support {

inline std::string ModelToLower(std::string text)
{
    for (char & c : text)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return text;
}

/// Decimal text as the library reads it: 64 bits, of which the low 32 are kept.
inline std::int32_t ModelAtoi(const std::string & text)
{
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(std::strtoll(text.c_str(), nullptr, 10)));
}

/// A whole number with base detection, of 32 bits.
inline bool ModelStringToInteger(const std::string & text, std::int32_t & out)
{
    if (text.empty())
        return false;
    errno = 0;
    char * end = nullptr;
    const long long value = std::strtoll(text.c_str(), &end, 0);
    const bool fits = errno == 0 && value >= INT_MIN && value <= INT_MAX;
    out = static_cast<std::int32_t>(value < INT_MIN ? INT_MIN : value > INT_MAX ? INT_MAX : value);
    return fits && end == text.c_str() + text.size();
}

/// `mPrefix` stands for a class that looks for another key than it is asked for, `mIsZyn` for one that computes the
/// subsystem keys.
struct ModelContext
{
    bool mIsZyn = true;
    std::string mPrefix;
    std::map<std::string, std::string> mTags;
    std::uint32_t mChangeCount = 0;
    mutable std::uint32_t mKeyVersion = 0;
    mutable std::string mLayerKey;

    std::string Stored(const std::string & key) const
    {
        const auto found = mTags.find(ModelToLower(key));
        return found != mTags.end() ? found->second : std::string();
    }
    std::string Field(const std::string & key) const
    {
        return Stored(key).empty() ? std::string(" ") : Stored(key);
    }
    std::string KeyByStore() const
    {
        return Field("chip") + "| |" + Field("subsystemtype") + "|" + Field("device") + "|" + Field("store");
    }
    std::string KeyByLayer() const
    {
        return Field("chip") + "| |" + Field("subsystemtype") + "|" + Field("layernumber");
    }
    /// As last built, if nothing was written since. A context whose base part was assigned and has the same count
    /// keeps the key of its former tags.
    std::string CachedKeyByLayer() const
    {
        if (mKeyVersion != mChangeCount || mChangeCount == 0) {
            mKeyVersion = mChangeCount;
            mLayerKey = KeyByLayer();
        }
        return mLayerKey;
    }
    std::string GetTag(const std::string & key) const
    {
        const std::string asked = mPrefix + key;
        if (mIsZyn && asked == "subsystemkeybystore")
            return KeyByStore();
        if (mIsZyn && asked == "subsystemkeybylayer")
            return CachedKeyByLayer();
        return Stored(asked);
    }
    std::list<std::string> GetTags(const std::string & keyPart) const
    {
        std::list<std::string> values;
        for (const auto & [key, value] : mTags) {
            if (key.find(ModelToLower(mPrefix + keyPart)) != std::string::npos)
                values.push_back(value);
        }
        return values;
    }
    bool TagMatches(const std::string & key, const std::string & value) const
    {
        return ModelToLower(Stored(mPrefix + key)) == ModelToLower(value);
    }
    bool TagMatches(const std::string & key, std::int32_t value) const
    {
        const std::string text = Stored(mPrefix + key);
        return ModelAtoi(text) == value && (value != 0 || !text.empty());
    }

    void SetTag(const std::string & key, const std::string & value)
    {
        ++mChangeCount;
        if (value.empty())
            mTags.erase(ModelToLower(key));
        else
            mTags[ModelToLower(key)] = value;
    }
    void SetTags(const std::string & keyPart, const std::string & value)
    {
        for (auto tag = mTags.begin(); tag != mTags.end();) {
            const bool matches = tag->first.find(ModelToLower(keyPart)) != std::string::npos;
            mChangeCount += matches ? 1 : 0;
            if (matches && value.empty()) {
                tag = mTags.erase(tag);
                continue;
            }
            if (matches)
                tag->second = value;
            ++tag;
        }
    }

    /// The part of a context that the base class holds.
    void AssignBaseOf(const ModelContext & other)
    {
        mTags = other.mTags;
        mChangeCount = other.mChangeCount;
    }

    /// A chip context's clone has the tags alone; others are clones with all they have.
    ModelContext Clone() const
    {
        ModelContext clone = *this;
        if (mIsZyn && mPrefix.empty()) {
            clone.mChangeCount = 0;
            clone.mKeyVersion = 0;
        }
        return clone;
    }

    /// What is left behind by a move.
    void LoseTags() { mTags.clear(); }
    void LoseAll()
    {
        mTags.clear();
        mKeyVersion = 0;
    }
};

}   // namespace VrexZynConfigTools::support

#endif
