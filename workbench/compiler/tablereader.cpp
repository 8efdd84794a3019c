#include "tablereader.h"

#include "advice.h"

#include <kit/text/utf8.h>

#include <kit/text/number.h>
#include <kit/tomlsyntax/tomlsyntax.h>

#include <algorithm>
#include <limits>

namespace workbench::compiler {

using kit::text::Quoted;

namespace {

Place PlaceAt(std::size_t file, const toml::source_position & position)
{
    return { file, std::max<std::uint32_t>(position.line, 1), std::max<std::uint32_t>(position.column, 1) };
}

}   // namespace

CTableReader::CTableReader(
    const toml::table & table, std::size_t file, std::string what, CSourceFindings & findings)
    : mTable(table)
    , mFile(file)
    , mWhat(std::move(what))
    , mFindings(findings)
{}

Place CTableReader::Begin() const
{
    return PlaceOf(mTable);
}

Place CTableReader::PlaceOf(const toml::node & node) const
{
    return PlaceAt(mFile, node.source().begin);
}

const toml::node * CTableReader::Find(const char * name)
{
    mKnown.emplace_back(name);
    return mTable.get(name);
}

Placed<std::string> CTableReader::Text(const char * name)
{
    const toml::node * node = Find(name);
    if (node == nullptr)
        return { "", Begin(), false };
    if (const auto * text = node->as_string())
        return { text->get(), PlaceOf(*node), true };
    Mismatch(*node, name, "a text");
    return { "", PlaceOf(*node), true, false };
}

std::string CTableReader::PlainText(const char * name)
{
    return Text(name).mValue;
}

Placed<bool> CTableReader::Flag(const char * name, bool usual)
{
    const toml::node * node = Find(name);
    if (node == nullptr)
        return { usual, Begin(), false };
    if (const auto * flag = node->as_boolean())
        return { flag->get(), PlaceOf(*node), true };
    Mismatch(*node, name, "true or false");
    return { usual, PlaceOf(*node), true };
}

Placed<std::int64_t> CTableReader::Integer(const char * name, std::int64_t min, std::int64_t max)
{
    const toml::node * node = Find(name);
    if (node == nullptr)
        return { 0, Begin(), false };
    Placed<std::int64_t> result{ min, PlaceOf(*node), true, false };
    const auto * number = node->as_integer();
    if (number == nullptr)
        Mismatch(*node, name, "a whole number");
    else if (number->get() < min || number->get() > max)
        mFindings.Error(result.mPlace, Quoted(name) + ": " + std::to_string(number->get()) +
                                           " is out of range; expected " + std::to_string(min) + " to " +
                                           std::to_string(max));
    else {
        result.mValue = number->get();
        result.mIsRead = true;
    }
    return result;
}

std::optional<CNumber> CTableReader::Number(const toml::node & node, const std::string & name)
{
    if (const auto * number = node.as_integer())
        return CNumber(number->get());
    if (const auto * text = node.as_string())   // TOML's own whole numbers end at 9223372036854775807
        if (const auto number = kit::text::ParseWithPrefix(text->get()))
            return CNumber::Unsigned(*number);
    Mismatch(node, name, "a whole number");
    return std::nullopt;
}

std::optional<NumberRange> CTableReader::Pair(const toml::node & node, const std::string & name)
{
    const toml::array * array = node.as_array();
    if (array == nullptr || array->size() != 2) {
        Mismatch(node, name, "the lowest and the highest number, [min, max]");
        return std::nullopt;
    }
    const auto min = Number((*array)[0], name);
    const auto max = Number((*array)[1], name);
    return min && max ? std::optional(NumberRange{ *min, *max }) : std::nullopt;
}

Placed<NumberRange> CTableReader::Range(const char * name)
{
    const toml::node * node = Find(name);
    if (node == nullptr)
        return { {}, Begin(), false };
    return { Pair(*node, name).value_or(NumberRange{}), PlaceOf(*node), true };
}

Placed<NumberRange> CTableReader::Length(const char * name)
{
    const toml::node * node = Find(name);
    if (node == nullptr)
        return { {}, Begin(), false };
    if (const auto * number = node->as_integer())
        return { { number->get(), number->get() }, PlaceOf(*node), true };
    return { Pair(*node, name).value_or(NumberRange{}), PlaceOf(*node), true };
}

Enumerator CTableReader::EnumeratorOf(const toml::key & key, const toml::node & node)
{
    using Limits = std::numeric_limits<std::int32_t>;
    Enumerator enumerator{ std::string(key.str()), PlaceAt(mFile, key.source().begin), 0, PlaceOf(node) };
    const auto * number = node.as_integer();
    if (number == nullptr)
        Mismatch(node, enumerator.mName, "a whole number");
    else if (number->get() < Limits::min() || number->get() > Limits::max())
        mFindings.Error(enumerator.mNumberPlace, Quoted(enumerator.mName) + ": " +
                                                     std::to_string(number->get()) +
                                                     " is out of range; expected -2147483648 to 2147483647");
    else {
        enumerator.mNumber = static_cast<std::int32_t>(number->get());
        enumerator.mIsNumberRead = true;
    }
    return enumerator;
}

Placed<Enumerators> CTableReader::EnumeratorTable(const char * name)
{
    const toml::node * node = Find(name);
    if (node == nullptr)
        return { {}, Begin(), false };
    Placed<Enumerators> result{ {}, PlaceOf(*node), true };
    const toml::table * table = node->as_table();
    if (table == nullptr) {
        Mismatch(*node, name, "enumerators, { NAME = number, ... }");
        return result;
    }
    if (table->empty())
        mFindings.Error(result.mPlace, Quoted(name) + ": expected one enumerator at least");
    for (const auto & [key, number] : *table)
        result.mValue.push_back(EnumeratorOf(key, number));
    std::sort(result.mValue.begin(), result.mValue.end(),
        [](const Enumerator & left, const Enumerator & right) { return left.mPlace < right.mPlace; });
    return result;
}

std::vector<const toml::table *> CTableReader::Tables(const char * name, const std::string & header)
{
    std::vector<const toml::table *> tables;
    const toml::node * node = Find(name);
    if (node == nullptr)
        return tables;
    const toml::array * array = node->as_array();
    if (array == nullptr) {
        Mismatch(*node, name, header + " with double brackets, or an array of tables");
        return tables;
    }
    for (const toml::node & entry : *array) {
        if (const toml::table * table = entry.as_table())
            tables.push_back(table);
        else
            Mismatch(entry, name, "a table");
    }
    return tables;
}

std::optional<Value> CTableReader::AnyValue(const char * name)
{
    const toml::node * node = Find(name);
    return node != nullptr ? std::optional(ValueOf(*node)) : std::nullopt;
}

// As deep as toml++ itself lets values nest.
Value CTableReader::ValueOf(const toml::node & node) const
{
    Value value;
    value.mPlace = PlaceOf(node);
    value.mKindText = kit::tomlsyntax::KindOf(node);
    if (const auto * number = node.as_integer())
        value.mContent = CNumber(number->get());
    else if (const auto * text = node.as_string())
        value.mContent = text->get();
    else if (const toml::array * array = node.as_array()) {
        auto & list = value.mContent.emplace<Value::List>();
        for (const toml::node & entry : *array)
            list.push_back(ValueOf(entry));
    } else if (const toml::table * table = node.as_table()) {
        auto & members = value.mContent.emplace<Value::Members>();
        for (const auto & [key, member] : *table)
            members.push_back({ std::string(key.str()), PlaceAt(mFile, key.source().begin), ValueOf(member) });
        std::sort(members.begin(), members.end(), [](const Value::Member & left, const Value::Member & right) {
            return left.mNamePlace < right.mNamePlace;
        });
    }
    return value;
}

void CTableReader::RefuseUnknown()
{
    for (const auto & [key, node] : mTable) {
        const std::string name(key.str());
        if (std::find(mKnown.begin(), mKnown.end(), name) == mKnown.end())
            mFindings.Error(PlaceAt(mFile, key.source().begin),
                "unknown field " + Quoted(name) + " in " + mWhat + Advice(name, mKnown));
    }
}

void CTableReader::Mismatch(const toml::node & node, const std::string & name, const std::string & expected)
{
    mFindings.Error(
        PlaceOf(node), Quoted(name) + ": expected " + expected + ", found " + kit::tomlsyntax::KindOf(node));
}

}   // namespace workbench::compiler
