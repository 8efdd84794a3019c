/// Metadata: what a key means. A record (`CMetadata`) says what a key is called, its range, its array shape and its
/// table indices; its detail object says what the value looks like: a plain value, an enumeration, a struct of bit
/// fields. `Inspect` walks a key's shape and calls an observer in a fixed order.
///
/// A metadata plug-in builds the records, which live as long as their provider; elements and payloads point at them.
/// A record owns its detail and its table indices; a detail points back at its record. No operation fails: what is
/// absent is a null pointer or an empty text.
///
/// One thread at a time: the library takes no lock and has no thread-local state. An object isn't shared between
/// threads, and reading a record counts as using it: a struct's detail stores what the codec worked out from it. Separate
/// chips may be used on separate threads, one after the other.
///
/// Bad metadata ends a walk early with an error in `GROUP_FRAMEWORK`, and with what was opened closed: structs nested
/// more than 64 deep, such as a struct that holds itself, and more than 65536 structs within one.

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

/// Follows the structure of a key while it is inspected.
class CONFIGTOOLS_EXPORT IMetadataLayoutInspectorObserver
{
public:
    virtual void StartElement(const IMetadata & metadata) = 0;
    virtual void EndElement() = 0;
    virtual void StartStruct(const IMetadata & metadata) = 0;
    virtual void EndStruct() = 0;
    virtual void StartArrayItem() = 0;
    virtual void EndArrayItem() = 0;
    virtual ~IMetadataLayoutInspectorObserver() = default;
};

/// Follows structure and values of a key while it is inspected.
class CONFIGTOOLS_EXPORT IMetadataInspectorObserver : public IMetadataLayoutInspectorObserver
{
public:
    virtual void IntIndex(const CTableIndex & index) = 0;
    virtual void EnumIndex(const CTableIndex & index) = 0;
    virtual void Int(const IMetadata & metadata) = 0;
    virtual void String(const IMetadata & metadata) = 0;
    virtual void Enum(const IMetadata & metadata) = 0;

    /// Asked after each item of an array: whether there is another one.
    virtual bool InspectDetailAgain() = 0;

    /// Side information: "elembitwidth" with a field's width in bits ahead of each struct field, and with an empty
    /// text after the last.
    virtual void SetContextInfo(const std::string & key, int value) = 0;
    virtual void SetContextInfo(const std::string & key, const std::string & value) = 0;
};

/// The shape of a value. Pointers that it returns stay its own.
class CONFIGTOOLS_EXPORT IMetadataDetail
{
public:
    /// Null in every class, also for the name of a field: field names aren't kept, intended. Use `GetStructFields`.
    virtual const CStructField * GetStructField(const std::string & name) = 0;

    /// The fields of a struct in their current order; null for all other details.
    virtual const std::vector<const CStructField *> * GetStructFields() = 0;

    /// The enumerators by name; null for all details but an enumeration.
    virtual const std::map<std::string, int> * GetEnums() = 0;

    virtual std::string ToString(const std::string & separator) = 0;
    virtual void Inspect(IMetadataInspectorObserver & observer) = 0;
    virtual ~IMetadataDetail() = default;
};

/// A record, read-only. Texts are returned by value. The order of the virtual operations is a binary contract.
class CONFIGTOOLS_EXPORT IMetadata
{
public:
    virtual int Uid() const = 0;
    virtual std::uint32_t PsId() const = 0;
    virtual std::string Name() const = 0;
    virtual std::string Label() const = 0;
    virtual std::string Category() const = 0;
    virtual bool IsInternal() const = 0;
    virtual std::string Format() const = 0;
    virtual std::int64_t Min() const = 0;
    virtual std::int64_t Max() const = 0;
    virtual std::string Oid() const = 0;
    virtual std::string InternalType() const = 0;
    virtual std::string Units() const = 0;
    virtual bool IsArray() const = 0;
    virtual std::int64_t ArrayMinLength() const = 0;
    virtual std::int64_t ArrayMaxLength() const = 0;
    virtual std::string TableName() const = 0;
    virtual std::string Description() const = 0;
    virtual std::string DescriptionInternal() const = 0;
    virtual std::string SourceReference() const = 0;
    virtual std::string SourceDefault() const = 0;
    virtual std::string AccessRights() const = 0;
    virtual std::string Temporality() const = 0;
    virtual std::string Hash() const = 0;
    virtual MetadataTypeEnum MetadataType() const = 0;

