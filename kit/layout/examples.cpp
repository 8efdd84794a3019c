#include "packing.h"

#include "scalars.h"
#include "valueset.h"

#include <configtools/elements.h>
#include <configtools/metadata.h>
#include <configtools/numbertypes.h>

#include <algorithm>
#include <map>

namespace kit::layout {

using namespace VrexZynConfigTools;

namespace {

/// Which of its values each field has.
enum class Pattern
{
    LARGEST,
    SMALLEST,
    EVEN_LARGEST,   // and the odd ones smallest, so that each is between others
    ODD_LARGEST
};

/// Makes a struct whose fields have extreme values.
class CTreeMaker
{
public:
    explicit CTreeMaker(Pattern pattern)
        : mPattern(pattern)
    {}

    std::unique_ptr<CComplexPayload> Make(const std::vector<StructEntry> & entries)
    {
        auto tree = std::make_unique<CComplexPayload>(PAYLOAD_COMPLEX);
        AddParts(entries, *tree);
        return tree;
    }

private:
    void AddParts(const std::vector<StructEntry> & entries, CComplexPayload & to)
    {
        for (const StructEntry & entry : entries)
            Add(entry, to);
    }

    void Add(const StructEntry & entry, CComplexPayload & to)
    {
        switch (entry.mKind) {
        case StructEntryKind::STRUCT:
        case StructEntryKind::STRUCTS:
            return AddParts(entry.mParts, AddList(to, nullptr));
        case StructEntryKind::ARRAY:
            return AddItems(entry, AddList(to, nullptr));
        case StructEntryKind::ABSENT:
            return to.AddField(new CInt64Payload(0));
        default:
            break;
        }
        const bool isLargest = IsLargest();
        ++mPlace;
        if (IsTextual(*entry.mRecord))
            to.AddField(NewText(entry, isLargest));
        else if (entry.mKind == StructEntryKind::WORDS)
            AddWords(entry, isLargest, AddList(to, nullptr));
        else
            to.AddField(NewNumber(entry, entry.mType, isLargest));
    }

    bool IsLargest() const
    {
        const bool isEven = mPlace % 2 == 0;
        return mPattern == Pattern::LARGEST ||
               mPattern == (isEven ? Pattern::EVEN_LARGEST : Pattern::ODD_LARGEST);
    }

    void AddItems(const StructEntry & array, CComplexPayload & to)
    {
        const NumberType * const type = FindNumberType(array.mRecord->InternalType());
        for (const StructEntry & item : array.mParts)
            to.AddField(NewNumber(item, type != nullptr ? type->mType : NUMERIC_NONE, IsLargest()));
        // Of a type without a width nothing is unpacked; two items show it.
        for (int place = 0; array.mParts.empty() && place < 2; ++place)
            to.AddField(new CInt64Payload(IsLargest() ? array.mRecord->Max() : array.mRecord->Min()));
        ++mPlace;
    }

    static void AddWords(const StructEntry & entry, bool isLargest, CComplexPayload & to)
    {
        for (std::uint32_t left = entry.mWidth; left != 0; left -= std::min(left, 16U)) {
            const std::uint64_t word = isLargest ? LowBits(0xFFFF, std::min(left, 16U)) : 0;
            to.AddField(new CUint16Payload(static_cast<std::uint16_t>(word)));
        }
    }

    static IPayload * NewText(const StructEntry & entry, bool isLargest)
    {
        const auto shortest = static_cast<std::uint64_t>(entry.mRecord->Min());
        const std::uint64_t length =
            std::min(isLargest ? LongestText(*entry.mRecord) : shortest, BytesHeld(entry));
        return new CStringPayload(std::string(length, 'U'), false);
    }

    static IPayload * NewNumber(const StructEntry & entry, NumericTypeEnum type, bool isLargest)
    {
        const CValueSet values = ValuesOf(entry);
        NumericVariable value;
        value.mUint64 = isLargest ? values.Largest() : values.Smallest();
        auto * const enumerators = dynamic_cast<CMetadataDetailEnum *>(entry.mRecord->Details());
        if (enumerators == nullptr)
            return CElementNumericArray::GetPayloadByNumericType(type, value);
        const auto number = static_cast<std::int32_t>(value.mUint64);
        return new CEnumPayload(enumerators->EnumName(number), number);
    }

    Pattern mPattern;
    std::size_t mPlace = 0;   // of the field, those of all structs counted
};

}   // namespace

std::vector<Change> ExamplesOf(const CFields & fields, CMetadataDetailStruct & layout)
{
    std::map<std::string, Change> found;   // by path; the first of each
    for (const Pattern pattern :
        { Pattern::LARGEST, Pattern::SMALLEST, Pattern::EVEN_LARGEST, Pattern::ODD_LARGEST })
    {
        const auto tree = CTreeMaker(pattern).Make(fields.Layout().Entries());
        for (Change & change : PackStruct(*tree, layout).mChanges)
            found.try_emplace(change.mPath, std::move(change));
    }
    std::vector<Change> changes;
    for (const Field & field : fields.List())
        if (auto change = found.extract(field.mPath))
            changes.push_back(std::move(change.mapped()));
    return changes;
}

}   // namespace kit::layout
