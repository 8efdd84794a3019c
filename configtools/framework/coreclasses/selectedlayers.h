/// The subsystems that a chip context selects in one chip, by layer, as far as lookups have asked for them.

#ifndef CONFIGTOOLS_SELECTEDLAYERS_H
#define CONFIGTOOLS_SELECTEDLAYERS_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>

namespace VrexZynConfigTools {

class CSubsystemConfig;
class IConfigContext;

/// The layers in which a lookup searches, from the top one down to the bottom one.
struct CLayerRange
{
    int mTop;
    int mBottom;
    bool mIsClamped = false;   // the filter was out of range
};

/// The range of a lookup with this filter. The filter's sign doesn't count, intended, though a filtered read honours it:
/// junk, 0 and negative ones are layer 1.
CLayerRange FilteredRange(const std::string & filter, IConfigContext & context);

/// Stored with a context of the library's chip context class.
class CSelectedLayers
{
public:
    using Subsystems = std::map<std::string, CSubsystemConfig *>;

    static constexpr int TOP_LAYER = 15;
    static constexpr int OWN_LAYER =
        16;   // stands for a layer whose tag is no number from 0 to 15 in plain decimal

    /// To be called before a lookup: forgets the subsystems of another set than the one with this stamp.
    void Use(std::uint64_t stamp)
    {
        if (mStamp != stamp) {
            mKnown = 0;
            mStamp = stamp;
        }
    }

    /// The context's own layer, or with a filter the layers from there down.
    const CLayerRange & Range(IConfigContext & context)
    {
        return mRange ? *mRange : *(mRange = FindRange(context));
    }

    /// The subsystem of the context's chip and type in this layer; null if there is none.
    CSubsystemConfig * At(int layer, IConfigContext & context, const Subsystems & subsystems)
    {
        const auto at = static_cast<std::size_t>(layer);
        if ((mKnown >> at & 1U) == 0)
            Find(at, context, subsystems);
        return mSubsystems[at];
    }

    void OnTagsChanged(const std::string * key) noexcept;

private:
    static CLayerRange FindRange(IConfigContext & context);
    void Find(std::size_t layer, IConfigContext & context, const Subsystems & subsystems);

    std::uint64_t mStamp = 0;   // no set of subsystems has the stamp 0
    std::uint32_t mKnown = 0;   // a bit for each layer whose subsystem is known
    std::optional<CLayerRange> mRange;
    std::array<CSubsystemConfig *, OWN_LAYER + 1> mSubsystems;
    std::string mKeyHead;   // of the keys of all layers, as far as the layer's number; empty if not known
};

}   // namespace VrexZynConfigTools

#endif
