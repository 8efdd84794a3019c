#include "elementindex.h"

#include "localefolding.h"
#include "namehash.h"

#include <configtools/elements.h>

#include <algorithm>
#include <cctype>
#include <cstring>
#include <stdexcept>
#include <typeinfo>

namespace VrexZynConfigTools {

namespace {

unsigned char Lower(char character)
{
    return static_cast<unsigned char>(std::tolower(static_cast<unsigned char>(character)));
}

bool EqualWithoutCase(const std::string & left, const std::string & right)
{
    if (left.size() != right.size())
        return false;
    return std::memcmp(left.data(), right.data(), left.size()) == 0 ||
           std::equal(
               left.begin(), left.end(), right.begin(), [](char a, char b) { return Lower(a) == Lower(b); });
}

bool IsLowerCaseOf(const std::string & lowered, const std::string & name)
{
    return std::equal(lowered.begin(), lowered.end(), name.begin(), name.end(),
        [](char a, char b) { return static_cast<unsigned char>(a) == Lower(b); });
}

// What `strtol` skips or takes for a part of a number.
bool MayBeginNumber(char first)
{
    return (first >= '0' && first <= '9') || first == '+' || first == '-' ||
           std::isspace(static_cast<unsigned char>(first)) != 0;
}

// Neither a table row nor a row without indices: it is the same as any row of its number.
bool IsNoRow(const CElement & element)
{
    return dynamic_cast<const CIndexedElement *>(&element) == nullptr;
}

bool HasIndices(const CElement & element, const std::vector<std::uint32_t> & indices)
{
    const auto & row = static_cast<const CIndexedElement &>(element);
    if (row.NumIndices() != indices.size())
        return false;
    for (std::uint32_t at = 0; at < row.NumIndices(); ++at) {
        if (row.Index(at) != indices[at])
            return false;
    }
    return true;
}

std::uint32_t HashOfIndices(std::uint32_t hash, const std::vector<std::uint32_t> & indices)
{
    for (const std::uint32_t index : indices)
        hash = HashOfIndex(hash, index, ProcessSecret());
    return hash;
}

std::uint32_t HashOfIndices(std::uint32_t hash, const CIndexedElement & row)
{
    for (std::uint32_t at = 0; at < row.NumIndices(); ++at)
        hash = HashOfIndex(hash, row.Index(at), ProcessSecret());
    return hash;
}

std::uint32_t HashOfNumber(std::uint32_t number)
{
    return HashOfNumber(number, ProcessSecret());
}

}   // namespace

CElementIndex::CElementIndex(ElementList & elements)
    : mElements(elements)
{}

CElementIndex::NameKey CElementIndex::KeyOf(const std::string & name)
{
    CLocaleFolding & locale = CLocaleFolding::Instance();
    if (locale.IsNeeded())
        locale.Follow();
    const NameScan scan = ScanName(name, locale.Folding(), ProcessSecret());
    if (scan.mHasHighBytes && !locale.IsNeeded()) {
        locale.Need();
        return KeyOf(name);
    }
    return { name, scan.mHash, !name.empty() && !scan.mHasDot && !MayBeginNumber(name.front()) };
}

CElement * CElementIndex::LastWithId(std::uint32_t id) const
{
    const std::uint32_t hash = HashOfNumber(id);
    const CHashRings::Slot * const slot = mByNumber.Find(hash);
    if (slot != nullptr && mRows == nullptr && mByNumber.Last(slot->mFirst) == slot->mFirst)
        return slot->mElement;
    const std::uint32_t plain = slot != nullptr ? mByNumber.Last(slot->mFirst) : NONE;
    const std::uint32_t row = mRows != nullptr ? mRows->mByNumber.First(hash) : NONE;
    if (row == NONE)
        return plain != NONE ? &ElementAt(plain) : nullptr;
    const std::uint32_t lastRow = mRows->mByNumber.Last(row);
    return &ElementAt(plain != NONE ? std::max(plain, lastRow) : lastRow);
}

CElement * CElementIndex::FirstWithId(std::uint32_t id) const
{
    const std::uint32_t hash = HashOfNumber(id);
    const std::uint32_t row = mRows != nullptr ? mRows->mByNumber.First(hash) : NONE;
    const std::uint32_t first = std::min(mByNumber.First(hash), row);   // NONE is the highest number
    return first != NONE ? &ElementAt(first) : nullptr;
}

CElementIndex::ElementList CElementIndex::AllWithId(std::uint32_t id) const
{
    ElementList all;
    const std::uint32_t hash = HashOfNumber(id);
    const std::uint32_t firstPlain = mByNumber.First(hash);
    const std::uint32_t firstRow = mRows != nullptr ? mRows->mByNumber.First(hash) : NONE;
    std::uint32_t plain = firstPlain;
    std::uint32_t row = firstRow;
    while (plain != NONE || row != NONE) {
        const bool isPlain = plain < row;
        all.push_back(&ElementAt(isPlain ? plain : row));
        (isPlain ? plain : row) =
            isPlain ? mByNumber.Next(plain, firstPlain) : mRows->mByNumber.Next(row, firstRow);
    }
    return all;
}

CElement * CElementIndex::FirstPlainNamed(const NameKey & key)
{
    FollowFolding();
    const CHashRings::Slot * const slot = mByName.Find(key.mHash);
    if (slot == nullptr)
        return nullptr;
    if (EqualWithoutCase(slot->mElement->mName, key.mName))
        return slot->mElement;
    const std::uint32_t entry = FirstIn(mByName, key.mHash,
        [&key](const CElement & element) { return EqualWithoutCase(element.mName, key.mName); });
    return entry != NONE ? &ElementAt(entry) : nullptr;
}

CElementIndex::Position CElementIndex::FirstNumbered(std::uint32_t id, const Indices & indices) const
{
    const std::uint32_t hash = HashOfNumber(id);
    if (indices.empty())
        return PositionOf(mByNumber.First(hash));
    const std::uint32_t plain = FirstIn(mByNumber, hash, IsNoRow);
    if (mRows == nullptr)
        return PositionOf(plain);
    const std::uint32_t row = FirstIn(mRows->mByPlace, HashOfIndices(hash, indices),
        [&](const CElement & element) { return element.mPsId == id && HasIndices(element, indices); });
    return PositionOf(std::min(plain, row));
}

CElementIndex::Position CElementIndex::FirstNamed(const std::string & name, const Indices & indices)
{
    const std::uint32_t hash = KeyOf(name).mHash;
    FollowFolding();
    const std::uint32_t plain = FirstIn(mByName, hash, [&](const CElement & element) {
        return IsLowerCaseOf(name, element.mName) && (indices.empty() || IsNoRow(element));
    });
    if (mRows == nullptr || indices.empty())
        return PositionOf(plain);
    const std::uint32_t row =
        FirstIn(mRows->mByName, HashOfIndices(hash, indices), [&](const CElement & element) {
            return IsLowerCaseOf(name, element.mName) && HasIndices(element, indices);
        });
    return PositionOf(std::min(plain, row));
}

CElementIndex::Position CElementIndex::FirstSame(CElement & element) const
{
    const std::uint32_t hash = HashOfNumber(element.mPsId);
    const auto isSame = [&element](const CElement & stored) { return stored.Same(element); };
    const std::uint32_t plain = FirstIn(mByNumber, hash, isSame);
    const auto * row = mRows != nullptr ? dynamic_cast<const CIndexedElement *>(&element) : nullptr;
    if (row == nullptr)
        return PositionOf(plain);
    return PositionOf(std::min(plain, FirstIn(mRows->mByPlace, HashOfIndices(hash, *row), isSame)));
}

void CElementIndex::Append(Position position)
{
    FollowFolding();
    PrepareEntry();
    const Hashes hashes = HashesOf(**position);
    PrepareRings(hashes, mPositions.size() + 1);
    const auto entry = static_cast<std::uint32_t>(mPositions.size());
    mPositions.push_back(position);
    ++mCount;
    Enter(hashes, entry, *position);
}

void CElementIndex::Replace(Position position, CElement & successor)
{
    FollowFolding();
    const Hashes former = HashesOf(**position);
    const Hashes hashes = HashesOf(successor);
    const std::uint32_t entry = EntryAt(position, former);
    PrepareRings(hashes, mPositions.size());
    if (former.mKind == Kind::PLAIN && hashes.mKind == Kind::PLAIN && former.mNumber == hashes.mNumber &&
        former.mIsNamed == hashes.mIsNamed && former.mName == hashes.mName)
    {
        mByNumber.Replace(hashes.mNumber, entry, &successor);
        if (hashes.mIsNamed)
            mByName.Replace(hashes.mName, entry, &successor);
        return;
    }
    Leave(former, entry);
    Enter(hashes, entry, &successor);
}

void CElementIndex::Remove(Position position)
{
    FollowFolding();
    const Hashes hashes = HashesOf(**position);
    const std::uint32_t entry = EntryAt(position, hashes);
    Leave(hashes, entry);
    mPositions[entry] = Position();
    if (--mCount == 0)
        mPositions.clear();
}

// The usual classes come first, and need no cast: it would cost more than all else that is done for a new element.
CElementIndex::Kind CElementIndex::KindOf(const CElement & element)
{
    const std::type_info & type = typeid(element);
    if (type == typeid(CElementNumericArray) || type == typeid(CElementString) ||
        type == typeid(CElementEnum) || type == typeid(CElementStruct) || type == typeid(CElementRaw))
        return Kind::PLAIN;
    if (type != typeid(CIndexedElement))
        return Kind::FOREIGN;
    return static_cast<const CIndexedElement &>(element).NumIndices() == 0 ? Kind::PLAIN : Kind::ROW;
}

CElementIndex::Hashes CElementIndex::HashesOf(const CElement & element)
{
    Hashes hashes;
    hashes.mKind = KindOf(element);
    if (hashes.mKind == Kind::FOREIGN)
        return hashes;
    const NameScan name = ScanName(element.mName, CLocaleFolding::Instance().Folding(), ProcessSecret());
    hashes.mIsNamed = !element.mName.empty();
    hashes.mHasHighBytes = name.mHasHighBytes;
    hashes.mNumber = HashOfNumber(element.mPsId);
    hashes.mName = name.mHash;
    if (hashes.mKind == Kind::ROW) {
        const auto & row = static_cast<const CIndexedElement &>(element);
        hashes.mPlace = HashOfIndices(hashes.mNumber, row);
        hashes.mName = HashOfIndices(hashes.mName, row);
    }
    return hashes;
}

CElementIndex::Position CElementIndex::PositionOf(std::uint32_t entry) const
{
    return entry != NONE ? mPositions[entry] : mElements.end();
}

std::uint32_t CElementIndex::EntryAt(Position position, const Hashes & hashes) const
{
    if (hashes.mKind == Kind::FOREIGN)
        return static_cast<std::uint32_t>(
            std::find(mPositions.begin(), mPositions.end(), position) - mPositions.begin());
    const bool isRow = hashes.mKind == Kind::ROW;
    const CHashRings & rings = isRow ? mRows->mByPlace : mByNumber;
    const std::uint32_t first = rings.First(isRow ? hashes.mPlace : hashes.mNumber);
    std::uint32_t entry = first;
    while (mPositions[entry] != position)
        entry = rings.Next(entry, first);
    return entry;
}

template <typename MatchT>
std::uint32_t CElementIndex::FirstIn(const CHashRings & rings, std::uint32_t hash, MatchT matches) const
{
    const std::uint32_t first = rings.First(hash);
    std::uint32_t entry = first;
    while (entry != NONE && !matches(ElementAt(entry)))
        entry = rings.Next(entry, first);
    return entry;
}

// Numbers aren't used again, since they ascend along the list; when many are gone all entries get new ones.
void CElementIndex::PrepareEntry()
{
    if (mPositions.size() < mPositions.capacity())
        return;
    if (mCount <= mPositions.size() / 4 * 3 && mCount != mPositions.size())
        return Renumber();
    if (mPositions.size() >= NONE - 1)
        throw std::length_error("a subsystem holds too many elements");
    mPositions.reserve(RoomFor(mPositions.size() + 1, mPositions.capacity()));
}

void CElementIndex::PrepareRings(const Hashes & hashes, std::size_t entryCount)
{
    // The rings by name need room for one an entry: in another locale all of them may have names of their own.
    if (hashes.mKind == Kind::PLAIN) {
        mByNumber.Prepare(hashes.mNumber, entryCount);
        if (hashes.mIsNamed)
            mByName.Prepare(hashes.mName, entryCount, mNamedCount + 1);
    } else if (hashes.mKind == Kind::ROW) {
        if (mRows == nullptr)
            mRows = std::make_unique<Rows>();
        mRows->mByNumber.Prepare(hashes.mNumber, entryCount);
        mRows->mByPlace.Prepare(hashes.mPlace, entryCount);
        if (hashes.mIsNamed)
            mRows->mByName.Prepare(hashes.mName, entryCount, mRows->mNamedCount + 1);
    }
}

void CElementIndex::Enter(const Hashes & hashes, std::uint32_t entry, CElement * element) noexcept
{
    if (hashes.mHasHighBytes && !mHasHighBytes) {
        mHasHighBytes = true;
        mFoldingGeneration = CLocaleFolding::Instance().Generation();
        CLocaleFolding::Instance().Need();
    }
    if (hashes.mKind == Kind::FOREIGN) {
        ++mForeignCount;
    } else if (hashes.mKind == Kind::PLAIN) {
        mByNumber.Add(hashes.mNumber, entry, element);
        if (hashes.mIsNamed) {
            mByName.Add(hashes.mName, entry, element);
            ++mNamedCount;
        }
    } else {
        mRows->mByNumber.Add(hashes.mNumber, entry, element);
        mRows->mByPlace.Add(hashes.mPlace, entry, element);
        if (hashes.mIsNamed) {
            mRows->mByName.Add(hashes.mName, entry, element);
            ++mRows->mNamedCount;
        }
    }
}

void CElementIndex::Leave(const Hashes & hashes, std::uint32_t entry) noexcept
{
    const auto elementOf = [this](std::uint32_t next) { return &ElementAt(next); };
    if (hashes.mKind == Kind::FOREIGN) {
        --mForeignCount;
    } else if (hashes.mKind == Kind::PLAIN) {
        mByNumber.Remove(hashes.mNumber, entry, elementOf);
        if (hashes.mIsNamed) {
            mByName.Remove(hashes.mName, entry, elementOf);
            --mNamedCount;
        }
    } else {
        mRows->mByNumber.Remove(hashes.mNumber, entry, elementOf);
        mRows->mByPlace.Remove(hashes.mPlace, entry, elementOf);
        if (hashes.mIsNamed) {
            mRows->mByName.Remove(hashes.mName, entry, elementOf);
            --mRows->mNamedCount;
        }
    }
}

// Hashes of names with bytes above 127 are those of one locale.
void CElementIndex::FollowFolding()
{
    const std::uint32_t generation = CLocaleFolding::Instance().Generation();
    if (!mHasHighBytes || mFoldingGeneration == generation)
        return;
    // Names that had hashes of their own may share one now.
    mByName.MakeLinks(mPositions.size());
    if (mRows != nullptr)
        mRows->mByName.MakeLinks(mPositions.size());
    mFoldingGeneration = generation;
    Renumber();
}

// Needs no memory: there is room already for everything.
void CElementIndex::Renumber() noexcept
{
    mByNumber.Clear();
    mByName.Clear();
    mNamedCount = 0;
    if (mRows != nullptr) {
        mRows->mByNumber.Clear();
        mRows->mByPlace.Clear();
        mRows->mByName.Clear();
        mRows->mNamedCount = 0;
    }
    mForeignCount = 0;
    mPositions.clear();
    for (auto position = mElements.begin(); position != mElements.end(); ++position) {
        mPositions.push_back(position);
        Enter(HashesOf(**position), static_cast<std::uint32_t>(mPositions.size() - 1), *position);
    }
}

}   // namespace VrexZynConfigTools
