/// @file
/// Elements: the entries of a configuration. An element is a numbered, named key with a list of payloads as its value;
/// there is one class for each shape of key.
///
/// `Same` is the test whether two elements occupy the same place in a subsystem, `operator==` whether they have the
/// same number, name and value.
///
/// An element owns its payloads. Its metadata stays the provider's and must outlive it. No operation sets an error.
/// Null payloads in a list are skipped. Elements are not copied, and they are deleted by their owner, which is a
/// `CSubsystemConfig` from `OnElementFound` on. If memory runs out, `std::bad_alloc` passes through, nothing is
/// leaked, and the element is as it was, but where an operation says otherwise. Use an element from one thread at a
/// time.
///
/// @code
/// #include <memory>
///
/// std::unique_ptr<VrexZynConfigTools::CElement> VolumeAndBalance()
/// {
///     using namespace VrexZynConfigTools;
///     auto element = std::make_unique<CElementNumericArray>("int8", 320, "Levels", true);
///     element->SetValue(std::vector<std::int8_t>{ 80, -3 });
///     // KeyString() is "Levels", ToString() "80 -3", Size() 4.
///     return element;
/// }
/// @endcode

#ifndef CONFIGTOOLS_ELEMENTS_H
#define CONFIGTOOLS_ELEMENTS_H

#include <configtools/payloads.h>

#include <cstdint>
#include <string>
#include <vector>

namespace VrexZynConfigTools {

/// The base of all elements: number, name, payloads, metadata and the changed flag. The order of the virtual
/// operations is a binary contract.
class CONFIGTOOLS_EXPORT CElement : public IWritable, public IMetadataUser
{
public:
    /// An element without payloads and without metadata. `psId` is the key's number and `name` its name, which may be
    /// empty; `changed` is what `HasChanged` returns at first.
    CElement(std::uint32_t psId, const std::string & name, bool changed);

    /// Takes the payloads over: the element deletes them. The list itself is copied. No metadata is passed to them. If
    /// memory runs out there is no element, and the payloads stay the caller's.
    CElement(
        std::uint32_t psId, const std::string & name, const std::vector<IPayload *> & payload, bool changed);
    CElement(const CElement &) = delete;
    CElement & operator=(const CElement &) = delete;

    /// Calls on the writer `StartElement`, `WriteKeyId`, then the `Write` of each payload in order, and `EndElement`. A
    /// payload that fails doesn't end the loop. True if `GROUP_FRAMEWORK` has no error afterwards, of whatever origin.
    /// `HasChanged` is false then, also after a failure, intended: the flag says that the value was given to a writer.
    bool Write(IConfigWriter & writer, IConfigContext & context) override;

    /// Deletes the payloads, as the `ClearPayload` of this class does, whatever a derived class makes of that.
    ~CElement() override;

    /// Whether number, name and all payloads, in order, are equal; the payloads of the left element are asked. Class,
    /// changed flag, metadata and indices play no part: an element of another class can be equal, and two rows of one
    /// table with equal values are.
    virtual bool operator==(const CElement & other) const;

    /// The negation of `operator==`.
    virtual bool operator!=(const CElement & other) const;

    /// The name; a table row appends its indices.
    virtual std::string KeyString() const;

    /// The value as text for people; each class says what it is.
    virtual std::string ToString() const = 0;

    /// The size of the value in bytes; each class counts in its own way and says how, intended: the figures are those
    /// of the records in which stores save such elements.
    virtual std::uint64_t Size() const = 0;

    /// False for the null element only; an element with the number 0 is valid.
    virtual bool IsValid() const;

    /// Whether the value hasn't been written yet. The operations that change a value don't all set it; each says so.
    virtual bool HasChanged() const;

    /// Deletes all payloads. Pointers from `GetPayloadCopy(false)` are invalid then. `HasChanged` stays as it was.
    virtual void ClearPayload();

