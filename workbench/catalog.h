/// What the metadata knows about one chip system, asked in the tool's words.

#ifndef WORKBENCH_CATALOG_H
#define WORKBENCH_CATALOG_H

#include "key.h"
#include "keytext.h"

#include <configtools/metadata.h>
#include <configtools/metadataprovider.h>
#include <configtools/zyncontext.h>

#include <optional>
#include <string>
#include <vector>

namespace workbench {

struct Record
{
    int mSubsystem;
    const VrexZynConfigTools::IMetadata * mMetadata;   // the provider's, never null
};

/// Beside what the operations give: what is wrong with a question is reported.
class CCatalog
{
public:
    /// The provider stays the caller's. The tags of `context` go with every question.
    CCatalog(VrexZynConfigTools::IMetadataProvider & provider, const VrexZynConfigTools::CZynContext & context);

    /// Selects the system that has a chip of this label, without regard to case. An empty label selects the only
    /// system there is.
    bool Select(const std::string & label);

    /// Selects the only chip there is; where there are several none, and all systems are meant then. Always true.
    bool SelectOnly();

    /// As `Select` for the label of files, which has to be spelt as in the metadata: the library compares it so.
    bool SelectChipOfFiles(const std::string & label);

    /// The label of the selected chip. Empty where the selected system has several chips and none was named.
    const std::string & Chip() const { return mChip; }

    VrexZynConfigTools::IMetadataProvider & Provider() const { return mProvider; }

    /// A context that selects the system and, with a type, a subsystem.
    VrexZynConfigTools::CZynContext Context(int subsystem = NO_NUMBER) const;

    /// The types of the system's subsystems, in the provider's order, each once.
    std::vector<int> Subsystems() const;

    /// The type that a keyword or an alias names; none, with the reason reported, if there is no such subsystem.
    std::optional<int> SubsystemOf(const std::string & name) const;

    /// Every key of a subsystem, or of all for NO_NUMBER.
    std::vector<Record> Records(int subsystem = NO_NUMBER) const;

    /// The record of a key in a subsystem; null if there is none.
    const VrexZynConfigTools::IMetadata * Find(int subsystem, std::uint32_t id) const;

    /// The one key that the text names.
    std::optional<Record> Find(const KeyText & text) const;

    /// The key with the indices that the text tells, each by its number or the name of an enumerator.
    std::optional<Key> RowOf(const Record & record, const KeyText & text) const;

private:
    std::vector<Record> Candidates(const KeyText & text, const std::vector<int> & subsystems) const;
    void ReportUnknown(const KeyText & text, int subsystem) const;
    std::string Labels() const;

    VrexZynConfigTools::IMetadataProvider & mProvider;
    VrexZynConfigTools::CZynContext mContext;
    std::string mChip;
};

}   // namespace workbench

#endif
