/// Makes payloads of the library from values that are known to fit. Internal.
///
/// As making an element, setting its value and taking its payload would have it, in a few instructions: what unpacks
/// structs makes payloads by the thousand. Debug output shows none of it.

#ifndef CONFIGTOOLS_ELEMENTS_PAYLOADMAKER_H
#define CONFIGTOOLS_ELEMENTS_PAYLOADMAKER_H

#include <configtools/payloads.h>
#include <configtools/types.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace VrexZynConfigTools {

class CPayloadMaker
{
public:
    /// The fields of a tree, with room for `count` more. Trees that grow by and by still grow in proportion.
    static std::vector<IPayload *> & FieldsWithRoom(CComplexPayload & tree, std::size_t count);

    // What is made belongs to the caller. The record may be null.

    /// A number with the low bytes of `value`; of 64 bits for no numeric type.
    static IPayload * NewNumber(NumericTypeEnum type, std::uint64_t value, const IMetadata * record);

    static IPayload * NewEnumerator(const std::string & name, std::int32_t number, const IMetadata * record);

    /// Without fields.
    static CComplexPayload * NewTree(const IMetadata * record);

private:
    template <typename PayloadT, typename T>
    static IPayload * New(std::uint64_t value, const IMetadata * record);
    template <typename PayloadT, typename T>
    static IPayload * NewInFreshMemory(std::uint64_t value, const IMetadata * record);
};

}   // namespace VrexZynConfigTools

#endif
