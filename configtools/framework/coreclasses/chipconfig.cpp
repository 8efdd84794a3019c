#include <configtools/chipconfig.h>

#include "contextfacts.h"
#include "elementindex.h"
#include "stamp.h"
#include "winnerledger.h"

#include <configtools/keywords.h>
#include <configtools/subsystemconfig.h>
#include <messages/trace.h>
#include <misc/keepforever.h>
#include <misc/stringutil.h>

#include <algorithm>
#include <cstdlib>
#include <locale>
#include <sstream>
#include <utility>

namespace VrexZynConfigTools {

namespace {

constexpr GroupEnum MESSAGE_GROUP = GROUP_CORE_CLASSES;

constexpr std::size_t MAX_LAYERS = 15;
constexpr std::uint32_t UNKNOWN_STORE_SIZE = 0xFFFFFFFFU;

// From bottom to top. "mtp" stands below "smem" although its value is higher, intended: the chip reads it first.
constexpr IStoreManager::DEVICE LAYER_ORDER[] = { IStoreManager::DEVICE_ROM, IStoreManager::DEVICE_OTP,
    IStoreManager::DEVICE_MTP, IStoreManager::DEVICE_SMEM, IStoreManager::DEVICE_FW_CFG,
    IStoreManager::DEVICE_EEPROM };

std::int32_t NumberInTag(IConfigContext & context, const char * tag)
{
    return stringutil::DecimalToInt(context.GetTag(tag));
}

CStoreInfo UnmeasuredStore(IStoreManager::DEVICE device, std::uint16_t storeId, std::uint16_t order)
{
    return { device, storeId, UNKNOWN_STORE_SIZE, CStoreInfo::INVALID_STORE_SIZE, 0, order, false };
}

// The layer at which a lookup starts, as the filter says it; a number too large for 16 bits reads as the largest.
int LayerIn(const std::string & filter)
{
    std::istringstream stream(filter);
    stream.imbue(std::locale::classic());
    std::int16_t layer = 0;
    stream >> layer;
    return layer;
}

// The first valid element on the path, or what the last subsystem on it answered.
template <typename LookUpT>
const CElement & Topmost(const CSearchPath & path, LookUpT lookUp)
{
    const CElement * element = &CNullElement::Ref();
    for (std::size_t at = 0; at < path.mLength; ++at) {
        element = &lookUp(*path.mSubsystems[at]);
        if (element->IsValid())
            break;
    }
    return *element;
}

// The same by `find` in the indexes, as long as all of them are exact: then what they find is valid.
template <typename FindT, typename LookUpT>
const CElement & Topmost(const CSearchPath & path, FindT find, LookUpT lookUp)
{
    for (std::size_t at = 0; at < path.mLength; ++at) {
        CElementIndex & index = *path.mIndexes[at];
        if (!index.IsExact())
            return Topmost(path, lookUp);
        if (const CElement * found = find(index))
            return *found;
    }
    return CNullElement::Ref();
}

bool IsOfType(CSubsystemConfig & subsystem, SubSystemTypeEnum type)
{
    return subsystem.Context().TagMatches(keywords::TAG_SUBSYSTEM_TYPE, static_cast<int>(type));
}

bool IsInLayer(CSubsystemConfig & subsystem, int layer)
{
    return subsystem.Context().TagMatches(keywords::TAG_LAYER_NUMBER, layer);
}

}   // namespace

CWinnerLedger * CWinnerLedger::Of(IConfigReaderElementObserver * observer)
{
    auto * const chip = dynamic_cast<CChipConfig *>(observer);
    return chip != nullptr ? chip->mWinners.get() : nullptr;
}

CChipConfig::CChipConfig()
    : mWinners(std::make_unique<CWinnerLedger>())
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
    mStamp = NewStamp();
    return *made.release();   // the map owns it now
}

