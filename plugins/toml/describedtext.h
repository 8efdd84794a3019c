/// Keys in the words of their metadata: by name, with the names of enumerators, fields and indices.
///
/// A key is told so only if it is read back as it was. Whatever doesn't fit its record (a number of another type, an
/// enumerator without a name, too few items) is nothing here, and is told by types.

#ifndef TOMLCONFIG_DESCRIBEDTEXT_H
#define TOMLCONFIG_DESCRIBEDTEXT_H

#include "valuetext.h"

#include <configtools/metadata.h>
#include <configtools/payloads.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tomlconfig {

/// One payload of a key.
struct DescribedValue
{
    std::string mText;                // on one line
    std::vector<NamedText> mFields;   // those of a struct
    std::size_t mLength = 0;          // of a text, in bytes
    bool mEndsInZero = false;         // whether the last of them is 0
};

/// The value of a payload of the key that the record describes.
std::optional<DescribedValue> ToDescribedValue(IPayload & payload, const IMetadata & record);

/// What of a key is told beside its record.
struct DescribedKey
{
    bool mIsRow = false;
    std::vector<std::uint32_t> mIndices;
    bool mIsInBt = false;   // where octets that look padded would be cut off
    std::vector<DescribedValue> mValues;
};

/// The lines of a key behind its header.
std::optional<std::string> DescribedLines(const DescribedKey & key, const IMetadata & record);

}   // namespace tomlconfig

#endif
