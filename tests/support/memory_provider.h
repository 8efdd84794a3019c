/// A metadata provider that a test fills by hand: one system with its chips, and records of every shape.
///
///     MemoryProvider provider({ "trindle7" });
///     provider.Number(SUBSYSTEM_AUDIO, ARecord(16).Named("Volume").OfType("uint8").Within(0, 100));
///     provider.Enum(SUBSYSTEM_AUDIO, ARecord(17).Named("Mode"), { { "OFF", 0 }, { "ON", 1 } });
///     auto & fit = provider.Struct(SUBSYSTEM_AUDIO, ARecord(18).Named("Fit"));
///     fit.AddField("", &provider.NumberField(ARecord(0).Named("Gain").OfType("int8").Within(-8, 7)), 0, 4);

#ifndef TESTS_SUPPORT_MEMORY_PROVIDER_H
#define TESTS_SUPPORT_MEMORY_PROVIDER_H

#include "metadata_builder.h"

#include <configtools/context.h>
#include <configtools/keywords.h>
#include <configtools/metadataprovider.h>

#include <messages/messages.h>

#include <algorithm>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace VrexZynConfigTools::support {

class MemoryProvider : public IMetadataProvider
{
public:
    using Enumerators = std::vector<std::pair<std::string, int>>;

    explicit MemoryProvider(const std::vector<std::string> & chipLabels)
    {
        for (const std::string & label : chipLabels)
            mChips.push_back(
                std::make_unique<CChipInfo>(label, "1", "rom", "1", "", label, "a system", "1", ""));
        for (const auto & chip : mChips)
            mChipList.push_back(chip.get());
    }
    MemoryProvider(const MemoryProvider &) = delete;
    MemoryProvider & operator=(const MemoryProvider &) = delete;

    // Keys, which records with a number other than 0 are.

    /// A number or a text.
    CMetadata & Number(SubSystemTypeEnum subsystem, const ARecord & record)
    {
        return Enlist(subsystem, NumberField(record));
    }
    CMetadata & Enum(SubSystemTypeEnum subsystem, const ARecord & record, const Enumerators & enumerators)
    {
        return Enlist(subsystem, EnumField(record, enumerators));
    }
    CMetadataDetailStruct & Struct(
        SubSystemTypeEnum subsystem, const ARecord & record, bool isLittleEndian = true)
    {
        CMetadata & key = StructField(record, isLittleEndian);
        return dynamic_cast<CMetadataDetailStruct &>(*Enlist(subsystem, key).Details());
    }

    /// A record that says nothing of its value.
    CMetadata & Bare(SubSystemTypeEnum subsystem, const ARecord & record)
    {
        return Enlist(subsystem, Own(record));
    }

    // Records of fields, which have the number 0. A nested struct gets its fields through `Details`.

    CMetadata & NumberField(const ARecord & record)
    {
        CMetadata & field = Own(record);
        field.SetDetails(*new CMetadataDetailSimple(field));
        return field;
    }
    CMetadata & EnumField(ARecord record, const Enumerators & enumerators)
    {
        CMetadata & field = Own(record.Shaped(METADATA_ENUM));
        auto * detail = new CMetadataDetailEnum(field);
        for (const auto & [name, number] : enumerators)
            detail->AddEnum(name, std::to_string(number));
        field.SetDetails(*detail);
        return field;
    }
    CMetadata & StructField(ARecord record, bool isLittleEndian = true)
    {
        CMetadata & field = Own(record.Shaped(METADATA_STRUCT));
        field.SetDetails(*new CMetadataDetailStruct(field, isLittleEndian, false));
        return field;
    }

    // Table indices, for a record with their count.

    static void AddIndex(CMetadata & key, const std::string & name, std::int64_t min, std::int64_t max)
    {
        key.AddTableIndex(new CTableIndex(name, min, max, CTableIndex::INDEX_INTEGER));
    }
    static void AddIndex(CMetadata & key, const std::string & name, const Enumerators & enumerators)
    {
        auto * index = new CTableIndex(name, 0, 0, CTableIndex::INDEX_ENUM);
        for (const auto & [label, number] : enumerators)
            index->AddEnum(label, number);
        key.AddTableIndex(index);
    }

