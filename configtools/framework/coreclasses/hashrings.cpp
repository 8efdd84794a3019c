#include "hashrings.h"

#include <utility>

namespace VrexZynConfigTools {

void CHashRings::Prepare(std::uint32_t hash, std::size_t entryCount, std::size_t ringCount)
{
    if (ringCount * 8 > std::size_t{ mSize } * 7)
        Grow(RoomFor(ringCount * 8 / 7 + 1, mSize));
    if (!mLinks.empty() || Find(hash) != nullptr)
        MakeLinks(entryCount);
}

void CHashRings::MakeLinks(std::size_t entryCount)
{
    if (mLinks.size() >= entryCount)
        return;
    const bool areFirst = mLinks.empty();
    if (mLinks.capacity() < entryCount)
        mLinks.reserve(RoomFor(entryCount, mLinks.capacity()));
    mLinks.resize(entryCount);
    for (std::size_t at = 0; areFirst && at < mSize; ++at) {
        const std::uint32_t entry = mSlots[at].mFirst;
        if (entry != NONE)
            mLinks[entry] = { entry, entry };
    }
}

void CHashRings::Add(std::uint32_t hash, std::uint32_t entry, CElement * element) noexcept
{
    if (!mLinks.empty())
        mLinks[entry] = { entry, entry };
    if (Slot * const slot = FindSlot(hash))
        return AddToRing(*slot, entry, element);
    Insert({ hash, entry, element });
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
    Slot & slot = *FindSlot(hash);
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
    Slot & slot = *FindSlot(hash);
    if (slot.mFirst == entry)
        slot.mElement = successor;
}

void CHashRings::Clear() noexcept
{
    for (std::size_t at = 0; at < mSize; ++at)
        mSlots[at] = Slot{};
    mRingCount = 0;
}

void CHashRings::Grow(std::size_t size)
{
    auto former = std::make_unique<Slot[]>(size);
    former.swap(mSlots);
    const std::size_t formerSize = std::exchange(mSize, static_cast<std::uint32_t>(size));
    for (std::size_t at = 0; at < formerSize; ++at) {
        if (former[at].mFirst != NONE)
            Insert(former[at]);
    }
}

// A slot further from its home than the one it meets takes that one's place, which moves on.
void CHashRings::Insert(Slot slot) noexcept
{
    std::size_t at = Home(slot.mHash);
    for (std::size_t distance = 0; mSlots[at].mFirst != NONE; ++distance) {
        const std::size_t met = Distance(at);
        if (met < distance) {
            std::swap(slot, mSlots[at]);
            distance = met;
        }
        at = Behind(at);
    }
    mSlots[at] = slot;
}

// Those behind move up, as far as they aren't at home.
void CHashRings::Erase(Slot & slot) noexcept
{
    std::size_t hole = static_cast<std::size_t>(&slot - mSlots.get());
    for (std::size_t at = Behind(hole); mSlots[at].mFirst != NONE && Distance(at) != 0; at = Behind(at)) {
        mSlots[hole] = mSlots[at];
        hole = at;
    }
    mSlots[hole] = Slot{};
    --mRingCount;
}

}   // namespace VrexZynConfigTools
