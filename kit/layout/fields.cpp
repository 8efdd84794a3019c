#include "fields.h"

#include "bitcheck.h"
#include "scalars.h"

#include <configtools/metadata.h>

#include <algorithm>
#include <array>

namespace kit::layout {

using namespace VrexZynConfigTools;

namespace {

constexpr std::uint32_t WORD_BITS = 16;
constexpr std::size_t MOST_PIECES = 4096;

constexpr std::array<const char *, 17> REASONS = { "", "the type of its items has no width",
    "it is unpacked as another kind of value", "a field of exactly 64 bits is unpacked as 0",
    "an item of 64 bits is unpacked as its lowest 32", "a last, partial word is not unpacked",
    "its width is no multiple of that of its items", "it does not reach into the next word",
    "it is packed from the begin of a word, and unpacked from within one", "it lies outside of the struct",
    "it is unpacked without its sign", "its topmost bit is unpacked as a sign", "its values have more bits",
    "the number of octets is not packed", "a field of 16 bits in the same word replaces it",
    "other fields are packed into its bits", "the struct is not packed as a whole" };
static_assert(REASONS.size() == static_cast<std::size_t>(Loss::UNKNOWN) + 1);

}   // namespace

std::string WhyText(Loss loss)
{
    return REASONS[static_cast<std::size_t>(loss)];
}

bool IsRowOfWords(const Field & field)
{
    const IMetadata & record = *field.mEntry->mRecord;
    return field.mEntry->mKind == StructEntryKind::WORDS && record.MetadataType() == METADATA_SIMPLE &&
           !IsTextual(record);
}

CFields::CFields(CMetadataDetailStruct & detail, std::size_t most)
    : mLayout(detail, most)
{
    std::size_t next = 0;
    AddStruct(mLayout.Entries(), { "", "" }, next);
    if (!mLayout.IsCutOff() && mLayout.Error().empty())
        CheckBits(mLayout, detail.IsOctetsInBin(), mCells, mFields);
    else
        for (Field & field : mFields)
            field.mLoss = Loss::UNKNOWN;
}

std::string CFields::LabelOf(const Cell & cell) const
{
    const bool isItem = mFields[cell.mField].mEntry->mKind == StructEntryKind::ARRAY;
    return mPlaces[cell.mPlace].mLabel + (isItem ? '[' + std::to_string(cell.mItem) + ']' : "");
}

// `next` is the place of the next field in the list: behind it, or of a struct of an array that is there again, within.
void CFields::AddStruct(const std::vector<StructEntry> & parts, const Names & outer, std::size_t & next)
{
    for (const StructEntry & entry : parts) {
        if (entry.mKind == StructEntryKind::ABSENT)
            continue;
        const std::string name = entry.mRecord->Name();
        const Names names = { outer.mPath + name, outer.mLabel + name };
        if (entry.mKind == StructEntryKind::STRUCT)
            AddStruct(entry.mParts, { names.mPath + '.', names.mLabel + '.' }, next);
        else if (entry.mKind == StructEntryKind::STRUCTS)
            AddStructs(entry, names, next);
        else
            AddField(entry, names, next++);
    }
}

void CFields::AddStructs(const StructEntry & array, const Names & names, std::size_t & next)
{
    const std::size_t first = next;
    std::size_t behind = first;
    for (std::size_t place = 0; place < array.mParts.size(); ++place) {
        next = first;
        AddStruct(array.mParts[place].mParts,
            { names.mPath + "[].", names.mLabel + '[' + std::to_string(place) + "]." }, next);
        behind = std::max(behind, next);   // the last struct may be cut off
    }
    next = behind;
}

void CFields::AddField(const StructEntry & entry, const Names & names, std::size_t place)
{
    if (place == mFields.size())
        mFields.push_back({ names.mPath, &entry });
    const auto field = static_cast<std::uint32_t>(place);
    const auto label = static_cast<std::uint32_t>(mPlaces.size());
    mPlaces.push_back({ field, names.mLabel });
    if (entry.mKind == StructEntryKind::NUMBER || entry.mKind == StructEntryKind::ENUMERATOR)
        mCells.push_back({ &entry, field, label, 0 });
    // Of a text in words the last, partial word stays empty.
    const bool isText = entry.mKind == StructEntryKind::WORDS && IsTextual(*entry.mRecord);
    const auto parts = static_cast<std::uint32_t>(isText ? entry.mItems : entry.mParts.size());
    for (std::uint32_t item = 0; item < parts && item < entry.mParts.size(); ++item)
        mCells.push_back({ &entry.mParts[item], field, label, item });
}

std::vector<Piece> PiecesOf(const CFields & fields, bool & isCutOff)
{
    std::vector<Piece> pieces;
    for (const Cell & cell : fields.Cells()) {
        const StructEntry & field = *fields.List()[cell.mField].mEntry;
        const bool isWord = field.mKind == StructEntryKind::WORDS;
        const std::uint32_t before = isWord ? WORD_BITS * cell.mItem : 0;
        const std::uint32_t end = isWord ? field.mWidth : cell.mEntry->mWidth;
        const BitRuns & runs = cell.mEntry->mPacked;
        for (BitRun run : runs) {
            run.mValueBit += before;
            run.mCount = std::min(run.mCount, end - std::min(end, run.mValueBit));
            if (run.mCount != 0 && pieces.size() < MOST_PIECES)
                pieces.push_back({ run, cell.mField, fields.LabelOf(cell), !isWord && runs.size() == 1 });
        }
    }
    isCutOff = fields.Layout().IsCutOff() || pieces.size() == MOST_PIECES;
    return pieces;
}

}   // namespace kit::layout
