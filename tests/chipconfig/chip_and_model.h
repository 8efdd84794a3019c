/// A chip of the library beside its model: both go through the same random work.

#ifndef TESTS_CHIPCONFIG_CHIP_AND_MODEL_H
#define TESTS_CHIPCONFIG_CHIP_AND_MODEL_H

#include <configtools/chipconfig.h>
#include <configtools/subsystemconfig.h>
#include <support/chip_model.h>
#include <support/context_pool.h>
#include <support/framework_errors.h>
#include <support/random_source.h>
#include <support/scripted_reader.h>
#include <support/uid_writer.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <list>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace VrexZynConfigTools::support {

struct RandomWork
{
    std::uint32_t mSeed;
    std::vector<PooledContext::Kind> mKinds;
    std::size_t mForeign;   // percent of elements of foreign classes
};

class ChipAndModel
{
public:
    explicit ChipAndModel(const RandomWork & work)
        : mWork(work)
        , mRandom(work.mSeed)
        , mContexts(
              mRandom, [this] { return mRandom.PlaceTag(); }, work.mKinds)
    {
        Renew();
    }

    void Step()
    {
        switch (mRandom.Below(24)) {
        case 0:
        case 1:
        case 2:
            return mContexts.Change();
        case 3:
        case 4:
        case 5:
            return Begin();
        case 6:
            return End();
        case 7:
        case 8:
        case 9:
        case 10:
            return LookUp();
        case 11:
            return Ask();
        case 12:
            return Merge();
        case 13:
            return Remove();
        case 14:
            return WriteAll();
        case 15:
        case 16:
            return WriteWinners();
        case 17:
            return Rarely();
        default:
            return Deliver();
        }
    }

    void CompareAll()
    {
        ASSERT_EQ(mChip->Subsystems().size(), mModel->mSubsystems.size());
        auto expected = mModel->mSubsystems.begin();
        for (const auto & [key, subsystem] : mChip->Subsystems()) {
            ASSERT_EQ(key, expected->first);
            ASSERT_EQ(subsystem, expected->second->mTwin) << key;
            ASSERT_EQ(subsystem->Context().Tags(), expected->second->mContext.mTags) << key;
            CompareElements(*subsystem, expected->second->mElements);
            ++expected;
        }
        CompareStores();
    }

    const std::string & Last() const { return mLast; }

private:
    static void CompareElements(CSubsystemConfig & subsystem, const WalkModel & model)
    {
        std::vector<int> expected;
        for (const ModelElement & element : model.All())
            expected.push_back(element.mUid);
        std::vector<int> actual;
        for (const CElement * element : subsystem.Elements())
            actual.push_back(UidOf(*element));
        ASSERT_EQ(actual, expected);
    }

    void CompareStores()
    {
        std::list<ModelStore> actual;
        for (const CStoreInfo * store : mChip->Stores())
            actual.push_back({ store->DeviceId(), store->StoreId(), store->StoreSize(), store->StoreSizeFree(),
                store->LinkedStoreId(), store->Order(), store->Paired() });
        ASSERT_TRUE(actual == mModel->mStores);
    }

    /// A chip of its own. What the old one dropped lives on, and nothing else.
    void Renew()
    {
        mLast = "renew";
        mReaderOf = nullptr;
        mChip.reset();
        if (mModel != nullptr) {
            for (const auto & subsystem : mModel->mDropped)
                mLostForever += subsystem->mElements.All().size();
        }
        ASSERT_EQ(mLives.Count(), mLostForever);
        mChip = std::make_unique<CChipConfig>();
        mModel = std::make_unique<ChipModel>();
    }

    IConfigReaderObserver & Observer() { return *mChip; }

    void Begin()
    {
        PooledContext & context = mContexts.Any();
        mLast = "begin " + context.mModel.KeyByStore();
        if (mRandom.Chance(20)) {
            mReader.SetElementObserver(mChip->CreateAndAddSubsystem(*context.mContext));
            mReaderOf = mModel->CreateAndAdd(context.mModel);
        } else {
            Observer().OnSubsystemFound(mReader, *context.mContext);
            mReaderOf = mModel->OnSubsystemFound(context.mModel);
        }
        auto * const given = dynamic_cast<CSubsystemConfig *>(mReader.ElementObservers().back());
        if (mReaderOf->mTwin == nullptr)
            mReaderOf->mTwin = given;
        ASSERT_EQ(given, mReaderOf->mTwin);
    }

