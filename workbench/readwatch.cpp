#include "readwatch.h"

#include <configtools/keywords.h>
#include <configtools/subsystemconfig.h>
#include <kit/text/utf8.h>

#include <memory>

namespace workbench {

using namespace VrexZynConfigTools;
using kit::reporting::LineOf;
using kit::reporting::WithPlace;
using kit::text::Quoted;

CReadWatch::CReadWatch(CChipConfig & chip)
    : mObserver(chip)
    , mChip(chip)
{}

void CReadWatch::StartFile(const std::string & file)
{
    mFile = file;
    ++mFileNumber;
    mTarget = nullptr;
}

std::string CReadWatch::Chip() const
{
    return mLabel.value_or("");
}

const std::set<Store> & CReadWatch::Stores() const
{
    return mStores;
}

const std::map<StoredKey, Delivery> & CReadWatch::Deliveries() const
{
    return mDeliveries;
}

const std::vector<Finding> & CReadWatch::Refused() const
{
    return mRefused;
}

void CReadWatch::OnReadStarted(IConfigReader & reader, IConfigContext & context)
{
    const std::string chip = context.GetTag(keywords::TAG_CHIP);
    if (!chip.empty())
        IsOfThisChip(chip);   // a file without subsystems names its chip here or nowhere
    mObserver.OnReadStarted(reader, context);
}

void CReadWatch::OnSubsystemFound(IConfigReader & reader, IConfigContext & context)
{
    mTarget = nullptr;
    if (IsOfThisChip(context.GetTag(keywords::TAG_CHIP))) {
        mStore = StoreOf(context);
        mStores.insert(mStore);
        mObserver.OnSubsystemFound(reader, context);
        mTarget = &mChip.CreateAndAddSubsystem(context);   // the one that the line above has made or found
    }
    reader.SetElementObserver(*this);
}

void CReadWatch::OnSubsystemCompleted(IConfigReader & reader, IConfigContext & context)
{
    if (mTarget != nullptr)
        mObserver.OnSubsystemCompleted(reader, context);
    mTarget = nullptr;
}

void CReadWatch::OnReadEnded(IConfigReader & reader, IConfigContext & context)
{
    mObserver.OnReadEnded(reader, context);
}

bool CReadWatch::OnElementFound(CElement * element, IConfigContext & context)
{
    std::unique_ptr<CElement> owned(element);
    if (element == nullptr || mTarget == nullptr)
        return true;

    Delivery & delivery = mDeliveries[{ mStore, KeyOf(*element, context) }];
    const std::size_t count = delivery.mFileNumber == mFileNumber ? delivery.mCount : 0;
    delivery = { element->Name(), mFile, mFileNumber, count + 1 };
    return mTarget->OnElementFound(owned.release(), context);   // the subsystem owns it now
}

bool CReadWatch::IsOfThisChip(const std::string & chip)
{
    if (!mLabel) {
        mLabel = chip;
        mFirstFile = mFile;
    }
    if (chip == *mLabel)
        return true;

    Finding finding = kit::reporting::MakeFinding(
        "other-chip", "is for the chip " + Quoted(chip) + ", but " + mFirstFile + " is for " + Quoted(*mLabel));
    finding.mExpected = *mLabel;
    finding = WithPlace(std::move(finding), mFile);
    const bool isKnown = !mRefused.empty() && LineOf(mRefused.back()) == LineOf(finding);
    if (!isKnown)   // once a file, not once a subsystem
        mRefused.push_back(std::move(finding));
    return false;
}

}   // namespace workbench
