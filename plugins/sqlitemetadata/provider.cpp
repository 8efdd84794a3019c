#include "provider.h"

#include "catalogue.h"
#include "database.h"
#include "defaults.h"
#include "elementbuilder.h"
#include "fileheader.h"
#include "soundness.h"

#include <configtools/keywords.h>
#include <kit/nearestname/nearestname.h>
#include <kit/reading/filereader.h>
#include <kit/reporting/advice.h>
#include <kit/reporting/channel.h>
#include <kit/reporting/guard.h>
#include <kit/text/words.h>

#include <optional>

namespace sqlitemetadata {

using namespace VrexZynConfigTools;
using namespace kit::reading;
using namespace kit::reporting;

/// What is known of the file from one opening to the next.
struct Repository
{
    explicit Repository(RecordShelf & shelf)
        : mRecords(mDatabase, shelf)
    {}

    bool Open(const std::string & path)
    {
        return mDatabase.Open(path) && IsSound(mDatabase) && mCatalogue.Load(mDatabase);
    }

    CDatabase mDatabase;
    CCatalogue mCatalogue;
    CRecords mRecords;
};

namespace {

constexpr std::size_t MAX_FINDINGS = 50;

// Default values stand below all stores: in layer 0, of no device and no store.
void PlaceInLayer0(IConfigContext & context)
{
    context.SetTag(keywords::TAG_DEVICE);
    context.SetTag(keywords::TAG_STORE);
    context.SetTag(keywords::TAG_LAYER_NUMBER, 0);
}

std::string LabelsOf(const CCatalogue & catalogue)
{
    std::vector<std::string> labels;
    for (const System & system : catalogue.Systems())
        for (const auto & chip : system.mChips)
            labels.push_back(Quoted(chip->SystemVersionLabel()));
    return kit::text::Joined(labels, ", ");
}

}   // namespace

CSqliteMetadataProvider::CSqliteMetadataProvider(const std::string & path)
    : CBaseMetadataProvider(path)
{
    Guarded(mSource, [this] { Open(); });
}

CSqliteMetadataProvider::~CSqliteMetadataProvider() = default;

void CSqliteMetadataProvider::Open()
{
    mWhyNot = WhyNoRepository(mSource);
    if (mWhyNot.empty()) {
        auto repository = std::make_unique<Repository>(mShelf);
        if (repository->Open(mSource))
            mRepository = std::move(repository);
        else
            mWhyNot = repository->mDatabase.TakeFault();
    }
    if (mRepository == nullptr)
        ReportErrorOnce("unusable-metadata", mSource, mWhyNot);
}

// Puts a question to the repository. False if it can't be answered, and why is told.
template <typename ActionT>
bool CSqliteMetadataProvider::Ask(ActionT action)
{
    bool isAnswered = false;
    Guarded(mSource, [&] {
        if (mRepository == nullptr)
            return ReportErrorOnce("unusable-metadata", mSource, mWhyNot);
        action(*mRepository);
        const std::string fault = mRepository->mDatabase.TakeFault();
        isAnswered = fault.empty();
        if (!isAnswered)
            ReportErrorOnce("bad-metadata", mSource, fault);
    });
    return isAnswered;
}

template <typename WantedT>
const IMetadata & CSqliteMetadataProvider::Find(const WantedT & wanted, IConfigContext & context)
{
    const IMetadata * found = nullptr;
    const bool isAnswered = Ask([&](Repository & repository) {
        for (const Subsystem * const subsystem : repository.mCatalogue.SelectedSubsystems(context)) {
            const auto id = repository.mRecords.IdOf(subsystem->mId, wanted);
            if (id)
                found = repository.mRecords.Key(*id);
            if (id)
                return;
        }
    });
    return isAnswered && found != nullptr ? *found : CNullMetadata::Ref();
}

const IMetadata & CSqliteMetadataProvider::MetadataById(std::uint32_t psId, IConfigContext & context)
{
    return Find(psId, context);
}

const IMetadata & CSqliteMetadataProvider::MetadataByName(const std::string & name, IConfigContext & context)
{
    return Find(name, context);
}

const std::vector<const IMetadata *> & CSqliteMetadataProvider::AllMetadata(IConfigContext & context)
{
    mAllMetadata.clear();
    const bool isAnswered = Ask([&](Repository & repository) {
        for (const Subsystem * const subsystem : repository.mCatalogue.SelectedSubsystems(context))
            for (const std::int64_t id : repository.mRecords.IdsOf(subsystem->mId))
                mAllMetadata.push_back(repository.mRecords.Key(id));
    });
    if (!isAnswered)
        mAllMetadata.clear();
    return mAllMetadata;
}

const std::vector<std::string> & CSqliteMetadataProvider::Systems()
{
    mSystems.clear();
    Ask([&](Repository & repository) {
        for (const System & system : repository.mCatalogue.Systems())
            mSystems.push_back(system.mName);
    });
    return mSystems;
}

std::vector<ISubsystemInfo *> & CSqliteMetadataProvider::Subsystems(IConfigContext & context)
{
    mSubsystems.clear();
    Ask([&](Repository & repository) {
        for (const System * const system : repository.mCatalogue.SelectedSystems(context))
            for (const Subsystem & subsystem : system->mSubsystems)
                mSubsystems.push_back(subsystem.mInfo.get());
    });
    return mSubsystems;
}

std::vector<IChipInfo *> & CSqliteMetadataProvider::Chips(IConfigContext & context)
{
    mChips.clear();
    Ask([&](Repository & repository) {
        for (const System * const system : repository.mCatalogue.SelectedSystems(context))
            for (const auto & chip : system->mChips)
                mChips.push_back(chip.get());
    });
    return mChips;
}

std::string CSqliteMetadataProvider::NearestName(const std::string & name, IConfigContext & context)
{
    kit::nearestname::CNearestName nearest(name);
    const bool isAnswered = Ask([&](Repository & repository) {
        for (const Subsystem * const subsystem : repository.mCatalogue.SelectedSubsystems(context))
            for (const std::string & candidate : repository.mRecords.NamesOf(subsystem->mId))
                nearest.Look(candidate);
    });
    return isAnswered ? nearest.Result() : std::string();
}

bool CSqliteMetadataProvider::Check()
{
    return mRepository != nullptr;
}

void CSqliteMetadataProvider::Refresh()
{
    mAllMetadata.clear();
    mSystems.clear();
    mSubsystems.clear();
    mChips.clear();
    mRepository.reset();
    Guarded(mSource, [this] { Open(); });
}

void CSqliteMetadataProvider::Read(IConfigContext & context)
{
    FileContent defaults;
    CFindings findings(mSource, MAX_FINDINGS);
    bool isReadable = mObserver != nullptr;
    if (!isReadable)
        return ReportErrorOnce("invalid-operation", mSource,
            std::string(keywords::ERROR_INVALID_OPERATION) + " (a read without an observer)");
    const bool isAnswered = Ask([&](Repository & repository) {
        const System * const system = SystemToRead(context);
        isReadable = system != nullptr;
        if (!isReadable)
            return;
        CElementBuilder builder(context);
        defaults.mSubsystems =
            CDefaults(repository.mDatabase, repository.mRecords, builder, findings).Of(*system);
    });
    ReportErrors(findings);
    if (!isAnswered || !isReadable || !findings.IsEmpty())
        return;
    Guarded(mSource, [&] {
        const ContextOwner base = FileContext(context, keywords::EMPTY);
        PlaceInLayer0(*base);
        Deliver(defaults, *base, *this, *mObserver, mElementObserver);
    });
}

const System * CSqliteMetadataProvider::SystemToRead(IConfigContext & context)
{
    const CCatalogue & catalogue = mRepository->mCatalogue;
    const std::vector<const System *> selected = catalogue.SelectedSystems(context);
    if (selected.size() == 1)
        return selected.front();
    const std::string label = context.GetTag(keywords::TAG_CHIP);
    const std::string reason =
        label.empty() ? "no chip is selected" : "the chip " + Quoted(label) + " is unknown";
    mRepository->mDatabase.SetFault(std::string(keywords::ERROR_SYSTEM_LABEL_NOT_FOUND) + " (" + reason +
                                    "; there is " + LabelsOf(catalogue) + ')');
    return nullptr;
}

}   // namespace sqlitemetadata
