/// @file
/// Metadata: what a key means. A record (`CMetadata`) describes a key's name, its range, its array shape and its table
/// indices; its detail object describes the value: a plain value, an enumeration, or a struct of bit fields. `Inspect`
/// walks the shape of a key and calls an observer in a fixed order.
///
/// A metadata plug-in builds the records, which live as long as their provider; elements and payloads point at them.
/// A record owns its detail and its table indices; a detail points back at its record. No operation fails: what is
/// absent is a null pointer or an empty text.
///
/// One thread at a time: the library takes no lock and has no thread-local state. An object isn't shared between
/// threads, and reading a record counts as using it: a struct's detail stores what the codec worked out from it.
/// Separate chips may be used on separate threads, one after the other.
///
/// Bad metadata ends a walk early with an error in `GROUP_FRAMEWORK`, and with what was opened closed: structs nested
/// more than 64 deep, such as a struct that contains itself, and more than 65536 structs within one.
///
/// A key with a number from 0 to 100 and a key with two enumerators:
///
/// @code
/// #include <memory>
///
/// std::unique_ptr<VrexZynConfigTools::CMetadata> ARecord(std::uint32_t psId, const std::string & name, bool isEnum)
/// {
///     using namespace VrexZynConfigTools;
///     auto record = std::make_unique<CMetadata>(0, psId, name, "", "", false, "unsigned_decimal", 0, 100, "",
///         "uint8", "", false, 0, 0, "", "", "", "", "", "read_write", "", "", 0,
///         isEnum ? METADATA_ENUM : METADATA_SIMPLE);
///     auto enumeration = std::make_unique<CMetadataDetailEnum>(*record);
///     enumeration->AddEnum("off", "0");
///     enumeration->AddEnum("on", "1");
///     if (isEnum)
///         record->SetDetails(*enumeration.release());   // the record owns it now
///     else
///         record->SetDetails(*std::make_unique<CMetadataDetailSimple>(*record).release());
///     return record;
/// }
/// @endcode

#ifndef CONFIGTOOLS_METADATA_H
#define CONFIGTOOLS_METADATA_H