    void Deliver()
    {
        if (mReaderOf == nullptr || mReaderOf->mElements.All().size() > 40)
            return;
        PooledContext & context = mContexts.Any();
        const ModelElement element = mRandom.Element(++mLastUid, 5, mWork.mForeign);
        mLast = "deliver " + element.mView.mName + " filter=" + context.mModel.GetTag("layerfilter") +
                " layer=" + context.mModel.GetTag("layernumber");
        mReader.ElementObservers().back()->OnElementFound(MakeTwin(element, mLives), *context.mContext);
        mReaderOf->mElements.OnElementFound(element, context.mModel);
    }

    void End()
    {
        static const std::vector<int> DEVICES{ 0, 1, 2, 4, 12, 13, 14, 15 };
        mLast = "end";
        CZynContext context;
        if (mRandom.Chance(50)) {
            Observer().OnReadEnded(mReader, context);
            return mModel->OnReadEnded({});
        }
        std::vector<ModelStore> reported;
        const std::size_t count = mRandom.Chance(3) ? 20 : mRandom.Below(3);
        StoreReportingReader reader;
        for (std::size_t i = 0; i < count; ++i) {
            ModelStore store{ mRandom.Of(DEVICES),
                static_cast<std::uint16_t>(mRandom.Below(count < 5 ? 3 : 20)) };
            store.mSize = mRandom.Chance(50) ? 0xFFFFFFFF : 4096;
            store.mFree = mRandom.Chance(50) ? -1 : 7;
            store.mLinked = static_cast<std::uint16_t>(mRandom.Below(2));
            store.mPaired = mRandom.Chance(50);
            reported.push_back(store);
            reader.Reports(CStoreInfo(static_cast<IStoreManager::DEVICE>(store.mDevice), store.mId, store.mSize,
                store.mFree, store.mLinked, store.mOrder, store.mPaired));
        }
        Observer().OnReadEnded(reader, context);
        mModel->OnReadEnded(reported);
    }

    void LookUp()
    {
        PooledContext & context = mContexts.Any();
        const bool byName = mRandom.Chance(50);
        const std::string name = mRandom.KeyText(5);
        const std::uint32_t id = mRandom.Id(5);
        mLast = "look up " + (byName ? "\"" + name + "\"" : std::to_string(id)) + " in " +
                context.mModel.KeyByLayer() + " filter=" + context.mModel.GetTag("layerfilter");
        const CElement & found =
            byName ? mChip->Element(name, *context.mContext) : mChip->Element(id, *context.mContext);
        ASSERT_EQ(UidOf(found), mModel->Element(byName ? &name : nullptr, byName ? 0 : id, context.mModel));
        ASSERT_EQ(context.mContext->Tags(), context.mModel.mTags);
    }

    void Ask()
    {
        mLast = "ask";
        const int type = static_cast<int>(mRandom.Below(4)) - 1;
        const auto typeEnum = static_cast<SubSystemTypeEnum>(type);
        const std::uint32_t id = mRandom.Id(5);
        const auto layer = static_cast<std::uint16_t>(mRandom.Below(4));
        const auto counts = [type](const ModelContext & context) {
            return context.TagMatches("subsystemtype", type) && !context.TagMatches("layernumber", 0);
        };
        using Context = const ModelContext &;
        using Elements = const WalkModel &;
        ASSERT_EQ(mChip->HasElements(),
            mModel->AnySubsystem([](Context, Elements elements) { return !elements.All().empty(); }));
        ASSERT_EQ(mChip->HasElements(typeEnum), mModel->AnySubsystem([&](Context context, Elements elements) {
            return counts(context) && !elements.All().empty();
        }));
        ASSERT_EQ(
            mChip->HasElements(id, typeEnum), mModel->AnySubsystem([&](Context context, Elements elements) {
                return counts(context) && !elements.ElementsIsEmpty(id);
            }));
        ASSERT_EQ(mChip->HasElements(id, typeEnum, layer),
            mModel->AnySubsystem([&](Context context, Elements elements) {
                return context.TagMatches("subsystemtype", type) &&
                       context.TagMatches("layernumber", int{ layer }) && !elements.ElementsIsEmpty(id);
            }));
        std::set<std::int32_t> types;
        mModel->AnySubsystem([&types](Context context, Elements) {
            types.insert(ModelAtoi(context.GetTag("subsystemtype")));
            return false;
        });
        ASSERT_EQ(mChip->IsHeterogeneous(), types.size() > 1);
    }