// Tags are compared, not keys, so that a further read finds the subsystems that have been filed by layer since. The
// chip is not compared, intended.
CSubsystemConfig * CChipConfig::FindSubsystem(IConfigContext & context)
{
    ZYN_SENTRY("VrexZynConfigTools::CChipConfig::FindSubsystem");

    const std::string store = context.GetTag(keywords::TAG_STORE);
    const std::string type = context.GetTag(keywords::TAG_SUBSYSTEM_TYPE);
    const std::string device = context.GetTag(keywords::TAG_DEVICE);
    for (const auto & [key, subsystem] : mSubsystems) {
        CBaseContext & known = subsystem->Context();
        if (known.TagMatches(keywords::TAG_STORE, store) &&
            known.TagMatches(keywords::TAG_SUBSYSTEM_TYPE, type) &&
            known.TagMatches(keywords::TAG_DEVICE, device))
        {
            ZYN_TRACE(3, "device %s / store %s found in mSubsystems, so using the subsystem at 0x%08x",
                device.c_str(), store.c_str(),
                static_cast<unsigned>(reinterpret_cast<std::uintptr_t>(subsystem)));
            return subsystem;
        }
    }
    return nullptr;
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

const CElement & CChipConfig::Element(const std::string & name, IConfigContext & context) const
{
    ZYN_SENTRY("VrexZynConfigTools::CChipConfig::Element");
    return GetElement(&name, 0, context);
}

const CElement & CChipConfig::Element(std::uint32_t id, IConfigContext & context) const
{
    ZYN_SENTRY("VrexZynConfigTools::CChipConfig::Element");
    return GetElement(nullptr, id, context);
}

const CElement & CChipConfig::GetElement(
    const std::string * name, std::uint32_t id, IConfigContext & context) const
{
    ZYN_SENTRY("VrexZynConfigTools::CChipConfig::GetElement");

    const bool isByName = name != nullptr && !name->empty();
    const auto lookUp = [=](CSubsystemConfig & subsystem) -> CElement & {
        return isByName ? subsystem.Element(*name) : subsystem.Element(id);
    };
    CContextFacts * facts = CContextFacts::Of(context);
    if (facts == nullptr)
        return TopmostSelected(context, lookUp);
    const CSearchPath & path = SearchPath(*facts, context);
    if (!isByName)
        return Topmost(
            path, [id](const CElementIndex & index) { return index.LastWithId(id); }, lookUp);
    const CElementIndex::NameKey key = CElementIndex::KeyOf(*name);
    if (!key.mIsPlainText)
        return Topmost(path, lookUp);
    return Topmost(
        path, [&key](CElementIndex & index) { return index.FirstPlainNamed(key); }, lookUp);
}

// The literal lookup: a context of a foreign class is asked for one layer after the other, down to the answer.
template <typename LookUpT>
const CElement & CChipConfig::TopmostSelected(IConfigContext & context, LookUpT lookUp) const
{
    const CElement * element = &CNullElement::Ref();
    VisitSelected(context, [&](CSubsystemConfig & subsystem) {
        element = &lookUp(subsystem);
        return element->IsValid();
    });
    return *element;
}

const CSearchPath & CChipConfig::SearchPath(CContextFacts & facts, IConfigContext & context) const
{
    if (const CSearchPath * known = facts.SearchPath(mStamp))
        return *known;
    CSearchPath path;
    VisitSelected(context, [&path](CSubsystemConfig & subsystem) {
        path.mSubsystems[path.mLength] = &subsystem;
        path.mIndexes[path.mLength] = subsystem.mIndex.get();
        ++path.mLength;
        return false;
    });
    return facts.KeepSearchPath(path, mStamp);
}

// Calls `visit` with each subsystem that the context selects, topmost layer first, until it is true.
template <typename VisitT>
void CChipConfig::VisitSelected(IConfigContext & context, VisitT visit) const
{
    ZYN_SENTRY("VrexZynConfigTools::CChipConfig::VisitSelected");

    const std::string filter = context.GetTag(keywords::TAG_LAYER_FILTER);
    if (filter.empty()) {
        if (CSubsystemConfig * subsystem = SubsystemOfLayer(context))
            visit(*subsystem);
        return;
    }
    // The sign doesn't count here, intended, though a filtered read honours it.
    int layer = LayerIn(filter);
    if (layer < 1 || layer > static_cast<int>(MAX_LAYERS)) {
        ZYN_TRACE(3, "layer filter value is out of range");
        layer = layer < 1 ? 1 : static_cast<int>(MAX_LAYERS);
    }
    const int lowest = context.TagMatches(keywords::TAG_LAYER_NUMBER, 0) ? 0 : 1;
    const std::unique_ptr<IConfigContext> copy(context.Clone());
    for (bool isDone = copy == nullptr; !isDone && layer >= lowest; --layer) {
        copy->SetTag(keywords::TAG_LAYER_NUMBER, layer);
        CSubsystemConfig * subsystem = SubsystemOfLayer(*copy);
        isDone = subsystem != nullptr && visit(*subsystem);
    }
}

CSubsystemConfig * CChipConfig::SubsystemOfLayer(IConfigContext & context) const
{
    const auto found = mSubsystems.find(context.GetTag(keywords::TAG_SUBSYSTEM_KEY_BY_LAYER));
    return found != mSubsystems.end() ? found->second : nullptr;
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
    for (const auto & [key, subsystem] : mSubsystems)
        delete subsystem;
    mSubsystems.clear();
    ClearStoreList(mStores);
}

void CChipConfig::PrepareForChip(unsigned short chip)
{
    ZYN_SENTRY("VrexZynConfigTools::CChipConfig::PrepareForChip");

    constexpr unsigned CHIP_WITHOUT_STORES = 0x36;
    Clear();
    if ((chip & 0xFFU) == CHIP_WITHOUT_STORES)
        return;
    for (std::uint16_t number = 1; number <= MAX_LAYERS; ++number)
        MergeStoreInfo(mStores, UnmeasuredStore(IStoreManager::DEVICE_EEPROM, number, number));
}

bool CChipConfig::HasElements()
{
    bool result = false;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CChipConfig::HasElements", result);

    return result = std::any_of(mSubsystems.begin(), mSubsystems.end(),
               [](const auto & filed) { return !filed.second->Elements().empty(); });
}

bool CChipConfig::HasElements(SubSystemTypeEnum type)
{
    bool result = false;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CChipConfig::HasElements", result);

    // An absent layer number doesn't pass for 0, so subsystems without a layer count, intended.
    return result = std::any_of(mSubsystems.begin(), mSubsystems.end(), [type](const auto & filed) {
        CSubsystemConfig & subsystem = *filed.second;
        return IsOfType(subsystem, type) && !IsInLayer(subsystem, 0) && !subsystem.Elements().empty();
    });
}

bool CChipConfig::HasElements(std::uint32_t id, SubSystemTypeEnum type)
{
    bool result = false;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CChipConfig::HasElements", result);

    return result = std::any_of(mSubsystems.begin(), mSubsystems.end(), [id, type](const auto & filed) {
        CSubsystemConfig & subsystem = *filed.second;
        return IsOfType(subsystem, type) && !IsInLayer(subsystem, 0) && !subsystem.ElementsIsEmpty(id);
    });
}

bool CChipConfig::HasElements(std::uint32_t id, SubSystemTypeEnum type, unsigned short layer)
{
    bool result = false;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CChipConfig::HasElements", result);

    return result = std::any_of(mSubsystems.begin(), mSubsystems.end(), [id, type, layer](const auto & filed) {
        CSubsystemConfig & subsystem = *filed.second;
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
    return result = std::any_of(mSubsystems.begin(), mSubsystems.end(),
               [first](const auto & filed) { return filed.second->Context().SubsystemType() != first; });
}

void CChipConfig::OnReadStarted(IConfigReader & /*reader*/, IConfigContext & /*context*/)
{
    ZYN_SENTRY("VrexZynConfigTools::CChipConfig::OnReadStarted");
}

void CChipConfig::OnSubsystemFound(IConfigReader & reader, IConfigContext & context)
{
    ZYN_SENTRY("VrexZynConfigTools::CChipConfig::OnSubsystemFound");

    CSubsystemConfig & subsystem = CreateAndAddSubsystem(context);
    const auto store = static_cast<std::uint16_t>(NumberInTag(context, keywords::TAG_STORE));
    const std::int32_t device = NumberInTag(context, keywords::TAG_DEVICE);
    // A store of device 0, "rom", or of no device is never recorded here, intended: only a store manager reports it.
    if (device >= 1 && store != 0 && mStores.size() < MAX_LAYERS) {
        const auto order = static_cast<std::uint16_t>(mStores.size() + 1);
        MergeStoreInfo(mStores, UnmeasuredStore(static_cast<IStoreManager::DEVICE>(device), store, order));
    }
    reader.SetElementObserver(subsystem);
}

void CChipConfig::OnSubsystemCompleted(IConfigReader & /*reader*/, IConfigContext & /*context*/)
{
    ZYN_SENTRY("VrexZynConfigTools::CChipConfig::OnSubsystemCompleted");
}

void CChipConfig::OnReadEnded(IConfigReader & reader, IConfigContext & context)
{
    ZYN_SENTRY("VrexZynConfigTools::CChipConfig::OnReadEnded");

    SyncStoresFromCaller(reader, context);
    OrderStoresByDevice();
    AdoptLayerKeys(AssignLayers());
}

void CChipConfig::SyncStoresFromCaller(IConfigReader & reader, IConfigContext & context)
{
    ZYN_SENTRY("VrexZynConfigTools::CChipConfig::SyncStoresFromCaller");

    auto * manager = dynamic_cast<IStoreManager *>(&reader);
    if (manager == nullptr) {
        ZYN_TRACE(3, "The IConfigReader object does not implement IStoreManager");
        return;
    }
    for (const CStoreInfo * store : manager->Stores(context)) {
        if (store != nullptr)
            MergeStoreInfo(mStores, *store);
    }
}

// Completes the entry of the same store with what was not known, or appends a copy of the store.
void CChipConfig::MergeStoreInfo(std::list<CStoreInfo *> & stores, const CStoreInfo & store)
{
    ZYN_SENTRY("VrexZynConfigTools::CChipConfig::MergeStoreInfo");

    const auto found = std::find_if(stores.begin(), stores.end(), [&store](const CStoreInfo * known) {
        return known != nullptr && known->DeviceId() == store.DeviceId() && known->StoreId() == store.StoreId();
    });
    if (found == stores.end()) {
        auto added = std::make_unique<CStoreInfo>(store);
        stores.push_back(added.get());
        added.release();   // the list owns it now
        return;
    }
    CStoreInfo & known = **found;
    if (known.StoreSize() == UNKNOWN_STORE_SIZE)
        known.SetStoreSize(store.StoreSize());
    if (known.StoreSizeFree() == CStoreInfo::INVALID_STORE_SIZE)
        known.SetStoreSizeFree(store.StoreSizeFree());
    if (!known.Paired())
        known.SetPaired(store.Paired());
}

void CChipConfig::OrderStoresByDevice()
{
    ZYN_SENTRY("VrexZynConfigTools::CChipConfig::OrderStoresByDevice");

    std::list<CStoreInfo *> ordered;
    for (const IStoreManager::DEVICE device : LAYER_ORDER) {
        for (auto at = mStores.begin(); at != mStores.end();) {
            const auto store = at++;
            if ((*store)->DeviceId() == device)
                ordered.splice(ordered.end(), mStores, store);
        }
    }
    ClearStoreList(mStores);   // what is left is of a device without a layer
    mStores.swap(ordered);
}

bool CChipConfig::AssignLayers()
{
    bool result = true;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CChipConfig::AssignLayers", result);

    if (mStores.size() > MAX_LAYERS) {
        ZYN_TRACE(3, "Maximum number of layers exceeded");
        return result = false;
    }
    std::uint16_t layer = 1;
    for (const CStoreInfo * store : mStores) {
        const int device = store->DeviceId();
        const int storeId = store->StoreId();
        for (const auto & [key, subsystem] : mSubsystems) {
            CBaseContext & context = subsystem->Context();
            if (context.TagMatches(keywords::TAG_DEVICE, device) &&
                context.TagMatches(keywords::TAG_STORE, storeId)) {
                context.SetTag(keywords::TAG_LAYER_NUMBER, layer);
                ZYN_TRACE(3, "Device 0x%x / Store 0x%x assigned layer number %d", static_cast<unsigned>(device),
                    static_cast<unsigned>(storeId), static_cast<int>(layer));
            }
        }
        ++layer;   // a store without a subsystem uses up a number too
    }
    // Cannot happen as things stand, and is kept: merging has removed duplicates already.
    if (layer > mStores.size() + 1) {
        ZYN_TRACE(3, "The store list contains duplicates");
        result = false;
    }
    return result;
}

// Without layers the chip is left with no subsystem, and of several with one key the last remains; both intended. What
// is dropped may still be a reader's element observer, so it is forgotten without being deleted.
void CChipConfig::AdoptLayerKeys(bool isLayered)
{
    ZYN_SENTRY("VrexZynConfigTools::CChipConfig::AdoptLayerKeys");

    std::map<std::string, CSubsystemConfig *> layered;
    std::vector<CSubsystemConfig *> dropped = mForgotten;
    for (const auto & [key, subsystem] : mSubsystems) {
        CSubsystemConfig * former = subsystem;
        if (isLayered)
            std::swap(layered[subsystem->Context().GetTag(keywords::TAG_SUBSYSTEM_KEY_BY_LAYER)], former);
        if (former != nullptr)
            dropped.push_back(former);
    }
    mForgotten.swap(dropped);
    mSubsystems.swap(layered);
    mStamp = NewStamp();
    std::for_each(
        mForgotten.begin() + static_cast<std::ptrdiff_t>(dropped.size()), mForgotten.end(), KeepForEver);
}

bool CChipConfig::OnElementFound(CElement * element, IConfigContext & context)
{
    bool result = false;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CChipConfig::OnElementFound", result);

    CContextFacts * facts = CContextFacts::Of(context);
    if (element == nullptr || (facts != nullptr && !facts->ReadOptions(context).mIsFiltered))
        return result;
    const std::string filter = context.GetTag(keywords::TAG_LAYER_FILTER);
    if (filter.empty())
        return result;

    // A positive filter selects the highest layer up to it, a negative one the lowest up to its absolute value. The
    // layer comes from the reader's context: the numbers that the end of the read assigns don't exist yet.
    const auto lfv = static_cast<std::int8_t>(stringutil::DecimalToInt(filter));
    const std::string key = context.GetTag(keywords::TAG_SUBSYSTEM_TYPE) + "|" + element->KeyString();
    const auto elv = static_cast<std::int8_t>(NumberInTag(context, keywords::TAG_LAYER_NUMBER));
    if (std::abs(lfv) < elv)
        return result;

    const auto entry = mFilteredDictionary.find(key);
    if (entry == mFilteredDictionary.end()) {
        ZYN_TRACE(3, "Entry for key \"%s\" not found, so storing entry for layer %d", key.c_str(), elv);
        StoreWinner(key, elv, element);
        return result;
    }
    const std::int8_t found = entry->second.layer;
    if (std::abs(lfv) >= found && (lfv >= 0 ? elv >= found : elv < found)) {
        ZYN_TRACE(3, "Entry for key \"%s\" found with layer %d, but replacing with layer %d", key.c_str(),
            found, elv);
        mWinners->Set(entry->second.element, element);
        entry->second.layer = elv;
    } else {
        ZYN_TRACE(3,
            "Key \"%s\" not being added because it did not match the criteria: found=%d, lfv=%d, elv=%d",
            key.c_str(), found, lfv, elv);
    }
    return result;
}

void CChipConfig::StoreWinner(const std::string & key, std::int8_t layer, CElement * element)
{
    // Followed before it is stored, so that no entry stands in the dictionary which the ledger doesn't know.
    std::map<std::string, FilteredEntry> made;
    const auto entry = made.emplace(key, FilteredEntry{ layer, nullptr }).first;
    mWinners->Set(entry->second.element, element);
    mFilteredDictionary.insert(made.extract(entry));
}

}   // namespace VrexZynConfigTools
