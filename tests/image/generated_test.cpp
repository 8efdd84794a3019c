// Generated configurations into an image and back, by metadata and raw.

#include "records.h"

#include <kit/layout/structtree.h>

#include <random>

namespace VrexZynConfigTools::support {
namespace {

class GeneratedChip : public EveryShapeTest
{
protected:
    std::int64_t Number(std::uint32_t id)
    {
        static constexpr int BITS[] = { 0, 8, 16, 32, 64, 8, 16, 32, 64, 64 };
        const int spare = 64 - BITS[id];
        const bool isSigned = id < 5 || id == 8;
        const std::uint64_t bits = mRandom() << spare;
        return isSigned ? static_cast<std::int64_t>(bits) >> spare : static_cast<std::int64_t>(bits >> spare);
    }

    std::string Octets()
    {
        std::string text(mRandom() % 9, '\0');
        for (char & character : text)
            character = mRandom() % 4 == 0 ? '\0' : static_cast<char>(mRandom());
        return text;
    }

    // Arrays have small items, which come back as they are.
    CElement * Struct(std::uint32_t id)
    {
        const auto below = [this](std::int64_t limit) {
            return static_cast<std::int64_t>(mRandom() % static_cast<std::uint64_t>(limit));
        };
        if (id == 21)
            return Element(21, { below(256), below(256), static_cast<std::int32_t>(mRandom()) });
        return Element(20,
            { 1 + below(2), below(128), below(128), below(128), static_cast<std::int64_t>(mRandom()), below(8),
                below(65536), below(65536), below(256), below(256) - 128, below(64) - 32, below(1024) });
    }

    CElement * Any()
    {
        const auto id = static_cast<std::uint32_t>(1 + mRandom() % 14);
        if (id < 10) {
            std::vector<std::int64_t> values(1 + mRandom() % 3);
            for (std::int64_t & value : values)
                value = Number(id);
            return Element(id, values);
        }
        if (id < 12)
            return Element(id, {}, { Octets() });
        return id == 12 ? Colours({ 1, -2 }) : Struct(id + 7);
    }

    /// As `Describe`, but structs by the values of the codec's tree, since those read field by field have another.
    static Lines InOneForm(const CChipConfig & chip)
    {
        Lines lines = Describe(chip);
        auto line = lines.begin();
        for (const auto & [key, subsystem] : chip.Subsystems()) {
            ++line;
            for (CElement * const element : subsystem->Elements())
                if (std::string & text = *line++; dynamic_cast<CElementStruct *>(element) != nullptr)
                    text = StructText(*element);
        }
        return lines;
    }

    static std::string StructText(CElement & element)
    {
        std::string text = "struct " + std::to_string(element.PsId());
        auto & layout = dynamic_cast<CMetadataDetailStruct &>(*element.Metadata()->Details());
        for (IPayload * const instance : element.GetPayloadCopy(false)) {
            const auto result = kit::layout::CodecTree(dynamic_cast<CComplexPayload &>(*instance), layout);
            text += ' ' + (result.mTree != nullptr ? Text(*result.mTree) : result.mError);
        }
        return text;
    }

    void Fill(CChipConfig & chip)
    {
        ScriptedReader reader;
        for (std::size_t count = 1 + mRandom() % 5; count > 0; --count) {
            static constexpr int DEVICES[] = { 1, 2, 4, 13, 14, 15 };
            ASubsystem subsystem(1);
            for (std::size_t keys = mRandom() % 6; keys > 0; --keys)
                std::move(subsystem).Holding(Any());
            reader.Delivers(std::move(subsystem)
                                .In(DEVICES[mRandom() % 6], static_cast<int>(1 + mRandom() % 3))
                                .Tagged("chip=abc"));
        }
        reader.ReadInto(chip);
    }

    std::mt19937_64 mRandom{ 1 };
};

TEST_F(GeneratedChip, comes_back_by_its_metadata_as_it_was)
{
    for (int round = 0; round < 60; ++round) {
        CChipConfig chip;
        Fill(chip);
        ASSERT_TRUE(Write(chip, mPath)) << TakeError();
        CChipConfig copy;
        ASSERT_TRUE(Read(copy, mPath, &mProvider)) << TakeError();
        ASSERT_EQ(InOneForm(copy), InOneForm(chip));
        ASSERT_NO_FATAL_FAILURE(ExpectSame(copy, Describe(copy)));
    }
}

TEST_F(GeneratedChip, comes_back_raw_byte_for_byte)
{
    for (int round = 0; round < 40; ++round) {
        CChipConfig chip;
        Fill(chip);
        ASSERT_TRUE(Write(chip, mPath)) << TakeError();
        CChipConfig raw;
        ASSERT_TRUE(Read(raw, mPath, nullptr)) << TakeError();
        ASSERT_TRUE(Write(raw, mFolder / "raw.zimg")) << TakeError();
        EXPECT_EQ(Hex(ContentOf(mFolder / "raw.zimg")), Hex(ContentOf(mPath)));
    }
}

}   // namespace
}   // namespace VrexZynConfigTools::support
