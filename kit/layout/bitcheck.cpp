#include "bitcheck.h"

#include "scalars.h"
#include "valueset.h"

#include <configtools/keywords.h>
#include <configtools/metadata.h>

#include <algorithm>
#include <array>
#include <optional>
#include <unordered_map>

namespace kit::layout {

using namespace VrexZynConfigTools;

namespace {

constexpr std::uint32_t WORD_BITS = 16;

/// What is known of one number in the words.
struct Value
{
    CValueSet mSet;
    NumberForm mForm;        // in which it comes back
    std::uint32_t mPacked;   // how many of its bits are packed
};

/// One bit of a number, on its way into the words.
struct Writer
{
    std::uint32_t mCell;
    std::uint32_t mBit;
};

/// For each bit of the words, who may leave a 1 there. A struct may be far larger than its fields.
class CWriters
{
public:
    void Clear(std::uint64_t place)
    {
        First(place).mCell = NOBODY;
        mFurther.erase(place);
    }

    void Add(std::uint64_t place, const Writer & writer)
    {
        if (First(place).mCell == NOBODY)
            First(place) = writer;
        else
            mFurther[place].push_back(writer);
    }

    template <typename VisitT>
    void Visit(std::uint64_t place, VisitT visit) const
    {
        const auto word = mWords.find(place / WORD_BITS);
        if (word == mWords.end() || word->second[place % WORD_BITS].mCell == NOBODY)
            return;
        visit(word->second[place % WORD_BITS]);
        if (const auto found = mFurther.find(place); found != mFurther.end())
            std::for_each(found->second.begin(), found->second.end(), visit);
    }

private:
    static constexpr std::uint32_t NOBODY = ~std::uint32_t{ 0 };
    using Word = std::array<Writer, WORD_BITS>;

    Writer & First(std::uint64_t place)
    {
        const auto [word, isNew] = mWords.try_emplace(place / WORD_BITS);
        if (isNew)
            word->second.fill(Writer{ NOBODY, 0 });
        return word->second[place % WORD_BITS];
    }

    std::unordered_map<std::uint64_t, Word> mWords;
    std::unordered_map<std::uint64_t, std::vector<Writer>> mFurther;   // where there are several
};

std::uint64_t PlaceOf(const BitRun & run)
{
    return std::uint64_t{ run.mWord } * WORD_BITS + run.mBit;
}

/// The place of a bit of a value; nothing if no run has it.
std::optional<std::uint64_t> Find(const BitRuns & runs, std::uint32_t bit, std::uint64_t end)
{
    for (const BitRun & run : runs)
        if (bit >= run.mValueBit && bit < run.mValueBit + run.mCount) {
            const std::uint64_t place = PlaceOf(run) + bit - run.mValueBit;
            return place < end ? std::optional(place) : std::nullopt;
        }
    return std::nullopt;
}

class CBitCheck
{
public:
    CBitCheck(const CStructLayout & layout, bool isOctets, const std::vector<Cell> & cells,
        std::vector<Field> & fields)
        : mCells(cells)
        , mFields(fields)
        , mEnd(isOctets ? 8 * layout.Octets() : WORD_BITS * layout.Words())
    {
        mValues.reserve(cells.size());
        for (const Cell & cell : cells)
            mValues.push_back(ValueOf(cell));
    }

    void Run()
    {
        for (Field & field : mFields)
            field.mLoss = LossOfShape(*field.mEntry);
        for (std::uint32_t cell = 0; cell < mCells.size(); ++cell)
            Pack(cell);
        for (std::uint32_t cell = 0; cell < mCells.size(); ++cell)
            if (Field & field = mFields[mCells[cell].mField]; field.mLoss == Loss::NONE)
                field.mLoss = LossOf(cell);
    }

private:
    Value ValueOf(const Cell & cell) const;
    Loss LossOfShape(const StructEntry & entry) const;
    void Pack(std::uint32_t cell);
    Loss LossOf(std::uint32_t cell) const;
    bool ComesBack(std::uint32_t cell, std::uint32_t bit, bool & isAlone) const;
    std::optional<std::uint64_t> UnpackedFrom(const StructEntry & entry, std::uint32_t bit) const;
    Loss LossOfBit(std::uint32_t cell, std::uint32_t bit, bool isAlone) const;

