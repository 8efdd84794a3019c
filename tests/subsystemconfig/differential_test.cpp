// The library's subsystem and a plain walk of the list go through the same random operations, and every answer and the
// whole order of the list must be equal after each.

#include <configtools/subsystemconfig.h>
#include <support/context_pool.h>
#include <support/element_observers.h>
#include <support/made_locale.h>
#include <support/random_source.h>
#include <support/walk_model.h>

#include <gtest/gtest.h>
#include <messages/messages.h>

#include <memory>
#include <string>
#include <vector>

using namespace VrexZynConfigTools;
using namespace VrexZynConfigTools::support;

namespace {

struct Plan
{
    const char * mName;
    std::uint32_t mSeed;
    int mSteps;
    std::size_t mSpread;    // of numbers and names
    std::size_t mLimit;     // of elements
    std::size_t mForeign;   // percent of elements of foreign classes, in every other phase
    bool mDebug = false;
    bool mChangesLocale = false;
};

void PrintTo(const Plan & plan, std::ostream * stream)
{
    *stream << plan.mName;
}

class SubsystemAndWalk
{
public:
    explicit SubsystemAndWalk(const Plan & plan)
        : mPlan(plan)
        , mRandom(plan.mSeed)
        , mContexts(mRandom, [this] { return mRandom.InsertTag(); })
    {
        Renew();
    }
    ~SubsystemAndWalk()
    {
        mSubsystem.reset();
        EXPECT_EQ(mLives.Count(), 0U);
    }
    SubsystemAndWalk(const SubsystemAndWalk &) = delete;
    SubsystemAndWalk & operator=(const SubsystemAndWalk &) = delete;

    void Step()
    {
        if (mPlan.mChangesLocale && mRandom.Chance(5))
            ChangeLocale();
        switch (mRandom.Below(16)) {
        case 0:
            return mContexts.Change();
        case 1:
        case 2:
            return Remove();
        case 3:
            return CompareNumber();
        case 4:
            return CompareTotals();
        case 5:
        case 6:
        case 7:
            return CompareText();
        case 8:
            return Renew();
        default:
            return Insert();
        }
    }

    /// The order of the list, what the observer was told, and that nothing but the list lives.
    void CompareAll()
    {
        std::vector<int> expected;
        for (const ModelElement & element : mModel.All())
            expected.push_back(element.mUid);
        std::vector<int> actual;
        for (const CElement * element : mSubsystem->Elements())
            actual.push_back(UidOf(*element));
        ASSERT_EQ(actual, expected);
        ASSERT_EQ(mToldActual, mToldExpected);
        ASSERT_EQ(mLives.Count(), expected.size());
    }

    const std::string & Last() const { return mLast; }

private:
    struct Telling
    {
        int mUid;
        const IConfigContext * mContext;
        bool operator==(const Telling & other) const
        {
            return mUid == other.mUid && mContext == other.mContext;
        }
    };

    /// A new subsystem, when the old one is full or by a small chance: foreign elements may be impossible to remove.
    void Renew()
    {
        if (mSubsystem != nullptr && mModel.All().size() < mPlan.mLimit && !mRandom.Chance(1))
            return;
        mLast = "renew";
        mSubsystem.reset();
        ASSERT_EQ(mLives.Count(), 0U);
        mModel = WalkModel();
        mModel.mOnAdded = [this](const ModelElement & element, const ModelContext &) {
            mToldExpected.push_back({ element.mUid, mInsertContext });
        };
        mObserver.Then([this](CElement * element, IConfigContext & context) {
            mToldActual.push_back({ UidOf(*element), &context });
        });
        mSubsystem = std::make_unique<CSubsystemConfig>(*mContexts.Any().mContext, &mObserver);
        mIsForeignPhase = !mIsForeignPhase;
    }

    void ChangeLocale()
    {
        static const std::vector<std::string> NAMES{ "C", "C.UTF-8", "CP1251", "KOI8-R", "ISO-8859-15",
            "Turkish ISO-8859-9" };
        mLocales.Switch(mRandom.Of(NAMES));
    }

