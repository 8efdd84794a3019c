/// What the records of a metadata provider say, as reader and writer need it.

#ifndef TOMLCONFIG_RECORDFACTS_H
#define TOMLCONFIG_RECORDFACTS_H

#include "vocabulary.h"

#include <configtools/metadata.h>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace tomlconfig {

/// More indices than this, and larger ones, can't be told to a subsystem: their tags would be cut off or reordered.
inline constexpr std::uint32_t MAX_INDICES = 9;
inline constexpr std::int64_t MAX_INDEX = 99999999;

/// Whether a record comes from a provider. Those that a file makes for keys with a type have no details.
bool IsDescribed(const IMetadata & record);

/// The word that a key of this shape has for its type.
std::string TypeWordOf(const IMetadata & record);

/// The name, or the number where there is none.
std::string KeyText(const IMetadata & record);

/// The enumerators by name; empty for a record of another shape.
const std::map<std::string, int> & EnumeratorsOf(const IMetadata & record);
std::vector<std::string> EnumeratorNames(const IMetadata & record);

/// The first name with this number, which is the one that the element factory takes; empty for none.
std::string FirstEnumName(const IMetadata & record, std::int32_t number);

/// The table indices, up to the first that is missing.
std::vector<const CTableIndex *> TableIndicesOf(const IMetadata & record);

/// The fields of a struct; empty for a record of another shape.
const std::vector<const CStructField *> & FieldsOf(const IMetadata & record);

/// The names of the fields that have a record.
std::vector<std::string> FieldNames(const IMetadata & record);

/// Whether each field has a record, and a name that no other one has: only then a table can hold them.
bool HasFieldNames(const IMetadata & record);

/// "0 to 100": what the library's checks let pass for a number of this type.
std::string RangeText(const IMetadata & record, const std::string & typeWord);

}   // namespace tomlconfig

#endif
