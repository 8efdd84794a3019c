/// The reader of the plug-in.

#ifndef TOMLCONFIG_READER_H
#define TOMLCONFIG_READER_H

#include "document.h"

#include <configtools/stores.h>
#include <kit/reading/filereader.h>

#include <list>
#include <optional>

namespace tomlconfig {

/// Reads one file. Elements point at records that this object or the metadata provider owns, so both must outlive them.
///
/// It reports the stores of "rom" as a store manager does: a chip configuration records no others of this device.
class CTomlReader : public kit::reading::CFileReader, public IStoreManager
{
public:
    using CFileReader::CFileReader;
    ~CTomlReader() override;

    bool Open(IConfigContext & context) override;
    IChunkInOut * ChunkAccess(DEVICE device, std::uint16_t storeId, IConfigContext & context) override;
    const std::list<CStoreInfo *> & Stores(IConfigContext & context) override;

protected:
    std::optional<kit::reading::FileContent> ReadContent(IConfigContext & context) override;

private:
    void NoteRomStores(const kit::reading::FileContent & content);

    RecordList mRecords;                  // of all reads so far
    std::list<CStoreInfo *> mRomStores;   // owned
};

}   // namespace tomlconfig

#endif
