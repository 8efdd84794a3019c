/// The fields of a struct, and which of them a device gives back as they went there.
///
///     const CFields fields(layout);
///     for (const Field & field : fields.List())
///         if (field.mLoss != Loss::NONE)
///             std::cout << field.mPath << ": " << WhyText(field.mLoss) << '\n';

#ifndef KIT_LAYOUT_FIELDS_H
#define KIT_LAYOUT_FIELDS_H

#include "field.h"

#include <configtools/structlayout.h>

#include <cstddef>
#include <string>
#include <vector>

namespace kit::layout {

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
