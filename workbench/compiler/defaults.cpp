#include "defaults.h"

#include "advice.h"
#include "leafvalue.h"
#include "structvalue.h"

#include <kit/text/utf8.h>

#include <algorithm>
#include <map>

namespace workbench::compiler {

using kit::text::Quoted;

namespace {

const Value * Find(const Value::Members & members, const char * name)
{
    const auto found = std::find_if(
        members.begin(), members.end(), [&](const Value::Member & each) { return each.mName == name; });
    return found != members.end() ? &found->mValue : nullptr;
}

class CDefaultBuilder
{
public:
    CDefaultBuilder(const Key & key, CSourceFindings & findings)
        : mKey(key)
        , mFindings(findings)
        , mLeaves(findings)
    {}

    std::vector<DefaultRow> Build()
    {
        if (mKey.mIndices.empty())
            AddRow({}, *mKey.mDefault);
        else if (const auto * list = std::get_if<Value::List>(&mKey.mDefault->mContent))
            for (const Value & row : *list)
                AddTableRow(row);
        else
            mLeaves.Mismatch(*mKey.mDefault, "default", "an array of rows, { index = ..., value = ... }");
        return std::move(mRows);
    }

private:
    void AddTableRow(const Value & row)
    {
        const auto * members = std::get_if<Value::Members>(&row.mContent);
        if (members == nullptr) {
            mLeaves.Mismatch(row, "default", "a row, { index = ..., value = ... }");
            return;
        }
        const Value * index = Find(*members, "index");
        const Value * value = Find(*members, "value");
        for (const Value::Member & each : *members)
            if (each.mName != "index" && each.mName != "value")
                mFindings.Error(each.mNamePlace, "unknown field " + Quoted(each.mName) + " in a row" +
                                                     Advice(each.mName, { "index", "value" }));
        if (index == nullptr)
            mFindings.Error(row.mPlace, "\"index\" is missing: a row of a table has its index");
        if (value == nullptr)
            mFindings.Error(row.mPlace, "\"value\" is missing: a row has a value");
        std::vector<std::int64_t> indices;
        const bool isIndexed = index != nullptr && ReadIndices(*index, indices);
        if (isIndexed && IsNew(indices, *index) && value != nullptr)
            AddRow(std::move(indices), *value);
    }

    // One index as it is, several as an array.
    bool ReadIndices(const Value & value, std::vector<std::int64_t> & indices)
    {
        const auto * list = std::get_if<Value::List>(&value.mContent);
        const std::size_t count = list != nullptr ? list->size() : 1;
        if (count != mKey.mIndices.size()) {
            mFindings.Error(value.mPlace, "\"index\": expected as many indices as the key has, " +
                                              std::to_string(mKey.mIndices.size()) + ", found " +
                                              std::to_string(count));
            return false;
        }
        for (std::size_t position = 0; position < count; ++position) {
            const auto number = IndexOf(list != nullptr ? (*list)[position] : value, mKey.mIndices[position]);
            if (!number)
                return false;
            indices.push_back(*number);
        }
        return true;
    }

    std::optional<std::int64_t> IndexOf(const Value & value, const Index & index)
    {
        const std::string name = index.mName.mValue;
        if (index.mValues.mIsGiven) {
            const Enumerator * enumerator = mLeaves.EnumeratorOf(value, name, index.mValues.mValue);
            return enumerator != nullptr ? std::optional<std::int64_t>(enumerator->mNumber) : std::nullopt;
        }
        const auto number = mLeaves.NumberOf(value, name, index.mRange.mValue);
        return number ? std::optional(number->SignedBits()) : std::nullopt;
    }

    bool IsNew(const std::vector<std::int64_t> & indices, const Value & index)
    {
        const auto [first, isNew] = mPlaces.emplace(indices, index.mPlace);
        if (!isNew)
            mFindings.Error(index.mPlace, "the row " + TextOfIndices(indices) + " stands in " +
                                              mFindings.PlaceText(first->second) + " already");
        return isNew;
    }

    static std::string TextOfIndices(const std::vector<std::int64_t> & indices)
    {
        std::string text;
        for (const std::int64_t index : indices) {
            if (!text.empty())
                text += '.';
            text += std::to_string(index);
        }
        return text;
    }

    void AddRow(std::vector<std::int64_t> indices, const Value & value)
    {
        DefaultRow row{ std::move(indices), {} };
        if (!mKey.IsArray()) {
            AddItem(value, row);
        } else if (const auto * list = std::get_if<Value::List>(&value.mContent)) {
            mLeaves.CheckCount(value, list->size(), mKey.mArray.mValue);
            for (const Value & item : *list)
                AddItem(item, row);
        } else {
            mLeaves.Mismatch(value, "default", "an array");
        }
        if (!row.mItems.empty())
            mRows.push_back(std::move(row));
    }

    void AddItem(const Value & value, DefaultRow & row)
    {
        if (mKey.KindOf() == Kind::Structure) {
            if (auto packed = PackValue(mKey, value, mFindings))
                row.mItems.emplace_back(Octets{ std::move(*packed) });
            return;
        }
        const auto leaf = mLeaves.Read(mKey, value);
        if (!leaf)
            return;
        if (mKey.KindOf() == Kind::Text)
            row.mItems.emplace_back(leaf->mText);
        else if (mKey.KindOf() == Kind::Octets)
            row.mItems.emplace_back(Octets{ leaf->mText });
        else
            row.mItems.emplace_back(leaf->mNumbers.at(0).SignedBits());
    }

    const Key & mKey;
    CSourceFindings & mFindings;
    CLeafReader mLeaves;
    std::vector<DefaultRow> mRows;
    std::map<std::vector<std::int64_t>, Place> mPlaces;
};

}   // namespace

std::vector<DefaultRow> DefaultsOf(const Key & key, CSourceFindings & findings)
{
    if (!key.mIsSound || !key.mDefault)
        return {};
    return CDefaultBuilder(key, findings).Build();
}

}   // namespace workbench::compiler
