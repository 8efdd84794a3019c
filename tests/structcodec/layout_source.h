/// What the randomised tests of the struct codec draw from: layouts and values to go with them.

#ifndef TESTS_STRUCTCODEC_LAYOUT_SOURCE_H
#define TESTS_STRUCTCODEC_LAYOUT_SOURCE_H

#include "codec_model.h"

#include <support/random_source.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace VrexZynConfigTools::support {

class LayoutSource
{
public:
    explicit LayoutSource(std::uint32_t seed)
        : mRandom(seed)
    {}

    /// Every field has bits and lies within the struct, though a struct within it may be too wide for its field.
    ModelStruct Struct(int depth = 0)
    {
        ModelStruct layout;
        layout.mIsLittleEndian = mRandom.Chance(60);
        layout.mIsOctets = depth == 0 && mRandom.Chance(30);
        int end = 0;
        for (std::size_t count = 1 + mRandom.Below(7); count > 0; --count) {
            layout.mFields.push_back(Field(end, layout.mIsLittleEndian, depth));
            end = CodecModel::SizeOf(layout);
        }
        if (mRandom.Chance(15))
            std::reverse(layout.mFields.begin(), layout.mFields.end());
        return layout;
    }

    /// Values for a struct; now and then fewer than it has fields.
    ModelValue Values(const ModelStruct & layout)
    {
        ModelValue values;
        const std::size_t missing = mRandom.Chance(15) ? mRandom.Below(layout.mFields.size() + 1) : 0;
        for (std::size_t index = 0; index + missing < layout.mFields.size(); ++index)
            values.mParts.push_back(ValueOf(layout.mFields[index]));
        return values;
    }

    CodecModel::Words Words(std::size_t count)
    {
        CodecModel::Words words(count);
        for (std::uint16_t & word : words)
            word = static_cast<std::uint16_t>(mRandom.Chance(10) ? 0xFFFF : mRandom.Below(0x10000));
        return words;
    }

    RandomSource & Random() { return mRandom; }

private:
    ModelField Field(int end, bool isLittleEndian, int depth)
    {
        static const std::vector<std::string> TYPES = { "int8", "int16", "int32", "int64", "uint8", "uint16",
            "uint32", "uint64", "integer", "string", "" };
        static const std::vector<std::string> FORMATS = { "signed_decimal", "signed_decimal",
            "unsigned_decimal", "hexadecimal", "" };
        ModelField field;
        field.mType = mRandom.Of(TYPES);
        field.mFormat = mRandom.Of(FORMATS);
        field.mIsArray = mRandom.Chance(25);
        field.mWidth = Width(field.mIsArray);
        if (mRandom.Chance(15))
            MakeEnum(field);
        else if (depth < 3 && mRandom.Chance(20))
            MakeStruct(field, depth);
        field.mPosition = Position(end, field, isLittleEndian);
        return field;
    }

    int Width(bool isArray)
    {
        static const std::vector<int> NASTY = { 1, 8, 15, 16, 16, 16, 17, 32, 33, 48, 63, 64, 65, 72, 80 };
        if (mRandom.Chance(50))
            return mRandom.Of(NASTY);
        return 1 + static_cast<int>(mRandom.Below(isArray ? 200 : 70));
    }

    void MakeEnum(ModelField & field)
    {
        field.mKind = ModelField::ENUMERATOR;
        for (std::size_t count = mRandom.Below(5); count > 0; --count)
            field.mEnumerators[Numbered("e", mRandom.Below(9))] = static_cast<int>(mRandom.Below(6)) - 2;
    }

    void MakeStruct(ModelField & field, int depth)
    {
        field.mKind = ModelField::STRUCT;
        field.mNested = std::make_shared<ModelStruct>(Struct(depth + 1));
        const int size = CodecModel::SizeOf(*field.mNested);
        field.mWidth = field.mIsArray ? size * static_cast<int>(1 + mRandom.Below(3)) : size;
        if (mRandom.Chance(10))
            field.mWidth += static_cast<int>(mRandom.Below(20));
    }

    /// Behind the fields so far, or anywhere among them.
    int Position(int end, const ModelField & field, bool isLittleEndian)
    {
        int position =
            mRandom.Chance(15) ? static_cast<int>(mRandom.Below(static_cast<std::size_t>(end) + 1)) : end;
        if (mRandom.Chance(30))
            position = (position + 7) / 8 * 8;
        if (mRandom.Chance(30))
            position = (position + 15) / 16 * 16;
        const bool goesBelow = !isLittleEndian && field.mKind != ModelField::STRUCT && !field.mIsArray &&
                               field.mWidth > 16 && field.mWidth <= 64;
        if (goesBelow && mRandom.Chance(95))
            position += (field.mWidth - 1) / 16 * 16;
        return position;
    }

    ModelValue ValueOf(const ModelField & field)
    {
        if (field.mKind == ModelField::STRUCT && !field.mIsArray)
            return Values(*field.mNested);
        ModelValue tree;
        if (field.mKind == ModelField::STRUCT) {
            const int room = field.mWidth / CodecModel::SizeOf(*field.mNested);
            for (std::size_t count = mRandom.Below(static_cast<std::size_t>(room) + 1); count > 0; --count)
                tree.mParts.push_back(Values(*field.mNested));
            return tree;
        }
        if (!field.mIsArray)
            return NumberFor(field.mWidth);
        if (mRandom.Chance(10))
            return Number();
        const int count = static_cast<int>(mRandom.Below(static_cast<std::size_t>(field.mWidth) / 4 + 2));
        for (int item = 0; item < count; ++item)
            tree.mParts.push_back(NumberFor(field.mWidth / count));
        return tree;
    }

    /// More than 64 bits come as words.
    ModelValue NumberFor(int width)
    {
        if (width <= 64)
            return Number();
        ModelValue words;
        for (std::size_t count = mRandom.Below(static_cast<std::size_t>(width) / 16 + 2); count > 0; --count)
            words.mParts.push_back(
                mRandom.Chance(90) ? ModelValue{ 5, mRandom.Below(0x10000), "", {} } : Number());
        return words;
    }

    ModelValue Number()
    {
        static const std::vector<int> TYPES = { 0, 1, 2, 3, 4, 5, 6, 7, 10, 5 };
        static const std::vector<std::uint64_t> NASTY = { 0, 1, ~std::uint64_t{ 0 }, 0x8000, 0x7FFF,
            std::uint64_t{ 1 } << 63 };
        const std::uint64_t high = mRandom.Below(std::size_t{ 1 } << 32);
        const std::uint64_t number = high << 32 | mRandom.Below(std::size_t{ 1 } << 32);
        return { mRandom.Of(TYPES), mRandom.Chance(20) ? mRandom.Of(NASTY) : number, "any name", {} };
    }

    RandomSource mRandom;
};

}   // namespace VrexZynConfigTools::support

#endif
