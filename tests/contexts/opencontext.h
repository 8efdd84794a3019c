/// Contexts whose protected fields a test can see, and which record the virtual calls made on them.

#ifndef TESTS_CONTEXTS_OPENCONTEXT_H
#define TESTS_CONTEXTS_OPENCONTEXT_H

#include <configtools/zyncontext.h>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace VrexZynConfigTools {

using TagMap = std::map<std::string, std::string>;

/// BaseT: CBaseContext or CZynContext.
template <typename BaseT>
class OpenContext : public BaseT
{
public:
    using BaseT::BaseT;
    using BaseT::mChangeCount;
    using BaseT::mTags;
};

using OpenBaseContext = OpenContext<CBaseContext>;
using OpenZynContext = OpenContext<CZynContext>;

/// The change count of any context of the library.
inline std::uint32_t ChangeCount(const CBaseContext & context)
{
    struct Peek : CBaseContext
    {
        static std::uint32_t Count(const CBaseContext & of) { return of.*&Peek::mChangeCount; }
    };
    return Peek::Count(context);
}

/// Records the calls of the virtual text form of SetTag and of GetTag, and computes the tag "computed".
template <typename BaseT>
class RecordingContext : public BaseT
{
public:
    using BaseT::BaseT;
    using BaseT::SetTag;

    void SetTag(const std::string & key, const std::string & value) override
    {
        mCalls.push_back("set " + key + "=" + value);
        BaseT::SetTag(key, value);
    }
    std::string GetTag(const std::string & key) override
    {
        mCalls.push_back("get " + key);
        return key == "computed" ? "5" : BaseT::GetTag(key);
    }

    std::vector<std::string> mCalls;
};

}   // namespace VrexZynConfigTools

#endif
