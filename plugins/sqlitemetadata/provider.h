/// The metadata provider of the plug-in.

#ifndef SQLITEMETADATA_PROVIDER_H
#define SQLITEMETADATA_PROVIDER_H

#include "records.h"

#include <configtools/metadataprovider.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace sqlitemetadata {

struct Repository;
struct System;

/// Answers out of the repository as it stood when it was opened or last refreshed. A repository that can't be used
/// leaves the reason in the message channel then, and with each question.
class CSqliteMetadataProvider : public VrexZynConfigTools::CBaseMetadataProvider
{
public:
    /// Opens the file, which is only read.
    explicit CSqliteMetadataProvider(const std::string & path);
    CSqliteMetadataProvider(const CSqliteMetadataProvider &) = delete;
    CSqliteMetadataProvider & operator=(const CSqliteMetadataProvider &) = delete;
    ~CSqliteMetadataProvider() override;

    const VrexZynConfigTools::IMetadata & MetadataById(
        std::uint32_t psId, VrexZynConfigTools::IConfigContext & context) override;
    const VrexZynConfigTools::IMetadata & MetadataByName(
        const std::string & name, VrexZynConfigTools::IConfigContext & context) override;
    const std::vector<const VrexZynConfigTools::IMetadata *> & AllMetadata(
        VrexZynConfigTools::IConfigContext & context) override;
    const std::vector<std::string> & Systems() override;
    std::vector<VrexZynConfigTools::ISubsystemInfo *> & Subsystems(
        VrexZynConfigTools::IConfigContext & context) override;
    std::vector<VrexZynConfigTools::IChipInfo *> & Chips(VrexZynConfigTools::IConfigContext & context) override;

    /// nearestname/nearestname.h says what is like a name and what isn't.
    std::string NearestName(const std::string & name, VrexZynConfigTools::IConfigContext & context) override;

    bool Check() override;

    /// Opens the file anew. Records are made anew too, but those handed out stay.
    void Refresh() override;

    /// Delivers the default values of the selected system in layer 0, subsystem by subsystem, each in a copy of the
    /// context with its type and without a device and a store. Without the tag "chip" the only system is meant; the
    /// elements have no chip then either. Of several systems one has to be selected.
    ///
    /// Everything is built before anything is delivered. If something is wrong, that is told in one error, a line for
    /// each finding, and no observer is called.
    void Read(VrexZynConfigTools::IConfigContext & context) override;

private:
    template <typename ActionT>
    bool Ask(ActionT action);
    template <typename WantedT>
    const VrexZynConfigTools::IMetadata & Find(
        const WantedT & wanted, VrexZynConfigTools::IConfigContext & context);
    void Open();
    const System * SystemToRead(VrexZynConfigTools::IConfigContext & context);

    RecordShelf mShelf;                        // every record ever handed out
    std::unique_ptr<Repository> mRepository;   // null if it can't be used
    std::string mWhyNot;                       // and why
    std::vector<const VrexZynConfigTools::IMetadata *> mAllMetadata;
    std::vector<std::string> mSystems;
    std::vector<VrexZynConfigTools::ISubsystemInfo *> mSubsystems;
    std::vector<VrexZynConfigTools::IChipInfo *> mChips;
};

}   // namespace sqlitemetadata

#endif
