/// One run of the tool's work: reading the files, showing or writing what they hold.

#ifndef ZYNCONFIG_SESSION_H
#define ZYNCONFIG_SESSION_H

#include "commandline.h"
#include "readwatch.h"
#include "repository.h"

#include <configtools/chipconfig.h>
#include <configtools/readerwriter.h>
#include <configtools/readerwriterfactory.h>
#include <configtools/zyncontext.h>

#include <memory>
#include <string>
#include <vector>

namespace zynconfig {

/// Owns everything that a run makes. Each operation reports what went wrong and is false then.
class CSession
{
public:
    explicit CSession(const Options & options);
    CSession(const CSession &) = delete;
    CSession & operator=(const CSession &) = delete;

    /// Loads the plug-ins, and the metadata if there is any. The other operations need them.
    bool Load();

    bool Show();
    bool Convert();

private:
    struct Reading
    {
        VrexZynConfigTools::CChipConfig mChip;
        CReadWatch mWatch{ mChip };
    };

    bool HasPlugIn(const std::string & path, const std::string & format);
    bool ReadAll(const VrexZynConfigTools::CZynContext & context);
    bool ReadFile(const std::string & file, const VrexZynConfigTools::CZynContext & context);
    bool ReadFiltered();
    bool Write();
    VrexZynConfigTools::CZynContext ReadContext() const;
    VrexZynConfigTools::CZynContext WriteContext() const;

    const Options & mOptions;
    std::string mPlugInFolder;

    // The order decides: these end from the last to the first. Elements use records of the readers and of the metadata,
    // and all are code of the modules, which stay loaded as long as the process lives.
    VrexZynConfigTools::CReaderWriterFactory & mModules;
    CRepository mRepository;
    std::vector<std::unique_ptr<VrexZynConfigTools::IConfigReader>> mReaders;
    std::unique_ptr<VrexZynConfigTools::IConfigWriter> mWriter;
    std::unique_ptr<Reading> mReading;
};

}   // namespace zynconfig

#endif
