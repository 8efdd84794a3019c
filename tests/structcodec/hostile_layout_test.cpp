#include "layouts.h"

#include <configtools/structcodec.h>
#include <support/framework_errors.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <vector>

// Wrong metadata: it must never lead outside the words, which the sanitizers watch, nor to a walk without end.

namespace VrexZynConfigTools {
namespace {

using namespace support;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr int INT_LIMIT = std::numeric_limits<int>::max();
constexpr int LIMIT_BITS = 1 << 27;
constexpr char TOO_DEEP[] = "the metadata nests structs too deep";

class HostileLayout : public testing::Test
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

TEST_F(HostileLayout, a_struct_of_2_to_the_27_bits_is_served)
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

TEST_F(HostileLayout, a_larger_struct_is_refused_when_packed)
{
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Field(0, 16).Field(LIMIT_BITS - 15, 16);
    CStructCodec codec;
    codec.Encode(*ATree(new CUint16Payload(7)), layout.Detail());
    EXPECT_THAT(mErrors.Text(), HasSubstr("134217729 bits"));
    mErrors.Clear();
    EXPECT_THAT(WordsOf(codec), IsEmpty());
}

TEST_F(HostileLayout, the_refusal_is_told_and_not_what_the_values_lack)
{
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Field(LIMIT_BITS, 16);
    CStructCodec codec;
    codec.Encode(*ATree(new CUint16Payload(1), new CUint16Payload(2)), layout.Detail());
    EXPECT_THAT(mErrors.Text(), HasSubstr("134217744 bits"));
}

TEST_F(HostileLayout, a_larger_struct_is_refused_when_unpacked)
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

TEST_F(HostileLayout, a_struct_of_one_byte_doesnt_become_millions_of_values)
{
    SelfNesting twice(2);
    const Decoded decoded = Decode(twice.mLayout, { 0x0012 });
    EXPECT_TRUE(decoded.mResult);
    EXPECT_THAT(mErrors.Text(), HasSubstr("8 bits with more than"));
    EXPECT_LT(CountOf(*decoded.mOut), 100000U);
}

/// Structs within structs take payloads too, but no more values than there are bits.
TEST_F(HostileLayout, many_small_structs_that_are_nested_deep_are_unpacked_whole)
{
    constexpr int STRUCTS = 20'000;
    constexpr std::size_t DEPTH = 8;
    Layout inner(LITTLE_ENDIAN_TARGET);
    inner.Field(0, 1, ANumber("uint8"));
    for (std::size_t depth = 1; depth < DEPTH; ++depth) {
        Layout outer(LITTLE_ENDIAN_TARGET, false, depth == DEPTH - 1 ? ARecord(0).Array() : ARecord(0));
        outer.Struct(0, 1, std::move(inner));
        inner = std::move(outer);
    }
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Struct(0, STRUCTS, std::move(inner));
    const Decoded decoded = Decode(layout, Words(STRUCTS / 16, 0xFFFF));
    EXPECT_TRUE(decoded.mResult);
    EXPECT_EQ(mErrors.Text(), "");
    EXPECT_EQ(CountOf(*decoded.mOut), STRUCTS * (DEPTH + 1) + 1);
}

TEST_F(HostileLayout, a_large_array_comes_whole)
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

/// Self-nesting values, as deep as told.
std::unique_ptr<CComplexPayload> ADeepTree(int depth)
{
    auto tree = ATree(new CUint8Payload(1));
    for (int level = 1; level < depth; ++level)
        tree = ATree(new CUint8Payload(1), tree.release());
    return tree;
}

TEST_F(HostileLayout, values_may_nest_64_deep_and_no_deeper)
{
    SelfNesting once(1);
    EXPECT_THAT(Encoded(once.mLayout, ADeepTree(64)), ElementsAre(1));
    EXPECT_EQ(mErrors.Text(), "");
    CStructCodec codec;
    codec.Encode(*ADeepTree(65), once.mLayout.Detail());
    EXPECT_EQ(mErrors.Text(), TOO_DEEP);
}

TEST_F(HostileLayout, a_struct_that_holds_itself_is_unpacked_64_deep)
{
    SelfNesting once(1);
    const Decoded decoded = Decode(once.mLayout, { 0x0012 });
    EXPECT_TRUE(decoded.mResult) << "what unpacking itself reports is not looked at";
    EXPECT_EQ(mErrors.Text(), TOO_DEEP);
    EXPECT_EQ(CountOf(*decoded.mOut), 2 * 64U);
}

TEST_F(HostileLayout, the_depth_is_counted_anew_each_time)
{
    SelfNesting once(1);
    CStructCodec codec;
    const auto tooDeep = ADeepTree(65);
    codec.Encode(*tooDeep, once.mLayout.Detail());
    mErrors.Clear();
    codec.Encode(*ADeepTree(64), once.mLayout.Detail());
    EXPECT_EQ(mErrors.Text(), "");
}

TEST_F(HostileLayout, a_wide_field_in_word_0_of_a_big_endian_struct_loses_what_lies_below)
{
    for (const int width : { 32, 48, 64 }) {
        Layout layout(BIG_ENDIAN_TARGET);
        layout.Field(0, width, ANumber("uint64"));
        EXPECT_THAT(Encoded(layout, ATree(new CUint64Payload(0x123456789ABCDEF0))), ElementsAre(0xDEF0));
    }
    Layout layout(BIG_ENDIAN_TARGET);
    layout.Field(16, 48, ANumber("uint64"));
    EXPECT_EQ(DecodedText(layout, { 2, 1 }), "9:(7:131073)") << "and the third word is 0";
    EXPECT_EQ(mErrors.Text(), "");
}

TEST_F(HostileLayout, an_array_item_in_word_0_of_a_big_endian_struct_has_no_high_half)
{
    Layout layout(BIG_ENDIAN_TARGET);
    layout.Field(0, 32, ANumber("uint32").Array());
    EXPECT_EQ(DecodedText(layout, { 7, 8 }), "9:(9:(6:7))");
}

/// A struct of 16 bits in which a nested one reaches further than its field says.
Layout Overreaching(int position, int width, const ARecord & record)
{
    Layout nested(LITTLE_ENDIAN_TARGET);
    nested.Field(position, width, record);
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Struct(0, 16, std::move(nested));
    return layout;
}

TEST_F(HostileLayout, a_straddling_field_at_the_end_keeps_its_low_byte)
{
    Layout layout = Overreaching(8, 16, ANumber("uint16"));
    EXPECT_THAT(Encoded(layout, ATree(ABranch(new CUint16Payload(0xBEEF)))), ElementsAre(0xEF00));
    EXPECT_EQ(DecodedText(layout, { 0xEF00 }), "9:(9:(5:239))");
}

TEST_F(HostileLayout, fields_past_the_end_are_dropped_and_read_as_0)
{
    for (const int position : { 16, 24, 1600, INT_LIMIT, -16, -1 }) {
        for (const int width : { 8, 16, 32, 40, 64 }) {
            Layout layout = Overreaching(position, width, ANumber("uint64"));
            EXPECT_THAT(Encoded(layout, ATree(ABranch(new CUint16Payload(0xFFFF)))), ElementsAre(0));
            EXPECT_EQ(DecodedText(layout, { 0xFFFF }), "9:(9:(7:0))");
        }
        Layout layout = Overreaching(position, 80, ANumber("uint64"));
        EXPECT_THAT(Encoded(layout, ATree(ABranch(AWordBranch({ 1, 1, 1, 1, 1 })))), ElementsAre(0));
        EXPECT_EQ(DecodedText(layout, { 0xFFFF }), "9:(9:(9:(5:0 5:0 5:0 5:0 5:0)))");
    }
    EXPECT_EQ(mErrors.Text(), "");
}

TEST_F(HostileLayout, a_wide_field_across_the_end_keeps_what_lies_within)
{
    Layout wide = Overreaching(0, 40, ANumber("uint64"));
    EXPECT_THAT(Encoded(wide, ATree(ABranch(new CUint64Payload(0x123456789A)))), ElementsAre(0x789A));
    EXPECT_EQ(DecodedText(wide, { 0x789A }), "9:(9:(7:30874))");
    Layout wider = Overreaching(0, 80, ANumber("uint64"));
    EXPECT_THAT(Encoded(wider, ATree(ABranch(AWordBranch({ 5, 6, 7 })))), ElementsAre(5));
    EXPECT_EQ(DecodedText(wider, { 5 }), "9:(9:(9:(5:5 5:0 5:0 5:0 5:0)))");
}

TEST_F(HostileLayout, array_items_past_the_end_are_0)
{
    for (const char * const type : { "uint8", "uint16", "uint32", "uint64" }) {
        Layout layout = Overreaching(0, 1600, ANumber(type).Array());
        const Decoded decoded = Decode(layout, { 0x0101 });
        const std::uint32_t items = 1600 / CStructCodec::BitsForInternalType(type);
        EXPECT_EQ(CountOf(*decoded.mOut), items + 2);
        EXPECT_THAT(TextOf(*decoded.mOut), HasSubstr(":0 ")) << type;
    }
    Layout layout = Overreaching(0, 64, ANumber("uint16").Array());
    EXPECT_THAT(Encoded(layout, ATree(ABranch(AWordBranch({ 1, 2, 3, 4 })))), ElementsAre(1));
}

TEST_F(HostileLayout, the_words_of_a_payload_that_is_too_long_are_dropped)
{
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Field(0, 80);
    EXPECT_THAT(Encoded(layout, ATree(AWordBranch({ 1, 2, 3, 4, 5, 6, 7, 8 }))), ElementsAre(1, 2, 3, 4, 5));
}

TEST_F(HostileLayout, a_field_that_ends_below_0_makes_a_struct_that_is_far_too_large)
{
    for (const auto & [position, width] : { std::pair(-16, 8), std::pair(0, -1), std::pair(-INT_LIMIT - 1, 1),
             std::pair(-INT_LIMIT - 1, -INT_LIMIT - 1) })
    {
        mErrors.Clear();
        Layout layout(LITTLE_ENDIAN_TARGET);
        layout.Field(0, 8).Field(position, width);
        ScriptedSource source;
        const Decoded decoded = Decode(layout, source);
        EXPECT_FALSE(decoded.mResult);
        EXPECT_FALSE(decoded.mMore);
        EXPECT_THAT(mErrors.Text(), HasSubstr("more than the 134217728 that one can have"));
    }
}

TEST_F(HostileLayout, ends_are_added_without_wrapping_round)
{
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Field(INT_LIMIT, INT_LIMIT);
    CStructCodec codec;
    codec.Encode(*ATree(), layout.Detail());
    EXPECT_THAT(mErrors.Text(), HasSubstr("4294967294 bits"));
}

TEST_F(HostileLayout, a_field_that_starts_below_0_loses_all)
{
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Field(-8, 24, ANumber("uint32"));
    EXPECT_THAT(Encoded(layout, ATree(new CUint32Payload(0xFFFFFF))), ElementsAre(0));
    EXPECT_EQ(DecodedText(layout, { 0xFFFF }), "9:(6:0)");
}

TEST_F(HostileLayout, a_field_of_a_width_of_0_or_less_has_no_bits)
{
    for (const int width : { 0, -1, -17, -100 }) {
        Layout layout(LITTLE_ENDIAN_TARGET);
        layout.Field(0, 8, ANumber("uint8")).Field(100, width, ANumber("uint8"));
        EXPECT_EQ(Encoded(layout, ATree(new CUint8Payload(7), new CUint8Payload(0xFF))).front(), 7);
        EXPECT_EQ(DecodedText(layout, Words(7, 0xFFFF)), "9:(4:255 4:0)") << width;
    }
    EXPECT_EQ(mErrors.Text(), "");
}

TEST_F(HostileLayout, an_array_of_a_width_of_0_or_less_has_no_items)
{
    for (const int width : { 0, -1, -100 }) {
        Layout layout(LITTLE_ENDIAN_TARGET);
        layout.Field(0, 8, ANumber("uint8")).Field(100, width, ANumber("uint8").Array());
        EXPECT_EQ(Encoded(layout, ATree(new CUint8Payload(7), AWordBranch({ 1, 2 }))).front(), 7);
        EXPECT_EQ(Encoded(layout, ATree(new CUint8Payload(7), new CUint16Payload(9))).front(), 7);
        EXPECT_EQ(DecodedText(layout, Words(7, 0xFFFF)), "9:(4:255 9:())") << width;
    }
    EXPECT_EQ(mErrors.Text(), "");
}

Layout AnInnerByte(const ARecord & record)
{
    Layout inner(LITTLE_ENDIAN_TARGET, false, record);
    inner.Field(0, 8, ANumber("uint8"));
    return inner;
}

TEST_F(HostileLayout, an_array_of_structs_of_a_width_of_0_or_less_has_none)
{
    for (const int width : { 0, -1, -100 }) {
        Layout layout(LITTLE_ENDIAN_TARGET);
        layout.Struct(100, width, AnInnerByte(ARecord(0).Array()));
        EXPECT_EQ(DecodedText(layout, Words(7, 0xFFFF)), "9:(9:())") << width;
    }
}

TEST_F(HostileLayout, an_array_of_structs_without_a_size_has_none)
{
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Struct(0, 32, Layout(LITTLE_ENDIAN_TARGET, false, ARecord(0).Named("inner").Array()));
    const Decoded decoded = Decode(layout, { 1, 2 });
    EXPECT_TRUE(decoded.mResult);
    EXPECT_EQ(TextOf(*decoded.mOut), "9:(9:())");
    EXPECT_EQ(mErrors.Text(), "the structs of the array inner have no size in the metadata");
}

TEST_F(HostileLayout, an_array_of_structs_that_are_far_too_large_has_none)
{
    Layout inner(LITTLE_ENDIAN_TARGET, false, ARecord(0).Array());
    inner.Field(0, -1, ANumber("uint8"));
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Struct(0, 32, std::move(inner));
    EXPECT_EQ(DecodedText(layout, { 1, 2 }), "9:(9:())");
    EXPECT_THAT(Encoded(layout, ATree(ABranch(ABranch(new CUint8Payload(1)), ABranch(new CUint8Payload(1))))),
        ElementsAre(0, 0));
}

TEST_F(HostileLayout, a_nested_struct_without_fields_is_empty)
{
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Struct(0, 16, Layout(LITTLE_ENDIAN_TARGET));
    EXPECT_THAT(Encoded(layout, ATree(ABranch())), ElementsAre(0));
    EXPECT_EQ(DecodedText(layout, { 1 }), "9:(9:())");
    EXPECT_EQ(mErrors.Text(), "");
}

/// As a plug-in might derive it.
class StructWithoutList : public CMetadataDetailStruct
{
public:
    using CMetadataDetailStruct::CMetadataDetailStruct;
    const std::vector<const CStructField *> * GetStructFields() override { return nullptr; }
};

TEST_F(HostileLayout, a_struct_without_a_list_of_fields_is_empty)
{
    const auto record = ARecord(0).Shaped(METADATA_STRUCT).Build();
    auto * const detail = new StructWithoutList(*record, true, false);
    record->SetDetails(*detail);
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Detail().AddField("inner", record.get(), 0, 8);
    EXPECT_EQ(DecodedText(layout, { 7 }), "9:(9:())");
    EXPECT_THAT(Encoded(layout, ATree(ABranch())), ElementsAre(0));

    CStructCodec codec;
    codec.Encode(*ATree(), *detail);
    EXPECT_THAT(WordsOf(codec), IsEmpty());
    EXPECT_EQ(mErrors.Text(), "");
}

/// A byte on either side of a hole.
class StructWithHole : public CMetadataDetailStruct
{
public:
    explicit StructWithHole(const CMetadata & record)
        : CMetadataDetailStruct(record, true, false)
        , mByte(ANumber("uint8").Build())
        , mLow(mByte.get(), 0, 8)
        , mHigh(mByte.get(), 8, 8)
    {}
    const std::vector<const CStructField *> * GetStructFields() override { return &mList; }

private:
    std::unique_ptr<CMetadata> mByte;
    CStructField mLow;
    CStructField mHigh;
    const std::vector<const CStructField *> mList{ &mLow, nullptr, &mHigh };
};

TEST_F(HostileLayout, a_hole_in_a_list_of_fields_is_an_error_and_keeps_its_place)
{
    const auto record = ARecord(0).Shaped(METADATA_STRUCT).Build();
    auto * const detail = new StructWithHole(*record);
    record->SetDetails(*detail);
    CStructCodec codec;
    codec.Encode(*ATree(new CUint8Payload(1), new CUint8Payload(2), new CUint8Payload(3)), *detail);
    EXPECT_EQ(mErrors.Text(), "a struct field has no metadata");
    mErrors.Clear();
    EXPECT_THAT(WordsOf(codec), ElementsAre(0x0301));

    ScriptedSource source;
    source.Number(0x0301);
    const auto out = ATree();
    bool more = false;
    EXPECT_TRUE(codec.Decode(source, *detail, out.get(), more));
    EXPECT_EQ(mErrors.Text(), "a struct field has no metadata");
    EXPECT_EQ(TextOf(*out), "9:(4:1 3:0 4:3)");
}

/// Uses the codec for a smaller struct while it asks.
class UsingSource : public IElementFactorySource
{
public:
    UsingSource(CStructCodec & codec, CMetadataDetailStruct & smaller)
        : mCodec(codec)
        , mSmaller(smaller)
    {}
    bool NextInt(const std::string & /*typeName*/, std::uint64_t & value, std::uint16_t * /*index*/) override
    {
        mCodec.Encode(*ATree(), mSmaller);
        value = 7;
        return true;
    }
    bool NextString(std::string & /*value*/, std::uint16_t * /*index*/) override { return false; }
    bool NextEnum(std::uint64_t & /*value*/, std::uint16_t * /*index*/) override { return false; }

private:
    CStructCodec & mCodec;
    CMetadataDetailStruct & mSmaller;
};

TEST_F(HostileLayout, a_source_that_uses_the_codec_itself_does_no_harm)
{
    Layout empty(LITTLE_ENDIAN_TARGET);
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Field(0, 16, ANumber("uint16")).Field(16, 16, ANumber("uint16"));
    CStructCodec codec;
    UsingSource source(codec, empty.Detail());
    const auto out = ATree();
    bool more = false;
    EXPECT_TRUE(codec.Decode(source, layout.Detail(), out.get(), more));
    EXPECT_EQ(TextOf(*out), "9:(5:0 5:0)") << "its words are gone";
}

}   // namespace
}   // namespace VrexZynConfigTools
