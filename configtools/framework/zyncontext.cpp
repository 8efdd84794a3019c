#include <configtools/zyncontext.h>

#include <configtools/keywords.h>
#include <messages/trace.h>
#include <misc/stringutil.h>

#include <utility>

namespace VrexZynConfigTools {

namespace {

constexpr GroupEnum MESSAGE_GROUP = GROUP_FRAMEWORK;

constexpr char CONTEXT_NAME[] = "zyncontext";

constexpr char KEY_SEPARATOR[] = "|";
constexpr char MISSING_FIELD[] = " ";

/// The text of a tag as a field of a subsystem key.
std::string Field(const std::string & tag)
{
    return tag.empty() ? MISSING_FIELD : tag;
}

/// What both subsystem keys begin with: the chip, a blank that no tag fills, intended, and the subsystem's type.
std::string KeyHead(const std::string & chip, const std::string & subsystemType)
{
    return Field(chip) + KEY_SEPARATOR + MISSING_FIELD + KEY_SEPARATOR + Field(subsystemType);
}

}   // namespace

CZynContext::CZynContext()
    : CBaseContext(CONTEXT_NAME)
{
    ZYN_CONSTRUCTOR(GROUP_CHIP_CONTEXT, "VrexZynConfigTools::CZynContext::CZynContext");
}

CZynContext::CZynContext(const CZynContext & other)
    : CBaseContext(other)
    , mKeyVersion(other.mKeyVersion)
    , mLayerKey(other.mLayerKey)
{
    ZYN_CONSTRUCTOR(GROUP_CHIP_CONTEXT, "VrexZynConfigTools::CZynContext::CZynContext");
}

// A source that was moved from holds no tags, so its cached key is dropped with them.
CZynContext::CZynContext(CZynContext && other) noexcept
    : CBaseContext(static_cast<CBaseContext &&>(other))
    , mKeyVersion(std::exchange(other.mKeyVersion, 0))
    , mLayerKey(std::exchange(other.mLayerKey, {}))
{
    ZYN_CONSTRUCTOR(GROUP_CHIP_CONTEXT, "VrexZynConfigTools::CZynContext::CZynContext");
}

CZynContext & CZynContext::operator=(const CZynContext & other)
{
    ZYN_SENTRY("VrexZynConfigTools::CZynContext::operator=");

    auto layerKey = other.mLayerKey;   // what can run out of memory comes first
    CBaseContext::operator=(other);
    mKeyVersion = other.mKeyVersion;
    mLayerKey.swap(layerKey);
    return *this;
}

CZynContext & CZynContext::operator=(CZynContext && other) noexcept
{
    ZYN_SENTRY("VrexZynConfigTools::CZynContext::operator=");

    CBaseContext::operator=(static_cast<CBaseContext &&>(other));
    mKeyVersion = std::exchange(other.mKeyVersion, 0);
    mLayerKey = std::exchange(other.mLayerKey, {});
    return *this;
}

CZynContext::~CZynContext() = default;

std::string CZynContext::GetTag(const std::string & key)
{
    std::string result;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CZynContext::GetTag", result);

    // Only these very spellings are computed, intended; any other case asks the tag store.
    if (key == keywords::TAG_SUBSYSTEM_KEY_BY_STORE)
        result = GetSubsystemKeyByStore();
    else if (key == keywords::TAG_SUBSYSTEM_KEY_BY_LAYER)
        result = GetSubsystemKeyByLayer();
    else
        result = CBaseContext::GetTag(key);
    return result;
}

IConfigContext * CZynContext::Clone()
{
    ZYN_SENTRY("VrexZynConfigTools::CZynContext::Clone");

    auto clone = std::make_unique<CZynContext>();
    clone->mTags = mTags;     // the tags alone: the change count and the cached key start anew, intended
    return clone.release();   // the caller's now
}

void CZynContext::SetChip(const std::string & chip)
{
    ZYN_SENTRY("VrexZynConfigTools::CZynContext::SetChip");

    SetTag(keywords::TAG_CHIP, chip);
}

const std::string CZynContext::Chip()
{
    std::string result;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CZynContext::Chip", result);

    result = GetTag(keywords::TAG_CHIP);
    return result;
}

// The argument is not stored, intended: only SetTag and Parse give the tag a value.
void CZynContext::SetSubsysFwVersion(const std::string & /*version*/) {}

const std::string CZynContext::SubsysFwVersion()
{
    std::string result;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CZynContext::SubsysFwVersion", result);

    result = GetTag(keywords::TAG_SUBSYS_FW_VERSION);
    return result;
}

void CZynContext::SetDevice(int device)
{
    ZYN_SENTRY("VrexZynConfigTools::CZynContext::SetDevice");

    SetTag(keywords::TAG_DEVICE, device);
}

int CZynContext::Device()
{
    int result = 0;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CZynContext::Device", result);

    return result = stringutil::DecimalToInt(GetTag(keywords::TAG_DEVICE));
}

void CZynContext::SetStore(int store)
{
    ZYN_SENTRY("VrexZynConfigTools::CZynContext::SetStore");

    SetTag(keywords::TAG_STORE, store);
}

int CZynContext::Store()
{
    int result = 0;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CZynContext::Store", result);

    return result = stringutil::DecimalToInt(GetTag(keywords::TAG_STORE));
}

void CZynContext::SetOrder(unsigned short order)
{
    ZYN_SENTRY("VrexZynConfigTools::CZynContext::SetOrder");

    SetTag(keywords::TAG_ORDER, order);
}

unsigned short CZynContext::Order()
{
    unsigned short result = 0;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CZynContext::Order", result);

    return result = static_cast<unsigned short>(stringutil::DecimalToInt(GetTag(keywords::TAG_ORDER)));
}

void CZynContext::SetLayerNumber(int layer)
{
    ZYN_SENTRY("VrexZynConfigTools::CZynContext::SetLayerNumber");

    SetTag(keywords::TAG_LAYER_NUMBER, layer);
}

int CZynContext::LayerNumber()
{
    int result = 0;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CZynContext::LayerNumber", result);

    return result = stringutil::DecimalToInt(GetTag(keywords::TAG_LAYER_NUMBER));
}

void CZynContext::SetFileType(int type)
{
    ZYN_SENTRY("VrexZynConfigTools::CZynContext::SetFileType");

    SetTag(keywords::TAG_FILE_TYPE, type);
}

int CZynContext::FileType()
{
    int result = 0;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CZynContext::FileType", result);

    return result = stringutil::DecimalToInt(GetTag(keywords::TAG_FILE_TYPE));
}

void CZynContext::IgnoreHeader(bool ignore)
{
    ZYN_SENTRY("VrexZynConfigTools::CZynContext::IgnoreHeader");

    SetTag(keywords::TAG_IGNORE_HEADER, ignore ? keywords::VALUE_TRUE : keywords::VALUE_FALSE);
}

bool CZynContext::IgnoreHeader()
{
    bool result = false;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CZynContext::IgnoreHeader", result);

    return result = TagMatches(keywords::TAG_IGNORE_HEADER, keywords::VALUE_TRUE);
}

std::string CZynContext::GetSubsystemKeyByStore()
{
    std::string result;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CZynContext::GetSubsystemKeyByStore", result);

    const std::string store = CBaseContext::GetTag(keywords::TAG_STORE);
    const std::string device = CBaseContext::GetTag(keywords::TAG_DEVICE);
    const std::string subsystemType = CBaseContext::GetTag(keywords::TAG_SUBSYSTEM_TYPE);
    const std::string chip = CBaseContext::GetTag(keywords::TAG_CHIP);
    result = KeyHead(chip, subsystemType) + KEY_SEPARATOR + Field(device) + KEY_SEPARATOR + Field(store);
    return result;
}

std::string CZynContext::GetSubsystemKeyByLayer()
{
    std::string result;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CZynContext::GetSubsystemKeyByLayer", result);

    if (mKeyVersion != mChangeCount || mChangeCount == 0) {
        const std::string layer = CBaseContext::GetTag(keywords::TAG_LAYER_NUMBER);
        const std::string subsystemType = CBaseContext::GetTag(keywords::TAG_SUBSYSTEM_TYPE);
        const std::string chip = CBaseContext::GetTag(keywords::TAG_CHIP);
        mLayerKey = KeyHead(chip, subsystemType) + KEY_SEPARATOR + Field(layer);
        mKeyVersion = mChangeCount;
    }
    result = mLayerKey;
    return result;
}

}   // namespace VrexZynConfigTools
