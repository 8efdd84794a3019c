/// The codec's tree of a struct in the form in which packing loses nothing.

#ifndef IMAGECONFIG_FITTEDTREE_H
#define IMAGECONFIG_FITTEDTREE_H

#include <memory>
#include <string>

namespace VrexZynConfigTools {
class CComplexPayload;
class CMetadataDetailStruct;
}   // namespace VrexZynConfigTools

namespace imageconfig {

/// A copy of a tree that `kit::layout::CodecTree` made, for packing:
///  - a value of a field, or an item of an array, of exactly 16 bits is a number of 16 bits, as packing passes over wider
///    ones, intended there;
///  - an array has all the items that its width holds, the last ones 0, as packing shares the width out among those there
///    are, intended there.
/// Null, with the reason in `error`, if a value has more bits than its field.
std::unique_ptr<VrexZynConfigTools::CComplexPayload> FittedTree(VrexZynConfigTools::CComplexPayload & tree,
    VrexZynConfigTools::CMetadataDetailStruct & layout, std::string & error);

}   // namespace imageconfig

#endif
