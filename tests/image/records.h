/// A chip system with a key of every shape, and elements of them as a reader of text makes them, field by field.

#ifndef TESTS_IMAGE_RECORDS_H
#define TESTS_IMAGE_RECORDS_H

#include "image_support.h"

#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

namespace VrexZynConfigTools::support {

class EveryShapeTest : public ImageTest
{
protected:
    static constexpr SubSystemTypeEnum BT = SUBSYSTEM_BT;

    EveryShapeTest()
    {
        static constexpr std::int64_t MIN = INT64_MIN;
        static constexpr std::int64_t MAX = INT64_MAX;
        const std::vector<std::string> types{ "int8", "int16", "int32", "int64", "uint8", "uint16", "uint32",
            "integer" };
        for (std::size_t place = 0; place < types.size(); ++place)
            mProvider.Number(BT, ARecord(static_cast<std::uint32_t>(1 + place))
                                     .Named("N" + types[place])
                                     .OfType(types[place])
                                     .Within(MIN, MAX)
                                     .Array());
        mProvider.Number(BT, ARecord(9).Named("Nuint64").OfType("uint64").Within(0, -1).Array());
        mProvider.Number(BT, ARecord(10).Named("Text").OfType("string").Within(0, 40));
        mProvider.Number(BT, ARecord(11).Named("Octets").OfType("octet_string").Within(0, 40));
        mProvider.Enum(
            BT, ARecord(12).Named("Colour").Array(), { { "RED", 1 }, { "BLUE", -2 }, { "FAR", 70000 } });
        MemoryProvider::AddIndex(
            mProvider.Number(BT, ARecord(13).Named("Table").OfType("uint8").Within(0, 255).WithNumIndices(2)),
            "i", 0, 99999999);
        AddSecondIndex();
        AddStructs();
    }

    /// An element of the record with this number, from values in the order of its fields.
    CElement * Element(
        std::uint32_t id, const std::vector<std::int64_t> & values, const std::vector<std::string> & texts = {})
    {
        return ReadFieldByField(Record(id), ListSource(values, texts)).mElement.release();
    }

    CElement * Colours(std::initializer_list<std::int64_t> numbers)
    {
        auto * const element = dynamic_cast<CElementEnum *>(Element(12, { *numbers.begin() }));
        for (const auto * number = numbers.begin() + 1; number != numbers.end(); ++number)
            element->AddEnum(
                *number == 1 ? "RED" : (*number == -2 ? "BLUE" : "FAR"), static_cast<std::int32_t>(*number));
        element->Use(Record(12));
        return element;
    }

    const IMetadata & Record(std::uint32_t id)
    {
        CZynContext context;
        return mProvider.MetadataById(id, context);
    }

    /// Writes the chip, reads the image and writes that again: the lines of both chips, and whether the files are equal.
    void ExpectSame(CChipConfig & chip, const Lines & expected)
    {
        ASSERT_TRUE(Write(chip, mPath, "chip=abc")) << TakeError();
        CChipConfig copy;
        // What the caller's context says of a subsystem is no fact of those in the image.
        ASSERT_TRUE(Read(copy, mPath, &mProvider, "subsystemtype=1;device=1")) << TakeError();
        EXPECT_EQ(Describe(copy), expected);
        ASSERT_TRUE(Write(copy, mFolder / "again.zimg", "chip=abc")) << TakeError();
        EXPECT_EQ(ContentOf(mFolder / "again.zimg"), ContentOf(mPath));
    }

    void AddSecondIndex()
    {
        MemoryProvider::AddIndex(const_cast<CMetadata &>(dynamic_cast<const CMetadata &>(Record(13))), "e",
            { { "LEFT", 0 }, { "RIGHT", 1 } });
    }

    void AddStructs()
    {
        const auto field = [this](const std::string & type, const std::string & format = "",
                               bool isArray = false) {
            ARecord record =
                ARecord(0).Named("F" + type).OfType(type).Formatted(format).Within(INT64_MIN, INT64_MAX);
            return &mProvider.NumberField(isArray ? record.Array() : record);
        };
        auto & inner = mProvider.StructField(ARecord(0).Named("Inner"));
        auto & innerLayout = dynamic_cast<CMetadataDetailStruct &>(*inner.Details());
        innerLayout.AddField("", field("uint8"), 0, 3);
        innerLayout.AddField("", field("uint16", "", true), 16, 32);
        auto & rows = mProvider.StructField(ARecord(0).Named("Rows").Array());
        auto & rowLayout = dynamic_cast<CMetadataDetailStruct &>(*rows.Details());
        rowLayout.AddField("", field("uint8"), 0, 8);
        rowLayout.AddField("", field("int8", "signed_decimal"), 8, 8);

        auto & layout = mProvider.Struct(BT, ARecord(20).Named("Fit"));
        layout.AddField(
            "", &mProvider.EnumField(ARecord(0).Named("Wide enum"), { { "ON", 1 }, { "OFF", 2 } }), 0, 16);
        layout.AddField("", field("int8", "", true), 16, 24);
        layout.AddField("", field("uint64"), 48, 80);
        layout.AddField("", &inner, 128, 48);
        layout.AddField("", &rows, 176, 16);
        layout.AddField("", field("int16", "signed_decimal"), 192, 6);
        layout.AddField("", field("integer", "hexadecimal"), 198, 10);

        auto & pairs = mProvider.Struct(BT, ARecord(21).Named("Pairs").Array());
        pairs.AddField("", field("uint8", "", true), 0, 16);
        pairs.AddField("", field("int32", "signed_decimal"), 16, 32);
    }
};

}   // namespace VrexZynConfigTools::support

#endif
