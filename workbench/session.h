/// Reads configuration files of one chip through plug-ins, and writes what was read.
///
///     workbench::CFindingList findings;
///     workbench::CSession session(findings);
///     const bool isRead = session.LoadPlugIns("/usr/lib/configtools/plugins") && session.OpenMetadata("system.zmd") &&
///                         session.Read({ { "1-chip.toml" }, { "2-module.zimg" } });
///     const workbench::LayeredChip chip = workbench::LayersAndWinners(session.Chip(), session.Watch().Chip());
///
/// Every operation reports what is wrong to the sink, and is false or null then.

#ifndef WORKBENCH_SESSION_H
#define WORKBENCH_SESSION_H

#include "finding.h"
#include "readwatch.h"
#include "repository.h"

#include <configtools/chipconfig.h>
#include <configtools/readerwriter.h>
#include <configtools/readerwriterfactory.h>
#include <configtools/zyncontext.h>

#include <memory>
#include <string>
#include <vector>

namespace workbench {

/// A file to read or to write, and its format.
struct ConfigFile
{
    std::string mPath;

    /// The name of a format; empty: that of the extension of the path.
    std::string mFormat = {};
};

/// Owns plug-in objects, metadata and the chip. One thread at a time, as the library.
class CSession
{
public:
    /// The sink remains the caller's.
    explicit CSession(IFindingSink & sink);
    CSession(const CSession &) = delete;
    CSession & operator=(const CSession &) = delete;

    /// The caller's, for whoever has something to report about the session.
    IFindingSink & Sink() const { return mSink; }

    /// Loads the plug-ins of a folder (*.zpm), which remain loaded as long as the process lives. The operations below
    /// need them. The library loads one folder in the life of a process; another one is ignored.
    bool LoadPlugIns(const std::string & folder);

    /// Whether a plug-in for the format of the file is loaded.
    bool HasPlugIn(const ConfigFile & file);

    /// Opens a metadata repository, which the readers get from then on.
    bool OpenMetadata(const std::string & file);

    /// Null before a successful `OpenMetadata`.
    VrexZynConfigTools::IMetadataProvider * Metadata() const { return mRepository.Provider(); }

    /// Sets tags for readers and writers, in the form "TAG=VALUE;...".
    void SetTags(const std::string & tags) { mTags = tags; }
    /// As they were set last; empty at first.
    const std::string & Tags() const { return mTags; }

    /// The context of a read: the tags, over the insert mode "overwrite".
    VrexZynConfigTools::CZynContext ReadContext() const;

    /// Reads the files into one chip, one after the other, in place of what was read before. All are read, also after
    /// one has failed, so that all that is wrong is found in one run.
    bool Read(const std::vector<ConfigFile> & files);

    /// Reads the same files once more, in a context that begins as `context`.
    bool ReadAgain(const VrexZynConfigTools::CZynContext & context);

    /// Those of the last read.
    const std::vector<ConfigFile> & Files() const { return mFiles; }

    /// What was read; empty before the first read. The objects are replaced by the next one.
    VrexZynConfigTools::CChipConfig & Chip() const { return mReading->mChip; }
    const CReadWatch & Watch() const { return mReading->mWatch; }

    /// Makes a writer for the file, which the caller owns and deletes before the session ends. The file isn't opened
    /// before something is written.
    std::unique_ptr<VrexZynConfigTools::IConfigWriter> CreateWriter(const ConfigFile & file);

private:
    struct Reading
    {
        VrexZynConfigTools::CChipConfig mChip;
        CReadWatch mWatch{ mChip };
    };

    bool ReadFile(const ConfigFile & file, const VrexZynConfigTools::CZynContext & context);

    IFindingSink & mSink;
    std::string mPlugInFolder;
    std::string mTags;
    std::vector<ConfigFile> mFiles;

    // The order decides: these end from the last to the first. Elements use records of the readers and of the metadata,
    // and all are code of the modules, which remain loaded as long as the process lives.
    VrexZynConfigTools::CReaderWriterFactory & mModules;
    CRepository mRepository;
    std::vector<std::unique_ptr<VrexZynConfigTools::IConfigReader>> mReaders;
    std::unique_ptr<Reading> mReading;   // never null
};

}   // namespace workbench

#endif
