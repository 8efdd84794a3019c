// Packs by a plan: what `CStructCodec::DoEncode` does, without asking the metadata.

#include "plan.h"

#include <algorithm>
#include <array>
#include <type_traits>
#include <typeinfo>

namespace VrexZynConfigTools::structcodec {

namespace {

constexpr std::uint32_t BITS_IN_WORD = CStructCodec::BITS_IN_UINT16;

// The eight numbers are in the order of `NumericTypeEnum`, and an enumerator stands where that has none.
const std::array NUMBER_CLASSES = { &typeid(CInt8Payload), &typeid(CInt16Payload), &typeid(CInt32Payload),
    &typeid(CInt64Payload), &typeid(CUint8Payload), &typeid(CUint16Payload), &typeid(CUint32Payload),
    &typeid(CUint64Payload), &typeid(CEnumPayload) };

/// A number as it lies in a payload.
struct Number
{
    std::uint64_t mBits;
    std::uint32_t mBytes;   // its own width
};

/// Reaches the value of a payload without a call.
template <typename T>
struct ValueIn : CPayload<T>
{
    static Number Of(const IPayload & payload)
    {
        // Extended by zeros, also if it is signed, as copying its bytes into a wider number has it.
        const T value = static_cast<const CPayload<T> &>(payload).*&ValueIn::mValue;
        return { static_cast<std::make_unsigned_t<T>>(value), sizeof value };
    }
};

inline Number NumberOf(const IPayload & payload, int numberClass)
{
    switch (numberClass) {
    case NUMERIC_INT8:
        return ValueIn<std::int8_t>::Of(payload);
    case NUMERIC_INT16:
        return ValueIn<std::int16_t>::Of(payload);
    case NUMERIC_INT64:
        return ValueIn<std::int64_t>::Of(payload);
    case NUMERIC_UINT8:
        return ValueIn<std::uint8_t>::Of(payload);
    case NUMERIC_UINT16:
        return ValueIn<std::uint16_t>::Of(payload);
    case NUMERIC_UINT32:
        return ValueIn<std::uint32_t>::Of(payload);
    case NUMERIC_UINT64:
        return ValueIn<std::uint64_t>::Of(payload);
    default:
        return ValueIn<std::int32_t>::Of(payload);   // also an enumerator
    }
}

/// Packs one struct with all that is nested in it. Each operation is false where the literal road has to be taken.
class Packer
{
public:
    Packer(const CStructPlan & plan, CWords words)
        : mPlan(plan)
        , mWords(words)
    {}

    bool PackStruct(std::uint32_t base, const LayoutPlan & layout, CComplexPayload & payload)
    {
        const std::vector<IPayload *> & values = payload.GetFields();
        if (values.size() > layout.mFields.size())
            return false;
        const FieldPlan * field = layout.mFields.data();
        for (IPayload * const value : values) {
            const std::uint32_t position = base + field->mPosition;
            const bool isNumber = field->mKind == FieldKind::NUMBER || field->mKind == FieldKind::ENUM;
            if (!(isNumber ? PackNumber(position, *field, value, layout)
                           : PackTree(position, *field, value, layout)))
                return false;
            ++field;
        }
        return true;
    }

private:
    /// The class of a number; below 0 for all other payloads. Only the address of the type information is compared:
    /// where a module has one of its own for a class of the library, the literal road gives the same result.
    static int ClassOf(const IPayload * payload, int expected)
    {
        if (payload == nullptr)
            return -1;
        const std::type_info * const type = &typeid(*payload);
        if (NUMBER_CLASSES[static_cast<std::size_t>(expected)] == type)
            return expected;
        const auto found = std::find(NUMBER_CLASSES.begin(), NUMBER_CLASSES.end(), type);
        return found != NUMBER_CLASSES.end() ? static_cast<int>(found - NUMBER_CLASSES.begin()) : -1;
    }

    /// The payloads of a tree; null if it isn't one, or not of exactly the library's class.
    static CComplexPayload * TreeOf(IPayload * payload)
    {
        const bool isTree = payload != nullptr && &typeid(*payload) == &typeid(CComplexPayload);
        return isTree ? static_cast<CComplexPayload *>(payload) : nullptr;
    }

