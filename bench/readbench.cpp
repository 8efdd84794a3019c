#include "comparison.h"
#include "describedlayout.h"
#include "table.h"

#include <configtools/elementfactory.h>
#include <configtools/elements.h>
#include <configtools/readerwriter.h>
#include <configtools/structcodec.h>
#include <configtools/zyncontext.h>

#include <memory>
#include <vector>

using namespace VrexZynConfigTools;

namespace bench {

namespace {

/// Gives as many words as a key has, and says with the last one that nothing follows.
class KeySource : public IElementFactorySource
{
public:
    void Expect(std::size_t words) { mLeft = words; }

    bool NextInt(const std::string & /*type*/, std::uint64_t & value, std::uint16_t * /*index*/) override
    {
        value = 0x1234;
        return --mLeft != 0;
    }
    bool NextString(std::string & /*value*/, std::uint16_t * /*index*/) override { return false; }
    bool NextEnum(std::uint64_t & /*value*/, std::uint16_t * /*index*/) override { return false; }

private:
    std::size_t mLeft = 0;
};

/// Keys of a chip: numbers and structs by turns, each with a record of its own.
class DescribedKeys
{
public:
    explicit DescribedKeys(std::size_t count)
        : mFactory(&mSource, mContext, &mCodec)
    {
        for (std::uint32_t psId = 1; psId <= count; psId += 2) {
            mNumbers.push_back(
                MakeRecord(psId, keywords::TYPE_UINT16, "", false, VrexZynConfigTools::METADATA_SIMPLE));
            mNumbers.back()->SetDetails(*new CMetadataDetailSimple(*mNumbers.back()));
            mStructs.push_back(std::make_unique<Described>(SMALL8, false, psId + 1));
        }
    }

    using Elements = std::vector<std::unique_ptr<CElement>>;

    Elements Read()
    {
        Elements elements;
        for (std::size_t key = 0; key < mNumbers.size(); ++key) {
            elements.push_back(Read(*mNumbers[key], 1));
            elements.push_back(Read(mStructs[key]->Key(), SMALL8.mWordCount));
        }
        return elements;
    }

private:
    std::unique_ptr<CElement> Read(const CMetadata & record, std::size_t words)
    {
        mSource.Expect(words);
        mFactory.Clear();
        record.Inspect(mFactory);
        return std::unique_ptr<CElement>(mFactory.Collect());
    }

    KeySource mSource;
    CZynContext mContext;
    CStructCodec mCodec;
    CElementFactory mFactory;
    std::vector<std::unique_ptr<CMetadata>> mNumbers;
    std::vector<std::unique_ptr<Described>> mStructs;
};

/// The elements are deleted at the end, which is part of the time.
void OfKeys(benchmark::State & state, std::size_t count)
{
    DescribedKeys keys(count);
    for (const auto & element : keys.Read())
        if (element == nullptr)
            state.SkipWithError("a key wasn't read");
    Measure(state, count, [&] { return TimeOf([&] { benchmark::DoNotOptimize(keys.Read().size()); }); });
}

}   // namespace

void RegisterReads()
{
    for (const std::size_t count : KEY_COUNTS)
        Register("read/keys", count, [count](benchmark::State & state) { OfKeys(state, count); });
}

}   // namespace bench
