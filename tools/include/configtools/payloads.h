/// @file
/// Payloads: the typed values of a configuration key. Elements own lists of payloads, and writers receive them one at
/// a time. None of the operations sets an error. Apart from the comparisons none is const, so that classes of
/// plug-ins may compute their value on demand.
///
/// Payloads compare by type code and value; `==` and `!=` work between any two payload classes.
///
/// One thread at a time: the library takes no lock and has no thread-local state. An object isn't shared between
/// threads. Separate chips may be used on separate threads, one after the other.
///
/// @code
/// std::string SumOf(VrexZynConfigTools::CUint16Payload & left, VrexZynConfigTools::CUint16Payload & right)
/// {
///     VrexZynConfigTools::CUint32Payload sum(std::uint32_t{ left.GetValue() } + right.GetValue());
///     return sum.ToString();   // decimal
/// }
/// @endcode

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

/// Whatever can be given to a writer plug-in: a payload, an element, a packed struct, a whole configuration. The
/// order of the virtual operations is a binary contract, here and in all interfaces: plug-ins are built apart from
/// the library.
class CONFIGTOOLS_EXPORT IWritable
{
public:
    /// Copies nothing: an interface has no state.
    ///@{
    IWritable() = default;
    IWritable(const IWritable &) = default;
    IWritable & operator=(const IWritable &) { return *this; }
    ///@}

    /// Gives this object to `writer`. True if `GROUP_FRAMEWORK` has no error afterwards. An error that an earlier
    /// call left there counts too: clear the group first where that matters.
    virtual bool Write(IConfigWriter & writer, IConfigContext & context) = 0;

    virtual ~IWritable() = default;
};

/// One typed value.
class CONFIGTOOLS_EXPORT IPayload : public IWritable
{
public:
    /// Whether `other` has the same type code and value; each class says what else counts. Not symmetric where a class
    /// refines another one.
    virtual bool operator==(IPayload const & other) const = 0;

    /// The type code.
    virtual PayloadTypeEnum Type() = 0;

    /// The size of the value in bytes.
    virtual std::uint64_t Length() = 0;

    /// The address of the stored value, in the machine's byte order; it stays the payload's and is valid until its next
    /// change. Null for a payload without a value of its own.
    virtual const void * RawData() = 0;

    /// The value as text for people.
    virtual std::string ToString() = 0;

    /// Copies the value to `destination`, in the machine's byte order, and returns the number of bytes written. Writes
    /// nothing and returns 0 if `maximum`, in bytes, is too small.
    virtual std::uint64_t WriteToMem(void * destination, std::uint64_t maximum) = 0;
};

/// For the operators below: whether a payload class has an `operator!=` of its own for a payload of another class.
template <typename LeftT, typename RightT, typename = void>
struct HasInequality : std::false_type
{};
template <typename LeftT, typename RightT>
struct HasInequality<LeftT, RightT,
    std::void_t<decltype(std::declval<const LeftT &>().operator!=(std::declval<const RightT &>()))>>
    : std::true_type
{};

/// `==` and `!=` for any two payload classes, by the virtual operation of the left one; `!=` of a class without one
/// negates its `==`. Needed beside these operations: C++20 also tries the operands turned round and would find two
/// classes of different bases ambiguous. A class that overrides the operation is turned round all the same behind an
/// `IPayload` on the left, unless it has a friend as the classes below do: C++20 prefers its member to a template.
///@{
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
///@}

/// An object with a pointer to its description: payloads and elements.
class CONFIGTOOLS_EXPORT IMetadataUser
{
public:
    /// Copies nothing: an interface has no state.
    ///@{
    IMetadataUser() = default;
    IMetadataUser(const IMetadataUser &) = default;
    IMetadataUser & operator=(const IMetadataUser &) { return *this; }
    ///@}

    /// Attaches the metadata that describes this object. Only its address is stored, nothing is read. The address may
    /// be null, intended: elements pass their own pointer on through this reference before they have metadata. The
    /// metadata stays its provider's and must outlive this object.
    virtual void Use(IMetadata const & metadata) = 0;

    /// The attached metadata, or null.
    virtual IMetadata const * Metadata() = 0;

    virtual ~IMetadataUser() = default;
};

/// A value of one C++ type. The library holds exactly nine instantiations: the eight exact-width integers and
/// `std::string`. A copy shares the metadata pointer of its source. A move copies too, intended: plug-ins read
/// values that they have passed on, also strings.
template <typename T>
class CONFIGTOOLS_EXPORT CPayload : public IPayload, public IMetadataUser
{
public:
    /// A payload with this value and type code, without metadata.
    CPayload(T value, PayloadTypeEnum type);