    bool PackNumber(
        std::uint32_t position, const FieldPlan & field, const IPayload * payload, const LayoutPlan & layout)
    {
        const int numberClass = ClassOf(payload, field.mType);   // of an enumerator none, which is its place
        if (numberClass < 0)
            return false;
        if (field.mWidth >= BITS_IN_WORD)
            PackSized(position, field.mWidth, NumberOf(*payload, numberClass), layout);
        else   // what lies above the word is lost; a field never spills into the next one, intended
            mWords.MergeIntoWord(position / BITS_IN_WORD, (NumberOf(*payload, numberClass).mBits & field.mMask)
                                                              << position % BITS_IN_WORD);
        return true;
    }

    void PackSized(std::uint32_t position, std::uint32_t size, const Number & number, const LayoutPlan & layout)
    {
        if (size == BITS_IN_WORD && !CWords::Straddles(position, layout.mIsLittleEndian))
            ReplaceWord(position / BITS_IN_WORD, number);
        else
            mWords.MergeNumber(position, size, number.mBits, layout.mIsLittleEndian);
    }

    /// A narrower number replaces the low byte alone, and a wider one nothing, both intended.
    void ReplaceWord(std::uint64_t index, const Number & number)
    {
        if (number.mBytes == 2)
            mWords.SetWord(index, static_cast<std::uint16_t>(number.mBits));
        else if (number.mBytes == 1)
            mWords.SetWord(index, static_cast<std::uint16_t>((mWords.Word(index) & 0xFF00U) | number.mBits));
    }

    bool PackTree(
        std::uint32_t position, const FieldPlan & field, IPayload * payload, const LayoutPlan & layout)
    {
        CComplexPayload * const tree = TreeOf(payload);
        if (tree == nullptr)
            return false;
        switch (field.mKind) {
        case FieldKind::ARRAY:
            return PackArray(position, field, tree->GetFields(), layout);
        case FieldKind::WIDE:
            return PackWords(position / BITS_IN_WORD, tree->GetFields());
        case FieldKind::STRUCT:
            return PackStruct(position, mPlan.Inner(field), *tree);
        case FieldKind::STRUCTS:
            return PackStructs(position, field, tree->GetFields());
        case FieldKind::NUMBER:
        case FieldKind::ENUM:
            break;
        }
        return false;
    }

    bool PackArray(std::uint32_t position, const FieldPlan & field, const std::vector<IPayload *> & items,
        const LayoutPlan & layout)
    {
        if (items.empty())
            return true;
        // The field's width is shared out among the items there are; their type plays no part, intended.
        const auto share = static_cast<std::uint32_t>(field.mWidth / items.size());
        if (field.mWidth == 0)
            return true;   // no bits
        if (share > 64)
            return false;
        for (const IPayload * const item : items) {
            const int numberClass = ClassOf(item, NUMERIC_UINT16);
            if (numberClass < 0)
                return false;
            PackSized(position, share, NumberOf(*item, numberClass), layout);
            position += share;
        }
        return true;
    }

    /// Upward in every case, also in a struct that isn't little-endian, intended.
    bool PackWords(std::uint64_t index, const std::vector<IPayload *> & parts)
    {
        for (const IPayload * const part : parts) {
            const int numberClass = ClassOf(part, NUMERIC_UINT16);
            if (numberClass < 0)
                return false;
            ReplaceWord(index++, NumberOf(*part, numberClass));
        }
        return true;
    }

    bool PackStructs(std::uint32_t position, const FieldPlan & field, const std::vector<IPayload *> & structs)
    {
        const LayoutPlan & layout = mPlan.Inner(field);
        for (IPayload * const item : structs) {
            CComplexPayload * const tree = TreeOf(item);
            if (tree == nullptr || !PackStruct(position, layout, *tree))
                return false;
            position += field.mStride;
        }
        return true;
    }

    const CStructPlan & mPlan;
    CWords mWords;
};

}   // namespace

bool Pack(const CStructPlan & plan, CComplexPayload & payload, CWords words)
{
    return Packer(plan, words).PackStruct(0, plan.Top(), payload);
}

}   // namespace VrexZynConfigTools::structcodec
