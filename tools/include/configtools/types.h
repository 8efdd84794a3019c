/// The enumerations and the numeric variable that cross the library's interface. The values are a binary and text
/// contract: plug-ins are built separately, and tags hold these numbers in decimal.

#ifndef CONFIGTOOLS_TYPES_H
#define CONFIGTOOLS_TYPES_H

#include <cstdint>

namespace VrexZynConfigTools {

/// What `IPayload::Type` tells. The first eight are in the order of `NumericTypeEnum`.
enum PayloadTypeEnum : int
{
    PAYLOAD_INT8 = 0,
    PAYLOAD_INT16 = 1,
    PAYLOAD_INT32 = 2,
    PAYLOAD_INT64 = 3,
    PAYLOAD_UINT8 = 4,
    PAYLOAD_UINT16 = 5,
    PAYLOAD_UINT32 = 6,
    PAYLOAD_UINT64 = 7,
    PAYLOAD_STRING = 8,
    PAYLOAD_COMPLEX = 9,   // a structure
    PAYLOAD_ENUM = 10,
    PAYLOAD_RAW = 11
};

/// The numeric type of a `CElementNumericArray`.
enum NumericTypeEnum : int
{
    NUMERIC_INT8 = 0,
    NUMERIC_INT16 = 1,
    NUMERIC_INT32 = 2,
    NUMERIC_INT64 = 3,
    NUMERIC_UINT8 = 4,
    NUMERIC_UINT16 = 5,
    NUMERIC_UINT32 = 6,
    NUMERIC_UINT64 = 7,
    NUMERIC_NONE = 8   // no numeric type
};

/// The shape of a key.
enum MetadataTypeEnum : int
{
    METADATA_SIMPLE = 0,
    METADATA_ENUM = 1,
    METADATA_STRUCT = 2,
    METADATA_NONE = 3   // a default-constructed record
};

/// The subsystems of the chip; `CSubsystemInfo::GetSubsystemType` maps them to their keywords and back.
enum SubSystemTypeEnum : int
{
    SUBSYSTEM_UNKNOWN = -1,
    SUBSYSTEM_CURATOR = 0,
    SUBSYSTEM_BT = 1,
    SUBSYSTEM_WLAN = 2,
    SUBSYSTEM_AUDIO = 3,
    SUBSYSTEM_GNSS = 4,
    SUBSYSTEM_NFC = 5,
    SUBSYSTEM_JANITOR = 6,
    SUBSYSTEM_APP = 7,
    SUBSYSTEM_BLE = 8,
    SUBSYSTEM_PSAPPS = 9,
    SUBSYSTEM_PSAUDIO = 10
};

/// One value of any of the eight numeric types, passed by value. A builder zeroes all 8 bytes (as `{}` does here)
/// and then stores the value in the member of its type, so the high bytes are zero also for negative numbers; a
/// reader takes the member that fits the `NumericTypeEnum` that goes with it.
union NumericVariable
{
    std::uint64_t mUint64 = 0;
    std::uint32_t mUint32;
    std::uint16_t mUint16;
    std::uint8_t mUint8;
    std::int64_t mInt64;
    std::int32_t mInt32;
    std::int16_t mInt16;
    std::int8_t mInt8;
};
static_assert(sizeof(NumericVariable) == 8, "part of the binary contract");

}   // namespace VrexZynConfigTools

#endif
