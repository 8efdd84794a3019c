/// @file
/// The enumerations and the numeric variable that cross the library's interface.
///
/// The values of all enumerators are a binary and text contract: plug-ins are built separately, and context tags
/// contain these numbers as decimal text. A value that an enumeration doesn't list can arrive at any time, from a tag
/// or from a plug-in; the operations that take one say what they return for it.
///
/// @code
/// VrexZynConfigTools::NumericVariable Octet(std::int8_t number)
/// {
///     VrexZynConfigTools::NumericVariable value;   // all 8 bytes are 0
///     value.mInt8 = number;                        // the other 7 bytes stay 0, also for a negative number
///     return value;
/// }
/// @endcode

#ifndef CONFIGTOOLS_TYPES_H
#define CONFIGTOOLS_TYPES_H

#include <cstdint>

namespace VrexZynConfigTools {

/// The type code of a payload, as `IPayload::Type` returns it. The first eight codes are in the order of
/// `NumericTypeEnum`, so that one can be converted to the other by its number.
enum PayloadTypeEnum : int
{
    /// A `CInt8Payload`: one signed byte.
    PAYLOAD_INT8 = 0,
    /// A `CInt16Payload`.
    PAYLOAD_INT16 = 1,
    /// A `CInt32Payload`.
    PAYLOAD_INT32 = 2,
    /// A `CInt64Payload`.
    PAYLOAD_INT64 = 3,
    /// A `CUint8Payload`: one unsigned byte.
    PAYLOAD_UINT8 = 4,
    /// A `CUint16Payload`.
    PAYLOAD_UINT16 = 5,
    /// A `CUint32Payload`.
    PAYLOAD_UINT32 = 6,
    /// A `CUint64Payload`.
    PAYLOAD_UINT64 = 7,
    /// A `CStringPayload`: text, or octets in a string.
    PAYLOAD_STRING = 8,
    /// A `CComplexPayload`: a structure, or a list of values within one.
    PAYLOAD_COMPLEX = 9,
    /// A `CEnumPayload`: an enumerator with its name and its number.
    PAYLOAD_ENUM = 10,
    /// A `CRawPayload`: of plug-ins only, the library makes none.
    PAYLOAD_RAW = 11
};

/// The numeric type of a `CElementNumericArray` and of a value in a `NumericVariable`.
enum NumericTypeEnum : int
{
    /// Signed 8 bits, in `NumericVariable::mInt8`; and so on for the next seven.
    NUMERIC_INT8 = 0,
    /// Signed 16 bits.
    NUMERIC_INT16 = 1,
    /// Signed 32 bits.
    NUMERIC_INT32 = 2,
    /// Signed 64 bits; also what the type keyword "integer" means in a numeric array.
    NUMERIC_INT64 = 3,
    /// Unsigned 8 bits.
    NUMERIC_UINT8 = 4,
    /// Unsigned 16 bits.
    NUMERIC_UINT16 = 5,
    /// Unsigned 32 bits.
    NUMERIC_UINT32 = 6,
    /// Unsigned 64 bits.
    NUMERIC_UINT64 = 7,
    /// No numeric type: an array built from a list of payloads, or from an unknown type keyword.
    NUMERIC_NONE = 8
};

/// The shape of a key's value, as `IMetadata::MetadataType` returns it.
enum MetadataTypeEnum : int
{
    /// A number, an array of numbers, or a string.
    METADATA_SIMPLE = 0,
    /// One enumerator or several.
    METADATA_ENUM = 1,
    /// A struct of bit fields.
    METADATA_STRUCT = 2,
    /// No shape: a default-constructed record, or an element factory that is building nothing.
    METADATA_NONE = 3
};

/// The subsystems of the chip. `CSubsystemInfo::GetSubsystemType` maps a value to its keyword and back; the keywords
/// are those of `keywords::SUBSYSTEM_CURATOR` and its neighbours. The tag "subsystemtype" contains the number.
enum SubSystemTypeEnum : int
{
    /// No known subsystem: the result for an unknown keyword.
    SUBSYSTEM_UNKNOWN = -1,
    /// "curator".
    SUBSYSTEM_CURATOR = 0,
    /// "bt".
    SUBSYSTEM_BT = 1,
    /// "wlan".
    SUBSYSTEM_WLAN = 2,
    /// "audio".
    SUBSYSTEM_AUDIO = 3,
    /// "gnss".
    SUBSYSTEM_GNSS = 4,
    /// "nfc".
    SUBSYSTEM_NFC = 5,
    /// "janitor".
    SUBSYSTEM_JANITOR = 6,
    /// "app".
    SUBSYSTEM_APP = 7,
    /// "ble".
    SUBSYSTEM_BLE = 8,
    /// "psapps".
    SUBSYSTEM_PSAPPS = 9,
    /// "psaudio".
    SUBSYSTEM_PSAUDIO = 10
};

/// One value of any of the eight numeric types, 8 bytes wide and passed by value.
///
/// A builder sets all 8 bytes to zero, as the initialiser here does, and then writes the member of its type: the high
/// bytes are zero also for negative numbers. A reader takes the member that fits the `NumericTypeEnum` that goes with
/// the variable. The bytes are in the machine's order.
union NumericVariable
{
    /// All 8 bytes; the member that is zero at first.
    std::uint64_t mUint64 = 0;
    /// Of type `NUMERIC_UINT32`.
    std::uint32_t mUint32;
    /// Of type `NUMERIC_UINT16`.
    std::uint16_t mUint16;
    /// Of type `NUMERIC_UINT8`.
    std::uint8_t mUint8;
    /// Of type `NUMERIC_INT64`.
    std::int64_t mInt64;
    /// Of type `NUMERIC_INT32`.
    std::int32_t mInt32;
    /// Of type `NUMERIC_INT16`.
    std::int16_t mInt16;
    /// Of type `NUMERIC_INT8`.
    std::int8_t mInt8;
};
static_assert(sizeof(NumericVariable) == 8, "part of the binary contract");

}   // namespace VrexZynConfigTools

#endif
