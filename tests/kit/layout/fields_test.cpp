// Which fields come back unchanged: the answer for thousands of generated structs, held against the library's codec.

#include "model.h"

#include <kit/layout/fields.h>

#include <gtest/gtest.h>

namespace VrexZynConfigTools::support {
namespace {

using kit::layout::CFields;
using kit::layout::Loss;

/// One layout, and what the codec does with it.
class CTrial
{
public:
    explicit CTrial(std::uint32_t seed)
        : mRandom(seed)
        , mLayout(AGeneratedLayout(mRandom, mProvider))
        , mLeaves(LeavesOf(mLayout))
    {
        for (const Leaf & leaf : mLeaves)
            mCount = std::max(mCount, leaf.mField + 1);
        mIsChanged.resize(mCount, false);
    }

    void Run(bool isExhaustive)
    {
        for (std::size_t attempt = 0; attempt < 36; ++attempt)
            Compare(Values(attempt, attempt < EXTREMES ? 0 : 50));
        const CFields fields(mLayout);
        ASSERT_EQ(fields.List().size(), mCount);
        for (std::size_t field = 0; field < mCount; ++field) {
            const bool isKept = fields.List()[field].mLoss == Loss::NONE;
            if (!mIsChanged[field] && (!isKept || isExhaustive))
                AttemptAll(field);
            EXPECT_EQ(isKept, !mIsChanged[field])
                << fields.List()[field].mPath << ": " << WhyText(fields.List()[field].mLoss) << '\n'
                << Text(mLayout) << mExample;
        }
    }

private:
    static constexpr std::size_t EXTREMES = 12;   // enough for all of any leaf in turn

    /// Extreme values for all leaves, but for so many of a hundred numbers any value.
    LeafNumbers Values(std::size_t extreme, std::size_t percent)
    {
        LeafNumbers values;
        for (const Leaf & leaf : mLeaves) {
            values.emplace_back();
            for (std::size_t item = 0; item < leaf.mCount; ++item)
                values.back().push_back(
                    leaf.Cut(mRandom.Chance(percent) ? mRandom.Of(leaf.mValues)
                                                     : leaf.mExtremes[extreme % leaf.mExtremes.size()],
                        item));
        }
        return values;
    }

    /// Each value of each leaf of a field among the extreme values of all others.
    void AttemptAll(std::size_t field)
    {
        for (std::size_t place = 0; place < mLeaves.size(); ++place)
            for (std::size_t item = 0; mLeaves[place].mField == field && item < mLeaves[place].mCount; ++item)
                for (const std::uint64_t value : mLeaves[place].mValues)
                    for (std::size_t extreme = 0; extreme < EXTREMES && !mIsChanged[field]; ++extreme) {
                        LeafNumbers values = Values(extreme, 0);
                        values[place][item] = mLeaves[place].Cut(value, item);
                        Compare(values);
                    }
    }

    void Compare(const LeafNumbers & values)
    {
        const auto back = ThroughTheCodec(mLayout, mLeaves, values);
        for (std::size_t place = 0; place < mLeaves.size(); ++place) {
            const Leaf & leaf = mLeaves[place];
            const bool isSame = !leaf.mIsAllowed || (back[place] == values[place] && !leaf.HasLostLength());
            if (isSame || mIsChanged[leaf.mField])
                continue;
            mIsChanged[leaf.mField] = true;
            mExample = testing::PrintToString(values[place]) + " -> " + testing::PrintToString(back[place]);
        }
    }

    RandomSource mRandom;
    MemoryProvider mProvider{ { "x" } };
    CMetadataDetailStruct & mLayout;
    std::vector<Leaf> mLeaves;
    std::size_t mCount = 0;
    std::vector<bool> mIsChanged;   // by field
    std::string mExample;
};

#ifdef __SANITIZE_ADDRESS__
constexpr std::uint32_t LAYOUTS = 200;   // with checks at run time each takes several times as long
#else
constexpr std::uint32_t LAYOUTS = 2000;
#endif

TEST(FieldsOfGeneratedStructs, come_back_unchanged_exactly_where_the_codec_gives_them_back)
{
    for (std::uint32_t seed = 0; seed < LAYOUTS && !testing::Test::HasFailure(); ++seed) {
        SCOPED_TRACE(seed);
        CTrial(seed).Run(seed % 20 == 0);
    }
}

}   // namespace
}   // namespace VrexZynConfigTools::support
