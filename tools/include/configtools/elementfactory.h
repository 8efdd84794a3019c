/// @file
/// Builds elements from raw values, guided by the metadata of a key.
///
/// @code
/// #include <configtools/context.h>
/// #include <configtools/elements.h>
/// #include <configtools/readerwriter.h>
///
/// #include <memory>
///
/// std::unique_ptr<VrexZynConfigTools::CElement> NextKey(VrexZynConfigTools::IElementFactorySource & source,
///     const VrexZynConfigTools::IMetadata & record, VrexZynConfigTools::IConfigContext & context)
/// {
///     VrexZynConfigTools::CElementFactory factory(&source, context, nullptr);
///     factory.Clear();
///     record.Inspect(factory);   // pulls the values of the key from `source`
///     return std::unique_ptr<VrexZynConfigTools::CElement>(factory.Collect());   // null after an error
/// }
/// @endcode

#ifndef CONFIGTOOLS_ELEMENTFACTORY_H
#define CONFIGTOOLS_ELEMENTFACTORY_H

#include <configtools/export.h>
#include <configtools/metadata.h>
#include <configtools/types.h>

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <vector>

namespace VrexZynConfigTools {

class CComplexPayload;
class CElement;
class CStructCodec;
class IConfigContext;
class IElementFactorySource;
class IPayload;

/// For reader plug-ins, key by key: `Clear`, then `Inspect` of the key's record with the factory as observer, then
/// `Collect`. The factory pulls the raw values from the source in stream order, checks them against the record, and
/// builds a `CElementNumericArray`, `CElementString`, `CElementEnum` or `CElementStruct`. For a table key it leaves the
/// indices in the context, in the tags "num_indices", "index1" and so on; `CSubsystemConfig` makes the row of it. One
/// factory serves any number of keys, one after the other, from one thread.
///
/// **Errors.** A value that the metadata doesn't allow is an error with the code 0 in `GROUP_FRAMEWORK`, which
/// `StartElement` clears for each key, and there is no element. The exception is a text of a wrong length, which is
/// delivered beside the error, intended: tools show such texts. An error does not stop the walk of the metadata, but
/// ends an array. The context's tag "nodatacheck" at "true" switches the checks off; an unknown enumerator then gives
/// no element and no error.
///
/// If `GROUP_FRAMEWORK` has an error after numbers were read, the number and name of their record are appended to the
/// error of the reader in `GROUP_OUTER_READER`, if it has left one there.
///
/// **Structs.** With a codec a struct is read as a block and unpacked by bit position, and the element contains the
/// codec's tree. The source has to return false with the last value of a struct that has array fields then, or the walk
/// doesn't end. Without a codec each field is requested by itself; an array field appends its items to the list of its
/// struct, so that the tree is another one, intended: such a source has no widths to group them by, and
/// `CStructCodec::Encode` needs the codec's tree.
///
/// **Numbers.** A key that is no struct takes every value that the source has. A field takes one, or, if it is an
/// array, as many as fit its width.
class CONFIGTOOLS_EXPORT CElementFactory : public IMetadataInspectorObserver
{
public:
    /// Source (never null), context and codec stay the caller's and must outlive the factory. A null codec reads
    /// structs field by field. If the source is an `IMetadataLayoutInspectorObserver` too, the calls about the
    /// structure of each key are passed on to it.
    CElementFactory(IElementFactorySource * source, IConfigContext & context, CStructCodec * codec);

    /// Copies every field, the element included, which both then delete, intended since derived classes rely on a copy
    /// that continues the key: copy only a factory without an element.
    CElementFactory(const CElementFactory & other);
    CElementFactory & operator=(const CElementFactory & other) = delete;

    /// Deletes an element that was not collected.
    ~CElementFactory() override;

    /// Begins a key: clears the error of `GROUP_FRAMEWORK`, sets the tag "num_indices" for a table key, and makes the
    /// element of a struct key. An element of an earlier key that is still here is overwritten and not deleted,
    /// intended since tools count on `Clear` for that: call `Clear` or `Collect` between keys.
    void StartElement(const IMetadata & metadata) override;

