#include "comparison.h"
#include "generatedchip.h"
#include "table.h"

#include <configtools/keywords.h>
#include <configtools/payloads.h>

using namespace VrexZynConfigTools;

namespace bench {

namespace {

constexpr int LAYERS = 6;

/// Counts what it is given and drops it.
class CountingWriter : public IConfigWriter
{
public:
    void PrepareWriter(IConfigContext & /*context*/) override {}
    void StartWrite(IConfigContext & /*context*/) override {}
    void EndWrite(IConfigContext & /*context*/) override {}
    void StartSubsystem(IConfigContext & /*context*/) override {}
    void EndSubsystem(IConfigContext & /*context*/) override {}
    void StartElement(IConfigContext & /*context*/) override {}
    void EndElement(IConfigContext & /*context*/) override {}
    void WriteKeyId(std::uint32_t /*psId*/, IConfigContext & /*context*/) override { ++mKeys; }
    void WriteNamedData(const std::string & /*name*/, const void * /*data*/, std::uint32_t /*size*/,
        IConfigContext & /*context*/) override
    {}
    void WritePayload(IPayload & payload, IConfigContext & /*context*/) override { mBytes += payload.Length(); }

    std::size_t Keys() const { return mKeys; }
    std::uint64_t Bytes() const { return mBytes; }

private:
    std::size_t mKeys = 0;
    std::uint64_t mBytes = 0;
};

/// Gives the chip to a writer; the time for each key that arrives there.
void OfChip(benchmark::State & state, std::size_t keysPerLayer, const std::string & layerFilter)
{
    GeneratedChip chip(keysPerLayer, LAYERS, layerFilter);
    CZynContext context;
    context.SetTag(keywords::TAG_LAYER_FILTER, layerFilter);
    const auto write = [&] {
        CountingWriter writer;
        const double time = TimeOf([&] { chip.Chip().Write(writer, context); });
        benchmark::DoNotOptimize(writer.Bytes());
        return std::pair(time, writer.Keys());
    };
    const std::size_t keys = write().second;
    if (keys < keysPerLayer)
        state.SkipWithError("the writer didn't get all keys");
    Measure(state, keys, [&] { return write().first; });
}

}   // namespace

void RegisterWrites()
{
    for (const std::size_t keysPerLayer : KEY_COUNTS) {
        const auto add = [keysPerLayer](const std::string & row, const std::string & layerFilter) {
            Register(
                row, keysPerLayer, [=](benchmark::State & state) { OfChip(state, keysPerLayer, layerFilter); });
        };
        add("write/full", "");
        add("write/filtered", "15");
    }
}

}   // namespace bench
