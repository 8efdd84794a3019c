#include "built_layout.h"
#include "codec_model.h"
#include "layout_source.h"
#include "layouts.h"

#include <configtools/structcodec.h>
#include <support/framework_errors.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <memory>
#include <string>

// Thousands of generated layouts, held against a second codec that moves single bits.

namespace VrexZynConfigTools {
namespace {

using namespace support;

constexpr std::uint32_t LAYOUTS = 2500;
constexpr Origin ORIGINS[] = { OF_THE_LIBRARY, OF_A_PLUG_IN };

std::string OctetsOf(const Words & words, const ModelStruct & layout)
{
    std::string octets(static_cast<std::size_t>((CodecModel::SizeOf(layout) + 7) / 8), '\0');
    std::memcpy(octets.data(), words.data(), octets.size());
    return octets;
}

/// Packs with the codec, and compares.
void ComparePacked(CStructCodec & codec, const ModelStruct & layout, const ModelValue & values,
    const Words & expected, Origin origin)
{
    BuiltLayout built(layout, origin);
    const std::unique_ptr<IPayload> tree(NewPayload(values, origin));
    CollectingWriter writer;
    codec.Encode(dynamic_cast<CComplexPayload &>(*tree), built.Detail());
    EXPECT_TRUE(codec.Write(writer, CNullContext::Ref()));
    if (layout.mIsOctets)
        EXPECT_EQ(writer.mOctets, OctetsOf(expected, layout));
    else
        EXPECT_EQ(writer.mWords, expected);
}

TEST(StructCodecProperty, packs_as_the_model_does)
{
    FrameworkErrors errors;
    CodecModel model;
    CStructCodec codec;   // one for all: nothing of the last struct may stay
    std::uint32_t within = 0;
    for (std::uint32_t seed = 1; seed <= LAYOUTS && !testing::Test::HasFailure(); ++seed) {
        SCOPED_TRACE(seed);
        LayoutSource source(seed);
        const ModelStruct layout = source.Struct();
        const ModelValue values = source.Values(layout);
        const Words expected = model.Encode(layout, values);
        within += model.HasLeftTheWords() ? 0U : 1U;
        for (const Origin origin : ORIGINS)
            ComparePacked(codec, layout, values, expected, origin);
        EXPECT_EQ(errors.Text(), "");
    }
    EXPECT_GT(within, LAYOUTS / 2) << "layouts that are valid";
}

/// Unpacks with the codec, and compares.
void CompareUnpacked(CStructCodec & codec, BuiltLayout & built, const ModelStruct & layout, const Words & words,
    const std::string & expected)
{
    ScriptedSource source;
    if (layout.mIsOctets)
        source.Text(OctetsOf(words, layout));
    else
        source.Numbers({ words.begin(), words.end() });
    const auto out = ATree();
    bool more = false;
    EXPECT_TRUE(codec.Decode(source, built.Detail(), out.get(), more));
    EXPECT_TRUE(more);
    EXPECT_EQ(source.Left(), 0U);
    EXPECT_EQ(TextOf(*out), expected);
}

TEST(StructCodecProperty, unpacks_as_the_model_does)
{
    FrameworkErrors errors;
    CodecModel model;
    CStructCodec codec;
    std::uint32_t within = 0;
    for (std::uint32_t seed = 1; seed <= LAYOUTS && !testing::Test::HasFailure(); ++seed) {
        SCOPED_TRACE(seed);
        LayoutSource source(seed);
        const ModelStruct layout = source.Struct();
        BuiltLayout library(layout, OF_THE_LIBRARY);
        BuiltLayout plugIn(layout, OF_A_PLUG_IN);
        for (int run = 0; run < 2; ++run) {
            const auto size = static_cast<std::size_t>(CodecModel::SizeOf(layout));
            Words words = source.Words((size + 15) / 16);
            if (layout.mIsOctets && size % 16 != 0 && size % 16 <= 8)
                words.back() &= 0xFF;   // the string ends before its high byte
            const std::string expected = TextOf(model.Decode(layout, words));
            within += model.HasLeftTheWords() ? 0U : 1U;
            CompareUnpacked(codec, library, layout, words, expected);
            CompareUnpacked(codec, plugIn, layout, words, expected);
        }
        EXPECT_EQ(errors.Text(), "");
    }
    EXPECT_GT(within, LAYOUTS) << "layouts that are valid, each with two series of words";
}

}   // namespace
}   // namespace VrexZynConfigTools
