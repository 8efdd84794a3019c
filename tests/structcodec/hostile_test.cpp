#include "layouts.h"

#include <configtools/structcodec.h>
#include <support/debug_capture.h>
#include <support/foreign_payload.h>
#include <support/framework_errors.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <memory>
#include <string>

// Wrong metadata: it must never lead outside the words, which the sanitizers watch, nor to a walk without end.

namespace VrexZynConfigTools {
namespace {

using namespace support;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

constexpr int INT_LIMIT = std::numeric_limits<int>::max();
constexpr int LIMIT_BITS = 1 << 27;
constexpr char TOO_DEEP[] = "the metadata nests structs too deep";

class StructCodecHostile : public testing::Test
{
protected:
    FrameworkErrors mErrors;
};

std::size_t CountOf(CComplexPayload & tree)
{
    std::size_t count = tree.GetFields().size();
    for (IPayload * const field : tree.GetFields()) {
        if (auto * const branch = dynamic_cast<CComplexPayload *>(field))
            count += CountOf(*branch);
    }
    return count;
}

/// A struct whose `copies` further fields are the struct itself.
class SelfNesting
{
public:
    explicit SelfNesting(int copies)
        : mLayout(LITTLE_ENDIAN_TARGET)
    {
        mLayout.Field(0, 8, ANumber("uint8"));
        for (int copy = 0; copy < copies; ++copy)
            mLayout.Detail().AddField("again", &mLayout.Record(), 0, 8);
    }

    Layout mLayout;
};

TEST_F(StructCodecHostile, a_struct_of_2_to_the_27_bits_is_served)
{
    Layout layout(LITTLE_ENDIAN_TARGET, true);
    layout.Field(LIMIT_BITS - 16, 16, ANumber("uint16"));
    CStructCodec codec;
    codec.Encode(*ATree(new CUint16Payload(0x4241)), layout.Detail());
    const std::string octets = OctetsOf(codec);
    EXPECT_EQ(mErrors.Text(), "");
    ASSERT_EQ(octets.size(), std::size_t{ LIMIT_BITS } / 8);
    EXPECT_EQ(octets.substr(octets.size() - 2), "AB");
}

TEST_F(StructCodecHostile, a_larger_struct_is_refused_when_packed)
{
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Field(0, 16).Field(LIMIT_BITS - 15, 16);
    CStructCodec codec;
    codec.Encode(*ATree(new CUint16Payload(7)), layout.Detail());
    EXPECT_THAT(mErrors.Text(), HasSubstr("134217729 bits"));
    mErrors.Clear();
    EXPECT_THAT(WordsOf(codec), IsEmpty());
}

TEST_F(StructCodecHostile, the_refusal_is_told_and_not_what_the_values_lack)
{
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Field(LIMIT_BITS, 16);
    CStructCodec codec;
    codec.Encode(*ATree(new CUint16Payload(1), new CUint16Payload(2)), layout.Detail());
    EXPECT_THAT(mErrors.Text(), HasSubstr("134217744 bits"));
}

TEST_F(StructCodecHostile, a_larger_struct_is_refused_when_unpacked)
{
    for (const bool isOctetsInBin : { false, true }) {
        mErrors.Clear();
        Layout layout(LITTLE_ENDIAN_TARGET, isOctetsInBin);
        layout.Field(LIMIT_BITS, 1);
        ScriptedSource source;
        source.Number(1).Text("text");
        const Decoded decoded = Decode(layout, source);
        EXPECT_FALSE(decoded.mResult);
        EXPECT_FALSE(decoded.mMore) << "an array of such structs would never end";
        EXPECT_THAT(decoded.mOut->GetFields(), IsEmpty());
        EXPECT_THAT(source.Calls(), IsEmpty());
        EXPECT_THAT(mErrors.Text(), HasSubstr("134217729 bits"));
    }
}

TEST_F(StructCodecHostile, a_struct_of_one_byte_doesnt_become_millions_of_values)
{
    SelfNesting twice(2);
    const Decoded decoded = Decode(twice.mLayout, { 0x0012 });
    EXPECT_TRUE(decoded.mResult);
    EXPECT_THAT(mErrors.Text(), HasSubstr("8 bits with more than"));
    EXPECT_LT(CountOf(*decoded.mOut), 100000U);
}

TEST_F(StructCodecHostile, a_large_array_comes_whole)
{
    constexpr int BITS = 1 << 22;
    Layout layout(LITTLE_ENDIAN_TARGET, true);
    layout.Field(0, BITS, ANumber("uint8").Array());
    ScriptedSource source;
    source.Text(std::string(BITS / 8, 'a'));
    const Decoded decoded = Decode(layout, source);
    EXPECT_EQ(mErrors.Text(), "");
    EXPECT_EQ(CountOf(*decoded.mOut), BITS / 8U + 1);
}

}   // namespace
}   // namespace VrexZynConfigTools
