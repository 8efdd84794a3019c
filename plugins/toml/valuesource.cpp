#include "valuesource.h"

#include "recordfacts.h"

#include <configtools/keywords.h>
#include <kit/text/number.h>
#include <kit/tomlsyntax/tomlsyntax.h>

#include <algorithm>
#include <limits>
#include <utility>

namespace tomlconfig {

namespace {

std::vector<std::string> LabelsOf(const CTableIndex & index)
{
    std::vector<std::string> labels;
    labels.reserve(index.EnumCount());
    for (const auto & [label, number] : index.Enums())
        labels.push_back(label);
    return labels;
}

}   // namespace

CValueSource::CValueSource(CFindings & findings, bool checks)
    : mFindings(findings)
    , mValues(findings)
    , mChecks(checks)
{}

void CValueSource::LoadIndices(const std::vector<const toml::node *> & nodes, const std::string & label)
{
    mIndexNodes = nodes;
    mIndexLabel = label;
    mNextIndex = 0;
}

void CValueSource::UseIndex(const CTableIndex & index)
{
    mIndex = &index;
}

void CValueSource::Load(
    const IMetadata & record, const std::string & label, std::vector<const toml::node *> items)
{
    mRecord = &record;
    mLabel = label;
    mItems = std::move(items);
    mNext = 0;
}

bool CValueSource::HasMore() const
{
    return mNext < mItems.size();
}

bool CValueSource::IsRefused() const
{
    return mIsRefused;
}

const toml::node & CValueSource::Last() const
{
    return *mLast;
}

const std::string & CValueSource::LastText() const
{
    return mLastText;
}

const std::string & CValueSource::LastType() const
{
    return mLastType;
}

const std::string & CValueSource::LastBytes() const
{
    return mLastBytes;
}

bool CValueSource::HasLeftOut() const
{
    return mHasLeftOut;
}

bool CValueSource::NextInt(const std::string & typeName, std::uint64_t & value, std::uint16_t * indexNumber)
{
    value = 0;   // always written, so that no caller goes on with what was there
    if (indexNumber != nullptr)
        return NextIndex(value);
    if (!Take())
        return false;
    const NumberType * const type = FindNumberType(typeName);
    mLastType = type != nullptr ? typeName : "";
    const auto bits = type != nullptr
                          ? Bits(*type)
                          : Refuse(About("bad-metadata", "the metadata gives it the type " + Quoted(typeName) +
                                                             ", which is no type of numbers"));
    value = bits.value_or(0);
    return bits && HasMore();
}

bool CValueSource::NextString(std::string & value, std::uint16_t * /*indexNumber*/)
{
    value.clear();
    if (!Take())
        return false;
    const bool isOctet = mRecord->InternalType() == keywords::TYPE_OCTET_STRING;
    const auto text = isOctet ? mValues.Octets(*mLast, mLabel) : mValues.Text(*mLast, mLabel);
    mIsRefused = !text;
    value = text.value_or("");
    mLastBytes = value;
    return text && HasMore();
}

bool CValueSource::NextEnum(std::uint64_t & value, std::uint16_t * /*indexNumber*/)
{
    value = 0;
    if (!Take())
        return false;
    const auto number = EnumNumber();
    value = static_cast<std::uint64_t>(number.value_or(0));
    return number && HasMore();
}

// The next value becomes the last one.
bool CValueSource::Take()
{
    mIsRefused = false;
    mLastType.clear();
    if (!HasMore())
        return false;
    mLast = mItems[mNext++];
    return true;
}

Finding CValueSource::About(const std::string & code, const std::string & text) const
{
    Finding finding = FindingAt(*mLast, code, Quoted(mLabel) + ": " + text);
    finding.mField = mLabel;
    return finding;
}

Finding CValueSource::Unknown(const std::string & text) const
{
    return About("unknown-enumerator", text);
}

Finding CValueSource::WrongNumber(const std::string & found) const
{
    const std::string expected = "a whole number from " + RangeText(*mRecord, mLastType);
    Finding finding = About("wrong-kind", "expected " + expected + ", found " + found);
    finding.mExpected = expected;
    return finding;
}

Finding CValueSource::AboutIndex(
    const toml::node & node, const std::string & code, const std::string & text) const
{
    Finding finding = FindingAt(node, code, Quoted(mIndexLabel) + ": " + text);
    finding.mField = mIndexLabel;
    return finding;
}

std::nullopt_t CValueSource::Refuse(Finding finding)
{
    mIsRefused = true;
    mFindings.Add(std::move(finding));
    return std::nullopt;
}

std::nullopt_t CValueSource::LeaveOut(Finding finding)
{
    mIsRefused = true;
    mHasLeftOut = true;
    finding.mText += "; the key is left out";
    finding.mSeverity = SEVERITY_WARNING;
    mFindings.Add(std::move(finding));
    return std::nullopt;
}

std::optional<std::uint64_t> CValueSource::Bits(const NumberType & type)
{
    const auto * const text = mLast->as_string();
    if (text != nullptr && type.mType == NUMERIC_UINT64)
        return BitsOfText(text->get());
    if (const auto * const integer = mLast->as_integer())
        return BitsOfInteger(integer->get(), type);
    return Refuse(WrongNumber(kit::tomlsyntax::KindOf(*mLast)));
}

std::optional<std::uint64_t> CValueSource::BitsOfText(const std::string & text)
{
    const auto number = kit::text::ParseWithPrefix(text);
    if (!number)
        return Refuse(WrongNumber(Quoted(text)));
    mLastText = std::to_string(*number);
    return number;
}

std::optional<std::uint64_t> CValueSource::BitsOfInteger(std::int64_t number, const NumberType & type)
{
    const auto bits = static_cast<std::uint64_t>(number);
    mLastText = std::to_string(number);
    if (kit::numbertypes::RangeOf(type).Contains(number))
        return bits;
    if (mChecks)
        return Refuse(WithExpected(
            About("out-of-range", mLastText + " is out of range"), RangeText(*mRecord, mLastType)));
    return LowBits(type, bits);
}

std::optional<std::uint64_t> CValueSource::LowBits(const NumberType & type, std::uint64_t bits)
{
    const auto kept = kit::numbertypes::NumberOf(type, kit::numbertypes::VariableOf(type, bits));
    Finding finding = About("cut-off",
        mLastText + " doesn't fit into " + type.mKeyword + "; what is left of it is " + NumberText(kept));
    finding.mSeverity = SEVERITY_WARNING;
    mFindings.Add(std::move(finding));
    return bits;
}

std::optional<std::int64_t> CValueSource::EnumNumber()
{
    using Limits = std::numeric_limits<std::int32_t>;
    const auto * const integer = mLast->as_integer();
    if (integer == nullptr && !mLast->is_string() && !mLast->is_table())
        return Refuse(About("wrong-kind",
            std::string("expected an enumerator by name or number, found ") + kit::tomlsyntax::KindOf(*mLast)));
    if (integer == nullptr) {
        const auto name = mValues.Text(*mLast, mLabel);
        mIsRefused = !name;
        return name ? NamedEnumerator(*name) : std::nullopt;
    }
    const std::int64_t number = integer->get();
    mLastText = std::to_string(number);
    const bool isNumber = number >= Limits::min() && number <= Limits::max();
    const bool isKnown = isNumber && !FirstEnumName(*mRecord, static_cast<std::int32_t>(number)).empty();
    if (!isKnown && !mChecks)
        return LeaveOut(Unknown("no enumerator has the number " + mLastText));
    if (!isNumber)   // of which the factory would see the low bits
        return Refuse(
            WithAlternatives(Unknown("no enumerator has the number " + mLastText), EnumeratorNames(*mRecord)));
    return number;
}

std::optional<std::int64_t> CValueSource::NamedEnumerator(const std::string & name)
{
    const auto & enumerators = EnumeratorsOf(*mRecord);
    const auto found = enumerators.find(name);
    if (found != enumerators.end() && !name.empty()) {
        mLastText = std::to_string(found->second);
        return found->second;
    }
    Finding finding = Unknown("unknown enumerator " + Quoted(name));
    return mChecks ? Refuse(WithAdvice(std::move(finding), name, EnumeratorNames(*mRecord)))
                   : LeaveOut(std::move(finding));
}

bool CValueSource::NextIndex(std::uint64_t & value)
{
    if (mNextIndex >= mIndexNodes.size() || mIndex == nullptr)
        return false;
    const auto number = IndexOf(*mIndexNodes[mNextIndex++]);
    value = static_cast<std::uint64_t>(number.value_or(0));
    return number.has_value();
}

std::optional<std::int64_t> CValueSource::IndexOf(const toml::node & node)
{
    const bool isEnumerated = mIndex->Type() != CTableIndex::INDEX_INTEGER;
    const auto * const text = node.as_string();
    if (text != nullptr && isEnumerated)
        return NamedIndex(node, text->get());
    const auto * const integer = node.as_integer();
    if (integer == nullptr) {
        mValues.AddMismatch(node, mIndexLabel,
            isEnumerated ? "a name or number for the index " + Quoted(mIndex->Name())
                         : "a whole number for the index " + Quoted(mIndex->Name()));
        return std::nullopt;
    }
    if (!IsIndexAllowed(node, integer->get()))
        return std::nullopt;
    return integer->get();
}

std::optional<std::int64_t> CValueSource::NamedIndex(const toml::node & node, const std::string & name)
{
    const auto enumerators = mIndex->Enums();
    const auto found = enumerators.find(name);
    if (found != enumerators.end() && IsIndexAllowed(node, found->second))
        return found->second;
    if (found == enumerators.end())
        mFindings.Add(
            WithAdvice(AboutIndex(node, "unknown-index", "unknown " + mIndex->Name() + ' ' + Quoted(name)),
                name, LabelsOf(*mIndex)));
    return std::nullopt;
}

// What a subsystem wouldn't get as it is, is refused whatever checks are on.
bool CValueSource::IsIndexAllowed(const toml::node & node, std::int64_t number)
{
    const bool isEnumerated = mIndex->Type() != CTableIndex::INDEX_INTEGER;
    std::int64_t min = 0;
    std::int64_t max = MAX_INDEX;
    if (mChecks && !isEnumerated) {
        min = std::max(min, mIndex->Min());
        max = std::min(max, mIndex->Max());
    }
    if (number < min || number > max) {
        mFindings.Add(WithExpected(
            AboutIndex(node, "out-of-range",
                std::to_string(number) + " is out of range for the index " + Quoted(mIndex->Name())),
            std::to_string(min) + " to " + std::to_string(max)));
        return false;
    }
    if (!mChecks || !isEnumerated || !mIndex->EnumLabel(static_cast<std::int32_t>(number)).empty())
        return true;
    mFindings.Add(WithAlternatives(
        AboutIndex(node, "unknown-index", "no " + mIndex->Name() + " has the number " + std::to_string(number)),
        LabelsOf(*mIndex)));
    return false;
}

}   // namespace tomlconfig
