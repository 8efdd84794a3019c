/// The library's own records of a key, as a metadata provider makes them of a repository.

#ifndef WORKBENCH_COMPILER_RECORDS_H
#define WORKBENCH_COMPILER_RECORDS_H

#include "source.h"

#include <configtools/metadata.h>

#include <cstdint>
#include <map>
#include <memory>
#include <vector>

namespace workbench::compiler {

using VrexZynConfigTools::CMetadata;
using VrexZynConfigTools::CMetadataDetailStruct;
using VrexZynConfigTools::CStructField;

/// A record without its details; `psId` is 0 for a field.
std::unique_ptr<CMetadata> MakeRecord(const Item & item, int uid, std::uint32_t psId, std::size_t indexCount);

/// The records of a key that is a sound struct, with its fields in the order in which the target holds them.
class CStructRecords
{
public:
    explicit CStructRecords(const Key & key);

    CMetadataDetailStruct & Struct() const { return *mStruct; }
    const Field & FieldOf(const VrexZynConfigTools::IMetadata & record) const { return *mFields.at(&record); }
    const Field & FieldOf(const CStructField & field) const { return FieldOf(*field.Metadata()); }
    static CMetadataDetailStruct & StructOf(const CStructField & field);

private:
    CMetadataDetailStruct & AddStruct(const Layout & layout, bool isOctets, CMetadata & record);
    CMetadata & AddRecord(const Item & item, std::int64_t psId, std::size_t indexCount);
    void AddField(const Field & field, CMetadataDetailStruct & detail);

    std::vector<std::unique_ptr<CMetadata>>
        mRecords;   // details point at fields, which point at further ones of these
    std::map<const VrexZynConfigTools::IMetadata *, const Field *> mFields;
    CMetadataDetailStruct * mStruct;
};

/// Fields of one struct in records of their own, for their places and widths alone: a struct within it has no fields.
class CLevelRecords
{
public:
    /// `shift` is added to all positions.
    CLevelRecords(const std::vector<const Field *> & fields, bool isLittleEndian, std::int64_t shift);

    CMetadataDetailStruct & Struct() const { return *mStruct; }

private:
    CMetadata mKey;
    std::vector<std::unique_ptr<CMetadata>> mRecords;
    CMetadataDetailStruct * mStruct;   // the key's
};

}   // namespace workbench::compiler

#endif
