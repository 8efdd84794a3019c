// A factory that is called in any order, with metadata of any kind. Whatever comes of it is an element that can be
// looked at and deleted; run-time checks see what was used that is gone.

#include "factory_fixture.h"

#include <support/random_source.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace VrexZynConfigTools {
namespace {

using support::ARecord;
using support::RandomSource;
using support::TreeOf;

/// Answers anything, with an error now and then.
class RandomValues : public IElementFactorySource
{
public:
    explicit RandomValues(RandomSource & random)
        : mRandom(random)
    {}

    bool NextInt(const std::string & /*typeName*/, std::uint64_t & value, std::uint16_t * /*index*/) override
    {
        value = mRandom.Below(3);
        return Answer();
    }
    bool NextString(std::string & value, std::uint16_t * /*index*/) override
    {
        value.assign(mRandom.Below(6), '\0');
        return Answer();
    }
    bool NextEnum(std::uint64_t & value, std::uint16_t * /*index*/) override
    {
        value = mRandom.Below(3);
        return Answer();
    }

    /// An array that a codec has read is walked until the source says that nothing follows.
    bool mMayHaveMore = true;

private:
    bool Answer()
    {
        if (mRandom.Chance(3))
            CTheMsgHnd::GetAppropriateHandler(GROUP_FRAMEWORK, "RandomValues", false)
                .SetErrorMsg(0, "an error");
        return mMayHaveMore && mRandom.Chance(70);
    }

    RandomSource & mRandom;
};

/// Records good and bad. A struct holds records that come after it, so that there is an end to it.
class RandomRecords
{
public:
    explicit RandomRecords(RandomSource & random)
        : mRandom(random)
    {
        for (int count = 0; count < 10; ++count)
            mRecords.push_back(ABuilder().Build());
        for (std::size_t place = 0; place < mRecords.size(); ++place)
            AddDetails(place);
    }

    const IMetadata & Any() { return *mRandom.Of(mRecords); }

private:
    ARecord ABuilder()
    {
        static const std::vector<std::string> TYPES{ "uint8", "int16", "uint64", "integer", "string",
            "octet_string", "", "unknown" };
        static const std::vector<MetadataTypeEnum> SHAPES{ METADATA_SIMPLE, METADATA_ENUM, METADATA_STRUCT,
            METADATA_STRUCT, METADATA_NONE };
        ARecord record(mRandom.Chance(50) ? 0 : 100);
        record.Named("key").OfType(mRandom.Of(TYPES)).Shaped(mRandom.Of(SHAPES)).Within(0, 1);
        record.WithNumIndices(static_cast<std::uint32_t>(mRandom.Below(2)));
        return mRandom.Chance(30) ? record.Array() : record;
    }

    void AddDetails(std::size_t place)
    {
        CMetadata & record = *mRecords[place];
        const bool isLying = mRandom.Chance(10);
        const MetadataTypeEnum shape = isLying ? METADATA_SIMPLE : record.MetadataType();
        if (shape == METADATA_STRUCT)
            AddFields(record, place);
        else if (shape == METADATA_ENUM)
            AddEnumerators(record);
        else if (mRandom.Chance(90))
            record.SetDetails(*new CMetadataDetailSimple(record));
        if (mRandom.Chance(30))
            record.AddTableIndex(new CTableIndex("index", 0, 1, CTableIndex::INDEX_ENUM));
    }

    void AddFields(CMetadata & record, std::size_t place)
    {
        static const std::vector<int> POSITIONS{ 0, 3, 8, 16, 24, 31, 40, -5, 1000 };
        static const std::vector<int> WIDTHS{ 1, 4, 8, 12, 16, 20, 64, 70, 0, -3 };
        auto * const detail = new CMetadataDetailStruct(record, mRandom.Chance(50), mRandom.Chance(20));
        record.SetDetails(*detail);
        for (std::size_t left = mRandom.Below(4); left > 0; --left)
            detail->AddField("", FieldOf(place), mRandom.Of(POSITIONS), mRandom.Of(WIDTHS));
    }

    /// A record that comes after the one at `place`; now and then none.
    const IMetadata * FieldOf(std::size_t place)
    {
        const std::size_t field = place + 1 + mRandom.Below(3);
        return field < mRecords.size() && mRandom.Chance(95) ? mRecords[field].get() : nullptr;
    }

    void AddEnumerators(CMetadata & record)
    {
        auto * const detail = new CMetadataDetailEnum(record);
        record.SetDetails(*detail);
        detail->AddEnum("off", "0");
        detail->AddEnum("on", "1");
    }

    RandomSource & mRandom;
    std::vector<std::unique_ptr<CMetadata>> mRecords;
};

class RandomCalls : public testing::TestWithParam<bool>
{
protected:
    /// One factory's life.
    void Live(std::uint32_t seed)
    {
        RandomSource random(seed);
        RandomRecords records(random);
        RandomValues values(random);
        CZynContext context;
        CStructCodec codec;
        CElementFactory factory(&values, context, WithCodec() ? &codec : nullptr);
        for (int call = 0; call < 40; ++call) {
            if (random.Chance(15))
                Walk(factory, values, records.Any());
            else
                Call(factory, random, records.Any());
        }
        TakeElement(factory);
    }

private:
    static bool WithCodec() { return GetParam(); }

    static void Walk(CElementFactory & factory, RandomValues & values, const IMetadata & record)
    {
        if (WithCodec())
            values.mMayHaveMore = false;
        factory.Clear();   // which ends the passing over of an earlier struct, so that the walk comes to an end
        record.Inspect(factory);
        values.mMayHaveMore = true;
    }

    static void Call(CElementFactory & factory, RandomSource & random, const IMetadata & record)
    {
        static const std::vector<int> WIDTHS{ 1, 8, 12, 24, 64, 0, -3, 2147483647 };
        switch (random.Below(14)) {
        case 0:
        case 1:
            return factory.StartElement(record);
        case 2:
            return factory.EndElement();
        case 3:
        case 4:
            return factory.StartStruct(record);
        case 5:
            return factory.EndStruct();
        case 6:
            return factory.IntIndex(CTableIndex("index", 0, 1, CTableIndex::INDEX_INTEGER));
        case 7:
        case 8:
            return factory.Int(record);
        case 9:
            return factory.String(record);
        case 10:
            return factory.Enum(record);
        case 11:
            return factory.SetContextInfo("elembitwidth", random.Of(WIDTHS));
        case 12:
            return factory.Clear();
        default:
            return TakeElement(factory);
        }
    }

    static void TakeElement(CElementFactory & factory)
    {
        const std::unique_ptr<CElement> element(factory.Collect());
        EXPECT_EQ(TreeOf(element).find('?'), std::string::npos);
        EXPECT_TRUE(element == nullptr || element->IsValid());
    }

    const support::FrameworkErrors mErrors;
    const support::GroupErrors mReaderErrors{ GROUP_OUTER_READER };
};

TEST_P(RandomCalls, come_to_no_harm)
{
    for (std::uint32_t seed = 0; seed < 1000; ++seed)
        Live(seed);
}

INSTANTIATE_TEST_SUITE_P(Factory, RandomCalls, testing::Bool(),
    [](const auto & parameter) { return std::string(parameter.param ? "with_a_codec" : "field_by_field"); });

}   // namespace
}   // namespace VrexZynConfigTools