    /// The value's shape, or null; it stays the record's.
    virtual IMetadataDetail * Details() const = 0;

    /// False for the null record only.
    virtual bool IsValid() const = 0;

    /// The number of indices that the provider declared, which may differ from those added.
    virtual std::uint32_t NumIndices() const = 0;

    /// Index number `position`, counted from 1; null past those added, and always null if none are declared.
    virtual CTableIndex * TableIndex(std::uint16_t position) const = 0;

    /// The record as one line; array lengths and the number of indices are not printed, intended.
    virtual std::string ToString(const std::string & separator) const = 0;

    /// Walks the record: element and indices (only if `PsId` isn't 0: a record with 0 is a field within a struct),
    /// then the detail, once, or for an array once per item until the observer ends it. A field that is an array of
    /// structs ends after one item whatever the observer answers, intended.
    virtual void Inspect(IMetadataInspectorObserver & observer) const = 0;

    virtual ~IMetadata() = default;
};

/// The one concrete record. Copies share detail and table indices with their source, so a record and its copy may not
/// both be destroyed: never hold records by value in a container. What a record held before it is assigned to is
/// forgotten without being freed, because another copy may share it.
class CONFIGTOOLS_EXPORT CMetadata : public IMetadata
{
public:
    /// All texts empty, all numbers 0, `METADATA_NONE`.
    CMetadata();
    CMetadata(int uid, std::uint32_t psId, const std::string & name, const std::string & label,
        const std::string & category, bool isInternal, const std::string & format, std::int64_t min,
        std::int64_t max, const std::string & oid, const std::string & internalType, const std::string & units,
        bool isArray, std::int64_t arrayMinLength, std::int64_t arrayMaxLength, const std::string & tableName,
        const std::string & description, const std::string & descriptionInternal,
        const std::string & sourceReference, const std::string & sourceDefault,
        const std::string & accessRights, const std::string & temporality, const std::string & hash,
        std::uint32_t numIndices, MetadataTypeEnum metadataType);
    CMetadata(const CMetadata & other);
    CMetadata & operator=(const CMetadata & other);
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

    /// Attaches the shape. The record owns the object from now on; one set before is dropped without being deleted,
    /// intended, because elements may still be walking it.
    void SetDetails(IMetadataDetail & details);

    /// Appends an index, which belongs to the record from now on. A null index takes a position and is not inspected.
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

/// The record that stands for no metadata: `IsValid` is false and `Inspect` calls nothing.
class CONFIGTOOLS_EXPORT CNullMetadata : public CMetadata
{
public:
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
    /// The record that this detail describes; it must outlive the detail.
    explicit CMetadataDetailSimple(const IMetadata & metadata);

    const CStructField * GetStructField(const std::string & name) override;
    const std::vector<const CStructField *> * GetStructFields() override;
    const std::map<std::string, int> * GetEnums() override;
    std::string ToString(const std::string & separator) override;
    void Inspect(IMetadataInspectorObserver & observer) override;
    virtual MetadataTypeEnum MetadataType();

protected:
    const IMetadata * mMetadata;   // not owned
};

/// An enumeration. It differs from `CTableIndex` on unknown names and shared values; both are intended.
class CONFIGTOOLS_EXPORT CMetadataDetailEnum : public CMetadataDetailSimple
{
public:
    explicit CMetadataDetailEnum(const IMetadata & metadata);
    CMetadataDetailEnum(const CMetadataDetailEnum & other) = default;
    CMetadataDetailEnum & operator=(const CMetadataDetailEnum & other);

