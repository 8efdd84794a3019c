#include "itemsettler.h"

#include "advice.h"
#include "names.h"

#include <configtools/keywords.h>
#include <kit/text/utf8.h>

#include <algorithm>
#include <limits>

namespace workbench::compiler {

using kit::text::Quoted;

namespace {

namespace keywords = VrexZynConfigTools::keywords;

constexpr NumberRange TEXT_LENGTHS = { 0, 65'535 };   // a device counts them in 16 bits

bool IsSigned(const Item & item)
{
    const bool isByFormat =
        item.mTypeWord->mBits == 0 && (item.mFormat.mValue == keywords::FORMAT_UNSIGNED_DECIMAL ||
                                          item.mFormat.mValue == keywords::FORMAT_HEXADECIMAL);
    return item.mTypeWord->mIsSigned && !isByFormat;
}

CNumber LargestUnsigned(std::int64_t width)
{
    constexpr std::uint64_t ALL = std::numeric_limits<std::uint64_t>::max();
    return CNumber::Unsigned(width >= 64 ? ALL : (std::uint64_t{ 1 } << width) - 1);
}

// A record keeps its range in signed 64 bits, which only "uint64" takes for unsigned ones.
CNumber LargestUnsigned(const Item & item, std::int64_t width)
{
    return LargestUnsigned(item.mTypeWord->mBits == 64 ? width : std::min<std::int64_t>(width, 63));
}

NumberRange SignedRange(std::int64_t width)
{
    const auto max = static_cast<std::int64_t>(LargestUnsigned(width - 1).Bits());
    return { -max - 1, max };
}

NumberRange UsualRange(const Item & item, std::int64_t width)
{
    return IsSigned(item) ? SignedRange(width) : NumberRange{ 0, LargestUnsigned(item, width) };
}

// A number that isn't sign-extended may use the bit of the sign as any other.
NumberRange WidestRange(const Item & item, std::int64_t width)
{
    NumberRange range = UsualRange(item, width);
    const auto bits = static_cast<std::int64_t>(item.mTypeWord->mBits);
    if (IsSigned(item) && width < bits && item.mFormat.mValue != keywords::FORMAT_SIGNED_DECIMAL)
        range.mMax = LargestUnsigned(width);
    return range;
}

std::string TypeText(const Item & item, std::int64_t width)
{
    const auto bits = static_cast<std::int64_t>(item.mTypeWord->mBits);
    return width == bits || (bits == 0 && width == 64)
               ? item.mType.mValue
               : std::to_string(width) + " bits of " + item.mType.mValue;
}

}   // namespace

CItemSettler::CItemSettler(Source & source, CSourceFindings & findings)
    : mIsWhole(source.mIsWhole)
    , mFindings(findings)
{
    for (const SharedEnum & shared : source.mEnums) {
        mEnums.emplace(shared.mName.mValue, &shared);
        mEnumNames.push_back(shared.mName.mValue);
    }
}

void CItemSettler::Settle(Item & item, const std::string & what)
{
    SettleType(item, what);
    SettleFormat(item);
    CheckWord(item.mAccess, "access", AccessWords(), mFindings);
    if (!item.mAccess.mIsGiven)
        item.mAccess.mValue = keywords::ACCESS_READ_WRITE;
    if (item.mTypeWord == nullptr)
        return;
    RefuseForeign(item);
    if (item.IsArray())
        CheckOrder(item.mArray, "array");
    if (item.KindOf() == Kind::Text || item.KindOf() == Kind::Octets)
        SettleLength(item, what);
    if (item.KindOf() == Kind::Enumeration)
        SettleEnum(item, what);
}

void CItemSettler::SettleType(Item & item, const std::string & what)
{
    if (!RequireText(item.mType, "type", (what + " has the type of its value").c_str(), mFindings) ||
        !CheckWord(item.mType, "type", TypeWords(), mFindings))
        return;
    item.mTypeWord = FindType(item.mType.mValue);
}

// Numbers read as their type says, unless the source says otherwise.
void CItemSettler::SettleFormat(Item & item)
{
    CheckWord(item.mFormat, "format", FormatWords(), mFindings);
    if (!item.mFormat.mIsGiven && item.KindOf() == Kind::Number)
        item.mFormat.mValue =
            item.mTypeWord->mIsSigned ? keywords::FORMAT_SIGNED_DECIMAL : keywords::FORMAT_UNSIGNED_DECIMAL;
}

void CItemSettler::SettleLength(Item & item, const std::string & what)
{
    if (!item.mLength.mIsGiven) {
        mFindings.Error(
            item.mPlace, "\"length\" is missing: " + what + " of this type has a length in bytes, [min, max]");
        return;
    }
    const NumberRange & length = item.mLength.mValue;
    if (CheckOrder(item.mLength, "length") &&
        (!TEXT_LENGTHS.Contains(length.mMin) || !TEXT_LENGTHS.Contains(length.mMax)))
        mFindings.Error(
            item.mLength.mPlace, "\"length\": " + length.Text() + " bytes; expected " + TEXT_LENGTHS.Text());
}

void CItemSettler::SettleEnum(Item & item, const std::string & what)
{
    if (item.mEnumName.mIsGiven == item.mValues.mIsGiven) {
        mFindings.Error(item.mPlace,
            what + R"( of this type has either its "values" or the name of an "enum" that is shared)");
        return;
    }
    if (item.mValues.mIsGiven) {
        CheckEnumerators(item.mValues.mValue, mFindings);
        return;
    }
    const auto found = mEnums.find(item.mEnumName.mValue);
    if (found != mEnums.end())
        item.mValues.mValue = found->second->mValues.mValue;
    else if (mIsWhole)
        mFindings.Error(item.mEnumName.mPlace,
            "unknown enumeration " + Quoted(item.mEnumName.mValue) + Advice(item.mEnumName.mValue, mEnumNames));
}

void CItemSettler::SettleNumber(Item & item, std::int64_t width)
{
    const NumberRange usual = UsualRange(item, width);
    if (!item.mRange.mIsGiven) {
        item.mRange.mValue = usual;
        return;
    }
    const NumberRange widest = WidestRange(item, width);
    const NumberRange & range = item.mRange.mValue;
    if (CheckOrder(item.mRange, "range") && (!widest.Contains(range.mMin) || !widest.Contains(range.mMax)))
        mFindings.Error(item.mRange.mPlace,
            "\"range\": " + range.Text() + " doesn't fit " + TypeText(item, width) + ": " + widest.Text());
}

void CItemSettler::CheckEnumeratorsFit(const Item & item, std::int64_t width)
{
    const bool isSigned = item.mFormat.mValue == keywords::FORMAT_SIGNED_DECIMAL;
    const NumberRange range = isSigned ? SignedRange(width) : NumberRange{ 0, LargestUnsigned(width) };
    for (const Enumerator & each : item.mValues.mValue)
        if (!range.Contains(each.mNumber))
            mFindings.Error(item.mValues.mIsGiven ? each.mNumberPlace : item.mEnumName.mPlace,
                "the enumerator " + Quoted(each.mName) + ", " + std::to_string(each.mNumber) +
                    ", doesn't fit " + std::to_string(width) + " bits: " + range.Text());
}

bool CItemSettler::CheckOrder(const Placed<NumberRange> & range, const char * name)
{
    const NumberRange & value = range.mValue;
    if (!(value.mMin > value.mMax))
        return true;
    mFindings.Error(range.mPlace,
        Quoted(name) + ": the minimum " + value.mMin.Text() + " is above the maximum " + value.mMax.Text());
    return false;
}

void CItemSettler::RefuseForeign(const char * name, const Item & item, const Place & place)
{
    mFindings.Error(place, Quoted(name) + " doesn't go with the type " + Quoted(item.mType.mValue));
}

void CItemSettler::RefuseForeign(const Item & item)
{
    const Kind kind = item.KindOf();
    const bool isText = kind == Kind::Text || kind == Kind::Octets;
    if (item.mRange.mIsGiven && kind != Kind::Number)
        RefuseForeign("range", item, item.mRange.mPlace);
    if (item.mLength.mIsGiven && !isText)
        RefuseForeign("length", item, item.mLength.mPlace);
    // Of an array of texts or enumerators the library would keep one item only; a table is what keeps several.
    if (item.mArray.mIsGiven && kind != Kind::Number && kind != Kind::Structure)
        RefuseForeign("array", item, item.mArray.mPlace);
    if (kind != Kind::Enumeration && item.mValues.mIsGiven)
        RefuseForeign("values", item, item.mValues.mPlace);
    if (kind != Kind::Enumeration && item.mEnumName.mIsGiven)
        RefuseForeign("enum", item, item.mEnumName.mPlace);
    if (kind == Kind::Structure)
        return;
    if (item.mStructName.mIsGiven)
        RefuseForeign("struct", item, item.mStructName.mPlace);
    if (item.mLayout == nullptr)
        return;
    if (item.mLayout->mLittleEndian.mIsGiven)
        RefuseForeign("little_endian", item, item.mLayout->mLittleEndian.mPlace);
    if (item.mLayout->mBits.mIsGiven)
        RefuseForeign("bits", item, item.mLayout->mBits.mPlace);
    if (!item.mLayout->mFields.empty())
        RefuseForeign("field", item, item.mLayout->mFields.front().mPlace);
}

}   // namespace workbench::compiler
