/// How the codec walks structs within structs. Internal.

#ifndef CONFIGTOOLS_STRUCTCODEC_WALK_H
#define CONFIGTOOLS_STRUCTCODEC_WALK_H

#include <configtools/metadata.h>
#include <configtools/structcodec.h>

#include <string>

namespace VrexZynConfigTools {

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

    bool IsTooDeep() const { return mWalk.depth > MAX_NESTING; }

private:
    static constexpr std::uint32_t MAX_NESTING = 64;

    Walk & mWalk;
};

namespace structcodec {

/// Leaves an error about the metadata of a struct.
void SetLayoutError(const std::string & text);

/// The field's record; null, with an error, for a field without one.
const IMetadata * RecordOf(const CStructField & field);

/// The layout of a field that is a struct; null, with an error, if its record has none.
CMetadataDetailStruct * NestedLayout(const IMetadata & metadata);

}   // namespace structcodec

}   // namespace VrexZynConfigTools

#endif
