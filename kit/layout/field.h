/// A field of a struct, the numbers that it consists of, and why it may not come back unchanged from a device.

#ifndef KIT_LAYOUT_FIELD_H
#define KIT_LAYOUT_FIELD_H

#include <configtools/structlayout.h>

#include <cstdint>
#include <string>

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

}   // namespace kit::layout

#endif
