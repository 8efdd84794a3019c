#include <configtools/structlayout.h>

#include "plan.h"
#include "words.h"
#include <configtools/metadata.h>

#include <algorithm>

namespace VrexZynConfigTools {

using namespace structcodec;

namespace {

/// Follows a plan as packing and unpacking do, and notes the places.
class EntryMaker
{
public:
    EntryMaker(const CStructPlan & plan, std::size_t most)
        : mWalk{ plan, std::min<std::uint64_t>(most, MaxValues(plan.Top().mBits)) }
        , mIsLimited(most < MaxValues(plan.Top().mBits))
        , mWords(nullptr, (plan.Top().mBits + BITS_IN_WORD - 1) / BITS_IN_WORD)
    {}

    bool AddStruct(std::uint32_t base, const LayoutPlan & layout, std::vector<StructEntry> & entries)
    {
        const Level level(mWalk);
        if (level.IsTooDeep())
            Fail(TOO_DEEP);
        if (level.IsTooDeep() || layout.mFields.empty())
            return Count();
        for (const FieldPlan & field : layout.mFields) {
            StructEntry & entry = entries.emplace_back();
            entry.mKind = field.mKind;
            entry.mRecord = field.mRecord;
            entry.mPosition = base + field.mPosition;
            entry.mWidth = field.mWidth;
            if (!Fill(field, layout.mIsLittleEndian, entry))
                return false;
        }
        return true;
    }

    const std::string & Error() const { return mError; }
    bool IsCutOff() const { return mIsCutOff; }

private:
    bool Fill(const FieldPlan & field, bool littleEndian, StructEntry & entry)
    {
        switch (field.mKind) {
        case StructEntryKind::STRUCT:
        case StructEntryKind::STRUCTS:
            return FillStruct(field, entry);
        case StructEntryKind::ARRAY:
        case StructEntryKind::WORDS:
            return FillItems(field, littleEndian, entry);
        case StructEntryKind::ABSENT:
            Fail(NO_RECORD);
            return Count();
        case StructEntryKind::NUMBER:
        case StructEntryKind::ENUMERATOR:
            break;
        }
        entry.mType = field.mType;
        entry.mHasSign = field.mIsSigned && !Straddles(entry.mPosition, entry.mWidth, littleEndian);
        SetPacked(entry.mPosition, entry.mWidth, littleEndian, entry);
        SetUnpacked(entry.mPosition, entry.mWidth, littleEndian, entry);
        return Count();
    }

    bool FillStruct(const FieldPlan & field, StructEntry & entry)
    {
        const LayoutPlan * const layout = mWalk.mPlan.Inner(field);
        if (layout == nullptr) {
            Fail(NoFieldsText(*field.mRecord));
            return Count();
        }
        if (field.mKind == StructEntryKind::STRUCT)
            return AddStruct(static_cast<std::uint32_t>(entry.mPosition), *layout, entry.mParts);
        if (layout->mBits == 0)
            Fail(NoSizeText(*field.mRecord));
        const auto base = static_cast<std::uint32_t>(entry.mPosition);
        const std::uint64_t count = StructsIn(field, *layout);
        entry.mItems = static_cast<std::uint32_t>(count);
        entry.mStride = static_cast<std::uint32_t>(layout->mBits);
        for (std::uint32_t index = 0; index < entry.mItems; ++index) {
            StructEntry & part = AddPart(StructEntryKind::STRUCT, entry);
            const std::uint32_t position = base + index * entry.mStride;
            part.mPosition = position;
            if (!AddStruct(position, *layout, part.mParts))
                return false;
        }
        return count != 0 || Count();
    }

    bool FillItems(const FieldPlan & field, bool littleEndian, StructEntry & entry)
    {
        const bool isArray = field.mKind == StructEntryKind::ARRAY;
        entry.mItems = field.mItems;
        entry.mStride = field.mStride;
        const std::uint64_t begin =
            isArray ? entry.mPosition : entry.mPosition - entry.mPosition % BITS_IN_WORD;
        const bool hasPartialWord = !isArray && entry.mWidth % BITS_IN_WORD != 0;
        // Packing shares out the width among the items, whatever their type; intended.
        const std::uint32_t share = isArray && entry.mItems != 0 ? entry.mWidth / entry.mItems : BITS_IN_WORD;
        if (!Count())
            return false;
        for (std::uint32_t index = 0; index < entry.mItems + (hasPartialWord ? 1 : 0); ++index) {
            if (!Count())
                return false;
            StructEntry & part = AddPart(StructEntryKind::NUMBER, entry);
            part.mPosition = begin + std::uint64_t{ index } * entry.mStride;
            part.mType = field.mType;
            SetPacked(begin + std::uint64_t{ index } * share, share, littleEndian, part);
            if (index == entry.mItems)
                break;   // the partial word, which isn't unpacked
            const UnpackedItem item = ItemAt(part.mPosition, field.mStride, littleEndian);
            SetUnpacked(item.mPosition, item.mSize, littleEndian, part);
        }
        return true;
    }

    static StructEntry & AddPart(StructEntryKind kind, StructEntry & entry)
    {
        StructEntry & part = entry.mParts.emplace_back();
        part.mKind = kind;
        part.mRecord = entry.mRecord;
        part.mWidth = entry.mStride;
        return part;
    }

    auto AddingTo(BitRuns & runs) const
    {
        return
            [this, &runs](std::uint64_t word, std::uint32_t bit, std::uint32_t valueBit, std::uint32_t count) {
                if (mWords.Has(word))
                    runs.Add({ static_cast<std::uint32_t>(word), bit, valueBit, count });
            };
    }

    void SetPacked(std::uint64_t position, std::uint32_t size, bool littleEndian, StructEntry & entry) const
    {
        entry.mReplaces = ReplacesWord(position, size, littleEndian);
        ForEachPackedRun(position, size, littleEndian, AddingTo(entry.mPacked));
    }

    void SetUnpacked(std::uint64_t position, std::uint32_t size, bool littleEndian, StructEntry & entry) const
    {
        ForEachUnpackedRun(position, size, littleEndian, AddingTo(entry.mUnpacked));
    }

    bool Count()
    {
        if (mWalk.CountValue())
            return true;
        mIsCutOff = true;
        if (!mIsLimited)
            Fail(TooManyText(mWalk.mPlan.Top().mBits));
        return false;
    }

    void Fail(const std::string & text)
    {
        if (mError.empty())
            mError = text;
    }

    Walk mWalk;
    bool mIsLimited;   // by the caller
    CWords mWords;     // as many as there are, to be asked for that alone
    std::string mError;
    bool mIsCutOff = false;
};

}   // namespace

CStructLayout::CStructLayout(CMetadataDetailStruct & detail, std::size_t most)
{
    const auto plan = CStructPlan::Of(detail);
    mBits = plan->Top().mBits;
    if (mBits > MAX_STRUCT_BITS) {
        mError = TooLargeText(mBits);
        mIsCutOff = true;
        return;
    }
    EntryMaker maker(*plan, most);
    maker.AddStruct(0, plan->Top(), mEntries);
    mError = maker.Error();
    mIsCutOff = maker.IsCutOff();
}

}   // namespace VrexZynConfigTools
