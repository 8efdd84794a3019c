#include "document.h"

#include "describedkey.h"
#include "findings.h"
#include "keylookup.h"
#include "typedkey.h"
#include "values.h"

#include <kit/reading/contexts.h>
#include <kit/tomlsyntax/tomlsyntax.h>

#include <map>
#include <tuple>

namespace tomlconfig {

namespace {

constexpr std::int64_t MAX_TAG = 65535;   // types and store numbers are kept in 16 bits

class CDocumentReader
{
public:
    CDocumentReader(
        Document & document, CFindings & findings, IMetadataProvider * provider, IConfigContext & context)
        : mDocument(document)
        , mFindings(findings)
        , mValues(findings)
        , mCallerContext(context)
    {
        if (provider != nullptr)
            mLookup.emplace(*provider, findings);
    }

    void Read(const toml::table & root)
    {
        if (const toml::node * filter = root.get(field::LAYER_FILTER)) {
            mFindings.Add(*filter,
                "this file holds the result of a filtered write, which names layers in place of "
                "devices and stores; it is for reading by people and scripts only");
            return;
        }
        mValues.CheckFields(root, "the file", { field::CHIP, field::SUBSYSTEM });
        ReadChip(root);
        mFileContext = kit::reading::FileContext(mCallerContext, mDocument.mChip);
        if (mLookup)
            mLookup->CheckChip(mDocument.mChipPlace, *mFileContext);
        if (const toml::node * subsystems = root.get(field::SUBSYSTEM))
            EachTable(*subsystems, field::SUBSYSTEM, "[[subsystem]]",
                [this](const toml::table & table) { ReadSubsystem(table); });
    }

private:
    template <typename ActionT>
    void EachTable(const toml::node & node, const char * name, const std::string & header, ActionT action)
    {
        const toml::array * array = node.as_array();
        if (array == nullptr) {
            mValues.AddMismatch(node, name, header + " with double brackets, or an array of tables");
            return;
        }
        for (const toml::node & entry : *array) {
            if (const toml::table * table = entry.as_table())
                action(*table);
            else
                mValues.AddMismatch(entry, name, "a table");
        }
    }

    void ReadChip(const toml::table & root)
    {
        const toml::node * node = mValues.Required(root, field::CHIP, "the file names the chip that it is for");
        if (node == nullptr)
            return;
        mDocument.mChipPlace = node->source().begin;
        if (auto chip = mValues.Text(*node, field::CHIP))
            mDocument.mChip = std::move(*chip);
    }

    void ReadSubsystem(const toml::table & table)
    {
        if (const toml::node * layer = table.get(field::LAYER)) {
            mFindings.Add(*layer,
                "a subsystem with a layer comes from a filtered write, which is for reading by "
                "people and scripts only; expected \"device\" and \"store\"");
            return;
        }
        mValues.CheckFields(table, "a subsystem", { field::TYPE, field::DEVICE, field::STORE, field::KEY });
        Subsystem subsystem;
        subsystem.mType = ReadTag(table, field::TYPE, SubsystemWords(), -1);
        subsystem.mDevice = ReadTag(table, field::DEVICE, DeviceWords(), -1);
        subsystem.mStore = ReadTag(table, field::STORE, {}, 0);
        mKeys = &subsystem.mKeys;
        mSubsystemContext = kit::reading::SubsystemContext(
            *mFileContext, { subsystem.mType, subsystem.mDevice, subsystem.mStore });
        if (const toml::node * keys = table.get(field::KEY))
            EachTable(
                *keys, field::KEY, "[[subsystem.key]]", [this](const toml::table & key) { ReadKey(key); });
        mDocument.mSubsystems.push_back(std::move(subsystem));
    }

    // A keyword, a number or, for a tag that isn't set, an empty text.
    std::optional<int> ReadTag(
        const toml::table & table, const char * name, const std::vector<TagWord> & words, std::int64_t min)
    {
        const toml::node * node = mValues.Required(table, name, "a subsystem has a type, a device and a store");
        if (node == nullptr)
            return std::nullopt;
        const auto * text = node->as_string();
        if (text == nullptr) {
            const auto number = mValues.Integer(*node, name, min, MAX_TAG);
            return number ? std::optional(static_cast<int>(*number)) : std::nullopt;
        }
        return text->get().empty() ? std::nullopt : NumberOfWord(*node, name, text->get(), words);
    }

    std::optional<int> NumberOfWord(const toml::node & node, const std::string & name, const std::string & text,
        const std::vector<TagWord> & words)
    {
        std::vector<std::string> known;
        for (const TagWord & candidate : words) {
            if (candidate.mWord == text)
                return candidate.mNumber;
            known.push_back(candidate.mWord);
        }
        if (known.empty())
            mValues.AddMismatch(node, name, "a whole number from 0 to " + std::to_string(MAX_TAG));
        else
            mFindings.Add(node, "unknown " + name + ' ' + Quoted(text) + Advice(text, known));
        return std::nullopt;
    }

    void ReadKey(const toml::table & table)
    {
        auto key = mLookup && !table.contains(field::TYPE)
                       ? ReadDescribedKey(table, *mLookup, mFindings, *mSubsystemContext)
                       : ReadTypedKey(table, mFindings, mDocument.mRecords, mLookup ? &*mLookup : nullptr,
                             *mSubsystemContext);
        if (key)
            mKeys->push_back(std::move(*key));
    }

    Document & mDocument;
    CFindings & mFindings;
    CValueReader mValues;
    IConfigContext & mCallerContext;
    std::optional<CKeyLookup> mLookup;   // empty without metadata
    kit::reading::ContextOwner mFileContext;
    kit::reading::ContextOwner mSubsystemContext;   // of the subsystem that is being read
    std::vector<Key> * mKeys = nullptr;             // of the subsystem that is being read
};

std::string RowText(const Key & key)
{
    std::string text = std::to_string(key.mElement->PsId());
    for (const std::uint32_t index : key.mIndices)
        text += '.' + std::to_string(index);
    return text;
}

}   // namespace

Document ReadDocument(
    const std::string & text, CFindings & findings, IMetadataProvider * provider, IConfigContext & context)
{
    Document document;
    kit::tomlsyntax::SyntaxError error;
    if (const auto root = kit::tomlsyntax::ParseText(text, error))
        CDocumentReader(document, findings, provider, context).Read(*root);
    else
        findings.Add(error.mPlace, error.mText);
    return document;
}

std::vector<std::string> FindDuplicates(const Document & document, const std::string & path)
{
    using Store = std::tuple<std::optional<int>, std::optional<int>, std::optional<int>>;
    std::map<std::pair<Store, std::string>, toml::source_index> lines;
    std::vector<std::string> duplicates;
    for (const Subsystem & subsystem : document.mSubsystems) {
        const Store store(subsystem.mType, subsystem.mDevice, subsystem.mStore);
        for (const Key & key : subsystem.mKeys) {
            const auto [first, isNew] = lines.emplace(std::pair(store, RowText(key)), key.mPlace.line);
            if (!isNew)
                duplicates.push_back(PlaceText(path, key.mPlace) + ": the key " + RowText(key) +
                                     " stands in line " + std::to_string(first->second) +
                                     " already; only one of the two counts");
        }
    }
    return duplicates;
}

}   // namespace tomlconfig
