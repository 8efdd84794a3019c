/// Finds in a list of elements what a walk over it would find, without the walk.

#ifndef CONFIGTOOLS_ELEMENTINDEX_H
#define CONFIGTOOLS_ELEMENTINDEX_H

#include <cstddef>
#include <cstdint>
#include <list>
#include <memory>
#include <string>
#include <vector>

namespace VrexZynConfigTools {

class CElement;

/// Stands beside the list of a subsystem, which tells it of every change. Elements with one key number are chained in
/// list order, and so are elements whose names are equal without case.
///
/// While the list holds an element whose class isn't one of the library's own, `IsExact` is false and the list must be
/// walked: such a class may change its key, and its `Same` may mean anything.
class CElementIndex
{
public:
    using Position = std::list<CElement *>::iterator;

    /// What the index keeps of an element, as it was when the element came.
    struct Description
    {
        CElement * mElement;
        std::uint32_t mId;
        std::uint32_t mNameHash;
        bool mIsPlain;     // no table row, or one without indices
        bool mIsForeign;   // of a class that isn't the library's own
    };

    /// One element of the list.
    struct Entry : Description
    {
        Position mPosition;
        std::uint64_t mOrder;      // ascends along the list
        std::uint32_t mNextById;   // chains are rings: the last entry is followed by the first
        std::uint32_t mNextByName;
    };

    /// Entries of one chain in list order; valid until the index changes. To be used in a range-based for.
    class CCandidates
    {
    public:
        using Link = std::uint32_t Entry::*;
        class CIterator
        {
        public:
            CIterator(const CCandidates & owner, std::uint32_t at)
                : mOwner(owner)
                , mAt(at)
            {}
            const Entry & operator*() const { return (*mOwner.mEntries)[mAt]; }
            CIterator & operator++()
            {
                mAt = mAt == mOwner.mTail ? NONE : (*mOwner.mEntries)[mAt].*mOwner.mLink;
                return *this;
            }
            bool operator!=(const CIterator & other) const { return mAt != other.mAt; }

        private:
            const CCandidates & mOwner;
            std::uint32_t mAt;
        };

        CCandidates(const std::vector<Entry> & entries, std::uint32_t tail, Link link)
            : mEntries(&entries)
            , mTail(tail)
            , mLink(link)
        {}
        CIterator begin() const { return { *this, mTail == NONE ? NONE : (*mEntries)[mTail].*mLink }; }
        CIterator end() const { return { *this, NONE }; }

    private:
        const std::vector<Entry> * mEntries;
        std::uint32_t mTail;   // NONE for an empty chain
        Link mLink;
    };

    CElementIndex();

    bool IsExact() const { return mForeignCount == 0; }

    /// A name as a lookup needs it, worked out once for all layers.
    struct NameKey
    {
        const std::string & mName;
        std::uint32_t mHash;   // equal for names that are equal without case, in every locale
        bool mIsPlainText;     // holds no "." and begins with a letter or "_": no number, no indices
    };
    static NameKey KeyOf(const std::string & name);

    /// The element with this number that stands last in the list, or null.
    CElement * LastWithId(std::uint32_t id) const { return mById.Answer(id); }

    /// The first element with this name, without regard to case, that is no table row with indices, or null.
    CElement * FirstPlainNamed(const NameKey & key) const;

    /// The elements with this number.
    CCandidates WithId(std::uint32_t id) const;

    /// All elements with this name, and perhaps others whose names have the same hash.
    CCandidates WithHash(std::uint32_t hash) const;

    /// Makes room for what one `Append` or `Replace` may need. Alone of the changes it may throw; nothing has changed
    /// then.
    void Reserve();

    /// Tells that the element at `position` was put at the end of the list. Call `Reserve` before.
    void Append(Position position) noexcept;

    /// Tells that the element at `position` is about to give its place to `successor`. Call `Reserve` before.
    void Replace(Position position, CElement * successor) noexcept;

    /// Tells that the element at `position` is about to leave the list.
    void Remove(Position position) noexcept;

private:
    static constexpr std::uint32_t NONE = 0xFFFFFFFFU;

    /// Finds a chain by its key, with open addressing: the slot that a key belongs to, or the next free one behind it.
    class CChainTable
    {
    public:
        struct Slot
        {
            std::uint32_t mKey = 0;
            std::uint32_t mTail = NONE;   // the last entry of the chain; NONE for a free slot
            CElement * mAnswer =
                nullptr;   // of the chain's elements the one that a plain lookup gives; null for none
        };

        CChainTable();
        const Slot * Find(std::uint32_t key) const
        {
            const Slot & slot = Probe(key);
            return slot.mTail != NONE ? &slot : nullptr;
        }
        CElement * Answer(std::uint32_t key) const { return Probe(key).mAnswer; }
        Slot & FindOrAdd(std::uint32_t key) noexcept;
        void Erase(std::uint32_t key) noexcept;
        void Reserve();   // room for one more key

    private:
        std::size_t Home(std::uint32_t key) const { return (key * 0x9E3779B1U) >> mShift; }
        std::size_t Next(std::size_t at) const { return (at + 1) & mMask; }

        // The key's slot, or a free one. A free slot has the key 0, so that the search for 0 may end at one: rightly,
        // as no search goes past a free slot.
        const Slot & Probe(std::uint32_t key) const
        {
            const Slot * const slots = mSlots.get();
            std::size_t at = Home(key);
            while (slots[at].mKey != key && slots[at].mTail != NONE)
                at = Next(at);
            return slots[at];
        }

        std::unique_ptr<Slot[]> mSlots;   // at least a quarter of them free
        std::size_t mMask;                // their number, a power of two, less 1
        unsigned mShift;                  // 32 less the binary logarithm of their number
        std::size_t mCount = 0;
    };

    /// One of the two ways into the entries: which table, which link, and which element of a chain is its answer.
    struct Way
    {
        CChainTable CElementIndex::*mTable;
        std::uint32_t Description::*mKey;
        std::uint32_t Entry::*mNext;
        bool mAnswersFirstPlain;   // else the last
    };
    static const Way BY_ID;
    static const Way BY_NAME;

    CCandidates Chain(const Way & way, std::uint32_t key) const;
    void Link(const Way & way, std::uint32_t at) noexcept;
    void Unlink(const Way & way, std::uint32_t at) noexcept;
    void InsertInOrder(const Way & way, std::uint32_t tail, std::uint32_t at) noexcept;
    CElement * Answer(const Way & way, std::uint32_t tail) const noexcept;
    std::uint32_t EntryAt(Position position) const noexcept;
    static Description Describe(CElement & element) noexcept;

    CChainTable mById;
    CChainTable mByName;
    std::vector<Entry> mEntries;
    std::uint32_t mFirstFree = NONE;   // unused entries, chained by mNextById
    std::uint64_t mNextOrder = 0;
    std::size_t mForeignCount = 0;
};

}   // namespace VrexZynConfigTools

#endif
