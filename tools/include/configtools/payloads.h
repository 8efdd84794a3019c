/// Payloads: the typed values of a configuration key. Elements own lists of payloads, writers receive them one at a
/// time. None of the operations sets an error; apart from the comparisons none is const, so that classes of plug-ins
/// may compute on demand.
///
/// Payloads compare by type code and value; `==` and `!=` work between any two payload classes.

#ifndef CONFIGTOOLS_PAYLOADS_H
#define CONFIGTOOLS_PAYLOADS_H

#include <configtools/export.h>
#include <configtools/types.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace VrexZynConfigTools {

class IConfigContext;
class IConfigWriter;
class IMetadata;

/// Whatever can be handed to a writer plug-in: a payload, an element, a whole configuration.
/// Plug-ins are built apart from the library, so the order of the virtual operations is a binary contract.
class CONFIGTOOLS_EXPORT IWritable
{
public:
    IWritable() = default;
    IWritable(const IWritable &) = default;
    IWritable & operator=(const IWritable &) { return *this; }

    /// Hands this object to `writer`; true if no error stands in the framework's message group afterwards.
    /// An error left by an earlier call counts too: clear the group first where that matters.
    virtual bool Write(IConfigWriter & writer, IConfigContext & context) = 0;

    virtual ~IWritable() = default;
};

/// One typed value.
class CONFIGTOOLS_EXPORT IPayload : public IWritable
{
public:
    virtual bool operator==(IPayload const & other) const = 0;

    virtual PayloadTypeEnum Type() = 0;

    /// Size of the value in bytes.
    virtual std::uint64_t Length() = 0;

    /// Address of the stored value, in the machine's byte order; stays the payload's. Null where there is none.
    virtual const void * RawData() = 0;

    virtual std::string ToString() = 0;

    /// Copies the value to `destination`, in the machine's byte order, and returns the bytes written; writes
    /// nothing and returns 0 if `maximum`, in bytes, is too small.
    virtual std::uint64_t WriteToMem(void * destination, std::uint64_t maximum) = 0;
};

/// Whether a payload class has an `operator!=` of its own for a payload of another.
template <typename LeftT, typename RightT, typename = void>
struct HasInequality : std::false_type
{};
template <typename LeftT, typename RightT>
struct HasInequality<LeftT, RightT,
    std::void_t<decltype(std::declval<const LeftT &>().operator!=(std::declval<const RightT &>()))>>
    : std::true_type
{};

/// `==` and `!=` for any two payload classes, by the virtual operation of the left one; `!=` of a class without one
/// negates its `==`. Needed beside these operations: C++20 also tries the operands turned round and would find two classes
/// of different bases ambiguous. A class that overrides the operation is turned round all the same behind an `IPayload` on
/// the left, unless it has a friend as the classes below do: C++20 prefers its member to a template.
template <typename LeftT, typename RightT>
std::enable_if_t<std::is_base_of_v<IPayload, LeftT> && std::is_base_of_v<IPayload, RightT>, bool> operator==(
    const LeftT & left, const RightT & right)
{
    return static_cast<const IPayload &>(left).operator==(static_cast<const IPayload &>(right));
}
template <typename LeftT, typename RightT>
std::enable_if_t<std::is_base_of_v<IPayload, LeftT> && std::is_base_of_v<IPayload, RightT>, bool> operator!=(
    const LeftT & left, const RightT & right)
{
    if constexpr (HasInequality<LeftT, RightT>::value)
        return left.operator!=(right);
    else
        return !static_cast<const IPayload &>(left).operator==(static_cast<const IPayload &>(right));
}

/// What can carry a pointer to its description.
class CONFIGTOOLS_EXPORT IMetadataUser
{
public:
    IMetadataUser() = default;
    IMetadataUser(const IMetadataUser &) = default;
    IMetadataUser & operator=(const IMetadataUser &) { return *this; }

    /// Attaches the metadata that describes this object. Only its address is kept, nothing is read: elements hand on
    /// their own pointer through this reference even while it is null, so a null address passes through, intended.
    /// The metadata stays its provider's and must outlive this object.
    virtual void Use(IMetadata const & metadata) = 0;

