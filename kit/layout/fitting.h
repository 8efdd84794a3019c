/// The form of a struct's values in which the codec loses least, and what it loses all the same. Internal.

#ifndef KIT_LAYOUT_FITTING_H
#define KIT_LAYOUT_FITTING_H

#include "change.h"

#include <configtools/payloads.h>

#include <memory>
#include <vector>

namespace kit::layout {

/// The fields or items of a list; none of anything else, and of null.
const std::vector<VrexZynConfigTools::IPayload *> & ItemsOf(VrexZynConfigTools::IPayload * value);

/// A copy of a tree of `CodecTree` in the form that `PackStruct` describes. Values that don't fit are cut.
std::unique_ptr<VrexZynConfigTools::CComplexPayload> FittedTree(
    VrexZynConfigTools::CComplexPayload & tree, const std::vector<VrexZynConfigTools::StructEntry> & entries);

/// What differs between two trees of `CodecTree`, in the order of the fields.
std::vector<Change> Differences(VrexZynConfigTools::CComplexPayload & tree,
    VrexZynConfigTools::CComplexPayload & back, VrexZynConfigTools::CMetadataDetailStruct & layout,
    const std::vector<VrexZynConfigTools::StructEntry> & entries);

}   // namespace kit::layout

#endif
