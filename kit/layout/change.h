/// A value of a struct that a device doesn't give back unchanged.

#ifndef KIT_LAYOUT_CHANGE_H
#define KIT_LAYOUT_CHANGE_H

#include "field.h"

#include <cstdint>
#include <string>

namespace VrexZynConfigTools {
class IPayload;
}

namespace kit::layout {

/// A value that doesn't come back as it was.
struct Change
{
    std::string mField;   // "Bands[1].Gain"
    std::string mPath;    // "Bands[].Gain", as in `Field`
    std::string mValue;   // as text, of an array all items
    std::string mBack;
    Loss mLoss;            // `TOO_WIDE` for a number with more bits than there are for it
    std::uint32_t mBits;   // of the field, or of an item

    /// "the value 5 comes back as 0, as a field of exactly 64 bits is unpacked as 0".
    std::string Text() const;
};

/// "-3", "RED", "[1, 2]"; a text printable and without quotes.
std::string ValueText(VrexZynConfigTools::IPayload & payload);

}   // namespace kit::layout

#endif
