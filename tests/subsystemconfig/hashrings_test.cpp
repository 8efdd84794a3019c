// The hash table against ordered lists in a map.

#include <configtools/framework/coreclasses/hashrings.h>

#include <configtools/elements.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <map>
#include <memory>
#include <random>
#include <set>
#include <vector>

using namespace VrexZynConfigTools;

namespace {

/// Rings and what they should be; each entry has an element of its own.
class RingsAndModel
{
public:
    explicit RingsAndModel(std::size_t entryCount)
    {
        for (std::size_t entry = 0; entry < entryCount; ++entry)
            mElements.push_back(std::make_unique<CElementEnum>(static_cast<std::uint32_t>(entry), "", true));
    }

    void Add(std::uint32_t hash, std::uint32_t entry)
    {
        mRings.Prepare(hash, mElements.size());
        mRings.Add(hash, entry, mElements[entry].get());
        mModel[hash].insert(entry);
        mHashes[entry] = hash;
    }

    void Remove(std::uint32_t entry)
    {
        const std::uint32_t hash = mHashes.at(entry);
        mRings.Remove(hash, entry, [this](std::uint32_t next) { return mElements[next].get(); });
        mHashes.erase(entry);
        mModel[hash].erase(entry);
        if (mModel[hash].empty())
            mModel.erase(hash);
    }

    void Clear()
    {
        mRings.Clear();
        mModel.clear();
        mHashes.clear();
    }

    bool Has(std::uint32_t entry) const { return mHashes.count(entry) != 0; }

    void Expect(std::uint32_t hash) const
    {
        const auto found = mModel.find(hash);
        const CHashRings::Slot * slot = mRings.Find(hash);
        ASSERT_EQ(slot != nullptr, found != mModel.end()) << hash;
        std::vector<std::uint32_t> ring;
        const std::uint32_t first = mRings.First(hash);
        for (std::uint32_t entry = first; entry != CHashRings::NONE; entry = mRings.Next(entry, first))
            ring.push_back(entry);
        if (slot == nullptr) {
            EXPECT_TRUE(ring.empty());
            return;
        }
        EXPECT_EQ(ring, std::vector<std::uint32_t>(found->second.begin(), found->second.end()));
        EXPECT_EQ(mRings.Last(first), ring.back());
        EXPECT_EQ(slot->mElement, mElements[first].get());
    }

private:
    CHashRings mRings;
    std::vector<std::unique_ptr<CElement>> mElements;
    std::map<std::uint32_t, std::set<std::uint32_t>> mModel;
    std::map<std::uint32_t, std::uint32_t> mHashes;
};

/// Hashes to draw from: few, many, all in one place, and at both ends, where the table begins again.
std::vector<std::vector<std::uint32_t>> HashSets()
{
    std::mt19937 random(1);
    std::vector<std::vector<std::uint32_t>> sets(5);
    for (std::uint32_t i = 0; i < 5; ++i)
        sets[0].push_back(static_cast<std::uint32_t>(random()));
    for (std::uint32_t i = 0; i < 400; ++i) {
        sets[1].push_back(static_cast<std::uint32_t>(random()));
        sets[2].push_back(i);
        sets[3].push_back(0xFFFFFFFFU - i);
        sets[4].push_back(i % 2 != 0 ? i : 0U - i);
    }
    return sets;
}

TEST(CHashRings, are_as_ordered_lists)
{
    constexpr std::uint32_t COUNT = 300;
    std::mt19937 random(2);
    for (const std::vector<std::uint32_t> & hashes : HashSets()) {
        RingsAndModel both(COUNT);
        for (int step = 0; step < 6'000 && !testing::Test::HasFailure(); ++step) {
            const auto entry = static_cast<std::uint32_t>(random() % COUNT);
            const std::uint32_t hash = hashes[random() % hashes.size()];
            if (both.Has(entry))
                both.Remove(entry);
            else
                both.Add(hash, entry);
            if (random() % 2'000 == 0)
                both.Clear();
            both.Expect(hash);
            both.Expect(static_cast<std::uint32_t>(random()));
        }
        for (const std::uint32_t hash : hashes)
            both.Expect(hash);
    }
}

TEST(CHashRings, note_a_successor)
{
    CHashRings rings;
    CElementEnum former(1, "", true);
    CElementEnum second(2, "", true);
    CElementEnum successor(3, "", true);
    rings.Prepare(7, 2);
    rings.Add(7, 0, &former);
    rings.Prepare(7, 2);
    rings.Add(7, 1, &second);
    rings.Replace(7, 1, &successor);
    EXPECT_EQ(rings.Find(7)->mElement, &former);
    rings.Replace(7, 0, &successor);
    EXPECT_EQ(rings.Find(7)->mElement, &successor);
}

}   // namespace
