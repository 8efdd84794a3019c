#include "describedkey.h"

#include "keywalk.h"
#include "recordfacts.h"
#include "valuesource.h"
#include "vocabulary.h"

#include <configtools/elementfactory.h>
#include <configtools/elements.h>
#include <configtools/keywords.h>
#include <kit/reporting/channel.h>
#include <kit/text/number.h>
#include <kit/text/words.h>

#include <string>
#include <utility>
#include <vector>

namespace tomlconfig {

using kit::reading::Key;

namespace {

std::string NamesOf(const std::vector<const CTableIndex *> & indices)
{
    std::vector<std::string> names;
    for (const CTableIndex * const index : indices)
        names.push_back(Quoted(index->Name()));
    return kit::text::Joined(names, ", ");
}

// Reads one key.
class CDescribedKeyReader
{
public:
    CDescribedKeyReader(
        const IMetadata & record, const toml::table & table, CFindings & findings, IConfigContext & context)
        : mRecord(record)
        , mTable(table)
        , mFindings(findings)
        , mContext(context)
        , mChecks(!context.TagMatches(keywords::TAG_NO_DATA_CHECK, std::string(keywords::VALUE_TRUE)))
        , mSource(findings, mChecks)
        , mLabel(KeyText(record))
    {}

    std::optional<Key> Read(const toml::node & value)
    {
        const std::size_t before = mFindings.Count();
        if (!IsDescribed(mRecord)) {
            Add(mTable, "bad-metadata",
                "the metadata of " + Quoted(mLabel) + " describes no value; give the key a type");
            return std::nullopt;
        }
        LoadIndices();
        Key key = Build(value);
        if (key.mElement == nullptr && mFindings.Count() == before && !mSource.HasLeftOut())
            Add(value, "bad-metadata",
                Quoted(mLabel) + ": the metadata describes no value");   // never lost in silence
        const bool isWhole = mFindings.Count() == before && !mSource.HasLeftOut() && key.mElement != nullptr;
        if (isWhole)
            WarnOfPadding(*key.mElement, value);
        return isWhole ? std::optional(std::move(key)) : std::nullopt;
    }

private:
    void Add(const toml::node & node, const std::string & code, const std::string & text)
    {
        mFindings.Add(FindingAt(node, code, text));
    }

    void LoadIndices()
    {
        const toml::node * const node = mTable.get(field::INDEX);
        const auto indices = TableIndicesOf(mRecord);
        const std::size_t count = mRecord.NumIndices();
        std::vector<const toml::node *> nodes;
        if (const toml::array * const array = node != nullptr ? node->as_array() : nullptr)
            for (const toml::node & item : *array)
                nodes.push_back(&item);
        else if (node != nullptr)
            nodes.push_back(node);

        const std::string countText = std::to_string(count) + (count == 1 ? " index" : " indices");
        if (count > MAX_INDICES)
            Add(mTable, "bad-metadata",
                Quoted(mLabel) + " is a table with " + countText + "; a file can give " +
                    std::to_string(MAX_INDICES) + " at most");
        else if (indices.size() != count)
            Add(mTable, "bad-metadata",
                "the metadata of " + Quoted(mLabel) + " describes " + std::to_string(indices.size()) +
                    " of its " + countText);
        else if (node != nullptr && count == 0)
            Add(*node, "wrong-count", "\"index\": " + Quoted(mLabel) + " is no table");
        else if (node == nullptr && count != 0)
            Add(mTable, "missing-field",
                "\"index\" is missing: " + Quoted(mLabel) + " is a table with " + countText + ", " +
                    NamesOf(indices));
        else if (nodes.size() != count)
            Add(*node, "wrong-count",
                "\"index\": found " + std::to_string(nodes.size()) + "; " + Quoted(mLabel) +
                    " is a table with " + countText + ", " + NamesOf(indices));
        else
            mSource.LoadIndices(nodes, field::INDEX);
    }

    Key Build(const toml::node & value)
    {
        CElementFactory factory(&mSource, mContext, nullptr);
        factory.Clear();
        mContext.SetTag(
            keywords::TAG_ELEM_BIT_WIDTH);   // the caller's would make the key a field of that width
        kit::reporting::TakeError();
        CKeyWalk walk(factory, mSource, mFindings, value, mChecks);
        mRecord.Inspect(walk);
        if (const auto error = kit::reporting::TakeError())
            Add(value, "rejected-value", Quoted(mLabel) + ": " + *error);
        const toml::source_position place = mTable.source().begin;
        Key key{ std::unique_ptr<CElement>(factory.Collect()), TakeIndices(), place.line, place.column };
        factory.Clear();
        return key;
    }

    // As the factory left them in the context.
    std::vector<std::uint32_t> TakeIndices()
    {
        std::vector<std::uint32_t> indices;
        for (const std::string & text : mContext.GetTags(keywords::TAG_INDEX))
            indices.push_back(kit::text::ParseWhole<std::uint32_t>(text).value_or(0));
        return indices;
    }

    // Octets of one subsystem travel in words, so the library takes a last zero for what filled up a word.
    void WarnOfPadding(CElement & element, const toml::node & value)
    {
        auto * const text = dynamic_cast<CElementString *>(&element);
        if (text != nullptr && text->GetValue(0).size() != mSource.LastBytes().size())
            mFindings.Add(WarningAt(value, "padding-octet",
                Quoted(mLabel) +
                    ": the last octet, 00, is taken for one that fills up a word, and is left out"));
    }

    const IMetadata & mRecord;
    const toml::table & mTable;
    CFindings & mFindings;
    IConfigContext & mContext;
    bool mChecks;
    CValueSource mSource;
    std::string mLabel;
};

}   // namespace

std::optional<Key> ReadDescribedKey(
    const toml::table & table, CKeyLookup & lookup, CFindings & findings, IConfigContext & context)
{
    CValueReader values(findings);
    values.CheckFields(table, "a key", { field::ID, field::NAME, field::TYPE, field::INDEX, field::VALUE });
    const IMetadata * const record = lookup.KeyOf(table, context);
    const toml::node * const value = values.Required(table, field::VALUE, "a key has a value");
    if (record == nullptr || value == nullptr)
        return std::nullopt;
    return CDescribedKeyReader(*record, table, findings, context).Read(*value);
}

}   // namespace tomlconfig
