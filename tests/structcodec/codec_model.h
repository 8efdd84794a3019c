/// A second struct codec, for comparison: it moves single bits, knows nothing of the library, and is slow.
///
/// Words and values outside the struct are 0, and what is written there is dropped.

#ifndef TESTS_STRUCTCODEC_CODEC_MODEL_H
#define TESTS_STRUCTCODEC_CODEC_MODEL_H

#include <algorithm>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace VrexZynConfigTools::support {

struct ModelStruct;

/// One field of a layout.
struct ModelField
{
    enum Kind
    {
        NUMBER,
        ENUMERATOR,
        STRUCT
    };

    Kind mKind = NUMBER;
    bool mIsArray = false;
    int mPosition = 0;
    int mWidth = 0;
    std::string mType;
    std::string mFormat;
    std::map<std::string, int> mEnumerators;
    std::shared_ptr<ModelStruct> mNested;   // of a struct
};

struct ModelStruct
{
    bool mIsLittleEndian = true;
    bool mIsOctets = false;
    std::vector<ModelField> mFields;
};

/// A value as text shows it: type codes 0 to 7 are the signed and then the unsigned numbers of 8, 16, 32 and 64 bits,
/// 9 is a tree, 10 an enumerator.
struct ModelValue
{
    int mType = 9;
    std::uint64_t mNumber = 0;
    std::string mName;
    std::vector<ModelValue> mParts;
};

inline int BitsOfType(int type)
{
    constexpr int ENUM_BITS = 32;
    return type == 10 ? ENUM_BITS : 8 << (type % 4);
}

/// "type:text", and a tree as "9:(...)".
inline std::string TextOf(const ModelValue & value)
{
    std::string text = std::to_string(value.mType) + ":";
    if (value.mType == 10)
        return text + value.mName;
    if (value.mType != 9) {
        const int unused = 64 - BitsOfType(value.mType);
        const std::uint64_t raised = value.mNumber << unused;
        return text + (value.mType < 4 ? std::to_string(static_cast<std::int64_t>(raised) >> unused)
                                       : std::to_string(raised >> unused));
    }
    std::string separator = "(";
    for (const ModelValue & part : value.mParts) {
        text += separator + TextOf(part);
        separator = " ";
    }
    return text + (value.mParts.empty() ? "()" : ")");
}

class CodecModel
{
public:
    using Words = std::vector<std::uint16_t>;

    /// The words of the packed struct.
    Words Encode(const ModelStruct & layout, const ModelValue & values)
    {
        Allocate(layout);
        EncodeStruct(0, layout, values);
        Words words(mBits.size() / WORD, 0);
        for (std::size_t bit = 0; bit < mBits.size(); ++bit) {
            if (mBits[bit])
                words[bit / WORD] = static_cast<std::uint16_t>(words[bit / WORD] | (1 << bit % WORD));
        }
        return words;
    }

    ModelValue Decode(const ModelStruct & layout, const Words & words)
    {
        Allocate(layout);
        for (std::size_t bit = 0; bit < mBits.size() && bit / WORD < words.size(); ++bit)
            mBits[bit] = (words[bit / WORD] >> bit % WORD) % 2 != 0;
        return DecodeStruct(0, layout);
    }

    /// Whether the last call met a bit outside the words.
    bool HasLeftTheWords() const { return mHasLeftTheWords; }

    static int SizeOf(const ModelStruct & layout)
    {
        int size = 0;
        for (const ModelField & field : layout.mFields) {
            const bool namesItsLastWord = !layout.mIsLittleEndian && field.mKind == ModelField::NUMBER &&
                                          !field.mIsArray && field.mWidth > 16 && field.mWidth <= 64;
            size = std::max(size, field.mPosition + (namesItsLastWord ? WORD : field.mWidth));
        }
        return size;
    }

private:
    static constexpr int WORD = 16;

    void Allocate(const ModelStruct & layout)
    {
        mBits.assign(static_cast<std::size_t>((SizeOf(layout) + WORD - 1) / WORD * WORD), false);
        mHasLeftTheWords = false;
    }