    /// The attached metadata, or null.
    virtual IMetadata const * Metadata() = 0;

    virtual ~IMetadataUser() = default;
};

/// A value of one C++ type. The library holds exactly nine instantiations: the eight exact-width integers and
/// `std::string`. A copy shares the metadata pointer of its source. A move copies too, intended: its source keeps its
/// value, also a string.
template <typename T>
class CONFIGTOOLS_EXPORT CPayload : public IPayload, public IMetadataUser
{
public:
    CPayload(T value, PayloadTypeEnum type);
    CPayload(const CPayload & other) = default;
    CPayload & operator=(const CPayload & other) = default;

    /// `writer.WritePayload(*this, context)`. The error channel is the only way a writer reports failure.
    bool Write(IConfigWriter & writer, IConfigContext & context) override;

    /// True if `other` is a payload of the same T with the same type code and value. Metadata plays no part. What
    /// differs goes to debug output.
    bool operator==(IPayload const & other) const override;
    PayloadTypeEnum Type() override;

    /// The size of T; for strings that of the string object, which only `CStringPayload` mends.
    std::uint64_t Length() override;
    const void * RawData() override;

    /// Decimal for numbers, but a single character for the 8-bit ones, whose concrete classes print a number.
    std::string ToString() override;

    /// Copies sizeof(T) bytes; for strings too, where that is the object and not its characters, intended.
    std::uint64_t WriteToMem(void * destination, std::uint64_t maximum) override;

    virtual bool operator!=(CPayload<T> const & other) const;

    /// As the template, for an interface on the left.
    friend bool operator==(const IPayload & left, const CPayload & right)
    {
        return left.operator==(static_cast<const IPayload &>(right));
    }

    virtual void SetValue(T value);
    virtual T GetValue();

    void Use(IMetadata const & metadata) override;
    IMetadata const * Metadata() override;

protected:
    T mValue;
    PayloadTypeEnum mType;
    IMetadata const * mMetadata;   // not owned; null until Use is called
};

extern template class CPayload<std::int8_t>;
extern template class CPayload<std::int16_t>;
extern template class CPayload<std::int32_t>;
extern template class CPayload<std::int64_t>;
extern template class CPayload<std::uint8_t>;
extern template class CPayload<std::uint16_t>;
extern template class CPayload<std::uint32_t>;
extern template class CPayload<std::uint64_t>;
extern template class CPayload<std::string>;

class CONFIGTOOLS_EXPORT CInt8Payload : public CPayload<std::int8_t>
{
public:
    explicit CInt8Payload(std::int8_t value);
    std::string ToString() override;   // a number, never a character
};

class CONFIGTOOLS_EXPORT CInt16Payload : public CPayload<std::int16_t>
{
public:
    explicit CInt16Payload(std::int16_t value);
};

class CONFIGTOOLS_EXPORT CInt32Payload : public CPayload<std::int32_t>
{
public:
    explicit CInt32Payload(std::int32_t value);
};

class CONFIGTOOLS_EXPORT CInt64Payload : public CPayload<std::int64_t>
{
public:
    explicit CInt64Payload(std::int64_t value);
};

class CONFIGTOOLS_EXPORT CUint8Payload : public CPayload<std::uint8_t>
{
public:
    explicit CUint8Payload(std::uint8_t value);
    std::string ToString() override;   // a number, never a character
};

class CONFIGTOOLS_EXPORT CUint16Payload : public CPayload<std::uint16_t>
{
public:
    explicit CUint16Payload(std::uint16_t value);
};

class CONFIGTOOLS_EXPORT CUint32Payload : public CPayload<std::uint32_t>
{
public:
    explicit CUint32Payload(std::uint32_t value);
};

class CONFIGTOOLS_EXPORT CUint64Payload : public CPayload<std::uint64_t>
{
public:
    explicit CUint64Payload(std::uint64_t value);
};

class CONFIGTOOLS_EXPORT CStringPayload : public CPayload<std::string>
{
public:
    CStringPayload(const std::string & value, bool isOctet);
    CStringPayload(const CStringPayload & other) = default;
    CStringPayload & operator=(const CStringPayload & other) = default;

