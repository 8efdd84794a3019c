#include <configtools/metadataprovider.h>

#include <configtools/keywords.h>
#include <messages/trace.h>
#include <misc/stringutil.h>

#include <algorithm>
#include <array>
#include <string_view>

namespace VrexZynConfigTools {

namespace {

constexpr GroupEnum MESSAGE_GROUP = GROUP_FRAMEWORK;

// Indexed by SubSystemTypeEnum.
constexpr std::array<std::string_view, 11> SUBSYSTEM_KEYWORDS = { keywords::SUBSYSTEM_CURATOR,
    keywords::SUBSYSTEM_BT, keywords::SUBSYSTEM_WLAN, keywords::SUBSYSTEM_AUDIO, keywords::SUBSYSTEM_GNSS,
    keywords::SUBSYSTEM_NFC, keywords::SUBSYSTEM_JANITOR, keywords::SUBSYSTEM_APP, keywords::SUBSYSTEM_BLE,
    keywords::SUBSYSTEM_PSAPPS, keywords::SUBSYSTEM_PSAUDIO };
static_assert(SUBSYSTEM_KEYWORDS.size() == SUBSYSTEM_PSAUDIO + 1);

}   // namespace

CSubsystemInfo::CSubsystemInfo(const std::string & name, const std::string & version, const std::string & alias,
    const std::string & layer, const std::string & variant, const std::string & description,
    const std::string & buildDate)
    : mName(name)
    , mVersion(version)
    , mAlias(alias)
    , mLayer(layer)
    , mVariant(variant)
    , mDescription(description)
    , mBuildDate(buildDate)
{
    ZYN_SENTRY("VrexZynConfigTools::CSubsystemInfo::CSubsystemInfo");
}

const std::string CSubsystemInfo::Name() const
{
    return mName;
}

const std::string CSubsystemInfo::Version() const
{
    return mVersion;
}

const std::string CSubsystemInfo::Alias() const
{
    return mAlias;
}

const std::string CSubsystemInfo::Layer() const
{
    return mLayer;
}

const std::string CSubsystemInfo::Description() const
{
    return mDescription;
}

const std::string CSubsystemInfo::BuildDate() const
{
    return mBuildDate;
}

const std::string CSubsystemInfo::Variant() const
{
    return mVariant;
}

SubSystemTypeEnum CSubsystemInfo::GetSubsystemType(const std::string & name)
{
    SubSystemTypeEnum result = SUBSYSTEM_UNKNOWN;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CSubsystemInfo::GetSubsystemType", result);

    const auto found =
        std::find(SUBSYSTEM_KEYWORDS.begin(), SUBSYSTEM_KEYWORDS.end(), stringutil::ToLower(name));
    if (found == SUBSYSTEM_KEYWORDS.end())
        return result = SUBSYSTEM_UNKNOWN;
    return result = static_cast<SubSystemTypeEnum>(found - SUBSYSTEM_KEYWORDS.begin());
}

std::string CSubsystemInfo::GetSubsystemType(SubSystemTypeEnum type)
{
    std::string result;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CSubsystemInfo::GetSubsystemType", result);

    if (type >= SUBSYSTEM_CURATOR && type <= SUBSYSTEM_PSAUDIO)
        result = SUBSYSTEM_KEYWORDS[static_cast<std::size_t>(type)];
    return result;
}

CChipInfo::CChipInfo(const std::string & chipName, const std::string & chipId, const std::string & romName,
    const std::string & romVersion, const std::string & efuseHash, const std::string & systemVersionLabel,
    const std::string & systemDescription, const std::string & systemVersion, const std::string & buildDate)
    : mChipName(chipName)
    , mChipId(chipId)
    , mRomName(romName)
    , mRomVersion(romVersion)
    , mEfuseHash(efuseHash)
    , mSystemVersionLabel(systemVersionLabel)
    , mSystemDescription(systemDescription)
    , mSystemVersion(systemVersion)
    , mBuildDate(buildDate)
{
    ZYN_SENTRY("VrexZynConfigTools::CChipInfo::CChipInfo");
}

const std::string CChipInfo::ChipName() const
{
    return mChipName;
}

const std::string CChipInfo::ChipId() const
{
    return mChipId;
}

const std::string CChipInfo::RomName() const
{
    return mRomName;
}

const std::string CChipInfo::RomVersion() const
{
    return mRomVersion;
}

const std::string CChipInfo::EfuseHash() const
{
    return mEfuseHash;
}

const std::string CChipInfo::SystemVersionLabel() const
{
    return mSystemVersionLabel;
}

const std::string CChipInfo::SystemDescription() const
{
    return mSystemDescription;
}

const std::string CChipInfo::SystemVersion() const
{
    return mSystemVersion;
}

const std::string CChipInfo::BuildDate() const
{
    return mBuildDate;
}

CBaseMetadataProvider::CBaseMetadataProvider(const std::string & source)
    : mSource(source)
    , mObserver(nullptr)
    , mElementObserver(nullptr)
{
    ZYN_SENTRY("VrexZynConfigTools::CBaseMetadataProvider::CBaseMetadataProvider");
}

CBaseMetadataProvider::CBaseMetadataProvider(const CBaseMetadataProvider & other) = default;
CBaseMetadataProvider::CBaseMetadataProvider(CBaseMetadataProvider && other) noexcept = default;
CBaseMetadataProvider & CBaseMetadataProvider::operator=(const CBaseMetadataProvider & other) = default;
CBaseMetadataProvider & CBaseMetadataProvider::operator=(CBaseMetadataProvider && other) noexcept = default;
CBaseMetadataProvider::~CBaseMetadataProvider() = default;

bool CBaseMetadataProvider::Check()
{
    return true;
}

void CBaseMetadataProvider::Refresh()
{
    // There is nothing to look at anew here.
}

void CBaseMetadataProvider::SetObserver(IConfigReaderObserver & observer)
{
    ZYN_SENTRY("VrexZynConfigTools::CBaseMetadataProvider::SetObserver");

    mObserver = &observer;
}

void CBaseMetadataProvider::SetElementObserver(IConfigReaderElementObserver & observer)
{
    ZYN_SENTRY("VrexZynConfigTools::CBaseMetadataProvider::SetElementObserver");

    mElementObserver = &observer;
}

void CBaseMetadataProvider::SetMetadataProvider(IMetadataProvider & /*provider*/)
{
    // The object is its own provider.
}

}   // namespace VrexZynConfigTools
