#include "elementindex.h"

#include "localefolding.h"
#include "namehash.h"

#include <configtools/elements.h>

#include <algorithm>
#include <cctype>
#include <cstring>
#include <stdexcept>
#include <typeinfo>
#include <utility>

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

}   // namespace

CElementIndex::CElementIndex(ElementList & elements)
    : mElements(elements)
    , mSecret(ProcessSecret())
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

CElement * CElementIndex::LastOfSeveral(std::uint32_t id) const
{
    const std::uint32_t hash = HashOfNumber(id, mSecret);
    const std::uint32_t plain = mPlain.mByNumber.First(hash);
    const std::uint32_t row = mRows != nullptr ? mRows->mByNumber.First(hash) : NONE;
    const std::uint32_t lastPlain = plain != NONE ? mPlain.mByNumber.Last(plain) : NONE;
    const std::uint32_t lastRow = row != NONE ? mRows->mByNumber.Last(row) : NONE;
    if (lastPlain == NONE || lastRow == NONE)
        return lastPlain != lastRow ? &ElementAt(std::min(lastPlain, lastRow)) : nullptr;
    return &ElementAt(std::max(lastPlain, lastRow));
}

CElement * CElementIndex::FirstWithId(std::uint32_t id) const
{
    const std::uint32_t hash = HashOfNumber(id, mSecret);
    const std::uint32_t row = mRows != nullptr ? mRows->mByNumber.First(hash) : NONE;
    const std::uint32_t first = std::min(mPlain.mByNumber.First(hash), row);   // NONE is the highest number
    return first != NONE ? &ElementAt(first) : nullptr;
}

CElementIndex::ElementList CElementIndex::AllWithId(std::uint32_t id) const
{
    ElementList all;
    const std::uint32_t hash = HashOfNumber(id, mSecret);
    const std::uint32_t firstPlain = mPlain.mByNumber.First(hash);
    const std::uint32_t firstRow = mRows != nullptr ? mRows->mByNumber.First(hash) : NONE;
    std::uint32_t plain = firstPlain;
    std::uint32_t row = firstRow;
    while (plain != NONE || row != NONE) {
        const bool isPlain = plain < row;
        all.push_back(&ElementAt(isPlain ? plain : row));
        (isPlain ? plain : row) =
            isPlain ? mPlain.mByNumber.Next(plain, firstPlain) : mRows->mByNumber.Next(row, firstRow);
    }
    return all;
}

CElement * CElementIndex::FirstPlainNamed(const NameKey & key)
{
    FollowFolding();
    const CHashRings::Slot * const slot = mPlain.mByName.Find(key.mHash);
    if (slot == nullptr)
        return nullptr;
    if (EqualWithoutCase(slot->mElement->mName, key.mName))
        return slot->mElement;
    const std::uint32_t entry = FirstIn(mPlain.mByName, key.mHash,
        [&key](const CElement & element) { return EqualWithoutCase(element.mName, key.mName); });
    return entry != NONE ? &ElementAt(entry) : nullptr;
}