    void Insert()
    {
        if (mModel.All().size() >= mPlan.mLimit)
            return;
        PooledContext & context = mContexts.Any();
        const ModelElement element =
            mRandom.Element(++mLastUid, mPlan.mSpread, mIsForeignPhase ? mPlan.mForeign : 0);
        mLast = "insert " + std::to_string(element.mView.mId) + " \"" + element.mView.mName +
                "\" insertmode=" + context.mModel.GetTag("insertmode");
        mInsertContext = context.mContext.get();
        IConfigReaderElementObserver & reader = *mSubsystem;
        ASSERT_TRUE(reader.OnElementFound(MakeTwin(element, mLives), *context.mContext));
        const bool isStored = mModel.OnElementFound(element, context.mModel);
        ASSERT_EQ(mLives.Has(element.mUid), isStored);
    }

    void Remove()
    {
        const auto indices = mRandom.Indices();
        const std::vector<std::uint32_t> * given = mRandom.Chance(40) ? &indices : nullptr;
        if (mRandom.Chance(50)) {
            const std::uint32_t id = mRandom.Id(mPlan.mSpread);
            mLast = "remove " + std::to_string(id);
            mSubsystem->RemoveElement(id, given);
            mModel.Remove(std::to_string(id), given);
        } else {
            const std::string key = mRandom.KeyText(mPlan.mSpread);
            mLast = "remove \"" + key + "\"";
            mSubsystem->RemoveElement(key, given);
            mModel.Remove(key, given);
        }
    }

    void CompareText()
    {
        const std::string key = mRandom.KeyText(mPlan.mSpread);
        mLast = "look up \"" + key + "\"";
        ASSERT_EQ(UidOf(mSubsystem->Element(key)), mModel.Element(key));
    }

    void CompareNumber()
    {
        const std::uint32_t id = mRandom.Id(mPlan.mSpread);
        mLast = "look up " + std::to_string(id);
        ASSERT_EQ(UidOf(mSubsystem->Element(id)), mModel.Element(id));
        std::vector<int> uids;
        for (const CElement * element : mSubsystem->Elements(id))
            uids.push_back(UidOf(*element));
        ASSERT_EQ(uids, mModel.ElementsWith(id));
        ASSERT_EQ(mSubsystem->ElementsIsEmpty(id), mModel.ElementsIsEmpty(id));
    }

    void CompareTotals()
    {
        mLast = "size";
        ASSERT_EQ(mSubsystem->Size(), mModel.Size());
    }

    const Plan mPlan;
    MadeLocales mLocales;
    RandomSource mRandom;
    ContextPool mContexts;
    Lives mLives;
    RecordingElementObserver mObserver;
    std::unique_ptr<CSubsystemConfig> mSubsystem;
    WalkModel mModel;
    std::vector<Telling> mToldActual;
    std::vector<Telling> mToldExpected;
    const IConfigContext * mInsertContext = nullptr;
    int mLastUid = 0;
    bool mIsForeignPhase = false;
    std::string mLast;
};

class CSubsystemConfigDifferential : public testing::TestWithParam<Plan>
{
protected:
    ~CSubsystemConfigDifferential() override { CTheMsgHnd::SwitchDebugOff(); }
};

TEST_P(CSubsystemConfigDifferential, answers_as_a_walk_of_the_list)
{
    const Plan & plan = GetParam();
    if (plan.mDebug)
        CTheMsgHnd::SetDebugLevel(3);
    SubsystemAndWalk both(plan);
    for (int step = 0; step < plan.mSteps && !HasFatalFailure(); ++step) {
        both.Step();
        if (!HasFatalFailure())
            both.CompareAll();
        if (HasFatalFailure())
            ADD_FAILURE() << "step " << step << ": " << both.Last();
    }
}

INSTANTIATE_TEST_SUITE_P(Plans, CSubsystemConfigDifferential,
    testing::Values(Plan{ "few_collide_always", 1, 40000, 3, 25, 0 },
        Plan{ "few_with_foreign_classes", 2, 40000, 3, 25, 20 }, Plan{ "some", 3, 40000, 12, 60, 0 },
        Plan{ "some_with_foreign_classes", 4, 40000, 12, 60, 4 }, Plan{ "many", 5, 12000, 300, 800, 0 },
        Plan{ "many_with_foreign_classes", 6, 8000, 300, 800, 1 },
        Plan{ "debug_output_changes_nothing", 7, 10000, 8, 30, 5, true },
        Plan{ "in_changing_locales", 8, 30000, 6, 60, 0, false, true },
        Plan{ "in_changing_locales_with_foreign_classes", 9, 20000, 6, 60, 4, false, true },
        Plan{ "a_table_of_many_rows", 10, 8000, 1, 800, 0 }),
    [](const testing::TestParamInfo<Plan> & plan) { return std::string(plan.param.mName); });

}   // namespace
