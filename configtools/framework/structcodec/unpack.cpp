// Unpacks by a plan: what `CStructCodec::DoDecode` does, without asking the metadata.

#include "plan.h"

#include "../elements/payloadmaker.h"

#include <string>
#include <vector>

namespace VrexZynConfigTools::structcodec {

namespace {

constexpr std::uint32_t BITS_IN_WORD = CStructCodec::BITS_IN_UINT16;

class Unpacker
{
public:
    Unpacker(const CStructPlan & plan, CWords words)
        : mPlan(plan)
        , mWords(words)
    {}

    void UnpackStruct(std::uint32_t base, const LayoutPlan & layout, CComplexPayload & out)
    {
        Fields & fields = CPayloadMaker::FieldsWithRoom(out, layout.mFields.size());
        for (const FieldPlan & field : layout.mFields) {
            const std::uint32_t position = base + field.mPosition;
            if (field.mKind == FieldKind::NUMBER)
                fields.push_back(CPayloadMaker::NewNumber(
                    field.mType, Value(position, field, layout.mIsLittleEndian), field.mRecord));
            else if (field.mKind == FieldKind::ENUM)
                fields.push_back(NewEnumerator(Value(position, field, layout.mIsLittleEndian), field));
            else
                UnpackTree(position, field, layout.mIsLittleEndian, fields);
        }
    }

private:
    using Fields = std::vector<IPayload *>;   // always with room

    std::uint64_t Value(std::uint32_t position, const FieldPlan & field, bool littleEndian) const
    {
        if (field.mWidth == BITS_IN_WORD && CWords::Straddles(position, littleEndian))
            return mWords.StraddlingWord(position / BITS_IN_WORD);   // without a sign, intended
        const std::uint64_t value = Bits(position, field, littleEndian);
        const bool isNegative = field.mIsSigned && (value >> (field.mWidth - 1) & 1) != 0;
        return isNegative ? value | ~std::uint64_t{ 0 } << field.mWidth : value;
    }

    /// As `CWords::Number`, from one word or from four at once where that will do.
    std::uint64_t Bits(std::uint32_t position, const FieldPlan & field, bool littleEndian) const
    {
        const std::uint64_t index = position / BITS_IN_WORD;
        if (field.mWidth <= BITS_IN_WORD)
            return std::uint64_t{ mWords.Word(index) } >> position % BITS_IN_WORD & field.mMask;
        if (littleEndian && mWords.HasFour(index))
            return (mWords.Four(index) & field.mWordsMask) >> position % BITS_IN_WORD & field.mMask;
        return mWords.Number(position, field.mWidth, littleEndian);
    }

    /// A number without a name gets the empty name and is no error here, intended.
    IPayload * NewEnumerator(std::uint64_t value, const FieldPlan & field) const
    {
        const auto number = static_cast<std::int32_t>(value);
        const std::string * const name = mPlan.NameOf(field, number);
        const std::string none;
        return CPayloadMaker::NewEnumerator(name != nullptr ? *name : none, number, field.mRecord);
    }

    void UnpackTree(std::uint32_t position, const FieldPlan & field, bool littleEndian, Fields & fields)
    {
        const bool hasRecord = field.mKind == FieldKind::ARRAY || field.mKind == FieldKind::WIDE;
        CComplexPayload * const tree = CPayloadMaker::NewTree(hasRecord ? field.mRecord : nullptr);
        fields.push_back(tree);
        if (field.mKind == FieldKind::STRUCT)
            return UnpackStruct(position, mPlan.Inner(field), *tree);
        Fields & items = CPayloadMaker::FieldsWithRoom(*tree, field.mItems);
        if (field.mKind == FieldKind::STRUCTS)
            UnpackStructs(position, field, items);
        else if (field.mKind == FieldKind::WIDE)
            UnpackWords(position / BITS_IN_WORD, field, items);
        else
            UnpackItems(position, field, littleEndian, items);
    }

    /// Upward in every case, and the bits of a last, partial word are dropped; both intended.
    void UnpackWords(std::uint64_t index, const FieldPlan & field, Fields & items)
    {
        for (std::uint32_t count = field.mItems; count > 0; --count)
            items.push_back(CPayloadMaker::NewNumber(NUMERIC_UINT16, mWords.Word(index++), nullptr));
    }

    /// Unsigned whatever the items' type says, and without metadata, both intended.
    void UnpackItems(std::uint32_t position, const FieldPlan & field, bool littleEndian, Fields & items)
    {
        const NumericTypeEnum type = field.mStride < BITS_IN_WORD    ? NUMERIC_UINT8
                                     : field.mStride == BITS_IN_WORD ? NUMERIC_UINT16
                                                                     : NUMERIC_UINT32;
        for (std::uint32_t count = field.mItems; count > 0; --count) {
            items.push_back(CPayloadMaker::NewNumber(type, Item(position, type, littleEndian), nullptr));
            position += field.mStride;
        }
    }

    std::uint64_t Item(std::uint32_t position, NumericTypeEnum type, bool littleEndian) const
    {
        const std::uint64_t index = position / BITS_IN_WORD;
        if (type == NUMERIC_UINT8)
            return std::uint64_t{ mWords.Word(index) } >> position % BITS_IN_WORD;
        if (type == NUMERIC_UINT32)
            return mWords.WideItem(index, littleEndian);
        return CWords::Straddles(position, littleEndian) ? mWords.StraddlingWord(index) : mWords.Word(index);
    }

    void UnpackStructs(std::uint32_t position, const FieldPlan & field, Fields & items)
    {
        for (std::uint32_t count = field.mItems; count > 0; --count) {
            CComplexPayload * const tree = CPayloadMaker::NewTree(nullptr);
            items.push_back(tree);
            UnpackStruct(position, mPlan.Inner(field), *tree);
            position += field.mStride;
        }
    }

    const CStructPlan & mPlan;
    CWords mWords;
};

}   // namespace

void Unpack(const CStructPlan & plan, CWords words, CComplexPayload & out)
{
    Unpacker(plan, words).UnpackStruct(0, plan.Top(), out);
}

}   // namespace VrexZynConfigTools::structcodec