CElementIndex::Position CElementIndex::FirstNumbered(std::uint32_t id, const Indices & indices) const
{
    const std::uint32_t hash = HashOfNumber(id, mSecret);
    if (indices.empty())
        return PositionOf(mPlain.mByNumber.First(hash));
    const std::uint32_t plain = FirstIn(mPlain.mByNumber, hash, IsNoRow);
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
    const std::uint32_t plain = FirstIn(mPlain.mByName, hash, [&](const CElement & element) {
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
    const std::uint32_t hash = HashOfNumber(element.mPsId, mSecret);
    const auto isSame = [&element](const CElement & stored) { return stored.Same(element); };
    const std::uint32_t plain = FirstIn(mPlain.mByNumber, hash, isSame);
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
    if (former.mKind != hashes.mKind || former.mNumber != hashes.mNumber || former.mPlace != hashes.mPlace) {
        Leave(former, entry);
        Enter(hashes, entry, &successor);
        return;
    }
    // The usual case, in which the rings of the number, long as they may be, stay as they are.
    if (hashes.mKind == Kind::ROW)
        mRows->mByPlace.Replace(hashes.mPlace, entry, &successor);
    if (hashes.mKind != Kind::FOREIGN)
        WaysOf(hashes.mKind).mByNumber.Replace(hashes.mNumber, entry, &successor);
    if (former.mIsNamed && hashes.mIsNamed && former.mName == hashes.mName) {
        WaysOf(hashes.mKind).mByName.Replace(hashes.mName, entry, &successor);
    } else {
        LeaveName(former, entry);
        EnterName(hashes, entry, &successor);
    }
}

void CElementIndex::Remove(Position position)
{
    FollowFolding();
    const Hashes hashes = HashesOf(**position);
    const std::uint32_t entry = EntryAt(position, hashes);
    Leave(hashes, entry);
    mPositions[entry] = mElements.end();
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
    hashes.mNumber = HashOfNumber(element.mPsId, ProcessSecret());
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
    const CHashRings & rings = isRow ? mRows->mByPlace : mPlain.mByNumber;
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
    if (hashes.mKind == Kind::FOREIGN)
        return;
    if (hashes.mKind == Kind::ROW) {
        if (mRows == nullptr)
            mRows = std::make_unique<Rows>();
        mRows->mByPlace.Prepare(hashes.mPlace, entryCount);
    }
    Ways & ways = WaysOf(hashes.mKind);
    ways.mByNumber.Prepare(hashes.mNumber, entryCount);
    if (hashes.mIsNamed)
        ways.mByName.Prepare(hashes.mName, entryCount);
}

void CElementIndex::Enter(const Hashes & hashes, std::uint32_t entry, CElement * element) noexcept
{
    if (hashes.mKind == Kind::FOREIGN) {
        ++mForeignCount;
        return;
    }
    if (hashes.mKind == Kind::ROW)
        mRows->mByPlace.Add(hashes.mPlace, entry, element);
    WaysOf(hashes.mKind).mByNumber.Add(hashes.mNumber, entry, element);
    EnterName(hashes, entry, element);
}

void CElementIndex::EnterName(const Hashes & hashes, std::uint32_t entry, CElement * element) noexcept
{
    if (!hashes.mIsNamed)
        return;
    if (hashes.mHasHighBytes && !mHasHighBytes) {
        mHasHighBytes = true;
        mFoldingGeneration = CLocaleFolding::Instance().Generation();
        CLocaleFolding::Instance().Need();
    }
    WaysOf(hashes.mKind).mByName.Add(hashes.mName, entry, element);
}

void CElementIndex::Leave(const Hashes & hashes, std::uint32_t entry) noexcept
{
    if (hashes.mKind == Kind::FOREIGN) {
        --mForeignCount;
        return;
    }
    const auto elementOf = [this](std::uint32_t next) { return &ElementAt(next); };
    if (hashes.mKind == Kind::ROW)
        mRows->mByPlace.Remove(hashes.mPlace, entry, elementOf);
    WaysOf(hashes.mKind).mByNumber.Remove(hashes.mNumber, entry, elementOf);
    LeaveName(hashes, entry);
}

void CElementIndex::LeaveName(const Hashes & hashes, std::uint32_t entry) noexcept
{
    if (!hashes.mIsNamed)
        return;
    WaysOf(hashes.mKind).mByName.Remove(hashes.mName, entry, [this](std::uint32_t next) {
        return &ElementAt(next);
    });
}

// Hashes of names with bytes above 127 are those of one locale.
void CElementIndex::RenewNames()
{
    const std::uint32_t generation = CLocaleFolding::Instance().Generation();
    if (mFoldingGeneration == generation)
        return;
    CHashRings plain;
    CHashRings rows;
    for (std::uint32_t entry = 0; entry < mPositions.size(); ++entry) {
        if (mPositions[entry] == mElements.end())
            continue;
        const Hashes hashes = HashesOf(ElementAt(entry));
        CHashRings & rings = hashes.mKind == Kind::ROW ? rows : plain;
        if (!hashes.mIsNamed)
            continue;
        rings.Prepare(hashes.mName, mPositions.size());
        rings.Add(hashes.mName, entry, &ElementAt(entry));
    }
    mPlain.mByName = std::move(plain);
    if (mRows != nullptr)
        mRows->mByName = std::move(rows);
    mFoldingGeneration = generation;
}

// Needs no memory: there is room already for everything.
void CElementIndex::Renumber() noexcept
{
    const auto clear = [](Ways & ways) {
        ways.mByNumber.Clear();
        ways.mByName.Clear();
    };
    clear(mPlain);
    if (mRows != nullptr) {
        clear(*mRows);
        mRows->mByPlace.Clear();
    }
    mForeignCount = 0;
    mPositions.clear();
    for (auto position = mElements.begin(); position != mElements.end(); ++position) {
        mPositions.push_back(position);
        Enter(HashesOf(**position), static_cast<std::uint32_t>(mPositions.size() - 1), *position);
    }
}

}   // namespace VrexZynConfigTools
