#include "layouts.h"

#include <configtools/structcodec.h>
#include <support/allocations.h>
#include <support/framework_errors.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>

// What is lost on the way is found by the leak check of the sanitizers.

namespace VrexZynConfigTools {
namespace {

using namespace support;
using testing::HasSubstr;
using testing::IsEmpty;

/// Gives the same word for ever, without memory.
class EndlessSource : public IElementFactorySource
{
public:
    bool NextInt(const std::string & /*typeName*/, std::uint64_t & value, std::uint16_t * /*index*/) override
    {
        value = 0x0101;
        return true;
    }
    bool NextString(std::string & value, std::uint16_t * /*index*/) override
    {
        value.assign(64, '\1');
        return true;
    }
    bool NextEnum(std::uint64_t & /*value*/, std::uint16_t * /*index*/) override { return false; }
};

constexpr char LONG_NAME[] = "an enumerator whose name is too long for a small string object";

/// Every kind of field.
Layout EveryKind(bool isOctetsInBin)
{
    Layout inner(LITTLE_ENDIAN_TARGET, false, ARecord(0).Array());
    inner.Field(0, 4).Field(4, 12, ANumber("uint32"));
    Layout layout(LITTLE_ENDIAN_TARGET, isOctetsInBin);
    layout.Field(0, 8)
        .Enum(8, 8, { { LONG_NAME, "1" } })
        .Field(16, 80)
        .Field(96, 32, ANumber("uint8").Array())
        .Struct(128, 32, std::move(inner))
        .Field(160, 33, ANumber("string"))
        .Field(200, 0, ANumber("string"));
    return layout;
}

TEST(StructCodecOutOfMemory, unpacking_leaves_nothing_behind)
{
    for (const bool isOctetsInBin : { false, true }) {
        FrameworkErrors errors;
        Layout layout = EveryKind(isOctetsInBin);
        EndlessSource source;
        std::string expected;
        const auto failures = FailEachAllocation(
            [&] {
                CStructCodec codec;
                bool more = false;
                const auto out = std::make_unique<CComplexPayload>(PAYLOAD_COMPLEX);
                codec.Decode(source, layout.Detail(), out.get(), more);
                LetAllocationsPass();
                expected = TextOf(*out);
            },
            [&] { errors.Clear(); });
        EXPECT_GT(failures, 8U) << "the words, the lists of payloads, and payloads";
        EXPECT_EQ(errors.Text(), "");
        EXPECT_THAT(expected, HasSubstr(LONG_NAME));
    }
}

TEST(StructCodecOutOfMemory, the_codec_can_be_used_afterwards)
{
    FrameworkErrors errors;
    Layout layout = EveryKind(false);
    EndlessSource source;
    CStructCodec codec;
    bool more = false;
    const auto run = [&] {
        const auto out = std::make_unique<CComplexPayload>(PAYLOAD_COMPLEX);
        codec.Decode(source, layout.Detail(), out.get(), more);
        LetAllocationsPass();
        return TextOf(*out);
    };
    const std::string expected = run();
    FailEachAllocation(run, [&] {
        errors.Clear();
        EXPECT_EQ(run(), expected);
    });
}

TEST(StructCodecOutOfMemory, the_tree_keeps_what_it_had)
{
    FrameworkErrors errors;
    Layout layout = EveryKind(false);
    EndlessSource source;
    CStructCodec codec;
    bool more = false;
    FailEachAllocation(
        [&] {
            const auto out = std::make_unique<CComplexPayload>(PAYLOAD_COMPLEX);
            out->AddField(new CUint8Payload(7));
            try {
                codec.Decode(source, layout.Detail(), out.get(), more);
            } catch (const std::bad_alloc &) {
                LetAllocationsPass();
                EXPECT_EQ(TextOf(*out->GetFields().front()), "4:7");
                throw;
            }
        },
        [&] { errors.Clear(); });
}

TEST(StructCodecOutOfMemory, packing_and_writing_leave_nothing_behind)
{
    class SilentWriter : public RecordingWriter
    {
        void WritePayload(IPayload & /*payload*/, IConfigContext & /*context*/) override {}
    };

    for (const bool isOctetsInBin : { false, true }) {
        FrameworkErrors errors;
        Layout layout(LITTLE_ENDIAN_TARGET, isOctetsInBin);
        layout.Field(0, 8).Field(8, 8 * 60).Field(512, 16);
        const auto tree = ATree(new CUint8Payload(1), AWordBranch({ 1, 2, 3 }), new CUint16Payload(4));
        SilentWriter writer;
        const auto failures = FailEachAllocation(
            [&] {
                CStructCodec codec;
                codec.Encode(*tree, layout.Detail());
                if (!codec.Write(writer, CNullContext::Ref()))
                    throw std::bad_alloc();   // the words could not be had, which is an error
            },
            [&] { errors.Clear(); });
        EXPECT_GT(failures, 0U);
    }
}

TEST(StructCodecOutOfMemory, words_that_cant_be_had_are_an_error_and_no_exception)
{
    FrameworkErrors errors;
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Field(0, 8).Field(1 << 20, 8);
    EndlessSource source;
    CStructCodec codec;
    const auto out = ATree();
    bool more = true;
    FailLargeAllocations(1 << 16);
    EXPECT_NO_THROW(EXPECT_FALSE(codec.Decode(source, layout.Detail(), out.get(), more)));
    LetAllocationsPass();
    EXPECT_FALSE(more) << "an array of such structs would never end";
    EXPECT_EQ(errors.Text(), "no memory for a struct of 1048584 bits");
    EXPECT_THAT(out->GetFields(), IsEmpty());
    errors.Clear();
    EXPECT_THAT(WordsOf(codec), IsEmpty());
}

TEST(StructCodecOutOfMemory, nothing_is_packed_into_words_that_cant_be_had)
{
    FrameworkErrors errors;
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Field(0, 8).Field(1 << 20, 8);
    CStructCodec codec;
    const auto tree = ATree(new CUint8Payload(1), new CUint8Payload(2));
    FailLargeAllocations(1 << 16);
    EXPECT_NO_THROW(codec.Encode(*tree, layout.Detail()));
    LetAllocationsPass();
    EXPECT_EQ(errors.Text(), "no memory for a struct of 1048584 bits");
    errors.Clear();
    EXPECT_THAT(WordsOf(codec), IsEmpty());
}

}   // namespace
}   // namespace VrexZynConfigTools
