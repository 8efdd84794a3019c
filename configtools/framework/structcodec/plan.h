/// What the codec has to do for a struct, worked out from its metadata. Internal.
///
/// Records answer through virtual operations that compose texts, and most of a field's fate depends on them alone; a plan
/// has the answers. It is made for any metadata, also for wrong ones and for classes of plug-ins, and it is the only road
/// from there to words and payloads. Where the whole struct is of the library's own classes, which make known each
/// change, the plan stays with the struct's detail; classes of plug-ins are asked anew each time.

#ifndef CONFIGTOOLS_STRUCTCODEC_PLAN_H
#define CONFIGTOOLS_STRUCTCODEC_PLAN_H

#include <configtools/structlayout.h>
#include <configtools/types.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace VrexZynConfigTools {

class CMetadataDetailEnum;

namespace structcodec {

inline constexpr std::uint32_t MAX_NESTING = 64;

/// More than any device holds; what is larger comes from metadata that is wrong.
inline constexpr std::uint64_t MAX_STRUCT_BITS = std::uint64_t{ 1 } << 27;

/// What is wrong with metadata, in words. Codec and geometry say the same.
std::string TooLargeText(std::uint64_t bits);
std::string TooManyText(std::uint64_t bits);
std::string NoSizeText(const IMetadata & record);
std::string NoFieldsText(const IMetadata & record);
inline constexpr char TOO_DEEP[] = "the metadata nests structs too deep";
inline constexpr char NO_RECORD[] = "a struct field has no metadata";

/// How many values without parts a struct of so many bits may become. Bad metadata may repeat itself without end; a
/// struct has no more values than fit into its bits. The trees above the values aren't counted: they are at most
/// `MAX_NESTING` for each.
constexpr std::uint64_t MaxValues(std::uint64_t bits)
{
    constexpr std::uint64_t WITHOUT_BITS = 1U << 14;
    constexpr std::uint64_t PER_BIT = 4;       // fields may share their bits
    constexpr std::uint64_t MOST = 1U << 24;   // the items of 8 bits that the largest struct has room for
    return WITHOUT_BITS + (bits < MOST / PER_BIT ? bits * PER_BIT : MOST);
}

struct FieldPlan
{
    StructEntryKind mKind = StructEntryKind::ABSENT;
    bool mIsSigned = false;                 // its highest bit is a sign, when unpacked
    NumericTypeEnum mType = NUMERIC_NONE;   // of the payload, or of an item, that is unpacked
    std::uint32_t mPosition = 0;            // from the begin of the struct
    std::uint32_t mWidth = 0;               // 0 also for a negative one
    std::uint32_t mItems = 0;               // how many are unpacked: words or numbers
    std::uint32_t mStride = 0;              // from one of them to the next
    std::uint32_t mInner = 0;               // the layout of a struct
    const IMetadata * mRecord = nullptr;    // the provider's
    const CMetadataDetailEnum * mEnumerators = nullptr;
};

/// The fields of one struct, in the order of their payloads.
struct LayoutPlan
{
    bool mIsLittleEndian = false;
    std::uint64_t mBits = 0;
    std::vector<FieldPlan> mFields;
};

}   // namespace structcodec

class CStructPlan
{
public:
    /// The plan of a struct, as its metadata is now.
    static std::shared_ptr<const CStructPlan> Of(CMetadataDetailStruct & detail);

    /// The one that stays with the detail; null if there is none that holds.
    static const CStructPlan * Stored(const CMetadataDetailStruct & detail);

    const structcodec::LayoutPlan & Top() const { return mLayouts.front(); }

    /// The struct in a field; null if the metadata has none.
    const structcodec::LayoutPlan * Inner(const structcodec::FieldPlan & field) const
    {
        return field.mInner < mLayouts.size() ? &mLayouts[field.mInner] : nullptr;
    }

private:
    class Maker;

    bool mIsOfLibrary = true;
    std::vector<structcodec::LayoutPlan>
        mLayouts;   // the whole struct's comes first; structs may hold each other
};

namespace structcodec {

/// Leaves an error about the metadata of a struct.
void SetLayoutError(const std::string & text);

/// How far a walk along a plan has come. Bad metadata may nest without end.
struct Walk
{
    const CStructPlan & mPlan;
    std::uint64_t mValuesLeft;
    std::uint32_t mDepth = 0;

    /// Of a value without parts; false if there are too many.
    bool CountValue()
    {
        if (mValuesLeft == 0)
            return false;
        --mValuesLeft;
        return true;
    }
};

/// One struct on the way.
class Level
{
public:
    explicit Level(Walk & walk)
        : mWalk(walk)
    {
        ++mWalk.mDepth;
    }
    ~Level() { --mWalk.mDepth; }
    Level(const Level &) = delete;
    Level & operator=(const Level &) = delete;

    bool IsTooDeep() const { return mWalk.mDepth > MAX_NESTING; }

private:
    Walk & mWalk;
};

/// How many structs an array of them has when it is unpacked.
inline std::uint64_t StructsIn(const FieldPlan & field, const LayoutPlan & inner)
{
    return inner.mBits != 0 ? field.mWidth / inner.mBits : 0;
}

}   // namespace structcodec

}   // namespace VrexZynConfigTools

#endif
