/// The bits of a struct as a map shows them.

#ifndef KIT_LAYOUT_PIECES_H
#define KIT_LAYOUT_PIECES_H

#include "fields.h"

namespace kit::layout {

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