    /// Ends a key; the element waits for `Collect`.
    void EndElement() override;

    /// Begins a struct: reads it as a block with the codec, or opens a `CComplexPayload` for its fields.
    void StartStruct(const IMetadata & metadata) override;

    /// Ends a struct.
    void EndStruct() override;

    /// Does nothing.
    void StartArrayItem() override;

    /// Does nothing.
    void EndArrayItem() override;

    /// Takes the next value of the source as a table index and stores it in the context under "index1", "index2" and so
    /// on; the argument plays no part. Name and value have at most 8 characters, intended, because the format of the
    /// tags has them: the names from "index1000" on and values of 9 digits and more are cut off.
    void IntIndex(const CTableIndex & index) override;

    /// As `IntIndex`, intended: sources deliver the number of the enumerator.
    void EnumIndex(const CTableIndex & index) override;

    /// Reads one number or several and checks each against `Min` and `Max` of the record. If the source or a check left
    /// an error in `GROUP_FRAMEWORK`, no element or field is made.
    ///
    /// A type without a width, such as "integer", gets the smallest numeric type that the width of its field fits,
    /// unsigned for the formats "unsigned_decimal" and "hexadecimal".
    void Int(const IMetadata & metadata) override;

    /// Reads a text; of several that the source delivers the last one remains, intended: an array of texts has no
    /// element class. `Min` and `Max` of the record are its length in bytes. An octet string of the subsystem "bt"
    /// loses a last zero byte if its length is even and above `Min`: it is a pad byte, since such strings travel in
    /// 16-bit words.
    void String(const IMetadata & metadata) override;

    /// Reads the number of one enumerator. Of several names with that number the first in name order is taken.
    void Enum(const IMetadata & metadata) override;

    /// Whether the source has more, and all checks have passed. False too after a struct that requested nothing, since
    /// the walk of an array of such structs would not end.
    bool InspectDetailAgain() override;

    /// Sets the tag in the context; the record calls it with the width of each struct field.
    ///@{
    void SetContextInfo(const std::string & key, int value) override;
    void SetContextInfo(const std::string & key, const std::string & value) override;
    ///@}

    /// Deletes an element that was not collected, removes "num_indices" and the index tags from the context, and makes
    /// the factory ready for the next key.
    virtual void Clear();

    /// The element built, which belongs to the caller from now on; null if there is none, after an error or because the
    /// record asked for nothing.
    virtual CElement * Collect();

private:
    struct NumberShape;

    NumberShape ShapeOf(const IMetadata & metadata);
    bool ReadNumber(const IMetadata & metadata, const std::string & type, NumericVariable & value);
    std::vector<NumericVariable> ReadNumbers(const IMetadata & metadata, const NumberShape & shape);
    void TrimPadding(const IMetadata & metadata, bool isOctet, std::string & value);
    void CheckLength(const IMetadata & metadata, std::size_t length);
    void DecodeStruct();
    void OpenStruct(const IMetadata & metadata);
    CComplexPayload * OpenPayload() const;
    void Place(CElement * element, const IMetadata & metadata);
    void AddStructField(CElement * element);
    bool ValidateRange(
        const std::string & type, const NumericVariable & value, std::int64_t min, std::int64_t max);
    std::int32_t WidthOfField() const;
    bool ChecksData() const;

    std::string mInternalType;
    std::string mName;
    std::uint32_t mPsId;
    std::uint16_t mIndexCount;
    std::uint16_t mStructDepth;
    MetadataTypeEnum mMetadataType;                       // METADATA_NONE when idle
    IElementFactorySource * mSource;                      // not owned
    IMetadataLayoutInspectorObserver * mLayoutObserver;   // not owned; null if the source isn't one
    IConfigContext & mContext;
    CElement * mElement;                  // owned until Collect
    std::deque<IPayload *> mFieldStack;   // the open structs, innermost last; not owned
    bool mInspectAgain;
    CStructCodec * mCodec;   // not owned; null for field by field
    bool mDecoded;           // the struct was unpacked as a block: what it calls back is passed over
    bool mWasAsked;          // the source, since the outermost struct began
};

}   // namespace VrexZynConfigTools

#endif