    /// Copies take the value, the type code and the metadata pointer.
    ///@{
    CPayload(const CPayload & other) = default;
    CPayload & operator=(const CPayload & other) = default;
    ///@}

    /// Calls `writer.WritePayload(*this, context)`. The error channel is the only way in which a writer reports a
    /// failure.
    bool Write(IConfigWriter & writer, IConfigContext & context) override;

    /// True if `other` is a payload of the same T with the same type code and value. Metadata plays no part. What
    /// differs goes to debug output.
    bool operator==(IPayload const & other) const override;
    PayloadTypeEnum Type() override;

    /// The size of T in bytes; for strings that of the string object. `CStringPayload` overrides it.
    std::uint64_t Length() override;

    /// The address of the value; for strings that of the string object.
    const void * RawData() override;

    /// Decimal for numbers, but a single character for the 8-bit ones, whose concrete classes print a number.
    std::string ToString() override;

    /// Copies sizeof(T) bytes; for strings too, where that is the object and not its characters, intended: plug-ins
    /// built against this size rely on it.
    std::uint64_t WriteToMem(void * destination, std::uint64_t maximum) override;

    /// The negation of `operator==`.
    virtual bool operator!=(CPayload<T> const & other) const;

    /// As the template, for an interface on the left.
    friend bool operator==(const IPayload & left, const CPayload & right)
    {
        return left.operator==(static_cast<const IPayload &>(right));
    }

    /// Replaces the value.
    virtual void SetValue(T value);

    /// The value; a copy of a string.
    virtual T GetValue();

    void Use(IMetadata const & metadata) override;
    IMetadata const * Metadata() override;

protected:
    /// The value.
    T mValue;
    /// The type code, fixed by the concrete class.
    PayloadTypeEnum mType;
    /// Not owned; null until `Use` is called.
    IMetadata const * mMetadata;
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

/// A signed integer of 8 bits.
class CONFIGTOOLS_EXPORT CInt8Payload : public CPayload<std::int8_t>
{
public:
    /// A payload with this value, without metadata.
    explicit CInt8Payload(std::int8_t value);

    /// The value in decimal, never a character.
    std::string ToString() override;
};

/// A signed integer of 16 bits.
class CONFIGTOOLS_EXPORT CInt16Payload : public CPayload<std::int16_t>
{
public:
    /// A payload with this value, without metadata.
    explicit CInt16Payload(std::int16_t value);
};

/// A signed integer of 32 bits.
class CONFIGTOOLS_EXPORT CInt32Payload : public CPayload<std::int32_t>
{
public:
    /// A payload with this value, without metadata.
    explicit CInt32Payload(std::int32_t value);
};

/// A signed integer of 64 bits.
class CONFIGTOOLS_EXPORT CInt64Payload : public CPayload<std::int64_t>
{
public:
    /// A payload with this value, without metadata.
    explicit CInt64Payload(std::int64_t value);
};

/// An unsigned integer of 8 bits.
class CONFIGTOOLS_EXPORT CUint8Payload : public CPayload<std::uint8_t>
{
public:
    /// A payload with this value, without metadata.
    explicit CUint8Payload(std::uint8_t value);

    /// The value in decimal, never a character.
    std::string ToString() override;
};

/// An unsigned integer of 16 bits.
class CONFIGTOOLS_EXPORT CUint16Payload : public CPayload<std::uint16_t>
{
public:
    /// A payload with this value, without metadata.
    explicit CUint16Payload(std::uint16_t value);
};

/// An unsigned integer of 32 bits.
class CONFIGTOOLS_EXPORT CUint32Payload : public CPayload<std::uint32_t>
{
public:
    /// A payload with this value, without metadata.
    explicit CUint32Payload(std::uint32_t value);
};

/// An unsigned integer of 64 bits.
class CONFIGTOOLS_EXPORT CUint64Payload : public CPayload<std::uint64_t>
{
public:
    /// A payload with this value, without metadata.
    explicit CUint64Payload(std::uint64_t value);
};

/// A text, or octets in a string.
class CONFIGTOOLS_EXPORT CStringPayload : public CPayload<std::string>
{
public:
    /// A payload with this text, without metadata.
    CStringPayload(const std::string & value, bool isOctet);

    /// Copies take all that the payload has, the metadata pointer included.
    ///@{
    CStringPayload(const CStringPayload & other) = default;
    CStringPayload & operator=(const CStringPayload & other) = default;
    ///@}

    /// The number of characters. `WriteToMem` copies the string object all the same, intended as for `CPayload`; take
    /// the characters from `GetValue`.
    std::uint64_t Length() override;

