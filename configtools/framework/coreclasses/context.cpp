#include <configtools/context.h>

#include "contextfollower.h"

#include <configtools/keywords.h>
#include <messages/trace.h>
#include <misc/stringutil.h>

#include <algorithm>
#include <cstddef>
#include <utility>

namespace VrexZynConfigTools {

namespace {

constexpr GroupEnum MESSAGE_GROUP = GROUP_CORE_CLASSES;

bool Contains(const std::string & text, const std::string & part)
{
    return text.find(part) != std::string::npos;
}

}   // namespace

CBaseContext::CBaseContext(const std::string & name)
    : mName(name)
{
    ZYN_CONSTRUCTOR(GROUP_CORE_CLASSES, "VrexZynConfigTools::CBaseContext::CBaseContext");
}

CBaseContext::CBaseContext(const std::string & name, int subsystemType)
    : mName(name)
{
    ZYN_CONSTRUCTOR(GROUP_CORE_CLASSES, "VrexZynConfigTools::CBaseContext::CBaseContext");

    CBaseContext::SetTag(keywords::TAG_SUBSYSTEM_TYPE, std::to_string(subsystemType));
}

CBaseContext::CBaseContext(const CBaseContext & other)
    : IConfigContext(other)
    , mName(other.mName)
    , mTags(other.mTags)
    , mChangeCount(other.mChangeCount)
{
    ZYN_CONSTRUCTOR(GROUP_CORE_CLASSES, "VrexZynConfigTools::CBaseContext::CBaseContext");
}

CBaseContext::CBaseContext(CBaseContext && other) noexcept
    : mName(std::exchange(other.mName, {}))
    , mTags(std::exchange(other.mTags, {}))
    , mChangeCount(other.mChangeCount)
{
    ZYN_CONSTRUCTOR(GROUP_CORE_CLASSES, "VrexZynConfigTools::CBaseContext::CBaseContext");

    other.OnTagsChanged(nullptr);
}

CBaseContext & CBaseContext::operator=(const CBaseContext & other)
{
    ZYN_SENTRY("VrexZynConfigTools::CBaseContext::operator=");

    auto name = other.mName;   // what can run out of memory comes first
    auto tags = other.mTags;
    mName.swap(name);
    mTags.swap(tags);
    mChangeCount = other.mChangeCount;
    OnTagsChanged(nullptr);
    return *this;
}

CBaseContext & CBaseContext::operator=(CBaseContext && other) noexcept
{
    ZYN_SENTRY("VrexZynConfigTools::CBaseContext::operator=");

    mName = std::exchange(other.mName, {});
    mTags = std::exchange(other.mTags, {});
    mChangeCount = other.mChangeCount;
    OnTagsChanged(nullptr);
    other.OnTagsChanged(nullptr);
    return *this;
}

const std::string CBaseContext::Name()
{
    return mName;
}

bool CBaseContext::IsValid()
{
    return true;
}

void CBaseContext::SetTag(const std::string & key)
{
    ZYN_SENTRY("VrexZynConfigTools::CBaseContext::SetTag");

    SetTag(key, std::string());
}

void CBaseContext::SetTag(const std::string & key, int value)
{
    ZYN_SENTRY("VrexZynConfigTools::CBaseContext::SetTag");

    SetTag(key, std::to_string(value));
}

void CBaseContext::SetTag(const std::string & key, const std::string & value)
{
    ZYN_SENTRY("VrexZynConfigTools::CBaseContext::SetTag");

    ++mChangeCount;   // also where nothing is changed in the end, intended
    const std::string loweredKey = stringutil::ToLower(key);
    OnTagsChanged(&loweredKey);
    if (!value.empty()) {
        mTags.insert_or_assign(loweredKey, value);
        ZYN_TRACE(3, "Context key Set \"%s\" = \"%s\"", loweredKey.c_str(), value.c_str());
    } else if (mTags.erase(loweredKey) != 0) {
        ZYN_TRACE(3, "Delete Key %s", loweredKey.c_str());
    }
}

void CBaseContext::SetTags(const std::string & keyPart, const std::string & value)
{
    ZYN_SENTRY("VrexZynConfigTools::CBaseContext::SetTags");

    const std::string part = stringutil::ToLower(keyPart);
    OnTagsChanged(nullptr);
    if (value.empty()) {
        mChangeCount += static_cast<std::uint32_t>(
            std::erase_if(mTags, [&part](const auto & tag) { return Contains(tag.first, part); }));
        return;
    }

    auto tags = mTags;   // changed aside, so that running out of memory midway changes nothing
    std::uint32_t changes = 0;
    for (auto & [key, tag] : tags) {
        if (Contains(key, part)) {
            tag = value;
            ++changes;
        }
    }
    mTags.swap(tags);
    mChangeCount += changes;
}

std::string CBaseContext::GetTag(const std::string & key)
{
    std::string result;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CBaseContext::GetTag", result);

    const auto found = mTags.find(stringutil::ToLower(key));
    if (found != mTags.end())
        result = found->second;
    return result;
}

std::list<std::string> CBaseContext::GetTags(const std::string & keyPart)
{
    ZYN_SENTRY("VrexZynConfigTools::CBaseContext::GetTags");

    const std::string part = stringutil::ToLower(keyPart);
    std::list<std::string> values;
    for (const auto & [key, value] : mTags) {
        if (Contains(key, part))
            values.push_back(value);
    }
    return values;
}

bool CBaseContext::TagMatches(const std::string & key, int value)
{
    bool result = false;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CBaseContext::TagMatches", result);

    // The stored tags only: what a derived class computes in its GetTag can't be matched, intended.
    const std::string text = CBaseContext::GetTag(key);
    const bool isAbsent = value == 0 && text.empty();   // an absent tag does not pass for 0
    return result = !isAbsent && stringutil::DecimalToInt(text) == value;
}

bool CBaseContext::TagMatches(const std::string & key, const std::string & value)
{
    bool result = false;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CBaseContext::TagMatches", result);

    // The stored tags only, as above.
    return result = stringutil::ToLower(value) == stringutil::ToLower(CBaseContext::GetTag(key));
}

IConfigContext * CBaseContext::Clone()
{
    ZYN_SENTRY("VrexZynConfigTools::CBaseContext::Clone");

    return new CBaseContext(*this);
}

void CBaseContext::Parse(const std::string & text)
{
    ZYN_SENTRY("VrexZynConfigTools::CBaseContext::Parse");

    std::size_t begin = 0;
    while (begin < text.size()) {
        const std::size_t end = std::min(text.find(';', begin), text.size());
        const std::string piece = text.substr(begin, end - begin);
        const std::size_t equals = piece.find('=');
        if (equals != std::string::npos)
            SetTag(piece.substr(0, equals), piece.substr(equals + 1));
        begin = end + 1;
    }
}

CBaseContext::~CBaseContext() = default;

void CBaseContext::OnTagsChanged(const std::string * key) noexcept
{
    if (mFollower != nullptr)
        mFollower->OnTagsChanged(key);
}

void CBaseContext::SetSubsystemType(int type)
{
    ZYN_SENTRY("VrexZynConfigTools::CBaseContext::SetSubsystemType");

    SetTag(keywords::TAG_SUBSYSTEM_TYPE, type);
}

int CBaseContext::SubsystemType()
{
    int result = 0;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CBaseContext::SubsystemType", result);

    return result = stringutil::DecimalToInt(GetTag(keywords::TAG_SUBSYSTEM_TYPE));
}

std::map<std::string, std::string> CBaseContext::Tags() const
{
    ZYN_SENTRY("VrexZynConfigTools::CBaseContext::Tags");

    return mTags;
}

CNullContext::CNullContext()
    : mName(keywords::NULL_CONTEXT_NAME)
{
    ZYN_CONSTRUCTOR(GROUP_CORE_CLASSES, "VrexZynConfigTools::CNullContext::CNullContext");
}

const std::string CNullContext::Name()
{
    return mName;
}

bool CNullContext::IsValid()
{
    return false;
}

void CNullContext::SetTag(const std::string & /*key*/) {}

void CNullContext::SetTag(const std::string & /*key*/, int /*value*/) {}

void CNullContext::SetTag(const std::string & /*key*/, const std::string & /*value*/) {}

void CNullContext::SetTags(const std::string & /*keyPart*/, const std::string & /*value*/) {}

std::string CNullContext::GetTag(const std::string & /*key*/)
{
    return {};
}

std::list<std::string> CNullContext::GetTags(const std::string & /*keyPart*/)
{
    return {};
}

bool CNullContext::TagMatches(const std::string & /*key*/, int /*value*/)
{
    return false;
}

bool CNullContext::TagMatches(const std::string & /*key*/, const std::string & /*value*/)
{
    return false;   // also for an empty value, though no tag is there: nothing at all matches, intended
}

IConfigContext * CNullContext::Clone()
{
    return new CNullContext(*this);
}

void CNullContext::Parse(const std::string & /*text*/) {}

}   // namespace VrexZynConfigTools
