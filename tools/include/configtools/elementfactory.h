/// Builds elements from raw values, guided by the metadata of a key.

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
/// `Collect`. The factory asks the source for the raw values in stream order, checks them against the record, and
/// builds the element: `CElementNumericArray`, `CElementString`, `CElementEnum` or `CElementStruct`. For a table key it
/// leaves the indices in the context, in the tags "num_indices", "index1" and so on; `CSubsystemConfig` makes the row.
///
/// A value that the metadata doesn't allow is an error with the code 0 in `GROUP_FRAMEWORK`, where each key starts
/// without one, and there is no element; only a text of a wrong length is delivered all the same. The context's tag
/// "nodatacheck" at "true" switches the checks off; an unknown enumerator is then left out without an error.
///
/// If one stands there after numbers were read, the number and name of their record are added to the error of the reader
/// in `GROUP_OUTER_READER`, where it has left one.
///
/// With a codec, a struct is read as a block and unpacked by bit position, and the element holds the codec's tree. A
/// source has to answer false with the last value of a struct that has array fields then, or the walk doesn't end.
/// Without one each field is asked for by itself; an array field adds its items to the list of its struct, and the tree
/// is another, intended.
///
/// Numbers: a single key takes every value the source has. A field takes one, or as many as its width holds.
class CONFIGTOOLS_EXPORT CElementFactory : public IMetadataInspectorObserver
{
public:
    /// Source (never null), context and codec stay the caller's and must outlive the factory; null for the codec reads
    /// field by field. If the source is an `IMetadataLayoutInspectorObserver` too, it is told the structure of each key.
    CElementFactory(IElementFactorySource * source, IConfigContext & context, CStructCodec * codec);

    /// Copies every field, the element included, which both then delete, intended: copy only a factory without one.
    CElementFactory(const CElementFactory & other);
    CElementFactory & operator=(const CElementFactory & other) = delete;
    ~CElementFactory() override;

    void StartElement(const IMetadata & metadata) override;
    void EndElement() override;
    void StartStruct(const IMetadata & metadata) override;
    void EndStruct() override;
    void StartArrayItem() override;
    void EndArrayItem() override;

    /// Takes the next value of the source as a table index and leaves it in the context. A tag holds at most 8
    /// characters: the names from "index1000" on and values of 9 digits and more are cut off, intended.
    void IntIndex(const CTableIndex & index) override;
    void EnumIndex(const CTableIndex & index) override;   // a plain number, intended

    void Int(const IMetadata & metadata) override;
    void String(const IMetadata & metadata) override;
    void Enum(const IMetadata & metadata) override;

    /// Whether the source has more, and all checks have passed. False too after a struct that asked for nothing.
    bool InspectDetailAgain() override;
    void SetContextInfo(const std::string & key, int value) override;
    void SetContextInfo(const std::string & key, const std::string & value) override;

    /// Deletes an element that was not collected, and takes the index tags out of the context.
    virtual void Clear();

    /// The element built, which is the caller's from now on; null if there is none.
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