    bool IsInside(int bit)
    {
        const bool isInside = bit >= 0 && bit < static_cast<int>(mBits.size());
        mHasLeftTheWords |= !isInside;
        return isInside;
    }
    void Put(int bit, bool value)
    {
        if (IsInside(bit))
            mBits[static_cast<std::size_t>(bit)] = value;
    }
    void Raise(int bit, bool value)
    {
        if (IsInside(bit) && value)
            mBits[static_cast<std::size_t>(bit)] = true;
    }
    bool Get(int bit) { return IsInside(bit) && mBits[static_cast<std::size_t>(bit)]; }

    /// The first bit of the word that continues the one at `position`.
    static int WordAhead(int position, int ahead, bool isLittleEndian)
    {
        return (position / WORD + (isLittleEndian ? ahead : -ahead)) * WORD;
    }
    static bool Straddles(int position, int width, bool isLittleEndian)
    {
        return isLittleEndian && width == WORD && position % WORD == 8;
    }

    /// The bits of a number, from the lowest; those that its type doesn't have are 0.
    static bool BitOf(const ModelValue & value, int bit)
    {
        return bit < BitsOfType(value.mType) && (value.mNumber >> bit & 1U) != 0;
    }

    void EncodeStruct(int base, const ModelStruct & layout, const ModelValue & values)
    {
        for (std::size_t index = 0; index < values.mParts.size(); ++index)
            EncodeAny(base, layout.mFields[index], values.mParts[index], layout.mIsLittleEndian);
    }

    void EncodeAny(int base, const ModelField & field, const ModelValue & value, bool isLittleEndian)
    {
        const int position = base + field.mPosition;
        const auto count = static_cast<int>(value.mParts.size());
        if (field.mKind == ModelField::STRUCT && !field.mIsArray)
            return EncodeStruct(position, *field.mNested, value);
        if (field.mKind == ModelField::STRUCT) {
            for (int item = 0; item < count; ++item)
                EncodeStruct(position + item * SizeOf(*field.mNested), *field.mNested,
                    value.mParts[static_cast<std::size_t>(item)]);
        } else if (!field.mIsArray) {
            EncodeNumber(position, field.mWidth, value, isLittleEndian);
        } else if (value.mType != 9) {
            EncodeNumber(position, WORD, value, isLittleEndian);
        } else {
            for (int item = 0; item < count; ++item)
                EncodeNumber(position + item * (field.mWidth / count), field.mWidth / count,
                    value.mParts[static_cast<std::size_t>(item)], isLittleEndian);
        }
    }

    void EncodeNumber(int position, int width, const ModelValue & value, bool isLittleEndian)
    {
        if (width < WORD) {
            for (int bit = 0; bit < width && position % WORD + bit < WORD; ++bit)
                Raise(position + bit, BitOf(value, bit));
        } else if (Straddles(position, width, isLittleEndian)) {
            for (int bit = 0; bit < WORD; ++bit)
                Raise(position + bit, BitOf(value, bit));
        } else if (width == WORD) {
            PutWord(position / WORD * WORD, value);
        } else if (width <= 64) {
            for (int bit = 0; bit < (width + WORD - 1) / WORD * WORD; ++bit)
                Raise(WordAhead(position, bit / WORD, isLittleEndian) + bit % WORD, BitOf(value, bit));
        } else {
            for (std::size_t part = 0; part < value.mParts.size(); ++part)
                PutWord((position / WORD + static_cast<int>(part)) * WORD, value.mParts[part]);
        }
    }

    /// A number of 8 bits replaces half of the word, one of more than 16 nothing.
    void PutWord(int start, const ModelValue & value)
    {
        const int bits = BitsOfType(value.mType);
        for (int bit = 0; bit < bits && bits <= WORD; ++bit)
            Put(start + bit, BitOf(value, bit));
    }

    ModelValue DecodeStruct(int base, const ModelStruct & layout)
    {
        ModelValue values;
        for (const ModelField & field : layout.mFields) {
            const int position = base + field.mPosition;
            if (field.mKind == ModelField::STRUCT)
                values.mParts.push_back(
                    field.mIsArray ? DecodeStructs(position, field) : DecodeStruct(position, *field.mNested));
            else if (field.mIsArray)
                values.mParts.push_back(DecodeItems(position, field, layout.mIsLittleEndian));
            else if (field.mWidth > 64)
                values.mParts.push_back(DecodeWords(position, field.mWidth / WORD));
            else
                values.mParts.push_back(DecodeNumber(position, field, layout.mIsLittleEndian));
        }
        return values;
    }

