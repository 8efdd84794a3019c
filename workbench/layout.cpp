#include "layout.h"

#include "shape.h"

#include <configtools/keywords.h>
#include <configtools/structcodec.h>

#include <algorithm>
#include <map>
#include <utility>

namespace workbench {

using namespace VrexZynConfigTools;

namespace {

constexpr int WORD_BITS = 16;
constexpr int OCTET_BITS = 8;
constexpr int WIDEST_NUMBER = 64;   // in bits; a wider field is a list of words
constexpr std::size_t MOST_PIECES = 4096;
constexpr int MOST_STEPS = 65536;
constexpr int DEEPEST_NESTING = 64;

struct Place
{
    std::int64_t mWord;
    int mBit;
};

Place PlaceOf(std::int64_t position)
{
    return { position >> 4, static_cast<int>(position & 15) };
}

bool IsNumberOfWords(int width)
{
    return width > WORD_BITS && width <= WIDEST_NUMBER;
}

std::uint64_t SizeInBits(CMetadataDetailStruct & detail)
{
    std::uint64_t size = 0;
    for (const CStructField * const field : *detail.GetStructFields()) {
        const IMetadata * const metadata = field == nullptr ? nullptr : field->Metadata();
        if (metadata == nullptr)
            continue;
        // In a struct that isn't little-endian the position of such a field is that of its last word.
        const bool isLastWord = IsNumberOfWords(field->ElemBitWidth()) && !detail.IsLittleEndian() &&
                                metadata->MetadataType() == METADATA_SIMPLE && !metadata->IsArray();
        const std::int64_t width = isLastWord ? WORD_BITS : field->ElemBitWidth();
        const std::int64_t end = field->ElemLsbBitPos() + width;
        size = std::max(size, static_cast<std::uint64_t>(std::max<std::int64_t>(end, 0)));
    }
    return size;
}

// What packs and unpacks by different rules, or loses bits on the way.
bool IsCarriedBack(std::int64_t position, const CStructField & field, bool isLittleEndian)
{
    const IMetadata & metadata = *field.Metadata();
    const int width = field.ElemBitWidth();
    const int bit = PlaceOf(position).mBit;
    if (metadata.IsArray()) {
        const int bits = static_cast<int>(CStructCodec::BitsForInternalType(metadata.InternalType()));
        const bool isAligned = bits == OCTET_BITS  ? bit % OCTET_BITS == 0
                               : bits == WORD_BITS ? bit == 0 || (bit == OCTET_BITS && isLittleEndian)
                                                   : bit == 0;
        return bits > 0 && bits < WIDEST_NUMBER && width % bits == 0 && isAligned &&
               metadata.InternalType().front() == 'u';
    }
    if (width < WORD_BITS)
        return bit + width <= WORD_BITS;
    if (width == WORD_BITS)
        return bit == 0 || (bit == OCTET_BITS && isLittleEndian);
    return bit == 0 && (width < WIDEST_NUMBER || (width > WIDEST_NUMBER && width % WORD_BITS == 0));
}

/// Walks a struct and those within it.
class CLayoutMaker
{
public:
    Layout Make(CMetadataDetailStruct & detail)
    {
        mLayout.mBits = SizeInBits(detail);
        AddStruct(detail, 0, { "", "" }, 0);
        return std::move(mLayout);
    }

private:
    /// How a field is called: as such, and where it stands in arrays.
    struct Names
    {
        std::string mPath;
        std::string mLabel;
    };

    bool HasRoom()
    {
        mLayout.mIsCutOff = mLayout.mIsCutOff || mLayout.mPieces.size() >= MOST_PIECES || ++mSteps > MOST_STEPS;
        return !mLayout.mIsCutOff;
    }

