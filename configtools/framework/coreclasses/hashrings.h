/// A hash table whose values are the entries of an index: those with one hash form a ring.

#ifndef CONFIGTOOLS_HASHRINGS_H
#define CONFIGTOOLS_HASHRINGS_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace VrexZynConfigTools {

class CElement;

/// Entries are numbers that ascend along the list of elements. Each ring is in this order: from its first entry round to
/// its last.
///
/// Open addressing. Invariant: along the slots from any free one to the next, the distance of a hash from its home
/// grows by at most one from slot to slot, so a search ends where a hash is nearer to its home than the one looked for
/// would be. This makes short searches of a table that is seven eighths full; it grows by a quarter. The links of the
/// rings take no memory until two entries have one hash.
class CHashRings
{
public:
    static constexpr std::uint32_t NONE = 0xFFFFFFFFU;

    struct Slot
    {
        std::uint32_t mHash = 0;       // also of a free slot, so that the search for 0 may end at one, rightly
        std::uint32_t mFirst = NONE;   // NONE for a free slot
        CElement * mElement = nullptr;   // that of the first entry
    };

    /// The ring of this hash, or null.
    const Slot * Find(std::uint32_t hash) const;

    std::uint32_t First(std::uint32_t hash) const
    {
        const Slot * const slot = Find(hash);
        return slot != nullptr ? slot->mFirst : NONE;
    }

    /// The last entry of the ring that begins with `first`.
    std::uint32_t Last(std::uint32_t first) const { return mLinks.empty() ? first : mLinks[first].mBefore; }

    /// The entry behind `entry` in the ring that begins with `first`, or NONE.
    std::uint32_t Next(std::uint32_t entry, std::uint32_t first) const
    {
        const std::uint32_t next = mLinks.empty() ? first : mLinks[entry].mNext;
        return next != first ? next : NONE;
    }

    /// Makes room to `Add` an entry below `entryCount`, and for `ringCount` rings in all. This and `MakeLinks` alone may
    /// throw; a search notices nothing of what they have done.
    void Prepare(std::uint32_t hash, std::size_t entryCount, std::size_t ringCount);
    void Prepare(std::uint32_t hash, std::size_t entryCount)
    {
        Prepare(hash, entryCount, std::size_t{ mRingCount } + 1);
    }

    /// Makes room for all entries below `entryCount` to share rings.
    void MakeLinks(std::size_t entryCount);

    void Add(std::uint32_t hash, std::uint32_t entry, CElement * element) noexcept;

    /// Removes an entry that is in the ring of this hash. `elementOf` gives the element of an entry.
    template <typename ElementOfT>
    void Remove(std::uint32_t hash, std::uint32_t entry, ElementOfT elementOf) noexcept
    {
        if (Slot * const slot = RemoveFromRing(hash, entry))
            slot->mElement = elementOf(slot->mFirst);
    }

    /// Notes that the entry stands for another element now.
    void Replace(std::uint32_t hash, std::uint32_t entry, CElement * successor) noexcept;

    /// Removes all entries; the room stays.
    void Clear() noexcept;

private:
    struct Links
    {
        std::uint32_t mNext;
        std::uint32_t mBefore;
    };

    std::size_t Home(std::uint32_t hash) const { return (std::uint64_t{ hash } * mSize) >> 32U; }
    std::size_t Behind(std::size_t at) const { return at + 1 != mSize ? at + 1 : 0; }
    std::size_t Distance(std::size_t at) const
    {
        const std::size_t home = Home(mSlots[at].mHash);
        return at >= home ? at - home : at + mSize - home;
    }
    Slot * FindSlot(std::uint32_t hash)
    {
        return const_cast<Slot *>(static_cast<const CHashRings *>(this)->Find(hash));
    }
    void Grow(std::size_t size);
    void Insert(Slot slot) noexcept;
    void Erase(Slot & slot) noexcept;
    void AddToRing(Slot & slot, std::uint32_t entry, CElement * element) noexcept;
    Slot * RemoveFromRing(std::uint32_t hash, std::uint32_t entry) noexcept;

    std::unique_ptr<Slot[]> mSlots;
    std::uint32_t mSize = 0;        // of mSlots
    std::uint32_t mRingCount = 0;   // slots in use
    std::vector<Links> mLinks;      // by entry; empty as long as each ring has one entry
};

inline const CHashRings::Slot * CHashRings::Find(std::uint32_t hash) const
{
    if (mRingCount == 0)
        return nullptr;
    std::size_t at = Home(hash);
    for (std::size_t distance = 0; mSlots[at].mHash != hash; ++distance) {
        if (mSlots[at].mFirst == NONE || Distance(at) < distance)
            return nullptr;
        at = Behind(at);
    }
    return mSlots[at].mFirst != NONE ? &mSlots[at] : nullptr;
}

/// Room for at least `count`, in steps of a quarter: so the room that is left unused stays small.
constexpr std::size_t RoomFor(std::size_t count, std::size_t present)
{
    const std::size_t next = present + present / 4 + 4;
    return count > next ? count : next;
}

}   // namespace VrexZynConfigTools

#endif
