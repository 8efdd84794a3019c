// The bytes of an image, written by the plug-in and composed by hand.

#include "records.h"

namespace VrexZynConfigTools::support {
namespace {

class ImageFormat : public EveryShapeTest
{
protected:
    /// The image of a chip with one store that holds this element, with what precedes and follows the value cut off.
    std::string DataOf(CElement * element)
    {
        CChipConfig chip;
        ScriptedReader().Delivers(ASubsystem(1).In(15, 1).Tagged("chip=abc").Holding(element)).ReadInto(chip);
        EXPECT_TRUE(Write(chip, mPath)) << TakeError();
        const std::string bytes = ContentOf(mPath);
        const std::size_t begin = 17 + 18 + 4 + 10;   // file, store, chunk, key
        return bytes.size() > begin + 4 ? bytes.substr(begin, bytes.size() - begin - 4) : "";
    }
};

TEST_F(ImageFormat, is_the_documented_one)
{
    CElement * const row = new CElementNumericArray(13, "Table", { new CUint8Payload(7) }, true);
    row->Use(Record(13));
    CChipConfig chip;
    ScriptedReader()
        .Delivers(ASubsystem(1)
                      .In(15, 1)
                      .Tagged("chip=abc")
                      .Holding(Element(10, {}, { "text" }))
                      .Holding(row, "num_indices=2;index1=258;index2=1"))
        .Delivers(ASubsystem(2).In(15, 1).Tagged("chip=abc"))
        .ReadInto(chip);
    ASSERT_TRUE(Write(chip, mPath)) << TakeError();

    const std::string chunks = AChunk(1, AKey(10, "text", 1)) +
                               AChunk(2, AKey(13, Bytes(7, 2), 0, { 258, 1 })) + AChunk(3, Bytes(2, 4));
    EXPECT_EQ(Hex(ContentOf(mPath)), Hex(AnImage(1, AStore(3, 15, 1, 4096, 4096 - chunks.size()) + chunks)));
}

TEST_F(ImageFormat, gives_8_and_16_bits_a_word_and_wider_numbers_two_and_four_lowest_first)
{
    EXPECT_EQ(Hex(DataOf(Element(5, { 0xAB }))), "ab00");
    EXPECT_EQ(Hex(DataOf(Element(1, { -2 }))), "feff");
    EXPECT_EQ(Hex(DataOf(Element(6, { 0xABCD }))), "cdab");
    EXPECT_EQ(Hex(DataOf(Element(7, { 0x12345678 }))), "78563412");
    EXPECT_EQ(Hex(DataOf(Element(4, { 0x123456789ABCDEF0 }))), "f0debc9a78563412");
    EXPECT_EQ(Hex(DataOf(Element(8, { -1 }))), "ffffffffffffffff");
    EXPECT_EQ(Hex(DataOf(Element(6, { 1, 2 }))), "01000200");
}

TEST_F(ImageFormat, gives_an_enumerator_two_words)
{
    EXPECT_EQ(Hex(DataOf(Colours({ -2, 70000 }))), "feffffff70110100");
}

TEST_F(ImageFormat, gives_a_struct_the_words_of_the_codec)
{
    EXPECT_EQ(Hex(DataOf(Element(20, { 2, 1, 2, 3, 4, 5, 600, 700, 11, -12, -7, 0x2AB }))),
        "0200"
        "0102"
        "0300"
        "04000000000000000000"
        "0500"
        "5802bc02"
        "0bf4"
        "f9aa");
}

TEST_F(ImageFormat, has_the_low_bytes_of_devices_and_types_without_a_number)
{
    CChipConfig chip;
    ScriptedReader().Delivers(ASubsystem().Tagged("chip=abc")).ReadInto(chip);
    ASSERT_TRUE(Write(chip, mPath));

    const std::string none = Bytes(0x80000000U, 4);
    EXPECT_EQ(Hex(ContentOf(mPath)),
        Hex(AnImage(1, none + none + Bytes(4096, 4) + Bytes(4096 - 8, 4) + Bytes(1, 2) + AChunk(1, none))));
}

TEST_F(ImageFormat, composed_by_hand_is_read)
{
    const std::string image =
        AnImage(1, AStore(2) + AChunk(1, AKey(5, Bytes(7, 2) + Bytes(9, 2))) + AChunk(2, AKey(10, "", 1)));
    PutContent(mPath, image);
    CChipConfig chip;
    ASSERT_TRUE(Read(chip, mPath, &mProvider)) << TakeError();
    EXPECT_EQ(Describe(chip),
        (Lines{ "abc| |1|1 device 15 store 1", "numbers 5 Nuint8 4:7 4:9", "text 10 Text 8:text:" }));
}

}   // namespace
}   // namespace VrexZynConfigTools::support
