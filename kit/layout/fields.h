/// The fields of a struct, and which of them a device gives back as they went there.
///
///     const CFields fields(layout);
///     for (const Field & field : fields.List())
///         if (field.mLoss != Loss::NONE)
///             std::cout << field.mPath << ": " << WhyText(field.mLoss) << '\n';

#ifndef KIT_LAYOUT_FIELDS_H
#define KIT_LAYOUT_FIELDS_H

#include <configtools/structlayout.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace kit::layout {

/// Why a field doesn't come back unchanged, whatever its record allows it and all others to be.
enum class Loss
{
    NONE,            // it does
    NO_ITEMS,        // an array whose items are of a type without a width
    NO_NUMBER,       // an enumerator or text in a form that is unpacked as something else
    WHOLE_64_BITS,   // a field of exactly 64 bits
    HALF_ITEMS,      // items of 64 bits
    LAST_WORD,       // a field of more than 64 bits with a partial word
    ITEM_WIDTH,      // an array that isn't as wide as its items
    CROSSES_WORD,    // a field of less than 16 bits
    UNALIGNED,       // one of 16 bits or more
    OUTSIDE,         // bad metadata leads outside of the struct's words
    NO_SIGN,
    WRONG_SIGN,
    TOO_WIDE,   // values of more bits than the field
    LENGTH,     // octets of several lengths
    OVERWRITTEN,
    SHARED_BITS,
    UNKNOWN   // a struct with bad metadata, or one that is too large to be looked at whole
};

/// The reason in words, such as "a field of exactly 64 bits is unpacked as 0"; empty for none.
std::string WhyText(Loss loss);

/// A field of a struct or of a struct within it; one also where an array holds the struct several times.
struct Field
{
    std::string mPath;   // "Gain"; "Band.Gain" and "Bands[].Gain" within another struct
    const VrexZynConfigTools::StructEntry * mEntry;   // the first of several
    Loss mLoss = Loss::NONE;
};

/// Whether a field is a number of more than 64 bits: a row of words, to which no range applies.
bool IsRowOfWords(const Field & field);

/// A field in one of the structs that have it.
struct FieldPlace
{
    std::uint32_t mField;   // its place in the list of fields
    std::string mLabel;     // "Bands[1].Gain"
};

/// A number of its own in the words: that of a field, an item of an array, a word of a field of more than 64 bits.
struct Cell
{
    const VrexZynConfigTools::StructEntry * mEntry;
    std::uint32_t mField;   // its place in the list of fields
    std::uint32_t mPlace;   // in the list of places
    std::uint32_t mItem;    // its place in the array or in the words
};

class CFields
{
public:
    /// Reads the metadata, which outlive this. `most` limits the cells; fields behind are left out, and none of those that
    /// are there is known to come back then. So it is with metadata that the library can't follow to the end.
    explicit CFields(VrexZynConfigTools::CMetadataDetailStruct & detail, std::size_t most = MOST_CELLS);

    static constexpr std::size_t MOST_CELLS = std::size_t{ 1 } << 18U;

    const VrexZynConfigTools::CStructLayout & Layout() const { return mLayout; }

    /// In the order in which the target holds them.
    const std::vector<Field> & List() const { return mFields; }

    /// In the order in which they are packed.
    const std::vector<Cell> & Cells() const { return mCells; }

    /// The fields of all structs, in the same order.
    const std::vector<FieldPlace> & Places() const { return mPlaces; }

    /// "Bands[1].Gain", and "Bands[1].Steps[3]" for an item of an array.
    std::string LabelOf(const Cell & cell) const;

private:
    struct Names
    {
        std::string mPath;
        std::string mLabel;
    };

    void AddStruct(
        const std::vector<VrexZynConfigTools::StructEntry> & parts, const Names & outer, std::size_t & next);
    void AddStructs(const VrexZynConfigTools::StructEntry & array, const Names & names, std::size_t & next);
    void AddField(const VrexZynConfigTools::StructEntry & entry, const Names & names, std::size_t place);

    VrexZynConfigTools::CStructLayout mLayout;
    std::vector<Field> mFields;
    std::vector<Cell> mCells;
    std::vector<FieldPlace> mPlaces;
};

/// A run of bits in one word that holds a piece of a value.
struct Piece
{
    VrexZynConfigTools::BitRun mRun;   // of the bits of the whole value
    std::size_t mField;                // its place in the list of fields
    std::string mLabel;                // "Bands[1].Gain[3]"
    bool mIsWhole;                     // the value has no other piece
};

/// In the order in which they are packed, up to as many as a person looks at; `isCutOff` if there are more.
std::vector<Piece> PiecesOf(const CFields & fields, bool & isCutOff);

}   // namespace kit::layout

#endif
