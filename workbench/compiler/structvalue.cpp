#include "structvalue.h"

#include "advice.h"
#include "leafvalue.h"
#include "records.h"

#include <kit/text/utf8.h>

#include <configtools/elements.h>
#include <configtools/keywords.h>
#include <configtools/numbertypes.h>
#include <configtools/payloads.h>

#include <kit/layout/packing.h>
#include <kit/layout/scalars.h>

#include <map>

namespace workbench::compiler {

using kit::text::Printable;
using kit::text::Quoted;

using namespace VrexZynConfigTools;

namespace {

constexpr std::int64_t WORD_BITS = 16;
constexpr NumberRange WORD_RANGE = { 0, 65'535 };

IPayload * NewNumber(const std::string & type, const CNumber & number)
{
    NumericVariable value;
    value.mUint64 = number.Bits();
    const NumberType * const found = FindNumberType(type);
    return CElementNumericArray::GetPayloadByNumericType(
        found != nullptr ? found->mType : NUMERIC_INT64, value);
}

IPayload * NewLeaf(const CStructField & structField, const Field & field, const LeafValue & value)
{
    if (field.KindOf() == Kind::Enumeration)
        return new CEnumPayload(value.mText, static_cast<std::int32_t>(value.mNumbers.at(0).SignedBits()));
    if (field.KindOf() != Kind::Number)
        return new CStringPayload(value.mText, field.KindOf() == Kind::Octets);
    const std::string type = field.IsWide() ? keywords::TYPE_UINT16 : kit::layout::TypeOf(structField);
    if (!field.IsArray() && !field.IsWide())
        return NewNumber(type, value.mNumbers.at(0));
    auto list = std::make_unique<CComplexPayload>(PAYLOAD_COMPLEX);
    for (const CNumber & number : value.mNumbers)
        list->AddField(NewNumber(type, number));
    return list.release();
}

/// Makes the tree of a struct of its value.
class CStructReader
{
public:
    CStructReader(const CStructRecords & records, CSourceFindings & findings)
        : mRecords(records)
        , mFindings(findings)
        , mLeaves(findings)
    {}

    // The fields in the order of the target, whatever the order of the names in the value.
    // `label`: of the fields, such as "Bands[1].".
    void Read(CMetadataDetailStruct & detail, const std::string & name, const Value & value,
        const std::string & label, CComplexPayload & to)
    {
        const auto * members = std::get_if<Value::Members>(&value.mContent);
        if (members == nullptr) {
            mLeaves.Mismatch(value, name, "a table of fields, { NAME = value, ... }");
            return;
        }
        std::map<std::string, const Value *> given;
        for (const Value::Member & member : *members)
            given.emplace(member.mName, &member.mValue);
        std::vector<std::string> names;
        for (const CStructField * each : *detail.GetStructFields()) {
            const Field & field = mRecords.FieldOf(*each);
            names.push_back(field.mName.mValue);
            const auto found = given.find(field.mName.mValue);
            if (found == given.end())
                mFindings.Error(value.mPlace, "the field " + Quoted(field.mName.mValue) + " has no value");
            else
                ReadField(*each, *found->second, label + field.mName.mValue, to);
        }
        for (const std::string & each : names)
            given.erase(each);
        for (const Value::Member & member : *members)
            if (given.contains(member.mName))
                mFindings.Error(
                    member.mNamePlace, "unknown field " + Quoted(member.mName) + Advice(member.mName, names));
    }

    /// Of a field's value, by the label of the field.
    const Place & PlaceOf(const std::string & label) const { return mPlaces.at(label); }

private:
    void ReadField(
        const CStructField & structField, const Value & value, const std::string & label, CComplexPayload & to)
    {
        const Field & field = mRecords.FieldOf(structField);
        if (field.KindOf() == Kind::Structure)
            return ReadStruct(structField, value, label, to);
        mPlaces.emplace(label, value.mPlace);
        const auto * list = std::get_if<Value::List>(&value.mContent);
        std::optional<LeafValue> leaf;
        if ((field.IsArray() || IsWideNumber(field)) && list == nullptr)
            mLeaves.Mismatch(value, field.mName.mValue, IsWideNumber(field) ? "an array of words" : "an array");
        else if (IsWideNumber(field))
            leaf = ReadWords(value, *list, field);
        else if (field.IsArray())
            leaf = ReadNumbers(value, *list, field);
        else
            leaf = mLeaves.Read(field, value);
        if (leaf)
            to.AddField(NewLeaf(structField, field, *leaf));
    }

    void ReadStruct(
        const CStructField & structField, const Value & value, const std::string & label, CComplexPayload & to)
    {
        const Field & field = mRecords.FieldOf(structField);
        CMetadataDetailStruct & inner = CStructRecords::StructOf(structField);
        CComplexPayload & parts = kit::layout::AddList(to, nullptr);
        if (!field.IsArray())
            return Read(inner, field.mName.mValue, value, label + '.', parts);
        const auto * list = std::get_if<Value::List>(&value.mContent);
        if (list == nullptr)
            return mLeaves.Mismatch(value, field.mName.mValue, "an array");
        mLeaves.CheckCount(value, list->size(), field.mArray.mValue);
        for (std::size_t place = 0; place < list->size(); ++place)
            Read(inner, field.mName.mValue, (*list)[place], label + '[' + std::to_string(place) + "].",
                kit::layout::AddList(parts, nullptr));
    }

    static bool IsWideNumber(const Field & field) { return field.KindOf() == Kind::Number && field.IsWide(); }

    // The last word has the bits that are left of the width.
    LeafValue ReadWords(const Value & value, const Value::List & list, const Field & field)
    {
        const std::int64_t rest = field.mWidth.mValue % WORD_BITS;
        const std::int64_t count = (field.mWidth.mValue + WORD_BITS - 1) / WORD_BITS;
        mLeaves.CheckCount(value, list.size(), { count, count });
        const NumberRange lastRange =
            rest != 0 ? NumberRange{ 0, (std::int64_t{ 1 } << rest) - 1 } : WORD_RANGE;
        LeafValue leaf;
        for (std::size_t i = 0; i < list.size(); ++i) {
            const bool isLast = i + 1 == static_cast<std::size_t>(count);
            if (const auto word =
                    mLeaves.NumberOf(list[i], field.mName.mValue, isLast ? lastRange : WORD_RANGE))
                leaf.mNumbers.push_back(*word);
        }
        return leaf;
    }

    LeafValue ReadNumbers(const Value & value, const Value::List & list, const Field & field)
    {
        const auto count = static_cast<std::int64_t>(field.Count());
        mLeaves.CheckCount(value, list.size(), { count, count });
        LeafValue leaf;
        for (const Value & item : list)
            if (const auto number = mLeaves.NumberOf(item, field.mName.mValue, field.mRange.mValue))
                leaf.mNumbers.push_back(*number);
        return leaf;
    }

    const CStructRecords & mRecords;
    CSourceFindings & mFindings;
    CLeafReader mLeaves;
    std::map<std::string, Place> mPlaces;
};

}   // namespace

std::optional<std::string> PackValue(const Key & key, const Value & value, CSourceFindings & findings)
{
    const CStructRecords records(key);
    const std::size_t errors = findings.ErrorCount();
    CStructReader reader(records, findings);
    CComplexPayload tree(PAYLOAD_COMPLEX);
    reader.Read(records.Struct(), key.mName.mValue, value, "", tree);
    if (findings.ErrorCount() != errors)
        return std::nullopt;
    const kit::layout::Packed packed = kit::layout::PackStruct(tree, records.Struct());
    if (!packed.mError.empty())
        findings.Error(value.mPlace, Quoted(key.mName.mValue) + ": " + Printable(packed.mError));
    for (const kit::layout::Change & change : packed.mChanges)
        findings.Error(reader.PlaceOf(change.mField), Quoted(change.mField) + ": " + Printable(change.Text()));
    return findings.ErrorCount() == errors ? std::optional(packed.mOctets) : std::nullopt;
}

}   // namespace workbench::compiler
