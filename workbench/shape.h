/// The shape of a key or a field, in words: what its record says, ready for a table.

#ifndef WORKBENCH_SHAPE_H
#define WORKBENCH_SHAPE_H

#include <configtools/metadata.h>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace workbench {

struct NamedNumber
{
    std::string mName;
    int mNumber;
};

/// "enum", "struct" or the keyword of the type.
std::string TypeOf(const VrexZynConfigTools::IMetadata & metadata);

/// "int16 array", "struct".
std::string TypeText(const VrexZynConfigTools::IMetadata & metadata);

/// Whether the record's limits say something about its values; they don't for an enumeration and a struct.
bool HasRange(const VrexZynConfigTools::IMetadata & metadata);

/// Whether the limits are lengths.
bool IsText(const VrexZynConfigTools::IMetadata & metadata);

/// Whether the limits are to be read as unsigned numbers of 64 bits.
bool HasUnsignedRange(const VrexZynConfigTools::IMetadata & metadata);

/// "-8 to 7", "0 to 16 octets"; empty without a range.
std::string RangeText(const VrexZynConfigTools::IMetadata & metadata);

/// "2 to 5 items"; empty for no array.
std::string ArrayText(const VrexZynConfigTools::IMetadata & metadata);

/// The enumerators of an enumeration by number; empty for anything else.
std::vector<NamedNumber> EnumeratorsOf(const VrexZynConfigTools::IMetadata & metadata);
std::vector<NamedNumber> EnumeratorsOf(const VrexZynConfigTools::CTableIndex & index);

/// "0 OFF, 1 ON".
std::string ToText(const std::vector<NamedNumber> & enumerators);

/// The layout of a struct; null for anything else.
VrexZynConfigTools::CMetadataDetailStruct * StructOf(const VrexZynConfigTools::IMetadata & metadata);

}   // namespace workbench

#endif
