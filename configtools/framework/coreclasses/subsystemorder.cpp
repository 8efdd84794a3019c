#include "subsystemorder.h"

#include <messages/trace.h>
#include <misc/stringutil.h>

#include <algorithm>
#include <cstddef>

namespace VrexZynConfigTools {

namespace {

constexpr GroupEnum MESSAGE_GROUP = GROUP_CORE_CLASSES;

/// Hands out the fields of a key, in the manner of strtok: there are no empty fields.
class CFieldWalk
{
public:
    explicit CFieldWalk(const std::string & key)
        : mKey(key)
    {
        FindNext();
    }

    bool AtEnd() const { return mBegin == std::string::npos; }

    void Skip()
    {
        mEnd = std::min(mKey.find('|', mBegin), mKey.size());
        FindNext();
    }

    /// The number of the next field, or what can be read of it; 0 at the end.
    std::uint32_t NextNumber()
    {
        if (AtEnd())
            return 0;
        const std::size_t begin = mBegin;
        Skip();
        std::int32_t number = 0;
        stringutil::StringToInteger(mKey.substr(begin, mEnd - begin), number);
        return static_cast<std::uint32_t>(number);
    }

private:
    void FindNext() { mBegin = mKey.find_first_not_of('|', mEnd); }

    const std::string & mKey;
    std::size_t mBegin = 0;   // of the next field; npos at the end
    std::size_t mEnd = 0;     // of the field passed last
};

}   // namespace

std::uint32_t SubsysToInt(const std::string & key)
{
    std::uint32_t result = 0;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::SubsysToInt", result);

    CFieldWalk fields(key);
    fields.Skip();   // the chip
    fields.Skip();   // the blank
    const std::uint32_t a = fields.NextNumber();
    const std::uint32_t b = fields.NextNumber();
    if (fields.AtEnd())
        return result = (a << 24) + b;

    fields.Skip();
    const std::uint32_t c = fields.NextNumber();
    return result = ((((a << 4) + b) << 16) + c) << 4;
}

bool SubsystemComparer(const std::string & a, const std::string & b)
{
    bool result = false;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::SubsystemComparer", result);

    return result = SubsysToInt(a) < SubsysToInt(b);
}

}   // namespace VrexZynConfigTools