    /// Whether `other` occupies the same place: here, has the same number; the name plays no part. Not symmetric,
    /// intended: a plain element replaces every row with its number, and so is the same as a row, but a row replaces
    /// rows only and isn't the same as a plain element.
    virtual bool Same(CElement & other) const;

    /// Attaches the metadata that describes the element, and passes it on to every payload, each time it is called.
    /// Only the address is stored, which may be null. The metadata must outlive the element.
    void Use(IMetadata const & metadata) override;

    /// The metadata attached; null before `Use`.
    IMetadata const * Metadata() override;

    /// The name of the key, without indices; may be empty.
    std::string Name() const;

    /// The number of the key.
    std::uint32_t PsId() const;

    /// The payload pointers in order; the payloads are not duplicated. With `transfer` they belong to the caller, and
    /// the element is left without payloads; without it they stay the element's, and are valid only until it is
    /// written to or deleted. `HasChanged` stays as it was.
    std::vector<IPayload *> GetPayloadCopy(bool transfer);

    /// The same as `GetPayloadCopy(true)`.
    std::vector<IPayload *> TransferPayload();

    /// The sum of the lengths of all payloads, in bytes; 0 without payloads.
    std::uint64_t PayloadCollectionSize() const;

protected:
    friend class CElementIndex;

    /// The name of the key.
    std::string mName;
    /// The number of the key.
    std::uint32_t mPsId;
    /// What `HasChanged` returns.
    bool mChanged;
    /// Not owned; null until `Use` is called.
    IMetadata const * mMetadata;
    /// The value, owned; may contain null pointers that a constructor was given.
    std::vector<IPayload *> mPayload;
};

/// Stands for a missing element wherever a lookup returns a reference. `IsValid` is false, the number is 0 and the name
/// empty. There is one object, shared by all lookups of the process: never change or delete it.
class CONFIGTOOLS_EXPORT CNullElement : public CElement
{
public:
    /// The one object.
    static CNullElement & Ref() { return mInstance; }

    /// Returns false without a call on the writer. `HasChanged` stays true.
    bool Write(IConfigWriter & writer, IConfigContext & context) override;

    /// "invalid".
    std::string ToString() const override;

    /// 0.
    std::uint64_t Size() const override;

    /// False.
    bool IsValid() const override;

private:
    CNullElement();
    static CNullElement mInstance;
};

/// A text or an octet string, in one `CStringPayload`.
class CONFIGTOOLS_EXPORT CElementString : public CElement
{
public:
    /// An element with one payload. `isOctet` is true for a key of the type "octet_string".
    CElementString(
        std::uint32_t psId, const std::string & name, const std::string & value, bool isOctet, bool changed);

    /// Takes the payloads over, which have to be `CStringPayload` objects. `IsOctet` is true then, whatever the
    /// payloads say, intended: readers that deliver lists read octets.
    CElementString(
        std::uint32_t psId, const std::string & name, const std::vector<IPayload *> & payload, bool changed);

    /// As `CElement::Write`, but only the first payload is written, and it is given to `WritePayload` directly;
    /// without a payload none is.
    bool Write(IConfigWriter & writer, IConfigContext & context) override;

    /// The text of the first payload; empty without payloads.
    std::string ToString() const override;

    /// 2 plus the length of the first payload, in bytes; 2 without payloads.
    std::uint64_t Size() const override;

    /// Whether the value is an octet string rather than a text. The flag of a payload given to the constructor may
    /// differ.
    bool IsOctet() const;

    /// The text of payload number `index`, from 0; empty past the end and for a payload that is no string.
    std::string GetValue(std::uint16_t index) const;

