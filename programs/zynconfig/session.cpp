#include "session.h"

#include "plugindir.h"

#include <configtools/keywords.h>
#include <kit/text/utf8.h>
#include <workbench/errors.h>
#include <workbench/formats.h>

#include <algorithm>

namespace zynconfig {

using namespace VrexZynConfigTools;
using namespace workbench;
using kit::text::Quoted;

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

std::unique_ptr<IConfigWriter> CSession::CreateWriter()
{
    std::unique_ptr<IConfigWriter> writer(
        mModules.CreateWriter(FindFormat(mOptions.mOutput, mOptions.mTo)->mPlugIn, mOptions.mOutput, nullptr));
    if (writer == nullptr && !ReportChannel())
        ReportError(mOptions.mOutput + ": " + keywords::ERROR_UNABLE_TO_CREATE_WRITER);
    return writer;
}

bool CSession::ReadAll()
{
    return ReadAll(ReadContext());
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

CZynContext CSession::ReadContext() const
{
    CZynContext context;
    context.SetTag(keywords::TAG_INSERT_MODE, keywords::INSERT_OVERWRITE);
    context.Parse(mOptions.mContext);
    return context;
}

}   // namespace zynconfig
