#include "session.h"

#include "formats.h"

#include <configtools/keywords.h>
#include <kit/text/utf8.h>

namespace workbench {

using namespace VrexZynConfigTools;
using kit::text::Quoted;

namespace {

// The plug-in of a format; null, with a finding, if the format is unknown.
const char * PlugInFor(const ConfigFile & file, IFindingSink & sink)
{
    const Format * const format = FindFormat(file.mPath, file.mFormat);
    if (format != nullptr)
        return format->mPlugIn;
    Finding finding = kit::reporting::MakeFinding(
        "unknown-format", Quoted(file.mPath) + " has no known format; known are: " + KnownFormats());
    finding.mExpected = KnownFormats();
    sink.OnFinding(finding);
    return nullptr;
}

}   // namespace

CSession::CSession(IFindingSink & sink)
    : mSink(sink)
    , mModules(CReaderWriterFactory::Ref())
    , mReading(std::make_unique<Reading>())
{}

bool CSession::LoadPlugIns(const std::string & folder)
{
    mPlugInFolder = folder;
    mModules.Load(folder);
    return !PassOnChannel(mSink);
}

bool CSession::HasPlugIn(const ConfigFile & file)
{
    const char * const plugIn = PlugInFor(file, mSink);
    if (plugIn == nullptr || mModules.Exists(plugIn))
        return plugIn != nullptr;
    mSink.OnFinding(MissingPlugIn(plugIn, mPlugInFolder, file.mPath));
    return false;
}

bool CSession::OpenMetadata(const std::string & file)
{
    return mRepository.Open(file, mPlugInFolder, mSink);
}

std::unique_ptr<IConfigWriter> CSession::CreateWriter(const ConfigFile & file)
{
    const char * const plugIn = PlugInFor(file, mSink);
    if (plugIn == nullptr)
        return nullptr;
    std::unique_ptr<IConfigWriter> writer(mModules.CreateWriter(plugIn, file.mPath, nullptr));
    if (writer == nullptr && !PassOnChannel(mSink))
        mSink.OnFinding(FindingIn(file.mPath, "no-writer", keywords::ERROR_UNABLE_TO_CREATE_WRITER));
    return writer;
}

bool CSession::Read(const std::vector<ConfigFile> & files)
{
    mFiles = files;
    return ReadAgain(ReadContext());
}

bool CSession::ReadAgain(const CZynContext & context)
{
    mReading = std::make_unique<Reading>();
    bool ok = true;
    for (const ConfigFile & file : mFiles)
        ok = ReadFile(file, context) && ok;
    return !PassOn(mReading->mWatch.Refused(), mSink) && ok;
}

bool CSession::ReadFile(const ConfigFile & file, const CZynContext & context)
{
    const bool isAnyOldError = PassOnChannel(mSink);
    const char * const plugIn = PlugInFor(file, mSink);
    if (plugIn == nullptr)
        return false;
    mReaders.emplace_back(mModules.CreateReader(plugIn, file.mPath, nullptr));
    if (mReaders.back() == nullptr) {
        if (!PassOnChannel(mSink))
            mSink.OnFinding(FindingIn(file.mPath, "no-reader", keywords::ERROR_UNABLE_TO_CREATE_READER));
        return false;
    }
    CZynContext own = context;   // a reader may leave tags in it
    own.SetChip(mReading->mWatch.Chip());
    mReading->mWatch.StartFile(file.mPath);
    mReaders.back()->SetObserver(mReading->mWatch);
    if (auto * const provider = mRepository.Provider())
        mReaders.back()->SetMetadataProvider(*provider);
    mReaders.back()->Read(own);
    return !PassOnChannel(mSink) && !isAnyOldError;
}

CZynContext CSession::ReadContext() const
{
    CZynContext context;
    context.SetTag(keywords::TAG_INSERT_MODE, keywords::INSERT_OVERWRITE);
    context.Parse(mTags);
    return context;
}

}   // namespace workbench
