#include "settle.h"

#include "advice.h"
#include "itemsettler.h"
#include "layoutsettler.h"
#include "names.h"

#include <configtools/keywords.h>
#include <kit/text/utf8.h>

namespace workbench::compiler {

using kit::text::Quoted;

namespace {

constexpr std::size_t MAX_INDICES = 9;
constexpr NumberRange INDEX_VALUES = { 0, 99'999'999 };   // longer ones get lost on their way through a context
constexpr NumberRange KEY_ITEMS = { 0, 65'536 };          // as many as a reader takes of one key

class CKeySettler
{
public:
    CKeySettler(CLayoutSettler & layouts, CItemSettler & items, CSourceFindings & findings)
        : mLayouts(layouts)
        , mItems(items)
        , mFindings(findings)
    {}

    void Settle(Key & key)
    {
        const std::size_t errors = mFindings.ErrorCount();
        const bool isRead = key.mIsSound;
        mItems.Settle(key, "a key");
        if (key.KindOf() == Kind::Structure)
            mLayouts.SettleStruct(key, 1);
        if (isRead && key.KindOf() == Kind::Number)
            mItems.SettleNumber(key, key.mTypeWord->mBits != 0 ? key.mTypeWord->mBits : 64);
        if (isRead && key.IsArray())
            CheckArray(key);
        if (key.mOctets.mIsGiven && key.KindOf() != Kind::Structure && key.KindOf() != Kind::Unknown)
            mItems.RefuseForeign("octets", key, key.mOctets.mPlace);
        CheckIndices(key);
        key.mIsSound = isRead && mFindings.ErrorCount() == errors && key.IsComplete();
    }

private:
    void CheckArray(const Key & key)
    {
        const NumberRange & count = key.mArray.mValue;
        if (!KEY_ITEMS.Contains(count.mMin) || !KEY_ITEMS.Contains(count.mMax))
            mFindings.Error(
                key.mArray.mPlace, "\"array\": " + count.Text() + " items; expected " + KEY_ITEMS.Text());
    }

    void CheckIndices(Key & key)
    {
        if (key.mIndices.size() > MAX_INDICES)
            mFindings.Error(key.mIndices[MAX_INDICES].mPlace,
                "a table has " + std::to_string(MAX_INDICES) + " indices at most");
        CTaken names(mFindings);
        for (const Index & index : key.mIndices) {
            if (RequireName(index.mName, "an index has a name", mFindings))
                names.Add(index.mName.mValue, "the index " + Quoted(index.mName.mValue), index.mName.mPlace);
            CheckIndex(index);
        }
    }

    void CheckIndex(const Index & index)
    {
        if (index.mRange.mIsGiven == index.mValues.mIsGiven) {
            mFindings.Error(
                index.mPlace, R"(an index has either a "range" of numbers or enumerators as "values")");
            return;
        }
        CheckEnumerators(index.mValues.mValue, mFindings);
        for (const Enumerator & each : index.mValues.mValue)
            if (!INDEX_VALUES.Contains(each.mNumber))
                mFindings.Error(each.mNumberPlace, Quoted(each.mName) + ": " + std::to_string(each.mNumber) +
                                                       " is out of range; expected " + INDEX_VALUES.Text());
        if (!index.mRange.mIsGiven || !mItems.CheckOrder(index.mRange, "range"))
            return;
        if (!INDEX_VALUES.Contains(index.mRange.mValue.mMin) ||
            !INDEX_VALUES.Contains(index.mRange.mValue.mMax))
            mFindings.Error(index.mRange.mPlace, "\"range\": " + index.mRange.mValue.Text() +
                                                     " doesn't fit an index; expected " + INDEX_VALUES.Text());
    }

    CLayoutSettler & mLayouts;
    CItemSettler & mItems;
    CSourceFindings & mFindings;
};

}   // namespace

void Settle(Source & source, CSourceFindings & findings)
{
    CItemSettler items(source, findings);
    CLayoutSettler layouts(source, items, findings);
    for (const auto & layout : source.mStructs)
        layouts.SettleLayout(*layout, 1);
    CKeySettler keys(layouts, items, findings);
    for (Subsystem & subsystem : source.mSubsystems)
        for (Key & key : subsystem.mKeys)
            keys.Settle(key);
}

}   // namespace workbench::compiler
