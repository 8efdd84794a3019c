/// One form for the values of a struct key.
///
/// A struct that was read as a block holds the tree that `CStructCodec` unpacks: one entry per field. One that was read
/// field by field holds another: the items of an array stand in the list of their struct one by one, a struct of an
/// array stands there by itself, and a field of more than 64 bits is one value. Whoever packs a struct, or prints it by
/// the names of its fields, wants the codec's tree, whichever way the struct came.

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
///  - A value of up to 64 bits keeps its class, so that enumerators keep their names; a text becomes the number that its
///    bytes make, the first being the lowest.
///  - A field of more than 64 bits becomes its whole words, the first being the lowest. A number is filled up with zeros,
///    or with its topmost bit if the record's format is signed; a text with zeros. Words that are there already stay.
///  - An array keeps the items that it has, which may be fewer than its width holds; so does an array of structs.
///
/// Values of a list are told apart by their own records where they carry them, as those of the element factory do, and
/// otherwise by the widths in the layout. A tree that fits neither form, or metadata that can't be followed, gives an
/// error and no tree.
Result CodecTree(
    VrexZynConfigTools::CComplexPayload & instance, VrexZynConfigTools::CMetadataDetailStruct & layout);

/// The bits that a struct takes on the device, which is also the distance of the structs of an array. Unsigned also where
/// the metadata puts a field below 0, which gives a very large number.
std::uint64_t SizeInBits(VrexZynConfigTools::CMetadataDetailStruct & layout);

/// How many items an array field holds; 0 where its type has no width.
std::uint64_t ItemsHeld(int widthInBits, const std::string & itemType);

}   // namespace kit::layout

#endif