    void Merge()
    {
        if (!mRandom.Chance(20))
            return Retag();
        PooledContext & context = mContexts.Any();
        const bool overwrite = mRandom.Chance(20);
        mLast = "merge";
        mChip->MergeSubsystemsContext(*context.mContext, overwrite);
        mModel->Merge(context.mModel, overwrite);
    }

    /// Whoever has a chip may write the tags of its subsystems.
    void Retag()
    {
        if (mModel->mSubsystems.empty())
            return;
        const auto at = static_cast<std::ptrdiff_t>(mRandom.Below(mModel->mSubsystems.size()));
        const auto [tag, value] = mRandom.PlaceTag();
        mLast = "retag " + tag + "=" + value;
        std::next(mChip->Subsystems().begin(), at)->second->Context().SetTag(tag, value);
        std::next(mModel->mSubsystems.begin(), at)->second->mContext.SetTag(tag, value);
    }

    void Remove()
    {
        if (mReaderOf == nullptr)
            return;
        const std::string key = mRandom.KeyText(5);
        mLast = "remove \"" + key + "\"";
        dynamic_cast<CSubsystemConfig &>(*mReader.ElementObservers().back()).RemoveElement(key, nullptr);
        mReaderOf->mElements.Remove(key, nullptr);
    }

    void WriteAll()
    {
        // Keys that aren't by layer have no order.
        for (const auto & [key, subsystem] : mModel->mSubsystems) {
            if (std::count(key.begin(), key.end(), '|') != 3)
                return;
        }
        PooledContext & context = mContexts.Any();
        if (!context.mModel.GetTag("layerfilter").empty())
            return;
        mLast = "write all";
        std::string expected = "<";
        for (const auto & subsystem : mModel->InWriteOrder()) {
            ChipModel::MergeInto(*subsystem, context.mModel, false);
            const ModelContext & own = subsystem->mContext;
            expected += UidWriter::PlaceOf(
                own.GetTag("subsystemtype"), own.GetTag("layernumber"), own.GetTag("device"));
            for (const ModelElement & element : subsystem->mElements.All())
                expected += element.mView.mId != 0 ? Numbered(" ", element.mUid) : "";
            expected += "]";
        }
        UidWriter writer;
        ASSERT_TRUE(mChip->Write(writer, *context.mContext));
        ASSERT_EQ(writer.Course(), expected + ">");
    }

    void WriteWinners()
    {
        if (!mModel->WinnersAreClear())
            return;
        mLast = "write winners";
        std::string expected = "<";
        bool isFine = true;
        std::pair<int, int> former{ -1, 0 };
        for (const ChipModel::Winner & winner : mModel->Winners()) {
            isFine = isFine && winner.mType <= 15 && winner.mLayer >= 0 && winner.mLayer <= 15;
            if (former != std::pair(winner.mType, winner.mLayer)) {
                expected += former.first != -1 ? "]" : "";
                expected +=
                    UidWriter::PlaceOf(std::to_string(winner.mType), std::to_string(winner.mLayer), "d");
                former = { winner.mType, winner.mLayer };
            }
            expected += Numbered(" ", winner.mUid);
        }
        UidWriter writer;
        CZynContext context;
        context.Parse("layerfilter=1;device=d");
        ASSERT_EQ(mChip->Write(writer, context), isFine);
        ASSERT_EQ(writer.Course(), isFine ? expected + "]>" : "<]>");
        mErrors.Clear();
    }

    void Rarely()
    {
        switch (mRandom.Below(40)) {
        case 0:
            mLast = "clear";
            mReaderOf = nullptr;
            mChip->Clear();
            return mModel->Clear();
        case 1: {
            const auto chip = static_cast<std::uint16_t>(mRandom.Chance(50) ? 0x136 : 0x44);
            mLast = "prepare";
            mReaderOf = nullptr;
            mChip->PrepareForChip(chip);
            return mModel->PrepareForChip(chip);
        }
        case 2:
        case 3:
            return Renew();
        default:
            return;
        }
    }

    const RandomWork mWork;
    RandomSource mRandom;
    ContextPool mContexts;
    FrameworkErrors mErrors;
    Lives mLives;
    ScriptedReader mReader;
    std::unique_ptr<ChipModel> mModel;
    std::unique_ptr<CChipConfig> mChip;
    ChipModel::SubsystemPointer mReaderOf;   // the twin of what the reader was given last
    std::size_t mLostForever = 0;
    int mLastUid = 0;
    std::string mLast;
};

}   // namespace VrexZynConfigTools::support

#endif
