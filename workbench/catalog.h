/// What the metadata know about one chip system, asked in the words of people.
///
///     workbench::CCatalog catalog(*session.Metadata(), session.ReadContext(), session.Sink());
///     if (catalog.Select("trindle7"))
///         for (const workbench::Record & record : catalog.Records())
///             Show(workbench::SubsystemName(record.mSubsystem), record.mMetadata->Name());

#ifndef WORKBENCH_CATALOG_H
#define WORKBENCH_CATALOG_H

#include "finding.h"
#include "key.h"
#include "keytext.h"

#include <configtools/metadata.h>
#include <configtools/metadataprovider.h>
#include <configtools/zyncontext.h>

#include <optional>
#include <string>
#include <vector>

namespace workbench {

/// What the metadata say about a key.
struct Record
{
    /// The type of the key's subsystem.
    int mSubsystem;

    /// The provider's, and valid as long as it; never null.
    const VrexZynConfigTools::IMetadata * mMetadata;
};

/// Beside what the operations return: what is wrong with a question goes to the sink.
class CCatalog
{
public:
    /// Provider and sink remain the caller's. The tags of `context` go with every question.
    CCatalog(VrexZynConfigTools::IMetadataProvider & provider, const VrexZynConfigTools::CZynContext & context,
        IFindingSink & sink);

    /// Selects the system that has a chip of this label, without regard to case. An empty label selects the only
    /// system there is.
    bool Select(const std::string & label);

    /// Selects the only chip there is; where there are several none, and all systems are meant then. Always true.
    bool SelectOnly();

    /// As `Select` for the label of files, which has to be spelt as in the metadata: the library compares it so.
    bool SelectChipOfFiles(const std::string & label);

    /// The label of the selected chip. Empty where the selected system has several chips and none was named.
    const std::string & Chip() const { return mChip; }

    /// The caller's, for questions of other kinds.
    VrexZynConfigTools::IMetadataProvider & Provider() const { return mProvider; }

    /// A context that selects the system and, with a type, a subsystem.
    VrexZynConfigTools::CZynContext Context(int subsystem = NO_NUMBER) const;

    /// The types of the system's subsystems, in the provider's order, each once.
    std::vector<int> Subsystems() const;

    /// The type that a keyword or an alias names; none if there is no such subsystem.
    std::optional<int> SubsystemOf(const std::string & name) const;

    /// Every key of a subsystem, or of all for NO_NUMBER.
    std::vector<Record> Records(int subsystem = NO_NUMBER) const;

    /// The keys that match `[SUBSYSTEM:]PATTERN`: by name, with the wildcards of a shell and without regard to case, or
    /// by number. An empty pattern, or "*" for a subsystem, matches all. A pattern that no key matches is a finding,
    /// and so is an unknown subsystem, for which there is no result.
    std::optional<std::vector<Record>> RecordsLike(const std::string & pattern) const;

    /// The record of a key in a subsystem; null if there is none.
    const VrexZynConfigTools::IMetadata * Find(int subsystem, std::uint32_t id) const;

    /// The one key that the text names. None if there is no such key, or keys of several subsystems have the name.
    std::optional<Record> Find(const KeyText & text) const;

    /// The key with the indices that the text tells, each by its number or the name of an enumerator.
    std::optional<Key> RowOf(const Record & record, const KeyText & text) const;

private:
    std::vector<Record> Candidates(const KeyText & text, const std::vector<int> & subsystems) const;
    void ReportUnknown(const KeyText & text, int subsystem) const;
    void Report(const std::string & code, const std::string & text, const std::string & expected = {},
        const std::string & nearest = {}) const;
    std::string Labels() const;

    VrexZynConfigTools::IMetadataProvider & mProvider;
    VrexZynConfigTools::CZynContext mContext;
    IFindingSink & mSink;
    std::string mChip;
};

}   // namespace workbench

#endif