    /// From now on every question leaves this error and gets the empty answer.
    void FailWith(const std::string & text) { mFailure = text; }

    const IMetadata & MetadataById(std::uint32_t psId, IConfigContext & context) override
    {
        return Find(mById, psId, context);
    }
    const IMetadata & MetadataByName(const std::string & name, IConfigContext & context) override
    {
        return Find(mByName, Lowered(name), context);
    }
    const std::vector<const IMetadata *> & AllMetadata(IConfigContext & context) override
    {
        mAll.clear();
        for (const auto & [number, entry] : mById)
            if (IsSelected(entry, context))
                mAll.push_back(entry.mRecord);
        return mAll;
    }
    const std::vector<std::string> & Systems() override { return mSystems; }
    std::vector<ISubsystemInfo *> & Subsystems(IConfigContext & /*context*/) override { return mSubsystems; }
    std::vector<IChipInfo *> & Chips(IConfigContext & context) override
    {
        static std::vector<IChipInfo *> NONE;
        return KnowsChip(context) && !Fails() ? mChipList : NONE;
    }

    /// A name with the same first letter, if there is one.
    std::string NearestName(const std::string & name, IConfigContext & context) override
    {
        for (const auto & [known, entry] : mByName)
            if (IsSelected(entry, context) && known.substr(0, 1) == Lowered(name).substr(0, 1))
                return entry.mRecord->Name();
        return "";
    }
    bool Check() override { return true; }
    void Refresh() override {}

private:
    struct Entry
    {
        SubSystemTypeEnum mSubsystem;
        const CMetadata * mRecord;
    };

    static std::string Lowered(std::string text)
    {
        std::transform(text.begin(), text.end(), text.begin(), [](char character) {
            return character >= 'A' && character <= 'Z' ? static_cast<char>(character + 'a' - 'A') : character;
        });
        return text;
    }

    CMetadata & Own(const ARecord & record)
    {
        mRecords.push_back(record.Build());
        return *mRecords.back();
    }

    CMetadata & Enlist(SubSystemTypeEnum subsystem, CMetadata & record)
    {
        mById.emplace(record.PsId(), Entry{ subsystem, &record });
        mByName.emplace(Lowered(record.Name()), Entry{ subsystem, &record });
        return record;
    }

    bool Fails() const
    {
        if (!mFailure.empty())
            CTheMsgHnd::GetAppropriateHandler(GROUP_FRAMEWORK, "MemoryProvider", false)
                .SetErrorMsg(0, mFailure);
        return !mFailure.empty();
    }

    bool KnowsChip(IConfigContext & context) const
    {
        const std::string label = context.GetTag(keywords::TAG_CHIP);
        return label.empty() || std::any_of(mChips.begin(), mChips.end(), [&label](const auto & chip) {
            return chip->SystemVersionLabel() == label;
        });
    }

    bool IsSelected(const Entry & entry, IConfigContext & context) const
    {
        const std::string type = context.GetTag(keywords::TAG_SUBSYSTEM_TYPE);
        return KnowsChip(context) && (type.empty() || type == std::to_string(entry.mSubsystem));
    }

    template <typename KeyT>
    const IMetadata & Find(
        const std::multimap<KeyT, Entry> & entries, const KeyT & key, IConfigContext & context) const
    {
        if (Fails())
            return CNullMetadata::Ref();
        const auto [begin, end] = entries.equal_range(key);
        const auto found = std::find_if(
            begin, end, [&](const auto & candidate) { return IsSelected(candidate.second, context); });
        return found != end ? *found->second.mRecord : CNullMetadata::Ref();
    }

    std::vector<std::unique_ptr<CMetadata>> mRecords;
    std::multimap<std::uint32_t, Entry> mById;
    std::multimap<std::string, Entry> mByName;   // in lower case
    std::vector<std::unique_ptr<CChipInfo>> mChips;
    std::vector<IChipInfo *> mChipList;
    std::vector<ISubsystemInfo *> mSubsystems;
    std::vector<std::string> mSystems = { "a system" };
    std::vector<const IMetadata *> mAll;
    std::string mFailure;
};

}   // namespace VrexZynConfigTools::support

#endif
