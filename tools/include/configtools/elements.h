/// Elements: the entries of a configuration. An element is a numbered, named key with a list of payloads as its value;
/// one class per shape of key. `Same` asks whether two elements occupy the same place, `operator==` whether they have
/// the same number, name and value.
///
/// An element owns its payloads and holds a pointer to its metadata, which must outlive it. No operation sets an
/// error. Null payloads in a list are passed over. Elements are not copied; they die with their owner.

#ifndef CONFIGTOOLS_ELEMENTS_H
#define CONFIGTOOLS_ELEMENTS_H

#include <configtools/payloads.h>

#include <cstdint>
#include <string>
#include <vector>

namespace VrexZynConfigTools {

/// Base of all elements. The order of the virtual operations is a binary contract.
class CONFIGTOOLS_EXPORT CElement : public IWritable, public IMetadataUser
{
public:
    CElement(std::uint32_t psId, const std::string & name, bool changed);

    /// Takes over the payloads; the list itself is copied. No metadata is passed to them. If memory runs out there is
    /// no element, and the payloads stay the caller's.
    CElement(
        std::uint32_t psId, const std::string & name, const std::vector<IPayload *> & payload, bool changed);
    CElement(const CElement &) = delete;
    CElement & operator=(const CElement &) = delete;

    /// Gives the writer start, key number, each payload in order, and end; then `HasChanged` is false, also after
    /// a failure. A payload that fails doesn't end the loop.
    bool Write(IConfigWriter & writer, IConfigContext & context) override;
    ~CElement() override;

    /// Number, name and payloads, in order. Class, changed flag, metadata and indices play no part.
    virtual bool operator==(const CElement & other) const;
    virtual bool operator!=(const CElement & other) const;

    /// The name; a table row adds its indices.
    virtual std::string KeyString() const;
    virtual std::string ToString() const = 0;

    /// In bytes; each class counts in its own way, as its header says.
    virtual std::uint64_t Size() const = 0;

    /// False for the null element only.
    virtual bool IsValid() const;

    /// Whether the value hasn't been written yet.
    virtual bool HasChanged() const;

    /// Deletes all payloads.
    virtual void ClearPayload();

    /// Whether `other` occupies the same place: here, has the same key number. Not symmetric, intended: a plain
    /// element is the same as a table row of its number, but not the other way round.
    virtual bool Same(CElement & other) const;

    /// Keeps the address, which may be null, and passes it on to every payload, each time.
    void Use(IMetadata const & metadata) override;
    IMetadata const * Metadata() override;

    std::string Name() const;
    std::uint32_t PsId() const;

    /// The payload pointers in order; payloads are never duplicated. With `transfer` they belong to the caller and
    /// the element is left empty; without it they stay the element's and are valid only as long as it holds them.
    std::vector<IPayload *> GetPayloadCopy(bool transfer);
    std::vector<IPayload *> TransferPayload();   // GetPayloadCopy(true)

    /// Sum of the payloads' lengths, in bytes.
    std::uint64_t PayloadCollectionSize() const;

protected:
    friend class CElementIndex;

    std::string mName;
    std::uint32_t mPsId;
    bool mChanged;
    IMetadata const * mMetadata;        // not owned; null until Use is called
    std::vector<IPayload *> mPayload;   // owned
};

/// Stands for a missing element wherever a lookup returns a reference. It has the number 0, no name, and `Write`
/// returns false without a call on the writer.
class CONFIGTOOLS_EXPORT CNullElement : public CElement
{
public:
    /// The one object; it must not be deleted. It is shared: don't change it.
    static CNullElement & Ref() { return mInstance; }

    bool Write(IConfigWriter & writer, IConfigContext & context) override;
    std::string ToString() const override;   // "invalid"
    std::uint64_t Size() const override;     // 0
    bool IsValid() const override;           // false

private:
    CNullElement();
    static CNullElement mInstance;
};

/// A text or an octet string. `Size` is 2 plus the length of the first payload.
class CONFIGTOOLS_EXPORT CElementString : public CElement
{
public:
    CElementString(
        std::uint32_t psId, const std::string & name, const std::string & value, bool isOctet, bool changed);

    /// `IsOctet` is true then, whatever the payloads say, intended.
    CElementString(
        std::uint32_t psId, const std::string & name, const std::vector<IPayload *> & payload, bool changed);

    /// Writes the first payload only, and that directly.
    bool Write(IConfigWriter & writer, IConfigContext & context) override;
    std::string ToString() const override;   // the first payload's text
    std::uint64_t Size() const override;

    bool IsOctet() const;

    /// The text of payload number `index`, from 0; empty past the end and for a payload that is no string.
    std::string GetValue(std::uint16_t index) const;

    /// Replaces all payloads by one. Nothing is compared, and `HasChanged` stays as it was, intended.
    void SetValue(const std::string & value);

private:
    bool mIsOctet;
};

/// Integers of one type. `Size` is 2 plus the lengths of all payloads.
class CONFIGTOOLS_EXPORT CElementNumericArray : public CElement
{
public:
    CElementNumericArray(NumericTypeEnum type, std::uint32_t psId, const std::string & name, bool changed);

    /// By a type keyword such as "uint8"; "integer" is signed 64 bits, and an unknown word gives `NUMERIC_NONE`.
    CElementNumericArray(
        const std::string & typeName, std::uint32_t psId, const std::string & name, bool changed);

