#include "provider.h"

#include "catalogue.h"
#include "database.h"
#include "defaults.h"
#include "elementbuilder.h"
#include "fileheader.h"
#include "nearestname.h"
#include "report.h"
#include "soundness.h"

#include <configtools/keywords.h>
#include <configtools/zyncontext.h>

namespace sqlitemetadata {

using namespace VrexZynConfigTools;

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

using ContextOwner = std::unique_ptr<IConfigContext>;

// What a reader hands on is always made of the caller's context, so that its options travel on. The null context keeps
// no tags; an empty one takes its place.
ContextOwner DefaultsContext(IConfigContext & context)
{
    ContextOwner own(context.IsValid() ? context.Clone() : new CZynContext);
    for (const char * const tag : { keywords::TAG_DEVICE, keywords::TAG_STORE, keywords::TAG_ELEM_BIT_WIDTH })
        own->SetTag(tag);
    own->SetTag(keywords::TAG_LAYER_NUMBER, 0);
    return own;
}

void SetIndices(IConfigContext & context, const std::vector<std::uint32_t> & indices)
{
    context.SetTags(keywords::TAG_INDEX, keywords::EMPTY);
    context.SetTag(keywords::TAG_NUM_INDICES);
    if (indices.empty())
        return;
    context.SetTag(keywords::TAG_NUM_INDICES, std::to_string(indices.size()));
    for (std::size_t position = 0; position < indices.size();
         ++position)   // 9 at most, so in the order of the tags
        context.SetTag(keywords::TAG_INDEX + std::to_string(position + 1), std::to_string(indices[position]));
}

std::string LabelsOf(const CCatalogue & catalogue)
{
    std::string labels;
    for (const System & system : catalogue.Systems())
        for (const auto & chip : system.mChips)
            labels += (labels.empty() ? "" : ", ") + Quoted(chip->SystemVersionLabel());
    return labels;
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
        ReportError(mSource + ": " + mWhyNot);
}

// Puts a question to the repository. False if it can't be answered, and why is told.
template <typename ActionT>
bool CSqliteMetadataProvider::Ask(ActionT action)
{
    bool isAnswered = false;
    Guarded(mSource, [&] {
        if (mRepository == nullptr)
            return ReportError(mSource + ": " + mWhyNot);
        action(*mRepository);
        const std::string fault = mRepository->mDatabase.TakeFault();
        isAnswered = fault.empty();
        if (!isAnswered)
            ReportError(mSource + ": " + fault);
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

const std::vector<ISubsystemInfo *> & CSqliteMetadataProvider::Subsystems(IConfigContext & context)
{
    mSubsystems.clear();
    Ask([&](Repository & repository) {
        for (const System * const system : repository.mCatalogue.SelectedSystems(context))
            for (const Subsystem & subsystem : system->mSubsystems)
                mSubsystems.push_back(subsystem.mInfo.get());
    });
    return mSubsystems;
}

const std::vector<IChipInfo *> & CSqliteMetadataProvider::Chips(IConfigContext & context)
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
    CNearestName nearest(name);
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
    std::vector<SubsystemDefaults> defaults;
    CFindings findings;
    bool isReadable = mObserver != nullptr;
    if (!isReadable)
        return ReportError(
            mSource + ": " + keywords::ERROR_INVALID_OPERATION + " (a read without an observer)");
    const bool isAnswered = Ask([&](Repository & repository) {
        const System * const system = SystemToRead(context);
        isReadable = system != nullptr;
        if (!isReadable)
            return;
        CElementBuilder builder(context);
        defaults = CDefaults(repository.mDatabase, repository.mRecords, builder, findings).Of(*system);
    });
    if (!findings.IsEmpty())
        ReportError(findings.Text(mSource + ": "));
    if (isAnswered && isReadable && findings.IsEmpty())
        Guarded(mSource, [&] { Deliver(defaults, context); });
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

void CSqliteMetadataProvider::Deliver(std::vector<SubsystemDefaults> & defaults, IConfigContext & context)
{
    const ContextOwner own = DefaultsContext(context);
    SetIndices(*own, {});
    mObserver->OnReadStarted(*this, *own);
    for (SubsystemDefaults & subsystem : defaults)
        DeliverSubsystem(subsystem, *own);
    mObserver->OnReadEnded(*this, *own);
}

void CSqliteMetadataProvider::DeliverSubsystem(SubsystemDefaults & defaults, IConfigContext & context)
{
    const ContextOwner own(context.Clone());
    own->SetTag(keywords::TAG_SUBSYSTEM_TYPE, int{ defaults.mType });
    mObserver->OnSubsystemFound(*this, *own);   // this replaces mElementObserver
    for (DefaultElement & element : defaults.mElements) {
        SetIndices(*own, element.mIndices);
        if (mElementObserver != nullptr)
            mElementObserver->OnElementFound(element.mElement.release(), *own);   // the observer owns it now
    }
    SetIndices(*own, {});
    mObserver->OnSubsystemCompleted(*this, *own);
}

}   // namespace sqlitemetadata
