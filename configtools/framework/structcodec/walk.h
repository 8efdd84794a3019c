/// How the codec walks structs within structs. Internal.

#ifndef CONFIGTOOLS_STRUCTCODEC_WALK_H
#define CONFIGTOOLS_STRUCTCODEC_WALK_H

#include <configtools/metadata.h>
#include <configtools/structcodec.h>

#include <cstdint>
#include <string>
#include <vector>

namespace VrexZynConfigTools {

namespace structcodec {

inline constexpr std::uint32_t MAX_NESTING = 64;

/// More than any device holds; what is larger comes from metadata that is wrong.
inline constexpr std::uint64_t MAX_STRUCT_BITS = std::uint64_t{ 1 } << 27;

/// As many as the smallest array items that the largest struct has room for.
inline constexpr std::uint64_t MAX_PAYLOADS = 1U << 24;

/// How many payloads a struct of so many bits may become. Bad metadata may repeat itself without end; a struct has no
/// more values than fit into its bits.
constexpr std::uint64_t MaxPayloads(std::uint64_t bits)
{
    // Fields without bits, and the trees above fields with bits, take payloads too.
    constexpr std::uint64_t APART_FROM_BITS = 1U << 16;
    constexpr std::uint64_t PER_BIT = 4;
    return APART_FROM_BITS + (bits < MAX_PAYLOADS / PER_BIT ? bits * PER_BIT : MAX_PAYLOADS);
}

}   // namespace structcodec

/// One struct on the way. Bad metadata may nest without end.
class CStructCodec::Level
{
public:
    explicit Level(Walk & walk)
        : mWalk(walk)
    {
        ++mWalk.depth;
    }
    ~Level() { --mWalk.depth; }
    Level(const Level &) = delete;
    Level & operator=(const Level &) = delete;

    bool IsTooDeep() const { return mWalk.depth > structcodec::MAX_NESTING; }

private:
    Walk & mWalk;
};

namespace structcodec {

/// Leaves an error about the metadata of a struct.
void SetLayoutError(const std::string & text);

/// The fields of a struct; none where a class of a plug-in tells of no list. Such a list may have holes, too: null.
const std::vector<const CStructField *> & FieldsOf(CMetadataDetailStruct & detail);

/// The field's record; null, with an error, for a field without one and for a hole in the list.
const IMetadata * RecordOf(const CStructField * field);

/// The layout of a field that is a struct; null, with an error, if its record has none.
CMetadataDetailStruct * NestedLayout(const IMetadata & metadata);

/// The largest end of any field.
std::uint64_t SizeInBits(CMetadataDetailStruct & detail);

/// The type of a number: the record's own if it has a width, else the smallest that the field fits into.
std::string TypeOfField(const IMetadata & metadata, std::uint32_t size);

/// The plan to follow for a struct; null for the literal road. Debug output shows that one, step by step.
const CStructPlan * PlanFor(CMetadataDetailStruct & detail);

}   // namespace structcodec

}   // namespace VrexZynConfigTools

#endif