    /// `Type` is `NUMERIC_NONE` then: it isn't derived from the payloads, and `Value` and `SetValue` are of little use.
    CElementNumericArray(
        std::uint32_t psId, const std::string & name, const std::vector<IPayload *> & payload, bool changed);

    std::string ToString() const override;   // the payloads' texts, joined by one blank
    std::uint64_t Size() const override;

    NumericTypeEnum Type() const;

    /// One entry per payload, its low bytes set; negative numbers aren't sign-extended. Zeros for `NUMERIC_NONE`.
    const std::vector<NumericVariable> Value() const;

    /// Replaces the payloads and sets `HasChanged`, unless count and values are the same: then nothing changes.
    /// What counts is this element's type, not that of the vector: wider values are cut down to their low bytes,
    /// narrower ones are zero-extended. With `NUMERIC_NONE` a differing count leaves no payload.
    void SetValue(const std::vector<std::uint8_t> & values);
    void SetValue(const std::vector<std::uint16_t> & values);
    void SetValue(const std::vector<std::uint32_t> & values);
    void SetValue(const std::vector<std::uint64_t> & values);
    void SetValue(const std::vector<std::int8_t> & values);
    void SetValue(const std::vector<std::int16_t> & values);
    void SetValue(const std::vector<std::int32_t> & values);
    void SetValue(const std::vector<std::int64_t> & values);
    void SetValue(const std::vector<NumericVariable> & values);

    /// A new payload that belongs to the caller, with the low bytes of `value`; null for no numeric type.
    static IPayload * GetPayloadByNumericType(NumericTypeEnum type, NumericVariable value);

private:
    NumericTypeEnum mNumericType;
};

/// A structure; nested structures and arrays of them are `CComplexPayload` fields. `Size` is that of the payloads.
class CONFIGTOOLS_EXPORT CElementStruct : public CElement
{
public:
    CElementStruct(std::uint32_t psId, const std::string & name, bool changed);

    std::string ToString() const override;   // "struct"
    std::uint64_t Size() const override;

    /// Appends `field`, which belongs to the element from the call on, also if memory runs out in it; gives it the
    /// element's metadata and sets `HasChanged`. Null is ignored.
    void AddField(IPayload * field);

    /// As above for a number, but `HasChanged` stays as it was, intended. An unknown type adds nothing.
    void AddField(NumericTypeEnum type, NumericVariable value);
};

/// One or more enumerators. `Size` is 0, always, intended.
class CONFIGTOOLS_EXPORT CElementEnum : public CElement
{
public:
    CElementEnum(std::uint32_t psId, const std::string & name, bool changed);
    CElementEnum(
        std::uint32_t psId, const std::string & name, const std::vector<IPayload *> & payload, bool changed);

    std::string ToString() const override;   // the first enumerator's name
    std::uint64_t Size() const override;

    /// Appends an enumerator; `HasChanged` stays as it was.
    void AddEnum(const std::string & name, std::int32_t value);

    /// Name and number of enumerator `index`, from 0. False, with both untouched, past the end and for a payload
    /// that is no enumerator.
    bool GetEnum(std::uint16_t index, std::string & name, std::int32_t & value) const;
};

/// Payloads without a known meaning, made by reader plug-ins. `Size` is that of the payloads.
class CONFIGTOOLS_EXPORT CElementRaw : public CElement
{
public:
    CElementRaw(
        std::uint32_t psId, const std::string & name, const std::vector<IPayload *> & payload, bool changed);

    /// As the base, with the tag "rawmode" at "true" for its duration; afterwards it is "false", whatever it was
    /// before, intended.
    bool Write(IConfigWriter & writer, IConfigContext & context) override;
    std::string ToString() const override;   // "raw"
    std::uint64_t Size() const override;
};

/// One row of a table key: number and name of the table, the row's index values and its payloads. `Size` is 4 for
/// each index plus the lengths of all payloads. The indices play no part in `operator==`, intended.
class CONFIGTOOLS_EXPORT CIndexedElement : public CElement
{
public:
    CIndexedElement(std::uint32_t psId, const std::string & name, const std::vector<std::uint32_t> & indices,
        const std::vector<IPayload *> & payload, bool changed);

    /// Writes "num_indices" and each "index" ahead of the payloads. A row whose payloads don't fit its metadata goes
    /// out with the tag "rawmode" at "true", which is deleted afterwards if this row set it (`CElementRaw` leaves
    /// "false" instead; intended). A row without metadata is written as with the null record.
    bool Write(IConfigWriter & writer, IConfigContext & context) override;
    ~CIndexedElement() override;
    std::string KeyString() const override;   // "NAME.3.7"
    std::string ToString() const override;    // the first payload's text
    std::uint64_t Size() const override;

    /// Same number, and `other` is a row with the same indices.
    bool Same(CElement & other) const override;

    std::uint32_t NumIndices() const;

    /// The index value at `position`, from 0; 0 past the end.
    std::uint32_t Index(std::uint32_t position) const;

    std::string Indices() const;   // "3.7"
    const std::vector<IPayload *> & Payload() const;

private:
    std::vector<std::uint32_t> mIndices;
};

}   // namespace VrexZynConfigTools

#endif