    /// Whether the text is an octet string. No operation depends on it, nor does `==`.
    bool IsOctet();

private:
    bool mIsOctet;
};

/// An enumerator: a name and its number.
class CONFIGTOOLS_EXPORT CEnumPayload : public CPayload<std::int32_t>
{
public:
    /// A payload with this name and number, without metadata.
    CEnumPayload(const std::string & name, std::int32_t value);

    /// Copies take all that the payload has, the metadata pointer included.
    ///@{
    CEnumPayload(const CEnumPayload & other) = default;
    CEnumPayload & operator=(const CEnumPayload & other) = default;
    ///@}

    /// True if `other` is an enumerator with the same number and name.
    bool operator==(IPayload const & other) const override;

    /// The name, as `GetName`.
    std::string ToString() override;

    /// The negation of `operator==`.
    ///@{
    bool operator!=(CPayload<std::int32_t> const & other) const override;
    virtual bool operator!=(IPayload const & other) const;
    ///@}

    /// As the template, for an interface on the left.
    friend bool operator==(const IPayload & left, const CEnumPayload & right)
    {
        return left.operator==(static_cast<const IPayload &>(right));
    }

    using CPayload<std::int32_t>::SetValue;

    /// Replaces name and number. The inherited form with one argument replaces the number and leaves the name,
    /// intended: it is called by code that knows numbers only.
    void SetValue(const std::string & name, std::int32_t value);

    /// The name of the enumerator; empty for a number without a name.
    std::string GetName();

private:
    std::string mName;
};

/// A payload made of other payloads, its fields: the value of a structure, or of an array within one.
class CONFIGTOOLS_EXPORT CComplexPayload : public IPayload, public IMetadataUser
{
public:
    /// A payload without fields and metadata; `type` is `PAYLOAD_COMPLEX` for a structure.
    explicit CComplexPayload(PayloadTypeEnum type);
    CComplexPayload(const CComplexPayload &) = delete;
    CComplexPayload & operator=(const CComplexPayload &) = delete;

    /// Deletes the fields.
    ~CComplexPayload() override;

    /// Appends `field`, which belongs to this payload from the call on, also if memory runs out in it. No metadata is
    /// passed on to it. A null field takes a position, and every operation skips it.
    void AddField(IPayload * field);

    /// The fields in order; list and fields stay this payload's.
    const std::vector<IPayload *> & GetFields();

    /// Calls `Write` on each field in order and ignores the results.
    void WriteFields(IConfigWriter & writer, IConfigContext & context);

    /// Calls `writer.WritePayload(*this, context)`; the fields are not walked. A writer that needs them calls
    /// `WriteFields`.
    bool Write(IConfigWriter & writer, IConfigContext & context) override;

    /// True if `other` is a complex payload with the same type code and equal fields.
    bool operator==(IPayload const & other) const override;

    /// As the template, for an interface on the left.
    friend bool operator==(const IPayload & left, const CComplexPayload & right)
    {
        return left.operator==(static_cast<const IPayload &>(right));
    }

    PayloadTypeEnum Type() override;

    /// The sum of the lengths of the fields, in bytes.
    std::uint64_t Length() override;

    /// Null.
    const void * RawData() override;

    /// Empty.
    std::string ToString() override;

    /// Copies the fields one after the other, without alignment, and returns the number of bytes written. Writes
    /// nothing and returns 0 if `maximum`, in bytes, is less than `Length`. Each field is given the whole `maximum`,
    /// which doesn't shrink, intended: the total was checked before. A string field writes its object and not the
    /// characters that `Length` counts; so with strings among the fields the room that is needed is the sum of what
    /// the fields write, and to provide it is the caller's duty. Use it for trees of numbers.
    std::uint64_t WriteToMem(void * destination, std::uint64_t maximum) override;

    /// Stores the address and passes the metadata on to the fields; unless the address is the one already stored: a
    /// field added since then doesn't get it, intended, since an element calls this for each of its payloads again
    /// and again.
    void Use(IMetadata const & metadata) override;
    IMetadata const * Metadata() override;

protected:
    /// The type code.
    PayloadTypeEnum mType;
    /// The fields, owned; may contain null pointers.
    std::vector<IPayload *> mFields;
    /// Not owned; null until `Use` is called.
    IMetadata const * mMetadata;
};

/// A complex payload with the code `PAYLOAD_RAW`, for plug-ins; the library makes none.
class CONFIGTOOLS_EXPORT CRawPayload : public CComplexPayload
{
public:
    /// A payload without fields. The text is ignored, intended: plug-ins pass a name, and the fields say what there is.
    explicit CRawPayload(const std::string & text);
    ~CRawPayload() override;

    /// The same as `Length`.
    std::uint64_t Size();
};

}   // namespace VrexZynConfigTools

#endif
