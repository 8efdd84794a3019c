#include "structvalue.h"

#include "advice.h"
#include "leafvalue.h"
#include "packing.h"

#include <kit/text/utf8.h>

#include <map>

namespace workbench::compiler {

using kit::text::Printable;
using kit::text::Quoted;

namespace {

constexpr std::int64_t WORD_BITS = 16;
constexpr NumberRange WORD_RANGE = { 0, 65'535 };

class CStructReader
{
public:
    CStructReader(const CStructRecords & records, CSourceFindings & findings)
        : mRecords(records)
        , mFindings(findings)
        , mLeaves(findings)
    {}

    // The fields in the order of the target, whatever the order of the names in the value.
    void Read(CMetadataDetailStruct & detail, const std::string & name, const Value & value)
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
                ReadField(*each, field, *found->second);
        }
        for (const std::string & each : names)
            given.erase(each);
        for (const Value::Member & member : *members)
            if (given.contains(member.mName))
                mFindings.Error(
                    member.mNamePlace, "unknown field " + Quoted(member.mName) + Advice(member.mName, names));
    }

    const LeafValues & Values() const { return mValues; }

private:
    void ReadField(const CStructField & structField, const Field & field, const Value & value)
    {
        const auto * list = std::get_if<Value::List>(&value.mContent);
        if ((field.IsArray() || IsWideNumber(field)) && list == nullptr) {
            mLeaves.Mismatch(value, field.mName.mValue, IsWideNumber(field) ? "an array of words" : "an array");
        } else if (IsWideNumber(field)) {
            ReadWords(value, *list, field);
        } else if (field.KindOf() == Kind::Structure && field.IsArray()) {
            mLeaves.CheckCount(value, list->size(), field.mArray.mValue);
            for (const Value & item : *list)
                Read(CStructRecords::StructOf(structField), field.mName.mValue, item);
        } else if (field.KindOf() == Kind::Structure) {
            Read(CStructRecords::StructOf(structField), field.mName.mValue, value);
        } else if (field.IsArray()) {
            ReadNumbers(value, *list, static_cast<std::int64_t>(field.Count()), field.mName.mValue,
                field.mRange.mValue);
        } else if (auto leaf = mLeaves.Read(field, value)) {
            mValues.push_back(std::move(*leaf));
        }
    }

    static bool IsWideNumber(const Field & field) { return field.KindOf() == Kind::Number && field.IsWide(); }

    // The last word has the bits that are left of the width.
    void ReadWords(const Value & value, const Value::List & list, const Field & field)
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
        mValues.push_back(std::move(leaf));
    }

    void ReadNumbers(const Value & value, const Value::List & list, std::int64_t count,
        const std::string & name, const NumberRange & range)
    {
        mLeaves.CheckCount(value, list.size(), { count, count });
        LeafValue leaf;
        for (const Value & item : list)
            if (const auto number = mLeaves.NumberOf(item, name, range))
                leaf.mNumbers.push_back(*number);
        mValues.push_back(std::move(leaf));
    }

    const CStructRecords & mRecords;
    CSourceFindings & mFindings;
    CLeafReader mLeaves;
    LeafValues mValues;
};

}   // namespace

std::optional<std::string> PackValue(const Key & key, const Value & value, CSourceFindings & findings)
{
    const CStructRecords records(key);
    const std::size_t errors = findings.ErrorCount();
    CStructReader reader(records, findings);
    reader.Read(records.Struct(), key.mName.mValue, value);
    if (findings.ErrorCount() != errors)
        return std::nullopt;
    std::string error;
    std::string octets = Pack(records, reader.Values(), error);
    if (error.empty())
        return octets;
    findings.Error(value.mPlace, Quoted(key.mName.mValue) + ": " + Printable(error));
    return std::nullopt;
}

}   // namespace workbench::compiler
