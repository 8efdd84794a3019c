/// Which bits of a struct belong to which field: held against the codec, which packs them.

#include <kit/layout/fields.h>

#include <support/memory_provider.h>

#include <configtools/payloads.h>
#include <configtools/readerwriter.h>
#include <configtools/structcodec.h>
#include <configtools/zyncontext.h>

#include <gmock/gmock.h>

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace kit::layout::test {

namespace {

using namespace VrexZynConfigTools;
using support::ARecord;
using support::MemoryProvider;

/// Keeps the words that the codec writes.
class CWordWriter : public IConfigWriter
{
public:
    void PrepareWriter(IConfigContext &) override {}
    void StartWrite(IConfigContext &) override {}
    void EndWrite(IConfigContext &) override {}
    void StartSubsystem(IConfigContext &) override {}
    void EndSubsystem(IConfigContext &) override {}
    void StartElement(IConfigContext &) override {}
    void EndElement(IConfigContext &) override {}
    void WriteKeyId(std::uint32_t, IConfigContext &) override {}
    void WriteNamedData(const std::string &, const void *, std::uint32_t, IConfigContext &) override {}
    void WritePayload(IPayload & payload, IConfigContext &) override
    {
        mWords.push_back(dynamic_cast<CUint16Payload &>(payload).GetValue());
    }

    std::vector<std::uint16_t> mWords;
};

std::vector<std::uint16_t> Packed(CComplexPayload & payload, CMetadataDetailStruct & detail)
{
    CStructCodec codec;
    codec.Encode(payload, detail);
    CWordWriter writer;
    CZynContext context;
    EXPECT_TRUE(codec.Write(writer, context));
    return writer.mWords;
}

/// The words in which the pieces with this label have their share of `value`, and nothing else is set.
std::vector<std::uint16_t> Drawn(CMetadataDetailStruct & detail, const std::string & label, std::uint64_t value)
{
    const CFields fields(detail);
    bool isCutOff = false;
    std::vector<std::uint16_t> words(fields.Layout().Words(), 0);
    for (const Piece & piece : PiecesOf(fields, isCutOff)) {
        if (piece.mLabel != label)
            continue;
        const std::uint64_t bits = (value >> piece.mRun.mValueBit) & ((1U << piece.mRun.mCount) - 1);
        words.at(piece.mRun.mWord) |= static_cast<std::uint16_t>(bits << piece.mRun.mBit);
    }
    EXPECT_FALSE(isCutOff);
    return words;
}

/// A field that fits one of the codec's rules: its position and width.
struct Shape
{
    bool mIsLittleEndian;
    int mPosition;
    int mWidth;
};

class FieldLayout : public testing::TestWithParam<Shape>
{};

}   // namespace

TEST_P(FieldLayout, is_where_the_codec_packs_the_field)
{
    const Shape shape = GetParam();
    MemoryProvider provider({ "x" });
    auto & detail = provider.Struct(SUBSYSTEM_BT, ARecord(5).Named("S"), shape.mIsLittleEndian);
    detail.AddField("", &provider.NumberField(ARecord(0).Named("Last").OfType("uint8")), 120, 8);
    detail.AddField(
        "", &provider.NumberField(ARecord(0).Named("F").OfType("uint64")), shape.mPosition, shape.mWidth);

    constexpr std::uint64_t PATTERN = 0xB5C3A5E7F1D29687;   // no two pieces of it are alike
    const std::uint64_t value =
        shape.mWidth < 64 ? PATTERN & ((std::uint64_t{ 1 } << shape.mWidth) - 1) : PATTERN;
    CComplexPayload payload(PAYLOAD_COMPLEX);
    payload.AddField(new CUint8Payload(0));
    payload.AddField(shape.mWidth == 16
                         ? static_cast<IPayload *>(new CUint16Payload(static_cast<std::uint16_t>(value)))
                         : new CUint64Payload(value));
    EXPECT_EQ(Drawn(detail, "F", value), Packed(payload, detail));
}

INSTANTIATE_TEST_SUITE_P(Rules, FieldLayout,
    testing::Values(Shape{ true, 0, 1 }, Shape{ true, 15, 1 }, Shape{ true, 3, 11 }, Shape{ true, 17, 15 },
        Shape{ true, 32, 16 }, Shape{ true, 40, 16 }, Shape{ true, 16, 17 }, Shape{ true, 48, 32 },
        Shape{ true, 32, 33 }, Shape{ true, 16, 63 }, Shape{ true, 32, 64 }, Shape{ false, 3, 11 },
        Shape{ false, 32, 16 }, Shape{ false, 16, 17 }, Shape{ false, 48, 32 }, Shape{ false, 32, 33 },
        Shape{ false, 64, 63 }, Shape{ false, 96, 64 }),
    [](const testing::TestParamInfo<Shape> & each) {
        return (each.param.mIsLittleEndian ? "little_" : "big_") + std::to_string(each.param.mPosition) +
               "_wide_" + std::to_string(each.param.mWidth);
    });

TEST(FieldsLayout, items_and_inner_structs_are_where_the_codec_packs_them)
{
    MemoryProvider provider({ "x" });
    CMetadata & bands = provider.StructField(ARecord(0).Named("B").Array(), false);
    auto & band = dynamic_cast<CMetadataDetailStruct &>(*bands.Details());
    band.AddField("", &provider.NumberField(ARecord(0).Named("W").OfType("uint32")), 16, 32);
    band.AddField("", &provider.NumberField(ARecord(0).Named("N").OfType("uint8")), 32, 5);
    auto & detail = provider.Struct(SUBSYSTEM_BT, ARecord(5).Named("S"));
    detail.AddField("", &bands, 16, 96);
    detail.AddField("", &provider.NumberField(ARecord(0).Named("A").OfType("uint16").Array(2, 2)), 120, 32);

    const auto inner = [](std::uint32_t wide, std::uint8_t narrow) {
        auto * const payload = new CComplexPayload(PAYLOAD_COMPLEX);
        payload->AddField(new CUint32Payload(wide));
        payload->AddField(new CUint8Payload(narrow));
        return payload;
    };
    CComplexPayload payload(PAYLOAD_COMPLEX);
    auto * const instances = new CComplexPayload(PAYLOAD_COMPLEX);
    payload.AddField(instances);
    instances->AddField(inner(0, 0));
    instances->AddField(inner(0x12345678, 0));
    auto * const items = new CComplexPayload(PAYLOAD_COMPLEX);
    payload.AddField(items);
    items->AddField(new CUint16Payload(0));
    items->AddField(new CUint16Payload(0));

    EXPECT_EQ(Drawn(detail, "B[1].W", 0x12345678), Packed(payload, detail));
    EXPECT_EQ(CFields(detail).List().size(), 3U);   // not one for each instance
    dynamic_cast<CUint32Payload &>(*dynamic_cast<CComplexPayload &>(*instances->GetFields()[1]).GetFields()[0])
        .SetValue(0);
    dynamic_cast<CUint16Payload &>(*items->GetFields()[1]).SetValue(0xBEEF);
    EXPECT_EQ(Drawn(detail, "A[1]", 0xBEEF), Packed(payload, detail));
}

}   // namespace kit::layout::test
