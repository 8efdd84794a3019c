#include "reader.h"

#include "findings.h"
#include "report.h"

#include <configtools/context.h>
#include <configtools/keywords.h>
#include <configtools/zyncontext.h>
#include <tomlsyntax/tomlsyntax.h>

#include <algorithm>
#include <iterator>

namespace tomlconfig {

namespace {

using ContextOwner = std::unique_ptr<IConfigContext>;

void SetNumberTag(IConfigContext & context, const char * tag, const std::optional<int> & number)
{
    if (number)
        context.SetTag(tag, *number);
    else
        context.SetTag(tag);   // deletes what the caller's context may hold
}

// What a reader hands on is always made of the caller's context, so that its options ("insertmode", "layerfilter" and
// those that only tools and observers know) travel on. The null context keeps no tags; an empty one takes its place.
ContextOwner BaseContext(IConfigContext & context)
{
    ContextOwner base(context.IsValid() ? context.Clone() : new CZynContext);
    base->SetTags(keywords::TAG_INDEX, "");   // a stray one would make table rows of plain keys
    base->SetTag(keywords::TAG_NUM_INDICES);
    return base;
}

void SetLayer(IConfigContext & context, const Subsystem & subsystem, const StoreLayers & layers)
{
    const auto found = layers.find({ subsystem.mDevice.value_or(-1), subsystem.mStore.value_or(-1) });
    const bool isListed = found != layers.end();
    SetNumberTag(context, keywords::TAG_LAYER_NUMBER, isListed ? std::optional(found->second) : std::nullopt);
}

ContextOwner SubsystemContext(IConfigContext & base, const Subsystem & subsystem)
{
    ContextOwner context(base.Clone());
    SetNumberTag(*context, keywords::TAG_SUBSYSTEM_TYPE, subsystem.mType);
    SetNumberTag(*context, keywords::TAG_DEVICE, subsystem.mDevice);
    SetNumberTag(*context, keywords::TAG_STORE, subsystem.mStore);
    const std::string layers = base.GetTag(TAG_STORE_LAYERS);
    if (!layers.empty())
        SetLayer(*context, subsystem, ParseStoreLayers(layers).value_or(StoreLayers()));
    return context;
}

// Index tags are read back in the byte order of their keys: with leading zeros that is the order of the indices.
std::string IndexTag(std::size_t number, std::size_t count)
{
    const std::string digits = std::to_string(number);
    const std::size_t width = std::to_string(count).size();
    return keywords::TAG_INDEX + std::string(width - digits.size(), '0') + digits;
}

ContextOwner KeyContext(IConfigContext & subsystemContext, const Key & key)
{
    ContextOwner context(subsystemContext.Clone());
    if (key.mIndices.empty())
        return context;
    const std::size_t count = key.mIndices.size();
    context->SetTag(keywords::TAG_NUM_INDICES, std::to_string(count));
    for (std::size_t position = 0; position < count; ++position)
        context->SetTag(IndexTag(position + 1, count), std::to_string(key.mIndices[position]));
    return context;
}

bool IsContextGood(IConfigContext & context, const std::string & path)
{
    const std::string layers = context.GetTag(TAG_STORE_LAYERS);
    if (ParseStoreLayers(layers))
        return true;
    ReportError(path + ": the context tag \"" + TAG_STORE_LAYERS + "\" reads " + Quoted(layers) +
                "; expected DEVICE.STORE:LAYER,... in decimal, such as \"1.1:1,15.1:2\"");
    return false;
}

void CheckChip(const Document & document, IConfigContext & context, CFindings & findings)
{
    const std::string wanted = context.GetTag(keywords::TAG_CHIP);
    if (!wanted.empty() && !document.mChip.empty() && document.mChip != wanted)
        findings.Add(document.mChipPlace,
            "the file is for the chip " + Quoted(document.mChip) + "; expected " + Quoted(wanted));
}

bool OnlyOneOfTwoCounts(IConfigContext & context)
{
    return context.TagMatches(keywords::TAG_INSERT_MODE, keywords::INSERT_OVERWRITE) ||
           context.TagMatches(keywords::TAG_INSERT_MODE, keywords::INSERT_NEW);
}

}   // namespace

CTomlReader::CTomlReader(const std::string & path)
    : mPath(path)
{}

CTomlReader::~CTomlReader()
{
    ClearStoreList(mRomStores);
}

void CTomlReader::SetObserver(IConfigReaderObserver & observer)
{
    mObserver = &observer;
}

void CTomlReader::SetElementObserver(IConfigReaderElementObserver & observer)
{
    mElementObserver = &observer;
}

void CTomlReader::SetMetadataProvider(IMetadataProvider &) {}

void CTomlReader::Read(IConfigContext & context)
{
    Guarded(
        mPath, [&] { ReadFileAndDeliver(context); }, [] {});
}

void CTomlReader::ReadFileAndDeliver(IConfigContext & context)
{
    if (mObserver == nullptr)
        return ReportError(mPath + ": " + keywords::ERROR_INVALID_OPERATION + " (a read without an observer)");
    if (!IsContextGood(context, mPath))
        return;
    std::string error;
    const auto content = tomlsyntax::ReadFile(mPath, error);
    if (!content)
        return ReportError(error);

    CFindings findings(mPath);
    Document document = ReadDocument(*content, findings);
    CheckChip(document, context, findings);
    if (!findings.IsEmpty())
        return ReportError(findings.Text());

    WarnOfDuplicates(document, context);
    KeepRecords(document);
    KeepRomStores(document);
    Deliver(document, context);
}

// A key may stand in a store more than once: without an insert mode, all of them are kept. Otherwise one is lost.
void CTomlReader::WarnOfDuplicates(const Document & document, IConfigContext & context) const
{
    if (OnlyOneOfTwoCounts(context))
        for (const std::string & text : FindDuplicates(document, mPath))
            ReportWarning(text);
}

void CTomlReader::KeepRecords(Document & document)
{
    mRecords.insert(mRecords.end(), std::make_move_iterator(document.mRecords.begin()),
        std::make_move_iterator(document.mRecords.end()));
    document.mRecords.clear();
}

void CTomlReader::KeepRomStores(const Document & document)
{
    ClearStoreList(mRomStores);
    for (const Subsystem & subsystem : document.mSubsystems) {
        const auto store = static_cast<std::uint16_t>(subsystem.mStore.value_or(0));
        const bool isKnown = std::any_of(mRomStores.begin(), mRomStores.end(),
            [store](const CStoreInfo * known) { return known->StoreId() == store; });
        if (subsystem.mDevice != DEVICE_ROM || store == 0 || isKnown)
            continue;
        const auto order = static_cast<std::uint16_t>(mRomStores.size() + 1);
        auto info = std::make_unique<CStoreInfo>(
            DEVICE_ROM, store, 0xFFFFFFFFu, CStoreInfo::INVALID_STORE_SIZE, std::uint16_t{ 0 }, order, false);
        mRomStores.push_back(info.get());
        info.release();   // the list owns it now
    }
}

void CTomlReader::Deliver(Document & document, IConfigContext & context)
{
    const ContextOwner base = BaseContext(context);
    if (!document.mChip.empty())
        base->SetTag(keywords::TAG_CHIP, document.mChip);

    // A file without subsystems names its chip in these two calls or nowhere.
    mObserver->OnReadStarted(*this, *base);
    for (Subsystem & subsystem : document.mSubsystems)
        DeliverSubsystem(subsystem, *base);
    mObserver->OnReadEnded(*this, *base);
}

void CTomlReader::DeliverSubsystem(Subsystem & subsystem, IConfigContext & context)
{
    const ContextOwner own = SubsystemContext(context, subsystem);
    mObserver->OnSubsystemFound(*this, *own);   // this replaces mElementObserver
    for (Key & key : subsystem.mKeys)
        DeliverKey(key, *own);
    mObserver->OnSubsystemCompleted(*this, *own);
}

void CTomlReader::DeliverKey(Key & key, IConfigContext & subsystemContext)
{
    const ContextOwner own = KeyContext(subsystemContext, key);
    if (mElementObserver != nullptr)
        mElementObserver->OnElementFound(key.mElement.release(), *own);   // the observer owns it now
}

bool CTomlReader::Open(IConfigContext &)
{
    return true;   // nothing to prepare: the file is opened by Read
}

IChunkInOut * CTomlReader::ChunkAccess(DEVICE, std::uint16_t, IConfigContext &)
{
    return nullptr;   // a file of keys holds no binary blocks
}

const std::list<CStoreInfo *> & CTomlReader::Stores(IConfigContext &)
{
    return mRomStores;
}

}   // namespace tomlconfig
