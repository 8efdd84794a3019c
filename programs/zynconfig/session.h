/// One run of the tool: what it was asked for, the plug-ins, the metadata, and what the files hold.

#ifndef ZYNCONFIG_SESSION_H
#define ZYNCONFIG_SESSION_H

#include "commandline.h"

#include <configtools/chipconfig.h>
#include <configtools/readerwriter.h>
#include <configtools/readerwriterfactory.h>
#include <configtools/zyncontext.h>
#include <workbench/readwatch.h>
#include <workbench/repository.h>

#include <memory>
#include <string>
#include <vector>

namespace zynconfig {

/// Owns what a run makes. Each operation reports what went wrong and is false then, or null.
class CSession
{
public:
    explicit CSession(const Options & options);
    CSession(const CSession &) = delete;
    CSession & operator=(const CSession &) = delete;

    const Options & Asked() const { return mOptions; }

    /// Loads the plug-ins, and the metadata if there is any. The other operations need them.
    bool Load();

    /// Null if none was named.
    VrexZynConfigTools::IMetadataProvider * Metadata() const { return mRepository.Provider(); }

    /// The context of a read: what the command line says.
    VrexZynConfigTools::CZynContext ReadContext() const;

    /// Reads all files, in place of what was read before.
    bool ReadAll();
    bool ReadAll(const VrexZynConfigTools::CZynContext & context);

    /// What was read; only after a read.
    VrexZynConfigTools::CChipConfig & Chip() const { return mReading->mChip; }
    const workbench::CReadWatch & Watch() const { return mReading->mWatch; }

    /// Makes the writer of the output.
    std::unique_ptr<VrexZynConfigTools::IConfigWriter> CreateWriter();

private:
    struct Reading
    {
        VrexZynConfigTools::CChipConfig mChip;
        workbench::CReadWatch mWatch{ mChip };
    };

    bool HasPlugIn(const std::string & path, const std::string & format);
    bool ReadFile(const std::string & file, const VrexZynConfigTools::CZynContext & context);

    const Options & mOptions;
    std::string mPlugInFolder;

    // The order decides: these end from the last to the first. Elements use records of the readers and of the metadata,
    // and all are code of the modules, which stay loaded as long as the process lives.
    VrexZynConfigTools::CReaderWriterFactory & mModules;
    workbench::CRepository mRepository;
    std::vector<std::unique_ptr<VrexZynConfigTools::IConfigReader>> mReaders;
    std::unique_ptr<Reading> mReading;
};

}   // namespace zynconfig

#endif