    const std::map<std::string, int> * GetEnums() override;
    void Inspect(IMetadataInspectorObserver & observer) override;
    MetadataTypeEnum MetadataType() override;

    /// Stores the number that `value` begins with (decimal; 0 for none) under `name`, in place of an earlier one.
    void AddEnum(const std::string & name, const std::string & value);

    /// The number of `name`. An unknown name is added with the number 0, intended; `GetEnums` looks without adding.
    int EnumValue(const std::string & name);

    /// The last name, in name order, with this number; empty for none.
    std::string EnumName(std::int32_t value) const;

private:
    std::map<std::string, int> mEnums;
};

/// A struct of bit fields, with the layout of its packed form.
class CONFIGTOOLS_EXPORT CMetadataDetailStruct : public CMetadataDetailSimple
{
public:
    /// `isOctetsInBin`: the raw form is one string of octets rather than a series of words.
    CMetadataDetailStruct(const IMetadata & metadata, bool isLittleEndian, bool isOctetsInBin);
    CMetadataDetailStruct(const CMetadataDetailStruct &) = delete;
    CMetadataDetailStruct & operator=(const CMetadataDetailStruct &) = delete;
    ~CMetadataDetailStruct() override;

    const std::vector<const CStructField *> * GetStructFields() override;
    std::string ToString(const std::string & separator) override;
    void Inspect(IMetadataInspectorObserver & observer) override;
    MetadataTypeEnum MetadataType() override;

    /// Appends a field. The name is ignored, intended: the field's record has it. The record stays its provider's;
    /// a field without one, null, is an error when it is inspected and prints as nothing.
    /// Position and width are in bits; position 0 is the least significant bit of the first word.
    void AddField(
        const std::string & name, const IMetadata * metadata, int elemLsbBitPosition, int elemBitWidth);

    bool IsLittleEndian() const;
    bool IsOctetsInBin() const;

    /// Brings the fields into the order in which the target holds them: ascending, and for a big-endian target
    /// reversed within each 16-bit word. A last run that doesn't end on a word boundary stays unreversed, and a
    /// struct that holds structs has only those reordered; both intended.
    void OrderFieldsForTargetArchitecture();

    /// Fields at one position keep their order.
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

/// One bit field of a struct.
class CONFIGTOOLS_EXPORT CStructField
{
public:
    CStructField(const IMetadata * metadata, int elemLsbBitPosition, int elemBitWidth);
    virtual ~CStructField();
    virtual void Inspect(IMetadataInspectorObserver & observer) const;   // inspects the field's own record

    const IMetadata * Metadata() const;   // the provider's
    int ElemLsbBitPos() const;            // bit position of the least significant bit
    int ElemBitWidth() const;             // in bits

private:
    const IMetadata * mMetadata;
    int mElemLsbBitPos;
    int mElemBitWidth;
};

/// One index of a table key: an integer in a range, or an enumerator.
class CONFIGTOOLS_EXPORT CTableIndex
{
public:
    /// Any value but `INDEX_INTEGER` is an enumerated index.
    enum IndexTypeEnum : int
    {
        INDEX_INTEGER = 0,
        INDEX_ENUM = 1
    };

    CTableIndex(const std::string & name, std::int64_t min, std::int64_t max, IndexTypeEnum type);

    std::string Name() const;
    std::int64_t Min() const;
    std::int64_t Max() const;
    IndexTypeEnum Type() const;
    std::map<std::string, std::int32_t> Enums() const;   // a copy
    std::size_t EnumCount() const;

    void AddEnum(const std::string & name, std::int32_t value);

    /// The number of `name`; -1 for an unknown one, which is not added.
    std::int32_t EnumValue(const std::string & name) const;

    /// The first name, in name order, with this number; empty for none.
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
