// A sample that is damaged at every place. What matters beyond the expectations is that the sanitizers find nothing.

#include "records.h"

namespace VrexZynConfigTools::support {
namespace {

class DamagedImage : public EveryShapeTest
{
protected:
    DamagedImage()
    {
        CChipConfig chip;
        CElement * const row = new CElementNumericArray(13, "Table", { new CUint8Payload(7) }, true);
        row->Use(Record(13));
        ScriptedReader()
            .Delivers(ASubsystem(1)
                          .In(15, 1)
                          .Tagged("chip=abc")
                          .Holding(Element(10, {}, { "text" }))
                          .Holding(Element(1, { -1, 2 }))
                          .Holding(Colours({ 1 }))
                          .Holding(row, "num_indices=2;index1=3;index2=1"))
            .Delivers(ASubsystem(1)
                          .In(0, 2)
                          .Tagged("chip=abc")
                          .Holding(Element(20, { 2, 1, 2, 3, 4, 5, 600, 700, 11, -12, -7, 0x2AB })))
            .Delivers(ASubsystem(2).In(15, 1).Tagged("chip=abc"))
            .ReadInto(chip);
        Write(chip, mPath, "chip=abc");
        mSample = ContentOf(mPath);
    }

    std::string Flipped(std::size_t bit) const
    {
        std::string bytes = mSample;
        bytes[bit / 8] = static_cast<char>(bytes[bit / 8] ^ (1 << (bit % 8)));
        return bytes;
    }

    std::string WithoutChecksum(const std::string & bytes) const { return bytes.substr(0, bytes.size() - 4); }

    std::string mSample;
};

TEST_F(DamagedImage, is_refused_whichever_bit_has_changed)
{
    ASSERT_EQ(ErrorOf(mSample), "");
    for (std::size_t bit = 0; bit < 8 * mSample.size(); ++bit)
        EXPECT_NE(ErrorOf(Flipped(bit)), "") << "bit " << bit;
}

TEST_F(DamagedImage, is_refused_at_whichever_length_it_is_cut)
{
    for (std::size_t length = 0; length < mSample.size(); ++length)
        EXPECT_NE(ErrorOf(mSample.substr(0, length)), "") << "length " << length;
}

// A checksum is no guard against those who compute it anew. What is read in spite of a flipped bit is another good image.
TEST_F(DamagedImage, with_a_new_checksum_is_refused_or_comes_through_a_second_time)
{
    std::size_t refused = 0;
    std::size_t accepted = 0;
    const std::size_t bits = 8 * WithoutChecksum(mSample).size();
    for (std::size_t bit = 0; bit < bits; ++bit) {
        const std::string bytes = WithChecksum(WithoutChecksum(Flipped(bit)));
        for (IMetadataProvider * const provider :
            { static_cast<IMetadataProvider *>(&mProvider), static_cast<IMetadataProvider *>(nullptr) })
        {
            PutContent(mPath, bytes);
            CChipConfig chip;
            if (!Read(chip, mPath, provider)) {
                EXPECT_TRUE(chip.Subsystems().empty());
                EXPECT_NE(TakeError(), "");
                ++refused;
                continue;
            }
            if (++accepted % 8 != 0)
                continue;   // a write waits for the disk
            ASSERT_TRUE(Write(chip, mPath)) << "bit " << bit << ": " << TakeError();
            CChipConfig again;
            ASSERT_TRUE(Read(again, mPath, provider)) << "bit " << bit << ": " << TakeError();
            EXPECT_EQ(Describe(again), Describe(chip)) << "bit " << bit;
        }
    }
    EXPECT_GT(refused, bits / 4);
    EXPECT_GT(accepted, bits / 4);
}

TEST_F(DamagedImage, with_a_new_length_and_checksum_is_refused_at_whichever_length_it_is_cut)
{
    const std::string body = WithoutChecksum(mSample);
    for (std::size_t length = 14; length < body.size(); ++length) {
        std::string bytes = body.substr(0, length);
        bytes.replace(8, 4, Bytes(length + 4, 4));
        EXPECT_NE(ErrorOf(WithChecksum(bytes)), "") << "length " << length;
    }
}

}   // namespace
}   // namespace VrexZynConfigTools::support
