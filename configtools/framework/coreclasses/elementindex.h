/// Finds in a list of elements what a walk over it would find, without the walk.

#ifndef CONFIGTOOLS_ELEMENTINDEX_H
#define CONFIGTOOLS_ELEMENTINDEX_H

#include "hashrings.h"
#include "namehash.h"

#include <cstddef>
#include <cstdint>
#include <list>
#include <memory>
#include <string>
#include <vector>

namespace VrexZynConfigTools {

class CElement;
class CIndexedElement;

/// Belongs to the list of a subsystem, which reports every change. Each element of the list has an entry, a number that
/// ascends along the list; elements without indices are found by number and by name, table rows by either together with
/// their indices. Names have no case, by the locale that is in force at the lookup.
///
/// While the list has an element whose class isn't one of the library's own, `IsExact` is false and the list must be
/// walked: such a class may change its key, and its `Same` may mean anything. Its elements have an entry and nothing else.
class CElementIndex
{
public:
    using ElementList = std::list<CElement *>;
    using Position = ElementList::iterator;
    using Indices = std::vector<std::uint32_t>;

    /// `elements` must outlive the index.
    explicit CElementIndex(ElementList & elements);

    bool IsExact() const { return mForeignCount == 0; }

    /// A name as a lookup needs it, worked out once for all layers, by the locale in force.
    struct NameKey
    {
        const std::string & mName;
        std::uint32_t mHash;   // equal for names that are equal without case
        bool mIsPlainText;     // not empty, without "." and no beginning of a number: no indices
    };
    static NameKey KeyOf(const std::string & name);

    /// The elements with this number, table rows included: the last and the first in the list, or null; and all.
    CElement * LastWithId(std::uint32_t id) const
    {
        const CHashRings::Slot * const slot = mPlain.mByNumber.Find(HashOfNumber(id, mSecret));
        if (mRows != nullptr || (slot != nullptr && mPlain.mByNumber.Last(slot->mFirst) != slot->mFirst))
            return LastOfSeveral(id);
        return slot != nullptr ? slot->mElement : nullptr;
    }
    CElement * FirstWithId(std::uint32_t id) const;
    ElementList AllWithId(std::uint32_t id) const;

    /// The first element with this name, which must be plain text, that is no table row with indices, or null.
    CElement * FirstPlainNamed(const NameKey & key);

    /// The first element with this number, or with a name that is this one in lower case, that is the same as a row with
    /// these indices; if there are none, the first that is no row with indices. The end of the list if there is no such
    /// element. `name` must not be empty.
    Position FirstNumbered(std::uint32_t id, const Indices & indices) const;
    Position FirstNamed(const std::string & name, const Indices & indices);

    /// The first element that calls itself the same as `element`, or the end of the list.
    Position FirstSame(CElement & element) const;

    /// Notes that the element at `position` is about to be put at the end of the list. This, `Replace` and `Remove` have
    /// changed nothing if they throw.
    void Append(Position position);

    /// Notes that the element at `position` is about to give its place to `successor`.
    void Replace(Position position, CElement & successor);

    /// Notes that the element at `position` is about to leave the list.
    void Remove(Position position);

private:
    static constexpr std::uint32_t NONE = CHashRings::NONE;

    enum class Kind
    {
        PLAIN,    // no table row, or one without indices
        ROW,      // with indices
        FOREIGN   // of a class that isn't the library's own
    };

    /// Under which hashes an element is found.
    struct Hashes
    {
        Kind mKind = Kind::FOREIGN;
        bool mIsNamed = false;        // an empty name is found by a walk only: whole lists may have no names
        bool mHasHighBytes = false;   // in the name, above 127
        std::uint32_t mNumber = 0;
        std::uint32_t mPlace = 0;   // number and indices of a row
        std::uint32_t mName = 0;    // of a row together with the indices
    };

    /// The two ways to elements without indices, or to all rows with indices of one number, and to those of one name and
    /// place.
    struct Ways
    {
        CHashRings mByNumber;
        CHashRings mByName;
    };

    struct Rows : Ways
    {
        CHashRings mByPlace;   // by number and indices
    };

    static Kind KindOf(const CElement & element);
    static Hashes HashesOf(const CElement & element);

    CElement * LastOfSeveral(std::uint32_t id) const;
    CElement & ElementAt(std::uint32_t entry) const { return **mPositions[entry]; }
    Position PositionOf(std::uint32_t entry) const;
    std::uint32_t EntryAt(Position position, const Hashes & hashes) const;
    template <typename MatchT>
    std::uint32_t FirstIn(const CHashRings & rings, std::uint32_t hash, MatchT matches) const;
    void PrepareEntry();
    Ways & WaysOf(Kind kind) { return kind == Kind::ROW ? *mRows : mPlain; }
    void PrepareRings(const Hashes & hashes, std::size_t entryCount);
    void Enter(const Hashes & hashes, std::uint32_t entry, CElement * element) noexcept;
    void Leave(const Hashes & hashes, std::uint32_t entry) noexcept;
    void EnterName(const Hashes & hashes, std::uint32_t entry, CElement * element) noexcept;
    void LeaveName(const Hashes & hashes, std::uint32_t entry) noexcept;
    void FollowFolding()
    {
        if (mHasHighBytes)
            RenewNames();
    }
    void RenewNames();
    void Renumber() noexcept;

    ElementList & mElements;
    const HashSecret & mSecret;
    std::vector<Position> mPositions;   // by entry; the end of the list for one that is gone
    Ways mPlain;
    std::unique_ptr<Rows> mRows;   // null before the first
    std::size_t mCount = 0;        // of entries, without those that are gone
    std::size_t mForeignCount = 0;
    std::uint32_t mFoldingGeneration = 0;   // by which the names are hashed
    bool mHasHighBytes = false;             // in any name so far
};

}   // namespace VrexZynConfigTools

#endif
