#include <kit/reading/filereader.h>

#include <kit/reading/storetags.h>
#include <kit/reporting/advice.h>
#include <kit/reporting/channel.h>
#include <kit/reporting/guard.h>

#include <configtools/context.h>
#include <configtools/keywords.h>

#include <map>
#include <tuple>

namespace kit::reading {

using namespace VrexZynConfigTools;

namespace {

void DeliverSubsystem(Subsystem & subsystem, IConfigContext & base, IConfigReader & reader,
    IConfigReaderObserver & observer, IConfigReaderElementObserver * const & elementObserver)
{
    const ContextOwner own = SubsystemContext(base, subsystem.mPlace);
    observer.OnSubsystemFound(reader, *own);   // this replaces the element observer
    CKeyContexts contexts(*own);
    for (Key & key : subsystem.mKeys) {
        IConfigContext & keyContext = contexts.Of(key.mIndices);
        if (elementObserver != nullptr)
            elementObserver->OnElementFound(key.mElement.release(), keyContext);   // the observer owns it now
    }
    observer.OnSubsystemCompleted(reader, *own);
}

}   // namespace

void Deliver(FileContent & content, IConfigContext & base, IConfigReader & reader,
    IConfigReaderObserver & observer, IConfigReaderElementObserver * const & elementObserver)
{
    // A file without subsystems names its chip in these two calls or nowhere.
    observer.OnReadStarted(reader, base);
    for (Subsystem & subsystem : content.mSubsystems)
        DeliverSubsystem(subsystem, base, reader, observer, elementObserver);
    observer.OnReadEnded(reader, base);
}

std::vector<RepeatedKey> RepeatedKeys(const std::vector<Subsystem> & subsystems)
{
    using Place = std::tuple<std::optional<int>, std::optional<int>, std::optional<int>, std::uint32_t,
        std::vector<std::uint32_t>>;
    std::map<Place, const Key *> known;
    std::vector<RepeatedKey> repeated;
    for (const Subsystem & subsystem : subsystems) {
        const auto & [type, device, store, layer] = subsystem.mPlace;
        for (const Key & key : subsystem.mKeys) {
            const auto [first, isNew] =
                known.try_emplace(Place(type, device, store, key.mElement->PsId(), key.mIndices), &key);
            if (!isNew)
                repeated.push_back({ &subsystem, &key, first->second });
        }
    }
    return repeated;
}

bool OnlyOneOfTwoCounts(IConfigContext & context)
{
    return context.TagMatches(keywords::TAG_INSERT_MODE, keywords::INSERT_OVERWRITE) ||
           context.TagMatches(keywords::TAG_INSERT_MODE, keywords::INSERT_NEW);
}

std::string WhyNotForChip(const std::string & what, const std::string & found, IConfigContext & context)
{
    const std::string wanted = context.GetTag(keywords::TAG_CHIP);
    if (wanted.empty() || found.empty() || found == wanted)
        return std::string();
    return "the " + what + " is for the chip " + reporting::Quoted(found) + "; expected " +
           reporting::Quoted(wanted);
}

CFileReader::CFileReader(const std::string & path)
    : mPath(path)
{}

void CFileReader::SetObserver(IConfigReaderObserver & observer)
{
    mObserver = &observer;
}

void CFileReader::SetElementObserver(IConfigReaderElementObserver & observer)
{
    mElementObserver = &observer;
}

void CFileReader::SetMetadataProvider(IMetadataProvider & provider)
{
    mProvider = &provider;
}

void CFileReader::Read(IConfigContext & context)
{
    reporting::Guarded(mPath, [&] { ReadAndDeliver(context); });
}

void CFileReader::ReadAndDeliver(IConfigContext & context)
{
    if (mObserver == nullptr)
        return reporting::ReportError("invalid-operation", mPath,
            std::string(keywords::ERROR_INVALID_OPERATION) + " (a read without an observer)");
    const std::string wrongLayers = WhyNoStoreLayers(context);
    if (!wrongLayers.empty())
        return reporting::ReportError("bad-context-tag", mPath, wrongLayers);
    std::optional<FileContent> content = ReadContent(context);
    if (!content)
        return;
    const ContextOwner base = FileContext(context, content->mChip);
    Deliver(*content, *base, *this, *mObserver, mElementObserver);
}

}   // namespace kit::reading
