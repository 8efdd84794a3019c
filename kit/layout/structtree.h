/// One form for the values of a struct key.
///
/// A struct that was read as a block holds the tree that `CStructCodec` unpacks: one entry per field. One that was read
/// field by field holds another: the items of an array stand in the list of their struct one by one, a struct of an
/// array stands there by itself, and a field of more than 64 bits is one value. Whoever prints a struct by the names of its
/// fields, or packs it (`PackStruct`), wants the codec's tree, whichever way the struct came.

#ifndef KIT_LAYOUT_STRUCTTREE_H
#define KIT_LAYOUT_STRUCTTREE_H

#include <cstdint>
#include <memory>
#include <string>

namespace VrexZynConfigTools {
class CComplexPayload;
class CMetadataDetailStruct;
}   // namespace VrexZynConfigTools

namespace kit::layout {

/// A tree, or the reason why there is none.
struct Result
{
    std::unique_ptr<VrexZynConfigTools::CComplexPayload> mTree;   // null if `mError` says why
    std::string mError;   // begins with the names of the fields on the way
};

/// The codec's tree with the values of `instance`, one struct in either form.
///
/// `instance` stays its owner's and as it is; the tree is made of new payloads, which point at the same metadata as the
/// codec's do: the records of the fields, but for structs, array items and the words of wide fields, which have none.
/// The tree itself gets the record of `instance`, if it has one.
///
/// A value is what its record says, by whichever carrier it came:
///  - A number of up to 64 bits keeps its class, and an enumerator its name; items of an array get the array's own type,
///    which the codec doesn't unpack.
///  - A text stays a text, and what was unpacked of one becomes a text again, the lowest byte first.
///  - A number of more than 64 bits becomes its whole words, the first being the lowest. It is filled up with zeros, or with
///    its topmost bit if the record's format is signed. Words that are there already stay.
///  - An array keeps the items that it has, which may be fewer than its width holds; so does an array of structs.
///
/// Values of a list are told apart by their own records where they carry them, as those of the element factory do, and
/// otherwise by the widths in the layout. A tree that fits neither form, or metadata that can't be followed, gives an
/// error and no tree.
Result CodecTree(
    VrexZynConfigTools::CComplexPayload & instance, VrexZynConfigTools::CMetadataDetailStruct & layout);

/// How many items an array field holds; 0 where its type has no width.
std::uint64_t ItemsHeld(int widthInBits, const std::string & itemType);

}   // namespace kit::layout

#endif
