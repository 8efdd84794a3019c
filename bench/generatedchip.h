/// A chip made up for measuring: layers of keys with numbers and names as a real chip has them, the same in every run.

#ifndef BENCH_GENERATEDCHIP_H
#define BENCH_GENERATEDCHIP_H

#include <configtools/chipconfig.h>
#include <configtools/readerwriter.h>
#include <configtools/subsystemconfig.h>
#include <configtools/zyncontext.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace bench {

struct Key
{
    std::uint32_t mId;
    std::string mName;   // 12 to 28 characters
};

using Keys = std::vector<Key>;

/// `count` keys by ascending number: runs of neighbouring numbers with gaps between them.
Keys MakeKeys(std::size_t count);

/// A new element with one 8-bit value.
std::unique_ptr<VrexZynConfigTools::CElement> MakeElement(const Key & key);

/// `count` draws, evenly spread over `keys`, in random order.
Keys DrawKeys(const Keys & keys, std::size_t count, std::mt19937 & random);

/// One subsystem in up to 15 stores, so as many layers. Each layer holds the given number of keys: a random half of
/// all that are in use, so that each layer overrides some keys of those below and leaves others alone. A tenth of the
/// bottom layer's keys is in no other layer.
class GeneratedChip
{
public:
    /// With `layerFilter` the read is a filtered one.
    GeneratedChip(std::size_t keysPerLayer, int layers, const std::string & layerFilter = "");

    VrexZynConfigTools::CChipConfig & Chip() { return *mChip; }
    VrexZynConfigTools::CSubsystemConfig & TopSubsystem();

    const Keys & InTopLayer() const { return mInTopLayer; }
    const Keys & InAnyLayer() const { return mInAnyLayer; }
    const Keys & InBottomLayerOnly() const { return mInBottomLayerOnly; }
    const Keys & InNoLayer() const { return mInNoLayer; }

    /// A context that addresses the top layer.
    VrexZynConfigTools::CZynContext TopContext() const;

private:
    void DistributeKeys(std::size_t keysPerLayer);
    void ReadLayer(VrexZynConfigTools::IConfigReader & reader, int layer, const Keys & keys);

    int mLayers;
    std::string mLayerFilter;
    std::unique_ptr<VrexZynConfigTools::CChipConfig> mChip;
    std::vector<Keys> mLayerKeys;
    Keys mInTopLayer;
    Keys mInAnyLayer;
    Keys mInBottomLayerOnly;
    Keys mInNoLayer;
};

}   // namespace bench

#endif
