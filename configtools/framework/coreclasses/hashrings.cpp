#include "hashrings.h"

#include <algorithm>
#include <utility>

namespace VrexZynConfigTools {

void CHashRings::Prepare(std::uint32_t hash, std::size_t entryCount)
{
    if (IsFull() || mSlots[mSlotCount - 2].mFirst != NONE)
        Grow();
    if (!mLinks.empty() || Find(hash) != nullptr)
        MakeLinks(entryCount);
}

void CHashRings::Add(std::uint32_t hash, std::uint32_t entry, CElement * element) noexcept
{
    if (!mLinks.empty())
        mLinks[entry] = { entry, entry };
    Slot * const slot = Place(hash);
    if (slot->mHash == hash && slot->mFirst != NONE)
        return AddToRing(*slot, entry, element);
    Slot * end = slot;
    while (end->mFirst != NONE)
        ++end;
    std::move_backward(slot, end, end + 1);
    *slot = { hash, entry, element };
    ++mRingCount;
}

void CHashRings::AddToRing(Slot & slot, std::uint32_t entry, CElement * element) noexcept
{
    std::uint32_t before = Last(slot.mFirst);
    if (entry < slot.mFirst) {
        slot.mFirst = entry;
        slot.mElement = element;
    } else {
        while (before > entry)
            before = mLinks[before].mBefore;
    }
    const std::uint32_t next = mLinks[before].mNext;
    mLinks[entry] = { next, before };
    mLinks[before].mNext = entry;
    mLinks[next].mBefore = entry;
}

// Null if the ring is gone with its last entry.
CHashRings::Slot * CHashRings::RemoveFromRing(std::uint32_t hash, std::uint32_t entry) noexcept
{
    Slot & slot = *Place(hash);
    const std::uint32_t next = Next(entry, entry);
    if (next == NONE) {
        Erase(slot);
        return nullptr;
    }
    const std::uint32_t before = mLinks[entry].mBefore;
    mLinks[before].mNext = next;
    mLinks[next].mBefore = before;
    if (slot.mFirst == entry)
        slot.mFirst = next;
    return &slot;
}

void CHashRings::Replace(std::uint32_t hash, std::uint32_t entry, CElement * successor) noexcept
{
    Slot & slot = *Place(hash);
    if (slot.mFirst == entry)
        slot.mElement = successor;
}

void CHashRings::Clear() noexcept
{
    std::fill_n(mSlots.get(), mSlotCount, Slot{});
    mRingCount = 0;
}

void CHashRings::MakeLinks(std::size_t entryCount)
{
    if (mLinks.size() >= entryCount)
        return;
    const bool areFirst = mLinks.empty();
    if (mLinks.capacity() < entryCount)
        mLinks.reserve(RoomFor(entryCount, mLinks.capacity()));
    mLinks.resize(entryCount);
    for (std::size_t at = 0; areFirst && at < mSlotCount; ++at) {
        const std::uint32_t entry = mSlots[at].mFirst;
        if (entry != NONE)
            mLinks[entry] = { entry, entry };
    }
}

// Behind the last home there are slots for those that find theirs taken: few, and more only if they are used up.
void CHashRings::Grow()
{
    constexpr std::size_t MOST = 32;
    std::size_t homeCount = mHomeCount;
    std::size_t more = mSlotCount - mHomeCount;
    if (IsFull()) {
        homeCount = RoomFor(std::size_t{ mRingCount } + 2, homeCount);
        more = std::min(homeCount / 16, MOST);
    }
    CHashRings larger;
    do {
        more += more / 2 + 3;
        larger.mHomeCount = static_cast<std::uint32_t>(homeCount);
        larger.mSlotCount = static_cast<std::uint32_t>(homeCount + more);
        larger.mSlots = std::make_unique<Slot[]>(larger.mSlotCount);
    } while (!larger.TakeSlots(*this));
    mSlots = std::move(larger.mSlots);
    mHomeCount = larger.mHomeCount;
    mSlotCount = larger.mSlotCount;
}

// In the order of the hashes each goes to its home or behind the one before it. False if that leaves no room to add one.
bool CHashRings::TakeSlots(const CHashRings & former) noexcept
{
    std::size_t next = 0;
    for (std::size_t at = 0; at < former.mSlotCount; ++at) {
        const Slot & slot = former.mSlots[at];
        if (slot.mFirst == NONE)
            continue;
        next = std::max(next, Home(slot.mHash));
        if (next + 2 >= mSlotCount)
            return false;
        mSlots[next++] = slot;
    }
    return true;
}

// Those behind move up, as far as they aren't at home.
void CHashRings::Erase(Slot & slot) noexcept
{
    Slot * end = &slot + 1;
    while (end->mFirst != NONE && &mSlots[Home(end->mHash)] != end)
        ++end;
    std::move(&slot + 1, end, &slot);
    *(end - 1) = Slot{};
    --mRingCount;
}

}   // namespace VrexZynConfigTools
