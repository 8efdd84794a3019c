/// A metadata provider of chips and subsystems alone, as the chip helper needs it.

#ifndef TESTS_HELPER_CHIP_PROVIDER_H
#define TESTS_HELPER_CHIP_PROVIDER_H

#include <configtools/context.h>
#include <configtools/metadata.h>
#include <configtools/metadataprovider.h>

#include <cstdint>
#include <list>
#include <map>
#include <string>
#include <vector>

namespace VrexZynConfigTools::support {

class ChipProvider : public IMetadataProvider
{
public:
    ChipProvider() = default;
    ChipProvider(const ChipProvider &) = delete;
    ChipProvider & operator=(const ChipProvider &) = delete;

    ChipProvider & Chip(const std::string & label, const std::string & id, const std::string & fuses = "")
    {
        mChipList.push_back(&mChips.emplace_back("a chip", id, "", "", fuses, label, "", "", ""));
        return *this;
    }
    ChipProvider & Subsystem(const std::string & name, const std::string & alias)
    {
        mSubsystemList.push_back(&mSubsystems.emplace_back(name, "", alias, "", "", "", ""));
        return *this;
    }

    /// A place in both lists with nothing in it.
    ChipProvider & Nothing()
    {
        mChipList.push_back(nullptr);
        mSubsystemList.push_back(nullptr);
        return *this;
    }

    /// The contexts that `Chips` was given: name and tags.
    struct Asked
    {
        std::string mName;
        std::map<std::string, std::string> mTags;
    };
    const std::vector<Asked> & AskedForChips() const { return mAsked; }

    std::vector<ISubsystemInfo *> & Subsystems(IConfigContext & /*context*/) override { return mSubsystemList; }
    std::vector<IChipInfo *> & Chips(IConfigContext & context) override
    {
        mAsked.push_back({ context.Name(), dynamic_cast<CBaseContext &>(context).Tags() });
        return mChipList;
    }

    const IMetadata & MetadataById(std::uint32_t /*psId*/, IConfigContext & /*context*/) override
    {
        return CNullMetadata::Ref();
    }
    const IMetadata & MetadataByName(const std::string & /*name*/, IConfigContext & /*context*/) override
    {
        return CNullMetadata::Ref();
    }
    const std::vector<const IMetadata *> & AllMetadata(IConfigContext & /*context*/) override
    {
        return mRecords;
    }
    const std::vector<std::string> & Systems() override { return mSystems; }
    std::string NearestName(const std::string & /*name*/, IConfigContext & /*context*/) override { return ""; }
    bool Check() override { return true; }
    void Refresh() override {}

private:
    std::list<CChipInfo> mChips;
    std::list<CSubsystemInfo> mSubsystems;
    std::vector<IChipInfo *> mChipList;
    std::vector<ISubsystemInfo *> mSubsystemList;
    std::vector<const IMetadata *> mRecords;
    std::vector<std::string> mSystems;
    std::vector<Asked> mAsked;
};

}   // namespace VrexZynConfigTools::support

#endif
