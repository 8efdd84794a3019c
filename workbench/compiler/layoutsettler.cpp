#include "layoutsettler.h"

#include "advice.h"
#include "bits.h"
#include "itemparser.h"
#include "itemsettler.h"
#include "names.h"

#include <kit/text/utf8.h>

#include <algorithm>

namespace workbench::compiler {

using kit::text::Quoted;

namespace {

constexpr std::uint64_t MAX_FIELDS = 65'536;   // with those of all structs within
constexpr std::uint64_t MAX_ITEMS = 65'536;    // of an array

std::string BitsText(std::int64_t count)
{
    return std::to_string(count) + (count == 1 ? " bit" : " bits");
}

}   // namespace

CLayoutSettler::CLayoutSettler(Source & source, CItemSettler & items, CSourceFindings & findings)
    : mIsWhole(source.mIsWhole)
    , mItems(items)
    , mFindings(findings)
{
    for (const auto & shared : source.mStructs) {
        mStructs.emplace(shared->mName.mValue, shared);
        mStructNames.push_back(shared->mName.mValue);
    }
}

bool CLayoutSettler::FindLayout(Item & item)
{
    if (!item.mStructName.mIsGiven) {
        if (item.mLayout != nullptr && !item.mLayout->mFields.empty())
            return true;
        mFindings.Error(
            item.mPlace, R"("field" is missing: a struct has one field at least, or is a shared "struct")");
        item.mLayout = std::make_shared<Layout>();
        return false;
    }
    if (item.mLayout != nullptr)
        mFindings.Error(item.mStructName.mPlace,
            R"("struct" names a shared struct, which has fields, "bits" and "little_endian" of its own)");
    const auto found = mStructs.find(item.mStructName.mValue);
    if (found == mStructs.end() && mIsWhole)
        mFindings.Error(item.mStructName.mPlace, "unknown struct " + Quoted(item.mStructName.mValue) +
                                                     Advice(item.mStructName.mValue, mStructNames));
    item.mLayout = found != mStructs.end() ? found->second : std::make_shared<Layout>();
    return found != mStructs.end();
}

void CLayoutSettler::SettleStruct(Item & item, int depth)
{
    if (!FindLayout(item))
        return;
    const Place & place = item.mStructName.mIsGiven ? item.mStructName.mPlace : item.mPlace;
    if (item.mLayout->mState == Layout::State::InWork) {
        mFindings.Error(place, "the struct " + Quoted(item.mStructName.mValue) + " holds itself");
        item.mLayout = std::make_shared<Layout>();   // or it would own itself
    } else if (depth > MAX_DEPTH)
        mFindings.Error(place, "structs nest deeper than " + std::to_string(MAX_DEPTH));
    else
        SettleLayout(*item.mLayout, depth);
}

void CLayoutSettler::SettleLayout(Layout & layout, int depth)
{
    if (layout.mState == Layout::State::Done)
        return;
    layout.mState = Layout::State::InWork;
    const std::size_t errors = mFindings.ErrorCount();
    if (layout.mFields.empty())
        mFindings.Error(layout.mPlace, "\"field\" is missing: a struct has one field at least");
    CTaken names(mFindings);
    for (Field & field : layout.mFields) {
        SettleField(field, depth);
        if (!field.mName.mValue.empty())
            names.Add(field.mName.mValue, "the field " + Quoted(field.mName.mValue), field.mName.mPlace);
    }
    CheckBits(layout, mFindings);
    SumUp(layout);
    layout.mIsSound =
        mFindings.ErrorCount() == errors && std::all_of(layout.mFields.begin(), layout.mFields.end(),
                                                [](const Field & field) { return field.mIsSound; });
    layout.mState = Layout::State::Done;
}

void CLayoutSettler::SettleField(Field & field, int depth)
{
    const std::size_t errors = mFindings.ErrorCount();
    const bool isRead = field.mIsSound;
    RequireName(field.mName, "a field has a name", mFindings);
    mItems.Settle(field, "a field");
    if (field.KindOf() == Kind::Structure)
        SettleStruct(field, depth + 1);
    if (!field.mPosition.mIsGiven)
        mFindings.Error(field.mPlace, "\"position\" is missing: a field has the position of its lowest bit");
    if (isRead && field.mTypeWord != nullptr && mFindings.ErrorCount() == errors) {
        SettleWidth(field);
        CheckPosition(field);
    }
    field.mIsSound = isRead && mFindings.ErrorCount() == errors && field.IsComplete();
}

void CLayoutSettler::SettleWidth(Field & field)
{
    if (field.IsArray()) {
        const NumberRange & count = field.mArray.mValue;
        if (!(count.mMin == count.mMax) || !NumberRange{ 1, CNumber::Unsigned(MAX_ITEMS) }.Contains(count.mMin))
        {
            mFindings.Error(
                field.mArray.mPlace, "\"array\": the array of a field has a fixed number of items, 1 to " +
                                         std::to_string(MAX_ITEMS));
            return;
        }
    }
    if (field.mWidth.mIsGiven && field.mWidth.mValue < 1)
        mFindings.Error(field.mWidth.mPlace, "\"width\": a field has one bit at least");
    else if (field.KindOf() == Kind::Structure)
        SettleStructWidth(field);
    else
        SettlePlainWidth(field);
}

void CLayoutSettler::SettleStructWidth(Field & field)
{
    if (!field.mLayout->mIsSound)
        return;
    const std::int64_t size = field.mLayout->mSize;
    const std::int64_t all = size * static_cast<std::int64_t>(field.Count());
    if (!field.mWidth.mIsGiven)
        field.mWidth.mValue = all;
    else if (field.IsArray() && field.mWidth.mValue != all)
        mFindings.Error(field.mWidth.mPlace, "\"width\": " + std::to_string(field.Count()) + " structs of " +
                                                 BitsText(size) + " have " + BitsText(all));
    else if (field.mWidth.mValue < all)
        mFindings.Error(field.mWidth.mPlace, "\"width\": the struct has " + BitsText(all));
}

void CLayoutSettler::SettlePlainWidth(Field & field)
{
    const std::int64_t bits = field.mTypeWord->mBits;
    const auto count = static_cast<std::int64_t>(field.Count());
    if (!field.mWidth.mIsGiven && bits == 0) {
        mFindings.Error(field.mPlace, "\"width\" is missing: the type " + Quoted(field.mType.mValue) +
                                          " doesn't say how many bits a field has");
        return;
    }
    if (!field.mWidth.mIsGiven)
        field.mWidth.mValue = bits * count;
    if (field.KindOf() == Kind::Number)
        CheckNumberWidth(field);
    else if (field.KindOf() == Kind::Enumeration && field.mWidth.mValue <= 64)
        mItems.CheckEnumeratorsFit(field, field.mWidth.mValue);
    else if (field.KindOf() == Kind::Enumeration)
        mFindings.Error(field.mWidth.mPlace, "\"width\": an enumerator has 64 bits at most");
    else
        CheckTextWidth(field);
    if (field.KindOf() == Kind::Number && !field.IsWide())
        mItems.SettleNumber(field, std::min<std::int64_t>(field.mWidth.mValue / count, 64));
    else if (field.IsWide() && field.mRange.mIsGiven)
        mFindings.Error(field.mRange.mPlace, "\"range\": a field of more than 64 bits has none");
}

void CLayoutSettler::CheckNumberWidth(const Field & field)
{
    const std::int64_t bits = field.mTypeWord->mBits;
    const auto count = static_cast<std::int64_t>(field.Count());
    const std::int64_t width = field.mWidth.mValue;
    if (field.IsArray() && (bits != 0 ? width != bits * count : width % count != 0))
        mFindings.Error(field.mWidth.mPlace, "\"width\": " + BitsText(width) + " don't hold " +
                                                 std::to_string(count) + " items of " +
                                                 (bits != 0 ? BitsText(bits) : "one size"));
    else if (!field.IsArray() && bits != 0 && width > bits)
        mFindings.Error(field.mWidth.mPlace, "\"width\": " + BitsText(width) + " are more than the " +
                                                 std::to_string(bits) + " of " + field.mType.mValue);
}

void CLayoutSettler::CheckTextWidth(const Field & field)
{
    const std::int64_t width = field.mWidth.mValue;
    if (width % 8 != 0)
        mFindings.Error(field.mWidth.mPlace, "\"width\": a text or octets have whole octets of 8 bits");
    else if (field.mLength.mValue.mMax > CNumber(width / 8))
        mFindings.Error(field.mLength.mPlace,
            "\"length\": " + field.mLength.mValue.mMax.Text() + " bytes don't fit " + BitsText(width));
}

void CLayoutSettler::CheckPosition(const Field & field)
{
    const std::int64_t position = field.mPosition.mValue;
    if (position < 0)
        mFindings.Error(field.mPosition.mPlace, "\"position\": expected 0 or more");
    else if (position >= MAX_STRUCT_BITS || position + field.mWidth.mValue > MAX_STRUCT_BITS)
        mFindings.Error(field.mPosition.mPlace,
            "the field ends at the bit " + std::to_string(position + field.mWidth.mValue) + "; a struct has " +
                std::to_string(MAX_STRUCT_BITS) + " bits at most");
}

void CLayoutSettler::SumUp(Layout & layout)
{
    layout.mSize = SizeOf(layout);
    for (const Field & field : layout.mFields) {
        const bool isStruct = field.KindOf() == Kind::Structure;
        const std::uint64_t within = isStruct ? field.mLayout->mFieldCount * field.Count() : 0;
        layout.mFieldCount = std::min(layout.mFieldCount + 1 + within, MAX_FIELDS + 1);
        if (isStruct)
            layout.mDepth = std::max(layout.mDepth, 1 + field.mLayout->mDepth);
        const Place & place = field.mStructName.mIsGiven ? field.mStructName.mPlace : field.mPlace;
        if (isStruct && layout.mDepth > MAX_DEPTH)
            mFindings.Error(place, "structs nest deeper than " + std::to_string(MAX_DEPTH));
        if (layout.mFieldCount > MAX_FIELDS) {
            mFindings.Error(place, "a struct has " + std::to_string(MAX_FIELDS) +
                                       " fields at most, those of the structs within it included");
            return;
        }
    }
}

}   // namespace workbench::compiler
