/// @file
/// Packs the fields of a struct key into the 16-bit words in which a device stores them, and unpacks them again.
///
/// The layout comes from the metadata alone. Word 0 comes first in the stream; a field's position counts bits from the
/// least significant bit of word 0. In octet form octet 2k is the low byte of word k. The host has to be little-endian.
///
/// The rules for packing and unpacking differ, and so do those for the widths. That is the device format, intended:
///  - a field of up to 15 bits lies within one word; what doesn't fit there is lost;
///  - a field of 16 bits replaces its word when packed, but a payload of more than 16 bits, such as an enumerator,
///    leaves the word as it is; only at bit 8 of a word, and in a little-endian struct, does the field straddle two
///    words;
///  - a wider field starts on a word boundary when packed, whatever its position says, but is unpacked from the very
///    bit; so it comes back unchanged only if its position is a multiple of 16;
///  - in a struct that isn't little-endian, the position of a field of 17 to 64 bits names its last word;
///  - a field of exactly 64 bits unpacks as 0; of a field of 65 bits and more the bits of a last partial word are lost;
///  - an array is packed by sharing out its width evenly among the items given, whatever their type, but is unpacked
///    into items as wide as its type; they are unsigned numbers, and 64-bit items give 32 bits.
///
/// The tree of payloads has one entry per field, in field order: for a number of up to 64 bits a numeric payload or a
/// `CEnumPayload`, for a wider one a `CComplexPayload` with a `CUint16Payload` per word, for an array one with a
/// numeric payload per item, for a struct one with its fields, for an array of structs one with a `CComplexPayload`
/// per struct.
///
/// Bad metadata never reaches outside the words: there 0 is read, and what is written is dropped. A struct of more than
/// 2^27 bits, nesting deeper than 64, a field without metadata and the like leave an error in `GROUP_FRAMEWORK`.

///
/// @code
/// bool WriteStruct(VrexZynConfigTools::CComplexPayload & fields, VrexZynConfigTools::CMetadataDetailStruct & layout,
///     VrexZynConfigTools::IConfigWriter & writer, VrexZynConfigTools::IConfigContext & context)
/// {
///     VrexZynConfigTools::CStructCodec codec;
///     codec.Encode(fields, layout);
///     return codec.Write(writer, context);   // a CUint16Payload for each word
/// }
/// @endcode

#ifndef CONFIGTOOLS_STRUCTCODEC_H
#define CONFIGTOOLS_STRUCTCODEC_H

#include <configtools/export.h>
#include <configtools/payloads.h>

#include <cstddef>
#include <cstdint>
#include <string>

namespace VrexZynConfigTools {

class CMetadataDetailStruct;
class IElementFactorySource;

namespace structcodec {
class CWords;
struct FieldPlan;
struct LayoutPlan;
struct Walk;
}   // namespace structcodec

/// One codec serves any number of structs, one after the other.
class CONFIGTOOLS_EXPORT CStructCodec : public IWritable
{
public:
    /// The width of a word.
    static constexpr std::uint32_t BITS_IN_UINT16 = 16;

    /// A codec without words.
    CStructCodec();

    /// Copies share the word array with `other`, and the former array of an assigned codec is lost, intended, since
    /// plug-ins copy codecs that are empty: copy only a codec without words.
    ///@{
    CStructCodec(const CStructCodec & other);
    CStructCodec & operator=(const CStructCodec & other);
    ///@}

    /// Deletes the words.
    ~CStructCodec() override;

    /// Packs the fields of `payload` by the layout of `detail`; the words stay here for `Write`. A list shorter than
    /// the fields leaves the later fields zero; a longer one is an error, and the surplus is dropped.
    void Encode(CComplexPayload & payload, CMetadataDetailStruct & detail);

    /// Takes the words from `source`, one `NextInt("uint16")` each, or all octets by one `NextString` if the struct
    /// says so (`IsOctetsInBin`), and adds the fields to `out`. `more` is the source's last answer: whether another
    /// struct follows. Missing words are 0, and `more` is false; a wrong number of octets is told as a warning.
    ///
    /// False, with nothing added, if an error stands in `GROUP_FRAMEWORK` when the words have been read. An error in
    /// `GROUP_OUTER_READER` ends the reading of words, with `more` false; what came until then is unpacked. It isn't
    /// looked at where the octets come at once.
    bool Decode(
        IElementFactorySource & source, CMetadataDetailStruct & detail, CComplexPayload * out, bool & more);

    /// Gives the writer the words of the last `Encode` or `Decode`: a `CUint16Payload` each until an error stands in
    /// `GROUP_FRAMEWORK`, or one octet string. True if no error stands afterwards, and also if there is no word to
    /// give: whether `Encode` refused the struct is told by the error that it left.
    bool Write(IConfigWriter & writer, IConfigContext & context) override;

    /// The keyword of the smallest integer type with that many bits; the width is decimal text. Empty for a width
    /// outside 1 to 64.
    static std::string GetIntTypeFromBitWidth(const std::string & bitWidth, bool isUnsigned);

    /// The width of an integer type in bits; 0 for any other text, "integer" included.
    static std::uint32_t BitsForInternalType(const std::string & type);

private:
    // Positions count bits from the begin of the whole struct; `base` is that of the struct at hand.
    void DoEncode(std::uint32_t base, CComplexPayload & payload, const structcodec::LayoutPlan & layout,
        structcodec::Walk & walk);
    void EncodeAny(std::uint32_t position, const structcodec::FieldPlan & field, IPayload & value,
        bool littleEndian, structcodec::Walk & walk);
    void EncodeArray(
        std::uint64_t position, const structcodec::FieldPlan & field, IPayload & value, bool littleEndian);
    void EncodeStruct(std::uint32_t position, const structcodec::FieldPlan & field, IPayload & value,
        structcodec::Walk & walk);
    void EncodeField(std::uint64_t position, std::uint32_t size, IPayload & payload, bool littleEndian);
    void ReplaceWord(std::uint64_t index, IPayload & payload);
    void EncodeWords(std::uint64_t index, IPayload & payload);

    // False if the metadata describes too many values.
    bool DoDecode(std::uint32_t base, const structcodec::LayoutPlan & layout, CComplexPayload & out,
        structcodec::Walk & walk);
    bool DecodeAny(std::uint32_t position, const structcodec::FieldPlan & field, CComplexPayload & out,
        bool littleEndian, structcodec::Walk & walk);
    bool DecodeStruct(std::uint32_t position, const structcodec::FieldPlan & field, CComplexPayload & out,
        structcodec::Walk & walk);
    bool DecodeItems(std::uint64_t position, const structcodec::FieldPlan & field, CComplexPayload & out,
        bool littleEndian, structcodec::Walk & walk);
    void DecodeField(
        std::uint64_t position, const structcodec::FieldPlan & field, CComplexPayload & out, bool littleEndian);

    bool ReadWords(IElementFactorySource & source);
    bool ReadOctets(IElementFactorySource & source, CComplexPayload * out);
    bool Allocate(CMetadataDetailStruct & detail);
    std::uint64_t GetStructSizeInBits(CMetadataDetailStruct & detail);
    void CleanUp();
    structcodec::CWords Words() const;

    std::uint16_t * mpWords;   // owned
    std::uint64_t mNumWords;   // mBitSize, rounded up to words
    std::uint64_t mBitSize;
    std::uint64_t mNumOctets;   // mBitSize, rounded up to octets
    bool mOctetsInBin;          // the raw form is one octet string
};

}   // namespace VrexZynConfigTools

#endif