#include <configtools/export.h>
#include <configtools/types.h>

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace VrexZynConfigTools {

class CStructField;
class CStructPlan;
class CTableIndex;
class IMetadata;

/// Follows the structure of a key while it is inspected. The order of the virtual operations is a binary contract.
class CONFIGTOOLS_EXPORT IMetadataLayoutInspectorObserver
{
public:
    /// Begins a key. The record stays the provider's, here and below. Not called for the record of a struct field.
    virtual void StartElement(const IMetadata & metadata) = 0;

    /// Ends a key.
    virtual void EndElement() = 0;

    /// Begins a struct, also one within a struct; `metadata` is the record of the key or field.
    virtual void StartStruct(const IMetadata & metadata) = 0;

    /// Ends the innermost struct.
    virtual void EndStruct() = 0;

    /// Begins an item of an array.
    virtual void StartArrayItem() = 0;

    /// Ends an item of an array.
    virtual void EndArrayItem() = 0;
    virtual ~IMetadataLayoutInspectorObserver() = default;
};

/// Follows structure and values of a key while it is inspected; `CElementFactory` is one. The order of the virtual
/// operations is a binary contract.
class CONFIGTOOLS_EXPORT IMetadataInspectorObserver : public IMetadataLayoutInspectorObserver
{
public:
    /// An index of a table key that is an integer; called in the order of the indices, right after `StartElement`.
    virtual void IntIndex(const CTableIndex & index) = 0;

    /// An index of a table key that is an enumerator; otherwise as `IntIndex`.
    virtual void EnumIndex(const CTableIndex & index) = 0;

    /// A number; `metadata` is the record of the key or field, here and below.
    virtual void Int(const IMetadata & metadata) = 0;

    /// A text or an octet string.
    virtual void String(const IMetadata & metadata) = 0;

    /// An enumerator.
    virtual void Enum(const IMetadata & metadata) = 0;

    /// Called after each item of an array: returns whether there is another one.
    virtual bool InspectDetailAgain() = 0;

    /// Side information: "elembitwidth" with the width in bits ahead of each field of a struct, as a number, and after
    /// the last one with an empty text.
    ///@{
    virtual void SetContextInfo(const std::string & key, int value) = 0;
    virtual void SetContextInfo(const std::string & key, const std::string & value) = 0;
    ///@}
};

/// The shape of a value. What its operations return stays the detail's, and is valid until its next change. The order
/// of the virtual operations is a binary contract.
class CONFIGTOOLS_EXPORT IMetadataDetail
{
public:
    /// Null in every class, also for the name of a field, intended: the record of a field has its name, and a struct
    /// stores no second one. `GetStructFields` is the way to a field.
    virtual const CStructField * GetStructField(const std::string & name) = 0;

    /// The fields of a struct in their current order; null for all other details.
    virtual const std::vector<const CStructField *> * GetStructFields() = 0;

    /// The enumerators by name; null for all details but an enumeration.
    virtual const std::map<std::string, int> * GetEnums() = 0;

    /// The records of all fields, one after the other, each item followed by `separator`; empty for all details but a
    /// struct.
    virtual std::string ToString(const std::string & separator) = 0;

    /// Walks the value once: calls `Int`, `String` or `Enum`, or `StartStruct`, the fields in their order and
    /// `EndStruct`.
    virtual void Inspect(IMetadataInspectorObserver & observer) = 0;
    virtual ~IMetadataDetail() = default;
};

/// A record, read-only. Texts are returned by value, and are empty if the provider has none. The order of the virtual
/// operations is a binary contract.
class CONFIGTOOLS_EXPORT IMetadata
{
public:
    /// The identity of the record in its repository.
    virtual int Uid() const = 0;

    /// The number of the key; 0 for the record of a field within a struct.
    virtual std::uint32_t PsId() const = 0;

    /// The name of the key or field, by which files and lookups name it.
    virtual std::string Name() const = 0;

    /// The name for people.
    virtual std::string Label() const = 0;

    /// The category under which tools list the key.
    virtual std::string Category() const = 0;

    /// Whether the key is for the maker of the chip only.
    virtual bool IsInternal() const = 0;

    /// How the value is presented: one of the `keywords::FORMAT_` texts. It decides about the sign of struct fields
    /// too.
    virtual std::string Format() const = 0;

    /// The lowest value; of a text or octet string the least length in bytes. For "uint64" the 64 bits are read as
    /// unsigned.
    virtual std::int64_t Min() const = 0;

    /// The highest value; otherwise as `Min`.
    virtual std::int64_t Max() const = 0;

    /// The object identifier, in the words of the repository.
    virtual std::string Oid() const = 0;

    /// The storage type: one of the `keywords::TYPE_` texts.
    virtual std::string InternalType() const = 0;

    /// The unit of the value, for people.
    virtual std::string Units() const = 0;

    /// Whether the value has several items.
    virtual bool IsArray() const = 0;

    /// The least number of items of an array.
    virtual std::int64_t ArrayMinLength() const = 0;

    /// The greatest number of items of an array.
    virtual std::int64_t ArrayMaxLength() const = 0;

    /// The name of the table to which the key belongs.
    virtual std::string TableName() const = 0;

    /// A description for people.
    virtual std::string Description() const = 0;

    /// A description for the maker of the chip.
    virtual std::string DescriptionInternal() const = 0;

    /// Where the key is defined.
    virtual std::string SourceReference() const = 0;

    /// The default value as text. The values that the library uses come from the reader side of a provider.
    virtual std::string SourceDefault() const = 0;

    /// What a tool may do with the key on the device: one of the `keywords::ACCESS_` texts.
    virtual std::string AccessRights() const = 0;

    /// When a change takes effect, in the words of the repository.
    virtual std::string Temporality() const = 0;

    /// The hash of the record, in the words of the repository.
    virtual std::string Hash() const = 0;

    /// The shape of the value.
    virtual MetadataTypeEnum MetadataType() const = 0;

    /// The detail of the value, or null; it stays the record's.
    virtual IMetadataDetail * Details() const = 0;

    /// Whether this is the record of a key or field: false for the null record only.
    virtual bool IsValid() const = 0;

    /// The number of indices that the provider declared, which may differ from those added.
    virtual std::uint32_t NumIndices() const = 0;

    /// Index number `position`, from 1, which stays the record's. Null for 0 and past the indices added, and always
    /// null if none are declared.
    virtual CTableIndex * TableIndex(std::uint16_t position) const = 0;

    /// The record as one line, each item followed by `separator`, and the detail behind it. Array lengths and the
    /// number of indices are not printed, intended: tools compare these lines.
    virtual std::string ToString(const std::string & separator) const = 0;

    /// Walks the record: `StartElement` and the indices, only if `PsId` isn't 0; then the detail, once, or for an
    /// array once for each item until the observer ends it; then `EndElement`. A field that is an array of structs
    /// ends after one item whatever the observer returns, intended: the codec unpacks all items at once.
    virtual void Inspect(IMetadataInspectorObserver & observer) const = 0;

    virtual ~IMetadata() = default;
};

/// The one concrete record. It owns its detail and its table indices.
///
/// Copies share these with their source, intended: plug-ins copy records to change a text. So a record and its copy
/// may not both be destroyed: never put records by value into a container. The former detail and indices of a record
/// that is assigned to are not freed, because another copy may share them.
class CONFIGTOOLS_EXPORT CMetadata : public IMetadata
{
public:
    /// A record with all texts empty, all numbers 0, and the type `METADATA_NONE`.
    CMetadata();

    /// A record without detail and indices; each argument is what the operation of its name returns.
    CMetadata(int uid, std::uint32_t psId, const std::string & name, const std::string & label,
        const std::string & category, bool isInternal, const std::string & format, std::int64_t min,
        std::int64_t max, const std::string & oid, const std::string & internalType, const std::string & units,
        bool isArray, std::int64_t arrayMinLength, std::int64_t arrayMaxLength, const std::string & tableName,
        const std::string & description, const std::string & descriptionInternal,
        const std::string & sourceReference, const std::string & sourceDefault,
        const std::string & accessRights, const std::string & temporality, const std::string & hash,
        std::uint32_t numIndices, MetadataTypeEnum metadataType);

    /// Copies share the detail and the table indices; see above.
    ///@{
    CMetadata(const CMetadata & other);
    CMetadata & operator=(const CMetadata & other);
    ///@}

    /// Deletes the detail and the table indices.
    ~CMetadata() override;

    int Uid() const override;
    std::uint32_t PsId() const override;
    std::string Name() const override;
    std::string Label() const override;
    std::string Category() const override;
    bool IsInternal() const override;
    std::string Format() const override;
    std::int64_t Min() const override;
    std::int64_t Max() const override;
    std::string Oid() const override;
    std::string InternalType() const override;
    std::string Units() const override;
    bool IsArray() const override;
    std::int64_t ArrayMinLength() const override;
    std::int64_t ArrayMaxLength() const override;
    std::string TableName() const override;
    std::string Description() const override;
    std::string DescriptionInternal() const override;
    std::string SourceReference() const override;
    std::string SourceDefault() const override;
    std::string AccessRights() const override;
    std::string Temporality() const override;
    std::string Hash() const override;
    MetadataTypeEnum MetadataType() const override;
    IMetadataDetail * Details() const override;
    bool IsValid() const override;
    std::uint32_t NumIndices() const override;
    CTableIndex * TableIndex(std::uint16_t position) const override;
    std::string ToString(const std::string & separator) const override;
    void Inspect(IMetadataInspectorObserver & observer) const override;

    /// Attaches the detail, which belongs to the record from now on. A former one is dropped without being deleted,
    /// intended, because a walk may be in it.
    void SetDetails(IMetadataDetail & details);

    /// Appends an index, which belongs to the record from now on, also if memory runs out in the call. A null index
    /// takes a position and is not inspected.
    void AddTableIndex(CTableIndex * index);

private:
    void InspectIndices(IMetadataInspectorObserver & observer) const;
    void InspectDetails(IMetadataInspectorObserver & observer) const;
    void Swap(CMetadata & other) noexcept;

    int mUid;
    std::uint32_t mPsId;   // 0 marks a field within a struct
    std::string mName;
    std::string mLabel;
    std::string mCategory;
    bool mIsInternal;
    std::string mFormat;
    std::int64_t mMin;
    std::int64_t mMax;
    std::string mOid;
    std::string mInternalType;   // a TYPE_ keyword
    std::string mUnits;
    bool mIsArray;
    std::int64_t mArrayMinLength;
    std::int64_t mArrayMaxLength;
    std::string mTableName;
    std::string mDescription;
    std::string mDescriptionInternal;
    std::string mSourceReference;
    std::string mSourceDefault;
    std::string mAccessRights;
    std::string mTemporality;
    std::string mHash;
    std::uint32_t mNumIndices;
    MetadataTypeEnum mMetadataType;
    IMetadataDetail * mDetails;                 // owned, may be null
    std::vector<CTableIndex *> mTableIndices;   // owned
};

/// The record that lookups return where there is none: `IsValid` is false and `Inspect` calls nothing. There is one
/// object, shared by all lookups of the process: never change or delete it.
class CONFIGTOOLS_EXPORT CNullMetadata : public CMetadata
{
public:
    /// The one object.
    static CNullMetadata & Ref() { return mInstance; }

    bool IsValid() const override;
    void Inspect(IMetadataInspectorObserver & observer) const override;

private:
    CNullMetadata();
    static CNullMetadata mInstance;
};

/// A plain value: an integer, or a text if the record's type is "string" or "octet_string".
class CONFIGTOOLS_EXPORT CMetadataDetailSimple : public IMetadataDetail
{
public:
    /// `metadata` is the record that this detail describes; it must outlive the detail.
    explicit CMetadataDetailSimple(const IMetadata & metadata);

    const CStructField * GetStructField(const std::string & name) override;
    const std::vector<const CStructField *> * GetStructFields() override;
    const std::map<std::string, int> * GetEnums() override;
    std::string ToString(const std::string & separator) override;
    void Inspect(IMetadataInspectorObserver & observer) override;

    /// The shape that this class describes: `METADATA_SIMPLE`, or that of the derived class.
    virtual MetadataTypeEnum MetadataType();

protected:
    /// The record described; not owned.
    const IMetadata * mMetadata;
};

/// An enumeration. It differs from `CTableIndex` on unknown names and on names that share a number, intended: either
/// class does what the tools that use it rely on.
class CONFIGTOOLS_EXPORT CMetadataDetailEnum : public CMetadataDetailSimple
{
public:
    /// An enumeration without enumerators, of a record that must outlive it.
    explicit CMetadataDetailEnum(const IMetadata & metadata);

    /// Copies the enumerators; both describe the same record.
    CMetadataDetailEnum(const CMetadataDetailEnum & other) = default;

    /// Takes the enumerators and the record of `other`.
    CMetadataDetailEnum & operator=(const CMetadataDetailEnum & other);

    const std::map<std::string, int> * GetEnums() override;
    void Inspect(IMetadataInspectorObserver & observer) override;
    MetadataTypeEnum MetadataType() override;

    /// Stores the decimal number that `value` begins with, 0 if there is none, under `name`, in place of an earlier
    /// one.
    void AddEnum(const std::string & name, const std::string & value);

    /// The number of `name`. An unknown name is added with the number 0, intended: tools complete an enumeration so.
    /// `GetEnums` is the way to search without adding.
    int EnumValue(const std::string & name);

    /// The last name, in name order, with this number; empty if there is none.
    std::string EnumName(std::int32_t value) const;

private:
    std::map<std::string, int> mEnums;
};

/// A struct of bit fields, with the layout of its packed form. `CStructCodec` packs and unpacks by it.
class CONFIGTOOLS_EXPORT CMetadataDetailStruct : public CMetadataDetailSimple
{
public:
    /// A struct without fields, of a record that must outlive it. `isLittleEndian` is the byte order of the target;
    /// `isOctetsInBin` says that the raw form is one string of octets rather than a series of words.
    CMetadataDetailStruct(const IMetadata & metadata, bool isLittleEndian, bool isOctetsInBin);
    CMetadataDetailStruct(const CMetadataDetailStruct &) = delete;
    CMetadataDetailStruct & operator=(const CMetadataDetailStruct &) = delete;

    /// Deletes the fields, but not their records.
    ~CMetadataDetailStruct() override;

    const std::vector<const CStructField *> * GetStructFields() override;
    std::string ToString(const std::string & separator) override;
    void Inspect(IMetadataInspectorObserver & observer) override;
    MetadataTypeEnum MetadataType() override;

    /// Appends a field. The name is ignored, intended: the record of the field has it. The record stays its
    /// provider's and must outlive the struct; a field with a null record is an error when it is inspected, and
    /// prints as nothing. Position and width are in bits; position 0 is the least significant bit of the first word.
    void AddField(
        const std::string & name, const IMetadata * metadata, int elemLsbBitPosition, int elemBitWidth);

    /// Whether the target is little-endian; decides about the words of wide fields.
    bool IsLittleEndian() const;

    /// Whether the raw form is one string of octets.
    bool IsOctetsInBin() const;

    /// Brings the fields into the order in which the target stores them: ascending by position, and for a big-endian
    /// target reversed within each 16-bit word. Call it once, after the last `AddField`.
    ///
    /// A last run that doesn't end on a word boundary stays unreversed, and a struct that contains structs has only
    /// those reordered; both are intended, since the order of the fields is that of the payloads in existing files.
    void OrderFieldsForTargetArchitecture();

    /// Sorts the fields by ascending position; fields at one position stay in their order.
    void SortByAscendingBitPosition();

    /// Whether a field is itself a struct.
    bool IsNested() const;

private:
    friend class CStructPlan;

    void OrderFieldsOfInnerStructs();

    std::vector<const CStructField *> mFields;   // owned
    bool mIsLittleEndian;
    bool mIsOctetsInBin;
    std::shared_ptr<const CStructPlan> mPlan;   // how the codec packs this struct; null before the first time
    std::uint64_t mPlanChanges = 0;             // valid while the metadata's count of changes is this one
};

/// One bit field of a struct. `CMetadataDetailStruct::AddField` makes it.
class CONFIGTOOLS_EXPORT CStructField
{
public:
    /// A field with a record that stays its provider's; position and width are in bits.
    CStructField(const IMetadata * metadata, int elemLsbBitPosition, int elemBitWidth);
    virtual ~CStructField();

    /// Inspects the record of the field. Without a record it is an error in `GROUP_FRAMEWORK`.
    virtual void Inspect(IMetadataInspectorObserver & observer) const;

    /// The record of the field, which stays its provider's; may be null.
    const IMetadata * Metadata() const;

    /// The position of the least significant bit within the struct, in bits.
    int ElemLsbBitPos() const;

    /// The width in bits.
    int ElemBitWidth() const;

private:
    const IMetadata * mMetadata;
    int mElemLsbBitPos;
    int mElemBitWidth;
};

/// One index of a table key: an integer in a range, or an enumerator.
class CONFIGTOOLS_EXPORT CTableIndex
{
public:
    /// The kind of an index. Any value but `INDEX_INTEGER` is an enumerated index.
    enum IndexTypeEnum : int
    {
        /// A number from `Min` to `Max`.
        INDEX_INTEGER = 0,
        /// One of the enumerators.
        INDEX_ENUM = 1
    };

    /// An index without enumerators; `min` and `max` are the lowest and the highest index.
    CTableIndex(const std::string & name, std::int64_t min, std::int64_t max, IndexTypeEnum type);

    /// The name of the index, for people and files.
    std::string Name() const;

    /// The lowest index.
    std::int64_t Min() const;

    /// The highest index.
    std::int64_t Max() const;

    /// The kind of the index.
    IndexTypeEnum Type() const;

    /// The enumerators by name; a copy.
    std::map<std::string, std::int32_t> Enums() const;

    /// The number of enumerators.
    std::size_t EnumCount() const;

    /// Stores the number `value` under `name`, in place of an earlier one.
    void AddEnum(const std::string & name, std::int32_t value);

    /// The number of `name`; -1 for an unknown name, which is not added.
    std::int32_t EnumValue(const std::string & name) const;

    /// The first name, in name order, with this number; empty if there is none.
    std::string EnumLabel(std::int32_t value) const;

private:
    std::string mName;
    std::int64_t mMin;
    std::int64_t mMax;
    IndexTypeEnum mType;
    std::map<std::string, std::int32_t> mEnums;
};

}   // namespace VrexZynConfigTools

#endif
