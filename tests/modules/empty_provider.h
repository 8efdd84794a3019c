/// What the test modules' metadata providers have in common: they know nothing.

#ifndef TESTS_MODULES_EMPTY_PROVIDER_H
#define TESTS_MODULES_EMPTY_PROVIDER_H

#include <configtools/metadata.h>
#include <configtools/metadataprovider.h>

#include <cstdint>
#include <string>
#include <vector>

namespace VrexZynConfigTools {

/// Its one system is the argument that it was made with, so that a test sees what arrived.
class CEmptyProvider : public CBaseMetadataProvider
{
public:
    explicit CEmptyProvider(const std::string & argument)
        : CBaseMetadataProvider(argument)
        , mSystems{ argument }
    {}

    const IMetadata & MetadataById(std::uint32_t, IConfigContext &) override { return CNullMetadata::Ref(); }
    const IMetadata & MetadataByName(const std::string &, IConfigContext &) override
    {
        return CNullMetadata::Ref();
    }
    const std::vector<const IMetadata *> & AllMetadata(IConfigContext &) override { return mRecords; }
    const std::vector<std::string> & Systems() override { return mSystems; }
    std::vector<ISubsystemInfo *> & Subsystems(IConfigContext &) override { return mSubsystems; }
    std::vector<IChipInfo *> & Chips(IConfigContext &) override { return mChips; }
    std::string NearestName(const std::string &, IConfigContext &) override { return std::string(); }
    void Read(IConfigContext &) override {}

private:
    std::vector<const IMetadata *> mRecords;
    std::vector<std::string> mSystems;
    std::vector<ISubsystemInfo *> mSubsystems;
    std::vector<IChipInfo *> mChips;
};

}   // namespace VrexZynConfigTools

#endif
