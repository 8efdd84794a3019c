#include "leafvalue.h"

#include "advice.h"

#include <kit/text/hex.h>
#include <kit/text/number.h>
#include <kit/text/utf8.h>

#include <algorithm>

namespace workbench::compiler {

using kit::text::Quoted;

CLeafReader::CLeafReader(CSourceFindings & findings)
    : mFindings(findings)
{}

std::optional<LeafValue> CLeafReader::Read(const Item & item, const Value & value)
{
    if (item.KindOf() == Kind::Number) {
        const auto number = NumberOf(value, item.mName.mValue, item.mRange.mValue);
        return number ? std::optional(LeafValue{ { *number }, "" }) : std::nullopt;
    }
    if (item.KindOf() == Kind::Enumeration) {
        const Enumerator * each = EnumeratorOf(value, item.mName.mValue, item.mValues.mValue);
        return each != nullptr ? std::optional(LeafValue{ { each->mNumber }, each->mName }) : std::nullopt;
    }
    return TextOf(item, value);
}

std::optional<CNumber> CLeafReader::NumberOf(
    const Value & value, const std::string & name, const NumberRange & range)
{
    std::optional<CNumber> number;
    if (const auto * content = std::get_if<CNumber>(&value.mContent))
        number = *content;
    else if (const auto * text = std::get_if<std::string>(&value.mContent))
        if (const auto bits = kit::text::ParseWithPrefix(*text))   // above TOML's own whole numbers
            number = CNumber::Unsigned(*bits);
    if (!number)
        Mismatch(value, name, "a whole number");
    else if (!range.Contains(*number))
        mFindings.Error(
            value.mPlace, Quoted(name) + ": " + number->Text() + " is out of range; expected " + range.Text());
    return number && range.Contains(*number) ? number : std::nullopt;
}

const Enumerator * CLeafReader::EnumeratorOf(
    const Value & value, const std::string & name, const Enumerators & enumerators)
{
    const auto * text = std::get_if<std::string>(&value.mContent);
    const auto * number = std::get_if<CNumber>(&value.mContent);
    const auto found = std::find_if(enumerators.begin(), enumerators.end(), [&](const Enumerator & each) {
        return (text != nullptr && each.mName == *text) ||
               (number != nullptr && CNumber(each.mNumber) == *number);
    });
    if (found != enumerators.end())
        return &*found;
    std::vector<std::string> names;
    for (const Enumerator & each : enumerators)
        names.push_back(each.mName);
    if (text != nullptr)
        mFindings.Error(value.mPlace, "unknown enumerator " + Quoted(*text) + Advice(*text, names));
    else if (number != nullptr)
        mFindings.Error(value.mPlace,
            Quoted(name) + ": no enumerator has the number " + number->Text() + Advice(number->Text(), names));
    else
        Mismatch(value, name, "the name of an enumerator");
    return nullptr;
}

std::optional<LeafValue> CLeafReader::TextOf(const Item & item, const Value & value)
{
    auto bytes = BytesOf(item, value);
    if (!bytes)
        return std::nullopt;
    const CNumber length = CNumber::Unsigned(bytes->size());
    if (!item.mLength.mValue.Contains(length)) {
        mFindings.Error(value.mPlace, Quoted(item.mName.mValue) + ": a length of " + length.Text() +
                                          " bytes is out of range; expected " + item.mLength.mValue.Text());
        return std::nullopt;
    }
    return LeafValue{ {}, std::move(*bytes) };
}

std::optional<std::string> CLeafReader::BytesOf(const Item & item, const Value & value)
{
    const auto * text = std::get_if<std::string>(&value.mContent);
    if (text == nullptr)
        Mismatch(value, item.mName.mValue,
            item.KindOf() == Kind::Octets ? "bytes as a text of hexadecimal pairs" : "a text");
    if (text == nullptr || item.KindOf() == Kind::Text)
        return text != nullptr ? std::optional(*text) : std::nullopt;
    auto bytes = kit::text::BytesOfHex(*text);
    if (!bytes)
        mFindings.Error(
            value.mPlace, Quoted(item.mName.mValue) + ": " + Quoted(*text) + " is no row of hexadecimal pairs");
    return bytes;
}

void CLeafReader::CheckCount(const Value & value, std::size_t count, const NumberRange & range)
{
    if (!range.Contains(CNumber::Unsigned(count)))
        mFindings.Error(value.mPlace, "\"default\": " + std::to_string(count) + " items; expected " +
                                          (range.mMin == range.mMax ? range.mMin.Text() : range.Text()));
}

void CLeafReader::Mismatch(const Value & value, const std::string & name, const std::string & expected)
{
    mFindings.Error(value.mPlace, Quoted(name) + ": expected " + expected + ", found " + value.mKindText);
}

}   // namespace workbench::compiler
