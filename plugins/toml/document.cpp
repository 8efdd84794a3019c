#include "document.h"

#include "describedkey.h"
#include "keylookup.h"
#include "values.h"

#include <kit/reading/devices.h>
#include <kit/reading/storetags.h>
#include <kit/tomlsyntax/tomlsyntax.h>

#include <optional>
#include <utility>
#include <vector>

namespace tomlconfig {

using namespace kit::reading;

namespace {

// How findings call a key, whatever is wrong with it: its name or number, with its indices.
std::string LabelOf(const toml::table & table)
{
    const auto id = table[field::ID].value_or(std::int64_t{ 0 });
    std::string label = table[field::NAME].value_or(id != 0 ? std::to_string(id) : std::string());
    const auto add = [&label](const toml::node & index) {
        if (index.is_integer() && !label.empty())
            label += '.' + std::to_string(index.as_integer()->get());
    };
    const toml::node * const index = table.get(field::INDEX);
    if (index != nullptr && index->is_array())
        for (const toml::node & item : *index->as_array())
            add(item);
    else if (index != nullptr)
        add(*index);
    return label;
}

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
            mFindings.Add(FindingAt(*filter, "filtered-file",
                "this file holds the result of a filtered write, which names layers in place of "
                "devices and stores; it is for reading by people and scripts only"));
            return;
        }
        mValues.CheckFields(root, "the file", { field::CHIP, field::SUBSYSTEM });
        ReadChip(root);
        mFileContext = FileContext(mCallerContext, mDocument.mContent.mChip);
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
            mDocument.mContent.mChip = std::move(*chip);
    }

    void ReadSubsystem(const toml::table & table)
    {
        if (const toml::node * layer = table.get(field::LAYER)) {
            mFindings.Add(FindingAt(*layer, "filtered-file",
                "a subsystem with a layer comes from a filtered write, which is for reading by "
                "people and scripts only; expected \"device\" and \"store\""));
            return;
        }
        mValues.CheckFields(table, "a subsystem", { field::TYPE, field::DEVICE, field::STORE, field::KEY });
        Subsystem subsystem;
        SubsystemPlace & place = subsystem.mPlace;   // a tag of "" isn't set
        place.mType = ReadTag(table, field::TYPE, SubsystemWords(), -1);
        place.mDevice = ReadTag(table, field::DEVICE, DeviceWords(), -1);
        place.mStore = ReadTag(table, field::STORE, {}, 0);
        mKeys = &subsystem.mKeys;
        mSubsystemContext = SubsystemContext(*mFileContext, place);
        mFindings.Scope().mStore = StoreName(place);
        mFindings.Scope().mSubsystem = SubsystemName(place.mType);
        if (const toml::node * keys = table.get(field::KEY))
            EachTable(
                *keys, field::KEY, "[[subsystem.key]]", [this](const toml::table & key) { ReadKey(key); });
        mFindings.Scope().mStore.clear();
        mFindings.Scope().mSubsystem.clear();
        mDocument.mContent.mSubsystems.push_back(std::move(subsystem));
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
            const auto number = mValues.Integer(*node, name, min, MAX_TAG_NUMBER);
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
            mValues.AddMismatch(node, name, "a whole number from 0 to " + std::to_string(MAX_TAG_NUMBER));
        else
            mFindings.Add(WithAdvice(
                FindingAt(node, "unknown-" + name, "unknown " + name + ' ' + Quoted(text)), text, known));
        return std::nullopt;
    }

    void ReadKey(const toml::table & table)
    {
        mFindings.Scope().mKey = LabelOf(table);
        auto key = mLookup && !table.contains(field::TYPE)
                       ? ReadDescribedKey(table, *mLookup, mFindings, *mSubsystemContext)
                       : ReadTypedKey(table, mFindings, mDocument.mRecords, mLookup ? &*mLookup : nullptr,
                             *mSubsystemContext);
        if (key)
            mKeys->push_back(std::move(*key));
        mFindings.Scope().mKey.clear();
    }

    Document & mDocument;
    CFindings & mFindings;
    CValueReader mValues;
    IConfigContext & mCallerContext;
    std::optional<CKeyLookup> mLookup;   // empty without metadata
    ContextOwner mFileContext;
    ContextOwner mSubsystemContext;       // of the subsystem that is being read
    std::vector<Key> * mKeys = nullptr;   // of the subsystem that is being read
};

}   // namespace

Document ReadDocument(
    const std::string & text, CFindings & findings, IMetadataProvider * provider, IConfigContext & context)
{
    Document document;
    kit::tomlsyntax::SyntaxError error;
    if (const auto root = kit::tomlsyntax::ParseText(text, error))
        CDocumentReader(document, findings, provider, context).Read(*root);
    else
        findings.Add(FindingAt(error.mPlace, "syntax", error.mText));
    return document;
}

}   // namespace tomlconfig