    /// Replaces all payloads by one with this value, which gets the element's metadata. Nothing is compared, and
    /// `HasChanged` stays as it was, intended: a reader that corrects a value doesn't make it a new one.
    void SetValue(const std::string & value);

private:
    bool mIsOctet;
};

/// Integers of one type, one payload each; a single number is an array of one.
class CONFIGTOOLS_EXPORT CElementNumericArray : public CElement
{
public:
    /// An empty array of this type.
    CElementNumericArray(NumericTypeEnum type, std::uint32_t psId, const std::string & name, bool changed);

    /// An empty array of the type that a keyword such as "uint8" names, compared exactly. "integer" is signed 64
    /// bits. An unknown word gives `NUMERIC_NONE`, and no error.
    CElementNumericArray(
        const std::string & typeName, std::uint32_t psId, const std::string & name, bool changed);

    /// Takes the payloads over. `Type` is `NUMERIC_NONE` then, intended: the payloads may be of several types.
    /// `Value` and `SetValue` are of little use on such an element.
    CElementNumericArray(
        std::uint32_t psId, const std::string & name, const std::vector<IPayload *> & payload, bool changed);

    /// The texts of all payloads in order, joined by one blank; empty without payloads.
    std::string ToString() const override;

    /// 2 plus the lengths of all payloads, in bytes.
    std::uint64_t Size() const override;

    /// The type of the numbers.
    NumericTypeEnum Type() const;

    /// One entry for each payload, in order, with the bytes of its number at the low end. Negative numbers aren't
    /// sign-extended: read the member that fits `Type`. All entries are 0 for `NUMERIC_NONE`.
    const std::vector<NumericVariable> Value() const;

    /// Replaces the payloads by one for each value, which gets the element's metadata, and sets `HasChanged`; unless
    /// count and values are the same already: then payload objects and flag stay as they are.
    ///
    /// What counts is the type of this element, not that of the vector: wider values are cut down to their low bytes,
    /// narrower ones are extended by zeros, negative ones too. With `NUMERIC_NONE` no value is compared, and another
    /// count leaves no payload.
    ///@{
    void SetValue(const std::vector<std::uint8_t> & values);
    void SetValue(const std::vector<std::uint16_t> & values);
    void SetValue(const std::vector<std::uint32_t> & values);
    void SetValue(const std::vector<std::uint64_t> & values);
    void SetValue(const std::vector<std::int8_t> & values);
    void SetValue(const std::vector<std::int16_t> & values);
    void SetValue(const std::vector<std::int32_t> & values);
    void SetValue(const std::vector<std::int64_t> & values);
    void SetValue(const std::vector<NumericVariable> & values);
    ///@}

    /// A new payload of this type, with the low bytes of `value`; it belongs to the caller. Null for `NUMERIC_NONE` and
    /// any value outside the enumeration.
    static IPayload * GetPayloadByNumericType(NumericTypeEnum type, NumericVariable value);

private:
    NumericTypeEnum mNumericType;
};

/// A structure or an array of structures. Each payload is one of them as a `CComplexPayload`, with nested structures as
/// `CComplexPayload` fields.
class CONFIGTOOLS_EXPORT CElementStruct : public CElement
{
public:
    /// A structure without payloads.
    CElementStruct(std::uint32_t psId, const std::string & name, bool changed);

    /// "struct".
    std::string ToString() const override;

    /// The sum of the lengths of all payloads, in bytes.
    std::uint64_t Size() const override;

    /// Appends `field`, which belongs to the element from the call on, also if memory runs out in it. Gives it the
    /// element's metadata and sets `HasChanged`. Null is ignored.
    void AddField(IPayload * field);

    /// Appends a number with the element's metadata. `HasChanged` stays as it was, intended: the caller of this form
    /// builds a value, and has set the flag as it is to be. `NUMERIC_NONE` and values outside the enumeration add
    /// nothing.
    void AddField(NumericTypeEnum type, NumericVariable value);
};

/// One or more enumerators, one `CEnumPayload` each.
class CONFIGTOOLS_EXPORT CElementEnum : public CElement
{
public:
    /// An element without enumerators.
    CElementEnum(std::uint32_t psId, const std::string & name, bool changed);

