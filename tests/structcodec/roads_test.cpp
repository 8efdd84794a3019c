#include "layouts.h"

#include <configtools/elements.h>
#include <configtools/keywords.h>
#include <support/foreign_payload.h>
#include <support/framework_errors.h>
#include <support/random_source.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

// A struct of exactly the library's classes is packed and unpacked by a plan, one of a derived class field by field. The
// same fields in one of each: values, records, words and errors have to be the same, also where nothing fits.

namespace VrexZynConfigTools {
namespace {

using namespace support;

constexpr std::uint32_t LAYOUTS = 1500;

class DerivedStruct : public CMetadataDetailStruct
{
public:
    using CMetadataDetailStruct::CMetadataDetailStruct;
};

const std::vector<std::string> TYPES = { keywords::TYPE_UINT8, keywords::TYPE_INT8, keywords::TYPE_UINT16,
    keywords::TYPE_INT16, keywords::TYPE_UINT32, keywords::TYPE_INT32, keywords::TYPE_UINT64,
    keywords::TYPE_INT64, keywords::TYPE_INTEGER, "nonsense" };
const std::vector<std::string> FORMATS = { "", keywords::FORMAT_SIGNED_DECIMAL,
    keywords::FORMAT_UNSIGNED_DECIMAL };
const std::vector<int> WIDTHS = { -3, 0, 1, 5, 8, 12, 15, 16, 16, 16, 17, 24, 32, 33, 48, 63, 64, 65, 80, 200 };

Layout RandomLayout(RandomSource & random, int depth)
{
    Layout layout(random.Chance(60) ? LITTLE_ENDIAN_TARGET : BIG_ENDIAN_TARGET, depth == 0 && random.Chance(20),
        random.Chance(40) ? ARecord(0).Array() : ARecord(0));
    for (std::size_t count = random.Below(8); count > 0; --count) {
        const int position =
            random.Chance(5) ? -20 : static_cast<int>(random.Below(12)) * (random.Chance(50) ? 8 : 5);
        const int width = random.Of(WIDTHS);
        ARecord record = ANumber(random.Of(TYPES), random.Of(FORMATS));
        if (random.Chance(25))
            record.Array();
        if (random.Chance(20) && depth < 2)
            layout.Struct(position, width, RandomLayout(random, depth + 1));
        else if (random.Chance(20))
            layout.Enum(position, width, { { "a", "1" }, { "b", "-1" }, { "c", "1" } }, record);
        else
            layout.Field(position, width, record);
    }
    return layout;
}

/// Mostly what fits a number, sometimes anything.
IPayload * RandomPayload(RandomSource & random, int depth)
{
    const std::uint64_t value = random.Below(1U << 31) * 0x123456789ULL;
    NumericVariable number;
    number.mUint64 = value;
    switch (random.Below(24)) {
    case 0:
        return nullptr;
    case 1:
        return new ForeignPayload(std::string(random.Below(9), '\x5A'));
    case 2:
        return new CStringPayload("text", false);
    case 3:
    case 4:
        return new CEnumPayload("name", static_cast<std::int32_t>(value));
    case 5:
    case 6:
    case 7:
        if (depth < 3) {
            auto tree = ATree();
            for (std::size_t count = random.Below(5); count > 0; --count)
                tree->AddField(RandomPayload(random, depth + 1));
            return tree.release();
        }
        [[fallthrough]];
    default:
        return CElementNumericArray::GetPayloadByNumericType(
            static_cast<NumericTypeEnum>(random.Below(8)), number);
    }
}

void ExpectSame(IPayload & left, IPayload & right)
{
    EXPECT_TRUE(left == right) << TextOf(left) << " and " << TextOf(right);
    auto * const leftUser = dynamic_cast<IMetadataUser *>(&left);
    auto * const rightUser = dynamic_cast<IMetadataUser *>(&right);
    ASSERT_TRUE(leftUser != nullptr && rightUser != nullptr);
    EXPECT_EQ(leftUser->Metadata(), rightUser->Metadata());
    auto * const leftTree = dynamic_cast<CComplexPayload *>(&left);
    auto * const rightTree = dynamic_cast<CComplexPayload *>(&right);
    if (leftTree == nullptr || rightTree == nullptr)
        return;
    const std::size_t count = std::min(leftTree->GetFields().size(), rightTree->GetFields().size());
    for (std::size_t field = 0; field < count; ++field)
        ExpectSame(*leftTree->GetFields()[field], *rightTree->GetFields()[field]);
}

class StructCodecRoads : public testing::Test
{
protected:
    /// The same fields in a struct of a derived class.
    static std::unique_ptr<CMetadataDetailStruct> Derived(Layout & layout)
    {
        CMetadataDetailStruct & detail = layout.Detail();
        auto derived =
            std::make_unique<DerivedStruct>(layout.Record(), detail.IsLittleEndian(), detail.IsOctetsInBin());
        for (const CStructField * const field : *detail.GetStructFields())
            derived->AddField("", field->Metadata(), field->ElemLsbBitPos(), field->ElemBitWidth());
        return derived;
    }