    void AddStruct(CMetadataDetailStruct & detail, std::int64_t base, const Names & outer, int depth)
    {
        if (depth > DEEPEST_NESTING) {
            mLayout.mIsCutOff = true;
            return;
        }
        for (const CStructField * const field : *detail.GetStructFields()) {
            if (field == nullptr || field->Metadata() == nullptr || !HasRoom())
                continue;
            const std::int64_t position = base + field->ElemLsbBitPos();
            const std::string name = field->Metadata()->Name();
            const Names names = { outer.mPath + name, outer.mLabel + name };
            if (field->Metadata()->MetadataType() == METADATA_STRUCT)
                AddInnerStruct(*field, position, names, depth);
            else
                AddField(*field, position, names, detail.IsLittleEndian());
        }
    }

    void AddInnerStruct(const CStructField & field, std::int64_t position, const Names & names, int depth)
    {
        CMetadataDetailStruct * const inner = StructOf(*field.Metadata());
        if (inner == nullptr)
            return;
        if (!field.Metadata()->IsArray())
            return AddStruct(*inner, position, { names.mPath + '.', names.mLabel + '.' }, depth + 1);
        const auto size = static_cast<std::int64_t>(SizeInBits(*inner));
        const std::int64_t count = size == 0 ? 0 : field.ElemBitWidth() / size;
        for (std::int64_t i = 0; i < count && HasRoom(); ++i)
            AddStruct(*inner, position + i * size,
                { names.mPath + "[].", names.mLabel + '[' + std::to_string(i) + "]." }, depth + 1);
    }

    void AddField(const CStructField & field, std::int64_t position, const Names & names, bool isLittleEndian)
    {
        const int width = field.ElemBitWidth();
        const auto [known, isNew] = mPlaces.try_emplace({ names.mPath, &field }, mLayout.mFields.size());
        if (isNew)
            mLayout.mFields.push_back({ names.mPath, field.Metadata(), position, width,
                IsCarriedBack(position, field, isLittleEndian) });
        mField = known->second;
        const int bits =
            field.Metadata()->IsArray()
                ? static_cast<int>(CStructCodec::BitsForInternalType(field.Metadata()->InternalType()))
                : 0;
        if (bits == 0)
            return AddValue(position, width, names.mLabel, isLittleEndian);
        for (int i = 0; std::int64_t{ i } * bits < width && HasRoom(); ++i)
            AddValue(position + std::int64_t{ i } * bits, bits, names.mLabel + '[' + std::to_string(i) + ']',
                isLittleEndian);
    }

    void AddValue(std::int64_t position, int width, const std::string & label, bool isLittleEndian)
    {
        const auto [word, bit] = PlaceOf(position);
        if (width < WORD_BITS) {
            if (width > 0)
                AddPiece(word, bit, std::min(width, WORD_BITS - bit), label, 0, true);
        } else if (width == WORD_BITS && bit == OCTET_BITS && isLittleEndian) {
            AddPiece(word, OCTET_BITS, OCTET_BITS, label, 0, false);
            AddPiece(word + 1, 0, OCTET_BITS, label, OCTET_BITS, false);
        } else {
            // A list of words goes upward whatever the order; a number's further words lie where the order says.
            const int step = isLittleEndian || width > WIDEST_NUMBER ? 1 : -1;
            for (int done = 0; done < width && HasRoom(); done += WORD_BITS)
                AddPiece(word + std::int64_t{ step } * (done / WORD_BITS), 0, std::min(WORD_BITS, width - done),
                    label, done, width == WORD_BITS);
        }
    }

    void AddPiece(
        std::int64_t word, int lowBit, int count, const std::string & label, int valueBit, bool isWhole)
    {
        mLayout.mPieces.push_back({ word, lowBit, count, mField, label, valueBit, isWhole });
    }

    Layout mLayout;
    std::map<std::pair<std::string, const CStructField *>, std::size_t> mPlaces;   // of the fields in the list
    std::size_t mField = 0;   // the one whose pieces are added
    int mSteps = 0;
};

}   // namespace

Layout LayOut(CMetadataDetailStruct & detail)
{
    return CLayoutMaker().Make(detail);
}

bool IsRowOfWords(const LaidField & field)
{
    const IMetadata & metadata = *field.mMetadata;
    return field.mWidth > 64 && HasRange(metadata) && !IsText(metadata) && !metadata.IsArray();
}

}   // namespace workbench
