/// Context classes as a plug-in might write them: they answer in ways of their own.

#ifndef TESTS_SUPPORT_FOREIGN_CONTEXTS_H
#define TESTS_SUPPORT_FOREIGN_CONTEXTS_H

#include <configtools/zyncontext.h>

#include <cstdlib>
#include <list>
#include <map>
#include <string>

namespace VrexZynConfigTools::support {

/// Computes some tags in its `GetTag`, in front of the stored ones. BaseT: CBaseContext or CZynContext.
template <typename BaseT>
class ComputingContext : public BaseT
{
public:
    using BaseT::BaseT;

    ComputingContext & Computes(const std::string & key, const std::string & value)
    {
        mComputed[key] = value;
        return *this;
    }

    std::string GetTag(const std::string & key) override
    {
        const auto found = mComputed.find(key);
        return found != mComputed.end() ? found->second : BaseT::GetTag(key);
    }
    IConfigContext * Clone() override { return new ComputingContext(*this); }

private:
    std::map<std::string, std::string> mComputed;
};

/// Matches and lists by its own answers, which may change from call to call without a write.
template <typename BaseT>
class ChangingContext : public BaseT
{
public:
    using BaseT::BaseT;

    std::string mAnswer;   // to every question

    std::string GetTag(const std::string & /*key*/) override { return mAnswer; }
    std::list<std::string> GetTags(const std::string & /*keyPart*/) override { return { mAnswer }; }
    bool TagMatches(const std::string & key, int value) override { return BaseT::TagMatches(key, value); }
    bool TagMatches(const std::string & /*key*/, const std::string & value) override
    {
        return value == mAnswer;
    }
    IConfigContext * Clone() override { return new ChangingContext(*this); }
};

/// Answers for tags as if each key had a prefix in front; so one object holds two sets of tags.
template <typename BaseT>
class PrefixedContext : public BaseT
{
public:
    using BaseT::BaseT;

    static constexpr char PREFIX[] = "my.";

    std::string GetTag(const std::string & key) override { return BaseT::GetTag(PREFIX + key); }
    std::list<std::string> GetTags(const std::string & keyPart) override
    {
        return BaseT::GetTags(PREFIX + keyPart);
    }
    bool TagMatches(const std::string & key, int value) override
    {
        return BaseT::TagMatches(PREFIX + key, value);
    }
    bool TagMatches(const std::string & key, const std::string & value) override
    {
        return BaseT::TagMatches(PREFIX + key, value);
    }
    IConfigContext * Clone() override { return new PrefixedContext(*this); }
};

/// Shares nothing with the library's own contexts, and keys are taken as they are written.
class MapContext : public IConfigContext
{
public:
    explicit MapContext(const std::string & tags = "")
    {
        MapContext::Parse(tags);
        ++Live();
    }
    MapContext(const MapContext & other)
        : IConfigContext(other)
        , mTags(other.mTags)
    {
        ++Live();
    }
    MapContext & operator=(const MapContext &) = delete;
    ~MapContext() override { --Live(); }

    /// How many there are.
    static int & Live()
    {
        static int live = 0;
        return live;
    }
    const std::map<std::string, std::string> & All() const { return mTags; }

    const std::string Name() override { return "map"; }
    bool IsValid() override { return true; }
    void SetTag(const std::string & key) override { mTags.erase(key); }
    void SetTag(const std::string & key, int value) override { mTags[key] = std::to_string(value); }
    void SetTag(const std::string & key, const std::string & value) override { mTags[key] = value; }
    void SetTags(const std::string & keyPart, const std::string & value) override
    {
        for (auto & [key, old] : mTags) {
            if (key.find(keyPart) != std::string::npos)
                old = value;
        }
    }
    std::string GetTag(const std::string & key) override
    {
        if (key == "subsystemkeybylayer")
            return GetTag("chip") + "| |" + GetTag("subsystemtype") + "|" + GetTag("layernumber");
        const auto found = mTags.find(key);
        return found != mTags.end() ? found->second : std::string();
    }
    std::list<std::string> GetTags(const std::string & keyPart) override
    {
        std::list<std::string> values;
        for (const auto & [key, value] : mTags) {
            if (key.find(keyPart) != std::string::npos)
                values.push_back(value);
        }
        return values;
    }
    bool TagMatches(const std::string & key, int value) override
    {
        return !GetTag(key).empty() && std::atoi(GetTag(key).c_str()) == value;
    }
    bool TagMatches(const std::string & key, const std::string & value) override
    {
        return GetTag(key) == value;
    }
    IConfigContext * Clone() override { return new MapContext(*this); }
    void Parse(const std::string & text) override
    {
        CBaseContext parser("parser");
        parser.Parse(text);
        for (const auto & [key, value] : parser.Tags())
            mTags[key] = value;
    }

private:
    std::map<std::string, std::string> mTags;
};

}   // namespace VrexZynConfigTools::support

#endif