    std::string ErrorOf(CStructCodec & codec, CMetadataDetailStruct & detail, CComplexPayload & tree)
    {
        mErrors.Clear();
        codec.Encode(tree, detail);
        return mErrors.Text();
    }

    std::pair<std::unique_ptr<CComplexPayload>, std::string> Unpacked(
        CMetadataDetailStruct & detail, std::uint32_t seed)
    {
        mErrors.Clear();
        RandomSource random(seed);
        ScriptedSource source;
        std::string octets;
        for (int word = 0; word < 60; ++word) {
            const std::uint64_t value = random.Below(65536);
            octets += static_cast<char>(value);
            if (!detail.IsOctetsInBin())
                source.Number(value);
        }
        if (detail.IsOctetsInBin())
            source.Text(octets);
        auto tree = ATree();
        bool more = false;
        CStructCodec codec;
        const bool result = codec.Decode(source, detail, tree.get(), more);
        return { std::move(tree), mErrors.Text() + (result ? " true" : " false") + (more ? " more" : " end") };
    }

    FrameworkErrors mErrors;
};

TEST_F(StructCodecRoads, pack_the_same)
{
    std::size_t faulty = 0;
    for (std::uint32_t seed = 1; seed <= LAYOUTS && !HasFailure(); ++seed) {
        SCOPED_TRACE(seed);
        RandomSource random(seed);
        Layout layout = RandomLayout(random, 0);
        const auto derived = Derived(layout);
        const auto tree = ATree();
        for (std::size_t count = random.Below(10); count > 0; --count)
            tree->AddField(RandomPayload(random, 0));
        CStructCodec planned;
        CStructCodec literal;
        const std::string error = ErrorOf(literal, *derived, *tree);
        EXPECT_EQ(ErrorOf(planned, layout.Detail(), *tree), error);
        mErrors.Clear();
        EXPECT_EQ(WordsOf(planned), WordsOf(literal));
        EXPECT_EQ(OctetsOf(planned), OctetsOf(literal));
        faulty += error.empty() ? 0U : 1U;
    }
    EXPECT_GT(faulty, 10U);
    EXPECT_LT(faulty, LAYOUTS * 9 / 10);
}

TEST_F(StructCodecRoads, unpack_the_same)
{
    std::size_t faulty = 0;
    for (std::uint32_t seed = 1; seed <= LAYOUTS && !HasFailure(); ++seed) {
        SCOPED_TRACE(seed);
        RandomSource random(seed);
        Layout layout = RandomLayout(random, 0);
        const auto derived = Derived(layout);
        const auto [planned, outcome] = Unpacked(layout.Detail(), seed);
        const auto [literal, expected] = Unpacked(*derived, seed);
        EXPECT_EQ(outcome, expected);
        ExpectSame(*planned, *literal);
        EXPECT_TRUE(*literal == *planned);
        faulty += expected.front() != ' ';
    }
    EXPECT_GT(faulty, 10U);
    EXPECT_LT(faulty, LAYOUTS / 2);
}

}   // namespace
}   // namespace VrexZynConfigTools
