#include <configtools/chipconfig.h>

#include "contextfacts.h"
#include "stamp.h"
#include "storeindex.h"
#include "winnerledger.h"

#include <configtools/keywords.h>
#include <configtools/subsystemconfig.h>
#include <messages/trace.h>
#include <misc/keepforever.h>
#include <misc/stringutil.h>

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace VrexZynConfigTools {

namespace {

constexpr GroupEnum MESSAGE_GROUP = GROUP_CORE_CLASSES;

constexpr std::size_t MAX_LAYERS = 15;
constexpr std::uint32_t UNKNOWN_STORE_SIZE = 0xFFFFFFFFU;

std::int32_t NumberInTag(IConfigContext & context, const char * tag)
{
    return stringutil::DecimalToInt(context.GetTag(tag));
}

CStoreInfo UnmeasuredStore(IStoreManager::DEVICE device, std::uint16_t storeId, std::uint16_t order)
{
    return { device, storeId, UNKNOWN_STORE_SIZE, CStoreInfo::INVALID_STORE_SIZE, 0, order, false };
}

// What makes two descriptions those of one store.
using StoreIdentity = std::pair<IStoreManager::DEVICE, std::uint16_t>;

StoreIdentity IdentityOf(const CStoreInfo & store)
{
    return { store.DeviceId(), store.StoreId() };
}

}   // namespace

void CChipConfig::PrepareForChip(unsigned short chip)
{
    ZYN_SENTRY("VrexZynConfigTools::CChipConfig::PrepareForChip");

    constexpr unsigned CHIP_WITHOUT_STORES = 0x36;
    Clear();
    if ((chip & 0xFFU) == CHIP_WITHOUT_STORES)
        return;
    for (std::uint16_t number = 1; number <= MAX_LAYERS; ++number)
        MergeStoreInfo(UnmeasuredStore(IStoreManager::DEVICE_EEPROM, number, number), nullptr);
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
        const CStoreInfo found = UnmeasuredStore(static_cast<IStoreManager::DEVICE>(device), store, order);
        const auto known = std::find_if(mStores.begin(), mStores.end(),
            [&found](const CStoreInfo * other) { return IdentityOf(*other) == IdentityOf(found); });
        MergeStoreInfo(found, known != mStores.end() ? *known : nullptr);
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
    // By identity, since a manager may report thousands, although more than 15 leave a chip without layers.
    std::map<StoreIdentity, CStoreInfo *> known;
    for (CStoreInfo * store : mStores)
        known.emplace(IdentityOf(*store), store);
    for (const CStoreInfo * store : manager->Stores(context)) {
        if (store == nullptr)
            continue;
        CStoreInfo *& same = known[IdentityOf(*store)];
        same = &MergeStoreInfo(*store, same);
    }
}

// Completes the known entry of the same store with what was not known; without one appends a copy of the store.
CStoreInfo & CChipConfig::MergeStoreInfo(const CStoreInfo & store, CStoreInfo * known)
{
    ZYN_SENTRY("VrexZynConfigTools::CChipConfig::MergeStoreInfo");

    if (known == nullptr) {
        auto added = std::make_unique<CStoreInfo>(store);
        mStores.push_back(added.get());
        return *added.release();   // the list owns it now
    }
    if (known->StoreSize() == UNKNOWN_STORE_SIZE)
        known->SetStoreSize(store.StoreSize());
    if (known->StoreSizeFree() == CStoreInfo::INVALID_STORE_SIZE)
        known->SetStoreSizeFree(store.StoreSizeFree());
    if (!known->Paired())
        known->SetPaired(store.Paired());
    return *known;
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
    mStoreIndex->Invalidate();
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
