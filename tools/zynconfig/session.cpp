#include "session.h"

#include "errors.h"
#include "formats.h"
#include "losses.h"
#include "plugindir.h"
#include "showjson.h"
#include "showmodel.h"
#include "showtable.h"
#include "text.h"

#include <configtools/keywords.h>
#include <configtools/stores.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>

namespace zynconfig {

using namespace VrexZynConfigTools;

namespace {

// A tag between this tool and reader plug-ins: "DEVICE.STORE:LAYER,...", all in decimal. A filtered read needs the
// layer of each store, which is known only after a read without the filter.
constexpr char TAG_STORE_LAYERS[] = "storelayers";

std::string StoreLayers(const CChipConfig & chip)
{
    std::string text;
    int layer = 0;
    for (const CStoreInfo * const store : chip.Stores()) {
        text += text.empty() ? "" : ",";
        text += std::to_string(store->DeviceId()).append(".").append(std::to_string(store->StoreId()));
        text += ':' + std::to_string(++layer);
    }
    return text;
}

// A pipe gives its content once, and asking again may wait for ever.
bool CanBeReadTwice(const std::string & file)
{
    std::error_code error;
    const auto status = std::filesystem::status(file, error);
    return !std::filesystem::is_fifo(status) && !std::filesystem::is_character_file(status) &&
           !std::filesystem::is_socket(status);
}

}   // namespace

CSession::CSession(const Options & options)
    : mOptions(options)
    , mPlugInFolder(options.mPlugInFolder.empty() ? FindPlugInFolder() : options.mPlugInFolder)
    , mModules(CReaderWriterFactory::Ref())
{}

bool CSession::Load()
{
    if (mPlugInFolder.empty()) {
        ReportError("unable to find the plug-ins: please tell their folder with --plugin-dir");
        return false;
    }
    mModules.Load(mPlugInFolder);
    const bool isAnyError = ReportChannel();
    const bool hasAll = std::all_of(mOptions.mFiles.begin(), mOptions.mFiles.end(),
                            [this](const std::string & file) { return HasPlugIn(file, mOptions.mFrom); }) &&
                        (mOptions.mOutput.empty() || HasPlugIn(mOptions.mOutput, mOptions.mTo));
    return hasAll && !isAnyError &&
           (mOptions.mMetadata.empty() || mRepository.Open(mOptions.mMetadata, mPlugInFolder));
}

bool CSession::HasPlugIn(const std::string & path, const std::string & format)
{
    const char * const plugIn = FindFormat(path, format)->mPlugIn;
    if (mModules.Exists(plugIn))
        return true;
    ReportError(
        "no plug-in " + Quoted(plugIn) + " in " + Quoted(mPlugInFolder) + ", which " + Quoted(path) + " needs");
    return false;
}

bool CSession::Show()
{
    if (!ReadAll(ReadContext()))
        return false;

    // What there is gets shown also where something is lost.
    bool isLost = ReportErrors(LossesOfRead(mReading->mChip, mReading->mWatch));
    const ShownChip shown = MakeShownChip(mReading->mChip, mReading->mWatch.Chip());
    isLost = ReportErrors(shown.mHidden) || isLost;
    return WriteOutput(mOptions.mIsJson ? RenderJson(shown) : RenderTable(shown, StyleOfOutput())) && !isLost;
}

bool CSession::Convert()
{
    if (!ReadAll(ReadContext()))
        return false;

    const CChipConfig & chip = mReading->mChip;
    bool isLost = ReportErrors(LossesOfRead(chip, mReading->mWatch));
    isLost = ReportErrors(mOptions.mLayerFilter ? LossesOfFilteredWrite(chip, std::abs(*mOptions.mLayerFilter))
                                                : LossesOfWrite(chip)) ||
             isLost;
    if (isLost || (mOptions.mLayerFilter && !ReadFiltered()))
        return false;
    return Write();
}

// All files are read, also after one has failed, so that all that is wrong is told in one run.
bool CSession::ReadAll(const CZynContext & context)
{
    mReading = std::make_unique<Reading>();
    bool ok = true;
    for (const std::string & file : mOptions.mFiles)
        ok = ReadFile(file, context) && ok;
    return !ReportErrors(mReading->mWatch.Complaints()) && ok;
}

bool CSession::ReadFile(const std::string & file, const CZynContext & context)
{
    const bool isAnyOldError = ReportChannel();
    mReaders.emplace_back(mModules.CreateReader(FindFormat(file, mOptions.mFrom)->mPlugIn, file, nullptr));
    if (mReaders.back() == nullptr) {
        if (!ReportChannel())
            ReportError(file + ": " + keywords::ERROR_UNABLE_TO_CREATE_READER);
        return false;
    }
    CZynContext own = context;   // a reader may leave tags in it
    own.SetChip(mReading->mWatch.Chip());
    mReading->mWatch.StartFile(file);
    mReaders.back()->SetObserver(mReading->mWatch);
    if (auto * const provider = mRepository.Provider())
        mReaders.back()->SetMetadataProvider(*provider);
    mReaders.back()->Read(own);
    return !ReportChannel() && !isAnyOldError;
}

bool CSession::ReadFiltered()
{
    for (const std::string & file : mOptions.mFiles) {
        if (!CanBeReadTwice(file)) {
            ReportError(file + ": --layer-filter reads a file twice, which needs an ordinary one");
            return false;
        }
    }
    CZynContext context = ReadContext();
    context.SetTag(keywords::TAG_LAYER_FILTER, *mOptions.mLayerFilter);
    context.SetTag(TAG_STORE_LAYERS, StoreLayers(mReading->mChip));

    const auto deliveries = mReading->mWatch.Deliveries();
    if (!ReadAll(context))
        return false;
    if (mReading->mWatch.Deliveries() == deliveries)
        return true;
    ReportError("the files changed while they were read");
    return false;
}

bool CSession::Write()
{
    const bool isAnyOldError = ReportChannel();
    mWriter.reset(
        mModules.CreateWriter(FindFormat(mOptions.mOutput, mOptions.mTo)->mPlugIn, mOptions.mOutput, nullptr));
    if (mWriter == nullptr) {
        if (!ReportChannel())
            ReportError(mOptions.mOutput + ": " + keywords::ERROR_UNABLE_TO_CREATE_WRITER);
        return false;
    }
    CZynContext context = WriteContext();
    mWriter->PrepareWriter(context);
    const bool ok = mReading->mChip.Write(*mWriter, context);
    const bool isAnyError = ReportChannel();
    if (!ok && !isAnyError)
        ReportError(mOptions.mOutput + ": " + keywords::ERROR_UNABLE_TO_WRITE_FILE);
    return ok && !isAnyError && !isAnyOldError;
}

CZynContext CSession::ReadContext() const
{
    CZynContext context;
    context.SetTag(keywords::TAG_INSERT_MODE, keywords::INSERT_OVERWRITE);
    context.Parse(mOptions.mContext);
    return context;
}

CZynContext CSession::WriteContext() const
{
    CZynContext context;
    context.Parse(mOptions.mContext);
    context.SetChip(mReading->mWatch.Chip());
    if (mOptions.mLayerFilter)
        context.SetTag(keywords::TAG_LAYER_FILTER, *mOptions.mLayerFilter);
    return context;
}

}   // namespace zynconfig
