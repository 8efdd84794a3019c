/// Whether a key has as many values, and stands in such a row of its table, as its record says.

#ifndef IMAGECONFIG_SHAPE_H
#define IMAGECONFIG_SHAPE_H

#include "chunk.h"

#include <string>

namespace VrexZynConfigTools {
class IMetadata;
}

namespace imageconfig {

/// What is wrong with the number of values or with the indices, which the library doesn't look at; empty for nothing.
/// For a value that could be built by the record.
std::string ObjectionToShape(const RawKey & key, const VrexZynConfigTools::IMetadata & record);

}   // namespace imageconfig

#endif
