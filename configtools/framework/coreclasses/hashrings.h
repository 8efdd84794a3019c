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
/// Open addressing. Invariant: the slots in use are in the order of their hashes, and each is as near behind its home as
/// those before it allow. So a search ends at the first slot whose hash isn't lower, which is short in a table that is
/// four fifths full; it grows by a quarter. The links of the rings take no memory until two entries have one hash.
class CHashRings
{
public:
    static constexpr std::uint32_t NONE = 0xFFFFFFFFU;

    struct Slot
    {
        std::uint32_t mHash = 0xFFFFFFFFU;   // also of a free slot, where each search ends
        std::uint32_t mFirst = NONE;         // NONE for a free slot
        CElement * mElement = nullptr;       // that of the first entry
    };

    /// The ring of this hash, or null.
    const Slot * Find(std::uint32_t hash) const
    {
        if (mRingCount == 0)
            return nullptr;
        const Slot * const slot = Place(hash);
        return slot->mHash == hash && slot->mFirst != NONE ? slot : nullptr;
    }

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

    /// Makes room to `Add` an entry below `entryCount`. This alone may throw; a search notices nothing of what it has done.
    void Prepare(std::uint32_t hash, std::size_t entryCount);

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

    std::size_t Home(std::uint32_t hash) const { return (std::uint64_t{ hash } * mHomeCount) >> 32U; }
    bool IsFull() const { return (std::size_t{ mRingCount } + 1) * 5 > std::size_t{ mHomeCount } * 4; }

    /// The slot of this hash, or the one that belongs behind it.
    Slot * Place(std::uint32_t hash) const
    {
        Slot * slot = &mSlots[Home(hash)];
        while (slot->mHash < hash)
            ++slot;
        return slot;
    }

    void MakeLinks(std::size_t entryCount);
    void Grow();
    bool TakeSlots(const CHashRings & former) noexcept;
    void Erase(Slot & slot) noexcept;
    void AddToRing(Slot & slot, std::uint32_t entry, CElement * element) noexcept;
    Slot * RemoveFromRing(std::uint32_t hash, std::uint32_t entry) noexcept;

    std::unique_ptr<Slot[]> mSlots;
    std::uint32_t mHomeCount = 0;   // behind these there are some slots more, of which the last is free
    std::uint32_t mSlotCount = 0;
    std::uint32_t mRingCount = 0;   // slots in use
    std::vector<Links> mLinks;      // by entry; empty as long as each ring has one entry
};

/// Room for at least `count`, in steps of a quarter: so the room that is left unused stays small.
constexpr std::size_t RoomFor(std::size_t count, std::size_t present)
{
    const std::size_t next = present + present / 4 + 2;
    return count > next ? count : next;
}

}   // namespace VrexZynConfigTools

#endif
