#include "built_layout.h"
#include "layout_source.h"
#include "layouts.h"

#include <configtools/structcodec.h>
#include <support/foreign_payload.h>
#include <support/framework_errors.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <vector>

// Thousands of layouts that are wrong in every way, with values that don't fit. They have to be survived, which the
// sanitizers watch, within a bounded number of values.

namespace VrexZynConfigTools {
namespace {

using namespace support;

constexpr std::uint32_t LAYOUTS = 2000;
constexpr Origin ORIGINS[] = { OF_THE_LIBRARY, OF_A_PLUG_IN };

class HostileSource
{
public:
    explicit HostileSource(std::uint32_t seed)
        : mLayouts(seed)
        , mRandom(mLayouts.Random())
    {}

    ModelStruct Layout()
    {
        ModelStruct layout = mLayouts.Struct();
        Damage(layout);
        return layout;
    }

    /// Takes records and details away, and makes structs hold each other.
    void Damage(BuiltLayout & built)
    {
        for (const auto & record : built.Records()) {
            auto * const detail = dynamic_cast<CMetadataDetailStruct *>(record->Details());
            if (detail != nullptr && mRandom.Chance(5))
                detail->AddField("none", nullptr, Position(), Width());
            if (detail != nullptr && mRandom.Chance(2))
                detail->AddField("again", mRandom.Of(built.Records()).get(), Position(), Width());
            if (record != built.Records().front() && mRandom.Chance(5))
                record->SetDetails(*new CMetadataDetailEnum(*record));
        }
    }

    /// Any tree, whatever the layout.
    IPayload * Tree(int depth = 0)
    {
        if (mRandom.Chance(3))
            return nullptr;
        if (mRandom.Chance(5))
            return new CStringPayload("text", false);
        if (mRandom.Chance(5))
            return new ForeignPayload(std::string(mRandom.Below(20), 'a'));
        if (depth > 0 && (depth == 5 || mRandom.Chance(60)))
            return NewPayload(
                { static_cast<int>(mRandom.Below(8)), mRandom.Below(0xFFFFFFFF), "", {} }, OF_THE_LIBRARY);
        auto tree = ATree();
        for (std::size_t count = mRandom.Below(8); count > 0; --count)
            tree->AddField(Tree(depth + 1));
        return tree.release();
    }

    ScriptedSource Words()
    {
        ScriptedSource source;
        source.Text(std::string(mRandom.Below(200), 'a'));
        for (std::size_t count = mRandom.Below(300); count > 0; --count)
            source.Number(mRandom.Below(0x20000));
        return source;
    }

private:
    void Damage(ModelStruct & layout)
    {
        for (ModelField & field : layout.mFields) {
            if (mRandom.Chance(20))
                field.mPosition = Position();
            if (mRandom.Chance(20))
                field.mWidth = Width();
            if (mRandom.Chance(5))
                field.mIsArray = !field.mIsArray;
            if (field.mNested != nullptr && mRandom.Chance(5))
                field.mNested->mFields.clear();
            if (field.mNested != nullptr)
                Damage(*field.mNested);
        }
    }

    int Position()
    {
        static const std::vector<int> NASTY = { -1, -8, -16, -17, -1000, MIN, MIN + 1, MAX, MAX - 16, LARGE,
            LARGEST + 2000, 0, 8, 15, 24 };
        return mRandom.Chance(30) ? mRandom.Of(NASTY) : static_cast<int>(mRandom.Below(600)) - 40;
    }
    int Width()
    {
        static const std::vector<int> NASTY = { 0, 0, -1, -16, -64, MIN, MAX, LARGEST + 2000, LARGE, 16, 64 };
        return mRandom.Chance(30) ? mRandom.Of(NASTY) : static_cast<int>(mRandom.Below(500)) - 20;
    }

    static constexpr int LARGEST = 1 << 27;   // is served, but takes long
    static constexpr int LARGE = 1 << 14;
    static constexpr int MIN = std::numeric_limits<int>::min();
    static constexpr int MAX = std::numeric_limits<int>::max();

    LayoutSource mLayouts;
    RandomSource & mRandom;
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

/// Runs all that the codec does; every answer is right, as long as there is one.
void Survive(CStructCodec & codec, BuiltLayout & built, HostileSource & source, FrameworkErrors & errors)
{
    const std::unique_ptr<IPayload> values(source.Tree());
    if (auto * const tree = dynamic_cast<CComplexPayload *>(values.get()))
        codec.Encode(*tree, built.Detail());
    CollectingWriter writer;
    codec.Write(writer, CNullContext::Ref());
    errors.Clear();   // or nothing would be unpacked

    const auto out = ATree();
    bool more = true;
    ScriptedSource words = source.Words();
    codec.Decode(words, built.Detail(), out.get(), more);
    EXPECT_LT(CountOf(*out), 200'000U);
}

TEST(StructCodecHostileProperty, survives_any_layout)
{
    FrameworkErrors errors;
    CStructCodec codec;
    std::uint32_t reported = 0;
    for (std::uint32_t seed = 1; seed <= LAYOUTS; ++seed) {
        SCOPED_TRACE(seed);
        for (const Origin origin : ORIGINS) {
            HostileSource source(seed);
            BuiltLayout built(source.Layout(), origin);
            source.Damage(built);
            Survive(codec, built, source, errors);
            reported += errors.IsSet() ? 1U : 0U;
            errors.Clear();
        }
    }
    EXPECT_GT(reported, LAYOUTS / 2) << "most are wrong enough for an error";
}

}   // namespace
}   // namespace VrexZynConfigTools
