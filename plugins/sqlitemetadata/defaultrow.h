/// The default value of a key, or of one row of a table key, as it stands in a repository.

#ifndef SQLITEMETADATA_DEFAULTROW_H
#define SQLITEMETADATA_DEFAULTROW_H

#include <cstdint>
#include <string>
#include <vector>

namespace VrexZynConfigTools {
class IMetadata;
}

namespace sqlitemetadata {

struct DefaultItem
{
    enum class Kind
    {
        NUMBER,
        TEXT,
        OCTETS
    };
    Kind mKind = Kind::NUMBER;
    std::int64_t mNumber = 0;
    std::string mOctets;   // of a text too
};

struct DefaultRow
{
    std::vector<std::uint32_t> mIndices;
    std::vector<DefaultItem> mItems;
};

/// Why the library would not take the row unchanged as a value of the key; empty if it would. What the element factory
/// checks by itself, ranges and enumerators, is not looked at.
std::string WhyNoValue(const VrexZynConfigTools::IMetadata & record, const DefaultRow & row);

}   // namespace sqlitemetadata

#endif