    const std::vector<Cell> & mCells;
    std::vector<Field> & mFields;
    std::uint64_t mEnd;   // in bits
    CWriters mWriters;
    std::vector<Value> mValues;   // by cell
};

// Of a text in words as many bits as the word has of it.
Value CBitCheck::ValueOf(const Cell & cell) const
{
    const StructEntry & field = *mFields[cell.mField].mEntry;
    const IMetadata & record = *field.mRecord;
    if (field.mKind == StructEntryKind::WORDS) {
        const std::uint64_t before = std::uint64_t{ WORD_BITS } * cell.mItem;
        const std::uint64_t text = 8 * std::min<std::uint64_t>(LongestText(record), field.mWidth / 8);
        const std::uint64_t whole = IsTextual(record) ? text : field.mWidth;
        const auto bits = static_cast<unsigned>(std::clamp<std::int64_t>(
            static_cast<std::int64_t>(whole) - static_cast<std::int64_t>(before), 0, WORD_BITS));
        return { CValueSet::OfBits(bits), { WORD_BITS, false }, WORD_BITS };
    }
    const NumberForm form = field.mKind == StructEntryKind::ARRAY ? FormOfItems(record)
                            : IsTextual(record)
                                ? NumberForm{ static_cast<unsigned>(8 * BytesHeld(field)), false }
                                : FormOf(cell.mEntry->mType);
    const std::uint32_t packed =
        field.mKind == StructEntryKind::ARRAY ? field.mWidth / field.mItems : cell.mEntry->mWidth;
    return { ValuesOf(*cell.mEntry), form, std::min<std::uint32_t>(packed, 64) };
}

// What needs no look at single bits.
Loss CBitCheck::LossOfShape(const StructEntry & entry) const
{
    const IMetadata & record = *entry.mRecord;
    const bool isText = IsTextual(record);
    if (entry.mKind == StructEntryKind::ARRAY)
        return entry.mItems == 0 ? Loss::NO_ITEMS : Loss::NONE;
    if (entry.mKind == StructEntryKind::WORDS && record.MetadataType() == METADATA_ENUM)
        return Loss::NO_NUMBER;
    const std::uint64_t held = BytesHeld(entry);
    if (isText && LongestText(record) > held)
        return Loss::TOO_WIDE;
    const bool isOctets = record.InternalType() == keywords::TYPE_OCTET_STRING;
    return isOctets && static_cast<std::uint64_t>(record.Min()) != held ? Loss::LENGTH : Loss::NONE;
}

void CBitCheck::Pack(std::uint32_t cell)
{
    const Value & value = mValues[cell];
    for (const BitRun & run : mCells[cell].mEntry->mPacked)
        for (std::uint32_t place = 0; place < run.mCount; ++place) {
            const std::uint64_t where = PlaceOf(run) + place;
            const std::uint32_t bit = run.mValueBit + place;
            if (mCells[cell].mEntry->mReplaces)
                mWriters.Clear(where);
            if (bit < value.mPacked && (value.mSet.Ones() >> bit & 1) != 0)
                mWriters.Add(where, { cell, bit });
        }
}

Loss CBitCheck::LossOf(std::uint32_t cell) const
{
    const Value & value = mValues[cell];
    for (std::uint32_t bit = 0; bit < value.mForm.mBits && !value.mSet.IsEmpty(); ++bit)
        if (bool isAlone = true; !ComesBack(cell, bit, isAlone))
            return LossOfBit(cell, bit, isAlone);
    return Loss::NONE;
}

// Where a bit is unpacked from. Those above the field are 0, or copies of its sign.
std::optional<std::uint64_t> CBitCheck::UnpackedFrom(const StructEntry & entry, std::uint32_t bit) const
{
    const bool isSign = entry.mHasSign && bit >= entry.mWidth;
    return Find(entry.mUnpacked, isSign ? entry.mWidth - 1 : bit, mEnd);
}

// Whether one bit is unpacked as it was for all values, those of others included. `isAlone` is false if only others are in
// the way.
bool CBitCheck::ComesBack(std::uint32_t cell, std::uint32_t bit, bool & isAlone) const
{
    const CValueSet & set = mValues[cell].mSet;
    std::optional<std::uint32_t> own;
    bool hasOthers = false;
    if (const auto place = UnpackedFrom(*mCells[cell].mEntry, bit))
        mWriters.Visit(*place, [&](const Writer & writer) {
            if (writer.mCell == cell)
                own = writer.mBit;
            else
                hasOthers = true;
        });
    const bool survives = own ? !set.CanDiffer(*own, bit) : (set.Ones() >> bit & 1) == 0;
    isAlone = !survives;
    return survives && !(hasOthers && (set.Zeros() >> bit & 1) != 0);
}

// In the order in which a person would look for it.
Loss CBitCheck::LossOfBit(std::uint32_t cell, std::uint32_t bit, bool isAlone) const
{
    const StructEntry & entry = *mCells[cell].mEntry;
    const StructEntry & field = *mFields[mCells[cell].mField].mEntry;
    const Value & value = mValues[cell];
    const auto packed = bit < value.mPacked ? Find(entry.mPacked, bit, mEnd) : std::nullopt;
    if (packed && packed == UnpackedFrom(entry, bit))   // right by itself
        return isAlone ? Loss::OVERWRITTEN : Loss::SHARED_BITS;
    if (field.mKind == StructEntryKind::ARRAY && field.mWidth != field.mItems * field.mStride)
        return Loss::ITEM_WIDTH;
    if (field.mKind == StructEntryKind::ARRAY && value.mForm.mBits == 64 && bit >= 32)
        return Loss::HALF_ITEMS;
    if (field.mKind == StructEntryKind::WORDS)
        return mCells[cell].mItem >= field.mItems ? Loss::LAST_WORD : Loss::OUTSIDE;
    if (field.mKind != StructEntryKind::ARRAY && field.mWidth == 64)
        return Loss::WHOLE_64_BITS;
    if (bit >= value.mPacked) {
        if (entry.mHasSign)
            return value.mSet.Find(~std::uint64_t{ 0 } << value.mPacked, 0) ? Loss::WRONG_SIGN : Loss::TOO_WIDE;
        const std::uint64_t sign = std::uint64_t{ 1 } << 63;
        return value.mForm.mIsSigned && value.mSet.Find(sign, sign) ? Loss::NO_SIGN : Loss::TOO_WIDE;
    }
    if (!packed && value.mPacked < WORD_BITS)
        return Loss::CROSSES_WORD;
    return packed ? Loss::UNALIGNED : Loss::OUTSIDE;
}

}   // namespace

void CheckBits(
    const CStructLayout & layout, bool isOctets, const std::vector<Cell> & cells, std::vector<Field> & fields)
{
    CBitCheck(layout, isOctets, cells, fields).Run();
}

}   // namespace kit::layout