    /// Takes the payloads over, which have to be `CEnumPayload` objects.
    CElementEnum(
        std::uint32_t psId, const std::string & name, const std::vector<IPayload *> & payload, bool changed);

    /// The name of the first enumerator; empty without payloads.
    std::string ToString() const override;

    /// Always 0, intended: stores save an enumerator within the record of its key. `PayloadCollectionSize` counts 4
    /// bytes for each.
    std::uint64_t Size() const override;

    /// Appends an enumerator with the element's metadata; `HasChanged` stays as it was.
    void AddEnum(const std::string & name, std::int32_t value);

    /// Sets `name` and `value` to those of enumerator number `index`, from 0. False, with both untouched, past the end
    /// and for a payload that is no enumerator.
    bool GetEnum(std::uint16_t index, std::string & name, std::int32_t & value) const;
};

/// Payloads without a known meaning, such as the words of a key without metadata. Reader plug-ins make it; the library
/// makes none.
class CONFIGTOOLS_EXPORT CElementRaw : public CElement
{
public:
    /// Takes the payloads over.
    CElementRaw(
        std::uint32_t psId, const std::string & name, const std::vector<IPayload *> & payload, bool changed);

    /// As `CElement::Write`, with the context's tag "rawmode" at "true" for its duration. Afterwards the tag is
    /// "false", whatever it was before, intended: writers test it for "true", and one that was left set would make
    /// the next element raw.
    bool Write(IConfigWriter & writer, IConfigContext & context) override;

    /// "raw".
    std::string ToString() const override;

    /// The sum of the lengths of all payloads, in bytes.
    std::uint64_t Size() const override;
};

/// One row of a table key: number and name of the table, the index values of the row, and its payloads. A
/// `CSubsystemConfig` makes it of an element that arrives with indices in its context.
///
/// The indices play no part in `operator==`, which compares values; `Same` compares them.
class CONFIGTOOLS_EXPORT CIndexedElement : public CElement
{
public:
    /// Takes the payloads over; both lists are copied. The row has no metadata at first.
    CIndexedElement(std::uint32_t psId, const std::string & name, const std::vector<std::uint32_t> & indices,
        const std::vector<IPayload *> & payload, bool changed);

    /// As `CElement::Write`, with `WriteNamedData` for "num_indices" and each "index" ahead of the payloads.
    ///
    /// A row that doesn't fit its metadata is written raw: with the tag "rawmode" at "true", which is deleted
    /// afterwards if this row set it (`CElementRaw` leaves "false" instead, intended: rows are written between other
    /// elements of their key and leave no trace). A row doesn't fit if it has a number but no name and no valid
    /// metadata, if it has several payloads and isn't an array, or if it is a struct by its metadata and its first
    /// payload is not. A row without metadata is written as one with the null record.
    bool Write(IConfigWriter & writer, IConfigContext & context) override;
    ~CIndexedElement() override;

    /// The name, and each index after a dot: "NAME.3.7".
    std::string KeyString() const override;

    /// The text of the first payload; empty without payloads.
    std::string ToString() const override;

    /// 4 for each index plus the lengths of all payloads, in bytes.
    std::uint64_t Size() const override;

    /// Whether `other` has the same number and is a row with the same indices. False for a plain element.
    bool Same(CElement & other) const override;

    /// The number of indices.
    std::uint32_t NumIndices() const;

    /// The index value at `position`, from 0; 0 past the end.
    std::uint32_t Index(std::uint32_t position) const;

    /// The index values in decimal, joined by dots: "3.7"; empty without indices.
    std::string Indices() const;

    /// The payloads in order; list and payloads stay the element's.
    const std::vector<IPayload *> & Payload() const;

private:
    std::vector<std::uint32_t> mIndices;
};

}   // namespace VrexZynConfigTools

#endif
