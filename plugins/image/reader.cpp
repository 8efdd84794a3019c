#include "reader.h"

#include "chunk.h"
#include "imagefile.h"

#include <configtools/context.h>
#include <configtools/keywords.h>
#include <kit/reading/storelayers.h>

#include <algorithm>
#include <array>
#include <optional>
#include <set>
#include <tuple>

namespace imageconfig {

using namespace kit::reading;

namespace {

constexpr std::size_t MAX_LAYERS = 15;

constexpr std::array<int, 6> DEVICES_WITH_LAYERS{ IStoreManager::DEVICE_ROM, IStoreManager::DEVICE_OTP,
    IStoreManager::DEVICE_MTP, IStoreManager::DEVICE_SMEM, IStoreManager::DEVICE_FW_CFG,
    IStoreManager::DEVICE_EEPROM };

bool MakesLayer(const Store & store)
{
    return store.mNumber.value_or(0) != 0 && std::find(DEVICES_WITH_LAYERS.begin(), DEVICES_WITH_LAYERS.end(),
                                                 store.mDevice.value_or(-1)) != DEVICES_WITH_LAYERS.end();
}

bool OnlyOneOfTwoCounts(IConfigContext & context)
{
    return context.TagMatches(keywords::TAG_INSERT_MODE, keywords::INSERT_OVERWRITE) ||
           context.TagMatches(keywords::TAG_INSERT_MODE, keywords::INSERT_NEW);
}

/// The keys that a subsystem has in one store already.
std::vector<std::string> RepeatedKeys(const Content & content)
{
    std::set<std::tuple<std::optional<int>, std::optional<int>, std::optional<int>, std::uint32_t,
        std::vector<std::uint32_t>>>
        known;
    std::vector<std::string> repeated;
    for (const Subsystem & subsystem : content.mSubsystems) {
        const SubsystemPlace & place = subsystem.mPlace;
        for (const Key & key : subsystem.mKeys) {
            const std::uint32_t id = key.mElement->PsId();
            if (!known.emplace(place.mType, place.mDevice, place.mStore, id, key.mIndices).second)
                repeated.push_back(StoreName(place.mDevice, place.mStore) + ", " +
                                   KeyName(id, key.mIndices, key.mElement->Name()));
        }
    }
    return repeated;
}

}   // namespace

CImageReader::CImageReader(const std::string & path)
    : mPath(path)
    , mShelf(path)
{}

void CImageReader::SetObserver(IConfigReaderObserver & observer)
{
    mObserver = &observer;
}

void CImageReader::SetElementObserver(IConfigReaderElementObserver & observer)
{
    mElementObserver = &observer;
}

void CImageReader::SetMetadataProvider(IMetadataProvider & provider)
{
    mProvider = &provider;
}

void CImageReader::Read(IConfigContext & context)
{
    Guarded(
        mPath, [&] { ReadAndDeliver(context); }, [] {});
}

bool CImageReader::CheckContext(IConfigContext & context) const
{
    const std::string layers = context.GetTag(TAG_STORE_LAYERS);
    if (mObserver != nullptr && ParseStoreLayers(layers))
        return true;
    ReportError(mPath + ": " +
                (mObserver == nullptr
                        ? std::string(keywords::ERROR_INVALID_OPERATION) + " (a read without an observer)"
                        : "the context tag \"" + std::string(TAG_STORE_LAYERS) + "\" reads \"" + layers +
                              "\"; expected DEVICE.STORE:LAYER,... in decimal, such as \"1.1:1,15.1:2\""));
    return false;
}

void CImageReader::ReadAndDeliver(IConfigContext & context)
{
    if (!CheckContext(context))
        return;
    std::string error;
    const auto image = LoadImage(mPath, error);
    if (!image)
        return ReportError(error);

    CFindings findings;
    const std::string objection = ObjectionToChip(*image, context);
    if (!objection.empty())
        findings.Add(objection);
    CheckStores(*image, findings);
    const ContextOwner base = FileContext(context, image->mChip);
    Content content = BuildContent(*image, *base, mProvider, findings);
    if (!findings.IsEmpty())
        return ReportError(findings.Text(mPath));

    WarnOf(content, context);
    mShelf.Keep(*image);
    Deliver(content, *base);
}

// A chip configuration that is given more stores than it has layers is empty afterwards, without an error.
void CImageReader::CheckStores(const Image & image, CFindings & findings) const
{
    const auto count =
        static_cast<std::size_t>(std::count_if(image.mStores.begin(), image.mStores.end(), MakesLayer));
    if (count > MAX_LAYERS)
        findings.Add("the image has " + std::to_string(count) + " stores that make layers; a chip has " +
                     std::to_string(MAX_LAYERS));
}

void CImageReader::WarnOf(const Content & content, IConfigContext & context) const
{
    const std::vector<std::string> & unknown = content.mUnknownKeys;
    if (!unknown.empty())
        ReportWarning(mPath + ": the metadata don't know " + std::to_string(unknown.size()) +
                      (unknown.size() == 1 ? " key, which comes raw: " : " keys, which come raw: ") +
                      Listed(unknown, "; "));
    const std::vector<std::string> & changed = content.mChangedKeys;
    if (!changed.empty())
        ReportWarning(mPath + ": bits of " + std::to_string(changed.size()) +
                      (changed.size() == 1 ? " key" : " keys") +
                      " are lost, as no field holds them or can give them back: " + Listed(changed, "; "));
    // Without an insert mode all of them are kept; otherwise one is lost.
    const auto repeated = OnlyOneOfTwoCounts(context) ? RepeatedKeys(content) : std::vector<std::string>();
    if (!repeated.empty())
        ReportWarning(
            mPath + ": of keys that are there more than once only one counts: " + Listed(repeated, "; "));
}

void CImageReader::Deliver(Content & content, IConfigContext & context)
{
    // An image without stores names its chip in these two calls or nowhere.
    mObserver->OnReadStarted(*this, context);
    for (Subsystem & subsystem : content.mSubsystems)
        DeliverSubsystem(subsystem, context);
    mObserver->OnReadEnded(*this, context);
}

void CImageReader::DeliverSubsystem(Subsystem & subsystem, IConfigContext & context)
{
    const ContextOwner own = SubsystemContext(context, subsystem.mPlace);
    mObserver->OnSubsystemFound(*this, *own);   // this replaces mElementObserver
    CKeyContexts contexts(*own);
    for (Key & key : subsystem.mKeys) {
        IConfigContext & keyContext = contexts.Of(key.mIndices);
        if (mElementObserver != nullptr)
            mElementObserver->OnElementFound(key.mElement.release(), keyContext);   // the observer owns it now
    }
    mObserver->OnSubsystemCompleted(*this, *own);
}

bool CImageReader::Open(IConfigContext &)
{
    return true;   // nothing to prepare: the file is opened by Read
}

IChunkInOut * CImageReader::ChunkAccess(DEVICE device, std::uint16_t storeId, IConfigContext &)
{
    return mShelf.Access(device, storeId);
}

const std::list<CStoreInfo *> & CImageReader::Stores(IConfigContext &)
{
    return mShelf.Stores();
}

}   // namespace imageconfig
