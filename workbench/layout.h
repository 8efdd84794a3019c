/// Which bits of a packed struct belong to which field.

#ifndef WORKBENCH_LAYOUT_H
#define WORKBENCH_LAYOUT_H

#include <configtools/metadata.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace workbench {

/// A field of a struct or of a struct within it; one entry also if an array holds the struct several times.
struct LaidField
{
    std::string mPath;   // "Gain"; "Band.Gain" and "Bands[].Gain" within another struct
    const VrexZynConfigTools::IMetadata * mMetadata;   // the provider's, never null
    std::int64_t mPosition;   // in bits from the struct's begin; of the first of several
    int mWidth;               // in bits
    bool mIsCarriedBack;      // whether the device gives back unchanged what was packed
};

/// A run of bits in one word that holds a piece of a field's value.
struct LaidPiece
{
    std::int64_t mWord;
    int mLowBit;   // in the word
    int mCount;
    std::size_t mField;   // its place in the list of fields
    std::string mLabel;   // "Bands[1].Gain[3]"
    int mValueBit;        // the bit of the value that stands at mLowBit
    bool mIsWhole;        // the value has no other piece
};

struct Layout
{
    std::vector<LaidField> mFields;
    std::vector<LaidPiece> mPieces;
    std::uint64_t mBits = 0;   // the size
    bool mIsCutOff = false;    // there is more, left out here: a struct of bad metadata can be boundless
};

/// The rules are those of `CStructCodec`, to which layouts belong that a device carries.
Layout LayOut(VrexZynConfigTools::CMetadataDetailStruct & detail);

/// Whether a field is a number of more than 64 bits: a row of words, to which no range applies.
bool IsRowOfWords(const LaidField & field);

}   // namespace workbench

#endif
