#include "reader.h"

#include "findings.h"
#include "report.h"

#include <configtools/context.h>
#include <configtools/keywords.h>
#include <kit/reading/contexts.h>
#include <kit/reading/storelayers.h>
#include <kit/tomlsyntax/tomlsyntax.h>

#include <algorithm>
#include <iterator>

namespace tomlconfig {

using namespace kit::reading;

namespace {

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

void CTomlReader::SetMetadataProvider(IMetadataProvider & provider)
{
    mProvider = &provider;
}

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
    const auto content = kit::tomlsyntax::ReadFile(mPath, error);
    if (!content)
        return ReportError(mPath + ": " + error);

    CFindings findings(mPath);
    Document document = ReadQuietly(*content, findings, context);
    CheckChip(document, context, findings);
    if (!findings.IsEmpty())
        return ReportError(findings.Text());
    for (const std::string & warning : findings.Warnings())
        ReportWarning(warning);

    WarnOfDuplicates(document, context);
    KeepRecords(document);
    KeepRomStores(document);
    Deliver(document, context);
}

// The library's checks clear the groups of errors for each key, and leave errors of their own there. What the caller
// had in them is kept.
Document CTomlReader::ReadQuietly(
    const std::string & text, CFindings & findings, IConfigContext & context) const
{
    const CErrorsSetAside errors;
    return ReadDocument(text, findings, mProvider, context);
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
    const ContextOwner base = FileContext(context, document.mChip);

    // A file without subsystems names its chip in these two calls or nowhere.
    mObserver->OnReadStarted(*this, *base);
    for (Subsystem & subsystem : document.mSubsystems)
        DeliverSubsystem(subsystem, *base);
    mObserver->OnReadEnded(*this, *base);
}

void CTomlReader::DeliverSubsystem(Subsystem & subsystem, IConfigContext & context)
{
    const ContextOwner own =
        SubsystemContext(context, { subsystem.mType, subsystem.mDevice, subsystem.mStore });
    mObserver->OnSubsystemFound(*this, *own);   // this replaces mElementObserver
    CKeyContexts contexts(*own);
    for (Key & key : subsystem.mKeys) {
        IConfigContext & keyContext = contexts.Of(key.mIndices);
        if (mElementObserver != nullptr)
            mElementObserver->OnElementFound(key.mElement.release(), keyContext);   // the observer owns it now
    }
    mObserver->OnSubsystemCompleted(*this, *own);
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
