#include <configtools/chipconfig.h>

#include "stamp.h"
#include "storeindex.h"
#include "winnerledger.h"

#include <configtools/keywords.h>
#include <configtools/subsystemconfig.h>
#include <messages/trace.h>

#include <algorithm>

namespace VrexZynConfigTools {

namespace {

constexpr GroupEnum MESSAGE_GROUP = GROUP_CORE_CLASSES;

bool IsOfType(CSubsystemConfig & subsystem, SubSystemTypeEnum type)
{
    return subsystem.Context().TagMatches(keywords::TAG_SUBSYSTEM_TYPE, static_cast<int>(type));
}

bool IsInLayer(CSubsystemConfig & subsystem, int layer)
{
    return subsystem.Context().TagMatches(keywords::TAG_LAYER_NUMBER, layer);
}

template <typename TestT>
bool AnyOf(const std::map<std::string, CSubsystemConfig *> & subsystems, TestT test)
{
    return std::any_of(
        subsystems.begin(), subsystems.end(), [&test](const auto & filed) { return test(*filed.second); });
}

}   // namespace

CWinnerLedger * CWinnerLedger::Of(IConfigReaderElementObserver * observer)
{
    auto * const chip = dynamic_cast<CChipConfig *>(observer);
    return chip != nullptr ? chip->mWinners.get() : nullptr;
}

CChipConfig::CChipConfig()
    : mWinners(std::make_unique<CWinnerLedger>())
    , mStoreIndex(std::make_unique<CStoreIndex>())
    , mStamp(NewStamp())
{
    ZYN_CONSTRUCTOR(GROUP_CORE_CLASSES, "VrexZynConfigTools::CChipConfig::CChipConfig");
}

CChipConfig::~CChipConfig()
{
    ZYN_SENTRY("VrexZynConfigTools::CChipConfig::~CChipConfig");

    Clear();
    for (CSubsystemConfig * forgotten : mForgotten) {
        forgotten->mObserver = nullptr;
        forgotten->mWinners = nullptr;
    }
}

CSubsystemConfig & CChipConfig::CreateAndAddSubsystem(IConfigContext & context)
{
    ZYN_SENTRY("VrexZynConfigTools::CChipConfig::CreateAndAddSubsystem");

    const std::string key = context.GetTag(keywords::TAG_SUBSYSTEM_KEY_BY_STORE);
    if (CSubsystemConfig * known = FindSubsystem(context))
        return *known;
    const auto filed = mSubsystems.find(key);
    if (filed != mSubsystems.end())
        return *filed->second;

    auto * base = dynamic_cast<CBaseContext *>(&context);
    if (base == nullptr) {
        ZYN_HANDLER(zynFunction).SetErrorMsg(0, keywords::ERROR_INVALID_CONTEXT);
        return DiscardingSubsystem();
    }
    std::unique_ptr<CSubsystemConfig> made(new CSubsystemConfig(*base, this, mWinners.get()));
    mSubsystems.emplace(key, made.get());
    CSubsystemConfig & added = *made.release();   // the map owns it now
    mStamp = NewStamp();
    mStoreIndex->Add(added);
    return added;
}

// Tags are compared, not keys, so that a further read finds the subsystems that have been filed by layer since. The
// chip is not compared, intended.
CSubsystemConfig * CChipConfig::FindSubsystem(IConfigContext & context)
{
    ZYN_SENTRY("VrexZynConfigTools::CChipConfig::FindSubsystem");

    const CPlaceTags wanted = PlaceTagsOf(context);
    CSubsystemConfig * const found = mStoreIndex->Find(mSubsystems, wanted);
    if (found != nullptr) {
        ZYN_TRACE(3, "device %s / store %s found in mSubsystems, so using the subsystem at 0x%08x",
            wanted.mDevice.c_str(), wanted.mStore.c_str(),
            static_cast<unsigned>(reinterpret_cast<std::uintptr_t>(found)));
    }
    return found;
}

// What is given to this one is deleted. It lives for ever, since callers may hold it as long as they like.
CSubsystemConfig & CChipConfig::DiscardingSubsystem()
{
    static CSubsystemConfig & subsystem = *[] {
        CBaseContext context("discarding");
        auto * made = new CSubsystemConfig(context, nullptr);
        made->mDiscards = true;
        return made;
    }();
    subsystem.Context().SetTags(keywords::EMPTY, keywords::EMPTY);   // of an earlier caller
    return subsystem;
}

const std::map<std::string, CSubsystemConfig *> & CChipConfig::Subsystems() const
{
    ZYN_SENTRY("VrexZynConfigTools::CChipConfig::Subsystems");
    return mSubsystems;
}

const std::list<CStoreInfo *> & CChipConfig::Stores() const
{
    ZYN_SENTRY("VrexZynConfigTools::CChipConfig::Stores");
    return mStores;
}

void CChipConfig::MergeSubsystemsContext(CBaseContext & source, bool overwrite)
{
    ZYN_SENTRY("VrexZynConfigTools::CChipConfig::MergeSubsystemsContext");

    for (const auto & [key, subsystem] : mSubsystems)
        subsystem->MergeContext(source, overwrite);
}

void CChipConfig::Clear()
{
    ZYN_SENTRY("VrexZynConfigTools::CChipConfig::Clear");

    mStamp = NewStamp();
    mStoreIndex->Invalidate();
    for (const auto & [key, subsystem] : mSubsystems)
        delete subsystem;
    mSubsystems.clear();
    ClearStoreList(mStores);
}

bool CChipConfig::HasElements()
{
    bool result = false;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CChipConfig::HasElements", result);

    return result =
               AnyOf(mSubsystems, [](CSubsystemConfig & subsystem) { return !subsystem.Elements().empty(); });
}

bool CChipConfig::HasElements(SubSystemTypeEnum type)
{
    bool result = false;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CChipConfig::HasElements", result);

    // An absent layer number doesn't pass for 0, so subsystems without a layer count, intended: they have been read
    // and await the end of the read, or their store has no layer.
    return result = AnyOf(mSubsystems, [type](CSubsystemConfig & subsystem) {
        return IsOfType(subsystem, type) && !IsInLayer(subsystem, 0) && !subsystem.Elements().empty();
    });
}

bool CChipConfig::HasElements(std::uint32_t id, SubSystemTypeEnum type)
{
    bool result = false;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CChipConfig::HasElements", result);

    return result = AnyOf(mSubsystems, [id, type](CSubsystemConfig & subsystem) {
        return IsOfType(subsystem, type) && !IsInLayer(subsystem, 0) && !subsystem.ElementsIsEmpty(id);
    });
}

bool CChipConfig::HasElements(std::uint32_t id, SubSystemTypeEnum type, unsigned short layer)
{
    bool result = false;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CChipConfig::HasElements", result);

    return result = AnyOf(mSubsystems, [id, type, layer](CSubsystemConfig & subsystem) {
        return IsOfType(subsystem, type) && IsInLayer(subsystem, layer) && !subsystem.ElementsIsEmpty(id);
    });
}

bool CChipConfig::IsHeterogeneous()
{
    bool result = false;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CChipConfig::IsHeterogeneous", result);

    if (mSubsystems.empty())
        return result;
    const int first = mSubsystems.begin()->second->Context().SubsystemType();
    return result = AnyOf(mSubsystems,
               [first](CSubsystemConfig & subsystem) { return subsystem.Context().SubsystemType() != first; });
}

}   // namespace VrexZynConfigTools
