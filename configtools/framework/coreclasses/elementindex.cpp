#include "elementindex.h"

#include <configtools/elements.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cstring>
#include <stdexcept>
#include <typeinfo>

namespace VrexZynConfigTools {

namespace {

constexpr std::size_t FIRST_SLOT_COUNT = 16;
constexpr unsigned FIRST_SHIFT = 28;   // 32 less the binary logarithm of 16
static_assert(std::uint64_t{ FIRST_SLOT_COUNT } << FIRST_SHIFT == std::uint64_t{ 1 } << 32U);

struct ElementKind
{
    bool mIsPlain;
    bool mIsForeign;
};

// The usual classes come first, and need no cast: it would cost more than all else that is done for a new element.
ElementKind KindOf(const CElement & element)
{
    const std::type_info & type = typeid(element);
    if (type == typeid(CElementNumericArray) || type == typeid(CElementString) ||
        type == typeid(CElementEnum) || type == typeid(CElementStruct) || type == typeid(CElementRaw))
        return { true, false };
    const auto * row = dynamic_cast<const CIndexedElement *>(&element);
    return { row == nullptr || row->NumIndices() == 0, type != typeid(CIndexedElement) };
}

using Word = std::uint64_t;   // eight characters

Word WordAt(const char * characters)
{
    Word word = 0;
    std::memcpy(&word, characters, sizeof(word));
    return word;
}

// Fewer than eight characters, with zeros behind them.
Word ShortWord(const char * characters, std::size_t count)
{
    Word word = 0;
    for (std::size_t at = 0; at < count; ++at)
        word |= static_cast<Word>(static_cast<unsigned char>(characters[at])) << (8 * at);
    return word;
}

bool EqualBytes(const char * left, const char * right, std::size_t count)
{
    if (count < sizeof(Word))
        return ShortWord(left, count) == ShortWord(right, count);
    for (std::size_t at = 0; at + sizeof(Word) < count; at += sizeof(Word)) {
        if (WordAt(left + at) != WordAt(right + at))
            return false;
    }
    return WordAt(left + count - sizeof(Word)) == WordAt(right + count - sizeof(Word));
}

bool EqualWithoutCase(const std::string & left, const std::string & right)
{
    if (left.size() != right.size())
        return false;
    if (EqualBytes(left.data(), right.data(), left.size()))
        return true;
    return std::equal(left.begin(), left.end(), right.begin(), [](char a, char b) {
        return std::tolower(static_cast<unsigned char>(a)) == std::tolower(static_cast<unsigned char>(b));
    });
}

constexpr Word EACH_BYTE = 0x0101010101010101U;
constexpr Word TOP_BITS = 0x80U * EACH_BYTE;

// The top bit of each byte that is `character`.
constexpr Word Matches(Word word, char character)
{
    const Word difference = word ^ (static_cast<Word>(character) * EACH_BYTE);
    return ~(((difference & ~TOP_BITS) + ~TOP_BITS) | difference | ~TOP_BITS);
}

// Maps characters so that those which `tolower` may join in any locale become the same. The bit 0x20 joins the cases of
// the letters (and some other characters, which costs a collision and nothing more). What a locale does with the bytes
// above 127 isn't known here, and some join one of them with an "i", so all these are one character.
constexpr Word Fold(Word word)
{
    word |= 0x20U * EACH_BYTE;
    const Word joined = (((word & TOP_BITS) | Matches(word, 'i')) >> 7U) * 0xFFU;
    return (word & ~joined) | (('i' * EACH_BYTE) & joined);
}
static_assert(Fold(0x4142434A4B4C4D5AU) == Fold(0x6162636A6B6C6D7AU));
static_assert(Fold(0x4900000000000000U) == Fold(0xDD00000000000000U));

/// Folds and hashes a text word by word, and notices a ".".
class CNameScan
{
public:
    explicit CNameScan(std::size_t length)
        : mHash(length)
    {}
    void Add(Word word)
    {
        mDots |= Matches(word, '.');
        mHash = (mHash ^ Fold(word)) * 0x9E3779B97F4A7C15U;
        mHash ^= mHash >> 32U;
    }
    std::uint32_t Hash() const { return static_cast<std::uint32_t>(mHash); }
    bool HasDot() const { return mDots != 0; }

private:
    Word mHash;
    Word mDots = 0;
};

bool BeginsAsName(const std::string & text)
{
    const char first = text.empty() ? '0' : text.front();
    const char letter = static_cast<char>(first | 0x20);
    return (letter >= 'a' && letter <= 'z') || first == '_';
}

}   // namespace

const CElementIndex::Way CElementIndex::BY_ID = { &CElementIndex::mById, &Entry::mId, &Entry::mNextById,
    false };
const CElementIndex::Way CElementIndex::BY_NAME = { &CElementIndex::mByName, &Description::mNameHash,
    &Entry::mNextByName, true };

CElementIndex::CChainTable::CChainTable()
    : mSlots(std::make_unique<Slot[]>(FIRST_SLOT_COUNT))
    , mMask(FIRST_SLOT_COUNT - 1)
    , mShift(FIRST_SHIFT)
{}

CElementIndex::CChainTable::Slot & CElementIndex::CChainTable::FindOrAdd(std::uint32_t key) noexcept
{
    std::size_t at = Home(key);
    while (mSlots[at].mTail != NONE && mSlots[at].mKey != key)
        at = Next(at);
    if (mSlots[at].mTail == NONE) {
        mSlots[at].mKey = key;
        ++mCount;
    }
    return mSlots[at];
}

void CElementIndex::CChainTable::Erase(std::uint32_t key) noexcept
{
    std::size_t hole = Home(key);
    while (mSlots[hole].mKey != key || mSlots[hole].mTail == NONE)
        hole = Next(hole);
    // What stands behind the hole moves up, unless that would put it ahead of its home.
    for (std::size_t at = Next(hole); mSlots[at].mTail != NONE; at = Next(at)) {
        if (((at - Home(mSlots[at].mKey)) & mMask) >= ((at - hole) & mMask)) {
            mSlots[hole] = mSlots[at];
            hole = at;
        }
    }
    mSlots[hole] = Slot{};
    --mCount;
}

void CElementIndex::CChainTable::Reserve()
{
    const std::size_t size = mMask + 1;
    if ((mCount + 1) * 4 <= size * 3)
        return;
    auto former = std::make_unique<Slot[]>(size * 2);
    former.swap(mSlots);
    mMask = size * 2 - 1;
    --mShift;
    mCount = 0;
    for (const Slot * slot = former.get(); slot != former.get() + size; ++slot) {
        if (slot->mTail != NONE)
            FindOrAdd(slot->mKey) = *slot;
    }
}

CElementIndex::CElementIndex() = default;

CElementIndex::NameKey CElementIndex::KeyOf(const std::string & name)
{
    const char * const characters = name.data();
    const std::size_t length = name.size();
    CNameScan scan(length);
    if (length < sizeof(Word)) {
        scan.Add(ShortWord(characters, length));
    } else {
        for (std::size_t at = 0; at + sizeof(Word) < length; at += sizeof(Word))
            scan.Add(WordAt(characters + at));
        scan.Add(WordAt(characters + length - sizeof(Word)));
    }
    return { name, scan.Hash(), !scan.HasDot() && BeginsAsName(name) };
}

CElement * CElementIndex::FirstPlainNamed(const NameKey & key) const
{
    const CChainTable::Slot * slot = mByName.Find(key.mHash);
    if (slot == nullptr || slot->mAnswer == nullptr)
        return nullptr;
    if (EqualWithoutCase(slot->mAnswer->mName, key.mName))
        return slot->mAnswer;
    for (const Entry & candidate : WithHash(key.mHash)) {
        if (candidate.mIsPlain && EqualWithoutCase(candidate.mElement->mName, key.mName))
            return candidate.mElement;
    }
    return nullptr;
}

CElementIndex::CCandidates CElementIndex::WithId(std::uint32_t id) const
{
    return Chain(BY_ID, id);
}

CElementIndex::CCandidates CElementIndex::WithHash(std::uint32_t hash) const
{
    return Chain(BY_NAME, hash);
}

CElementIndex::CCandidates CElementIndex::Chain(const Way & way, std::uint32_t key) const
{
    const CChainTable::Slot * slot = (this->*way.mTable).Find(key);
    return { mEntries, slot != nullptr ? slot->mTail : NONE, way.mNext };
}

void CElementIndex::Reserve()
{
    mById.Reserve();
    mByName.Reserve();
    if (mFirstFree != NONE)
        return;
    if (mEntries.size() >= NONE)
        throw std::length_error("a subsystem holds too many elements");
    mEntries.push_back(Entry{ { nullptr, 0, 0, false, false }, {}, 0, NONE, NONE });
    mFirstFree = static_cast<std::uint32_t>(mEntries.size() - 1);
}

void CElementIndex::Append(Position position) noexcept
{
    const std::uint32_t at = mFirstFree;
    Entry & entry = mEntries[at];
    mFirstFree = entry.mNextById;
    static_cast<Description &>(entry) = Describe(**position);
    entry.mPosition = position;
    entry.mOrder = mNextOrder++;
    mForeignCount += entry.mIsForeign ? 1U : 0U;
    Link(BY_ID, at);
    Link(BY_NAME, at);
}

void CElementIndex::Replace(Position position, CElement * successor) noexcept
{
    const std::uint32_t at = EntryAt(position);
    Entry & entry = mEntries[at];
    const CElement * former = entry.mElement;
    const Description description = Describe(*successor);
    const auto staysIn = [&](const Way & way) {
        return description.mIsPlain == entry.mIsPlain && description.*way.mKey == entry.*way.mKey;
    };
    const bool staysById = staysIn(BY_ID);
    const bool staysByName = staysIn(BY_NAME);
    if (!staysById)
        Unlink(BY_ID, at);
    if (!staysByName)
        Unlink(BY_NAME, at);
    mForeignCount += description.mIsForeign ? 1U : 0U;
    mForeignCount -= entry.mIsForeign ? 1U : 0U;
    static_cast<Description &>(entry) = description;
    const auto stepIn = [&](const Way & way, bool stays) {
        if (!stays)
            Link(way, at);
        else if (CChainTable::Slot & slot = (this->*way.mTable).FindOrAdd(entry.*way.mKey);
                 slot.mAnswer == former)
            slot.mAnswer = successor;
    };
    stepIn(BY_ID, staysById);
    stepIn(BY_NAME, staysByName);
}

void CElementIndex::Remove(Position position) noexcept
{
    const std::uint32_t at = EntryAt(position);
    Unlink(BY_ID, at);
    Unlink(BY_NAME, at);
    Entry & entry = mEntries[at];
    mForeignCount -= entry.mIsForeign ? 1U : 0U;
    entry.mElement = nullptr;
    entry.mNextById = mFirstFree;
    mFirstFree = at;
}

CElementIndex::Description CElementIndex::Describe(CElement & element) noexcept
{
    const ElementKind kind = KindOf(element);
    return { &element, element.mPsId, KeyOf(element.mName).mHash, kind.mIsPlain, kind.mIsForeign };
}

std::uint32_t CElementIndex::EntryAt(Position position) const noexcept
{
    for (const Entry & candidate : WithId((*position)->mPsId)) {
        if (candidate.mPosition == position)
            return static_cast<std::uint32_t>(&candidate - mEntries.data());
    }
    // Only an element of a foreign class can have changed its number since it came.
    const auto found = std::find_if(mEntries.begin(), mEntries.end(),
        [position](const Entry & entry) { return entry.mElement != nullptr && entry.mPosition == position; });
    return static_cast<std::uint32_t>(found - mEntries.begin());
}

void CElementIndex::Link(const Way & way, std::uint32_t at) noexcept
{
    Entry & entry = mEntries[at];
    CChainTable::Slot & slot = (this->*way.mTable).FindOrAdd(entry.*way.mKey);
    if (slot.mTail == NONE) {
        entry.*way.mNext = at;
        slot.mTail = at;
        slot.mAnswer = Answer(way, at);
        return;
    }
    const bool isLast = mEntries[slot.mTail].mOrder < entry.mOrder;
    InsertInOrder(way, slot.mTail, at);
    if (!isLast) {
        slot.mAnswer = Answer(way, slot.mTail);
        return;
    }
    slot.mTail = at;
    if (!way.mAnswersFirstPlain || (slot.mAnswer == nullptr && entry.mIsPlain))
        slot.mAnswer = entry.mElement;
}

void CElementIndex::Unlink(const Way & way, std::uint32_t at) noexcept
{
    const Entry & entry = mEntries[at];
    CChainTable & table = this->*way.mTable;
    if (entry.*way.mNext == at) {
        table.Erase(entry.*way.mKey);
        return;
    }
    CChainTable::Slot & slot = table.FindOrAdd(entry.*way.mKey);
    std::uint32_t before = slot.mTail;
    while (mEntries[before].*way.mNext != at)
        before = mEntries[before].*way.mNext;
    mEntries[before].*way.mNext = entry.*way.mNext;
    if (slot.mTail == at)
        slot.mTail = before;
    if (slot.mAnswer == entry.mElement)
        slot.mAnswer = Answer(way, slot.mTail);
}

void CElementIndex::InsertInOrder(const Way & way, std::uint32_t tail, std::uint32_t at) noexcept
{
    std::uint32_t before = tail;
    if (mEntries[tail].mOrder > mEntries[at].mOrder) {
        while (mEntries[mEntries[before].*way.mNext].mOrder < mEntries[at].mOrder)
            before = mEntries[before].*way.mNext;
    }
    mEntries[at].*way.mNext = mEntries[before].*way.mNext;
    mEntries[before].*way.mNext = at;
}

CElement * CElementIndex::Answer(const Way & way, std::uint32_t tail) const noexcept
{
    if (!way.mAnswersFirstPlain)
        return mEntries[tail].mElement;
    for (const Entry & candidate : CCandidates(mEntries, tail, way.mNext)) {
        if (candidate.mIsPlain)
            return candidate.mElement;
    }
    return nullptr;
}

}   // namespace VrexZynConfigTools