    /// The number of characters. `WriteToMem` copies the string object all the same and so counts otherwise,
    /// intended; take the characters from `GetValue`.
    std::uint64_t Length() override;

    /// Whether the text is an octet string. Nothing here behaves otherwise for it, and it plays no part in `==`.
    bool IsOctet();

private:
    bool mIsOctet;
};

class CONFIGTOOLS_EXPORT CEnumPayload : public CPayload<std::int32_t>
{
public:
    CEnumPayload(const std::string & name, std::int32_t value);
    CEnumPayload(const CEnumPayload & other) = default;
    CEnumPayload & operator=(const CEnumPayload & other) = default;

    /// Number and name must be equal.
    bool operator==(IPayload const & other) const override;
    std::string ToString() override;                                        // the name, as GetName
    bool operator!=(CPayload<std::int32_t> const & other) const override;   // as the next one
    virtual bool operator!=(IPayload const & other) const;

    /// As the template, for an interface on the left.
    friend bool operator==(const IPayload & left, const CEnumPayload & right)
    {
        return left.operator==(static_cast<const IPayload &>(right));
    }

    /// The form with one argument changes the number and leaves the name, intended.
    using CPayload<std::int32_t>::SetValue;
    void SetValue(const std::string & name, std::int32_t value);
    std::string GetName();

private:
    std::string mName;
};

/// A payload made of other payloads, its fields: the value of a structure.
class CONFIGTOOLS_EXPORT CComplexPayload : public IPayload, public IMetadataUser
{
public:
    explicit CComplexPayload(PayloadTypeEnum type);   // PAYLOAD_COMPLEX for a structure
    CComplexPayload(const CComplexPayload &) = delete;
    CComplexPayload & operator=(const CComplexPayload &) = delete;
    ~CComplexPayload() override;   // deletes the fields

    /// Appends `field`, which belongs to this payload from the call on, also if memory runs out in it. No metadata is
    /// passed on to it. A null field is kept and passed over by every operation.
    void AddField(IPayload * field);

    /// The fields in order; they stay this payload's.
    const std::vector<IPayload *> & GetFields();

    /// Calls `Write` on each field in order and ignores the results.
    void WriteFields(IConfigWriter & writer, IConfigContext & context);

    /// `writer.WritePayload(*this, context)`; the fields are not walked.
    bool Write(IConfigWriter & writer, IConfigContext & context) override;

    /// True if `other` is a complex payload with the same type code and equal fields.
    bool operator==(IPayload const & other) const override;

    /// As the template, for an interface on the left.
    friend bool operator==(const IPayload & left, const CComplexPayload & right)
    {
        return left.operator==(static_cast<const IPayload &>(right));
    }

    PayloadTypeEnum Type() override;
    std::uint64_t Length() override;   // sum over the fields
    const void * RawData() override;   // always null
    std::string ToString() override;   // always empty

    /// The fields one after the other, without alignment; the bytes written. Writes nothing and returns 0 if `maximum` is
    /// less than `Length`. Each field is given the whole `maximum`, which doesn't shrink, intended: the total was checked
    /// before. A string field writes its object and not the characters that `Length` counts; so with strings among the
    /// fields the room that is needed is the sum of what the fields write, and having it is the caller's duty.
    std::uint64_t WriteToMem(void * destination, std::uint64_t maximum) override;

    /// Passes the metadata on to the fields, unless its address is the one already stored: a field added since then
    /// doesn't get it, intended.
    void Use(IMetadata const & metadata) override;
    IMetadata const * Metadata() override;

protected:
    PayloadTypeEnum mType;
    std::vector<IPayload *> mFields;
    IMetadata const * mMetadata;   // not owned; null until Use is called
};

/// A complex payload with the code `PAYLOAD_RAW`, for plug-ins; the library makes none.
class CONFIGTOOLS_EXPORT CRawPayload : public CComplexPayload
{
public:
    explicit CRawPayload(const std::string & text);   // the text is ignored, intended
    ~CRawPayload() override;
    std::uint64_t Size();   // as Length
};

}   // namespace VrexZynConfigTools

#endif