    ModelValue DecodeStructs(int position, const ModelField & field)
    {
        ModelValue structs;
        const int size = SizeOf(*field.mNested);
        for (int item = 0; item < field.mWidth / size; ++item)
            structs.mParts.push_back(DecodeStruct(position + item * size, *field.mNested));
        return structs;
    }

    std::uint64_t Gather(int start, int count)
    {
        std::uint64_t value = 0;
        for (int bit = 0; bit < count; ++bit)
            value |= std::uint64_t{ Get(start + bit) } << bit;
        return value;
    }

    ModelValue DecodeWords(int position, int count)
    {
        ModelValue words;
        for (int word = 0; word < count; ++word)
            words.mParts.push_back({ 5, Gather((position / WORD + word) * WORD, WORD), "", {} });
        return words;
    }

    ModelValue DecodeItems(int position, const ModelField & field, bool isLittleEndian)
    {
        ModelValue items;
        const int type = TypeOf(field.mType);
        if (type < 0)
            return items;
        const int bits = BitsOfType(type);
        for (int done = 0; done < field.mWidth; done += bits) {
            const int start = position + done;
            const int word = start / WORD * WORD;
            if (bits == 8)
                items.mParts.push_back({ 4, Gather(start, std::min(bits, WORD - start % WORD)), "", {} });
            else if (bits == WORD)
                items.mParts.push_back(
                    { 5, Gather(Straddles(start, bits, isLittleEndian) ? start : word, WORD), "", {} });
            else
                items.mParts.push_back({ 6,
                    Gather(word, WORD) | Gather(WordAhead(start, 1, isLittleEndian), WORD) << WORD, "", {} });
        }
        return items;
    }

    ModelValue DecodeNumber(int position, const ModelField & field, bool isLittleEndian)
    {
        const bool straddles = Straddles(position, field.mWidth, isLittleEndian);
        std::uint64_t value = straddles ? Gather(position, WORD) : Bits(position, field.mWidth, isLittleEndian);
        const bool isNegative = field.mFormat == "signed_decimal" && field.mWidth > 1 && field.mWidth < 64 &&
                                !straddles && (value >> (field.mWidth - 1) & 1U) != 0;
        for (int bit = field.mWidth; isNegative && bit < 64; ++bit)
            value |= std::uint64_t{ 1 } << bit;
        if (field.mKind != ModelField::ENUMERATOR)
            return { TypeForWidth(field), value, "", {} };
        ModelValue result{ 10, value, "", {} };
        for (const auto & [name, number] : field.mEnumerators) {
            if (number == static_cast<std::int32_t>(value))
                result.mName = name;   // the last in name order stays
        }
        return result;
    }

    /// As many words as the width alone needs, from the position's bit on; of 64 bits nothing is left.
    std::uint64_t Bits(int position, int width, bool isLittleEndian)
    {
        const int gathered = (width + WORD - 1) / WORD * WORD;
        std::uint64_t value = 0;
        for (int bit = 0; bit < width; ++bit) {
            const int from = position % WORD + bit;
            if (from < gathered)
                value |= std::uint64_t{ Get(WordAhead(position, from / WORD, isLittleEndian) + from % WORD) }
                         << bit;
        }
        return width == 64 ? 0 : value;
    }

    static int TypeOf(const std::string & type)
    {
        static const std::map<std::string, int> TYPES = { { "int8", 0 }, { "int16", 1 }, { "int32", 2 },
            { "int64", 3 }, { "uint8", 4 }, { "uint16", 5 }, { "uint32", 6 }, { "uint64", 7 } };
        const auto found = TYPES.find(type);
        return found != TYPES.end() ? found->second : -1;
    }

    static int TypeForWidth(const ModelField & field)
    {
        if (TypeOf(field.mType) >= 0)
            return TypeOf(field.mType);
        const int first = field.mFormat == "unsigned_decimal" || field.mFormat == "hexadecimal" ? 4 : 0;
        for (int type = first; type < first + 4; ++type) {
            if (BitsOfType(type) >= field.mWidth)
                return type;
        }
        return first;
    }

    std::vector<bool> mBits;
    bool mHasLeftTheWords = false;
};

}   // namespace VrexZynConfigTools::support

#endif
